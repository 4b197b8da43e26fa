#include "localtimezone.h"
#include "textanalysis.h"

#include <QtTest>

#include <cmath>
#include <limits>

using namespace textanalysis;
using capturebuilder::CapturedPacket;
using capturebuilder::PtpMessage;
using capturebuilder::PtpType;
using capturebuilder::RecordTime;

namespace {

constexpr qint64 kNoon = 1686830400000; // 2023-06-15 12:00:00 UTC
const QString kNormal = QStringLiteral("正常");

QVariantMap recordAt(const QString &timestamp, const QString &sourceIp = QStringLiteral("10.0.0.1"),
                     const QString &sequenceId = QStringLiteral("1"))
{
    return {{QStringLiteral("timestamp"), timestamp},
            {QStringLiteral("sourceIp"), sourceIp},
            {QStringLiteral("sequenceId"), sequenceId}};
}

/// A record so many milliseconds after noon.
QVariantMap recordAt(qint64 offset, const QString &sourceIp = QStringLiteral("10.0.0.1"),
                     const QString &sequenceId = QStringLiteral("1"))
{
    return recordAt(timeText(kNoon + offset), sourceIp, sequenceId);
}

Records recordsAt(const QList<qint64> &offsets)
{
    Records records;
    for (const qint64 offset : offsets)
        records.append(recordAt(offset));
    return records;
}

/// `gaps` times `normalMs`, but the first `abnormal` gaps last `abnormalMs`.
Records spaced(int gaps, int abnormal, qint64 normalMs, qint64 abnormalMs)
{
    Records records = recordsAt({0});
    qint64 offset = 0;
    for (int i = 0; i < gaps; ++i) {
        offset += i < abnormal ? abnormalMs : normalMs;
        records.append(recordAt(offset));
    }
    return records;
}

QString part(const QVariant &finding, const char *key)
{
    return finding.toMap().value(QLatin1String(key)).toString();
}

QStringList parts(const QList<QVariant> &findings, const char *key)
{
    QStringList list;
    for (const QVariant &finding : findings)
        list.append(part(finding, key));
    return list;
}

QVariant at(const QVariantMap &map, const char *outer, const char *inner)
{
    return map.value(QLatin1String(outer)).toMap().value(QLatin1String(inner));
}

CapturedPacket message(PtpType type, qint64 milliseconds, const QString &source = QStringLiteral("10.0.0.100"))
{
    PtpMessage ptp;
    ptp.type = type;
    return capturebuilder::ptpOverUdp(RecordTime::fromMilliseconds(milliseconds), source, ptp);
}

} // namespace

class TestTextAnalysis : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void milliseconds_truncateTowardsZero();
    void texts_ofPortsAndTimes();
    void record_announce_hasEveryKey();
    void record_delayResp_hasNoOriginTimestamp();
    void record_withoutIpv4_hasNoSource();
    void record_negativeCorrection_isALargeNumber();

    void filters_compareAsTheyShould();
    void filters_dropWhatDoesNotParse();
    void lastSync_isTheLatestNotTheLastOne();

    void interval_fewMessages_data();
    void interval_fewMessages();
    void interval_toleranceAndShare_data();
    void interval_toleranceAndShare();
    void interval_findingNamesBothTimes();
    void interval_badTimeBreaksTwoIntervals();

    void slaves_noWindows_data();
    void slaves_noWindows();
    void slaves_expectedNetworkFromAnAddress();
    void slaves_noRequests_expectThePrivateNetwork();
    void slaves_moreThanExpected_allAreExpected();
    void slaves_requestAtWindowEnd_belongsToTheNext();
    void slaves_tenPercent_isNormal_data();
    void slaves_tenPercent_isNormal();
    void slaves_windowLength_data();
    void slaves_windowLength();
    void slaves_noneExpected_isAlwaysNormal();
    void slaves_absurdCount_isRefused();

    void matching_delays_data();
    void matching_delays();
    void matching_rate_data();
    void matching_rate();
    void matching_oneResponseServesTwoRequests();
    void matching_invalidTimesAreNotCounted();

    void health_emptyCapture();
    void health_healthySite_isNormalWithoutFindings();
    void health_findingsAreSortedWithRangesWhereInvalidTimesSort();
    void health_lateAnswer_isAbnormal();
    void health_withoutSync_nothingIsFiltered();
    void health_requestAtTheLastSync_isDropped();

    void statistics_syncTimes_data();
    void statistics_syncTimes();
    void statistics_withoutAnyTime_wrap();
    void statistics_masterIsTheFirstAddressOfASync();
    void statistics_countsSurviveTrimming();
    void statistics_typesAreExact();
    void analyse_reportsProgress();
    void analyse_ambiguousHour_isReadAsSummerTime();

    void differences_typesCount();
    void differences_nameThePath();
    void differences_missingSlavesOfAWindowAreASet();
};

void TestTextAnalysis::init()
{
    QVERIFY(setLocalTimeZone("UTC"));
}

