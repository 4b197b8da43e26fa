// The two exports, byte for byte.
#include "packetanalysisviewmodel.h"

#include "signalrecorder.h"
#include "systemlimits.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace {

// What the text mode makes of a line feed.
#ifdef Q_OS_WIN
const QByteArray kLineEnd = "\r\n";
#else
const QByteArray kLineEnd = "\n";
#endif
const QByteArray kByteOrderMark = "\xef\xbb\xbf";

QVariantMap finding(const QString &timestamp, const QString &type, const QString &source, const QString &abnormal)
{
    return {{QStringLiteral("timestamp"), timestamp},
            {QStringLiteral("messageType"), type},
            {QStringLiteral("sourceIp"), source},
            {QStringLiteral("sequenceId"), QStringLiteral("7")},
            {QStringLiteral("abnormalType"), abnormal}};
}

QVariantMap withFindings(const QVariantList &findings)
{
    return {{QStringLiteral("healthCheck"), QVariantMap{{QStringLiteral("abnormalPackets"), findings}}}};
}

QVariantList oneRecord()
{
    return {QVariantMap{{QStringLiteral("timestamp"), QStringLiteral("2023-11-14 22:13:20.000")},
                        {QStringLiteral("messageType"), QStringLiteral("SYNC")}}};
}

void report(PacketAnalysisViewModel &viewModel, const QVariantList &results, const QVariantMap &statistics)
{
    QVERIFY(QMetaObject::invokeMethod(&viewModel, "onWorkerResults", Q_ARG(QVariantList, results),
                                      Q_ARG(QVariantMap, statistics)));
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(cannot be read)");
}

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

//! The document with the time of the export replaced; the time goes to `time`.
QByteArray withoutTime(const QByteArray &document, QString *time = nullptr)
{
    const QRegularExpression pattern(QStringLiteral("\"exportTime\": \"([^\"]*)\""));
    QString text = QString::fromUtf8(document);
    if (time)
        *time = pattern.match(text).captured(1);
    return text.replace(pattern, QStringLiteral("\"exportTime\": \"TIME\"")).toUtf8();
}

enum class Kind { Document, Table };

//! Both exports fail alike, with other words.
struct ExportCall
{
    Kind kind = Kind::Document;

    void operator()(PacketAnalysisViewModel &viewModel, const QString &path) const
    {
        if (kind == Kind::Document)
            viewModel.exportResults(path);
        else
            viewModel.exportAbnormalPackets(path);
    }
    QString failure(const QString &path) const
    {
        return (kind == Kind::Document ? QStringLiteral("Failed to export results to: ") : QStringLiteral("导出失败: "))
               + path;
    }
};

void addBothKinds()
{
    QTest::addColumn<int>("kind");
    QTest::newRow("document") << int(Kind::Document);
    QTest::newRow("table") << int(Kind::Table);
}

ExportCall exportCall()
{
    QFETCH(const int, kind);
    return {static_cast<Kind>(kind)};
}

} // namespace

