// switchpanel analyze as its users run it, output into pipes.
#include "programrun.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace {

const QString kHealthy = samplePath(QStringLiteral("healthy.pcap"));
const QString kOneLate = samplePath(QStringLiteral("one-late-response.pcap"));
const QString kSlaveLost = samplePath(QStringLiteral("slave-lost.pcap"));
constexpr int kPcapHeaderSize = 24; // octets; a capture of no packets

void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64{content.size()});
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestAnalyze : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void healthySample_isNormalAndStatusZero();
    void report_hasNoEscapesOutsideATerminal();
    void progress_isPlainLinesWithoutPercentage();
    void oneFinding_isNamedWhenNoCheckIsAbnormal();
    void language_data();
    void language();
    void decoders_setTheExpectedSlaves_data();
    void decoders_setTheExpectedSlaves();
    void interval_setsTheWindow_data();
    void interval_setsTheWindow();
    void quiet_printsTheVerdictOnly();
    void debugMessages_appearOnRequestOnly_data();
    void debugMessages_appearOnRequestOnly();
    void severalFiles_areSummarised();
    void severalFiles_worstStatusCounts_data();
    void severalFiles_worstStatusCounts();
    void sameFileTwice_givesTheSameReport();
    void noMessages_isNotJudged();
    void errors_areToldWithTheirReason_data();
    void errors_areToldWithTheirReason();
    void fileName_inChinese_data();
    void fileName_inChinese();
    void fileName_withDashNeedsDoubleDash();
    void timeZone_decidesTheTimes();
    void outputThatCannotBeWritten_isAnError();

private:
    QString inFolder(const char *name) const { return _folder->filePath(QString::fromUtf8(name)); }

    std::unique_ptr<QTemporaryDir> _folder;
};

void TestAnalyze::init()
{
    _folder = std::make_unique<QTemporaryDir>();
    QVERIFY(_folder->isValid());
}

void TestAnalyze::healthySample_isNormalAndStatusZero()
{
    const ProgramRun run = runSwitchpanel({"analyze", "--lang", "zh", kHealthy});
    QCOMPARE(run.exitStatus, 0);
    QVERIFY(run.printed("结论：正常"));
    QVERIFY(run.printed("异常数据包：0"));
}

void TestAnalyze::report_hasNoEscapesOutsideATerminal()
{
    const ProgramRun run = runSwitchpanel({"analyze", kSlaveLost, kHealthy}, {"TERM=xterm-256color"});
    QVERIFY(!run.output.isEmpty());
    QVERIFY(!run.output.contains(QLatin1Char('\x1b')));
    QVERIFY(!run.errors.contains(QLatin1Char('\x1b')));
    QVERIFY(!run.output.contains(QLatin1Char('\r')));
    QVERIFY(!run.errors.contains(QLatin1Char('\r')));
}

void TestAnalyze::progress_isPlainLinesWithoutPercentage()
{
    const ProgramRun run = runSwitchpanel({"analyze", kHealthy});
    QStringList lines = run.errors.split('\n');
    QCOMPARE(lines.takeLast(), QString());
    QVERIFY(!lines.isEmpty());
    const QRegularExpression line(QRegularExpression::anchoredPattern(QRegularExpression::escape(kHealthy)
                                                                      + ": (\\d+) packets read, \\d+ packets/s"));
    // One line, and on a machine so slow that the sample takes seconds, one for each before it.
    for (const QString &printed : lines)
        QVERIFY2(line.match(printed).hasMatch(), qPrintable(printed));
    QCOMPARE(line.match(lines.last()).captured(1), QStringLiteral("4400"));
}

void TestAnalyze::oneFinding_isNamedWhenNoCheckIsAbnormal()
{
    const ProgramRun run = runSwitchpanel({"analyze", kOneLate});
    QCOMPARE(run.exitStatus, 1);
    QVERIFY(run.printed("Verdict: abnormal"));
    QVERIFY(run.printed("No check reads abnormal. The verdict is abnormal because of:"));
    // Frame 395 asks, frame 397 answers 53.903 ms later: tshark -Y "ptp.v2.sequenceid == 483".
    QVERIFY(run.printed("late Delay_Resp: DELAY_RESP from 192.168.100.7, sequence id 483, at 2026-11-20 15:35:18.679"));
}

void TestAnalyze::language_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("verdict");

    const QString english = QStringLiteral("Verdict: normal");
    const QString chinese = QStringLiteral("结论：正常");
    QTest::newRow("asked for English") << QStringList{"--lang", "en"} << "zh_CN.UTF-8" << english;
    QTest::newRow("asked for Chinese") << QStringList{"--lang", "zh"} << "en_GB.UTF-8" << chinese;
    QTest::newRow("Chinese, no character set") << QStringList{"--lang", "zh"} << "C" << chinese;
