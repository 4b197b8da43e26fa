#include <switchdevicebll/switchdevice.h>
#include <switchdevicebll/switchdeviceconfig.h>
#include <switchdevicebll/translatemanage.h>

#include <consoleportcomm/consoleportcomm.h>
#include <lxtranslate/translator.h>
#include <simulator/simulatedswitch.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QThread>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

using ovra::bll::SwitchDevice;
using ovra::bll::SwitchDeviceConfig;
using simulator::Fault;
using simulator::FaultKind;
using simulator::SimulatedSwitch;
using simulator::SimulatorOptions;

namespace {

constexpr int kBaudRate = 115200;
constexpr int kLimitMs = 30000; // on a machine that is busy with other tests
constexpr int kNothingMs = 300; // proving that nothing comes

const QByteArray kInventory = QByteArrayLiteral("screen-length 0 temporary\r\ndisplay interface brief\r\nspace");

QMutex messageLock; // guards warnings
QStringList warnings;

void keepWarnings(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtWarningMsg && QByteArray(context.file).contains("switchdevice")) {
        const QMutexLocker guard(&messageLock);
        warnings << text;
    }
}

QStringList takeWarnings()
{
    const QMutexLocker guard(&messageLock);
    return std::exchange(warnings, {});
}

int ports(const QByteArray &reply)
{
    return reply.count("GigabitEthernet0/0/");
}

Fault cutAfter(const QByteArray &command, int bytes)
{
    Fault fault;
    fault.kind = FaultKind::Cut;
    fault.command = command;
    fault.after = bytes;
    return fault;
}

} // namespace

// The session over the real port stack and a real pseudo terminal, with a simulated switch at its other end.
class TestSwitchDeviceSession : public QObject
{
    Q_OBJECT

public slots:
    void slot_receive(const QByteArray &data)
    {
        _emittedOn = QThread::currentThread();
        _replies << data;
    }

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void login_thenInventory();
    void login_promptlyAtFullSpeed();
    void reply_isEmittedOnTheSessionsThread_toEitherKindOfConnection();
    void send_twoCallers_areAnsweredInOrder();
    void send_onAClosedPort_isEmptyOnceThenALine();
    void send_beforeAnyConnection_isAnswered();
    void disconnect_inTheMiddle_dropsTheBlock_data();
    void disconnect_inTheMiddle_dropsTheBlock();
    void disconnect_fromTheReply_isSafe();
    void connect_inTheMiddle_answersTheBlockBefore();
    void connect_fromTheSessionsThread_works();
    void port_vanishes_andTheNextConnectionWorks_data();
    void port_vanishes_andTheNextConnectionWorks();
    void readBack_inTheMiddle_confusesNothing();
    void portThread_stopsInTheMiddle_theBlockIsAnswered();
    void warning_isInTheLanguageOfTheInterface();

private:
    QByteArray replyTo(const QByteArray &block);
    bool connectTo(const QString &path);
    QByteArray logIn();

    std::unique_ptr<SimulatedSwitch> _switch;
    QByteArrayList _replies; // this thread
    QThread *_emittedOn = nullptr;
    SwitchDevice *const _device = SwitchDevice::getInstance();
};

void TestSwitchDeviceSession::initTestCase()
{
    QVERIFY(SwitchDeviceConfig::getInstance()->loadXmlConfig(QStringLiteral(DEVICES_FOLDER "/Huawei.xml")));
    qInstallMessageHandler(keepWarnings);
}

void TestSwitchDeviceSession::init()
{
    SimulatorOptions options;
    options.hurry = 100;
    _switch = std::make_unique<SimulatedSwitch>(options);
    QVERIFY2(!_switch->start().isEmpty(), qPrintable(_switch->errorString()));
    ConsoleportComm::startComThread();
    connect(_device, &SwitchDevice::signal_dataReceived, this, &TestSwitchDeviceSession::slot_receive);
    _replies.clear();
    takeWarnings();
}

void TestSwitchDeviceSession::cleanup()
{
    _device->disConnectSerial();
    ConsoleportComm::stopComThread();
    disconnect(_device, nullptr, this, nullptr);
    _switch.reset();
}

void TestSwitchDeviceSession::cleanupTestCase()
{
    qInstallMessageHandler(nullptr);
}

QByteArray TestSwitchDeviceSession::replyTo(const QByteArray &block)
{
    const int before = _replies.size();
    _device->sendControlCmd(block);
    if (!QTest::qWaitFor([&] { return _replies.size() > before; }, kLimitMs))
        return "no reply to " + block;
    return _replies.last();
}

