// The packet analysis view model without a run: interface, setters, and what the worker's signals do to it.
#include "packetanalysisviewmodel.h"

#include "localtimezone.h"
#include "signalrecorder.h"

#include <QtCore/QMetaMethod>
#include <QtCore/QMetaProperty>
#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <limits>

namespace {

struct PropertyRow
{
    const char *name;
    const char *type;
    bool isWritable;
    const char *notify;
    QVariant fresh; //!< of a new object
};

// In declaration order.
// clang-format off
const QVector<PropertyRow> &propertyRows()
{
    static const QVector<PropertyRow> rows {
        {"selectedFilePath",        "QString",      true,  "selectedFilePathChanged()",      ""},
        {"isAnalyzing",             "bool",         false, "isAnalyzingChanged()",           false},
        {"isAnalysisComplete",      "bool",         false, "isAnalysisCompleteChanged()",    false},
        {"analysisProgress",        "double",       false, "analysisProgressChanged()",      0.0},
        {"totalPackets",            "int",          false, "totalPacketsChanged()",          0},
        {"ptpv2Packets",            "int",          false, "ptpv2PacketsChanged()",          0},
        {"analysisResults",         "QVariantList", false, "analysisResultsChanged()",       QVariantList()},
        {"statisticsData",          "QVariantMap",  false, "statisticsDataChanged()",        QVariantMap()},
        {"lastErrorMessage",        "QString",      false, "lastErrorMessageChanged()",      ""},
        {"selectedFileName",        "QString",      false, "selectedFilePathChanged()",      ""},
        {"masterClockIp",           "QString",      false, "statisticsDataChanged()",        "未知"},
        {"syncMessageCount",        "int",          false, "statisticsDataChanged()",        0},
        {"followUpMessageCount",    "int",          false, "statisticsDataChanged()",        0},
        {"announceMessageCount",    "int",          false, "statisticsDataChanged()",        0},
        {"delayReqMessageCount",    "int",          false, "statisticsDataChanged()",        0},
        {"captureTime",             "QString",      false, "statisticsDataChanged()",        "未知"},
        {"uniqueSlaveCount",        "int",          false, "statisticsDataChanged()",        0},
        {"analysisResult",          "QString",      false, "statisticsDataChanged()",        "异常"},
        {"packetResults",           "QVariantList", false, "analysisResultsChanged()",       QVariantList()},
        {"progress",                "double",       false, "analysisProgressChanged()",      0.0},
        {"errorMessage",            "QString",      false, "lastErrorMessageChanged()",      ""},
        {"announceIntervalStatus",  "QString",      false, "statisticsDataChanged()",        "no anylse"},
        {"syncIntervalStatus",      "QString",      false, "statisticsDataChanged()",        "no anylse"},
        {"followUpIntervalStatus",  "QString",      false, "statisticsDataChanged()",        "no anylse"},
        {"slaveResponseStatus",     "QString",      false, "statisticsDataChanged()",        "no anylse"},
        {"abnormalTimeSegments",    "QVariantList", false, "statisticsDataChanged()",        QVariantList()},
        {"abnormalPackets",         "QVariantList", false, "statisticsDataChanged()",        QVariantList()},
        {"overallHealthStatus",     "QString",      false, "statisticsDataChanged()",        "no anylse"},
        {"slaveAnalysisInterval",   "double",       true,  "slaveAnalysisIntervalChanged()", 1.0},
        {"decoderCount",            "int",          true,  "decoderCountChanged()",          10},
        {"expectedSlaveCount",      "int",          true,  "expectedSlaveCountChanged()",    9},
    };
    return rows;
}
// clang-format on

const QStringList kSignals{
    QStringLiteral("selectedFilePathChanged()"),      QStringLiteral("isAnalyzingChanged()"),
    QStringLiteral("isAnalysisCompleteChanged()"),    QStringLiteral("analysisProgressChanged()"),
    QStringLiteral("totalPacketsChanged()"),          QStringLiteral("ptpv2PacketsChanged()"),
    QStringLiteral("analysisResultsChanged()"),       QStringLiteral("statisticsDataChanged()"),
    QStringLiteral("lastErrorMessageChanged()"),      QStringLiteral("analysisFinished()"),
    QStringLiteral("analysisError(QString)"),         QStringLiteral("resultsCleared()"),
    QStringLiteral("slaveAnalysisIntervalChanged()"), QStringLiteral("decoderCountChanged()"),
    QStringLiteral("expectedSlaveCountChanged()"),
};

// Access and signature, in declaration order.
const QStringList kSlotsAndInvokables{
    QStringLiteral("public slot stopAnalysis()"),
    QStringLiteral("public slot clearResults()"),
    QStringLiteral("public slot exportResults(QString)"),
    QStringLiteral("private slot onWorkerFinished()"),
    QStringLiteral("private slot onWorkerError(QString)"),
    QStringLiteral("private slot onWorkerProgress(int,int)"),
    QStringLiteral("private slot onWorkerResults(QVariantList,QVariantMap)"),
    QStringLiteral("public method analyzePacketFile(QString)"),
    QStringLiteral("public method exportAbnormalPackets(QString)"),
    QStringLiteral("public method startAnalysis()"),
    QStringLiteral("public method setSelectedFilePath(QString)"),
};

QString describe(const QMetaMethod &method)
{
    const char *access = method.access() == QMetaMethod::Public ? "public" : "private";
    const char *kind = method.methodType() == QMetaMethod::Slot ? "slot" : "method";
    return QStringLiteral("%1 %2 %3")
        .arg(QLatin1String(access), QLatin1String(kind), QLatin1String(method.methodSignature()));
}

// The worker's connections, by name as they are private.
void reportProgress(PacketAnalysisViewModel &viewModel, int current, int total)
{
    QVERIFY(QMetaObject::invokeMethod(&viewModel, "onWorkerProgress", Q_ARG(int, current), Q_ARG(int, total)));
}

void reportResults(PacketAnalysisViewModel &viewModel, const QVariantList &results, const QVariantMap &statistics)
{
    QVERIFY(QMetaObject::invokeMethod(&viewModel, "onWorkerResults", Q_ARG(QVariantList, results),
                                      Q_ARG(QVariantMap, statistics)));
}

void reportError(PacketAnalysisViewModel &viewModel, const QString &message)
{
    QVERIFY(QMetaObject::invokeMethod(&viewModel, "onWorkerError", Q_ARG(QString, message)));
}

void reportFinished(PacketAnalysisViewModel &viewModel)
{
    QVERIFY(QMetaObject::invokeMethod(&viewModel, "onWorkerFinished"));
}

QVariantMap record(int number)
{
    return {{QStringLiteral("sequenceId"), QString::number(number)}};
}

QVariantMap healthStatistics(const QVariantMap &health)
{
    return {{QStringLiteral("healthCheck"), health}};
}

//! Everything that a run can leave behind, in one object.
void fill(PacketAnalysisViewModel &viewModel)
{
    reportProgress(viewModel, 7, 7);
    reportResults(viewModel, {record(1), record(2)}, {{QStringLiteral("masterClockIp"), QStringLiteral("10.0.0.1")}});
    reportError(viewModel, QStringLiteral("broken"));
    reportFinished(viewModel);
}

// What fill() has changed, reset in this order.
const QStringList kResetSignals{
    QStringLiteral("isAnalysisCompleteChanged()"), QStringLiteral("analysisProgressChanged()"),
    QStringLiteral("totalPacketsChanged()"),       QStringLiteral("ptpv2PacketsChanged()"),
    QStringLiteral("analysisResultsChanged()"),    QStringLiteral("statisticsDataChanged()"),
    QStringLiteral("lastErrorMessageChanged()"),
};

void verifyIsReset(const PacketAnalysisViewModel &viewModel)
{
    for (const PropertyRow &row : propertyRows()) {
        if (qstrcmp(row.notify, "selectedFilePathChanged()") != 0)
            QCOMPARE(viewModel.property(row.name), row.fresh);
    }
}

} // namespace

