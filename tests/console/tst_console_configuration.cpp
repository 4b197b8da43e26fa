// What the panel applies takes effect on the switch, and what the switch says reaches the panel. The same program is
// built for each language of the interface.
#include "consolebench.h"

#include <switchdevicebll/translatemanage.h>

#include <QtTest/QtTest>

#include <algorithm>
#include <map>
#include <memory>

using simulator::Family;
using simulator::LinkType;
using simulator::MirrorDirection;
using simulator::PortConfiguration;
using simulator::SwitchConfiguration;

Q_DECLARE_METATYPE(simulator::Family)

namespace {

#ifdef SWITCHPANEL_ENGLISH
constexpr bool kEnglish = true;
#else
constexpr bool kEnglish = false;
#endif

// The configuration as words, so that a failing comparison shows what is wrong.
QString portText(const SwitchConfiguration &configuration, std::size_t index)
{
    const PortConfiguration &port = configuration.ports.at(index);
    static const char *const kTypes[] = {"access", "trunk", "hybrid"};
    QStringList words{QLatin1String(kTypes[static_cast<std::size_t>(port.linkType)])};
    if (port.linkType != LinkType::Trunk) {
        words << QString::number(port.vlan);
    } else {
        for (std::size_t vlan = 2; vlan <= simulator::kLastVlan && port.allowedVlans.count() < 10; ++vlan) {
            if (port.allowedVlans.test(vlan))
                words << QString::number(vlan);
        }
        if (port.allowedVlans.count() >= simulator::kLastVlan)
            words << QStringLiteral("all");
    }
    if (port.shutdown)
        words << QStringLiteral("shut");
    if (!port.negotiation || port.duplex == "full")
        words << QStringLiteral("fixed");
    if (!port.poe)
        words << QStringLiteral("unpowered");
    if (port.trunk)
        words << QStringLiteral("in %1").arg(*port.trunk);
    for (const auto &mirror : port.mirrors)
        words << QStringLiteral("mirrored to %1").arg(mirror.first)
              << (mirror.second == MirrorDirection::Inbound ? QStringLiteral("inbound") : QStringLiteral("otherwise"));
    return words.join(QLatin1Char(' '));
}

// "1-8: access 20, 9-24: access 1"
QString portsText(const SwitchConfiguration &configuration)
{
    QStringList runs;
    std::size_t first = 0;
    for (std::size_t next = 1; next <= configuration.ports.size(); ++next) {
        const QString text = portText(configuration, first);
        if (next < configuration.ports.size() && portText(configuration, next) == text)
            continue;
        runs << (next == first + 1 ? QStringLiteral("%1: %2").arg(first + 1).arg(text)
                                   : QStringLiteral("%1-%2: %3").arg(first + 1).arg(next).arg(text));
        first = next;
    }
    return runs.join(QStringLiteral(", "));
}

QStringList stateText(const SwitchConfiguration &configuration)
{
    QStringList lines{portsText(configuration)};
    for (const auto &vlan : configuration.vlans)
        lines << QStringLiteral("vlan %1%2%3%4")
                     .arg(vlan.first)
                     .arg(vlan.second.snooping ? QStringLiteral(" snooping") : QString(),
                          vlan.second.querier ? QStringLiteral(" querier") : QString(),
                          // The sub-model's and Hua3's default differs, so only what was asked for counts.
                          vlan.second.forwardingByMac ? QStringLiteral(" by MAC") : QString());
    for (const auto &trunk : configuration.trunks)
        lines << QStringLiteral("group %1 %2%3")
                     .arg(trunk.first)
                     .arg(trunk.second.linkType == LinkType::Trunk ? QStringLiteral("trunk") : QStringLiteral("access"),
                          trunk.second.lacp ? QStringLiteral(" dynamic") : QStringLiteral(" static"));
    for (const auto &group : configuration.mirrorGroups)
        lines << QStringLiteral("observer %1 at %2")
                     .arg(group.first)
                     .arg(group.second.monitor ? int(*group.second.monitor) + 1 : 0);
    lines << QStringLiteral("snooping %1").arg(int(configuration.snooping));
    return lines;
}

QString familyArgument(Family family)
{
    switch (family) {
    case Family::Huawei:
        return QStringLiteral("--family huawei");
    case Family::HuaweiSub:
        return QStringLiteral("--family huawei-sub");
    case Family::Hua3:
        return QStringLiteral("--family hua3");
    }
    return {};
}

const char *familyName(Family family)
{
    return family == Family::Huawei ? "huawei" : family == Family::HuaweiSub ? "huawei-sub" : "hua3";
}

constexpr Family kFamilies[] = {Family::Huawei, Family::HuaweiSub, Family::Hua3};

void noFeatures(SwitchDeviceViewModel &panel)
{
    panel.setVlanEnable(false);
    panel.setMulticastEnable(false);
    panel.setQuerierEnable(false);
    panel.setLinkAggregationEnable(false);
    panel.setMirrorPortEnable(false);
    panel.setAutoNegEnable(false);
    panel.setPoeEnable(false);
    panel.setInterfaceEnable(false);
}

} // namespace