void TestTextAnalysis::milliseconds_truncateTowardsZero()
{
    QCOMPARE(milliseconds({1, 1999999}), 1001);
    QCOMPARE(milliseconds({1, 2500000000U}), 3500);
    QCOMPARE(milliseconds({-1, 999600000}), 0);
    QCOMPARE(milliseconds({-2, 500000000}), -1500);
    QCOMPARE(timeText(milliseconds({-2, 500000000})), QStringLiteral("1969-12-31 23:59:58.500"));
}

void TestTextAnalysis::texts_ofPortsAndTimes()
{
    QCOMPARE(toText(capturebuilder::PortIdentity{{{0, 0x1b, 0x19, 0xff, 0xfe, 0, 0xa, 1}}, 65535}),
             QStringLiteral("00:1b:19:ff:fe:00:0a:01-65535"));
    QCOMPARE(toText(capturebuilder::PtpTimestamp{0xffffffffffffULL, 5}), QStringLiteral("281474976710655.000000005"));
}

void TestTextAnalysis::record_announce_hasEveryKey()
{
    CapturedPacket packet = message(PtpType::Announce, kNoon + 7);
    packet.message->sequenceId = 65535;
    packet.message->domainNumber = 127;
    packet.message->announce.currentUtcOffset = -1;
    packet.message->announce.clockClass = 6;
    packet.message->announce.clockAccuracy = 0x21;
    packet.message->announce.offsetScaledLogVariance = 0x4e5d;
    packet.message->announce.stepsRemoved = 3;
    packet.message->timestamp = {12, 34};
    const QVariantMap expected{
        {QStringLiteral("timestamp"), QStringLiteral("2023-06-15 12:00:00.007")},
        {QStringLiteral("sourceIp"), QStringLiteral("10.0.0.100")},
        {QStringLiteral("messageType"), QStringLiteral("ANNOUNCE")},
        {QStringLiteral("sequenceId"), QStringLiteral("65535")},
        {QStringLiteral("domainNumber"), QStringLiteral("127")},
        {QStringLiteral("sourcePortId"), QStringLiteral("00:1b:19:ff:fe:00:00:01-1")},
        {QStringLiteral("messageLength"), QStringLiteral("64")},
        {QStringLiteral("correctionField"), QStringLiteral("0")},
        {QStringLiteral("originTimestamp"), QStringLiteral("12.000000034")},
        {QStringLiteral("currentUtcOffset"), QStringLiteral("-1")},
        {QStringLiteral("grandmasterPriority1"), QStringLiteral("128")},
        {QStringLiteral("grandmasterClockQuality"), QStringLiteral("102846045")}, // 0x06214e5d
        {QStringLiteral("grandmasterPriority2"), QStringLiteral("128")},
        {QStringLiteral("grandmasterIdentity"), QStringLiteral("00:1b:19:ff:fe:00:00:01")},
        {QStringLiteral("stepsRemoved"), QStringLiteral("3")},
        {QStringLiteral("timeSource"), QStringLiteral("160")},
    };
    QCOMPARE(record(packet), expected);
}

void TestTextAnalysis::record_delayResp_hasNoOriginTimestamp()
{
    CapturedPacket packet = message(PtpType::DelayResp, kNoon);
    packet.message->timestamp = {1, 2};
    packet.message->requestingPortIdentity.portNumber = 9;
    const QVariantMap found = record(packet);
    QCOMPARE(found.value(QStringLiteral("receiveTimestamp")).toString(), QStringLiteral("1.000000002"));
    QCOMPARE(found.value(QStringLiteral("requestingPortIdentity")).toString(),
             QStringLiteral("00:1b:19:ff:fe:00:00:01-9"));
    QVERIFY(!found.contains(QStringLiteral("originTimestamp")));
    QCOMPARE(found.size(), 10);
}

void TestTextAnalysis::record_withoutIpv4_hasNoSource()
{
    CapturedPacket packet = message(PtpType::Sync, kNoon);
    packet.frame.ipv4Source.reset();
    QVERIFY(!record(packet).contains(QStringLiteral("sourceIp")));
    const Outcome outcome = analyse({packet});
    QCOMPARE(at(outcome.statistics, "sourceIps", "").toInt(), 1);
}

void TestTextAnalysis::record_negativeCorrection_isALargeNumber()
{
    CapturedPacket packet = message(PtpType::Sync, kNoon);
    packet.message->correctionField = -1;
    QCOMPARE(record(packet).value(QStringLiteral("correctionField")).toString(),
             QStringLiteral("18446744073709551615"));
}

void TestTextAnalysis::filters_compareAsTheyShould()
{
    const Records records = recordsAt({-1, 0, 1});
    QCOMPARE(filterDataBeforeTimestamp(records, kNoon), recordsAt({-1, 0}));
    QCOMPARE(filterDelayMessagesBeforeLastSync(records, kNoon), recordsAt({-1}));
    QCOMPARE(filterSyncMessagesBeforeLastSync(records, kNoon), recordsAt({-1}));
    QCOMPARE(filterSyncMessagesBeforeLastSync(recordsAt({0}), kNoon), Records());
    QCOMPARE(filterSyncMessagesBeforeLastSync(recordsAt({0, 5, 5}), kNoon + 5), recordsAt({0}));
}

