#include "commandgrammar.h"
#include "vlanlist.h"

#include <QtTest/QTest>

using namespace simulator;

Q_DECLARE_METATYPE(simulator::CommandMatch::Status)

namespace {

void nothing(ConsoleSession &, const Arguments &) {}

// A switch with ports 1 to 8 and 1 to 2 of two kinds.
struct Fixture
{
    SwitchHardware hardware;
    std::unique_ptr<InterfaceNames> names;
    std::vector<CommandRow> rows{{kPortView, 0, "port link-type access|trunk", nothing},
                                 {kPortView, 0, "undo port link-type", nothing},
                                 {kSystemView, 0, "port-group group-member <ports>", nothing},
                                 {kSystemView, 0, "vlan <1-4094>", nothing},
                                 {kSystemView, 0, "vlan batch <vlans>", nothing},
                                 {kSystemView, 0, "interface <interface>", nothing},
                                 {kAnyView, 0, "show a [b] [c <word>]", nothing},
                                 {kAnyView, 0, "description <rest>", nothing}};

    Fixture()
    {
        for (int number = 1; number <= 8; ++number)
            hardware.ports.push_back({InterfaceKind::Gigabit, number, false, false, {}});
        for (int number = 1; number <= 2; ++number)
            hardware.ports.push_back({InterfaceKind::TenGigabit, number, true, false, {}});
        names = std::make_unique<InterfaceNames>(
            std::vector<InterfaceType>{{InterfaceKind::Gigabit, "GigabitEthernet", "GE", "0/0/", 0, 0},
                                       {InterfaceKind::TenGigabit, "XGigabitEthernet", "XGE", "0/0/", 0, 0},
                                       {InterfaceKind::Trunk, "Eth-Trunk", "Eth-Trunk", "", 0, 127}},
            hardware);
    }

    CommandMatch match(const QByteArray &line, unsigned views = kSystemView | kPortView) const
    {
        return CommandGrammar(rows).match(line, views, *names);
    }
};

} // namespace

class TestSimulatorGrammar : public QObject
{
    Q_OBJECT

private slots:
    void match_status_data();
    void match_status();
    void match_writesKeywordsOut();
    void match_ownViewComesFirst();
    void match_readsPortRanges_data();
    void match_readsPortRanges();
    void match_readsVlanLists();
    void vlanList_isWrittenInRanges();
    void interfaceNames_data();
    void interfaceNames();
};

void TestSimulatorGrammar::match_status_data()
{
    using Status = CommandMatch::Status;
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<Status>("status");
    QTest::addColumn<int>("column");
    QTest::newRow("whole") << QByteArray("vlan 20") << Status::Complete << 0;
    QTest::newRow("blanks around") << QByteArray("  vlan   20  ") << Status::Complete << 0;
    QTest::newRow("short") << QByteArray("v 20") << Status::Complete << 0;
    QTest::newRow("exact beats longer") << QByteArray("port l a") << Status::Complete << 0;
    QTest::newRow("option left out") << QByteArray("show a") << Status::Complete << 0;
    QTest::newRow("second option only") << QByteArray("show a c x") << Status::Complete << 0;
    QTest::newRow("both options") << QByteArray("show a b c x") << Status::Complete << 0;
    QTest::newRow("ambiguous") << QByteArray("por") << Status::Ambiguous << 0;
    QTest::newRow("unknown") << QByteArray("vxan 20") << Status::Unrecognized << 1;
    QTest::newRow("unknown choice") << QByteArray("port link-type x") << Status::Unrecognized << 15;
    QTest::newRow("incomplete") << QByteArray("vlan") << Status::Incomplete << 4;
    QTest::newRow("incomplete range") << QByteArray("port-group g g0/0/1 to") << Status::Incomplete << 22;
    QTest::newRow("incomplete interface") << QByteArray("interface g") << Status::Incomplete << 11;
    QTest::newRow("too many") << QByteArray("vlan 20 30") << Status::TooMany << 8;
    QTest::newRow("out of range") << QByteArray("vlan 4095") << Status::Wrong << 5;
    QTest::newRow("no such port") << QByteArray("interface g0/0/9") << Status::Wrong << 10;
    QTest::newRow("no such type") << QByteArray("interface q0/0/9") << Status::Unrecognized << 10;
    QTest::newRow("backward range") << QByteArray("port-group g g0/0/3 to g0/0/2") << Status::Wrong << 23;
    QTest::newRow("range over two kinds") << QByteArray("port-group g g0/0/1 to xg0/0/2") << Status::Wrong << 23;
    QTest::newRow("group among ports") << QByteArray("port-group g e1") << Status::Wrong << 13;
    QTest::newRow("signed number") << QByteArray("vlan +20") << Status::Wrong << 5;
    QTest::newRow("empty") << QByteArray() << Status::Incomplete << 0;
}

void TestSimulatorGrammar::match_status()
{
    QFETCH(QByteArray, line);
    QFETCH(CommandMatch::Status, status);
    QFETCH(int, column);
    const CommandMatch match = Fixture().match(line);
    QCOMPARE(match.status, status);
    QCOMPARE(match.column, column);
}

