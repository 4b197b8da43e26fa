#include <simulator/simulatedport.h>
#include <simulator/simulatedswitch.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QRegularExpression>
#include <QtSerialPort/QSerialPort>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <ctime>
#include <memory>
#include <vector>

using namespace simulator;

namespace {

constexpr int kLimitMs = 10000;

SimulatorOptions options()
{
    SimulatorOptions made;
    made.start = Start::UserView;
    made.paging = Paging::Off;
    made.logs = false;
    return made;
}

// A program on the other side of the line.
class Client
{
public:
    explicit Client(const QString &path)
    {
        _port.setPortName(path);
        _port.setBaudRate(9600);
        _open = _port.open(QIODevice::ReadWrite);
    }

    bool isOpen() const { return _open; }
    void type(const QByteArray &bytes)
    {
        _port.write(bytes);
        _port.flush();
    }
    // What has arrived once it ends like that.
    QByteArray readUntil(const QByteArray &end)
    {
        QByteArray all;
        const bool ended = QTest::qWaitFor(
            [&] {
                all += _port.readAll();
                return all.endsWith(end);
            },
            kLimitMs);
        return ended ? all : all + " (and no more)";
    }
    QByteArray exchange(const QByteArray &line, const QByteArray &end)
    {
        type(line + "\r\n");
        return readUntil(end);
    }
    QByteArray readFor(int milliseconds)
    {
        QTest::qWait(milliseconds);
        return _port.readAll();
    }
    bool isLost()
    {
        return QTest::qWaitFor(
            [this] { return _port.error() == QSerialPort::ResourceError || _port.error() == QSerialPort::ReadError; },
            kLimitMs);
    }

private:
    QSerialPort _port;
    bool _open = false;
};

} // namespace

class TestSimulatorTerminal : public QObject
{
    Q_OBJECT

private slots:
    void pseudoTerminal_isAvailable();
    void serialPort_talksToTheSwitch();
    void bytes_passUnchanged();
    void longReply_isComplete();
    void portClosedAndOpened_theSwitchIsWhereItWas();
    void nobodyListening_whatIsWrittenIsLost();
    void hang_endsWithTheNextOpening();
    void cut_takesThePortAway();
    void cut_pluggedInAgain_canBeOpenedAgain();
    void speed_isKept();
    void stop_takesThePortAwayAndCanBeStartedAgain();
    void manySwitches_atOnce();
    void idleSwitch_costsNothing();

    void memoryPort_talksToTheSwitch();
    void memoryPort_opensAgainWhereTheSwitchWas();
    void memoryPort_cutEndsIt();
    void memoryPort_keepsTheSpeed();
};

void TestSimulatorTerminal::pseudoTerminal_isAvailable()
{
#ifdef Q_OS_WIN
    QVERIFY(!SimulatedSwitch::isAvailable());
    SimulatedSwitch device(options());
    QVERIFY(device.start().isEmpty());
    QCOMPARE(device.errorString(), QStringLiteral("this system has no pseudo terminals"));
#else
    QVERIFY(SimulatedSwitch::isAvailable());
#endif
}

void TestSimulatorTerminal::serialPort_talksToTheSwitch()
{
    SimulatedSwitch device({});
    Client client(device.start());
    QVERIFY(client.isOpen());
    QVERIFY(client.exchange("", "Username:").startsWith("\r\n\r\nLogin authentication"));
    QCOMPARE(client.exchange("admin", "Password:"), QByteArray("admin\r\nPassword:"));
    QVERIFY(client.exchange("Admin@123", "<HUAWEI>").contains("current login time"));
    QVERIFY(client.exchange("system-view", "[HUAWEI]").startsWith("system-view\r\n"));
    client.exchange("vlan 20", "[HUAWEI-vlan20]");
    QCOMPARE(device.device().state().running.vlans.count(20), std::size_t(1));
    QVERIFY(device.device().received().endsWith("\r\nsystem-view\r\nvlan 20\r\n"));
    QCOMPARE(device.device().commands(), (QByteArrayList{"system-view", "vlan 20"}));
}

// Raw both ways: no echo of its own, no translation of line ends, no flow control, no signals.
void TestSimulatorTerminal::bytes_passUnchanged()
{
    SimulatorOptions noisy = options();
    QByteArray all;
    for (int byte = 1; byte < 256; ++byte)
        all += static_cast<char>(byte);
    Fault question;
    question.kind = FaultKind::WrongPrompt;
    question.text = '\0' + all + "<HUAWEI>";
    noisy.faults.push_back(question);
    SimulatedSwitch device(noisy);
    Client client(device.start());
    QCOMPARE(client.exchange("sys", "<HUAWEI>"),
             "sys\r\nEnter system view, return user view with Ctrl+Z.\r\n" + question.text);
    client.type(QByteArray("\x11\x13\x04\x1c\n\0", 6) + "\xff");
    QVERIFY(QTest::qWaitFor(
        [&] { return device.device().received().endsWith(QByteArray("\x11\x13\x04\x1c\n\0\xff", 7)); }, kLimitMs));
}

