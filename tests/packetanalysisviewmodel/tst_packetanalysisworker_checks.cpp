// The worker's filters and checks over lists of message records.
#include "packetAnalysisWorker.h"

#include <QtCore/QDateTime>
#include <QtCore/QElapsedTimer>
#include <QtCore/QLoggingCategory>
#include <QtTest/QtTest>

#include <cmath>
#include <exception>
#include <limits>

using Records = QList<QVariantMap>;

namespace {

constexpr qint64 kStart = 1'700'000'000'000; // milliseconds since the epoch, 2023-11-14 22:13:20 UTC

QString timeText(qint64 offset)
{
    return QDateTime::fromMSecsSinceEpoch(kStart + offset).toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
}

QVariantMap recordWithText(const QString &timestamp, const QString &source = QString(), int sequenceId = 0)
{
    return {{QStringLiteral("timestamp"), timestamp},
            {QStringLiteral("sourceIp"), source},
            {QStringLiteral("sequenceId"), QString::number(sequenceId)}};
}

QVariantMap record(qint64 offset, const QString &source = QStringLiteral("10.0.0.100"), int sequenceId = 0)
{
    return recordWithText(timeText(offset), source, sequenceId);
}

Records recordsAt(const QVector<int> &offsets)
{
    Records records;
    for (const int offset : offsets)
        records.append(record(offset));
    return records;
}

//! `count` gaps of `gap` milliseconds, so one record more.
Records evenly(int count, int gap)
{
    Records records;
    for (int i = 0; i <= count; ++i)
        records.append(record(qint64(i) * gap));
    return records;
}

QString slave(int host)
{
    return QStringLiteral("10.0.0.%1").arg(host);
}

//! One request per slave, `delay` milliseconds into each of the windows.
Records requests(int windows, const QVector<int> &hosts, int delay = 100, int window = 1000)
{
    Records records;
    for (int i = 0; i < windows; ++i) {
        for (const int host : hosts)
            records.append(record(qint64(i) * window + delay, slave(host), i));
    }
    return records;
}

QStringList valuesOf(const QList<QVariant> &findings, const char *key)
{
    QStringList values;
    for (const QVariant &finding : findings)
        values.append(finding.toMap().value(QLatin1String(key)).toString());
    return values;
}

QVector<int> hosts(int first, int last)
{
    QVector<int> numbers;
    for (int host = first; host <= last; ++host)
        numbers.append(host);
    return numbers;
}

//! A sorted copy: the addresses missing in one window come in no particular order.
QStringList sorted(QStringList texts)
{
    texts.sort();
    return texts;
}

const QStringList kFindingKeys{QStringLiteral("abnormalType"), QStringLiteral("messageType"),
                               QStringLiteral("sequenceId"), QStringLiteral("sourceIp"), QStringLiteral("timestamp")};

void verifyShape(const QList<QVariant> &findings)
{
    for (const QVariant &finding : findings) {
        const QVariantMap map = finding.toMap();
        QCOMPARE(map.keys(), kFindingKeys);
        for (const QVariant &value : map)
            QCOMPARE(value.userType(), int(QMetaType::QString));
    }
}

} // namespace

class TestPacketAnalysisWorkerChecks : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    // Filters
    void filter_ofData_keepsTheCutoff();
    void filter_ofDelayMessages_dropsTheCutoff();
    void filter_ofSyncs_dropsTheCutoff();
    void filter_dropsTimesThatAreNone_data();
    void filter_dropsTimesThatAreNone();
    void filter_keepsOrderAndInput();

    // What the health check does with the last Sync
    void lastSync_isLeftOut();
    void lastSyncs_ofTheSameTime_areBothLeftOut();
    void delayMessages_fromTheLastSyncOn_areLeftOut();
    void announcesAndFollowUps_areNotFiltered();
    void withoutSync_nothingIsFiltered();
    void withoutSyncTime_nothingIsFiltered();

    // Intervals
    void interval_status_data();
    void interval_status();
    void interval_ofEachType_hasItsNominalValue();
    void interval_unparsableTime_breaksTwoGaps();
    void interval_backwards_isAbnormal();
    void interval_finding_namesBothTimesAndTheLaterMessage();

    // Slaves
    void slaves_withoutWindows_giveInsufficientData_data();
    void slaves_withoutWindows_giveInsufficientData();
    void slaves_withoutSync_haveTheirOwnText();
    void slaves_allAnswering_areNormal();
    void slaves_fewerSeenThanExpected_areCompletedFromTheNetwork();
    void slaves_moreSeenThanExpected_areExpected();
    void slaves_noneSeen_getDefaultAddresses();
    void slaves_withoutDottedAddress_getDefaultAddresses_data();
    void slaves_withoutDottedAddress_getDefaultAddresses();
    void slaves_requestOnABoundary_belongsToTheNextWindow();
    void slaves_requestsOutOfOrder_areSorted();
    void slaves_requestWithoutTime_answersNoWindow();
    void slaves_tenthOfTheWindows_isTolerated_data();
    void slaves_tenthOfTheWindows_isTolerated();
    void slaves_windowLength_isInWholeSeconds_data();
    void slaves_windowLength_isInWholeSeconds();
    void slaves_expectingNobody_isReadLiterally_data();
    void slaves_expectingNobody_isReadLiterally();
    void slaves_finding_namesWindowAndSlave();
    void slaves_tooManyFindings_breakOffEarly_data();
    void slaves_tooManyFindings_breakOffEarly();
    void slaves_asManyFindingsAsAllowed_areMade();

    // Requests and responses
    void matching_response_data();
    void matching_response();
    void matching_withoutRequests_hasItsOwnText();
    void matching_requestsWithoutTime_giveInsufficientData();
    void matching_responseWithoutTime_isIgnored();
    void matching_ninetyPerCent_isNormal();
    void matching_eightyPerCent_isAbnormal();
    void matching_percentage_isRounded();
    void matching_otherSequenceId_isNoAnswer();
    void matching_twoSlavesWithOneSequenceId_shareTheAnswer();
    void matching_firstLateResponse_decides();
    void matching_finding_namesTheRequest();
    void matching_hostileSequenceIds_takeNoTime();

    // All checks
    void health_verdict_data();
    void health_verdict();
    void health_emptyLists_haveTheirTexts();
    void health_findings_areSortedByTime();
    void health_insufficientData_doesNotCountWithoutFindings();
};

