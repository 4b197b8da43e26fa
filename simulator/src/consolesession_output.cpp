#include "consolesession.h"

#include "text.h"

#include <QtCore/QLocale>

#include <array>
#include <map>
#include <utility>

namespace simulator {

namespace {

constexpr int kLogBuffer = 512;

// Breaks a line at the screen's edge, in the middle of words, as log output does. The first row begins at `column`.
QByteArray wrapped(const QByteArray &line, int column, int width)
{
    if (width <= 0)
        return line;
    QByteArray result;
    int at = 0;
    int room = width - column % width;
    while (line.size() - at > room) {
        result += line.mid(at, room) + kLineEnd;
        at += room;
        room = width;
    }
    return result + line.mid(at);
}

} // namespace

void ConsoleSession::print(const QByteArray &text)
{
    _line.append(text, _now);
}

void ConsoleSession::fail(const QByteArray &text)
{
    QByteArray shown = text;
    if (_options.errorNumbers && shown.startsWith("Error:"))
        shown.replace(0, 6, "Error[" + number(++_errorNumber) + "]:");
    printLine(shown);
}

// --- prompts

QByteArray ConsoleSession::promptText() const
{
    const QByteArray name = _options.promptPrefix + (_view.view == kUserView ? "<" : "[");
    if (_view.view == kUserView)
        return name + _state.running.name + '>';
    const QByteArray mark = _twoStage ? QByteArray(_uncommitted ? "*" : "~") : QByteArray();
    return name + mark + _state.running.name + (_view.name.isEmpty() ? QByteArray() : '-' + _view.name) + ']';
}

void ConsoleSession::showPrompt()
{
    for (const QByteArray &log : qAsConst(_heldLogs))
        printLine(wrapped(log, 0, _dialect.log.wrapAt));
    _heldLogs.clear();
    const QByteArray prompt = promptText();
    QByteArray shown = prompt;
    if (_options.promptNul)
        shown.prepend('\0');
    if (_options.promptBell)
        shown.append('\a');
    print(_promptInstead ? *_promptInstead : shown);
    _promptInstead.reset();
    _line.endReply();
    _mode = Mode::Line;
    _lineKind = LineKind::Command;
    _lineHandler = nullptr;
    _editor.begin(LineKind::Command, prompt.size(), redrawWidth());
}

QByteArray ConsoleSession::reprompt()
{
    return promptText() + _editor.redraw();
}

// --- errors

void ConsoleSession::reject(const CommandMatch &match)
{
    const ErrorTexts &texts = _dialect.errors;
    const std::array<std::pair<CommandMatch::Status, const QByteArray &>, 5> table{
        {{CommandMatch::Status::Unrecognized, texts.unrecognized},
         {CommandMatch::Status::Incomplete, texts.incomplete},
         {CommandMatch::Status::TooMany, texts.tooMany},
         {CommandMatch::Status::Wrong, texts.wrong},
         {CommandMatch::Status::Ambiguous, texts.ambiguous}}};
    printLine(QByteArray((promptText().size() + match.column) % _screenWidth, ' ') + '^');
    for (const auto &entry : table) {
        if (entry.first == match.status)
            fail(entry.second);
    }
}

// --- log lines

QByteArray ConsoleSession::logLine(LogKind kind, const QByteArray &port)
{
    const LogTexts &texts = _dialect.log;
    const QByteArray time = QLocale::c().toString(clock(), texts.timeFormat).toLatin1();
    const QByteArray text = kind == LogKind::Chatter ? texts.chatter.at(_logNumber % texts.chatter.size())
                                                     : texts.head + texts.events.at(static_cast<std::size_t>(kind));
    QByteArray line =
        fill(text, {{"time", time}, {"name", _state.running.name}, {"n", number(_logNumber++)}, {"port", port}});
    _logBuffer << line;
    if (_logBuffer.size() > kLogBuffer)
        _logBuffer.removeFirst();
    return line;
}

QByteArray ConsoleSession::logBurst(int lines)
{
    QByteArray burst;
    for (int i = 0; i < lines; ++i)
        burst += wrapped(logLine(LogKind::Chatter, {}), 0, _dialect.log.wrapAt) + kLineEnd;
    return burst;
}

void ConsoleSession::log(LogKind kind, const QByteArray &port)
{
    if (!_options.logs || _dialect.log.events.at(static_cast<std::size_t>(kind)).isEmpty())
        return;
    _events.add(_now + _options.logDelay, [this, kind, port] { emitLog(logLine(kind, port)); });
}

// A line starts right behind the prompt or what is typed there; inside a reply that is still on its way it takes a line
// of its own.
void ConsoleSession::emitLog(const QByteArray &line)
{
    if (!_loggedIn || !_monitor || !_state.running.infoCenter)
        return;
    const int width = _dialect.log.wrapAt;
    if (_mode == Mode::Busy)
        return printLine(wrapped(line, 0, width));
    if (_mode != Mode::Line || _lineKind != LineKind::Command) {
        _heldLogs << line;
        return;
    }
    if (_line.interject(wrapped(line, 0, width) + kLineEnd))
        return;
    printLine(wrapped(line, promptText().size() + _editor.text().size(), width));
    if (_options.logReprompt)
        print(reprompt());
}

void ConsoleSession::logLinkChanges(const std::function<void()> &change)
{
    const auto ports = [this] {
        std::vector<bool> up;
        for (std::size_t port = 0; port < _state.hardware.ports.size(); ++port)
            up.push_back(_state.isUp(port));
        return up;
    };
    const auto vlanInterfaces = [this] {
        std::map<int, bool> up;
        for (const auto &vlan : _state.running.vlanInterfaces)
            up[vlan.first] = _state.isVlanUp(vlan.first);
        return up;
    };
    const std::vector<bool> portsBefore = ports();
    const std::map<int, bool> vlansBefore = vlanInterfaces();
    change();
    const std::vector<bool> portsNow = ports();
    for (std::size_t port = 0; port < portsNow.size(); ++port) {
        if (portsNow[port] != portsBefore[port])
            log(portsNow[port] ? LogKind::PortUp : LogKind::PortDown, _names.longName(port));
    }
    for (const auto &vlan : vlanInterfaces()) {
        const auto before = vlansBefore.find(vlan.first);
        if (before != vlansBefore.end() && before->second != vlan.second)
            log(vlan.second ? LogKind::VlanInterfaceUp : LogKind::VlanInterfaceDown,
                _names.longName(InterfaceId{InterfaceKind::Vlan, vlan.first, 0}));
    }
}

} // namespace simulator