class TestPacketAnalysisViewModelExport : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    // The document
    void document_isIndentedJsonWithSortedKeys();
    void document_emptyStatistics_isAnEmptyObject();
    void document_ofEntriesThatAreNoMaps_hasEmptyObjects();
    void document_timeIsLocalIsoInSeconds();
    void document_readBack_equalsTheResults();
    void document_twice_differsInTheTimeOnly();
    void document_withoutResults_isRefused();

    // The table
    void table_isUtf8WithMarkAndFourColumns();
    void table_field_data();
    void table_field();
    void table_missingKeys_giveEmptyFields();
    void table_readBack_hasOneRowPerFinding();
    void table_withoutFindings_isRefused_data();
    void table_withoutFindings_isRefused();

    // Both
    void success_isSilent_data() { addBothKinds(); }
    void success_isSilent();
    void olderFailure_staysAfterASuccess_data() { addBothKinds(); }
    void olderFailure_staysAfterASuccess();
    void existingFile_isReplacedWhole_data() { addBothKinds(); }
    void existingFile_isReplacedWhole();
    void pathInChinese_isUsedUnchanged_data() { addBothKinds(); }
    void pathInChinese_isUsedUnchanged();
    void folderAsTarget_fails_data() { addBothKinds(); }
    void folderAsTarget_fails();
    void missingFolder_fails_data() { addBothKinds(); }
    void missingFolder_fails();
    void emptyPath_fails_data() { addBothKinds(); }
    void emptyPath_fails();
    void failure_twice_isAnnouncedOnce_data() { addBothKinds(); }
    void failure_twice_isAnnouncedOnce();
    void deniedFolder_fails_data() { addBothKinds(); }
    void deniedFolder_fails();
    void deniedFile_fails_data() { addBothKinds(); }
    void deniedFile_fails();
    void writableFileInDeniedFolder_isWritten_data() { addBothKinds(); }
    void writableFileInDeniedFolder_isWritten();
    void fullDisk_keepsTheExistingFile_data() { addBothKinds(); }
    void fullDisk_keepsTheExistingFile();
    void fullDevice_isSurvived_data() { addBothKinds(); }
    void fullDevice_isSurvived();
    void symbolicLink_isWrittenThrough_data() { addBothKinds(); }
    void symbolicLink_isWrittenThrough();

private:
    QString path(const QString &name) const { return _folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> _folder;
};

void TestPacketAnalysisViewModelExport::initTestCase()
{
    QVERIFY(QTemporaryDir().isValid());
}

void TestPacketAnalysisViewModelExport::init()
{
    _folder = std::make_unique<QTemporaryDir>();
    QVERIFY(_folder->isValid());
}

void TestPacketAnalysisViewModelExport::document_isIndentedJsonWithSortedKeys()
{
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(QStringLiteral("/抓包/a \"b\".pcap"));
    report(viewModel, oneRecord(),
           {{QStringLiteral("totalPackets"), 1},
            {QStringLiteral("timeRange"), QVariantMap{{QStringLiteral("start"), 1'700'000'000'000LL}}},
            {QStringLiteral("syncSessions"),
             QVariantList{QVariantMap{{QStringLiteral("clockOffset"), -12.5}, {QStringLiteral("hasValidSync"), true}}}},
            {QStringLiteral("masterClockIp"), QString()}});
    viewModel.exportResults(path(QStringLiteral("a.json")));
    const QByteArray expected = R"({
    "exportTime": "TIME",
    "filePath": "/抓包/a \"b\".pcap",
    "results": [
        {
            "messageType": "SYNC",
            "timestamp": "2023-11-14 22:13:20.000"
        }
    ],
    "statistics": {
        "masterClockIp": "",
        "syncSessions": [
            {
                "clockOffset": -12.5,
                "hasValidSync": true
            }
        ],
        "timeRange": {
            "start": 1700000000000
        },
        "totalPackets": 1
    }
}
)";
    QCOMPARE(withoutTime(contentOf(path(QStringLiteral("a.json")))), expected);
}

void TestPacketAnalysisViewModelExport::document_emptyStatistics_isAnEmptyObject()
{
    PacketAnalysisViewModel viewModel;
    report(viewModel, oneRecord(), {});
    viewModel.exportResults(path(QStringLiteral("a.json")));
    const QByteArray expected = R"({
    "exportTime": "TIME",
    "filePath": "",
    "results": [
        {
            "messageType": "SYNC",
            "timestamp": "2023-11-14 22:13:20.000"
        }
    ],
    "statistics": {
    }
}
)";
    QCOMPARE(withoutTime(contentOf(path(QStringLiteral("a.json")))), expected);
}

