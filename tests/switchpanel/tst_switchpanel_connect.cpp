// switchpanel ports and connect, on the built-in simulated switch.
#include "programrun.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace {

ProgramRun connectTo(const QString &port, const QStringList &arguments = {})
{
    return runSwitchpanel(QStringList{"connect", "--port", port} + arguments);
}

QStringList simulator(const QString &arguments)
{
    return {"--simulator", arguments};
}

bool hasLine(const QString &text, const QString &line)
{
    return text.split(QLatin1Char('\n')).contains(line);
}

} // namespace

class TestConnect : public QObject
{
    Q_OBJECT

private slots:
    void ports_areListed();
    void ports_asJson_areAnArray();
    void inventory_isPrinted_data();
    void inventory_isPrinted();
    void inventory_inChinese();
    void inventory_asJson_isValid_data();
    void inventory_asJson_isValid();
    void progress_isToldOnStandardError();
    void log_isShownWhereAskedFor();
    void passwordNeverShows_data();
    void passwordNeverShows();
    void passwordNeverShows_afterALogOutInTheMiddle();
    void passwordFile_isUsed_data();
    void passwordFile_isUsed();
    void badPasswordFile_isToldBeforeAnythingElse_data();
    void badPasswordFile_isToldBeforeAnythingElse();
    void wrongCredentials_areRefused_data();
    void wrongCredentials_areRefused();
    void missingCredentials_areAskedForOnce_data();
    void missingCredentials_areAskedForOnce();
    void wrongPort_isTold_data();
    void wrongPort_isTold();
    void wrongFamily_isTold_data();
    void wrongFamily_isTold();
    void timeOut_endsTheWaiting_data();
    void timeOut_endsTheWaiting();
    void silentSwitch_isTold();
    void pulledCable_isTold_data();
    void pulledCable_isTold();
    void badSimulatorArgument_isTold();

private:
    QString write(const QByteArray &password) const;

    QTemporaryDir _folder;
};

QString TestConnect::write(const QByteArray &password) const
{
    QFile file(_folder.filePath(QStringLiteral("password")));
    return file.open(QIODevice::WriteOnly) && file.write(password) == password.size() ? file.fileName() : QString();
}

void TestConnect::ports_areListed()
{
    const ProgramRun run = runSwitchpanel({"ports"});
    const ProgramRun json = runSwitchpanel({"ports", "--json"});
    QCOMPARE(run.exitStatus, 0);
    QCOMPARE(json.exitStatus, 0);
    QStringList names;
    for (const auto &name : QJsonDocument::fromJson(json.output.toUtf8()).array())
        names.append(name.toString());
    if (names.isEmpty())
        QCOMPARE(run.errors, QStringLiteral("switchpanel: there is no serial port\n"));
    else
        QCOMPARE(run.output, names.join(QLatin1Char('\n')) + QLatin1Char('\n'));
}

void TestConnect::ports_asJson_areAnArray()
{
    const ProgramRun run = runSwitchpanel({"ports", "--json"});
    QVERIFY2(QJsonDocument::fromJson(run.output.toUtf8()).isArray(), qPrintable(run.output));
    QCOMPARE(run.errors, QString());
}

void TestConnect::inventory_isPrinted_data()
{
    QTest::addColumn<QString>("port");
    QTest::addColumn<QString>("simulator");
    QTest::addColumn<QStringList>("lines");

    QTest::newRow("huawei") << "sim:huawei"
                            << ""
                            << QStringList{"Switch on sim:huawei",
                                           "  Board type  S5720-28X-LI-AC",
                                           "  Profile     huawei",
                                           "  Kind        access switch",
                                           "  Down ports  24, range (1-24): g0/0/1-g0/0/24",
                                           "  Up ports    4, range (1-4): xg0/0/1-xg0/0/4",
                                           ""};
    QTest::newRow("sub-model") << "sim:huawei-sub"
                               << "--board S5735-L48 --model 48+4"
                               << QStringList{"Switch on sim:huawei-sub",
                                              "  Board type  S5735-L48",
                                              "  Profile     huawei-sub",
                                              "  Kind        access switch",
                                              "  Down ports  48, range (1-48): GE0/0/1-GE0/0/48",
                                              "  Up ports    4, range (1-4): 10GE0/0/1-10GE0/0/4",
                                              ""};
    // This family has no listing with the board type.
    QTest::newRow("hua3") << "sim:hua3"
                          << ""
                          << QStringList{"Switch on sim:hua3",
                                         "  Board type  not told",
                                         "  Profile     hua3",
                                         "  Kind        access switch",
                                         "  Down ports  24, range (1-24): g1/0/1-g1/0/24",
                                         "  Up ports    4, range (25-28): t1/0/25-t1/0/28",
                                         ""};
    QTest::newRow("aggregation") << "sim:huawei"
                                 << "--model aggregation --board S6730"
                                 << QStringList{"Switch on sim:huawei",
                                                "  Board type  S6730",
                                                "  Profile     huawei",
                                                "  Kind        aggregation switch (no gigabit ports)",
                                                "  Down ports  24, range (1-24): xg0/0/1-xg0/0/24",
                                                "  Up ports    range (1-6)",
                                                ""};
}

