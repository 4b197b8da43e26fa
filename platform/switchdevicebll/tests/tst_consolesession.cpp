#include "sessionbench.h"

#include <QtTest/QTest>

using namespace ovra::bll;
using std::chrono::milliseconds;
using std::chrono::seconds;

// Blocks and replies: what is typed when, and what is handed up.
class TestConsoleSession : public QObject
{
    Q_OBJECT

private slots:
    void block_lines_goOutOneAtATime();
    void block_nextLine_waitsForTheAnswer();
    void block_lineEnds_data();
    void block_lineEnds();
    void block_pageKey_isNeverTyped_data();
    void block_pageKey_isNeverTyped();
    void block_fourBlanks_areTyped();
    void block_emptyLine_isTyped();
    void block_textWithoutEnd_isALine();
    void block_nothingToType_isAnsweredWithAnEmptyLine_data();
    void block_nothingToType_isAnsweredWithAnEmptyLine();
    void block_answerWithoutQuestion_isDropped_data();
    void block_answerWithoutQuestion_isDropped();
    void blocks_areAnsweredInSendingOrder();
    void blocks_oneReplyEach_howeverManyLines();
    void reply_isEchoListingAndPrompt();
    void reply_logLinesInTheMiddle_stay();
    void reply_echoIsNotCompared();
    void reply_logLineWithPromptBeforeTheEcho_isNoEnd();
    void reply_promptOfAnotherView_data();
    void reply_promptOfAnotherView();
    void reply_ownPrompt_isNoAnswer();
    void reply_withoutEchoAndLineEnd_endsAtThePrompt_data();
    void reply_withoutEchoAndLineEnd_endsAtThePrompt();
    void reply_withoutEcho_viewIsKnown();
    void reply_withoutEcho_answerWithoutQuestion_isDropped();
    void reply_echoThatLooksLikeAPrompt_isNone_data();
    void reply_echoThatLooksLikeAPrompt_isNone();
    void rules_seeOnlyWhatFollowsTheEcho();
    void rules_ofOneCommand_leaveTheOthers();
    void rules_thatFire_areLogged();
    void refusal_isWarnedOf();
    void refusal_thatIsExpected_isNot();
    void refusal_keepsTheRestartFromBeingTyped();
    void refusal_ofReturn_isTriedOnceMore();
    void unasked_bytes_areInNoReply();
    void unasked_answerToAReadBack_confusesNothing();
    void description_isTakenWhenABlockStarts();
    void logout_endsTheReply_andDropsTheRest();
    void logout_idleBanner_endsTheReply();
    void loginPromptMeanwhile_commandsAreNotTyped();
    void disconnected_dropsEveryBlock();
    void connected_forgetsNameAndLogin();
    void connectionLost_inTheMiddle_deliversWhatCame();
    void connectionLost_answersWaitingBlocks();
};

void TestConsoleSession::block_lines_goOutOneAtATime()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("system-view\r\nvlan 20\r\nreturn\r\n");
    QCOMPARE(bench.takeSent(), QByteArray("system-view\r\n"));
    bench.feed("system-view\r\nEnter system view, return user view with Ctrl+Z.\r\n[NAME]");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("vlan 20\r\n"));
    bench.feed("vlan 20\r\n[NAME-vlan20]");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("return\r\n"));
    QCOMPARE(bench.replies.size(), 0);
    bench.feed("return\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies,
             QByteArrayList({"system-view\r\nEnter system view, return user view with Ctrl+Z.\r\n[NAME]vlan 20\r\n"
                             "[NAME-vlan20]return\r\n<NAME>"}));
    QCOMPARE(bench.warnings, QStringList());
}

void TestConsoleSession::block_nextLine_waitsForTheAnswer()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("vlan batch 10 20\r\nreturn\r\n");
    bench.takeSent();
    bench.feed("vlan batch 10 20\r\nInfo: This operation may take a few seconds. Please wait for a moment...");
    bench.pass(milliseconds(1900));
    QCOMPARE(bench.takeSent(), QByteArray());
    bench.feed("done.\r\n[NAME]");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("return\r\n"));
}

void TestConsoleSession::block_lineEnds_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::newRow("CR LF") << QByteArray("one\r\ntwo\r\n");
    QTest::newRow("CR") << QByteArray("one\rtwo\r");
    QTest::newRow("LF") << QByteArray("one\ntwo\n");
    QTest::newRow("none at the end") << QByteArray("one\r\ntwo");
}

