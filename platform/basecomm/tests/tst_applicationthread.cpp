#include <basecomm/applicationthread.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QThread>
#include <QtTest/QTest>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace {

// Applications come and go within these tests, so each makes its own; Qt keeps a reference to the count.
class Application
{
public:
    Application() { _application = std::make_unique<QCoreApplication>(_count, _arguments); }

private:
    int _count = 1;
    char _name[5] = "test";
    char *_arguments[2] = {_name, nullptr};
    std::unique_ptr<QCoreApplication> _application;
};

// A thread that is never deleted, with an object on it that notes where its jobs ran.
struct Fixture
{
    std::atomic<int> starts{0};
    std::atomic<int> stops{0};
    std::atomic<QThread *> stoppedOn{nullptr};
    ApplicationThread *const thread = new ApplicationThread(
        QStringLiteral("test thread"), [this] { ++starts; },
        [this] {
            stoppedOn = QThread::currentThread();
            ++stops;
        });
    QObject *const object = new QObject;

    Fixture() { object->moveToThread(thread->thread()); }

    bool isRunning() const { return thread->thread()->isRunning(); }

    // Posts a job, and says whether it ran on the thread within the time.
    bool jobRuns(int limitMs) const
    {
        auto ranOn = std::make_shared<std::atomic<QThread *>>(nullptr);
        QMetaObject::invokeMethod(
            object, [ranOn] { *ranOn = QThread::currentThread(); }, Qt::QueuedConnection);
        return QTest::qWaitFor([&] { return ranOn->load() == thread->thread(); }, limitMs);
    }
};

Fixture &newFixture()
{
    static std::vector<Fixture *> all; // reachable for ever, as the threads are
    all.push_back(new Fixture);
    return *all.back();
}

} // namespace

class TestApplicationThread : public QObject
{
    Q_OBJECT

private slots:
    void wanted_withoutApplication_waitsForOne();
    void wanted_withApplication_runsAtOnce();
    void notWanted_doesNotStartWithTheApplication();
    void notWanted_endsTheThreadAfterItsStopHook();
    void applicationEnds_endsTheThread_andTheNextOneStartsIt();
    void applicationEnds_youngestThreadFirst();
    void stop_rightAfterStart_isNotLost();
    void stop_fromTheThreadItself_endsIt();
    void setWanted_fromManyThreads_endsAsTheLastOneSays();
};

void TestApplicationThread::wanted_withoutApplication_waitsForOne()
{
    Fixture &f = newFixture();
    f.thread->setWanted(true);
    QVERIFY(!f.isRunning());
    auto ran = std::make_shared<std::atomic<bool>>(false);
    QMetaObject::invokeMethod(
        f.object, [ran] { *ran = true; }, Qt::QueuedConnection);
    {
        const Application application;
        QVERIFY(f.isRunning());
        QTRY_VERIFY(ran->load()); // what was posted before is not lost
    }
    QVERIFY(!f.isRunning());
}

void TestApplicationThread::wanted_withApplication_runsAtOnce()
{
    const Application application;
    Fixture &f = newFixture();
    QVERIFY(!f.isRunning());
    f.thread->setWanted(true);
    f.thread->setWanted(true);
    QCOMPARE(f.starts.load(), 1);
    QVERIFY(f.jobRuns(10000));
}

void TestApplicationThread::notWanted_doesNotStartWithTheApplication()
{
    Fixture &f = newFixture();
    f.thread->setWanted(true);
    f.thread->setWanted(false);
    const Application application;
    QVERIFY(!f.isRunning());
    QCOMPARE(f.starts.load(), 0);
    QCOMPARE(f.stops.load(), 0);
}

void TestApplicationThread::notWanted_endsTheThreadAfterItsStopHook()
{
    const Application application;
    Fixture &f = newFixture();
    f.thread->setWanted(true);
    f.thread->setWanted(false);
    QVERIFY(!f.isRunning());
    QCOMPARE(f.stops.load(), 1);
    QCOMPARE(f.stoppedOn.load(), f.thread->thread());
    f.thread->setWanted(false);
    QCOMPARE(f.stops.load(), 1);
    f.thread->setWanted(true);
    QVERIFY(f.jobRuns(10000));
    QCOMPARE(f.starts.load(), 2);
}

void TestApplicationThread::applicationEnds_endsTheThread_andTheNextOneStartsIt()
{
    Fixture &f = newFixture();
    f.thread->setWanted(true);
    for (int round = 1; round <= 3; ++round) {
        {
            const Application application;
            QVERIFY(f.jobRuns(10000));
        }
        QVERIFY(!f.isRunning());
        QCOMPARE(f.starts.load(), round);
        QCOMPARE(f.stops.load(), round);
    }
}

void TestApplicationThread::applicationEnds_youngestThreadFirst()
{
    static std::vector<int> order;
    static auto *const first = new ApplicationThread(QStringLiteral("first"), {}, [] { order.push_back(1); });
    static auto *const second = new ApplicationThread(QStringLiteral("second"), {}, [] { order.push_back(2); });
    {
        const Application application;
        second->setWanted(true);
        first->setWanted(true);
    }
    QCOMPARE(order, std::vector<int>({2, 1}));
}

void TestApplicationThread::stop_rightAfterStart_isNotLost()
{
    const Application application;
    Fixture &f = newFixture();
    for (int i = 1; i <= 100; ++i) {
        f.thread->setWanted(true);
        f.thread->setWanted(false);
        QVERIFY(!f.isRunning());
        QCOMPARE(f.stops.load(), i);
    }
}

void TestApplicationThread::stop_fromTheThreadItself_endsIt()
{
    const Application application;
    Fixture &f = newFixture();
    f.thread->setWanted(true);
    QMetaObject::invokeMethod(
        f.object, [&f] { f.thread->setWanted(false); }, Qt::QueuedConnection);
    QTRY_VERIFY(!f.isRunning());
    QCOMPARE(f.stops.load(), 1);
    f.thread->setWanted(true);
    QVERIFY(f.jobRuns(10000));
}

void TestApplicationThread::setWanted_fromManyThreads_endsAsTheLastOneSays()
{
    const Application application;
    Fixture &f = newFixture();
    std::vector<std::thread> callers;
    callers.reserve(4);
    for (int i = 0; i < 4; ++i) {
        callers.emplace_back([&f, i] {
            for (int k = 0; k < 50; ++k)
                f.thread->setWanted((k + i) % 2 == 0);
        });
    }
    for (std::thread &caller : callers)
        caller.join();
    f.thread->setWanted(true);
    QVERIFY(f.jobRuns(10000));
    f.thread->setWanted(false);
    QVERIFY(!f.isRunning());
    QCOMPARE(f.starts.load(), f.stops.load());
}

int main(int argc, char **argv)
{
    TestApplicationThread test; // without an application: the tests bring their own
    return QTest::qExec(&test, argc, argv);
}

#include "tst_applicationthread.moc"