void TestTextAnalysis::filters_dropWhatDoesNotParse()
{
    const qint64 never = std::numeric_limits<qint64>::max();
    const Records records{recordAt(QString()), recordAt(QStringLiteral("2023-06-15")), QVariantMap(), recordAt(0)};
    QCOMPARE(filterDataBeforeTimestamp(records, never), recordsAt({0}));
    QCOMPARE(filterDelayMessagesBeforeLastSync(records, never), recordsAt({0}));
    QCOMPARE(filterSyncMessagesBeforeLastSync(records, never), recordsAt({0}));
    QCOMPARE(lastSyncTime(records), kNoon);
}

void TestTextAnalysis::lastSync_isTheLatestNotTheLastOne()
{
    QCOMPARE(lastSyncTime(recordsAt({5, 9, 7})), kNoon + 9);
    QCOMPARE(lastSyncTime({}), std::numeric_limits<qint64>::min());
    QCOMPARE(lastSyncTime({recordAt(QString())}), std::numeric_limits<qint64>::min());
}

void TestTextAnalysis::interval_fewMessages_data()
{
    QTest::addColumn<int>("messages");
    QTest::addColumn<QString>("status");
    QTest::newRow("none") << 0 << QStringLiteral("无消息");
    QTest::newRow("one") << 1 << QStringLiteral("数据不足");
    QTest::newRow("two") << 2 << kNormal;
}

void TestTextAnalysis::interval_fewMessages()
{
    QFETCH(int, messages);
    QFETCH(QString, status);
    const CheckResult result =
        checkMessageInterval(recordsAt({0, 2000}).mid(0, messages), 2000, QStringLiteral("Announce"));
    QCOMPARE(result.first, status);
    QVERIFY(result.second.isEmpty());
}

void TestTextAnalysis::interval_toleranceAndShare_data()
{
    QTest::addColumn<int>("gaps");
    QTest::addColumn<int>("odd");
    QTest::addColumn<int>("oddMs");
    QTest::addColumn<int>("findings");
    QTest::addColumn<QString>("status");
    QTest::newRow("all 100 ms long") << 7 << 7 << 1100 << 0 << kNormal;
    QTest::newRow("all 100 ms short") << 7 << 7 << 900 << 0 << kNormal;
    QTest::newRow("all 101 ms long") << 7 << 7 << 1101 << 7 << QStringLiteral("异常 (7/7)");
    QTest::newRow("all 101 ms short") << 7 << 7 << 899 << 7 << QStringLiteral("异常 (7/7)");
    QTest::newRow("backwards") << 1 << 1 << -1000 << 1 << QStringLiteral("异常 (1/1)");
    QTest::newRow("ten percent") << 100 << 10 << 2000 << 10 << kNormal;
    QTest::newRow("eleven percent") << 100 << 11 << 2000 << 11 << QStringLiteral("异常 (11/100)");
}

void TestTextAnalysis::interval_toleranceAndShare()
{
    QFETCH(int, gaps);
    QFETCH(int, odd);
    QFETCH(int, oddMs);
    QFETCH(int, findings);
    QFETCH(QString, status);
    const CheckResult result = checkMessageInterval(spaced(gaps, odd, 1000, oddMs), 1000, QStringLiteral("Sync"));
    QCOMPARE(result.first, status);
    QCOMPARE(result.second.size(), findings);
}

void TestTextAnalysis::interval_findingNamesBothTimes()
{
    const Records messages{recordAt(0, QStringLiteral("a"), QStringLiteral("1")),
                           recordAt(1500, QStringLiteral("b"), QStringLiteral("2"))};
    const CheckResult result = checkMessageInterval(messages, 1000, QStringLiteral("Follow_Up"));
    const QVariantMap expected{
        {QStringLiteral("timestamp"), QStringLiteral("2023-06-15 12:00:00.000 ~ 2023-06-15 12:00:01.500")},
        {QStringLiteral("messageType"), QStringLiteral("Follow_Up")},
        {QStringLiteral("sourceIp"), QStringLiteral("b")},
        {QStringLiteral("sequenceId"), QStringLiteral("2")},
        {QStringLiteral("abnormalType"), QStringLiteral("时间间隔异常")}};
    QCOMPARE(result.second, QList<QVariant>{expected});
}

void TestTextAnalysis::interval_badTimeBreaksTwoIntervals()
{
    Records messages = recordsAt({0, 1000, 2000, 3000, 4500});
    messages[2] = recordAt(QStringLiteral("bad"));
    const CheckResult result = checkMessageInterval(messages, 1000, QStringLiteral("Sync"));
    QCOMPARE(result.first, QStringLiteral("异常 (1/2)"));
    const Records twoBad{messages.at(2), messages.at(0), messages.at(2)};
    QCOMPARE(checkMessageInterval(twoBad, 1000, QStringLiteral("Sync")).first, QStringLiteral("数据不足"));
}

