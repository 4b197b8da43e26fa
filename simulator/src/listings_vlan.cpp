#include "commands.h"
#include "listings.h"
#include "text.h"

#include <algorithm>

// VLAN and multicast listings of the Huawei family.

namespace simulator {

namespace {

constexpr int kPortsPerLine = 4;
constexpr int kPortColumn = 16;

// `UT:GE0/0/1(D)      GE0/0/2(D) …`, four to a line.
QByteArrayList portLines(const char *title, const QByteArrayList &ports)
{
    QByteArrayList lines;
    for (int i = 0; i < ports.size(); i += kPortsPerLine) {
        QByteArray line = i == 0 ? QByteArray(title) : QByteArrayLiteral("   ");
        for (int j = i; j < std::min(ports.size(), i + kPortsPerLine); ++j)
            line += left(ports[j], kPortColumn);
        lines << line.trimmed().prepend(i == 0 ? "" : "   ");
    }
    return lines;
}

QByteArrayList membershipLines(const ConsoleSession &session, int vlan)
{
    QByteArrayList untagged, tagged;
    for (const VlanMember &member : vlanMembers(session)) {
        const QByteArray name = member.name + (member.up ? "(U)" : "(D)");
        if (isUntagged(*member.interface, vlan))
            untagged << name;
        else if (isTagged(*member.interface, vlan))
            tagged << name;
    }
    QByteArrayList lines = portLines("UT:", untagged) + portLines("TG:", tagged);
    if (lines.isEmpty())
        lines << QByteArray();
    QByteArrayList rows;
    for (const QByteArray &line : qAsConst(lines))
        rows << (rows.isEmpty() ? left(number(vlan), 5) + left("common", 8) : QByteArray(13, ' ')) + line;
    return rows;
}

QByteArray vlanText(const VlanConfiguration &configuration, int vlan)
{
    return configuration.description.isEmpty() ? "VLAN " + digits(vlan, 4) : configuration.description;
}

QByteArrayList vlanTables(const ConsoleSession &session, const std::map<int, VlanConfiguration> &vlans)
{
    const QByteArray line = rule(80);
    QByteArrayList lines{line,
                         "U: Up;         D: Down;         TG: Tagged;         UT: Untagged;",
                         "MP: Vlan-mapping;               ST: Vlan-stacking;",
                         "#: ProtocolTransparent-vlan;    *: Management-vlan;",
                         line,
                         "",
                         "VID  Type    Ports",
                         line};
    for (const auto &vlan : vlans)
        lines << membershipLines(session, vlan.first);
    lines << QByteArrayList{"", "VID  Status  Property      MAC-LRN Statistics Description", line};
    for (const auto &vlan : vlans)
        lines << left(number(vlan.first), 5) + "enable  default       enable  disable    "
                     + vlanText(vlan.second, vlan.first);
    return lines;
}

QByteArrayList oldVlanTable(const std::map<int, VlanConfiguration> &vlans)
{
    QByteArrayList lines{"* : management-vlan", rule(21),
                         "The total number of vlans is : " + number(static_cast<int>(vlans.size())),
                         "VLAN ID Type         Status   MAC Learning Broadcast/Multicast/Unicast Property", rule(80)};
    for (const auto &vlan : vlans)
        lines << left(number(vlan.first), 8) + "common       enable   enable       forward   forward   forward default";
    return lines;
}

// What stands in the way of a snooping listing.
bool refuseSnooping(ConsoleSession &session)
{
    if (session.running().snooping)
        return false;
    session.fail(session.dialect().refusals.snoopingOff);
    return true;
}

bool refuseVlan(ConsoleSession &session, int vlan)
{
    if (refuseSnooping(session))
        return true;
    const auto found = session.running().vlans.find(vlan);
    if (found != session.running().vlans.end() && (found->second.snooping || found->second.querier))
        return false;
    session.printLine(QByteArrayLiteral("Info: There is no igmp-snooping configuration."));
    return true;
}

QByteArrayList configuredSnooping(int vlan, const VlanConfiguration &configuration)
{
    QByteArrayList lines{"IGMP Snooping Configuration for VLAN " + number(vlan)};
    if (configuration.snooping)
        lines << "    igmp-snooping enable";
    if (configuration.querier)
        lines << "    igmp-snooping querier enable";
    if (configuration.snoopingVersion != 2)
        lines << "    igmp-snooping version " + number(configuration.snoopingVersion);
    return lines;
}

} // namespace

namespace commands {

void showVlans(ConsoleSession &session, const Arguments &)
{
    const auto &vlans = session.running().vlans;
    if (session.options().oldVlanListing)
        return session.show(oldVlanTable(vlans));
    session.show(QByteArrayList{"The total number of VLANs is : " + number(static_cast<int>(vlans.size()))}
                 + vlanTables(session, vlans));
}

void showVlan(ConsoleSession &session, const Arguments &arguments)
{
    const auto found = session.running().vlans.find(arguments.numbers.front());
    if (found == session.running().vlans.end())
        return session.fail(session.dialect().refusals.noVlan);
    session.show(vlanTables(session, {*found}));
}

void showSnoopingConfiguration(ConsoleSession &session, const Arguments &)
{
    if (refuseSnooping(session))
        return;
    QByteArrayList lines;
    for (const auto &vlan : session.running().vlans) {
        if (vlan.second.snooping || vlan.second.querier)
            lines << configuredSnooping(vlan.first, vlan.second);
    }
    if (lines.isEmpty())
        lines << QByteArrayLiteral("Info: There is no igmp-snooping configuration.");
    session.show(lines);
}

void showSnooping(ConsoleSession &session, const Arguments &arguments)
{
    const int vlan = arguments.numbers.front();
    if (refuseVlan(session, vlan))
        return;
    const VlanConfiguration &configuration = session.running().vlans.at(vlan);
    const auto onOff = [](bool on) { return on ? QByteArray("Enabled") : QByteArray("Disabled"); };
    session.show(
        {"IGMP Snooping Information for VLAN " + number(vlan), "     IGMP Snooping is " + onOff(configuration.snooping),
         "     IGMP Version is Set to " + QByteArray(configuration.snoopingVersion == 2 ? "default " : "")
             + number(configuration.snoopingVersion),
         "     IGMP Query Interval is Set to default 125", "     IGMP Max Response Interval is Set to default 10",
         "     IGMP Robustness is Set to default 2", "     IGMP Last Member Query Interval is Set to default 1",
         "     IGMP Router Port Aging Interval is Set to 180s or holdtime in hello",
         "     IGMP Filter Group-Policy is Set to default : Permit All", "     IGMP Prompt Leave Disable",
         "     IGMP Router Alert is Not Required", "     IGMP Send Router Alert Enable",
         "     IGMP Report Suppress Disable", "     IGMP Snooping Querier is " + onOff(configuration.querier)});
}

void showForwardingTable(ConsoleSession &session, const Arguments &arguments)
{
    const int vlan = arguments.numbers.front();
    if (refuseVlan(session, vlan))
        return;
    const bool byMac = session.running().vlans.at(vlan).forwardingByMac;
    QByteArrayList lines{"VLAN ID : " + number(vlan) + ", Forwarding Mode : " + (byMac ? "MAC" : "IP"), rule(73),
                         " (Source, Group)            Interface                      Out-Vlan", rule(73)};
    const auto groups = multicastGroups(session, vlan);
    for (const MulticastGroup &group : groups) {
        for (const std::size_t port : group.ports)
            lines << left(" (*, " + group.address + ')', 28) + left(session.names().longName(port), 31) + number(vlan);
    }
    lines << rule(73) << "Total Group(s) : " + number(static_cast<int>(groups.size()));
    session.show(lines);
}

void showPortInfo(ConsoleSession &session, const Arguments &arguments)
{
    const int vlan = arguments.numbers.front();
    if (refuseVlan(session, vlan))
        return;
    const auto groups = multicastGroups(session, vlan);
    QByteArrayList lines{rule(73), "                     (Source, Group)  Port                   Flag",
                         " Flag: S:Static     D:Dynamic     M: Ssm-mapping", rule(73),
                         "VLAN " + number(vlan) + ", " + number(static_cast<int>(groups.size())) + " Entry(s)"};
    for (const MulticastGroup &group : groups) {
        for (const std::size_t port : group.ports)
            lines << right("(*, " + group.address + ')', 36) + "  " + left(session.names().shortName(port), 23) + "-D-";
    }
    session.show(lines << rule(73));
}

} // namespace commands

} // namespace simulator
