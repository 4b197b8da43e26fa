#include <simulator/switchstate.h>

namespace simulator {

std::optional<std::size_t> SwitchHardware::findPort(InterfaceKind kind, int number) const
{
    for (std::size_t i = 0; i < ports.size(); ++i) {
        if (ports[i].kind == kind && ports[i].number == number)
            return i;
    }
    return std::nullopt;
}

std::vector<std::size_t> SwitchConfiguration::trunkMembers(int trunk) const
{
    std::vector<std::size_t> members;
    for (std::size_t i = 0; i < ports.size(); ++i) {
        if (ports[i].trunk == trunk)
            members.push_back(i);
    }
    return members;
}

VlanSet SwitchConfiguration::existingVlans() const
{
    VlanSet set;
    for (const auto &vlan : vlans)
        set.set(static_cast<std::size_t>(vlan.first));
    return set;
}

bool SwitchState::isUp(std::size_t port) const
{
    const PortConfiguration &configuration = running.ports[port];
    if (configuration.trunk) {
        const auto trunk = running.trunks.find(*configuration.trunk);
        if (trunk != running.trunks.end() && trunk->second.shutdown)
            return false;
    }
    return hardware.ports[port].cable && !configuration.shutdown;
}

bool SwitchState::isTrunkUp(int trunk) const
{
    for (const std::size_t member : running.trunkMembers(trunk)) {
        if (isUp(member))
            return true;
    }
    return false;
}

namespace {

bool carries(const BridgedInterface &interface, std::size_t vlan)
{
    return interface.linkType == LinkType::Trunk ? interface.allowedVlans.test(vlan)
                                                 : static_cast<std::size_t>(interface.vlan) == vlan;
}

} // namespace

bool SwitchState::isVlanUp(int vlan) const
{
    const auto wanted = static_cast<std::size_t>(vlan);
    for (std::size_t i = 0; i < running.ports.size(); ++i) {
        const PortConfiguration &port = running.ports[i];
        const auto trunk = port.trunk ? running.trunks.find(*port.trunk) : running.trunks.end();
        const BridgedInterface &bridged =
            trunk == running.trunks.end() ? static_cast<const BridgedInterface &>(port) : trunk->second;
        if (isUp(i) && carries(bridged, wanted))
            return true;
    }
    return false;
}

} // namespace simulator
