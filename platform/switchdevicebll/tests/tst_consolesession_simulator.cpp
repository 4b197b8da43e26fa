#include "commandexpansion.h"
#include "devicevalues.h"
#include "switchbench.h"

#include <QtTest/QTest>

using namespace ovra::bll;
using simulator::Family;
using simulator::Fault;
using simulator::FaultKind;
using simulator::SimulatorOptions;

namespace {

const QString kHuawei = QStringLiteral("Huawei.xml");
const QString kSub = QStringLiteral("Huawei_sub.xml");
const QString kHua3 = QStringLiteral("Hua3.xml");

Family familyOf(const QString &file)
{
    return file == kHua3 ? Family::Hua3 : file == kSub ? Family::HuaweiSub : Family::Huawei;
}

SimulatorOptions optionsFor(const QString &file, const QString &arguments)
{
    SimulatorOptions defaults;
    defaults.family = familyOf(file);
    const auto parsed =
        simulator::parseSimulatorOptions(arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts), defaults);
    if (!parsed.error.isEmpty())
        qFatal("%s", qPrintable(parsed.error));
    return parsed.options;
}

// As a view model makes a block: CR LF behind everything but the page key.
QByteArray blockOf(const QString &file, const QString &getter)
{
    const auto description = shippedDescription(file);
    DeviceValues values;
    QByteArray block;
    for (const QString &command : expand(description->blocks.at(getter), *description, values, {}).commands)
        block += command.toUtf8() + (command.contains(QLatin1String("space")) ? "" : "\r\n");
    return block;
}

QByteArray inventoryBlock(const QString &file)
{
    return blockOf(file, QStringLiteral("getPortStatusCommands"));
}

QByteArrayList portLines(const QByteArray &reply)
{
    QByteArrayList ports;
    for (const QByteArray &line : reply.split('\n')) {
        if (line.contains("GE") || line.contains("GigabitEthernet"))
            ports << line;
    }
    return ports;
}

Fault faultOf(FaultKind kind, const QByteArray &command, int after = 0, int amount = 0)
{
    Fault fault;
    fault.kind = kind;
    fault.command = command;
    fault.after = after;
    fault.amount = amount;
    return fault;
}

} // namespace

class TestConsoleSessionSimulator : public QObject
{
    Q_OBJECT

private slots:
    void inventory_ofEveryFamily_isWhole_data();
    void inventory_ofEveryFamily_isWhole();
    void inventory_withoutDescription_isWhole();
    void login_wrongPassword_isHandedUpAlone_data();
    void login_wrongPassword_isHandedUpAlone();
    void login_locked_isHandedUpAndTheLineUsableLater();
    void earlierUser_isLeftBehind_data();
    void earlierUser_isLeftBehind();
    void fault_oneReplyPerBlock_andTheNextOneIsWhole_data();
    void fault_oneReplyPerBlock_andTheNextOneIsWhole();
    void reboot_bootTextBelongsToNoReply_data();
    void reboot_bootTextBelongsToNoReply();
    void reboot_waitingBlock_isTypedWhenTheSwitchIsUp();
    void connectedWhileBooting_laterTheLoginWorks();
    void restartAfterRefusal_isNotTyped();
    void save_isConfirmed_data();
    void save_isConfirmed();
    void ownPaging_endsAtThePagerAndAtThePrompt();
    void timeout_nextBlockLogsInAgain();
};

void TestConsoleSessionSimulator::inventory_ofEveryFamily_isWhole_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("arguments");
    for (const QString &file : {kHuawei, kSub, kHua3}) {
        const auto add = [&file](const char *arguments) {
            QTest::addRow("%s %s", qPrintable(file), arguments) << file << QString::fromLatin1(arguments);
        };
        add("");
        add("--paging forced");
        add("--paging forced --erase 42");
        add("--speed 960");
        add("--speed 960 --paging forced");
        add("--chunks 7");
        add("--chunks 1 --paging forced");
        add("--log-every 700ms");
        add("--log-every 900ms --no-log-reprompt --speed 960");
        add("--crcrlf --prompt-nul --prompt-bell");
        add("--login none");
        add("--login password");
        add("--ask-insecure");
        add("--no-startup");
        add("--start login");
        add("--name sw-1.core/a:b(2)");
    }
    QTest::newRow("question before the first prompt") << kHuawei << QStringLiteral("--ask-initial-password");
    QTest::newRow("first login") << kHuawei << QStringLiteral("--ask-first-password");
}