#ifdef Q_OS_UNIX
    QTest::newRow("Chinese locale") << QStringList{} << "zh_CN.UTF-8" << chinese;
    QTest::newRow("Taiwanese locale") << QStringList{} << "zh_TW.UTF-8" << chinese;
    QTest::newRow("English locale") << QStringList{} << "en_GB.UTF-8" << english;
    QTest::newRow("no locale") << QStringList{} << "C" << english;
#endif
}

void TestAnalyze::language()
{
    QFETCH(QStringList, options);
    QFETCH(QString, locale);
    QFETCH(QString, verdict);
    const ProgramRun run = runSwitchpanel(QStringList{"analyze", kHealthy} + options, {"LC_ALL=" + locale});
    QCOMPARE(run.exitStatus, 0);
    QVERIFY2(run.printed(verdict), qPrintable(run.output));
}

void TestAnalyze::decoders_setTheExpectedSlaves_data()
{
    QTest::addColumn<QString>("decoders");
    QTest::addColumn<int>("exitStatus");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("findings");

    // 9 slaves ask. The capture has 57 windows of a second: 58 Syncs a second apart, less the last, and the span of the
    // other 57 begins a new window at its very end because no clock is exact (tshark: 56.004 s).
    QTest::newRow("as on the site") << "10" << 0 << "9, in windows of 1 s"
                                    << "Findings: 0";
    QTest::newRow("one more") << "11" << 1 << "10, in windows of 1 s"
                              << "Findings: 57";
    QTest::newRow("three more") << "13" << 1 << "12, in windows of 1 s"
                                << "Findings: 171";
    // Fewer are expected than are seen: all that are seen must go on.
    QTest::newRow("fewer") << "3" << 0 << "2, in windows of 1 s"
                           << "Findings: 0";
    QTest::newRow("none") << "0" << 0 << "-1, in windows of 1 s"
                          << "Findings: 0";
    QTest::newRow("absurd") << "-2147483648" << 0 << "-2147483648, in windows of 1 s"
                            << "Findings: 0";
}

void TestAnalyze::decoders_setTheExpectedSlaves()
{
    QFETCH(QString, decoders);
    QFETCH(int, exitStatus);
    QFETCH(QString, expected);
    QFETCH(QString, findings);
    const ProgramRun run = runSwitchpanel({"analyze", "--decoders", decoders, kHealthy});
    QCOMPARE(run.exitStatus, exitStatus);
    QVERIFY(run.printed("Expected slaves  " + expected));
    QVERIFY2(run.printed(findings), qPrintable(run.output));
}

void TestAnalyze::interval_setsTheWindow_data()
{
    QTest::addColumn<QString>("interval");
    QTest::addColumn<int>("exitStatus");
    QTest::addColumn<QString>("slaveStatus");

    // The slaves of this sample ask 0 to 2.004 s apart; 31 Syncs, the last one left out, span 29.0 s.
    QTest::newRow("default") << "1" << 1 << "abnormal (29/30 Sync windows)";
    QTest::newRow("rounded down") << "1.4" << 1 << "abnormal (29/30 Sync windows)";
    QTest::newRow("rounded up") << "1.5" << 0 << "normal";
    QTest::newRow("two seconds") << "2" << 0 << "normal";
    QTest::newRow("never below one second") << "0" << 1 << "abnormal (29/30 Sync windows)";
    QTest::newRow("negative") << "-7" << 1 << "abnormal (29/30 Sync windows)";
    QTest::newRow("longer than the capture") << "1e300" << 0 << "normal";
}

void TestAnalyze::interval_setsTheWindow()
{
    QFETCH(QString, interval);
    QFETCH(int, exitStatus);
    QFETCH(QString, slaveStatus);
    const ProgramRun run =
        runSwitchpanel({"analyze", "--interval", interval, samplePath(QStringLiteral("random-requests.pcapng"))});
    QCOMPARE(run.exitStatus, exitStatus);
    QVERIFY2(run.printed("Slave response      " + slaveStatus), qPrintable(run.output));
}

void TestAnalyze::quiet_printsTheVerdictOnly()
{
    const ProgramRun run = runSwitchpanel({"analyze", "--quiet", kHealthy, kSlaveLost});
    QCOMPARE(run.exitStatus, 1);
    QCOMPARE(run.output, kHealthy + QStringLiteral(": normal\n") + kSlaveLost + QStringLiteral(": abnormal\n"));
    QCOMPARE(run.errors, QString());
}

