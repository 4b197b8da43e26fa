#include "consoleuser.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

using namespace simulator;

namespace {

QByteArrayList systemView(const QByteArrayList &lines)
{
    return QByteArrayList{"system-view"} + lines + QByteArrayList{"return"};
}

QByteArrayList firstColumn(const QByteArray &listing)
{
    QByteArrayList column;
    for (const QByteArray &line : listing.split('\n'))
        column << line.left(line.indexOf(' ', line.startsWith(' ') ? 2 : 0));
    return column;
}

} // namespace

class TestSimulatorListings : public QObject
{
    Q_OBJECT

private slots:
    void containWhatReadersLookFor_data();
    void containWhatReadersLookFor();
    void brief_isSortedByNameWithNumbersAsNumbers();
    void brief_rowForByte_data();
    void brief_rowForByte();
    void brief_membersStandBelowTheirGroupAndNowhereElse();
    void brief_followsShutdownAndNeighbours();
    void slot_numberOfCopperLines_data();
    void slot_numberOfCopperLines();
    void vlan_portsByMembership();
    void vlan_olderRelease();
    void snooping_offOrEmpty();
    void forwarding_followsNeighbours();
    void transceiver_presentAndAbsent();
    void transceiver_verboseSaysMore();
    void mirroring_bothLayouts();
    void eth_trunk_unknown();
    void poe_unknownWithoutIt();
    void poe_followsTheSetting();
    void ipConflicts_onlyWithDetection();
    void hua3_brief_managementInTheFirstTable();
    void hua3_aggregation_staticHasNoIndex();
    void hua3_transceiver_absentOnALineOfItsOwn();
    void log_buffer();
};

