#include "consoleuser.h"

#include <QtTest/QTest>

using namespace simulator;

class TestSimulatorMaintenance : public QObject
{
    Q_OBJECT

private slots:
    void save_huawei_byteForByte();
    void save_declined_savesNothing();
    void save_interrupted_isDeclined();
    void save_takesItsTime();
    void save_hua3_asksForTheFile();
    void save_hua3_forced_asksNothing();
    void resetSaved_thenReboot_isTheFactoryState_data();
    void resetSaved_thenReboot_isTheFactoryState();
    void resetSaved_withoutReboot_keepsRunning();
    void reboot_saved_asksOnce();
    void reboot_unsaved_offersToSave();
    void reboot_declined_goesOn();
    void reboot_isDeafAndEndsAtTheIdleBanner();
    void resetFactory_asksTwiceAndRestarts();
    void hua3_restoreFactory_needsAReboot();
    void hurry_shortensTheSilence();
};

void TestSimulatorMaintenance::save_huawei_byteForByte()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.work({"system-view", "sysname new", "return"});
    QCOMPARE(user.enter("save"),
             QByteArray(
                 "save\r\nThe current configuration will be written to the device.\r\nAre you sure to continue?[Y/N]"));
    QCOMPARE(user.enter("Y"), QByteArray("Y\r\nNow saving the current configuration to the slot 0......\r\n"
                                         "Save the configuration successfully.\r\n<new>"));
    QVERIFY(user.state().saved.has_value());
    QCOMPARE(user.state().saved->name, QByteArray("new"));
}

void TestSimulatorMaintenance::save_declined_savesNothing()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.work({"system-view", "sysname new", "return", "save"});
    QCOMPARE(user.enter("n"), QByteArray("n\r\n<new>"));
    QCOMPARE(user.state().saved->name, QByteArray("HUAWEI"));
}

void TestSimulatorMaintenance::save_interrupted_isDeclined()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.enter("save");
    QCOMPARE(user.keys("\x03"), QByteArray("\r\n<HUAWEI>"));
}

void TestSimulatorMaintenance::save_takesItsTime()
{
    ConsoleUser user(withArguments(QStringLiteral("--save-time 30s")));
    user.enter("save");
    user.terminal().type("y\r");
    const QByteArray early = user.terminal().advance(std::chrono::milliseconds(29900));
    QVERIFY(early.endsWith("."));
    user.terminal().type("display clock\r"); // waits
    const QByteArray late = user.terminal().advance(std::chrono::milliseconds(200));
    QVERIFY2(late.contains("Save the configuration successfully.\r\n<HUAWEI>display clock\r\n"), late.constData());
}

void TestSimulatorMaintenance::save_hua3_asksForTheFile()
{
    ConsoleUser user(withArguments(QStringLiteral("--family hua3")));
    QVERIFY(user.enter("save").endsWith("Are you sure? [Y/N]:"));
    QVERIFY(user.enter("y").endsWith("(To leave the existing filename unchanged, press the enter key):"));
    QCOMPARE(user.enter(""), QByteArray("\r\nflash:/startup.cfg exists, overwrite? [Y/N]:"));
    QVERIFY(user.enter("y").endsWith("\r\nSaved the current configuration to mainboard device successfully.\r\n<H3C>"));
}

void TestSimulatorMaintenance::save_hua3_forced_asksNothing()
{
    ConsoleUser user(withArguments(QStringLiteral("--family hua3 --no-startup")));
    QVERIFY(user.enter("save force").endsWith("successfully.\r\n<H3C>"));
    QVERIFY(user.state().saved.has_value());
}

void TestSimulatorMaintenance::resetSaved_thenReboot_isTheFactoryState_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("factoryName");
    QTest::addColumn<QByteArray>("end");
    QTest::newRow("huawei") << "" << QByteArray("HUAWEI") << QByteArray("Please Press ENTER.\r\n");
    QTest::newRow("hua3") << "--family hua3" << QByteArray("H3C")
                          << QByteArray("Automatic configuration is running, press CTRL_C or CTRL_D to break.\r\n");
}

