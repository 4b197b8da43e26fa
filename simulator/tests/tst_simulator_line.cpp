#include "consoleuser.h"

#include <QtTest/QTest>

using namespace simulator;

namespace {

Fault fault(FaultKind kind, const QByteArray &command = {})
{
    Fault made;
    made.kind = kind;
    made.command = command;
    return made;
}

const QByteArray kCommand("display interface brief");

} // namespace

class TestSimulatorLine : public QObject
{
    Q_OBJECT

private slots:
    void fullSpeed_isOnePieceAtOnce();
    void speed_givesTheBytesTheirTime();
    void chunks_areOfRandomSizesAndTheSameText();
    void chunks_ofTheSameSeed_areTheSame();
    void chunks_atALimitedSpeed();

    void cut_afterSoManyBytes();
    void cut_inAReply();
    void cut_atOnce();
    void cut_pluggedInAgain_goesOnWhereItWas();
    void hang_untilThePortIsOpenedAnew();
    void hang_forATime();
    void garbage_standsInTheReply();
    void noise_isFF();
    void half_losesTheRestAndThePrompt();
    void logs_standBetweenLines();
    void nul_padsEachLineOfTheReply();
    void delay_comesBeforeTheReply();
    void prompt_wrongOrMissing();
    void refuse_withATextOfItsOwn();
    void question_decides_data();
    void question_decides();
    void logout_endsTheSession();
    void reboot_restarts();
    void times_data();
    void times();
    void otherCommands_areLeftAlone();
    void line_countsFromTheFaultOn();
    void clearFaults_takesThemBack();
    void faultsInOptions();
};

void TestSimulatorLine::fullSpeed_isOnePieceAtOnce()
{
    ConsoleUser user(withArguments(QStringLiteral("--lines 3000")));
    const Instant before = user.terminal().now();
    user.terminal().type("display current-configuration\r");
    const QByteArray reply = user.terminal().advance(Duration::zero());
    QVERIFY(reply.size() > 100000 && reply.endsWith("<HUAWEI>"));
    QCOMPARE(user.terminal().pieces().size(), 1);
    QVERIFY(user.terminal().now() == before);
}

void TestSimulatorLine::speed_givesTheBytesTheirTime()
{
    ConsoleUser user(withArguments(QStringLiteral("--speed 960")));
    user.terminal().type(kCommand + '\r');
    const QByteArray second = user.terminal().advance(std::chrono::seconds(1));
    QVERIFY2(second.size() > 960 - 16 && second.size() <= 960, QByteArray::number(second.size()).constData());
    for (const QByteArray &piece : user.terminal().pieces())
        QVERIFY(piece.size() <= 16);
    const QByteArray next = user.terminal().advance(std::chrono::seconds(1));
    QVERIFY(qAbs(second.size() + next.size() - 1920) <= 16);
    QVERIFY(user.terminal().settle().endsWith("<HUAWEI>"));
}

void TestSimulatorLine::chunks_areOfRandomSizesAndTheSameText()
{
    ConsoleUser whole(ConsoleUser::atWork());
    ConsoleUser pieces(withArguments(QStringLiteral("--chunks 7")));
    QCOMPARE(pieces.enter(kCommand), whole.enter(kCommand));
    QSet<int> sizes;
    for (const QByteArray &piece : pieces.terminal().pieces())
        sizes.insert(piece.size());
    QCOMPARE(sizes, (QSet<int>{1, 2, 3, 4, 5, 6, 7}));
}

void TestSimulatorLine::chunks_ofTheSameSeed_areTheSame()
{
    const auto pieces = [](const QString &arguments) {
        ConsoleUser user(withArguments(QStringLiteral("--chunks 50 ") + arguments));
        user.enter(kCommand);
        return user.terminal().pieces();
    };
    QCOMPARE(pieces(QStringLiteral("--seed 5")), pieces(QStringLiteral("--seed 5")));
    QVERIFY(pieces(QStringLiteral("--seed 5")) != pieces(QStringLiteral("--seed 6")));
}