class TestPacketAnalysisViewModel : public QObject
{
    Q_OBJECT

private slots:
    // Interface
    void properties_standInDocumentedOrder();
    void property_hasTypeAccessAndChangeSignal_data();
    void property_hasTypeAccessAndChangeSignal();
    void property_ofNewObject_hasItsDefault_data();
    void property_ofNewObject_hasItsDefault();
    void property_thatIsReadOnly_refusesWrites();
    void signals_standInDocumentedOrder();
    void slotsAndInvokables_standInDocumentedOrder();
    void newObject_ownsAnIdleThread();

    // Setters
    void settings_notifyOnChangeOnly_data();
    void settings_notifyOnChangeOnly();
    void slaveAnalysisInterval_isComparedFuzzily_data();
    void slaveAnalysisInterval_isComparedFuzzily();
    void slaveAnalysisInterval_notANumber_isStored();
    void selectedFilePath_resetsFirst_thenNotifies();
    void selectedFilePath_sameAgain_isSilent();
    void selectedFilePath_givesTheFileName_data();
    void selectedFilePath_givesTheFileName();
    void analyzePacketFile_selectsAndStartsNothing();
    void clearResults_resetsAndSaysSo();
    void clearResults_onNewObject_saysSoAlone();

    // The worker's signals
    void progress_setsTotalAndPercentage();
    void progress_ofNothing_isZero();
    void progress_smallMoves_areSilent();
    void results_thenStatistics_thenCount();
    void results_sameAgain_areSilent();
    void error_setsTextAndReports();
    void finished_completesAndReports();