void TestAnalyze::debugMessages_appearOnRequestOnly_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("environment");
    QTest::addColumn<bool>("areShown");

    QTest::newRow("not asked for") << QStringList{} << QStringList{} << false;
    QTest::newRow("by option") << QStringList{"--verbose"} << QStringList{} << true;
    QTest::newRow("by environment") << QStringList{} << QStringList{"QT_LOGGING_RULES=default.debug=true"} << true;
    QTest::newRow("environment against option")
        << QStringList{"--verbose"} << QStringList{"QT_LOGGING_RULES=default.debug=false"} << false;
}

void TestAnalyze::debugMessages_appearOnRequestOnly()
{
    QFETCH(QStringList, options);
    QFETCH(QStringList, environment);
    const ProgramRun run = runSwitchpanel(QStringList{"analyze", kHealthy} + options, environment);
    QCOMPARE(run.exitStatus, 0);
    QTEST(run.errors.contains(QStringLiteral("switchpanel: Total abnormal packets collected: 0")), "areShown");
    QVERIFY(!run.output.contains(QStringLiteral("Total abnormal packets")));
}

void TestAnalyze::severalFiles_areSummarised()
{
    const QString missing = inFolder("none.pcap");
    const ProgramRun run = runSwitchpanel({"analyze", kHealthy, missing, kOneLate});
    QCOMPARE(run.exitStatus, 2);
    QVERIFY(run.printed("Capture: " + kHealthy));
    QVERIFY(run.printed("Capture: " + kOneLate));
    QVERIFY(!run.printed("Capture: " + missing));
    QVERIFY(run.errors.contains("switchpanel: File does not exist: " + missing));

    const int heading = run.outputLines().indexOf("Summary");
    QVERIFY(heading > 0);
    QStringList rows;
    for (const QString &line : run.outputLines().mid(heading + 2))
        rows.append(line.simplified());
    QCOMPARE(rows, QStringList({kHealthy + " normal 0 4378 192.168.100.100", missing + " not analysed",
                                kOneLate + " abnormal 1 1010 192.168.100.100", ""}));
}

void TestAnalyze::severalFiles_worstStatusCounts_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<int>("exitStatus");

    const QString missing = QStringLiteral("/nowhere/none.pcap");
    const QString trunk = samplePath(QStringLiteral("trunk-port.pcap"));
    QTest::newRow("all healthy") << QStringList{kHealthy, trunk} << 0;
    QTest::newRow("abnormal first") << QStringList{kOneLate, kHealthy} << 1;
    QTest::newRow("abnormal last") << QStringList{kHealthy, kOneLate} << 1;
    QTest::newRow("failed first") << QStringList{missing, kOneLate} << 2;
    QTest::newRow("failed last") << QStringList{kOneLate, missing} << 2;
    QTest::newRow("failed among healthy ones") << QStringList{kHealthy, missing, trunk} << 2;
}

void TestAnalyze::severalFiles_worstStatusCounts()
{
    QFETCH(QStringList, files);
    QTEST(runSwitchpanel(QStringList{"analyze"} + files).exitStatus, "exitStatus");
}

void TestAnalyze::sameFileTwice_givesTheSameReport()
{
    const ProgramRun run = runSwitchpanel({"analyze", kSlaveLost, kSlaveLost});
    const QStringList parts = run.output.split("Capture: " + kSlaveLost + '\n');
    QCOMPARE(parts.size(), 3);
    QVERIFY(parts[2].startsWith(parts[1]));
}

void TestAnalyze::noMessages_isNotJudged()
{
    const QString path = inFolder("empty.pcap");
    write(path, contentOf(kHealthy).left(kPcapHeaderSize));
    const ProgramRun run = runSwitchpanel({"analyze", path});
    QCOMPARE(run.exitStatus, 2);
    QVERIFY(run.printed("Verdict: not judged"));
    QCOMPARE(runSwitchpanel({"analyze", "--quiet", path}).output, path + ": not judged\n");
    QCOMPARE(runSwitchpanel({"analyze", "--quiet", path, kHealthy}).exitStatus, 2);
    QVERIFY(run.printed("There is no PTP message in this capture: nothing was judged."));
    QCOMPARE(run.errors, QStringLiteral("switchpanel: %1: no PTP message in it: nothing was judged\n").arg(path));
}

