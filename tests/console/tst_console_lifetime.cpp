// View models, ports and threads that come and go while a switch is connected.
#include "consolebench.h"

#include <consoleportcomm/consoleportcomm.h>
#include <switchdevicebll/switchdevice.h>

#include <QtTest/QtTest>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

using simulator::Fault;
using simulator::FaultKind;

namespace {

constexpr int kBurst = 10000;

// Named so that the panel's log view takes it for a message of the switch modules.
void logAsSwitchDevice(int number)
{
    qInfo("burst %d", number);
}

} // namespace

class TestConsoleLifetime : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    void twoViewModels_shareTheSession();
    void secondViewModel_destroyed_closesThePort();
    void viewModel_destroyedInTheMiddle_leavesNothingBehind_data();
    void viewModel_destroyedInTheMiddle_leavesNothingBehind();
    void anotherSwitch_afterTheFirst_isReadAnew();
    void portThread_stoppedAndStarted_connectsAgain();
    void messagesOfOtherThreads_allArrive_whileConnecting();
    void burstOfTheSwitchsLogLines_isNoHarm();
    void garbageOfAMegabyte_isNoHarm();

private:
    ConsoleBench &fresh(const QString &arguments);

    std::unique_ptr<QuietLog> _quiet;
    std::unique_ptr<ConsoleBench> _bench;
};

void TestConsoleLifetime::initTestCase()
{
    _quiet = std::make_unique<QuietLog>();
}

void TestConsoleLifetime::cleanup()
{
    _bench.reset();
}

void TestConsoleLifetime::cleanupTestCase()
{
    _quiet.reset();
}

ConsoleBench &TestConsoleLifetime::fresh(const QString &arguments)
{
    _bench.reset();
    _bench = std::make_unique<ConsoleBench>(ConsoleBench::options(arguments));
    return *_bench;
}

void TestConsoleLifetime::twoViewModels_shareTheSession()
{
    ConsoleBench &bench = fresh(QStringLiteral("--login none"));
    QVERIFY(bench.connectPanel());
    SwitchDeviceViewModel second;
    PanelRecord record(&second);
    second.setCurlogoChanged(second.lxTr(QStringLiteral("华为")));

    // The second one asks over the connection that the first one has made, and hears the answer alone. The first
    // prompt that it sees is its login, after which it reads the ports once more.
    bench.forget();
    second.queryDeviceStatus(second.lxTr(QStringLiteral("端口状态监测")));
    QVERIFY(waitUntil([&] { return record.inventories() == 2 && second.isQueueIdle(); }));
    QCOMPARE(second.gInterface(), bench->gInterface());
    QCOMPARE(bench.record().inventories(), 0);

    // Both at once: neither waits for ever.
    bench->queryDeviceStatus(QStringLiteral("vlan"));
    second.queryDeviceStatus(second.lxTr(QStringLiteral("光模块")));
    QVERIFY(bench.waitUntilIdle());
    QVERIFY(waitUntil([&] { return second.isQueueIdle(); }));
    QCOMPARE(record.warnings(), QStringList());
    QVERIFY(bench.commands().contains("display vlan") && bench.commands().contains("display transceiver"));
}

void TestConsoleLifetime::secondViewModel_destroyed_closesThePort()
{
    ConsoleBench &bench = fresh(QStringLiteral("--login none"));
    {
        SwitchDeviceViewModel second;
        QVERIFY(bench.connectPanel());
        QVERIFY(bench.device().isPortOpen());
    }
    QVERIFY(waitUntil([&] { return !bench.device().isPortOpen(); }));
    // The first one is told when it asks.
    bench.forget();
    bench->queryDeviceStatus(QStringLiteral("vlan"));
    QVERIFY(bench.waitUntilIdle());
    QVERIFY(!bench.record().logsWith(bench.tr("执行失败，请重试...")).isEmpty());
    QVERIFY(bench.reconnectPanel());
    QCOMPARE(bench.inventory(), bench.expectedInventory());
}

