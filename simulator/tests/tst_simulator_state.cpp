#include "consoleuser.h"

#include <QtTest/QTest>

using namespace simulator;

namespace {

constexpr char kHuawei[] = "";
constexpr char kSub[] = "--family huawei-sub";
constexpr char kHua3[] = "--family hua3";

// What commands leave behind in a switch: the lines of one of its configuration's sections, then the same switch with
// an own configuration replayed on it.
QByteArray section(const QByteArray &configuration, const QByteArray &header)
{
    const int begin = configuration.indexOf("\r\n" + header + "\r\n");
    if (begin < 0)
        return "no section " + header;
    const int end = configuration.indexOf("\r\n#\r\n", begin + 2);
    return configuration.mid(begin + 2, end - begin - 2).replace("\r\n", "\n");
}

QByteArrayList systemView(const QByteArrayList &lines)
{
    return QByteArrayList{"system-view"} + lines;
}

// Commands that use everything; what names ports of the Huawei family follows with each row.
QByteArrayList everything(Family family)
{
    if (family == Family::Hua3)
        return systemView({"sysname edge-7",
                           "vlan 20",
                           "igmp-snooping",
                           "vlan 20",
                           "name cameras",
                           "igmp-snooping enable",
                           "igmp-snooping querier",
                           "vlan 30 to 33",
                           "interface range g1/0/1 to g1/0/4",
                           "port link-type access",
                           "port access vlan 20",
                           "interface range t1/0/25 to t1/0/26",
                           "port link-type trunk",
                           "port trunk permit vlan 20 30 to 33",
                           "port trunk pvid vlan 30",
                           "interface Bridge-Aggregation 3",
                           "link-aggregation mode dynamic",
                           "interface g1/0/10",
                           "port link-aggregation group 3",
                           "interface g1/0/11",
                           "port link-aggregation group 3",
                           "interface Bridge-Aggregation 3",
                           "port link-type trunk",
                           "port trunk permit vlan all",
                           "mirroring-group 1 local",
                           "mirroring-group 1 mirroring-port g1/0/14 both",
                           "mirroring-group 1 monitor-port g1/0/15",
                           "interface g1/0/16",
                           "speed 100",
                           "duplex full",
                           "shutdown",
                           "description far <end>",
                           "undo poe enable",
                           "interface Vlan-interface 1",
                           "ip address 10.0.0.9 24",
                           "stp global enable",
                           "return"});
    return systemView({"sysname edge-7", "vlan batch 20 30 to 33", "igmp-snooping enable", "vlan 20",
                       "description cameras", "igmp-snooping enable", "igmp-snooping querier enable", "vlan 30",
                       "l2-multicast forwarding-mode mac", "arp ip-conflict-detect enable", "interface Eth-Trunk 3",
                       "mode lacp-static"});
}

} // namespace

class TestSimulatorState : public QObject
{
    Q_OBJECT

private slots:
    void commands_showInTheConfiguration_data();
    void commands_showInTheConfiguration();
    void commands_refused_data();
    void commands_refused();
    void refusedCommands_changeNothing();
    void configuration_replayedOnAFreshSwitch_isTheSame_data();
    void configuration_replayedOnAFreshSwitch_isTheSame();
    void snooping_offForTheSwitch_takesItFromTheVlans();
    void vlan_deleted_leavesItsPortsInVlan1();
    void clearConfigurationThis_shutsThePortDown();
    void hua3_group_handsItsSettingsOn();
    void hua3_groupDeleted_releasesItsMembers();
    void displayThis_looksLikeASystemPromptAtItsTop();
    void configuration_ofAskedLength_data();
    void configuration_ofAskedLength();
    void descriptions_notUtf8();
    void subInterfaces();
    void numberOfPorts_data();
    void numberOfPorts();
};