bool TestSwitchDeviceSession::connectTo(const QString &path)
{
    return _device->connectToSerial(path, kBaudRate, 0, 0, 0);
}

QByteArray TestSwitchDeviceSession::logIn()
{
    replyTo("\r\n");
    replyTo("admin\r\n");
    return replyTo("Admin@123\r\n");
}

void TestSwitchDeviceSession::login_thenInventory()
{
    QVERIFY(connectTo(_switch->path()));
    QVERIFY(replyTo("\r\n").endsWith("Username:"));
    QCOMPARE(replyTo("admin\r\n"), QByteArray("admin\r\nPassword:"));
    QVERIFY(replyTo("Admin@123\r\n").endsWith("\r\n<HUAWEI>"));
    const QByteArray reply = replyTo(kInventory);
    QVERIFY(reply.startsWith("screen-length 0 temporary\r\n"));
    QVERIFY(reply.contains("\r\n<HUAWEI>display interface brief\r\n"));
    QVERIFY(reply.endsWith("\r\n<HUAWEI>"));
    QVERIFY2(ports(reply) >= 28, reply.constData());
    QCOMPARE(_replies.size(), 4);
    QTest::qWait(kNothingMs);
    QCOMPARE(_replies.size(), 4);
    QCOMPARE(takeWarnings(), QStringList());
}

// The quiet times are all that it waits for; nothing else adds up over the lines of a block.
void TestSwitchDeviceSession::login_promptlyAtFullSpeed()
{
    QVERIFY(connectTo(_switch->path()));
    logIn();
    QByteArray block;
    for (int i = 0; i < 20; ++i)
        block += "display clock\r\n";
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(replyTo(block).count("<HUAWEI>"), 20);
    constexpr qint64 kInTimeMs = 2000; // 20 times 25 ms, and a margin
    QVERIFY2(timer.elapsed() < kInTimeMs, qPrintable(QString::number(timer.elapsed())));
}

void TestSwitchDeviceSession::reply_isEmittedOnTheSessionsThread_toEitherKindOfConnection()
{
    QVERIFY(connectTo(_switch->path()));
    disconnect(_device, nullptr, this, nullptr);
    QVERIFY(connect(_device, SIGNAL(signal_dataReceived(QByteArray)), this, SLOT(slot_receive(QByteArray)),
                    Qt::UniqueConnection));
    QVERIFY(!connect(_device, SIGNAL(signal_dataReceived(QByteArray)), this, SLOT(slot_receive(QByteArray)),
                     Qt::UniqueConnection));
    std::atomic<QThread *> emitted{nullptr};
    const auto direct = connect(_device, &SwitchDevice::signal_dataReceived, _device,
                                [&emitted](const QByteArray &) { emitted = QThread::currentThread(); });
    replyTo("\r\n");
    disconnect(direct);
    QCOMPARE(_replies.size(), 1);
    QCOMPARE(_emittedOn, thread());
    QCOMPARE(emitted.load(), _device->thread());
}

void TestSwitchDeviceSession::send_twoCallers_areAnsweredInOrder()
{
    constexpr int kBlocks = 20;
    QVERIFY(connectTo(_switch->path()));
    logIn();
    _replies.clear();
    const auto caller = [this](const QByteArray &word) {
        for (int i = 0; i < kBlocks; ++i)
            _device->sendControlCmd("display " + word + QByteArray::number(i) + "\r\ndisplay clock\r\n");
    };
    std::thread one(caller, "one");
    std::thread two(caller, "two");
    one.join();
    two.join();
    QTRY_COMPARE_WITH_TIMEOUT(_replies.size(), 2 * kBlocks, kLimitMs);
    int next[2] = {0, 0};
    for (const QByteArray &reply : qAsConst(_replies)) {
        const int who = reply.startsWith("display one") ? 0 : 1;
        const QByteArray line = QByteArray(who == 0 ? "display one" : "display two") + QByteArray::number(next[who]++);
        QVERIFY2(reply.startsWith(line + "\r\n"), reply.constData());
        QCOMPARE(reply.count("display clock\r\n"), 1);
        QVERIFY2(reply.endsWith("<HUAWEI>"), reply.constData());
    }
}