void TestConnect::inventory_isPrinted()
{
    QFETCH(QString, port);
    QFETCH(QString, simulator);
    const ProgramRun run = connectTo(port, {"--quiet", "--simulator", simulator});
    QCOMPARE(run.errors, QString());
    QTEST(run.outputLines(), "lines");
    QCOMPARE(run.exitStatus, 0);
}

void TestConnect::inventory_inChinese()
{
    const ProgramRun run = connectTo("sim:huawei", {"--lang", "zh"});
    QCOMPARE(run.exitStatus, 0);
    QCOMPARE(run.outputLines().first(), QStringLiteral("sim:huawei 上的交换机"));
    QVERIFY(run.printed(QStringLiteral("下行端口  24个，范围(1-24)：g0/0/1-g0/0/24")));
    QVERIFY(hasLine(run.errors, QStringLiteral("switchpanel: 密码登录中")));
}

void TestConnect::inventory_asJson_isValid_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("firstPort");
    QTest::addColumn<QString>("lastPort");

    QTest::newRow("huawei") << "huawei"
                            << "g0/0/1"
                            << "xg0/0/4";
    QTest::newRow("sub-model") << "huawei-sub"
                               << "GE0/0/1"
                               << "10GE0/0/4";
    QTest::newRow("hua3") << "hua3"
                          << "g1/0/1"
                          << "t1/0/28";
}

void TestConnect::inventory_asJson_isValid()
{
    QFETCH(QString, family);
    const ProgramRun run = connectTo("sim:" + family, {"--json", "--lang", "zh"});
    QCOMPARE(run.exitStatus, 0);
    QJsonParseError error{};
    const QJsonObject inventory = QJsonDocument::fromJson(run.output.toUtf8(), &error).object();
    QCOMPARE(error.error, QJsonParseError::NoError);
    QCOMPARE(inventory["port"].toString(), "sim:" + family);
    QCOMPARE(inventory["profile"].toString(), family);
    QCOMPARE(inventory["down"].toObject()["ports"].toArray().size(), 24);
    QCOMPARE(inventory["down"].toObject()["count"].toInt(), 23);
    QTEST(inventory["down"].toObject()["ports"].toArray().first().toString(), "firstPort");
    QTEST(inventory["up"].toObject()["ports"].toArray().last().toString(), "lastPort");
}

void TestConnect::progress_isToldOnStandardError()
{
    const ProgramRun run = connectTo("sim:huawei");
    const QStringList told = run.errors.split(QLatin1Char('\n'));
    QCOMPARE(told.size(), 4);
    QCOMPARE(told[0], QStringLiteral("switchpanel: Logging in with the user name"));
    QCOMPARE(told[1], QStringLiteral("switchpanel: Logging in with the password"));
    QVERIFY2(told[2].startsWith(QStringLiteral("switchpanel: Connected to console port: ")), qPrintable(told[2]));
}

void TestConnect::log_isShownWhereAskedFor()
{
    const QRegularExpression line(
        QStringLiteral("(^|\n)\\[[0-9-]{10} [0-9:.]{12}\\] \\[Info\\] Interface discovery finished\n"));
    QVERIFY(!line.match(connectTo("sim:huawei").errors).hasMatch());
    const ProgramRun run = connectTo("sim:huawei", {"--log"});
    QVERIFY2(line.match(run.errors).hasMatch(), qPrintable(run.errors));
    QVERIFY(hasLine(run.errors, QStringLiteral("Login succeeded..")));
}

void TestConnect::passwordNeverShows_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("password");
    QTest::newRow("plain") << QStringList{} << "Sesame-Open-17";
    QTest::newRow("log") << QStringList{"--log"} << "Sesame-Open-17";
    QTest::newRow("log, detailed") << QStringList{"--log", "--verbose"} << "Sesame-Open-17";
    QTest::newRow("log, detailed, with quotes") << QStringList{"--log", "--verbose"} << "\"Sesame\\Open\"17";
    QTest::newRow("debug messages, beyond ASCII") << QStringList{"--verbose"} << QStringLiteral("芝麻Sesame开门-17");
}

