// Saving, clearing, exporting and importing configurations, over the recording platform.
#include "consolescene.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QProcessEnvironment>
#include <QtCore/QTemporaryDir>
#include <QtCore/QUrl>
#include <QtTest/QtTest>

#include <cstdio>

using Family = ConsoleScene::Family;
using VM = SwitchDeviceViewModel;

namespace {

constexpr const char *kPrintPath = "--print-path";
const QString kWaiting = QStringLiteral("isWaitingResponseChanged()");

RecordingPlatform &platform()
{
    return RecordingPlatform::instance();
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

//! What a console reply becomes in a file that is opened as text.
QByteArray asText(QByteArray reply)
{
#ifdef Q_OS_WIN
    reply.replace("\n", "\r\n");
#endif
    return reply;
}

class FileScene : public ConsoleScene
{
public:
    explicit FileScene(const QString &language = QStringLiteral("zh_CN"))
        : ConsoleScene(Family::Huawei, language)
        , path(_folder.filePath(QStringLiteral("导出.txt")))
    {
        viewModel().setExportPath(path);
        platform().setCommands(QStringLiteral("getExportCommands"),
                               {QStringLiteral("screen-length 0"), QStringLiteral("space"), QStringLiteral("display"),
                                QStringLiteral("space")});
        clear();
    }

    //! The switch answers the current block; an export's answer is complete at once.
    void reply(const QByteArray &bytes)
    {
        platform().feed(bytes);
        processEvents();
    }
    bool isExportRunning()
    {
        const int before = sent().size() + platform().callsOf(QStringLiteral("getExportCommands")).size();
        viewModel().exportSwitchInfo();
        return before == sent().size() + platform().callsOf(QStringLiteral("getExportCommands")).size();
    }
    QString file(const char *name) const { return _folder.filePath(QLatin1String(name)); }

private:
    const QTemporaryDir _folder;

public:
    const QString path;
};

} // namespace

class TestSwitchDeviceViewModelFiles : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void save_sendsEachCommandAsALine();
    void save_inEnglish();
    void clear_takesTheListBeforeItHandsOverTheSlot();
    void clear_withoutCommands_endsTheWaiting();
    void clear_restart_isAnnounced_data();
    void clear_restart_isAnnounced();

    // Export: what is sent
    void export_withoutPath_doesNothing();
    void exportPath_isStoredUnchanged();
    void export_isSplitAtPageKeys_data();
    void export_isSplitAtPageKeys();
    void export_withoutCommands_runsNoLonger_butWaits();
    void export_emptiesTheFileFirst();
    void export_secondOneWhileItRuns_isIgnored();
    void export_logsItsBlocksForDevelopers();

    // Export: what arrives
    void export_repliesAreAppended_inTheirOrder();
    void export_replyIsWrittenAsItCame_data();
    void export_replyIsWrittenAsItCame();
    void export_isNeitherParsedNorDelayed();
    void export_flagFallsWithTheSecondPiece_data();
    void export_flagFallsWithTheSecondPiece();
    void export_withLogMore_showsItsLinesToo();
    void export_fileThatCannotBeOpened_namesIt_andGoesOn_data();
    void export_fileThatCannotBeOpened_namesIt_andGoesOn();
    void export_fileThatCannotBeWritten_namesIt_andGoesOn();
    void export_silence_endsIt();
    void export_disconnect_endsIt();
    void export_afterADisconnect_startsAnew();
    void export_inEnglish_endsAsWell();
    void export_otherLabels_leaveTheFileAlone();
    void twoExports_oneBehindTheOther_eachHasItsFile();

    // Import
    void import_sendsTheFilesLines_data();
    void import_sendsTheFilesLines();
    void import_nothingToSend_isSilent_data();
    void import_nothingToSend_isSilent();
    void import_10000Lines();
    void import_whileABlockIsOutstanding_waits();
    void import_inEnglish();

    void defaultConfigPath_existingFolder_isCanonical();
    void defaultConfigPath_missingFolder_isAsItIs();

private:
    std::unique_ptr<MessageLog> _log;
};

void TestSwitchDeviceViewModelFiles::init()
{
    _log = std::make_unique<MessageLog>();
}

