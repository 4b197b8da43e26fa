#pragma once

#include "consolesession.h"

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>

#include <string>
#include <vector>

namespace simulator {

/// `up`, `down`, `*down`.
QByteArray portStatus(const ConsoleSession &session, std::size_t port);
/// All ports in the order of a listing by name: names compared with their numbers as numbers.
std::vector<std::size_t> portsByName(const ConsoleSession &session);
bool comesBefore(const QByteArray &name, const QByteArray &other);

/// A port or group as the VLAN tables see it.
struct VlanMember
{
    QByteArray name;
    bool up = false;
    const BridgedInterface *interface = nullptr;
};

/// Every port that is in no group, and every group.
std::vector<VlanMember> vlanMembers(const ConsoleSession &session);
bool isUntagged(const BridgedInterface &interface, int vlan);
bool isTagged(const BridgedInterface &interface, int vlan);

/// Multicast groups that neighbours have joined in a VLAN: (group address, ports).
struct MulticastGroup
{
    QByteArray address;
    std::vector<std::size_t> ports;
};
std::vector<MulticastGroup> multicastGroups(const ConsoleSession &session, int vlan);

/// Whether a device that draws power hangs on the port, and how much in milliwatts.
int powerDrawn(const ConsoleSession &session, std::size_t port);

/// Mirrored ports as (group, port).
std::vector<std::pair<int, std::size_t>> mirrorSources(const SwitchConfiguration &configuration);

const char *directionWord(MirrorDirection direction, bool capital);

/// `3 weeks, 2 days, 11 hours, 20 minutes`
QByteArray uptimeText(const ConsoleSession &session);

} // namespace simulator
