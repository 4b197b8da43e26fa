// Whole runs of the packet analysis view model over real files: what is emitted, in which order, and what must not be.
#include "packetanalysisviewmodel.h"

#include "capturebuilder.h"
#include "largecaptures.h"
#include "signalrecorder.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <cmath>
#include <limits>
#include <memory>

using capturebuilder::SiteOptions;

using ChangeSignal = void (PacketAnalysisViewModel::*)();
Q_DECLARE_METATYPE(ChangeSignal)

namespace {

constexpr int kRunLimit = 60'000; // milliseconds; generous, for instrumented builds on busy machines
constexpr qint64 kLargestFile = 1'073'741'824;

// Too long a stay in one call would freeze the panel; the run that is left behind takes many times as long.
constexpr qint64 kCallLimit = 500; // milliseconds

QStringList calls(std::initializer_list<const char *> names)
{
    QStringList texts;
    for (const char *name : names)
        texts.append(QLatin1String(name) + QStringLiteral("()"));
    return texts;
}

const QStringList kShortRun = calls({"isAnalyzingChanged", "totalPacketsChanged", "analysisProgressChanged",
                                     "analysisResultsChanged", "statisticsDataChanged", "ptpv2PacketsChanged",
                                     "isAnalyzingChanged", "isAnalysisCompleteChanged", "analysisFinished"});

QString errorText(const QString &message)
{
    return QStringLiteral("analysisError(%1)").arg(message);
}

//! Lets everything arrive that is on its way: the thread has ended, and its queued signals with it.
void settle(const PacketAnalysisViewModel &viewModel)
{
    const QThread *thread = viewModel.findChild<QThread *>();
    QTRY_VERIFY_WITH_TIMEOUT(!thread->isRunning(), kRunLimit);
    QTest::qWait(20);
}

void runToEnd(PacketAnalysisViewModel &viewModel)
{
    viewModel.startAnalysis();
    QTRY_VERIFY_WITH_TIMEOUT(!viewModel.isAnalyzing(), kRunLimit);
    settle(viewModel);
}

//! Starts, and comes back in the middle of the packet loop.
void startAndWaitForPackets(PacketAnalysisViewModel &viewModel)
{
    viewModel.startAnalysis();
    QTRY_VERIFY_WITH_TIMEOUT(viewModel.totalPackets() > 0, kRunLimit);
    QVERIFY(viewModel.isAnalyzing());
}

} // namespace

class TestPacketAnalysisViewModelRuns : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    // To the end
    void run_ofAHealthySite_reportsInOrder();
    void run_overThousandPackets_reportsProgressOnTheWay();
    void run_startedTwice_runsOnce();
    void run_afterRun_resetsAndReportsTheSame();
    void run_afterError_clearsTheError();
    void decoderCount_lessOne_isTheNumberOfExpectedSlaves();
    void expectedSlaveCount_doesNotReachTheCheck();
    void slaveAnalysisInterval_isTheLengthOfAWindow();
    void absurdSettings_endLikeOthers_data();
    void absurdSettings_endLikeOthers();
    void twoViewModels_runAtOnce();

    // Errors
    void fileGoneAfterTheStart_reportsTwoErrors();
    void fileTooLarge_reportsTwoErrors();
    void noCapture_reportsOneError_data();
    void noCapture_reportsOneError();
    void tooManyFindings_reportErrorThenFinish_data();
    void tooManyFindings_reportErrorThenFinish();
    void retry_fromWithinTheFirstError_isNotDisturbedByTheSecond();

    // In the middle
    void stop_inTheMiddle_reportsWhatWasRead();
    void stop_directlyAfterStart_isNotLost();
    void stop_ofARun_doesNotStopTheNext();
    void analyzePacketFile_inTheMiddle_isIgnored();
    void clearResults_inTheMiddle_silencesTheRun();
    void newPath_inTheMiddle_silencesTheRun();
    void newStart_inTheMiddleOfAnAbandonedRun_waitsForItsEnd();
    void newStart_abandonedAgain_staysSilent();
    void manyAbandonedRuns_leaveTheLastOne();
    void clearResults_fromWithinAHandler_leavesNothingBehind_data();
    void clearResults_fromWithinAHandler_leavesNothingBehind();
    void start_fromWithinFinished_runsAgain();
    void start_fromWithinIsAnalyzingChanged_runsAgain();
    void destruction_inTheMiddle_endsTheRun_data();
    void destruction_inTheMiddle_endsTheRun();