void TestTextAnalysis::slaves_noWindows_data()
{
    QTest::addColumn<QList<qint64>>("sync");
    QTest::addColumn<QString>("status");
    QTest::newRow("no Sync") << QList<qint64>() << QStringLiteral("无Sync消息");
    QTest::newRow("one Sync") << QList<qint64>{0} << QStringLiteral("数据不足");
    QTest::newRow("same millisecond") << QList<qint64>{0, 0, 0} << QStringLiteral("数据不足");
    QTest::newRow("last before first") << QList<qint64>{5, 9, 4} << QStringLiteral("数据不足");
}

void TestTextAnalysis::slaves_noWindows()
{
    QFETCH(QList<qint64>, sync);
    QFETCH(QString, status);
    const CheckResult result = checkSlaveResponseWithDetails(recordsAt(sync), {}, std::numeric_limits<int>::max());
    QCOMPARE(result.first, status);
    QVERIFY(result.second.isEmpty());
}

void TestTextAnalysis::slaves_expectedNetworkFromAnAddress()
{
    Records requests;
    for (int second = 0; second < 2; ++second) {
        for (int host = 1; host <= 5; ++host)
            requests.append(recordAt(second * 1000LL + 10LL * host, QStringLiteral("10.0.0.%1").arg(host)));
    }
    const CheckResult result = checkSlaveResponseWithDetails(recordsAt({0, 1000, 2000}), requests, 9);
    QCOMPARE(result.first, QStringLiteral("异常 (2/2 Sync消息)"));
    const QStringList missing{QStringLiteral("10.0.0.6"), QStringLiteral("10.0.0.7"), QStringLiteral("10.0.0.8"),
                              QStringLiteral("10.0.0.9")};
    QCOMPARE(parts(result.second, "sourceIp"), missing + missing);
    QCOMPARE(part(result.second.at(4), "timestamp"), QStringLiteral("2023-06-15 12:00:01.000"));
    QCOMPARE(part(result.second.at(4), "sequenceId"), QStringLiteral("2"));
    QCOMPARE(part(result.second.at(4), "messageType"), QStringLiteral("DELAY_REQ"));
    QCOMPARE(part(result.second.at(4), "abnormalType"), QStringLiteral("从节点未回复"));
}

void TestTextAnalysis::slaves_noRequests_expectThePrivateNetwork()
{
    const QStringList expected{QStringLiteral("192.168.100.1"), QStringLiteral("192.168.100.2")};
    const Records sync = recordsAt({0, 1000});
    QCOMPARE(parts(checkSlaveResponseWithDetails(sync, {}, 2).second, "sourceIp"), expected);
    const Records odd{recordAt(5, QStringLiteral("1.2.3"))};
    QCOMPARE(parts(checkSlaveResponseWithDetails(sync, odd, 2).second, "sourceIp"), expected);
}

void TestTextAnalysis::slaves_moreThanExpected_allAreExpected()
{
    Records requests;
    for (int host = 1; host <= 12; ++host)
        requests.append(recordAt(host, QStringLiteral("10.0.0.%1").arg(host)));
    for (int host = 1; host <= 11; ++host)
        requests.append(recordAt(1000 + host, QStringLiteral("10.0.0.%1").arg(host)));
    const CheckResult result = checkSlaveResponseWithDetails(recordsAt({0, 2000}), requests, 9);
    QCOMPARE(result.first, QStringLiteral("异常 (1/2 Sync消息)"));
    QCOMPARE(parts(result.second, "sourceIp"), QStringList{QStringLiteral("10.0.0.12")});
}

void TestTextAnalysis::slaves_requestAtWindowEnd_belongsToTheNext()
{
    const CheckResult result = checkSlaveResponseWithDetails(recordsAt({0, 2000}), recordsAt({1000}), 1);
    QCOMPARE(result.first, QStringLiteral("异常 (1/2 Sync消息)"));
    QCOMPARE(parts(result.second, "sequenceId"), QStringList{QStringLiteral("1")});
    // Out of order and without a time: the list is read by time, and what has none is in no window.
    Records shuffled = recordsAt({1000, 0});
    shuffled.prepend(recordAt(QString()));
    QCOMPARE(checkSlaveResponseWithDetails(recordsAt({0, 2000}), shuffled, 1).first, kNormal);
}

void TestTextAnalysis::slaves_tenPercent_isNormal_data()
{
    QTest::addColumn<int>("silent");
    QTest::addColumn<QString>("status");
    QTest::newRow("one of ten") << 1 << kNormal;
    QTest::newRow("two of ten") << 2 << QStringLiteral("异常 (2/10 Sync消息)");
}

void TestTextAnalysis::slaves_tenPercent_isNormal()
{
    QFETCH(int, silent);
    QFETCH(QString, status);
    Records requests;
    for (int window = silent; window < 10; ++window)
        requests.append(recordAt(window * 1000LL));
    const CheckResult result = checkSlaveResponseWithDetails(recordsAt({0, 10000}), requests, 1);
    QCOMPARE(result.first, status);
    QCOMPARE(result.second.size(), silent);
}