void TestSimulatorTerminal::longReply_isComplete()
{
    SimulatorOptions large = options();
    large.configurationLines = 5000;
    SimulatedSwitch device(large);
    Client client(device.start());
    const QByteArray reply = client.exchange("display current-configuration", "return\r\n<HUAWEI>");
    QCOMPARE(reply, "display current-configuration\r\n" + device.device().configurationText() + "<HUAWEI>");
}

void TestSimulatorTerminal::portClosedAndOpened_theSwitchIsWhereItWas()
{
    SimulatedSwitch device(options());
    const QString path = device.start();
    {
        Client first(path);
        first.exchange("system-view", "[HUAWEI]");
    }
    for (int i = 0; i < 5; ++i) {
        Client again(path);
        QVERIFY(again.isOpen());
        QCOMPARE(again.exchange("", "[HUAWEI]"), QByteArray("\r\n[HUAWEI]"));
    }
    QCOMPARE(device.path(), path);
}

void TestSimulatorTerminal::nobodyListening_whatIsWrittenIsLost()
{
    SimulatorOptions chatty = options();
    chatty.logEvery = std::chrono::milliseconds(20);
    SimulatedSwitch device(chatty);
    const QString path = device.start();
    QTest::qWait(200);
    Client client(path);
    const QByteArray shown = client.readUntil("<HUAWEI>");
    const QRegularExpressionMatch first = QRegularExpression(QStringLiteral("\\(l\\)\\[(\\d+)\\]"))
                                              .match(QString::fromLatin1(shown).remove(QStringLiteral("\r\n")));
    QVERIFY2(first.hasMatch() && first.captured(1).toInt() > 4, shown.constData());
}

void TestSimulatorTerminal::hang_endsWithTheNextOpening()
{
    SimulatedSwitch device(options());
    const QString path = device.start();
    Fault hang;
    hang.command = "display version";
    device.device().addFault(hang);
    {
        Client client(path);
        QCOMPARE(client.exchange("display version", "version\r\n"), QByteArray("display version\r\n"));
        client.type("\r\n");
        QCOMPARE(client.readFor(100), QByteArray());
    }
    QTRY_VERIFY_WITH_TIMEOUT(!device.isPortOpen(), kLimitMs);
    Client client(path);
    QTRY_VERIFY_WITH_TIMEOUT(device.isPortOpen(), kLimitMs);
    QCOMPARE(client.exchange("", "<HUAWEI>"), QByteArray("\r\n<HUAWEI>"));
}

void TestSimulatorTerminal::cut_takesThePortAway()
{
    SimulatedSwitch device(options());
    Client client(device.start());
    Fault cut;
    cut.kind = FaultKind::Cut;
    cut.command = "display version";
    cut.after = 30;
    device.device().addFault(cut);
    client.type("display version\r\n");
    QVERIFY(client.isLost());
    QVERIFY(device.device().isCablePulled());
    QTRY_VERIFY(device.path().isEmpty());
}

void TestSimulatorTerminal::cut_pluggedInAgain_canBeOpenedAgain()
{
    SimulatedSwitch device(options());
    Fault cut;
    cut.kind = FaultKind::Cut;
    {
        Client client(device.start());
        client.exchange("system-view", "[HUAWEI]");
        device.device().addFault(cut);
        QVERIFY(client.isLost());
    }
    const QString path = device.plugIn();
    QVERIFY(!path.isEmpty());
    QCOMPARE(device.path(), path);
    Client client(path);
    QCOMPARE(client.exchange("", "[HUAWEI]"), QByteArray("\r\n[HUAWEI]"));
}

void TestSimulatorTerminal::speed_isKept()
{
    SimulatorOptions slow = options();
    slow.bytesPerSecond = 960;
    SimulatedSwitch device(slow);
    Client client(device.start());
    QElapsedTimer timer;
    timer.start();
    const QByteArray reply = client.exchange("display version", "<HUAWEI>");
    const qint64 onTheWire = reply.size() * 1000 / 960;
    QVERIFY2(timer.elapsed() >= onTheWire - 50, QByteArray::number(timer.elapsed()).constData());
    QVERIFY2(timer.elapsed() <= onTheWire * 2 + 500, QByteArray::number(timer.elapsed()).constData());
}

