#include "sessionbench.h"

#include <QtTest/QTest>

using namespace ovra::bll;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;

namespace {

const QString kHuawei = QStringLiteral("Huawei.xml");
const QString kHua3 = QStringLiteral("Hua3.xml");
const QByteArray kWelcome = QByteArrayLiteral("\r\n\r\nInfo: The max number of VTY users is 15.\r\n"
                                              "      The current login time is 2026-11-20 10:11:12+00:00.\r\n");

} // namespace

// From a port that was just opened to the first prompt.
class TestConsoleSessionLogin : public QObject
{
    Q_OBJECT

private slots:
    void failure_behindALogLineThatIsNotWrapped_isHandedUp();
    void command_atALoginPromptThatNobodyHasShown_isNotTyped();
    void question_standingBeforeTheLogin_isAnsweredNo();
    void dialogue_eachPrompt_endsAReply();
    void dialogue_withoutEchoAndLineEnd();
    void firstPrompt_isTheEnd_andTeachesTheName();
    void firstPrompt_isALookAlike();
    void logLines_areDropped_data();
    void logLines_areDropped();
    void logLine_behindALoginPrompt_leavesIt_data();
    void logLine_behindALoginPrompt_leavesIt();
    void logLine_behindALoginPrompt_whichIsWrittenAgain();
    void bannerWithADate_isNoLoginPrompt_data();
    void bannerWithADate_isNoLoginPrompt();
    void newPassword_isLeftToTheUser_data();
    void newPassword_isLeftToTheUser();
    void bootText_isDropped();
    void question_isAnsweredWithN_data();
    void question_isAnsweredWithN();
    void questionAskedForEver_isNoLogin();
    void pressEnter_getsEnter();
    void automaticConfiguration_isInterrupted();
    void pager_isLeft();
    void otherView_isLeft();
    void otherView_thatCannotBeLeft_isTaken();
    void failure_isHandedUpAlone_data();
    void failure_isHandedUpAlone();
    void failure_inALogLine_isNone();
    void failure_ofEnterAtAnEarlierUsersPrompt_isNone();
    void rules_ofTheLoginDialogue_data();
    void rules_ofTheLoginDialogue();
    void rules_workWithoutALineEnd();
    void password_isMasked();
    void unfinished_isNeverDelivered();
    void firstBlockOfSeveralLines_looksFirst();
    void firstBlockOfSeveralLines_atALogin_isNotTyped();
    void firstBlock_nobodyAnswersEnter_isTypedAllTheSame();
    void withoutDescription_theSame();
    void banner_thatComesBackForEver_neverHangs();
};

void TestConsoleSessionLogin::dialogue_eachPrompt_endsAReply()
{
    SessionBench bench(shippedDescription(kHuawei));
    bench.submit("\r\n");
    QCOMPARE(bench.takeSent(), QByteArray("\r\n"));
    bench.feed("\r\n\r\nLogin authentication\r\n\r\n\r\nUsername:");
    bench.pass(milliseconds(25));
    QCOMPARE(bench.replies.last(), QByteArray("\r\n\r\nLogin authentication\r\n\r\n\r\nUsername:"));
    bench.submit("admin\r\n");
    QCOMPARE(bench.takeSent(), QByteArray("admin\r\n"));
    bench.feed("admin\r\nPassword:");
    bench.pass(milliseconds(25));
    QCOMPARE(bench.replies.last(), QByteArray("admin\r\nPassword:"));
    bench.submit("secret\r\n");
    QCOMPARE(bench.takeSent(), QByteArray("secret\r\n"));
    bench.feed(kWelcome + "<NAME>");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.replies.last(), kWelcome + "<NAME>");
    QCOMPARE(bench.replies.size(), 3);
    QVERIFY(bench.session.isLoggedIn());
    QCOMPARE(bench.warnings, QStringList());
}

void TestConsoleSessionLogin::dialogue_withoutEchoAndLineEnd()
{
    SessionBench bench(shippedDescription(kHuawei));
    bench.submit("\r\n");
    bench.feed("Username:");
    bench.pass(milliseconds(30));
    bench.submit("admin\r\n");
    bench.feed("Password:");
    bench.pass(milliseconds(30));
    bench.submit("secret\r\n");
    bench.feed("<NAME>");
    bench.pass(milliseconds(310));
    QCOMPARE(bench.replies, QByteArrayList({"Username:", "Password:", "<NAME>"}));
    QCOMPARE(bench.takeSent(), QByteArray("\r\nadmin\r\nsecret\r\n"));
    QVERIFY(bench.session.isLoggedIn());
    QCOMPARE(bench.session.name(), QByteArray("NAME"));
}