void TestPacketAnalysisViewModelExport::document_ofEntriesThatAreNoMaps_hasEmptyObjects()
{
    PacketAnalysisViewModel viewModel;
    report(viewModel, {QStringLiteral("text"), QVariant(), 3}, {});
    viewModel.exportResults(path(QStringLiteral("a.json")));
    const QJsonObject document = QJsonDocument::fromJson(contentOf(path(QStringLiteral("a.json")))).object();
    QCOMPARE(document.value(QStringLiteral("results")).toArray(),
             (QJsonArray{QJsonObject(), QJsonObject(), QJsonObject()}));
}

void TestPacketAnalysisViewModelExport::document_timeIsLocalIsoInSeconds()
{
    PacketAnalysisViewModel viewModel;
    report(viewModel, oneRecord(), {});
    const QDateTime before = QDateTime::currentDateTime();
    viewModel.exportResults(path(QStringLiteral("a.json")));
    const QDateTime after = QDateTime::currentDateTime();
    QString text;
    withoutTime(contentOf(path(QStringLiteral("a.json"))), &text);
    const QDateTime time = QDateTime::fromString(text, QStringLiteral("yyyy-MM-ddThh:mm:ss")); // no zone, no fraction
    QVERIFY2(time.isValid(), qUtf8Printable(text));
    QVERIFY(before.addMSecs(-1000) < time);
    QVERIFY(time <= after);
}

void TestPacketAnalysisViewModelExport::document_readBack_equalsTheResults()
{
    PacketAnalysisViewModel viewModel;
    QVariantList results;
    for (int i = 0; i < 200; ++i) {
        results.append(QVariantMap{{QStringLiteral("sequenceId"), QString::number(i)},
                                   {QStringLiteral("sourceIp"), QStringLiteral("10.0.0.%1").arg(i)}});
    }
    const QVariantMap statistics = withFindings(
        {finding(QStringLiteral("t"), QStringLiteral("Sync"), QStringLiteral("a"), QStringLiteral("时间间隔异常"))});
    report(viewModel, results, statistics);
    viewModel.exportResults(path(QStringLiteral("a.json")));
    const QByteArray content = contentOf(path(QStringLiteral("a.json")));
    QVERIFY(!content.startsWith(kByteOrderMark));
    QJsonParseError error{};
    const QJsonObject document = QJsonDocument::fromJson(content, &error).object();
    QCOMPARE(error.error, QJsonParseError::NoError);
    QCOMPARE(document.keys(), (QStringList{QStringLiteral("exportTime"), QStringLiteral("filePath"),
                                           QStringLiteral("results"), QStringLiteral("statistics")}));
    QCOMPARE(document.value(QStringLiteral("results")).toArray().toVariantList(), results);
    QCOMPARE(document.value(QStringLiteral("statistics")).toObject().toVariantMap(), statistics);
}

void TestPacketAnalysisViewModelExport::document_twice_differsInTheTimeOnly()
{
    PacketAnalysisViewModel viewModel;
    report(viewModel, oneRecord(), withFindings({QVariantMap()}));
    viewModel.exportResults(path(QStringLiteral("a.json")));
    viewModel.exportResults(path(QStringLiteral("b.json")));
    const QByteArray first = withoutTime(contentOf(path(QStringLiteral("a.json"))));
    QVERIFY(first.contains("TIME"));
    QCOMPARE(withoutTime(contentOf(path(QStringLiteral("b.json")))), first);
}

void TestPacketAnalysisViewModelExport::document_withoutResults_isRefused()
{
    PacketAnalysisViewModel viewModel;
    report(viewModel, {}, {{QStringLiteral("totalPackets"), 0}});
    const SignalRecorder recorder(&viewModel);
    viewModel.exportResults(path(QStringLiteral("a.json")));
    QCOMPARE(viewModel.lastErrorMessage(), QStringLiteral("No results to export"));
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("lastErrorMessageChanged()")});
    QVERIFY(!QFile::exists(path(QStringLiteral("a.json"))));
}

