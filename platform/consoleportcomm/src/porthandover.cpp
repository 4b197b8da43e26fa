#include "porthandover.h"

#include <optional>
#include <utility>

namespace {

constexpr std::size_t kKeptBytes = 65536;

} // namespace

struct PortHandover::Reply::State
{
    std::mutex lock; // guards both
    std::condition_variable finished;
    std::optional<bool> answer;
    bool abandoned = false;
};

PortHandover::Reply::Reply(std::shared_ptr<State> state)
    : _state(std::move(state))
{}

PortHandover::Reply::~Reply()
{
    finish(false);
}

bool PortHandover::Reply::finish(bool ok) const
{
    {
        const std::lock_guard<std::mutex> guard(_state->lock);
        if (_state->answer || _state->abandoned)
            return !_state->abandoned;
        _state->answer = ok;
    }
    _state->finished.notify_all();
    return true;
}

bool PortHandover::Reply::isAbandoned() const
{
    const std::lock_guard<std::mutex> guard(_state->lock);
    return _state->abandoned;
}

PortHandover::PortHandover(std::function<void()> wake)
    : _wake(std::move(wake))
{}

void PortHandover::open()
{
    const std::lock_guard<std::mutex> guard(_lock);
    _open = true;
}

void PortHandover::close()
{
    std::deque<Item> dropped; // destroyed, and so answered, without the lock
    {
        const std::lock_guard<std::mutex> guard(_lock);
        _open = false;
        dropped.swap(_waiting);
        _received.clear();
        ++_dismissals;
    }
    _arrived.notify_all();
}

PortHandover::Outcome PortHandover::call(Work work, Milliseconds limit)
{
    const auto state = std::make_shared<Reply::State>();
    if (!enqueue(std::move(work), ReplyPtr(new Reply(state))))
        return Outcome::Refused;

    std::unique_lock<std::mutex> guard(state->lock);
    state->finished.wait_for(guard, limit, [&state] { return state->answer.has_value(); });
    if (state->answer)
        return *state->answer ? Outcome::Done : Outcome::Failed;
    state->abandoned = true;
    return Outcome::TimedOut;
}

PortHandover::Outcome PortHandover::callHere(const Work &work)
{
    const auto state = std::make_shared<Reply::State>();
    {
        const ReplyPtr reply(new Reply(state));
        work(reply);
        const std::lock_guard<std::mutex> guard(state->lock);
        if (!state->answer && reply.use_count() > 1)
            return Outcome::Done;
    }
    const std::lock_guard<std::mutex> guard(state->lock);
    return state->answer.value_or(false) ? Outcome::Done : Outcome::Failed;
}

bool PortHandover::post(Work work)
{
    return enqueue(std::move(work), ReplyPtr(new Reply(std::make_shared<Reply::State>())));
}

bool PortHandover::enqueue(Work work, ReplyPtr reply)
{
    {
        const std::lock_guard<std::mutex> guard(_lock);
        if (!_open)
            return false;
        _waiting.push_back({std::move(work), std::move(reply)});
    }
    _wake();
    return true;
}

void PortHandover::serve()
{
    for (;;) {
        Item item;
        {
            const std::lock_guard<std::mutex> guard(_lock);
            if (_waiting.empty())
                return;
            item = std::move(_waiting.front());
            _waiting.pop_front();
        }
        if (!item.reply->isAbandoned())
            item.work(item.reply);
    }
}

void PortHandover::addReceived(const char *bytes, std::size_t size)
{
    {
        const std::lock_guard<std::mutex> guard(_lock);
        _received.append(bytes, size);
        if (_received.size() > kKeptBytes)
            _received.erase(0, _received.size() - kKeptBytes);
    }
    _arrived.notify_all();
}

void PortHandover::forgetReceived()
{
    const std::lock_guard<std::mutex> guard(_lock);
    _received.clear();
}

std::string PortHandover::awaitReceived(Milliseconds limit, unsigned visit)
{
    std::unique_lock<std::mutex> guard(_lock);
    _arrived.wait_for(guard, limit, [&] { return !_open || !_received.empty() || _dismissals != visit; });
    return _received;
}

unsigned PortHandover::visit() const
{
    const std::lock_guard<std::mutex> guard(_lock);
    return _dismissals;
}

void PortHandover::dismissReaders()
{
    {
        const std::lock_guard<std::mutex> guard(_lock);
        ++_dismissals;
    }
    _arrived.notify_all();
}