void TestSwitchDeviceViewModelFiles::cleanup()
{
    const QStringList warnings = _log->takeWarnings();
    _log.reset();
    QCOMPARE(warnings, QStringList());
}

void TestSwitchDeviceViewModelFiles::save_sendsEachCommandAsALine()
{
    FileScene scene;
    platform().setCommands(QStringLiteral("getSaveCommands"),
                           {QStringLiteral("save"), QStringLiteral("space"), QStringLiteral("Y"), QString()});
    scene->saveSwitchDeviceCmd();
    QCOMPARE(scene.calls(), (QStringList{QStringLiteral("getSaveCommands()"),
                                         QStringLiteral("sendControlCmd(\"save\\r\\nspace\\r\\nY\\r\\n\\r\\n\")")}));
    QCOMPARE(scene.signalTexts(), QStringList{kWaiting});
    QCOMPARE(_log->lines(QStringLiteral("info")), QStringList{QStringLiteral("保存配置执行中...")});
}

void TestSwitchDeviceViewModelFiles::save_inEnglish()
{
    FileScene scene(QStringLiteral("en"));
    scene->saveSwitchDeviceCmd();
    QCOMPARE(_log->lines(QStringLiteral("info")), QStringList{QStringLiteral("Save configuration in progress...")});
}

void TestSwitchDeviceViewModelFiles::clear_takesTheListBeforeItHandsOverTheSlot()
{
    FileScene scene;
    scene.answer("Interface PHY\r\nGigabitEthernet3/0/1 up\r\n");
    scene.clear();
    QList<bool> waiting;
    const QObject watch;
    connect(&scene.viewModel(), &VM::isWaitingResponseChanged, &watch,
            [&] { waiting.append(!scene.sent().isEmpty()); });
    scene->clearAllConfig();
    QCOMPARE(scene.calls(),
             (QStringList{QStringLiteral("getClearLinkAggregationCommands()"), QStringLiteral("setBoardNum(3)"),
                          QStringLiteral("sendControlCmd(\"getClearLinkAggregationCommands 1\\r\\n"
                                         "getClearLinkAggregationCommands 2\\r\\n\")")}));
    QCOMPARE(waiting, QList<bool>{true}); // by the queue, when it is sent
    QCOMPARE(_log->lines(QStringLiteral("info")).last(), QStringLiteral("清空配置执行中..."));
}

void TestSwitchDeviceViewModelFiles::clear_withoutCommands_endsTheWaiting()
{
    FileScene scene;
    platform().setCommands(QStringLiteral("getClearLinkAggregationCommands"), QStringList());
    scene->clearAllConfig();
    QCOMPARE(scene.sent(), QList<QByteArray>());
    QCOMPARE(scene.signalTexts(), QStringList());
    QVERIFY(!scene->isWaitingResponse());
}

void TestSwitchDeviceViewModelFiles::clear_restart_isAnnounced_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QByteArray>("family");
    QTest::addColumn<QString>("text");
    const QString zh = QStringLiteral("配置正在清除 ，请5分钟后重新连接");
    const QString en = QStringLiteral("The configuration is being cleared, please reconnect in 5 minutes");
    QTest::newRow("Huawei") << QStringLiteral("zh_CN") << QByteArray("华为") << zh;
    QTest::newRow("Huawei, English") << QStringLiteral("en") << QByteArray("华为") << en;
    QTest::newRow("Hua3") << QStringLiteral("zh_CN") << QByteArray("华三") << zh;
    QTest::newRow("Hua3, never translated") << QStringLiteral("en") << QByteArray("华三") << zh;
}

void TestSwitchDeviceViewModelFiles::clear_restart_isAnnounced()
{
    QFETCH(const QString, language);
    QFETCH(const QByteArray, family);
    QFETCH(const QString, text);
    FileScene scene(language);
    scene->setCurlogoChanged(scene.tr(family.constData()));
    scene->clearAllConfig();
    scene.clear();
    scene.answer("Info: The system is going to reboot.\r\n");
    QCOMPARE(scene.signalTexts(), QStringList{QStringLiteral("showToast(%1, 1)").arg(text)});
}