void TestTextAnalysis::slaves_windowLength_data()
{
    QTest::addColumn<double>("interval");
    QTest::addColumn<int>("windows");
    QTest::newRow("1.4") << 1.4 << 12;
    QTest::newRow("1.5") << 1.5 << 6;
    QTest::newRow("2.5") << 2.5 << 4;
    QTest::newRow("7") << 7.0 << 2;
    QTest::newRow("0.4 is one second") << 0.4 << 12;
    QTest::newRow("zero is one second") << 0.0 << 12;
    QTest::newRow("negative is one second") << -3.0 << 12;
    QTest::newRow("not a number is one second") << std::nan("") << 12;
    QTest::newRow("infinity is one second") << std::numeric_limits<double>::infinity() << 12;
    QTest::newRow("beyond all time") << 1e300 << 1;
}

void TestTextAnalysis::slaves_windowLength()
{
    QFETCH(double, interval);
    QFETCH(int, windows);
    const CheckResult result = checkSlaveResponseWithDetails(recordsAt({0, 12000}), {}, 1, interval);
    QCOMPARE(result.second.size(), windows);
    QCOMPARE(result.first, QStringLiteral("异常 (%1/%1 Sync消息)").arg(windows));
}

void TestTextAnalysis::slaves_noneExpected_isAlwaysNormal()
{
    const Records decades{recordAt(QStringLiteral("1970-01-01 00:00:00.000")),
                          recordAt(QStringLiteral("2100-01-01 00:00:00.000"))};
    QCOMPARE(checkSlaveResponseWithDetails(decades, {}, 0).first, kNormal);
    QCOMPARE(checkSlaveResponseWithDetails(decades, {}, -5).first, kNormal);
    // Somebody asks: he is expected then, in every window.
    const CheckResult asked = checkSlaveResponseWithDetails(recordsAt({0, 2000}), recordsAt({500}), -5);
    QCOMPARE(asked.first, QStringLiteral("异常 (1/2 Sync消息)"));
    QCOMPARE(parts(asked.second, "sequenceId"), QStringList{QStringLiteral("2")});
}

void TestTextAnalysis::slaves_absurdCount_isRefused()
{
    const Records sync = recordsAt({0, 1000});
    QVERIFY_EXCEPTION_THROWN(checkSlaveResponseWithDetails(sync, {}, std::numeric_limits<int>::max()), TooManyFindings);
    QVERIFY_EXCEPTION_THROWN(checkSlaveResponseWithDetails(sync, {}, 300001), TooManyFindings);
    QCOMPARE(checkSlaveResponseWithDetails(sync, {}, 300000).second.size(), 300000);
}

void TestTextAnalysis::matching_delays_data()
{
    QTest::addColumn<QList<qint64>>("responses");
    QTest::addColumn<QString>("finding");
    const QString late = QStringLiteral("Delay_Resp超时");
    const QString none = QStringLiteral("主节点未回复");
    QTest::newRow("same millisecond") << QList<qint64>{0} << QString();
    QTest::newRow("50 ms") << QList<qint64>{50} << QString();
    QTest::newRow("51 ms") << QList<qint64>{51} << late;
    QTest::newRow("100 ms") << QList<qint64>{100} << late;
    QTest::newRow("101 ms") << QList<qint64>{101} << none;
    QTest::newRow("before the request") << QList<qint64>{-1} << none;
    QTest::newRow("too early, too late, in time") << QList<qint64>{-1, 101, 20} << QString();
    QTest::newRow("late before in time") << QList<qint64>{60, 20} << late;
    QTest::newRow("no response") << QList<qint64>() << none;
}

void TestTextAnalysis::matching_delays()
{
    QFETCH(QList<qint64>, responses);
    QFETCH(QString, finding);
    const CheckResult result =
        checkDelayReqRespMatching({recordAt(0, QStringLiteral("10.0.0.3"))}, recordsAt(responses));
    if (finding.isEmpty()) {
        QCOMPARE(result.first, QStringLiteral("正常 (匹配率: 100.0%, 匹配: 1/1)"));
        QVERIFY(result.second.isEmpty());
        return;
    }
    const QVariantMap expected{{QStringLiteral("timestamp"), QStringLiteral("2023-06-15 12:00:00.000")},
                               {QStringLiteral("messageType"), QStringLiteral("DELAY_RESP")},
                               {QStringLiteral("sourceIp"), QStringLiteral("10.0.0.3")},
                               {QStringLiteral("sequenceId"), QStringLiteral("1")},
                               {QStringLiteral("abnormalType"), finding}};
    QCOMPARE(result.second, QList<QVariant>{expected});
}

void TestTextAnalysis::matching_rate_data()
{
    QTest::addColumn<int>("late");
    QTest::addColumn<int>("unanswered");
    QTest::addColumn<QString>("status");
    QTest::newRow("nine of ten") << 0 << 1 << QStringLiteral("正常 (匹配率: 90.0%, 匹配: 9/10)");
    QTest::newRow("eight of ten") << 1 << 1 << QStringLiteral("异常 (匹配率: 80.0%, 匹配: 8/10, 超时: 1, 无回复: 1)");
}

