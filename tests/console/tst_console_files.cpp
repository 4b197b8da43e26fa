// Configurations from a switch into a file, and from a file into a switch.
#include "consolebench.h"

#include <QtCore/QElapsedTimer>
#include <QtTest/QtTest>

#include <memory>

using simulator::Fault;
using simulator::FaultKind;

namespace {

constexpr std::chrono::minutes kLong{10};

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("cannot be read");
}

} // namespace

class TestConsoleFiles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    void export_holdsTheConfigurationToTheByte_data();
    void export_holdsTheConfigurationToTheByte();
    void export_toAnUnwritablePlace_isTold_andTheNextOneWorks();
    void export_whileOneRuns_isIgnored();
    void export_cutByAPulledCable_doesNotStopTheNextOne();
    void import_ofAnExport_doesNoHarm_data();
    void import_ofAnExport_doesNoHarm();
    void import_takesEffect_data();
    void import_takesEffect();
    void import_ofManyLines_isAsFastAsTheLine();

private:
    /// A connected switch of its own.
    ConsoleBench &connected(const QString &arguments);
    QString exportPath() const { return _folder.filePath(QStringLiteral("export.txt")); }
    QString write(const QByteArray &lines);
    /// What an export of the switch's present configuration should be.
    static QByteArray expectedExport(ConsoleBench &bench);

    std::unique_ptr<QuietLog> _quiet;
    std::unique_ptr<ConsoleBench> _bench;
    QTemporaryDir _folder;
};

void TestConsoleFiles::initTestCase()
{
    _quiet = std::make_unique<QuietLog>();
    QVERIFY(_folder.isValid());
}

void TestConsoleFiles::cleanup()
{
    _bench.reset();
}

void TestConsoleFiles::cleanupTestCase()
{
    _quiet.reset();
}

ConsoleBench &TestConsoleFiles::connected(const QString &arguments)
{
    _bench.reset();
    _bench = std::make_unique<ConsoleBench>(ConsoleBench::options(QStringLiteral("--login none ") + arguments));
    if (!_bench->connectPanel())
        qWarning("no inventory");
    _bench->forget();
    return *_bench;
}

QString TestConsoleFiles::write(const QByteArray &lines)
{
    QFile file(_folder.filePath(QStringLiteral("import.txt")));
    if (!file.open(QIODevice::WriteOnly) || file.write(lines) != lines.size())
        qWarning("cannot write %s", qUtf8Printable(file.fileName()));
    return file.fileName();
}

// The console's own output: command, answer, prompt, twice. What is not UTF-8 is replaced character by character.
QByteArray TestConsoleFiles::expectedExport(ConsoleBench &bench)
{
    const bool isHua3 = bench.switchOptions().family == simulator::Family::Hua3;
    const bool isForced = bench.switchOptions().paging == simulator::Paging::Forced;
    const QByteArray prompt = '<' + bench.running().name + '>';
    QByteArray text = isHua3 ? "screen-length disable\r\n" : "screen-length 0 temporary\r\n";
    if (isForced)
        text += isHua3 ? " Permission denied.\r\n"
                       : "Error: You do not have permission to run the command or the command is incomplete.\r\n";
    else if (!isHua3)
        text += "Info: The configuration takes effect on the current user terminal interface only.\r\n";
    text += prompt + "display current-configuration\r\n" + bench.device().device().configurationText() + prompt;
    return QString::fromUtf8(text).toUtf8();
}

void TestConsoleFiles::export_holdsTheConfigurationToTheByte_data()
{
    QTest::addColumn<QString>("arguments");
    const auto row = [](Effort effort, const char *name, const char *arguments) {
        if (effort == kEffort)
            QTest::newRow(name) << QString::fromLatin1(arguments);
    };
    row(Effort::Usual, "3000 lines, page by page", "--lines 3000 --paging forced --descriptions ascii");
    row(Effort::Thorough, "sub-model, 3000 lines, page by page",
        "--family huawei-sub --lines 3000 --paging forced --erase 42 --descriptions ascii");
    row(Effort::Usual, "hua3, 3000 lines, page by page",
        "--family hua3 --lines 3000 --paging forced --erase 42 --descriptions ascii");
    row(Effort::Usual, "descriptions in GBK", "--descriptions gbk");
    row(Effort::Thorough, "sub-model, descriptions in GBK", "--family huawei-sub --descriptions gbk");
    row(Effort::Thorough, "hua3, descriptions in GBK", "--family hua3 --descriptions gbk");
    row(Effort::Thorough, "pieces of random size, page by page", "--chunks 9 --lines 400 --paging forced");
    row(Effort::Thorough, "300 lines at 9600 baud, page by page", "--speed 960 --lines 300 --paging forced");
    row(Effort::Thorough, "300 lines at 9600 baud", "--speed 960 --lines 300");
}