void TestSimulatorState::commands_showInTheConfiguration_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArrayList>("lines");
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *tag, const char *arguments, const QByteArrayList &lines, const char *header,
                        const QByteArray &expected) {
        QTest::newRow(tag) << arguments << lines << QByteArray(header)
                           << (expected.isEmpty() ? QByteArray(header) : header + ("\n " + expected));
    };
    const char *const port1 = "interface GigabitEthernet0/0/1";
    row("access vlan", kHuawei, {"vlan 20", "interface g0/0/1", "port link-type access", "port default vlan 20"}, port1,
        "port link-type access\n port default vlan 20");
    row("trunk", kHuawei, {"interface g0/0/1", "port link-type trunk", "port trunk allow-pass vlan 20 30 to 33"}, port1,
        "port link-type trunk\n port trunk allow-pass vlan 20 30 to 33");
    row("trunk, all vlans", kHuawei, {"interface g0/0/1", "port link-type trunk", "port trunk allow-pass vlan all"},
        port1, "port link-type trunk\n port trunk allow-pass vlan 2 to 4094");
    row("trunk without vlan 1", kHuawei,
        {"interface g0/0/1", "port link-type trunk", "undo port trunk allow-pass vlan 1"}, port1,
        "port link-type trunk\n undo port trunk allow-pass vlan 1");
    row("trunk and back", kHuawei,
        {"interface g0/0/1", "port link-type trunk", "port trunk allow-pass vlan 20",
         "undo port trunk allow-pass vlan 20", "undo port link-type"},
        port1, "");
    row("shutdown", kHuawei, {"interface g0/0/1", "shutdown"}, port1, "shutdown");
    row("shutdown and back", kHuawei, {"interface g0/0/1", "shutdown", "undo shutdown"}, port1, "");
    row("description", kHuawei, {"interface g0/0/1", "description to <C4> [west]"}, port1,
        "description to <C4> [west]");
    row("negotiation off", kHuawei, {"interface g0/0/1", "undo negotiation auto", "speed 100", "duplex full"}, port1,
        "undo negotiation auto\n speed 100\n duplex full");
    row("negotiation on", kHuawei, {"interface g0/0/1", "undo negotiation auto", "speed 100", "negotiation auto"},
        port1, "");
    row("poe off", "--poe", {"interface g0/0/1", "undo poe enable"}, port1, "undo poe enable");
    row("poe on again", "--poe", {"interface g0/0/1", "undo poe enable", "poe enable"}, port1, "");
    row("mirror", kHuawei,
        {"observe-port 1 interface g0/0/10", "interface g0/0/1", "port-mirroring to observe-port 1 both"}, port1,
        "port-mirroring to observe-port 1 both");
    row("mirror off", kHuawei,
        {"observe-port 1 interface g0/0/10", "interface g0/0/1", "port-mirroring to observe-port 1 inbound",
         "undo port-mirroring to observe-port 1 inbound"},
        port1, "");
    row("trunk group", kHuawei,
        {"interface Eth-Trunk 1", "mode lacp", "trunkport GigabitEthernet 0/0/1 to 0/0/4", "port link-type trunk",
         "port trunk allow-pass vlan 20"},
        "interface Eth-Trunk1", "port link-type trunk\n port trunk allow-pass vlan 20\n mode lacp");
    row("member of a group", kHuawei, {"interface Eth-Trunk 1", "interface g0/0/1", "eth-trunk 1"}, port1,
        "eth-trunk 1");
    row("group cleared", kHuawei,
        {"interface Eth-Trunk 1", "trunkport g0/0/1", "undo trunkport g0/0/1", "quit", "undo interface Eth-Trunk 1"},
        port1, "");
    row("snooping", kHuawei,
        {"igmp-snooping enable", "vlan 20", "igmp-snooping enable", "igmp-snooping querier enable"}, "vlan 20",
        "igmp-snooping enable\n igmp-snooping querier enable");
    row("several ports", kHuawei, {"port-group group-member g0/0/1 to g0/0/3 xg0/0/1", "port link-type access"},
        "interface XGigabitEthernet0/0/1", "port link-type access");
    row("ports named in the vlan", kHuawei, {"vlan 20", "port g0/0/1 to g0/0/2"}, port1,
        "port link-type access\n port default vlan 20");
    row("access list", kHuawei, {"acl number 3000", "rule 5 permit ip"}, "acl number 3000", "rule 5 permit ip");
    row("unknown settings are kept", kHuawei, {"interface g0/0/1", "stp edged-port enable"}, port1,
        "stp edged-port enable");
    row("sub: snooping with a blank", kSub, {"igmp snooping enable", "vlan 20", "igmp snooping enable"}, "vlan 20",
        "igmp snooping enable");
    row("sub: access is usual", kSub, {"vlan 20", "interface GE0/0/1", "port link-type access", "port default vlan 20"},
        "interface GE0/0/1", "port default vlan 20");
    row("sub: multi-gigabit names", "--family huawei-sub --multige", {"interface MultiGE 0/0/1", "shutdown"},
        "interface MultiGE0/0/1", "shutdown");
    const char *const three1 = "interface GigabitEthernet1/0/1";
    row("hua3: access vlan", kHua3, {"vlan 20", "interface g1/0/1", "port access vlan 20"}, three1,
        "port link-mode bridge\n port access vlan 20");
    row("hua3: trunk", kHua3, {"interface g1/0/1", "port link-type trunk", "port trunk permit vlan 20"}, three1,
        "port link-mode bridge\n port link-type trunk\n port trunk permit vlan 20");
    row("hua3: link type changes alone", kHua3,
        {"interface g1/0/1", "port link-type trunk", "port trunk permit vlan 20", "port link-type access"}, three1,
        "port link-mode bridge");
    row("hua3: manual speed", kHua3, {"interface g1/0/1", "speed 1000", "duplex full"}, three1,
        "port link-mode bridge\n speed 1000\n duplex full");
    row("hua3: automatic again", kHua3, {"interface g1/0/1", "speed 1000", "undo speed", "duplex half", "duplex auto"},
        three1, "port link-mode bridge");
    row("hua3: member", kHua3, {"interface Bridge-Aggregation 1", "interface g1/0/1", "port link-aggregation group 1"},
        three1, "port link-mode bridge\n port link-aggregation group 1");
    row("hua3: mirror", kHua3,
        {"mirroring-group 1 local", "mirroring-group 1 mirroring-port g1/0/1 inbound",
         "mirroring-group 1 monitor-port g1/0/9"},
        three1, "port link-mode bridge\n mirroring-group 1 mirroring-port inbound");
    row("hua3: mirror off", kHua3,
        {"mirroring-group 1 local", "mirroring-group 1 mirroring-port g1/0/1 inbound", "undo mirroring-group 1"},
        three1, "port link-mode bridge");
    row("hua3: snooping", kHua3, {"igmp-snooping", "quit", "vlan 20", "igmp-snooping enable", "igmp-snooping querier"},
        "vlan 20", "igmp-snooping enable\n igmp-snooping querier");
}