void TestPacketAnalysisWorkerChecks::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
}

void TestPacketAnalysisWorkerChecks::filter_ofData_keepsTheCutoff()
{
    const PacketAnalysisWorker worker;
    QCOMPARE(worker.filterDataBeforeTimestamp(recordsAt({-1, 0, 1}), kStart), recordsAt({-1, 0}));
}

void TestPacketAnalysisWorkerChecks::filter_ofDelayMessages_dropsTheCutoff()
{
    const PacketAnalysisWorker worker;
    QCOMPARE(worker.filterDelayMessagesBeforeLastSync(recordsAt({-1, 0, 1}), kStart), recordsAt({-1}));
}

void TestPacketAnalysisWorkerChecks::filter_ofSyncs_dropsTheCutoff()
{
    const PacketAnalysisWorker worker;
    QCOMPARE(worker.filterSyncMessagesBeforeLastSync(recordsAt({-1, 0, 1}), kStart), recordsAt({-1}));
    QCOMPARE(worker.filterSyncMessagesBeforeLastSync(recordsAt({0}), kStart), Records());
}

void TestPacketAnalysisWorkerChecks::filter_dropsTimesThatAreNone_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("word") << QStringLiteral("yesterday");
    QTest::newRow("date only") << QStringLiteral("2023-11-14");
    QTest::newRow("no milliseconds") << QStringLiteral("2023-11-14 22:13:20");
    QTest::newRow("ISO separator") << QStringLiteral("2023-11-14T22:13:20.000");
    QTest::newRow("month 13") << QStringLiteral("2023-13-14 22:13:20.000");
    QTest::newRow("30 February") << QStringLiteral("2023-02-30 22:13:20.000");
    QTest::newRow("hour 24") << QStringLiteral("2023-11-14 24:00:00.000");
    QTest::newRow("trailing letters") << QStringLiteral("2023-11-14 22:13:20.000x");
    QTest::newRow("two times") << QStringLiteral("2023-11-14 22:13:20.000 ~ 2023-11-14 22:13:21.000");
}

void TestPacketAnalysisWorkerChecks::filter_dropsTimesThatAreNone()
{
    QFETCH(const QString, text);
    const PacketAnalysisWorker worker;
    const Records records{recordWithText(text), record(0)};
    const qint64 cutoff = std::numeric_limits<qint64>::max();
    QCOMPARE(worker.filterDataBeforeTimestamp(records, cutoff), recordsAt({0}));
    QCOMPARE(worker.filterDelayMessagesBeforeLastSync(records, cutoff), recordsAt({0}));
    QCOMPARE(worker.filterSyncMessagesBeforeLastSync(records, cutoff), recordsAt({0}));
    QCOMPARE(worker.filterDataBeforeTimestamp({QVariantMap()}, cutoff), Records()); // no time at all
}

void TestPacketAnalysisWorkerChecks::filter_keepsOrderAndInput()
{
    const PacketAnalysisWorker worker;
    const Records records = recordsAt({500, 100, 900, 300, 100});
    QCOMPARE(worker.filterDataBeforeTimestamp(records, kStart + 500), recordsAt({500, 100, 300, 100}));
    QCOMPARE(worker.filterDelayMessagesBeforeLastSync(records, kStart + 500), recordsAt({100, 300, 100}));
    QCOMPARE(records, recordsAt({500, 100, 900, 300, 100}));
}

//! One check's text out of the health check map.
static QString status(const QVariantMap &health, const char *check)
{
    return health.value(QLatin1String(check)).toString();
}

void TestPacketAnalysisWorkerChecks::lastSync_isLeftOut()
{
    const PacketAnalysisWorker worker;
    // The last gap would be abnormal; with the last Sync gone, one normal gap is left.
    const QVariantMap health = worker.performHealthCheckFromStream({}, recordsAt({0, 1000, 5000}), {}, {}, {}, 0);
    QCOMPARE(status(health, "syncIntervalStatus"), QStringLiteral("正常"));
    QCOMPARE(health.value(QStringLiteral("abnormalPackets")).toList(), QVariantList());
    const QVariantMap single = worker.performHealthCheckFromStream({}, recordsAt({0}), {}, {}, {}, 0);
    QCOMPARE(status(single, "syncIntervalStatus"), QStringLiteral("无Sync消息"));
    QCOMPARE(status(single, "slaveResponseStatus"), QStringLiteral("无Sync消息"));
}

void TestPacketAnalysisWorkerChecks::lastSyncs_ofTheSameTime_areBothLeftOut()
{
    const PacketAnalysisWorker worker;
    const QVariantMap health = worker.performHealthCheckFromStream({}, recordsAt({0, 5000, 5000}), {}, {}, {}, 0);
    QCOMPARE(status(health, "syncIntervalStatus"), QStringLiteral("数据不足")); // one Sync is left
    // The latest time counts, wherever it stands.
    const QVariantMap disordered = worker.performHealthCheckFromStream({}, recordsAt({5000, 0, 1000}), {}, {}, {}, 0);
    QCOMPARE(status(disordered, "syncIntervalStatus"), QStringLiteral("正常"));
}

void TestPacketAnalysisWorkerChecks::delayMessages_fromTheLastSyncOn_areLeftOut()
{
    const PacketAnalysisWorker worker;
    const Records syncs = recordsAt({0, 1000, 2000});
    // Answered before; unanswered in the last Sync's own millisecond and after.
    const Records delayReq{record(100, slave(1), 1), record(2000, slave(1), 2), record(2500, slave(1), 3)};
    const QVariantMap health =
        worker.performHealthCheckFromStream({}, syncs, {}, delayReq, {record(110, slave(100), 1)}, 0);
    QCOMPARE(status(health, "delayReqRespMatchingStatus"), QStringLiteral("正常 (匹配率: 100.0%, 匹配: 1/1)"));
    // A response of the last Sync's time is gone too, and its request, a millisecond earlier, stays without an answer.
    const QVariantMap cut = worker.performHealthCheckFromStream({}, syncs, {}, {record(1999, slave(1), 1)},
                                                                {record(2000, slave(100), 1)}, 0);
    QCOMPARE(status(cut, "delayReqRespMatchingStatus"),
             QStringLiteral("异常 (匹配率: 0.0%, 匹配: 0/1, 超时: 0, 无回复: 1)"));
}

