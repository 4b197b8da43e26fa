#include "commands_huawei.h"

#include "commands.h"

namespace simulator {

namespace {

using namespace commands;

// Views below the system view come first: what they know hides the system view's command of the same name.

const CommandRow kInterfaceCommands[] = {
    {kPortView | kTrunkView | kManagementView, kConfigure, "shutdown", shutdown},
    {kPortView | kTrunkView | kManagementView, kConfigure, "undo shutdown", shutdown},
    {kPortView | kTrunkView | kManagementView, kConfigure, "description <rest>", description},
    {kPortView | kTrunkView | kManagementView, kConfigure, "undo description", description},
    {kBridgedViews, kConfigure, "port link-type access|trunk|hybrid", linkType},
    {kBridgedViews, kConfigure, "undo port link-type", linkType},
    {kBridgedViews, kConfigure, "port default vlan <1-4094>", accessVlan},
    {kBridgedViews, kConfigure, "undo port default vlan", accessVlan},
    {kBridgedViews, kConfigure, "port trunk allow-pass vlan <vlans>", trunkVlans},
    {kBridgedViews, kConfigure, "undo port trunk allow-pass vlan <vlans>", trunkVlans},
    {kBridgedViews, kConfigure, "port trunk pvid vlan <1-4094>", trunkDefaultVlan},
    {kBridgedViews, kConfigure, "undo port trunk pvid vlan", trunkDefaultVlan},
    {kBridgedViews, kConfigure, "stp disable|enable|edged-port|root-protection|cost|priority|point-to-point [<rest>]",
     interfaceLine},
    {kBridgedViews, kConfigure,
     "undo stp disable|enable|edged-port|root-protection|cost|priority|point-to-point [<rest>]", interfaceLine},
    {kPortView, kConfigure, "negotiation auto", negotiation},
    {kPortView, kConfigure, "undo negotiation auto", negotiation},
    {kPortView, kConfigure, "speed 10|100|1000|auto-negotiation", speed},
    {kPortView, kConfigure, "undo speed", speed},
    {kPortView, kConfigure, "duplex full|half", duplex},
    {kPortView, kConfigure, "undo duplex", duplex},
    {kPortView, kConfigure, "eth-trunk <0-127>", joinTrunk},
    {kPortView, kConfigure, "undo eth-trunk", leaveTrunk},
    {kPortView, kConfigure, "port-mirroring to observe-port <1-8> inbound|outbound|both", mirrorPort},
    {kPortView, kConfigure, "undo port-mirroring to observe-port <1-8> [inbound|outbound|both]", mirrorPort},
    {kPortView, kConfigure, "clear configuration this", clearInterface},
    {kPortView, kConfigure, "lldp enable|disable", interfaceLine},
    {kPortView, kConfigure, "undo lldp enable|disable", interfaceLine},
    {kPortView, kConfigure, "loopback-detect enable", interfaceLine},
    {kPortView, kConfigure, "undo loopback-detect enable", interfaceLine},
    {kPortView, kConfigure, "broadcast-suppression|multicast-suppression|unicast-suppression <rest>", interfaceLine},
    {kPortView, kConfigure, "undo broadcast-suppression|multicast-suppression|unicast-suppression", interfaceLine},
    {kTrunkView, kConfigure, "mode lacp", trunkMode},
    {kTrunkView, kConfigure, "mode lacp-static|lacp-dynamic", trunkMode},
    {kTrunkView, kConfigure, "mode manual [load-balance]", trunkMode},
    {kTrunkView, kConfigure, "undo mode", trunkMode},
    {kTrunkView, kConfigure, "trunkport <ports>", trunkPorts},
    {kTrunkView, kConfigure, "undo trunkport <ports>", trunkPorts},
    {kVlanInterfaceView, kConfigure, "ip address <rest>", vlanInterfaceLine},
    {kVlanInterfaceView, kConfigure, "undo ip address <rest>", vlanInterfaceLine},
    {kVlanInterfaceView, kConfigure, "shutdown", vlanInterfaceLine},
    {kVlanInterfaceView, kConfigure, "undo shutdown", vlanInterfaceLine},
    {kVlanInterfaceView, kConfigure, "description <rest>", vlanInterfaceLine},
    {kManagementView, kConfigure, "ip address <rest>", interfaceLine},
    {kManagementView, kConfigure, "undo ip address <rest>", interfaceLine},
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
    {kVlanView, kConfigure, "igmp-snooping querier enable", vlanQuerier},
    {kVlanView, kConfigure, "undo igmp-snooping querier enable", vlanQuerier},
    {kVlanView, kConfigure, "igmp-snooping version <1-3>", vlanSnoopingVersion},
    {kVlanView, kConfigure, "l2-multicast forwarding-mode ip|mac", forwardingMode},
    {kVlanView, kConfigure, "undo l2-multicast forwarding-mode", forwardingMode},
};

const CommandRow kSectionCommands[] = {
    {kSectionView, kConfigure, "rule <rest>", sectionLine},
    {kSectionView, kConfigure, "undo rule <rest>", sectionLine},
    {kSectionView, kConfigure,
     "authentication-scheme|authorization-scheme|accounting-scheme|domain|local-user|authentication-mode|user <rest>",
     sectionLine},
    {kSectionView, kConfigure, "undo local-user|authentication-mode|user|idle-timeout [<rest>]", sectionLine},
    {kSectionView, kConfigure, "set authentication <rest>", sectionLine},
    {kSectionView, kConfigure, "idle-timeout|protocol|screen-length <rest>", sectionLine},
};

const CommandRow kSystemCommands[] = {
    {kSystemView, kConfigure, "sysname <word>", rename},
    {kSystemView, kConfigure, "undo sysname", rename},
    {kSystemView, kConfigure, "vlan <1-4094>", enterVlan},
    {kSystemView, kConfigure, "vlan batch <vlans>", createVlans},
    {kSystemView, kConfigure, "undo vlan <1-4094>", deleteVlan},
    {kSystemView, kConfigure, "undo vlan batch <vlans>", deleteVlans},
    {kSystemView, kConfigure, "interface <interface>", enterInterface},
    {kSystemView, kConfigure, "interface range <ports>", enterPorts},
    {kSystemView, kConfigure, "undo interface <interface>", deleteInterface},
    {kSystemView, kConfigure, "port-group group-member <ports>", enterPorts},
    {kSystemView, kConfigure, "port-group <word>", enterGroup},
    {kSystemView, kConfigure, "igmp-snooping enable", snooping},
    {kSystemView, kConfigure, "undo igmp-snooping enable", snooping},
    {kSystemView, kConfigure, "observe-port <1-8> interface <interface>", observePort},
    {kSystemView, kConfigure, "undo observe-port <1-8>", deleteMirrorGroup},
    {kSystemView, kConfigure, "arp ip-conflict-detect enable", ipConflictDetection},
    {kSystemView, kConfigure, "undo arp ip-conflict-detect enable", ipConflictDetection},
    {kSystemView, kConfigure, "info-center enable", infoCenter},
    {kSystemView, kConfigure, "undo info-center enable", infoCenter},
    {kSystemView, kConfigure, "stp enable|disable|mode|region-configuration [<rest>]", systemLine},
    {kSystemView, kConfigure, "undo stp enable|disable|mode [<rest>]", systemLine},
    {kSystemView, kConfigure, "lldp enable", systemLine},
    {kSystemView, kConfigure, "undo lldp enable", systemLine},
    {kSystemView, kConfigure, "ip route-static <rest>", systemLine},
    {kSystemView, kConfigure, "undo ip route-static <rest>", systemLine},
    {kSystemView, kConfigure, "clock timezone <rest>", systemLine},
    {kSystemView, kConfigure, "ntp-service <rest>", systemLine},
    {kSystemView, kConfigure, "snmp-agent [<rest>]", systemLine},
    {kSystemView, kConfigure, "aaa", enterSection},
    {kSystemView, kConfigure, "acl number <2000-4999>", enterSection},
    {kSystemView, kConfigure, "user-interface con <0-0>", enterSection},
    {kSystemView, kConfigure, "user-interface vty <0-14> <0-14>", enterSection},
};

const CommandRow kUserCommands[] = {
    {kUserView, kConfigure, "system-view", systemView},
    {kUserView, kManage, "save [<word>]", save},
    {kUserView, kManage, "reset saved-configuration", resetSaved},
    {kUserView, kManage, "reset factory-configuration", resetFactory},
    {kUserView, kManage, "reboot", reboot},
    {kUserView, kManage, "screen-length <0-512> temporary", pagingOff},
    {kUserView, kManage, "undo screen-length temporary", pagingOn},
    {kUserView, kMonitor, "terminal echo-mode line|character", echoMode},
    {kUserView, kMonitor, "terminal monitor", terminalMonitor},
    {kUserView, kMonitor, "undo terminal monitor", terminalMonitor},
    {kUserView, kMonitor, "terminal debugging|logging|trapping", accepted},
    {kUserView, kMonitor, "undo terminal debugging|logging|trapping", accepted},
};

const CommandRow kCommonCommands[] = {
    {kAnyView, kVisit, "quit", quit},
    {kAnyView, kVisit, "return", toUserView},
    {kAnyView, kMonitor, "screen-width <60-512>", screenWidth},
    {kNoUserView, kMonitor, "display this", showThis},
    {kAnyView, kMonitor, "display interface brief", showInterfaceBrief},
    {kAnyView, kMonitor, "display interface description", showInterfaceDescription},
    {kAnyView, kMonitor, "display interface <interface>", showInterface},
    {kAnyView, kMonitor, "display device", showDevice},
    {kAnyView, kMonitor, "display device slot <0-9>", showSlot},
    {kAnyView, kMonitor, "display version", showVersion},
    {kAnyView, kMonitor, "display startup", showStartup},
    {kAnyView, kMonitor, "display clock", showClock},
    {kAnyView, kMonitor, "display history-command", showHistory},
    {kAnyView, kMonitor, "display logbuffer", showLogBuffer},
    {kAnyView, kMonitor, "display vlan", showVlans},
    {kAnyView, kMonitor, "display vlan <1-4094>", showVlan},
    {kAnyView, kMonitor, "display igmp-snooping", showSnoopingConfiguration},
    {kAnyView, kMonitor, "display igmp-snooping configuration", showSnoopingConfiguration},
    {kAnyView, kMonitor, "display igmp-snooping vlan <1-4094>", showSnooping},
    {kAnyView, kMonitor, "display igmp-snooping port-info vlan <1-4094>", showPortInfo},
    {kAnyView, kMonitor, "display l2-multicast forwarding-table vlan <1-4094>", showForwardingTable},
    {kAnyView, kMonitor, "display transceiver [verbose]", showTransceivers},
    {kAnyView, kMonitor, "display transceiver interface <interface> [verbose]", showTransceiver},
    {kAnyView, kMonitor, "display arp ip-conflict track", showIpConflicts},
    {kAnyView, kMonitor, "display port-mirroring", showMirroring},
    {kAnyView, kMonitor, "display observe-port", showObservePorts},
    {kAnyView, kMonitor, "display eth-trunk", showTrunks},
    {kAnyView, kMonitor, "display eth-trunk <0-127>", showTrunk},
    {kAnyView, kConfigure, "display current-configuration", showConfiguration},
    {kAnyView, kConfigure, "display current-configuration interface <interface>", showInterfaceConfiguration},
    {kAnyView, kConfigure, "display saved-configuration", showSaved},
};

const CommandRow kPowerCommands[] = {
    {kPortView, kConfigure, "poe enable", power},
    {kPortView, kConfigure, "undo poe enable", power},
    {kAnyView, kMonitor, "display poe power", showPower},
    {kAnyView, kMonitor, "display poe power-state", showPowerState},
    {kAnyView, kMonitor, "display poe information", showPowerInformation},
};

// Written with a blank on the sub-model.
const CommandRow kBlankSnoopingCommands[] = {
    {kVlanView, kConfigure, "igmp snooping enable", vlanSnooping},
    {kVlanView, kConfigure, "undo igmp snooping enable", vlanSnooping},
    {kVlanView, kConfigure, "igmp snooping querier enable", vlanQuerier},
    {kVlanView, kConfigure, "undo igmp snooping querier enable", vlanQuerier},
    {kVlanView, kConfigure, "igmp snooping version <1-3>", vlanSnoopingVersion},
    {kSystemView, kConfigure, "igmp snooping enable", snooping},
    {kSystemView, kConfigure, "undo igmp snooping enable", snooping},
    {kAnyView, kMonitor, "display igmp snooping", showSnoopingConfiguration},
    {kAnyView, kMonitor, "display igmp snooping configuration", showSnoopingConfiguration},
    {kAnyView, kMonitor, "display igmp snooping vlan <1-4094>", showSnooping},
};

const CommandRow kTwoStageCommands[] = {
    {kNoUserView, kConfigure, "commit", commit},
    {kNoUserView, kConfigure, "clear configuration candidate", clearCandidate},
    {kNoUserView, kConfigure, "display configuration candidate", showCandidate},
    {kUserView, kConfigure, "system-view immediately", systemViewImmediately},
};

} // namespace

std::vector<CommandRow> huaweiCommands(bool poe)
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

std::vector<CommandRow> huaweiSubCommands(bool twoStage)
{
    std::vector<CommandRow> rows;
    append(rows, kBlankSnoopingCommands);
    if (twoStage)
        append(rows, kTwoStageCommands);
    return rows;
}

} // namespace simulator