class TestConsoleConfiguration : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void feature_takesEffect_andCanBeTakenBack_data();
    void feature_takesEffect_andCanBeTakenBack();
    void linkGroup_isMade_andCleared_data();
    void linkGroup_isMade_andCleared();
    void opticalPorts_areLeftOut();
    void severalFeatures_atOnce_data();
    void severalFeatures_atOnce();
    void refusedLine_isTold_andTheQueueGoesOn_data();
    void refusedLine_isTold_andTheQueueGoesOn();
    void poe_onASwitchWithout_isTold();
    void status_isLogged_data();
    void status_isLogged();
    void portStatus_refreshesTheInventory_data();
    void portStatus_refreshesTheInventory();
    void save_isKeptOverARestart_data();
    void save_isKeptOverARestart();
    void clear_restartsTheSwitch_data();
    void clear_restartsTheSwitch();

private:
    using Expected = void (*)(SwitchConfiguration &, Family);

    /// A connected switch of that kind; the same one as before where the arguments are the same.
    ConsoleBench &connected(const QString &arguments);
    /// Sends what is set, and waits for the end.
    bool apply(ConsoleBench &bench);
    bool import(ConsoleBench &bench, const QByteArray &lines);

    std::unique_ptr<QuietLog> _quiet;
    std::unique_ptr<ConsoleBench> _bench;
    QString _arguments;
    QTemporaryDir _folder;
};