void TestSimulatorListings::containWhatReadersLookFor_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArrayList>("before");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("pattern");
    const auto row = [](const char *tag, const char *arguments, const QByteArrayList &before, const char *command,
                        const char *pattern) {
        QTest::newRow(tag) << arguments << before << QByteArray(command) << QString::fromLatin1(pattern);
    };
    row("brief", "", {}, "display interface brief",
        "^PHY: Physical\r\n.*\r\nInterface +PHY +Protocol +InUti OutUti +inErrors +outErrors\r\n.*"
        "\r\nGigabitEthernet0/0/2 +down +down +0% +0% +0 +0\r\n");
    row("brief, sub", "--family huawei-sub", {}, "display interface brief",
        "\r\nInterface +PHY +Protocol.*\r\n10GE0/0/1 +up +up .*\r\nGE0/0/1 +up +up ");
    row("brief, multi", "--family huawei-sub --multige", {}, "display interface brief",
        "\r\nMultiGE0/0/24 +down +down ");
    row("brief, speed in names", "--speed-in-names", {}, "display interface brief",
        "\r\nXGigabitEthernet0/0/1\\(10G\\) +up ");
    row("slot", "", {}, "display device slot 0",
        "Board Type +: S5720-28X-LI-AC\r\n.*\r\nPort +Port +Optic +MDI +Speed +Duplex +Flow- +Port +PoE\r\n +Type "
        "+Status "
        "+\\(Mbps\\).*\r\n0/0/1 +GE\\(C\\) +Absent +Auto +1000 +Full +Disable +Up +-\r\n");
    row("vlan", "", systemView({"vlan batch 20 30"}), "display vlan",
        "^The total number of VLANs is : 3\r\n.*\r\nVID  Type    Ports\r\n-+\r\n1    common  UT:GE0/0/1\\(U\\) "
        ".*\r\n20   common +\r\n");
    row("snooping configuration", "", systemView({"igmp-snooping enable", "vlan 20", "igmp-snooping enable"}),
        "display igmp-snooping configuration",
        "IGMP Snooping Configuration for VLAN 20\r\n +igmp-snooping enable\r\n$");
    row("snooping of a vlan", "",
        systemView({"igmp-snooping enable", "vlan 20", "igmp-snooping enable", "igmp-snooping querier enable"}),
        "display igmp-snooping vlan 20", "IGMP Snooping is Enabled\r\n.*IGMP Snooping Querier is Enabled\r\n$");
    row("transceiver", "", {}, "display transceiver interface XGigabitEthernet 0/0/1",
        "^XGigabitEthernet0/0/1 transceiver information:\r\n.*Transceiver Type +:10GBASE.*\r\n +Connector Type "
        "+:LC\r\n "
        "+Wavelength\\(nm\\) +:850\r\n");
    row("wavelength with a blank", "--wavelength-blank", {}, "display transceiver",
        "\r\n +Wavelength \\(nm\\) +:850\r\n");
    row("conflicts", "--ip-conflicts 2", systemView({"arp ip-conflict-detect enable"}), "display arp ip-conflict track",
        "^Conflict type +: .*\r\nConflict type +: ");
    row("power", "--poe", {}, "display poe power",
        "^PortName +Class +REFPW\\(mW\\) +USMPW\\(mW\\) +CURPW\\(mW\\).*\r\n"
        "GigabitEthernet0/0/1 +3 +15400 +30000 +2350 ");
    row("power state", "--poe", {}, "display poe power-state", "\r\nGigabitEthernet0/0/1 +on +enable ");
    row("power information", "--poe", {}, "display poe information", "Total Power Consumption\\(mW\\) +: \\d+\r\n");
    row("eth-trunk, static", "", systemView({"interface Eth-Trunk 1", "trunkport g0/0/1 to 0/0/2"}),
        "display eth-trunk 1",
        "^Eth-Trunk1's state information is:\r\nWorkingMode: NORMAL .*Operate status: up .*\r\nPortName .*\r\n"
        "GigabitEthernet0/0/1 +Up +1");
    row("eth-trunk, lacp", "", systemView({"interface Eth-Trunk 1", "mode lacp", "trunkport g0/0/1 to 0/0/2"}),
        "display eth-trunk 1", "WorkingMode: LACP .*\r\nGigabitEthernet0/0/1 +Selected .*\r\nPartner:\r\n");
    row("observe ports", "", systemView({"observe-port 1 interface g0/0/10"}), "display observe-port",
        "Index +: 1\r\n +Interface +: GigabitEthernet0/0/10\r\n");
    row("one interface", "", {}, "display interface g0/0/1", "^GigabitEthernet0/0/1 current state : UP\r\n");
    row("version", "", {}, "display version",
        "VRP \\(R\\) software, .*uptime is 0 weeks, 0 days, 0 hours, 0 minutes\r\n");
    row("startup", "", {}, "display startup", "Next startup saved-configuration file: +flash:/vrpcfg.zip\r\n");
    row("clock", "", {}, "display clock", "^2026-11-20 10:11:\\d\\d\r\nFriday\r\n");
    row("saved configuration", "", systemView({"sysname other"}), "display saved-configuration",
        "\r\nsysname HUAWEI\r\n");
    row("hua3 brief", "--family hua3", {}, "display interface brief",
        "\r\nInterface +Link +Speed +Duplex +Type +PVID +Description\r\nGE1/0/1 +UP +1G\\(a\\) +F\\(a\\) +A +1 "
        "+\r\n.*\r\nXGE1/0/25 +UP ");
    row("hua3 link info", "--family hua3", {}, "display interface link-info",
        "Interface +Link +Protocol +InUsage +OutUsage ");
    row("hua3 vlans", "--family hua3", systemView({"vlan 20", "vlan 30"}), "display vlan",
        "^ Total VLANs: 3\r\n The VLANs include:\r\n 1\\(default\\), 20, 30\r\n$");
    row("hua3 vlans, older", "--family hua3 --old-vlan-listing", {}, "display vlan",
        "^ Total 1 VLAN exist\\(s\\)\\.\r\n");
    row("hua3 snooping", "--family hua3",
        systemView({"igmp-snooping", "vlan 20", "igmp-snooping enable", "igmp-snooping querier"}),
        "display igmp-snooping",
        "^IGMP snooping information: Global\r\n.*IGMP snooping information: VLAN 20\r\n.*\r\n Querier: Enabled "
        "\\(IP: ");
    row("hua3 mirroring", "--family hua3",
        systemView({"mirroring-group 1 local", "mirroring-group 1 mirroring-port g1/0/2 inbound",
                    "mirroring-group 1 monitor-port g1/0/9"}),
        "display mirroring-group all",
        "^Mirroring group 1:\r\n +Type: Local\r\n +Status: Active\r\n +Mirroring port:\r\n +GigabitEthernet1/0/2 "
        "+Inbound\r\n "
        "+Monitor port: GigabitEthernet1/0/9\r\n$");
    row("hua3 groups", "--family hua3",
        systemView({"interface Bridge-Aggregation 1", "link-aggregation mode dynamic", "interface g1/0/1",
                    "port link-aggregation group 1"}),
        "display link-aggregation verbose",
        "\r\nAggregate Interface: Bridge-Aggregation1\r\n.*\r\n +Port +Status +Priority +Index +Oper-Key +Flag\r\n "
        "+GE1/0/1\\(R\\) +S ");
    row("hua3 power", "--family hua3 --poe", {}, "display poe interface",
        "^ Interface +PoE +Priority +CurPower +Oper +IEEE +Detection\r\n.*\r\n GE1/0/1 +Enabled .*\r\n ---  On State "
        "Ports: 5; ");
    row("hua3 version", "--family hua3", {}, "display version", "Last reboot reason : ");
    row("hua3 multicast", "--family hua3", {}, "display multicast forwarding-table", "^Total 0 entries");
    row("hua3 device", "--family hua3", {}, "display device", "^Slot Type .*\r\n1    S5130S-28S-EI +Master");
    row("hua3 configuration", "--family hua3", {}, "display current-configuration",
        "^#\r\n version 7.*\r\n#\r\nreturn\r\n$");
}