void TestPacketAnalysisViewModelExport::table_isUtf8WithMarkAndFourColumns()
{
    PacketAnalysisViewModel viewModel;
    report(viewModel, {},
           withFindings({finding(QStringLiteral("2023-11-14 22:13:20.000 ~ 2023-11-14 22:13:22.000"),
                                 QStringLiteral("Sync"), QStringLiteral("10.0.0.1"), QStringLiteral("时间间隔异常")),
                         finding(QStringLiteral("2023-11-14 22:13:21.000"), QStringLiteral("DELAY_REQ"),
                                 QStringLiteral("未知从节点1"), QStringLiteral("从节点未回复"))}));
    viewModel.exportAbnormalPackets(path(QStringLiteral("a.csv")));
    const QByteArray expected = kByteOrderMark + "timestamp,messageType,sourceIp,abnormalType" + kLineEnd
                                + "2023-11-14 22:13:20.000 ~ 2023-11-14 22:13:22.000,Sync,10.0.0.1,时间间隔异常"
                                + kLineEnd + "2023-11-14 22:13:21.000,DELAY_REQ,未知从节点1,从节点未回复" + kLineEnd;
    QCOMPARE(contentOf(path(QStringLiteral("a.csv"))), expected);
}

void TestPacketAnalysisViewModelExport::table_field_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("written");
    QTest::newRow("comma") << QStringLiteral("10.0.0.1,10.0.0.2") << QByteArray("10.0.0.1，10.0.0.2");
    QTest::newRow("commas only") << QStringLiteral(",,") << QByteArray("，，");
    QTest::newRow("line break") << QStringLiteral("one\ntwo") << QByteArray("one two");
    QTest::newRow("both") << QStringLiteral("a,\n,b") << QByteArray("a， ，b");
    QTest::newRow("quotes stay") << QStringLiteral("\"a\"") << QByteArray("\"a\"");
    QTest::newRow("semicolon and tab stay") << QStringLiteral("a;\tb") << QByteArray("a;\tb");
    QTest::newRow("carriage return stays") << QStringLiteral("a\rb") << QByteArray("a\rb");
    QTest::newRow("full-width comma stays") << QStringLiteral("a，b") << QByteArray("a，b");
    QTest::newRow("outside of the basic plane") << QStringLiteral("𠀀") << QByteArray("𠀀");
    QTest::newRow("empty") << QString() << QByteArray();
}

void TestPacketAnalysisViewModelExport::table_field()
{
    QFETCH(const QString, text);
    QFETCH(const QByteArray, written);
    PacketAnalysisViewModel viewModel;
    report(viewModel, {}, withFindings({finding(text, text, text, text)}));
    viewModel.exportAbnormalPackets(path(QStringLiteral("a.csv")));
    const QByteArray expected = kByteOrderMark + "timestamp,messageType,sourceIp,abnormalType" + kLineEnd + written
                                + ',' + written + ',' + written + ',' + written + kLineEnd;
    QCOMPARE(contentOf(path(QStringLiteral("a.csv"))), expected);
}

void TestPacketAnalysisViewModelExport::table_missingKeys_giveEmptyFields()
{
    QVariantMap withoutSource =
        finding(QStringLiteral("t"), QStringLiteral("Sync"), QStringLiteral("a"), QStringLiteral("x"));
    withoutSource.remove(QStringLiteral("sourceIp"));
    PacketAnalysisViewModel viewModel;
    report(viewModel, {}, withFindings({withoutSource, QVariantMap(), QStringLiteral("no map")}));
    viewModel.exportAbnormalPackets(path(QStringLiteral("a.csv")));
    const QByteArray expected = kByteOrderMark + "timestamp,messageType,sourceIp,abnormalType" + kLineEnd + "t,Sync,,x"
                                + kLineEnd + ",,," + kLineEnd + ",,," + kLineEnd;
    QCOMPARE(contentOf(path(QStringLiteral("a.csv"))), expected);
}

