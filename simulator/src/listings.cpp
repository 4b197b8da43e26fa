#include "listings.h"

#include "text.h"

#include <algorithm>

namespace simulator {

namespace {

bool isDigit(char sign)
{
    return sign >= '0' && sign <= '9';
}

constexpr int kWattageStep = 350; // milliwatts, so that no two ports draw the same

} // namespace

QByteArray portStatus(const ConsoleSession &session, std::size_t port)
{
    if (session.running().ports[port].shutdown)
        return QByteArrayLiteral("*down");
    return session.state().isUp(port) ? QByteArrayLiteral("up") : QByteArrayLiteral("down");
}

bool comesBefore(const QByteArray &name, const QByteArray &other)
{
    int i = 0, j = 0;
    while (i < name.size() && j < other.size()) {
        if (isDigit(name[i]) && isDigit(other[j])) {
            int one = 0, two = 0;
            for (; i < name.size() && isDigit(name[i]); ++i)
                one = one * 10 + (name[i] - '0');
            for (; j < other.size() && isDigit(other[j]); ++j)
                two = two * 10 + (other[j] - '0');
            if (one != two)
                return one < two;
            continue;
        }
        if (name[i] != other[j])
            return name[i] < other[j];
        ++i;
        ++j;
    }
    return name.size() - i < other.size() - j;
}

std::vector<std::size_t> portsByName(const ConsoleSession &session)
{
    std::vector<std::size_t> ports(session.state().hardware.ports.size());
    for (std::size_t i = 0; i < ports.size(); ++i)
        ports[i] = i;
    std::sort(ports.begin(), ports.end(), [&session](std::size_t one, std::size_t other) {
        return comesBefore(session.names().longName(one), session.names().longName(other));
    });
    return ports;
}

std::vector<VlanMember> vlanMembers(const ConsoleSession &session)
{
    std::vector<VlanMember> members;
    for (const auto &trunk : session.running().trunks)
        members.push_back({session.names().shortName(InterfaceId{InterfaceKind::Trunk, trunk.first, 0}),
                           session.state().isTrunkUp(trunk.first), &trunk.second});
    for (std::size_t port = 0; port < session.running().ports.size(); ++port) {
        if (!session.running().ports[port].trunk)
            members.push_back(
                {session.names().shortName(port), session.state().isUp(port), &session.running().ports[port]});
    }
    return members;
}

bool isUntagged(const BridgedInterface &interface, int vlan)
{
    if (interface.linkType == LinkType::Trunk)
        return interface.trunkVlan == vlan && interface.allowedVlans.test(static_cast<std::size_t>(vlan));
    return interface.vlan == vlan;
}

bool isTagged(const BridgedInterface &interface, int vlan)
{
    return interface.linkType == LinkType::Trunk && interface.trunkVlan != vlan
           && interface.allowedVlans.test(static_cast<std::size_t>(vlan));
}

std::vector<MulticastGroup> multicastGroups(const ConsoleSession &session, int vlan)
{
    std::vector<MulticastGroup> groups;
    const SwitchConfiguration &configuration = session.running();
    const auto found = configuration.vlans.find(vlan);
    if (!configuration.snooping || found == configuration.vlans.end() || !found->second.snooping)
        return groups;
    for (std::size_t port = 0; port < configuration.ports.size(); ++port) {
        const BridgedInterface &interface = configuration.ports[port];
        if (session.state().isUp(port) && (isUntagged(interface, vlan) || isTagged(interface, vlan)))
            groups.push_back({"239.1." + number(vlan % 250) + '.' + number(static_cast<int>(port) + 1), {port}});
    }
    return groups;
}

int powerDrawn(const ConsoleSession &session, std::size_t port)
{
    const PortHardware &hardware = session.state().hardware.ports[port];
    if (hardware.fibre || !hardware.cable || !session.running().ports[port].poe)
        return 0;
    return 2000 + kWattageStep * hardware.number;
}

std::vector<std::pair<int, std::size_t>> mirrorSources(const SwitchConfiguration &configuration)
{
    std::vector<std::pair<int, std::size_t>> sources;
    for (std::size_t port = 0; port < configuration.ports.size(); ++port) {
        for (const auto &mirror : configuration.ports[port].mirrors)
            sources.emplace_back(mirror.first, port);
    }
    return sources;
}

const char *directionWord(MirrorDirection direction, bool capital)
{
    switch (direction) {
    case MirrorDirection::Inbound:
        return capital ? "Inbound" : "inbound";
    case MirrorDirection::Outbound:
        return capital ? "Outbound" : "outbound";
    case MirrorDirection::Both:
        return capital ? "Both" : "both";
    }
    return "";
}

QByteArray uptimeText(const ConsoleSession &session)
{
    const auto minutes = std::chrono::duration_cast<std::chrono::minutes>(session.uptime()).count();
    return number(minutes / 10080) + " weeks, " + number(minutes / 1440 % 7) + " days, " + number(minutes / 60 % 24)
           + " hours, " + number(minutes % 60) + " minutes";
}

} // namespace simulator