void TestConnect::passwordNeverShows()
{
    constexpr int kTold = 6; // characters that would tell enough
    QFETCH(QStringList, options);
    QFETCH(QString, password);
    const ProgramRun run = connectTo("sim:huawei", QStringList{"--password-file", write(password.toUtf8())} + options
                                                       + simulator("--switch-password " + password));
    QCOMPARE(run.exitStatus, 0);
    if (options.contains("--log"))
        QVERIFY(run.errors.contains(QStringLiteral("Info")));
    QVERIFY2(!run.errors.contains(password.left(kTold)), qPrintable(run.errors));
    QVERIFY(!run.output.contains(password.left(kTold)));
}

void TestConnect::passwordNeverShows_afterALogOutInTheMiddle()
{
    const ProgramRun run =
        runSwitchpanel(QStringList{"query", "ip-conflict", "--port", "sim:huawei", "--password-file",
                                   write("Sesame-Open-17"), "--log", "--verbose"}
                       + simulator("--switch-password Sesame-Open-17 --fault logout:command=system-view,times=1"));
    // There was a second login.
    QCOMPARE(run.errors.count(QRegularExpression(QStringLiteral("\\] \\[Info\\] password_cmd finished"))), 2);
    QVERIFY2(!run.errors.contains(QStringLiteral("Sesame")), qPrintable(run.errors));
    QVERIFY2(!run.output.contains(QStringLiteral("Sesame")), qPrintable(run.output));
}

void TestConnect::passwordFile_isUsed_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("LF") << QByteArray("Other!45\n");
    QTest::newRow("CR LF") << QByteArray("Other!45\r\n");
    QTest::newRow("no line end") << QByteArray("Other!45");
}

void TestConnect::passwordFile_isUsed()
{
    QFETCH(QByteArray, file);
    const ProgramRun run = connectTo("sim:huawei", QStringList{"--user", "field", "--password-file", write(file)}
                                                       + simulator("--user field --switch-password Other!45"));
    QVERIFY2(run.exitStatus == 0, qPrintable(run.errors));
    QVERIFY(run.printed(QStringLiteral("Profile     huawei")));
}

void TestConnect::badPasswordFile_isToldBeforeAnythingElse_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing") << QByteArray() << "cannot be read";
    QTest::newRow("empty") << QByteArray("\r\n") << "is empty";
}

void TestConnect::badPasswordFile_isToldBeforeAnythingElse()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, reason);
    const QString path = file.isEmpty() ? _folder.filePath("nobody") : write(file);
    const ProgramRun run = connectTo("sim:huawei", {"--password-file", path});
    QCOMPARE(run.exitStatus, 2);
    QCOMPARE(run.output, QString());
    const QString first = run.errors.section(QLatin1Char('\n'), 0, 0);
    QVERIFY2(first.startsWith(QStringLiteral("switchpanel: ")) && first.contains(path) && first.contains(reason),
             qPrintable(run.errors));
    QVERIFY(!run.errors.contains(QStringLiteral("Logging in")));
}

void TestConnect::wrongCredentials_areRefused_data()
{
    QTest::addColumn<QString>("port");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("reason");

    const QString english = QStringLiteral("Login failed, check the user name or password and connect again");
    QTest::newRow("password") << "sim:huawei" << QStringList{"--password-file"} << english;
    QTest::newRow("password, sub-model") << "sim:huawei-sub" << QStringList{"--password-file"} << english;
    QTest::newRow("password, hua3") << "sim:hua3" << QStringList{"--password-file"} << english;
    QTest::newRow("in Chinese") << "sim:huawei" << QStringList{"--lang", "zh", "--password-file"}
                                << QStringLiteral("登录失败,检查用户名或者密码后重新连接");
    QTest::newRow("user name") << "sim:huawei" << QStringList{"--user", "nobody"} << english;
    for (const char *wording : {"user-or-password", "invalid", "authentication"})
        QTest::newRow(wording) << "sim:huawei"
                               << QStringList{"--user", "nobody", "--simulator", QStringLiteral("--failure ") + wording}
                               << english;
}

void TestConnect::wrongCredentials_areRefused()
{
    QFETCH(QString, port);
    QFETCH(QStringList, options);
    QFETCH(QString, reason);
    if (options.last() == QLatin1String("--password-file"))
        options.append(write("wrong\n"));
    const ProgramRun run = connectTo(port, options + QStringList("--quiet"));
    QCOMPARE(run.errors, QStringLiteral("switchpanel: %1: %2\n").arg(port, reason));
    QCOMPARE(run.exitStatus, 1);
    QCOMPARE(run.output, QString());
}

void TestConnect::missingCredentials_areAskedForOnce_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("reason");
    QTest::newRow("user name") << QStringList{"--user", ""} << "the switch asks for a user name: --user is missing";
}

void TestConnect::missingCredentials_areAskedForOnce()
{
    QFETCH(QStringList, options);
    QFETCH(QString, reason);
    const ProgramRun run = connectTo("sim:huawei", options + QStringList("--quiet"));
    QCOMPARE(run.errors, QStringLiteral("switchpanel: %1\n").arg(reason));
    QCOMPARE(run.exitStatus, 2);
}