void TestPacketAnalysisWorkerChecks::announcesAndFollowUps_areNotFiltered()
{
    const PacketAnalysisWorker worker;
    const QVariantMap health = worker.performHealthCheckFromStream(recordsAt({0, 3000, 6000}), recordsAt({0, 10}),
                                                                   recordsAt({0, 2000, 4000}), {}, {}, 0);
    QCOMPARE(status(health, "announceIntervalStatus"), QStringLiteral("异常 (2/2)"));
    QCOMPARE(status(health, "followUpIntervalStatus"), QStringLiteral("异常 (2/2)"));
}

void TestPacketAnalysisWorkerChecks::withoutSync_nothingIsFiltered()
{
    const PacketAnalysisWorker worker;
    const QVariantMap health =
        worker.performHealthCheckFromStream({}, {}, {}, {record(0, slave(1), 1)}, {record(10, slave(100), 1)}, 9);
    QCOMPARE(status(health, "delayReqRespMatchingStatus"), QStringLiteral("正常 (匹配率: 100.0%, 匹配: 1/1)"));
    QCOMPARE(status(health, "syncIntervalStatus"), QStringLiteral("无Sync消息"));
}

void TestPacketAnalysisWorkerChecks::withoutSyncTime_nothingIsFiltered()
{
    const PacketAnalysisWorker worker;
    const Records syncs{recordWithText(QStringLiteral("?")), recordWithText(QString())};
    const QVariantMap health =
        worker.performHealthCheckFromStream({}, syncs, {}, {record(0, slave(1), 1)}, {record(10, slave(100), 1)}, 9);
    QCOMPARE(status(health, "delayReqRespMatchingStatus"), QStringLiteral("正常 (匹配率: 100.0%, 匹配: 1/1)"));
    QCOMPARE(status(health, "syncIntervalStatus"), QStringLiteral("数据不足")); // two Syncs, no gap
    QCOMPARE(status(health, "slaveResponseStatus"), QStringLiteral("数据不足"));
}

void TestPacketAnalysisWorkerChecks::interval_status_data()
{
    QTest::addColumn<Records>("messages");
    QTest::addColumn<QString>("status");
    QTest::addColumn<int>("findings");
    const QString normal = QStringLiteral("正常");
    const QString insufficient = QStringLiteral("数据不足");
    const auto gaps = [](int even, int late) {
        Records records = evenly(even, 1000);
        for (int i = 1; i <= late; ++i)
            records.append(record(qint64(even) * 1000 + qint64(i) * 1500));
        return records;
    };
    QTest::newRow("none") << Records() << QStringLiteral("无消息") << 0;
    QTest::newRow("one") << evenly(0, 1000) << insufficient << 0;
    QTest::newRow("two in time") << evenly(1, 1000) << normal << 0;
    QTest::newRow("100 ms late") << evenly(50, 1100) << normal << 0;
    QTest::newRow("101 ms late") << evenly(50, 1101) << QStringLiteral("异常 (50/50)") << 50;
    QTest::newRow("100 ms early") << evenly(50, 900) << normal << 0;
    QTest::newRow("101 ms early") << evenly(50, 899) << QStringLiteral("异常 (50/50)") << 50;
    QTest::newRow("10 of 100") << gaps(90, 10) << normal << 10;
    QTest::newRow("11 of 100") << gaps(89, 11) << QStringLiteral("异常 (11/100)") << 11;
    QTest::newRow("1 of 10") << gaps(9, 1) << normal << 1;
    QTest::newRow("1 of 9") << gaps(8, 1) << QStringLiteral("异常 (1/9)") << 1;
    QTest::newRow("no valid time") << Records{recordWithText(QStringLiteral("a")), recordWithText(QStringLiteral("b"))}
                                   << insufficient << 0;
}

void TestPacketAnalysisWorkerChecks::interval_status()
{
    QFETCH(const Records, messages);
    QFETCH(const QString, status);
    QFETCH(const int, findings);
    const PacketAnalysisWorker worker;
    const auto result = worker.checkMessageInterval(messages, 1000, QStringLiteral("Sync"));
    QCOMPARE(result.first, status);
    QCOMPARE(result.second.size(), findings);
    verifyShape(result.second);
}

void TestPacketAnalysisWorkerChecks::interval_ofEachType_hasItsNominalValue()
{
    const PacketAnalysisWorker worker;
    const Records last{record(1'000'000)}; // the Sync that is left out
    const QVariantMap good =
        worker.performHealthCheckFromStream(evenly(20, 2000), evenly(20, 1000) + last, evenly(20, 1000), {}, {}, 0);
    for (const char *check : {"announceIntervalStatus", "syncIntervalStatus", "followUpIntervalStatus"})
        QCOMPARE(status(good, check), QStringLiteral("正常"));
    const QVariantMap bad =
        worker.performHealthCheckFromStream(evenly(20, 1000), evenly(20, 2000) + last, evenly(20, 2000), {}, {}, 0);
    for (const char *check : {"announceIntervalStatus", "syncIntervalStatus", "followUpIntervalStatus"})
        QCOMPARE(status(bad, check), QStringLiteral("异常 (20/20)"));
    const QStringList types = valuesOf(bad.value(QStringLiteral("abnormalPackets")).toList(), "messageType");
    QCOMPARE(types.count(QStringLiteral("Announce")), 20);
    QCOMPARE(types.count(QStringLiteral("Sync")), 20);
    QCOMPARE(types.count(QStringLiteral("Follow_Up")), 20);
}

