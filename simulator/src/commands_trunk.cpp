#include "commands.h"
#include "consolesession.h"
#include "text.h"

namespace simulator {

namespace {

constexpr std::size_t kMostMembers = 8;

bool isPlain(const PortConfiguration &port, LinkType usual)
{
    return port.linkType == usual && port.vlan == 1 && port.trunkVlan == 1 && port.mirrors.empty()
           && !VlanSet(port.allowedVlans).reset(1).any();
}

// Empty when the port may join.
QByteArray objection(const ConsoleSession &session, std::size_t port, int trunk)
{
    const RefusalTexts &texts = session.dialect().refusals;
    const SwitchConfiguration &configuration = session.configuration();
    const PortConfiguration &joining = configuration.ports[port];
    if (configuration.trunks.count(trunk) == 0)
        return texts.noTrunk;
    if (joining.trunk && *joining.trunk != trunk)
        return texts.isMember;
    if (session.options().family != Family::Hua3 && !joining.trunk
        && !isPlain(joining, session.dialect().defaultLinkType))
        return fill(texts.notDefault, {{"port", session.names().longName(port)}});
    const auto members = configuration.trunkMembers(trunk);
    const auto &ports = session.state().hardware.ports;
    if (!members.empty() && ports[members.front()].kind != ports[port].kind)
        return texts.otherSpeed;
    return members.size() >= kMostMembers && !joining.trunk ? texts.fullTrunk : QByteArray();
}

void join(ConsoleSession &session, std::size_t port, int trunk)
{
    const QByteArray why = objection(session, port, trunk);
    if (!why.isEmpty())
        return session.fail(why);
    session.logLinkChanges([&] { session.change().ports[port].trunk = trunk; });
}

void leave(ConsoleSession &session, std::size_t port)
{
    session.logLinkChanges([&] { session.change().ports[port].trunk.reset(); });
}

} // namespace

namespace commands {

void joinTrunk(ConsoleSession &session, const Arguments &arguments)
{
    join(session, *session.names().portIndex(session.view().interface), arguments.numbers.front());
}

void leaveTrunk(ConsoleSession &session, const Arguments &)
{
    leave(session, *session.names().portIndex(session.view().interface));
}

void trunkPorts(ConsoleSession &session, const Arguments &arguments)
{
    const int trunk = session.view().interface.number;
    if (!session.dialect().answers.slowBegin.isEmpty())
        session.printLine(session.dialect().answers.slowBegin + session.dialect().answers.slowEnd);
    for (const InterfaceId &id : arguments.interfaces) {
        const std::size_t port = *session.names().portIndex(id);
        if (arguments.undo)
            leave(session, port);
        else
            join(session, port, trunk);
    }
}

void trunkMode(ConsoleSession &session, const Arguments &arguments)
{
    const int trunk = session.view().interface.number;
    const bool lacp = !arguments.undo && arguments.line.contains("mode") && !arguments.line.contains("manual");
    const auto group = session.configuration().trunks.find(trunk);
    const bool changes = group != session.configuration().trunks.end() && group->second.lacp != lacp;
    const bool hasMembers = !session.configuration().trunkMembers(trunk).empty();
    if (changes && hasMembers && session.options().family != Family::Hua3)
        return session.fail(session.dialect().refusals.trunkHasMembers);
    session.change().trunks[trunk].lacp = lacp;
}

} // namespace commands

} // namespace simulator
