#include <inventory.h>

#include <QtCore/QJsonDocument>
#include <QtTest/QtTest>

namespace {

PortGroup ports(const QString &prefix, int count)
{
    PortGroup group;
    for (int number = 1; number <= count; ++number)
        group.names.append(prefix + QString::number(number));
    group.lowest = 1;
    group.highest = count;
    group.count = count - 1;
    group.range = QStringLiteral("(1-%1)").arg(count);
    return group;
}

Inventory accessSwitch(const QString &down, const QString &up)
{
    Inventory inventory;
    inventory.port = QStringLiteral("/dev/ttyUSB0");
    inventory.family = QStringLiteral("huawei");
    inventory.boardType = QStringLiteral("S5720-28P-SI-AC");
    inventory.down = ports(down, 24);
    inventory.up = ports(up, 4);
    return inventory;
}

} // namespace

class TestInventory : public QObject
{
    Q_OBJECT

private slots:
    void runs_areDrawnTogether_data();
    void runs_areDrawnTogether();
    void table_hasEverything();
    void table_inChinese();
    void table_ofAnAggregationSwitch();
    void table_withoutPortsOrBoardType();
    void profile_isSeenFromTheNames();
    void json_hasEverything();
};

void TestInventory::runs_areDrawnTogether_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("text");

    QTest::newRow("none") << QStringList{} << "";
    QTest::newRow("one") << QStringList{"g0/0/1"} << "g0/0/1";
    QTest::newRow("a run") << QStringList{"g0/0/1", "g0/0/2", "g0/0/3"} << "g0/0/1-g0/0/3";
    QTest::newRow("a gap") << QStringList{"g0/0/1", "g0/0/2", "g0/0/4"} << "g0/0/1-g0/0/2, g0/0/4";
    QTest::newRow("another slot") << QStringList{"g0/0/1", "g1/0/2"} << "g0/0/1, g1/0/2";
    QTest::newRow("backwards") << QStringList{"g0/0/2", "g0/0/1"} << "g0/0/2, g0/0/1";
    QTest::newRow("not numbered") << QStringList{"a", "b"} << "a, b";
}

void TestInventory::runs_areDrawnTogether()
{
    QFETCH(QStringList, names);
    QTEST(portRuns(names), "text");
}

void TestInventory::table_hasEverything()
{
    const QStringList expected{
        "Switch on /dev/ttyUSB0",
        "  Board type  S5720-28P-SI-AC",
        "  Profile     huawei",
        "  Kind        access switch",
        "  Down ports  24, range (1-24): g0/0/1-g0/0/24",
        "  Up ports    4, range (1-4): xg0/0/1-xg0/0/4",
    };
    const Inventory inventory = accessSwitch(QStringLiteral("g0/0/"), QStringLiteral("xg0/0/"));
    QCOMPARE(inventoryLines(inventory, Language::English, Painter(false)), expected);
}

void TestInventory::table_inChinese()
{
    const Inventory inventory = accessSwitch(QStringLiteral("g0/0/"), QStringLiteral("xg0/0/"));
    const QStringList lines = inventoryLines(inventory, Language::Chinese, Painter(false));
    QCOMPARE(lines.first(), QStringLiteral("/dev/ttyUSB0 上的交换机"));
    QVERIFY(lines.contains(QStringLiteral("  下行端口  24个，范围(1-24)：g0/0/1-g0/0/24")));
}

void TestInventory::table_ofAnAggregationSwitch()
{
    Inventory inventory = accessSwitch(QStringLiteral("xg0/0/"), QString());
    inventory.isAggregationSwitch = true;
    inventory.up.names.clear(); // 40-gigabit ports are counted, not listed
    const QStringList lines = inventoryLines(inventory, Language::English, Painter(false));
    QVERIFY(lines.contains(QStringLiteral("  Kind        aggregation switch (no gigabit ports)")));
    QVERIFY(lines.contains(QStringLiteral("  Up ports    range (1-4)")));
}

void TestInventory::table_withoutPortsOrBoardType()
{
    Inventory inventory;
    inventory.port = QStringLiteral("bad\x1b[2Jname");
    const QStringList lines = inventoryLines(inventory, Language::English, Painter(false));
    QCOMPARE(lines.first(), QStringLiteral("Switch on bad?[2Jname"));
    QVERIFY(lines.contains(QStringLiteral("  Board type  not told")));
    QVERIFY(lines.contains(QStringLiteral("  Down ports  none")));
    QVERIFY(lines.contains(QStringLiteral("  Up ports    none")));
}

void TestInventory::profile_isSeenFromTheNames()
{
    QCOMPARE(profileOf(accessSwitch(QStringLiteral("g0/0/"), QStringLiteral("xg0/0/"))), QStringLiteral("huawei"));
    QCOMPARE(profileOf(accessSwitch(QStringLiteral("GE0/0/"), QStringLiteral("10GE0/0/"))),
             QStringLiteral("huawei-sub"));
    Inventory hua3 = accessSwitch(QStringLiteral("g1/0/"), QStringLiteral("t1/0/"));
    hua3.family = QStringLiteral("hua3");
    QCOMPARE(profileOf(hua3), QStringLiteral("hua3"));
}

void TestInventory::json_hasEverything()
{
    const Inventory inventory = accessSwitch(QStringLiteral("GE0/0/"), QStringLiteral("10GE0/0/"));
    const QVariantMap document = inventoryJson(inventory).toVariantMap();
    QCOMPARE(document.keys(),
             QStringList({"boardType", "down", "family", "isAggregationSwitch", "port", "profile", "up"}));
    QCOMPARE(document["port"].toString(), inventory.port);
    QCOMPARE(document["family"].toString(), QStringLiteral("huawei"));
    QCOMPARE(document["profile"].toString(), QStringLiteral("huawei-sub"));
    QCOMPARE(document["boardType"].toString(), inventory.boardType);
    QCOMPARE(document["isAggregationSwitch"].toBool(), false);
    const QVariantMap down = document["down"].toMap();
    QCOMPARE(down["ports"].toStringList(), inventory.down.names);
    QCOMPARE(down["lowest"].toInt(), 1);
    QCOMPARE(down["highest"].toInt(), 24);
    QCOMPARE(down["count"].toInt(), 23);
    QCOMPARE(down["range"].toString(), QStringLiteral("(1-24)"));
    QCOMPARE(document["up"].toMap()["ports"].toStringList(), inventory.up.names);
}

QTEST_APPLESS_MAIN(TestInventory)

#include "tst_inventory.moc"
