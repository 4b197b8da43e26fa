// What goes wrong on the line or in the switch, at every stage: the panel says so, never hangs, and a new connection in
// the same process brings the whole inventory.
#include "consolebench.h"

#include <QtSerialPort/QSerialPort>
#include <QtTest/QtTest>

#include <algorithm>
#include <memory>

using simulator::Family;
using simulator::Fault;
using simulator::FaultKind;

namespace {

constexpr std::chrono::seconds kEnd{60}; // of whatever a fault leads to: two time-outs at most

enum class Stage { Login, Listing, OpticalPorts, Status, Configuration };

constexpr std::pair<Stage, const char *> kStages[] = {{Stage::Login, "login"},
                                                      {Stage::Listing, "listing"},
                                                      {Stage::OpticalPorts, "optical ports"},
                                                      {Stage::Status, "status"},
                                                      {Stage::Configuration, "configuration"}};

constexpr std::pair<Family, const char *> kFamilies[] = {
    {Family::Huawei, "huawei"}, {Family::HuaweiSub, "huawei-sub"}, {Family::Hua3, "hua3"}};

struct Trouble
{
    FaultKind kind;
    int amount;
    const char *name;
    std::chrono::seconds time{0};
    const char *text = "";
    const char *told = ""; // what the log says at least
    bool isHarmless = false;
};

constexpr char kBrokenOff[] = "的应答不完整";
constexpr char kLoggedOut[] = "交换机已退出登录";

const Trouble kTroubles[] = {
    {FaultKind::Cut, 0, "cable pulled", {}, "", "已断开，请检查连接线"},
    {FaultKind::Hang, 0, "hang", std::chrono::seconds(12), "", kBrokenOff},
    {FaultKind::Garbage, 200, "garbage", {}, "", "", true},
    {FaultKind::Noise, 200, "noise", {}, "", "", true},
    {FaultKind::Half, 0, "half a reply"}, // nobody can know
    {FaultKind::Logs, 5, "log lines", {}, "", "", true},
    {FaultKind::Nul, 3, "NULs", {}, "", "", true},
    {FaultKind::Delay, 0, "slow", std::chrono::seconds(3), "", "", true},
    {FaultKind::WrongPrompt, 0, "wrong prompt", {}, "<OTHER>", "", true},
    {FaultKind::NoPrompt, 0, "no prompt", {}, "", "", true},
    {FaultKind::Refuse, 0, "refused", {}, "", "交换机拒绝了命令"},
    {FaultKind::Question, 0, "question", {}, "Are you sure? [Y/N]:", "交换机询问“Are you sure? [Y/N]:”"},
    {FaultKind::Logout, 0, "logged out", {}, "", kLoggedOut},
    {FaultKind::Reboot, 0, "reboot", {}, "", kLoggedOut},
};

// The selection for every run. The rest takes minutes.
bool isUsual(Family family, Stage stage, FaultKind kind)
{
    if (family != Family::Huawei)
        return false;
    switch (stage) {
    case Stage::Login:
        return kind == FaultKind::Cut || kind == FaultKind::Garbage;
    case Stage::Listing:
        return kind == FaultKind::Cut || kind == FaultKind::Half || kind == FaultKind::NoPrompt
               || kind == FaultKind::Refuse || kind == FaultKind::Logout || kind == FaultKind::Reboot;
    case Stage::OpticalPorts:
        return kind == FaultKind::Noise || kind == FaultKind::Nul || kind == FaultKind::WrongPrompt;
    case Stage::Status:
        return kind == FaultKind::Cut || kind == FaultKind::Question;
    case Stage::Configuration:
        return kind == FaultKind::Cut || kind == FaultKind::Garbage || kind == FaultKind::Logs
               || kind == FaultKind::Logout;
    }
    return false;
}

// Those that a line of output sets off. Others need a command, of which a login has none.
bool concernsLine(FaultKind kind)
{
    return kind == FaultKind::Cut || kind == FaultKind::Hang || kind == FaultKind::Garbage || kind == FaultKind::Noise
           || kind == FaultKind::Half || kind == FaultKind::Logs || kind == FaultKind::Nul;
}

// The command that sets the fault off, and how many bytes behind it.
QByteArray commandOf(Stage stage, Family family)
{
    switch (stage) {
    case Stage::Login:
        return {};
    case Stage::Listing:
        return "display interface brief";
    case Stage::OpticalPorts:
        return "display device slot";
    case Stage::Status:
        return "display vlan";
    case Stage::Configuration:
        return family == Family::Hua3        ? "interface GigabitEthernet 1/0/8"
               : family == Family::HuaweiSub ? "interface GE 0/0/8"
                                             : "interface GigabitEthernet 0/0/8";
    }
    return {};
}

int bytesBefore(Stage stage)
{
    switch (stage) {
    case Stage::Login:
        return 50;
    case Stage::Listing:
    case Stage::OpticalPorts:
        return 300;
    case Stage::Status:
        return 40;
    case Stage::Configuration:
        return 12; // within the prompt
    }
    return 0;
}

void act(ConsoleBench &bench, Stage stage)
{
    switch (stage) {
    case Stage::Login:
        return void(bench->deviceCommunicate());
    case Stage::Listing:
    case Stage::OpticalPorts:
        bench->disconnectDevice();
        bench.forget();
        return void(bench->deviceCommunicate());
    case Stage::Status:
        return bench->queryDeviceStatus(QStringLiteral("vlan"));
    case Stage::Configuration:
        bench->setInterfaceEnable(true);
        bench->setInterfaceStatus(QStringLiteral("disable"));
        bench->setSelectedInterfacePorts({bench->gInterface().value(6), bench->gInterface().value(7)});
        return bench->sendSwitchDeviceCmd();
    }
}

bool isDone(ConsoleBench &bench, Stage stage)
{
    switch (stage) {
    case Stage::Login:
    case Stage::Listing:
    case Stage::OpticalPorts:
        return bench.inventory() == bench.expectedInventory();
    case Stage::Status:
        return !bench.record()
                    .logsWith(bench.switchOptions().family == Family::Hua3 ? QStringLiteral("Total VLANs: 1")
                                                                           : QStringLiteral("number of VLANs is : 1"))
                    .isEmpty();
    case Stage::Configuration:
        return bench.running().ports[6].shutdown && bench.running().ports[7].shutdown;
    }
    return false;
}

bool waitForTheEnd(ConsoleBench &bench)
{
    return waitUntil([&] { return !bench.record().labels().isEmpty(); }) && bench.waitUntilIdle(kEnd);
}

} // namespace