void TestConsoleLifetime::viewModel_destroyedInTheMiddle_leavesNothingBehind_data()
{
    QTest::addColumn<QString>("moment");
    const auto row = [](Effort effort, const char *moment) {
        if (effort == kEffort)
            QTest::newRow(moment) << QString::fromLatin1(moment);
    };
    row(Effort::Usual, "opening");
    row(Effort::Usual, "login");
    row(Effort::Thorough, "password");
    row(Effort::Usual, "listing");
    row(Effort::Thorough, "reply");
    row(Effort::Thorough, "credential timer");
    row(Effort::Usual, "read-back");
    row(Effort::Thorough, "import");
}

void TestConsoleLifetime::viewModel_destroyedInTheMiddle_leavesNothingBehind()
{
    QFETCH(const QString, moment);
    // Slow enough to have a middle.
    ConsoleBench &bench = fresh(QStringLiteral("--speed 4800"));
    const QStringList &labels = bench.record().labels();
    if (moment == QLatin1String("credential timer"))
        bench->setUserText(QString());
    if (moment == QLatin1String("read-back") || moment == QLatin1String("import"))
        QVERIFY(bench.connectPanel());
    else
        bench->deviceCommunicate();
    if (moment == QLatin1String("login")) {
        QVERIFY(waitUntil([&] { return labels.contains(QStringLiteral("login_cmd")); }));
    } else if (moment == QLatin1String("password")) {
        QVERIFY(waitUntil([&] { return labels.contains(QStringLiteral("password_cmd")); }));
    } else if (moment == QLatin1String("listing")) {
        QVERIFY(waitUntil([&] { return bench.commands().contains("display interface brief"); }));
    } else if (moment == QLatin1String("reply")) { // parsed, and its completion is still to come
        QVERIFY(waitUntil([&] { return bench.record().inventories() == 1; }));
    } else if (moment == QLatin1String("credential timer")) {
        QVERIFY(waitUntil([&] { return !bench.record().toasts().filter(bench.tr("请先设置用户名")).isEmpty(); }));
    } else if (moment == QLatin1String("read-back")) {
        bench->slot_readBack(); // its own thread goes on
    } else if (moment == QLatin1String("import")) {
        QTemporaryFile file;
        QVERIFY(file.open());
        file.write("display version\ndisplay vlan\ndisplay interface brief\n");
        file.close();
        bench->importSwitchInfo(file.fileName());
        QVERIFY(waitUntil([&] { return bench.commands().contains("display vlan"); }));
    }
    bench.endPanel();
    QVERIFY(waitUntil([&] { return !bench.device().isPortOpen(); }));

    // The next one finds the line as it was left, and everything works. The end of the old listing may be announced
    // before the new one.
    bench.beginPanel();
    QVERIFY(bench.connectPanel());
    const QStringList expected = bench.expectedInventory();
    QStringList found = bench.inventory();
    if (moment == QLatin1String("listing"))
        found = found.mid(0, 10) + found.mid(found.size() - 4);
    QCOMPARE(found, expected);
}

void TestConsoleLifetime::anotherSwitch_afterTheFirst_isReadAnew()
{
    ConsoleBench &bench = fresh(QStringLiteral("--login none"));
    QVERIFY(bench.connectPanel());
    const QStringList first = bench.expectedInventory();

    simulator::SimulatedSwitch other(ConsoleBench::options(QStringLiteral("--login none --model large --copper 40")));
    bench->disconnectDevice();
    bench->setCurrentCom(other.start());
    bench.forget();
    QVERIFY(bench.connectPanel());
    QCOMPARE(bench->gInterface().size(), 48);
    QCOMPARE(bench->downComRange(), QStringLiteral("(1-48)"));
    QCOMPARE(bench.record().logsWith(QStringLiteral("GE(C)")).size(), 40);
    QVERIFY(!bench.device().isPortOpen());

    // And back, without a disconnect in between: the port that was open is closed first.
    bench->setCurrentCom(bench.device().path());
    bench->disconnectDevice();
    bench.forget();
    QVERIFY(bench.connectPanel());
    QCOMPARE(bench.inventory(), first);
    QVERIFY(waitUntil([&] { return !other.isPortOpen(); }));
}

