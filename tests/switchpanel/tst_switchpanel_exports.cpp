// switchpanel analyze --json and --csv.
#include "programrun.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace {

const QString kHealthy = samplePath(QStringLiteral("healthy.pcap"));
const QString kSlaveLost = samplePath(QStringLiteral("slave-lost.pcap"));
constexpr int kPcapHeaderSize = 24; // octets; a capture of no packets

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QJsonObject documentIn(const QString &path)
{
    return QJsonDocument::fromJson(contentOf(path)).object();
}

} // namespace

class TestExports : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void json_holdsTheWholeAnalysis();
    void json_isTheSameInEveryLanguage();
    void csv_readsBackAsTheFindings();
    void csv_withoutFindings_isNoError();
    void json_withoutMessages_isAnError();
    void export_intoAFolder();
    void export_ofSeveralCaptures_namesAFilePerCapture();
    void export_ofSeveralCaptures_needsAFolder();
    void export_ofAFailedCapture_writesNothing();
    void export_toAPlaceThatDoesNotExist_isAnError_data();
    void export_toAPlaceThatDoesNotExist_isAnError();
    void export_toAFullDevice_isAnError_data();
    void export_toAFullDevice_isAnError();

private:
    QString inFolder(const char *name) const { return _folder->filePath(QString::fromUtf8(name)); }

    std::unique_ptr<QTemporaryDir> _folder;
};

void TestExports::init()
{
    _folder = std::make_unique<QTemporaryDir>();
    QVERIFY(_folder->isValid());
}

void TestExports::json_holdsTheWholeAnalysis()
{
    const QString path = inFolder("结果.json");
    const ProgramRun run = runSwitchpanel({"analyze", "--quiet", "--json", path, kSlaveLost});
    QCOMPARE(run.exitStatus, 1);
    QCOMPARE(run.errors, QString());

    const QJsonObject document = documentIn(path);
    QCOMPARE(document.keys(), QStringList({"exportTime", "filePath", "results", "statistics"}));
    QCOMPARE(document["filePath"].toString(), kSlaveLost);
    // tshark -Y ptp counts 1798 packets, 868 of them Delay_Req.
    QCOMPARE(document["results"].toArray().size(), 1798);
    const QJsonObject statistics = document["statistics"].toObject();
    QCOMPARE(statistics["messageTypes"].toObject()["DELAY_REQ"].toInt(), 868);
    QCOMPARE(statistics["healthCheck"].toObject()["slaveResponseStatus"].toString(),
             QStringLiteral("异常 (12/24 Sync消息)"));
}

void TestExports::json_isTheSameInEveryLanguage()
{
    QJsonObject documents[2];
    const QStringList languages{"zh", "en"};
    for (int i = 0; i < 2; ++i) {
        const QString path = inFolder("out.json");
        QCOMPARE(runSwitchpanel({"analyze", "--lang", languages[i], "--json", path, kSlaveLost}).exitStatus, 1);
        documents[i] = documentIn(path);
        documents[i].remove("exportTime");
        QVERIFY(!documents[i].isEmpty());
    }
    QCOMPARE(documents[0], documents[1]);
}

void TestExports::csv_readsBackAsTheFindings()
{
    const QString table = inFolder("findings.csv");
    const QString document = inFolder("out.json");
    const ProgramRun run = runSwitchpanel({"analyze", "--quiet", "--csv", table, "--json", document, kSlaveLost});
    QCOMPARE(run.exitStatus, 1);

    QByteArray content = contentOf(table);
    QVERIFY(content.startsWith("\xef\xbb\xbf"));
    QVERIFY(content.endsWith('\n'));
    QStringList rows = QString::fromUtf8(content.mid(3)).remove('\r').split('\n');
    QCOMPARE(rows.takeFirst(), QStringLiteral("timestamp,messageType,sourceIp,abnormalType"));
    QCOMPARE(rows.takeLast(), QString());

    QStringList expected;
    const QVariantList findings = documentIn(document)["statistics"]
                                      .toObject()["healthCheck"]
                                      .toObject()["abnormalPackets"]
                                      .toArray()
                                      .toVariantList();
    for (const QVariant &value : findings) {
        const QJsonObject finding = value.toJsonObject();
        expected.append(QStringList{finding["timestamp"].toString(), finding["messageType"].toString(),
                                    finding["sourceIp"].toString(), finding["abnormalType"].toString()}
                            .join(','));
    }
    QCOMPARE(rows.size(), 12);
    QCOMPARE(rows, expected);
    QCOMPARE(rows.first(), QStringLiteral("2026-11-20 15:34:26.821,DELAY_REQ,192.168.100.5,从节点未回复"));
}

