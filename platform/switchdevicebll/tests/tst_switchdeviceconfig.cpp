#include <switchdevicebll/switchdeviceconfig.h>

#include "devicedescription.h"

#include <lxtranslate/translator.h>
#include <switchdevicebll/translatemanage.h>

#include <QtCore/QFile>
#include <QtCore/QMap>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <atomic>
#include <functional>
#include <limits>
#include <thread>

using ovra::bll::PortRange;
using ovra::bll::SwitchDeviceConfig;

namespace {

const QString kHuawei = QStringLiteral("Huawei.xml");
const QString kSub = QStringLiteral("Huawei_sub.xml");
const QString kHua3 = QStringLiteral("Hua3.xml");
const QStringList kFiles{kHuawei, kSub, kHua3};

SwitchDeviceConfig &config()
{
    return *SwitchDeviceConfig::getInstance();
}

QString fileOf(const QString &name)
{
    return QStringLiteral(DEVICES_FOLDER "/") + name;
}

using Getter = QStringList (SwitchDeviceConfig::*)() const;

// Every getter of the interface but the one with an argument.
const QMap<QString, Getter> &getters()
{
    using C = SwitchDeviceConfig;
    static const QMap<QString, Getter> all{
        {QStringLiteral("getDownVlanCommands"), &C::getDownVlanCommands},
        {QStringLiteral("getUpGVlanCommands"), &C::getUpGVlanCommands},
        {QStringLiteral("getVlanQueryCommands"), &C::getVlanQueryCommands},
        {QStringLiteral("getMulticastCommands"), &C::getMulticastCommands},
        {QStringLiteral("getMulticastQueryCommands"), &C::getMulticastQueryCommands},
        {QStringLiteral("getQuerierCommands"), &C::getQuerierCommands},
        {QStringLiteral("getQuerierQueryCommands"), &C::getQuerierQueryCommands},
        {QStringLiteral("getLinkDownCommands"), &C::getLinkDownCommands},
        {QStringLiteral("getLinkGigabitSingleCommands"), &C::getLinkGigabitSingleCommands},
        {QStringLiteral("getLinkUpCommands"), &C::getLinkUpCommands},
        {QStringLiteral("getLink10GSingleCommands"), &C::getLink10GSingleCommands},
        {QStringLiteral("getLinkAggregationQueryCommands"), &C::getLinkAggregationQueryCommands},
        {QStringLiteral("getMirrorCommands"), &C::getMirrorCommands},
        {QStringLiteral("getMirrorPortQueryCommands"), &C::getMirrorPortQueryCommands},
        {QStringLiteral("getAutoNegCommands"), &C::getAutoNegCommands},
        {QStringLiteral("getAutoNegotiationQueryCommands"), &C::getAutoNegotiationQueryCommands},
        {QStringLiteral("getPOECommands"), &C::getPOECommands},
        {QStringLiteral("getPOEQueryCommands"), &C::getPOEQueryCommands},
        {QStringLiteral("getVlanStatusCommands"), &C::getVlanStatusCommands},
        {QStringLiteral("getPortStatusCommands"), &C::getPortStatusCommands},
        {QStringLiteral("getInterfaceSpeedCommands"), &C::getInterfaceSpeedCommands},
        {QStringLiteral("getTransceiverCommands"), &C::getTransceiverCommands},
        {QStringLiteral("getIpConflictCommands"), &C::getIpConflictCommands},
        {QStringLiteral("getMulticastForwardingTableCommands"), &C::getMulticastForwardingTableCommands},
        {QStringLiteral("getSaveCommands"), &C::getSaveCommands},
        {QStringLiteral("getClearLinkAggregationCommands"), &C::getClearLinkAggregationCommands},
        {QStringLiteral("getExportCommands"), &C::getExportCommands},
    };
    return all;
}

const QString kPortsGetter = QStringLiteral("getInterfaceCommandsForPorts");

QStringList commandsOf(const QString &getter, const QStringList &ports)
{
    if (getter == kPortsGetter)
        return config().getInterfaceCommandsForPorts(ports);
    return (config().*getters().value(getter))();
}

PortRange rangeOf(const QString &text)
{
    const QStringList ends = text.split(QStringLiteral(".."));
    return PortRange{ends.value(0).toInt(), ends.value(1).toInt()};
}

using Setter = std::function<void(const QString &)>;

Setter text(void (SwitchDeviceConfig::*setter)(const QString &))
{
    return [setter](const QString &value) { (config().*setter)(value); };
}

Setter number(void (SwitchDeviceConfig::*setter)(int))
{
    return [setter](const QString &value) { (config().*setter)(value.toInt()); };
}

Setter range(void (SwitchDeviceConfig::*setter)(const PortRange &))
{
    return [setter](const QString &value) { (config().*setter)(rangeOf(value)); };
}

const QMap<QString, Setter> &setters()
{
    using C = SwitchDeviceConfig;
    static const QMap<QString, Setter> all{
        {QStringLiteral("slot"), number(&C::setBoardNum)},
        {QStringLiteral("vlan"), number(&C::setVlanId)},
        {QStringLiteral("port-type"), text(&C::setInterfaceType)},
        {QStringLiteral("down-type"), text(&C::setDownInterface)},
        {QStringLiteral("up-type"), text(&C::setUpInterface)},
        {QStringLiteral("down"), range(&C::setDownPortRange)},
        {QStringLiteral("up"), range(&C::setUpPortRange)},
        {QStringLiteral("joiner"), text(&C::setWildcard)},
        {QStringLiteral("multicast"), text(&C::setCurrentMulticastStatus)},
        {QStringLiteral("switch-type"), text(&C::setSwitchType)},
        {QStringLiteral("querier"), text(&C::setCurrentQuerierStatus)},
        {QStringLiteral("link"), number(&C::setLinkId)},
        {QStringLiteral("link-type"), text(&C::setLinkInterfaceType)},
        {QStringLiteral("link-down"), range(&C::setLinkDownPortRange)},
        {QStringLiteral("link-up"), range(&C::setLinkUpPortRange)},
        {QStringLiteral("mirror"), number(&C::setMirrorId)},
        {QStringLiteral("source"), text(&C::setSourceportInfo)},
        {QStringLiteral("destination"), text(&C::setDstportInfo)},
        {QStringLiteral("mirror-status"), text(&C::setCurrentMirrorStatus)},
        {QStringLiteral("autoneg"), [](const QString &value) { config().setAutoNeg(value); }},
        {QStringLiteral("autoneg-status"), text(&C::setCurrentAutoNegStatus)},
        {QStringLiteral("poe"), text(&C::setPOEPort)},
        {QStringLiteral("poe-type"), text(&C::setPOEDownInterface)},
        {QStringLiteral("poe-range"), range(&C::setPOEDownPortRange)},
        {QStringLiteral("poe-status"), text(&C::setCurrentPOEStatus)},
        {QStringLiteral("status"), text(&C::setCurrentInterfaceStatus)},
    };
    return all;
}

void set(const QString &name, const QString &value)
{
    const Setter setter = setters().value(name);
    if (!setter)
        qFatal("no setter %s", qPrintable(name));
    setter(value);
}

// What a panel hands over for a switch of each kind. Every setter is called: no value of an earlier test remains.
void setUsualValues(const QString &file)
{
    const bool isSub = file == kSub;
    const bool isHua3 = file == kHua3;
    const QString slot = isHua3 ? QStringLiteral("1") : QStringLiteral("0");
    const QString down = isSub ? QStringLiteral("GE") : QStringLiteral("g");
    const QString up = isSub ? QStringLiteral("10GE") : isHua3 ? QStringLiteral("t") : QStringLiteral("xg");
    const QString enable = QStringLiteral("enable");
    const QMap<QString, QString> values{
        {QStringLiteral("slot"), QStringLiteral("0")},
        {QStringLiteral("vlan"), QStringLiteral("20")},
        {QStringLiteral("port-type"), QStringLiteral("access")},
        {QStringLiteral("down-type"), down},
        {QStringLiteral("up-type"), up},
        {QStringLiteral("down"), QStringLiteral("1..8")},
        {QStringLiteral("up"), isHua3 ? QStringLiteral("25..28") : QStringLiteral("1..4")},
        {QStringLiteral("joiner"), isSub ? QStringLiteral(" ") : QStringLiteral("-")},
        {QStringLiteral("multicast"), enable},
        {QStringLiteral("switch-type"), QStringLiteral("access")},
        {QStringLiteral("querier"), enable},
        {QStringLiteral("link"), QStringLiteral("1")},
        {QStringLiteral("link-type"), QStringLiteral("trunk")},
        {QStringLiteral("link-down"), QStringLiteral("1..4")},
        {QStringLiteral("link-up"), isHua3 ? QStringLiteral("25..26") : QStringLiteral("1..2")},
        {QStringLiteral("mirror"), QStringLiteral("1")},
        {QStringLiteral("source"), down + slot + QStringLiteral("/0/2")},
        {QStringLiteral("destination"), down + slot + QStringLiteral("/0/10")},
        {QStringLiteral("mirror-status"), enable},
        {QStringLiteral("autoneg"), down + slot + QStringLiteral("/0/5")},
        {QStringLiteral("autoneg-status"), enable},
        {QStringLiteral("poe"), QStringLiteral("all")},
        {QStringLiteral("poe-type"), down},
        {QStringLiteral("poe-range"), QStringLiteral("1..24")},
        {QStringLiteral("poe-status"), enable},
        {QStringLiteral("status"), enable},
    };
    for (const QString &name : setters().keys())
        set(name, values.value(name));
}

// "name=value" in their order; "ports=a,b" goes to the list that is returned.
QStringList apply(const QStringList &settings)
{
    QStringList ports;
    for (const QString &setting : settings) {
        const QString name = setting.section(QLatin1Char('='), 0, 0);
        const QString value = setting.section(QLatin1Char('='), 1);
        if (name == QLatin1String("ports"))
            ports = value.split(QLatin1Char(','));
        else
            set(name, value);
    }
    return ports;
}

QStringList linesOf(const char *block)
{
    QStringList lines;
    const QStringList raw = QString::fromUtf8(block).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : raw) {
        if (!line.trimmed().isEmpty())
            lines << line.trimmed();
    }
    return lines;
}