namespace {

struct Feature
{
    const char *name;
    void (*set)(SwitchDeviceViewModel &panel, Family family); // enables the feature with its values
    void (*takeBack)(SwitchDeviceViewModel &panel);           // the values that undo it
    void (*effect)(SwitchConfiguration &configuration, Family family);
    void (*rest)(SwitchConfiguration &configuration, Family family); // what is left of it afterwards
};

// As the panel's lists spell it; of an aggregation switch, the port that stands in.
QString panelPort(SwitchDeviceViewModel &panel, int index)
{
    return panel.allInterface().value(index).toString();
}

void setVlan(SwitchConfiguration &configuration, std::size_t first, std::size_t count, LinkType type, int vlan)
{
    configuration.vlans[vlan];
    for (std::size_t port = first; port < first + count; ++port) {
        PortConfiguration &settings = configuration.ports.at(port);
        settings.linkType = type;
        settings.vlan = type == LinkType::Trunk ? 1 : vlan;
        settings.allowedVlans = simulator::VlanSet().set(1);
        if (type == LinkType::Trunk)
            settings.allowedVlans.set(std::size_t(vlan));
    }
}

// The up ports, which follow the others: 4 of an access switch, 6 of an aggregation switch.
std::size_t upPorts(const SwitchConfiguration &configuration)
{
    return configuration.ports.size() == 30 ? 6 : 4;
}

std::size_t firstUpPort(const SwitchConfiguration &configuration)
{
    return configuration.ports.size() - upPorts(configuration);
}

const Feature kFeatures[] = {
    {"VLAN on down ports",
     [](SwitchDeviceViewModel &panel, Family) {
         panel.setVlanEnable(true);
         panel.setVlanId(20);
         panel.setInterfaceType(QStringLiteral("access"));
         panel.setVlanDownPortEnable(true);
         panel.setVlanUpPortEnable(false);
         panel.setDownPortMin(1);
         panel.setDownPortMax(8);
     },
     [](SwitchDeviceViewModel &panel) { panel.setVlanId(1); },
     [](SwitchConfiguration &configuration, Family) { setVlan(configuration, 0, 8, LinkType::Access, 20); },
     [](SwitchConfiguration &configuration, Family) { setVlan(configuration, 0, 8, LinkType::Access, 1); }},
    {"VLAN on one down port, trunk",
     [](SwitchDeviceViewModel &panel, Family) {
         panel.setVlanEnable(true);
         panel.setVlanId(21);
         panel.setInterfaceType(QStringLiteral("trunk"));
         panel.setVlanDownPortEnable(true);
         panel.setVlanUpPortEnable(false);
         panel.setDownPortMin(9);
         panel.setDownPortMax(9);
     },
     [](SwitchDeviceViewModel &panel) {
         panel.setVlanId(1);
         panel.setInterfaceType(QStringLiteral("access"));
     },
     [](SwitchConfiguration &configuration, Family) { setVlan(configuration, 8, 1, LinkType::Trunk, 21); },
     [](SwitchConfiguration &configuration, Family) { setVlan(configuration, 8, 1, LinkType::Access, 1); }},
    {"VLAN on all up ports, beyond their range",
     [](SwitchDeviceViewModel &panel, Family) {
         panel.setVlanEnable(true);
         panel.setVlanId(22);
         panel.setInterfaceType(QStringLiteral("trunk"));
         panel.setVlanDownPortEnable(false);
         panel.setVlanUpPortEnable(true);
         panel.setUpPortMin(99); // swapped and clamped
         panel.setUpPortMax(0);
     },
     [](SwitchDeviceViewModel &panel) {
         panel.setVlanId(1);
         panel.setInterfaceType(QStringLiteral("access"));
     },
     [](SwitchConfiguration &configuration, Family) {
         setVlan(configuration, firstUpPort(configuration), upPorts(configuration), LinkType::Trunk, 22);
     },
     [](SwitchConfiguration &configuration, Family) {
         setVlan(configuration, firstUpPort(configuration), upPorts(configuration), LinkType::Access, 1);
     }},
    {"multicast",
     [](SwitchDeviceViewModel &panel, Family) {
         panel.setMulticastEnable(true);
         panel.setMulticastVlanId(23);
         panel.setMulticastStatus(QStringLiteral("enable"));
     },
     [](SwitchDeviceViewModel &panel) { panel.setMulticastStatus(QStringLiteral("disable")); },
     [](SwitchConfiguration &configuration, Family) {
         configuration.snooping = true;
         configuration.vlans[23].snooping = true;
     },
     [](SwitchConfiguration &configuration, Family) { configuration.vlans[23].snooping = false; }},
    {"querier", // follows multicast, which has switched snooping on
     [](SwitchDeviceViewModel &panel, Family) {
         panel.setQuerierEnable(true);
         panel.setQuerierVlanId(24);
         panel.setQuerierStatus(QStringLiteral("enable"));
     },
     [](SwitchDeviceViewModel &panel) { panel.setQuerierStatus(QStringLiteral("disable")); },
     [](SwitchConfiguration &configuration, Family) { configuration.vlans[24].querier = true; },
     [](SwitchConfiguration &configuration, Family) { configuration.vlans[24].querier = false; }},
    {"mirroring",
     [](SwitchDeviceViewModel &panel, Family) {
         panel.setMirrorPortEnable(true);
         panel.setMirrorId(1);
         panel.setMirrorSourcePort(panelPort(panel, 1));
         panel.setMirrorDstPort(panelPort(panel, 9));
         panel.setMirrorStatus(QStringLiteral("enable"));
     },
     [](SwitchDeviceViewModel &panel) { panel.setMirrorStatus(QStringLiteral("disable")); },
     [](SwitchConfiguration &configuration, Family) {
         configuration.ports[1].mirrors[1] = MirrorDirection::Inbound;
         configuration.mirrorGroups[1].monitor = 9;
     },
     [](SwitchConfiguration &configuration, Family) {
         configuration.ports[1].mirrors.clear();
         configuration.mirrorGroups.clear();
     }},
    {"auto-negotiation",
     [](SwitchDeviceViewModel &panel, Family) {
         panel.setAutoNegEnable(true);
         panel.setAutoNegPort(panelPort(panel, 2));
         panel.setAutoNegStatus(QStringLiteral("disable"));
     },
     [](SwitchDeviceViewModel &panel) { panel.setAutoNegStatus(QStringLiteral("enable")); },
     [](SwitchConfiguration &configuration, Family) { configuration.ports[2].negotiation = false; },
     [](SwitchConfiguration &configuration, Family) { configuration.ports[2].negotiation = true; }},
    {"PoE on a range",
     [](SwitchDeviceViewModel &panel, Family) {
         panel.setPoeEnable(true);
         panel.setPoePort(QStringLiteral("all"));
         panel.setPoeDownPortMin(3);
         panel.setPoeDownPortMax(6);
         panel.setPoeStatus(QStringLiteral("disable"));
     },
     [](SwitchDeviceViewModel &panel) { panel.setPoeStatus(QStringLiteral("enable")); },
     [](SwitchConfiguration &configuration, Family) {
         for (std::size_t port = 2; port < 6; ++port)
             configuration.ports[port].poe = false;
     },
     [](SwitchConfiguration &configuration, Family) {
         for (std::size_t port = 2; port < 6; ++port)
             configuration.ports[port].poe = true;
     }},
    {"PoE on one port",
     [](SwitchDeviceViewModel &panel, Family) {
         panel.setPoeEnable(true);
         panel.setPoePort(panelPort(panel, 4));
         panel.setPoeStatus(QStringLiteral("disable"));
     },
     [](SwitchDeviceViewModel &panel) { panel.setPoeStatus(QStringLiteral("enable")); },
     [](SwitchConfiguration &configuration, Family) { configuration.ports[4].poe = false; },
     [](SwitchConfiguration &configuration, Family) { configuration.ports[4].poe = true; }},
    {"interfaces",
     [](SwitchDeviceViewModel &panel, Family) {
         panel.setInterfaceEnable(true);
         panel.setSelectedInterfacePorts({panelPort(panel, 4), panelPort(panel, 23)});
         panel.setInterfaceStatus(QStringLiteral("disable"));
     },
     [](SwitchDeviceViewModel &panel) { panel.setInterfaceStatus(QStringLiteral("enable")); },
     [](SwitchConfiguration &configuration, Family) {
         configuration.ports[4].shutdown = configuration.ports[23].shutdown = true;
     },
     [](SwitchConfiguration &configuration, Family) {
         configuration.ports[4].shutdown = configuration.ports[23].shutdown = false;
     }},
};

// Which rows which program runs: in Chinese the families and one aggregation switch, in English a selection, and the
// rest by the slow programs.
bool isChosen(Family family, bool isAggregation)
{
    const bool isUsual = kEnglish ? !isAggregation && family != Family::HuaweiSub : !isAggregation || family == Family::Huawei;
    return (kEffort == Effort::Usual) == isUsual;
}

QString accessSwitch(Family family)
{
    return familyArgument(family) + QStringLiteral(" --login none --model poe");
}

QString aggregationSwitch(Family family)
{
    return familyArgument(family) + QStringLiteral(" --login none --model aggregation --negotiation-on-fibre");
}

void addFamilies(const QStringList &more = {})
{
    QTest::addColumn<Family>("family");
    Q_UNUSED(more)
    for (const Family family : kFamilies) {
        if (isChosen(family, false))
            QTest::newRow(familyName(family)) << family;
    }
}

} // namespace