void TestSwitchDeviceViewModelFiles::export_withoutPath_doesNothing()
{
    FileScene scene;
    scene->setExportPath(QString());
    scene->exportSwitchInfo();
    QCOMPARE(scene.calls(), QStringList());
    QCOMPARE(scene.signalTexts(), QStringList());
}

void TestSwitchDeviceViewModelFiles::exportPath_isStoredUnchanged()
{
    FileScene scene;
    for (const QString &path :
         {QStringLiteral("file:///tmp/a b.txt"), QStringLiteral(" /no/such/../folder/ "), QString()}) {
        scene->setExportPath(path);
        QCOMPARE(scene->getExportPath(), path);
    }
    QCOMPARE(scene.signalTexts(), QStringList());
}

void TestSwitchDeviceViewModelFiles::export_isSplitAtPageKeys_data()
{
    QTest::addColumn<QStringList>("commands");
    QTest::addColumn<QStringList>("labels"); // in sending order: the first one built, then by label
    QTest::addColumn<QList<QByteArray>>("blocks");
    const QString x = QStringLiteral("X");
    const QString y = QStringLiteral("显示 Y");
    const QString z = QStringLiteral("Z");
    const QString space = QStringLiteral("space");
    const QString label = QStringLiteral("导出配置");
    const QString label0 = label + QLatin1Char('0');
    const QString label1 = label + QLatin1Char('1');
    QTest::newRow("X space Y space Z") << QStringList{x, space, y, space, z} << QStringList{label0, label, label1}
                                       << QList<QByteArray>{"X\r\nspace", "Z\r\n", "显示 Y\r\nspace"};
    QTest::newRow("X space Y space") << QStringList{x, space, y, space} << QStringList{label0, label1}
                                     << QList<QByteArray>{"X\r\nspace", "显示 Y\r\nspace"};
    QTest::newRow("leading space") << QStringList{space, x, space} << QStringList{label0}
                                   << QList<QByteArray>{"X\r\nspace"};
    QTest::newRow("two spaces") << QStringList{x, space, space, y} << QStringList{label0, label}
                                << QList<QByteArray>{"X\r\nspace", "显示 Y\r\n"};
    QTest::newRow("no space") << QStringList{x, y} << QStringList{label} << QList<QByteArray>{"X\r\n显示 Y\r\n"};
    QTest::newRow("several lines in a piece") << QStringList{x, y, space, z} << QStringList{label0, label}
                                              << QList<QByteArray>{"X\r\n显示 Y\r\nspace", "Z\r\n"};
    QTest::newRow("a space among words is a command")
        << QStringList{QStringLiteral("a space b"), QStringLiteral("space "), QStringLiteral("SPACE")}
        << QStringList{label} << QList<QByteArray>{"a space b\r\nspace \r\nSPACE\r\n"};
    QTest::newRow("an empty command is a line")
        << QStringList{QString(), space} << QStringList{label0} << QList<QByteArray>{"\r\nspace"};
    QTest::newRow("eleven pieces leave as text is ordered")
        << QStringList{x,     space, x,     space, x,     space, x,     space, x,     space, x,
                       space, x,     space, x,     space, x,     space, x,     space, z,     space}
        << QStringList{label0,
                       label1,
                       label1 + QLatin1Char('0'),
                       label + QLatin1Char('2'),
                       label + QLatin1Char('3'),
                       label + QLatin1Char('4'),
                       label + QLatin1Char('5'),
                       label + QLatin1Char('6'),
                       label + QLatin1Char('7'),
                       label + QLatin1Char('8'),
                       label + QLatin1Char('9')}
        << QList<QByteArray>{"X\r\nspace", "X\r\nspace", "Z\r\nspace", "X\r\nspace", "X\r\nspace", "X\r\nspace",
                             "X\r\nspace", "X\r\nspace", "X\r\nspace", "X\r\nspace", "X\r\nspace"};
}

void TestSwitchDeviceViewModelFiles::export_isSplitAtPageKeys()
{
    QFETCH(const QStringList, commands);
    QFETCH(const QStringList, labels);
    QFETCH(const QList<QByteArray>, blocks);
    FileScene scene;
    platform().setCommands(QStringLiteral("getExportCommands"), commands);
    scene->exportSwitchInfo();
    QCOMPARE(scene.sent().size(), 1);
    for (int i = 1; i < blocks.size(); ++i)
        scene.complete();
    QCOMPARE(scene.sent(), blocks);
    QStringList sent = _log->lines(QStringLiteral("info")).filter(QStringLiteral("执行中..."));
    sent.replaceInStrings(QStringLiteral("执行中..."), QString());
    QCOMPARE(sent, labels);
    scene.complete();
    QCOMPARE(scene.sent().size(), blocks.size());
}