void TestSimulatorGrammar::match_writesKeywordsOut()
{
    const Fixture fixture;
    const CommandMatch match = fixture.match("UND po li");
    QCOMPARE(match.status, CommandMatch::Status::Complete);
    QVERIFY(match.arguments.undo);
    QCOMPARE(match.arguments.line, QByteArray("undo port link-type"));
    QCOMPARE(fixture.match("port l t").arguments.words, QByteArrayList{"trunk"});
    QCOMPARE(fixture.match("desc  a <b>  c ").arguments.words, QByteArrayList{"a <b>  c"});
}

void TestSimulatorGrammar::match_ownViewComesFirst()
{
    const std::vector<CommandRow> rows{{kVlanView, 0, "snooping enable", nothing},
                                       {kSystemView, 0, "snooping enable", nothing}};
    const Fixture fixture;
    const CommandGrammar grammar(rows);
    QCOMPARE(grammar.match("snooping enable", kVlanView | kSystemView, *fixture.names).row, &rows[0]);
    QCOMPARE(grammar.match("snooping enable", kSystemView, *fixture.names).row, &rows[1]);
}

void TestSimulatorGrammar::match_readsPortRanges_data()
{
    QTest::addColumn<QByteArray>("ports");
    QTest::addColumn<QByteArray>("names");
    QTest::newRow("one") << QByteArray("GigabitEthernet 0/0/3") << QByteArray("GE0/0/3");
    QTest::newRow("range") << QByteArray("g0/0/1 to g0/0/3") << QByteArray("GE0/0/1 GE0/0/2 GE0/0/3");
    QTest::newRow("range without the second name") << QByteArray("g 0/0/1 to 0/0/2") << QByteArray("GE0/0/1 GE0/0/2");
    QTest::newRow("several") << QByteArray("g0/0/1 xg0/0/1 to xg 0/0/2 g0/0/8")
                             << QByteArray("GE0/0/1 XGE0/0/1 XGE0/0/2 GE0/0/8");
}

void TestSimulatorGrammar::match_readsPortRanges()
{
    QFETCH(QByteArray, ports);
    QFETCH(QByteArray, names);
    const Fixture fixture;
    QByteArrayList found;
    for (const InterfaceId &id : fixture.match("port-group group-member " + ports).arguments.interfaces)
        found << fixture.names->shortName(id);
    QCOMPARE(found.join(' '), names);
}

void TestSimulatorGrammar::match_readsVlanLists()
{
    const Fixture fixture;
    QCOMPARE(vlanListText(fixture.match("vlan batch 10 20 to 22 30").arguments.vlans), QByteArray("10 20 to 22 30"));
    QCOMPARE(fixture.match("vlan batch all").arguments.vlans.count(), std::size_t(4094));
    QCOMPARE(fixture.match("vlan batch 20 to 10").status, CommandMatch::Status::Wrong);
    QCOMPARE(fixture.match("vlan batch 20 to").status, CommandMatch::Status::Incomplete);
}

void TestSimulatorGrammar::vlanList_isWrittenInRanges()
{
    VlanSet vlans;
    QCOMPARE(vlanListText(vlans), QByteArray());
    for (const std::size_t vlan : {1U, 5U, 6U, 10U, 11U, 12U, 4093U, 4094U})
        vlans.set(vlan);
    QCOMPARE(vlanListText(vlans), QByteArray("1 5 6 10 to 12 4093 4094"));
    QCOMPARE(vlanListLines(vlans, 2), (QByteArrayList{"1 5 6", "10 to 12 4093 4094"}));
    QCOMPARE(vlanListText(allVlans()), QByteArray("1 to 4094"));
}

void TestSimulatorGrammar::interfaceNames_data()
{
    QTest::addColumn<QByteArray>("typed");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("long") << QByteArray("GigabitEthernet0/0/1") << QByteArray("GigabitEthernet0/0/1");
    QTest::newRow("sub-interface") << QByteArray("g0/0/1.20") << QByteArray("GigabitEthernet0/0/1.20");
    QTest::newRow("logical") << QByteArray("eth-trunk127") << QByteArray("Eth-Trunk127");
    QTest::newRow("too high") << QByteArray("eth-trunk128") << QByteArray();
    QTest::newRow("other slot") << QByteArray("g1/0/1") << QByteArray();
    QTest::newRow("sub-interface 0") << QByteArray("g0/0/1.0") << QByteArray();
    QTest::newRow("two dots") << QByteArray("g0/0/1.2.3") << QByteArray();
    QTest::newRow("overflow") << QByteArray("g0/0/99999999999") << QByteArray();
    QTest::newRow("only digits") << QByteArray("0/0/1") << QByteArray();
}

void TestSimulatorGrammar::interfaceNames()
{
    QFETCH(QByteArray, typed);
    QFETCH(QByteArray, name);
    const Fixture fixture;
    const CommandMatch match = fixture.match("interface " + typed);
    QCOMPARE(match.status == CommandMatch::Status::Complete, !name.isEmpty());
    if (!name.isEmpty())
        QCOMPARE(fixture.names->longName(match.arguments.interfaces.front()), name);
}

QTEST_GUILESS_MAIN(TestSimulatorGrammar)
#include "tst_simulator_grammar.moc"