void TestPacketAnalysisViewModelExport::table_readBack_hasOneRowPerFinding()
{
    QVariantList findings;
    for (int i = 0; i < 1000; ++i)
        findings.append(finding(QStringLiteral("time, %1").arg(i), QStringLiteral("Sync"),
                                QStringLiteral("源\n%1").arg(i), QStringLiteral("超时")));
    PacketAnalysisViewModel viewModel;
    report(viewModel, {}, withFindings(findings));
    viewModel.exportAbnormalPackets(path(QStringLiteral("a.csv")));
    QFile file(path(QStringLiteral("a.csv")));
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    QCOMPARE(stream.readLine().split(QLatin1Char(',')).size(), 4);
    for (int i = 0; i < findings.size(); ++i) {
        const QStringList expected{QStringLiteral("time， %1").arg(i), QStringLiteral("Sync"),
                                   QStringLiteral("源 %1").arg(i), QStringLiteral("超时")};
        QCOMPARE(stream.readLine().split(QLatin1Char(',')), expected);
    }
    QVERIFY(stream.atEnd());
}

void TestPacketAnalysisViewModelExport::table_withoutFindings_isRefused_data()
{
    QTest::addColumn<QVariantMap>("statistics");
    QTest::newRow("empty list") << withFindings({});
    QTest::newRow("no list") << QVariantMap{{QStringLiteral("healthCheck"), QVariantMap()}};
    QTest::newRow("no health check") << QVariantMap();
    QTest::newRow("list in the wrong place")
        << QVariantMap{{QStringLiteral("abnormalPackets"), QVariantList{QVariantMap()}}};
}

void TestPacketAnalysisViewModelExport::table_withoutFindings_isRefused()
{
    QFETCH(const QVariantMap, statistics);
    PacketAnalysisViewModel viewModel;
    report(viewModel, oneRecord(), statistics);
    const SignalRecorder recorder(&viewModel);
    viewModel.exportAbnormalPackets(path(QStringLiteral("a.csv")));
    QCOMPARE(viewModel.lastErrorMessage(), QStringLiteral("无异常数据包可导出"));
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("lastErrorMessageChanged()")});
    QVERIFY(!QFile::exists(path(QStringLiteral("a.csv"))));
}

// A view model with something to export in both ways.
static void fill(PacketAnalysisViewModel &viewModel)
{
    report(
        viewModel, oneRecord(),
        withFindings({finding(QStringLiteral("t"), QStringLiteral("Sync"), QStringLiteral("a"), QStringLiteral("x"))}));
}

void TestPacketAnalysisViewModelExport::success_isSilent()
{
    const ExportCall call = exportCall();
    PacketAnalysisViewModel viewModel;
    fill(viewModel);
    const SignalRecorder recorder(&viewModel);
    call(viewModel, path(QStringLiteral("a")));
    QCOMPARE(recorder.texts(), QStringList());
    QCOMPARE(QDir(_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("a")});
}

void TestPacketAnalysisViewModelExport::olderFailure_staysAfterASuccess()
{
    const ExportCall call = exportCall();
    PacketAnalysisViewModel viewModel;
    fill(viewModel);
    call(viewModel, _folder->path());
    call(viewModel, path(QStringLiteral("a")));
    QCOMPARE(viewModel.lastErrorMessage(), call.failure(_folder->path()));
}