void TestConsoleSessionSimulator::inventory_ofEveryFamily_isWhole()
{
    QFETCH(QString, file);
    QFETCH(QString, arguments);
    SwitchBench person(optionsFor(file, arguments), file);
    const QByteArray login = person.logIn();
    QVERIFY2(login.endsWith('>') || login.endsWith(">\a"), login.constData());
    QVERIFY2(!login.contains(']'), login.constData()); // of a question or a log line: it would pass for a login

    const QByteArray reply = person.replyTo(inventoryBlock(file));
    QVERIFY2(reply.contains("display interface brief"), reply.constData());
    QVERIFY2(portLines(reply).size() >= 28, reply.constData());
    QVERIFY2(!reply.contains("More"), reply.constData());
    QVERIFY2(!reply.contains('\x1b'), reply.constData());
    QVERIFY2(!reply.contains("\r\r"), reply.constData());
    QVERIFY2(!reply.contains('\0'), reply.constData());
    QCOMPARE(person.bench.replies.count({}), 0);
}

void TestConsoleSessionSimulator::inventory_withoutDescription_isWhole()
{
    SwitchBench person(optionsFor(kHuawei, QStringLiteral("--paging forced")));
    QVERIFY(person.logIn().endsWith("<HUAWEI>"));
    const QByteArray reply = person.replyTo(inventoryBlock(kHuawei));
    QVERIFY2(portLines(reply).size() >= 28, reply.constData());
    QVERIFY2(!reply.contains("More"), reply.constData());
}

void TestConsoleSessionSimulator::login_wrongPassword_isHandedUpAlone_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("failure");
    QTest::addColumn<QByteArray>("text");
    for (const char *failure : {"short", "user-or-password", "invalid", "authentication"}) {
        const QByteArray ours = failure == QByteArray("invalid") ? "The password is invalid" : "Authentication fail";
        QTest::addRow("Huawei, %s", failure) << kHuawei << QString::fromLatin1(failure) << ours;
        QTest::addRow("Hua3, %s", failure)
            << kHua3 << QString::fromLatin1(failure)
            << QByteArray(failure == QByteArray("invalid") ? "Invalid password" : "authentication failed");
    }
}

void TestConsoleSessionSimulator::login_wrongPassword_isHandedUpAlone()
{
    QFETCH(QString, file);
    QFETCH(QString, failure);
    QFETCH(QByteArray, text);
    SwitchBench person(optionsFor(file, QStringLiteral("--failure ") + failure), file);
    person.replyTo("\r\n");
    person.replyTo("admin\r\n");
    const QByteArray reply = person.replyTo("wrong\r\n");
    QVERIFY2(reply.contains(text), reply.constData());
    for (const char *prompt : {"Username:", "Login", "Password:", ">", "]"})
        QVERIFY2(!reply.contains(prompt), reply.constData());
    // And the right one afterwards.
    QVERIFY(person.logIn().endsWith('>'));
}

void TestConsoleSessionSimulator::login_locked_isHandedUpAndTheLineUsableLater()
{
    SwitchBench person(optionsFor(kHuawei, QStringLiteral("--failures 1 --lock silence")), kHuawei);
    person.replyTo("\r\n");
    person.replyTo("admin\r\n");
    QVERIFY(person.replyTo("wrong\r\n").contains("Authentication fail"));
    QCOMPARE(person.replyTo("\r\n"), QByteArray());
    QCOMPARE(person.replyTo("\r\n"), QByteArray("\r\n"));
    QCOMPARE(person.bench.warnings.size(), 1);
    person.run(std::chrono::minutes(6));
    QVERIFY(person.logIn().endsWith("<HUAWEI>"));
}

void TestConsoleSessionSimulator::earlierUser_isLeftBehind_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("start");
    for (const QString &file : {kHuawei, kSub, kHua3}) {
        for (const char *start : {"idle", "login", "user", "system", "half-typed", "pager", "question"})
            QTest::addRow("%s %s", qPrintable(file), start) << file << QString::fromLatin1(start);
    }
}

void TestConsoleSessionSimulator::earlierUser_isLeftBehind()
{
    QFETCH(QString, file);
    QFETCH(QString, start);
    SwitchBench person(optionsFor(file, QStringLiteral("--start ") + start), file);
    const QByteArray reply = person.logIn();
    QVERIFY2(reply.endsWith('>'), reply.constData());
    QVERIFY2(!reply.contains(']'), reply.constData());
    QCOMPARE(portLines(person.replyTo(inventoryBlock(file))).size() >= 28, true);
}