void TestConsoleFiles::export_holdsTheConfigurationToTheByte()
{
    QFETCH(const QString, arguments);
    ConsoleBench &bench = connected(arguments);
    QVERIFY(bench.device().device().configurationText().count('\n') >= bench.switchOptions().configurationLines);
    write("an earlier file that is longer than nothing");
    QFile::copy(_folder.filePath(QStringLiteral("import.txt")), exportPath());
    bench->setExportPath(exportPath());
    bench->exportSwitchInfo();
    QVERIFY(bench->isWaitingResponse());
    QVERIFY(bench.waitUntilIdle(kLong));
    const QByteArray found = contentsOf(exportPath());
    const QByteArray expected = expectedExport(bench);
    if (found != expected) { // the place says more than 3000 lines
        int at = 0;
        while (at < std::min(found.size(), expected.size()) && found.at(at) == expected.at(at))
            ++at;
        QCOMPARE(found.mid(std::max(0, at - 40), 80), expected.mid(std::max(0, at - 40), 80));
    }
    QCOMPARE(found.size(), expected.size());
    QCOMPARE(bench.record().labels(),
             (QStringList{bench.tr("导出配置") + QLatin1Char('0'), bench.tr("导出配置") + QLatin1Char('1')}));
    QVERIFY(bench.standingPrompt().startsWith('<'));
}

void TestConsoleFiles::export_toAnUnwritablePlace_isTold_andTheNextOneWorks()
{
    ConsoleBench &bench = connected(QString());
    const QString path = _folder.filePath(QStringLiteral("no such folder/export.txt"));
    bench->setExportPath(path);
    bench->exportSwitchInfo();
    QVERIFY(bench.waitUntilIdle());
    const QStringList warnings = bench.record().warnings();
    QCOMPARE(warnings.size(), 2); // one for each piece
    for (const QString &warning : warnings)
        QVERIFY2(warning.startsWith(bench.tr("导出文件无法打开：") + path), qUtf8Printable(warning));
    QVERIFY(!bench->isWaitingResponse());

    bench->setExportPath(exportPath());
    bench->exportSwitchInfo();
    QVERIFY(bench.waitUntilIdle());
    QCOMPARE(contentsOf(exportPath()), expectedExport(bench));
}

void TestConsoleFiles::export_whileOneRuns_isIgnored()
{
    ConsoleBench &bench = connected(QStringLiteral("--lines 1000"));
    bench->setExportPath(exportPath());
    bench->exportSwitchInfo();
    bench->exportSwitchInfo();
    QVERIFY(waitUntil([&] { return bench.record().labels().size() == 2; }));
    bench->exportSwitchInfo();
    QVERIFY(bench.waitUntilIdle());
    QCOMPARE(contentsOf(exportPath()), expectedExport(bench));
    QCOMPARE(bench.record().labels().size(), 2);
}

void TestConsoleFiles::export_cutByAPulledCable_doesNotStopTheNextOne()
{
    ConsoleBench &bench = connected(QStringLiteral("--lines 1000"));
    Fault fault;
    fault.kind = FaultKind::Cut;
    fault.command = "display current-configuration";
    fault.after = 5000;
    bench.addFault(fault);
    bench->setExportPath(exportPath());
    bench->exportSwitchInfo();
    QVERIFY(bench.waitUntilIdle());
    QVERIFY(!bench.record().logsWith(QStringLiteral("已断开，请检查连接线")).isEmpty());
    const QByteArray piece = contentsOf(exportPath());
    QVERIFY2(expectedExport(bench).startsWith(piece), piece.right(200).constData()); // what came is kept

    QVERIFY(bench.reconnectPanel());
    bench->exportSwitchInfo();
    QVERIFY(bench.waitUntilIdle());
    QCOMPARE(contentsOf(exportPath()), expectedExport(bench));
}

