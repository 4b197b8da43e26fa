#include "consolesession.h"

#include "hardware.h"
#include "text.h"

#include <algorithm>
#include <utility>

namespace simulator {

namespace {

std::optional<Instant> earlier(std::optional<Instant> one, std::optional<Instant> other)
{
    if (!one || !other)
        return one ? one : other;
    return std::min(*one, *other);
}

} // namespace

ConsoleSession::ConsoleSession(const SimulatorOptions &options, SerialLine &line)
    : _options(options)
    , _line(line)
    , _state({makeHardware(options), {}, {}, {}, 1})
    , _dialect(makeDialect(options))
    , _names(_dialect.interfaces, _state.hardware)
    , _grammar(_dialect.commands)
    , _pager(options.paging == Paging::Off ? 0 : options.screenLines, options.eraseColumns)
    , _password(options.password)
    , _initialPassword(options.initialPasswordQuestion)
    , _firstLogin(options.firstLoginPassword)
{
    _state.running = _dialect.factoryConfiguration(_options, _state.hardware);
    if (_options.startupConfiguration) {
        furnish(_options, *this, _state.running);
        _state.saved = _state.running;
    }
    if (_options.logEvery > Duration::zero())
        _nextChatter = _options.logEvery;
    for (const Fault &fault : _options.faults)
        addFault(fault);
    begin(_options.start);
}

ConsoleSession::~ConsoleSession() = default;

// --- where it starts

void ConsoleSession::begin(Start start)
{
    switch (start) {
    case Start::Idle:
        return _dialect.session.automaticConfiguration.isEmpty() || _state.saved ? idle() : automaticConfiguration();
    case Start::LoginPrompt:
        _mode = Mode::Busy;
        beginLogin();
        return settle();
    case Start::UserView:
        return beginLoggedIn({});
    case Start::SystemView:
        return beginLoggedIn("system-view");
    case Start::HalfTyped:
        beginLoggedIn({});
        return print(_editor.insert("display interf"));
    case Start::Pager:
        return beginLoggedIn("display current-configuration");
    case Start::Question:
        return beginLoggedIn("save");
    case Start::Booting:
        return reboot();
    }
}

void ConsoleSession::beginLoggedIn(const QByteArray &command)
{
    _mode = Mode::Busy;
    _loggedIn = true;
    if (!command.isEmpty())
        runCommand(command);
    settle();
}

// --- time

std::optional<Instant> ConsoleSession::nextDue() const
{
    return earlier(earlier(_events.nextDue(), _idleAt), _nextChatter);
}

void ConsoleSession::advance(Instant now)
{
    for (auto due = nextDue(); due && *due <= now; due = nextDue()) {
        _now = std::max(_now, *due);
        if (_events.nextDue() == due)
            _events.takeFirst()();
        else if (_idleAt == due)
            idleTimeout();
        else
            logChatter();
        feed();
    }
    _now = std::max(_now, now);
}

Duration ConsoleSession::hurried(Duration time) const
{
    return time / std::max(1, _options.hurry);
}

QDateTime ConsoleSession::clock() const
{
    return _options.clock.addMSecs(std::chrono::duration_cast<std::chrono::milliseconds>(_now).count());
}

void ConsoleSession::after(Duration delay, std::function<void()> action)
{
    _waiting = true;
    _mode = Mode::Busy;
    _events.add(_now + delay, [this, action = std::move(action)] {
        _waiting = false;
        action();
        settle();
    });
}

void ConsoleSession::idleTimeout()
{
    _idleAt.reset();
    if (_mode == Mode::Line || _mode == Mode::Pager)
        idle();
}

void ConsoleSession::logChatter()
{
    _nextChatter = _now + _options.logEvery;
    emitLog(logLine(LogKind::Chatter, {}));
}

// --- configuration

const SwitchConfiguration &ConsoleSession::configuration() const
{
    return _twoStage ? _state.candidate : _state.running;
}

SwitchConfiguration &ConsoleSession::change()
{
    _uncommitted |= _twoStage;
    return _twoStage ? _state.candidate : _state.running;
}

void ConsoleSession::beginConfiguration(bool twoStage)
{
    _twoStage = twoStage && _options.twoStage;
    _uncommitted = false;
    _state.candidate = _state.running;
    enter({kSystemView, {}, {}, 0, {}, {}});
}

void ConsoleSession::commit()
{
    logLinkChanges([this] { _state.running = _state.candidate; });
    _uncommitted = false;
}

void ConsoleSession::forgetUncommitted()
{
    _state.candidate = _state.running;
    _uncommitted = false;
}

void ConsoleSession::enter(const ViewState &view)
{
    _view = view;
    if (view.view == kUserView)
        _twoStage = _uncommitted = false;
}

QByteArrayList ConsoleSession::configurationLines(const SwitchConfiguration &configuration) const
{
    QByteArrayList lines = _dialect.configurationHead;
    lines << QByteArrayLiteral("#");
    for (const OtherSection &section : _dialect.sections(*this, configuration)) {
        if (!section.header.isEmpty())
            lines << section.header;
        for (const QByteArray &line : section.lines)
            lines << (section.header.isEmpty() ? line : ' ' + line);
        lines << QByteArrayLiteral("#");
    }
    return lines << QByteArrayLiteral("return");
}

QByteArray ConsoleSession::configurationText(const SwitchConfiguration &configuration) const
{
    return joinLines(configurationLines(configuration));
}

void ConsoleSession::setNeighbour(std::size_t port, bool connected)
{
    logLinkChanges([this, port, connected] { _state.hardware.ports[port].cable = connected; });
}

// --- end of a session

void ConsoleSession::logout()
{
    idle();
}

void ConsoleSession::reboot()
{
    _events.clear();
    _heldLogs.clear();
    _waiting = _loggedIn = false;
    _mode = Mode::Deaf;
    _idleAt.reset();
    _view = {};
    _twoStage = _uncommitted = false;
    _state.running = _state.saved ? *_state.saved : _dialect.factoryConfiguration(_options, _state.hardware);
    for (const BootStep &step : _dialect.boot)
        _events.add(_now + hurried(_options.bootTime) * step.thousandths / 1000, [this, step] {
            print(fill(step.text, {{"board", _state.hardware.boardType}, {"file", _dialect.startupFile}}));
        });
    _events.add(_now + hurried(_options.bootTime), [this] { booted(); });
}

void ConsoleSession::booted()
{
    ++_state.starts;
    _bootedAt = _now;
    _failures = 0;
    if (_dialect.session.automaticConfiguration.isEmpty() || _state.saved)
        idle();
    else
        automaticConfiguration();
}

} // namespace simulator