class TestConsoleFaults : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    void fault_isTold_andTheNextConnectionIsComplete_data();
    void fault_isTold_andTheNextConnectionIsComplete();
    void cable_pulledAfterBytes_data();
    void cable_pulledAfterBytes();
    void switchThatNeverAnswers_isToldAfterTwoTimeOuts();
    void port_thatDoesNotOpen_isTold_data();
    void port_thatDoesNotOpen_isTold();

private:
    /// A switch of the family whose inventory has been read; the one before where it will do.
    ConsoleBench &connected(Family family);
    ConsoleBench &fresh(const QString &arguments);

    std::unique_ptr<QuietLog> _quiet;
    std::unique_ptr<ConsoleBench> _bench;
    bool _isConnected = false;
};

void TestConsoleFaults::initTestCase()
{
    _quiet = std::make_unique<QuietLog>();
}

void TestConsoleFaults::cleanup()
{
    if (!_bench || !QTest::currentTestFailed())
        return;
    _bench->printIfFailed();
    _isConnected = false;
}

void TestConsoleFaults::cleanupTestCase()
{
    _bench.reset();
    _quiet.reset();
}

ConsoleBench &TestConsoleFaults::fresh(const QString &arguments)
{
    _isConnected = false;
    _bench.reset();
    _bench = std::make_unique<ConsoleBench>(ConsoleBench::options(QStringLiteral("--boot-time 1500ms ") + arguments));
    return *_bench;
}

ConsoleBench &TestConsoleFaults::connected(Family family)
{
    if (!_isConnected || _bench->switchOptions().family != family) {
        const auto name = std::find_if(std::begin(kFamilies), std::end(kFamilies),
                                       [family](const auto &one) { return one.first == family; });
        _isConnected = fresh(QStringLiteral("--login none --family ") + QLatin1String(name->second)).connectPanel();
    }
    _bench->panel().setInterfaceEnable(false);
    _bench->forget();
    return *_bench;
}