void TestExports::csv_withoutFindings_isNoError()
{
    const QString path = inFolder("findings.csv");
    const ProgramRun run = runSwitchpanel({"analyze", "--csv", path, kHealthy});
    QCOMPARE(run.exitStatus, 0);
    QVERIFY(!QFile::exists(path));
    QVERIFY(run.errors.endsWith(
        QStringLiteral("switchpanel: %1 is not written: No abnormal packets to export\n").arg(path)));
    const ProgramRun quiet = runSwitchpanel({"analyze", "--quiet", "--csv", path, kHealthy});
    QCOMPARE(quiet.exitStatus, 0);
    QCOMPARE(quiet.errors, QString());
}

void TestExports::json_withoutMessages_isAnError()
{
    const QString capture = inFolder("empty.pcap");
    QFile file(capture);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(contentOf(kHealthy).left(kPcapHeaderSize));
    file.close();
    const ProgramRun run = runSwitchpanel({"analyze", "--json", inFolder("out.json"), capture});
    QCOMPARE(run.exitStatus, 2);
    QVERIFY(run.errors.endsWith("switchpanel: No results to export\n"));
    QVERIFY(!QFile::exists(inFolder("out.json")));
}

void TestExports::export_intoAFolder()
{
    const ProgramRun run =
        runSwitchpanel({"analyze", "--quiet", "--json", _folder->path(), "--csv", _folder->path(), kSlaveLost});
    QCOMPARE(run.exitStatus, 1);
    QCOMPARE(QDir(_folder->path()).entryList(QDir::Files, QDir::Name),
             QStringList({"slave-lost.pcap.csv", "slave-lost.pcap.json"}));
}

void TestExports::export_ofSeveralCaptures_namesAFilePerCapture()
{
    const ProgramRun run = runSwitchpanel({"analyze", "--quiet", "--json", _folder->path(), kSlaveLost, kHealthy});
    QCOMPARE(run.exitStatus, 1);
    QCOMPARE(documentIn(inFolder("slave-lost.pcap.json"))["filePath"].toString(), kSlaveLost);
    QCOMPARE(documentIn(inFolder("healthy.pcap.json"))["filePath"].toString(), kHealthy);
}

void TestExports::export_ofSeveralCaptures_needsAFolder()
{
    const ProgramRun run = runSwitchpanel({"analyze", "--json", inFolder("out.json"), kSlaveLost, kHealthy});
    QCOMPARE(run.exitStatus, 2);
    QCOMPARE(run.output, QString());
    QVERIFY(
        run.errors.startsWith(QStringLiteral("switchpanel: with several captures --json needs an existing folder")));
    QVERIFY(!QFile::exists(inFolder("out.json")));
}

void TestExports::export_ofAFailedCapture_writesNothing()
{
    const ProgramRun run = runSwitchpanel(
        {"analyze", "--json", inFolder("out.json"), "--csv", inFolder("out.csv"), inFolder("none.pcap")});
    QCOMPARE(run.exitStatus, 2);
    QVERIFY(QDir(_folder->path()).isEmpty());
    QCOMPARE(run.errors, QStringLiteral("switchpanel: File does not exist: %1\n").arg(inFolder("none.pcap")));
}

void TestExports::export_toAPlaceThatDoesNotExist_isAnError_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("chinese");

    QTest::newRow("json") << "--json"
                          << "Failed to export results to: %1"
                          << "分析结果导出失败：%1";
    QTest::newRow("csv") << "--csv"
                         << "Failed to export the findings to: %1"
                         << "导出失败: %1";
}

void TestExports::export_toAPlaceThatDoesNotExist_isAnError()
{
    QFETCH(QString, option);
    QFETCH(QString, english);
    QFETCH(QString, chinese);
    const QString path = inFolder("no folder/out");
    // The capture is abnormal: that the export failed weighs more.
    const ProgramRun run = runSwitchpanel({"analyze", "--quiet", option, path, kSlaveLost});
    QCOMPARE(run.exitStatus, 2);
    QCOMPARE(run.output, kSlaveLost + ": abnormal\n");
    QCOMPARE(run.errors, "switchpanel: " + english.arg(path) + '\n');
    QCOMPARE(runSwitchpanel({"analyze", "--quiet", "--lang", "zh", option, path, kSlaveLost}).errors,
             "switchpanel: " + chinese.arg(path) + '\n');
}

void TestExports::export_toAFullDevice_isAnError_data()
{
    QTest::addColumn<QString>("option");

    QTest::newRow("json") << "--json";
    QTest::newRow("csv") << "--csv";
}

void TestExports::export_toAFullDevice_isAnError()
{
#ifdef Q_OS_LINUX
    QFETCH(QString, option);
    const ProgramRun run = runSwitchpanel({"analyze", "--quiet", option, "/dev/full", kSlaveLost});
    QCOMPARE(run.exitStatus, 2);
    QVERIFY2(run.errors.contains("switchpanel: /dev/full is not written\n"), qPrintable(run.errors));
#else
    QSKIP("only Linux has /dev/full, on which every write fails");
#endif
}

QTEST_GUILESS_MAIN(TestExports)

#include "tst_switchpanel_exports.moc"
