#include <exporttargets.h>

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

class TestExportTargets : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void oneCapture_goesToTheFile();
    void oneCapture_goesIntoAFolderUnderItsName();
    void severalCaptures_goIntoAFolder();
    void severalCaptures_needAFolder();
    void severalCaptures_ofOneNameAreRefused();
    void emptyName_isRefused();
    void capture_isNotOverwritten();
    void captureOfAnotherSpelling_isNotOverwritten();

private:
    ExportTargets targets(const QString &out, const QStringList &captures) const
    {
        return exportTargets("json", out, QStringLiteral(".json"), captures, Language::English);
    }
    QString inFolder(const char *name) const { return _folder->filePath(QLatin1String(name)); }
    void touch(const QString &path) const
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    std::unique_ptr<QTemporaryDir> _folder;
};

void TestExportTargets::init()
{
    _folder = std::make_unique<QTemporaryDir>();
    QVERIFY(_folder->isValid());
}

void TestExportTargets::oneCapture_goesToTheFile()
{
    const ExportTargets found = targets(QStringLiteral("out/a.json"), {QStringLiteral("site.pcap")});
    QCOMPARE(found.error, QString());
    QCOMPARE(found.paths, QStringList({"out/a.json"}));
}

void TestExportTargets::oneCapture_goesIntoAFolderUnderItsName()
{
    QCOMPARE(targets(_folder->path(), {QStringLiteral("/data/site.pcap")}).paths,
             QStringList({inFolder("site.pcap.json")}));
}

void TestExportTargets::severalCaptures_goIntoAFolder()
{
    const ExportTargets found = targets(_folder->path(), {QStringLiteral("a.pcap"), QStringLiteral("x/b.pcapng")});
    QCOMPARE(found.paths, QStringList({inFolder("a.pcap.json"), inFolder("b.pcapng.json")}));
}

void TestExportTargets::severalCaptures_needAFolder()
{
    const ExportTargets found =
        targets(QStringLiteral("out.json"), {QStringLiteral("a.pcap"), QStringLiteral("b.pcap")});
    QVERIFY(found.paths.isEmpty());
    QCOMPARE(found.error,
             QStringLiteral("with several captures --json needs an existing folder, which 'out.json' is not"));
}

void TestExportTargets::severalCaptures_ofOneNameAreRefused()
{
    // On some file systems these are one file.
    const ExportTargets found =
        targets(_folder->path(), {QStringLiteral("mon/Site.pcap"), QStringLiteral("tue/site.pcap")});
    QVERIFY(found.paths.isEmpty());
    QCOMPARE(found.error, QStringLiteral("--json: two captures are named 'site.pcap' and would go to the same file"));
}

void TestExportTargets::emptyName_isRefused()
{
    QCOMPARE(targets(QString(), {QStringLiteral("a.pcap")}).error,
             QStringLiteral("--json needs the name of a file or folder"));
}

void TestExportTargets::capture_isNotOverwritten()
{
    touch(inFolder("a.pcap"));
    const ExportTargets found = targets(inFolder("a.pcap"), {inFolder("a.pcap")});
    QVERIFY(found.paths.isEmpty());
    QCOMPARE(found.error, QStringLiteral("--json would overwrite the capture '%1'").arg(inFolder("a.pcap")));
}

void TestExportTargets::captureOfAnotherSpelling_isNotOverwritten()
{
    QVERIFY(QDir(_folder->path()).mkdir(QStringLiteral("sub")));
    touch(inFolder("b.pcap.json"));
    // A capture that is named like the export of another one.
    const QString other = inFolder("sub/../b.pcap.json");
    QVERIFY(!targets(_folder->path(), {inFolder("b.pcap"), other}).error.isEmpty());
}

QTEST_APPLESS_MAIN(TestExportTargets)

#include "tst_exporttargets.moc"