void TestConsoleConfiguration::initTestCase()
{
    _quiet = std::make_unique<QuietLog>();
    QVERIFY(_folder.isValid());
    // Kept beside the program, from an earlier run.
    QFile::remove(QCoreApplication::applicationDirPath() + QStringLiteral("/switchdevicepanel.ini"));
    SwitchDeviceViewModel first;
    if (kEnglish)
        QVERIFY(OVRA::BLL::TranslateManage::getInstance()->setLanguage(QStringLiteral("en")));
    QCOMPARE(first.languageType(), kEnglish ? SwitchDeviceViewModel::En : SwitchDeviceViewModel::Zh);
    QCOMPARE(first.lxTr(QStringLiteral("组播")) == QStringLiteral("组播"), !kEnglish);
}

void TestConsoleConfiguration::cleanupTestCase()
{
    _bench.reset();
    _quiet.reset();
}

ConsoleBench &TestConsoleConfiguration::connected(const QString &arguments)
{
    if (!_bench || _arguments != arguments || !_bench->panel().isQueueIdle()) {
        _bench.reset();
        _bench = std::make_unique<ConsoleBench>(ConsoleBench::options(arguments));
        _arguments = arguments;
        if (!_bench->connectPanel())
            qWarning("no inventory");
    }
    noFeatures(_bench->panel());
    _bench->forget();
    return *_bench;
}

bool TestConsoleConfiguration::apply(ConsoleBench &bench)
{
    bench->sendSwitchDeviceCmd();
    return bench.waitUntilIdle();
}

bool TestConsoleConfiguration::import(ConsoleBench &bench, const QByteArray &lines)
{
    QFile file(_folder.filePath(QStringLiteral("import.txt")));
    if (!file.open(QIODevice::WriteOnly) || file.write(lines) != lines.size())
        return false;
    file.close();
    bench->importSwitchInfo(file.fileName());
    return bench.waitUntilIdle();
}

void TestConsoleConfiguration::feature_takesEffect_andCanBeTakenBack_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("feature");
    for (const bool isAggregation : {false, true}) {
        for (const Family family : kFamilies) {
            if (!isChosen(family, isAggregation))
                continue;
            for (const Feature &feature : kFeatures) {
                const bool isPoe = QByteArray(feature.name).startsWith("PoE");
                if (isAggregation && isPoe)
                    continue; // optical ports feed nobody
                QTest::addRow("%s%s, %s", familyName(family), isAggregation ? ", aggregation" : "", feature.name)
                    << (isAggregation ? aggregationSwitch(family) : accessSwitch(family)) << int(&feature - kFeatures);
            }
        }
    }
}

void TestConsoleConfiguration::feature_takesEffect_andCanBeTakenBack()
{
    QFETCH(const QString, arguments);
    QFETCH(const int, feature);
    const Feature &tested = kFeatures[feature];
    ConsoleBench &bench = connected(arguments);
    const Family family = bench.switchOptions().family;
    SwitchConfiguration expected = bench.running();

    tested.set(bench.panel(), family);
    QVERIFY(apply(bench));
    tested.effect(expected, family);
    QCOMPARE(stateText(bench.running()), stateText(expected));
    QCOMPARE(bench.record().warnings(), QStringList());
    QCOMPARE(bench.record().labels().size(), 1);

    tested.takeBack(bench.panel());
    QVERIFY(apply(bench));
    tested.rest(expected, family);
    QCOMPARE(stateText(bench.running()), stateText(expected));
    QCOMPARE(bench.record().warnings(), QStringList());
    QVERIFY(!bench->isWaitingResponse());
    QVERIFY(bench.standingPrompt().startsWith('<'));
}

