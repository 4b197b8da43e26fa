#include "configuration_common.h"

#include "text.h"
#include "vlanlist.h"

namespace simulator {

namespace {

const char *linkTypeWord(LinkType type)
{
    switch (type) {
    case LinkType::Access:
        return "access";
    case LinkType::Trunk:
        return "trunk";
    case LinkType::Hybrid:
        return "hybrid";
    }
    return "";
}

} // namespace

void SectionList::addRemembered(const SwitchConfiguration &configuration, const char *beginning)
{
    for (const OtherSection &section : configuration.sections) {
        if (section.header.startsWith(beginning))
            add(section.header, section.lines);
    }
}

QByteArrayList vlanCommands(const QByteArray &command, const VlanSet &vlans)
{
    QByteArrayList lines = vlanListLines(vlans);
    for (QByteArray &line : lines)
        line.prepend(command);
    return lines;
}

QByteArrayList bridgedLines(const BridgedInterface &interface, LinkType usual, const BridgedWords &words)
{
    QByteArrayList lines;
    if (!interface.description.isEmpty())
        lines << "description " + interface.description;
    if (interface.shutdown)
        lines << QByteArrayLiteral("shutdown");
    if (interface.linkType != usual)
        lines << QByteArray("port link-type ") + linkTypeWord(interface.linkType);
    if (interface.linkType == LinkType::Trunk) {
        if (interface.trunkVlan != 1)
            lines << words.trunkDefault + number(interface.trunkVlan);
        if (!interface.allowedVlans.test(1))
            lines << "undo " + words.allow + '1';
        lines << vlanCommands(words.allow, VlanSet(interface.allowedVlans).reset(1));
    } else if (interface.vlan != 1) {
        lines << words.access + number(interface.vlan);
    }
    return lines + interface.otherLines;
}

} // namespace simulator
