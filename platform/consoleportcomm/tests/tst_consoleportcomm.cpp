#include "scripteddevice.h"

#include <consoleportcomm/consoleportcomm.h>
#include <lxtranslate/translator.h>

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QRegularExpression>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <future>
#include <vector>

namespace {

constexpr int kLimitMs = 10000; // for what must happen
constexpr int kAtOnceMs = 1500; // "at once" on a machine that is busy with other tests
const QString kScripted = QStringLiteral("SIM1");

} // namespace

class TestConsoleportComm : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void list_registeredPorts_followTheSystemsInOrder();
    void list_refusesEmptyAndDoubleNames();

    void open_refusedArguments_sayWhy_data();
    void open_refusedArguments_sayWhy();
    void open_withoutThread_saysWhy();
    void open_notATerminal_saysWhy_data();
    void open_notATerminal_saysWhy();
    void open_registeredPort_runsOnThePortThread();
    void open_registeredPortFails_saysWhy();
    void open_again_closesTheFirst();
    void open_afterAFailure_worksAndClearsTheError();
    void open_takesTooLong_isGivenUp();
    void close_whileOpening_revokesIt();
    void close_withoutConnection_isHarmless();
    void close_thread_closesThePortBeforeItReturns();
    void destructor_closesThePort();

    void write_reachesTheDevice();
    void write_closedPort_fails();
    void write_refusedByTheDevice_saysWhy();
    void write_stalled_endsWithinItsLimit();
    void write_stalled_closingEndsItAtOnce();

    void read_keepsWhatArrivedSinceTheLastWrite();
    void read_nothingThere_waitsForTheFirstBytes();
    void read_nothingArrives_isEmptyAfterTheTime();
    void read_closedPort_isEmptyAtOnce();
    void read_portClosedMeanwhile_endsAtOnce();

    void vanished_closesAndSaysWhy();
    void vanished_canBeOpenedAgain();

    void fromThePortThread_nothingWaitsForItself();
    void manyThreads_writeReadAndCloseAtOnce();

    void errorInfo_english();
    void errorInfo_portNameWithPlaceholders_isShownAsItIs();

private:
    bool openScripted() { return _comm->open(kScripted, 9600); }
    void expectWarning(const QString &start)
    {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QLatin1Char('^') + QRegularExpression::escape(start)));
    }

    std::shared_ptr<DeviceScript> _script;
    std::unique_ptr<ConsoleportComm> _comm;
};

void TestConsoleportComm::initTestCase()
{
    qRegisterMetaType<QList<int>>();
}

void TestConsoleportComm::cleanupTestCase()
{
    ConsoleportComm::setTranslator(nullptr);
}

void TestConsoleportComm::init()
{
    _script = std::make_shared<DeviceScript>();
    QVERIFY(ConsoleportComm::registerPort(kScripted,
                                          [script = _script] { return std::make_unique<ScriptedDevice>(script); }));
    _comm = std::make_unique<ConsoleportComm>();
    ConsoleportComm::startComThread();
}

void TestConsoleportComm::cleanup()
{
    _comm.reset();
    ConsoleportComm::stopComThread();
    ConsoleportComm::unregisterPort(kScripted);
    QCOMPARE(_script->living.load(), 0);
}

void TestConsoleportComm::list_registeredPorts_followTheSystemsInOrder()
{
    const auto factory = [] { return std::unique_ptr<QIODevice>(); };
    const QVariantList before = ConsoleportComm::getCOMList();
    QCOMPARE(before.last().toString(), kScripted);
    QVERIFY(ConsoleportComm::registerPort(QStringLiteral("B"), factory));
    QVERIFY(ConsoleportComm::registerPort(QStringLiteral("A"), factory));
    QCOMPARE(ConsoleportComm::getCOMList(), before + QVariantList({QStringLiteral("B"), QStringLiteral("A")}));
    ConsoleportComm::unregisterPort(QStringLiteral("B"));
    ConsoleportComm::unregisterPort(QStringLiteral("A"));
    ConsoleportComm::unregisterPort(QStringLiteral("A"));
    QCOMPARE(ConsoleportComm::getCOMList(), before);
}

