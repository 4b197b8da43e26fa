#pragma once

#include "commandgrammar.h"

#include <vector>

namespace simulator {

class ConsoleSession;

/// What the commands do. Each takes its arguments in the order in which its pattern names them.
namespace commands {

#define SIMULATOR_COMMAND(name) void name(ConsoleSession &session, const Arguments &arguments)

// Views and the session
SIMULATOR_COMMAND(systemView);
SIMULATOR_COMMAND(systemViewImmediately);
SIMULATOR_COMMAND(commit);
SIMULATOR_COMMAND(clearCandidate);
SIMULATOR_COMMAND(quit);
SIMULATOR_COMMAND(toUserView);
SIMULATOR_COMMAND(pagingOff);
SIMULATOR_COMMAND(pagingOn);
SIMULATOR_COMMAND(pagingOffSilently);
SIMULATOR_COMMAND(screenWidth);
SIMULATOR_COMMAND(echoMode);
SIMULATOR_COMMAND(terminalMonitor);
SIMULATOR_COMMAND(rename);
SIMULATOR_COMMAND(infoCenter);
SIMULATOR_COMMAND(ipConflictDetection);
SIMULATOR_COMMAND(enterSection);
SIMULATOR_COMMAND(sectionLine);
SIMULATOR_COMMAND(systemLine);
SIMULATOR_COMMAND(accepted); ///< of no consequence here

// VLANs and multicast
SIMULATOR_COMMAND(enterVlan);
SIMULATOR_COMMAND(createVlans);
SIMULATOR_COMMAND(createVlanRange);
SIMULATOR_COMMAND(deleteVlan);
SIMULATOR_COMMAND(deleteVlans);
SIMULATOR_COMMAND(vlanName);
SIMULATOR_COMMAND(vlanDescription);
SIMULATOR_COMMAND(vlanPorts);
SIMULATOR_COMMAND(snooping);
SIMULATOR_COMMAND(enterSnooping);
SIMULATOR_COMMAND(snoopingOff);
SIMULATOR_COMMAND(vlanSnooping);
SIMULATOR_COMMAND(vlanQuerier);
SIMULATOR_COMMAND(vlanSnoopingVersion);
SIMULATOR_COMMAND(forwardingMode);

// Interfaces
SIMULATOR_COMMAND(enterInterface);
SIMULATOR_COMMAND(deleteInterface);
SIMULATOR_COMMAND(enterPorts);
SIMULATOR_COMMAND(enterGroup);
SIMULATOR_COMMAND(groupMembers);
SIMULATOR_COMMAND(shutdown);
SIMULATOR_COMMAND(description);
SIMULATOR_COMMAND(linkType);
SIMULATOR_COMMAND(accessVlan);
SIMULATOR_COMMAND(trunkVlans);
SIMULATOR_COMMAND(trunkDefaultVlan);
SIMULATOR_COMMAND(negotiation);
SIMULATOR_COMMAND(speed);
SIMULATOR_COMMAND(duplex);
SIMULATOR_COMMAND(power);
SIMULATOR_COMMAND(interfaceLine);
SIMULATOR_COMMAND(clearInterface);
SIMULATOR_COMMAND(vlanInterfaceLine);

// Groups of links
SIMULATOR_COMMAND(joinTrunk);
SIMULATOR_COMMAND(leaveTrunk);
SIMULATOR_COMMAND(trunkPorts);
SIMULATOR_COMMAND(trunkMode);

// Mirroring
SIMULATOR_COMMAND(observePort);
SIMULATOR_COMMAND(deleteMirrorGroup);
SIMULATOR_COMMAND(mirrorPort);
SIMULATOR_COMMAND(createMirrorGroup);
SIMULATOR_COMMAND(mirrorGroupSources);
SIMULATOR_COMMAND(mirrorGroupMonitor);
SIMULATOR_COMMAND(mirrorMonitorHere);

// Keeping and restarting
SIMULATOR_COMMAND(save);
SIMULATOR_COMMAND(saveForced);
SIMULATOR_COMMAND(resetSaved);
SIMULATOR_COMMAND(resetFactory);
SIMULATOR_COMMAND(restoreFactory);
SIMULATOR_COMMAND(reboot);

// Listings of both families
SIMULATOR_COMMAND(showConfiguration);
SIMULATOR_COMMAND(showInterfaceConfiguration);
SIMULATOR_COMMAND(showSaved);
SIMULATOR_COMMAND(showCandidate);
SIMULATOR_COMMAND(showThis);
SIMULATOR_COMMAND(showClock);
SIMULATOR_COMMAND(showHistory);
SIMULATOR_COMMAND(showLogBuffer);

// Listings of the Huawei family
SIMULATOR_COMMAND(showInterfaceBrief);
SIMULATOR_COMMAND(showInterfaceDescription);
SIMULATOR_COMMAND(showInterface);
SIMULATOR_COMMAND(showDevice);
SIMULATOR_COMMAND(showSlot);
SIMULATOR_COMMAND(showVersion);
SIMULATOR_COMMAND(showStartup);
SIMULATOR_COMMAND(showVlans);
SIMULATOR_COMMAND(showVlan);
SIMULATOR_COMMAND(showSnoopingConfiguration);
SIMULATOR_COMMAND(showSnooping);
SIMULATOR_COMMAND(showForwardingTable);
SIMULATOR_COMMAND(showPortInfo);
SIMULATOR_COMMAND(showTransceivers);
SIMULATOR_COMMAND(showTransceiver);
SIMULATOR_COMMAND(showIpConflicts);
SIMULATOR_COMMAND(showMirroring);
SIMULATOR_COMMAND(showObservePorts);
SIMULATOR_COMMAND(showTrunks);
SIMULATOR_COMMAND(showTrunk);
SIMULATOR_COMMAND(showPower);
SIMULATOR_COMMAND(showPowerState);
SIMULATOR_COMMAND(showPowerInformation);

// Listings of the Hua3 family
SIMULATOR_COMMAND(showHua3InterfaceBrief);
SIMULATOR_COMMAND(showHua3LinkInfo);
SIMULATOR_COMMAND(showHua3Vlans);
SIMULATOR_COMMAND(showHua3Vlan);
SIMULATOR_COMMAND(showHua3Snooping);
SIMULATOR_COMMAND(showHua3SnoopingVlan);
SIMULATOR_COMMAND(showHua3SnoopingGroups);
SIMULATOR_COMMAND(showHua3Forwarding);
SIMULATOR_COMMAND(showHua3Multicast);
SIMULATOR_COMMAND(showHua3Aggregations);
SIMULATOR_COMMAND(showHua3AggregationSummary);
SIMULATOR_COMMAND(showHua3Mirroring);
SIMULATOR_COMMAND(showHua3Power);
SIMULATOR_COMMAND(showHua3Transceivers);
SIMULATOR_COMMAND(showHua3Transceiver);
SIMULATOR_COMMAND(showHua3Device);
SIMULATOR_COMMAND(showHua3Manufacture);
SIMULATOR_COMMAND(showHua3Version);
SIMULATOR_COMMAND(showHua3IpConflicts);

#undef SIMULATOR_COMMAND

} // namespace commands

} // namespace simulator