private:
    QString path(const QString &name) const { return _folder.filePath(name); }
    QString writeSite(const QString &name, const SiteOptions &options);

    QTemporaryDir _folder;
    QString _healthy;
    int _healthyPackets = 0;
    QString _other; // a smaller site
    int _otherPackets = 0;
    QString _long;
    int _longPackets = 0;
};

QString TestPacketAnalysisViewModelRuns::writeSite(const QString &name, const SiteOptions &options)
{
    if (!capturebuilder::writeFile(path(name), capturebuilder::toPcap(capturebuilder::ptpSite(options))))
        qFatal("Cannot write %s", qUtf8Printable(path(name)));
    return path(name);
}

void TestPacketAnalysisViewModelRuns::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    QVERIFY(_folder.isValid());
    const SiteOptions healthy; // nine slaves, 30 seconds
    _healthyPackets = capturebuilder::ptpSite(healthy).size();
    QVERIFY(_healthyPackets < 1000);
    _healthy = writeSite(QStringLiteral("healthy.pcap"), healthy);

    SiteOptions other;
    other.slaves = 3;
    other.seconds = 20;
    other.network = QStringLiteral("10.1.2");
    _otherPackets = capturebuilder::ptpSite(other).size();
    QVERIFY(_otherPackets < 1000);
    _other = writeSite(QStringLiteral("other.pcap"), other);

    _long = path(QStringLiteral("long.pcap"));
    QVERIFY(largecaptures::writeLong(_long, &_longPackets));
}

void TestPacketAnalysisViewModelRuns::run_ofAHealthySite_reportsInOrder()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_healthy);
    const SignalRecorder recorder(&viewModel);
    viewModel.startAnalysis();
    QVERIFY(viewModel.isAnalyzing());
    QTRY_VERIFY_WITH_TIMEOUT(viewModel.isAnalysisComplete(), kRunLimit);
    settle(viewModel);
    QCOMPARE(recorder.texts(), kShortRun);

    QVERIFY(!viewModel.isAnalyzing());
    QCOMPARE(viewModel.totalPackets(), _healthyPackets);
    QCOMPARE(viewModel.ptpv2Packets(), _healthyPackets);
    QCOMPARE(viewModel.analysisResults().size(), _healthyPackets);
    QCOMPARE(viewModel.progress(), 1.0);
    QCOMPARE(viewModel.lastErrorMessage(), QString());
    QCOMPARE(viewModel.syncMessageCount(), 30);
    QCOMPARE(viewModel.followUpMessageCount(), 30);
    QCOMPARE(viewModel.announceMessageCount(), 15);
    QCOMPARE(viewModel.delayReqMessageCount(), 270);
    QCOMPARE(viewModel.uniqueSlaveCount(), 10);
    QCOMPARE(viewModel.masterClockIp(), QStringLiteral("192.168.100.100"));
    QCOMPARE(viewModel.announceIntervalStatus(), QStringLiteral("正常"));
    QCOMPARE(viewModel.syncIntervalStatus(), QStringLiteral("正常"));
    QCOMPARE(viewModel.followUpIntervalStatus(), QStringLiteral("正常"));
    QCOMPARE(viewModel.slaveResponseStatus(), QStringLiteral("正常"));
    QCOMPARE(viewModel.abnormalPackets(), QVariantList());
    QCOMPARE(viewModel.abnormalTimeSegments(), QVariantList());
    QCOMPARE(viewModel.overallHealthStatus(), QStringLiteral("正常"));
    QCOMPARE(viewModel.analysisResult(), QStringLiteral("正常"));
}