void TestConsoleFiles::import_ofAnExport_doesNoHarm_data()
{
    QTest::addColumn<QString>("arguments");
    const auto row = [](Effort effort, const char *name, const char *arguments) {
        if (effort == kEffort)
            QTest::newRow(name) << QString::fromLatin1(arguments);
    };
    row(Effort::Usual, "huawei", "--model 4+2 --descriptions ascii");
    row(Effort::Thorough, "sub-model", "--family huawei-sub --model 4+2 --descriptions ascii");
    row(Effort::Thorough, "sub-model of two stages", "--family huawei-sub --model 4+2 --two-stage");
    row(Effort::Thorough, "hua3", "--family hua3 --model 4+2 --descriptions ascii");
    row(Effort::Thorough, "page by page", "--model 24+4 --paging forced --descriptions gbk");
    row(Effort::Thorough, "hua3, page by page", "--family hua3 --model 24+4 --paging forced --descriptions gbk");
}

void TestConsoleFiles::import_ofAnExport_doesNoHarm()
{
    QFETCH(const QString, arguments);
    ConsoleBench &bench = connected(arguments);
    bench->setExportPath(exportPath());
    bench->exportSwitchInfo();
    QVERIFY(bench.waitUntilIdle());
    const QByteArray before = bench.device().device().configurationText();
    const int lines = contentsOf(exportPath()).count('\n');
    bench.forget();

    bench->importSwitchInfo(exportPath());
    QVERIFY(bench.waitUntilIdle(kLong));
    QCOMPARE(bench.device().device().configurationText(), before);
    QVERIFY(bench.commands().size() > lines / 2);                       // it has been typed
    QCOMPARE(bench.standingPrompt(), '<' + bench.running().name + '>'); // no question, no view
    QVERIFY(bench.record().warnings().filter(QStringLiteral("交换机询问")).isEmpty());
    QCOMPARE(bench.device().device().state().starts, 1);

    bench.forget();
    bench->queryDeviceStatus(bench.tr("端口状态监测"));
    QVERIFY(bench.waitUntilIdle());
    QCOMPARE(bench.record().inventories(), 1);
}

void TestConsoleFiles::import_takesEffect_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::newRow("plain") << QByteArray("system-view\nvlan 33\ndescription cameras\nreturn\n");
    QTest::newRow("Windows line ends, indented, blank lines, no end")
        << QByteArray("\r\n  system-view\r\n\r\n\tvlan 33  \r\n   description cameras\r\n\r\nreturn");
    QTest::newRow("headed by a byte-order mark")
        << QByteArray("\xef\xbb\xbfsystem-view\nvlan 33\ndescription cameras\nreturn\n");
    QTest::newRow("with a line that is no UTF-8")
        << QByteArray("system-view\nvlan 33\ndescription cameras\n\xc9\xe3\xcf\xf1\nreturn\n");
    QTest::newRow("left in another view") << QByteArray("system-view\nvlan 33\ndescription cameras\n");
}

void TestConsoleFiles::import_takesEffect()
{
    QFETCH(const QByteArray, lines);
    ConsoleBench &bench = connected(QString());
    bench->importSwitchInfo(write(lines));
    QVERIFY(bench.waitUntilIdle());
    const auto vlans = bench.running().vlans;
    QCOMPARE(int(vlans.count(33)), 1);
    QCOMPARE(vlans.at(33).description, QByteArrayLiteral("cameras"));
    QCOMPARE(bench.record().labels(), QStringList{bench.tr("文件配置")});

    // Queries work in any view.
    bench.forget();
    bench->queryDeviceStatus(QStringLiteral("vlan"));
    QVERIFY(bench.waitUntilIdle());
    QVERIFY(!bench.record().logsWith(QStringLiteral("number of VLANs is : 2")).isEmpty());
}

// A prompt counts when nothing has followed it for 25 ms; nothing else may be added to what the line itself takes.
void TestConsoleFiles::import_ofManyLines_isAsFastAsTheLine()
{
    constexpr int kLines = kEffort == Effort::Usual ? 200 : 10000;
    constexpr std::chrono::milliseconds kPerLine{40};
    ConsoleBench &bench = connected(QStringLiteral("--idle-time 60m"));
    QByteArray lines = "system-view\n";
    for (int i = 0; i < kLines - 2; ++i)
        lines += "vlan " + QByteArray::number(2 + i % 4000) + '\n';
    lines += "return\n";
    QElapsedTimer timer;
    timer.start();
    bench->importSwitchInfo(write(lines));
    QVERIFY(bench.waitUntilIdle(kLong));
    const qint64 elapsed = timer.elapsed();
    QCOMPARE(bench.commands().size(), kLines);
    QCOMPARE(int(bench.running().vlans.size()), 1 + std::min(kLines - 2, 4000));
    QVERIFY2(elapsed < patience(kPerLine * kLines).count(), qPrintable(QString::number(elapsed)));
}

QTEST_GUILESS_MAIN(TestConsoleFiles)
#include "tst_console_files.moc"