// The getter and settings of the rows of a file, as they are added.
class Rows
{
public:
    explicit Rows(QString file)
        : _file(std::move(file))
    {}

    void add(const char *getter, const QStringList &settings, const char *commands)
    {
        const QString tag =
            QStringLiteral("%1 %2 %3").arg(_file, QLatin1String(getter), settings.join(QLatin1Char(' ')));
        QTest::newRow(qPrintable(tag)) << _file << settings << QString::fromLatin1(getter) << linesOf(commands);
        _covered << QString::fromLatin1(getter);
    }
    QSet<QString> covered() const { return _covered; }

private:
    QString _file;
    QSet<QString> _covered;
};

QStringList s(std::initializer_list<const char *> texts)
{
    QStringList list;
    for (const char *one : texts)
        list << QString::fromUtf8(one);
    return list;
}

void addHuaweiConfiguration(Rows &rows)
{
    rows.add("getDownVlanCommands", {}, R"(
        system-view
        vlan 20
        port-group group-member GigabitEthernet 0/0/1 to GigabitEthernet 0/0/8
        undo port trunk allow-pass vlan 2 to 4094
        port link-type access
        port default vlan 20
        return)");
    rows.add("getDownVlanCommands", s({"port-type=trunk", "slot=2", "down=3..3", "vlan=4094"}), R"(
        system-view
        vlan 4094
        interface GigabitEthernet 2/0/3
        undo port default vlan
        port link-type trunk
        port trunk allow-pass vlan 4094
        return)");
    rows.add("getDownVlanCommands", s({"down-type=g", "down-type=xg"}), R"(
        system-view
        vlan 20
        port-group group-member XGigabitEthernet 0/0/1 to XGigabitEthernet 0/0/8
        undo port trunk allow-pass vlan 2 to 4094
        port link-type access
        port default vlan 20
        return)");
    rows.add("getUpGVlanCommands", s({"port-type=trunk"}), R"(
        system-view
        vlan 20
        port-group group-member XGigabitEthernet 0/0/1 to XGigabitEthernet 0/0/4
        undo port default vlan
        port link-type trunk
        port trunk allow-pass vlan 20
        return)");
    rows.add("getUpGVlanCommands", s({"up-type=xg", "up-type=40g", "up=2..2"}), R"(
        system-view
        vlan 20
        interface 40GE 0/0/2
        undo port trunk allow-pass vlan 2 to 4094
        port link-type access
        port default vlan 20
        return)");
    rows.add("getMulticastCommands", {}, R"(
        system-view
        igmp-snooping enable
        vlan 20
        igmp-snooping enable
        return)");
    rows.add("getMulticastCommands", s({"switch-type=aggregation"}), R"(
        system-view
        igmp-snooping enable
        vlan 20
        l2-multicast forwarding-mode ip
        igmp-snooping enable
        return)");
    rows.add("getMulticastCommands", s({"multicast=disable"}), R"(
        system-view
        vlan 20
        undo igmp-snooping enable
        return)");
    rows.add("getMulticastCommands", s({"multicast=disable", "joiner="}), R"(
        system-view
        vlan 20
        undo igmp-snooping enable
        return)");
    rows.add("getQuerierCommands", {}, R"(
        system-view
        vlan 20
        igmp-snooping querier enable
        return)");
    rows.add("getQuerierCommands", s({"querier=disable"}), R"(
        system-view
        vlan 20
        undo igmp-snooping querier enable
        return)");
    rows.add("getLinkDownCommands", {}, R"(
        system-view
        interface Eth-Trunk 1
        mode lacp
        trunkport GigabitEthernet 0/0/1 to 0/0/4
        port link-type trunk
        port trunk allow-pass vlan all
        return)");
    rows.add("getLinkDownCommands", s({"link-down=7..7", "link-type=access", "link=0"}), R"(
        system-view
        interface Eth-Trunk 0
        mode lacp
        trunkport GigabitEthernet 0/0/7
        undo port trunk allow-pass vlan 2 to 4094
        port link-type access
        return)");
    rows.add("getLinkGigabitSingleCommands", s({"link-down=7..7"}), R"(
        system-view
        interface Eth-Trunk 1
        mode lacp
        port link-type trunk
        port trunk allow-pass vlan all
        interface GigabitEthernet 0/0/7
        eth-trunk 1
        return)");
    rows.add("getLinkGigabitSingleCommands", s({"link-down=2..9", "link-type=access"}), R"(
        system-view
        interface Eth-Trunk 1
        mode lacp
        undo port trunk allow-pass vlan 2 to 4094
        port link-type access
        interface GigabitEthernet 0/0/2
        eth-trunk 1
        return)");
    rows.add("getLinkUpCommands", {}, R"(
        system-view
        interface Eth-Trunk 1
        mode lacp
        trunkport XGigabitEthernet 0/0/1 to 0/0/2
        port link-type trunk
        port trunk allow-pass vlan all
        return)");
    rows.add("getLinkUpCommands", s({"link-type=access", "link-up=3..3"}), R"(
        system-view
        interface Eth-Trunk 1
        mode lacp
        trunkport XGigabitEthernet 0/0/3
        undo port trunk allow-pass vlan 2 to 4094
        port link-type access
        return)");
    rows.add("getLink10GSingleCommands", s({"link-up=2..2"}), R"(
        system-view
        interface Eth-Trunk 1
        mode lacp
        port link-type trunk
        port trunk allow-pass vlan all
        interface XGigabitEthernet 0/0/2
        eth-trunk 1
        return)");
    rows.add("getLink10GSingleCommands", s({"link-type=access", "link-up=3..4"}), R"(
        system-view
        interface Eth-Trunk 1
        mode lacp
        undo port trunk allow-pass vlan 2 to 4094
        port link-type access
        interface XGigabitEthernet 0/0/3
        eth-trunk 1
        return)");
    rows.add("getMirrorCommands", {}, R"(
        system-view
        observe-port 1 interface GigabitEthernet 0/0/10
        interface GigabitEthernet 0/0/2
        port-mirroring to observe-port 1 inbound
        return)");
    rows.add("getMirrorCommands", s({"mirror-status=disable", "mirror=2", "source=xg0/0/1"}), R"(
        system-view
        interface XGigabitEthernet 0/0/1
        undo port-mirroring to observe-port 2 inbound
        undo observe-port 2
        return)");
    rows.add("getMirrorCommands", s({"source=7", "destination=GigabitEthernet 3/0/8", "down-type=xg"}), R"(
        system-view
        observe-port 1 interface GigabitEthernet 3/0/8
        interface XGigabitEthernet 0/0/7
        port-mirroring to observe-port 1 inbound
        return)");
    rows.add("getAutoNegCommands", {}, R"(
        system-view
        interface GigabitEthernet 0/0/5
        negotiation auto
        return)");
    rows.add("getAutoNegCommands", s({"autoneg-status=disable"}), R"(
        system-view
        interface GigabitEthernet 0/0/5
        undo negotiation auto
        return)");
    rows.add("getPOECommands", {}, R"(
        system-view
        port-group group-member GigabitEthernet 0/0/1 to GigabitEthernet 0/0/24
        poe enable
        return)");
    rows.add("getPOECommands", s({"poe-range=6..6", "poe-status=disable", "poe-type=xg"}), R"(
        system-view
        interface XGigabitEthernet 0/0/6
        undo poe enable
        return)");
    rows.add("getPOECommands", s({"poe=g0/0/3", "poe-status=disable"}), R"(
        system-view
        interface GigabitEthernet 0/0/3
        undo poe enable
        return)");
    rows.add("getInterfaceCommandsForPorts", s({"ports=g0/0/1,xg0/0/2,40g0/0/1", "status=disable"}), R"(
        system-view
        interface GigabitEthernet 0/0/1
        shutdown
        interface XGigabitEthernet 0/0/2
        shutdown
        interface 40GE 0/0/1
        shutdown
        return)");
    rows.add("getInterfaceCommandsForPorts", s({"ports=12"}), R"(
        system-view
        interface GigabitEthernet 0/0/12
        undo shutdown
        return)");
}

