#include <simulator/simulatoroptions.h>

#include <QtTest/QTest>

using namespace simulator;

namespace {

ParsedOptions parse(const QStringList &arguments)
{
    return parseSimulatorOptions(arguments);
}

} // namespace

class TestSimulatorOptions : public QObject
{
    Q_OBJECT

private slots:
    void nothing_isTheDefault();
    void values_areTaken();
    void models_data();
    void models();
    void times_data();
    void times();
    void faults();
    void defaults_areBuiltUpon();
    void errors_nameTheArgument_data();
    void errors_nameTheArgument();
    void help_namesEveryArgument();
};

void TestSimulatorOptions::nothing_isTheDefault()
{
    const ParsedOptions parsed = parse({});
    QVERIFY(parsed.error.isEmpty());
    QVERIFY(parsed.options.family == Family::Huawei);
    QCOMPARE(parsed.options.model.gigabit, 24);
    QCOMPARE(parsed.options.model.tenGigabit, 4);
    QVERIFY(parsed.options.login == LoginKind::User);
    QCOMPARE(parsed.options.bytesPerSecond, 0);
    QVERIFY(parsed.options.faults.empty());
}

void TestSimulatorOptions::values_areTaken()
{
    const ParsedOptions parsed = parse({"--family",
                                        "hua3",
                                        "--login=password",
                                        "--speed",
                                        "960",
                                        "--chunks=16",
                                        "--seed",
                                        "77",
                                        "--paging",
                                        "forced",
                                        "--erase",
                                        "42",
                                        "--name=a=b",
                                        "--two-stage",
                                        "--no-logs",
                                        "--copper",
                                        "3",
                                        "--descriptions",
                                        "gbk",
                                        "--prompt-prefix",
                                        "(M)"});
    QCOMPARE(parsed.error, QString());
    const SimulatorOptions &options = parsed.options;
    QVERIFY(options.family == Family::Hua3);
    QVERIFY(options.login == LoginKind::Password);
    QCOMPARE(options.bytesPerSecond, 960);
    QCOMPARE(options.largestChunk, 16);
    QCOMPARE(options.seed, 77U);
    QVERIFY(options.paging == Paging::Forced);
    QCOMPARE(options.eraseColumns, 42);
    QCOMPARE(options.name, QByteArray("a=b"));
    QVERIFY(options.twoStage);
    QVERIFY(!options.logs);
    QCOMPARE(options.model.copper, 3);
    QVERIFY(options.descriptions == Descriptions::Gbk);
    QCOMPARE(options.promptPrefix, QByteArray("(M)"));
}

void TestSimulatorOptions::models_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<QList<int>>("ports"); // gigabit, copper, 10-gigabit, 40-gigabit
    QTest::addColumn<bool>("poe");
    QTest::newRow("access") << "access" << QList<int>{24, 24, 4, 0} << false;
    QTest::newRow("large") << "large" << QList<int>{48, 48, 4, 0} << false;
    QTest::newRow("aggregation") << "aggregation" << QList<int>{0, 0, 24, 6} << false;
    QTest::newRow("mixed") << "mixed" << QList<int>{24, 16, 4, 0} << false;
    QTest::newRow("poe") << "poe" << QList<int>{24, 24, 4, 0} << true;
    QTest::newRow("counted") << "8+2" << QList<int>{8, 8, 2, 0} << false;
    QTest::newRow("counted with 40") << "8+2+1" << QList<int>{8, 8, 2, 1} << false;
}

void TestSimulatorOptions::models()
{
    QFETCH(QString, model);
    QFETCH(QList<int>, ports);
    QFETCH(bool, poe);
    const ParsedOptions parsed = parse({"--model", model});
    QCOMPARE(parsed.error, QString());
    const SwitchModel &made = parsed.options.model;
    QCOMPARE((QList<int>{made.gigabit, made.copper, made.tenGigabit, made.fortyGigabit}), ports);
    QCOMPARE(made.poe, poe);
    QVERIFY(parse({"--poe", "--model", model}).options.model.poe);
}

void TestSimulatorOptions::times_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("milliseconds");
    QTest::newRow("milliseconds") << "250ms" << 250;
    QTest::newRow("seconds") << "5s" << 5000;
    QTest::newRow("minutes") << "2m" << 120000;
    QTest::newRow("plain") << "40" << 40;
}