void TestConsoleSessionSimulator::fault_oneReplyPerBlock_andTheNextOneIsWhole_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("after");
    QTest::addColumn<int>("amount");
    QTest::addColumn<bool>("isWhole"); // the reply, in spite of the fault
    const auto add = [](const char *tag, FaultKind kind, int after, int amount, bool isWhole) {
        QTest::newRow(tag) << static_cast<int>(kind) << after << amount << isWhole;
    };
    add("hang before the reply", FaultKind::Hang, 0, 0, false);
    add("hang in the reply", FaultKind::Hang, 900, 0, false);
    add("half a reply", FaultKind::Half, 900, 0, false);
    add("half a reply, at once", FaultKind::Half, 0, 0, false);
    add("garbage", FaultKind::Garbage, 600, 300, false);
    add("much garbage", FaultKind::Garbage, 600, 100000, false);
    add("noise", FaultKind::Noise, 600, 50, false);
    add("log lines", FaultKind::Logs, 600, 5, true);
    add("NULs", FaultKind::Nul, 0, 3, true);
    add("delay", FaultKind::Delay, 0, 0, true);
    add("no prompt", FaultKind::NoPrompt, 0, 0, true);
    add("logout", FaultKind::Logout, 0, 0, false);
    add("reboot", FaultKind::Reboot, 0, 0, false);
}

void TestConsoleSessionSimulator::fault_oneReplyPerBlock_andTheNextOneIsWhole()
{
    QFETCH(int, kind);
    QFETCH(int, after);
    QFETCH(int, amount);
    QFETCH(bool, isWhole);
    SwitchBench person(optionsFor(kHuawei, {}), kHuawei);
    person.logIn();
    Fault fault = faultOf(static_cast<FaultKind>(kind), "display interface brief", after, amount);
    fault.time = std::chrono::seconds(7);
    person.terminal.console().addFault(fault);
    const int before = person.bench.replies.size();
    const QByteArray reply = person.replyTo(inventoryBlock(kHuawei));
    QVERIFY(reply != "no reply");
    if (isWhole)
        QVERIFY2(portLines(reply).size() >= 28, reply.constData());
    person.run(std::chrono::minutes(10)); // what was hung up goes on, what restarted is up again
    QCOMPARE(person.bench.replies.size(), before + 1);

    person.bench.session.connected();
    person.terminal.console().portReopened();
    QVERIFY(person.logIn().endsWith("<HUAWEI>"));
    QVERIFY(portLines(person.replyTo(inventoryBlock(kHuawei))).size() >= 28);
}

void TestConsoleSessionSimulator::reboot_bootTextBelongsToNoReply_data()
{
    QTest::addColumn<QString>("file");
    for (const QString &file : {kHuawei, kSub, kHua3})
        QTest::newRow(qPrintable(file)) << file;
}

void TestConsoleSessionSimulator::reboot_bootTextBelongsToNoReply()
{
    QFETCH(QString, file);
    SwitchBench person(optionsFor(file, {}), file);
    person.logIn();
    const QByteArray cleared = person.replyTo(blockOf(file, QStringLiteral("getClearLinkAggregationCommands")));
    QVERIFY2(cleared.contains("reboot"), cleared.constData());
    QVERIFY(!person.bench.session.isLoggedIn());
    QCOMPARE(person.terminal.console().state().starts, 1);

    // While the switch boots nothing is typed.
    person.bench.sent.clear();
    QCOMPARE(person.replyTo("display vlan\r\n"), QByteArray());
    QCOMPARE(person.replyTo("display vlan\r\n"), QByteArray("\r\n"));
    QCOMPARE(person.bench.sent, QByteArray());
    person.run(std::chrono::minutes(3));
    QCOMPARE(person.terminal.console().state().starts, 2);

    // A command is no user name.
    const QByteArray reply = person.replyTo("display vlan\r\ndisplay version\r\n");
    QVERIFY2(reply.endsWith("Username:") || reply.endsWith("Login: "), reply.constData());
    for (const char *text : {"BIOS", "BOOT", "Press", "Decompressing", "reboot"})
        QVERIFY2(!reply.contains(text), reply.constData());
    QVERIFY(!person.bench.sent.contains("display"));
    QVERIFY(person.logIn().endsWith('>'));
}

// A block that is handed over shortly before the end of the start-up reaches the login.
void TestConsoleSessionSimulator::reboot_waitingBlock_isTypedWhenTheSwitchIsUp()
{
    SwitchBench person(optionsFor(kHuawei, QStringLiteral("--boot-time 15s")), kHuawei);
    person.logIn();
    person.replyTo("reboot\r\n");
    person.run(std::chrono::seconds(8));
    person.bench.sent.clear();
    const QByteArray reply = person.replyTo("\r\n");
    QVERIFY2(reply.endsWith("Username:"), reply.constData());
    QVERIFY2(!reply.contains("Press"), reply.constData());
    QCOMPARE(person.bench.sent, QByteArray("\r\n"));
}