void TestSimulatorState::commands_showInTheConfiguration()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArrayList, lines);
    QFETCH(QByteArray, header);
    QFETCH(QByteArray, expected);
    ConsoleUser user(withArguments(arguments));
    user.work(systemView(lines));
    QCOMPARE(section(user.console().configurationText(), header), expected);
    QCOMPARE(user.answer("display current-configuration"), user.console().configurationText());
}

void TestSimulatorState::commands_refused_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArrayList>("lines");
    QTest::addColumn<QByteArray>("answer");
    const auto row = [](const char *tag, const char *arguments, const QByteArrayList &lines, const char *answer) {
        QTest::newRow(tag) << arguments << lines << answer + QByteArray("\r\n");
    };
    row("snooping in a vlan before the switch's", kHuawei, {"vlan 20", "igmp-snooping enable"},
        "Error: Please enable IGMP snooping in the global view first.");
    row("querier before the switch's snooping", kHuawei, {"vlan 20", "igmp-snooping querier enable"},
        "Error: Please enable IGMP snooping in the global view first.");
    row("forwarding mode under snooping", kHuawei,
        {"igmp-snooping enable", "vlan 20", "igmp-snooping enable", "l2-multicast forwarding-mode mac"},
        "Error: Please disable IGMP snooping in the VLAN first.");
    row("link type over trunk settings", kHuawei,
        {"interface g0/0/1", "port link-type trunk", "port trunk allow-pass vlan 20", "port link-type access"},
        "Error: Please renew the default configurations.");
    row("missing vlan", kHuawei, {"interface g0/0/1", "port link-type access", "port default vlan 20"},
        "Error: The VLAN does not exist.");
    row("access vlan of a trunk", kHuawei, {"interface g0/0/1", "port link-type trunk", "port default vlan 1"},
        "Error: The link type of the interface is not access.");
    row("trunk vlans of an access port", kHuawei,
        {"interface g0/0/1", "port link-type access", "port trunk allow-pass vlan 2"},
        "Error: The link type of the interface is not trunk.");
    row("vlan of a member", kHuawei,
        {"interface Eth-Trunk 1", "trunkport g0/0/1", "interface g0/0/1", "port link-type access"},
        "Error: The interface is a member of an Eth-Trunk; the operation is not allowed.");
    row("member with settings", kHuawei,
        {"interface Eth-Trunk 1", "interface g0/0/1", "port link-type access", "eth-trunk 1"},
        "Error: Please remove the configurations of interface GigabitEthernet0/0/1 first.");
    row("member of another speed", kHuawei,
        {"interface Eth-Trunk 1", "trunkport g0/0/1", "interface xg0/0/1", "eth-trunk 1"},
        "Error: The type of the interface differs from that of the Eth-Trunk's members.");
    row("ninth member", kHuawei,
        {"interface Eth-Trunk 1", "trunkport g0/0/1 to 0/0/8", "interface g0/0/9", "eth-trunk 1"},
        "Error: The number of members has reached the maximum of the Eth-Trunk.");
    row("missing group", kHuawei, {"interface g0/0/9", "eth-trunk 1"}, "Error: The Eth-Trunk does not exist.");
    row("mode under members", kHuawei, {"interface Eth-Trunk 1", "trunkport g0/0/1", "mode lacp"},
        "Error: The Eth-Trunk has members. Please delete them first.");
    row("group with members", kHuawei, {"interface Eth-Trunk 1", "trunkport g0/0/1", "undo interface Eth-Trunk 1"},
        "Error: The Eth-Trunk has members. Please delete them first.");
    row("missing observe port", kHuawei, {"interface g0/0/1", "port-mirroring to observe-port 1 inbound"},
        "Error: The observe-port does not exist.");
    row("observe port in use", kHuawei,
        {"observe-port 1 interface g0/0/9", "interface g0/0/1", "port-mirroring to observe-port 1 inbound",
         "undo observe-port 1"},
        "Error: The observe-port is being used.");
    row("negotiation of an optical port", kHuawei, {"interface xg0/0/1", "undo negotiation auto"},
        "Error: The interface does not support the configuration of auto-negotiation.");
    row("speed under negotiation", kHuawei, {"interface g0/0/1", "speed 100"},
        "Error: Please disable auto-negotiation first.");
    row("poe of an optical port", "--poe", {"interface xg0/0/1", "undo poe enable"},
        "Error: The interface does not support PoE.");
    row("vlan 1", kHuawei, {"undo vlan 1"}, "Error: The default VLAN can not be deleted.");
    row("hua3: missing vlan", kHua3, {"interface g1/0/1", "port access vlan 20"}, " The VLAN does not exist.");
    row("hua3: missing group", kHua3, {"interface g1/0/1", "port link-aggregation group 1"},
        " The aggregation group does not exist.");
    row("hua3: snooping", kHua3, {"vlan 20", "igmp-snooping enable"}, " Please enable IGMP snooping globally first.");
    row("hua3: mirroring", kHua3, {"mirroring-group 1 mirroring-port g1/0/1 inbound"},
        " The mirroring group does not exist.");
}

