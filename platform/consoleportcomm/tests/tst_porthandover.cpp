#include "porthandover.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

namespace {

using Outcome = PortHandover::Outcome;
using Milliseconds = PortHandover::Milliseconds;

constexpr Milliseconds kLong{20000}; // never passes in a test that succeeds
constexpr Milliseconds kShort{30};

// A port thread reduced to what the counter needs: it serves whenever it is woken.
class Server
{
public:
    Server()
        : counter([this] { wake(); })
    {
        counter.open();
    }
    ~Server() { join(); }
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    void start()
    {
        _thread = std::thread([this] { run(); });
    }
    void join()
    {
        {
            const std::lock_guard<std::mutex> guard(_lock);
            _ending = true;
        }
        _woken.notify_all();
        if (_thread.joinable())
            _thread.join();
    }
    std::thread::id id() const { return _thread.get_id(); }

    PortHandover counter;

private:
    void wake()
    {
        {
            const std::lock_guard<std::mutex> guard(_lock);
            _pending = true;
        }
        _woken.notify_all();
    }
    void run()
    {
        std::unique_lock<std::mutex> guard(_lock);
        while (!_ending) {
            _woken.wait(guard, [this] { return _pending || _ending; });
            _pending = false;
            guard.unlock();
            counter.serve();
            guard.lock();
        }
    }

    std::mutex _lock; // guards both flags
    std::condition_variable _woken;
    bool _pending = false;
    bool _ending = false;
    std::thread _thread;
};

void succeed(const PortHandover::ReplyPtr &reply)
{
    reply->finish(true);
}

Milliseconds elapsedSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration_cast<Milliseconds>(std::chrono::steady_clock::now() - start);
}

} // namespace

TEST(PortHandover, callOnAClosedCounterIsRefusedAtOnce)
{
    PortHandover counter([] { FAIL() << "nobody may be woken"; });
    EXPECT_EQ(counter.call([](const PortHandover::ReplyPtr &) { FAIL(); }, kLong), Outcome::Refused);
    EXPECT_FALSE(counter.post([](const PortHandover::ReplyPtr &) { FAIL(); }));
}

TEST(PortHandover, workRunsOnTheServingThreadAndItsAnswerComesBack)
{
    Server server;
    server.start();
    std::thread::id ranOn;
    const auto work = [&](const PortHandover::ReplyPtr &reply) {
        ranOn = std::this_thread::get_id();
        reply->finish(true);
    };
    EXPECT_EQ(server.counter.call(work, kLong), Outcome::Done);
    EXPECT_EQ(ranOn, server.id());
    EXPECT_EQ(server.counter.call([](const PortHandover::ReplyPtr &reply) { reply->finish(false); }, kLong),
              Outcome::Failed);
}

TEST(PortHandover, onlyTheFirstAnswerCounts)
{
    Server server;
    server.start();
    const auto work = [](const PortHandover::ReplyPtr &reply) {
        EXPECT_TRUE(reply->finish(true));
        EXPECT_TRUE(reply->finish(false));
    };
    EXPECT_EQ(server.counter.call(work, kLong), Outcome::Done);
}

TEST(PortHandover, droppedReplyIsAFailure)
{
    Server server;
    server.start();
    EXPECT_EQ(server.counter.call([](const PortHandover::ReplyPtr &) {}, kLong), Outcome::Failed);
}

TEST(PortHandover, replyMayComeLaterFromAnywhere)
{
    Server server;
    server.start();
    std::thread later;
    const auto work = [&later](const PortHandover::ReplyPtr &reply) {
        later = std::thread([reply] {
            std::this_thread::sleep_for(kShort);
            reply->finish(true);
        });
    };
    EXPECT_EQ(server.counter.call(work, kLong), Outcome::Done);
    later.join();
}