void TestConsoleConfiguration::linkGroup_isMade_andCleared_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<bool>("isUp");
    QTest::addColumn<int>("first"); // of the ports of its kind
    QTest::addColumn<int>("count");
    for (const bool isAggregation : {false, true}) {
        for (const Family family : kFamilies) {
            if (!isChosen(family, isAggregation))
                continue;
            const auto row = [&](const char *name, bool isUp, int first, int count) {
                QTest::addRow("%s%s, %s", familyName(family), isAggregation ? ", aggregation" : "", name)
                    << (isAggregation ? aggregationSwitch(family) : accessSwitch(family)) << isUp << first << count;
            };
            row("four down ports", false, 11, 4);
            row("one down port", false, 15, 1);
            row("two up ports", true, 1, 2);
            row("one up port", true, 4, 1);
        }
    }
}

void TestConsoleConfiguration::linkGroup_isMade_andCleared()
{
    QFETCH(const QString, arguments);
    QFETCH(const bool, isUp);
    QFETCH(const int, first);
    QFETCH(const int, count);
    ConsoleBench &bench = connected(arguments);
    const bool isHua3 = bench.switchOptions().family == Family::Hua3;
    const SwitchConfiguration before = bench.running();
    SwitchConfiguration expected = before;

    bench->setLinkAggregationEnable(true);
    bench->setLinkId(7);
    bench->setLinkInterfaceType(QStringLiteral("trunk"));
    bench->setLinkDownPortEnable(!isUp);
    bench->setLinkUpPortEnable(isUp);
    const int upOffset = isHua3 ? int(firstUpPort(before)) : 0;
    bench->setLinkDownPortMin(first);
    bench->setLinkDownPortMax(first + count - 1);
    bench->setLinkUpPortMin(upOffset + first);
    bench->setLinkUpPortMax(upOffset + first + count - 1);
    QVERIFY(apply(bench));

    simulator::TrunkConfiguration &group = expected.trunks[7];
    group.lacp = true;
    group.linkType = LinkType::Trunk;
    const std::size_t begin = std::size_t(first) - 1 + (isUp ? firstUpPort(before) : 0);
    for (std::size_t port = begin; port < begin + std::size_t(count); ++port) {
        expected.ports[port].trunk = 7;
        if (isHua3) { // hands the group's settings on
            expected.ports[port].linkType = LinkType::Trunk;
            expected.ports[port].allowedVlans.set();
            expected.ports[port].allowedVlans.reset(0);
        }
    }
    QCOMPARE(stateText(bench.running()), stateText(expected));
    QVERIFY(bench.running().trunks[7].allowedVlans.count() >= simulator::kLastVlan - 1);
    QCOMPARE(bench.record().warnings(), QStringList());

    // Nothing in the panel clears a group: a file does.
    QByteArray lines = "system-view\r\n";
    if (isHua3) {
        lines += "undo interface Bridge-Aggregation 7\r\n";
    } else {
        const QStringList ports = [&] {
            QStringList names;
            for (int port = 0; port < count; ++port)
                names << QString::number(first + port);
            return names;
        }();
        const QByteArray kind = bench.switchOptions().model.gigabit > 0
                                    ? (isUp ? "xg" : "g")
                                    : (isUp ? "40g" : "xg");
        const QByteArray prefix = bench.switchOptions().family == Family::Huawei ? kind
                                  : kind == "g"                                 ? QByteArray("GE")
                                  : kind == "xg"                                ? QByteArray("10GE")
                                                                                : QByteArray("40GE");
        for (const QString &port : ports)
            lines += "interface " + prefix + " 0/0/" + port.toUtf8() + "\r\nundo eth-trunk\r\nquit\r\n";
        lines += "undo interface Eth-Trunk 7\r\n";
    }
    QVERIFY(import(bench, lines + "return\r\n"));
    QCOMPARE(stateText(bench.running()), stateText(before));
    QCOMPARE(bench.record().warnings(), QStringList());
}

void TestConsoleConfiguration::opticalPorts_areLeftOut()
{
    ConsoleBench &bench = connected(QStringLiteral("--login none --model mixed"));
    SwitchConfiguration expected = bench.running();
    bench->setVlanEnable(true);
    bench->setVlanId(30);
    bench->setVlanDownPortEnable(true);
    bench->setDownPortMin(13);
    bench->setDownPortMax(24);
    QVERIFY(apply(bench));
    QCOMPARE(bench->downPortMax(), 16); // so many are copper
    setVlan(expected, 12, 4, LinkType::Access, 30);
    QCOMPARE(stateText(bench.running()), stateText(expected));
    QCOMPARE(bench.record().warnings(), QStringList());
}

void TestConsoleConfiguration::severalFeatures_atOnce_data()
{
    addFamilies();
}

