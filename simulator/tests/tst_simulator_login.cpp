#include "consoleuser.h"

#include <QtTest/QTest>

using namespace simulator;

namespace {

constexpr char kIdle[] =
    "\r\n\r\n\r\n\r\n\r\n\r\r\nUser interface con0 is available\r\n\r\n\r\n\r\nPlease Press ENTER.\r\n";
constexpr char kHeader[] = "\r\n\r\nLogin authentication\r\n\r\n\r\n";
constexpr char kWelcome[] =
    "\r\nInfo: The max number of VTY users is 15, the number of current VTY users online is 0, and total "
    "number of terminal users is 1.\r\n      The current login time is 2026-11-20 10:11:";

SimulatorOptions fresh(const QString &arguments = {})
{
    return withArguments(arguments, {});
}

// The names of the wordings and their bytes.
struct Failure
{
    const char *name;
    QByteArray huawei, hua3;
};

} // namespace

class TestSimulatorLogin : public QObject
{
    Q_OBJECT

private slots:
    void idle_writesItsBannerAndWaitsForEnter();
    void user_rightCredentials_byteForByte();
    void user_emptyName_asksAgain();
    void user_wrongPassword_failureAndNextPromptInOneBurst_data();
    void user_wrongPassword_failureAndNextPromptInOneBurst();
    void password_only();
    void none_goesStraightToThePrompt();
    void threeFailures_goBackToTheBanner();
    void threeFailures_lockTheLineForItsTime();
    void failures_areForgottenAfterARightLogin();
    void initialPassword_insistsOnYesOrNo();
    void initialPassword_changed_isTheNewOneFromThenOn();
    void firstLogin_asksForAPasswordTwice();
    void insecureConfiguration_isAskedBeforeTheFirstPrompt();
    void questionEnd_canBeChosen();
    void idleTimeout_endsTheSession();
    void quit_endsTheSession();
    void hua3_login_data();
    void hua3_login();
    void hua3_newPassword_withoutAQuestion();
    void hua3_withoutStartupConfiguration_repeatsItsNoticeUntilCtrlC();
    void start_leavesTheConsoleInTheChosenState_data();
    void start_leavesTheConsoleInTheChosenState();
};

void TestSimulatorLogin::idle_writesItsBannerAndWaitsForEnter()
{
    MemoryTerminal terminal(fresh());
    QCOMPARE(terminal.settle(), QByteArray(kIdle));
    QCOMPARE(terminal.exchange("abc "), QByteArray());
    QCOMPARE(terminal.exchange("\r\n"), QByteArray(kHeader) + "Username:");
}

void TestSimulatorLogin::user_rightCredentials_byteForByte()
{
    ConsoleUser user(fresh());
    user.enter("");
    QCOMPARE(user.enter("admin"), QByteArray("admin\r\nPassword:"));
    const QByteArray answer = user.enter("Admin@123");
    QVERIFY2(answer.startsWith(QByteArray("\r\n") + kWelcome), answer.constData());
    QVERIFY2(answer.endsWith("+00:00.\r\n<HUAWEI>"), answer.constData());
    QVERIFY(!answer.contains("Admin@123"));
    QCOMPARE(user.console().received(), QByteArray("\r\nadmin\r\nAdmin@123\r\n"));
}

void TestSimulatorLogin::user_emptyName_asksAgain()
{
    ConsoleUser user(fresh());
    user.enter("");
    QCOMPARE(user.enter(""), QByteArray("\r\nUsername:"));
}

void TestSimulatorLogin::user_wrongPassword_failureAndNextPromptInOneBurst_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("burst");
    const Failure failures[] = {
        {"short", QByteArray("Authentication fail\0\r\n", 22), QByteArray("AAA authentication failed.\0\r\n", 29)},
        {"user-or-password", "Error: Username or password error.\r\n", "% Login failed: authentication failed.\r\n"},
        {"invalid", "Error: The password is invalid.\r\n", "Invalid password.\r\n"},
        {"authentication", "Error: Authentication fail\r\n", "AAA authentication failed.\r\n"}};
    for (const Failure &failure : failures) {
        QTest::addRow("huawei, %s", failure.name)
            << QStringLiteral("--failure %1").arg(QLatin1String(failure.name)) << failure.huawei + "\r\nUsername:";
        QTest::addRow("hua3, %s", failure.name)
            << QStringLiteral("--family hua3 --failure %1").arg(QLatin1String(failure.name))
            << failure.hua3 + "\r\nlogin: ";
    }
}

void TestSimulatorLogin::user_wrongPassword_failureAndNextPromptInOneBurst()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArray, burst);
    ConsoleUser user(fresh(arguments));
    user.enter("");
    user.enter("admin");
    QCOMPARE(user.enter("wrong"), "\r\n" + burst);
    QCOMPARE(user.terminal().pieces().size(), 1);
}

