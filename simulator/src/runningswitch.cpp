#include <simulator/runningswitch.h>

#include <utility>

namespace simulator {

RunningSwitch::RunningSwitch(const SimulatorOptions &options)
    : _console(options)
{}

template<typename Function>
auto RunningSwitch::locked(Function function) const
{
    const std::lock_guard<std::mutex> guard(_lock);
    const auto now = std::chrono::duration_cast<Instant>(std::chrono::steady_clock::now() - _start);
    return function(_console, now);
}

template<typename Function>
auto RunningSwitch::changed(Function function)
{
    struct Notice
    {
        RunningSwitch *self;
        ~Notice()
        {
            const std::lock_guard<std::mutex> guard(self->_listenerLock);
            if (self->_listener)
                self->_listener();
        }
    };
    const Notice notice{this};
    return locked(std::move(function));
}

void RunningSwitch::receive(const QByteArray &bytes)
{
    changed([&bytes](SwitchConsole &console, Instant now) { console.receive(bytes, now); });
}

QByteArrayList RunningSwitch::transmit()
{
    return locked([](SwitchConsole &console, Instant now) { return console.transmit(now); });
}

std::optional<std::chrono::milliseconds> RunningSwitch::nextDueIn() const
{
    return locked([](const SwitchConsole &console, Instant now) -> std::optional<std::chrono::milliseconds> {
        const auto due = console.nextDue();
        if (!due)
            return std::nullopt;
        return std::chrono::ceil<std::chrono::milliseconds>(std::max(*due - now, Duration::zero()));
    });
}

bool RunningSwitch::isCablePulled() const
{
    return locked([](const SwitchConsole &console, Instant) { return console.isCablePulled(); });
}

void RunningSwitch::plugIn()
{
    changed([](SwitchConsole &console, Instant) { console.plugIn(); });
}

void RunningSwitch::portReopened()
{
    changed([](SwitchConsole &console, Instant) { console.portReopened(); });
}

void RunningSwitch::addFault(const Fault &fault)
{
    changed([&fault](SwitchConsole &console, Instant) { console.addFault(fault); });
}

void RunningSwitch::clearFaults()
{
    changed([](SwitchConsole &console, Instant) { console.clearFaults(); });
}

bool RunningSwitch::setNeighbour(std::size_t port, bool connected)
{
    return changed([=](SwitchConsole &console, Instant now) { return console.setNeighbour(port, connected, now); });
}

SwitchState RunningSwitch::state() const
{
    return locked([](const SwitchConsole &console, Instant) { return console.state(); });
}

QByteArray RunningSwitch::configurationText() const
{
    return locked([](const SwitchConsole &console, Instant) { return console.configurationText(); });
}

QByteArray RunningSwitch::received() const
{
    return locked([](const SwitchConsole &console, Instant) { return console.received(); });
}

QByteArrayList RunningSwitch::commands() const
{
    return locked([](const SwitchConsole &console, Instant) { return console.commands(); });
}

void RunningSwitch::setListener(std::function<void()> listener)
{
    const std::lock_guard<std::mutex> guard(_listenerLock);
    _listener = std::move(listener);
}

} // namespace simulator