void TestSimulatorMaintenance::resetSaved_thenReboot_isTheFactoryState()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArray, factoryName);
    QFETCH(QByteArray, end);
    ConsoleUser user(withArguments(QStringLiteral("--name field-3 --boot-time 10s ") + arguments));
    user.work({"system-view", "vlan 20", "return"});
    QVERIFY(user.enter("reset saved-configuration").endsWith(" [Y/N]:"));
    QVERIFY(user.enter("y").endsWith("\r\n<field-3>"));
    QVERIFY(!user.state().saved);
    QVERIFY(user.enter("reboot").endsWith(" [Y/N]:"));
    QVERIFY(user.enter("n").endsWith("[Y/N]:"));
    user.terminal().type("y\r");
    const QByteArray boot = user.terminal().advance(std::chrono::seconds(11));
    QVERIFY2(boot.endsWith(end), boot.constData());
    QCOMPARE(user.running().name, factoryName);
    QCOMPARE(user.running().vlans.count(20), std::size_t(0));
    QCOMPARE(user.state().starts, 2);
}

void TestSimulatorMaintenance::resetSaved_withoutReboot_keepsRunning()
{
    ConsoleUser user(withArguments(QStringLiteral("--name field-3")));
    user.enter("reset saved-configuration");
    user.enter("y");
    QCOMPARE(user.running().name, QByteArray("field-3"));
    QVERIFY(user.answer("display saved-configuration").startsWith("Error:"));
}

void TestSimulatorMaintenance::reboot_saved_asksOnce()
{
    ConsoleUser user(ConsoleUser::atWork());
    QCOMPARE(user.enter("reboot"),
             QByteArray("reboot\r\nInfo: The system is now comparing the configuration, please wait.\r\n"
                        "System will reboot! Continue?[Y/N]:"));
}

void TestSimulatorMaintenance::reboot_unsaved_offersToSave()
{
    ConsoleUser user(withArguments(QStringLiteral("--boot-time 10s")));
    user.work({"system-view", "sysname new", "return"});
    QVERIFY(user.enter("reboot").contains("The configuration has been modified"));
    QVERIFY(user.enter("y").endsWith("System will reboot! Continue?[Y/N]:"));
    user.enter("y");
    user.terminal().advance(std::chrono::seconds(11));
    QCOMPARE(user.running().name, QByteArray("new"));
}

void TestSimulatorMaintenance::reboot_declined_goesOn()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.enter("reboot");
    QCOMPARE(user.enter("n"), QByteArray("n\r\n<HUAWEI>"));
    QCOMPARE(user.state().starts, 1);
}

void TestSimulatorMaintenance::reboot_isDeafAndEndsAtTheIdleBanner()
{
    ConsoleUser user(withArguments(QStringLiteral("--boot-time 100s")));
    user.enter("reboot");
    user.terminal().type("y\r");
    QByteArray boot = user.terminal().advance(std::chrono::seconds(50));
    user.terminal().type("display version\r\n");
    boot += user.terminal().advance(std::chrono::seconds(51));
    QVERIFY(boot.contains(QByteArray("\xff\x00\xff\xff\x00", 5)));
    QVERIFY(boot.contains("Press Ctrl+B to break auto startup"));
    QVERIFY(boot.endsWith("Please Press ENTER.\r\n"));
    QVERIFY(!boot.contains("Versatile Routing"));
    QVERIFY(user.enter("").endsWith("Username:"));
}

void TestSimulatorMaintenance::resetFactory_asksTwiceAndRestarts()
{
    ConsoleUser user(withArguments(QStringLiteral("--name field-3 --boot-time 10s")));
    QVERIFY(user.enter("reset factory-configuration").endsWith("[Y/N]:"));
    QVERIFY(user.enter("y").endsWith("[Y/N]:"));
    user.terminal().type("y\r");
    QVERIFY(user.terminal().advance(std::chrono::seconds(11)).endsWith("Please Press ENTER.\r\n"));
    QCOMPARE(user.running().name, QByteArray("HUAWEI"));
}

void TestSimulatorMaintenance::hua3_restoreFactory_needsAReboot()
{
    ConsoleUser user(withArguments(QStringLiteral("--family hua3 --name field-3")));
    user.enter("restore factory-default");
    QVERIFY(user.enter("y").contains("Please reboot the system"));
    QCOMPARE(user.running().name, QByteArray("field-3"));
    QVERIFY(!user.state().saved);
}

void TestSimulatorMaintenance::hurry_shortensTheSilence()
{
    ConsoleUser user(withArguments(QStringLiteral("--hurry 100")));
    user.enter("reboot");
    user.terminal().type("y\r");
    QVERIFY(user.terminal().advance(std::chrono::milliseconds(1600)).endsWith("Please Press ENTER.\r\n"));
}

QTEST_GUILESS_MAIN(TestSimulatorMaintenance)
#include "tst_simulator_maintenance.moc"
