#include "consoleuser.h"

#include <QtTest/QTest>

using namespace simulator;

class TestSimulatorCommandline : public QObject
{
    Q_OBJECT

private slots:
    void lineEnds_eachMeansOneLine_data();
    void lineEnds_eachMeansOneLine();
    void echo_enterAsCrCrLf();
    void echo_redrawMarkAtColumn80();
    void echo_noRedrawMarkInLineMode();
    void echo_noRedrawMarkOnAWideScreen();
    void keys_data();
    void keys();
    void ctrlC_dropsTheLine();
    void ctrlZ_returnsToTheUserView();
    void history_bringsBackEarlierLines();
    void tab_completesAnUnambiguousWord();
    void questionMark_listsWhatCanFollow();
    void overlongLine_ringsTheBell();
    void typeAhead_isCarriedOutAfterwards();
    void errors_data();
    void errors();
    void errors_canBeNumbered();
    void rights_areChecked();
    void prompts_data();
    void prompts();
    void prompts_twoStage();
    void prompts_decorated();
    void leavingUncommitted_asks_data();
    void leavingUncommitted_asks();
    void systemViewImmediately_isOneStage();
    void group_echoesTheCommandForEachMember();
    void group_members_areAddedUp();
    void slowAnswer_comesInTwoParts();
    void filter_picksLines();
};

void TestSimulatorCommandline::lineEnds_eachMeansOneLine_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::addColumn<int>("prompts");
    QTest::newRow("CR") << QByteArray("\r") << 1;
    QTest::newRow("LF") << QByteArray("\n") << 1;
    QTest::newRow("CR LF") << QByteArray("\r\n") << 1;
    QTest::newRow("CR CR") << QByteArray("\r\r") << 2;
    QTest::newRow("CR LF LF") << QByteArray("\r\n\n") << 2;
    QTest::newRow("NULs around") << QByteArray("\0\r\0", 3) << 1;
}

void TestSimulatorCommandline::lineEnds_eachMeansOneLine()
{
    QFETCH(QByteArray, typed);
    QFETCH(int, prompts);
    ConsoleUser user(ConsoleUser::atWork());
    QCOMPARE(user.keys(typed), QByteArray("\r\n<HUAWEI>").repeated(prompts));
}

void TestSimulatorCommandline::echo_enterAsCrCrLf()
{
    ConsoleUser user(withArguments(QStringLiteral("--family hua3 --crcrlf")));
    QCOMPARE(user.enter("system-view"),
             QByteArray("system-view\r\r\nSystem View: return to User View with Ctrl+Z.\r\n[H3C]"));
}

void TestSimulatorCommandline::echo_redrawMarkAtColumn80()
{
    ConsoleUser user(withArguments(QStringLiteral("--name sw")));
    user.enter("system-view");
    const QByteArray line =
        "port-group group-member GigabitEthernet 0/0/1 to GigabitEthernet 0/0/2 GigabitEthernet 0/0/3 to "
        "GigabitEthernet 0/0/4 GigabitEthernet 0/0/5 to GigabitEthernet 0/0/7 GigabitEthernet 0/0/9";
    QByteArray expected = line; // behind the 4 columns of [sw]
    expected.insert(156, " \x1b[1D");
    expected.insert(76, " \x1b[1D");
    QCOMPARE(user.enter(line), expected + "\r\n[sw-port-group]");
}

void TestSimulatorCommandline::echo_noRedrawMarkInLineMode()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.enter("terminal echo-mode line");
    QVERIFY(!user.enter(QByteArray(100, 'x')).contains('\x1b'));
    user.enter("terminal echo-mode character");
    QVERIFY(user.enter(QByteArray(100, 'x')).contains(" \x1b[1D"));
}

void TestSimulatorCommandline::echo_noRedrawMarkOnAWideScreen()
{
    ConsoleUser user(ConsoleUser::atWork());
    QVERIFY(user.enter("screen-width 255").endsWith("Continue? [Y/N]:"));
    user.enter("y");
    QVERIFY(!user.enter(QByteArray(100, 'x')).contains('\x1b'));
}