void TestSimulatorLine::chunks_atALimitedSpeed()
{
    ConsoleUser user(withArguments(QStringLiteral("--speed 960 --chunks 200")));
    user.terminal().type(kCommand + '\r');
    const QByteArray second = user.terminal().advance(std::chrono::seconds(1));
    QVERIFY(second.size() > 960 - 200 && second.size() <= 960);
    QVERIFY(user.terminal().pieces().size() < 30);
}

void TestSimulatorLine::cut_afterSoManyBytes()
{
    SimulatorOptions options = ConsoleUser::atWork();
    Fault cut = fault(FaultKind::Cut);
    cut.after = 100;
    options.faults.push_back(cut);
    MemoryTerminal terminal(options);
    QByteArray all = terminal.settle();
    QVERIFY(!terminal.console().isCablePulled());
    all += terminal.exchange(kCommand + '\r');
    QCOMPARE(all.size(), 100);
    QVERIFY(terminal.console().isCablePulled());
    QCOMPARE(terminal.exchange("\r\r\r"), QByteArray());
    QVERIFY(!terminal.console().received().contains("\r\r"));
}

void TestSimulatorLine::cut_inAReply()
{
    ConsoleUser user(ConsoleUser::atWork());
    Fault cut = fault(FaultKind::Cut, kCommand);
    cut.after = 50;
    user.console().addFault(cut);
    user.enter("display clock");
    QCOMPARE(user.enter(kCommand).size(), kCommand.size() + 2 + 50);
    QVERIFY(user.console().isCablePulled());
}

void TestSimulatorLine::cut_atOnce()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.console().addFault(fault(FaultKind::Cut));
    QCOMPARE(user.terminal().settle(), QByteArray());
    QVERIFY(user.console().isCablePulled());
}

void TestSimulatorLine::cut_pluggedInAgain_goesOnWhereItWas()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.enter("system-view");
    user.console().addFault(fault(FaultKind::Cut));
    user.terminal().settle();
    user.console().plugIn();
    QVERIFY(!user.console().isCablePulled());
    QCOMPARE(user.terminal().settle(), QByteArray());
    QCOMPARE(user.enter(""), QByteArray("\r\n[HUAWEI]"));
}

void TestSimulatorLine::hang_untilThePortIsOpenedAnew()
{
    ConsoleUser user(ConsoleUser::atWork());
    Fault hang = fault(FaultKind::Hang, kCommand);
    hang.after = 20;
    user.console().addFault(hang);
    QCOMPARE(user.enter(kCommand).size(), kCommand.size() + 2 + 20);
    QCOMPARE(user.enter("display clock"), QByteArray());
    QVERIFY(!user.console().isCablePulled());
    user.console().portReopened();
    QCOMPARE(user.enter(""), QByteArray("\r\n<HUAWEI>"));
}

void TestSimulatorLine::hang_forATime()
{
    ConsoleUser user(ConsoleUser::atWork());
    Fault hang = fault(FaultKind::Hang, kCommand);
    hang.time = std::chrono::seconds(5);
    user.console().addFault(hang);
    QCOMPARE(user.enter(kCommand), kCommand + "\r\n");
    QCOMPARE(user.enter(""), QByteArray());
    user.terminal().advance(std::chrono::seconds(2));
    QCOMPARE(user.enter(""), QByteArray("\r\n<HUAWEI>"));
}

void TestSimulatorLine::garbage_standsInTheReply()
{
    ConsoleUser user(ConsoleUser::atWork());
    const QByteArray plain = user.enter(kCommand);
    Fault garbage = fault(FaultKind::Garbage, kCommand);
    garbage.after = 100;
    garbage.amount = 64;
    user.console().addFault(garbage);
    const QByteArray damaged = user.enter(kCommand);
    const int at = kCommand.size() + 2 + 100;
    QCOMPARE(damaged.size(), plain.size() + 64);
    QCOMPARE(damaged.left(at) + damaged.mid(at + 64), plain);
    QVERIFY(QSet<char>(damaged.begin() + at, damaged.begin() + at + 64).size() > 20);
    QCOMPARE(user.enter(kCommand), plain); // once
}