void TestConsoleSessionLogin::firstPrompt_isTheEnd_andTeachesTheName()
{
    SessionBench bench;
    bench.submit("\r\n");
    bench.feed("\r\n<some-device>");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.replies, QByteArrayList({"\r\n<some-device>"}));
    QCOMPARE(bench.session.name(), QByteArray("some-device"));
}

void TestConsoleSessionLogin::firstPrompt_isALookAlike()
{
    SessionBench bench;
    bench.submit("\r\n");
    bench.feed("\r\n<C4>");
    bench.pass(milliseconds(299));
    QCOMPARE(bench.replies, QByteArrayList());
    bench.feed(" work\r\n<NAME>");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.session.name(), QByteArray("NAME"));
}

void TestConsoleSessionLogin::logLines_areDropped_data()
{
    QTest::addColumn<QByteArray>("log");
    QTest::newRow("Huawei, wrapped at column 80")
        << QByteArray("Nov 20 2026 10:11:12+00:00 NAME %%01IFPDT/4/IF_STATE(l)[3]:Interface GigabitEthe\r\n"
                      "rnet0/0/8 has > turned ] into Username: DOWN state.\r\n");
    QTest::newRow("Huawei trap") << QByteArray("Nov  2 2026 10:11:12 NAME L2IFPPI/4/MFLPVLANALARM:OID 1.3.6 [>]\r\n");
    QTest::newRow("Hua3") << QByteArray("%Nov 20 10:11:12:345 2026 NAME SHELL/5/SHELL_LOGIN: Login > from con0 ].\r\n");
    QTest::newRow("behind a prompt") << QByteArray("<NAME>%Nov 20 10:11:12:345 2026 NAME IFNET/3/PHY_UPDOWN: ]\r\n");
}

void TestConsoleSessionLogin::logLines_areDropped()
{
    QFETCH(QByteArray, log);
    SessionBench bench(shippedDescription(kHuawei));
    bench.submit("\r\n");
    bench.feed("\r\n" + log + "hello\r\n" + log + "Username:");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"\r\nhello\r\nUsername:"}));
    // In place of the echo, too.
    bench.submit("\r\n");
    bench.feed(log + "\r\nUsername:");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies.last(), QByteArray("\r\nUsername:"));
}

// The prompt is not written again; the switch waits for the name or the password all the same.
void TestConsoleSessionLogin::logLine_behindALoginPrompt_leavesIt_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<int>("afterMs");
    const struct
    {
        const char *tag;
        QString file;
        QByteArray log;
    } logs[] = {
        {"Huawei, wrapped", kHuawei,
         "Nov 20 2026 10:11:12+00:00 NAME %%01IFPDT/4/IF_STATE(l)[3]:Interface GigabitEthe\r\n"
         "rnet0/0/8 has turned into DOWN state.\r\n"},
        {"Huawei, wrapped with the prompt", kHuawei,
         "Nov 20 2026 10:11:12+00:00 NAME %%01IFPDT/4/IF_STATE(l)[3]:Interface Gi\r\n"
         "gabitEthernet0/0/8 has turned into DOWN state.\r\n"},
        {"Huawei, two", kHuawei,
         "Nov 20 2026 10:11:12+00:00 NAME %%01CFM/4/SAVE_FILE(l)[3]:one.\r\n"
         "Nov 20 2026 10:11:13+00:00 NAME %%01CFM/4/SAVE_FILE(l)[4]:two.\r\n"},
        {"Hua3", kHua3, "%Nov 20 10:11:12:345 2026 NAME IFNET/3/PHY_UPDOWN: changed to up.\r\n"},
    };
    for (const auto &log : logs) {
        for (const int afterMs : {0, 10, 100})
            QTest::addRow("%s, after %d ms", log.tag, afterMs) << log.file << log.log << afterMs;
    }
}