void TestSimulatorListings::containWhatReadersLookFor()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArrayList, before);
    QFETCH(QByteArray, command);
    QFETCH(QString, pattern);
    ConsoleUser user(withArguments(arguments));
    user.work(before);
    const QByteArray answer = user.answer(command);
    const QRegularExpression expression(pattern, QRegularExpression::DotMatchesEverythingOption);
    QVERIFY2(expression.isValid(), qPrintable(pattern));
    QVERIFY2(expression.match(QString::fromLatin1(answer)).hasMatch(), answer.constData());
}

void TestSimulatorListings::brief_isSortedByNameWithNumbersAsNumbers()
{
    ConsoleUser user(withArguments(QStringLiteral("--model 11+2+2")));
    user.work(systemView({"interface Eth-Trunk 1"}));
    const QByteArrayList names = firstColumn(user.answer("display interface brief"));
    const int first = names.indexOf("Interface") + 1;
    QCOMPARE(names.mid(first, names.size() - first - 1),
             (QByteArrayList{"40GE0/0/1", "40GE0/0/2", "Eth-Trunk1", "GigabitEthernet0/0/1", "GigabitEthernet0/0/2",
                             "GigabitEthernet0/0/3", "GigabitEthernet0/0/4", "GigabitEthernet0/0/5",
                             "GigabitEthernet0/0/6", "GigabitEthernet0/0/7", "GigabitEthernet0/0/8",
                             "GigabitEthernet0/0/9", "GigabitEthernet0/0/10", "GigabitEthernet0/0/11", "MEth0/0/1",
                             "NULL0", "Vlanif1", "XGigabitEthernet0/0/1", "XGigabitEthernet0/0/2"}));
}