void TestPacketAnalysisViewModelExport::existingFile_isReplacedWhole()
{
    const ExportCall call = exportCall();
    PacketAnalysisViewModel viewModel;
    fill(viewModel);
    call(viewModel, path(QStringLiteral("fresh")));
    QVERIFY(write(path(QStringLiteral("old")), QByteArray(100'000, 'x')));
    call(viewModel, path(QStringLiteral("old")));
    QCOMPARE(withoutTime(contentOf(path(QStringLiteral("old")))),
             withoutTime(contentOf(path(QStringLiteral("fresh")))));
}

void TestPacketAnalysisViewModelExport::pathInChinese_isUsedUnchanged()
{
    const ExportCall call = exportCall();
    PacketAnalysisViewModel viewModel;
    fill(viewModel);
    QVERIFY(QDir(_folder->path()).mkdir(QStringLiteral("导出 1")));
    call(viewModel, path(QStringLiteral("导出 1/分析结果")));
    QCOMPARE(viewModel.lastErrorMessage(), QString());
    QVERIFY(QFileInfo(path(QStringLiteral("导出 1/分析结果"))).size() > 0);
}

void TestPacketAnalysisViewModelExport::folderAsTarget_fails()
{
    const ExportCall call = exportCall();
    PacketAnalysisViewModel viewModel;
    fill(viewModel);
    const SignalRecorder recorder(&viewModel);
    call(viewModel, _folder->path());
    QCOMPARE(viewModel.lastErrorMessage(), call.failure(_folder->path()));
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("lastErrorMessageChanged()")});
    QVERIFY(QFileInfo(_folder->path()).isDir());
}

void TestPacketAnalysisViewModelExport::missingFolder_fails()
{
    const ExportCall call = exportCall();
    PacketAnalysisViewModel viewModel;
    fill(viewModel);
    const QString target = path(QStringLiteral("missing/a"));
    call(viewModel, target);
    QCOMPARE(viewModel.lastErrorMessage(), call.failure(target));
    QVERIFY(!QFileInfo::exists(path(QStringLiteral("missing"))));
}

void TestPacketAnalysisViewModelExport::emptyPath_fails()
{
    const ExportCall call = exportCall();
    PacketAnalysisViewModel viewModel;
    fill(viewModel);
    call(viewModel, QString());
    QCOMPARE(viewModel.lastErrorMessage(), call.failure(QString()));
}

void TestPacketAnalysisViewModelExport::failure_twice_isAnnouncedOnce()
{
    const ExportCall call = exportCall();
    PacketAnalysisViewModel viewModel;
    fill(viewModel);
    const SignalRecorder recorder(&viewModel);
    call(viewModel, _folder->path());
    call(viewModel, _folder->path());
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("lastErrorMessageChanged()")});
}

void TestPacketAnalysisViewModelExport::deniedFolder_fails()
{
    const ExportCall call = exportCall();
    PacketAnalysisViewModel viewModel;
    fill(viewModel);
    const QString folder = path(QStringLiteral("denied"));
    QVERIFY(QDir().mkdir(folder));
    QVERIFY(QFile::setPermissions(_folder->path(), QFile::Permissions(0x7755)));
    QVERIFY(QFile::setPermissions(folder, QFile::Permissions(0x5555)));
    {
        const systemlimits::UnprivilegedScope scope;
        if (!scope.isUnprivileged()) {
            QTest::qSkip("This system has no other user to act as", __FILE__, __LINE__);
            return;
        }
        call(viewModel, folder + QStringLiteral("/a"));
    }
    QCOMPARE(viewModel.lastErrorMessage(), call.failure(folder + QStringLiteral("/a")));
    QVERIFY(!QFile::exists(folder + QStringLiteral("/a")));
}

void TestPacketAnalysisViewModelExport::deniedFile_fails()
{
    const ExportCall call = exportCall();
    PacketAnalysisViewModel viewModel;
    fill(viewModel);
    const QString target = path(QStringLiteral("denied"));
    QVERIFY(write(target, "old"));
    QVERIFY(QFile::setPermissions(target, QFile::Permissions(0x4444)));
    QVERIFY(QFile::setPermissions(_folder->path(), QFile::Permissions(0x7777)));
    {
        const systemlimits::UnprivilegedScope scope;
        if (!scope.isUnprivileged()) {
            QTest::qSkip("This system has no other user to act as", __FILE__, __LINE__);
            return;
        }
        call(viewModel, target);
    }
    QCOMPARE(viewModel.lastErrorMessage(), call.failure(target));
    QCOMPARE(contentOf(target), QByteArray("old"));
}

