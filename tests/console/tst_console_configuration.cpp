// What the panel applies takes effect on the switch, and what the switch says reaches the panel. Built once for each
// family of switches and language of the interface.
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

namespace {

#ifdef SWITCHPANEL_ENGLISH
constexpr bool kEnglish = true;
#else
constexpr bool kEnglish = false;
#endif
constexpr Family kFamily = Family::SWITCHPANEL_FAMILY;
constexpr bool kHua3 = kFamily == Family::Hua3;
constexpr bool kSub = kFamily == Family::HuaweiSub;

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

const QString kSwitch = QStringLiteral("--family %1 --login none --save-time 200ms --boot-time 1500ms ")
                            .arg(kHua3  ? QStringLiteral("hua3")
                                 : kSub ? QStringLiteral("huawei-sub")
                                        : QStringLiteral("huawei"));
const QString kAccessSwitch = kSwitch + QStringLiteral("--model poe");
const QString kAggregationSwitch = kSwitch + QStringLiteral("--model aggregation --negotiation-on-fibre");

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
    void cleanup();
    void cleanupTestCase();

    void linkGroup_isMade_andCleared_data(); // first: only ports with default settings can join
    void linkGroup_isMade_andCleared();
    void feature_takesEffect_andCanBeTakenBack_data();
    void feature_takesEffect_andCanBeTakenBack();
    void opticalPorts_areLeftOut();
    void severalFeatures_atOnce();
    void refusedLine_isTold_andTheQueueGoesOn_data();
    void refusedLine_isTold_andTheQueueGoesOn();
    void poe_onASwitchWithout_isTold();
    void status_isLogged_data();
    void status_isLogged();
    void portStatus_refreshesTheInventory();
    void save_isKept();
    void clear_restartsTheSwitch();

private:
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
    void (*set)(SwitchDeviceViewModel &panel);      // enables the feature with its values
    void (*takeBack)(SwitchDeviceViewModel &panel); // the values that undo it
    void (*effect)(SwitchConfiguration &configuration);
    void (*rest)(SwitchConfiguration &configuration); // what is left of it afterwards
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

// As the Huawei family's switches call it.
QByteArray fullName(const SwitchConfiguration &configuration, std::size_t port)
{
    static const char *const kKinds[][3] = {{"GigabitEthernet", "XGigabitEthernet", "40GE"}, {"GE", "10GE", "40GE"}};
    const bool isUp = port >= firstUpPort(configuration);
    const int fastness = int(isUp) + int(upPorts(configuration) == 6);
    const std::size_t number = 1 + (isUp ? port - firstUpPort(configuration) : port);
    return QByteArray(kKinds[int(kSub)][fastness]) + "0/0/" + QByteArray::number(int(number));
}

const Feature kFeatures[] = {
    {"VLAN on down ports",
     [](SwitchDeviceViewModel &panel) {
         panel.setVlanEnable(true);
         panel.setVlanId(20);
         panel.setInterfaceType(QStringLiteral("access"));
         panel.setVlanDownPortEnable(true);
         panel.setVlanUpPortEnable(false);
         panel.setDownPortMin(1);
         panel.setDownPortMax(8);
     },
     [](SwitchDeviceViewModel &panel) { panel.setVlanId(1); },
     [](SwitchConfiguration &configuration) { setVlan(configuration, 0, 8, LinkType::Access, 20); },
     [](SwitchConfiguration &configuration) { setVlan(configuration, 0, 8, LinkType::Access, 1); }},
    {"VLAN on one down port, trunk",
     [](SwitchDeviceViewModel &panel) {
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
     [](SwitchConfiguration &configuration) { setVlan(configuration, 8, 1, LinkType::Trunk, 21); },
     [](SwitchConfiguration &configuration) { setVlan(configuration, 8, 1, LinkType::Access, 1); }},
    {"VLAN on all up ports, beyond their range",
     [](SwitchDeviceViewModel &panel) {
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
     [](SwitchConfiguration &configuration) {
         setVlan(configuration, firstUpPort(configuration), upPorts(configuration), LinkType::Trunk, 22);
     },
     [](SwitchConfiguration &configuration) {
         setVlan(configuration, firstUpPort(configuration), upPorts(configuration), LinkType::Access, 1);
     }},
    {"multicast",
     [](SwitchDeviceViewModel &panel) {
         panel.setMulticastEnable(true);
         panel.setMulticastVlanId(23);
         panel.setMulticastStatus(QStringLiteral("enable"));
     },
     [](SwitchDeviceViewModel &panel) { panel.setMulticastStatus(QStringLiteral("disable")); },
     [](SwitchConfiguration &configuration) {
         configuration.snooping = true;
         configuration.vlans[23].snooping = true;
     },
     [](SwitchConfiguration &configuration) { configuration.vlans[23].snooping = false; }},
    {"querier", // follows multicast, which has switched snooping on
     [](SwitchDeviceViewModel &panel) {
         panel.setQuerierEnable(true);
         panel.setQuerierVlanId(24);
         panel.setQuerierStatus(QStringLiteral("enable"));
     },
     [](SwitchDeviceViewModel &panel) { panel.setQuerierStatus(QStringLiteral("disable")); },
     [](SwitchConfiguration &configuration) { configuration.vlans[24].querier = true; },
     [](SwitchConfiguration &configuration) { configuration.vlans[24].querier = false; }},
    {"mirroring",
     [](SwitchDeviceViewModel &panel) {
         panel.setMirrorPortEnable(true);
         panel.setMirrorId(1);
         panel.setMirrorSourcePort(panelPort(panel, 1));
         panel.setMirrorDstPort(panelPort(panel, 9));
         panel.setMirrorStatus(QStringLiteral("enable"));
     },
     [](SwitchDeviceViewModel &panel) { panel.setMirrorStatus(QStringLiteral("disable")); },
     [](SwitchConfiguration &configuration) {
         configuration.ports[1].mirrors[1] = MirrorDirection::Inbound;
         configuration.mirrorGroups[1].monitor = 9;
     },
     [](SwitchConfiguration &configuration) {
         configuration.ports[1].mirrors.clear();
         configuration.mirrorGroups.clear();
     }},
    {"auto-negotiation",
     [](SwitchDeviceViewModel &panel) {
         panel.setAutoNegEnable(true);
         panel.setAutoNegPort(panelPort(panel, 2));
         panel.setAutoNegStatus(QStringLiteral("disable"));
     },
     [](SwitchDeviceViewModel &panel) { panel.setAutoNegStatus(QStringLiteral("enable")); },
     [](SwitchConfiguration &configuration) { configuration.ports[2].negotiation = false; },
     [](SwitchConfiguration &configuration) { configuration.ports[2].negotiation = true; }},
    {"PoE on a range",
     [](SwitchDeviceViewModel &panel) {
         panel.setPoeEnable(true);
         panel.setPoePort(QStringLiteral("all"));
         panel.setPoeDownPortMin(3);
         panel.setPoeDownPortMax(6);
         panel.setPoeStatus(QStringLiteral("disable"));
     },
     [](SwitchDeviceViewModel &panel) { panel.setPoeStatus(QStringLiteral("enable")); },
     [](SwitchConfiguration &configuration) {
         for (std::size_t port = 2; port < 6; ++port)
             configuration.ports[port].poe = false;
     },
     [](SwitchConfiguration &configuration) {
         for (std::size_t port = 2; port < 6; ++port)
             configuration.ports[port].poe = true;
     }},
    {"PoE on one port",
     [](SwitchDeviceViewModel &panel) {
         panel.setPoeEnable(true);
         panel.setPoePort(panelPort(panel, 4));
         panel.setPoeStatus(QStringLiteral("disable"));
     },
     [](SwitchDeviceViewModel &panel) { panel.setPoeStatus(QStringLiteral("enable")); },
     [](SwitchConfiguration &configuration) { configuration.ports[4].poe = false; },
     [](SwitchConfiguration &configuration) { configuration.ports[4].poe = true; }},
    {"interfaces",
     [](SwitchDeviceViewModel &panel) {
         panel.setInterfaceEnable(true);
         panel.setSelectedInterfacePorts({panelPort(panel, 4), panelPort(panel, 23)});
         panel.setInterfaceStatus(QStringLiteral("disable"));
     },
     [](SwitchDeviceViewModel &panel) { panel.setInterfaceStatus(QStringLiteral("enable")); },
     [](SwitchConfiguration &configuration) {
         configuration.ports[4].shutdown = configuration.ports[23].shutdown = true;
     },
     [](SwitchConfiguration &configuration) {
         configuration.ports[4].shutdown = configuration.ports[23].shutdown = false;
     }},
};

// What both kinds of switch are asked, the aggregation switch by the thorough programs.
const QString &chosenSwitch()
{
    return kEffort == Effort::Usual ? kAccessSwitch : kAggregationSwitch;
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

void TestConsoleConfiguration::cleanup()
{
    if (_bench)
        _bench->printIfFailed();
}

void TestConsoleConfiguration::feature_takesEffect_andCanBeTakenBack_data()
{
    QTest::addColumn<int>("feature");
    for (const Feature &feature : kFeatures) {
        // Optical ports feed nobody.
        if (kEffort == Effort::Usual || !QByteArray(feature.name).startsWith("PoE"))
            QTest::newRow(feature.name) << int(&feature - kFeatures);
    }
}

void TestConsoleConfiguration::feature_takesEffect_andCanBeTakenBack()
{
    QFETCH(const int, feature);
    const Feature &tested = kFeatures[feature];
    ConsoleBench &bench = connected(chosenSwitch());
    SwitchConfiguration expected = bench.running();

    tested.set(bench.panel());
    QVERIFY(apply(bench));
    tested.effect(expected);
    QCOMPARE(stateText(bench.running()), stateText(expected));
    QCOMPARE(bench.record().warnings(), QStringList());

    tested.takeBack(bench.panel());
    QVERIFY(apply(bench));
    tested.rest(expected);
    QCOMPARE(stateText(bench.running()), stateText(expected));
    QCOMPARE(bench.record().warnings(), QStringList());
    QVERIFY(!bench->isWaitingResponse());
    QVERIFY(bench.standingPrompt().startsWith('<'));
}

void TestConsoleConfiguration::linkGroup_isMade_andCleared_data()
{
    QTest::addColumn<bool>("isUp");
    QTest::addColumn<int>("first"); // of the ports of its kind
    QTest::addColumn<int>("count");
    QTest::newRow("four down ports") << false << 11 << 4;
    QTest::newRow("one up port") << true << 4 << 1;
    if (kEffort == Effort::Usual && !kHua3)
        return; // the same lines, and the aggregation switch has them
    QTest::newRow("one down port") << false << 15 << 1;
    QTest::newRow("two up ports") << true << 1 << 2;
}

void TestConsoleConfiguration::linkGroup_isMade_andCleared()
{
    QFETCH(const bool, isUp);
    QFETCH(const int, first);
    QFETCH(const int, count);
    ConsoleBench &bench = connected(chosenSwitch());
    const SwitchConfiguration before = bench.running();
    SwitchConfiguration expected = before;

    bench->setLinkAggregationEnable(true);
    bench->setLinkId(7);
    bench->setLinkInterfaceType(QStringLiteral("trunk"));
    bench->setLinkDownPortEnable(!isUp);
    bench->setLinkUpPortEnable(isUp);
    const int upOffset = kHua3 ? int(firstUpPort(before)) : 0;
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
        if (kHua3) { // hands the group's settings on
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
    for (std::size_t port = begin; port < begin + std::size_t(count) && !kHua3; ++port)
        lines += "interface " + fullName(before, port) + "\r\nundo eth-trunk\r\nquit\r\n";
    lines += kHua3 ? "undo interface Bridge-Aggregation 7\r\n" : "undo interface Eth-Trunk 7\r\n";
    QVERIFY(import(bench, lines + "return\r\n"));
    QCOMPARE(stateText(bench.running()), stateText(before));
    QCOMPARE(bench.record().warnings(), QStringList());
}

void TestConsoleConfiguration::opticalPorts_areLeftOut()
{
    // Nothing says which ports of the Hua3 family are copper: there the range stays as it is.
    constexpr int kCopper = 16;
    constexpr int kLast = kHua3 ? 24 : kCopper;
    ConsoleBench &bench = connected(kSwitch + QStringLiteral("--model mixed"));
    SwitchConfiguration expected = bench.running();
    bench->setVlanEnable(true);
    bench->setVlanId(30);
    bench->setVlanDownPortEnable(true);
    bench->setDownPortMin(13);
    bench->setDownPortMax(24);
    QVERIFY(apply(bench));
    QCOMPARE(bench->downPortMax(), kLast);
    setVlan(expected, 12, kLast - 12, LinkType::Access, 30);
    QCOMPARE(stateText(bench.running()), stateText(expected));
    QCOMPARE(bench.record().warnings(), QStringList());
}

// On ports of their own, so that it makes no difference in which order they leave.
void TestConsoleConfiguration::severalFeatures_atOnce()
{
    ConsoleBench &bench = connected(kAccessSwitch);
    SwitchDeviceViewModel &panel = bench.panel();
    kFeatures[3].set(panel); // a querier needs the snooping
    QVERIFY(apply(bench));
    SwitchConfiguration expected = bench.running();
    kFeatures[3].effect(expected);
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

    // The first block leaves at once, the others in the order of their labels. The first configuration that this
    // process has seen is announced, and asked for more pages.
    QStringList labels = bench.record().labels();
    labels.removeAll(QStringLiteral("--more--"));
    QCOMPARE(labels.size(), 7);
    QCOMPARE(labels.takeFirst(), bench.tr("VLAN划分"));
    QStringList sorted = labels;
    std::sort(sorted.begin(), sorted.end());
    QCOMPARE(labels, sorted);
    _bench.reset(); // not as it was
}

void TestConsoleConfiguration::refusedLine_isTold_andTheQueueGoesOn_data()
{
    QTest::addColumn<QByteArray>("refused");
    QTest::newRow("port link-type access") << QByteArrayLiteral("port link-type access");
    QTest::newRow("return") << QByteArrayLiteral("return");
    if (kEffort == Effort::Usual)
        return;
    QTest::newRow("system-view") << QByteArrayLiteral("system-view");
    QTest::newRow("vlan 50") << QByteArrayLiteral("vlan 50");
}

void TestConsoleConfiguration::refusedLine_isTold_andTheQueueGoesOn()
{
    QFETCH(const QByteArray, refused);
    ConsoleBench &bench = connected(chosenSwitch());
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
    const QStringList warnings = bench.record().warnings();
    QVERIFY2(!warnings.filter(QString::fromUtf8(refused)).isEmpty(), qUtf8Printable(warnings.join(QLatin1Char('\n'))));
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
    ConsoleBench &bench = connected(kSwitch);
    const QStringList before = stateText(bench.running());
    bench->setPoeEnable(true);
    bench->setPoePort(QStringLiteral("all"));
    bench->setPoeStatus(QStringLiteral("disable"));
    QVERIFY(apply(bench));
    QCOMPARE(stateText(bench.running()), before);
    QVERIFY(!bench.record().warnings().isEmpty());
    if (!kHua3)
        QVERIFY(bench.record().logs().contains(QStringLiteral("[Info] not support poe")));
    QVERIFY(bench.standingPrompt().startsWith('<'));
}

void TestConsoleConfiguration::status_isLogged_data()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("prepared");  // lines typed before; they stay
    QTest::addColumn<QStringList>("expected"); // what the log must hold, in this order
    const auto row = [](const char *name, const char *page, const char *arguments, const char *prepared,
                        const QStringList &expected) {
        QTest::newRow(name) << QString::fromUtf8(page) << kSwitch + QLatin1String(arguments) << QByteArray(prepared)
                            << expected;
    };
    const QString info = QStringLiteral("[Info] ");
    const char *const vlan = "system-view\r\nvlan 60\r\nreturn\r\n";
    if (kHua3) {
        row("multicast", "组播", "", "", {info + QStringLiteral("IGMP snooping information: Global")});
        row("multicast table", "组播转发表", "", "", {info + QStringLiteral("Total 0 IP entries.")});
        row("interface speed", "接口速率", "", "",
            {info + QStringLiteral("Interface            Link Protocol InUsage"), info + QStringLiteral("GE1/0/1 "),
             info + QStringLiteral("XGE1/0/28 ")});
        row("VLANs", "vlan", "", vlan,
            {info + QStringLiteral(" Total VLANs: 2"), info + QStringLiteral(" The VLANs include:"),
             info + QStringLiteral(" 1(default), 60")});
        row("VLANs of an older release", "vlan", "--old-vlan-listing", "",
            {QStringLiteral("Total 1 VLAN exist(s)."), QStringLiteral("1(default)")});
        row("optical modules", "光模块", "--model mixed --ip-conflicts 2", "",
            {QStringLiteral("GE1/0/19<未检测到光模块>"), QStringLiteral("GE1/0/18<光模块信息:>"),
             QStringLiteral("XGE1/0/28<光模块信息:>")});
        row("IP conflicts", "IP冲突", "--model mixed --ip-conflicts 2", "",
            {info + QStringLiteral("10.20.0.2"), info + QStringLiteral("10.20.0.3")});
        return;
    }
    const char *const snooping = kSub ? "system-view\r\nigmp snooping enable\r\nvlan 60\r\nreturn\r\n"
                                      : "system-view\r\nigmp-snooping enable\r\nvlan 60\r\nreturn\r\n";
    row("multicast off", "组播", "", "", {info + QStringLiteral("<未开启全局组播>")});
    row("multicast table, multicast off", "组播转发表", "", "", {info + QStringLiteral("<未开启全局组播>")});
    row("interface speed", "接口速率", "", "",
        {info + QStringLiteral("Board Type"), info + QStringLiteral("0/0/1   GE(C)     Absent  Auto 1000"),
         info + QStringLiteral("0/0/4   10GE(F)   Present -    10000")});
    row("no IP conflict", "IP冲突", "", "", {info + QStringLiteral("\u200bNo IP conflict")});
    row("VLANs", "vlan", "", vlan,
        {info + QStringLiteral("The total number of VLANs is : 2"), info + QStringLiteral("60   common")});
    row("multicast without VLANs", "组播", "", snooping, {info + QStringLiteral("<没有组播配置>")});
    row("VLANs of an older release", "vlan", "--old-vlan-listing", "",
        {info + QStringLiteral("The total number of VLANs is : 1")});
    // The log has a module when the next one begins, behind the empty cages between the two, and the last one with the
    // result lines.
    row("optical modules", "光模块", "--model mixed --ip-conflicts 2", "",
        {(kSub ? QStringLiteral("GE0/0/19") : QStringLiteral("GigabitEthernet0/0/19"))
             + QStringLiteral("<未检测到光模块>"),
         (kSub ? QStringLiteral("GE0/0/18") : QStringLiteral("GigabitEthernet0/0/18"))
             + QStringLiteral("<光模块信息:>"),
         (kSub ? QStringLiteral("10GE0/0/4") : QStringLiteral("XGigabitEthernet0/0/4"))
             + QStringLiteral("<光模块信息:>")});
    row("IP conflicts", "IP冲突", "--model mixed --ip-conflicts 2", "",
        {QStringLiteral("Conflict type              : Remote IP conflict"),
         QStringLiteral("IP address                 : 10.20.0.2"),
         QStringLiteral("IP address                 : 10.20.0.3")});
}

void TestConsoleConfiguration::status_isLogged()
{
    QFETCH(const QString, page);
    QFETCH(const QString, arguments);
    QFETCH(const QByteArray, prepared);
    QFETCH(const QStringList, expected);
    ConsoleBench &bench = connected(arguments);
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

void TestConsoleConfiguration::portStatus_refreshesTheInventory()
{
    ConsoleBench &bench = connected(chosenSwitch());
    bench->setDownPortMin(3); // the listing sets it anew
    bench->queryDeviceStatus(bench.tr("端口状态监测"));
    QVERIFY(bench.waitUntilIdle());
    QStringList expected = bench.expectedInventory();
    expected[9] = QStringLiteral("copper ports 0"); // not asked for again
    QCOMPARE(bench.inventory(), expected);
    QCOMPARE(bench.record().labels(), QStringList{bench.tr("端口状态监测")});
    QCOMPARE(bench.record().warnings(), QStringList());
}

void TestConsoleConfiguration::save_isKept()
{
    ConsoleBench &bench = connected(chosenSwitch());
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

// The last one: the switch is a new one afterwards.
void TestConsoleConfiguration::clear_restartsTheSwitch()
{
    ConsoleBench &bench = connected(chosenSwitch());
    QVERIFY(import(bench, "system-view\r\nvlan 71\r\nreturn\r\n"));
    bench->clearAllConfig();
    QVERIFY(bench.waitUntilIdle());
    // This family's text is Chinese in every language.
    const QString text = QStringLiteral("配置正在清除 ，请5分钟后重新连接");
    const QString toast = (kHua3 ? text : bench->lxTr(text)) + QStringLiteral(", 1");
    QVERIFY2(bench.record().toasts().contains(toast), qUtf8Printable(bench.record().toasts().join(QLatin1Char('\n'))));
    QVERIFY(waitUntil([&] { return bench.device().device().state().starts == 2; }));
    QVERIFY(!bench.device().device().state().saved);
    QCOMPARE(int(bench.running().vlans.count(71)), 0);

    QVERIFY(bench.reconnectPanel());
    QCOMPARE(bench.inventory(), bench.expectedInventory());
}

QTEST_GUILESS_MAIN(TestConsoleConfiguration)
#include "tst_console_configuration.moc"