    // Readings out of the statistics
    void statistics_fillTheReadings();
    void statistics_emptyTexts_readAsEmpty();
    void captureTime_isFirstAndSecondLastSync_data();
    void captureTime_isFirstAndSecondLastSync();
    void captureTime_isLocal();
    void analysisResult_followsFindingsThenStatusThenCount_data();
    void analysisResult_followsFindingsThenStatusThenCount();

    // Starting without a file
    void start_withoutFile_setsTheErrorOnly();
    void start_withMissingFile_setsTheErrorOnly();
    void start_withMissingFile_keepsTheOldResults();
    void stop_whileIdle_isSilent();
};

void TestPacketAnalysisViewModel::properties_standInDocumentedOrder()
{
    const QMetaObject &metaObject = PacketAnalysisViewModel::staticMetaObject;
    QCOMPARE(metaObject.superClass(), &QObject::staticMetaObject);
    QStringList declared;
    for (int i = metaObject.propertyOffset(); i < metaObject.propertyCount(); ++i)
        declared.append(QLatin1String(metaObject.property(i).name()));
    QStringList documented;
    for (const PropertyRow &row : propertyRows())
        documented.append(QLatin1String(row.name));
    QCOMPARE(declared, documented);
}

void TestPacketAnalysisViewModel::property_hasTypeAccessAndChangeSignal_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<bool>("isWritable");
    QTest::addColumn<QByteArray>("notify");
    for (const PropertyRow &row : propertyRows())
        QTest::newRow(row.name) << QByteArray(row.type) << row.isWritable << QByteArray(row.notify);
}

void TestPacketAnalysisViewModel::property_hasTypeAccessAndChangeSignal()
{
    QFETCH(const QByteArray, type);
    QFETCH(const bool, isWritable);
    QFETCH(const QByteArray, notify);
    const QMetaObject &metaObject = PacketAnalysisViewModel::staticMetaObject;
    const QMetaProperty property = metaObject.property(metaObject.indexOfProperty(QTest::currentDataTag()));
    QCOMPARE(QByteArray(property.typeName()), type);
    QVERIFY(property.isReadable());
    QCOMPARE(property.isWritable(), isWritable);
    QVERIFY(!property.isConstant());
    QCOMPARE(property.notifySignal().methodSignature(), notify);
}

void TestPacketAnalysisViewModel::property_ofNewObject_hasItsDefault_data()
{
    QTest::addColumn<QVariant>("fresh");
    for (const PropertyRow &row : propertyRows())
        QTest::newRow(row.name) << row.fresh;
}

void TestPacketAnalysisViewModel::property_ofNewObject_hasItsDefault()
{
    QFETCH(const QVariant, fresh);
    const PacketAnalysisViewModel viewModel;
    const QVariant value = viewModel.property(QTest::currentDataTag());
    QCOMPARE(value.userType(), fresh.userType());
    QCOMPARE(value, fresh);
}

void TestPacketAnalysisViewModel::property_thatIsReadOnly_refusesWrites()
{
    PacketAnalysisViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    for (const PropertyRow &row : propertyRows()) {
        if (row.isWritable)
            continue;
        QVERIFY2(!viewModel.setProperty(row.name, QStringLiteral("1")), row.name);
        QCOMPARE(viewModel.property(row.name), row.fresh);
    }
    QCOMPARE(recorder.texts(), QStringList());
}