void TestSwitchDeviceViewModelFiles::export_withoutCommands_runsNoLonger_butWaits()
{
    FileScene scene;
    platform().setCommands(QStringLiteral("getExportCommands"), QStringList());
    QVERIFY(writeFile(scene.path, "old"));
    scene->exportSwitchInfo();
    QCOMPARE(contentOf(scene.path), QByteArray());
    QCOMPARE(scene.sent(), QList<QByteArray>());
    QVERIFY(scene->isWaitingResponse());
    QCOMPARE(scene.signalTexts(), QStringList{kWaiting});
    QVERIFY(!scene.isExportRunning());
}

void TestSwitchDeviceViewModelFiles::export_emptiesTheFileFirst()
{
    FileScene scene;
    QVERIFY(writeFile(scene.path, "old\n"));
    scene->exportSwitchInfo();
    QCOMPARE(contentOf(scene.path), QByteArray());
    QCOMPARE(scene.signalTexts(), QStringList{kWaiting});
}

void TestSwitchDeviceViewModelFiles::export_secondOneWhileItRuns_isIgnored()
{
    FileScene scene;
    scene->exportSwitchInfo();
    scene.reply("one");
    scene.clear();
    const QString other = scene.file("other.txt");
    QVERIFY(writeFile(other, "kept"));
    scene->setExportPath(other);
    scene->exportSwitchInfo();
    QCOMPARE(scene.calls(), QStringList());
    QCOMPARE(contentOf(other), QByteArray("kept"));
    QCOMPARE(contentOf(scene.path), QByteArray("one"));
}

void TestSwitchDeviceViewModelFiles::export_logsItsBlocksForDevelopers()
{
    FileScene scene;
    scene->exportSwitchInfo();
    QCOMPARE(_log->lines(QStringLiteral("debug")).filter(QStringLiteral("current cmd")),
             (QStringList{QStringLiteral("current cmd \"screen-length 0\\r\\nspace\""),
                          QStringLiteral("current cmd \"display\\r\\nspace\"")}));
}

void TestSwitchDeviceViewModelFiles::export_repliesAreAppended_inTheirOrder()
{
    FileScene scene;
    scene->exportSwitchInfo();
    scene.reply("<S>screen-length 0\r\n<S>");
    QCOMPARE(scene.sent().size(), 2); // the next piece is sent at once
    scene.reply("display\r\n#\r\nsysname 交换机\r\n<S>");
    QCOMPARE(contentOf(scene.path), asText("<S>screen-length 0\r\n<S>display\r\n#\r\nsysname 交换机\r\n<S>"));
    QVERIFY(!scene->isWaitingResponse());
    QCOMPARE(_log->lines(QStringLiteral("info")),
             (QStringList{QStringLiteral("导出配置0执行中..."), QStringLiteral("导出配置0执行结束"),
                          QStringLiteral("导出配置1执行中..."), QStringLiteral("导出配置1执行结束")}));
}

void TestSwitchDeviceViewModelFiles::export_replyIsWrittenAsItCame_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QByteArray>("written");
    const auto same = [](const char *tag, const QByteArray &reply) { QTest::newRow(tag) << reply << asText(reply); };
    same("one character", "x");
    same("line ends of all kinds", "a\r\nb\nc\rd\r\r\ne\n\r");
    same("blanks at the ends", "  a  \r\n\t\r\n ");
    same("control characters", QByteArray("a\0b\x1b[16D\x7f", 9));
    same("four-octet characters", "\xf0\x9f\x94\x8c\r\n");
    same("byte-order mark in the middle", "a\xef\xbb\xbf"
                                          "b");
    same("byte-order mark at the beginning", "\xef\xbb\xbf"
                                             "a");
    QTest::newRow("not UTF-8") << QByteArray("a\xff b\r\n\xc0\xaf")
                               << asText("a\xef\xbf\xbd b\r\n\xef\xbf\xbd\xef\xbf\xbd");
    QByteArray large;
    for (int line = 0; line < 3000; ++line)
        large += " port trunk allow-pass vlan 2 to 4094 描述 " + QByteArray::number(line) + "\r\n";
    same("3000 lines", large);
}