void TestSimulatorCommandline::keys_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::addColumn<QByteArray>("echo");
    QTest::newRow("backspace") << QByteArray("ab\b") << QByteArray("ab\b \b");
    QTest::newRow("delete") << QByteArray("ab\x7f") << QByteArray("ab\b \b");
    QTest::newRow("backspace on an empty line") << QByteArray("\b\b") << QByteArray();
    QTest::newRow("erase line") << QByteArray("ab\x15") << QByteArray("ab\b \b\b \b");
    QTest::newRow("erase word") << QByteArray("ab cd\x17") << QByteArray("ab cd\b \b\b \b");
    QTest::newRow("cursor keys and function keys") << QByteArray("a\x1b[C\x1b[D\x1b[15~b\x1bOPc") << QByteArray("abc");
    QTest::newRow("other control characters") << QByteArray("a\x01\x06z") << QByteArray("az");
    QTest::newRow("bytes that are not ASCII") << QByteArray("\xc9\xe3") << QByteArray("\xc9\xe3");
}

void TestSimulatorCommandline::keys()
{
    QFETCH(QByteArray, typed);
    QFETCH(QByteArray, echo);
    ConsoleUser user(ConsoleUser::atWork());
    QCOMPARE(user.keys(typed), echo);
}

void TestSimulatorCommandline::ctrlC_dropsTheLine()
{
    ConsoleUser user(ConsoleUser::atWork());
    QCOMPARE(user.keys("display vers\x03"), QByteArray("display vers^C\r\n<HUAWEI>"));
    QVERIFY(user.console().commands().isEmpty());
}

void TestSimulatorCommandline::ctrlZ_returnsToTheUserView()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.work({"system-view", "vlan 20"});
    QCOMPARE(user.keys("\x1a"), QByteArray("\r\n<HUAWEI>"));
}

void TestSimulatorCommandline::history_bringsBackEarlierLines()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.work({"display clock", "display history-command"});
    QCOMPARE(user.keys("\x1b[A"), QByteArray("display history-command"));
    QCOMPARE(user.keys("\x10"), QByteArray("\b \b").repeated(23) + "display clock");
    QCOMPARE(user.keys("\x10"), QByteArray("\a"));
    QCOMPARE(user.keys("\x1b[B\x1b[B"),
             QByteArray("\b \b").repeated(13) + "display history-command" + QByteArray("\b \b").repeated(23));
}

void TestSimulatorCommandline::tab_completesAnUnambiguousWord()
{
    ConsoleUser user(ConsoleUser::atWork());
    QCOMPARE(user.keys("disp\tvers\t\t"), QByteArray("display version "));
    QVERIFY(user.enter("").contains("Versatile Routing Platform"));
    QCOMPARE(user.keys("re\t"), QByteArray("re")); // reboot, reset, return
}

void TestSimulatorCommandline::questionMark_listsWhatCanFollow()
{
    ConsoleUser user(ConsoleUser::atWork());
    QCOMPARE(user.keys("display eth-trunk ?"),
             QByteArray("display eth-trunk ?\r\n  <0-127>\r\n  <cr>\r\n<HUAWEI>display eth-trunk "));
    QCOMPARE(user.keys("\x15re?"),
             QByteArray("\b \b").repeated(18) + "re?\r\n  reboot\r\n  reset\r\n  return\r\n<HUAWEI>re");
}

void TestSimulatorCommandline::overlongLine_ringsTheBell()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.enter("terminal echo-mode line");
    QCOMPARE(user.keys(QByteArray(514, 'x')), QByteArray(512, 'x') + "\a\a");
}

void TestSimulatorCommandline::typeAhead_isCarriedOutAfterwards()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.enter("system-view");
    const QByteArray all = user.keys("vlan batch 10 20\r\nvlan 30\r\n");
    QCOMPARE(all, QByteArray("vlan batch 10 20\r\n"
                             "Info: This operation may take a few seconds. Please wait for a moment...done.\r\n"
                             "[HUAWEI]vlan 30\r\n[HUAWEI-vlan30]"));
}