void TestPacketAnalysisViewModel::signals_standInDocumentedOrder()
{
    const QMetaObject &metaObject = PacketAnalysisViewModel::staticMetaObject;
    QStringList declared;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
        if (metaObject.method(i).methodType() == QMetaMethod::Signal)
            declared.append(QLatin1String(metaObject.method(i).methodSignature()));
    }
    QCOMPARE(declared, kSignals);
    const QMetaMethod error = metaObject.method(metaObject.indexOfSignal("analysisError(QString)"));
    QCOMPARE(error.parameterNames(), QList<QByteArray>{"errorMessage"});
}

void TestPacketAnalysisViewModel::slotsAndInvokables_standInDocumentedOrder()
{
    const QMetaObject &metaObject = PacketAnalysisViewModel::staticMetaObject;
    QStringList declared;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i) {
        if (metaObject.method(i).methodType() != QMetaMethod::Signal)
            declared.append(describe(metaObject.method(i)));
    }
    QCOMPARE(declared, kSlotsAndInvokables);
}

void TestPacketAnalysisViewModel::newObject_ownsAnIdleThread()
{
    const PacketAnalysisViewModel viewModel;
    const auto threads = viewModel.findChildren<QThread *>();
    QCOMPARE(threads.size(), 1);
    QVERIFY(!threads.first()->isRunning());
}

void TestPacketAnalysisViewModel::settings_notifyOnChangeOnly_data()
{
    QTest::addColumn<QVariant>("other");
    QTest::newRow("selectedFilePath") << QVariant("/captures/a.pcap");
    QTest::newRow("slaveAnalysisInterval") << QVariant(2.5);
    QTest::newRow("decoderCount") << QVariant(-3);
    QTest::newRow("expectedSlaveCount") << QVariant(4);
}

void TestPacketAnalysisViewModel::settings_notifyOnChangeOnly()
{
    QFETCH(const QVariant, other);
    const char *name = QTest::currentDataTag();
    const QStringList announcement{QStringLiteral("%1Changed()").arg(QLatin1String(name))};
    PacketAnalysisViewModel viewModel;
    const QVariant fresh = viewModel.property(name);
    SignalRecorder recorder(&viewModel);
    QVERIFY(viewModel.setProperty(name, fresh));
    QCOMPARE(recorder.texts(), QStringList());
    QVERIFY(viewModel.setProperty(name, other));
    QCOMPARE(viewModel.property(name), other);
    QCOMPARE(recorder.texts(), announcement);
    QVERIFY(viewModel.setProperty(name, other));
    QCOMPARE(recorder.texts(), announcement);
    QVERIFY(viewModel.setProperty(name, fresh));
    QCOMPARE(viewModel.property(name), fresh);
    QCOMPARE(recorder.texts(), announcement + announcement);
}

void TestPacketAnalysisViewModel::slaveAnalysisInterval_isComparedFuzzily_data()
{
    QTest::addColumn<double>("before");
    QTest::addColumn<double>("written");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("a ten-billionth of a millisecond more") << 1.0 << 1.0 + 1e-13 << false;
    QTest::newRow("just outside of the tolerance") << 1.0 << 1.0 + 3e-12 << true;
    QTest::newRow("large, within") << 1e6 << 1e6 + 1e-7 << false;
    QTest::newRow("zero again") << 0.0 << 0.0 << false;
    QTest::newRow("anything differs from zero") << 0.0 << 1e-300 << true;
    QTest::newRow("negative") << 1.0 << -1.0 << true;
    QTest::newRow("infinite") << 1.0 << std::numeric_limits<double>::infinity() << true;
}

void TestPacketAnalysisViewModel::slaveAnalysisInterval_isComparedFuzzily()
{
    QFETCH(const double, before);
    QFETCH(const double, written);
    QFETCH(const bool, isTaken);
    PacketAnalysisViewModel viewModel;
    viewModel.setSlaveAnalysisInterval(before);
    const SignalRecorder recorder(&viewModel);
    viewModel.setSlaveAnalysisInterval(written);
    QVERIFY(viewModel.slaveAnalysisInterval() == (isTaken ? written : before)); // exactly, not as QCOMPARE has it
    QCOMPARE(recorder.emissions().size(), isTaken ? 1 : 0);
}

void TestPacketAnalysisViewModel::slaveAnalysisInterval_notANumber_isStored()
{
    PacketAnalysisViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    viewModel.setSlaveAnalysisInterval(std::numeric_limits<double>::quiet_NaN());
    QVERIFY(qIsNaN(viewModel.slaveAnalysisInterval()));
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("slaveAnalysisIntervalChanged()")});
    viewModel.setSlaveAnalysisInterval(2.0); // and left again
    QCOMPARE(viewModel.slaveAnalysisInterval(), 2.0);
    QCOMPARE(recorder.emissions().size(), 2);
}