void TestPacketAnalysisViewModelRuns::run_overThousandPackets_reportsProgressOnTheWay()
{
    SiteOptions options;
    options.seconds = 130;
    const int packets = capturebuilder::ptpSite(options).size();
    QVERIFY(packets > 2000 && packets < 3000);
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(writeSite(QStringLiteral("thousands.pcap"), options));
    QVector<int> totals;
    connect(&viewModel, &PacketAnalysisViewModel::totalPacketsChanged, &viewModel,
            [&] { totals.append(viewModel.totalPackets()); });
    const SignalRecorder recorder(&viewModel);
    runToEnd(viewModel);
    QCOMPARE(totals, (QVector<int>{1000, 2000, packets}));
    // The percentage is 100 from the first report on: the number of packets is not known before the end.
    QCOMPARE(recorder.texts(),
             calls({"isAnalyzingChanged", "totalPacketsChanged", "analysisProgressChanged", "totalPacketsChanged",
                    "totalPacketsChanged", "analysisResultsChanged", "statisticsDataChanged", "ptpv2PacketsChanged",
                    "isAnalyzingChanged", "isAnalysisCompleteChanged", "analysisFinished"}));
}

void TestPacketAnalysisViewModelRuns::run_startedTwice_runsOnce()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_healthy);
    const SignalRecorder recorder(&viewModel);
    viewModel.startAnalysis();
    runToEnd(viewModel);
    QCOMPARE(recorder.texts(), kShortRun);
}

void TestPacketAnalysisViewModelRuns::run_afterRun_resetsAndReportsTheSame()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_healthy);
    runToEnd(viewModel);
    const QVariantList results = viewModel.analysisResults();
    const QVariantMap statistics = viewModel.statisticsData();
    const SignalRecorder recorder(&viewModel);
    runToEnd(viewModel);
    QCOMPARE(recorder.texts(), calls({"isAnalysisCompleteChanged", "analysisProgressChanged", "totalPacketsChanged",
                                      "ptpv2PacketsChanged", "analysisResultsChanged", "statisticsDataChanged"})
                                   + kShortRun);
    QCOMPARE(viewModel.analysisResults(), results);
    QCOMPARE(viewModel.statisticsData(), statistics);
}

void TestPacketAnalysisViewModelRuns::run_afterError_clearsTheError()
{
    PacketAnalysisViewModel viewModel;
    viewModel.startAnalysis(); // no file
    QVERIFY(!viewModel.lastErrorMessage().isEmpty());
    viewModel.setSelectedFilePath(_folder.path());
    runToEnd(viewModel);
    QVERIFY(!viewModel.lastErrorMessage().isEmpty());
    viewModel.setSelectedFilePath(_healthy);
    runToEnd(viewModel);
    QCOMPARE(viewModel.lastErrorMessage(), QString());
    QCOMPARE(viewModel.analysisResult(), QStringLiteral("正常"));
}

void TestPacketAnalysisViewModelRuns::decoderCount_lessOne_isTheNumberOfExpectedSlaves()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_healthy);
    viewModel.setDecoderCount(11);
    runToEnd(viewModel);
    QCOMPARE(viewModel.slaveResponseStatus(), QStringLiteral("异常 (28/28 Sync消息)"));
    QCOMPARE(viewModel.abnormalPackets().size(), 28);
    for (const QVariant &finding : viewModel.abnormalPackets())
        QCOMPARE(finding.toMap().value(QStringLiteral("sourceIp")).toString(), QStringLiteral("192.168.100.10"));
    QCOMPARE(viewModel.analysisResult(), QStringLiteral("异常"));
}

void TestPacketAnalysisViewModelRuns::expectedSlaveCount_doesNotReachTheCheck()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_healthy);
    viewModel.setExpectedSlaveCount(20);
    runToEnd(viewModel);
    QCOMPARE(viewModel.slaveResponseStatus(), QStringLiteral("正常"));
    QCOMPARE(viewModel.expectedSlaveCount(), 20);
}

void TestPacketAnalysisViewModelRuns::slaveAnalysisInterval_isTheLengthOfAWindow()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_healthy);
    viewModel.setDecoderCount(11); // one slave missing in every window: findings count the windows
    viewModel.setSlaveAnalysisInterval(7.4);
    runToEnd(viewModel);
    QCOMPARE(viewModel.slaveResponseStatus(), QStringLiteral("异常 (4/4 Sync消息)")); // 28 s in windows of 7 s
}

