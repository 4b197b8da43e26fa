#include <capturereport.h>

#include <QtTest/QtTest>

namespace {

const Painter kPlain(false);

QVariantMap finding(const QString &abnormalType, const QString &source, const QString &timestamp)
{
    return {{QStringLiteral("abnormalType"), abnormalType},
            {QStringLiteral("messageType"), QStringLiteral("DELAY_RESP")},
            {QStringLiteral("sourceIp"), source},
            {QStringLiteral("sequenceId"), QStringLiteral("483")},
            {QStringLiteral("timestamp"), timestamp}};
}

CaptureReport healthyReport()
{
    CaptureReport report;
    report.filePath = QStringLiteral("site.pcap");
    report.verdict = QStringLiteral("正常");
    report.announceStatus = QStringLiteral("正常");
    report.syncStatus = QStringLiteral("正常");
    report.followUpStatus = QStringLiteral("数据不足");
    report.slaveStatus = QStringLiteral("正常");
    report.matchingStatus = QStringLiteral("正常 (匹配率: 100.0%, 匹配: 8/8)");
    report.masterClock = QStringLiteral("10.0.0.10");
    report.captureTime = QStringLiteral("2026-11-20 15:33:26 --- 2026-11-20 15:34:22");
    report.packetsRead = 30;
    report.recordsKept = 20;
    report.expectedSlaves = 2;
    report.slaveInterval = 1.5;
    report.messageTypes = {{QStringLiteral("SYNC"), 2},
                           {QStringLiteral("DELAY_REQ"), 8},
                           {QStringLiteral("DELAY_RESP"), 8},
                           {QStringLiteral("MANAGEMENT"), 2}};
    report.domains = {{QStringLiteral("0"), 18}, {QStringLiteral("7"), 2}};
    report.sources = {{QStringLiteral("10.0.0.10"), 12}, {QStringLiteral("10.0.0.9"), 7}, {QString(), 1}};
    report.clockPorts = 3;
    report.syncSessions = {QVariantMap{{QStringLiteral("masterPort"), QStringLiteral("00:1b:19:ff:fe:00:00:01-1")},
                                       {QStringLiteral("clockOffset"), -10'786.4},
                                       {QStringLiteral("pathDelay"), 10'739.0},
                                       {QStringLiteral("hasValidSync"), true}},
                           QVariantMap{{QStringLiteral("masterPort"), QStringLiteral("00:1b:19:ff:fe:00:00:02-1")},
                                       {QStringLiteral("clockOffset"), 0.0},
                                       {QStringLiteral("pathDelay"), 0.0},
                                       {QStringLiteral("hasValidSync"), false}}};
    return report;
}

CaptureReport reportWithOneFinding()
{
    CaptureReport report = healthyReport();
    report.verdict = QStringLiteral("异常");
    report.findings = {finding(QStringLiteral("Delay_Resp超时"), QStringLiteral("10.0.0.9"),
                               QStringLiteral("2026-11-20 15:35:18.679"))};
    return report;
}

QString text(const CaptureReport &report, Language language = Language::English)
{
    return reportLines(report, language, kPlain).join(QLatin1Char('\n'));
}

const QString kDecisive = QStringLiteral("No check reads abnormal. The verdict is abnormal because of:");

} // namespace

class TestCaptureReport : public QObject
{
    Q_OBJECT

private slots:
    void reportLines_wholeReport();
    void reportLines_inChinese();
    void reportLines_findingsAreGrouped();
    void reportLines_namesTheFindingThatDecides();
    void reportLines_abnormalCheckNeedsNoExplanation();
    void reportLines_manyDecisiveFindings();
    void reportLines_trimmedRecordsAreTold();
    void reportLines_noMessages();
    void reportLines_interrupted();
    void reportLines_longListsAreCut();
    void reportLines_hostileFileNameCannotSteerTheTerminal();
    void reportLines_colours();
    void summaryLines_oneLinePerCapture();
    void verdictLine_saysTheVerdict();
    void exitStatus_followsTheVerdict_data();
    void exitStatus_followsTheVerdict();
    void worse_ordersTheStatuses();
};

void TestCaptureReport::reportLines_wholeReport()
{
    const QStringList expected{
        "Capture: site.pcap",
        "Verdict: normal",
        "",
        "Checks",
        "  Announce interval   normal",
        "  Sync interval       normal",
        "  Follow_Up interval  not enough data",
        "  Slave response      normal",
        "  Delay matching      normal (match rate: 100.0%, matched: 8/8)",
        "",
        "Network",
        "  Master clock     10.0.0.10",
        "  Capture time     2026-11-20 15:33:26 --- 2026-11-20 15:34:22",
        "  Packets read     30",
        "  PTP messages     20",
        "                   ANNOUNCE 0, SYNC 2, FOLLOW_UP 0, DELAY_REQ 8, DELAY_RESP 8, MANAGEMENT 2",
        "  Domains          0, 7",
        "  Clock ports      3",
        "  Expected slaves  2, in windows of 1.5 s",
        "",
        "Messages by source",
        "  (no IPv4 address)   1",
        "  10.0.0.9            7",
        "  10.0.0.10          12  master",
        "",
        "Sync sessions",
        "  Master port                Offset (ns)  Path delay (ns)",
        "  00:1b:19:ff:fe:00:00:01-1       -10786            10739",
        "  00:1b:19:ff:fe:00:00:02-1            -                -  no complete exchange",
        "",
        "Findings: 0",
    };
    QCOMPARE(reportLines(healthyReport(), Language::English, kPlain), expected);
}

void TestCaptureReport::reportLines_inChinese()
{
    const QStringList lines = reportLines(healthyReport(), Language::Chinese, kPlain);
    QCOMPARE(lines.mid(0, 9),
             QStringList({"抓包文件：site.pcap", "结论：正常", "", "检查项", "  Announce间隔   正常",
                          "  Sync间隔       正常", "  Follow_Up间隔  数据不足", "  从节点回复     正常",
                          "  Delay匹配      正常 (匹配率: 100.0%, 匹配: 8/8)"}));
    QVERIFY(lines.contains("  10.0.0.10       12  主时钟"));
}

void TestCaptureReport::reportLines_findingsAreGrouped()
{
    CaptureReport report = reportWithOneFinding();
    report.slaveStatus = QStringLiteral("异常 (2/4 Sync消息)");
    report.findings.append(finding(QStringLiteral("从节点未回复"), QStringLiteral("未知从节点1"),
                                   QStringLiteral("2026-11-20 15:35:20.000")));
    report.findings.append(finding(QStringLiteral("从节点未回复"), QStringLiteral("未知从节点1"),
                                   QStringLiteral("2026-11-20 15:35:21.000")));
    const QStringList lines = reportLines(report, Language::English, kPlain);
    const int heading = lines.indexOf("Findings: 3");
    QVERIFY(heading > 0);
    QCOMPARE(lines.mid(heading + 1),
             QStringList({"  Finding              Message     Source           Count  First                    Last",
                          "  slave did not reply  DELAY_RESP  unknown slave 1      2  2026-11-20 15:35:20.000  "
                          "2026-11-20 15:35:21.000",
                          "  late Delay_Resp      DELAY_RESP  10.0.0.9             1  2026-11-20 15:35:18.679  "
                          "2026-11-20 15:35:18.679"}));
}

void TestCaptureReport::reportLines_namesTheFindingThatDecides()
{
    const QStringList lines = reportLines(reportWithOneFinding(), Language::English, kPlain);
    QCOMPARE(lines.mid(lines.size() - 2),
             QStringList({kDecisive,
                          "  late Delay_Resp: DELAY_RESP from 10.0.0.9, sequence id 483, at 2026-11-20 15:35:18.679"}));
    QVERIFY(text(reportWithOneFinding(), Language::Chinese)
                .endsWith(QStringLiteral(
                    "各检查项均无异常。结论为异常的原因：\n"
                    "  Delay_Resp超时：DELAY_RESP，来自 10.0.0.9，序号 483，时间 2026-11-20 15:35:18.679")));
    QVERIFY(!text(healthyReport()).contains(kDecisive));
}

void TestCaptureReport::reportLines_abnormalCheckNeedsNoExplanation()
{
    CaptureReport report = reportWithOneFinding();
    report.matchingStatus = QStringLiteral("异常 (匹配率: 0.0%, 匹配: 0/1, 超时: 1, 无回复: 0)");
    QVERIFY(text(report).contains(QStringLiteral("match rate: 0.0%, matched: 0/1, late: 1, unanswered: 0")));
    QVERIFY(!text(report).contains(kDecisive));
}

void TestCaptureReport::reportLines_manyDecisiveFindings()
{
    CaptureReport report = reportWithOneFinding();
    while (report.findings.size() < 13)
        report.findings.append(report.findings.first());
    const QString printed = text(report);
    QCOMPARE(printed.count(QStringLiteral("sequence id 483")), 10);
    QVERIFY(printed.endsWith(QStringLiteral("... and 3 more")));
}

void TestCaptureReport::reportLines_trimmedRecordsAreTold()
{
    CaptureReport report = healthyReport();
    report.messageTypes = {{QStringLiteral("SYNC"), 60'001}};
    report.recordsKept = 40'001;
    QVERIFY(text(report).contains(QStringLiteral("PTP messages     60001 (checked: the newest 40001)")));
}

void TestCaptureReport::reportLines_noMessages()
{
    CaptureReport report;
    report.filePath = QStringLiteral("video.pcap");
    report.verdict = QStringLiteral("正常");
    report.captureTime = QStringLiteral("未知");
    const QStringList lines = reportLines(report, Language::English, kPlain);
    QVERIFY(lines.contains("Verdict: not judged"));
    QVERIFY(lines.contains("There is no PTP message in this capture: nothing was judged."));
    QVERIFY(lines.contains("  Master clock     unknown"));
    QVERIFY(lines.contains("  Capture time     unknown"));
    QVERIFY(!lines.contains("Messages by source"));
    QVERIFY(!lines.contains("Sync sessions"));
}

void TestCaptureReport::reportLines_interrupted()
{
    CaptureReport report = healthyReport();
    report.isInterrupted = true;
    QCOMPARE(reportLines(report, Language::English, kPlain).at(2),
             QStringLiteral("Stopped by Ctrl-C: the report covers the 30 packets read until then."));
}

void TestCaptureReport::reportLines_longListsAreCut()
{
    CaptureReport report = reportWithOneFinding();
    report.sources.clear();
    report.findings.clear();
    report.syncSessions.clear();
    for (int i = 0; i < 65; ++i) {
        const QString address = QStringLiteral("10.0.0.%1").arg(i);
        report.sources.insert(address, 1);
        report.findings.append(
            finding(QStringLiteral("主节点未回复"), address, QStringLiteral("2026-11-20 15:35:18.679")));
        report.syncSessions.append(QVariantMap{{QStringLiteral("masterPort"), address}});
    }
    const QString printed = text(report);
    QCOMPARE(printed.count(QStringLiteral("  ... and 5 more\n")), 3);
    QCOMPARE(printed.count(QStringLiteral("master did not reply  DELAY_RESP")), 60);
    QVERIFY(printed.contains(QStringLiteral("\n  10.0.0.59 ")));
    QVERIFY(!printed.contains(QStringLiteral("\n  10.0.0.60 ")));
}

void TestCaptureReport::reportLines_hostileFileNameCannotSteerTheTerminal()
{
    CaptureReport report = healthyReport();
    report.filePath = QStringLiteral("a\x1b[2Jb\n.pcap");
    QCOMPARE(reportLines(report, Language::English, kPlain).first(), QStringLiteral("Capture: a?[2Jb?.pcap"));
    QVERIFY(!summaryLines({report}, Language::English, kPlain).join(QString()).contains(QLatin1Char('\x1b')));
}

void TestCaptureReport::reportLines_colours()
{
    CaptureReport report = reportWithOneFinding();
    report.syncStatus = QStringLiteral("异常 (3/12)");
    const QStringList lines = reportLines(report, Language::English, Painter(true));
    QVERIFY(lines.contains("\x1b[1mVerdict: \x1b[0m\x1b[31mabnormal\x1b[0m"));
    QVERIFY(lines.contains("  Announce interval   \x1b[32mnormal\x1b[0m"));
    QVERIFY(lines.contains("  Sync interval       \x1b[31mabnormal (3/12)\x1b[0m"));
    QVERIFY(lines.contains("  Follow_Up interval  \x1b[33mnot enough data\x1b[0m"));
}

void TestCaptureReport::summaryLines_oneLinePerCapture()
{
    CaptureReport failed;
    failed.filePath = QStringLiteral("none.pcap");
    failed.errors = QStringList{QStringLiteral("File does not exist: none.pcap")};
    CaptureReport stopped = healthyReport();
    stopped.filePath = QStringLiteral("抓包.pcap");
    stopped.isInterrupted = true;
    const QStringList expected{"Summary",
                               "  Capture    Verdict       Findings  PTP messages  Master clock",
                               "  site.pcap  normal               0            20  10.0.0.10",
                               "  site.pcap  abnormal             1            20  10.0.0.10",
                               "  none.pcap  not analysed",
                               "  抓包.pcap  stopped              0            20  10.0.0.10"};
    QCOMPARE(summaryLines({healthyReport(), reportWithOneFinding(), failed, stopped}, Language::English, kPlain),
             expected);
    QVERIFY(summaryLines({failed}, Language::Chinese, kPlain).contains("  none.pcap  未能分析"));
}

void TestCaptureReport::verdictLine_saysTheVerdict()
{
    QCOMPARE(verdictLine(healthyReport(), Language::English, kPlain), QStringLiteral("site.pcap: normal"));
    QCOMPARE(verdictLine(reportWithOneFinding(), Language::Chinese, kPlain), QStringLiteral("site.pcap：异常"));
}

void TestCaptureReport::exitStatus_followsTheVerdict_data()
{
    QTest::addColumn<QString>("verdict");
    QTest::addColumn<bool>("hasError");
    QTest::addColumn<bool>("isInterrupted");
    QTest::addColumn<int>("messages");
    QTest::addColumn<int>("status");

    QTest::newRow("normal") << "正常" << false << false << 7 << 0;
    QTest::newRow("abnormal") << "异常" << false << false << 7 << 1;
    QTest::newRow("mostly normal") << "基本正常" << false << false << 7 << 1;
    // The verdict of a view model that has nothing is no verdict.
    QTest::newRow("error") << "正常" << true << false << 0 << 2;
    QTest::newRow("nothing to judge") << "正常" << false << false << 0 << 2;
    QTest::newRow("stopped") << "正常" << false << true << 7 << 130;
    QTest::newRow("stopped, then an error") << "正常" << true << true << 0 << 130;
}

void TestCaptureReport::exitStatus_followsTheVerdict()
{
    QFETCH(QString, verdict);
    QFETCH(bool, hasError);
    QFETCH(bool, isInterrupted);
    QFETCH(int, messages);
    CaptureReport report;
    report.verdict = verdict;
    if (messages > 0)
        report.messageTypes = {{QStringLiteral("SYNC"), messages}};
    report.isInterrupted = isInterrupted;
    if (hasError)
        report.errors.append(QStringLiteral("Analysis error: x"));
    QTEST(static_cast<int>(exitStatusOf(report)), "status");
}

void TestCaptureReport::worse_ordersTheStatuses()
{
    const ExitStatus ascending[] = {ExitStatus::Healthy, ExitStatus::Abnormal, ExitStatus::Failed,
                                    ExitStatus::Interrupted};
    for (std::size_t i = 0; i < 4; ++i) {
        for (std::size_t j = 0; j < 4; ++j)
            QCOMPARE(worse(ascending[i], ascending[j]), ascending[std::max(i, j)]);
    }
}

QTEST_APPLESS_MAIN(TestCaptureReport)

#include "tst_capturereport.moc"
