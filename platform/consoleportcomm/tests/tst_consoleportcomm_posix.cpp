#include "pseudoterminal_posix.h"

#include <consoleportcomm/consoleportcomm.h>

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <memory>

namespace {

constexpr int kLimitMs = 10000; // for what must happen

} // namespace

/// The same class as in the test beside this one, on terminals of the system.
class TestPseudoTerminal : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void bothDirections();
    void allBytesArriveUnchanged();
    void cablePulled();
    void portInUse();
    void noPermission();
    void everyBaudRateOpens_data();
    void everyBaudRateOpens();

private:
    void expectWarning(const QString &text) { QTest::ignoreMessage(QtWarningMsg, qPrintable(text)); }

    // Before the terminal behind the port goes: its end would be reported as a pulled cable.
    void release() { _comm.reset(); }

    std::unique_ptr<ConsoleportComm> _comm;
};

void TestPseudoTerminal::init()
{
    _comm = std::make_unique<ConsoleportComm>();
    ConsoleportComm::startComThread();
}

void TestPseudoTerminal::cleanup()
{
    _comm.reset();
    ConsoleportComm::stopComThread();
}

void TestPseudoTerminal::bothDirections()
{
    PseudoTerminal terminal;
    QVERIFY(terminal.isValid());
    QVERIFY(_comm->open(terminal.path(), 9600));
    QVERIFY(_comm->rawWrite("\r\n"));
    QCOMPARE(terminal.take(2), QByteArray("\r\n"));
    QVERIFY(terminal.send("\r\n<SW1>"));
    QTRY_COMPARE(_comm->timedRead(kLimitMs), QByteArray("\r\n<SW1>"));
    _comm->close();
    QVERIFY(_comm->open(terminal.path(), 115200)); // and again, with another speed
    QVERIFY(_comm->rawWrite("x"));
    QCOMPARE(terminal.take(1), QByteArray("x"));
    release();
}

void TestPseudoTerminal::allBytesArriveUnchanged()
{
    PseudoTerminal terminal;
    QVERIFY(_comm->open(terminal.path(), 9600));
    QByteArray every;
    for (int i = 0; i < 256; ++i)
        every += static_cast<char>(i);
    QVERIFY(_comm->rawWrite(every));
    QCOMPARE(terminal.take(every.size()), every);
    QVERIFY(terminal.send(every));
    QTRY_COMPARE(_comm->timedRead(0), every);
    release();
}

void TestPseudoTerminal::cablePulled()
{
    PseudoTerminal terminal;
    QVERIFY(_comm->open(terminal.path(), 9600));
    QSignalSpy lost(_comm.get(), &ConsoleportComm::portLost);
    const QString error = QStringLiteral("串口 %1 已断开，请检查连接线").arg(terminal.path());
    expectWarning(error);
    terminal.close();
    QTRY_COMPARE(lost.count(), 1);
    QCOMPARE(_comm->errorInfo(), error);
    PseudoTerminal other;
    QVERIFY(_comm->open(other.path(), 9600));
    release();
}

void TestPseudoTerminal::portInUse()
{
    PseudoTerminal terminal;
    auto other = std::make_unique<ConsoleportComm>();
    QVERIFY(other->open(terminal.path(), 9600));
    const QString error = QStringLiteral("串口 %1 正被其他程序占用").arg(terminal.path());
    expectWarning(error);
    QVERIFY(!_comm->open(terminal.path(), 9600));
    QCOMPARE(_comm->errorInfo(), error);
    other.reset();
    QVERIFY(_comm->open(terminal.path(), 9600));
    release();
}

void TestPseudoTerminal::noPermission()
{
    PseudoTerminal terminal;
    QVERIFY(QFile::setPermissions(terminal.path(), QFile::Permissions()));
    QProcess process;
    process.start(QStringLiteral(PORTPERMISSIONPROBE), {terminal.path()});
    QVERIFY2(process.waitForFinished(kLimitMs), qPrintable(process.errorString()));
    QCOMPARE(QString::fromUtf8(process.readAllStandardOutput()),
             QStringLiteral("没有权限打开串口 %1\n").arg(terminal.path()));
    QCOMPARE(process.exitCode(), 0);
}

void TestPseudoTerminal::everyBaudRateOpens_data()
{
    QTest::addColumn<int>("baudRate");
    QTest::newRow("slowest in use") << 300;
    QTest::newRow("not a standard one") << 12345;
    QTest::newRow("fast") << 921600;
}

void TestPseudoTerminal::everyBaudRateOpens()
{
    QFETCH(int, baudRate);
    PseudoTerminal terminal;
    QVERIFY(_comm->open(terminal.path(), baudRate));
    QVERIFY(_comm->rawWrite("x"));
    QCOMPARE(terminal.take(1), QByteArray("x"));
    release();
}

QTEST_GUILESS_MAIN(TestPseudoTerminal)
#include "tst_consoleportcomm_posix.moc"