void TestSwitchDeviceSession::send_onAClosedPort_isEmptyOnceThenALine()
{
    QVERIFY(connectTo(_switch->path()));
    _device->disConnectSerial();
    QCOMPARE(replyTo("\r\n"), QByteArray());
    QCOMPARE(replyTo("\r\n"), QByteArray("\r\n"));
    QCOMPARE(replyTo("\r\n"), QByteArray("\r\n"));
    QCOMPARE(takeWarnings().size(), 2);
}

void TestSwitchDeviceSession::send_beforeAnyConnection_isAnswered()
{
    QVERIFY(!connectTo(QStringLiteral("/dev/does-not-exist")));
    const QByteArray first = replyTo("\r\n");
    QVERIFY(first.isEmpty() || first == "\r\n"); // as the test before it has left it
    QCOMPARE(replyTo("\r\n"), QByteArray("\r\n"));
}

void TestSwitchDeviceSession::disconnect_inTheMiddle_dropsTheBlock_data()
{
    QTest::addColumn<int>("delayMs");
    for (const int delayMs : {0, 1, 10, 30, 100})
        QTest::addRow("after %d ms", delayMs) << delayMs;
}

void TestSwitchDeviceSession::disconnect_inTheMiddle_dropsTheBlock()
{
    QFETCH(int, delayMs);
    QVERIFY(connectTo(_switch->path()));
    logIn();
    _replies.clear();
    Fault fault;
    fault.kind = FaultKind::Delay;
    fault.command = "display interface brief";
    fault.time = std::chrono::milliseconds(500);
    _switch->device().addFault(fault);
    _device->sendControlCmd(kInventory);
    _device->sendControlCmd(kInventory);
    QTest::qWait(delayMs);
    _device->disConnectSerial();
    QTest::qWait(kNothingMs);
    QCOMPARE(_replies, QByteArrayList());

    QVERIFY(connectTo(_switch->path()));
    QTest::qWait(500);                                                           // what was still under way
    QVERIFY2(replyTo("\r\n").endsWith("<HUAWEI>"), _replies.last().constData()); // the switch has not noticed
    QVERIFY(ports(replyTo(kInventory)) >= 28);
    QCOMPARE(_replies.size(), 2);
}

void TestSwitchDeviceSession::disconnect_fromTheReply_isSafe()
{
    QVERIFY(connectTo(_switch->path()));
    const auto direct = connect(_device, &SwitchDevice::signal_dataReceived, _device,
                                [this](const QByteArray &) { _device->disConnectSerial(); });
    _device->sendControlCmd("\r\n");
    _device->sendControlCmd("\r\n");
    QTRY_COMPARE_WITH_TIMEOUT(_replies.size(), 1, kLimitMs);
    QTest::qWait(kNothingMs);
    disconnect(direct);
    QCOMPARE(_replies.size(), 1);
    QVERIFY(connectTo(_switch->path()));
    QVERIFY(replyTo("\r\n").endsWith("Username:"));
}

void TestSwitchDeviceSession::connect_inTheMiddle_answersTheBlockBefore()
{
    QVERIFY(connectTo(_switch->path()));
    logIn();
    _replies.clear();
    Fault fault;
    fault.kind = FaultKind::Delay;
    fault.command = "display clock";
    fault.time = std::chrono::milliseconds(1000);
    _switch->device().addFault(fault);
    _device->sendControlCmd("display clock\r\n");
    QTRY_VERIFY_WITH_TIMEOUT(_switch->device().received().endsWith("display clock\r\n"), kLimitMs);
    QVERIFY(connectTo(_switch->path()));
    QTRY_COMPARE_WITH_TIMEOUT(_replies.size(), 1, kLimitMs);
    QTest::qWait(1200);
    QVERIFY(replyTo("\r\n").endsWith("<HUAWEI>"));
    QVERIFY(ports(replyTo(kInventory)) >= 28);
    QCOMPARE(_replies.size(), 3);
}

void TestSwitchDeviceSession::connect_fromTheSessionsThread_works()
{
    std::atomic<int> opened{-1};
    QMetaObject::invokeMethod(
        _device, [&] { opened = connectTo(_switch->path()) ? 1 : 0; }, Qt::QueuedConnection);
    QTRY_COMPARE_WITH_TIMEOUT(opened.load(), 1, kLimitMs);
    QVERIFY(logIn().endsWith("<HUAWEI>"));
}