void TestConsoleSessionSimulator::connectedWhileBooting_laterTheLoginWorks()
{
    SwitchBench person(optionsFor(kHuawei, QStringLiteral("--start booting")), kHuawei);
    QCOMPARE(person.replyTo("\r\n"), QByteArray());
    person.run(std::chrono::minutes(3));
    QVERIFY(person.logIn().endsWith("<HUAWEI>"));
}

void TestConsoleSessionSimulator::restartAfterRefusal_isNotTyped()
{
    SwitchBench person(optionsFor(kHuawei, {}), kHuawei);
    person.logIn();
    Fault refusal = faultOf(FaultKind::Refuse, "reset saved-configuration");
    person.terminal.console().addFault(refusal);
    const QByteArray reply = person.replyTo(blockOf(kHuawei, QStringLiteral("getClearLinkAggregationCommands")));
    QVERIFY2(reply.endsWith("<HUAWEI>"), reply.constData());
    QVERIFY(!person.terminal.console().commands().contains("reboot"));
    QCOMPARE(person.bench.warnings.size(), 2);
    QVERIFY2(person.bench.warnings.at(0).contains(QLatin1String("reset saved-configuration")),
             qPrintable(person.bench.warnings.at(0)));
    QVERIFY2(person.bench.warnings.at(1).endsWith(QLatin1String("|reboot")), qPrintable(person.bench.warnings.at(1)));
}

void TestConsoleSessionSimulator::save_isConfirmed_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("arguments");
    for (const QString &file : {kHuawei, kSub, kHua3}) {
        for (const char *end : {"", "--question-end [Y/N]", "--question-end [y/n]:", "--question-end (y/n)[n]:"})
            QTest::addRow("%s %s", qPrintable(file), end) << file << QString::fromLatin1(end);
    }
}

void TestConsoleSessionSimulator::save_isConfirmed()
{
    QFETCH(QString, file);
    QFETCH(QString, arguments);
    SwitchBench person(optionsFor(file, arguments), file);
    person.logIn();
    const QByteArray reply = person.replyTo(blockOf(file, QStringLiteral("getSaveCommands")));
    QVERIFY2(reply.contains("successfully"), reply.constData());
    QVERIFY2(reply.endsWith('>'), reply.constData());
    QVERIFY(person.terminal.console().state().saved.has_value());
    QCOMPARE(person.bench.warnings, QStringList());
}

// The caller turns the pages itself: four blanks and Enter under a label of its own.
void TestConsoleSessionSimulator::ownPaging_endsAtThePagerAndAtThePrompt()
{
    SwitchBench person(optionsFor(kHuawei, QStringLiteral("--lines 300")), kHuawei);
    person.logIn();
    QByteArray all = person.replyTo("display current-configuration\r\n");
    QVERIFY2(all.endsWith("  ---- More ----"), all.constData());
    all.chop(16);
    int blocks = 0;
    for (QByteArray reply; !reply.contains('<') && blocks < 30; ++blocks) {
        reply = person.replyTo("    \r\n");
        QVERIFY2(!reply.contains('\x1b'), reply.constData());
        all += reply.endsWith("  ---- More ----") ? reply.left(reply.size() - 16) : reply;
    }
    QVERIFY(blocks > 2);
    QVERIFY2(all.contains(person.terminal.console().configurationText()), all.constData());
    QVERIFY(all.endsWith("<HUAWEI>"));
}

void TestConsoleSessionSimulator::timeout_nextBlockLogsInAgain()
{
    SwitchBench person(optionsFor(kHuawei, {}), kHuawei);
    person.logIn();
    person.run(std::chrono::minutes(11)); // the switch has ended the login
    const QByteArray reply = person.replyTo(inventoryBlock(kHuawei));
    QVERIFY2(reply.endsWith("Username:"), reply.constData());
    QVERIFY(!person.terminal.console().commands().contains("display interface brief"));
    QVERIFY(person.logIn().endsWith("<HUAWEI>"));
    QVERIFY(portLines(person.replyTo(inventoryBlock(kHuawei))).size() >= 28);
}

QTEST_GUILESS_MAIN(TestConsoleSessionSimulator)
#include "tst_consolesession_simulator.moc"