void TestSwitchDeviceViewModelFiles::export_replyIsWrittenAsItCame()
{
    QFETCH(const QByteArray, reply);
    QFETCH(const QByteArray, written);
    FileScene scene;
    scene->exportSwitchInfo();
    scene.reply(reply);
    QCOMPARE(contentOf(scene.path), written);
    scene.reply(reply);
    QCOMPARE(contentOf(scene.path), written + written);
}

void TestSwitchDeviceViewModelFiles::export_isNeitherParsedNorDelayed()
{
    FileScene scene;
    scene->exportSwitchInfo();
    scene.clear();
    _log->clear();
    scene.reply("Username:\r\nInterface PHY\r\nGigabitEthernet0/0/1\r\nreboot\r\n<S>");
    scene.reply("authentication failed");
    QTest::qWait(250);
    QCOMPARE(scene.signalTexts(), (QStringList{kWaiting, kWaiting, kWaiting}));
    QCOMPARE(_log->lines(QStringLiteral("info")).size(), 3);
    QCOMPARE(scene->gInterface(), QVariantList());
}

void TestSwitchDeviceViewModelFiles::export_flagFallsWithTheSecondPiece_data()
{
    QTest::addColumn<QStringList>("commands");
    QTest::addColumn<QList<bool>>("isRunning"); // behind each reply
    const QString x = QStringLiteral("X");
    const QString space = QStringLiteral("space");
    QTest::newRow("two pieces") << QStringList{x, space, x, space} << QList<bool>{true, false};
    QTest::newRow("two pieces and a rest") << QStringList{x, space, x, space, x} << QList<bool>{true, true, false};
    QTest::newRow("three pieces") << QStringList{x, space, x, space, x, space} << QList<bool>{true, false};
    // An end that never comes: such a list is for a host to avoid; a disconnect helps.
    QTest::newRow("one piece") << QStringList{x, space} << QList<bool>{true};
    QTest::newRow("a rest alone") << QStringList{x} << QList<bool>{true};
}

void TestSwitchDeviceViewModelFiles::export_flagFallsWithTheSecondPiece()
{
    QFETCH(const QStringList, commands);
    QFETCH(const QList<bool>, isRunning);
    FileScene scene;
    platform().setCommands(QStringLiteral("getExportCommands"), commands);
    scene->exportSwitchInfo();
    for (const bool isRunningThen : isRunning) {
        scene.reply("text");
        QCOMPARE(scene.isExportRunning(), isRunningThen);
    }
}

void TestSwitchDeviceViewModelFiles::export_withLogMore_showsItsLinesToo()
{
    FileScene scene;
    scene->setLogMore(true);
    scene->exportSwitchInfo();
    scene.clear();
    scene.reply("one\r\ntwo");
    QTRY_COMPARE(scene.announcedLines(), QStringList{QStringLiteral("one\ntwo")});
    QCOMPARE(contentOf(scene.path), asText("one\r\ntwo"));
}

void TestSwitchDeviceViewModelFiles::export_fileThatCannotBeOpened_namesIt_andGoesOn_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("begin");
    QTest::newRow("Chinese") << QStringLiteral("zh_CN") << QStringLiteral("导出文件无法打开：");
    QTest::newRow("English") << QStringLiteral("en") << QStringLiteral("Cannot open the export file: ");
}