void TestTextAnalysis::matching_rate()
{
    QFETCH(int, late);
    QFETCH(int, unanswered);
    QFETCH(QString, status);
    Records requests;
    Records responses;
    for (int i = 0; i < 10; ++i) {
        requests.append(recordAt(i * 1000LL, QString(), QString::number(i)));
        if (i >= unanswered)
            responses.append(recordAt(i * 1000LL + (i < unanswered + late ? 70 : 7), QString(), QString::number(i)));
    }
    const CheckResult result = checkDelayReqRespMatching(requests, responses);
    QCOMPARE(result.first, status);
    QCOMPARE(result.second.size(), late + unanswered);
}

void TestTextAnalysis::matching_oneResponseServesTwoRequests()
{
    const Records requests{recordAt(0, QStringLiteral("a")), recordAt(10, QStringLiteral("b"))};
    QCOMPARE(checkDelayReqRespMatching(requests, recordsAt({20})).first,
             QStringLiteral("正常 (匹配率: 100.0%, 匹配: 2/2)"));
}

void TestTextAnalysis::matching_invalidTimesAreNotCounted()
{
    QCOMPARE(checkDelayReqRespMatching({}, recordsAt({0})).first, QStringLiteral("无Delay_Req消息"));
    QCOMPARE(checkDelayReqRespMatching({recordAt(QString())}, recordsAt({0})).first, QStringLiteral("数据不足"));
    Records responses{recordAt(QStringLiteral("never"))};
    QCOMPARE(checkDelayReqRespMatching(recordsAt({0}), responses).second.size(), 1);
}

void TestTextAnalysis::health_emptyCapture()
{
    const Outcome outcome = analyse({capturebuilder::videoPacket({1700000000, 0}, QStringLiteral("10.0.0.1"))});
    QVERIFY(outcome.results.isEmpty());
    QCOMPARE(outcome.statistics.value(QStringLiteral("totalPackets")), QVariant(0));
    QCOMPARE(outcome.progress, QVector<int>{1});
    const QVariantMap expected{{QStringLiteral("announceIntervalStatus"), QStringLiteral("无Announce消息")},
                               {QStringLiteral("syncIntervalStatus"), QStringLiteral("无Sync消息")},
                               {QStringLiteral("followUpIntervalStatus"), QStringLiteral("无Follow_up消息")},
                               {QStringLiteral("slaveResponseStatus"), QStringLiteral("无Sync消息")},
                               {QStringLiteral("delayReqRespMatchingStatus"), QStringLiteral("无Delay_Req消息")},
                               {QStringLiteral("abnormalPackets"), QVariantList()},
                               {QStringLiteral("overallHealthStatus"), kNormal}};
    QCOMPARE(outcome.statistics.value(QStringLiteral("healthCheck")).toMap(), expected);
}

void TestTextAnalysis::health_healthySite_isNormalWithoutFindings()
{
    const Outcome outcome = analyse(capturebuilder::ptpSite());
    const QVariantMap health = outcome.statistics.value(QStringLiteral("healthCheck")).toMap();
    QCOMPARE(health.value(QStringLiteral("abnormalPackets")).toList(), QVariantList());
    QCOMPARE(health.value(QStringLiteral("slaveResponseStatus")).toString(), kNormal);
    QCOMPARE(health.value(QStringLiteral("delayReqRespMatchingStatus")).toString(),
             QStringLiteral("正常 (匹配率: 100.0%, 匹配: 261/261)")); // 29 seconds before the last Sync, 9 slaves
    QCOMPARE(health.value(QStringLiteral("overallHealthStatus")).toString(), kNormal);
    QCOMPARE(outcome.statistics.value(QStringLiteral("masterClockIp")).toString(), QStringLiteral("192.168.100.100"));
}

void TestTextAnalysis::health_findingsAreSortedWithRangesWhereInvalidTimesSort()
{
    // A range text is an invalid time: before every valid one, or at the epoch, as the version of Qt has it.
    const Records sync = recordsAt({0, 1000, 2500, 3500});
    const Records requests{recordAt(1200, QStringLiteral("10.0.0.1"), QStringLiteral("8"))};
    const QVariantMap health = performHealthCheckFromStream({}, sync, {}, requests, {}, 1);
    QCOMPARE(parts(health.value(QStringLiteral("abnormalPackets")).toList(), "timestamp"),
             QStringList({QStringLiteral("2023-06-15 12:00:01.000 ~ 2023-06-15 12:00:02.500"),
                          QStringLiteral("2023-06-15 12:00:00.000"), QStringLiteral("2023-06-15 12:00:01.200"),
                          QStringLiteral("2023-06-15 12:00:02.000")}));
    QCOMPARE(health.value(QStringLiteral("syncIntervalStatus")).toString(), QStringLiteral("异常 (1/2)"));
    QCOMPARE(health.value(QStringLiteral("overallHealthStatus")).toString(), QStringLiteral("异常"));
}

void TestTextAnalysis::health_lateAnswer_isAbnormal()
{
    capturebuilder::SiteOptions options;
    options.lateEvery = 50;
    const QVariantMap health =
        analyse(capturebuilder::ptpSite(options)).statistics.value(QStringLiteral("healthCheck")).toMap();
    QCOMPARE(health.value(QStringLiteral("abnormalPackets")).toList().size(), 5);
    // The matching status is never the bare word, so any finding makes the verdict abnormal.
    QCOMPARE(health.value(QStringLiteral("overallHealthStatus")).toString(), QStringLiteral("异常"));
}