void TestConsoleSessionLogin::logLine_behindALoginPrompt_leavesIt()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, log);
    QFETCH(int, afterMs);
    SessionBench bench(shippedDescription(file));
    const auto promptAndLog = [&](const QByteArray &prompt) {
        bench.feed(prompt);
        bench.pass(milliseconds(afterMs));
        bench.feed(log);
        bench.pass(milliseconds(310)); // the prompt might be written again
    };
    bench.submit("\r\n");
    promptAndLog("\r\nUsername:");
    bench.submit("admin\r\n");
    promptAndLog("admin\r\nPassword:");
    bench.submit("secret\r\n");
    bench.feed(kWelcome + "<NAME>");
    bench.pass(milliseconds(310));
    QCOMPARE(bench.replies, QByteArrayList({"\r\nUsername:", "admin\r\nPassword:", kWelcome + "<NAME>"}));
    QCOMPARE(bench.takeSent(), QByteArray("\r\nadmin\r\nsecret\r\n"));
    QVERIFY(bench.session.isLoggedIn());
}

void TestConsoleSessionLogin::logLine_behindALoginPrompt_whichIsWrittenAgain()
{
    SessionBench bench(shippedDescription(kHuawei));
    bench.submit("\r\n");
    bench.feed("\r\nUsername:Nov 20 2026 10:11:12+00:00 NAME %%01CFM/4/SAVE_FILE(l)[3]:one.\r\n");
    bench.pass(milliseconds(40));
    QCOMPARE(bench.replies, QByteArrayList());
    bench.feed("\r\nUsername:");
    bench.pass(milliseconds(310));
    QCOMPARE(bench.replies, QByteArrayList{"\r\n\r\nUsername:"});
    QCOMPARE(bench.takeSent(), QByteArray("\r\n"));
}

void TestConsoleSessionLogin::bannerWithADate_isNoLoginPrompt_data()
{
    QTest::addColumn<QByteArray>("banner");
    QTest::newRow("last login") << QByteArray("Last login: Nov 20 10:11:12 2026 from console0\r\n");
    QTest::newRow("unsuccessful login") << QByteArray("  Unsuccessful login: Nov 20 2026 10:11:12\r\n");
    QTest::newRow("changed password") << QByteArray("Last change of the password: Nov 20 2026 10:11:12\r\n");
}

void TestConsoleSessionLogin::bannerWithADate_isNoLoginPrompt()
{
    QFETCH(QByteArray, banner);
    for (const int pauseMs : {0, 30, 400}) {
        SessionBench bench(shippedDescription(kHua3));
        bench.submit("\r\n");
        bench.feed("\r\n" + banner);
        bench.pass(milliseconds(pauseMs));
        bench.feed("<NAME>");
        bench.pass(milliseconds(310));
        QCOMPARE(bench.replies, QByteArrayList{"\r\n" + banner + "<NAME>"});
        QVERIFY(bench.session.isLoggedIn());
    }
}

void TestConsoleSessionLogin::newPassword_isLeftToTheUser_data()
{
    QTest::addColumn<QByteArray>("prompt");
    QTest::newRow("small") << QByteArray("Enter new password:");
    QTest::newRow("capital") << QByteArray("New Password:");
    QTest::newRow("again") << QByteArray("Re-enter new password:");
}

void TestConsoleSessionLogin::newPassword_isLeftToTheUser()
{
    QFETCH(QByteArray, prompt);
    SessionBench bench(shippedDescription(kHua3));
    bench.submit("\r\n");
    bench.feed("\r\nFirst login, please configure a new password.\r\n" + prompt);
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies.size(), 1);
    QCOMPARE(bench.warnings, QStringList(QStringLiteral("交换机要求设置新密码，请先用终端程序设置，再重新连接|")));
    QCOMPARE(bench.takeSent(), QByteArray("\r\n"));
}

void TestConsoleSessionLogin::bootText_isDropped()
{
    SessionBench bench(shippedDescription(kHuawei));
    bench.submit("\r\n");
    bench.takeSent();
    bench.feed("BIOS LOADING ...\r\nPress Ctrl+B to break auto startup ... 3\b2\b1\b0\r\n");
    bench.pass(seconds(1));
    bench.feed("<boot> [reboot]\r\nUser interface con0 is available\r\n\r\n\r\n\r\nPlease Press ENTER.\r\n");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.takeSent(), QByteArray("\r"));
    bench.feed("\r\n\r\nUsername:");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies.size(), 1);
    QVERIFY2(bench.replies.first().trimmed() == "Username:", bench.replies.first().constData());
}