void TestSimulatorLogin::password_only()
{
    ConsoleUser user(fresh(QStringLiteral("--login password --name core-1")));
    QCOMPARE(user.enter(""), QByteArray(kHeader) + "Password:");
    QCOMPARE(user.enter("no"), QByteArray("\r\nAuthentication fail\0\r\n\r\nPassword:", 35));
    QVERIFY(user.enter("Admin@123").endsWith("\r\n<core-1>"));
}

void TestSimulatorLogin::none_goesStraightToThePrompt()
{
    ConsoleUser user(fresh(QStringLiteral("--login none")));
    const QByteArray answer = user.enter("");
    QVERIFY(answer.startsWith(kWelcome));
    QVERIFY(answer.endsWith("<HUAWEI>"));
}

void TestSimulatorLogin::threeFailures_goBackToTheBanner()
{
    ConsoleUser user(fresh());
    user.enter("");
    for (int i = 0; i < 2; ++i) {
        user.enter("admin");
        QVERIFY(user.enter("wrong").endsWith("\r\nUsername:"));
    }
    user.enter("admin");
    QVERIFY(user.enter("wrong").endsWith(kIdle));
    QCOMPARE(user.enter(""), QByteArray(kHeader) + "Username:");
}

void TestSimulatorLogin::threeFailures_lockTheLineForItsTime()
{
    ConsoleUser user(fresh(QStringLiteral("--login password --lock silence --lock-time 1m --failures 1 --hurry 2")));
    user.enter("");
    QVERIFY(!user.enter("wrong").contains("Please Press ENTER."));
    QCOMPARE(user.enter(""), QByteArray());
    QCOMPARE(user.terminal().advance(std::chrono::seconds(15)), QByteArray());
    QCOMPARE(user.terminal().advance(std::chrono::seconds(15)), QByteArray(kIdle));
}

void TestSimulatorLogin::failures_areForgottenAfterARightLogin()
{
    ConsoleUser user(fresh(QStringLiteral("--login password --failures 2")));
    for (int i = 0; i < 3; ++i) {
        user.enter("");
        QVERIFY(user.enter("wrong").endsWith("Password:"));
        QVERIFY(user.enter("Admin@123").endsWith("<HUAWEI>"));
        user.enter("quit");
    }
}

void TestSimulatorLogin::initialPassword_insistsOnYesOrNo()
{
    ConsoleUser user(fresh(QStringLiteral("--login password --ask-initial-password")));
    user.enter("");
    QCOMPARE(user.enter("Admin@123"), QByteArray("\r\n\r\nWarning: The initial password poses security risks.\r\n"
                                                 "The password needs to be changed. Change now? [Y/N]:"));
    QCOMPARE(user.enter(""),
             QByteArray("\r\nError: Please choose 'YES' or 'NO' first before pressing 'Enter'. [Y/N]:"));
    QCOMPARE(user.enter("maybe"),
             QByteArray("maybe\r\nError: Please choose 'YES' or 'NO' first before pressing 'Enter'. [Y/N]:"));
    QVERIFY(user.enter("N").endsWith("<HUAWEI>"));
}

void TestSimulatorLogin::initialPassword_changed_isTheNewOneFromThenOn()
{
    ConsoleUser user(fresh(QStringLiteral("--login password --ask-initial-password")));
    user.enter("");
    user.enter("Admin@123");
    QCOMPARE(user.enter("y"), QByteArray("y\r\nPlease enter old password:"));
    QCOMPARE(user.enter("Admin@123"), QByteArray("\r\nPlease enter new password:"));
    QCOMPARE(user.enter("Secret@99"), QByteArray("\r\nPlease confirm new password:"));
    QVERIFY(user.enter("Secret@99").endsWith("<HUAWEI>"));
    user.enter("quit");
    user.enter("");
    QVERIFY(user.enter("Admin@123").contains("Authentication fail"));
    QVERIFY(user.enter("Secret@99").endsWith("<HUAWEI>"));
}

void TestSimulatorLogin::firstLogin_asksForAPasswordTwice()
{
    ConsoleUser user(fresh(QStringLiteral("--login password --ask-first-password")));
    const QByteArray question("\r\n\r\nPlease configure the login password (8-16)\r\nEnter Password:");
    QCOMPARE(user.enter(""), question);
    QVERIFY(user.enter("short").endsWith(question));
    QCOMPARE(user.enter("Secret@99"), QByteArray("\r\nConfirm Password:"));
    QVERIFY(user.enter("Secret@98").endsWith(question));
    user.enter("Secret@99");
    QVERIFY(user.enter("Secret@99").endsWith("<HUAWEI>"));
    user.enter("quit");
    QVERIFY(user.enter("").endsWith("Password:"));
    QVERIFY(user.enter("Secret@99").endsWith("<HUAWEI>"));
}

void TestSimulatorLogin::insecureConfiguration_isAskedBeforeTheFirstPrompt()
{
    ConsoleUser user(fresh(QStringLiteral("--login password --ask-insecure")));
    user.enter("");
    const QByteArray question = user.enter("Admin@123");
    QVERIFY(question.contains("security risks in the configuration file"));
    QVERIFY(question.endsWith("[Y/N]:"));
    QVERIFY(user.enter("n").endsWith("<HUAWEI>"));
}

