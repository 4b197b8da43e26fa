#pragma once

#include <simulator/switchconsole.h>

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>

#include <chrono>
#include <functional>
#include <mutex>
#include <optional>

namespace simulator {

/// A simulated switch in real time: switched on when it is made. All calls from any thread. Ports lead to it; the
/// switch stays as it is between them.
class RunningSwitch
{
public:
    explicit RunningSwitch(const SimulatorOptions &options);

    void receive(const QByteArray &bytes);
    QByteArrayList transmit();
    /// Until transmit() has something to do; nothing when only a call from outside can change that.
    std::optional<std::chrono::milliseconds> nextDueIn() const;
    bool isCablePulled() const;
    void plugIn();
    void portReopened();

    void addFault(const Fault &fault);
    void clearFaults();
    bool setNeighbour(std::size_t port, bool connected);

    SwitchState state() const;
    QByteArray configurationText() const;
    QByteArray received() const;
    QByteArrayList commands() const;

    /// Called, from the thread that did it, whenever transmit() or nextDueIn() may answer differently because of a call
    /// from outside. There is one listener, the port in use; an empty one ends it, and is not called any more
    /// afterwards.
    void setListener(std::function<void()> listener);

private:
    template<typename Function>
    auto locked(Function function) const;
    template<typename Function>
    auto changed(Function function);

    const std::chrono::steady_clock::time_point _start = std::chrono::steady_clock::now();
    mutable std::mutex _lock; // guards _console
    mutable SwitchConsole _console;
    std::mutex _listenerLock; // guards _listener, held while it is called
    std::function<void()> _listener;
};

} // namespace simulator