void addHuaweiQueries(Rows &rows)
{
    rows.add("getVlanQueryCommands", {}, "screen-length 0 temporary\n display vlan\n space");
    rows.add("getVlanStatusCommands", {}, "screen-length 0 temporary\n display vlan\n space");
    rows.add("getLinkAggregationQueryCommands", s({"link=3"}),
             "screen-length 0 temporary\n display eth-trunk 3\n space");
    rows.add("getMirrorPortQueryCommands", {},
             "screen-length 0 temporary\n display port-mirroring\n display observe-port\n space");
    rows.add("getPOEQueryCommands", {}, "screen-length 0 temporary\n display poe power\n space");
    rows.add("getPortStatusCommands", {},
             "screen-length 0 temporary\n undo terminal monitor\n display interface brief\n space");
    rows.add("getInterfaceSpeedCommands", s({"slot=2"}), "screen-length 0 temporary\n display device slot 2\n space");
    rows.add("getTransceiverCommands", {}, "screen-length 0 temporary\n display transceiver\n space");
    rows.add("getIpConflictCommands", {}, R"(
        system-view
        arp ip-conflict-detect enable
        return
        screen-length 0 temporary
        display arp ip-conflict track
        space)");
    rows.add("getMulticastForwardingTableCommands", {},
             "screen-length 0 temporary\n display l2-multicast forwarding-table vlan 20\n space");
    rows.add("getSaveCommands", {}, "save");
    rows.add("getClearLinkAggregationCommands", {}, "reset saved-configuration\n reboot");
    rows.add("getExportCommands", {}, "screen-length 0 temporary\n space\n display current-configuration\n space");
}

QSet<QString> addHuawei()
{
    Rows rows(kHuawei);
    addHuaweiConfiguration(rows);
    addHuaweiQueries(rows);
    // A blank that another model has left behind is not used.
    rows.add("getMulticastQueryCommands", s({"joiner= "}), R"(
        screen-length 0 temporary
        display igmp-snooping configuration
        display igmp-snooping vlan 20
        space)");
    rows.add("getQuerierQueryCommands", s({"vlan=7"}), R"(
        screen-length 0 temporary
        display igmp-snooping configuration
        display igmp-snooping vlan 7
        space)");
    rows.add("getAutoNegotiationQueryCommands", {}, R"(
        screen-length 0 temporary
        display current-configuration interface GigabitEthernet 0/0/5
        space)");
    return rows.covered();
}