void TestConsoleSessionLogin::question_isAnsweredWithN_data()
{
    QTest::addColumn<QByteArray>("question");
    QTest::addColumn<bool>("isWarnedOf");
    QTest::newRow("known: password") << QByteArray("\r\nWarning: The initial password poses security risks.\r\n"
                                                   "The password needs to be changed. Change now? [Y/N]:")
                                     << false;
    QTest::newRow("known: configuration")
        << QByteArray("\r\nWarning: There are security risks in the configuration file. Save now? [Y/N]:") << false;
    QTest::newRow("unknown") << QByteArray("\r\nErase everything? [Y/N]") << true;
}

void TestConsoleSessionLogin::question_isAnsweredWithN()
{
    QFETCH(QByteArray, question);
    QFETCH(bool, isWarnedOf);
    SessionBench bench(shippedDescription(kHuawei));
    bench.feed("Password:");
    bench.submit("secret\r\n");
    bench.takeSent();
    bench.feed("\r\n" + question);
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("N\r\n"));
    QCOMPARE(bench.warnings.size(), isWarnedOf ? 1 : 0);
    QCOMPARE(bench.replies, QByteArrayList()); // "]" would pass for a login
    bench.feed("N\r\n" + kWelcome + "<NAME>");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.replies, QByteArrayList({kWelcome + "<NAME>"}));
}

void TestConsoleSessionLogin::questionAskedForEver_isNoLogin()
{
    SessionBench bench(shippedDescription(kHuawei));
    bench.submit("\r\n");
    for (int i = 0; i < 100 && bench.replies.isEmpty(); ++i) {
        bench.feed("\r\nYes or no? [Y/N]:");
        bench.pass(milliseconds(30));
    }
    QCOMPARE(bench.replies, QByteArrayList({""}));
}

void TestConsoleSessionLogin::pressEnter_getsEnter()
{
    SessionBench bench(shippedDescription(kHua3));
    bench.submit("\r\n");
    bench.takeSent();
    bench.feed("\r\nLine con0 is available.\r\n\r\n\r\nPress ENTER to get started.");
    bench.pass(milliseconds(299));
    QCOMPARE(bench.takeSent(), QByteArray());
    bench.pass(milliseconds(1));
    QCOMPARE(bench.takeSent(), QByteArray("\r"));
    bench.feed("\r\n<H3C>");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.replies, QByteArrayList({"<H3C>"}));
}

void TestConsoleSessionLogin::automaticConfiguration_isInterrupted()
{
    SessionBench bench(shippedDescription(kHua3));
    bench.submit("\r\n");
    bench.takeSent();
    bench.feed("\r\nAutomatic configuration is running, press CTRL_C or CTRL_D to break.\r\n");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.takeSent(), QByteArray("\x03\r"));
    bench.feed(
        "\r\nAutomatic configuration is aborted.\r\nLine con0 is available.\r\n\r\nPress ENTER to get started.\r\n");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.takeSent(), QByteArray("\r"));
    bench.feed("\r\n<H3C>");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.replies, QByteArrayList({"<H3C>"}));
}

void TestConsoleSessionLogin::pager_isLeft()
{
    SessionBench bench(shippedDescription(kHuawei));
    bench.submit("\r\n");
    bench.takeSent();
    bench.feed("\x1b[16D                \x1b[16Dinterface [x]\r\n  ---- More ----");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("\x03"));
    bench.feed("\x1b[16D                \x1b[16D<NAME>");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.replies, QByteArrayList({"<NAME>"}));
}

void TestConsoleSessionLogin::otherView_isLeft()
{
    SessionBench bench(shippedDescription(kHuawei));
    bench.submit("\r\n");
    bench.takeSent();
    bench.feed("\r\n[NAME-GigabitEthernet0/0/1]");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.takeSent(), QByteArray("return\r\n"));
    QCOMPARE(bench.replies, QByteArrayList());
    bench.feed("return\r\n<NAME>");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.replies, QByteArrayList({"<NAME>"}));
    QCOMPARE(bench.session.name(), QByteArray("NAME"));
}