void TestSimulatorLine::noise_isFF()
{
    ConsoleUser user(ConsoleUser::atWork());
    Fault noise = fault(FaultKind::Noise, "display clock");
    noise.amount = 5;
    user.console().addFault(noise);
    QVERIFY(user.enter("display clock").contains("display clock\r\n\xff\xff\xff\xff\xff"));
}

void TestSimulatorLine::half_losesTheRestAndThePrompt()
{
    ConsoleUser user(ConsoleUser::atWork());
    const QByteArray plain = user.enter(kCommand);
    Fault half = fault(FaultKind::Half, kCommand);
    half.after = 500;
    user.console().addFault(half);
    QCOMPARE(user.enter(kCommand), plain.left(kCommand.size() + 2 + 500));
    QCOMPARE(user.enter(""), QByteArray("\r\n<HUAWEI>"));
}

void TestSimulatorLine::logs_standBetweenLines()
{
    ConsoleUser user(ConsoleUser::atWork());
    const QByteArray plain = user.enter(kCommand);
    Fault logs = fault(FaultKind::Logs, kCommand);
    logs.after = 500;
    logs.amount = 1000;
    user.console().addFault(logs);
    const QByteArray reply = user.enter(kCommand);
    const int begin = reply.indexOf("\r\nNov 20 2026") + 2;
    QCOMPARE(reply.count("Nov 20 2026"), 1000);
    QCOMPARE(reply.left(begin) + reply.right(plain.size() - begin), plain);
    for (const QByteArray &line : reply.split('\n'))
        QVERIFY(line.size() <= 81);
}

void TestSimulatorLine::nul_padsEachLineOfTheReply()
{
    ConsoleUser user(ConsoleUser::atWork());
    QByteArray plain = user.answer("display startup");
    Fault nul = fault(FaultKind::Nul, "display startup");
    nul.amount = 2;
    user.console().addFault(nul);
    QCOMPARE(user.answer("display startup"), plain.replace("\r\n", QByteArray("\0\0\r\n", 4)));
    QVERIFY(!user.answer("display startup").contains('\0'));
}

void TestSimulatorLine::delay_comesBeforeTheReply()
{
    ConsoleUser user(ConsoleUser::atWork());
    Fault delay = fault(FaultKind::Delay, "display clock");
    delay.time = std::chrono::seconds(8);
    user.console().addFault(delay);
    user.terminal().type("display clock\r");
    QCOMPARE(user.terminal().advance(std::chrono::milliseconds(7999)), QByteArray("display clock\r\n"));
    QVERIFY(user.terminal().advance(std::chrono::milliseconds(1)).endsWith("<HUAWEI>"));
}

void TestSimulatorLine::prompt_wrongOrMissing()
{
    ConsoleUser user(ConsoleUser::atWork());
    Fault wrong = fault(FaultKind::WrongPrompt, "display clock");
    wrong.text = "<OTHER>";
    user.console().addFault(wrong);
    QVERIFY(user.enter("display clock").endsWith("UTC\r\n<OTHER>"));
    user.console().addFault(fault(FaultKind::NoPrompt, "display clock"));
    QVERIFY(user.enter("display clock").endsWith("UTC\r\n"));
    QVERIFY(user.enter("display clock").endsWith("UTC\r\n<HUAWEI>"));
}

void TestSimulatorLine::refuse_withATextOfItsOwn()
{
    ConsoleUser user(ConsoleUser::atWork());
    Fault refuse = fault(FaultKind::Refuse, "SYSTEM-view");
    refuse.text = "Error: The system is busy.";
    user.console().addFault(refuse);
    QCOMPARE(user.enter("system-view"), QByteArray("system-view\r\nError: The system is busy.\r\n<HUAWEI>"));
}

