#include "configuration_huawei.h"

#include "configuration_common.h"
#include "hardware.h"
#include "listings.h"
#include "text.h"

namespace simulator {

namespace {

const BridgedWords &words()
{
    static const BridgedWords words{"port default vlan ", "port trunk allow-pass vlan ", "port trunk pvid vlan "};
    return words;
}

QByteArray snoopingWord(const ConsoleSession &session)
{
    return session.options().family == Family::HuaweiSub ? QByteArrayLiteral("igmp snooping")
                                                         : QByteArrayLiteral("igmp-snooping");
}

QByteArrayList vlanLines(const ConsoleSession &session, const VlanConfiguration &vlan)
{
    QByteArrayList lines;
    const QByteArray snooping = snoopingWord(session);
    if (!vlan.name.isEmpty())
        lines << "name " + vlan.name;
    if (!vlan.description.isEmpty())
        lines << "description " + vlan.description;
    if (vlan.forwardingByMac)
        lines << QByteArrayLiteral("l2-multicast forwarding-mode mac");
    if (vlan.snooping)
        lines << snooping + " enable";
    if (vlan.snoopingVersion != 2)
        lines << snooping + " version " + number(vlan.snoopingVersion);
    if (vlan.querier)
        lines << snooping + " querier enable";
    return lines;
}

QByteArrayList trunkLines(const ConsoleSession &session, const TrunkConfiguration &trunk)
{
    QByteArrayList lines = bridgedLines(trunk, session.dialect().defaultLinkType, words());
    const QByteArray mode = session.options().family == Family::HuaweiSub ? "mode lacp-static" : "mode lacp";
    if (trunk.lacp)
        lines << mode;
    return lines;
}

QByteArrayList portLines(const ConsoleSession &session, const PortConfiguration &port)
{
    QByteArrayList lines = bridgedLines(port, session.dialect().defaultLinkType, words());
    if (!port.negotiation)
        lines << QByteArrayLiteral("undo negotiation auto");
    if (!port.speed.isEmpty())
        lines << "speed " + port.speed;
    if (!port.duplex.isEmpty())
        lines << "duplex " + port.duplex;
    if (port.trunk)
        lines << "eth-trunk " + number(*port.trunk);
    if (!port.poe)
        lines << QByteArrayLiteral("undo poe enable");
    for (const auto &mirror : port.mirrors)
        lines << "port-mirroring to observe-port " + number(mirror.first) + ' ' + directionWord(mirror.second, false);
    return lines;
}

void addSystem(const ConsoleSession &session, const SwitchConfiguration &configuration, SectionList &list)
{
    list.addGlobal({"sysname " + configuration.name});
    if (!configuration.infoCenter)
        list.addGlobal({"undo info-center enable"});
    list.addGlobal(vlanCommands("vlan batch ", configuration.existingVlans().reset(1)));
    for (const QByteArray &line : configuration.otherLines)
        list.addGlobal({line});
    if (configuration.snooping)
        list.addGlobal({snoopingWord(session) + " enable"});
    QByteArrayList observers;
    for (const auto &group : configuration.mirrorGroups) {
        if (group.second.monitor)
            observers << "observe-port " + number(group.first) + " interface "
                             + session.names().longName(*group.second.monitor);
    }
    list.addGlobal(observers);
    if (configuration.ipConflictDetection)
        list.addGlobal({"arp ip-conflict-detect enable"});
}

void addInterfaces(const ConsoleSession &session, const SwitchConfiguration &configuration, SectionList &list)
{
    const auto header = [&session](InterfaceKind kind, int number) {
        return "interface " + session.names().longName(InterfaceId{kind, number, 0});
    };
    for (const auto &vlan : configuration.vlanInterfaces)
        list.add(header(InterfaceKind::Vlan, vlan.first), vlan.second);
    list.add(header(InterfaceKind::Management, 1), bridgedLines(configuration.management, LinkType::Access, words()));
    for (const auto &trunk : configuration.trunks)
        list.add(header(InterfaceKind::Trunk, trunk.first), trunkLines(session, trunk.second));
    for (std::size_t port = 0; port < configuration.ports.size(); ++port) {
        const QByteArray name = "interface " + session.names().longName(port);
        list.add(name, portLines(session, configuration.ports[port]));
        for (const int sub : configuration.ports[port].subInterfaces)
            list.add(name + '.' + number(sub), {});
    }
    list.add(header(InterfaceKind::Null, 0), {});
}

} // namespace

std::vector<OtherSection> huaweiSections(const ConsoleSession &session, const SwitchConfiguration &configuration)
{
    SectionList list;
    addSystem(session, configuration, list);
    for (const auto &vlan : configuration.vlans)
        list.addIfAny("vlan " + number(vlan.first), vlanLines(session, vlan.second));
    list.addRemembered(configuration, "acl");
    list.addRemembered(configuration, "aaa");
    addInterfaces(session, configuration, list);
    list.addRemembered(configuration, "user-interface");
    return list.take();
}

namespace {

SwitchConfiguration factoryConfiguration(const SimulatorOptions &options, const SwitchHardware &hardware,
                                         LinkType usual)
{
    SwitchConfiguration configuration = plainConfiguration(hardware, QByteArrayLiteral("HUAWEI"), usual);
    configuration.management.linkType = LinkType::Access;
    const QByteArray modes[] = {"none", "password", "aaa"};
    configuration.sections = {
        {"aaa",
         {"authentication-scheme default", "authorization-scheme default", "accounting-scheme default",
          "domain default", "domain default_admin",
          "local-user " + options.user + " password irreversible-cipher %^%#k<2:hV>QbT@]nSL9<->]%^%#",
          "local-user " + options.user + " privilege level 15",
          "local-user " + options.user + " service-type terminal"}},
        {"user-interface con 0", {"authentication-mode " + modes[static_cast<int>(options.login)]}},
        {"user-interface vty 0 4", {}},
    };
    return configuration;
}

} // namespace

SwitchConfiguration huaweiFactoryConfiguration(const SimulatorOptions &options, const SwitchHardware &hardware)
{
    return factoryConfiguration(options, hardware, LinkType::Hybrid);
}

SwitchConfiguration huaweiSubFactoryConfiguration(const SimulatorOptions &options, const SwitchHardware &hardware)
{
    return factoryConfiguration(options, hardware, LinkType::Access);
}

} // namespace simulator
