#include <connectionoptions.h>

#include <QtCore/QTemporaryFile>
#include <QtTest/QtTest>

namespace {

struct Taken
{
    ConnectionRequest request;
    QString error;
};

Taken take(const QStringList &words, PortNeed need = PortNeed::Required)
{
    Taken taken;
    const Arguments arguments = parseArguments(words, withConnectionOptions({}), Language::English);
    taken.error = arguments.error.isEmpty() ? takeConnection(arguments, need, taken.request) : arguments.error;
    return taken;
}

} // namespace

class TestConnectionOptions : public QObject
{
    Q_OBJECT

private slots:
    void port_alone_leavesTheDefaults();
    void everyOption_isTaken();
    void simulatedPort_bringsItsFamily_data();
    void simulatedPort_bringsItsFamily();
    void family_ofTheCommandLine_winsOverTheSimulatedOne();
    void passwordFile_isRead();
    void noPort_isFineWhereNoneIsNeeded();
    void badOption_isRefused_data();
    void badOption_isRefused();
};

void TestConnectionOptions::port_alone_leavesTheDefaults()
{
    const Taken taken = take({"--port", "/dev/ttyUSB0"});
    QCOMPARE(taken.error, QString());
    QCOMPARE(taken.request.port, QStringLiteral("/dev/ttyUSB0"));
    QVERIFY(!taken.request.isSimulated());
    QCOMPARE(taken.request.portText(), QStringLiteral("/dev/ttyUSB0"));
    QCOMPARE(taken.request.baudRate, 9600);
    QCOMPARE(taken.request.family, SwitchFamily::Huawei);
    QVERIFY(!taken.request.userName && !taken.request.password);
    QCOMPARE(taken.request.timeout.count(), 60);
    QVERIFY(!taken.request.isQuiet && !taken.request.isLogShown && !taken.request.isVerbose);
}

void TestConnectionOptions::everyOption_isTaken()
{
    const Taken taken = take({"--port", "COM3", "--baud", "115200", "--user", "me", "--family", "hua3", "--timeout",
                              "5", "--quiet", "--log", "--verbose", "--lang", "zh"});
    QCOMPARE(taken.error, QString());
    QCOMPARE(taken.request.port, QStringLiteral("COM3"));
    QCOMPARE(taken.request.baudRate, 115'200);
    QCOMPARE(*taken.request.userName, QStringLiteral("me"));
    QCOMPARE(taken.request.family, SwitchFamily::Hua3);
    QCOMPARE(taken.request.timeout.count(), 5);
    QVERIFY(taken.request.isQuiet && taken.request.isLogShown && taken.request.isVerbose);
    QCOMPARE(taken.request.language, Language::Chinese);
}

void TestConnectionOptions::simulatedPort_bringsItsFamily_data()
{
    QTest::addColumn<QString>("port");
    QTest::addColumn<QString>("simulated");
    QTest::addColumn<bool>("isHua3");

    QTest::newRow("huawei") << "sim:huawei"
                            << "huawei" << false;
    QTest::newRow("sub-model") << "sim:huawei-sub"
                               << "huawei-sub" << false;
    QTest::newRow("hua3") << "sim:hua3"
                          << "hua3" << true;
}

void TestConnectionOptions::simulatedPort_bringsItsFamily()
{
    QFETCH(QString, port);
    const Taken taken = take({"--port", port, "--simulator", "--model 48+4  --hurry 10"});
    QCOMPARE(taken.error, QString());
    QTEST(taken.request.simulated, "simulated");
    QTEST(taken.request.family == SwitchFamily::Hua3, "isHua3");
    QCOMPARE(taken.request.port, QString());
    QCOMPARE(taken.request.portText(), port);
    QCOMPARE(taken.request.simulator, QStringList({"--model", "48+4", "--hurry", "10"}));
}

void TestConnectionOptions::family_ofTheCommandLine_winsOverTheSimulatedOne()
{
    const Taken taken = take({"--family", "huawei", "--port", "sim:hua3"});
    QCOMPARE(taken.error, QString());
    QCOMPARE(taken.request.simulated, QStringLiteral("hua3"));
    QCOMPARE(taken.request.family, SwitchFamily::Huawei);
}

void TestConnectionOptions::passwordFile_isRead()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    QVERIFY(file.write("secret\r\n") == 8 && file.flush());
    const Taken taken = take({"--port", "COM3", "--password-file", file.fileName()});
    QCOMPARE(taken.error, QString());
    QCOMPARE(*taken.request.password, QStringLiteral("secret"));
}

void TestConnectionOptions::noPort_isFineWhereNoneIsNeeded()
{
    QCOMPARE(take({}, PortNeed::Optional).error, QString());
}

void TestConnectionOptions::badOption_isRefused_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("error");

    QTest::newRow("no port") << QStringList{} << "--port is missing ('switchpanel ports' lists the serial ports)";
    QTest::newRow("empty port") << QStringList{"--port", ""} << "--port needs the name of a serial port";
    QTest::newRow("unknown simulated switch")
        << QStringList{"--port", "sim:cisco"}
        << "there is no simulated switch 'sim:cisco': sim:huawei, sim:huawei-sub or sim:hua3";
    QTest::newRow("simulated nothing") << QStringList{"--port", "sim:"}
                                       << "there is no simulated switch 'sim:': sim:huawei, sim:huawei-sub or sim:hua3";
    for (const char *baud : {"fast", "9600.5", "0", "-9600", "49", "4000001", "99999999999", ""})
        QTest::newRow((QByteArray("baud ") + baud).constData())
            << QStringList{"--port", "COM3", "--baud", baud}
            << QStringLiteral("--baud takes a number of bits per second, not '%1'").arg(QLatin1String(baud));
    QTest::newRow("family") << QStringList{"--port", "COM3", "--family", "huawei-sub"}
                            << "--family takes huawei or hua3, not 'huawei-sub'";
    for (const char *timeout : {"0", "-1", "1.5", "soon", "604801"})
        QTest::newRow((QByteArray("timeout ") + timeout).constData())
            << QStringList{"--port", "COM3", "--timeout", timeout}
            << QStringLiteral("--timeout takes a whole number of seconds, not '%1'").arg(QLatin1String(timeout));
    QTest::newRow("simulator of a real port")
        << QStringList{"--port", "COM3", "--simulator", "--poe"} << "--simulator goes with --port sim:... only";
    QTest::newRow("language") << QStringList{"--port", "COM3", "--lang", "de"} << "--lang takes zh or en, not 'de'";
    QTest::newRow("a password on the command line")
        << QStringList{"--port", "COM3", "--password", "x"} << "unknown option: --password";
}

void TestConnectionOptions::badOption_isRefused()
{
    QFETCH(QStringList, words);
    QTEST(take(words).error, "error");
}

QTEST_APPLESS_MAIN(TestConnectionOptions)

#include "tst_connectionoptions.moc"
