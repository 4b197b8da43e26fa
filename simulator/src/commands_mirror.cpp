#include "commands.h"
#include "consolesession.h"
#include "text.h"

namespace simulator {

namespace {

MirrorDirection directionOf(const QByteArray &word)
{
    if (word == "inbound")
        return MirrorDirection::Inbound;
    return word == "outbound" ? MirrorDirection::Outbound : MirrorDirection::Both;
}

bool isUsed(const SwitchConfiguration &configuration, int group)
{
    for (const PortConfiguration &port : configuration.ports) {
        if (port.mirrors.count(group) != 0)
            return true;
    }
    return false;
}

// The port that is to take part in a group; nothing, and an error on the console, when either does not exist.
std::optional<std::size_t> portForGroup(ConsoleSession &session, const Arguments &arguments)
{
    if (session.configuration().mirrorGroups.count(arguments.numbers.front()) == 0) {
        session.fail(session.dialect().refusals.noMirrorGroup);
        return std::nullopt;
    }
    const auto port = session.names().portIndex(arguments.interfaces.front());
    if (!port)
        session.fail(session.dialect().errors.wrong);
    return port;
}

} // namespace

namespace commands {

void observePort(ConsoleSession &session, const Arguments &arguments)
{
    const auto port = session.names().portIndex(arguments.interfaces.front());
    if (!port)
        return session.fail(session.dialect().errors.wrong);
    session.change().mirrorGroups[arguments.numbers.front()].monitor = port;
}

// The Hua3 family takes the group's sources with it.
void deleteMirrorGroup(ConsoleSession &session, const Arguments &arguments)
{
    const int group = arguments.numbers.front();
    const RefusalTexts &texts = session.dialect().refusals;
    const bool hua3 = session.options().family == Family::Hua3;
    if (session.configuration().mirrorGroups.count(group) == 0)
        return session.fail(hua3 ? texts.noMirrorGroup : texts.noObservePort);
    if (!hua3 && isUsed(session.configuration(), group))
        return session.fail(texts.observePortUsed);
    session.change().mirrorGroups.erase(group);
    for (PortConfiguration &port : session.change().ports)
        port.mirrors.erase(group);
}

void mirrorPort(ConsoleSession &session, const Arguments &arguments)
{
    const int group = arguments.numbers.front();
    const std::size_t port = *session.names().portIndex(session.view().interface);
    if (session.configuration().mirrorGroups.count(group) == 0)
        return session.fail(session.dialect().refusals.noObservePort);
    if (arguments.undo)
        session.change().ports[port].mirrors.erase(group);
    else
        session.change().ports[port].mirrors[group] = directionOf(arguments.words.front());
}

void createMirrorGroup(ConsoleSession &session, const Arguments &arguments)
{
    session.change().mirrorGroups[arguments.numbers.front()];
}

void mirrorGroupSources(ConsoleSession &session, const Arguments &arguments)
{
    const int group = arguments.numbers.front();
    const auto port = portForGroup(session, arguments);
    if (!port)
        return;
    if (arguments.undo)
        session.change().ports[*port].mirrors.erase(group);
    else
        session.change().ports[*port].mirrors[group] = directionOf(arguments.words.front());
}

void mirrorGroupMonitor(ConsoleSession &session, const Arguments &arguments)
{
    if (const auto port = portForGroup(session, arguments))
        session.change().mirrorGroups[arguments.numbers.front()].monitor = arguments.undo ? std::nullopt : port;
}

void mirrorMonitorHere(ConsoleSession &session, const Arguments &arguments)
{
    Arguments here = arguments;
    here.interfaces = {session.view().interface};
    mirrorGroupMonitor(session, here);
}

} // namespace commands

} // namespace simulator