void TestPacketAnalysisViewModel::selectedFilePath_resetsFirst_thenNotifies()
{
    PacketAnalysisViewModel viewModel;
    fill(viewModel);
    QString pathAtReset;
    connect(&viewModel, &PacketAnalysisViewModel::isAnalysisCompleteChanged, &viewModel,
            [&] { pathAtReset = viewModel.selectedFilePath(); });
    const SignalRecorder recorder(&viewModel);
    viewModel.setSelectedFilePath(QStringLiteral("/captures/a.pcap"));
    QCOMPARE(recorder.texts(), kResetSignals + QStringList{QStringLiteral("selectedFilePathChanged()")});
    QCOMPARE(pathAtReset, QStringLiteral("/captures/a.pcap"));
    verifyIsReset(viewModel);
}

void TestPacketAnalysisViewModel::selectedFilePath_sameAgain_isSilent()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(QStringLiteral("/captures/a.pcap"));
    fill(viewModel);
    const SignalRecorder recorder(&viewModel);
    viewModel.setSelectedFilePath(QStringLiteral("/captures/a.pcap"));
    viewModel.analyzePacketFile(QStringLiteral("/captures/a.pcap"));
    QCOMPARE(recorder.texts(), QStringList());
    QCOMPARE(viewModel.analysisResults().size(), 2);
}

void TestPacketAnalysisViewModel::selectedFilePath_givesTheFileName_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("path") << QStringLiteral("/captures/site 1/a.b.pcap") << QStringLiteral("a.b.pcap");
    QTest::newRow("name alone") << QStringLiteral("a.pcap") << QStringLiteral("a.pcap");
    QTest::newRow("Chinese") << QStringLiteral("/抓包/现场一.pcap") << QStringLiteral("现场一.pcap");
    QTest::newRow("folder") << QStringLiteral("/captures/") << QString();
    QTest::newRow("empty") << QString() << QString();
}

void TestPacketAnalysisViewModel::selectedFilePath_givesTheFileName()
{
    QFETCH(const QString, path);
    QFETCH(const QString, name);
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(path);
    QCOMPARE(viewModel.selectedFilePath(), path);
    QCOMPARE(viewModel.selectedFileName(), name);
}

void TestPacketAnalysisViewModel::analyzePacketFile_selectsAndStartsNothing()
{
    PacketAnalysisViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    viewModel.analyzePacketFile(QCoreApplication::applicationFilePath());
    QCOMPARE(viewModel.selectedFilePath(), QCoreApplication::applicationFilePath());
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("selectedFilePathChanged()")});
    QVERIFY(!viewModel.isAnalyzing());
}

void TestPacketAnalysisViewModel::clearResults_resetsAndSaysSo()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(QStringLiteral("/captures/a.pcap"));
    viewModel.setDecoderCount(3);
    fill(viewModel);
    const SignalRecorder recorder(&viewModel);
    viewModel.clearResults();
    QCOMPARE(recorder.texts(), kResetSignals + QStringList{QStringLiteral("resultsCleared()")});
    QCOMPARE(viewModel.selectedFilePath(), QStringLiteral("/captures/a.pcap"));
    QCOMPARE(viewModel.decoderCount(), 3); // settings are no results
    viewModel.setDecoderCount(10);
    verifyIsReset(viewModel);
}

void TestPacketAnalysisViewModel::clearResults_onNewObject_saysSoAlone()
{
    PacketAnalysisViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    viewModel.clearResults();
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("resultsCleared()")});
}

void TestPacketAnalysisViewModel::progress_setsTotalAndPercentage()
{
    PacketAnalysisViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    reportProgress(viewModel, 1, 4);
    QCOMPARE(viewModel.totalPackets(), 4);
    QCOMPARE(viewModel.analysisProgress(), 25.0);
    QCOMPARE(viewModel.progress(), 0.25);
    QCOMPARE(recorder.texts(),
             (QStringList{QStringLiteral("totalPacketsChanged()"), QStringLiteral("analysisProgressChanged()")}));
}

void TestPacketAnalysisViewModel::progress_ofNothing_isZero()
{
    PacketAnalysisViewModel viewModel;
    for (const int total : {0, -1}) {
        reportProgress(viewModel, 10, 10);
        reportProgress(viewModel, 5, total);
        QCOMPARE(viewModel.totalPackets(), total);
        QCOMPARE(viewModel.analysisProgress(), 0.0);
    }
}