void TestSimulatorListings::brief_rowForByte_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("row");
    QTest::newRow("huawei") << ""
                            << QByteArray(
                                   "GigabitEthernet0/0/2        down  down         0%     0%          0          0");
    QTest::newRow("sub") << "--family huawei-sub"
                         << QByteArray(
                                "GE0/0/2                    down     down         0%     0%          0          0");
    QTest::newRow("hua3") << "--family hua3" << QByteArray("GE1/0/2              DOWN auto    A      A    1    ");
}

void TestSimulatorListings::brief_rowForByte()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArray, row);
    ConsoleUser user(withArguments(arguments));
    const QByteArray listing = user.answer("display interface brief");
    QVERIFY2(listing.contains("\r\n" + row + "\r\n"), listing.constData());
}

void TestSimulatorListings::brief_membersStandBelowTheirGroupAndNowhereElse()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.work(systemView({"interface Eth-Trunk 1", "trunkport g0/0/1 to 0/0/2"}));
    const QByteArrayList names = firstColumn(user.answer("display interface brief"));
    const int group = names.indexOf("Eth-Trunk1");
    QVERIFY(group > 0);
    QCOMPARE(names.mid(group + 1, 3),
             (QByteArrayList{"  GigabitEthernet0/0/1", "  GigabitEthernet0/0/2", "GigabitEthernet0/0/3"}));
    QVERIFY(!names.contains("GigabitEthernet0/0/1"));
}

void TestSimulatorListings::brief_followsShutdownAndNeighbours()
{
    ConsoleUser user(ConsoleUser::atWork());
    const auto status = [&user] {
        const QByteArrayList lines = user.answerLines("display interface brief | include GigabitEthernet0/0/1 ");
        return lines.first().simplified().split(' ').value(1);
    };
    QCOMPARE(status(), QByteArray("up"));
    user.work(systemView({"interface g0/0/1", "shutdown"}));
    QCOMPARE(status(), QByteArray("*down"));
    user.work(systemView({"interface g0/0/1", "undo shutdown"}));
    QVERIFY(user.console().setNeighbour(0, false, user.terminal().now()));
    QCOMPARE(status(), QByteArray("down"));
    QVERIFY(!user.console().setNeighbour(999, false, user.terminal().now()));
}

void TestSimulatorListings::slot_numberOfCopperLines_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("copper");
    QTest::addColumn<int>("optical");
    QTest::newRow("access") << "" << 24 << 4;
    QTest::newRow("large") << "--model large" << 48 << 4;
    QTest::newRow("mixed") << "--model mixed" << 16 << 12;
    QTest::newRow("aggregation") << "--model aggregation" << 0 << 30;
    QTest::newRow("chosen") << "--model 8+0 --copper 3" << 3 << 5;
}

void TestSimulatorListings::slot_numberOfCopperLines()
{
    QFETCH(QString, arguments);
    QFETCH(int, copper);
    QFETCH(int, optical);
    ConsoleUser user(withArguments(arguments));
    const QByteArray listing = user.answer("display device slot 0");
    QCOMPARE(listing.count(" GE(C) "), copper);
    QCOMPARE(listing.count("GE(F) "), optical);
    QVERIFY(user.answer("display device slot 3").startsWith("Error:"));
}

void TestSimulatorListings::vlan_portsByMembership()
{
    ConsoleUser user(withArguments(QStringLiteral("--model 6+1")));
    user.work(systemView({"vlan 20", "port g0/0/1 to g0/0/2", "interface xg0/0/1", "port link-type trunk",
                          "port trunk allow-pass vlan 20", "interface Eth-Trunk 1", "trunkport g0/0/6"}));
    const QByteArray listing = user.answer("display vlan");
    QVERIFY2(listing.contains("\r\n1    common  UT:Eth-Trunk1(U)   GE0/0/3(D)      GE0/0/4(D)      GE0/0/5(D)\r\n"
                              "                XGE0/0/1(U)\r\n"
                              "20   common  UT:GE0/0/1(U)      GE0/0/2(D)\r\n"
                              "             TG:XGE0/0/1(U)\r\n"),
             listing.constData());
    QVERIFY(!user.answer("display vlan 20").contains("\r\n1 "));
    QCOMPARE(user.answer("display vlan 21"), QByteArray("Error: The VLAN does not exist.\r\n"));
}

