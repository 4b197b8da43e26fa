// What the program says about each sample. The expected figures were worked out without it, from the packet list of
// tshark (tshark -Y ptp -T fields -e frame.time_epoch -e ip.src -e ptp.v2.messagetype -e ptp.v2.sequenceid) by the
// rules of the checks: gaps off by more than 100 ms, one-second windows from the first Sync in which an address asks
// nothing, requests without a response of their sequence id within 50 ms; Delay messages from the last Sync on left
// out.
#include "programrun.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace {

using Counts = QMap<QString, int>;

//! Findings per kind and source.
Counts countedFindings(const QJsonArray &findings)
{
    Counts counts;
    for (const QJsonValue &value : findings) {
        const QJsonObject finding = value.toObject();
        ++counts[finding["abnormalType"].toString() + '|' + finding["messageType"].toString() + '|'
                 + finding["sourceIp"].toString()];
    }
    return counts;
}

//! One kind of finding for the slaves .1 to .9, in this order; a slave without findings has 0.
Counts slaveFindings(const QString &kind, const QVector<int> &counts)
{
    Counts findings;
    for (int i = 0; i < counts.size(); ++i) {
        if (counts[i] > 0)
            findings.insert(QStringLiteral("%1|192.168.100.%2").arg(kind).arg(i + 1), counts[i]);
    }
    return findings;
}

Counts operator+(Counts one, const Counts &other)
{
    for (auto entry = other.cbegin(); entry != other.cend(); ++entry)
        one.insert(entry.key(), entry.value());
    return one;
}

QString matched(int matched, int total, const char *rate)
{
    return QStringLiteral("正常 (匹配率: %1%, 匹配: %2/%3)").arg(QLatin1String(rate)).arg(matched).arg(total);
}

const QString kNormal = QStringLiteral("正常");

} // namespace

class TestSamples : public QObject
{
    Q_OBJECT

private slots:
    void sample_data();
    void sample();
};

