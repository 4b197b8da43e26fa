#include "commands.h"
#include "consolesession.h"
#include "text.h"
#include "vlanlist.h"

#include <utility>

namespace simulator {

namespace {

constexpr Duration kSlowCommand = std::chrono::milliseconds(300);

// "Please wait..." at once, "done." on the same line later.
void slowly(ConsoleSession &session, std::function<void()> action)
{
    session.print(session.dialect().answers.slowBegin);
    session.after(session.hurried(kSlowCommand), [&session, action = std::move(action)] {
        action();
        session.printLine(session.dialect().answers.slowEnd);
    });
}

template<typename Action>
void forEach(const VlanSet &vlans, Action action)
{
    for (int vlan = 1; vlan <= kLastVlan; ++vlan) {
        if (vlans.test(static_cast<std::size_t>(vlan)))
            action(vlan);
    }
}

// Its access ports fall back to VLAN 1.
void remove(ConsoleSession &session, int vlan)
{
    SwitchConfiguration &configuration = session.change();
    configuration.vlans.erase(vlan);
    for (PortConfiguration &port : configuration.ports) {
        if (port.vlan == vlan)
            port.vlan = 1;
    }
    for (auto &trunk : configuration.trunks) {
        if (trunk.second.vlan == vlan)
            trunk.second.vlan = 1;
    }
}

// Whoever deletes the VLAN whose view he is in finds himself in the system view.
void leaveViewIfGone(ConsoleSession &session)
{
    if (session.view().view == kVlanView && session.configuration().vlans.count(session.view().vlan) == 0)
        session.enter({kSystemView, {}, {}, 0, {}, {}});
}

VlanConfiguration &vlanOfView(ConsoleSession &session)
{
    return session.change().vlans[session.view().vlan];
}

} // namespace

namespace commands {

void enterVlan(ConsoleSession &session, const Arguments &arguments)
{
    const int vlan = arguments.numbers.front();
    if (session.configuration().vlans.count(vlan) == 0)
        session.change().vlans[vlan] = {};
    session.enter({kVlanView, {}, {}, vlan, "vlan" + number(vlan), {}});
}

void createVlans(ConsoleSession &session, const Arguments &arguments)
{
    slowly(session, [&session, vlans = arguments.vlans] {
        forEach(vlans, [&session](int vlan) { session.change().vlans[vlan]; });
    });
}

void createVlanRange(ConsoleSession &session, const Arguments &arguments)
{
    for (int vlan = arguments.numbers.at(0); vlan <= arguments.numbers.at(1); ++vlan)
        session.change().vlans[vlan];
}

void deleteVlan(ConsoleSession &session, const Arguments &arguments)
{
    const int vlan = arguments.numbers.front();
    if (vlan == 1)
        return session.fail(session.dialect().refusals.defaultVlan);
    if (session.configuration().vlans.count(vlan) == 0)
        return session.fail(session.dialect().refusals.noVlan);
    session.logLinkChanges([&session, vlan] { remove(session, vlan); });
    leaveViewIfGone(session);
}

void deleteVlans(ConsoleSession &session, const Arguments &arguments)
{
    slowly(session, [&session, vlans = VlanSet(arguments.vlans).reset(1)] {
        forEach(vlans, [&session](int vlan) { remove(session, vlan); });
        leaveViewIfGone(session);
    });
}

void vlanName(ConsoleSession &session, const Arguments &arguments)
{
    vlanOfView(session).name = arguments.undo ? QByteArray() : arguments.words.front();
}

void vlanDescription(ConsoleSession &session, const Arguments &arguments)
{
    vlanOfView(session).description = arguments.undo ? QByteArray() : arguments.words.front();
}

// `port …` in the VLAN view: the ports become access ports of it.
void vlanPorts(ConsoleSession &session, const Arguments &arguments)
{
    const int vlan = session.view().vlan;
    for (const InterfaceId &id : arguments.interfaces) {
        PortConfiguration &port = session.change().ports[*session.names().portIndex(id)];
        if (port.trunk || port.linkType == LinkType::Trunk)
            return session.fail(port.trunk ? session.dialect().refusals.isMember
                                           : session.dialect().refusals.notAccess);
        port.linkType = LinkType::Access;
        port.vlan = arguments.undo ? 1 : vlan;
    }
}

void snooping(ConsoleSession &session, const Arguments &arguments)
{
    session.change().snooping = !arguments.undo;
    if (arguments.undo)
        snoopingOff(session, arguments);
}

// Takes the settings of the VLANs with it.
void snoopingOff(ConsoleSession &session, const Arguments &)
{
    SwitchConfiguration &configuration = session.change();
    configuration.snooping = false;
    for (auto &vlan : configuration.vlans)
        vlan.second.snooping = vlan.second.querier = false;
}

void enterSnooping(ConsoleSession &session, const Arguments &)
{
    session.change().snooping = true;
    session.enter({kSnoopingView, {}, {}, 0, QByteArrayLiteral("igmp-snooping"), {}});
}

void vlanSnooping(ConsoleSession &session, const Arguments &arguments)
{
    if (!arguments.undo && !session.configuration().snooping)
        return session.fail(session.dialect().refusals.snoopingOff);
    vlanOfView(session).snooping = !arguments.undo;
    if (arguments.undo)
        vlanOfView(session).querier = false;
}

void vlanQuerier(ConsoleSession &session, const Arguments &arguments)
{
    if (!arguments.undo && !session.configuration().snooping)
        return session.fail(session.dialect().refusals.snoopingOff);
    vlanOfView(session).querier = !arguments.undo;
}

void vlanSnoopingVersion(ConsoleSession &session, const Arguments &arguments)
{
    if (!session.configuration().snooping)
        return session.fail(session.dialect().refusals.snoopingOff);
    vlanOfView(session).snoopingVersion = arguments.numbers.front();
}

void forwardingMode(ConsoleSession &session, const Arguments &arguments)
{
    if (vlanOfView(session).snooping)
        return session.fail(session.dialect().refusals.snoopingOn);
    vlanOfView(session).forwardingByMac = !arguments.undo && arguments.words.front() == "mac";
}

} // namespace commands

} // namespace simulator