QSet<QString> addSub()
{
    Rows rows(kSub);
    addHuaweiQueries(rows);
    rows.add("getDownVlanCommands", {}, R"(
        system-view
        vlan 20
        port-group group-member GE 0/0/1 to GE 0/0/8
        undo port trunk allow-pass vlan 2 to 4094
        port link-type access
        port default vlan 20
        return)");
    rows.add("getDownVlanCommands", s({"port-type=trunk", "down=3..3", "down-type=10GE"}), R"(
        system-view
        vlan 20
        interface 10GE 0/0/3
        undo port default vlan
        port link-type trunk
        port trunk allow-pass vlan 20
        return)");
    rows.add("getUpGVlanCommands", s({"port-type=trunk"}), R"(
        system-view
        vlan 20
        port-group group-member 10GE 0/0/1 to 10GE 0/0/4
        undo port default vlan
        port link-type trunk
        port trunk allow-pass vlan 20
        return)");
    rows.add("getUpGVlanCommands", s({"up-type=40GE", "up=1..1"}), R"(
        system-view
        vlan 20
        interface 40GE 0/0/1
        undo port trunk allow-pass vlan 2 to 4094
        port link-type access
        port default vlan 20
        return)");
    rows.add("getMulticastCommands", {}, R"(
        system-view
        igmp snooping enable
        vlan 20
        igmp snooping enable
        return)");
    rows.add("getMulticastCommands", s({"switch-type=aggregation", "joiner="}), R"(
        system-view
        igmp snooping enable
        vlan 20
        l2-multicast forwarding-mode ip
        igmp snooping enable
        return)");
    rows.add("getMulticastCommands", s({"multicast=disable"}), R"(
        system-view
        vlan 20
        undo igmp snooping enable
        return)");
    rows.add("getMulticastQueryCommands", s({"joiner=-"}), R"(
        screen-length 0 temporary
        display igmp snooping configuration
        display igmp snooping vlan 20
        space)");
    rows.add("getQuerierCommands", {}, R"(
        system-view
        vlan 20
        igmp snooping querier enable
        return)");
    rows.add("getQuerierCommands", s({"querier=disable"}), R"(
        system-view
        vlan 20
        undo igmp snooping querier enable
        return)");
    rows.add("getQuerierQueryCommands", {}, R"(
        screen-length 0 temporary
        display igmp snooping configuration
        display igmp snooping vlan 20
        space)");
    rows.add("getLinkDownCommands", {}, R"(
        system-view
        interface Eth-Trunk 1
        mode lacp
        trunkport GE 0/0/1 to 0/0/4
        port link-type trunk
        port trunk allow-pass vlan all
        return)");
    rows.add("getLinkDownCommands", s({"link-type=access", "link-down=2..2"}), R"(
        system-view
        interface Eth-Trunk 1
        mode lacp
        trunkport GE 0/0/2
        undo port trunk allow-pass vlan 2 to 4094
        port link-type access
        return)");
    rows.add("getLinkGigabitSingleCommands", s({"link-down=7..7"}), R"(
        system-view
        interface Eth-Trunk 1
        mode lacp
        port link-type trunk
        port trunk allow-pass vlan all
        interface GE 0/0/7
        eth-trunk 1
        return)");
    rows.add("getLinkUpCommands", {}, R"(
        system-view
        interface Eth-Trunk 1
        mode lacp
        trunkport 10GE 0/0/1 to 0/0/2
        port link-type trunk
        port trunk allow-pass vlan all
        return)");
    rows.add("getLink10GSingleCommands", s({"link-up=2..2", "link-type=access"}), R"(
        system-view
        interface Eth-Trunk 1
        mode lacp
        undo port trunk allow-pass vlan 2 to 4094
        port link-type access
        interface 10GE 0/0/2
        eth-trunk 1
        return)");
    rows.add("getMirrorCommands", s({"source=MultiGE0/0/2"}), R"(
        system-view
        observe-port 1 interface GE 0/0/10
        interface MultiGE 0/0/2
        port-mirroring to observe-port 1 inbound
        return)");
    rows.add("getMirrorCommands", s({"mirror-status=disable"}), R"(
        system-view
        interface GE 0/0/2
        undo port-mirroring to observe-port 1 inbound
        undo observe-port 1
        return)");
    rows.add("getAutoNegCommands", s({"autoneg=g0/0/5"}), R"(
        system-view
        interface GE 0/0/5
        negotiation auto
        return)");
    rows.add("getAutoNegCommands", s({"autoneg-status=disable", "autoneg=10GE0/0/1"}), R"(
        system-view
        interface 10GE 0/0/1
        undo negotiation auto
        return)");
    rows.add("getAutoNegotiationQueryCommands", {}, R"(
        screen-length 0 temporary
        display current-configuration interface GE 0/0/5
        space)");
    rows.add("getPOECommands", {}, R"(
        system-view
        port-group group-member GE 0/0/1 to GE 0/0/24
        poe enable
        return)");
    rows.add("getPOECommands", s({"poe=GE0/0/3", "poe-status=disable"}), R"(
        system-view
        interface GE 0/0/3
        undo poe enable
        return)");
    rows.add("getInterfaceCommandsForPorts", s({"ports=GE0/0/1,10GE0/0/2"}), R"(
        system-view
        interface GE 0/0/1
        undo shutdown
        interface 10GE 0/0/2
        undo shutdown
        return)");
    rows.add("getInterfaceCommandsForPorts", s({"ports=GE0/0/1", "status=disable"}), R"(
        system-view
        interface GE 0/0/1
        shutdown
        return)");
    rows.add("getDownVlanCommands", s({"down=6..6"}), R"(
        system-view
        vlan 20
        interface GE 0/0/6
        undo port trunk allow-pass vlan 2 to 4094
        port link-type access
        port default vlan 20
        return)");
    rows.add("getLinkGigabitSingleCommands", s({"link-type=access"}), R"(
        system-view
        interface Eth-Trunk 1
        mode lacp
        undo port trunk allow-pass vlan 2 to 4094
        port link-type access
        interface GE 0/0/1
        eth-trunk 1
        return)");
    rows.add("getLinkUpCommands", s({"link-type=access", "link-up=3..3"}), R"(
        system-view
        interface Eth-Trunk 1
        mode lacp
        trunkport 10GE 0/0/3
        undo port trunk allow-pass vlan 2 to 4094
        port link-type access
        return)");
    rows.add("getLink10GSingleCommands", s({"up-type=40GE"}), R"(
        system-view
        interface Eth-Trunk 1
        mode lacp
        port link-type trunk
        port trunk allow-pass vlan all
        interface 40GE 0/0/1
        eth-trunk 1
        return)");
    rows.add("getPOECommands", s({"poe-range=6..6"}), R"(
        system-view
        interface GE 0/0/6
        poe enable
        return)");
    return rows.covered();
}