void TestTextAnalysis::health_withoutSync_nothingIsFiltered()
{
    const QVariantMap health = performHealthCheckFromStream({}, {}, {}, recordsAt({0, 1000}), recordsAt({1}), 9);
    QCOMPARE(health.value(QStringLiteral("delayReqRespMatchingStatus")).toString(),
             QStringLiteral("异常 (匹配率: 50.0%, 匹配: 1/2, 超时: 0, 无回复: 1)"));
    QCOMPARE(health.value(QStringLiteral("slaveResponseStatus")).toString(), QStringLiteral("无Sync消息"));
}

void TestTextAnalysis::health_requestAtTheLastSync_isDropped()
{
    const QVariantMap health =
        performHealthCheckFromStream({}, recordsAt({0, 1000}), {}, recordsAt({999, 1000}), recordsAt({999}), 1);
    QCOMPARE(health.value(QStringLiteral("delayReqRespMatchingStatus")).toString(),
             QStringLiteral("正常 (匹配率: 100.0%, 匹配: 1/1)"));
    QCOMPARE(health.value(QStringLiteral("slaveResponseStatus")).toString(), QStringLiteral("数据不足"));
}

void TestTextAnalysis::statistics_syncTimes_data()
{
    QTest::addColumn<QList<qint64>>("sync");
    QTest::addColumn<qint64>("first");
    QTest::addColumn<qint64>("secondLast");
    QTest::newRow("three") << QList<qint64>{3, 1, 2} << kNoon + 1 << kNoon + 2;
    QTest::newRow("two") << QList<qint64>{3, 1} << kNoon + 1 << kNoon + 1;
    QTest::newRow("one") << QList<qint64>{3} << kNoon + 3 << kNoon + 3;
    QTest::newRow("none") << QList<qint64>() << kNoon - 5 << kNoon + 5;
}

void TestTextAnalysis::statistics_syncTimes()
{
    QFETCH(QList<qint64>, sync);
    QFETCH(qint64, first);
    QFETCH(qint64, secondLast);
    QVector<CapturedPacket> packets{message(PtpType::FollowUp, kNoon + 5), message(PtpType::Signaling, kNoon - 5)};
    for (const qint64 offset : sync)
        packets.append(message(PtpType::Sync, kNoon + offset));
    const QVariantMap range = analyse(packets).statistics.value(QStringLiteral("timeRange")).toMap();
    QCOMPARE(range.value(QStringLiteral("firstSyncTime")), QVariant(first));
    QCOMPARE(range.value(QStringLiteral("secondLastSyncTime")), QVariant(secondLast));
    QCOMPARE(range.value(QStringLiteral("start")), QVariant(kNoon - 5));
    QCOMPARE(range.value(QStringLiteral("end")), QVariant(kNoon + 5));
    QCOMPARE(range.value(QStringLiteral("duration")), QVariant(qint64(10)));
}

void TestTextAnalysis::statistics_withoutAnyTime_wrap()
{
    // The epoch itself is not greater than zero.
    const QVariantMap range =
        analyse({message(PtpType::Sync, 0)}).statistics.value(QStringLiteral("timeRange")).toMap();
    QCOMPARE(range.value(QStringLiteral("start")).toLongLong(), std::numeric_limits<qint64>::max());
    QCOMPARE(range.value(QStringLiteral("end")).toLongLong(), std::numeric_limits<qint64>::min());
    QCOMPARE(range.value(QStringLiteral("duration")).toLongLong(), 1);
    QCOMPARE(range.value(QStringLiteral("firstSyncTime")).toLongLong(), std::numeric_limits<qint64>::max());
}

void TestTextAnalysis::statistics_masterIsTheFirstAddressOfASync()
{
    CapturedPacket nameless = message(PtpType::Sync, kNoon);
    nameless.frame.ipv4Source.reset();
    const QVector<CapturedPacket> packets{message(PtpType::FollowUp, kNoon, QStringLiteral("1.1.1.1")), nameless,
                                          message(PtpType::Sync, kNoon, QStringLiteral("2.2.2.2")),
                                          message(PtpType::Sync, kNoon, QStringLiteral("3.3.3.3"))};
    QCOMPARE(analyse(packets).statistics.value(QStringLiteral("masterClockIp")), QVariant(QStringLiteral("2.2.2.2")));
}

