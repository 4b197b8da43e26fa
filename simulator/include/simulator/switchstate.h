#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>

#include <bitset>
#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <vector>

namespace simulator {

constexpr int kLastVlan = 4094;
/// Bit n is VLAN n; bit 0 stays clear.
using VlanSet = std::bitset<kLastVlan + 1>;

enum class InterfaceKind { Gigabit, TenGigabit, FortyGigabit, Management, Trunk, Vlan, Null };

/// An interface of any kind, by what its name says.
struct InterfaceId
{
    InterfaceKind kind = InterfaceKind::Gigabit;
    int number = 0;
    int sub = 0; ///< of GigabitEthernet0/0/1.20: 20

    bool operator==(const InterfaceId &other) const
    {
        return kind == other.kind && number == other.number && sub == other.sub;
    }
};

// Hardware: what is plugged in

struct Transceiver
{
    QByteArray type;
    QByteArray connector;
    int wavelengthNm = 0;
    int distanceM = 0;
    QByteArray vendor;
    QByteArray serial;
};

struct PortHardware
{
    InterfaceKind kind = InterfaceKind::Gigabit;
    int number = 0; ///< the last number of the name
    bool fibre = false;
    bool cable = false; ///< a live neighbour is connected
    std::optional<Transceiver> module;
};

struct IpConflict
{
    QByteArray address, firstMac, secondMac;
    std::size_t port = 0;
    int vlan = 1;
};

struct SwitchHardware
{
    QByteArray boardType;
    bool poe = false;
    std::vector<PortHardware> ports; ///< gigabit, 10-gigabit, 40-gigabit
    std::vector<IpConflict> ipConflicts;

    std::optional<std::size_t> findPort(InterfaceKind kind, int number) const;
};

// Configuration: what commands change

enum class LinkType { Access, Trunk, Hybrid };
enum class MirrorDirection { Inbound, Outbound, Both };

/// What ports and trunk groups have in common.
struct BridgedInterface
{
    bool shutdown = false;
    LinkType linkType = LinkType::Access;
    int vlan = 1;                            ///< of an access or hybrid port
    VlanSet allowedVlans = VlanSet().set(1); ///< of a trunk port
    int trunkVlan = 1;                       ///< the untagged one of a trunk port
    QByteArray description;
    QByteArrayList otherLines; ///< settings without an effect here, kept for the configuration text
};

struct PortConfiguration : BridgedInterface
{
    bool negotiation = true;
    QByteArray speed, duplex; ///< empty: automatic
    bool poe = true;
    std::optional<int> trunk;               ///< the group that it is a member of
    std::map<int, MirrorDirection> mirrors; ///< by observe port or mirroring group
    std::set<int> subInterfaces;
};

struct TrunkConfiguration : BridgedInterface
{
    bool lacp = false;
};

struct VlanConfiguration
{
    QByteArray name, description;
    bool snooping = false;
    bool querier = false;
    bool forwardingByMac = false;
    int snoopingVersion = 2;
};

/// An observe port, or a mirroring group of the Hua3 family.
struct MirrorGroup
{
    std::optional<std::size_t> monitor; ///< index of the port that gets the copies
};

/// A part of the configuration that the simulator only remembers.
struct OtherSection
{
    QByteArray header;    ///< e.g. "aaa"
    QByteArrayList lines; ///< without their leading blank
};

struct SwitchConfiguration
{
    QByteArray name;
    std::vector<PortConfiguration> ports; ///< as in SwitchHardware
    PortConfiguration management;
    std::map<int, VlanConfiguration> vlans;
    std::map<int, QByteArrayList> vlanInterfaces;
    std::map<int, TrunkConfiguration> trunks;
    std::map<int, MirrorGroup> mirrorGroups;
    bool snooping = false;
    bool ipConflictDetection = false;
    bool infoCenter = true;
    QByteArrayList otherLines;
    std::vector<OtherSection> sections;

    /// Indices of the ports in group `trunk`, in order.
    std::vector<std::size_t> trunkMembers(int trunk) const;
    VlanSet existingVlans() const;
};

struct SwitchState
{
    SwitchHardware hardware;
    SwitchConfiguration running;
    SwitchConfiguration candidate;            ///< two-stage releases: running and what waits for commit
    std::optional<SwitchConfiguration> saved; ///< what the next start begins with
    int starts = 1;                           ///< how often the switch has booted

    bool isUp(std::size_t port) const;
    bool isTrunkUp(int trunk) const;
    bool isVlanUp(int vlan) const;
};

} // namespace simulator
