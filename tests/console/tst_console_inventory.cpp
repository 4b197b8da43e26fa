// From the opened port to the filled panel: every kind of login, of start and of manner that a switch may have.
#include "consolebench.h"

#include <QtTest/QtTest>

#include <memory>

class TestConsoleInventory : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void login_tellsEveryStep_data();
    void login_tellsEveryStep();
    void inventory_isComplete_data();
    void inventory_isComplete();
    void wrongPassword_closesThePortAndSaysSo_data();
    void wrongPassword_closesThePortAndSaysSo();
    void credentials_missing_areAskedForOnceASecond();

private:
    std::unique_ptr<QuietLog> _quiet;
};

void TestConsoleInventory::initTestCase()
{
    _quiet = std::make_unique<QuietLog>();
}

void TestConsoleInventory::cleanupTestCase()
{
    _quiet.reset();
}

void TestConsoleInventory::login_tellsEveryStep_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QStringList>("asked"); // the credentials that are sent: "user", "password"

    const QStringList both{QStringLiteral("user"), QStringLiteral("password")};
    const QStringList password{QStringLiteral("password")};
    const auto row = [](Effort effort, const char *name, const char *arguments, const QStringList &asked) {
        if (effort == kEffort)
            QTest::newRow(name) << QString::fromLatin1(arguments) << asked;
    };
    row(Effort::Usual, "user and password", "", both);
    row(Effort::Usual, "password only", "--login password", password);
    row(Effort::Usual, "no login", "--login none", {});
    row(Effort::Usual, "sub-model, user and password", "--family huawei-sub", both);
    row(Effort::Thorough, "sub-model, password only", "--family huawei-sub --login password", password);
    row(Effort::Thorough, "sub-model, no login", "--family huawei-sub --login none", {});
    row(Effort::Usual, "hua3, login: and password", "--family hua3", both);
    row(Effort::Thorough, "hua3, Username: and password", "--family hua3 --old-login", both);
    row(Effort::Usual, "hua3, password only", "--family hua3 --login password", password);
    row(Effort::Thorough, "hua3, no login", "--family hua3 --login none", {});
    row(Effort::Usual, "the initial password is kept", "--ask-initial-password", both);
    row(Effort::Usual, "the first login's password is chosen", "--login password --ask-first-password",
        password + password);
    row(Effort::Thorough, "insecure configuration", "--ask-insecure", both);
    row(Effort::Thorough, "hua3, insecure configuration", "--family hua3 --ask-insecure", both);
}

void TestConsoleInventory::login_tellsEveryStep()
{
    QFETCH(const QString, arguments);
    QFETCH(const QStringList, asked);
    ConsoleBench bench(ConsoleBench::options(arguments));
    QVERIFY(bench.connectPanel());
    QCOMPARE(bench.inventory(), bench.expectedInventory());

    QStringList toasts{QStringLiteral(", 0")};
    QStringList labels{QStringLiteral("connect_cmd")};
    for (const QString &credential : asked) {
        const bool isUser = credential == QLatin1String("user");
        toasts.append(bench.tr(isUser ? "用户名登录中" : "密码登录中") + QStringLiteral(", 0"));
        labels.append(isUser ? QStringLiteral("login_cmd") : QStringLiteral("password_cmd"));
    }
    toasts.append(bench.tr("已连console端口:") + bench->currentCom() + QStringLiteral(", 1"));
    QCOMPARE(bench.record().toasts(), toasts);
    labels.append(bench.tr("接口解析"));
    const bool isHua3 = bench.switchOptions().family == simulator::Family::Hua3;
    if (!isHua3)
        labels.append(bench.tr("光电端口解析"));
    QCOMPARE(bench.record().labels(), labels);

    // The log tells the same story: each block begins and ends, the login and the listing in between.
    QStringList story;
    for (int i = 0; i < labels.size(); ++i) {
        const QString &label = labels.at(i);
        story.append(QStringLiteral("[Info] ") + label + bench.tr("执行中..."));
        if (i == asked.size())
            story.append(bench.tr("登录成功.."));
        if (label == bench.tr("接口解析") && !isHua3)
            story.append(bench.tr("端口状态信息:"));
        story.append(QStringLiteral("[Info] ") + label + bench.tr("执行结束"));
    }
    QStringList told;
    for (const QString &line : bench.record().logs()) {
        if (story.contains(line))
            told.append(line);
    }
    QCOMPARE(told, story);
    QCOMPARE(bench.record().warnings(), QStringList());
    QVERIFY(bench.standingPrompt().startsWith('<'));
}

