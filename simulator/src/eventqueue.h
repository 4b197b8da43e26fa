#pragma once

#include <simulator/instant.h>

#include <functional>
#include <map>
#include <optional>
#include <utility>

namespace simulator {

/// What is to happen later. Events of the same time happen in the order in which they were added.
class EventQueue
{
public:
    using Action = std::function<void()>;

    void add(Instant due, Action action) { _events.emplace(due, std::move(action)); }
    void clear() { _events.clear(); }
    bool isEmpty() const { return _events.empty(); }
    std::optional<Instant> nextDue() const
    {
        return _events.empty() ? std::nullopt : std::optional<Instant>(_events.begin()->first);
    }
    /// Takes the first event off. Only when there is one.
    Action takeFirst()
    {
        Action action = std::move(_events.begin()->second);
        _events.erase(_events.begin());
        return action;
    }

private:
    std::multimap<Instant, Action> _events;
};

} // namespace simulator