void TestSwitchDeviceViewModelFiles::export_fileThatCannotBeOpened_namesIt_andGoesOn()
{
    QFETCH(const QString, language);
    QFETCH(const QString, begin);
    FileScene scene(language);
    const QString path = scene.file("missing/export.txt");
    scene->setExportPath(path);
    scene->exportSwitchInfo(); // runs nevertheless
    QCOMPARE(scene.sent().size(), 1);
    QCOMPARE(_log->takeWarnings(), QStringList());
    scene.clear();
    scene.reply("text");
    const QStringList warnings = _log->takeWarnings();
    QCOMPARE(warnings.size(), 1);
    QVERIFY2(warnings.first().startsWith(begin + path + QLatin1String(": ")), qPrintable(warnings.first()));
    QVERIFY(warnings.first().size() > begin.size() + path.size() + 2); // with the system's reason
    QCOMPARE(scene.panelLines().first(), QStringLiteral("[Warning] ") + warnings.first());
    // The entry is complete, and the queue goes on.
    QCOMPARE(scene.sent().size(), 1);
    QVERIFY(scene->isWaitingResponse());
    QCOMPARE(scene.countOf("isWaitingResponseChanged"), 2);
    // Another export may start.
    scene->setExportPath(scene.path);
    QVERIFY(!scene.isExportRunning());
}

void TestSwitchDeviceViewModelFiles::export_fileThatCannotBeWritten_namesIt_andGoesOn()
{
#ifdef Q_OS_LINUX
    FileScene scene;
    scene->setExportPath(QStringLiteral("/dev/full"));
    scene->exportSwitchInfo();
    scene.reply("text");
    const QStringList warnings = _log->lines(QStringLiteral("warning"));
    QCOMPARE(warnings.size(), 1);
    QVERIFY2(warnings.first().startsWith(QStringLiteral("导出文件写入失败：/dev/full: ")),
             qPrintable(warnings.first()));
    QCOMPARE(scene.sent().size(), 2);
    scene.reply("text");
    QCOMPARE(_log->lines(QStringLiteral("warning")).size(), 2);
    _log->takeWarnings(); // Qt's own too, of a file that cannot be sought in
    QVERIFY(!scene->isWaitingResponse());
    scene->setExportPath(scene.path);
    QVERIFY(!scene.isExportRunning());
#else
    QSKIP("only Linux has /dev/full, on which every write fails");
#endif
}

void TestSwitchDeviceViewModelFiles::export_silence_endsIt()
{
    FileScene scene;
    scene->exportSwitchInfo();
    scene.reply(QByteArray());
    QCOMPARE(contentOf(scene.path), QByteArray());
    QVERIFY(!scene.isExportRunning());
    QCOMPARE(_log->lines(QStringLiteral("info")).mid(1, 2),
             (QStringList{QStringLiteral("导出配置0执行失败，请重试..."), QStringLiteral("导出配置0执行结束")}));
}

void TestSwitchDeviceViewModelFiles::export_disconnect_endsIt()
{
    FileScene scene;
    scene->exportSwitchInfo();
    scene.reply("one");
    scene->disconnectDevice();
    QVERIFY(!scene.isExportRunning());
}

void TestSwitchDeviceViewModelFiles::export_afterADisconnect_startsAnew()
{
    FileScene scene;
    scene->exportSwitchInfo();
    scene.reply("one");
    scene->disconnectDevice();
    scene.clear();
    scene->exportSwitchInfo();
    QCOMPARE(contentOf(scene.path), QByteArray());
    QCOMPARE(scene.sent(), QList<QByteArray>{"screen-length 0\r\nspace"});
    scene.reply("new ");
    scene.reply("text");
    QCOMPARE(contentOf(scene.path), QByteArray("new text"));
    QCOMPARE(scene.sent().size(), 2);
}

void TestSwitchDeviceViewModelFiles::export_inEnglish_endsAsWell()
{
    FileScene scene(QStringLiteral("en"));
    scene->exportSwitchInfo();
    scene.reply("one ");
    QVERIFY(scene.isExportRunning());
    scene.reply("two");
    QCOMPARE(contentOf(scene.path), QByteArray("one two"));
    QVERIFY(!scene.isExportRunning());
    QCOMPARE(_log->lines(QStringLiteral("info")).first(), QStringLiteral("Export configuration0 in progress..."));
}

void TestSwitchDeviceViewModelFiles::export_otherLabels_leaveTheFileAlone()
{
    FileScene scene;
    QVERIFY(writeFile(scene.path, "kept"));
    scene->saveSwitchDeviceCmd();
    scene.reply("saved");
    QCOMPARE(contentOf(scene.path), QByteArray("kept"));
}

