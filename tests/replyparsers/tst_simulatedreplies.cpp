// What the simulated Hua3 switch writes, byte for byte and without the reply rules of its description, as the parsers
// read it.
#include "replydescription.h"

#include <simulator/memoryterminal.h>
#include <simulator/simulatoroptions.h>

#include <QtTest/QtTest>

using namespace simulator;

namespace {

constexpr int kMostPages = 100;

SimulatorOptions hua3Switch()
{
    SimulatorOptions options;
    options.family = Family::Hua3;
    options.start = Start::UserView;
    options.paging = Paging::Off;
    options.logs = false;
    return options;
}

Question hua3Question()
{
    Question question;
    question.naming = hua3Naming();
    return question;
}

//! Somebody who types whole lines and pages on.
class Terminal
{
public:
    explicit Terminal(const SimulatorOptions &options)
        : _terminal(options)
    {
        _terminal.settle();
    }

    //! Echo, listing and prompt, with page markers and what erases them.
    QByteArray reply(const QByteArray &command)
    {
        QByteArray bytes = _terminal.exchange(command + "\r\n");
        for (int page = 0; bytes.endsWith("---- More ----") && page < kMostPages; ++page)
            bytes += _terminal.exchange(" ");
        return bytes;
    }

    void configure(const QByteArrayList &lines)
    {
        reply("system-view");
        for (const QByteArray &line : lines)
            reply(line);
        reply("return");
    }

private:
    MemoryTerminal _terminal;
};

QStringList ofSection(int section, const QStringList &description)
{
    const QString number = QString::number(section) + QLatin1Char(' ');
    QStringList lines;
    for (const QString &line : description) {
        if (line.startsWith(number))
            lines.append(line.mid(number.size()));
    }
    return lines;
}

//! Numbers of the sections that have something to say.
QList<int> sectionsIn(const QStringList &description)
{
    QList<int> sections;
    for (const QString &line : description) {
        const int section = line.section(QLatin1Char(' '), 0, 0).toInt();
        if (sections.isEmpty() || sections.last() != section)
            sections.append(section);
    }
    return sections;
}

QString names(const QString &prefix, int first, int last)
{
    QStringList names;
    for (int port = first; port <= last; ++port)
        names.append(prefix + QString::number(port));
    return names.join(QLatin1Char(' '));
}

} // namespace

class TestSimulatedReplies : public QObject
{
    Q_OBJECT

private slots:
    void listing_isReadBySections_data();
    void listing_isReadBySections();
    void interfaceBrief_isTableAndInventory();
    void interfaceBrief_pagedOrNot_isTheSameInventory_data();
    void interfaceBrief_pagedOrNot_isTheSameInventory();
    void interfaceBrief_paged_losesNoGigabitRow();
    void interfaceBrief_withoutGigabitPorts();
    void interfaceBrief_hasARowForEachOf52Ports();
    void vlans();
    void querier();
    void mirroringGroup();
    void poeInterfaces_behindPageMarkersAlways();
    void login_data();
    void login();
    void reboot_isNoticed();
};

void TestSimulatedReplies::listing_isReadBySections_data()
{
    QTest::addColumn<QByteArrayList>("before");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QList<int>>("sections");
    const auto row = [](const char *command, const QList<int> &sections, const QByteArrayList &before = {}) {
        QTest::newRow(command) << before << QByteArray(command) << sections;
    };
    row("display interface brief", {3, 15});
    row("display interface link-info", {10});
    row("display vlan", {4});
    row("display igmp-snooping", {5, 6}, {"igmp-snooping", "vlan 20", "igmp-snooping enable"});
    row("display igmp-snooping vlan 1", {5, 6});
    row("display link-aggregation verbose", {7},
        {"interface Bridge-Aggregation 1", "link-aggregation mode dynamic", "interface g1/0/1",
         "port link-aggregation group 1"});
    row("display mirroring-group all", {8}, {"mirroring-group 1 local"});
    row("display poe interface", {9});
    row("display multicast forwarding-table", {11});
    // Not headed by the gigabit or 10-gigabit names of the other listings: the description's rules shorten them.
    row("display transceiver interface", {});
    row("display l2-multicast ip forwarding", {});
    row("display device", {});
    row("display version", {17}); // names the last reboot
    row("display current-configuration", {});
    row("display nothing", {});
}

void TestSimulatedReplies::listing_isReadBySections()
{
    QFETCH(QByteArrayList, before);
    QFETCH(QByteArray, command);
    SimulatorOptions options = hua3Switch();
    options.model.poe = true;
    Terminal terminal(options);
    terminal.configure(before);
    const QByteArray reply = terminal.reply(command);
    QVERIFY(reply.startsWith(command));
    QTEST(sectionsIn(describeHua3Reply(reply, hua3Question())), "sections");
}

