#include <switchdevicebll/portrange.h>
#include <switchdevicebll/switchdevice.h>
#include <switchdevicebll/translatemanage.h>

#include <consoleportcomm/consoleportcomm.h>

#include <QtCore/QBuffer>
#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QThread>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <atomic>
#include <thread>
#include <vector>

using ovra::bll::SwitchDevice;

namespace {

const QString kPort = QStringLiteral("probe");
constexpr int kExits = 10;      // a thread that outlives what it needs crashes now and then only
constexpr int kAtOnceMs = 1500; // "at once" on a machine that is busy with other tests

} // namespace

class TestSwitchDevice : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void getInstance_fromManyThreads_isTheSame();
    void getInstance_livesOnAThreadOfItsOwn();
    void connectToSerial_fromTheSessionsThread_opensThePort();
    void connectToSerial_otherLineSettings_areRefused();
    void connectToSerial_failure_isInErrorInfo();
    void disConnectSerial_closesThePort();
    void disConnectSerial_afterTheThread_returnsAtOnce();
    void loadLanguage_ofAViewModel_isPassedOn();
    void portRange_isMinimumThenMaximum();
    void process_endsWithoutCrashOrHang_data();
    void process_endsWithoutCrashOrHang();
};

void TestSwitchDevice::initTestCase()
{
    QVERIFY(ConsoleportComm::registerPort(kPort, [] { return std::make_unique<QBuffer>(); }));
}

void TestSwitchDevice::cleanup()
{
    SwitchDevice::getInstance()->disConnectSerial();
    ConsoleportComm::stopComThread();
}

void TestSwitchDevice::getInstance_fromManyThreads_isTheSame()
{
    std::vector<std::thread> threads;
    std::vector<SwitchDevice *> found(4);
    threads.reserve(found.size());
    for (SwitchDevice *&device : found)
        threads.emplace_back([&device] { device = SwitchDevice::getInstance(); });
    for (std::thread &thread : threads)
        thread.join();
    QVERIFY(found.front() != nullptr);
    for (const SwitchDevice *device : found)
        QCOMPARE(device, SwitchDevice::getInstance());
}

void TestSwitchDevice::getInstance_livesOnAThreadOfItsOwn()
{
    SwitchDevice *const device = SwitchDevice::getInstance();
    QVERIFY(device->thread() != thread());
    QCOMPARE(device->thread()->objectName(), QStringLiteral("console session"));
    QVERIFY(device->thread()->isRunning());
    QVERIFY(device->getCommPtr() != nullptr);
    QCOMPARE(device->getCommPtr()->thread(), device->thread());
}

void TestSwitchDevice::connectToSerial_fromTheSessionsThread_opensThePort()
{
    ConsoleportComm::startComThread();
    SwitchDevice *const device = SwitchDevice::getInstance();
    std::atomic<bool> opened{false};
    QMetaObject::invokeMethod(
        device, [&] { opened = device->connectToSerial(kPort, 9600, 0, 0, 0); }, Qt::QueuedConnection);
    QTRY_VERIFY(opened.load());
    QVERIFY(device->getCommPtr()->getIsConnected());
    QCOMPARE(device->getCommPtr()->errorInfo(), QString());
}

void TestSwitchDevice::connectToSerial_otherLineSettings_areRefused()
{
    ConsoleportComm::startComThread();
    SwitchDevice *const device = SwitchDevice::getInstance();
    QVERIFY(!device->connectToSerial(kPort, 9600, 1, 0, 0));
    QVERIFY(!device->connectToSerial(kPort, 9600, 0, 1, 0));
    QVERIFY(!device->connectToSerial(kPort, 9600, 0, 0, 1));
    QVERIFY(!device->getCommPtr()->errorInfo().isEmpty());
    // What a view model's second set of parameters holds before anybody sets it.
    QVERIFY(!device->connectToSerial(QString(), 0, 0, 0, 0));
    QVERIFY(!device->getCommPtr()->getIsConnected());
}

void TestSwitchDevice::connectToSerial_failure_isInErrorInfo()
{
    using OVRA::BLL::TranslateManage;
    SwitchDevice *const device = SwitchDevice::getInstance();
    QVERIFY(!device->connectToSerial(kPort, 9600, 0, 0, 0)); // the port thread does not run
    QCOMPARE(device->getCommPtr()->errorInfo(), QStringLiteral("串口 probe 无法使用：串口线程未运行"));
    // In the language of the interface, whatever it becomes.
    TranslateManage::getInstance()->getTranslator()->switchLanguage(QStringLiteral("en"));
    QCOMPARE(device->getCommPtr()->errorInfo(),
             QStringLiteral("the serial port probe cannot be used: the port thread is not running"));
    TranslateManage::getInstance()->getTranslator();
}

void TestSwitchDevice::disConnectSerial_closesThePort()
{
    ConsoleportComm::startComThread();
    SwitchDevice *const device = SwitchDevice::getInstance();
    QVERIFY(device->connectToSerial(kPort, 9600, 0, 0, 0));
    device->disConnectSerial();
    QVERIFY(!device->getCommPtr()->getIsConnected());
    QVERIFY(device->connectToSerial(kPort, 9600, 0, 0, 0));
}

void TestSwitchDevice::disConnectSerial_afterTheThread_returnsAtOnce()
{
    ConsoleportComm::startComThread();
    SwitchDevice *const device = SwitchDevice::getInstance();
    QVERIFY(device->connectToSerial(kPort, 9600, 0, 0, 0));
    ConsoleportComm::stopComThread();
    QVERIFY(!device->getCommPtr()->getIsConnected());
    QElapsedTimer timer;
    timer.start();
    device->disConnectSerial();
    QVERIFY(timer.elapsed() < kAtOnceMs);
}

void TestSwitchDevice::loadLanguage_ofAViewModel_isPassedOn()
{
    // As a view model does it: its own signal is connected to the session's, which lives on another thread.
    SwitchDevice *const device = SwitchDevice::getInstance();
    QSignalSpy announced(device, &SwitchDevice::signal_loadLanguage);
    connect(this, &QObject::objectNameChanged, device, &SwitchDevice::signal_loadLanguage);
    setObjectName(QStringLiteral("en"));
    QTRY_COMPARE(announced.count(), 1);
    QCOMPARE(announced.value(0).value(0).toString(), QStringLiteral("en"));
    QVERIFY(disconnect(this, &QObject::objectNameChanged, device, &SwitchDevice::signal_loadLanguage));
}

void TestSwitchDevice::portRange_isMinimumThenMaximum()
{
    const ovra::bll::PortRange range{1, 24};
    QCOMPARE(range.min, 1);
    QCOMPARE(range.max, 24);
}

void TestSwitchDevice::process_endsWithoutCrashOrHang_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"return", "no application", "created before the application", "second application",
                            "used after the application", "busy at the end", "exit", "application abandoned"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

void TestSwitchDevice::process_endsWithoutCrashOrHang()
{
    QFETCH(QString, way);
    for (int i = 0; i < kExits; ++i) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral(SWITCHDEVICEPROBE), {way});
        QVERIFY2(process.waitForFinished(30000), qPrintable(process.errorString()));
        const QByteArray output = process.readAll();
        QVERIFY2(process.exitStatus() == QProcess::NormalExit, output.constData());
        QVERIFY2(process.exitCode() == 0, output.constData());
        QCOMPARE(output, QByteArray()); // no warning either
    }
}

QTEST_GUILESS_MAIN(TestSwitchDevice)
#include "tst_switchdevice.moc"