// On ports of their own, so that it makes no difference in which order they leave.
void TestConsoleConfiguration::severalFeatures_atOnce()
{
    QFETCH(const Family, family);
    ConsoleBench &bench = connected(accessSwitch(family));
    SwitchDeviceViewModel &panel = bench.panel();
    kFeatures[3].set(panel, family); // a querier needs the snooping
    QVERIFY(apply(bench));
    SwitchConfiguration expected = bench.running();
    kFeatures[3].effect(expected, family);
    bench.forget();

    panel.setVlanEnable(true);
    panel.setVlanId(40);
    panel.setInterfaceType(QStringLiteral("access"));
    panel.setVlanDownPortEnable(true);
    panel.setDownPortMin(1);
    panel.setDownPortMax(8);
    setVlan(expected, 0, 8, LinkType::Access, 40);
    panel.setVlanUpPortEnable(true);
    panel.setUpPortMin(panel.upInterfaceMin());
    panel.setUpPortMax(panel.upInterfaceMin() + 1);
    setVlan(expected, 24, 2, LinkType::Access, 40);
    panel.setQuerierEnable(true);
    panel.setQuerierVlanId(41);
    panel.setQuerierStatus(QStringLiteral("enable"));
    expected.vlans[41].querier = true;
    panel.setMirrorPortEnable(true);
    panel.setMirrorId(2);
    panel.setMirrorSourcePort(panelPort(panel, 14));
    panel.setMirrorDstPort(panelPort(panel, 15));
    panel.setMirrorStatus(QStringLiteral("enable"));
    expected.ports[14].mirrors[2] = MirrorDirection::Inbound;
    expected.mirrorGroups[2].monitor = 15;
    panel.setAutoNegEnable(true);
    panel.setAutoNegPort(panelPort(panel, 16));
    panel.setAutoNegStatus(QStringLiteral("disable"));
    expected.ports[16].negotiation = false;
    panel.setPoeEnable(true);
    panel.setPoePort(panelPort(panel, 18));
    panel.setPoeStatus(QStringLiteral("disable"));
    expected.ports[18].poe = false;
    panel.setInterfaceEnable(true);
    panel.setInterfaceStatus(QStringLiteral("disable"));
    panel.setSelectedInterfacePorts({panelPort(panel, 20), panelPort(panel, 21)});
    expected.ports[20].shutdown = expected.ports[21].shutdown = true;
    QVERIFY(apply(bench));
    QCOMPARE(stateText(bench.running()), stateText(expected));
    QCOMPARE(bench.record().warnings(), QStringList());

    // The first block leaves at once, the others in the order of their labels.
    QStringList labels = bench.record().labels();
    QCOMPARE(labels.size(), 7);
    QCOMPARE(labels.takeFirst(), bench.tr("VLAN划分"));
    QStringList sorted = labels;
    std::sort(sorted.begin(), sorted.end());
    QCOMPARE(labels, sorted);
    _bench.reset();
}

void TestConsoleConfiguration::refusedLine_isTold_andTheQueueGoesOn_data()
{
    QTest::addColumn<Family>("family");
    QTest::addColumn<QByteArray>("refused");
    for (const Family family : kFamilies) {
        if (!isChosen(family, false))
            continue;
        for (const char *line : {"system-view", "vlan 50", "port link-type access", "return"})
            QTest::addRow("%s, %s", familyName(family), line) << family << QByteArray(line);
    }
}

void TestConsoleConfiguration::refusedLine_isTold_andTheQueueGoesOn()
{
    QFETCH(const Family, family);
    QFETCH(const QByteArray, refused);
    ConsoleBench &bench = connected(accessSwitch(family));
    SwitchDeviceViewModel &panel = bench.panel();
    simulator::Fault fault;
    fault.kind = simulator::FaultKind::Refuse;
    fault.command = refused;
    bench.addFault(fault);
    panel.setVlanEnable(true);
    panel.setVlanId(50);
    panel.setInterfaceType(QStringLiteral("access"));
    panel.setVlanDownPortEnable(true);
    panel.setVlanUpPortEnable(false);
    panel.setDownPortMin(1);
    panel.setDownPortMax(2);
    QVERIFY(apply(bench));
    const QString told = QStringLiteral("%1：").arg(QString::fromUtf8(refused));
    const auto names = [&](const QString &warning) { return warning.contains(QString::fromUtf8(refused)); };
    const QStringList warnings = bench.record().warnings();
    QVERIFY2(std::any_of(warnings.begin(), warnings.end(), names), qUtf8Printable(told));
    QVERIFY(bench.standingPrompt().startsWith('<'));

    // The same once more: this time it works.
    bench.forget();
    QVERIFY(apply(bench));
    SwitchConfiguration expected = bench.running();
    setVlan(expected, 0, 2, LinkType::Access, 50);
    QCOMPARE(stateText(bench.running()), stateText(expected));
    QCOMPARE(bench.record().warnings(), QStringList());
    QVERIFY(bench.standingPrompt().startsWith('<'));
}

void TestConsoleConfiguration::poe_onASwitchWithout_isTold()
{
    ConsoleBench &bench = connected(aggregationSwitch(Family::Huawei));
    const QStringList before = stateText(bench.running());
    bench->setPoeEnable(true);
    bench->setPoePort(QStringLiteral("all"));
    bench->setPoeStatus(QStringLiteral("disable"));
    QVERIFY(apply(bench));
    QCOMPARE(stateText(bench.running()), before);
    QVERIFY(!bench.record().warnings().isEmpty());
    QVERIFY(bench.record().logs().contains(QStringLiteral("[Info] not support poe")));
    QVERIFY(bench.standingPrompt().startsWith('<'));
}