void TestSimulatorListings::vlan_olderRelease()
{
    ConsoleUser user(withArguments(QStringLiteral("--old-vlan-listing")));
    QVERIFY(user.answer("display vlan").contains("\r\nThe total number of vlans is : 1\r\n"));
}

void TestSimulatorListings::snooping_offOrEmpty()
{
    ConsoleUser user(ConsoleUser::atWork());
    const QByteArray off("Error: Please enable IGMP snooping in the global view first.\r\n");
    const QByteArray empty("Info: There is no igmp-snooping configuration.\r\n");
    for (const char *command :
         {"display igmp-snooping configuration", "display igmp-snooping vlan 1",
          "display l2-multicast forwarding-table vlan 1", "display igmp-snooping port-info vlan 1"})
        QCOMPARE(user.answer(command), off);
    user.work(systemView({"igmp-snooping enable"}));
    for (const char *command : {"display igmp-snooping configuration", "display igmp-snooping vlan 1",
                                "display l2-multicast forwarding-table vlan 1"})
        QCOMPARE(user.answer(command), empty);
}

void TestSimulatorListings::forwarding_followsNeighbours()
{
    ConsoleUser user(ConsoleUser::atWork());
    user.work(systemView({"igmp-snooping enable", "vlan 20", "igmp-snooping enable", "port g0/0/1 to g0/0/2"}));
    const QByteArray listing = user.answer("display l2-multicast forwarding-table vlan 20");
    QVERIFY2(listing.contains(" (*, 239.1.20.1)            GigabitEthernet0/0/1           20\r\n"),
             listing.constData());
    QVERIFY(listing.endsWith("Total Group(s) : 1\r\n"));
    QVERIFY(user.answer("display igmp-snooping port-info vlan 20").contains("VLAN 20, 1 Entry(s)"));
}

void TestSimulatorListings::transceiver_presentAndAbsent()
{
    ConsoleUser user(ConsoleUser::atWork());
    const QByteArray listing = user.answer("display transceiver");
    QCOMPARE(listing.count("transceiver information:"), 3);
    QVERIFY(listing.contains("\r\nInfo: Port XGigabitEthernet0/0/3, transceiver is absent.\r\n"));
    QVERIFY(user.answer("display transceiver interface g0/0/1").startsWith("Error:"));
}

void TestSimulatorListings::transceiver_verboseSaysMore()
{
    ConsoleUser user(ConsoleUser::atWork());
    QVERIFY(!user.answer("display transceiver").contains("RX Power"));
    QCOMPARE(user.answer("display transceiver verbose").count("RX Power"), 3);
    QCOMPARE(user.answer("display transceiver interface xg0/0/1 verbose").count("RX Power"), 1);
}

void TestSimulatorListings::mirroring_bothLayouts()
{
    const QByteArrayList lines = systemView(
        {"observe-port 1 interface g0/0/10", "interface g0/0/2", "port-mirroring to observe-port 1 inbound"});
    ConsoleUser older(ConsoleUser::atWork());
    older.work(lines);
    const QByteArray old = older.answer("display port-mirroring");
    QVERIFY2(old.contains("  Observe-port 1 : GigabitEthernet0/0/10\r\n"), old.constData());
    QVERIFY2(old.contains("\r\n  1    GigabitEthernet0/0/2      Inbound    Observe-port 1\r\n"), old.constData());
    ConsoleUser newer(withArguments(QStringLiteral("--new-mirror-listing")));
    newer.work(lines);
    const QByteArray fresh = newer.answer("display port-mirroring");
    QVERIFY2(fresh.contains("\r\nMirroringPort            Direction  ObservePort : Interface\r\n"), fresh.constData());
    QVERIFY2(fresh.contains("\r\nGigabitEthernet0/0/2     Inbound    1 : GigabitEthernet0/0/10\r\n"),
             fresh.constData());
    QVERIFY(!fresh.contains("Observe-port 1 :"));
}