void TestPacketAnalysisViewModelExport::writableFileInDeniedFolder_isWritten()
{
    const ExportCall call = exportCall();
    PacketAnalysisViewModel viewModel;
    fill(viewModel);
    const QString target = path(QStringLiteral("open"));
    QVERIFY(write(target, "old"));
    QVERIFY(QFile::setPermissions(target, QFile::Permissions(0x6666)));
    QVERIFY(QFile::setPermissions(_folder->path(), QFile::Permissions(0x7755)));
    {
        const systemlimits::UnprivilegedScope scope;
        if (!scope.isUnprivileged()) {
            QTest::qSkip("This system has no other user to act as", __FILE__, __LINE__);
            return;
        }
        call(viewModel, target);
    }
    QCOMPARE(viewModel.lastErrorMessage(), QString());
    call(viewModel, path(QStringLiteral("reference")));
    QCOMPARE(withoutTime(contentOf(target)), withoutTime(contentOf(path(QStringLiteral("reference")))));
}

void TestPacketAnalysisViewModelExport::fullDisk_keepsTheExistingFile()
{
    const ExportCall call = exportCall();
    QVariantList records;
    for (int i = 0; i < 5000; ++i)
        records.append(finding(QString::number(i), QStringLiteral("Sync"), QStringLiteral("10.0.0.1"),
                               QStringLiteral("时间间隔异常")));
    PacketAnalysisViewModel viewModel;
    report(viewModel, records, withFindings(records));
    const QString target = path(QStringLiteral("a"));
    QVERIFY(write(target, "an older export, whole"));
    {
        const systemlimits::FileSizeLimit limit(4096);
        if (!limit.isInForce()) {
            QTest::qSkip("This system has no limit of file sizes", __FILE__, __LINE__);
            return;
        }
        call(viewModel, target);
    }
    QCOMPARE(contentOf(target), QByteArray("an older export, whole"));
    QCOMPARE(QDir(_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("a")});
    call(viewModel, target); // with room again
    QVERIFY(contentOf(target).contains("4999"));
}

void TestPacketAnalysisViewModelExport::fullDevice_isSurvived()
{
    const ExportCall call = exportCall();
    const QString device = systemlimits::fullDevice();
    if (device.isEmpty()) {
        QTest::qSkip("This system has no device that is always full", __FILE__, __LINE__);
        return;
    }
    PacketAnalysisViewModel viewModel;
    fill(viewModel);
    const SignalRecorder recorder(&viewModel);
    call(viewModel, device);
    QCOMPARE(recorder.texts(), QStringList()); // it could be opened, and nothing more is asked
    QVERIFY(QFileInfo::exists(device));
    QVERIFY(!QFileInfo(device).isFile()); // and no file has taken its place
}

void TestPacketAnalysisViewModelExport::symbolicLink_isWrittenThrough()
{
    const ExportCall call = exportCall();
    PacketAnalysisViewModel viewModel;
    fill(viewModel);
    QVERIFY(QDir(_folder->path()).mkdir(QStringLiteral("elsewhere")));
    const QString target = path(QStringLiteral("elsewhere/target"));
    const QString link = path(QStringLiteral("link"));
    QVERIFY(write(target, "old"));
    if (!systemlimits::makeSymbolicLink(target, link)) {
        QTest::qSkip("This system has no symbolic links for everybody", __FILE__, __LINE__);
        return;
    }
    call(viewModel, link);
    QCOMPARE(viewModel.lastErrorMessage(), QString());
    QVERIFY(QFileInfo(link).isSymLink());
    call(viewModel, path(QStringLiteral("reference")));
    QCOMPARE(withoutTime(contentOf(target)), withoutTime(contentOf(path(QStringLiteral("reference")))));
}

QTEST_GUILESS_MAIN(TestPacketAnalysisViewModelExport)
#include "tst_packetanalysisviewmodel_export.moc"
