#include "consoleuser.h"

#include <QtTest/QTest>

using namespace simulator;

namespace {

constexpr std::chrono::milliseconds kSoon{100};

SimulatorOptions logging(const QString &arguments = {})
{
    SimulatorOptions options = ConsoleUser::atWork();
    options.logs = true;
    return withArguments(arguments, options);
}

} // namespace

class TestSimulatorLogs : public QObject
{
    Q_OBJECT

private slots:
    void shutdown_isLoggedBehindThePromptAndWrapped();
    void neighbour_isLogged_data();
    void neighbour_isLogged();
    void halfTypedCommand_isWrittenAgain();
    void withoutReprompt_thePromptIsSwallowed();
    void insideASlowReply_theLineStandsBetweenLines();
    void atAPager_logsWaitForThePrompt();
    void undoTerminalMonitor_silencesThem();
    void undoInfoCenter_silencesThem();
    void everySoOften();
};

void TestSimulatorLogs::shutdown_isLoggedBehindThePromptAndWrapped()
{
    ConsoleUser user(logging());
    user.work({"system-view", "interface g0/0/1"});
    const QByteArray all = user.enter("shutdown");
    const QByteArray prompt("[HUAWEI-GigabitEthernet0/0/1]");
    QVERIFY(all.startsWith("shutdown\r\n" + prompt + "Nov 20 2026 10:11:"));
    QVERIFY(all.endsWith("\r\n" + prompt));
    const QByteArrayList lines = all.split('\n');
    QCOMPARE(lines.at(1).size(), 81); // 80 columns and the CR
    const QByteArray log = QByteArray(lines.mid(1, 2).join()).replace('\r', "").mid(prompt.size());
    QVERIFY2(log.endsWith(
                 "+00:00 HUAWEI %%01IFPDT/4/IF_STATE(l)[0]:Interface GigabitEthernet0/0/1 has turned into DOWN state."),
             log.constData());
}

void TestSimulatorLogs::neighbour_isLogged_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("down");
    QTest::addColumn<QByteArray>("up");
    QTest::newRow("huawei") << "" << QByteArray("Interface GigabitEthernet0/0/6 has turned into DOWN state.")
                            << QByteArray("Interface GigabitEthernet0/0/6 has turned into UP state.");
    QTest::newRow("hua3") << "--family hua3"
                          << QByteArray(
                                 "%Nov 20 10:11:12:040 2026 H3C IFNET/3/PHY_UPDOWN: Physical state on the interface "
                                 "GigabitEthernet1/0/6 changed to down.")
                          << QByteArray(
                                 "PHY_UPDOWN: Physical state on the interface GigabitEthernet1/0/6 changed to up.");
}

void TestSimulatorLogs::neighbour_isLogged()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArray, down);
    QFETCH(QByteArray, up);
    MemoryTerminal terminal(logging(arguments));
    terminal.advance(Duration::zero());
    QVERIFY(terminal.console().setNeighbour(5, false, terminal.now()));
    QByteArray log = terminal.advance(kSoon);
    QVERIFY2(log.replace("\r\n", "").contains(down), log.constData());
    terminal.console().setNeighbour(5, true, terminal.now());
    log = terminal.advance(kSoon);
    QVERIFY2(log.replace("\r\n", "").contains(up), log.constData());
}

void TestSimulatorLogs::halfTypedCommand_isWrittenAgain()
{
    ConsoleUser user(logging());
    user.keys("display vers");
    user.console().setNeighbour(0, false, user.terminal().now());
    const QByteArray log = user.terminal().advance(kSoon);
    QVERIFY(log.startsWith("Nov 20 2026"));
    QVERIFY2(log.endsWith("DOWN state.\r\n<HUAWEI>display vers"), log.constData());
    QVERIFY(user.enter("ion").contains("Versatile Routing Platform"));
}

void TestSimulatorLogs::withoutReprompt_thePromptIsSwallowed()
{
    ConsoleUser user(logging(QStringLiteral("--no-log-reprompt")));
    user.console().setNeighbour(0, false, user.terminal().now());
    QVERIFY(user.terminal().advance(kSoon).endsWith("DOWN state.\r\n"));
    QCOMPARE(user.enter(""), QByteArray("\r\n<HUAWEI>"));
}

void TestSimulatorLogs::insideASlowReply_theLineStandsBetweenLines()
{
    ConsoleUser user(logging(QStringLiteral("--speed 960")));
    const QByteArray plain = user.enter("display interface brief");
    user.terminal().type("display interface brief\r");
    user.terminal().advance(std::chrono::milliseconds(500));
    user.console().setNeighbour(1, true, user.terminal().now());
    const QByteArray rest = user.terminal().settle();
    const int log = rest.indexOf("\r\nNov 20 2026");
    QVERIFY2(log >= 0, rest.constData());
    const int end = rest.indexOf("UP state.\r\n", log) + 11;
    QVERIFY(end > log + 11);
    QVERIFY(plain.endsWith(rest.left(log + 2) + rest.mid(end)));
}

void TestSimulatorLogs::atAPager_logsWaitForThePrompt()
{
    SimulatorOptions options = logging();
    options.paging = Paging::Normal;
    ConsoleUser user(options);
    user.enter("display interface brief");
    user.console().setNeighbour(0, false, user.terminal().now());
    QCOMPARE(user.terminal().advance(kSoon), QByteArray());
    const QByteArray rest = user.keys("\x03");
    QVERIFY2(rest.contains("Nov 20 2026") && rest.endsWith("DOWN state.\r\n<HUAWEI>"), rest.constData());
}

void TestSimulatorLogs::undoTerminalMonitor_silencesThem()
{
    ConsoleUser user(logging());
    QCOMPARE(user.answer("undo terminal monitor"), QByteArray("Info: Current terminal monitor is off.\r\n"));
    user.console().setNeighbour(0, false, user.terminal().now());
    QCOMPARE(user.terminal().advance(kSoon), QByteArray());
    user.enter("terminal monitor");
    user.console().setNeighbour(0, true, user.terminal().now());
    QVERIFY(user.terminal().advance(kSoon).contains("Nov 20 2026"));
}

void TestSimulatorLogs::undoInfoCenter_silencesThem()
{
    ConsoleUser user(logging());
    user.work({"system-view", "undo info-center enable"});
    user.console().setNeighbour(0, false, user.terminal().now());
    QCOMPARE(user.terminal().advance(kSoon), QByteArray());
    QVERIFY(user.console().configurationText().contains("\r\nundo info-center enable\r\n"));
}

void TestSimulatorLogs::everySoOften()
{
    ConsoleUser user(logging(QStringLiteral("--log-every 10s")));
    const QByteArray logs = user.terminal().advance(std::chrono::seconds(60));
    QCOMPARE(logs.count("Nov 20 2026"), 6);
    QVERIFY(logs.endsWith("\r\n<HUAWEI>"));
}

QTEST_GUILESS_MAIN(TestSimulatorLogs)
#include "tst_simulator_logs.moc"