void addHua3Configuration(Rows &rows)
{
    // The panel's slot does not count: it is 0 for these switches.
    rows.add("getDownVlanCommands", {}, R"(
        system-view
        vlan 20
        interface range GigabitEthernet 1/0/1 to GigabitEthernet 1/0/8
        port link-type access
        port access vlan 20
        return)");
    rows.add("getDownVlanCommands", s({"port-type=trunk", "down=3..3", "down-type=t"}), R"(
        system-view
        vlan 20
        interface Ten-GigabitEthernet 1/0/3
        port link-type trunk
        port trunk permit vlan 20
        return)");
    rows.add("getUpGVlanCommands", s({"port-type=trunk"}), R"(
        system-view
        vlan 20
        interface range Ten-GigabitEthernet 1/0/25 to Ten-GigabitEthernet 1/0/28
        port link-type trunk
        port trunk permit vlan 20
        return)");
    rows.add("getUpGVlanCommands", s({"up-type=40g", "up=49..49"}), R"(
        system-view
        vlan 20
        interface FortyGigE 1/0/49
        port link-type access
        port access vlan 20
        return)");
    // A joining character that another model has left behind is not used.
    rows.add("getMulticastCommands", s({"joiner= "}), R"(
        system-view
        igmp-snooping
        vlan 20
        igmp-snooping enable
        return)");
    rows.add("getMulticastCommands", s({"switch-type=aggregation", "multicast=disable", "joiner=x"}), R"(
        system-view
        vlan 20
        undo igmp-snooping enable
        return)");
    rows.add("getQuerierCommands", s({"joiner= "}), R"(
        system-view
        vlan 20
        igmp-snooping querier
        return)");
    rows.add("getQuerierCommands", s({"querier=disable"}), R"(
        system-view
        vlan 20
        undo igmp-snooping querier
        return)");
    rows.add("getLinkDownCommands", s({"link-down=1..2", "down-type=GigabitEthernet"}), R"(
        system-view
        interface Bridge-Aggregation 1
        link-aggregation mode dynamic
        interface GigabitEthernet 1/0/1
        port link-aggregation group 1
        interface GigabitEthernet 1/0/2
        port link-aggregation group 1
        interface Bridge-Aggregation 1
        port link-type trunk
        port trunk permit vlan all
        return)");
    rows.add("getLinkGigabitSingleCommands", s({"down-type=GigabitEthernet"}), R"(
        system-view
        interface Bridge-Aggregation 1
        link-aggregation mode dynamic
        interface GigabitEthernet 1/0/1
        port link-aggregation group 1
        interface Bridge-Aggregation 1
        port link-type trunk
        port trunk permit vlan all
        return)");
    rows.add("getLinkGigabitSingleCommands", s({"link-down=3..3", "link-type=access", "link=1024"}), R"(
        system-view
        interface Bridge-Aggregation 1024
        link-aggregation mode dynamic
        interface GigabitEthernet 1/0/3
        port link-aggregation group 1024
        interface Bridge-Aggregation 1024
        port link-type access
        return)");
    rows.add("getLinkUpCommands", s({"link-type=access", "up-type=Ten-GigabitEthernet"}), R"(
        system-view
        interface Bridge-Aggregation 1
        link-aggregation mode dynamic
        interface Ten-GigabitEthernet 1/0/25
        port link-aggregation group 1
        interface Ten-GigabitEthernet 1/0/26
        port link-aggregation group 1
        interface Bridge-Aggregation 1
        port link-type access
        return)");
    rows.add("getLink10GSingleCommands", s({"up-type=40-GigabitEthernet"}), R"(
        system-view
        interface Bridge-Aggregation 1
        link-aggregation mode dynamic
        interface FortyGigE 1/0/25
        port link-aggregation group 1
        interface Bridge-Aggregation 1
        port link-type trunk
        port trunk permit vlan all
        return)");
    rows.add("getMirrorCommands", {}, R"(
        system-view
        mirroring-group 1 local
        mirroring-group 1 mirroring-port GigabitEthernet 1/0/2 inbound
        mirroring-group 1 monitor-port GigabitEthernet 1/0/10
        return)");
    rows.add("getMirrorCommands", s({"mirror-status=disable"}), R"(
        system-view
        undo mirroring-group 1
        return)");
    rows.add("getAutoNegCommands", {}, R"(
        system-view
        interface GigabitEthernet 1/0/5
        undo speed
        undo duplex
        return)");
    rows.add("getAutoNegCommands", s({"autoneg-status=disable"}), R"(
        system-view
        interface GigabitEthernet 1/0/5
        speed 1000
        duplex full
        return)");
    rows.add("getAutoNegCommands", s({"autoneg-status=disable", "autoneg=t1/0/25"}), R"(
        system-view
        interface Ten-GigabitEthernet 1/0/25
        speed 10000
        duplex full
        return)");
    rows.add("getAutoNegCommands", s({"autoneg-status=disable", "autoneg=25g1/0/49"}),
             "system-view\n interface Twenty-FiveGigE 1/0/49\n speed 25000\n duplex full\n return");
    rows.add("getAutoNegCommands", s({"autoneg-status=disable", "autoneg=40g1/0/49"}),
             "system-view\n interface FortyGigE 1/0/49\n speed 40000\n duplex full\n return");
    rows.add("getAutoNegCommands", s({"autoneg-status=disable", "autoneg=HundredGigE1/0/49"}),
             "system-view\n interface HundredGigE 1/0/49\n speed 100000\n duplex full\n return");
    rows.add("getPOECommands", {}, R"(
        system-view
        interface range GigabitEthernet 1/0/1 to GigabitEthernet 1/0/24
        poe enable
        return)");
    rows.add("getPOECommands", s({"poe-range=6..6", "poe-status=disable"}), R"(
        system-view
        interface GigabitEthernet 1/0/6
        undo poe enable
        return)");
    rows.add("getPOECommands", s({"poe=g1/0/3"}), R"(
        system-view
        interface GigabitEthernet 1/0/3
        poe enable
        return)");
    rows.add("getInterfaceCommandsForPorts", s({"ports=g1/0/1,t1/0/25,7", "status=disable"}), R"(
        system-view
        interface GigabitEthernet 1/0/1
        shutdown
        interface Ten-GigabitEthernet 1/0/25
        shutdown
        interface GigabitEthernet 1/0/7
        shutdown
        return)");
    rows.add("getInterfaceCommandsForPorts", s({"ports=g1/0/24"}), R"(
        system-view
        interface GigabitEthernet 1/0/24
        undo shutdown
        return)");
}

QSet<QString> addHua3()
{
    Rows rows(kHua3);
    addHua3Configuration(rows);
    rows.add("getVlanQueryCommands", {}, "screen-length disable\n display vlan\n space");
    rows.add("getVlanStatusCommands", {}, "screen-length disable\n display vlan\n space");
    rows.add("getMulticastQueryCommands", {},
             "screen-length disable\n display igmp-snooping\n display igmp-snooping vlan 20\n space");
    rows.add("getQuerierQueryCommands", {}, "screen-length disable\n display igmp-snooping vlan 20\n space");
    rows.add("getLinkAggregationQueryCommands", {}, "screen-length disable\n display link-aggregation verbose\n space");
    rows.add("getMirrorPortQueryCommands", {}, "screen-length disable\n display mirroring-group all\n space");
    rows.add("getAutoNegotiationQueryCommands", {}, R"(
        screen-length disable
        display current-configuration interface GigabitEthernet 1/0/5
        space)");
    rows.add("getPOEQueryCommands", {}, "screen-length disable\n display poe interface\n space");
    rows.add("getPortStatusCommands", {},
             "screen-length disable\n undo terminal monitor\n display interface brief\n space");
    rows.add("getInterfaceSpeedCommands", {}, "screen-length disable\n display interface link-info\n space");
    rows.add("getTransceiverCommands", {}, "screen-length disable\n display transceiver interface\n space");
    rows.add("getIpConflictCommands", {},
             "screen-length disable\n display arp ip-conflict\n display logbuffer | include ARP\n space");
    rows.add("getMulticastForwardingTableCommands", {}, R"(
        screen-length disable
        display l2-multicast ip forwarding
        display multicast forwarding-table
        space)");
    rows.add("getSaveCommands", {}, "save force");
    rows.add("getClearLinkAggregationCommands", {}, "reset saved-configuration\n reboot");
    rows.add("getExportCommands", {}, "screen-length disable\n space\n display current-configuration\n space");
    rows.add("getDownVlanCommands", s({"port-type=trunk"}), R"(
        system-view
        vlan 20
        interface range GigabitEthernet 1/0/1 to GigabitEthernet 1/0/8
        port link-type trunk
        port trunk permit vlan 20
        return)");
    rows.add("getLinkDownCommands", s({"link-type=access", "link-down=2..2"}), R"(
        system-view
        interface Bridge-Aggregation 1
        link-aggregation mode dynamic
        interface GigabitEthernet 1/0/2
        port link-aggregation group 1
        interface Bridge-Aggregation 1
        port link-type access
        return)");
    rows.add("getLinkUpCommands", s({"link-up=25..25"}), R"(
        system-view
        interface Bridge-Aggregation 1
        link-aggregation mode dynamic
        interface Ten-GigabitEthernet 1/0/25
        port link-aggregation group 1
        interface Bridge-Aggregation 1
        port link-type trunk
        port trunk permit vlan all
        return)");
    rows.add("getLink10GSingleCommands", s({"link-type=access"}), R"(
        system-view
        interface Bridge-Aggregation 1
        link-aggregation mode dynamic
        interface Ten-GigabitEthernet 1/0/25
        port link-aggregation group 1
        interface Bridge-Aggregation 1
        port link-type access
        return)");
    return rows.covered();
}

