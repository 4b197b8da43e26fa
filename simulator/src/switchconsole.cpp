#include <simulator/switchconsole.h>

#include "consolesession.h"
#include "serialline.h"

#include <algorithm>

namespace simulator {

struct SwitchConsole::Private
{
    explicit Private(const SimulatorOptions &options)
        : line(options.bytesPerSecond, options.largestChunk, options.chunkGap, options.seed)
        , session(options, line)
    {}

    Instant at(Instant time)
    {
        now = std::max(now, time);
        return now;
    }

    SerialLine line;
    ConsoleSession session;
    Instant now{0};
    QByteArray received;
};

SwitchConsole::SwitchConsole(const SimulatorOptions &options)
    : _d(std::make_unique<Private>(options))
{}

SwitchConsole::~SwitchConsole() = default;

void SwitchConsole::receive(const QByteArray &bytes, Instant now)
{
    if (_d->line.isCut())
        return;
    _d->received += bytes;
    _d->session.receive(bytes, _d->at(now));
}

QByteArrayList SwitchConsole::transmit(Instant now)
{
    _d->session.advance(_d->at(now));
    return _d->line.take(_d->now);
}

std::optional<Instant> SwitchConsole::nextDue() const
{
    const auto session = _d->session.nextDue();
    const auto line = _d->line.nextDue();
    if (!session || !line)
        return session ? session : line;
    return std::min(*session, *line);
}

bool SwitchConsole::isCablePulled() const
{
    return _d->line.isCut();
}

void SwitchConsole::plugIn()
{
    _d->line.plugIn();
}

void SwitchConsole::portReopened()
{
    _d->line.wake();
}

void SwitchConsole::addFault(const Fault &fault)
{
    _d->session.addFault(fault);
}

void SwitchConsole::clearFaults()
{
    _d->session.clearFaults();
}

bool SwitchConsole::setNeighbour(std::size_t port, bool connected, Instant now)
{
    if (port >= _d->session.state().hardware.ports.size())
        return false;
    _d->session.advance(_d->at(now));
    _d->session.setNeighbour(port, connected);
    return true;
}

const SwitchState &SwitchConsole::state() const
{
    return static_cast<const ConsoleSession &>(_d->session).state();
}

QByteArray SwitchConsole::configurationText() const
{
    return _d->session.configurationText(state().running);
}

const QByteArray &SwitchConsole::received() const
{
    return _d->received;
}

const QByteArrayList &SwitchConsole::commands() const
{
    return _d->session.commands();
}

} // namespace simulator