void TestConnect::wrongPort_isTold_data()
{
    QTest::addColumn<QString>("port");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("reason");

    QTest::newRow("no such port") << "/nowhere/tty"
                                  << "en"
                                  << "there is no serial port /nowhere/tty, check the cable";
    QTest::newRow("no such port, in Chinese") << "/nowhere/tty"
                                              << "zh" << QStringLiteral("串口 /nowhere/tty 不存在，请检查连接线");
#ifdef Q_OS_UNIX
    QTest::newRow("not a port") << "/dev/null"
                                << "en"
                                << "/dev/null is not a serial port";
#endif
}

void TestConnect::wrongPort_isTold()
{
    QFETCH(QString, port);
    QFETCH(QString, language);
    QFETCH(QString, reason);
    const ProgramRun run = connectTo(port, {"--lang", language});
    QCOMPARE(run.errors, QStringLiteral("switchpanel: %1\n").arg(reason));
    QCOMPARE(run.exitStatus, 2);
    QCOMPARE(run.output, QString());
}

void TestConnect::wrongFamily_isTold_data()
{
    QTest::addColumn<QString>("port");
    QTest::addColumn<QString>("family");
    QTest::newRow("hua3 taken for huawei") << "sim:hua3"
                                           << "huawei";
    QTest::newRow("huawei taken for hua3") << "sim:huawei"
                                           << "hua3";
    QTest::newRow("sub-model taken for hua3") << "sim:huawei-sub"
                                              << "hua3";
}

void TestConnect::wrongFamily_isTold()
{
    QFETCH(QString, port);
    QFETCH(QString, family);
    const ProgramRun run = connectTo(port, {"--family", family});
    QCOMPARE(run.exitStatus, 2);
    QCOMPARE(run.output, QString());
    QVERIFY2(hasLine(run.errors,
                     QStringLiteral("switchpanel: %1: the port listing is not that of a %2 switch; is --family right?")
                         .arg(port, family)),
             qPrintable(run.errors));
}

void TestConnect::timeOut_endsTheWaiting_data()
{
    QTest::addColumn<QString>("fault");
    // Nothing at all; silence in the login; silence in the listing.
    QTest::newRow("from the beginning") << "--start booting --boot-time 1000s";
    QTest::newRow("in the login") << "--fault hang:after=200,time=10m";
    QTest::newRow("in the listing") << "--fault hang:command=display,after=500,time=10m";
}

void TestConnect::timeOut_endsTheWaiting()
{
    QFETCH(QString, fault);
    QElapsedTimer timer;
    timer.start();
    const ProgramRun run = connectTo("sim:huawei", QStringList{"--timeout", "3"} + simulator(fault));
    QCOMPARE(run.exitStatus, 2);
    QCOMPARE(run.output, QString());
    QVERIFY2(hasLine(run.errors, QStringLiteral("switchpanel: sim:huawei: not done within 3 s")),
             qPrintable(run.errors));
    QVERIFY2(timer.elapsed() >= 3'000 && timer.elapsed() < 10'000, qPrintable(QString::number(timer.elapsed())));
}

// The console session gives a silent switch two chances of ten seconds.
void TestConnect::silentSwitch_isTold()
{
    const ProgramRun run =
        connectTo("sim:huawei", simulator("--start booting --boot-time 1000s --fault hang:after=1,time=1000s"));
    QCOMPARE(run.exitStatus, 2);
    QVERIFY2(run.errors.contains(QStringLiteral("sim:huawei: ")), qPrintable(run.errors));
    QVERIFY2(run.errors.contains(QStringLiteral("at 9600 baud")), qPrintable(run.errors));
}

void TestConnect::pulledCable_isTold_data()
{
    QTest::addColumn<int>("after");
    for (const int after : {150, 300, 700, 2'500}) // the idle banner has about 100
        QTest::addRow("after %d bytes", after) << after;
}

void TestConnect::pulledCable_isTold()
{
    QFETCH(int, after);
    const ProgramRun run = connectTo("sim:huawei", simulator(QStringLiteral("--fault cut:after=%1").arg(after)));
    QCOMPARE(run.exitStatus, 2);
    QCOMPARE(run.output, QString());
    QVERIFY2(run.errors.contains(QStringLiteral("is gone, check the cable")), qPrintable(run.errors));
}

void TestConnect::badSimulatorArgument_isTold()
{
    const ProgramRun run = connectTo("sim:huawei", simulator("--model tiny"));
    QCOMPARE(run.exitStatus, 2);
    QVERIFY2(run.errors.contains(QStringLiteral("tiny")), qPrintable(run.errors));
}

QTEST_GUILESS_MAIN(TestConnect)

#include "tst_switchpanel_connect.moc"