void TestPacketAnalysisViewModelRuns::absurdSettings_endLikeOthers_data()
{
    QTest::addColumn<int>("decoders");
    QTest::addColumn<double>("interval");
    QTest::newRow("no decoders") << 0 << 1.0;
    QTest::newRow("negative decoders") << -10 << 1.0;
    QTest::newRow("the smallest number of decoders") << std::numeric_limits<int>::min() << 1.0;
    QTest::newRow("interval 0") << 10 << 0.0;
    QTest::newRow("interval negative") << 10 << -1.0;
    QTest::newRow("interval tiny") << 10 << 1e-300;
    QTest::newRow("interval not a number") << 10 << std::nan("");
    QTest::newRow("interval infinite") << 10 << std::numeric_limits<double>::infinity();
    QTest::newRow("interval minus infinite") << 10 << -std::numeric_limits<double>::infinity();
    QTest::newRow("interval of an age") << 10 << 1e300;
}

void TestPacketAnalysisViewModelRuns::absurdSettings_endLikeOthers()
{
    QFETCH(const int, decoders);
    QFETCH(const double, interval);
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_healthy);
    viewModel.setDecoderCount(decoders);
    viewModel.setSlaveAnalysisInterval(interval);
    runToEnd(viewModel);
    QVERIFY(viewModel.isAnalysisComplete());
    QCOMPARE(viewModel.lastErrorMessage(), QString());
    QCOMPARE(viewModel.analysisResults().size(), _healthyPackets);
    QCOMPARE(viewModel.slaveResponseStatus(), QStringLiteral("正常"));
}

void TestPacketAnalysisViewModelRuns::twoViewModels_runAtOnce()
{
    PacketAnalysisViewModel first;
    PacketAnalysisViewModel second;
    first.setSelectedFilePath(_healthy);
    second.setSelectedFilePath(_other);
    second.setDecoderCount(4);
    const SignalRecorder firstRecorder(&first);
    const SignalRecorder secondRecorder(&second);
    first.startAnalysis();
    second.startAnalysis();
    QTRY_VERIFY_WITH_TIMEOUT(first.isAnalysisComplete() && second.isAnalysisComplete(), kRunLimit);
    settle(first);
    settle(second);
    QCOMPARE(firstRecorder.texts(), kShortRun);
    QCOMPARE(secondRecorder.texts(), kShortRun);
    QCOMPARE(first.analysisResults().size(), _healthyPackets);
    QCOMPARE(first.masterClockIp(), QStringLiteral("192.168.100.100"));
    QCOMPARE(second.analysisResults().size(), _otherPackets);
    QCOMPARE(second.masterClockIp(), QStringLiteral("10.1.2.100"));
    QCOMPARE(second.analysisResult(), QStringLiteral("正常"));
}

void TestPacketAnalysisViewModelRuns::fileGoneAfterTheStart_reportsTwoErrors()
{
    const QString file = path(QStringLiteral("现场.pcap"));
    QVERIFY(QFile::copy(_healthy, file));
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(file);
    // Between the view model's look at the file and the worker's.
    const auto removal =
        connect(&viewModel, &PacketAnalysisViewModel::isAnalyzingChanged, &viewModel, [&] { QFile::remove(file); });
    const SignalRecorder recorder(&viewModel);
    viewModel.startAnalysis();
    disconnect(removal);
    QTRY_COMPARE_WITH_TIMEOUT(recorder.count(QStringLiteral("analysisError")), 2, kRunLimit);
    settle(viewModel);
    QCOMPARE(recorder.texts(),
             (QStringList{QStringLiteral("isAnalyzingChanged()"), QStringLiteral("isAnalyzingChanged()"),
                          QStringLiteral("lastErrorMessageChanged()"), errorText(QStringLiteral("文件不存在：") + file),
                          QStringLiteral("lastErrorMessageChanged()"),
                          errorText(QStringLiteral("Failed to open pcap file: ") + file)}));
    QCOMPARE(viewModel.lastErrorMessage(), QStringLiteral("Failed to open pcap file: ") + file);
    QVERIFY(!viewModel.isAnalysisComplete());
}