void TestConsoleSession::block_lineEnds()
{
    QFETCH(QByteArray, block);
    SessionBench bench;
    bench.logIn();
    bench.submit(block);
    QCOMPARE(bench.takeSent(), QByteArray("one\r\n"));
    bench.feed("one\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("two\r\n"));
    bench.feed("two\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray());
    QCOMPARE(bench.replies, QByteArrayList({"one\r\n<NAME>two\r\n<NAME>"}));
}

void TestConsoleSession::block_pageKey_isNeverTyped_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::newRow("with CR LF") << QByteArray("display vlan\r\nspace\r\n");
    QTest::newRow("without") << QByteArray("display vlan\r\nspace");
    QTest::newRow("several") << QByteArray("display vlan\r\nspace\r\nspace\r\nspace");
}

void TestConsoleSession::block_pageKey_isNeverTyped()
{
    QFETCH(QByteArray, block);
    SessionBench bench;
    bench.logIn();
    bench.submit(block);
    QCOMPARE(bench.takeSent(), QByteArray("display vlan\r\n"));
    bench.feed("display vlan\r\nshort\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray());
    QCOMPARE(bench.replies, QByteArrayList({"display vlan\r\nshort\r\n<NAME>"}));
}

void TestConsoleSession::block_fourBlanks_areTyped()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("    \r\n");
    QCOMPARE(bench.takeSent(), QByteArray("    \r\n"));
    bench.feed("    \r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"    \r\n<NAME>"}));
}

void TestConsoleSession::block_emptyLine_isTyped()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("\r\n");
    QCOMPARE(bench.takeSent(), QByteArray("\r\n"));
    bench.feed("\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"\r\n<NAME>"}));
}

void TestConsoleSession::block_textWithoutEnd_isALine()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("spaces");
    QCOMPARE(bench.takeSent(), QByteArray("spaces\r\n"));
}

void TestConsoleSession::block_nothingToType_isAnsweredWithAnEmptyLine_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("page key") << QByteArray("space");
    QTest::newRow("answer without a question") << QByteArray("Y\r\n");
}

void TestConsoleSession::block_nothingToType_isAnsweredWithAnEmptyLine()
{
    QFETCH(QByteArray, block);
    SessionBench bench;
    bench.logIn();
    bench.submit(block);
    bench.pass(seconds(20));
    QCOMPARE(bench.sent, QByteArray());
    QCOMPARE(bench.replies, QByteArrayList({"\r\n"}));
}

void TestConsoleSession::block_answerWithoutQuestion_isDropped_data()
{
    QTest::addColumn<QByteArray>("answer");
    for (const char *answer : {"Y", "N", "y", "n"})
        QTest::newRow(answer) << QByteArray(answer);
}

void TestConsoleSession::block_answerWithoutQuestion_isDropped()
{
    QFETCH(QByteArray, answer);
    SessionBench bench;
    bench.logIn();
    bench.submit(answer + "\r\nquit\r\n" + answer + "\r\nquit\r\n");
    QCOMPARE(bench.takeSent(), QByteArray("quit\r\n"));
    bench.feed("quit\r\n[NAME]");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("quit\r\n"));
    bench.feed("quit\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"quit\r\n[NAME]quit\r\n<NAME>"}));
}

void TestConsoleSession::blocks_areAnsweredInSendingOrder()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("first\r\n");
    bench.submit("second\r\n");
    bench.submit("third\r\n");
    for (const QByteArray &word : {QByteArray("first"), QByteArray("second"), QByteArray("third")}) {
        QCOMPARE(bench.takeSent(), word + "\r\n");
        bench.feed(word + "\r\n<NAME>");
        bench.pass(milliseconds(30));
    }
    QCOMPARE(bench.replies, QByteArrayList({"first\r\n<NAME>", "second\r\n<NAME>", "third\r\n<NAME>"}));
}

void TestConsoleSession::blocks_oneReplyEach_howeverManyLines()
{
    SessionBench bench;
    bench.logIn();
    QByteArray block;
    for (int i = 0; i < 200; ++i)
        block += "vlan " + QByteArray::number(i) + "\r\n";
    bench.submit(block);
    int lines = 0;
    while (!bench.sent.isEmpty()) {
        ++lines;
        bench.feed(bench.takeSent() + "[NAME]");
        bench.pass(milliseconds(30));
    }
    QCOMPARE(lines, 200);
    QCOMPARE(bench.replies.size(), 1);
    QCOMPARE(bench.replies.first().count("[NAME]"), 200);
}