void TestSimulatorOptions::times()
{
    QFETCH(QString, text);
    QFETCH(int, milliseconds);
    QVERIFY(parse({"--boot-time", text}).options.bootTime == std::chrono::milliseconds(milliseconds));
}

void TestSimulatorOptions::faults()
{
    const ParsedOptions parsed =
        parse({"--fault", "cut:after=1200", "--fault", "hang:command=display vlan,time=3s,times=0", "--fault",
               "question:line=2,text=a,b=c [Y/N]:", "--fault", "logout"});
    QCOMPARE(parsed.error, QString());
    const std::vector<Fault> &faults = parsed.options.faults;
    QCOMPARE(faults.size(), std::size_t(4));
    QVERIFY(faults[0].kind == FaultKind::Cut);
    QCOMPARE(faults[0].after, 1200);
    QVERIFY(faults[1].kind == FaultKind::Hang);
    QCOMPARE(faults[1].command, QByteArray("display vlan"));
    QVERIFY(faults[1].time == std::chrono::seconds(3));
    QCOMPARE(faults[1].times, 0);
    QVERIFY(faults[2].kind == FaultKind::Question);
    QCOMPARE(faults[2].line, 2);
    QCOMPARE(faults[2].text, QByteArray("a,b=c [Y/N]:"));
    QVERIFY(faults[3].kind == FaultKind::Logout);
}

void TestSimulatorOptions::defaults_areBuiltUpon()
{
    SimulatorOptions defaults;
    defaults.family = Family::HuaweiSub;
    defaults.hurry = 100;
    const ParsedOptions parsed = parseSimulatorOptions({"--hurry", "10"}, defaults);
    QVERIFY(parsed.options.family == Family::HuaweiSub);
    QCOMPARE(parsed.options.hurry, 10);
}

void TestSimulatorOptions::errors_nameTheArgument_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    QTest::newRow("unknown") << QStringList{"--colour", "red"} << "unknown argument --colour";
    QTest::newRow("not an argument") << QStringList{"red"} << "unknown argument red";
    QTest::newRow("value missing") << QStringList{"--family"} << "--family needs a value: huawei|huawei-sub|hua3";
    QTest::newRow("no such family") << QStringList{"--family", "cisco"}
                                    << "--family: not a value: cisco (huawei|huawei-sub|hua3)";
    QTest::newRow("surplus value") << QStringList{"--no-logs=1"} << "--no-logs takes no value";
    QTest::newRow("not a number") << QStringList{"--speed", "fast"} << "--speed: not a value: fast (N)";
    QTest::newRow("out of range") << QStringList{"--erase=0"} << "--erase: not a value: 0 (16|42)";
    QTest::newRow("bad model") << QStringList{"--model", "24"}
                               << "--model: not a value: 24 (access|large|aggregation|mixed|poe|G+X[+F])";
    QTest::newRow("bad fault") << QStringList{"--fault", "smoke"}
                               << QString::fromUtf8("--fault: not a value: smoke (KIND[:KEY=VALUE,…])");
    QTest::newRow("bad fault key") << QStringList{"--fault", "cut:x=1"}
                                   << QString::fromUtf8("--fault: not a value: cut:x=1 (KIND[:KEY=VALUE,…])");
    QTest::newRow("bad time") << QStringList{"--boot-time", "5h"} << "--boot-time: not a value: 5h (TIME)";
}

void TestSimulatorOptions::errors_nameTheArgument()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    QCOMPARE(parse(arguments).error, error);
}

void TestSimulatorOptions::help_namesEveryArgument()
{
    const QString help = simulatorOptionsHelp();
    for (const char *name : {"--family", "--model", "--fault", "--hurry", "--two-stage", "--start"}) {
        QVERIFY2(help.contains(QLatin1String(name)), name);
        bool takesValue = false;
        QVERIFY(isSimulatorOption(QLatin1String(name), &takesValue));
        QCOMPARE(takesValue, QLatin1String(name) != QLatin1String("--two-stage"));
    }
    bool takesValue = true;
    QVERIFY(isSimulatorOption(QStringLiteral("--family=hua3"), &takesValue));
    QVERIFY(!takesValue);
    QVERIFY(!isSimulatorOption(QStringLiteral("--json"), &takesValue));
}

QTEST_GUILESS_MAIN(TestSimulatorOptions)
#include "tst_simulator_options.moc"