void TestConsoleConfiguration::status_isLogged_data()
{
    QTest::addColumn<Family>("family");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("prepared"); // lines typed before
    QTest::addColumn<QStringList>("expected"); // what the log must hold, in this order
    const auto row = [](Family family, const char *name, const char *page, const char *arguments,
                        const char *prepared, const QStringList &expected) {
        if (isChosen(family, false))
            QTest::addRow("%s, %s", familyName(family), name)
                << family << QString::fromUtf8(page) << QString::fromLatin1(arguments) << QByteArray(prepared)
                << expected;
    };
    const QString info = QStringLiteral("[Info] ");
    for (const Family family : {Family::Huawei, Family::HuaweiSub}) {
        const bool isSub = family == Family::HuaweiSub;
        const QString ten = isSub ? QStringLiteral("10GE0/0/") : QStringLiteral("XGigabitEthernet0/0/");
        const char *const snooping = isSub ? "system-view\r\nigmp snooping enable\r\nvlan 60\r\nreturn\r\n"
                                           : "system-view\r\nigmp-snooping enable\r\nvlan 60\r\nreturn\r\n";
        row(family, "VLANs", "vlan", "", "system-view\r\nvlan 60\r\nreturn\r\n",
            {info + QStringLiteral("The total number of VLANs is : 2"), QStringLiteral("[Info] 60   common")});
        row(family, "VLANs of an older release", "vlan", "--old-vlan-listing", "",
            {info + QStringLiteral("The total number of VLANs is : 1")});
        row(family, "multicast off", "组播", "", "", {QStringLiteral("[Info] <未开启全局组播>")});
        row(family, "multicast without VLANs", "组播", "", snooping, {QStringLiteral("[Info] <没有组播配置>")});
        row(family, "interface speed", "接口速率", "", "",
            {QStringLiteral("[Info] Board Type"), QStringLiteral("[Info] 0/0/1   GE(C)     Absent  Auto 1000"),
             QStringLiteral("[Info] 0/0/4   10GE(F)   Present -    10000")});
        row(family, "no IP conflict", "IP冲突", "", "", {QString(QStringLiteral("[Info] \u200bNo IP conflict"))});
        row(family, "IP conflicts", "IP冲突", "--ip-conflicts 2", "",
            {QStringLiteral("Conflict type              : Remote IP conflict"),
             QStringLiteral("IP address                 : 10.20.0.2"),
             QStringLiteral("IP address                 : 10.20.0.3")});
        row(family, "multicast table, multicast off", "组播转发表", "", "",
            {QStringLiteral("[Info] <未开启全局组播>")});
        Q_UNUSED(ten)
    }
    row(Family::Huawei, "optical modules", "光模块", "", "",
        {QStringLiteral("XGigabitEthernet0/0/1<光模块信息:>"), QStringLiteral("XGigabitEthernet0/0/4<光模块信息:>"),
         QStringLiteral("Transceiver Type               :10GBASE_SR_SFP")});
    row(Family::HuaweiSub, "optical modules, empty gigabit cages", "光模块", "--model mixed", "",
        {QStringLiteral("GE0/0/18<光模块信息:>"), QStringLiteral("GE0/0/19<未检测到光模块>"),
         QStringLiteral("10GE0/0/4<光模块信息:>")});
    row(Family::Hua3, "VLANs", "vlan", "", "system-view\r\nvlan 60\r\nreturn\r\n",
        {QStringLiteral("[Info]  Total VLANs: 2"), QStringLiteral("[Info]  The VLANs include:"),
         QStringLiteral("[Info]  1(default), 60")});
    row(Family::Hua3, "VLANs of an older release", "vlan", "--old-vlan-listing", "",
        {QStringLiteral("Total 1 VLAN exist(s)."), QStringLiteral("1(default)")});
    row(Family::Hua3, "multicast", "组播", "", "", {QStringLiteral("[Info] IGMP snooping information: Global")});
    row(Family::Hua3, "interface speed", "接口速率", "", "",
        {QStringLiteral("[Info] Interface            Link Protocol InUsage"), QStringLiteral("[Info] GE1/0/1 "),
         QStringLiteral("[Info] XGE1/0/28 ")});
    row(Family::Hua3, "optical modules", "光模块", "--model mixed", "",
        {QStringLiteral("GE1/0/18<光模块信息:>"), QStringLiteral("GE1/0/19<未检测到光模块>"),
         QStringLiteral("XGE1/0/28<光模块信息:>")});
    row(Family::Hua3, "IP conflicts", "IP冲突", "--ip-conflicts 2", "",
        {QStringLiteral("[Info] 10.20.0.2"), QStringLiteral("[Info] 10.20.0.3")});
    row(Family::Hua3, "multicast table", "组播转发表", "", "", {QStringLiteral("[Info] Total 0 IP entries.")});
}