void TestSimulatorTerminal::stop_takesThePortAwayAndCanBeStartedAgain()
{
    SimulatedSwitch device(options());
    {
        Client client(device.start());
        QVERIFY(device.isRunning());
        device.stop();
        QVERIFY(!device.isRunning());
        QVERIFY(client.isLost());
    }
    QVERIFY(device.path().isEmpty());
    Client client(device.start());
    QCOMPARE(client.exchange("", "<HUAWEI>"), QByteArray("\r\n<HUAWEI>"));
}

void TestSimulatorTerminal::manySwitches_atOnce()
{
    std::vector<std::unique_ptr<SimulatedSwitch>> devices;
    std::vector<std::unique_ptr<Client>> clients;
    for (int i = 0; i < 8; ++i) {
        SimulatorOptions named = options();
        named.name = "sw" + QByteArray::number(i);
        devices.push_back(std::make_unique<SimulatedSwitch>(named));
        clients.push_back(std::make_unique<Client>(devices.back()->start()));
    }
    for (const auto &client : clients)
        client->type("\r\n");
    for (std::size_t i = 0; i < clients.size(); ++i) {
        const QByteArray prompt = "<sw" + QByteArray::number(static_cast<int>(i)) + '>';
        QCOMPARE(clients[i]->readUntil(prompt), "\r\n" + prompt);
    }
}

// A port that nobody has open must not keep a processor busy.
void TestSimulatorTerminal::idleSwitch_costsNothing()
{
    SimulatedSwitch device(options());
    device.start();
    const std::clock_t before = std::clock();
    QTest::qWait(500);
    const double busy = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    QVERIFY2(busy < 0.2, QByteArray::number(busy).constData());
}

namespace {

// Reads a device until what has arrived ends like that.
QByteArray readUntil(QIODevice &port, const QByteArray &end)
{
    QByteArray all;
    const bool ended = QTest::qWaitFor(
        [&] {
            all += port.readAll();
            return all.endsWith(end);
        },
        kLimitMs);
    return ended ? all : all + " (and no more)";
}

} // namespace

void TestSimulatorTerminal::memoryPort_talksToTheSwitch()
{
    SimulatedPort port(std::make_shared<RunningSwitch>(SimulatorOptions()));
    QSignalSpy written(&port, &QIODevice::bytesWritten);
    QVERIFY(port.open(QIODevice::ReadWrite));
    QCOMPARE(port.write("\r\n"), qint64(2));
    QVERIFY(readUntil(port, "Username:").startsWith("\r\n\r\nLogin authentication"));
    QCOMPARE(written.count(), 1);
    QCOMPARE(written.first().first().toLongLong(), qint64(2));
}

void TestSimulatorTerminal::memoryPort_opensAgainWhereTheSwitchWas()
{
    const auto device = std::make_shared<RunningSwitch>(options());
    {
        SimulatedPort port(device);
        port.open(QIODevice::ReadWrite);
        port.write("system-view\r\n");
        readUntil(port, "[HUAWEI]");
    }
    SimulatedPort port(device);
    port.open(QIODevice::ReadWrite);
    port.write("\r\n");
    QCOMPARE(readUntil(port, "[HUAWEI]"), QByteArray("\r\n[HUAWEI]"));
    port.close();
    QVERIFY(port.open(QIODevice::ReadWrite));
    port.write("return\r\n");
    QCOMPARE(readUntil(port, "<HUAWEI>"), QByteArray("return\r\n<HUAWEI>"));
}

void TestSimulatorTerminal::memoryPort_cutEndsIt()
{
    const auto device = std::make_shared<RunningSwitch>(options());
    SimulatedPort port(device);
    QSignalSpy ended(&port, &QIODevice::readChannelFinished);
    QVERIFY(port.open(QIODevice::ReadWrite));
    Fault cut;
    cut.kind = FaultKind::Cut;
    device->addFault(cut);
    QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, kLimitMs);
    QVERIFY(port.errorString().contains(QStringLiteral("cable")));
    port.close();
    QVERIFY(!port.open(QIODevice::ReadWrite));
    device->plugIn();
    QVERIFY(port.open(QIODevice::ReadWrite));
}

void TestSimulatorTerminal::memoryPort_keepsTheSpeed()
{
    SimulatorOptions slow = options();
    slow.bytesPerSecond = 960;
    SimulatedPort port(std::make_shared<RunningSwitch>(slow));
    QSignalSpy arrivals(&port, &QIODevice::readyRead);
    port.open(QIODevice::ReadWrite);
    QElapsedTimer timer;
    timer.start();
    port.write("display clock\r\n");
    const QByteArray reply = readUntil(port, "UTC\r\n<HUAWEI>");
    QVERIFY(timer.elapsed() >= reply.size() * 1000 / 960 - 50);
    QVERIFY(arrivals.count() >= reply.size() / 16);
}

QTEST_GUILESS_MAIN(TestSimulatorTerminal)
#include "tst_simulator_terminal.moc"
