#include <consoleportcomm/consoleportcomm.h>

#include <QtCore/QBuffer>
#include <QtCore/QProcess>
#include <QtTest/QTest>

#include <atomic>
#include <thread>
#include <vector>

namespace {

const QString kPort = QStringLiteral("probe");
constexpr int kExits = 10; // a thread that outlives what it needs crashes now and then only

// A port can be opened exactly while the thread runs.
bool threadRuns()
{
    ConsoleportComm comm;
    return comm.open(kPort, 9600);
}

void repeat(int times, void (*call)())
{
    for (int i = 0; i < times; ++i)
        call();
}

} // namespace

class TestComThread : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void count_lastStopEndsTheThread();
    void stop_withoutStart_isHarmless();
    void start_afterTheEnd_startsAgain();
    void count_fromManyThreads();
    void process_endsWithoutCrashOrHang_data();
    void process_endsWithoutCrashOrHang();
};

void TestComThread::initTestCase()
{
    QVERIFY(ConsoleportComm::registerPort(kPort, [] { return std::make_unique<QBuffer>(); }));
}

void TestComThread::count_lastStopEndsTheThread()
{
    QVERIFY(!threadRuns());
    repeat(3, &ConsoleportComm::startComThread);
    repeat(2, &ConsoleportComm::stopComThread);
    QVERIFY(threadRuns());
    ConsoleportComm::stopComThread();
    QVERIFY(!threadRuns());
}

void TestComThread::stop_withoutStart_isHarmless()
{
    repeat(3, &ConsoleportComm::stopComThread);
    ConsoleportComm::startComThread(); // the surplus stops are not owed
    QVERIFY(threadRuns());
    ConsoleportComm::stopComThread();
    QVERIFY(!threadRuns());
}

void TestComThread::start_afterTheEnd_startsAgain()
{
    ConsoleportComm comm;
    for (int i = 0; i < 20; ++i) {
        ConsoleportComm::startComThread();
        QVERIFY(comm.open(kPort, 9600));
        ConsoleportComm::stopComThread();
        QVERIFY(!comm.getIsConnected());
    }
}

void TestComThread::count_fromManyThreads()
{
    constexpr int kUsers = 4;
    std::vector<std::thread> users;
    users.reserve(kUsers);
    std::atomic<int> refused{0};
    for (int i = 0; i < kUsers; ++i) {
        users.emplace_back([&refused] {
            for (int k = 0; k < 25; ++k) {
                ConsoleportComm::startComThread();
                refused += threadRuns() ? 0 : 1; // never ended by another one's stop
                ConsoleportComm::stopComThread();
            }
        });
    }
    for (std::thread &user : users)
        user.join();
    QCOMPARE(refused.load(), 0);
    QVERIFY(!threadRuns());
}

void TestComThread::process_endsWithoutCrashOrHang_data()
{
    QTest::addColumn<QString>("way");
    for (const char *way : {"return", "no application", "second application", "exit", "application abandoned"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

void TestComThread::process_endsWithoutCrashOrHang()
{
    QFETCH(QString, way);
    for (int i = 0; i < kExits; ++i) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral(COMTHREADPROBE), {way});
        QVERIFY2(process.waitForFinished(30000), qPrintable(process.errorString()));
        const QByteArray output = process.readAll();
        QVERIFY2(process.exitStatus() == QProcess::NormalExit, output.constData());
        QVERIFY2(process.exitCode() == 0, output.constData());
    }
}

QTEST_GUILESS_MAIN(TestComThread)
#include "tst_comthread.moc"
