#include "consolesession.h"

#include "text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace simulator {

namespace {

constexpr int kManagementLevel = 3;

} // namespace

void ConsoleSession::commandEntered(const QByteArray &line)
{
    const QByteArray text = line.simplified();
    if (text.isEmpty())
        return;
    _editor.remember(line);
    _commands << text;
    if (!strikeCommand(text))
        runCommand(line);
}

// A view's own commands come first; those of the system view can be typed in every view below it.
unsigned ConsoleSession::searchedViews() const
{
    if (_view.view == kUserView)
        return kUserView;
    const unsigned own = _view.view | kSystemView;
    return _view.view == kGroupView ? own | kPortView : own;
}

// Cuts `| include WORD` and the like off a display command.
QByteArray ConsoleSession::takeFilter(const QByteArray &line)
{
    using Kind = LineFilter::Kind;
    static const std::array<std::pair<const char *, Kind>, 3> kKinds{
        {{"begin", Kind::Begin}, {"include", Kind::Include}, {"exclude", Kind::Exclude}}};
    _filter.reset();
    const int bar = line.indexOf(" | ");
    if (bar < 0 || !isBeginning(line.simplified().split(' ').first(), "display"))
        return line;
    const QByteArray tail = line.mid(bar + 3).trimmed();
    const int blank = tail.indexOf(' ');
    for (const auto &kind : kKinds) {
        if (blank > 0 && isBeginning(tail.left(blank), kind.first))
            _filter = LineFilter{kind.second, tail.mid(blank + 1)};
    }
    return _filter ? line.left(bar) : line;
}

void ConsoleSession::runCommand(const QByteArray &line)
{
    const CommandMatch match = _grammar.match(takeFilter(line), searchedViews(), _names);
    if (match.status != CommandMatch::Status::Complete)
        return reject(match);
    if (match.row->level > std::min(_options.userLevel, kManagementLevel))
        return fail(_dialect.errors.permission);
    const bool forMembers = _view.view == kGroupView && (match.row->views & kPortView) != 0
                            && (match.row->views & (kGroupView | kSystemView)) == 0;
    if (forMembers)
        runForGroup(match);
    else
        match.row->run(*this, match.arguments);
}

// Many releases echo the command once for each member, behind the member's own prompt.
void ConsoleSession::runForGroup(const CommandMatch &match)
{
    const ViewState group = _view;
    for (const std::size_t port : group.ports) {
        _view = {kPortView, _names.id(port), {}, 0, _names.longName(port), {}};
        if (_options.groupEcho && _options.family != Family::Hua3)
            printLine(promptText() + match.arguments.line);
        match.row->run(*this, match.arguments);
        if (_view.view != kPortView)
            return; // the command has left the group
    }
    _view = group;
}

// --- Tab and ?

void ConsoleSession::complete()
{
    if (_lineKind != LineKind::Command)
        return;
    const QByteArrayList words = _grammar.expected(_editor.text(), searchedViews(), _names);
    const int typed = _editor.text().size() - (_editor.text().lastIndexOf(' ') + 1);
    if (typed > 0 && words.size() == 1)
        print(_editor.insert(words.first().mid(typed) + ' '));
}

void ConsoleSession::help()
{
    const QByteArrayList words = _grammar.expected(_editor.text(), searchedViews(), _names);
    if (words.isEmpty())
        reject(_grammar.match(_editor.text(), searchedViews(), _names));
    for (const QByteArray &word : words)
        printLine("  " + word);
    print(reprompt());
}

// --- faults

bool ConsoleSession::concernsLine(FaultKind kind)
{
    switch (kind) {
    case FaultKind::Cut:
    case FaultKind::Hang:
    case FaultKind::Garbage:
    case FaultKind::Noise:
    case FaultKind::Half:
    case FaultKind::Logs:
    case FaultKind::Nul:
        return true;
    case FaultKind::Delay:
    case FaultKind::WrongPrompt:
    case FaultKind::NoPrompt:
    case FaultKind::Refuse:
    case FaultKind::Question:
    case FaultKind::Logout:
    case FaultKind::Reboot:
        return false;
    }
    return false;
}

void ConsoleSession::addFault(const Fault &fault)
{
    if (concernsLine(fault.kind) && fault.command.isEmpty() && fault.line == 0)
        armLine(fault);
    else
        _faults.push_back({fault, fault.times > 0 ? fault.times : -1, _commands.size()});
}

void ConsoleSession::clearFaults()
{
    _faults.clear();
    _line.clearFaults();
}

void ConsoleSession::armLine(const Fault &fault)
{
    switch (fault.kind) {
    case FaultKind::Cut:
        return _line.cutAfter(fault.after);
    case FaultKind::Hang:
        return _line.hangAfter(fault.after, fault.time);
    case FaultKind::Garbage:
        return _line.insertAfter(fault.after, _line.garbage(fault.amount), false);
    case FaultKind::Noise:
        return _line.insertAfter(fault.after, QByteArray(fault.amount, '\xff'), false);
    case FaultKind::Half:
        return _line.dropAfter(fault.after);
    case FaultKind::Logs:
        return _line.insertAfter(fault.after, logBurst(fault.amount), true);
    case FaultKind::Nul:
        return _line.padAfter(fault.after, fault.amount);
    case FaultKind::Delay:
    case FaultKind::WrongPrompt:
    case FaultKind::NoPrompt:
    case FaultKind::Refuse:
    case FaultKind::Question:
    case FaultKind::Logout:
    case FaultKind::Reboot:
        return;
    }
}

bool ConsoleSession::hits(const ActiveFault &active, const QByteArray &line) const
{
    if (active.left == 0)
        return false;
    if (active.fault.line > 0)
        return _commands.size() - active.armedAt == active.fault.line;
    return active.fault.command.isEmpty() || isBeginning(active.fault.command.simplified(), line);
}

// Whether something else happens in the command's place.
bool ConsoleSession::strikeCommand(const QByteArray &line)
{
    for (ActiveFault &active : _faults) {
        if (!hits(active, line))
            continue;
        if (active.left > 0)
            --active.left;
        const Fault fault = active.fault; // what follows may add faults
        if (concernsLine(fault.kind))
            armLine(fault);
        else if (apply(fault, line))
            return true;
    }
    return false;
}

bool ConsoleSession::apply(const Fault &fault, const QByteArray &line)
{
    switch (fault.kind) {
    case FaultKind::Delay:
        after(fault.time, [this, line] { runCommand(line); });
        return true;
    case FaultKind::WrongPrompt:
        _promptInstead = fault.text;
        return false;
    case FaultKind::NoPrompt:
        _promptInstead = QByteArray();
        return false;
    case FaultKind::Refuse:
        if (fault.text.isEmpty())
            reject({CommandMatch::Status::Unrecognized, 0, nullptr, {}});
        else
            fail(fault.text);
        return true;
    case FaultKind::Question:
        askYesNo(fault.text, [this, line](bool yes) {
            if (yes)
                runCommand(line);
        });
        return true;
    case FaultKind::Logout:
        logout();
        return true;
    case FaultKind::Reboot:
        reboot();
        return true;
    case FaultKind::Cut:
    case FaultKind::Hang:
    case FaultKind::Garbage:
    case FaultKind::Noise:
    case FaultKind::Half:
    case FaultKind::Logs:
    case FaultKind::Nul:
        return false;
    }
    return false;
}

} // namespace simulator
