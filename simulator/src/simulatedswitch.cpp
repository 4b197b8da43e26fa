#include <simulator/simulatedswitch.h>

#include "pseudoterminal.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace simulator {

namespace {

constexpr std::chrono::seconds kPlugInLimit{5};

} // namespace

struct SimulatedSwitch::Private
{
    explicit Private(const SimulatorOptions &options)
        : device(options)
    {}

    void run();
    void send();
    void publish();
    void cutOrPlugIn();

    RunningSwitch device;
    PseudoTerminal terminal; // of the thread, but for wake()
    std::thread thread;
    std::atomic<bool> stopping{false};

    mutable std::mutex lock; // guards what follows
    std::condition_variable plugged;
    bool wantsPlugIn = false;
    QString path, error;

    // Of the thread
    QByteArray unsent;
    std::atomic<bool> userPresent{false}; // written by the thread
};

// Lets others see what the terminal is now.
void SimulatedSwitch::Private::publish()
{
    const std::lock_guard<std::mutex> guard(lock);
    path = terminal.path();
    error = terminal.errorString();
}

void SimulatedSwitch::Private::cutOrPlugIn()
{
    if (terminal.isOpen() && device.isCablePulled()) {
        terminal.close();
        unsent.clear();
        userPresent = false;
        publish();
    }
    std::unique_lock<std::mutex> guard(lock);
    if (!wantsPlugIn)
        return;
    guard.unlock();
    if (!terminal.isOpen())
        terminal.open();
    publish();
    guard.lock();
    wantsPlugIn = false;
    plugged.notify_all();
}

void SimulatedSwitch::Private::send()
{
    unsent += device.transmit().join();
    if (!userPresent)
        unsent.clear();
    else if (!unsent.isEmpty())
        unsent.remove(0, terminal.write(unsent));
}

void SimulatedSwitch::Private::run()
{
    while (!stopping.load(std::memory_order_relaxed)) {
        send();
        cutOrPlugIn();
        const auto wait = unsent.isEmpty() ? device.nextDueIn() : std::optional<std::chrono::milliseconds>();
        const PseudoTerminal::Events events = terminal.wait(wait, !unsent.isEmpty());
        if (events.userPresent && !userPresent)
            device.portReopened();
        userPresent = events.userPresent;
        if (events.readable)
            device.receive(terminal.read());
    }
    terminal.close();
    userPresent = false;
}

SimulatedSwitch::SimulatedSwitch(const SimulatorOptions &options)
    : _d(std::make_unique<Private>(options))
{}

SimulatedSwitch::~SimulatedSwitch()
{
    stop();
}

bool SimulatedSwitch::isAvailable()
{
    return PseudoTerminal::isAvailable();
}

QString SimulatedSwitch::start()
{
    if (isRunning())
        return path();
    _d->terminal.open();
    _d->publish();
    if (!_d->terminal.isOpen())
        return {};
    QString made = _d->path;
    _d->stopping = false;
    _d->device.setListener([d = _d.get()] { d->terminal.wake(); });
    _d->thread = std::thread([d = _d.get()] { d->run(); });
    return made;
}

void SimulatedSwitch::stop()
{
    if (!isRunning())
        return;
    _d->device.setListener({});
    _d->stopping = true;
    _d->terminal.wake();
    _d->thread.join();
    _d->publish();
}

bool SimulatedSwitch::isRunning() const
{
    return _d->thread.joinable();
}

QString SimulatedSwitch::path() const
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    return _d->path;
}

QString SimulatedSwitch::errorString() const
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    return _d->error;
}

QString SimulatedSwitch::plugIn()
{
    if (!isRunning())
        return {};
    _d->device.plugIn();
    std::unique_lock<std::mutex> guard(_d->lock);
    _d->wantsPlugIn = true;
    _d->terminal.wake();
    _d->plugged.wait_for(guard, kPlugInLimit, [this] { return !_d->wantsPlugIn; });
    return _d->path;
}

bool SimulatedSwitch::isPortOpen() const
{
    return _d->userPresent;
}

RunningSwitch &SimulatedSwitch::device()
{
    return _d->device;
}

const RunningSwitch &SimulatedSwitch::device() const
{
    return _d->device;
}

} // namespace simulator