void TestPacketAnalysisViewModelRuns::fileTooLarge_reportsTwoErrors()
{
    const QString file = path(QStringLiteral("large.pcap"));
    QFile healthy(_healthy);
    QVERIFY(healthy.open(QIODevice::ReadOnly));
    QVERIFY(largecaptures::writeSparse(file, healthy.readAll(), kLargestFile + 1));
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(file);
    const SignalRecorder recorder(&viewModel);
    viewModel.startAnalysis();
    QTRY_COMPARE_WITH_TIMEOUT(recorder.count(QStringLiteral("analysisError")), 2, kRunLimit);
    settle(viewModel);
    QVERIFY(QFile::remove(file));
    QCOMPARE(recorder.texts(),
             (QStringList{QStringLiteral("isAnalyzingChanged()"), QStringLiteral("isAnalyzingChanged()"),
                          QStringLiteral("lastErrorMessageChanged()"),
                          errorText(QStringLiteral("文件大小超过1GB限制，请选择小于1GB的文件导入。")),
                          QStringLiteral("lastErrorMessageChanged()"),
                          errorText(QStringLiteral("Failed to open pcap file: ") + file)}));
}

void TestPacketAnalysisViewModelRuns::noCapture_reportsOneError_data()
{
    QTest::addColumn<QString>("file");
    const QString text = path(QStringLiteral("notes.txt"));
    const QString empty = path(QStringLiteral("empty.pcap"));
    QVERIFY(capturebuilder::writeFile(text, "interface GigabitEthernet0/0/1\r\n port link-type trunk\r\n"));
    QVERIFY(capturebuilder::writeFile(empty, QByteArray()));
    QTest::newRow("text") << text;
    QTest::newRow("nothing in it") << empty;
    QTest::newRow("folder") << _folder.path();
    QTest::newRow("program") << QCoreApplication::applicationFilePath();
}

void TestPacketAnalysisViewModelRuns::noCapture_reportsOneError()
{
    QFETCH(const QString, file);
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(file);
    const SignalRecorder recorder(&viewModel);
    runToEnd(viewModel);
    QCOMPARE(recorder.texts(),
             (QStringList{QStringLiteral("isAnalyzingChanged()"), QStringLiteral("isAnalyzingChanged()"),
                          QStringLiteral("lastErrorMessageChanged()"),
                          errorText(QStringLiteral("Failed to open pcap file: ") + file)}));
    QVERIFY(!viewModel.isAnalysisComplete());
    QCOMPARE(viewModel.analysisResults(), QVariantList());
}

void TestPacketAnalysisViewModelRuns::tooManyFindings_reportErrorThenFinish_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("decoders");
    QTest::newRow("four hundred thousand decoders") << _healthy << 400'000;
    QTest::newRow("all decoders there can be") << _healthy << std::numeric_limits<int>::max();

    // Thirty years of windows, and nobody in them.
    QVector<capturebuilder::CapturedPacket> packets;
    for (const qint64 seconds : {600'000'000LL, 1'600'000'000LL, 1'600'000'001LL})
        packets.append(capturebuilder::ptpOverUdp({seconds, 0}, QStringLiteral("10.0.0.1"), {}));
    const QString decades = path(QStringLiteral("decades.pcap"));
    QVERIFY(capturebuilder::writeFile(decades, capturebuilder::toPcap(packets)));
    QTest::newRow("time stamps that span decades") << decades << 10;
}