void TestConsoleInventory::inventory_isComplete_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("warning"); // the only one; empty: none

    const auto row = [](Effort effort, const char *name, const char *arguments, const char *warning = "") {
        if (effort == kEffort)
            QTest::newRow(name) << QString::fromLatin1(arguments) << QString::fromUtf8(warning);
    };
    // Where somebody has left the line
    row(Effort::Usual, "half-typed command", "--login none --start half-typed", "connect_cmd执行失败");
    row(Effort::Usual, "at the pager", "--login none --start pager");
    row(Effort::Usual, "at a question", "--login none --start question", "交换机询问");
    row(Effort::Thorough, "in the system view", "--login none --start system");
    row(Effort::Thorough, "at the user view", "--login none --start user");
    row(Effort::Thorough, "at the login prompt", "--start login");
    row(Effort::Usual, "booting", "--login none --start booting --hurry 100");
    row(Effort::Thorough, "hua3, half-typed command", "--family hua3 --login none --start half-typed");
    row(Effort::Thorough, "hua3, at the pager", "--family hua3 --login none --start pager");
    row(Effort::Thorough, "hua3, at a question", "--family hua3 --login none --start question", "交换机询问");
    row(Effort::Thorough, "hua3, in the system view", "--family hua3 --login none --start system");
    row(Effort::Thorough, "hua3, booting", "--family hua3 --login none --start booting --hurry 100");
    row(Effort::Usual, "hua3, automatic configuration", "--family hua3 --login none --no-startup");

    // How it writes
    row(Effort::Usual, "paging cannot be switched off, 16 columns erased", "--login none --paging forced");
    row(Effort::Thorough, "paging cannot be switched off, 42 columns erased",
        "--login none --paging forced --erase 42 --model large");
    row(Effort::Thorough, "hua3, paging cannot be switched off",
        "--family hua3 --login none --paging forced --erase 42");
    row(Effort::Thorough, "echo redrawn at column 80",
        "--login none --name a-name-so-long-that-commands-of-every-block-are-redrawn-at-the-end-of-the-row");
    row(Effort::Thorough, "CR CR LF", "--login none --crcrlf");
    row(Effort::Thorough, "a prefix before the prompt", "--login none --prompt-prefix HRP_M");
    row(Effort::Thorough, "NULs and bells around the prompt", "--login none --prompt-nul --prompt-bell");
    row(Effort::Thorough, "name of unusual characters", "--login none --name SW-3.2_(east)/1:a@b");
    row(Effort::Thorough, "pieces of random size", "--chunks 7");
    row(Effort::Usual, "all of these manners",
        "--chunks 7 --crcrlf --prompt-prefix HRP_M --prompt-nul --prompt-bell "
        "--name SW-3.2_(east)/1:a@b-so-long-that-commands-of-every-block-are-redrawn-at-column-80");
    row(Effort::Usual, "a log line every now and then, in place of the prompt",
        "--login none --log-every 1s --no-log-reprompt");
    row(Effort::Thorough, "hua3, a log line every now and then", "--family hua3 --login none --log-every 1s");
    row(Effort::Usual, "9600 baud", "--login none --speed 960");

    // What is built in
    row(Effort::Thorough, "48 ports", "--login none --model large");
    row(Effort::Usual, "aggregation switch", "--login none --model aggregation");
    row(Effort::Thorough, "sub-model, aggregation switch", "--family huawei-sub --login none --model aggregation");
    row(Effort::Usual, "hua3, aggregation switch", "--family hua3 --login none --model aggregation");
    row(Effort::Usual, "with 40-gigabit ports", "--login none --model 24+4+2");
    row(Effort::Thorough, "sub-model, with 40-gigabit ports", "--family huawei-sub --login none --model 24+4+2");
    row(Effort::Thorough, "hua3, with 40-gigabit ports", "--family hua3 --login none --model 24+4+2");
    row(Effort::Thorough, "8 of 24 ports optical", "--login none --model mixed");
    row(Effort::Thorough, "no 10-gigabit ports", "--login none --model 8+0");
    row(Effort::Thorough, "sub-interfaces", "--login none --subinterfaces 3");
    row(Effort::Thorough, "speed in the names", "--login none --speed-in-names");
    row(Effort::Thorough, "sub-model, MultiGE", "--family huawei-sub --login none --multige");
    row(Effort::Thorough, "hua3, descriptions in GBK", "--family hua3 --login none --descriptions gbk");
    row(Effort::Thorough, "hua3, descriptions like prompts", "--family hua3 --login none --descriptions ascii");
}