void TestPacketAnalysisViewModel::progress_smallMoves_areSilent()
{
    PacketAnalysisViewModel viewModel;
    reportProgress(viewModel, 50'000, 100'000);
    SignalRecorder recorder(&viewModel);
    reportProgress(viewModel, 50'005, 100'000); // from 50.000 to 50.005
    reportProgress(viewModel, 49'995, 100'000);
    QCOMPARE(recorder.texts(), QStringList());
    QCOMPARE(viewModel.analysisProgress(), 50.0);
    reportProgress(viewModel, 50'020, 100'000);
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("analysisProgressChanged()")});
    QCOMPARE(viewModel.analysisProgress(), 50.02);
}

void TestPacketAnalysisViewModel::results_thenStatistics_thenCount()
{
    PacketAnalysisViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    const QVariantList results{record(1), record(2), record(3)};
    const QVariantMap statistics{{QStringLiteral("ptpv2Packets"), 17}};
    reportResults(viewModel, results, statistics);
    QCOMPARE(recorder.texts(),
             (QStringList{QStringLiteral("analysisResultsChanged()"), QStringLiteral("statisticsDataChanged()"),
                          QStringLiteral("ptpv2PacketsChanged()")}));
    QCOMPARE(viewModel.analysisResults(), results);
    QCOMPARE(viewModel.packetResults(), results);
    QCOMPARE(viewModel.statisticsData(), statistics);
    QCOMPARE(viewModel.ptpv2Packets(), 3); // the records, whatever the statistics say
}

void TestPacketAnalysisViewModel::results_sameAgain_areSilent()
{
    PacketAnalysisViewModel viewModel;
    const QVariantMap statistics = healthStatistics({{QStringLiteral("overallHealthStatus"), QStringLiteral("正常")}});
    reportResults(viewModel, {record(1), record(2)}, statistics);
    SignalRecorder recorder(&viewModel);
    reportResults(viewModel, {record(1), record(2)}, statistics);
    QCOMPARE(recorder.texts(), QStringList());
    reportResults(viewModel, {record(1), record(3)}, statistics);
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("analysisResultsChanged()")});
}

void TestPacketAnalysisViewModel::error_setsTextAndReports()
{
    PacketAnalysisViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    reportError(viewModel, QStringLiteral("文件不存在：/a"));
    QCOMPARE(recorder.texts(), (QStringList{QStringLiteral("lastErrorMessageChanged()"),
                                            QStringLiteral("analysisError(文件不存在：/a)")}));
    QCOMPARE(viewModel.lastErrorMessage(), QStringLiteral("文件不存在：/a"));
    QCOMPARE(viewModel.errorMessage(), QStringLiteral("文件不存在：/a"));
    QVERIFY(!viewModel.isAnalysisComplete());
}

void TestPacketAnalysisViewModel::finished_completesAndReports()
{
    PacketAnalysisViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    reportFinished(viewModel);
    QCOMPARE(recorder.texts(),
             (QStringList{QStringLiteral("isAnalysisCompleteChanged()"), QStringLiteral("analysisProgressChanged()"),
                          QStringLiteral("analysisFinished()")}));
    QVERIFY(viewModel.isAnalysisComplete());
    QCOMPARE(viewModel.analysisProgress(), 100.0);
    QCOMPARE(viewModel.progress(), 1.0);
}

