#include "commands.h"
#include "consolesession.h"
#include "text.h"

#include <functional>

namespace simulator {

namespace {

std::optional<std::size_t> portOfView(const ConsoleSession &session)
{
    return session.names().portIndex(session.view().interface);
}

BridgedInterface &bridgedOfView(ConsoleSession &session)
{
    const InterfaceId &id = session.view().interface;
    SwitchConfiguration &configuration = session.change();
    if (const auto port = portOfView(session))
        return configuration.ports[*port];
    if (id.kind == InterfaceKind::Trunk)
        return configuration.trunks[id.number];
    return configuration.management;
}

// The Hua3 family hands the settings of a group on to its members.
void setBridged(ConsoleSession &session, const std::function<void(BridgedInterface &)> &set)
{
    set(bridgedOfView(session));
    if (session.options().family != Family::Hua3 || session.view().view != kTrunkView)
        return;
    for (const std::size_t member : session.configuration().trunkMembers(session.view().interface.number))
        set(session.change().ports[member]);
}

// On the Huawei family a member's VLANs are set on its group only.
bool refuseMember(ConsoleSession &session)
{
    const auto port = portOfView(session);
    if (session.options().family == Family::Hua3 || !port || !session.configuration().ports[*port].trunk)
        return false;
    session.fail(session.dialect().refusals.isMember);
    return true;
}

bool hasTrunkSettings(const BridgedInterface &interface)
{
    return VlanSet(interface.allowedVlans).reset(1).any() || interface.trunkVlan != 1;
}

void resetVlans(BridgedInterface &interface, LinkType type)
{
    interface.linkType = type;
    interface.vlan = interface.trunkVlan = 1;
    interface.allowedVlans = VlanSet().set(1);
}

LinkType linkTypeOf(const QByteArray &word)
{
    if (word == "access")
        return LinkType::Access;
    return word == "trunk" ? LinkType::Trunk : LinkType::Hybrid;
}

View viewOf(InterfaceKind kind)
{
    switch (kind) {
    case InterfaceKind::Gigabit:
    case InterfaceKind::TenGigabit:
    case InterfaceKind::FortyGigabit:
        return kPortView;
    case InterfaceKind::Trunk:
        return kTrunkView;
    case InterfaceKind::Vlan:
        return kVlanInterfaceView;
    case InterfaceKind::Management:
    case InterfaceKind::Null:
        return kManagementView;
    }
    return kManagementView;
}

// Logical interfaces come into being when they are entered.
void createIfMissing(ConsoleSession &session, const InterfaceId &id)
{
    const SwitchConfiguration &configuration = session.configuration();
    if (id.sub > 0) {
        const auto port = session.names().portIndex({id.kind, id.number, 0});
        if (port && configuration.ports[*port].subInterfaces.count(id.sub) == 0)
            session.change().ports[*port].subInterfaces.insert(id.sub);
    } else if (id.kind == InterfaceKind::Trunk && configuration.trunks.count(id.number) == 0) {
        session.change().trunks[id.number].linkType = session.dialect().defaultLinkType;
    } else if (id.kind == InterfaceKind::Vlan && configuration.vlanInterfaces.count(id.number) == 0) {
        session.change().vlanInterfaces[id.number] = {};
    }
}

void deleteTrunk(ConsoleSession &session, int trunk)
{
    const auto members = session.configuration().trunkMembers(trunk);
    if (session.configuration().trunks.count(trunk) == 0)
        return session.fail(session.dialect().refusals.noTrunk);
    if (!members.empty() && session.options().family != Family::Hua3)
        return session.fail(session.dialect().refusals.trunkHasMembers);
    for (const std::size_t member : members) {
        session.change().ports[member].trunk.reset();
        resetVlans(session.change().ports[member], session.dialect().defaultLinkType);
    }
    session.change().trunks.erase(trunk);
}

// Whoever deletes the interface whose view he is in finds himself in the system view.
void leaveViewOf(ConsoleSession &session, const InterfaceId &id)
{
    if ((session.view().view & kInterfaceViews) != 0 && session.view().interface == id)
        session.enter({kSystemView, {}, {}, 0, {}, {}});
}

} // namespace

namespace commands {

void enterInterface(ConsoleSession &session, const Arguments &arguments)
{
    const InterfaceId id = arguments.interfaces.front();
    if (id.kind == InterfaceKind::Vlan && session.configuration().vlans.count(id.number) == 0)
        return session.fail(session.dialect().refusals.noVlan);
    createIfMissing(session, id);
    session.enter({id.sub > 0 ? kManagementView : viewOf(id.kind), id, {}, 0, session.names().longName(id), {}});
}

void deleteInterface(ConsoleSession &session, const Arguments &arguments)
{
    const InterfaceId id = arguments.interfaces.front();
    const auto port = session.names().portIndex({id.kind, id.number, 0});
    if (id.kind == InterfaceKind::Trunk)
        session.logLinkChanges([&session, id] { deleteTrunk(session, id.number); });
    else if (id.kind == InterfaceKind::Vlan)
        session.change().vlanInterfaces.erase(id.number);
    else if (port && id.sub > 0)
        session.change().ports[*port].subInterfaces.erase(id.sub);
    else
        return session.fail(session.dialect().errors.wrong);
    if (id.kind != InterfaceKind::Trunk || session.configuration().trunks.count(id.number) == 0)
        leaveViewOf(session, id);
}

void enterPorts(ConsoleSession &session, const Arguments &arguments)
{
    std::vector<std::size_t> ports;
    for (const InterfaceId &id : arguments.interfaces)
        ports.push_back(*session.names().portIndex(id));
    session.enter({kGroupView, {}, ports, 0, session.dialect().groupPrompt, {}});
}

void groupMembers(ConsoleSession &session, const Arguments &arguments)
{
    ViewState group = session.view();
    group.view = kGroupView;
    for (const InterfaceId &id : arguments.interfaces)
        group.ports.push_back(*session.names().portIndex(id));
    session.enter(group);
}

void enterGroup(ConsoleSession &session, const Arguments &arguments)
{
    session.enter({kGroupDefinitionView, {}, {}, 0, session.dialect().groupPrompt + '-' + arguments.words.front(), {}});
}

void shutdown(ConsoleSession &session, const Arguments &arguments)
{
    session.logLinkChanges([&] { bridgedOfView(session).shutdown = !arguments.undo; });
}

void description(ConsoleSession &session, const Arguments &arguments)
{
    bridgedOfView(session).description = arguments.undo ? QByteArray() : arguments.words.front();
}

void linkType(ConsoleSession &session, const Arguments &arguments)
{
    if (refuseMember(session))
        return;
    const LinkType wanted = arguments.undo ? session.dialect().defaultLinkType : linkTypeOf(arguments.words.front());
    const BridgedInterface &now = bridgedOfView(session);
    const bool changes = now.linkType != wanted;
    if (changes && session.options().family != Family::Hua3 && (hasTrunkSettings(now) || now.vlan != 1))
        return session.fail(session.dialect().refusals.renewDefaults);
    session.logLinkChanges([&] {
        setBridged(session, [wanted](BridgedInterface &interface) {
            if (interface.linkType != wanted)
                resetVlans(interface, wanted);
        });
    });
}

void accessVlan(ConsoleSession &session, const Arguments &arguments)
{
    if (refuseMember(session))
        return;
    const int vlan = arguments.undo ? 1 : arguments.numbers.front();
    if (bridgedOfView(session).linkType != LinkType::Access)
        return session.fail(session.dialect().refusals.notAccess);
    if (session.configuration().vlans.count(vlan) == 0)
        return session.fail(session.dialect().refusals.noVlan);
    session.logLinkChanges(
        [&] { setBridged(session, [vlan](BridgedInterface &interface) { interface.vlan = vlan; }); });
}

void trunkVlans(ConsoleSession &session, const Arguments &arguments)
{
    if (refuseMember(session))
        return;
    if (bridgedOfView(session).linkType != LinkType::Trunk)
        return session.fail(session.dialect().refusals.notTrunk);
    session.logLinkChanges([&] {
        setBridged(session, [&arguments](BridgedInterface &interface) {
            if (arguments.undo)
                interface.allowedVlans &= ~arguments.vlans;
            else
                interface.allowedVlans |= arguments.vlans;
        });
    });
}

void trunkDefaultVlan(ConsoleSession &session, const Arguments &arguments)
{
    if (refuseMember(session))
        return;
    if (bridgedOfView(session).linkType != LinkType::Trunk)
        return session.fail(session.dialect().refusals.notTrunk);
    const int vlan = arguments.undo ? 1 : arguments.numbers.front();
    setBridged(session, [vlan](BridgedInterface &interface) { interface.trunkVlan = vlan; });
}

void negotiation(ConsoleSession &session, const Arguments &arguments)
{
    const auto port = portOfView(session);
    if (!port)
        return session.fail(session.dialect().refusals.noNegotiation);
    const bool fast = session.state().hardware.ports[*port].kind != InterfaceKind::Gigabit;
    if (fast && !session.options().negotiationOnFibre)
        return session.fail(session.dialect().refusals.noNegotiation);
    PortConfiguration &configuration = session.change().ports[*port];
    configuration.negotiation = !arguments.undo;
    if (!arguments.undo)
        configuration.speed = configuration.duplex = QByteArray();
}

namespace {

// On the Huawei family only behind `undo negotiation auto`.
void setManually(ConsoleSession &session, QByteArray PortConfiguration::*setting, const Arguments &arguments)
{
    PortConfiguration &port = session.change().ports[*portOfView(session)];
    const bool automatic = arguments.undo || arguments.words.front() == "auto";
    if (session.options().family != Family::Hua3 && port.negotiation && !automatic)
        return session.fail(session.dialect().refusals.negotiating);
    port.*setting = automatic ? QByteArray() : arguments.words.front();
}

} // namespace

void speed(ConsoleSession &session, const Arguments &arguments)
{
    setManually(session, &PortConfiguration::speed, arguments);
}

void duplex(ConsoleSession &session, const Arguments &arguments)
{
    setManually(session, &PortConfiguration::duplex, arguments);
}

void power(ConsoleSession &session, const Arguments &arguments)
{
    const std::size_t port = *portOfView(session);
    if (session.state().hardware.ports[port].fibre)
        return session.fail(session.dialect().refusals.noPower);
    session.change().ports[port].poe = !arguments.undo;
}

// Leaves the port shut down.
void clearInterface(ConsoleSession &session, const Arguments &)
{
    session.askYesNo(QByteArrayLiteral("Warning: All the configurations of the interface will be deleted, and the port "
                                       "will be shut down. Continue? [Y/N]:"),
                     [&session](bool yes) {
                         if (!yes)
                             return;
                         session.logLinkChanges([&session] {
                             PortConfiguration cleared;
                             cleared.linkType = session.dialect().defaultLinkType;
                             cleared.shutdown = true;
                             session.change().ports[*portOfView(session)] = cleared;
                         });
                         session.printLine(QByteArrayLiteral("Info: Total 1 interface(s) are cleared."));
                     });
}

} // namespace commands

} // namespace simulator