void TestAnalyze::errors_areToldWithTheirReason_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QStringList>("english");
    QTest::addColumn<QStringList>("chinese");

    const QByteArray header = contentOf(kHealthy).left(kPcapHeaderSize);
    constexpr qint64 kTooLarge = 1'073'741'825; // 1 GiB and an octet, in a sparse file
    QTest::newRow("no capture") << QByteArray("PTP traffic of the site, in prose") << qint64{33}
                                << QStringList{"Failed to open pcap file: %1",
                                               "%1: it is not a capture that can be read (pcap or pcapng)"}
                                << QStringList{"无法打开抓包文件：%1", "%1：不是可读取的抓包文件（pcap或pcapng）"};
    QTest::newRow("half a header") << header.left(10) << qint64{10}
                                   << QStringList{"Failed to open pcap file: %1",
                                                  "%1: it is not a capture that can be read (pcap or pcapng)"}
                                   << QStringList{"无法打开抓包文件：%1", "%1：不是可读取的抓包文件（pcap或pcapng）"};
    QTest::newRow("empty") << QByteArray() << qint64{0}
                           << QStringList{"Failed to open pcap file: %1", "%1: it is empty"}
                           << QStringList{"无法打开抓包文件：%1", "%1：文件为空"};
    QTest::newRow("too large") << header << kTooLarge
                               << QStringList{"The file is larger than 1 GiB; choose a smaller one.",
                                              "Failed to open pcap file: %1"}
                               << QStringList{"文件大小超过1GB限制，请选择小于1GB的文件导入。", "无法打开抓包文件：%1"};
}

void TestAnalyze::errors_areToldWithTheirReason()
{
    QFETCH(QByteArray, content);
    QFETCH(qint64, size);
    QFETCH(QStringList, english);
    QFETCH(QStringList, chinese);
    const QString path = inFolder("broken.pcap");
    write(path, content);
    QVERIFY(QFile::resize(path, size));

    const auto asPrinted = [&path](const QStringList &texts) {
        QString lines;
        for (const QString &text : texts)
            lines += "switchpanel: " + QString(text).replace("%1", path) + '\n';
        return lines;
    };
    const ProgramRun run = runSwitchpanel({"analyze", path});
    QCOMPARE(run.exitStatus, 2);
    QCOMPARE(run.output, QString());
    QCOMPARE(run.errors, asPrinted(english));
    QCOMPARE(runSwitchpanel({"analyze", "--lang", "zh", "--quiet", path}).errors, asPrinted(chinese));
}

void TestAnalyze::fileName_inChinese_data()
{
    QTest::addColumn<QString>("locale");

    QTest::newRow("UTF-8") << "C.UTF-8";
    QTest::newRow("no character set") << "C";
    QTest::newRow("locale that is not installed") << "xx_YY.UTF-8";
}

void TestAnalyze::fileName_inChinese()
{
    QFETCH(QString, locale);
    const QString path = inFolder("现场 抓包.pcap");
    QVERIFY(QFile::copy(kHealthy, path));
    const ProgramRun run = runSwitchpanel({"analyze", "--lang", "en", path}, {"LC_ALL=" + locale});
    QCOMPARE(run.exitStatus, 0);
    QVERIFY2(run.printed("Capture: " + path), qPrintable(run.output));
}

void TestAnalyze::fileName_withDashNeedsDoubleDash()
{
    QCOMPARE(runSwitchpanel({"analyze", "-x.pcap"}).exitStatus, 2);
    const ProgramRun run = runSwitchpanel({"analyze", "--", "-x.pcap"});
    QCOMPARE(run.errors, QStringLiteral("switchpanel: File does not exist: -x.pcap\n"));
}

void TestAnalyze::timeZone_decidesTheTimes()
{
    const QString span = QStringLiteral("Capture time     2026-11-20 %1:33:26 --- 2026-11-20 %1:34:22");
    QVERIFY(runSwitchpanel({"analyze", kHealthy}, {"TZ=UTC"}).printed(span.arg("15")));
    QVERIFY(runSwitchpanel({"analyze", kHealthy}, {"TZ=Asia/Shanghai"}).printed(span.arg("23")));
}

void TestAnalyze::outputThatCannotBeWritten_isAnError()
{
#ifdef Q_OS_LINUX
    QProcess process;
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start(switchpanelProgram(), {"analyze", "--lang", "en", kHealthy});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 2);
    QVERIFY(process.readAllStandardError().contains("switchpanel: the report could not be written\n"));
#else
    QSKIP("only Linux has /dev/full, on which every write fails");
#endif
}

QTEST_GUILESS_MAIN(TestAnalyze)

#include "tst_switchpanel_analyze.moc"