void TestConsoleportComm::list_refusesEmptyAndDoubleNames()
{
    const auto factory = [] { return std::unique_ptr<QIODevice>(); };
    const QVariantList before = ConsoleportComm::getCOMList();
    QVERIFY(!ConsoleportComm::registerPort(QString(), factory));
    QVERIFY(!ConsoleportComm::registerPort(kScripted, factory));
    QVERIFY(!ConsoleportComm::registerPort(QStringLiteral("X"), {}));
    QCOMPARE(ConsoleportComm::getCOMList(), before);
}

void TestConsoleportComm::open_refusedArguments_sayWhy_data()
{
    QTest::addColumn<QString>("port");
    QTest::addColumn<QList<int>>("numbers");
    QTest::addColumn<QString>("error");
    const QString settings = QStringLiteral("串口 SIM1 只支持8个数据位、无校验、1个停止位、无流控");
    QTest::newRow("no port") << QString() << QList<int>{9600, 0, 0, 0} << QStringLiteral("未选择串口");
    QTest::newRow("no speed") << kScripted << QList<int>{0, 0, 0, 0} << QStringLiteral("串口 SIM1 不支持波特率 0");
    QTest::newRow("negative speed") << kScripted << QList<int>{-1, 0, 0, 0}
                                    << QStringLiteral("串口 SIM1 不支持波特率 -1");
    QTest::newRow("parity") << kScripted << QList<int>{9600, 1, 0, 0} << settings;
    QTest::newRow("stop bits") << kScripted << QList<int>{9600, 0, 2, 0} << settings;
    QTest::newRow("flow control") << kScripted << QList<int>{9600, 0, 0, -1} << settings;
}

void TestConsoleportComm::open_refusedArguments_sayWhy()
{
    QFETCH(QString, port);
    QFETCH(QList<int>, numbers);
    QFETCH(QString, error);
    QVERIFY(!_comm->open(port, numbers[0], numbers[1], numbers[2], numbers[3]));
    QCOMPARE(_comm->errorInfo(), error);
    QVERIFY(!_comm->getIsConnected());
    QCOMPARE(_script->opened.load(), 0);
}

void TestConsoleportComm::open_withoutThread_saysWhy()
{
    ConsoleportComm::stopComThread();
    QVERIFY(!openScripted());
    QCOMPARE(_comm->errorInfo(), QStringLiteral("串口 SIM1 无法使用：串口线程未运行"));
    ConsoleportComm::startComThread();
    QVERIFY(openScripted());
}

void TestConsoleportComm::open_notATerminal_saysWhy_data()
{
    QTest::addColumn<QString>("port");
    QTest::addColumn<QString>("error");
    QTest::newRow("missing") << QStringLiteral("/no/such/port")
                             << QStringLiteral("串口 /no/such/port 不存在，请检查连接线");
    QTest::newRow("missing, by name") << QStringLiteral("ttyNoSuch")
                                      << QStringLiteral("串口 ttyNoSuch 不存在，请检查连接线");
    QTest::newRow("folder") << QDir::tempPath() << QStringLiteral("%1 不是串口").arg(QDir::tempPath());
#ifdef Q_OS_UNIX
    QTest::newRow("other device") << QStringLiteral("/dev/null") << QStringLiteral("/dev/null 不是串口");
#endif
}

void TestConsoleportComm::open_notATerminal_saysWhy()
{
    QFETCH(QString, port);
    QFETCH(QString, error);
    expectWarning(error);
    QVERIFY(!_comm->open(port, 9600));
    QCOMPARE(_comm->errorInfo(), error);
    QVERIFY(!_comm->getIsConnected());
}

void TestConsoleportComm::open_registeredPort_runsOnThePortThread()
{
    QVERIFY(openScripted());
    QVERIFY(_comm->getIsConnected());
    QCOMPARE(_comm->errorInfo(), QString());
    QVERIFY(_script->livesOn != QThread::currentThread());
    QCOMPARE(_script->livesOn.load()->objectName(), QStringLiteral("console port"));
}

void TestConsoleportComm::open_registeredPortFails_saysWhy()
{
    _script->openFails = true;
    const QString error = QStringLiteral("无法打开串口 SIM1：scripted failure");
    expectWarning(error);
    QVERIFY(!openScripted());
    QCOMPARE(_comm->errorInfo(), error);
    QCOMPARE(_script->living.load(), 0);
}