void TestConsoleConfiguration::status_isLogged()
{
    QFETCH(const Family, family);
    QFETCH(const QString, page);
    QFETCH(const QString, arguments);
    QFETCH(const QByteArray, prepared);
    QFETCH(const QStringList, expected);
    ConsoleBench &bench = connected(familyArgument(family) + QStringLiteral(" --login none ") + arguments
                                    + (prepared.isEmpty() ? QString() : QStringLiteral(" --name prepared-for-status")));
    if (!prepared.isEmpty()) {
        QVERIFY(import(bench, prepared));
        bench.forget();
    }
    bench->queryDeviceStatus(bench->lxTr(page));
    QVERIFY(bench->isWaitingResponse());
    QVERIFY(bench.waitUntilIdle());

    // <text> stands for its translation. Result lines come within 100 ms.
    QStringList wanted = expected;
    static const QRegularExpression translated(QStringLiteral("<(.*)>"));
    for (QString &line : wanted) {
        const auto match = translated.match(line);
        if (match.hasMatch())
            line.replace(match.capturedStart(), match.capturedLength(), bench->lxTr(match.captured(1)));
    }
    const auto missing = [&] {
        int next = 0;
        for (const QString &line : bench.record().logs()) {
            if (next < wanted.size() && line.contains(wanted.at(next)))
                ++next;
        }
        return wanted.mid(next);
    };
    waitUntil([&] { return missing().isEmpty(); }, std::chrono::seconds(2));
    QCOMPARE(missing(), QStringList());
    QCOMPARE(bench.record().warnings(), QStringList());
    QVERIFY(!bench->isWaitingResponse());
    QVERIFY(bench.standingPrompt().startsWith('<'));
}

void TestConsoleConfiguration::portStatus_refreshesTheInventory_data()
{
    addFamilies();
}

void TestConsoleConfiguration::portStatus_refreshesTheInventory()
{
    QFETCH(const Family, family);
    ConsoleBench &bench = connected(accessSwitch(family));
    bench->setDownPortMin(3); // the listing sets it anew
    bench->queryDeviceStatus(bench.tr("端口状态监测"));
    QVERIFY(bench.waitUntilIdle());
    QStringList expected = bench.expectedInventory();
    expected[9] = QStringLiteral("copper ports 0"); // not asked for again
    QCOMPARE(bench.inventory(), expected);
    QCOMPARE(bench.record().labels(), QStringList{bench.tr("端口状态监测")});
    QCOMPARE(bench.record().warnings(), QStringList());
}

void TestConsoleConfiguration::save_isKeptOverARestart_data()
{
    addFamilies();
}

void TestConsoleConfiguration::save_isKeptOverARestart()
{
    QFETCH(const Family, family);
    ConsoleBench &bench = connected(accessSwitch(family) + QStringLiteral(" --save-time 1s"));
    QVERIFY(import(bench, "system-view\r\nvlan 70\r\nreturn\r\n"));
    const auto isKept = [&] {
        const auto saved = bench.device().device().state().saved;
        return saved && saved->vlans.count(70) != 0;
    };
    QVERIFY(!isKept());
    bench->saveSwitchDeviceCmd();
    QVERIFY(bench->isWaitingResponse());
    QVERIFY(bench.waitUntilIdle());
    QVERIFY(isKept());
    QCOMPARE(bench.record().warnings(), QStringList());
    QVERIFY(bench.standingPrompt().startsWith('<'));
}

void TestConsoleConfiguration::clear_restartsTheSwitch_data()
{
    addFamilies();
}

void TestConsoleConfiguration::clear_restartsTheSwitch()
{
    QFETCH(const Family, family);
    ConsoleBench &bench = connected(accessSwitch(family) + QStringLiteral(" --hurry 100"));
    QVERIFY(import(bench, "system-view\r\nvlan 70\r\nreturn\r\n"));
    bench->saveSwitchDeviceCmd();
    QVERIFY(bench.waitUntilIdle());
    QVERIFY(bench.device().device().state().saved);

    bench->clearAllConfig();
    QVERIFY(bench.waitUntilIdle());
    // This family's text is Chinese in every language.
    const QString text = QStringLiteral("配置正在清除 ，请5分钟后重新连接");
    const QString toast = (family == Family::Hua3 ? text : bench->lxTr(text)) + QStringLiteral(", 1");
    QVERIFY2(bench.record().toasts().contains(toast), qUtf8Printable(bench.record().toasts().join(QLatin1Char('\n'))));
    QVERIFY(waitUntil([&] { return bench.device().device().state().starts == 2; }));
    QVERIFY(!bench.device().device().state().saved);
    QVERIFY(bench.running().vlans.count(70) == 0);

    QVERIFY(bench.reconnectPanel());
    QCOMPARE(bench.inventory(), bench.expectedInventory());
    _bench.reset();
}

QTEST_GUILESS_MAIN(TestConsoleConfiguration)
#include "tst_console_configuration.moc"