void TestPacketAnalysisWorkerChecks::interval_unparsableTime_breaksTwoGaps()
{
    const PacketAnalysisWorker worker;
    Records messages = evenly(4, 1500);
    messages[2] = recordWithText(QStringLiteral("not a time"));
    const auto result = worker.checkMessageInterval(messages, 1000, QStringLiteral("Sync"));
    QCOMPARE(result.first, QStringLiteral("异常 (2/2)"));
    QCOMPARE(result.second.size(), 2);
}

void TestPacketAnalysisWorkerChecks::interval_backwards_isAbnormal()
{
    const PacketAnalysisWorker worker;
    const auto result = worker.checkMessageInterval(recordsAt({1000, 0}), 1000, QStringLiteral("Sync"));
    QCOMPARE(result.first, QStringLiteral("异常 (1/1)"));
}

void TestPacketAnalysisWorkerChecks::interval_finding_namesBothTimesAndTheLaterMessage()
{
    const PacketAnalysisWorker worker;
    const Records messages{record(0, slave(1), 7), record(1700, slave(2), 8)};
    const auto result = worker.checkMessageInterval(messages, 1000, QStringLiteral("Follow_Up"));
    const QVariantMap expected{
        {QStringLiteral("timestamp"), QStringLiteral("%1 ~ %2").arg(timeText(0), timeText(1700))},
        {QStringLiteral("messageType"), QStringLiteral("Follow_Up")},
        {QStringLiteral("sourceIp"), slave(2)},
        {QStringLiteral("sequenceId"), QStringLiteral("8")},
        {QStringLiteral("abnormalType"), QStringLiteral("时间间隔异常")}};
    QCOMPARE(result.second, QList<QVariant>{expected});
}

void TestPacketAnalysisWorkerChecks::slaves_withoutWindows_giveInsufficientData_data()
{
    QTest::addColumn<Records>("syncs");
    const QVariantMap invalid = recordWithText(QStringLiteral("?"));
    QTest::newRow("one Sync") << recordsAt({0});
    QTest::newRow("all in one millisecond") << recordsAt({0, 0, 0});
    QTest::newRow("backwards") << recordsAt({1000, 0});
    QTest::newRow("first without a time") << Records{invalid, record(5000)};
    QTest::newRow("last without a time") << Records{record(0), invalid};
}

void TestPacketAnalysisWorkerChecks::slaves_withoutWindows_giveInsufficientData()
{
    QFETCH(const Records, syncs);
    const PacketAnalysisWorker worker;
    const auto result = worker.checkSlaveResponseWithDetails(syncs, requests(2, hosts(1, 3)), 9);
    QCOMPARE(result.first, QStringLiteral("数据不足"));
    QCOMPARE(result.second, QList<QVariant>());
}

void TestPacketAnalysisWorkerChecks::slaves_withoutSync_haveTheirOwnText()
{
    const PacketAnalysisWorker worker;
    const auto result = worker.checkSlaveResponseWithDetails({}, requests(2, hosts(1, 3)), 9);
    QCOMPARE(result.first, QStringLiteral("无Sync消息"));
    QCOMPARE(result.second, QList<QVariant>());
}

void TestPacketAnalysisWorkerChecks::slaves_allAnswering_areNormal()
{
    const PacketAnalysisWorker worker;
    const auto result = worker.checkSlaveResponseWithDetails(evenly(20, 1000), requests(20, hosts(1, 9)), 9);
    QCOMPARE(result.first, QStringLiteral("正常"));
    QCOMPARE(result.second, QList<QVariant>());
}

void TestPacketAnalysisWorkerChecks::slaves_fewerSeenThanExpected_areCompletedFromTheNetwork()
{
    const PacketAnalysisWorker worker;
    const auto result = worker.checkSlaveResponseWithDetails(evenly(3, 1000), requests(3, hosts(1, 5)), 9);
    QCOMPARE(result.first, QStringLiteral("异常 (3/3 Sync消息)"));
    QCOMPARE(result.second.size(), 12);
    for (int window = 0; window < 3; ++window) {
        QCOMPARE(sorted(valuesOf(result.second.mid(window * 4, 4), "sourceIp")),
                 (QStringList{slave(6), slave(7), slave(8), slave(9)}));
    }
}

void TestPacketAnalysisWorkerChecks::slaves_moreSeenThanExpected_areExpected()
{
    const PacketAnalysisWorker worker;
    // Twelve seen, nine expected: in the second of four windows one of the twelve is silent.
    Records delayReq;
    for (const QVariantMap &request : requests(4, hosts(21, 32))) {
        if (request.value(QStringLiteral("sourceIp")) != slave(25)
            || request.value(QStringLiteral("sequenceId")) != QStringLiteral("1"))
            delayReq.append(request);
    }
    const auto result = worker.checkSlaveResponseWithDetails(evenly(4, 1000), delayReq, 9);
    QCOMPARE(result.first, QStringLiteral("异常 (1/4 Sync消息)"));
    QCOMPARE(valuesOf(result.second, "sourceIp"), QStringList{slave(25)});
    QCOMPARE(valuesOf(result.second, "sequenceId"), QStringList{QStringLiteral("2")});
}

void TestPacketAnalysisWorkerChecks::slaves_noneSeen_getDefaultAddresses()
{
    const PacketAnalysisWorker worker;
    const auto result = worker.checkSlaveResponseWithDetails(evenly(1, 1000), {}, 3);
    QCOMPARE(result.first, QStringLiteral("异常 (1/1 Sync消息)"));
    QCOMPARE(sorted(valuesOf(result.second, "sourceIp")),
             (QStringList{QStringLiteral("192.168.100.1"), QStringLiteral("192.168.100.2"),
                          QStringLiteral("192.168.100.3")}));
}

void TestPacketAnalysisWorkerChecks::slaves_withoutDottedAddress_getDefaultAddresses_data()
{
    QTest::addColumn<QString>("source");
    QTest::newRow("no address") << QString();
    QTest::newRow("three parts") << QStringLiteral("10.0.0");
    QTest::newRow("five parts") << QStringLiteral("1.2.3.4.5");
    QTest::newRow("IPv6") << QStringLiteral("fe80::1");
}