void TestConsoleportComm::open_again_closesTheFirst()
{
    QVERIFY(openScripted());
    QVERIFY(openScripted());
    QVERIFY(_comm->getIsConnected());
    QCOMPARE(_script->opened.load(), 2);
    QCOMPARE(_script->living.load(), 1);
    QVERIFY(!_comm->open(QString(), 9600));
    QVERIFY(!_comm->getIsConnected());
    QTRY_COMPARE(_script->living.load(), 0);
}

void TestConsoleportComm::open_afterAFailure_worksAndClearsTheError()
{
    _script->openFails = true;
    expectWarning(QStringLiteral("无法打开串口"));
    QVERIFY(!openScripted());
    _script->openFails = false;
    QVERIFY(openScripted());
    QCOMPARE(_comm->errorInfo(), QString());
}

void TestConsoleportComm::open_takesTooLong_isGivenUp()
{
    _script->openDelayMs = 6000; // the limit is 5 s
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!openScripted());
    QVERIFY(timer.elapsed() < 5000 + kAtOnceMs);
    QCOMPARE(_comm->errorInfo(), QStringLiteral("打开串口 SIM1 超时"));
    // What the driver delivers in the end is thrown away.
    QTRY_COMPARE_WITH_TIMEOUT(_script->opened.load(), 1, kLimitMs);
    QTRY_COMPARE(_script->living.load(), 0);
    QVERIFY(!_comm->getIsConnected());
    QCOMPARE(_comm->errorInfo(), QStringLiteral("打开串口 SIM1 超时"));
}

void TestConsoleportComm::close_whileOpening_revokesIt()
{
    _script->openDelayMs = 500;
    auto opened = std::async(std::launch::async, [this] { return openScripted(); });
    QTRY_COMPARE(_script->living.load(), 1);
    QElapsedTimer timer;
    timer.start();
    _comm->close();
    QVERIFY(timer.elapsed() < 400); // does not wait for the driver
    QVERIFY(!opened.get());
    QVERIFY(!_comm->getIsConnected());
    QCOMPARE(_comm->errorInfo(), QStringLiteral("已取消打开串口 SIM1"));
    QTRY_COMPARE(_script->living.load(), 0);
}

void TestConsoleportComm::close_withoutConnection_isHarmless()
{
    _comm->close();
    QVERIFY(openScripted());
    _comm->close();
    _comm->close();
    QVERIFY(!_comm->getIsConnected());
    QCOMPARE(_comm->errorInfo(), QString());
    QTRY_COMPARE(_script->living.load(), 0);
}

void TestConsoleportComm::close_thread_closesThePortBeforeItReturns()
{
    QVERIFY(openScripted());
    QThread *const portThread = _script->livesOn;
    ConsoleportComm::stopComThread();
    QCOMPARE(_script->living.load(), 0);
    QVERIFY(!_comm->getIsConnected());
    QVERIFY(!portThread->isRunning());
    QElapsedTimer timer;
    timer.start();
    _comm->close();
    QVERIFY(!_comm->rawWrite("x"));
    QCOMPARE(_comm->timedRead(kLimitMs), QByteArray());
    QVERIFY(timer.elapsed() < kAtOnceMs);
    ConsoleportComm::startComThread();
}

void TestConsoleportComm::destructor_closesThePort()
{
    QVERIFY(openScripted());
    _comm.reset();
    QCOMPARE(_script->living.load(), 0);
}

void TestConsoleportComm::write_reachesTheDevice()
{
    QVERIFY(openScripted());
    QVERIFY(_comm->rawWrite("dis this\r\n"));
    QVERIFY(_comm->rawWrite(QByteArray()));
    QVERIFY(_comm->rawWrite(QByteArray("\0\r", 2)));
    QCOMPARE(_script->writtenSoFar(), QByteArray("dis this\r\n\0\r", 12));
}

void TestConsoleportComm::write_closedPort_fails()
{
    QVERIFY(!_comm->rawWrite("\r"));
    QCOMPARE(_comm->errorInfo(), QStringLiteral("串口未打开"));
}

void TestConsoleportComm::write_refusedByTheDevice_saysWhy()
{
    QVERIFY(openScripted());
    _script->refuseWrites = true;
    QVERIFY(!_comm->rawWrite("\r"));
    QCOMPARE(_comm->errorInfo(), QStringLiteral("串口 SIM1 发送失败：scripted refusal"));
    QVERIFY(_comm->getIsConnected());
}

