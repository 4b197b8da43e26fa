#include "messagequeue.h"
#include "messagestore.h"

#include <QtTest/QtTest>

#include <deque>

using analysis::MessageQueue;
using analysis::MessageStore;

class TestMessageStore : public QObject
{
    Q_OBJECT

private slots:
    void queue_behavesLikeADequeUnderRandomUse();
    void queue_droppingMoreThanItHolds_emptiesIt();
    void full_dropsTheOldestFifthBeforeAppending();
    void typeList_ofAFifthOrLess_isNotTrimmed();
    void otherTypes_goToNoTypeList();
    void capacityBelowFive_isCutBackBySecondGuard();
};

namespace {

analysis::StoredMessage message(PTPv2::MessageType type, qint64 msecs)
{
    analysis::StoredMessage stored;
    stored.msecs = msecs;
    stored.message.header.messageType = type;
    return stored;
}

void append(MessageStore &store, PTPv2::MessageType type, int count, qint64 *msecs)
{
    for (int i = 0; i < count; ++i, ++*msecs) {
        analysis::TypeEntry entry;
        entry.msecs = *msecs;
        entry.hasTime = true;
        store.append(message(type, *msecs), entry);
    }
}

} // namespace

void TestMessageStore::queue_behavesLikeADequeUnderRandomUse()
{
    MessageQueue<int> queue;
    std::deque<int> model;
    std::uint32_t random = 1;
    for (int step = 0; step < 20'000; ++step) {
        random = random * 1'664'525U + 1'013'904'223U;
        if (random >> 24U < 250U) {
            queue.append(step);
            model.push_back(step);
        } else {
            const std::size_t count = (random >> 8U) % 60;
            queue.dropFront(count);
            model.erase(model.begin(), model.begin() + static_cast<std::ptrdiff_t>(std::min(count, model.size())));
        }
        QCOMPARE(queue.size(), model.size());
    }
    QVERIFY(model.size() > 1'024); // the ring has grown and wrapped
    for (std::size_t i = 0; i < model.size(); ++i)
        QCOMPARE(queue[i], model[i]);
}

void TestMessageStore::queue_droppingMoreThanItHolds_emptiesIt()
{
    MessageQueue<int> queue;
    queue.dropFront(5);
    queue.append(1);
    queue.dropFront(5);
    QCOMPARE(queue.size(), std::size_t(0));
    queue.append(2);
    QCOMPARE(queue[0], 2);
}

void TestMessageStore::full_dropsTheOldestFifthBeforeAppending()
{
    MessageStore store(50);
    qint64 msecs = 0;
    append(store, PTPv2::MessageType::Sync, 50, &msecs);
    QCOMPARE(store.messages().size(), std::size_t(50));
    append(store, PTPv2::MessageType::Sync, 1, &msecs);
    QCOMPARE(store.messages().size(), std::size_t(41));
    QCOMPARE(store.messages()[0].msecs, qint64(10));
    QCOMPARE(store.list(MessageStore::Sync).size(), std::size_t(41));
    QCOMPARE(store.list(MessageStore::Sync)[0].msecs, qint64(10));
}

void TestMessageStore::typeList_ofAFifthOrLess_isNotTrimmed()
{
    MessageStore store(50);
    qint64 msecs = 0;
    append(store, PTPv2::MessageType::Announce, 10, &msecs);
    append(store, PTPv2::MessageType::DelayReq, 41, &msecs);
    QCOMPARE(store.list(MessageStore::Announce).size(), std::size_t(10)); // their records are gone, they stay
    QCOMPARE(store.list(MessageStore::DelayReq).size(), std::size_t(31));
    QCOMPARE(store.messages().size(), std::size_t(41));
    QCOMPARE(store.messages()[0].message.header.messageType, PTPv2::MessageType::DelayReq);
}

void TestMessageStore::otherTypes_goToNoTypeList()
{
    MessageStore store(50);
    qint64 msecs = 0;
    for (int type = 0; type < 16; ++type)
        append(store, static_cast<PTPv2::MessageType>(type), 1, &msecs);
    QCOMPARE(store.messages().size(), std::size_t(16));
    for (int list = 0; list < MessageStore::TypeListCount; ++list)
        QCOMPARE(store.list(static_cast<MessageStore::TypeList>(list)).size(), std::size_t(1));
}

void TestMessageStore::capacityBelowFive_isCutBackBySecondGuard()
{
    MessageStore store(4); // a fifth of it is nothing: appending never drops
    qint64 msecs = 0;
    append(store, PTPv2::MessageType::Sync, 4, &msecs);
    QCOMPARE(store.removeExcess(), std::size_t(0));
    append(store, PTPv2::MessageType::Sync, 6, &msecs);
    QCOMPARE(store.removeExcess(), std::size_t(6));
    QCOMPARE(store.messages().size(), std::size_t(4));
    QCOMPARE(store.messages()[0].msecs, qint64(6));
    QCOMPARE(store.list(MessageStore::Sync).size(), std::size_t(4));
}

QTEST_APPLESS_MAIN(TestMessageStore)
#include "tst_messagestore.moc"