void TestPacketAnalysisViewModel::statistics_fillTheReadings()
{
    const QVariantList findings{QVariantMap{{QStringLiteral("abnormalType"), QStringLiteral("主节点未回复")}}};
    const QVariantList segments{QStringLiteral("10:00")};
    const QVariantMap statistics{{QStringLiteral("masterClockIp"), QStringLiteral("10.0.0.1")},
                                 {QStringLiteral("messageTypes"), QVariantMap{{QStringLiteral("SYNC"), 11},
                                                                              {QStringLiteral("FOLLOW_UP"), 12},
                                                                              {QStringLiteral("ANNOUNCE"), 13},
                                                                              {QStringLiteral("DELAY_REQ"), 14},
                                                                              {QStringLiteral("DELAY_RESP"), 15}}},
                                 {QStringLiteral("sourcePorts"),
                                  QVariantMap{{QStringLiteral("a-1"), 5}, {QStringLiteral("b-1"), 1}, {QString(), 1}}},
                                 {QStringLiteral("healthCheck"),
                                  QVariantMap{{QStringLiteral("announceIntervalStatus"), QStringLiteral("announce")},
                                              {QStringLiteral("syncIntervalStatus"), QStringLiteral("sync")},
                                              {QStringLiteral("followUpIntervalStatus"), QStringLiteral("follow-up")},
                                              {QStringLiteral("slaveResponseStatus"), QStringLiteral("slaves")},
                                              {QStringLiteral("abnormalTimeSegments"), segments},
                                              {QStringLiteral("abnormalPackets"), findings},
                                              {QStringLiteral("overallHealthStatus"), QStringLiteral("overall")}}}};
    PacketAnalysisViewModel viewModel;
    reportResults(viewModel, {}, statistics);
    const QVector<QPair<const char *, QVariant>> readings{{"masterClockIp", "10.0.0.1"},
                                                          {"syncMessageCount", 11},
                                                          {"followUpMessageCount", 12},
                                                          {"announceMessageCount", 13},
                                                          {"delayReqMessageCount", 14},
                                                          {"uniqueSlaveCount", 3},
                                                          {"announceIntervalStatus", "announce"},
                                                          {"syncIntervalStatus", "sync"},
                                                          {"followUpIntervalStatus", "follow-up"},
                                                          {"slaveResponseStatus", "slaves"},
                                                          {"abnormalTimeSegments", segments},
                                                          {"abnormalPackets", findings},
                                                          {"overallHealthStatus", "overall"}};
    for (const auto &[name, value] : readings)
        QCOMPARE(viewModel.property(name), value);
}

void TestPacketAnalysisViewModel::statistics_emptyTexts_readAsEmpty()
{
    QVariantMap health;
    const QVector<const char *> statuses{"announceIntervalStatus", "syncIntervalStatus", "followUpIntervalStatus",
                                         "slaveResponseStatus", "overallHealthStatus"};
    for (const char *status : statuses)
        health.insert(QLatin1String(status), QString());
    QVariantMap statistics = healthStatistics(health);
    statistics.insert(QStringLiteral("masterClockIp"), QString());
    PacketAnalysisViewModel viewModel;
    reportResults(viewModel, {}, statistics);
    QCOMPARE(viewModel.masterClockIp(), QString());
    for (const char *status : statuses)
        QCOMPARE(viewModel.property(status), QVariant(QString()));
}

void TestPacketAnalysisViewModel::captureTime_isFirstAndSecondLastSync_data()
{
    QTest::addColumn<QVariantMap>("statistics");
    QTest::addColumn<QString>("text");
    const QString unknown = QStringLiteral("未知");
    const auto range = [](const QVariantMap &times) { return QVariantMap{{QStringLiteral("timeRange"), times}}; };
    const QString first = QStringLiteral("firstSyncTime");
    const QString second = QStringLiteral("secondLastSyncTime");
    QTest::newRow("both") << range({{first, 1'700'000'000'000LL}, {second, 1'700'000'061'999LL}})
                          << QStringLiteral("2023-11-14 22:13:20 --- 2023-11-14 22:14:21");
    QTest::newRow("one millisecond after the epoch")
        << range({{first, 1LL}, {second, 1LL}}) << QStringLiteral("1970-01-01 00:00:00 --- 1970-01-01 00:00:00");
    QTest::newRow("first is 0") << range({{first, 0LL}, {second, 1'700'000'000'000LL}}) << unknown;
    QTest::newRow("second is 0") << range({{first, 1'700'000'000'000LL}, {second, 0LL}}) << unknown;
    QTest::newRow("negative") << range({{first, -5LL}, {second, -4LL}}) << unknown;
    QTest::newRow("no message had a time")
        << range({{first, std::numeric_limits<qint64>::max()}, {second, std::numeric_limits<qint64>::min()}})
        << unknown;
    QTest::newRow("first missing") << range({{second, 1'700'000'000'000LL}}) << unknown;
    QTest::newRow("second missing") << range({{first, 1'700'000'000'000LL}}) << unknown;
    QTest::newRow("no time range") << QVariantMap{{QStringLiteral("masterClockIp"), QStringLiteral("10.0.0.1")}}
                                   << unknown;
}

void TestPacketAnalysisViewModel::captureTime_isFirstAndSecondLastSync()
{
    QFETCH(const QVariantMap, statistics);
    QFETCH(const QString, text);
    QVERIFY(setLocalTimeZone("UTC"));
    PacketAnalysisViewModel viewModel;
    reportResults(viewModel, {}, statistics);
    QCOMPARE(viewModel.captureTime(), text);
}