void TestSamples::sample_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("exitStatus");
    QTest::addColumn<Counts>("messages");      // ANNOUNCE, SYNC, ... as tshark counts them
    QTest::addColumn<QStringList>("statuses"); // Announce, Sync, Follow_Up, slaves, matching
    QTest::addColumn<Counts>("findings");

    const auto messages = [](int announce, int sync, int followUp, int request, int response) {
        return Counts{{"ANNOUNCE", announce},
                      {"SYNC", sync},
                      {"FOLLOW_UP", followUp},
                      {"DELAY_REQ", request},
                      {"DELAY_RESP", response}};
    };
    const QString silent = QStringLiteral("从节点未回复|DELAY_REQ");
    const QString late = QStringLiteral("Delay_Resp超时|DELAY_RESP");
    const QString unanswered = QStringLiteral("主节点未回复|DELAY_RESP");

    // 24 of the 2117 requests stand at or behind the last Sync.
    QTest::newRow("healthy.pcap") << QStringList{} << 0 << messages(29, 58, 58, 2117, 2116)
                                  << QStringList{kNormal, kNormal, kNormal, kNormal, matched(2093, 2093, "100.0")}
                                  << Counts{};

    QTest::newRow("trunk-port.pcap") << QStringList{} << 0 << messages(13, 26, 26, 461, 460)
                                     << QStringList{kNormal, kNormal, kNormal, kNormal, matched(455, 455, "100.0")}
                                     << Counts{};

    // The answer to frame 395 comes in frame 397, 53.903 ms later.
    QTest::newRow("one-late-response.pcap")
        << QStringList{} << 1 << messages(7, 14, 14, 487, 488)
        << QStringList{kNormal, kNormal, kNormal, kNormal, matched(486, 487, "99.8")}
        << slaveFindings(late, {0, 0, 0, 0, 0, 0, 1, 0, 0});

    // .5 last asks at 15:34:26.629; the first Sync is at 15:34:14.821, so windows 13 to 24 miss it.
    QTest::newRow("slave-lost.pcap") << QStringList{} << 1 << messages(13, 25, 25, 868, 867)
                                     << QStringList{kNormal, kNormal, kNormal, QStringLiteral("异常 (12/24 Sync消息)"),
                                                    matched(836, 836, "100.0")}
                                     << slaveFindings(silent, {0, 0, 0, 0, 12, 0, 0, 0, 0});

    // One gap each in 12 Announce, 22 Sync and 23 Follow_Up intervals: below a tenth.
    QTest::newRow("master-pause.pcap") << QStringList{} << 1 << messages(13, 24, 24, 501, 397)
                                       << QStringList{kNormal, kNormal, kNormal, QStringLiteral("异常 (9/35 Sync消息)"),
                                                      QStringLiteral(
                                                          "异常 (匹配率: 78.6%, 匹配: 383/487, 超时: 0, 无回复: 104)")}
                                       << Counts{{"时间间隔异常|Announce|192.168.100.100", 1},
                                                 {"时间间隔异常|Sync|192.168.100.100", 1},
                                                 {"时间间隔异常|Follow_Up|192.168.100.100", 1}}
                                              + slaveFindings(silent, {7, 7, 7, 7, 7, 8, 9, 8, 8})
                                              + slaveFindings(unanswered, {10, 12, 12, 12, 13, 10, 13, 13, 9});

    QTest::newRow("late-responses.pcap") << QStringList{} << 1 << messages(12, 25, 25, 464, 462)
                                         << QStringList{kNormal, kNormal, kNormal, kNormal,
                                                        QStringLiteral(
                                                            "异常 (匹配率: 7.9%, 匹配: 36/453, 超时: 416, 无回复: 1)")}
                                         << slaveFindings(late, {46, 45, 38, 50, 43, 47, 47, 54, 46})
                                                + slaveFindings(unanswered, {0, 0, 0, 0, 0, 0, 0, 0, 1});

    QTest::newRow("random-requests.pcapng")
        << QStringList{} << 1 << messages(15, 31, 31, 256, 256)
        << QStringList{kNormal, kNormal, kNormal, QStringLiteral("异常 (29/30 Sync消息)"), matched(256, 256, "100.0")}
        << slaveFindings(silent, {9, 9, 8, 9, 9, 6, 7, 7, 9});
    // No slave of it leaves more than 2.004 s between two requests, nor a window of 2 s empty.
    QTest::newRow("random-requests.pcapng, windows of two seconds")
        << QStringList{"--interval", "2"} << 0 << messages(15, 31, 31, 256, 256)
        << QStringList{kNormal, kNormal, kNormal, kNormal, matched(256, 256, "100.0")} << Counts{};
}

void TestSamples::sample()
{
    QFETCH(QStringList, options);
    QFETCH(int, exitStatus);
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    const QString document = folder.filePath(QStringLiteral("out.json"));
    const QString capture = samplePath(QString::fromUtf8(QTest::currentDataTag()).section(',', 0, 0));
    const ProgramRun run =
        runSwitchpanel(QStringList{"analyze", "--lang", "zh", "--json", document, capture} + options);
    QCOMPARE(run.exitStatus, exitStatus);
    QVERIFY(run.printed(exitStatus == 0 ? "结论：正常" : "结论：异常"));
    QVERIFY(run.printed("主时钟      192.168.100.100"));

    QFile file(document);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QJsonObject statistics = QJsonDocument::fromJson(file.readAll()).object()["statistics"].toObject();
    const QJsonObject types = statistics["messageTypes"].toObject();
    Counts messages;
    for (const QString &type : types.keys())
        messages.insert(type, types[type].toInt());
    QTEST(messages, "messages");

    const QJsonObject health = statistics["healthCheck"].toObject();
    const QStringList statuses{health["announceIntervalStatus"].toString(), health["syncIntervalStatus"].toString(),
                               health["followUpIntervalStatus"].toString(), health["slaveResponseStatus"].toString(),
                               health["delayReqRespMatchingStatus"].toString()};
    QTEST(statuses, "statuses");
    for (const QString &status : statuses)
        QVERIFY2(run.output.contains("  " + status + '\n'), qPrintable(status));
    QTEST(countedFindings(health["abnormalPackets"].toArray()), "findings");
}

QTEST_GUILESS_MAIN(TestSamples)

#include "tst_switchpanel_samples.moc"
