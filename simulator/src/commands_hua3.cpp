#include "commands_hua3.h"

#include "commands.h"

namespace simulator {

namespace {

constexpr int kVisit = 0;
constexpr int kMonitor = 1;
constexpr int kConfigure = 2;
constexpr int kManage = 3;

constexpr unsigned kNoUserView = kAnyView & ~static_cast<unsigned>(kUserView);
constexpr unsigned kSwitchable = kPortView | kTrunkView | kManagementView;

using namespace commands;

// Views below the system view come first: what they know hides the system view's command of the same name.

const CommandRow kInterfaceCommands[] = {
    {kSwitchable, kConfigure, "shutdown", shutdown},
    {kSwitchable, kConfigure, "undo shutdown", shutdown},
    {kSwitchable, kConfigure, "description <rest>", description},
    {kSwitchable, kConfigure, "undo description", description},
    {kBridgedViews, kConfigure, "port link-mode bridge|route", accepted},
    {kBridgedViews, kConfigure, "port link-type access|trunk|hybrid", linkType},
    {kBridgedViews, kConfigure, "undo port link-type", linkType},
    {kBridgedViews, kConfigure, "port access vlan <1-4094>", accessVlan},
    {kBridgedViews, kConfigure, "undo port access vlan", accessVlan},
    {kBridgedViews, kConfigure, "port trunk permit vlan <vlans>", trunkVlans},
    {kBridgedViews, kConfigure, "undo port trunk permit vlan <vlans>", trunkVlans},
    {kBridgedViews, kConfigure, "port trunk pvid vlan <1-4094>", trunkDefaultVlan},
    {kBridgedViews, kConfigure, "undo port trunk pvid", trunkDefaultVlan},
    {kBridgedViews, kConfigure, "stp <rest>", interfaceLine},
    {kBridgedViews, kConfigure, "undo stp <rest>", interfaceLine},
    {kPortView, kConfigure, "speed 10|100|1000|10000|auto", speed},
    {kPortView, kConfigure, "undo speed", speed},
    {kPortView, kConfigure, "duplex full|half|auto", duplex},
    {kPortView, kConfigure, "undo duplex", duplex},
    {kPortView, kConfigure, "port link-aggregation group <1-128>", joinTrunk},
    {kPortView, kConfigure, "undo port link-aggregation group", leaveTrunk},
    {kPortView, kConfigure, "mirroring-group <1-4> mirroring-port inbound|outbound|both", mirrorPort},
    {kPortView, kConfigure, "undo mirroring-group <1-4> mirroring-port [inbound|outbound|both]", mirrorPort},
    {kPortView, kConfigure, "mirroring-group <1-4> monitor-port", mirrorMonitorHere},
    {kPortView, kConfigure, "undo mirroring-group <1-4> monitor-port", mirrorMonitorHere},
    {kPortView, kConfigure, "loopback-detection|lldp|broadcast-suppression <rest>", interfaceLine},
    {kPortView, kConfigure, "undo loopback-detection|lldp|broadcast-suppression [<rest>]", interfaceLine},
    {kTrunkView, kConfigure, "link-aggregation mode dynamic", trunkMode},
    {kTrunkView, kConfigure, "undo link-aggregation mode", trunkMode},
    {kVlanInterfaceView, kConfigure, "ip address <rest>", vlanInterfaceLine},
    {kVlanInterfaceView, kConfigure, "undo ip address [<rest>]", vlanInterfaceLine},
    {kVlanInterfaceView, kConfigure, "shutdown", vlanInterfaceLine},
    {kVlanInterfaceView, kConfigure, "undo shutdown", vlanInterfaceLine},
    {kVlanInterfaceView, kConfigure, "description <rest>", vlanInterfaceLine},
    {kManagementView, kConfigure, "ip address <rest>", interfaceLine},
    {kManagementView, kConfigure, "undo ip address [<rest>]", interfaceLine},
    {kGroupDefinitionView | kGroupView, kConfigure, "group-member <ports>", groupMembers},
};

const CommandRow kVlanCommands[] = {
    {kVlanView, kConfigure, "description <rest>", vlanDescription},
    {kVlanView, kConfigure, "undo description", vlanDescription},
    {kVlanView, kConfigure, "name <word>", vlanName},
    {kVlanView, kConfigure, "undo name", vlanName},
    {kVlanView, kConfigure, "port <ports>", vlanPorts},
    {kVlanView, kConfigure, "undo port <ports>", vlanPorts},
    {kVlanView, kConfigure, "igmp-snooping enable", vlanSnooping},
    {kVlanView, kConfigure, "undo igmp-snooping enable", vlanSnooping},
    {kVlanView, kConfigure, "igmp-snooping querier", vlanQuerier},
    {kVlanView, kConfigure, "undo igmp-snooping querier", vlanQuerier},
    {kVlanView, kConfigure, "igmp-snooping version <2-3>", vlanSnoopingVersion},
};

const CommandRow kSectionCommands[] = {
    {kSectionView, kConfigure, "rule <rest>", sectionLine},
    {kSectionView, kConfigure, "undo rule <rest>", sectionLine},
    {kSectionView, kConfigure, "password|service-type|authorization-attribute <rest>", sectionLine},
    {kSectionView, kConfigure, "authentication-mode|user-role|idle-timeout|screen-length <rest>", sectionLine},
    {kSectionView, kConfigure, "set authentication <rest>", sectionLine},
    {kSectionView, kConfigure, "undo authentication-mode|user-role|idle-timeout [<rest>]", sectionLine},
};

const CommandRow kSystemCommands[] = {
    {kSystemView, kConfigure, "sysname <word>", rename},
    {kSystemView, kConfigure, "undo sysname", rename},
    {kSystemView, kConfigure, "vlan <1-4094>", enterVlan},
    {kSystemView, kConfigure, "vlan <1-4094> to <1-4094>", createVlanRange},
    {kSystemView, kConfigure, "undo vlan <1-4094>", deleteVlan},
    {kSystemView, kConfigure, "interface <interface>", enterInterface},
    {kSystemView, kConfigure, "interface range <ports>", enterPorts},
    {kSystemView, kConfigure, "undo interface <interface>", deleteInterface},
    {kSystemView, kConfigure, "port-group manual <word>", enterGroup},
    {kSystemView, kConfigure, "igmp-snooping", enterSnooping},
    {kSystemView, kConfigure, "undo igmp-snooping", snoopingOff},
    {kSystemView, kConfigure, "mirroring-group <1-4> local", createMirrorGroup},
    {kSystemView, kConfigure, "mirroring-group <1-4> mirroring-port <interface> inbound|outbound|both",
     mirrorGroupSources},
    {kSystemView, kConfigure, "mirroring-group <1-4> monitor-port <interface>", mirrorGroupMonitor},
    {kSystemView, kConfigure, "undo mirroring-group <1-4>", deleteMirrorGroup},
    {kSystemView, kConfigure, "undo mirroring-group <1-4> mirroring-port <interface> [inbound|outbound|both]",
     mirrorGroupSources},
    {kSystemView, kConfigure, "undo mirroring-group <1-4> monitor-port <interface>", mirrorGroupMonitor},
    {kSystemView, kConfigure, "info-center enable", infoCenter},
    {kSystemView, kConfigure, "undo info-center enable", infoCenter},
    {kSystemView, kConfigure, "stp <rest>", systemLine},
    {kSystemView, kConfigure, "undo stp <rest>", systemLine},
    {kSystemView, kConfigure, "lldp global enable", systemLine},
    {kSystemView, kConfigure, "undo lldp global enable", systemLine},
    {kSystemView, kConfigure, "ip route-static <rest>", systemLine},
    {kSystemView, kConfigure, "clock timezone <rest>", systemLine},
    {kSystemView, kConfigure, "snmp-agent [<rest>]", systemLine},
    {kSystemView, kConfigure, "acl advanced|basic <2000-3999>", enterSection},
    {kSystemView, kConfigure, "acl number <2000-3999>", enterSection},
    {kSystemView, kConfigure, "local-user <word> [class manage]", enterSection},
    {kSystemView, kConfigure, "line class aux|vty", enterSection},
    {kSystemView, kConfigure, "line aux|con <0-9>", enterSection},
    {kSystemView, kConfigure, "line vty <0-63> <0-63>", enterSection},
    {kSystemView, kConfigure, "user-interface aux|con <0-9>", enterSection},
};

const CommandRow kUserCommands[] = {
    {kUserView, kConfigure, "system-view", systemView},
    {kUserView, kManage, "reset saved-configuration", resetSaved},
    {kUserView, kManage, "restore factory-default", restoreFactory},
    {kUserView, kManage, "reboot", commands::reboot},
    {kUserView, kManage, "screen-length disable", pagingOffSilently},
    {kUserView, kManage, "undo screen-length disable", pagingOn},
    {kUserView, kMonitor, "terminal monitor", terminalMonitor},
    {kUserView, kMonitor, "undo terminal monitor", terminalMonitor},
    {kUserView, kMonitor, "terminal debugging|logging", accepted},
    {kUserView, kMonitor, "undo terminal debugging|logging", accepted},
};

const CommandRow kCommonCommands[] = {
    {kAnyView, kVisit, "quit", quit},
    {kNoUserView, kVisit, "return", toUserView},
    {kAnyView, kManage, "save", save},
    {kAnyView, kManage, "save force", saveForced},
    {kNoUserView, kMonitor, "display this", showThis},
    {kAnyView, kMonitor, "display interface brief", showHua3InterfaceBrief},
    {kAnyView, kMonitor, "display interface link-info", showHua3LinkInfo},
    {kAnyView, kMonitor, "display interface <interface>", showInterface},
    {kAnyView, kMonitor, "display vlan", showHua3Vlans},
    {kAnyView, kMonitor, "display vlan <1-4094>", showHua3Vlan},
    {kAnyView, kMonitor, "display igmp-snooping", showHua3Snooping},
    {kAnyView, kMonitor, "display igmp-snooping vlan <1-4094>", showHua3SnoopingVlan},
    {kAnyView, kMonitor, "display igmp-snooping group [vlan <1-4094>]", showHua3SnoopingGroups},
    {kAnyView, kMonitor, "display l2-multicast ip forwarding [vlan <1-4094>]", showHua3Forwarding},
    {kAnyView, kMonitor, "display multicast forwarding-table", showHua3Multicast},
    {kAnyView, kMonitor, "display link-aggregation verbose [<interface>]", showHua3Aggregations},
    {kAnyView, kMonitor, "display link-aggregation summary", showHua3AggregationSummary},
    {kAnyView, kMonitor, "display mirroring-group all", showHua3Mirroring},
    {kAnyView, kMonitor, "display mirroring-group <1-4>", showHua3Mirroring},
    {kAnyView, kMonitor, "display transceiver interface", showHua3Transceivers},
    {kAnyView, kMonitor, "display transceiver interface <interface>", showHua3Transceiver},
    {kAnyView, kMonitor, "display device", showHua3Device},
    {kAnyView, kMonitor, "display device manuinfo", showHua3Manufacture},
    {kAnyView, kMonitor, "display version", showHua3Version},
    {kAnyView, kMonitor, "display arp ip-conflict", showHua3IpConflicts},
    {kAnyView, kMonitor, "display clock", showClock},
    {kAnyView, kMonitor, "display history-command", showHistory},
    {kAnyView, kMonitor, "display logbuffer", showLogBuffer},
    {kAnyView, kConfigure, "display current-configuration", showConfiguration},
    {kAnyView, kConfigure, "display current-configuration interface <interface>", showInterfaceConfiguration},
    {kAnyView, kConfigure, "display saved-configuration", showSaved},
};

const CommandRow kPowerCommands[] = {
    {kPortView, kConfigure, "poe enable", power},
    {kPortView, kConfigure, "undo poe enable", power},
    {kAnyView, kMonitor, "display poe interface", showHua3Power},
};

} // namespace

std::vector<CommandRow> hua3Commands(bool poe)
{
    std::vector<CommandRow> rows;
    append(rows, kInterfaceCommands);
    append(rows, kVlanCommands);
    append(rows, kSectionCommands);
    if (poe)
        append(rows, kPowerCommands);
    append(rows, kSystemCommands);
    append(rows, kUserCommands);
    append(rows, kCommonCommands);
    return rows;
}

} // namespace simulator