void TestSimulatorLine::question_decides_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QByteArray>("prompt");
    QTest::newRow("yes") << QByteArray("y") << QByteArray("[HUAWEI]");
    QTest::newRow("no") << QByteArray("n") << QByteArray("<HUAWEI>");
}

void TestSimulatorLine::question_decides()
{
    QFETCH(QByteArray, answer);
    QFETCH(QByteArray, prompt);
    ConsoleUser user(ConsoleUser::atWork());
    Fault question = fault(FaultKind::Question, "system-view");
    question.text = "Warning: Somebody else is at work. Continue? [Y/N]:";
    user.console().addFault(question);
    QVERIFY(user.enter("system-view").endsWith(question.text));
    QVERIFY(user.enter(answer).endsWith(prompt));
}

void TestSimulatorLine::logout_endsTheSession()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.console().addFault(fault(FaultKind::Logout));
    QVERIFY(user.enter("display clock").endsWith("Please Press ENTER.\r\n"));
}

void TestSimulatorLine::reboot_restarts()
{
    ConsoleUser user(withArguments(QStringLiteral("--hurry 100")));
    user.console().addFault(fault(FaultKind::Reboot, kCommand));
    user.enter(kCommand);
    user.terminal().advance(std::chrono::seconds(2));
    QCOMPARE(user.state().starts, 2);
    QVERIFY(user.enter("").endsWith("Username:"));
}

void TestSimulatorLine::times_data()
{
    QTest::addColumn<int>("times");
    QTest::addColumn<int>("struck");
    QTest::newRow("once") << 1 << 1;
    QTest::newRow("twice") << 2 << 2;
    QTest::newRow("always") << 0 << 4;
}

void TestSimulatorLine::times()
{
    QFETCH(int, times);
    QFETCH(int, struck);
    ConsoleUser user(ConsoleUser::atWork());
    Fault refuse = fault(FaultKind::Refuse, "display");
    refuse.times = times;
    user.console().addFault(refuse);
    int errors = 0;
    for (int i = 0; i < 4; ++i)
        errors += user.answer("display clock").contains("Error:") ? 1 : 0;
    QCOMPARE(errors, struck);
}

void TestSimulatorLine::otherCommands_areLeftAlone()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.console().addFault(fault(FaultKind::Refuse, "display vlan"));
    QVERIFY(!user.answer("display version").contains("Error:"));
    QVERIFY(user.answer("display vlan").contains("Error:"));
}

void TestSimulatorLine::line_countsFromTheFaultOn()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.work({"display clock", "display clock"});
    Fault refuse = fault(FaultKind::Refuse);
    refuse.line = 2;
    user.console().addFault(refuse);
    QVERIFY(!user.answer("display clock").contains("Error:"));
    QCOMPARE(user.answer(""), QByteArray()); // not a command
    QVERIFY(user.answer("display clock").contains("Error:"));
    QVERIFY(!user.answer("display clock").contains("Error:"));
}

void TestSimulatorLine::clearFaults_takesThemBack()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.console().addFault(fault(FaultKind::Refuse));
    Fault cut = fault(FaultKind::Cut);
    cut.after = 5;
    user.console().addFault(cut);
    user.console().clearFaults();
    QVERIFY(user.enter("display clock").endsWith("UTC\r\n<HUAWEI>"));
    QVERIFY(!user.console().isCablePulled());
}

void TestSimulatorLine::faultsInOptions()
{
    ConsoleUser user(withArguments(QStringLiteral("--fault refuse:line=1,text=Error:busy,now --fault cut:after=2000")));
    QCOMPARE(user.answer("display clock"), QByteArray("Error:busy,now\r\n"));
    user.enter(kCommand);
    QVERIFY(user.console().isCablePulled());
}

QTEST_GUILESS_MAIN(TestSimulatorLine)
#include "tst_simulator_line.moc"