void TestConsoleFaults::fault_isTold_andTheNextConnectionIsComplete_data()
{
    QTest::addColumn<int>("family");
    QTest::addColumn<int>("stage");
    QTest::addColumn<int>("trouble");
    for (const auto &family : kFamilies) {
        for (const auto &stage : kStages) {
            for (const Trouble &trouble : kTroubles) {
                if (stage.first == Stage::Login && !concernsLine(trouble.kind))
                    continue;
                if (stage.first == Stage::OpticalPorts && family.first == Family::Hua3)
                    continue; // does not ask
                if (isUsual(family.first, stage.first, trouble.kind) != (kEffort == Effort::Usual))
                    continue;
                QTest::addRow("%s, %s, %s", family.second, stage.second, trouble.name)
                    << int(family.first) << int(stage.first) << int(&trouble - kTroubles);
            }
        }
    }
}

void TestConsoleFaults::fault_isTold_andTheNextConnectionIsComplete()
{
    QFETCH(const int, family);
    QFETCH(const int, stage);
    QFETCH(const int, trouble);
    const Stage at = Stage(stage);
    const Trouble &tested = kTroubles[trouble];
    ConsoleBench &bench = at == Stage::Login
                              ? fresh(QStringLiteral("--family ") + QLatin1String(kFamilies[family].second))
                              : connected(Family(family));
    Fault fault;
    fault.kind = tested.kind;
    fault.command = commandOf(at, Family(family));
    fault.after = bytesBefore(at);
    fault.amount = tested.amount;
    fault.time = tested.time;
    fault.text = tested.text;
    bench.addFault(fault);
    act(bench, at);
    QVERIFY(waitForTheEnd(bench));

    const bool isLogin = at == Stage::Login;
    QString told = QString::fromUtf8(tested.told);
    if (isLogin && tested.kind == FaultKind::Hang)
        told = bench.tr("执行失败，请重试...");
    QVERIFY2(told.isEmpty() || !bench.record().logsWith(told).isEmpty(), qUtf8Printable(told));
    // What hits the echo of a user name or the next prompt may well spoil the login.
    if (tested.isHarmless && !(isLogin && (tested.kind == FaultKind::Garbage || tested.kind == FaultKind::Noise)))
        QVERIFY(isDone(bench, at));

    bench.device().device().clearFaults(); // half a login's output would be missing for ever
    // The sub-model lists its faster ports first. Torn off there, the listing is that of an aggregation switch, and a
    // view model that has seen one takes every switch for one.
    if (bench->isAggregationSwitch() != 0) {
        QVERIFY(Family(family) == Family::HuaweiSub && at == Stage::Listing && !tested.isHarmless);
        bench.endPanel();
        bench.beginPanel();
    }
    QVERIFY(bench.reconnectPanel(kEnd));
    QCOMPARE(bench.inventory(), bench.expectedInventory());
    if (at == Stage::Configuration) { // for the next row
        bench->setInterfaceStatus(QStringLiteral("enable"));
        bench->sendSwitchDeviceCmd();
        QVERIFY(bench.waitUntilIdle());
        QVERIFY(!bench.running().ports[6].shutdown && !bench.running().ports[7].shutdown);
    }
}

void TestConsoleFaults::cable_pulledAfterBytes_data()
{
    QTest::addColumn<int>("bytes");
    const auto row = [](Effort effort, int bytes) {
        if (effort == kEffort)
            QTest::addRow("%d bytes", bytes) << bytes;
    };
    row(Effort::Usual, 0);
    row(Effort::Thorough, 1);
    row(Effort::Thorough, 45); // at the first prompt
    row(Effort::Thorough, 60);
    row(Effort::Thorough, 250); // in the welcome
    row(Effort::Thorough, 500);
    row(Effort::Thorough, 1500); // in the listing
    row(Effort::Usual, 3000);
    row(Effort::Thorough, 4500); // in the slot's listing
}

void TestConsoleFaults::cable_pulledAfterBytes()
{
    QFETCH(const int, bytes);
    ConsoleBench &bench = fresh(QString());
    Fault fault;
    fault.kind = FaultKind::Cut;
    fault.after = bytes;
    if (bytes > 0)
        bench.addFault(fault);
    bench->deviceCommunicate();
    if (bytes == 0) {
        QVERIFY(waitUntil([&] { return bench.device().isPortOpen(); }));
        bench.addFault(fault);
    }
    const QString gone = QStringLiteral("串口 %1 已断开，请检查连接线").arg(bench->currentCom());
    QVERIFY(waitUntil([&] { return bench.record().warnings().contains(gone); }));
    QVERIFY(bench.waitUntilIdle(kEnd));
    QVERIFY(bench.device().path().isEmpty());

    // The path is not tried again before: by now it may be another program's.
    QVERIFY(bench.reconnectPanel());
    QCOMPARE(bench.inventory(), bench.expectedInventory());
}