void TestPacketAnalysisViewModelRuns::tooManyFindings_reportErrorThenFinish()
{
    QFETCH(const QString, file);
    QFETCH(const int, decoders);
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(file);
    viewModel.setDecoderCount(decoders);
    const SignalRecorder recorder(&viewModel);
    QElapsedTimer timer;
    timer.start();
    viewModel.startAnalysis();
    QTRY_VERIFY_WITH_TIMEOUT(viewModel.isAnalysisComplete(), kRunLimit);
    QVERIFY(timer.elapsed() < 10'000); // predicted, not walked
    settle(viewModel);
    const QString message = viewModel.lastErrorMessage();
    QVERIFY2(message.startsWith(QStringLiteral("Analysis error: ")), qUtf8Printable(message));
    QVERIFY2(message.size() > QStringLiteral("Analysis error: ").size(), "does not say what is wrong");
    QCOMPARE(recorder.texts(), calls({"isAnalyzingChanged", "totalPacketsChanged", "analysisProgressChanged",
                                      "isAnalyzingChanged", "lastErrorMessageChanged"})
                                   + QStringList{errorText(message)}
                                   + calls({"isAnalysisCompleteChanged", "analysisFinished"}));
    QCOMPARE(viewModel.analysisResults(), QVariantList());
    QCOMPARE(viewModel.statisticsData(), QVariantMap());
}

void TestPacketAnalysisViewModelRuns::retry_fromWithinTheFirstError_isNotDisturbedByTheSecond()
{
    const QString file = path(QStringLiteral("gone.pcap"));
    QVERIFY(QFile::copy(_healthy, file));
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(file);
    const auto removal =
        connect(&viewModel, &PacketAnalysisViewModel::isAnalyzingChanged, &viewModel, [&] { QFile::remove(file); });
    connect(&viewModel, &PacketAnalysisViewModel::analysisError, &viewModel, [&] {
        viewModel.setSelectedFilePath(_other);
        viewModel.startAnalysis();
    });
    viewModel.setDecoderCount(4);
    const SignalRecorder recorder(&viewModel);
    viewModel.startAnalysis();
    disconnect(removal);
    QTRY_COMPARE_WITH_TIMEOUT(recorder.count(QStringLiteral("analysisFinished")), 1, kRunLimit);
    settle(viewModel);
    QCOMPARE(recorder.count(QStringLiteral("analysisError")), 1);
    QCOMPARE(recorder.count(QStringLiteral("analysisFinished")), 1);
    QCOMPARE(viewModel.lastErrorMessage(), QString());
    QCOMPARE(viewModel.analysisResults().size(), _otherPackets);
    QCOMPARE(viewModel.analysisResult(), QStringLiteral("正常"));
}

void TestPacketAnalysisViewModelRuns::stop_inTheMiddle_reportsWhatWasRead()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_long);
    const SignalRecorder recorder(&viewModel);
    startAndWaitForPackets(viewModel);
    viewModel.stopAnalysis();
    QVERIFY(viewModel.isAnalyzing()); // until the worker says otherwise
    QTRY_VERIFY_WITH_TIMEOUT(viewModel.isAnalysisComplete(), kRunLimit);
    settle(viewModel);
    QVERIFY(viewModel.totalPackets() >= 1000);
    QVERIFY(viewModel.totalPackets() < _longPackets);
    QVERIFY(!viewModel.analysisResults().isEmpty());
    QCOMPARE(viewModel.ptpv2Packets(), viewModel.analysisResults().size());
    QCOMPARE(viewModel.lastErrorMessage(), QString());
    for (const char *once :
         {"analysisResultsChanged", "statisticsDataChanged", "ptpv2PacketsChanged", "analysisFinished"})
        QCOMPARE(recorder.count(QLatin1String(once)), 1);
    QCOMPARE(recorder.texts().last(), QStringLiteral("analysisFinished()"));
}

void TestPacketAnalysisViewModelRuns::stop_directlyAfterStart_isNotLost()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_long);
    for (int round = 0; round < 5; ++round) {
        const SignalRecorder recorder(&viewModel);
        viewModel.startAnalysis();
        viewModel.stopAnalysis(); // the worker's run() has hardly begun, and clears its flag when it does
        QTRY_VERIFY_WITH_TIMEOUT(viewModel.isAnalysisComplete(), kRunLimit);
        settle(viewModel);
        QVERIFY(viewModel.totalPackets() < _longPackets);
        QCOMPARE(recorder.count(QStringLiteral("analysisFinished")), 1);
    }
}

void TestPacketAnalysisViewModelRuns::stop_ofARun_doesNotStopTheNext()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_long);
    viewModel.startAnalysis();
    viewModel.stopAnalysis();
    QTRY_VERIFY_WITH_TIMEOUT(viewModel.isAnalysisComplete(), kRunLimit);
    viewModel.setSelectedFilePath(_healthy);
    runToEnd(viewModel);
    QCOMPARE(viewModel.totalPackets(), _healthyPackets);
    viewModel.stopAnalysis(); // idle: nothing to stop, and nothing to remember
    runToEnd(viewModel);
    QCOMPARE(viewModel.totalPackets(), _healthyPackets);
}

void TestPacketAnalysisViewModelRuns::analyzePacketFile_inTheMiddle_isIgnored()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_long);
    startAndWaitForPackets(viewModel);
    const SignalRecorder recorder(&viewModel);
    viewModel.analyzePacketFile(_healthy);
    QCOMPARE(recorder.texts(), QStringList());
    QCOMPARE(viewModel.selectedFilePath(), _long);
    viewModel.stopAnalysis();
    QTRY_VERIFY_WITH_TIMEOUT(viewModel.isAnalysisComplete(), kRunLimit);
}