void TestConsoleSessionLogin::otherView_thatCannotBeLeft_isTaken()
{
    SessionBench bench(shippedDescription(kHuawei));
    bench.submit("\r\n");
    for (int i = 0; i < 3; ++i) {
        bench.feed("\r\n[NAME]");
        bench.pass(milliseconds(300));
    }
    QCOMPARE(bench.sent.count("return\r\n"), 2);
    QCOMPARE(bench.replies.size(), 1);
    QVERIFY(bench.session.isLoggedIn());
}

void TestConsoleSessionLogin::failure_isHandedUpAlone_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<int>("quietMs");
    QTest::newRow("with a NUL, and a new prompt in one burst")
        << kHuawei << QByteArray("\r\nAuthentication fail\0\r\n\r\nUsername:", 35)
        << QByteArray("\r\nAuthentication fail\r\n") << 25;
    QTest::newRow("no new prompt") << kHuawei << QByteArray("\r\nError: Authentication fail\r\n")
                                   << QByteArray("\r\nError: Authentication fail\r\n") << 300;
    QTest::newRow("other wording") << kHuawei << QByteArray("\r\nError: Username or password error.\r\n\r\nPassword:")
                                   << QByteArray("\r\nError: Authentication fail (wrong user name or password).\r\n")
                                   << 25;
    QTest::newRow("refused by the switch itself")
        << kHuawei << QByteArray("\r\nError: Local authentication is rejected.\r\n\r\nUsername:")
        << QByteArray("\r\nError: Authentication fail (local).\r\n") << 25;
    QTest::newRow("locked") << kHuawei
                            << QByteArray("\r\nError: The password is invalid.\r\nError: locked\r\n\r\nPlease Press "
                                          "ENTER.\r\n")
                            << QByteArray("\r\nError: The password is invalid.\r\n") << 300;
    QTest::newRow("Hua3") << kHua3 << QByteArray("\r\nAAA authentication failed.\r\n\r\nlogin: ")
                          << QByteArray("\r\nAAA authentication failed.\r\n") << 25;
    QTest::newRow("Hua3, other wording") << kHua3 << QByteArray("\r\nLogin incorrect\r\n\r\nlogin: ")
                                         << QByteArray("\r\nauthentication failed\r\n") << 25;
    QTest::newRow("Hua3, refused by the switch itself")
        << kHua3 << QByteArray("\r\nLocal authentication is rejected.\r\n\r\nlogin: ")
        << QByteArray("\r\nauthentication failed.\r\n") << 25;
}

void TestConsoleSessionLogin::failure_isHandedUpAlone()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, written);
    QFETCH(QByteArray, reply);
    QFETCH(int, quietMs);
    SessionBench bench(shippedDescription(file));
    bench.feed("Password:");
    bench.submit("wrong\r\n");
    bench.takeSent();
    bench.feed(written);
    bench.pass(milliseconds(quietMs));
    QCOMPARE(bench.replies, QByteArrayList({reply}));
    bench.pass(minutes(1));
    QCOMPARE(bench.takeSent(), QByteArray()); // nobody asked for more
    QCOMPARE(bench.replies.size(), 1);
    QVERIFY(!bench.session.isLoggedIn());
}

void TestConsoleSessionLogin::failure_inALogLine_isNone()
{
    SessionBench bench(shippedDescription(kHuawei));
    bench.feed("Password:");
    bench.submit("secret\r\n");
    bench.feed("\r\nNov 20 2026 10:11:12+00:00 NAME %%01SSH/4/SSH_FAIL(l)[3]:Authentication fail for root.\r\n<NAME>");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.replies, QByteArrayList({"\r\n<NAME>"}));
    QVERIFY(bench.session.isLoggedIn());
}

// An earlier user has left the line at the password prompt; the block that wakes the console is taken for a password.
void TestConsoleSessionLogin::failure_ofEnterAtAnEarlierUsersPrompt_isNone()
{
    SessionBench bench(shippedDescription(kHua3));
    bench.submit("\r\n");
    bench.feed("\r\nAAA authentication failed.\r\n\r\nlogin: ");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.replies, QByteArrayList({"\r\n\r\nLogin: "}));
}