void TestConsoleportComm::write_stalled_endsWithinItsLimit()
{
    QVERIFY(openScripted());
    _script->stallWrites = true;
    QElapsedTimer timer;
    timer.start();
    QVERIFY(!_comm->rawWrite("\r"));
    QVERIFY(timer.elapsed() >= 2000);
    QVERIFY(timer.elapsed() < 2000 + kAtOnceMs);
    QCOMPARE(_comm->errorInfo(), QStringLiteral("串口 SIM1 发送超时"));
    _script->stallWrites = false;
    QVERIFY(_comm->rawWrite("\r")); // what was stuck is forgotten
}

void TestConsoleportComm::write_stalled_closingEndsItAtOnce()
{
    QVERIFY(openScripted());
    _script->stallWrites = true;
    QElapsedTimer timer;
    timer.start();
    auto written = std::async(std::launch::async, [this] { return _comm->rawWrite("\r"); });
    QTRY_COMPARE(_script->writtenSoFar(), QByteArray("\r"));
    _comm->close();
    QVERIFY(!written.get());
    QVERIFY(timer.elapsed() < kAtOnceMs);
    QCOMPARE(_comm->errorInfo(), QStringLiteral("串口未打开"));
}

void TestConsoleportComm::read_keepsWhatArrivedSinceTheLastWrite()
{
    QVERIFY(openScripted());
    QSignalSpy session(_comm.get(), &ConsoleportComm::bytesReceived);
    _script->device.load()->feed("old");
    QTRY_COMPARE(session.count(), 1);
    QVERIFY(_comm->rawWrite("\r"));
    _script->device.load()->feed("<SW");
    _script->device.load()->feed("1>");
    QTRY_COMPARE(session.count(), 3);
    QCOMPARE(_comm->timedRead(kLimitMs), QByteArray("<SW1>"));
    QCOMPARE(_comm->timedRead(kLimitMs), QByteArray("<SW1>")); // a second read-back gets the same
    QCOMPARE(session[0][0].toByteArray() + session[1][0].toByteArray() + session[2][0].toByteArray(),
             QByteArray("old<SW1>")); // nothing is taken from the session
}

void TestConsoleportComm::read_nothingThere_waitsForTheFirstBytes()
{
    QVERIFY(openScripted());
    auto read = std::async(std::launch::async, [this] { return _comm->timedRead(kLimitMs); });
    QTest::qWait(50);
    _script->device.load()->feed("late");
    QCOMPARE(read.get(), QByteArray("late"));
}

void TestConsoleportComm::read_nothingArrives_isEmptyAfterTheTime()
{
    QVERIFY(openScripted());
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(_comm->timedRead(100), QByteArray());
    QVERIFY(timer.elapsed() >= 100);
    timer.start();
    QCOMPARE(_comm->timedRead(-1), QByteArray());
    QVERIFY(timer.elapsed() < kAtOnceMs);
}

void TestConsoleportComm::read_closedPort_isEmptyAtOnce()
{
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(_comm->timedRead(kLimitMs), QByteArray());
    QVERIFY(openScripted());
    _script->device.load()->feed("x");
    QTRY_COMPARE(_comm->timedRead(0), QByteArray("x"));
    _comm->close();
    QCOMPARE(_comm->timedRead(kLimitMs), QByteArray());
    QVERIFY(openScripted());
    QCOMPARE(_comm->timedRead(0), QByteArray()); // a new connection begins with nothing
    QVERIFY(timer.elapsed() < kAtOnceMs);
}

void TestConsoleportComm::read_portClosedMeanwhile_endsAtOnce()
{
    QVERIFY(openScripted());
    QElapsedTimer timer;
    timer.start();
    std::vector<std::future<QByteArray>> readers;
    readers.reserve(3);
    for (int i = 0; i < 3; ++i)
        readers.push_back(std::async(std::launch::async, [this] { return _comm->timedRead(kLimitMs); }));
    QTest::qWait(50);
    _comm->close();
    for (std::future<QByteArray> &reader : readers)
        QCOMPARE(reader.get(), QByteArray());
    QVERIFY(timer.elapsed() < kAtOnceMs);
}