void TestSwitchDeviceViewModelFiles::twoExports_oneBehindTheOther_eachHasItsFile()
{
    FileScene scene;
    scene->exportSwitchInfo();
    scene.reply("1");
    scene.reply("2");
    const QString other = scene.file("other.txt");
    scene->setExportPath(other);
    scene->exportSwitchInfo();
    scene.reply("3");
    scene.reply("4");
    QCOMPARE(contentOf(scene.path), QByteArray("12"));
    QCOMPARE(contentOf(other), QByteArray("34"));
}

void TestSwitchDeviceViewModelFiles::import_sendsTheFilesLines_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("block");
    const QByteArray two = "system-view\r\nvlan 10\r\n";
    QTest::newRow("lines") << QByteArray("system-view\nvlan 10\n") << two;
    QTest::newRow("no line end at the end") << QByteArray("system-view\nvlan 10") << two;
    QTest::newRow("Windows line ends") << QByteArray("system-view\r\nvlan 10\r\n") << two;
    QTest::newRow("line ends of a console") << QByteArray("system-view\r\r\nvlan 10\r\r\n") << two;
    QTest::newRow("blank and indented lines") << QByteArray("\n  system-view \n\t\n \t vlan 10\t\n   \n\n") << two;
    QTest::newRow("byte-order mark") << QByteArray("\xef\xbb\xbfsystem-view\nvlan 10\n") << two;
    QTest::newRow("byte-order mark and Windows line ends")
        << QByteArray("\xef\xbb\xbfsystem-view\r\nvlan 10\r\n") << two;
    QTest::newRow("blanks inside stay") << QByteArray(" a  b\tc \n") << QByteArray("a  b\tc\r\n");
    QTest::newRow("UTF-8") << QByteArray("description 交换机\n") << QByteArray("description 交换机\r\n");
    QTest::newRow("ideographic blanks are blanks")
        << QByteArray("\xe3\x80\x80vlan 10\xe3\x80\x80\n") << QByteArray("vlan 10\r\n");
    QTest::newRow("not UTF-8") << QByteArray("a\xff"
                                             "b\n\xc3\n")
                               << QByteArray("a\xef\xbf\xbd"
                                             "b\r\n\xef\xbf\xbd\r\n");
    QTest::newRow("page key is a line") << QByteArray("space\n") << QByteArray("space\r\n");
    QTest::newRow("the same line again") << QByteArray("quit\nquit\n") << QByteArray("quit\r\nquit\r\n");
}

void TestSwitchDeviceViewModelFiles::import_sendsTheFilesLines()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QByteArray, block);
    FileScene scene;
    QVERIFY(writeFile(scene.file("import.txt"), content));
    QList<bool> isSentAtChange;
    const QObject watch;
    connect(&scene.viewModel(), &VM::isWaitingResponseChanged, &watch,
            [&] { isSentAtChange.append(!scene.sent().isEmpty()); });
    scene->importSwitchInfo(scene.file("import.txt"));
    QCOMPARE(scene.sent(), QList<QByteArray>{block});
    QCOMPARE(isSentAtChange, QList<bool>{true}); // by the queue, when it is sent
    QCOMPARE(_log->lines(QStringLiteral("info")), QStringList{QStringLiteral("文件配置执行中...")});
}

void TestSwitchDeviceViewModelFiles::import_nothingToSend_isSilent_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("missing") << QStringLiteral("missing.txt");
    QTest::newRow("empty") << QStringLiteral("empty.txt");
    QTest::newRow("blank lines") << QStringLiteral("blank.txt");
    QTest::newRow("byte-order mark alone") << QStringLiteral("mark.txt");
    QTest::newRow("a folder") << QStringLiteral(".");
    QTest::newRow("no name") << QString();
    QTest::newRow("a URL is no path") << QStringLiteral("URL");
}

void TestSwitchDeviceViewModelFiles::import_nothingToSend_isSilent()
{
    QFETCH(const QString, name);
    FileScene scene;
    QVERIFY(writeFile(scene.file("empty.txt"), QByteArray()));
    QVERIFY(writeFile(scene.file("blank.txt"), "\n \r\n\t\n\xe3\x80\x80\n"));
    QVERIFY(writeFile(scene.file("mark.txt"), "\xef\xbb\xbf"));
    QVERIFY(writeFile(scene.file("good.txt"), "vlan 10\n"));
    QString path = name.isEmpty() ? QString() : scene.file(name.toUtf8().constData());
    if (name == QLatin1String("URL"))
        path = QUrl::fromLocalFile(scene.file("good.txt")).toString();
    scene->importSwitchInfo(path);
    QCOMPARE(scene.calls(), QStringList());
    QCOMPARE(scene.signalTexts(), QStringList());
    QCOMPARE(_log->lines(QStringLiteral("info")), QStringList());
}