void TestConsoleSessionLogin::rules_ofTheLoginDialogue_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("Huawei, lower case") << kHuawei << QByteArray("\r\nlogin:") << QByteArray("\r\nUsername:");
    QTest::newRow("Huawei, lower case user name")
        << kHuawei << QByteArray("\r\nusername:") << QByteArray("\r\nUsername:");
    QTest::newRow("Huawei, upper case") << kHuawei << QByteArray("\r\nUsername:") << QByteArray("\r\nUsername:");
    QTest::newRow("Hua3, lower case") << kHua3 << QByteArray("\r\nlogin: ") << QByteArray("\r\nLogin: ");
    QTest::newRow("Hua3, password") << kHua3 << QByteArray("\r\npassword: ") << QByteArray("\r\nPassword: ");
    QTest::newRow("not in the middle of a line")
        << kHuawei << QByteArray("\r\nthe login: of\r\nUsername:") << QByteArray("\r\nthe login: of\r\nUsername:");
}

void TestConsoleSessionLogin::rules_ofTheLoginDialogue()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, written);
    QFETCH(QByteArray, reply);
    SessionBench bench(shippedDescription(file));
    bench.submit("\r\n");
    bench.feed(written);
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({reply}));
}

void TestConsoleSessionLogin::rules_workWithoutALineEnd()
{
    SessionBench bench(shippedDescription(kHuawei));
    bench.submit("\r\n");
    bench.feed("login:");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"Username:"}));
}

void TestConsoleSessionLogin::password_isMasked()
{
    SessionBench bench(shippedDescription(kHuawei));
    bench.submit("\r\n");
    bench.feed("\r\nPassword:");
    bench.pass(milliseconds(30));
    bench.submit("s3cret\r\n");
    bench.feed("\r\n<NAME>");
    bench.pass(milliseconds(300));
    // Also behind the login: of another user level, for example.
    bench.submit("super\r\n");
    bench.feed("super\r\nPassword:");
    bench.pass(milliseconds(30));
    bench.submit("s3cret\r\n");
    QVERIFY(bench.sent.endsWith("s3cret\r\n"));
    bench.feed("\r\nhalf an answer");
    bench.pass(minutes(1));
    QCOMPARE(bench.replies.size(), 4);
    const QString log = bench.debugs.join('\n') + bench.warnings.join('\n');
    QVERIFY2(!log.contains(QLatin1String("s3cret")), qPrintable(log));
    QVERIFY2(log.contains(QLatin1String("super")), qPrintable(log));
}

// Garbage with a bracket in it would pass for a login.
void TestConsoleSessionLogin::unfinished_isNeverDelivered()
{
    SessionBench bench(shippedDescription(kHuawei));
    bench.submit("\r\n");
    bench.feed("\x7f>]\xff\r\n<\xff>>");
    bench.pass(seconds(10));
    QCOMPARE(bench.replies, QByteArrayList({""}));
    bench.submit("\r\n");
    bench.feed("]");
    bench.loseConnection();
    QCOMPARE(bench.replies, QByteArrayList({"", "\r\n"}));
}

void TestConsoleSessionLogin::firstBlockOfSeveralLines_looksFirst()
{
    SessionBench bench(shippedDescription(kHuawei));
    bench.submit("display vlan\r\nspace");
    QCOMPARE(bench.takeSent(), QByteArray("\r"));
    bench.feed("\r\n[NAME]");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.takeSent(), QByteArray("return\r\n"));
    bench.feed("return\r\n<NAME>");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.takeSent(), QByteArray("display vlan\r\n"));
    bench.feed("display vlan\r\n1\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"display vlan\r\n1\r\n<NAME>"}));
}

void TestConsoleSessionLogin::firstBlockOfSeveralLines_atALogin_isNotTyped()
{
    SessionBench bench(shippedDescription(kHuawei));
    bench.submit("display vlan\r\nspace");
    bench.takeSent();
    bench.feed("\r\n\r\nLogin authentication\r\n\r\nlogin:");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray());
    QCOMPARE(bench.replies, QByteArrayList({"\r\nUsername:"}));
    QCOMPARE(bench.warnings, QStringList({QStringLiteral("交换机已退出登录，有 %1 条命令没有执行|1")}));
}

