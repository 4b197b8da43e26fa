#include "commands.h"
#include "listings.h"
#include "text.h"

#include <algorithm>

// Interface, VLAN and multicast listings of the Hua3 family.

namespace simulator {

namespace {

QByteArray linkState(bool shut, bool up)
{
    if (shut)
        return QByteArrayLiteral("ADM");
    return up ? QByteArrayLiteral("UP") : QByteArrayLiteral("DOWN");
}

QByteArray typeLetter(LinkType type)
{
    switch (type) {
    case LinkType::Access:
        return QByteArrayLiteral("A");
    case LinkType::Trunk:
        return QByteArrayLiteral("T");
    case LinkType::Hybrid:
        return QByteArrayLiteral("H");
    }
    return {};
}

QByteArray speedText(InterfaceKind kind)
{
    if (kind == InterfaceKind::TenGigabit)
        return QByteArrayLiteral("10G(a)");
    return kind == InterfaceKind::FortyGigabit ? QByteArrayLiteral("40G(a)") : QByteArrayLiteral("1G(a)");
}

QByteArray bridgeRow(const QByteArray &name, const BridgedInterface &interface, bool up, const QByteArray &speed,
                     const QByteArray &duplex)
{
    const int vlan = interface.linkType == LinkType::Trunk ? interface.trunkVlan : interface.vlan;
    return left(name, 21) + left(linkState(interface.shutdown, up), 5) + left(up ? speed : QByteArrayLiteral("auto"), 8)
           + left(up ? duplex : QByteArrayLiteral("A"), 7) + left(typeLetter(interface.linkType), 5)
           + left(number(vlan), 5) + interface.description;
}

QByteArrayList bridgeTable(const ConsoleSession &session)
{
    QByteArrayList lines{"Brief information on interfaces in bridge mode:",
                         "Link: ADM - administratively down; Stby - standby",
                         "Speed: (a) - auto",
                         "Duplex: (a)/A - auto; H - half; F - full",
                         "Type: A - access; T - trunk; H - hybrid",
                         "Interface            Link Speed   Duplex Type PVID Description"};
    const SwitchConfiguration &running = session.running();
    for (const auto &trunk : running.trunks)
        lines << bridgeRow(session.names().shortName(InterfaceId{InterfaceKind::Trunk, trunk.first, 0}), trunk.second,
                           session.state().isTrunkUp(trunk.first), "1G(a)", "F(a)");
    for (std::size_t port = 0; port < running.ports.size(); ++port) {
        const PortConfiguration &configuration = running.ports[port];
        const QByteArray speed = configuration.speed.isEmpty() ? speedText(session.state().hardware.ports[port].kind)
                                                               : configuration.speed + "M";
        const QByteArray duplex =
            configuration.duplex.isEmpty() ? QByteArray("F(a)") : configuration.duplex.left(1).toUpper();
        lines << bridgeRow(session.names().shortName(port), configuration, session.state().isUp(port), speed, duplex);
    }
    return lines;
}

QByteArrayList routeTable(const ConsoleSession &session)
{
    QByteArrayList lines{"Brief information on interfaces in route mode:",
                         "Link: ADM - administratively down; Stby - standby",
                         "Protocol: (s) - spoofing",
                         "Interface            Link Protocol Primary IP      Description",
                         "InLoop0              UP   UP(s)    --              ",
                         left(session.names().shortName(InterfaceId{InterfaceKind::Management, 0, 0}), 21)
                             + left(linkState(session.running().management.shutdown, false), 5)
                             + "DOWN     --              ",
                         "NULL0                UP   UP(s)    --              "};
    for (const auto &vlan : session.running().vlanInterfaces) {
        const QByteArray state = linkState(false, session.state().isVlanUp(vlan.first));
        QByteArray address = "--";
        for (const QByteArray &line : vlan.second) {
            if (line.startsWith("ip address "))
                address = line.split(' ').value(2);
        }
        lines << left(session.names().shortName(InterfaceId{InterfaceKind::Vlan, vlan.first, 0}), 21) + left(state, 5)
                     + left(state, 9) + left(address, 16);
    }
    return lines;
}

QByteArray onOff(bool on)
{
    return on ? QByteArrayLiteral("Enabled") : QByteArrayLiteral("Disabled");
}

QByteArrayList snoopingOfVlan(int vlan, const VlanConfiguration &configuration)
{
    return {"IGMP snooping information: VLAN " + number(vlan),
            " IGMP snooping: " + onOff(configuration.snooping),
            " Drop-unknown: Disabled",
            " Version: " + number(configuration.snoopingVersion),
            " Host-aging-time: 260s",
            " Router-aging-time: 260s",
            " Max-response-time: 10s",
            " Last-member-query-interval: 1s",
            configuration.querier ? QByteArray(" Querier: Enabled (IP: 0.0.0.0, Expires: 00:01:20)")
                                  : QByteArray(" Querier: Disabled"),
            " Query-interval: 125s",
            " General-query source IP: 0.0.0.0",
            " Special-query source IP: 0.0.0.0"};
}

QByteArrayList snoopingGlobally(bool on)
{
    return {"IGMP snooping information: Global",
            " IGMP snooping: " + onOff(on),
            " Drop-unknown: Disabled",
            " Host-aging-time: 260s",
            " Router-aging-time: 260s",
            " Max-response-time: 10s",
            " Last-member-query-interval: 1s",
            " Report-aggregation: Enabled",
            " Dot1p-priority: --"};
}

// Groups per VLAN; `kind` is what the release calls an entry.
QByteArrayList groupLines(const ConsoleSession &session, const Arguments &arguments, const char *kind)
{
    QByteArrayList entries;
    int total = 0;
    for (const auto &vlan : session.running().vlans) {
        if (!arguments.numbers.empty() && arguments.numbers.front() != vlan.first)
            continue;
        const auto groups = multicastGroups(session, vlan.first);
        total += static_cast<int>(groups.size());
        if (!groups.empty())
            entries << ""
                    << "VLAN " + number(vlan.first) + ": Total " + number(static_cast<int>(groups.size())) + ' ' + kind;
        for (const MulticastGroup &group : groups) {
            entries << "  (0.0.0.0, " + group.address + ')'
                    << "    Host ports (" + number(static_cast<int>(group.ports.size())) + " in total):";
            for (const std::size_t port : group.ports)
                entries << "      " + left(session.names().shortName(port), 21) + "(00:03:23)";
        }
    }
    return QByteArrayList{"Total " + number(total) + ' ' + kind} + entries;
}

QByteArrayList memberNames(const ConsoleSession &session, int vlan, bool (*belongs)(const BridgedInterface &, int))
{
    QByteArrayList names;
    for (std::size_t port = 0; port < session.running().ports.size(); ++port) {
        if (belongs(session.running().ports[port], vlan))
            names << "    " + session.names().longName(port) + (session.state().isUp(port) ? "(U)" : "");
    }
    return names.isEmpty() ? QByteArrayList{"    None"} : names;
}

} // namespace

namespace commands {

void showHua3InterfaceBrief(ConsoleSession &session, const Arguments &)
{
    session.show(routeTable(session) << "" << bridgeTable(session));
}

void showHua3LinkInfo(ConsoleSession &session, const Arguments &)
{
    QByteArrayList lines{"Link: ADM - administratively down; Stby - standby", "Protocol: (s) - spoofing",
                         "Interface            Link Protocol InUsage OutUsage InErrs     OutErrs"};
    for (std::size_t port = 0; port < session.running().ports.size(); ++port) {
        const bool up = session.state().isUp(port);
        lines << left(session.names().shortName(port), 21)
                     + left(linkState(session.running().ports[port].shutdown, up), 5) + left(up ? "UP" : "DOWN", 9)
                     + left("0%", 8) + left("0%", 9) + left("0", 11) + "0";
    }
    session.show(lines);
}

void showHua3Vlans(ConsoleSession &session, const Arguments &)
{
    QByteArrayList names;
    for (const auto &vlan : session.running().vlans)
        names << (vlan.first == 1 ? QByteArrayLiteral("1(default)") : number(vlan.first));
    if (session.options().oldVlanListing)
        return session.show({" Total " + number(names.size()) + " VLAN exist(s).",
                             " The following VLANs exist:", ' ' + names.join(", ")});
    session.show({" Total VLANs: " + number(names.size()), " The VLANs include:", ' ' + names.join(", ")});
}

void showHua3Vlan(ConsoleSession &session, const Arguments &arguments)
{
    const int vlan = arguments.numbers.front();
    const auto found = session.running().vlans.find(vlan);
    if (found == session.running().vlans.end())
        return session.fail(session.dialect().refusals.noVlan);
    const QByteArray usual = "VLAN " + digits(vlan, 4);
    const auto orUsual = [&usual](const QByteArray &text) { return text.isEmpty() ? usual : text; };
    session.show(QByteArrayList{" VLAN ID: " + number(vlan), " VLAN type: Static", " Route interface: Not configured",
                                " Description: " + orUsual(found->second.description),
                                " Name: " + orUsual(found->second.name), " Tagged ports:"}
                 + memberNames(session, vlan, isTagged) + QByteArrayList{" Untagged ports:"}
                 + memberNames(session, vlan, isUntagged));
}

void showHua3Snooping(ConsoleSession &session, const Arguments &)
{
    QByteArrayList lines = snoopingGlobally(session.running().snooping);
    for (const auto &vlan : session.running().vlans) {
        if (vlan.second.snooping || vlan.second.querier)
            lines << "" << snoopingOfVlan(vlan.first, vlan.second);
    }
    session.show(lines);
}

void showHua3SnoopingVlan(ConsoleSession &session, const Arguments &arguments)
{
    const auto found = session.running().vlans.find(arguments.numbers.front());
    if (found == session.running().vlans.end())
        return session.fail(session.dialect().refusals.noVlan);
    session.show(snoopingOfVlan(found->first, found->second));
}

void showHua3SnoopingGroups(ConsoleSession &session, const Arguments &arguments)
{
    session.show(groupLines(session, arguments, "entries."));
}

void showHua3Forwarding(ConsoleSession &session, const Arguments &arguments)
{
    session.show(groupLines(session, arguments, "IP entries."));
}

void showHua3Multicast(ConsoleSession &session, const Arguments &)
{
    session.show({"Total 0 entries, 0 matched"});
}

} // namespace commands

} // namespace simulator