void TestSwitchDeviceViewModelFiles::import_10000Lines()
{
    FileScene scene;
    QByteArray content;
    QByteArray block;
    for (int line = 0; line < 10'000; ++line) {
        content += "  vlan " + QByteArray::number(line) + "\r\n\n";
        block += "vlan " + QByteArray::number(line) + "\r\n";
    }
    QVERIFY(writeFile(scene.file("import.txt"), content));
    scene->importSwitchInfo(scene.file("import.txt"));
    QCOMPARE(scene.sent().size(), 1);
    QVERIFY(scene.sent().first() == block);
}

void TestSwitchDeviceViewModelFiles::import_whileABlockIsOutstanding_waits()
{
    FileScene scene;
    QVERIFY(writeFile(scene.file("import.txt"), "vlan 10\n"));
    scene->slot_handleParseState(VM::InputMore);
    scene.clear();
    scene->importSwitchInfo(scene.file("import.txt"));
    QCOMPARE(scene.sent(), QList<QByteArray>());
    QVERIFY(scene->isWaitingResponse());
    scene.complete();
    QCOMPARE(scene.sent(), QList<QByteArray>{"vlan 10\r\n"});
}

void TestSwitchDeviceViewModelFiles::import_inEnglish()
{
    FileScene scene(QStringLiteral("en"));
    QVERIFY(writeFile(scene.file("import.txt"), "vlan 10\n"));
    scene->importSwitchInfo(scene.file("import.txt"));
    QCOMPARE(_log->lines(QStringLiteral("info")),
             QStringList{QStringLiteral("Configuration from file in progress...")});
}

void TestSwitchDeviceViewModelFiles::defaultConfigPath_existingFolder_isCanonical()
{
    ConsoleScene scene;
    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/../share/switchconfig");
    QVERIFY2(QFileInfo::exists(folder), qPrintable(folder)); // of the build tree
    QCOMPARE(scene->getDefaultConfigPath(), QUrl::fromLocalFile(QFileInfo(folder).canonicalFilePath()).toString());
    QVERIFY(!scene->getDefaultConfigPath().contains(QLatin1String("..")));
    QVERIFY(scene->getDefaultConfigPath().startsWith(QLatin1String("file:///")));
}

void TestSwitchDeviceViewModelFiles::defaultConfigPath_missingFolder_isAsItIs()
{
    // The folder stands beside this program: a copy in another place is asked.
    const QTemporaryDir elsewhere;
    const QString folder = elsewhere.filePath(QStringLiteral("bin"));
    QVERIFY(QDir().mkdir(folder));
    const QFileInfo program(QCoreApplication::applicationFilePath());
    const QString copy = folder + QLatin1Char('/') + program.fileName();
    QVERIFY(QFile::copy(program.filePath(), copy));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("PATH"),
                       program.path() + QDir::listSeparator()
                           + environment.value(QStringLiteral("PATH"))); // its libraries, on Windows
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(copy, {QLatin1String(kPrintPath)});
    QVERIFY(process.waitForFinished(30'000));
    QCOMPARE(QString::fromUtf8(process.readAllStandardOutput()).trimmed(),
             QUrl::fromLocalFile(QFileInfo(folder).canonicalFilePath() + QStringLiteral("/../share/switchconfig"))
                 .toString());
}

static int printPath(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    SwitchDeviceViewModel viewModel;
    std::printf("%s\n", viewModel.getDefaultConfigPath().toUtf8().constData());
    return 0;
}

int main(int argc, char **argv)
{
    if (argc == 2 && qstrcmp(argv[1], kPrintPath) == 0)
        return printPath(argc, argv);
    QCoreApplication application(argc, argv);
    TestSwitchDeviceViewModelFiles test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_switchdeviceviewmodel_files.moc"