void TestSimulatorCommandline::errors_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("answer");
    const auto row = [](const char *tag, const char *family, const char *line, int column, const char *text) {
        QTest::newRow(tag) << family << QByteArray(line) << QByteArray(column, ' ') + "^\r\n" + text + "\r\n";
    };
    row("unknown", "huawei", "dos ver", 9, "Error: Unrecognized command found at '^' position.");
    row("unknown second word", "huawei", "display intarface", 19, "Error: Unrecognized command found at '^' position.");
    row("nothing in common", "huawei", "#x", 8, "Error: Unrecognized command found at '^' position.");
    row("incomplete", "huawei", "display interface", 25, "Error: Incomplete command found at '^' position.");
    row("too many", "huawei", "display version now", 24, "Error:Too many parameters found at '^' position.");
    row("wrong", "huawei", "display vlan 5000", 21, "Error: Wrong parameter found at '^' position.");
    row("wrong port", "huawei", "display interface g0/0/99", 26, "Error: Wrong parameter found at '^' position.");
    row("ambiguous", "huawei", "re", 8, "Error: Ambiguous command found at '^' position.");
    row("hua3 unknown", "hua3", "dos ver", 6, " % Unrecognized command found at '^' position.");
    row("hua3 incomplete", "hua3", "display interface", 22, " % Incomplete command found at '^' position.");
    row("hua3 too many", "hua3", "display version now", 21, " % Too many parameters found at '^' position.");
    row("hua3 wrong", "hua3", "display vlan 5000", 18, " % Wrong parameter found at '^' position.");
}

void TestSimulatorCommandline::errors()
{
    QFETCH(QString, family);
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, answer);
    ConsoleUser user(withArguments(QStringLiteral("--family ") + family));
    QCOMPARE(user.answer(line), answer);
}

void TestSimulatorCommandline::errors_canBeNumbered()
{
    ConsoleUser user(withArguments(QStringLiteral("--error-numbers")));
    QVERIFY(user.answer("x").endsWith("\r\nError[1]: Unrecognized command found at '^' position.\r\n"));
    QVERIFY(user.answer("display eth-trunk 9").startsWith("Error[2]: "));
}

void TestSimulatorCommandline::rights_areChecked()
{
    ConsoleUser user(withArguments(QStringLiteral("--level 1")));
    QCOMPARE(user.answer("system-view"),
             QByteArray("Error: You do not have permission to run the command or the command is incomplete.\r\n"));
    QCOMPARE(user.answer("screen-length 0 temporary"),
             QByteArray("Error: You do not have permission to run the command or the command is incomplete.\r\n"));
    QVERIFY(user.answer("display version").contains("uptime"));
}