void TestConsoleSession::reply_isEchoListingAndPrompt()
{
    const QByteArray listing = "display interface brief\r\n"
                               "PHY: Physical\r\n"
                               "Interface                   PHY   Protocol  InUti OutUti   inErrors  outErrors\r\n"
                               "GigabitEthernet0/0/1        up    up        0.01%  0.01%          0          0\r\n"
                               "<NAME>";
    SessionBench bench;
    bench.logIn();
    bench.submit("display interface brief\r\n");
    bench.feed(listing);
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({listing}));
}

void TestConsoleSession::reply_logLinesInTheMiddle_stay()
{
    const QByteArray reply =
        "shutdown\r\n"
        "Nov 20 2026 10:11:12+00:00 NAME %%01IFPDT/4/IF_STATE(l)[3]:Interface GigabitEthernet0/0/\r\n"
        "8 has turned into DOWN state.\r\n"
        "[NAME-GigabitEthernet0/0/8]";
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    bench.submit("shutdown\r\n");
    bench.feed(reply);
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({reply}));
}

// Redraw marks, other line ends and log lines stand in echoes; a switch may echo nothing at all.
void TestConsoleSession::reply_echoIsNotCompared()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("display vlan\r\n");
    bench.feed("no echo of it\r\n<NAME>");
    bench.pass(milliseconds(299));
    QCOMPARE(bench.replies, QByteArrayList());
    bench.pass(milliseconds(1));
    QCOMPARE(bench.replies, QByteArrayList({"no echo of it\r\n<NAME>"}));
}

void TestConsoleSession::reply_logLineWithPromptBeforeTheEcho_isNoEnd()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("display vlan\r\n");
    const QByteArray log = "Nov 20 2026 10:11:12+00:00 NAME %%01IFNET/4/LINK_STATE(l)[1]:up.\r\n<NAME>";
    bench.feed(log);
    bench.pass(milliseconds(200));
    bench.feed("display vlan\r\n1\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({log + "display vlan\r\n1\r\n<NAME>"}));
}

void TestConsoleSession::reply_promptOfAnotherView_data()
{
    QTest::addColumn<QByteArray>("prompt");
    for (const char *prompt :
         {"<NAME>", "[NAME]", "[~NAME]", "[*NAME]", "[NAME-vlan20]", "[NAME-GigabitEthernet0/0/1]", "[NAME-port-group]",
          "[*NAME-100GE1/1/1:1]", "[NAME-Eth-Trunk1]", "(M)<NAME>", "HRP_M<NAME>", "<NAME>\a", "\r<NAME>"})
        QTest::newRow(prompt) << QByteArray(prompt);
}

void TestConsoleSession::reply_promptOfAnotherView()
{
    QFETCH(QByteArray, prompt);
    SessionBench bench;
    bench.logIn();
    bench.submit("vlan 20\r\n");
    bench.feed("vlan 20\r\n" + prompt);
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"vlan 20\r\n" + prompt}));
}

// The prompt behind which the line is typed does not answer it.
void TestConsoleSession::reply_ownPrompt_isNoAnswer()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("display vlan\r\n");
    bench.feed("disp");
    bench.pass(milliseconds(500));
    QCOMPARE(bench.replies, QByteArrayList());
    bench.feed("lay vlan\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"display vlan\r\n<NAME>"}));
}

// A console that echoes nothing: the prompt behind a command that prints nothing is the whole answer.
void TestConsoleSession::reply_withoutEchoAndLineEnd_endsAtThePrompt_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<QByteArrayList>("answers");
    QTest::newRow("a line") << QByteArray("screen-length 0 temporary\r\n") << QByteArrayList{"<NAME>"};
    QTest::newRow("Enter") << QByteArray("\r\n") << QByteArrayList{"<NAME>"};
    QTest::newRow("two lines") << QByteArray("system-view\r\nreturn\r\n") << QByteArrayList{"[NAME]", "<NAME>"};
    QTest::newRow("a listing behind it") << QByteArray("screen-length 0 temporary\r\ndisplay vlan\r\n")
                                         << QByteArrayList{"<NAME>", "VID  Type\r\n<NAME>"};
    QTest::newRow("a question of its own") << QByteArray("reboot\r\n") << QByteArrayList{"Continue? [Y/N]:", "<NAME>"};
}