void TestPacketAnalysisViewModelRuns::clearResults_inTheMiddle_silencesTheRun()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_long);
    startAndWaitForPackets(viewModel);
    const SignalRecorder recorder(&viewModel);
    QElapsedTimer timer;
    timer.start();
    viewModel.clearResults();
    QVERIFY(timer.elapsed() < kCallLimit);
    QVERIFY(!viewModel.isAnalyzing());
    settle(viewModel);
    QCOMPARE(recorder.texts(),
             calls({"isAnalyzingChanged", "analysisProgressChanged", "totalPacketsChanged", "resultsCleared"}));
    QCOMPARE(viewModel.statisticsData(), QVariantMap());
}

void TestPacketAnalysisViewModelRuns::newPath_inTheMiddle_silencesTheRun()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_long);
    startAndWaitForPackets(viewModel);
    const SignalRecorder recorder(&viewModel);
    viewModel.setSelectedFilePath(_healthy);
    settle(viewModel);
    QCOMPARE(recorder.texts(), calls({"isAnalyzingChanged", "analysisProgressChanged", "totalPacketsChanged",
                                      "selectedFilePathChanged"}));
    runToEnd(viewModel);
    QCOMPARE(viewModel.analysisResults().size(), _healthyPackets);
}

void TestPacketAnalysisViewModelRuns::newStart_inTheMiddleOfAnAbandonedRun_waitsForItsEnd()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_long);
    startAndWaitForPackets(viewModel);
    QElapsedTimer timer;
    timer.start();
    viewModel.setSelectedFilePath(_healthy);
    const SignalRecorder recorder(&viewModel);
    viewModel.startAnalysis();
    QVERIFY(timer.elapsed() < kCallLimit); // without waiting for the old run
    QVERIFY(viewModel.isAnalyzing());      // for the panel it has begun
    viewModel.startAnalysis();             // ignored as ever
    QTRY_VERIFY_WITH_TIMEOUT(viewModel.isAnalysisComplete(), kRunLimit);
    settle(viewModel);
    QCOMPARE(recorder.texts(), kShortRun);
    QCOMPARE(viewModel.totalPackets(), _healthyPackets);
    QCOMPARE(viewModel.analysisResult(), QStringLiteral("正常"));
}

void TestPacketAnalysisViewModelRuns::newStart_abandonedAgain_staysSilent()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_long);
    startAndWaitForPackets(viewModel);
    viewModel.setSelectedFilePath(_healthy);
    viewModel.startAnalysis(); // held back
    viewModel.clearResults();  // and given up before it began
    const SignalRecorder recorder(&viewModel);
    settle(viewModel);
    QCOMPARE(recorder.texts(), QStringList());
    QVERIFY(!viewModel.isAnalyzing());
    runToEnd(viewModel);
    QCOMPARE(recorder.texts(), kShortRun);
}

void TestPacketAnalysisViewModelRuns::manyAbandonedRuns_leaveTheLastOne()
{
    PacketAnalysisViewModel viewModel;
    for (int round = 0; round < 30; ++round) {
        viewModel.setSelectedFilePath(_long);
        viewModel.startAnalysis();
        if (round % 3 == 1)
            QCoreApplication::processEvents();
        if (round % 3 == 2)
            QTest::qWait(2);
        viewModel.setSelectedFilePath(_healthy);
    }
    const SignalRecorder recorder(&viewModel);
    viewModel.startAnalysis();
    QTRY_VERIFY_WITH_TIMEOUT(viewModel.isAnalysisComplete(), kRunLimit);
    settle(viewModel);
    QCOMPARE(recorder.texts(), kShortRun);
    QCOMPARE(viewModel.analysisResults().size(), _healthyPackets);
}

void TestPacketAnalysisViewModelRuns::clearResults_fromWithinAHandler_leavesNothingBehind_data()
{
    QTest::addColumn<ChangeSignal>("signal");
    QTest::newRow("total packets") << ChangeSignal(&PacketAnalysisViewModel::totalPacketsChanged);
    QTest::newRow("progress") << ChangeSignal(&PacketAnalysisViewModel::analysisProgressChanged);
    QTest::newRow("results") << ChangeSignal(&PacketAnalysisViewModel::analysisResultsChanged);
    QTest::newRow("statistics") << ChangeSignal(&PacketAnalysisViewModel::statisticsDataChanged);
    QTest::newRow("number of records") << ChangeSignal(&PacketAnalysisViewModel::ptpv2PacketsChanged);
}