void TestSimulatorCommandline::prompts_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArrayList>("lines");
    QTest::addColumn<QByteArray>("prompt");
    const auto row = [](const char *tag, const char *arguments, const QByteArrayList &lines, const char *prompt) {
        QTest::newRow(tag) << arguments << (QByteArrayList{"system-view"} + lines) << QByteArray(prompt);
    };
    row("system", "", {}, "[HUAWEI]");
    row("gigabit", "", {"interface GigabitEthernet 0/0/1"}, "[HUAWEI-GigabitEthernet0/0/1]");
    row("abbreviated, blank", "", {"int g 0/0/1"}, "[HUAWEI-GigabitEthernet0/0/1]");
    row("abbreviated, capitals", "", {"INT XG0/0/4"}, "[HUAWEI-XGigabitEthernet0/0/4]");
    row("table name", "", {"interface ge0/0/7"}, "[HUAWEI-GigabitEthernet0/0/7]");
    row("from view to view", "", {"interface g0/0/1", "vlan 20"}, "[HUAWEI-vlan20]");
    row("trunk", "", {"interface Eth-Trunk 1"}, "[HUAWEI-Eth-Trunk1]");
    row("several ports", "", {"port-group group-member g0/0/1 to g0/0/8"}, "[HUAWEI-port-group]");
    row("range", "", {"interface range g0/0/1 to g0/0/8"}, "[HUAWEI-port-group]");
    row("vlan interface", "", {"interface vlanif 1"}, "[HUAWEI-Vlanif1]");
    row("acl", "", {"acl number 3000"}, "[HUAWEI-acl-adv-3000]");
    row("40 gigabit", "--model aggregation", {"interface 40g0/0/6"}, "[HUAWEI-40GE0/0/6]");
    row("sub", "--family huawei-sub", {"interface GE0/0/1"}, "[HUAWEI-GE0/0/1]");
    row("sub 10 gigabit", "--family huawei-sub", {"interface 10GE 0/0/1"}, "[HUAWEI-10GE0/0/1]");
    row("sub multi", "--family huawei-sub --multige", {"interface MultiGE0/0/1"}, "[HUAWEI-MultiGE0/0/1]");
    row("hua3", "--family hua3", {"interface g1/0/1"}, "[H3C-GigabitEthernet1/0/1]");
    row("hua3 10 gigabit", "--family hua3", {"interface t1/0/25"}, "[H3C-Ten-GigabitEthernet1/0/25]");
    row("hua3 range", "--family hua3", {"interface range g1/0/1 to g1/0/3 t1/0/25"}, "[H3C-if-range]");
    row("hua3 group", "--family hua3", {"interface bridge-aggregation 1"}, "[H3C-Bridge-Aggregation1]");
    row("renamed", "", {"sysname core.1-a"}, "[core.1-a]");
    row("back", "", {"vlan 20", "quit", "quit"}, "<HUAWEI>");
    row("all the way back", "", {"vlan 20", "return"}, "<HUAWEI>");
    row("deleted under one's feet", "", {"vlan 20", "undo vlan 20"}, "[HUAWEI]");
    row("deleted group", "", {"interface Eth-Trunk 1", "undo interface Eth-Trunk 1"}, "[HUAWEI]");
}

void TestSimulatorCommandline::prompts()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArrayList, lines);
    QFETCH(QByteArray, prompt);
    ConsoleUser user(withArguments(arguments));
    user.work(lines);
    QCOMPARE(user.enter(""), "\r\n" + prompt);
}

void TestSimulatorCommandline::prompts_twoStage()
{
    ConsoleUser user(withArguments(QStringLiteral("--family huawei-sub --two-stage")));
    QVERIFY(user.enter("system-view").endsWith("\r\n[~HUAWEI]"));
    QCOMPARE(user.enter("vlan 20"), QByteArray("vlan 20\r\n[*HUAWEI-vlan20]"));
    QCOMPARE(user.running().vlans.count(20), std::size_t(0));
    QCOMPARE(user.enter("commit"), QByteArray("commit\r\n[~HUAWEI-vlan20]"));
    QCOMPARE(user.running().vlans.count(20), std::size_t(1));
    QCOMPARE(user.enter("sysname new"), QByteArray("sysname new\r\n[*HUAWEI-vlan20]"));
    QCOMPARE(user.enter("commit"), QByteArray("commit\r\n[~new-vlan20]"));
    QCOMPARE(user.enter("return"), QByteArray("return\r\n<new>"));
}

void TestSimulatorCommandline::prompts_decorated()
{
    ConsoleUser user(withArguments(QStringLiteral("--prompt-prefix HRP_A --prompt-nul --prompt-bell")));
    QCOMPARE(user.enter(""), QByteArray("\r\n\0HRP_A<HUAWEI>\a", 17));
}

void TestSimulatorCommandline::leavingUncommitted_asks_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QByteArray>("prompt");
    QTest::addColumn<bool>("done");
    QTest::newRow("yes") << QByteArray("Y") << QByteArray("<HUAWEI>") << true;
    QTest::newRow("no") << QByteArray("n") << QByteArray("<HUAWEI>") << false;
    QTest::newRow("cancel") << QByteArray("c") << QByteArray("[*HUAWEI]") << false;
}