void TestSimulatorListings::eth_trunk_unknown()
{
    ConsoleUser user(ConsoleUser::atWork());
    QCOMPARE(user.answer("display eth-trunk 5"), QByteArray("Error: The Eth-Trunk does not exist.\r\n"));
}

void TestSimulatorListings::poe_unknownWithoutIt()
{
    ConsoleUser user(ConsoleUser::atWork());
    QVERIFY(user.answer("display poe power").endsWith("Error: Unrecognized command found at '^' position.\r\n"));
    ConsoleUser hua3(withArguments(QStringLiteral("--family hua3")));
    QVERIFY(hua3.answer("display poe interface").endsWith(" % Unrecognized command found at '^' position.\r\n"));
}

void TestSimulatorListings::poe_followsTheSetting()
{
    ConsoleUser user(withArguments(QStringLiteral("--poe")));
    user.work(systemView({"interface g0/0/1", "undo poe enable"}));
    const QByteArray row = user.answer("display poe power-state | include GigabitEthernet0/0/1 ");
    QVERIFY2(row.simplified().startsWith("GigabitEthernet0/0/1 off disable"), row.constData());
}

void TestSimulatorListings::ipConflicts_onlyWithDetection()
{
    ConsoleUser user(withArguments(QStringLiteral("--ip-conflicts 3")));
    QCOMPARE(user.answer("display arp ip-conflict track"), QByteArray());
    user.work(systemView({"arp ip-conflict-detect enable"}));
    QCOMPARE(user.answer("display arp ip-conflict track").count("Conflict type"), 3);
}

void TestSimulatorListings::hua3_brief_managementInTheFirstTable()
{
    ConsoleUser user(withArguments(QStringLiteral("--family hua3")));
    user.work(systemView({"interface Bridge-Aggregation 1", "interface g1/0/2", "shutdown"}));
    const QByteArray listing = user.answer("display interface brief");
    const int second = listing.indexOf("bridge mode");
    QVERIFY(listing.indexOf("M-GE0/0/0") < second);
    QVERIFY(listing.indexOf("BAGG1 ") > second);
    QVERIFY(listing.contains("\r\nGE1/0/2              ADM  "));
}

void TestSimulatorListings::hua3_aggregation_staticHasNoIndex()
{
    ConsoleUser user(withArguments(QStringLiteral("--family hua3")));
    user.work(systemView({"interface Bridge-Aggregation 1", "interface g1/0/1", "port link-aggregation group 1"}));
    const QByteArray listing = user.answer("display link-aggregation verbose Bridge-Aggregation 1");
    QVERIFY(listing.contains(
        "\r\n  Port             Status  Priority Oper-Key\r\n  GE1/0/1          S       32768    1\r\n"));
    QVERIFY(!listing.contains("Index"));
    QVERIFY(user.answer("display link-aggregation summary").contains("\r\nBAGG1      S "));
}

void TestSimulatorListings::hua3_transceiver_absentOnALineOfItsOwn()
{
    ConsoleUser user(withArguments(QStringLiteral("--family hua3")));
    QVERIFY(user.answer("display transceiver interface")
                .contains(
                    "\r\nTen-GigabitEthernet1/0/27 transceiver information:\r\nError: The transceiver is absent.\r\n"));
}

void TestSimulatorListings::log_buffer()
{
    SimulatorOptions options = ConsoleUser::atWork();
    options.logs = true;
    ConsoleUser user(options);
    user.work(systemView({"interface g0/0/1", "shutdown"}));
    const QByteArray listing = user.answer("display logbuffer");
    QVERIFY(listing.contains("IFPDT/4/IF_STATE(l)[0]:Interface GigabitEthernet0/0/1 has turned into DOWN state."));
}

QTEST_GUILESS_MAIN(TestSimulatorListings)
#include "tst_simulator_listings.moc"