void TestConsoleSessionLogin::firstBlock_nobodyAnswersEnter_isTypedAllTheSame()
{
    SessionBench bench;
    bench.submit("display vlan\r\n");
    bench.pass(milliseconds(1999));
    QCOMPARE(bench.takeSent(), QByteArray("\r"));
    bench.pass(milliseconds(1));
    QCOMPARE(bench.takeSent(), QByteArray("display vlan\r\n"));
}

void TestConsoleSessionLogin::withoutDescription_theSame()
{
    SessionBench bench;
    bench.submit("\r\n");
    bench.feed("\r\nPlease Press ENTER.\r\n");
    bench.pass(milliseconds(300));
    bench.feed("\r\nlogin: ");
    bench.pass(milliseconds(30));
    QVERIFY(bench.replies.last().endsWith("Username: "));
    bench.submit("admin\r\n");
    bench.feed("admin\r\nPassword: ");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies.last(), QByteArray("admin\r\nPassword: "));
    bench.submit("wrong\r\n");
    bench.feed("\r\nAuthentication fail\r\n\r\nlogin: ");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies.last(), QByteArray("\r\nAuthentication fail\r\n"));
    bench.submit("admin\r\n");
    bench.feed("admin\r\nPassword: ");
    bench.pass(milliseconds(30));
    bench.submit("right\r\n");
    bench.feed("\r\n<H3C>");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.replies.last(), QByteArray("\r\n<H3C>"));
    QCOMPARE(bench.replies.size(), 5);
}

void TestConsoleSessionLogin::banner_thatComesBackForEver_neverHangs()
{
    SessionBench bench(shippedDescription(kHuawei));
    bench.submit("\r\n");
    for (int i = 0; i < 10000 && bench.replies.isEmpty(); ++i) {
        bench.feed("\r\nPlease Press ENTER.\r\n");
        bench.pass(seconds(5));
    }
    QCOMPARE(bench.replies, QByteArrayList({""}));
    QVERIFY2(bench.sent.size() < 100, bench.sent.constData());
}

void TestConsoleSessionLogin::failure_behindALogLineThatIsNotWrapped_isHandedUp()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.submit("\r\n");
    bench.feed("\r\nUsername:");
    bench.pass(milliseconds(400));
    bench.submit("bad\r\n");
    bench.feed("bad\r\nPassword:");
    bench.pass(milliseconds(400));
    bench.forget();
    bench.submit("wrong\r\n");
    bench.feed("\r\nNov 20 2026 10:11:12+00:00 SW %%01SHELL/4/LOGINFAILED(s)[1]:Login refused. (Ip=**, UserName=bad, "
               "Times=1, AccessType=TERMINAL)\r\nError: The password is invalid.\r\n\r\nUsername:");
    bench.pass(milliseconds(400));
    QCOMPARE(bench.replies.size(), 1);
    QVERIFY2(bench.replies.first().contains("The password is invalid"), bench.replies.first().constData());
    QVERIFY2(!bench.replies.first().contains("Username:"), bench.replies.first().constData());
}

void TestConsoleSessionLogin::command_atALoginPromptThatNobodyHasShown_isNotTyped()
{
    SessionBench bench;
    bench.logIn();
    bench.feed("\r\nPlease Press ENTER.\r\n"); // the idle time-out
    bench.pass(milliseconds(400));
    bench.submit("save\r\n");
    bench.pass(milliseconds(400));
    bench.feed("\r\nUsername:");
    bench.pass(milliseconds(400));
    QVERIFY2(!bench.takeSent().contains("save"), "typed as a user name");
    QCOMPARE(bench.replies, QByteArrayList({"\r\nUsername:"}));
    // What answers the prompt now is typed.
    bench.submit("admin\r\n");
    QCOMPARE(bench.takeSent(), QByteArray("admin\r\n"));
}

void TestConsoleSessionLogin::question_standingBeforeTheLogin_isAnsweredNo()
{
    SessionBench bench;
    bench.feed("something? [Y/N]:");
    bench.pass(milliseconds(400));
    bench.submit("\r\n");
    QCOMPARE(bench.takeSent(), QByteArray("N\r\n"));
}

QTEST_GUILESS_MAIN(TestConsoleSessionLogin)
#include "tst_consolesession_login.moc"