void TestPacketAnalysisViewModelRuns::clearResults_fromWithinAHandler_leavesNothingBehind()
{
    // The panel may clear in answer to any change that a run makes; the rest of what the run has to say must not show.
    QFETCH(const ChangeSignal, signal);
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_healthy);
    bool isCleared = false;
    connect(&viewModel, signal, &viewModel, [&] {
        if (isCleared)
            return;
        isCleared = true;
        viewModel.clearResults();
    });
    const SignalRecorder recorder(&viewModel);
    viewModel.startAnalysis();
    QTRY_VERIFY_WITH_TIMEOUT(isCleared, kRunLimit);
    settle(viewModel);
    QCOMPARE(recorder.count(QStringLiteral("analysisFinished")), 0);
    QVERIFY(!viewModel.isAnalyzing());
    QVERIFY(!viewModel.isAnalysisComplete());
    QCOMPARE(viewModel.analysisProgress(), 0.0);
    QCOMPARE(viewModel.totalPackets(), 0);
    QCOMPARE(viewModel.ptpv2Packets(), 0);
    QCOMPARE(viewModel.analysisResults(), QVariantList());
    QCOMPARE(viewModel.statisticsData(), QVariantMap());
}

void TestPacketAnalysisViewModelRuns::start_fromWithinFinished_runsAgain()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_healthy);
    int runs = 0;
    connect(&viewModel, &PacketAnalysisViewModel::analysisFinished, &viewModel, [&] {
        if (++runs < 3)
            viewModel.startAnalysis();
    });
    viewModel.startAnalysis();
    QTRY_COMPARE_WITH_TIMEOUT(runs, 3, kRunLimit);
    settle(viewModel);
    QCOMPARE(runs, 3);
    QVERIFY(viewModel.isAnalysisComplete());
    QCOMPARE(viewModel.analysisResults().size(), _healthyPackets);
}

void TestPacketAnalysisViewModelRuns::start_fromWithinIsAnalyzingChanged_runsAgain()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(_healthy);
    int starts = 1;
    connect(&viewModel, &PacketAnalysisViewModel::isAnalyzingChanged, &viewModel, [&] {
        if (!viewModel.isAnalyzing() && starts++ < 2)
            viewModel.startAnalysis();
    });
    connect(&viewModel, &PacketAnalysisViewModel::isAnalysisCompleteChanged, &viewModel,
            [&] { QVERIFY(!(viewModel.isAnalyzing() && viewModel.isAnalysisComplete())); });
    viewModel.startAnalysis();
    QTRY_VERIFY_WITH_TIMEOUT(starts > 2, kRunLimit);
    settle(viewModel);
    QVERIFY(!viewModel.isAnalyzing());
    QVERIFY(viewModel.isAnalysisComplete());
    QCOMPARE(viewModel.analysisResults().size(), _healthyPackets);
}

void TestPacketAnalysisViewModelRuns::destruction_inTheMiddle_endsTheRun_data()
{
    QTest::addColumn<int>("wait"); // milliseconds; negative: not even the event loop
    QTest::newRow("at once") << -1;
    QTest::newRow("after the event loop") << 0;
    QTest::newRow("after 1 ms") << 1;
    QTest::newRow("after 20 ms") << 20;
}

void TestPacketAnalysisViewModelRuns::destruction_inTheMiddle_endsTheRun()
{
    QFETCH(const int, wait);
    auto viewModel = std::make_unique<PacketAnalysisViewModel>();
    viewModel->setSelectedFilePath(_long);
    viewModel->startAnalysis();
    if (wait >= 0)
        QTest::qWait(wait);
    const QPointer<QThread> thread = viewModel->findChild<QThread *>();
    QElapsedTimer timer;
    timer.start();
    viewModel.reset();
    QVERIFY(timer.elapsed() < 4'000); // ended by itself: after 5 s it would have been terminated
    QVERIFY(thread.isNull());
}

QTEST_GUILESS_MAIN(TestPacketAnalysisViewModelRuns)
#include "tst_packetanalysisviewmodel_runs.moc"
