#include "configuration_hua3.h"

#include "configuration_common.h"
#include "hardware.h"
#include "listings.h"
#include "text.h"

namespace simulator {

namespace {

const BridgedWords &words()
{
    static const BridgedWords words{"port access vlan ", "port trunk permit vlan ", "port trunk pvid vlan "};
    return words;
}

QByteArrayList vlanLines(const VlanConfiguration &vlan)
{
    QByteArrayList lines;
    if (!vlan.name.isEmpty())
        lines << "name " + vlan.name;
    if (!vlan.description.isEmpty())
        lines << "description " + vlan.description;
    if (vlan.snooping)
        lines << QByteArrayLiteral("igmp-snooping enable");
    if (vlan.snoopingVersion != 2)
        lines << "igmp-snooping version " + number(vlan.snoopingVersion);
    if (vlan.querier)
        lines << QByteArrayLiteral("igmp-snooping querier");
    return lines;
}

QByteArrayList portLines(const SwitchConfiguration &configuration, std::size_t index)
{
    const PortConfiguration &port = configuration.ports[index];
    QByteArrayList lines{QByteArrayLiteral("port link-mode bridge")};
    lines << bridgedLines(port, LinkType::Access, words());
    if (!port.speed.isEmpty())
        lines << "speed " + port.speed;
    if (!port.duplex.isEmpty())
        lines << "duplex " + port.duplex;
    if (!port.poe)
        lines << QByteArrayLiteral("undo poe enable");
    for (const auto &mirror : port.mirrors)
        lines << "mirroring-group " + number(mirror.first) + " mirroring-port " + directionWord(mirror.second, false);
    for (const auto &group : configuration.mirrorGroups) {
        if (group.second.monitor == index)
            lines << "mirroring-group " + number(group.first) + " monitor-port";
    }
    if (port.trunk)
        lines << "port link-aggregation group " + number(*port.trunk);
    return lines;
}

QByteArrayList trunkLines(const TrunkConfiguration &trunk)
{
    QByteArrayList lines = bridgedLines(trunk, LinkType::Access, words());
    if (trunk.lacp)
        lines << QByteArrayLiteral("link-aggregation mode dynamic");
    return lines;
}

void addSystem(const SwitchConfiguration &configuration, SectionList &list)
{
    list.addGlobal({" version 7.1.070, Release 6318P01"});
    list.addGlobal({" sysname " + configuration.name});
    if (!configuration.infoCenter)
        list.addGlobal({" undo info-center enable"});
    QByteArrayList groups;
    for (const auto &group : configuration.mirrorGroups)
        groups << " mirroring-group " + number(group.first) + " local";
    list.addGlobal(groups);
    for (const QByteArray &line : configuration.otherLines)
        list.addGlobal({' ' + line});
    if (configuration.snooping)
        list.add("igmp-snooping", {});
}

} // namespace

std::vector<OtherSection> hua3Sections(const ConsoleSession &session, const SwitchConfiguration &configuration)
{
    SectionList list;
    const auto header = [&session](InterfaceKind kind, int number) {
        return "interface " + session.names().longName(InterfaceId{kind, number, 0});
    };
    addSystem(configuration, list);
    for (const auto &vlan : configuration.vlans)
        list.add("vlan " + number(vlan.first), vlanLines(vlan.second));
    for (const auto &trunk : configuration.trunks)
        list.add(header(InterfaceKind::Trunk, trunk.first), trunkLines(trunk.second));
    list.add(header(InterfaceKind::Null, 0), {});
    for (const auto &vlan : configuration.vlanInterfaces)
        list.add(header(InterfaceKind::Vlan, vlan.first), vlan.second);
    list.add(header(InterfaceKind::Management, 0), bridgedLines(configuration.management, LinkType::Access, words()));
    for (std::size_t port = 0; port < configuration.ports.size(); ++port)
        list.add("interface " + session.names().longName(port), portLines(configuration, port));
    list.addRemembered(configuration, "line");
    list.addRemembered(configuration, "acl");
    list.addRemembered(configuration, "local-user");
    list.addRemembered(configuration, "user-interface");
    return list.take();
}

SwitchConfiguration hua3FactoryConfiguration(const SimulatorOptions &options, const SwitchHardware &hardware)
{
    SwitchConfiguration configuration = plainConfiguration(hardware, QByteArrayLiteral("H3C"), LinkType::Access);
    const QByteArray modes[] = {"none", "password", "scheme"};
    configuration.sections = {
        {"line class aux", {"user-role network-admin"}},
        {"line aux 0", {"authentication-mode " + modes[static_cast<int>(options.login)], "user-role network-admin"}},
        {"line vty 0 63", {"user-role network-operator"}},
        {"local-user " + options.user + " class manage",
         {"password hash $h$6$k<2:hV>QbT@]nSL9$<->]=", "service-type terminal",
          "authorization-attribute user-role network-admin"}},
    };
    return configuration;
}

} // namespace simulator
