#include "counttable.h"

#include <QtTest/QtTest>

#include <map>

class TestCountTable : public QObject
{
    Q_OBJECT

private slots:
    void counts_equalThoseOfAMap();
    void keysThatAllMeet_areStillCountedApart();
    void unused_isEmpty();
};

namespace {

struct Key
{
    std::uint64_t value = 0;

    bool operator==(const Key &other) const { return value == other.value; }
    std::uint64_t mixed(std::uint64_t seed) const { return analysis::mixBits(value ^ seed); }
};

struct MeetingKey
{
    int value = 0;

    bool operator==(const MeetingKey &other) const { return value == other.value; }
    std::uint64_t mixed(std::uint64_t) const { return 7; }
};

} // namespace

void TestCountTable::counts_equalThoseOfAMap()
{
    analysis::CountTable<Key> table;
    std::map<std::uint64_t, int> model;
    std::uint64_t random = 1;
    for (int i = 0; i < 50'000; ++i) {
        random = random * 6'364'136'223'846'793'005U + 1'442'695'040'888'963'407U;
        const std::uint64_t value = (random >> 33U) % 5'000 << 32U; // differ in the upper bits only
        table.add({value});
        ++model[value];
    }
    QCOMPARE(table.size(), model.size());
    std::size_t visited = 0;
    table.forEach([&](const Key &key, int count) {
        ++visited;
        QCOMPARE(count, model.at(key.value));
    });
    QCOMPARE(visited, model.size());
}

void TestCountTable::keysThatAllMeet_areStillCountedApart()
{
    analysis::CountTable<MeetingKey> table;
    for (int round = 0; round < 3; ++round) {
        for (int value = 0; value < 300; ++value)
            table.add({value});
    }
    QCOMPARE(table.size(), std::size_t(300));
    table.forEach([](const MeetingKey &, int count) { QCOMPARE(count, 3); });
}

void TestCountTable::unused_isEmpty()
{
    const analysis::CountTable<Key> table;
    QCOMPARE(table.size(), std::size_t(0));
    table.forEach([](const Key &, int) { QFAIL("nothing was added"); });
}

QTEST_APPLESS_MAIN(TestCountTable)
#include "tst_counttable.moc"