void TestConsoleSession::reply_withoutEchoAndLineEnd_endsAtThePrompt()
{
    QFETCH(QByteArray, block);
    QFETCH(QByteArrayList, answers);
    SessionBench bench;
    bench.logIn();
    bench.submit(block);
    for (const QByteArray &answer : qAsConst(answers)) {
        QVERIFY(!bench.takeSent().isEmpty());
        QCOMPARE(bench.replies, QByteArrayList());
        bench.feed(answer);
        bench.pass(milliseconds(310));
    }
    QCOMPARE(bench.replies, QByteArrayList{answers.join()});
    QCOMPARE(bench.takeSent(), QByteArray());
}

// Its prompts stand one behind the other on one line.
void TestConsoleSession::reply_withoutEcho_viewIsKnown()
{
    SessionBench bench(shippedDescription(QStringLiteral("Hua3.xml")));
    bench.logIn();
    bench.submit("system-view\r\nvlan 7\r\nport access vlan 9\r\nreturn\r\n");
    for (const char *answer : {"[NAME]", "[NAME-vlan7]", " The VLAN does not exist.\r\n[NAME-vlan7]", "<NAME>"}) {
        bench.feed(answer);
        bench.pass(milliseconds(310));
    }
    QCOMPARE(bench.replies, QByteArrayList{"[NAME][NAME-vlan7] The VLAN does not exist.\r\n[NAME-vlan7]<NAME>"});
    QCOMPARE(bench.warnings,
             QStringList{QStringLiteral("交换机拒绝了命令 %1：%2|port access vlan 9|The VLAN does not exist.")});
}

void TestConsoleSession::reply_withoutEcho_answerWithoutQuestion_isDropped()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    for (int i = 0; i < 2; ++i) {
        bench.submit("commit\r\nY\r\n");
        bench.feed("<NAME>");
        bench.pass(milliseconds(310));
        QCOMPARE(bench.takeSent(), QByteArray("commit\r\n"));
        QCOMPARE(bench.replies.size(), i + 1);
    }
}

// The switch takes its time for the line end behind the echo.
void TestConsoleSession::reply_echoThatLooksLikeAPrompt_isNone_data()
{
    QTest::addColumn<QByteArray>("line");
    for (const char *line : {"Password:", "Username:", "<NAME>", "[NAME]", "echo Continue? [Y/N]:"})
        QTest::newRow(line) << QByteArray(line);
}

void TestConsoleSession::reply_echoThatLooksLikeAPrompt_isNone()
{
    QFETCH(QByteArray, line);
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    bench.submit(line + "\r\nreturn\r\n");
    QCOMPARE(bench.takeSent(), line + "\r\n");
    bench.feed(line);
    bench.pass(milliseconds(200));
    QCOMPARE(bench.takeSent(), QByteArray());
    bench.feed("\r\nError: Unrecognized command found at '^' position.\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("return\r\n"));
    QVERIFY(bench.session.isLoggedIn());
    QCOMPARE(bench.warnings.size(), 1);
    QVERIFY2(bench.warnings.first().contains(QString::fromUtf8(line)), qPrintable(bench.warnings.first()));
}

void TestConsoleSession::rules_seeOnlyWhatFollowsTheEcho()
{
    auto description = std::make_shared<DeviceDescription>(*shippedDescription(QStringLiteral("Huawei.xml")));
    ReplyRule rule;
    rule.command = "display vlan";
    rule.text = "vlan";
    rule.with = "VLAN";
    description->replyRules = {rule};
    SessionBench bench(description);
    bench.logIn();
    bench.submit("display vlan\r\n");
    bench.feed("display  \x1b[1Dvlan\r\nvlan 20\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"display vlan\r\nVLAN 20\r\n<NAME>"}));
}

void TestConsoleSession::rules_ofOneCommand_leaveTheOthers()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    bench.submit("display vlan\r\ndisplay version\r\n");
    bench.feed("display vlan\r\nThe total number of vlans is : 1\r\n<NAME>");
    bench.pass(milliseconds(30));
    bench.feed("display version\r\nThe total number of vlans is : 1\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"display vlan\r\nThe total number of VLANs is : 1\r\n<NAME>"
                                            "display version\r\nThe total number of vlans is : 1\r\n<NAME>"}));
}