void TestSimulatorState::commands_refused()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArrayList, lines);
    QFETCH(QByteArray, answer);
    ConsoleUser user(withArguments(arguments));
    user.work(systemView(lines.mid(0, lines.size() - 1)));
    const QByteArray before = user.console().configurationText();
    QCOMPARE(user.answer(lines.last()), answer);
    QCOMPARE(user.console().configurationText(), before);
}

void TestSimulatorState::refusedCommands_changeNothing()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.enter("system-view");
    const QByteArray before = user.console().configurationText();
    Fault refuse;
    refuse.kind = FaultKind::Refuse;
    refuse.line = 2;
    user.console().addFault(refuse);
    QCOMPARE(user.answer("vlan 20"), QByteArray());
    QVERIFY(user.answer("description gone").endsWith("Error: Unrecognized command found at '^' position.\r\n"));
    QCOMPARE(user.answer("undo vlan 20"), QByteArray());
    QCOMPARE(user.console().configurationText(), before);
    QCOMPARE(user.console().commands(), (QByteArrayList{"system-view", "vlan 20", "description gone", "undo vlan 20"}));
}

void TestSimulatorState::configuration_replayedOnAFreshSwitch_isTheSame_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArrayList>("lines");
    const QByteArrayList huawei = everything(Family::Huawei);
    QTest::newRow("huawei") << "--poe"
                            << huawei
                                   + QByteArrayList{"trunkport g0/0/10 to 0/0/12",
                                                    "port link-type trunk",
                                                    "port trunk allow-pass vlan all",
                                                    "observe-port 2 interface g0/0/15",
                                                    "port-group group-member g0/0/1 to g0/0/4",
                                                    "port link-type access",
                                                    "port default vlan 20",
                                                    "undo poe enable",
                                                    "interface g0/0/14",
                                                    "port-mirroring to observe-port 2 both",
                                                    "undo negotiation auto",
                                                    "speed 100",
                                                    "shutdown",
                                                    "description far <end>",
                                                    "interface xg0/0/1",
                                                    "port link-type trunk",
                                                    "port trunk pvid vlan 30",
                                                    "port trunk allow-pass vlan 20 30 to 33",
                                                    "interface Vlanif 1",
                                                    "ip address 10.0.0.9 24",
                                                    "stp mode rstp",
                                                    "return"};
    QTest::newRow("sub") << kSub
                         << huawei
                                + QByteArrayList{"trunkport GE0/0/10 to GE0/0/12",
                                                 "port link-type trunk",
                                                 "port trunk allow-pass vlan all",
                                                 "observe-port 2 interface GE0/0/15",
                                                 "port-group group-member GE0/0/1 to GE0/0/4",
                                                 "port default vlan 20",
                                                 "interface GE0/0/14",
                                                 "port-mirroring to observe-port 2 inbound",
                                                 "description far <end>",
                                                 "interface 10GE0/0/1",
                                                 "port link-type trunk",
                                                 "port trunk allow-pass vlan 20 30 to 33",
                                                 "return"};
    QTest::newRow("hua3") << "--family hua3 --poe" << everything(Family::Hua3);
}