void TestPacketAnalysisWorkerChecks::slaves_withoutDottedAddress_getDefaultAddresses()
{
    QFETCH(const QString, source);
    const PacketAnalysisWorker worker;
    const auto result = worker.checkSlaveResponseWithDetails(evenly(1, 1000), {record(100, source)}, 2);
    QCOMPARE(sorted(valuesOf(result.second, "sourceIp")),
             (QStringList{QStringLiteral("192.168.100.1"), QStringLiteral("192.168.100.2")}));
}

void TestPacketAnalysisWorkerChecks::slaves_requestOnABoundary_belongsToTheNextWindow()
{
    const PacketAnalysisWorker worker;
    const auto missingIn = [&worker](qint64 secondRequest) {
        const Records delayReq{record(0, slave(1)), record(secondRequest, slave(1)), record(2500, slave(1))};
        return valuesOf(worker.checkSlaveResponseWithDetails(evenly(3, 1000), delayReq, 1).second, "sequenceId");
    };
    QCOMPARE(missingIn(1000), QStringList());
    QCOMPARE(missingIn(999), QStringList{QStringLiteral("2")});
    QCOMPARE(missingIn(1999), QStringList());
    QCOMPARE(missingIn(2000), QStringList{QStringLiteral("2")});
}

void TestPacketAnalysisWorkerChecks::slaves_requestsOutOfOrder_areSorted()
{
    const PacketAnalysisWorker worker;
    Records delayReq = requests(5, hosts(1, 3));
    std::reverse(delayReq.begin(), delayReq.end());
    QCOMPARE(worker.checkSlaveResponseWithDetails(evenly(5, 1000), delayReq, 3).first, QStringLiteral("正常"));
}

void TestPacketAnalysisWorkerChecks::slaves_requestWithoutTime_answersNoWindow()
{
    const PacketAnalysisWorker worker;
    // Its address is still one that was seen.
    const Records delayReq{record(100, slave(1)), recordWithText(QStringLiteral("?"), slave(77))};
    const auto result = worker.checkSlaveResponseWithDetails(evenly(1, 1000), delayReq, 2);
    QCOMPARE(valuesOf(result.second, "sourceIp"), QStringList{slave(77)});
}

void TestPacketAnalysisWorkerChecks::slaves_tenthOfTheWindows_isTolerated_data()
{
    QTest::addColumn<int>("silentWindows");
    QTest::addColumn<QString>("status");
    QTest::newRow("one of twenty") << 1 << QStringLiteral("正常");
    QTest::newRow("a tenth") << 2 << QStringLiteral("正常");
    QTest::newRow("one more") << 3 << QStringLiteral("异常 (3/20 Sync消息)");
}

void TestPacketAnalysisWorkerChecks::slaves_tenthOfTheWindows_isTolerated()
{
    QFETCH(const int, silentWindows);
    QFETCH(const QString, status);
    const PacketAnalysisWorker worker;
    const auto result =
        worker.checkSlaveResponseWithDetails(evenly(20, 1000), requests(20 - silentWindows, hosts(1, 1)), 1);
    QCOMPARE(result.first, status);
    QCOMPARE(result.second.size(), silentWindows);
    verifyShape(result.second);
}

void TestPacketAnalysisWorkerChecks::slaves_windowLength_isInWholeSeconds_data()
{
    QTest::addColumn<double>("interval");
    QTest::addColumn<int>("windows"); // in twelve seconds
    QTest::newRow("1.0") << 1.0 << 12;
    QTest::newRow("1.4 rounds down") << 1.4 << 12;
    QTest::newRow("1.5 rounds up") << 1.5 << 6;
    QTest::newRow("2.49") << 2.49 << 6;
    QTest::newRow("2.5 rounds up, away from zero") << 2.5 << 4;
    QTest::newRow("5 leaves a short last window") << 5.0 << 3;
    QTest::newRow("11.6 is the whole time") << 11.6 << 1;
    QTest::newRow("an hour") << 3600.0 << 1;
    QTest::newRow("0.5 rounds up") << 0.5 << 12;
    QTest::newRow("0.4 is never below one second") << 0.4 << 12;
    QTest::newRow("0") << 0.0 << 12;
    QTest::newRow("negative") << -7.0 << 12;
    QTest::newRow("beyond any whole number") << 1e300 << 1;
    QTest::newRow("beyond any whole number, negative") << -1e300 << 12;
    QTest::newRow("not a number counts as the default") << std::nan("") << 12;
    QTest::newRow("infinite counts as the default") << std::numeric_limits<double>::infinity() << 12;
    QTest::newRow("minus infinite counts as the default") << -std::numeric_limits<double>::infinity() << 12;
}