void TestConsoleportComm::vanished_closesAndSaysWhy()
{
    QVERIFY(openScripted());
    QSignalSpy lost(_comm.get(), &ConsoleportComm::portLost);
    QSignalSpy session(_comm.get(), &ConsoleportComm::bytesReceived);
    const QString error = QStringLiteral("串口 SIM1 已断开，请检查连接线");
    expectWarning(error);
    _script->device.load()->vanish(QStringLiteral("unplugged"), "last words");
    QTRY_COMPARE(lost.count(), 1);
    QVERIFY(!_comm->getIsConnected());
    QCOMPARE(_comm->errorInfo(), error);
    QCOMPARE(_script->living.load(), 0);
    QCOMPARE(session.value(0).value(0).toByteArray(), QByteArray("last words"));
    QVERIFY(!_comm->rawWrite("\r"));
    QTest::qWait(50);
    QCOMPARE(lost.count(), 1);
}

void TestConsoleportComm::vanished_canBeOpenedAgain()
{
    QVERIFY(openScripted());
    expectWarning(QStringLiteral("串口 SIM1 已断开"));
    _script->device.load()->vanish(QStringLiteral("unplugged"));
    QTRY_VERIFY(!_comm->getIsConnected());
    QVERIFY(openScripted());
    QVERIFY(_comm->rawWrite("\r"));
    QCOMPARE(_comm->errorInfo(), QString());
}

void TestConsoleportComm::fromThePortThread_nothingWaitsForItself()
{
    QVERIFY(openScripted());
    QObject context;
    std::atomic<bool> written{false};
    std::atomic<bool> done{false};
    QByteArray read;
    QElapsedTimer timer;
    timer.start();
    const auto onPortThread = [&] {
        if (done)
            return;
        written = _comm->rawWrite("\r");
        read = _comm->timedRead(kLimitMs);
        done = true;
    };
    connect(_comm.get(), &ConsoleportComm::bytesReceived, &context, onPortThread, Qt::DirectConnection);
    _script->device.load()->feed("x");
    QTRY_VERIFY(done.load());
    QVERIFY(written.load());
    QCOMPARE(read, QByteArray());
    QVERIFY(timer.elapsed() < kAtOnceMs);

    // Also the closing and the end of the thread itself can be asked for there.
    connect(
        _comm.get(), &ConsoleportComm::bytesReceived, &context, [this] { _comm->close(); }, Qt::DirectConnection);
    _script->device.load()->feed("y");
    QTRY_COMPARE(_script->living.load(), 0);
    QVERIFY(openScripted());
}

void TestConsoleportComm::manyThreads_writeReadAndCloseAtOnce()
{
    std::atomic<bool> stop{false};
    std::vector<std::future<void>> users;
    const auto untilStopped = [&stop](auto call) {
        return std::async(std::launch::async, [&stop, call] {
            while (!stop)
                call();
        });
    };
    for (int i = 0; i < 2; ++i) {
        users.push_back(untilStopped([this] { _comm->rawWrite("\r"); }));
        users.push_back(untilStopped([this] { _comm->timedRead(5); }));
    }
    users.push_back(untilStopped([this] { _comm->errorInfo(); }));

    int opened = 0;
    for (int i = 0; i < 30; ++i) {
        opened += openScripted() ? 1 : 0;
        if (i % 10 == 0) { // the thread goes from under everything
            ConsoleportComm::stopComThread();
            ConsoleportComm::startComThread();
        }
        _comm->close();
    }
    stop = true;
    for (std::future<void> &user : users)
        user.get();
    QCOMPARE(opened, 30);
    QVERIFY(!_comm->getIsConnected());
    QTRY_COMPARE(_script->living.load(), 0);
}

void TestConsoleportComm::errorInfo_english()
{
    static lumen::trans::Translator english;
    QVERIFY(english.switchLanguage(QStringLiteral("en")));
    ConsoleportComm::setTranslator(&english);
    QVERIFY(!_comm->open(kScripted, -5));
    QCOMPARE(_comm->errorInfo(), QStringLiteral("the serial port SIM1 does not support a speed of -5 baud"));
    ConsoleportComm::setTranslator(nullptr); // the text follows the language also afterwards
    QCOMPARE(_comm->errorInfo(), QStringLiteral("串口 SIM1 不支持波特率 -5"));
}

void TestConsoleportComm::errorInfo_portNameWithPlaceholders_isShownAsItIs()
{
    QVERIFY(!_comm->open(QStringLiteral("/dev/%2%1"), -5));
    QCOMPARE(_comm->errorInfo(), QStringLiteral("串口 /dev/%2%1 不支持波特率 -5"));
}

QTEST_GUILESS_MAIN(TestConsoleportComm)
#include "tst_consoleportcomm.moc"