void TestSimulatedReplies::interfaceBrief_isTableAndInventory()
{
    Terminal terminal(hua3Switch());
    const QByteArray reply = terminal.reply("display interface brief");
    const QStringList description = describeHua3Reply(reply, hua3Question());
    const QStringList table = ofSection(3, description);
    QCOMPARE(table.size(), 1 + 28 + 2); // header, ports, prompt and the end of the waiting
    QVERIFY(table.first().startsWith(QStringLiteral("info Interface            Link Speed ")));
    QVERIFY(table.at(1).startsWith(QStringLiteral("info GE1/0/1              UP   1G(a) ")));
    QVERIFY(table.at(28).startsWith(QStringLiteral("info XGE1/0/28 ")));
    QCOMPARE(table.at(29), QStringLiteral("info <H3C>"));
    const QStringList inventory = ofSection(15, description);
    // The management port stands in the first table: the description drops it, the parser does not.
    QVERIFY(inventory.contains(QStringLiteral("down ports: g0/0/0 ") + names(QStringLiteral("g1/0/"), 1, 24)));
    QVERIFY(inventory.contains(QStringLiteral("up ports: ") + names(QStringLiteral("t1/0/"), 25, 28)));
    QVERIFY(inventory.contains(QStringLiteral("up range 25-28")));
}

void TestSimulatedReplies::interfaceBrief_pagedOrNot_isTheSameInventory_data()
{
    QTest::addColumn<int>("eraseColumns");
    QTest::addColumn<int>("screenLines");
    for (const int eraseColumns : {16, 42}) {
        for (const int screenLines : {2, 7, 24})
            QTest::addRow("%d columns, %d lines", eraseColumns, screenLines) << eraseColumns << screenLines;
    }
}

void TestSimulatedReplies::interfaceBrief_pagedOrNot_isTheSameInventory()
{
    SimulatorOptions options = hua3Switch();
    Terminal plain(options);
    options.paging = Paging::Normal;
    QFETCH(int, eraseColumns);
    QFETCH(int, screenLines);
    options.eraseColumns = eraseColumns;
    options.screenLines = screenLines;
    Terminal paged(options);
    const QByteArray pages = paged.reply("display interface brief");
    QVERIFY(pages.contains("---- More ----"));
    QVERIFY(pages.endsWith("<H3C>"));
    const QByteArray whole = plain.reply("display interface brief");
    QCOMPARE(ofSection(15, describeHua3Reply(pages, hua3Question())),
             ofSection(15, describeHua3Reply(whole, hua3Question())));
}

void TestSimulatedReplies::interfaceBrief_paged_losesNoGigabitRow()
{
    SimulatorOptions options = hua3Switch();
    options.paging = Paging::Normal;
    Terminal terminal(options);
    const QByteArray reply = terminal.reply("display interface brief");
    const QStringList table = ofSection(3, describeHua3Reply(reply, hua3Question()));
    for (int port = 1; port <= 24; ++port) {
        const QString name = QStringLiteral("info GE1/0/%1 ").arg(port);
        QCOMPARE(table.filter(name).size(), 1);
        QVERIFY(table.filter(name).first().startsWith(name));
    }
    QVERIFY(table.filter(QStringLiteral("More")).isEmpty());
}

void TestSimulatedReplies::interfaceBrief_withoutGigabitPorts()
{
    SimulatorOptions options = hua3Switch();
    options.model.gigabit = 0;
    options.model.copper = 0;
    options.model.tenGigabit = 24;
    options.model.fortyGigabit = 2;
    Terminal terminal(options);
    QByteArray reply = terminal.reply("display interface brief");
    reply.replace("M-GE0/0/0", "M-").replace("FGE", "40GE"); // as the description does
    const QStringList inventory = ofSection(15, describeHua3Reply(reply, hua3Question()));
    QCOMPARE(inventory,
             (QStringList{QStringLiteral("slot 0"), QStringLiteral("headers 0"), QStringLiteral("no gigabit port"),
                          QStringLiteral("down ports: ") + names(QStringLiteral("t1/0/"), 1, 24),
                          QStringLiteral("up ports: "), QStringLiteral("down range 1-24"),
                          QStringLiteral("up range 25-26")}));
}