void TestConsoleLifetime::portThread_stoppedAndStarted_connectsAgain()
{
    ConsoleBench &bench = fresh(QStringLiteral("--login none"));
    QVERIFY(bench.connectPanel());
    ConsoleportComm::stopComThread(); // the last user's
    QVERIFY(waitUntil([&] { return !bench.device().isPortOpen(); }));
    bench->disconnectDevice();
    bench.forget();
    bench->deviceCommunicate();
    const QString refused =
        bench.tr("串口打开失败") + QStringLiteral("串口 %1 无法使用：串口线程未运行, 0").arg(bench->currentCom());
    QVERIFY(waitUntil([&] { return bench.record().toasts().contains(refused); }));

    ConsoleportComm::startComThread();
    QVERIFY(bench.reconnectPanel());
    QCOMPARE(bench.inventory(), bench.expectedInventory());
}

void TestConsoleLifetime::messagesOfOtherThreads_allArrive_whileConnecting()
{
    ConsoleBench &bench = fresh(QString());
    constexpr int kThreads = 4;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    bench->deviceCommunicate();
    for (int thread = 0; thread < kThreads; ++thread)
        threads.emplace_back([thread] {
            for (int i = 0; i < kBurst / kThreads; ++i)
                logAsSwitchDevice(thread * kBurst / kThreads + i);
        });
    const bool isComplete = waitUntil([&] { return bench.record().inventories() == 1 && bench->isQueueIdle(); });
    for (std::thread &thread : threads)
        thread.join();
    QVERIFY(isComplete);
    QCOMPARE(bench.inventory(), bench.expectedInventory());
    QStringList burst = bench.record().logsWith(QStringLiteral("[Info] burst "));
    QCOMPARE(burst.size(), kBurst);
    QCOMPARE(burst.removeDuplicates(), 0);
}

void TestConsoleLifetime::burstOfTheSwitchsLogLines_isNoHarm()
{
    ConsoleBench &bench = fresh(QStringLiteral("--login none"));
    QVERIFY(bench.connectPanel());
    bench.forget();
    bench->setLogMore(true);
    Fault fault;
    fault.kind = FaultKind::Logs;
    fault.command = "display vlan";
    fault.after = 40;
    fault.amount = kBurst;
    bench.addFault(fault);
    bench->queryDeviceStatus(QStringLiteral("vlan"));
    QVERIFY(bench.waitUntilIdle(std::chrono::minutes(1)));
    // All of it in the log view, as it came.
    QVERIFY(
        waitUntil([&] { return bench.record().logsWith(QStringLiteral("%%01SNPG/4/DISCARD")).size() >= kBurst / 4; }));
    QVERIFY(!bench.record().logsWith(QStringLiteral("number of VLANs is : 1")).isEmpty());
    bench->setLogMore(false);
    QVERIFY(bench.reconnectPanel());
    QCOMPARE(bench.inventory(), bench.expectedInventory());
}

void TestConsoleLifetime::garbageOfAMegabyte_isNoHarm()
{
    ConsoleBench &bench = fresh(QStringLiteral("--login none"));
    QVERIFY(bench.connectPanel());
    bench.forget();
    Fault fault;
    fault.kind = FaultKind::Garbage;
    fault.command = "display vlan";
    fault.after = 40;
    fault.amount = 1024 * 1024;
    bench.addFault(fault);
    bench->queryDeviceStatus(QStringLiteral("vlan"));
    QVERIFY(bench.waitUntilIdle(std::chrono::minutes(1)));
    QVERIFY(bench.reconnectPanel());
    QCOMPARE(bench.inventory(), bench.expectedInventory());
}

QTEST_GUILESS_MAIN(TestConsoleLifetime)
#include "tst_console_lifetime.moc"