TEST(PortHandover, workIsDoneInTheOrderOfAsking)
{
    Server server;
    std::vector<int> order;
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(server.counter.post([&order, i](const PortHandover::ReplyPtr &) { order.push_back(i); }));
    server.start();
    EXPECT_EQ(server.counter.call(succeed, kLong), Outcome::Done);
    ASSERT_EQ(order.size(), 100U);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST(PortHandover, unservedCallTimesOutAndItsWorkIsNeverDone)
{
    Server server;
    std::atomic<bool> done{false};
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(server.counter.call([&done](const PortHandover::ReplyPtr &) { done = true; }, kShort), Outcome::TimedOut);
    EXPECT_GE(elapsedSince(start), kShort);
    server.start();
    EXPECT_EQ(server.counter.call(succeed, kLong), Outcome::Done);
    EXPECT_FALSE(done);
}

TEST(PortHandover, answerAfterTheLimitLearnsThatNobodyWaits)
{
    Server server;
    PortHandover::ReplyPtr kept;
    std::mutex lock; // guards kept
    server.start();
    const auto keep = [&](const PortHandover::ReplyPtr &reply) {
        const std::lock_guard<std::mutex> guard(lock);
        kept = reply;
    };
    ASSERT_EQ(server.counter.call(keep, Milliseconds(200)), Outcome::TimedOut);
    const std::lock_guard<std::mutex> guard(lock);
    ASSERT_TRUE(kept);
    EXPECT_TRUE(kept->isAbandoned());
    EXPECT_FALSE(kept->finish(true));
}

TEST(PortHandover, closingFailsTheWaitingAndRefusesTheLater)
{
    Server server; // not serving
    std::atomic<int> failed{0};
    std::vector<std::thread> callers;
    callers.reserve(4);
    for (int i = 0; i < 4; ++i) {
        callers.emplace_back([&] {
            const Outcome outcome = server.counter.call([](const PortHandover::ReplyPtr &) { FAIL(); }, kLong);
            failed += outcome == Outcome::Failed || outcome == Outcome::Refused ? 1 : 0;
        });
    }
    std::this_thread::sleep_for(kShort);
    server.counter.close();
    for (std::thread &caller : callers)
        caller.join();
    EXPECT_EQ(failed, 4);
    EXPECT_EQ(server.counter.call(succeed, kLong), Outcome::Refused);
    server.counter.open();
    server.start();
    EXPECT_EQ(server.counter.call(succeed, kLong), Outcome::Done);
}

TEST(PortHandover, callHereDoesTheWorkAtOnce)
{
    EXPECT_EQ(PortHandover::callHere(succeed), Outcome::Done);
    EXPECT_EQ(PortHandover::callHere([](const PortHandover::ReplyPtr &) {}), Outcome::Failed);
    PortHandover::ReplyPtr kept;
    EXPECT_EQ(PortHandover::callHere([&kept](const PortHandover::ReplyPtr &reply) { kept = reply; }), Outcome::Done);
}

TEST(PortHandover, readersGetWhatIsThereAtOnceAndTakeNothingAway)
{
    PortHandover counter([] {});
    counter.open();
    counter.addReceived("<SW", 3);
    counter.addReceived("1>", 2);
    EXPECT_EQ(counter.awaitReceived(kLong, counter.visit()), "<SW1>");
    EXPECT_EQ(counter.awaitReceived(Milliseconds(0), counter.visit()), "<SW1>");
    counter.forgetReceived();
    EXPECT_EQ(counter.awaitReceived(kShort, counter.visit()), "");
}

TEST(PortHandover, onlyTheLast64KiBAreKept)
{
    PortHandover counter([] {});
    counter.open();
    const std::string chunk(50000, 'a');
    counter.addReceived(chunk.data(), chunk.size());
    counter.addReceived(chunk.data(), chunk.size());
    counter.addReceived("end", 3);
    const std::string kept = counter.awaitReceived(kLong, counter.visit());
    EXPECT_EQ(kept.size(), 65536U);
    EXPECT_EQ(kept.substr(kept.size() - 4), "aend");
}

TEST(PortHandover, waitingReadersAreWokenByBytes)
{
    PortHandover counter([] {});
    counter.open();
    std::atomic<int> served{0};
    std::vector<std::thread> readers;
    readers.reserve(3);
    for (int i = 0; i < 3; ++i)
        readers.emplace_back([&] { served += counter.awaitReceived(kLong, counter.visit()) == "x" ? 1 : 0; });
    std::this_thread::sleep_for(kShort);
    counter.addReceived("x", 1);
    for (std::thread &reader : readers)
        reader.join();
    EXPECT_EQ(served, 3);
}

TEST(PortHandover, dismissedReadersGoAwayAlsoWhenTheDismissalCameFirst)
{
    PortHandover counter([] {});
    counter.open();
    const unsigned visit = counter.visit();
    counter.dismissReaders();
    EXPECT_EQ(counter.awaitReceived(kLong, visit), "");

    std::thread reader([&counter] { EXPECT_EQ(counter.awaitReceived(kLong, counter.visit()), ""); });
    std::this_thread::sleep_for(kShort);
    counter.close();
    reader.join();
}

// Everything at once, for the thread sanitizer: callers, readers, bytes, and a counter that closes and opens.
TEST(PortHandover, underLoadEveryCallIsAnsweredWithinItsLimit)
{
    Server server;
    server.start();
    std::atomic<bool> stop{false};
    std::atomic<int> timeouts{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            while (!stop)
                timeouts += server.counter.call(succeed, kLong) == Outcome::TimedOut ? 1 : 0;
        });
        threads.emplace_back([&] {
            while (!stop)
                server.counter.awaitReceived(Milliseconds(1), server.counter.visit());
        });
    }
    threads.emplace_back([&] {
        while (!stop) {
            server.counter.addReceived("abc", 3);
            server.counter.forgetReceived();
        }
    });
    for (int i = 0; i < 100; ++i) {
        server.counter.close();
        server.counter.open();
        std::this_thread::sleep_for(Milliseconds(1));
    }
    stop = true;
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(timeouts, 0);
}