void TestSimulatedReplies::interfaceBrief_hasARowForEachOf52Ports()
{
    SimulatorOptions options = hua3Switch();
    options.model.gigabit = 48;
    options.model.copper = 48;
    Terminal terminal(options);
    const reply::ReplyText text(terminal.reply("display interface brief"));
    const auto inventory = readHua3Ports(text, hua3Naming(), false);
    QVERIFY(inventory);
    QCOMPARE(inventory->downPorts.size(), 1 + 48);
    QCOMPARE(inventory->upPorts.size(), 4);
    QCOMPARE(inventory->down.maximum, 48);
    QCOMPARE(inventory->up.minimum, 49);
    QCOMPARE(inventory->up.maximum, 52);
}

void TestSimulatedReplies::vlans()
{
    Terminal terminal(hua3Switch());
    terminal.configure({"vlan 20", "vlan 30"});
    QCOMPARE(describeHua3Reply(terminal.reply("display vlan"), hua3Question()),
             (QStringList{QStringLiteral("4 info  Total VLANs: 3"), QStringLiteral("4 info  The VLANs include:"),
                          QStringLiteral("4 info  1(default), 20, 30"), QStringLiteral("4 waiting ended")}));
}

void TestSimulatedReplies::querier()
{
    Terminal terminal(hua3Switch());
    const auto lines = [&terminal] {
        return ofSection(6, describeHua3Reply(terminal.reply("display igmp-snooping vlan 20"), hua3Question()));
    };
    terminal.configure({"igmp-snooping", "vlan 20", "igmp-snooping enable"});
    QCOMPARE(lines().first(), QStringLiteral("info  Querier: Disabled"));
    terminal.configure({"vlan 20", "igmp-snooping querier"});
    QVERIFY(lines().first().startsWith(QStringLiteral("info  Querier: Enabled ")));
    QCOMPARE(lines().last(), QStringLiteral("waiting ended"));
}

void TestSimulatedReplies::mirroringGroup()
{
    Terminal terminal(hua3Switch());
    terminal.configure({"mirroring-group 1 local", "mirroring-group 1 mirroring-port g1/0/2 inbound",
                        "mirroring-group 1 monitor-port g1/0/9"});
    QCOMPARE(describeHua3Reply(terminal.reply("display mirroring-group all"), hua3Question()),
             (QStringList{QStringLiteral("8 groups Type: Local|Status: Active|Mirroring port:|"
                                         "GigabitEthernet1/0/2  Inbound|Monitor port: GigabitEthernet1/0/9|"),
                          QStringLiteral("8 waiting ended")}));
}

void TestSimulatedReplies::poeInterfaces_behindPageMarkersAlways()
{
    SimulatorOptions options = hua3Switch();
    options.model.poe = true;
    options.paging = Paging::Normal;
    options.screenLines = 5;
    Terminal terminal(options);
    const QByteArray reply = terminal.reply("display poe interface");
    const QStringList lines = ofSection(9, describeHua3Reply(reply, hua3Question()));
    const QStringList always = lines.filter(QRegularExpression(QStringLiteral("^info GE1/0/")));
    QVERIFY(always.size() > 3);
    QCOMPARE(always.size(), reply.count("---- More ----"));
    QCOMPARE(always.size() + lines.filter(QRegularExpression(QStringLiteral("^info detailed GE1/0/"))).size(), 24);
}

void TestSimulatedReplies::login_data()
{
    QTest::addColumn<bool>("inLowerCase");
    QTest::addColumn<QString>("prompt");
    QTest::newRow("Username:") << false << QStringLiteral("14 user name");
    QTest::newRow("login: in lower case needs a rule") << true << QString();
}

void TestSimulatedReplies::login()
{
    QFETCH(bool, inLowerCase);
    SimulatorOptions options = hua3Switch();
    options.start = Start::LoginPrompt;
    options.loginInLowerCase = inLowerCase;
    options.failureText = FailureText::Authentication;
    Terminal terminal(options);
    Question question = hua3Question();
    question.isLoggedIn = false;
    const auto read = [&question](const QByteArray &reply) { return describeHua3Reply(reply, question).value(0); };
    QTEST(read(terminal.reply(QByteArray())), "prompt");
    QCOMPARE(read(terminal.reply(options.user)), QStringLiteral("14 password"));
    const QByteArray refusal = terminal.reply("wrong");
    QVERIFY2(refusal.contains("authentication failed"), refusal.constData());
    terminal.reply(options.user);
    QCOMPARE(read(terminal.reply(options.password)), QStringLiteral("14 ready"));
}

void TestSimulatedReplies::reboot_isNoticed()
{
    Terminal terminal(hua3Switch());
    const QStringList description = describeHua3Reply(terminal.reply("reboot"), hua3Question());
    QVERIFY(description.contains(QStringLiteral("17 reboot")));
}

QTEST_APPLESS_MAIN(TestSimulatedReplies)
#include "tst_simulatedreplies.moc"