const QString kNothingLoaded = QStringLiteral("^未加载设备描述文件，未发送任何命令$");

void expectWarning(const QString &pattern)
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(pattern));
}

} // namespace

class TestSwitchDeviceConfig : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void getter_beforeTheFirstLoad_isEmptyAndWarns();
    void getter_beforeTheFirstSetting_namesTheValue();
    void load_fault_keepsTheDescriptionInForce_data();
    void load_fault_keepsTheDescriptionInForce();
    void load_anotherFile_takesItsPlace();
    void load_whileAnotherThreadReads_handsOutWholeDescriptions();
    void commands_data();
    void commands();
    void hua3Link_stitchedOverPorts_isOneList();
    void value_hostileText_isRefused_data();
    void value_hostileText_isRefused();
    void value_hostilePort_inTheList_refusesTheWholeList_data();
    void value_hostilePort_inTheList_refusesTheWholeList();
    void value_outOfBounds_isRefused_data();
    void value_outOfBounds_isRefused();
    void value_refused_isForgottenWithTheNextOne();
    void value_refused_isToldInTheLanguageInForce_data();
    void value_refused_isToldInTheLanguageInForce();
    void ports_wholeSwitch_areRepeatedInOrder();
};

void TestSwitchDeviceConfig::initTestCase()
{
    QCOMPARE(SwitchDeviceConfig::getInstance(), SwitchDeviceConfig::getInstance());
}

void TestSwitchDeviceConfig::getter_beforeTheFirstLoad_isEmptyAndWarns()
{
    QVERIFY(config().description() == nullptr);
    QVERIFY(config().errorInfo().isEmpty());
    for (auto getter = getters().cbegin(); getter != getters().cend(); ++getter) {
        expectWarning(kNothingLoaded);
        QCOMPARE(commandsOf(getter.key(), {}), QStringList());
    }
    expectWarning(kNothingLoaded);
    QCOMPARE(commandsOf(kPortsGetter, {QStringLiteral("g0/0/1")}), QStringList());
}

void TestSwitchDeviceConfig::getter_beforeTheFirstSetting_namesTheValue()
{
    QVERIFY(config().loadXmlConfig(fileOf(kHuawei)));
    expectWarning(QStringLiteral("^未设置VLAN号，未发送任何命令$"));
    QCOMPARE(config().getQuerierCommands(), QStringList());
    expectWarning(QStringLiteral("^未设置VLAN号，未发送任何命令$"));
    QCOMPARE(config().getDownVlanCommands(), QStringList());
    expectWarning(QStringLiteral("^镜像状态 \"\" 不在 enable, disable 之中，未发送任何命令$"));
    QCOMPARE(config().getMirrorCommands(), QStringList());
    QCOMPARE(config().getMulticastForwardingTableCommands().value(1),
             QStringLiteral("display l2-multicast forwarding-table vlan 1"));
    // The slot is asked for before anybody has told it.
    QCOMPARE(config().getInterfaceSpeedCommands().value(1), QStringLiteral("display device slot 0"));
}

void TestSwitchDeviceConfig::load_fault_keepsTheDescriptionInForce_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");
    QTest::newRow("empty") << QByteArray() << QStringLiteral("bad\\.xml:\\d+: .");
    QTest::newRow("not XML") << QByteArray("\x7f\x45LF\0\0\0", 7) << QStringLiteral("bad\\.xml:1: .");
    QTest::newRow("cut off") << QByteArray("<device-description format=\"1\" name=\"x\">\n<interfaces")
                             << QStringLiteral("bad\\.xml:2: .");
    QTest::newRow("another document") << QByteArray("<?xml version=\"1.0\"?>\n<html/>")
                                      << QStringLiteral("bad\\.xml:2: this is not a device description");
}

void TestSwitchDeviceConfig::load_fault_keepsTheDescriptionInForce()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, error);
    QVERIFY(config().loadXmlConfig(fileOf(kHua3)));
    setUsualValues(kHua3);
    const auto before = config().description();
    QCOMPARE(config().errorInfo(), QString());

    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("bad.xml"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    file.close();
    expectWarning(QStringLiteral("not loaded: .*") + error);
    QVERIFY(!config().loadXmlConfig(path));
    QVERIFY2(config().errorInfo().contains(QRegularExpression(error)), qPrintable(config().errorInfo()));
    QVERIFY(config().description() == before);
    QCOMPARE(config().getSaveCommands(), QStringList(QStringLiteral("save force")));

    const QStringList others{QString(), folder.path(), folder.filePath(QStringLiteral("none.xml"))};
    for (const QString &other : others) {
        expectWarning(QStringLiteral("not loaded: "));
        QVERIFY(!config().loadXmlConfig(other));
        QVERIFY(!config().errorInfo().isEmpty());
        QVERIFY(config().description() == before);
    }
}

void TestSwitchDeviceConfig::load_anotherFile_takesItsPlace()
{
    QVERIFY(config().loadXmlConfig(fileOf(kHuawei)));
    const auto huawei = config().description();
    QVERIFY(config().loadXmlConfig(fileOf(kSub)));
    const auto sub = config().description();
    QVERIFY(huawei != sub);
    QCOMPARE(huawei->interfaces.defaultType, QStringLiteral("GigabitEthernet")); // a snapshot stays what it was
    QCOMPARE(sub->interfaces.defaultType, QStringLiteral("GE"));

    setUsualValues(kSub);
    config().setCurrentMulticastStatus(QStringLiteral("disable"));
    QVERIFY(config().loadXmlConfig(fileOf(kHua3)));
    QVERIFY(config().getMulticastCommands().contains(QStringLiteral("undo igmp-snooping enable"))); // values stay set
}

void TestSwitchDeviceConfig::load_whileAnotherThreadReads_handsOutWholeDescriptions()
{
    QVERIFY(config().loadXmlConfig(fileOf(kHuawei)));
    std::atomic<bool> stop{false};
    std::atomic<int> broken{0};
    std::atomic<int> seen{0};
    std::thread reader([&] {
        while (!stop) {
            const auto description = config().description();
            const bool isWhole = description->blocks.size() == 28 && description->session.questions.size() > 3
                                 && config().errorInfo().isEmpty();
            broken += isWhole ? 0 : 1;
            ++seen;
        }
    });
    bool loaded = true;
    for (int i = 0; i < 40 || seen < 100; ++i)
        loaded = config().loadXmlConfig(fileOf(kFiles.at(i % kFiles.size()))) && loaded;
    stop = true;
    reader.join();
    QVERIFY(loaded);
    QCOMPARE(broken.load(), 0);
}