void TestSimulatorState::configuration_replayedOnAFreshSwitch_isTheSame()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArrayList, lines);
    ConsoleUser first(withArguments(arguments));
    for (const QByteArray &line : lines) {
        const QByteArray answer = first.answer(line);
        QVERIFY2(!answer.contains("Error") && !answer.contains('^'), (line + ": " + answer).constData());
    }
    ConsoleUser second(withArguments(arguments));
    second.enter("system-view");
    for (const QByteArray &line : first.console().configurationText().split('\n')) {
        if (!line.startsWith('#') && !line.startsWith('[') && !line.startsWith('!') && !line.startsWith(" version"))
            second.enter(line.trimmed());
    }
    QCOMPARE(second.console().configurationText(), first.console().configurationText());
}

void TestSimulatorState::snooping_offForTheSwitch_takesItFromTheVlans()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.work(systemView({"igmp-snooping enable", "vlan 20", "igmp-snooping enable", "igmp-snooping querier enable",
                          "quit", "undo igmp-snooping enable"}));
    QVERIFY(!user.running().snooping);
    QVERIFY(!user.running().vlans.at(20).snooping && !user.running().vlans.at(20).querier);
}

void TestSimulatorState::vlan_deleted_leavesItsPortsInVlan1()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.work(systemView({"vlan 20", "port g0/0/1 to g0/0/2", "quit", "undo vlan 20"}));
    QCOMPARE(user.running().ports[0].vlan, 1);
    QCOMPARE(user.running().vlans.count(20), std::size_t(0));
}

void TestSimulatorState::clearConfigurationThis_shutsThePortDown()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.work(systemView({"interface g0/0/1", "port link-type trunk", "port trunk allow-pass vlan 20"}));
    QVERIFY(user.enter("clear configuration this").endsWith("[Y/N]:"));
    user.enter("y");
    QCOMPARE(section(user.console().configurationText(), "interface GigabitEthernet0/0/1"),
             QByteArray("interface GigabitEthernet0/0/1\n shutdown"));
    QVERIFY(!user.state().isUp(0));
}

void TestSimulatorState::hua3_group_handsItsSettingsOn()
{
    ConsoleUser user(withArguments(QLatin1String(kHua3)));
    user.work(systemView({"interface Bridge-Aggregation 1", "interface g1/0/1", "port link-aggregation group 1",
                          "interface Bridge-Aggregation 1", "port link-type trunk", "port trunk permit vlan 20"}));
    QVERIFY(user.running().ports[0].linkType == LinkType::Trunk);
    QVERIFY(user.running().ports[0].allowedVlans.test(20));
}

