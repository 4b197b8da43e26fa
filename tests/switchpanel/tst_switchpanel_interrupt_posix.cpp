// Ctrl-C at every stage, the password typed at a terminal, and the question before clearing.
#include "programrun.h"
#include "terminalrun_posix.h"

#include <simulator/simulatedswitch.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

using namespace simulator;

namespace {

constexpr ushort kColumns = 200;
constexpr char kCtrlC = '\x03';

SimulatorOptions optionsFor(const QString &arguments)
{
    const ParsedOptions parsed = parseSimulatorOptions(arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    if (!parsed.error.isEmpty())
        qFatal("%s", qPrintable(parsed.error));
    return parsed.options;
}

Reaction pressCtrlC(const QByteArray &text)
{
    return {text, [](const Terminal &terminal) { terminal.press(kCtrlC); }};
}

Reaction answer(const QByteArray &text, const QByteArray &keys)
{
    return {text, [keys](const Terminal &terminal) { terminal.type(keys); }};
}

} // namespace

class TestInterrupt : public QObject
{
    Q_OBJECT

private slots:
    void ctrlC_endsEveryStage_data();
    void ctrlC_endsEveryStage();
    void ctrlC_atThePasswordPrompt_restoresTheTerminal_data();
    void ctrlC_atThePasswordPrompt_restoresTheTerminal();
    void terminationAtThePasswordPrompt_restoresTheTerminal();
    void typedCredentials_logIn();
    void typedPassword_isNotEchoed();
    void typingTakesItsTime();
    void emptyPassword_isRefused();
    void withoutTerminal_nothingIsAsked();
    void clear_isAsked_data();
    void clear_isAsked();
    void simulate_runsUntilCtrlC();
    void simulate_isAPortForOthers();
    void simulate_wrongUsage_isTold_data();
    void simulate_wrongUsage_isTold();
};

void TestInterrupt::ctrlC_endsEveryStage_data()
{
    QTest::addColumn<QString>("simulator");
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QByteArray>("stage"); // what stands on the terminal when it is reached

    const QString silent = QStringLiteral("--start booting --boot-time 1000s");
    QTest::newRow("no answer") << silent << QStringList{"connect", "--log"} << QByteArray("connect_cmd in progress");
    QTest::newRow("login") << "--fault hang:after=200,time=10m" << QStringList{"connect"}
                           << QByteArray("Logging in with the user name");
    QTest::newRow("listing") << "--speed 960" << QStringList{"connect"} << QByteArray("Connected to console port");
    QTest::newRow("saving") << "--save-time 60s" << QStringList{"save", "--log"}
                            << QByteArray("Save configuration in progress");
    QTest::newRow("export") << "--speed 960 --lines 2000" << QStringList{"export", "OUT", "--log"}
                            << QByteArray("Export configuration1 in progress");
    QTest::newRow("import") << "--speed 960" << QStringList{"import", "IN", "--log"}
                            << QByteArray("Configuration from file in progress");
}

void TestInterrupt::ctrlC_endsEveryStage()
{
    QFETCH(QString, simulator);
    QFETCH(QStringList, words);
    QFETCH(QByteArray, stage);
    const QTemporaryDir folder;
    QFile in(folder.filePath("in"));
    QVERIFY(in.open(QIODevice::WriteOnly) && in.write(QByteArray("display version\n").repeated(500)) > 0);
    in.close();
    words.replaceInStrings(QRegularExpression("^OUT$"), folder.filePath("out"));
    words.replaceInStrings(QRegularExpression("^IN$"), in.fileName());
    QFile password(folder.filePath("password"));
    QVERIFY(password.open(QIODevice::WriteOnly) && password.write("Admin@123\n") > 0);
    password.close();

    SimulatedSwitch device(optionsFor(simulator));
    const QStringList connection{"--port", device.start(), "--user", "admin", "--password-file", password.fileName()};
    const Terminal terminal(kColumns);
    TerminalProcess process(terminal, words + connection);
    QElapsedTimer sincePress;
    const TerminalRun run = finish(terminal, process, {{stage, [&sincePress](const Terminal &user) {
                                                            user.press(kCtrlC);
                                                            sincePress.start();
                                                        }}});
    QVERIFY2(sincePress.isValid(), run.output.constData());
    QVERIFY2(run.exitStatus == 130, run.output.constData());
    QVERIFY2(sincePress.elapsed() < 5'000, qPrintable(QString::number(sincePress.elapsed())));
    QTRY_VERIFY(!device.isPortOpen());
    QVERIFY(!QFile::exists(folder.filePath("out")));
}

void TestInterrupt::ctrlC_atThePasswordPrompt_restoresTheTerminal_data()
{
    QTest::addColumn<bool>("isTyping");
    QTest::newRow("at once") << false;
    QTest::newRow("half typed") << true;
}

void TestInterrupt::ctrlC_atThePasswordPrompt_restoresTheTerminal()
{
    QFETCH(bool, isTyping);
    SimulatedSwitch device(optionsFor({}));
    const Terminal terminal(kColumns, Terminal::Mode::Lines);
    QVERIFY(terminal.isEchoing());
    TerminalProcess process(terminal, {"connect", "--port", device.start(), "--user", "admin"}, {},
                            TerminalProcess::Input::Terminal);
    bool wasEchoing = true;
    const TerminalRun run = finish(terminal, process, {{"Password: ", [&wasEchoing, isTyping](const Terminal &user) {
                                                            wasEchoing = user.isEchoing();
                                                            user.type(isTyping ? "Adm\x03" : "\x03");
                                                        }}});
    QVERIFY2(run.exitStatus == 130, run.output.constData());
    QVERIFY(!wasEchoing);
    QVERIFY(terminal.isEchoing());
    QVERIFY2(!run.output.contains("Adm"), run.output.constData());
    QTRY_VERIFY(!device.isPortOpen());
}

void TestInterrupt::terminationAtThePasswordPrompt_restoresTheTerminal()
{
    SimulatedSwitch device(optionsFor({}));
    const Terminal terminal(kColumns, Terminal::Mode::Lines);
    TerminalProcess process(terminal, {"connect", "--port", device.start(), "--user", "admin"}, {},
                            TerminalProcess::Input::Terminal);
    bool wasEchoing = true;
    const TerminalRun run = finish(terminal, process, {{"Password: ", [&](const Terminal &user) {
                                                            wasEchoing = user.isEchoing();
                                                            process.terminate();
                                                        }}});
    QVERIFY(!wasEchoing);
    QCOMPARE(process.exitStatus(), QProcess::CrashExit); // by the signal, as ever
    QVERIFY(terminal.isEchoing());
}

void TestInterrupt::typedCredentials_logIn()
{
    SimulatedSwitch device(optionsFor({}));
    const Terminal terminal(kColumns, Terminal::Mode::Lines);
    TerminalProcess process(terminal, {"connect", "--port", device.start()}, {}, TerminalProcess::Input::Terminal);
    const TerminalRun run =
        finish(terminal, process, {answer("User name: ", "admin\n"), answer("Password: ", "Admin@123\n")});
    QVERIFY2(run.exitStatus == 0, run.output.constData());
    QVERIFY(run.output.contains("Down ports  24, range (1-24)"));
}

void TestInterrupt::typedPassword_isNotEchoed()
{
    SimulatedSwitch device(optionsFor({}));
    const Terminal terminal(kColumns, Terminal::Mode::Lines);
    TerminalProcess process(terminal, {"connect", "--port", device.start(), "--user", "admin", "--lang", "zh"}, {},
                            TerminalProcess::Input::Terminal);
    // A slip of the finger and its correction, as the terminal allows them.
    const TerminalRun run = finish(terminal, process,
                                   {answer(QStringLiteral("密码：").toUtf8(), "Admin@124\x7f"
                                                                              "3\n")});
    QVERIFY2(run.exitStatus == 0, run.output.constData());
    QVERIFY2(!run.output.contains("Admin@"), run.output.constData());
    QVERIFY(terminal.isEchoing());
}

void TestInterrupt::typingTakesItsTime()
{
    constexpr int kThinkingMsecs = 4'000;
    SimulatedSwitch device(optionsFor({}));
    const Terminal terminal(kColumns, Terminal::Mode::Lines);
    TerminalProcess process(terminal, {"connect", "--port", device.start(), "--user", "admin", "--timeout", "4"}, {},
                            TerminalProcess::Input::Terminal);
    const TerminalRun run = finish(terminal, process, {{"Password: ", [](const Terminal &user) {
                                                            QTest::qSleep(kThinkingMsecs);
                                                            user.type("Admin@123\n");
                                                        }}});
    QVERIFY2(run.exitStatus == 0, run.output.constData());
}

void TestInterrupt::emptyPassword_isRefused()
{
    SimulatedSwitch device(optionsFor({}));
    const Terminal terminal(kColumns, Terminal::Mode::Lines);
    TerminalProcess process(terminal, {"connect", "--port", device.start(), "--user", "admin"}, {},
                            TerminalProcess::Input::Terminal);
    const TerminalRun run = finish(terminal, process, {answer("Password: ", "\n")});
    QCOMPARE(run.exitStatus, 2);
    QVERIFY2(run.output.contains("the switch asks for a password: name a --password-file, or type it at a terminal"),
             run.output.constData());
}

void TestInterrupt::withoutTerminal_nothingIsAsked()
{
    SimulatedSwitch device(optionsFor({}));
    const ProgramRun run = runSwitchpanel({"connect", "--port", device.start(), "--user", "admin", "--quiet"});
    QCOMPARE(run.exitStatus, 2);
    QCOMPARE(run.errors, QStringLiteral("switchpanel: the switch asks for a password: name a --password-file, or type "
                                        "it at a terminal\n"));
}

void TestInterrupt::clear_isAsked_data()
{
    QTest::addColumn<QByteArray>("keys");
    QTest::addColumn<int>("exitStatus");
    QTest::addColumn<int>("starts");

    QTest::newRow("yes") << QByteArray("yes\n") << 0 << 2;
    QTest::newRow("no") << QByteArray("n\n") << 2 << 1;
    QTest::newRow("nothing") << QByteArray("\n") << 2 << 1;
    QTest::newRow("something else") << QByteArray("maybe\n") << 2 << 1;
    QTest::newRow("end of the input") << QByteArray("\x04") << 2 << 1;
    QTest::newRow("Ctrl-C") << QByteArray("\x03") << 130 << 1;
}

void TestInterrupt::clear_isAsked()
{
    QFETCH(QByteArray, keys);
    QFETCH(int, starts);
    SimulatedSwitch device(optionsFor("--hurry 100 --login none"));
    const Terminal terminal(kColumns, Terminal::Mode::Lines);
    TerminalProcess process(terminal, {"clear", "--port", device.start()}, {}, TerminalProcess::Input::Terminal);
    const TerminalRun run = finish(terminal, process, {answer("Continue? [y/N] ", keys)});
    QTEST(run.exitStatus, "exitStatus");
    QTRY_COMPARE_WITH_TIMEOUT(device.device().state().starts, starts, 10'000);
    if (starts == 1)
        QVERIFY2(run.output.contains("nothing was erased"), run.output.constData());
}

void TestInterrupt::simulate_runsUntilCtrlC()
{
    const Terminal terminal(kColumns);
    TerminalProcess process(terminal, {"simulate", "--family", "hua3"});
    const TerminalRun run = finish(terminal, process, {pressCtrlC("\n")});
    QCOMPARE(run.exitStatus, 0);
    QVERIFY2(QRegularExpression("^/dev/\\S+\n$").match(run.output).hasMatch(), run.output.constData());
    QVERIFY(!QFile::exists(QString::fromLocal8Bit(run.output.trimmed())));
}

void TestInterrupt::simulate_isAPortForOthers()
{
    QProcess simulator;
    simulator.start(switchpanelProgram(), {"simulate", "--family=huawei-sub", "--login", "none", "--board", "S1"},
                    QIODevice::ReadOnly);
    QVERIFY(simulator.waitForReadyRead());
    const QString path = QString::fromLocal8Bit(simulator.readLine()).trimmed();
    const ProgramRun run = runSwitchpanel({"connect", "--port", path});
    QVERIFY2(run.exitStatus == 0, qPrintable(run.errors));
    QVERIFY(run.printed(QStringLiteral("Board type  S1")));
    QVERIFY(run.printed(QStringLiteral("Profile     huawei-sub")));
    QCOMPARE(simulator.state(), QProcess::Running);
    simulator.terminate();
    QVERIFY(simulator.waitForFinished());
}

void TestInterrupt::simulate_wrongUsage_isTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("reason");

    QTest::newRow("family") << QStringList{"--family", "cisco"} << "cisco";
    QTest::newRow("fault") << QStringList{"--fault", "earthquake"} << "earthquake";
    QTest::newRow("unknown option") << QStringList{"--fast"} << "unknown option: --fast";
    QTest::newRow("operand") << QStringList{"huawei"} << "simulate does not know what to do with 'huawei'";
    QTest::newRow("missing value") << QStringList{"--speed"} << "--speed";
}

void TestInterrupt::simulate_wrongUsage_isTold()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    const ProgramRun run = runSwitchpanel(QStringList("simulate") + arguments);
    QCOMPARE(run.exitStatus, 2);
    QVERIFY2(run.errors.section('\n', 0, 0).contains(reason), qPrintable(run.errors));
    QVERIFY(run.errors.contains("try 'switchpanel simulate --help'"));
    QCOMPARE(run.output, QString());
}

QTEST_GUILESS_MAIN(TestInterrupt)

#include "tst_switchpanel_interrupt_posix.moc"