void TestSwitchDeviceConfig::commands_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QString>("getter");
    QTest::addColumn<QStringList>("expected");
    QStringList names = getters().keys();
    names << kPortsGetter;
    const QSet<QString> all(names.cbegin(), names.cend());
    QCOMPARE(all.size(), 28);
    QCOMPARE(all - addHuawei(), QSet<QString>());
    QCOMPARE(all - addSub(), QSet<QString>());
    QCOMPARE(all - addHua3(), QSet<QString>());
}

void TestSwitchDeviceConfig::commands()
{
    QFETCH(QString, file);
    QFETCH(QStringList, settings);
    QFETCH(QString, getter);
    QFETCH(QStringList, expected);
    QVERIFY(config().loadXmlConfig(fileOf(file)));
    setUsualValues(file);
    const QStringList ports = apply(settings);
    const QStringList commands = commandsOf(getter, ports);
    QCOMPARE(commands, expected);
    QCOMPARE(commandsOf(getter, ports), expected); // asking changes nothing

    // At the user view, where a refused line may have left the switch, "quit" ends the login.
    QVERIFY(!commands.contains(QStringLiteral("quit")));
    QCOMPARE(commands.count(QStringLiteral("return")), commands.count(QStringLiteral("system-view")));
    if (!commands.contains(QStringLiteral("space")))
        return;
    // Written without a line end, a key in the middle would run into the next command.
    QCOMPARE(commands.last(), QStringLiteral("space"));
    QCOMPARE(commands.count(QStringLiteral("space")), getter == QLatin1String("getExportCommands") ? 2 : 1);
    QCOMPARE(commands.filter(QStringLiteral("space")).size(), commands.count(QStringLiteral("space")));
}

// What the panel does for a group of several ports.
void TestSwitchDeviceConfig::hua3Link_stitchedOverPorts_isOneList()
{
    QVERIFY(config().loadXmlConfig(fileOf(kHua3)));
    setUsualValues(kHua3);
    config().setDownInterface(QStringLiteral("GigabitEthernet"));
    config().setLinkDownPortRange({1, 3});
    QStringList stitched = config().getLinkGigabitSingleCommands().mid(0, 3);
    QStringList last;
    for (int port = 1; port <= 3; ++port) {
        config().setLinkDownPortRange({port, port});
        last = config().getLinkGigabitSingleCommands();
        stitched << last.mid(3, 2);
    }
    stitched << last.mid(5);
    config().setLinkDownPortRange({1, 3});
    QCOMPARE(stitched, config().getLinkDownCommands());

    config().setUpInterface(QStringLiteral("Ten-GigabitEthernet"));
    config().setLinkUpPortRange({25, 28});
    QCOMPARE(config().getLink10GSingleCommands().mid(3, 2),
             s({"interface Ten-GigabitEthernet 1/0/25", "port link-aggregation group 1"}));
}

void TestSwitchDeviceConfig::value_hostileText_isRefused_data()
{
    QTest::addColumn<QString>("setter");
    QTest::addColumn<QString>("getter");
    QTest::addColumn<QString>("value");
    const QMap<QString, QString> users{
        {QStringLiteral("port-type"), QStringLiteral("getDownVlanCommands")},
        {QStringLiteral("down-type"), QStringLiteral("getDownVlanCommands")},
        {QStringLiteral("up-type"), QStringLiteral("getUpGVlanCommands")},
        {QStringLiteral("joiner"), QStringLiteral("getMulticastCommands")},
        {QStringLiteral("multicast"), QStringLiteral("getMulticastCommands")},
        {QStringLiteral("switch-type"), QStringLiteral("getMulticastCommands")},
        {QStringLiteral("querier"), QStringLiteral("getQuerierCommands")},
        {QStringLiteral("link-type"), QStringLiteral("getLinkDownCommands")},
        {QStringLiteral("source"), QStringLiteral("getMirrorCommands")},
        {QStringLiteral("destination"), QStringLiteral("getMirrorCommands")},
        {QStringLiteral("mirror-status"), QStringLiteral("getMirrorCommands")},
        {QStringLiteral("autoneg"), QStringLiteral("getAutoNegotiationQueryCommands")},
        {QStringLiteral("autoneg-status"), QStringLiteral("getAutoNegCommands")},
        {QStringLiteral("poe"), QStringLiteral("getPOECommands")},
        {QStringLiteral("poe-type"), QStringLiteral("getPOECommands")},
        {QStringLiteral("poe-status"), QStringLiteral("getPOECommands")},
    };
    QStringList values = s({"enable\n",
                            "access\r\nreboot",
                            "g0/0/1\r\nreset saved-configuration",
                            "g0/0/1\n",
                            "g0/0/1\r",
                            "g0/0/1;reboot",
                            "g0/0/1|x",
                            "g0/0/1?",
                            "g0/0/1#",
                            "g0/0/1\t",
                            "g0/0/1,g0/0/2",
                            "g0/0/1 & reboot",
                            "g0/0/1\x7f",
                            "g0/0/1\x03",
                            "g0/0/1 to g0/0/9",
                            "g 0/0/1 x",
                            " g0/0/1",
                            "g0/0/1 ",
                            "g  0/0/1",
                            "q0/0/1",
                            "0/0/1",
                            "g0/0",
                            "g0/0/1/2",
                            "g0/0/1000",
                            "g-1/0/1",
                            "g0/0/\xEF\xBC\x91",
                            "space",
                            "spaceg0/0/1",
                            "{vlan}",
                            "all\n",
                            "\x1b[A",
                            "g\x08",
                            "\xE2\x80\xA8"});
    values << QString(QChar(0)) << QStringLiteral("g0/0/1") + QChar(0) << QString(100000, QLatin1Char('g'))
           << QString(100000, QLatin1Char('1')) << QString(QChar(0xd800));
    for (auto user = users.cbegin(); user != users.cend(); ++user) {
        for (int i = 0; i < values.size(); ++i)
            QTest::addRow("%s %d", qPrintable(user.key()), i) << user.key() << user.value() << values.at(i);
    }
}

void TestSwitchDeviceConfig::value_hostileText_isRefused()
{
    QFETCH(QString, setter);
    QFETCH(QString, getter);
    QFETCH(QString, value);
    QVERIFY(config().loadXmlConfig(fileOf(kHuawei)));
    setUsualValues(kHuawei);
    set(setter, value);
    // One printable line, and no longer for a long text.
    expectWarning(QStringLiteral("\\A.{1,200}，未发送任何命令\\z"));
    QCOMPARE(commandsOf(getter, {}), QStringList());
}