void TestConsoleSession::rules_thatFire_areLogged()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    bench.submit("display vlan\r\n");
    bench.feed("display vlan\r\nThe total number of vlans is : 1\r\n<NAME>");
    bench.pass(milliseconds(30));
    QVERIFY2(bench.debugs.join('\n').contains(QLatin1String("\"number of vlans\" replaced by \"number of VLANs\"")),
             qPrintable(bench.debugs.join('\n')));
}

void TestConsoleSession::refusal_isWarnedOf()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    bench.submit("vlna 20\r\nvlan 20\r\n");
    bench.feed("vlna 20\r\n         ^\r\nError: Unrecognized command found at '^' position.\r\n[NAME]");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.warnings, QStringList({QStringLiteral("交换机拒绝了命令 %1：%2|vlna 20|Error: Unrecognized command "
                                                         "found at '^' position.")}));
    QVERIFY(bench.sent.endsWith("vlan 20\r\n")); // the others are typed
}

void TestConsoleSession::refusal_thatIsExpected_isNot()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    bench.submit("undo port default vlan\r\n");
    bench.feed("undo port default vlan\r\nError: The port has no such setting.\r\n[NAME]");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies.size(), 1);
    QCOMPARE(bench.warnings, QStringList());
}

void TestConsoleSession::refusal_keepsTheRestartFromBeingTyped()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    bench.submit("reset saved-configuration\r\nreboot\r\nN\r\nY\r\n");
    bench.takeSent();
    const QByteArray refused = "reset saved-configuration\r\nError: You do not have permission to run the command or "
                               "the command is incomplete.\r\n<NAME>";
    bench.feed(refused);
    bench.pass(seconds(20));
    QCOMPARE(bench.takeSent(), QByteArray());
    QCOMPARE(bench.replies, QByteArrayList({refused}));
    QCOMPARE(bench.warnings.size(), 2);
    // It holds for its block only.
    bench.submit("reboot\r\n");
    QCOMPARE(bench.takeSent(), QByteArray("reboot\r\n"));
}

void TestConsoleSession::refusal_ofReturn_isTriedOnceMore()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    bench.submit("return\r\ndisplay vlan\r\nspace");
    bench.takeSent();
    const QByteArray refused = "return\r\nError: The system is busy.\r\n[NAME]";
    bench.feed(refused);
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("display vlan\r\n"));
    bench.feed("display vlan\r\n[NAME]");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("return\r\n"));
    bench.feed("return\r\nError: The system is busy.\r\n[NAME]");
    bench.pass(seconds(20));
    QCOMPARE(bench.takeSent(), QByteArray()); // once
    QCOMPARE(bench.replies, QByteArrayList({refused + "display vlan\r\n[NAME]"}));
}

void TestConsoleSession::unasked_bytes_areInNoReply()
{
    SessionBench bench;
    bench.logIn();
    bench.feed("Nov 20 2026 10:11:12+00:00 NAME %%01IFPDT/4/IF_STATE(l)[3]:down\r\n<NAME>");
    QVERIFY(bench.debugs.join('\n').contains(QLatin1String("IF_STATE")));
    bench.submit("display vlan\r\n");
    bench.feed("display vlan\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"display vlan\r\n<NAME>"}));
    bench.feed("late\r\n");
    bench.pass(seconds(60));
    QCOMPARE(bench.replies.size(), 1);
}

// Somebody writes CR past the session; the answer arrives before, or within, the next reply.
void TestConsoleSession::unasked_answerToAReadBack_confusesNothing()
{
    SessionBench bench;
    bench.logIn();
    bench.feed("\r\n<NA");
    bench.submit("display vlan\r\n");
    bench.feed("ME>");
    bench.pass(milliseconds(200));
    QCOMPARE(bench.replies, QByteArrayList());
    bench.feed("display vlan\r\n1\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"ME>display vlan\r\n1\r\n<NAME>"}));
    bench.submit("display version\r\n");
    bench.feed("\r\n<NAME>");
    bench.pass(milliseconds(100));
    bench.feed("display version\r\n2\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies.last(), QByteArray("\r\n<NAME>display version\r\n2\r\n<NAME>"));
}

void TestConsoleSession::description_isTakenWhenABlockStarts()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("display vlan\r\n");
    bench.submit("display vlan\r\n");
    bench.description = shippedDescription(QStringLiteral("Huawei.xml")); // in the middle of the first one
    for (int i = 0; i < 2; ++i) {
        bench.feed("display vlan\r\nnumber of vlans\r\n<NAME>");
        bench.pass(milliseconds(30));
    }
    QCOMPARE(bench.replies, QByteArrayList({"display vlan\r\nnumber of vlans\r\n<NAME>",
                                            "display vlan\r\nnumber of VLANs\r\n<NAME>"}));
}

void TestConsoleSession::logout_endsTheReply_andDropsTheRest()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("quit\r\ndisplay vlan\r\nsecret\r\n");
    bench.takeSent();
    bench.feed("quit\r\n\r\n\r\nUsername:");
    bench.pass(seconds(20));
    QCOMPARE(bench.takeSent(), QByteArray());
    QCOMPARE(bench.replies, QByteArrayList({"quit\r\n\r\n\r\nUsername:"}));
    QCOMPARE(bench.warnings, QStringList({QStringLiteral("交换机已退出登录，有 %1 条命令没有执行|2")}));
    QVERIFY(!bench.session.isLoggedIn());
}

void TestConsoleSession::logout_idleBanner_endsTheReply()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("quit\r\ndisplay vlan\r\n");
    bench.takeSent();
    bench.feed("quit\r\n\r\nUser interface con0 is available\r\n\r\n\r\nPlease Press ENTER.\r\n");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.takeSent(), QByteArray("\r"));
    bench.feed("\r\n\r\nUsername:");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray());
    QCOMPARE(bench.replies.size(), 1);
    QVERIFY(bench.replies.first().startsWith("quit\r\n"));
    QVERIFY(bench.replies.first().endsWith("Username:"));
}