void TestPacketAnalysisWorkerChecks::slaves_windowLength_isInWholeSeconds()
{
    QFETCH(const double, interval);
    QFETCH(const int, windows);
    PacketAnalysisWorker worker;
    worker.setSlaveAnalysisInterval(interval);
    const auto result = worker.checkSlaveResponseWithDetails(recordsAt({0, 12'000}), {}, 1);
    QCOMPARE(result.first, QStringLiteral("异常 (%1/%1 Sync消息)").arg(windows));
    QCOMPARE(result.second.size(), windows);
}

void TestPacketAnalysisWorkerChecks::slaves_expectingNobody_isReadLiterally_data()
{
    QTest::addColumn<int>("expected");
    QTest::newRow("0") << 0;
    QTest::newRow("-1") << -1;
    QTest::newRow("the smallest number") << std::numeric_limits<int>::min();
}

void TestPacketAnalysisWorkerChecks::slaves_expectingNobody_isReadLiterally()
{
    QFETCH(const int, expected);
    const PacketAnalysisWorker worker;
    // Whoever was seen is expected: nobody here ...
    QCOMPARE(worker.checkSlaveResponseWithDetails(evenly(4, 1000), {}, expected).first, QStringLiteral("正常"));
    // ... and here one that answers in half of the windows.
    const auto result = worker.checkSlaveResponseWithDetails(evenly(4, 1000), requests(2, hosts(1, 1)), expected);
    QCOMPARE(result.first, QStringLiteral("异常 (2/4 Sync消息)"));
    QCOMPARE(valuesOf(result.second, "sourceIp"), (QStringList{slave(1), slave(1)}));
}

void TestPacketAnalysisWorkerChecks::slaves_finding_namesWindowAndSlave()
{
    PacketAnalysisWorker worker;
    worker.setSlaveAnalysisInterval(3);
    const Records delayReq{record(137, slave(1)), record(6200, slave(1))};
    const auto result = worker.checkSlaveResponseWithDetails(recordsAt({137, 9137}), delayReq, 1);
    const QVariantMap expected{{QStringLiteral("timestamp"), timeText(3137)},
                               {QStringLiteral("messageType"), QStringLiteral("DELAY_REQ")},
                               {QStringLiteral("sourceIp"), slave(1)},
                               {QStringLiteral("sequenceId"), QStringLiteral("2")},
                               {QStringLiteral("abnormalType"), QStringLiteral("从节点未回复")}};
    QCOMPARE(result.second, QList<QVariant>{expected});
}

void TestPacketAnalysisWorkerChecks::slaves_tooManyFindings_breakOffEarly_data()
{
    QTest::addColumn<qint64>("lastSync");
    QTest::addColumn<int>("expected");
    QTest::newRow("one finding over the limit") << qint64(1000) << 300'001;
    QTest::newRow("a crowd") << qint64(1000) << std::numeric_limits<int>::max();
    QTest::newRow("a month") << qint64(30) * 86'400'000 << 9;
    QTest::newRow("decades") << qint64(40) * 365 * 86'400'000 << 9;
    QTest::newRow("decades, one slave") << qint64(40) * 365 * 86'400'000 << 1;
    QTest::newRow("decades and a crowd") << qint64(40) * 365 * 86'400'000 << std::numeric_limits<int>::max();
}

void TestPacketAnalysisWorkerChecks::slaves_tooManyFindings_breakOffEarly()
{
    QFETCH(const qint64, lastSync);
    QFETCH(const int, expected);
    const PacketAnalysisWorker worker;
    QElapsedTimer timer;
    timer.start();
    QVERIFY_EXCEPTION_THROWN(worker.checkSlaveResponseWithDetails({record(0), record(lastSync)}, {}, expected),
                             std::exception);
    QVERIFY(timer.elapsed() < 5000); // predicted, not walked
}

void TestPacketAnalysisWorkerChecks::slaves_asManyFindingsAsAllowed_areMade()
{
    const PacketAnalysisWorker worker;
    const auto result = worker.checkSlaveResponseWithDetails(recordsAt({0, 1000}), {}, 300'000);
    QCOMPARE(result.second.size(), 300'000);
}

void TestPacketAnalysisWorkerChecks::matching_response_data()
{
    QTest::addColumn<QVector<int>>("responses"); // milliseconds after the request
    QTest::addColumn<QString>("finding");        // empty: matched
    const QString late = QStringLiteral("Delay_Resp超时");
    const QString none = QStringLiteral("主节点未回复");
    QTest::newRow("at once") << QVector<int>{0} << QString();
    QTest::newRow("after 50 ms") << QVector<int>{50} << QString();
    QTest::newRow("after 51 ms") << QVector<int>{51} << late;
    QTest::newRow("after 100 ms") << QVector<int>{100} << late;
    QTest::newRow("after 101 ms") << QVector<int>{101} << none;
    QTest::newRow("before the request") << QVector<int>{-1} << none;
    QTest::newRow("none") << QVector<int>() << none;
    QTest::newRow("too early, then in time") << QVector<int>{-5, 10} << QString();
    QTest::newRow("much too late, then in time") << QVector<int>{500, 10} << QString();
    QTest::newRow("late, then in time") << QVector<int>{60, 10} << late;
    QTest::newRow("in time, then late") << QVector<int>{10, 60} << QString();
}

void TestPacketAnalysisWorkerChecks::matching_response()
{
    QFETCH(const QVector<int>, responses);
    QFETCH(const QString, finding);
    const PacketAnalysisWorker worker;
    Records delayResp;
    for (const int response : responses)
        delayResp.append(record(response, slave(100), 5));
    const auto result = worker.checkDelayReqRespMatching({record(0, slave(1), 5)}, delayResp);
    QCOMPARE(valuesOf(result.second, "abnormalType"), finding.isEmpty() ? QStringList() : QStringList{finding});
    const QString matched = QStringLiteral("正常 (匹配率: 100.0%, 匹配: 1/1)");
    const QString timedOut = QStringLiteral("异常 (匹配率: 0.0%, 匹配: 0/1, 超时: 1, 无回复: 0)");
    const QString unanswered = QStringLiteral("异常 (匹配率: 0.0%, 匹配: 0/1, 超时: 0, 无回复: 1)");
    QCOMPARE(result.first, finding.isEmpty()                            ? matched
                           : finding.startsWith(QLatin1String("Delay")) ? timedOut
                                                                        : unanswered);
}

void TestPacketAnalysisWorkerChecks::matching_withoutRequests_hasItsOwnText()
{
    const PacketAnalysisWorker worker;
    const auto result = worker.checkDelayReqRespMatching({}, {record(0)});
    QCOMPARE(result.first, QStringLiteral("无Delay_Req消息"));
    QCOMPARE(result.second, QList<QVariant>());
}

void TestPacketAnalysisWorkerChecks::matching_requestsWithoutTime_giveInsufficientData()
{
    const PacketAnalysisWorker worker;
    const auto result = worker.checkDelayReqRespMatching({recordWithText(QStringLiteral("?"))}, {record(0)});
    QCOMPARE(result.first, QStringLiteral("数据不足"));
    QCOMPARE(result.second, QList<QVariant>());
    // Beside others it is not counted.
    const auto mixed = worker.checkDelayReqRespMatching({recordWithText(QString()), record(0, slave(1), 5)},
                                                        {record(10, slave(100), 5)});
    QCOMPARE(mixed.first, QStringLiteral("正常 (匹配率: 100.0%, 匹配: 1/1)"));
}

void TestPacketAnalysisWorkerChecks::matching_responseWithoutTime_isIgnored()
{
    const PacketAnalysisWorker worker;
    const Records delayResp{recordWithText(QStringLiteral("?"), slave(100), 5), record(10, slave(100), 5)};
    QCOMPARE(worker.checkDelayReqRespMatching({record(0, slave(1), 5)}, delayResp).first,
             QStringLiteral("正常 (匹配率: 100.0%, 匹配: 1/1)"));
}

//! Ten requests a second apart; the responses' delays by request, negative for none.
static QPair<QString, QList<QVariant>> matchTen(const QVector<int> &delays)
{
    Records delayReq;
    Records delayResp;
    for (int i = 0; i < delays.size(); ++i) {
        delayReq.append(record(qint64(i) * 1000, slave(i), i));
        if (delays.at(i) >= 0)
            delayResp.append(record(qint64(i) * 1000 + delays.at(i), slave(100), i));
    }
    return PacketAnalysisWorker().checkDelayReqRespMatching(delayReq, delayResp);
}

void TestPacketAnalysisWorkerChecks::matching_ninetyPerCent_isNormal()
{
    const auto result = matchTen({1, 1, 1, 1, 1, 1, 1, 1, 1, -1});
    QCOMPARE(result.first, QStringLiteral("正常 (匹配率: 90.0%, 匹配: 9/10)"));
    QCOMPARE(result.second.size(), 1); // a finding all the same
}

void TestPacketAnalysisWorkerChecks::matching_eightyPerCent_isAbnormal()
{
    const auto result = matchTen({1, 1, 75, 1, 1, 1, 1, 1, 1, -1});
    QCOMPARE(result.first, QStringLiteral("异常 (匹配率: 80.0%, 匹配: 8/10, 超时: 1, 无回复: 1)"));
    QCOMPARE(valuesOf(result.second, "abnormalType"),
             (QStringList{QStringLiteral("Delay_Resp超时"), QStringLiteral("主节点未回复")}));
}

void TestPacketAnalysisWorkerChecks::matching_percentage_isRounded()
{
    QCOMPARE(matchTen({1, 1, -1}).first, QStringLiteral("异常 (匹配率: 66.7%, 匹配: 2/3, 超时: 0, 无回复: 1)"));
}

void TestPacketAnalysisWorkerChecks::matching_otherSequenceId_isNoAnswer()
{
    const PacketAnalysisWorker worker;
    const auto result = worker.checkDelayReqRespMatching({record(0, slave(1), 5)}, {record(10, slave(100), 6)});
    QCOMPARE(valuesOf(result.second, "abnormalType"), QStringList{QStringLiteral("主节点未回复")});
}

void TestPacketAnalysisWorkerChecks::matching_twoSlavesWithOneSequenceId_shareTheAnswer()
{
    const PacketAnalysisWorker worker;
    const auto result =
        worker.checkDelayReqRespMatching({record(0, slave(1), 5), record(5, slave(2), 5)}, {record(10, slave(100), 5)});
    QCOMPARE(result.first, QStringLiteral("正常 (匹配率: 100.0%, 匹配: 2/2)"));
}

void TestPacketAnalysisWorkerChecks::matching_firstLateResponse_decides()
{
    // In the order of the list, not of time.
    const PacketAnalysisWorker worker;
    const Records delayResp{record(60, slave(100), 5), record(10, slave(100), 5)};
    const auto result = worker.checkDelayReqRespMatching({record(0, slave(1), 5)}, delayResp);
    QCOMPARE(result.first, QStringLiteral("异常 (匹配率: 0.0%, 匹配: 0/1, 超时: 1, 无回复: 0)"));
}

void TestPacketAnalysisWorkerChecks::matching_finding_namesTheRequest()
{
    const PacketAnalysisWorker worker;
    const auto result = worker.checkDelayReqRespMatching({record(0, slave(1), 5), record(1000, slave(2), 6)},
                                                         {record(80, slave(100), 5)});
    const QVariantMap late{{QStringLiteral("timestamp"), timeText(0)},
                           {QStringLiteral("messageType"), QStringLiteral("DELAY_RESP")},
                           {QStringLiteral("sourceIp"), slave(1)},
                           {QStringLiteral("sequenceId"), QStringLiteral("5")},
                           {QStringLiteral("abnormalType"), QStringLiteral("Delay_Resp超时")}};
    const QVariantMap none{{QStringLiteral("timestamp"), timeText(1000)},
                           {QStringLiteral("messageType"), QStringLiteral("DELAY_RESP")},
                           {QStringLiteral("sourceIp"), slave(2)},
                           {QStringLiteral("sequenceId"), QStringLiteral("6")},
                           {QStringLiteral("abnormalType"), QStringLiteral("主节点未回复")}};
    QCOMPARE(result.second, (QList<QVariant>{late, none}));
}

void TestPacketAnalysisWorkerChecks::matching_hostileSequenceIds_takeNoTime()
{
    // All with one sequence id, and every response too late for its own and too early for the next request.
    const int count = 50'000;
    Records delayReq;
    Records delayResp;
    for (int i = 0; i < count; ++i) {
        delayReq.append(record(qint64(i) * 1000, slave(1), 5));
        delayResp.append(record(qint64(i) * 1000 + 500, slave(100), 5));
    }
    const PacketAnalysisWorker worker;
    QElapsedTimer timer;
    timer.start();
    const auto result = worker.checkDelayReqRespMatching(delayReq, delayResp);
#ifndef SWITCHPANEL_SANITIZED
    QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
#endif
    QCOMPARE(result.first, QStringLiteral("异常 (匹配率: 0.0%, 匹配: 0/50000, 超时: 0, 无回复: 50000)"));
    QCOMPARE(result.second.size(), count);
}

void TestPacketAnalysisWorkerChecks::health_verdict_data()
{
    QTest::addColumn<Records>("announce");
    QTest::addColumn<Records>("delayReq");
    QTest::addColumn<Records>("delayResp");
    QTest::addColumn<int>("expectedSlaves");
    QTest::addColumn<QString>("verdict");
    const QString normal = QStringLiteral("正常");
    const QString abnormal = QStringLiteral("异常");
    // Twenty seconds, and the Sync that is left out behind them.
    const Records goodReq = requests(20, hosts(1, 1), 100);
    const Records goodResp = requests(20, hosts(1, 1), 110);
    QTest::newRow("all well") << evenly(10, 2000) << goodReq << goodResp << 1 << normal;
    QTest::newRow("no delay messages, nobody expected") << evenly(10, 2000) << Records() << Records() << 0 << normal;
    QTest::newRow("announces at the wrong interval") << evenly(10, 2200) << goodReq << goodResp << 1 << abnormal;
    // One abnormal gap in eleven leaves every status normal, but the matching status is never the bare word.
    QTest::newRow("one finding, all statuses normal, requests there")
        << evenly(10, 2000) + recordsAt({25'000}) << goodReq << goodResp << 1 << abnormal;
    QTest::newRow("one finding, all statuses normal, no requests")
        << evenly(10, 2000) + recordsAt({25'000}) << Records() << Records() << 0 << normal;
    QTest::newRow("a slave silent") << evenly(10, 2000) << goodReq << goodResp << 2 << abnormal;
    QTest::newRow("the master silent") << evenly(10, 2000) << goodReq << Records() << 1 << abnormal;
    QTest::newRow("one announce only: insufficient data, no finding")
        << recordsAt({0}) << goodReq << goodResp << 1 << normal;
}

void TestPacketAnalysisWorkerChecks::health_verdict()
{
    QFETCH(const Records, announce);
    QFETCH(const Records, delayReq);
    QFETCH(const Records, delayResp);
    QFETCH(const int, expectedSlaves);
    QFETCH(const QString, verdict);
    const PacketAnalysisWorker worker;
    const QVariantMap health = worker.performHealthCheckFromStream(announce, evenly(21, 1000), evenly(21, 1000),
                                                                   delayReq, delayResp, expectedSlaves);
    QCOMPARE(status(health, "overallHealthStatus"), verdict);
}

void TestPacketAnalysisWorkerChecks::health_emptyLists_haveTheirTexts()
{
    const PacketAnalysisWorker worker;
    const QVariantMap expected{{QStringLiteral("announceIntervalStatus"), QStringLiteral("无Announce消息")},
                               {QStringLiteral("syncIntervalStatus"), QStringLiteral("无Sync消息")},
                               {QStringLiteral("followUpIntervalStatus"), QStringLiteral("无Follow_up消息")},
                               {QStringLiteral("slaveResponseStatus"), QStringLiteral("无Sync消息")},
                               {QStringLiteral("delayReqRespMatchingStatus"), QStringLiteral("无Delay_Req消息")},
                               {QStringLiteral("abnormalPackets"), QVariantList()},
                               {QStringLiteral("overallHealthStatus"), QStringLiteral("正常")}};
    QCOMPARE(worker.performHealthCheckFromStream({}, {}, {}, {}, {}, 9), expected);
}

void TestPacketAnalysisWorkerChecks::health_findings_areSortedByTime()
{
    const PacketAnalysisWorker worker;
    // Interval findings bear two times, which are none: they come first, as they were collected. The others follow by
    // time; at equal times the silent slaves stay in front of the unanswered requests.
    const Records announce = recordsAt({0, 5000});
    const Records syncs = recordsAt({0, 1000, 2500, 3000});
    const Records followUp = recordsAt({0, 3000});
    const Records delayReq{record(2000, slave(1), 9), record(500, slave(1), 8)};
    const QVariantMap health = worker.performHealthCheckFromStream(announce, syncs, followUp, delayReq, {}, 2);
    const QList<QVariant> findings = health.value(QStringLiteral("abnormalPackets")).toList();
    QStringList described;
    for (const QVariant &finding : findings) {
        const QVariantMap map = finding.toMap();
        described.append(QStringLiteral("%1 %2 %3")
                             .arg(map.value(QStringLiteral("messageType")).toString(),
                                  map.value(QStringLiteral("timestamp")).toString(),
                                  map.value(QStringLiteral("sourceIp")).toString()));
    }
    const QString master = QStringLiteral("10.0.0.100");
    QStringList expected{QStringLiteral("Announce %1 ~ %2 %3").arg(timeText(0), timeText(5000), master),
                         QStringLiteral("Sync %1 ~ %2 %3").arg(timeText(1000), timeText(2500), master),
                         QStringLiteral("Follow_Up %1 ~ %2 %3").arg(timeText(0), timeText(3000), master)};
    // Windows at 0, 1000 and 2000; slave 2 never answers, slave 1 not in the second.
    expected.append(QStringLiteral("DELAY_REQ %1 %2").arg(timeText(0), slave(2)));
    expected.append(QStringLiteral("DELAY_RESP %1 %2").arg(timeText(500), slave(1)));
    QStringList secondWindow{QStringLiteral("DELAY_REQ %1 %2").arg(timeText(1000), slave(1)),
                             QStringLiteral("DELAY_REQ %1 %2").arg(timeText(1000), slave(2))};
    QCOMPARE(described.size(), 9);
    QCOMPARE(described.mid(0, 5), expected);
    QCOMPARE(sorted(described.mid(5, 2)), secondWindow);
    QCOMPARE(described.mid(7), (QStringList{QStringLiteral("DELAY_REQ %1 %2").arg(timeText(2000), slave(2)),
                                            QStringLiteral("DELAY_RESP %1 %2").arg(timeText(2000), slave(1))}));
    verifyShape(findings);
}

void TestPacketAnalysisWorkerChecks::health_insufficientData_doesNotCountWithoutFindings()
{
    const PacketAnalysisWorker worker;
    const QVariantMap health =
        worker.performHealthCheckFromStream(recordsAt({0}), recordsAt({0, 10}), recordsAt({0}), {}, {}, 9);
    QCOMPARE(status(health, "announceIntervalStatus"), QStringLiteral("数据不足"));
    QCOMPARE(status(health, "slaveResponseStatus"), QStringLiteral("数据不足"));
    QCOMPARE(health.value(QStringLiteral("abnormalPackets")).toList(), QVariantList());
    QCOMPARE(status(health, "overallHealthStatus"), QStringLiteral("正常"));
}

QTEST_GUILESS_MAIN(TestPacketAnalysisWorkerChecks)
#include "tst_packetanalysisworker_checks.moc"