void TestSwitchDeviceConfig::value_hostilePort_inTheList_refusesTheWholeList_data()
{
    QTest::addColumn<QStringList>("ports");
    QTest::addColumn<QString>("reason");
    QTest::newRow("none") << QStringList() << QStringLiteral("端口列表为空");
    QTest::newRow("empty port") << s({"g0/0/1", ""}) << QStringLiteral("未设置所列端口");
    QTest::newRow("line end") << s({"g0/0/1", "g0/0/2\r\nreboot"})
                              << QStringLiteral("\"g0/0/2\\\\u000d\\\\u000areboot\"");
    QTest::newRow("all") << s({"all"}) << QStringLiteral("\"all\" 不是 Huawei switch 的端口");
    QTest::newRow("other family's port") << s({"t1/0/25"}) << QStringLiteral("\"t1/0/25\" 不是 Huawei switch 的端口");
    QTest::newRow("port 0 of a slot") << s({"g0/0/0"}) << QStringLiteral("\"g0/0/0\" 不是 Huawei switch 的端口");
    QTest::newRow("slot 256") << s({"g256/0/1"}) << QStringLiteral("\"g256/0/1\" 不是 Huawei switch 的端口");
    QTest::newRow("port 0") << s({"0"}) << QStringLiteral("\"0\" 不是 Huawei switch 的端口");
    QStringList many;
    for (int i = 0; i < 1000; ++i)
        many << QStringLiteral("g0/0/1");
    QTest::newRow("too many") << many << QStringLiteral("端口列表超过 999 个");
}

void TestSwitchDeviceConfig::value_hostilePort_inTheList_refusesTheWholeList()
{
    QFETCH(QStringList, ports);
    QFETCH(QString, reason);
    QVERIFY(config().loadXmlConfig(fileOf(kHuawei)));
    setUsualValues(kHuawei);
    expectWarning(QStringLiteral("^.*") + reason + QStringLiteral(".*，未发送任何命令$"));
    QCOMPARE(config().getInterfaceCommandsForPorts(ports), QStringList());
}

void TestSwitchDeviceConfig::value_outOfBounds_isRefused_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QString>("getter");
    const QString lowest = QString::number(std::numeric_limits<int>::min());
    const QString highest = QString::number(std::numeric_limits<int>::max());
    const auto add = [](const QString &file, const QString &setting, const char *getter) {
        QTest::addRow("%s %s", qPrintable(file), qPrintable(setting)) << file << setting << QString::fromLatin1(getter);
    };
    for (const QString &file : kFiles) {
        for (const QString &vlan : {QStringLiteral("0"), QStringLiteral("4095"), QStringLiteral("-1"), lowest, highest})
            add(file, QStringLiteral("vlan=") + vlan, "getDownVlanCommands");
        for (const QString &link : {QStringLiteral("-1"), QStringLiteral("1025"), lowest, highest})
            add(file, QStringLiteral("link=") + link, "getLinkGigabitSingleCommands");
        for (const QString &mirror : {QStringLiteral("0"), QStringLiteral("65")})
            add(file, QStringLiteral("mirror=") + mirror, "getMirrorCommands");
        const QStringList ranges{QStringLiteral("5..3"), QStringLiteral("0..4"), QStringLiteral("-2..-1"),
                                 QStringLiteral("1..1000"), lowest + QStringLiteral("..") + highest};
        for (const QString &ends : ranges) {
            add(file, QStringLiteral("down=") + ends, "getDownVlanCommands");
            add(file, QStringLiteral("up=") + ends, "getUpGVlanCommands");
            add(file, QStringLiteral("link-down=") + ends, "getLinkDownCommands");
            add(file, QStringLiteral("link-up=") + ends, "getLink10GSingleCommands");
            add(file, QStringLiteral("poe-range=") + ends, "getPOECommands");
        }
    }
    add(kHuawei, QStringLiteral("slot=-1"), "getInterfaceSpeedCommands");
    add(kHuawei, QStringLiteral("slot=256"), "getDownVlanCommands");
    add(kHua3, QStringLiteral("link=0"), "getLinkUpCommands");
}

void TestSwitchDeviceConfig::value_outOfBounds_isRefused()
{
    QFETCH(QString, file);
    QFETCH(QString, setting);
    QFETCH(QString, getter);
    QVERIFY(config().loadXmlConfig(fileOf(file)));
    setUsualValues(file);
    apply({setting});
    expectWarning(QStringLiteral("^.* (不在 .* 之间|不是 .* 之内的递增范围)，未发送任何命令$"));
    QCOMPARE(commandsOf(getter, {}), QStringList());
}

void TestSwitchDeviceConfig::value_refused_isToldInTheLanguageInForce_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("empty");
    QTest::addColumn<QString>("range");
    QTest::newRow("Chinese") << QStringLiteral("zh_CN") << QStringLiteral("端口列表为空，未发送任何命令")
                             << QStringLiteral("PoE端口范围 5 到 3 不是 1 到 999 之内的递增范围，未发送任何命令");
    QTest::newRow("English")
        << QStringLiteral("en") << QStringLiteral("the list of ports is empty; nothing is sent")
        << QStringLiteral("the PoE port range 5 to 3 does not go upwards from 1 to 999 at most; nothing is sent");
}

void TestSwitchDeviceConfig::value_refused_isToldInTheLanguageInForce()
{
    QFETCH(QString, language);
    QFETCH(QString, empty);
    QFETCH(QString, range);
    QVERIFY(config().loadXmlConfig(fileOf(kHuawei)));
    setUsualValues(kHuawei);
    apply({QStringLiteral("poe-range=5..3")});
    lumen::trans::Translator *const translator = OVRA::BLL::TranslateManage::getInstance()->getTranslator();
    QVERIFY(translator->switchLanguage(language));
    expectWarning(QLatin1Char('^') + empty + QLatin1Char('$'));
    QCOMPARE(config().getInterfaceCommandsForPorts({}), QStringList());
    expectWarning(QLatin1Char('^') + range + QLatin1Char('$'));
    QCOMPARE(commandsOf(QStringLiteral("getPOECommands"), {}), QStringList());
    QVERIFY(translator->switchLanguage(QStringLiteral("zh_CN")));
}

void TestSwitchDeviceConfig::value_refused_isForgottenWithTheNextOne()
{
    QVERIFY(config().loadXmlConfig(fileOf(kHuawei)));
    setUsualValues(kHuawei);
    config().setSourceportInfo(QStringLiteral("g0/0/2\nreboot"));
    expectWarning(QStringLiteral("^镜像源端口 \"g0/0/2.u000areboot\" 不是 Huawei switch 的端口，未发送任何命令$"));
    QCOMPARE(config().getMirrorCommands(), QStringList());
    QCOMPARE(config().getAutoNegCommands().size(), 4); // the other lists do not need it
    config().setSourceportInfo(QStringLiteral("g0/0/2"));
    QCOMPARE(config().getMirrorCommands().size(), 5);
}

void TestSwitchDeviceConfig::ports_wholeSwitch_areRepeatedInOrder()
{
    QVERIFY(config().loadXmlConfig(fileOf(kHuawei)));
    setUsualValues(kHuawei);
    QStringList ports;
    for (int port = 1; port <= 999; ++port)
        ports << QStringLiteral("g0/0/%1").arg(port);
    const QStringList commands = config().getInterfaceCommandsForPorts(ports);
    QCOMPARE(commands.size(), 2 + 2 * 999);
    QCOMPARE(commands.at(1), QStringLiteral("interface GigabitEthernet 0/0/1"));
    QCOMPARE(commands.at(commands.size() - 3), QStringLiteral("interface GigabitEthernet 0/0/999"));
}

QTEST_GUILESS_MAIN(TestSwitchDeviceConfig)
#include "tst_switchdeviceconfig.moc"