// The switch has ended the login while nothing was asked of it.
void TestConsoleSession::loginPromptMeanwhile_commandsAreNotTyped()
{
    SessionBench bench(shippedDescription(QStringLiteral("Hua3.xml")));
    bench.logIn();
    bench.feed("\r\nlogin: ");
    bench.submit("display vlan\r\ndisplay version\r\n");
    bench.pass(seconds(20));
    QCOMPARE(bench.sent, QByteArray());
    QCOMPARE(bench.replies, QByteArrayList({"\r\nLogin: "}));
    QCOMPARE(bench.warnings.size(), 1);
    bench.submit("admin\r\n"); // one line is what the prompt asks for
    QCOMPARE(bench.takeSent(), QByteArray("admin\r\n"));
}

void TestConsoleSession::disconnected_dropsEveryBlock()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("one\r\n");
    bench.submit("two\r\n");
    bench.feed("one\r\n");
    bench.session.disconnected();
    bench.pass(seconds(100));
    QCOMPARE(bench.replies, QByteArrayList());
    QVERIFY(!bench.session.dueAt());
    bench.session.connected();
    bench.logIn();
    bench.submit("three\r\n");
    bench.feed("three\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"three\r\n<NAME>"}));
}

void TestConsoleSession::connected_forgetsNameAndLogin()
{
    SessionBench bench;
    bench.logIn("OLD");
    QCOMPARE(bench.session.name(), QByteArray("OLD"));
    bench.session.connected();
    QCOMPARE(bench.session.name(), QByteArray());
    QVERIFY(!bench.session.isLoggedIn());
    bench.submit("\r\n");
    bench.feed("\r\n<OLD>");
    bench.pass(milliseconds(299)); // a mere look-alike again
    QCOMPARE(bench.replies, QByteArrayList());
    bench.pass(milliseconds(1));
    QCOMPARE(bench.replies.size(), 1);
}

void TestConsoleSession::connectionLost_inTheMiddle_deliversWhatCame()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("display vlan\r\n");
    bench.feed("display vlan\r\nThe total");
    bench.loseConnection();
    QCOMPARE(bench.replies, QByteArrayList({"display vlan\r\nThe total"}));
    QCOMPARE(bench.warnings, QStringList({QStringLiteral("命令 %1 的应答不完整|display vlan")}));
    bench.pass(seconds(60));
    QCOMPARE(bench.replies.size(), 1);
}

void TestConsoleSession::connectionLost_answersWaitingBlocks()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("one\r\n");
    bench.submit("two\r\n");
    bench.submit("three\r\n");
    bench.loseConnection();
    QCOMPARE(bench.replies, QByteArrayList({"", "\r\n", "\r\n"}));
    bench.submit("four\r\n");
    QCOMPARE(bench.replies, QByteArrayList({"", "\r\n", "\r\n", "\r\n"}));
    QCOMPARE(bench.warnings.size(), 3);
}

QTEST_GUILESS_MAIN(TestConsoleSession)
#include "tst_consolesession.moc"