void TestTextAnalysis::statistics_countsSurviveTrimming()
{
    QVector<CapturedPacket> packets{message(PtpType::Sync, kNoon, QStringLiteral("9.9.9.9"))};
    for (int i = 1; i <= 25; ++i)
        packets.append(message(i % 5 == 0 ? PtpType::Announce : PtpType::FollowUp, kNoon + i));
    Settings settings;
    settings.maximumRecords = 20;
    // The 21st message drops four, the 25th four more: 26 - 8 are left.
    const Outcome outcome = analyse(packets, settings);
    QCOMPARE(outcome.results.size(), 18);
    QCOMPARE(outcome.results.first().toMap(), record(packets.at(8)));
    QCOMPARE(outcome.statistics.value(QStringLiteral("totalPackets")).toInt(), 18);
    QCOMPARE(outcome.statistics.value(QStringLiteral("ptpv2Packets")).toInt(), 18);
    QCOMPARE(outcome.statistics.value(QStringLiteral("masterClockIp")).toString(), QStringLiteral("9.9.9.9"));
    QCOMPARE(at(outcome.statistics, "messageTypes", "FOLLOW_UP").toInt(), 20);
    QCOMPARE(at(outcome.statistics, "messageTypes", "SYNC").toInt(), 1);
    // The Announce list is never longer than four when records are dropped, so it keeps all of its five.
    QCOMPARE(at(outcome.statistics, "healthCheck", "announceIntervalStatus").toString(), QStringLiteral("异常 (4/4)"));
}

void TestTextAnalysis::statistics_typesAreExact()
{
    const QVariantMap found = analyse({message(PtpType::Sync, kNoon)}).statistics;
    QCOMPARE(found.keys(),
             QStringList({QStringLiteral("domains"), QStringLiteral("healthCheck"), QStringLiteral("masterClockIp"),
                          QStringLiteral("messageTypes"), QStringLiteral("ptpv2Packets"), QStringLiteral("sourceIps"),
                          QStringLiteral("sourcePorts"), QStringLiteral("timeRange"), QStringLiteral("totalPackets")}));
    QCOMPARE(found.value(QStringLiteral("totalPackets")).userType(), int(QMetaType::Int));
    QCOMPARE(at(found, "domains", "0").userType(), int(QMetaType::Int));
    QCOMPARE(at(found, "timeRange", "start").userType(), int(QMetaType::LongLong));
    QCOMPARE(at(found, "timeRange", "duration").userType(), int(QMetaType::LongLong));
    QCOMPARE(at(found, "healthCheck", "abnormalPackets").userType(), int(QMetaType::QVariantList));
}

void TestTextAnalysis::analyse_reportsProgress()
{
    QVector<CapturedPacket> packets;
    for (int i = 0; i < 2000; ++i)
        packets.append(CapturedPacket());
    QCOMPARE(analyse(packets).progress, QVector<int>({1000, 2000, 2000}));
}

void TestTextAnalysis::analyse_ambiguousHour_isReadAsSummerTime()
{
    QVERIFY(setLocalTimeZone("Europe/Berlin"));
    // 2023-10-29 02:30 happens twice, an hour apart; the text says the same both times.
    const qint64 summerTime = 1698539400000;
    const qint64 winterTime = summerTime + 3600000;
    QCOMPARE(timeText(summerTime), QStringLiteral("2023-10-29 02:30:00.000"));
    QCOMPARE(timeText(winterTime), timeText(summerTime));
    const QVariantMap range = analyse({message(PtpType::Sync, winterTime), message(PtpType::Sync, winterTime + 1000)})
                                  .statistics.value(QStringLiteral("timeRange"))
                                  .toMap();
    QCOMPARE(range.value(QStringLiteral("start")).toLongLong(), summerTime);
    QCOMPARE(range.value(QStringLiteral("end")).toLongLong(), summerTime + 1000);
}

void TestTextAnalysis::differences_typesCount()
{
    QVERIFY(differences(QVariant(1), QVariant(1)).isEmpty());
    QCOMPARE(differences(QVariant(1), QVariant(qint64(1)), QStringLiteral("n")),
             QStringList{QStringLiteral("n: expected int \"1\", found qlonglong \"1\"")});
    QCOMPARE(differences(QVariant(1), QVariant(QStringLiteral("1"))).size(), 1);
}

void TestTextAnalysis::differences_nameThePath()
{
    const QVariantMap expected{{QStringLiteral("a"), QVariantList{1, 2}}, {QStringLiteral("b"), 1}};
    const QVariantMap actual{{QStringLiteral("a"), QVariantList{1, 3, 4}}, {QStringLiteral("c"), 1}};
    QCOMPARE(differences(expected, actual),
             QStringList({QStringLiteral("/a: expected 2 entries, found 3"),
                          QStringLiteral("/a[1]: expected int \"2\", found int \"3\""),
                          QStringLiteral("/b: expected int \"1\", found nothing \"\""),
                          QStringLiteral("/c: expected nothing \"\", found int \"1\"")}));
}

void TestTextAnalysis::differences_missingSlavesOfAWindowAreASet()
{
    const QList<QVariant> findings =
        checkSlaveResponseWithDetails(recordsAt({0, 2000}), {}, 3).second; // two windows of three
    QVariantList swappedInside = findings;
    swappedInside.swapItemsAt(0, 2);
    QVERIFY(differences(findings, swappedInside).isEmpty());
    QVariantList swappedAcross = findings;
    swappedAcross.swapItemsAt(2, 3);
    QVERIFY(!differences(findings, swappedAcross).isEmpty());
    QVariantList replaced = findings;
    replaced[1] = replaced.at(0);
    QVERIFY(!differences(findings, replaced).isEmpty());
}

QTEST_APPLESS_MAIN(TestTextAnalysis)
#include "tst_textanalysis.moc"