void TestSimulatorCommandline::leavingUncommitted_asks()
{
    QFETCH(QByteArray, answer);
    QFETCH(QByteArray, prompt);
    QFETCH(bool, done);
    ConsoleUser user(withArguments(QStringLiteral("--family huawei-sub --two-stage")));
    user.work({"system-view", "vlan 20", "quit"});
    QCOMPARE(
        user.enter("quit"),
        QByteArray("quit\r\nWarning: Uncommitted configurations found. Are you sure to commit them before exiting? "
                   "[Y(yes)/N(no)/C(cancel)]:"));
    QVERIFY(user.enter("what").endsWith("[Y(yes)/N(no)/C(cancel)]:"));
    QCOMPARE(user.enter(answer), answer + "\r\n" + prompt);
    QCOMPARE(user.running().vlans.count(20) == 1, done);
}

void TestSimulatorCommandline::systemViewImmediately_isOneStage()
{
    ConsoleUser user(withArguments(QStringLiteral("--family huawei-sub --two-stage")));
    QVERIFY(user.enter("system-view immediately").endsWith("[HUAWEI]"));
    user.enter("vlan 20");
    QCOMPARE(user.running().vlans.count(20), std::size_t(1));
    QCOMPARE(user.enter("return"), QByteArray("return\r\n<HUAWEI>"));
}

void TestSimulatorCommandline::group_echoesTheCommandForEachMember()
{
    const QByteArrayList begin{"system-view", "port-group group-member g0/0/1 to g0/0/2"};
    ConsoleUser echoing(ConsoleUser::atWork());
    echoing.work(begin);
    QCOMPARE(echoing.answer("port li access"), QByteArray("[HUAWEI-GigabitEthernet0/0/1]port link-type access\r\n"
                                                          "[HUAWEI-GigabitEthernet0/0/2]port link-type access\r\n"));
    ConsoleUser silent(withArguments(QStringLiteral("--no-group-echo")));
    silent.work(begin);
    QCOMPARE(silent.answer("port link-type access"), QByteArray());
    for (const ConsoleUser *user : {&echoing, &silent}) {
        QVERIFY(user->running().ports[1].linkType == LinkType::Access);
        QVERIFY(user->running().ports[2].linkType != LinkType::Access);
    }
}

void TestSimulatorCommandline::group_members_areAddedUp()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.work({"system-view", "port-group floor", "group-member g0/0/1 to g0/0/2", "group-member xg0/0/1"});
    QCOMPARE(user.enter(""), QByteArray("\r\n[HUAWEI-port-group-floor]"));
    user.enter("shutdown");
    QVERIFY(user.running().ports[0].shutdown && user.running().ports[1].shutdown && user.running().ports[24].shutdown);
    QVERIFY(!user.running().ports[2].shutdown);
}

void TestSimulatorCommandline::slowAnswer_comesInTwoParts()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.enter("system-view");
    user.keys("vlan batch 10 20 to 22\r");
    const QByteArrayList pieces = user.terminal().pieces();
    QCOMPARE(pieces.size(), 2);
    QVERIFY(pieces.first().endsWith("Please wait for a moment..."));
    QCOMPARE(pieces.last(), QByteArray("done.\r\n[HUAWEI]"));
    QCOMPARE(user.running().vlans.size(), std::size_t(5));
}

void TestSimulatorCommandline::filter_picksLines()
{
    ConsoleUser user(ConsoleUser::atWork());
    QCOMPARE(user.answer("display current-configuration | include sysname"), QByteArray("sysname HUAWEI\r\n"));
    QVERIFY(!user.answer("display version | exclude uptime").contains("uptime"));
    QVERIFY(user.answer("display version | begin Pcb").startsWith("Pcb "));
}

QTEST_GUILESS_MAIN(TestSimulatorCommandline)
#include "tst_simulator_commandline.moc"