void TestConsoleInventory::inventory_isComplete()
{
    QFETCH(const QString, arguments);
    QFETCH(const QString, warning);
    ConsoleBench bench(ConsoleBench::options(arguments));
    QVERIFY(bench.connectPanel());
    QCOMPARE(bench.inventory(), bench.expectedInventory());
    const QStringList warnings = bench.record().warnings();
    for (const QString &found : warnings)
        QVERIFY2(!warning.isEmpty() && found.startsWith(warning), qUtf8Printable(found));
    QCOMPARE(warnings.isEmpty(), warning.isEmpty());
}

void TestConsoleInventory::wrongPassword_closesThePortAndSaysSo_data()
{
    QTest::addColumn<QString>("arguments");
    const auto row = [](Effort effort, const char *name, const char *arguments) {
        if (effort == kEffort)
            QTest::newRow(name) << QString::fromLatin1(arguments);
    };
    row(Effort::Usual, "Authentication fail, with a NUL", "--failure short");
    row(Effort::Thorough, "Username or password error", "--failure user-or-password");
    row(Effort::Thorough, "The password is invalid", "--failure invalid");
    row(Effort::Thorough, "Authentication fail", "--failure authentication");
    row(Effort::Thorough, "sub-model", "--family huawei-sub --failure user-or-password");
    row(Effort::Usual, "hua3, authentication failed, with a NUL", "--family hua3 --failure short");
    row(Effort::Thorough, "hua3, Login failed", "--family hua3 --failure user-or-password");
    row(Effort::Thorough, "hua3, Invalid password", "--family hua3 --failure invalid");
    row(Effort::Thorough, "hua3, authentication failed", "--family hua3 --failure authentication");
    row(Effort::Usual, "password only", "--login password --failure invalid");
    row(Effort::Thorough, "hua3, password only", "--family hua3 --login password --failure short");
    row(Effort::Usual, "the line locks at once", "--failures 1");
}

void TestConsoleInventory::wrongPassword_closesThePortAndSaysSo()
{
    QFETCH(const QString, arguments);
    ConsoleBench bench(ConsoleBench::options(arguments));
    const bool hasUser = bench.switchOptions().login == simulator::LoginKind::User;
    bench->setPasswordText(QStringLiteral("Wrong@123"));
    bench->deviceCommunicate();
    const QString failed = bench.tr("登录失败,检查用户名或者密码后重新连接") + QStringLiteral(", 0");
    QVERIFY(waitUntil([&] { return bench.record().toasts().contains(failed); }));

    QStringList toasts{QStringLiteral(", 0")};
    if (hasUser)
        toasts.append(bench.tr("用户名登录中") + QStringLiteral(", 0"));
    toasts.append(
        {bench.tr("密码登录中") + QStringLiteral(", 0"), bench.tr("已断开连接") + QStringLiteral(", 0"), failed});
    QCOMPARE(bench.record().toasts(), toasts);
    QVERIFY(waitUntil([&] { return !bench.device().isPortOpen(); }));
    QVERIFY(bench->isQueueIdle());
    QCOMPARE(bench.device().device().received().count("Wrong@123"), 1);
    QVERIFY(!bench.device().device().received().contains("Admin@123"));

    // Corrected, and once more.
    bench->setPasswordText(QString::fromUtf8(bench.switchOptions().password));
    QVERIFY(bench.reconnectPanel());
    QCOMPARE(bench.inventory(), bench.expectedInventory());
}

void TestConsoleInventory::credentials_missing_areAskedForOnceASecond()
{
    ConsoleBench bench(ConsoleBench::options(QString()));
    bench->setUserText(QString());
    bench->setPasswordText(QString());
    const QString askUser = bench.tr("请先设置用户名") + QStringLiteral(", 0");
    const QString askPassword = bench.tr("请先设置密码") + QStringLiteral(", 0");
    bench->deviceCommunicate();
    QVERIFY(waitUntil([&] { return bench.record().toasts().count(askUser) == 2; }));
    bench->setUserText(QString::fromUtf8(bench.switchOptions().user));
    QVERIFY(waitUntil([&] { return bench.record().toasts().contains(askPassword); }));
    bench->setPasswordText(QString::fromUtf8(bench.switchOptions().password));
    QVERIFY(waitUntil([&] { return bench.record().inventories() == 1 && bench->isQueueIdle(); }));
    QCOMPARE(bench.inventory(), bench.expectedInventory());
    QCOMPARE(bench.record().labels().count(QStringLiteral("login_cmd")), 1);
    QCOMPARE(bench.record().labels().count(QStringLiteral("password_cmd")), 1);
    QCOMPARE(bench.record().toasts().count(askPassword), 1);
}

QTEST_GUILESS_MAIN(TestConsoleInventory)
#include "tst_console_inventory.moc"