void TestPacketAnalysisViewModel::captureTime_isLocal()
{
    QVERIFY(setLocalTimeZone("Asia/Shanghai"));
    PacketAnalysisViewModel viewModel;
    reportResults(
        viewModel, {},
        {{QStringLiteral("timeRange"), QVariantMap{{QStringLiteral("firstSyncTime"), 1'700'000'000'000LL},
                                                   {QStringLiteral("secondLastSyncTime"), 1'700'000'001'000LL}}}});
    QCOMPARE(viewModel.captureTime(), QStringLiteral("2023-11-15 06:13:20 --- 2023-11-15 06:13:21"));
    QVERIFY(setLocalTimeZone("UTC"));
}

void TestPacketAnalysisViewModel::analysisResult_followsFindingsThenStatusThenCount_data()
{
    QTest::addColumn<bool>("hasFindings");
    QTest::addColumn<QVariant>("overall"); // invalid: the key is missing
    QTest::addColumn<int>("records");
    QTest::addColumn<QString>("verdict");
    const QString normal = QStringLiteral("正常");
    const QString abnormal = QStringLiteral("异常");
    const QString almost = QStringLiteral("基本正常");
    QTest::newRow("findings outweigh a normal status") << true << QVariant(normal) << 5 << abnormal;
    QTest::newRow("findings, abnormal") << true << QVariant(abnormal) << 5 << abnormal;
    QTest::newRow("no findings, normal") << false << QVariant(normal) << 5 << normal;
    QTest::newRow("no findings, normal, no records") << false << QVariant(normal) << 0 << normal;
    QTest::newRow("no findings, abnormal") << false << QVariant(abnormal) << 5 << abnormal;
    QTest::newRow("not analysed, no records") << false << QVariant() << 0 << abnormal;
    QTest::newRow("not analysed, one record") << false << QVariant() << 1 << almost;
    QTest::newRow("said to be not analysed, no records") << false << QVariant("no anylse") << 0 << abnormal;
    QTest::newRow("empty status, records") << false << QVariant(QString()) << 5 << almost;
}

void TestPacketAnalysisViewModel::analysisResult_followsFindingsThenStatusThenCount()
{
    QFETCH(const bool, hasFindings);
    QFETCH(const QVariant, overall);
    QFETCH(const int, records);
    QFETCH(const QString, verdict);
    QVariantMap health;
    if (hasFindings)
        health.insert(QStringLiteral("abnormalPackets"), QVariantList{QVariantMap()});
    if (overall.isValid())
        health.insert(QStringLiteral("overallHealthStatus"), overall);
    QVariantList results;
    for (int i = 0; i < records; ++i)
        results.append(record(i));
    PacketAnalysisViewModel viewModel;
    reportResults(viewModel, results, healthStatistics(health));
    QCOMPARE(viewModel.analysisResult(), verdict);
}

void TestPacketAnalysisViewModel::start_withoutFile_setsTheErrorOnly()
{
    PacketAnalysisViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    viewModel.startAnalysis();
    viewModel.startAnalysis();
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("lastErrorMessageChanged()")});
    QCOMPARE(viewModel.lastErrorMessage(), QStringLiteral("No file selected"));
}

void TestPacketAnalysisViewModel::start_withMissingFile_setsTheErrorOnly()
{
    const QString path = QStringLiteral("/nowhere/缺少.pcap");
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(path);
    const SignalRecorder recorder(&viewModel);
    viewModel.startAnalysis();
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("lastErrorMessageChanged()")});
    QCOMPARE(viewModel.lastErrorMessage(), QStringLiteral("File does not exist: ") + path);
}

void TestPacketAnalysisViewModel::start_withMissingFile_keepsTheOldResults()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(QStringLiteral("/nowhere/a.pcap"));
    fill(viewModel);
    viewModel.startAnalysis();
    QCOMPARE(viewModel.analysisResults().size(), 2);
    QVERIFY(viewModel.isAnalysisComplete());
}

void TestPacketAnalysisViewModel::stop_whileIdle_isSilent()
{
    PacketAnalysisViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    viewModel.stopAnalysis();
    QCOMPARE(recorder.texts(), QStringList());
}

QTEST_GUILESS_MAIN(TestPacketAnalysisViewModel)
#include "tst_packetanalysisviewmodel.moc"