void TestSimulatorState::hua3_groupDeleted_releasesItsMembers()
{
    ConsoleUser user(withArguments(QLatin1String(kHua3)));
    user.work(systemView({"interface Bridge-Aggregation 1", "interface g1/0/1", "port link-aggregation group 1", "quit",
                          "undo interface Bridge-Aggregation 1"}));
    QVERIFY(user.running().trunks.empty());
    QVERIFY(!user.running().ports[0].trunk);
}

void TestSimulatorState::displayThis_looksLikeASystemPromptAtItsTop()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.work(systemView({"interface g0/0/1", "shutdown"}));
    QCOMPARE(user.answer("display this"),
             QByteArray("[V200R009C00SPC500]\r\n#\r\ninterface GigabitEthernet0/0/1\r\n shutdown\r\n#\r\nreturn\r\n"));
    ConsoleUser other(withArguments(QStringLiteral("--no-version-line")));
    other.work(systemView({"vlan 20"}));
    QCOMPARE(other.answer("display this"), QByteArray("#\r\nreturn\r\n")); // nothing is set in the VLAN
}

void TestSimulatorState::configuration_ofAskedLength_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("lines");
    QTest::newRow("huawei") << "" << 3000;
    QTest::newRow("sub") << kSub << 10000;
    QTest::newRow("hua3") << kHua3 << 3000;
}

void TestSimulatorState::configuration_ofAskedLength()
{
    QFETCH(QString, arguments);
    QFETCH(int, lines);
    ConsoleUser user(withArguments(arguments + QStringLiteral(" --lines %1").arg(lines)));
    const int count = static_cast<int>(user.console().configurationText().count("\r\n"));
    QVERIFY2(count >= lines && count < lines + 10, QByteArray::number(count).constData());
}

void TestSimulatorState::descriptions_notUtf8()
{
    ConsoleUser user(withArguments(QStringLiteral("--descriptions gbk")));
    const QByteArray text = user.answer("display interface description");
    QVERIFY(text.contains("\xc9\xe3\xcf\xf1\xbb\xfa"
                          "24\r\n"));
    QVERIFY(QString::fromUtf8(text).contains(QChar::ReplacementCharacter));
}

void TestSimulatorState::subInterfaces()
{
    ConsoleUser user(withArguments(QStringLiteral("--subinterfaces 1")));
    user.work(systemView({"interface g0/0/2.7", "quit"}));
    const QByteArray listing = user.answer("display interface brief");
    QVERIFY(listing.contains("\r\nGigabitEthernet0/0/1.20 "));
    QVERIFY(listing.contains("\r\nGigabitEthernet0/0/2.7 "));
    user.enter("undo interface g0/0/2.7");
    QVERIFY(!user.answer("display interface brief").contains("0/0/2.7"));
}

void TestSimulatorState::numberOfPorts_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArrayList>("names");
    QTest::newRow("access") << "" << QByteArrayList{"GigabitEthernet0/0/24", "XGigabitEthernet0/0/4"};
    QTest::newRow("large") << "--model large" << QByteArrayList{"GigabitEthernet0/0/48", "XGigabitEthernet0/0/4"};
    QTest::newRow("aggregation") << "--model aggregation" << QByteArrayList{"XGigabitEthernet0/0/24", "40GE0/0/6"};
    QTest::newRow("chosen") << "--model 8+2+1"
                            << QByteArrayList{"GigabitEthernet0/0/8", "XGigabitEthernet0/0/2", "40GE0/0/1"};
    QTest::newRow("hua3 counts through") << "--family hua3"
                                         << QByteArrayList{"GigabitEthernet1/0/24", "Ten-GigabitEthernet1/0/28"};
}

void TestSimulatorState::numberOfPorts()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArrayList, names);
    ConsoleUser user(withArguments(arguments));
    const QByteArray text = user.console().configurationText();
    for (const QByteArray &name : qAsConst(names)) {
        QVERIFY2(text.contains("\r\ninterface " + name + "\r\n"), name.constData());
        const int slash = name.lastIndexOf('/');
        const QByteArray next = name.left(slash + 1) + QByteArray::number(name.mid(slash + 1).toInt() + 1);
        QVERIFY2(!text.contains("\r\ninterface " + next + "\r\n"), next.constData());
    }
}

QTEST_GUILESS_MAIN(TestSimulatorState)
#include "tst_simulator_state.moc"