// A line that is dead for a while after a wrong password.
void TestConsoleFaults::switchThatNeverAnswers_isToldAfterTwoTimeOuts()
{
    ConsoleBench &bench = fresh(QStringLiteral("--failures 1 --lock silence --lock-time 24s"));
    bench->setPasswordText(QStringLiteral("Wrong@123"));
    bench->deviceCommunicate();
    QVERIFY(waitForTheEnd(bench));
    QVERIFY(!bench.record().toasts().filter(bench.tr("登录失败")).isEmpty());

    bench->setPasswordText(QString::fromUtf8(bench.switchOptions().password));
    bench->disconnectDevice();
    bench.forget();
    bench->deviceCommunicate();
    QVERIFY(waitForTheEnd(bench));
    QCOMPARE(bench.record().labels(), (QStringList{QStringLiteral("connect_cmd"), QStringLiteral("enter")}));
    QVERIFY(bench.record().logs().contains(QStringLiteral("[Info] connect_cmd") + bench.tr("执行失败，请重试...")));
    QCOMPARE(bench.record().warnings(), QStringList{QStringLiteral("交换机没有应答，请检查连接线和波特率")});
    QVERIFY(!bench->isWaitingResponse());

    QVERIFY(bench.reconnectPanel());
    QCOMPARE(bench.inventory(), bench.expectedInventory());
}

void TestConsoleFaults::port_thatDoesNotOpen_isTold_data()
{
    QTest::addColumn<QString>("port");
    QTest::addColumn<QString>("reason"); // %1 is the port
    QTest::newRow("none chosen") << QString() << QStringLiteral("未选择串口");
    QTest::newRow("missing") << QStringLiteral("/dev/ttyThatIsNotThere")
                             << QStringLiteral("串口 %1 不存在，请检查连接线");
    QTest::newRow("not a terminal") << QStringLiteral("<file>") << QStringLiteral("%1 不是串口");
    QTest::newRow("open in another program") << QStringLiteral("<busy>") << QStringLiteral("串口 %1 正被其他程序占用");
    // Root may open everything.
    QTemporaryFile file;
    QVERIFY(file.open() && file.setPermissions({}));
    if (!QFile(file.fileName()).open(QIODevice::ReadOnly))
        QTest::newRow("no permission") << QStringLiteral("<forbidden>") << QStringLiteral("没有权限打开串口 %1");
}

void TestConsoleFaults::port_thatDoesNotOpen_isTold()
{
    QFETCH(QString, port);
    QFETCH(const QString, reason);
    ConsoleBench &bench = fresh(QStringLiteral("--login none"));
    const QString right = bench->currentCom();
    QTemporaryFile file;
    QVERIFY(file.open());
    QSerialPort other;
    if (port == QLatin1String("<file>")) {
        port = file.fileName();
    } else if (port == QLatin1String("<busy>")) {
        port = right;
        other.setPortName(right);
        QVERIFY(other.open(QIODevice::ReadWrite));
    } else if (port == QLatin1String("<forbidden>")) {
        port = right;
        QVERIFY(QFile::setPermissions(right, {}));
    }
    bench->setCurrentCom(port);
    bench->deviceCommunicate();
    QVERIFY(waitUntil([&] { return bench.record().toasts().size() == 2; }));
    const QString text = reason.contains(QLatin1String("%1")) ? reason.arg(port) : reason;
    QCOMPARE(bench.record().toasts(),
             (QStringList{QStringLiteral(", 0"), bench.tr("串口打开失败") + text + QStringLiteral(", 0")}));
    QVERIFY(bench->isQueueIdle());
    QCOMPARE(bench.record().labels(), QStringList());

    other.close();
    QFile::setPermissions(right, QFile::ReadOwner | QFile::WriteOwner);
    QVERIFY(bench.reconnectPanel());
    QCOMPARE(bench.inventory(), bench.expectedInventory());
}

QTEST_GUILESS_MAIN(TestConsoleFaults)
#include "tst_console_faults.moc"
