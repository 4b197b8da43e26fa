#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

/// The counter between the threads that use a port and the one thread that serves it. No Qt in it, so that the thread
/// sanitizer sees all of it.
///
///     caller: call(work) ──► waiting ──► serve(): work(reply) ──► reply->finish(ok) ──► caller goes on
///                   │ limit passed: the reply is abandoned; work not yet begun is never begun
///                   │ closed counter: refused at once
///     port thread: addReceived(bytes) ──► awaitReceived() of any thread
///
/// Never true: a caller that waits longer than its limit; work that runs anywhere but in serve(); work done after
/// close() that was asked for before.
class PortHandover
{
public:
    using Milliseconds = std::chrono::milliseconds;

    enum class Outcome {
        Done,
        Failed,
        TimedOut,
        Refused, // nobody serves the counter
    };

    /// The answer to one call. Only the first finish() counts; an answer that is dropped without one is a failure.
    class Reply
    {
    public:
        ~Reply();
        Reply(const Reply &) = delete;
        Reply &operator=(const Reply &) = delete;

        /// False when nobody waits for the answer any more.
        bool finish(bool ok) const;

        /// Whether the caller has stopped waiting.
        bool isAbandoned() const;

    private:
        friend class PortHandover;
        struct State;
        explicit Reply(std::shared_ptr<State> state);

        const std::shared_ptr<State> _state;
    };
    using ReplyPtr = std::shared_ptr<const Reply>;
    using Work = std::function<void(const ReplyPtr &)>;

    /// `wake` is called on a caller's thread whenever work comes in; it makes the port thread call serve(). The counter
    /// is closed at first.
    explicit PortHandover(std::function<void()> wake);

    void open();

    /// Refuses all further calls, fails the waiting ones, and sends readers away. What has arrived is forgotten.
    void close();

    /// Has the work done by the port thread and waits for the answer, but not longer than `limit`. Not to be called on
    /// the port thread.
    Outcome call(Work work, Milliseconds limit);

    /// The same for the port thread itself: does the work at once. An answer that is still to come counts as Done.
    static Outcome callHere(const Work &work);

    /// Has the work done without waiting. False when refused.
    bool post(Work work);

    /// Does all the work that waits, in the order in which it came. Port thread only.
    void serve();

    /// Keeps what has arrived for awaitReceived(), the last 64 KiB of it.
    void addReceived(const char *bytes, std::size_t size);
    void forgetReceived();

    /// Everything kept, at once if there is anything, otherwise as soon as something arrives; empty after `limit`, or
    /// when readers have been dismissed since the caller asked for `visit`, or on a closed counter.
    std::string awaitReceived(Milliseconds limit, unsigned visit);
    unsigned visit() const;

    /// Says that nothing more will arrive.
    void dismissReaders();

private:
    struct Item
    {
        Work work;
        ReplyPtr reply;
    };
    bool enqueue(Work work, ReplyPtr reply);

    const std::function<void()> _wake;
    mutable std::mutex _lock; // guards everything below
    std::condition_variable _arrived;
    std::deque<Item> _waiting;
    std::string _received;
    unsigned _dismissals = 0;
    bool _open = false;
};