void TestSimulatorLogin::questionEnd_canBeChosen()
{
    ConsoleUser user(fresh(QStringLiteral("--login password --ask-insecure --question-end (y/n)[n]:")));
    user.enter("");
    QVERIFY(user.enter("Admin@123").endsWith("Save now? (y/n)[n]:"));
    QVERIFY(user.enter("").endsWith("<HUAWEI>")); // the default in brackets
}

void TestSimulatorLogin::idleTimeout_endsTheSession()
{
    ConsoleUser user(ConsoleUser::atWork());
    QCOMPARE(user.terminal().advance(std::chrono::minutes(9)), QByteArray());
    user.keys("d");
    QCOMPARE(user.terminal().advance(std::chrono::minutes(9)), QByteArray());
    QCOMPARE(user.terminal().advance(std::chrono::minutes(1)), QByteArray(kIdle));
}

void TestSimulatorLogin::quit_endsTheSession()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.enter("system-view");
    QCOMPARE(user.enter("quit"), QByteArray("quit\r\n<HUAWEI>"));
    QCOMPARE(user.enter("quit"), QByteArray("quit\r\n") + kIdle);
}

void TestSimulatorLogin::hua3_login_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("prompt");
    QTest::newRow("newer") << "" << QByteArray("login: ");
    QTest::newRow("older") << "--old-login" << QByteArray("Username:");
}

void TestSimulatorLogin::hua3_login()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArray, prompt);
    MemoryTerminal terminal(fresh(QStringLiteral("--family hua3 ") + arguments));
    QCOMPARE(terminal.settle(),
             QByteArray("\r\n\r\n\r\nLine con0 is available.\r\n\r\n\r\nPress ENTER to get started.\r\n"));
    QCOMPARE(terminal.exchange("\r"), "\r\n\r\n" + prompt);
    QCOMPARE(terminal.exchange("admin\r"), QByteArray("admin\r\nPassword: "));
    const QByteArray welcome = terminal.exchange("Admin@123\r");
    QVERIFY(welcome.contains("* Copyright (c)"));
    QVERIFY(welcome.contains("\r\n%Nov 20 10:11:"));
    QVERIFY(welcome.endsWith(" 2026 H3C SHELL/5/SHELL_LOGIN: Console logged in from con0.\r\n<H3C>"));
}

void TestSimulatorLogin::hua3_newPassword_withoutAQuestion()
{
    ConsoleUser user(fresh(QStringLiteral("--family hua3 --login password --ask-initial-password")));
    user.enter("");
    QVERIFY(user.enter("Admin@123").endsWith("\r\nEnter new password:"));
    QCOMPARE(user.enter("Secret@99"), QByteArray("\r\nRe-enter new password:"));
    QVERIFY(user.enter("Secret@99").endsWith("<H3C>"));
}

void TestSimulatorLogin::hua3_withoutStartupConfiguration_repeatsItsNoticeUntilCtrlC()
{
    const QByteArray notice("\r\nAutomatic configuration is running, press CTRL_C or CTRL_D to break.\r\n");
    MemoryTerminal terminal(fresh(QStringLiteral("--family hua3 --login none --no-startup")));
    QCOMPARE(terminal.advance(std::chrono::seconds(12)), notice + notice + notice);
    QCOMPARE(terminal.exchange("\r\n"), QByteArray());
    QVERIFY(terminal.exchange("\x03").endsWith("Press ENTER to get started.\r\n"));
    QVERIFY(terminal.exchange("\r").endsWith("<H3C>"));
}

void TestSimulatorLogin::start_leavesTheConsoleInTheChosenState_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<QByteArray>("end");
    QTest::newRow("login") << "login" << QByteArray("Username:");
    QTest::newRow("user view") << "user" << QByteArray("<HUAWEI>");
    QTest::newRow("system view") << "system" << QByteArray("\r\n[HUAWEI]");
    QTest::newRow("half-typed command") << "half-typed" << QByteArray("<HUAWEI>display interf");
    QTest::newRow("pager") << "pager" << QByteArray("\r\n  ---- More ----");
    QTest::newRow("question") << "question" << QByteArray("[Y/N]");
    QTest::newRow("booting") << "booting" << QByteArray("\xff\x00\xff\xff\x00", 5);
}

void TestSimulatorLogin::start_leavesTheConsoleInTheChosenState()
{
    QFETCH(QString, start);
    QFETCH(QByteArray, end);
    MemoryTerminal terminal(fresh(QStringLiteral("--start ") + start));
    const QByteArray shown = terminal.settle();
    QVERIFY2(shown.endsWith(end), shown.constData());
}

QTEST_GUILESS_MAIN(TestSimulatorLogin)
#include "tst_simulator_login.moc"