void TestSwitchDeviceSession::port_vanishes_andTheNextConnectionWorks_data()
{
    QTest::addColumn<QByteArray>("command"); // that sets it off
    QTest::addColumn<int>("after");
    QTest::newRow("in the login") << QByteArray() << 40;
    QTest::newRow("before the password prompt") << QByteArray() << 70;
    QTest::newRow("in the answer to the first line") << QByteArray("screen-length") << 10;
    QTest::newRow("in the listing") << QByteArray("display interface brief") << 900;
    QTest::newRow("in its first byte") << QByteArray("display interface brief") << 0;
}

void TestSwitchDeviceSession::port_vanishes_andTheNextConnectionWorks()
{
    QFETCH(QByteArray, command);
    QFETCH(int, after);
    QVERIFY(connectTo(_switch->path()));
    _switch->device().addFault(cutAfter(command, after));
    int blocks = 0;
    for (const QByteArray &block :
         {QByteArray("\r\n"), QByteArray("admin\r\n"), QByteArray("Admin@123\r\n"), kInventory}) {
        ++blocks;
        const QByteArray reply = replyTo(block);
        QVERIFY2(!reply.startsWith("no reply"), reply.constData());
        if (!_device->getCommPtr()->getIsConnected())
            break;
    }
    QTRY_VERIFY_WITH_TIMEOUT(!_device->getCommPtr()->getIsConnected(), kLimitMs);
    QCOMPARE(_replies.size(), blocks);
    QVERIFY(!_device->getCommPtr()->errorInfo().isEmpty());

    _switch->device().clearFaults();
    const QString path = _switch->plugIn();
    QVERIFY2(!path.isEmpty(), qPrintable(_switch->errorString()));
    QVERIFY(connectTo(path));
    QByteArray reply = replyTo("\r\n"); // wherever the dialogue stood
    for (int i = 0; i < 6 && !reply.endsWith('>'); ++i) {
        const bool wantsName = reply.endsWith("Username:");
        const bool wantsPassword = reply.endsWith("Password:");
        reply = replyTo(wantsName ? "admin\r\n" : wantsPassword ? "Admin@123\r\n" : "\r\n");
    }
    QVERIFY2(reply.endsWith("<HUAWEI>"), reply.constData());
    QVERIFY(ports(replyTo(kInventory)) >= 28);
}

void TestSwitchDeviceSession::readBack_inTheMiddle_confusesNothing()
{
    QVERIFY(connectTo(_switch->path()));
    logIn();
    for (int i = 0; i < 10; ++i) {
        QVERIFY(_device->getCommPtr()->rawWrite("\r"));
        const QByteArray reply = replyTo(kInventory);
        QVERIFY2(ports(reply) >= 28 && reply.endsWith("<HUAWEI>"), reply.constData());
        QVERIFY(_device->getCommPtr()->rawWrite("\r"));
        QVERIFY(_device->getCommPtr()->timedRead(3000).contains('\n'));
    }
    QCOMPARE(_replies.size(), 13);
}

// View models stop the thread before they disconnect.
void TestSwitchDeviceSession::portThread_stopsInTheMiddle_theBlockIsAnswered()
{
    QVERIFY(connectTo(_switch->path()));
    logIn();
    _replies.clear();
    ConsoleportComm::stopComThread();
    QCOMPARE(replyTo("display clock\r\n"), QByteArray());
    QCOMPARE(replyTo("display clock\r\n"), QByteArray("\r\n"));
    ConsoleportComm::startComThread();
    QVERIFY(connectTo(_switch->path()));
    QVERIFY(replyTo("\r\n").endsWith("<HUAWEI>"));
}

void TestSwitchDeviceSession::warning_isInTheLanguageOfTheInterface()
{
    using OVRA::BLL::TranslateManage;
    QVERIFY(connectTo(_switch->path()));
    logIn();
    takeWarnings();
    QVERIFY(TranslateManage::getInstance()->getTranslator()->switchLanguage(QStringLiteral("en")));
    replyTo("dispaly vlan\r\n");
    QVERIFY(TranslateManage::getInstance()->getTranslator()->switchLanguage(QStringLiteral("zh_CN")));
    replyTo("%1 %2\r\n");
    QCOMPARE(takeWarnings(), QStringList({QStringLiteral("the switch has refused the command dispaly vlan: Error: "
                                                         "Unrecognized command found at '^' position."),
                                          QStringLiteral("交换机拒绝了命令 %1 %2：Error: Unrecognized command found at "
                                                         "'^' position.")}));
}

QTEST_GUILESS_MAIN(TestSwitchDeviceSession)
#include "tst_switchdevice_session.moc"
