#include "commandexpansion.h"
#include "descriptionreader.h"

#include <simulator/memoryterminal.h>

#include <QtTest/QTest>

#include <algorithm>
#include <memory>

using namespace ovra::bll;
using simulator::Family;
using simulator::MemoryTerminal;
using simulator::SimulatorOptions;

namespace {

const QString kHuawei = QStringLiteral("Huawei.xml");
const QString kSub = QStringLiteral("Huawei_sub.xml");
const QString kHua3 = QStringLiteral("Hua3.xml");
const QStringList kFiles{kHuawei, kSub, kHua3};

std::shared_ptr<const DeviceDescription> shipped(const QString &name)
{
    const ReadDescription read = readDescription(QStringLiteral(DEVICES_FOLDER "/") + name);
    if (!read.description)
        qWarning("%s", qPrintable(read.error));
    return read.description;
}

// The choices that blocks make, and the kind of switch.
enum Choice { kOn = 1, kTrunk = 2, kRange = 4, kAggregation = 8 };
constexpr int kAllOn = kOn | kTrunk | kRange;

// The switch that a description is for: 24 gigabit ports with PoE, 4 ten-gigabit ports; at the user view. An
// aggregation switch has 24 ten-gigabit and 4 forty-gigabit ports in their place.
SimulatorOptions switchFor(const QString &file, int choices = 0)
{
    SimulatorOptions options;
    options.family = file == kHua3 ? Family::Hua3 : file == kSub ? Family::HuaweiSub : Family::Huawei;
    if ((choices & kAggregation) != 0)
        options.model = {0, 0, 24, 4, false, {}};
    options.model.poe = true;
    options.negotiationOnFibre = (choices & kAggregation) != 0;
    options.start = simulator::Start::UserView;
    return options;
}

// The interface types that the panel hands over, down and up. On an aggregation switch it replaces each by the next
// faster one.
struct PanelTypes
{
    QStringList ports; // of ascending speed
    QStringList linkPorts;
};

const PanelTypes &panelTypes(const QString &file)
{
    static const QStringList huawei{QStringLiteral("g"), QStringLiteral("xg"), QStringLiteral("40g")};
    static const QStringList sub{QStringLiteral("GE"), QStringLiteral("10GE"), QStringLiteral("40GE")};
    static const PanelTypes ofHuawei{huawei, huawei};
    static const PanelTypes ofSub{sub, sub};
    static const PanelTypes ofHua3{{QStringLiteral("g"), QStringLiteral("t"), QStringLiteral("40g")},
                                   {QStringLiteral("GigabitEthernet"), QStringLiteral("Ten-GigabitEthernet"),
                                    QStringLiteral("40-GigabitEthernet")}};
    return file == kHua3 ? ofHua3 : file == kSub ? ofSub : ofHuawei;
}

// What a panel would have set for a list.
DeviceValues valuesFor(const QString &file, int choices, const QString &getter = {})
{
    const bool isHua3 = file == kHua3;
    const bool isTrunk = (choices & kTrunk) != 0;
    const bool isRange = (choices & kRange) != 0;
    const int faster = (choices & kAggregation) != 0 ? 1 : 0;
    const PanelTypes &types = panelTypes(file);
    const QStringList &used = getter.contains(QLatin1String("Link")) ? types.linkPorts : types.ports;
    const QString port =
        types.ports.at(faster) + (isHua3 ? QLatin1Char('1') : QLatin1Char('0')) + QStringLiteral("/0/");
    const QString status = (choices & kOn) != 0 ? QStringLiteral("enable") : QStringLiteral("disable");
    const int firstUp = isHua3 ? 25 : 1;
    DeviceValues values;
    values.vlan = 20;
    values.portType = isTrunk ? QStringLiteral("trunk") : QStringLiteral("access");
    values.linkType = values.portType;
    values.switchType = isTrunk ? QStringLiteral("aggregation") : QStringLiteral("access");
    for (QString DeviceValues::*one :
         {&DeviceValues::multicastStatus, &DeviceValues::querierStatus, &DeviceValues::mirrorStatus,
          &DeviceValues::autoNegStatus, &DeviceValues::poeStatus, &DeviceValues::interfaceStatus})
        values.*one = status;
    values.downType = used.at(faster);
    values.upType = used.at(faster + 1);
    values.poeType = types.ports.at(faster);
    values.downPorts = PortRange{1, isRange ? 8 : 1};
    values.upPorts = PortRange{firstUp, isRange ? firstUp + 3 : firstUp};
    values.linkDownPorts = PortRange{13, isRange ? 16 : 13};
    values.linkUpPorts = PortRange{firstUp, isRange ? firstUp + 1 : firstUp};
    values.poePorts = PortRange{1, 24};
    values.link = 1;
    values.mirror = 1;
    values.mirrorSource = port + QLatin1Char('2');
    values.mirrorDestination = port + QStringLiteral("10");
    values.autoNegPort = port + QLatin1Char('5');
    values.poePort = isRange ? QStringLiteral("all") : port + QLatin1Char('7');
    return values;
}

QStringList portsOf(const DeviceValues &values)
{
    return {values.mirrorSource, values.autoNegPort, QStringLiteral("11")};
}

// A person who knows the description: types a list, presses the page key, answers questions as the description says.
class Operator
{
public:
    Operator(const QString &file, const SimulatorOptions &options)
        : _description(shipped(file))
        , _terminal(options)
    {
        _terminal.settle();
    }

    QStringList commandsOf(const QString &getter, const DeviceValues &values) const
    {
        const Expansion expansion = expand(_description->blocks.at(getter), *_description, values, portsOf(values));
        if (expansion.refusal)
            qWarning("%s: %s is refused", qPrintable(getter), qPrintable(expansion.refusal->label));
        return expansion.commands;
    }

    void work(const QStringList &commands)
    {
        _isRefused = false;
        for (const QString &command : commands) {
            if (command == pageKey())
                continue;
            const QByteArray line = command.toUtf8();
            if (_isRefused && isRestart(_description->session, line))
                return; // a reset that failed must not become a mere restart
            type(line);
        }
    }
    void work(const QString &getter, const DeviceValues &values) { work(commandsOf(getter, values)); }

    // Lines that the switch has refused, with its words.
    QStringList refusals() const { return _refusals; }
    bool isAtUserView() const
    {
        const QByteArray prompt = _last.mid(_last.lastIndexOf('\n') + 1);
        return prompt.startsWith('<') && prompt.endsWith('>');
    }
    QByteArray configuration() const { return _terminal.console().configurationText(); }
    QByteArray lastReply() const { return _last; }
    QByteArray wholeDialogue() const { return _all; }
    simulator::SwitchConsole &console() { return _terminal.console(); }

    // Everything that came, with the reply rules applied to what followed each echo.
    QByteArray ruledDialogue() const { return _ruled; }

    void type(const QByteArray &line)
    {
        const int begin = _all.size();
        exchange(line);
        const QByteArray reply = _all.mid(begin);
        const int echo = reply.indexOf('\n') + 1;
        _ruled += reply.left(echo) + applyReplyRules(_description->replyRules, line, reply.mid(echo)).reply;
    }

private:
    void exchange(const QByteArray &line)
    {
        _isConfiguring = openLine().startsWith('[');
        take(line, _terminal.exchange(line + "\r\n"));
        for (int i = 0; i < 1000; ++i) {
            const QByteArray open = openLine();
            if (endsWithOne(open, _description->session.pagerTexts))
                take(line, _terminal.exchange(" "));
            else if (endsWithOne(open, _description->session.questionEndings))
                take(line, _terminal.exchange(answerTo(_description->session, line, _last).value_or("N") + "\r\n"));
            else
                break;
        }
    }

    QByteArray openLine() const { return _last.mid(_last.lastIndexOf('\n') + 1); }

    static bool endsWithOne(const QByteArray &text, const QByteArrayList &ends)
    {
        return std::any_of(ends.begin(), ends.end(), [&text](const QByteArray &end) { return text.endsWith(end); });
    }

    void take(const QByteArray &line, const QByteArray &reply)
    {
        _last = reply;
        _all += reply;
        const std::optional<QByteArray> refusal = refusalIn(_description->session, line, reply, _isConfiguring);
        if (!refusal)
            return;
        _refusals << QString::fromUtf8(line + " -> " + *refusal);
        _isRefused = true;
    }

    const std::shared_ptr<const DeviceDescription> _description;
    MemoryTerminal _terminal;
    QByteArray _last;
    QByteArray _all;
    QByteArray _ruled;
    bool _isConfiguring = false;
    QStringList _refusals;
    bool _isRefused = false;
};

// Every getter with each combination of choices.
void addBlocks()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("getter");
    QTest::addColumn<int>("choices");
    QTest::addColumn<bool>("twoStage");
    for (const QString &file : kFiles) {
        for (const QString &getter : getterNames()) {
            QStringList seen;
            const auto description = shipped(file);
            for (int choices = kAllOn; choices >= 0; --choices) {
                const DeviceValues values = valuesFor(file, choices, getter);
                const QString commands =
                    expand(description->blocks.at(getter), *description, values, portsOf(values)).commands.join('\n');
                if (seen.contains(commands))
                    continue;
                seen << commands;
                QTest::addRow("%s %s %d", qPrintable(file), qPrintable(getter), choices)
                    << file << getter << choices << false;
                if (file == kSub)
                    QTest::addRow("%s %s %d, two stages", qPrintable(file), qPrintable(getter), choices)
                        << file << getter << choices << true;
            }
        }
    }
}

// What a list needs before it: a group to show, snooping to switch off, a mirror to remove.
void prepare(Operator &person, const QString &file, const QString &getter, int choices)
{
    const bool isOff = (choices & kOn) == 0;
    const bool isQuery = getter.contains(QLatin1String("Query")) || getter.contains(QLatin1String("Table"));
    if (!isOff && !isQuery && getter != QLatin1String("getQuerierCommands"))
        return;
    for (const char *block : {"getMulticastCommands", "getLinkDownCommands", "getMirrorCommands"})
        person.work(QString::fromLatin1(block), valuesFor(file, kAllOn, QString::fromLatin1(block)));
}

// Works off "getter choices" one after the other.
void apply(Operator &person, const QString &file, const QStringList &blocks)
{
    for (const QString &block : blocks) {
        const QString getter = block.section(QLatin1Char(' '), 0, 0);
        person.work(getter, valuesFor(file, block.section(QLatin1Char(' '), 1).toInt(), getter));
    }
}

// A line whose refusal the description takes for granted.
bool isExpected(const QString &file, const QString &line)
{
    const QByteArrayList expected = shipped(file)->session.expectedRefusals;
    return std::any_of(expected.begin(), expected.end(),
                       [&line](const QByteArray &command) { return isCommand(line.toUtf8(), command); });
}

// The lines below a line of the configuration, joined; "none" when it is not there.
QString sectionOf(const QByteArray &configuration, const QByteArray &header)
{
    const QByteArrayList lines = configuration.split('\n');
    QStringList section;
    bool isInside = false;
    bool isThere = false;
    for (const QByteArray &line : lines) {
        const QByteArray text = line.trimmed();
        if (!line.startsWith(' '))
            isInside = text == header;
        else if (isInside && text != "port link-mode bridge")
            section << QString::fromUtf8(text);
        isThere = isThere || isInside;
    }
    return isThere ? section.join(QLatin1Char('|')) : QStringLiteral("none");
}

} // namespace

/// The command lists on simulated switches: what they say is understood, does what it is for, and leaves the switch
/// where the next list begins.
class TestSwitchDeviceConfigSimulator : public QObject
{
    Q_OBJECT

private slots:
    void block_everyLine_isTaken_data() { addBlocks(); }
    void block_everyLine_isTaken();
    void block_eachLineRefused_leavesTheUserView_data() { addBlocks(); }
    void block_eachLineRefused_leavesTheUserView();
    void blocks_twoStages_endAsInOne_data();
    void blocks_twoStages_endAsInOne();
    void blocks_applied_changeTheSwitch_data();
    void blocks_applied_changeTheSwitch();
    void blocks_onAnAggregationSwitch_changeIt_data();
    void blocks_onAnAggregationSwitch_changeIt();
    void power_onOpticalPorts_isRefusedAndChangesNothing_data();
    void power_onOpticalPorts_isRefusedAndChangesNothing();
    void export_pagedOrNot_isTheWholeConfiguration_data();
    void export_pagedOrNot_isTheWholeConfiguration();
    void export_typedAsItIs_doesNoHarm_data();
    void export_typedAsItIs_doesNoHarm();
    void query_reply_isRecognised_data();
    void query_reply_isRecognised();
    void clear_refusedReset_isNoRestart_data();
    void clear_refusedReset_isNoRestart();
    void clear_wholeConfiguration_isGoneAfterTheRestart_data();
    void clear_wholeConfiguration_isGoneAfterTheRestart();
};

void TestSwitchDeviceConfigSimulator::block_everyLine_isTaken()
{
    QFETCH(QString, file);
    QFETCH(QString, getter);
    QFETCH(int, choices);
    QFETCH(bool, twoStage);
    SimulatorOptions options = switchFor(file);
    options.twoStage = twoStage;
    Operator person(file, options);
    prepare(person, file, getter, choices);
    person.work(getter, valuesFor(file, choices, getter));
    QCOMPARE(person.refusals(), QStringList());
    QCOMPARE(person.isAtUserView(), getter != QLatin1String("getClearLinkAggregationCommands"));
}

void TestSwitchDeviceConfigSimulator::block_eachLineRefused_leavesTheUserView()
{
    QFETCH(QString, file);
    QFETCH(QString, getter);
    QFETCH(int, choices);
    QFETCH(bool, twoStage);
    SimulatorOptions options = switchFor(file);
    options.twoStage = twoStage;
    QStringList lines = Operator(file, switchFor(file)).commandsOf(getter, valuesFor(file, choices, getter));
    lines.removeAll(pageKey());
    const QByteArray port18 = "interface "
                              + QByteArray(file == kHua3  ? "GigabitEthernet1/0/18"
                                           : file == kSub ? "GE0/0/18"
                                                          : "GigabitEthernet0/0/18");
    for (int i = 0; i < lines.size(); ++i) {
        Operator person(file, options);
        simulator::Fault fault;
        fault.kind = simulator::FaultKind::Refuse;
        fault.line = i + 1;
        person.console().addFault(fault);
        person.work(lines);
        const QStringList toldOfIt = person.refusals().filter(lines.at(i) + QStringLiteral(" -> "));
        QCOMPARE(toldOfIt.isEmpty(), isExpected(file, lines.at(i)));
        // What the next list begins with tells whether the console is where it should be. Only a refused "return"
        // leaves the switch in a view; the next list leaves that one too.
        const bool hasReturned = lines.at(i) != QLatin1String("return");
        QVERIFY2(person.isAtUserView() == hasReturned, person.wholeDialogue().constData());
        DeviceValues next = valuesFor(file, kAllOn);
        next.vlan = 30;
        next.downPorts = PortRange{17, 18};
        person.work(QStringLiteral("getDownVlanCommands"), next);
        person.work(QStringLiteral("getVlanQueryCommands"), next);
        QVERIFY2(person.isAtUserView(), person.wholeDialogue().constData());
        QVERIFY2(sectionOf(person.configuration(), port18).contains(QLatin1String("vlan 30")),
                 person.configuration().constData());
        QVERIFY2(person.lastReply().contains("VLAN"), person.lastReply().constData());
    }
}

void TestSwitchDeviceConfigSimulator::blocks_twoStages_endAsInOne_data()
{
    QTest::addColumn<QString>("getter");
    QTest::addColumn<int>("choices");
    for (const QString &getter : getterNames()) {
        for (int choices = kAllOn; choices >= 0; --choices)
            QTest::addRow("%s %d", qPrintable(getter), choices) << getter << choices;
    }
}

void TestSwitchDeviceConfigSimulator::blocks_twoStages_endAsInOne()
{
    QFETCH(QString, getter);
    QFETCH(int, choices);
    SimulatorOptions options = switchFor(kSub);
    options.hurry = 1000; // the clearing is over, too
    Operator one(kSub, options);
    options.twoStage = true;
    Operator two(kSub, options);
    for (Operator *person : {&one, &two}) {
        prepare(*person, kSub, getter, choices);
        person->work(getter, valuesFor(kSub, choices, getter));
    }
    QCOMPARE(two.refusals(), QStringList());
    QCOMPARE(two.isAtUserView(), one.isAtUserView());
    QCOMPARE(two.configuration(), one.configuration());
}

void TestSwitchDeviceConfigSimulator::blocks_applied_changeTheSwitch_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("blocks"); // getter and choices (1 on, 2 trunk, 4 range)
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QString>("section");
    QTest::addColumn<bool>("twoStage");
    const auto add = [](const QString &file, const QStringList &blocks, const char *header, const char *section,
                        bool twoStage = false) {
        QTest::addRow("%s %s: %s%s", qPrintable(file), qPrintable(blocks.join(QLatin1String(", "))), header,
                      twoStage ? ", two stages" : "")
            << file << blocks << QByteArray(header) << QString::fromLatin1(section) << twoStage;
    };
    const QString down = QStringLiteral("getDownVlanCommands ");
    const QString up = QStringLiteral("getUpGVlanCommands ");
    const QString link = QStringLiteral("getLinkDownCommands ");
    const QString single = QStringLiteral("getLinkGigabitSingleCommands ");
    const QString singleUp = QStringLiteral("getLink10GSingleCommands ");
    const QString multicast = QStringLiteral("getMulticastCommands ");
    const QString querier = QStringLiteral("getQuerierCommands ");
    const QString mirror = QStringLiteral("getMirrorCommands ");
    const QString negotiation = QStringLiteral("getAutoNegCommands ");
    const QString power = QStringLiteral("getPOECommands ");
    const QString ports = QStringLiteral("getInterfaceCommandsForPorts ");

    const char *trunk = "port link-type trunk|port trunk allow-pass vlan 20";
    const char *access = "port link-type access|port default vlan 20";
    const char *group = "port link-type trunk|port trunk allow-pass vlan 2 to 4094|mode lacp";
    add(kHuawei, {down + "7"}, "interface GigabitEthernet0/0/8", trunk);
    add(kHuawei, {down + "7"}, "interface GigabitEthernet0/0/9", "");
    add(kHuawei, {down + "3"}, "interface GigabitEthernet0/0/1", trunk);
    add(kHuawei, {down + "3"}, "interface GigabitEthernet0/0/2", "");
    add(kHuawei, {down + "7", down + "5"}, "interface GigabitEthernet0/0/8", access);
    add(kHuawei, {down + "5", down + "7"}, "interface GigabitEthernet0/0/8", trunk);
    add(kHuawei, {up + "7"}, "interface XGigabitEthernet0/0/4", trunk);
    add(kHuawei, {up + "5", up + "3"}, "interface XGigabitEthernet0/0/1", trunk);
    add(kHuawei, {multicast + "1", querier + "1"}, "vlan 20", "igmp-snooping enable|igmp-snooping querier enable");
    add(kHuawei, {multicast + "3"}, "vlan 20", "igmp-snooping enable");
    add(kHuawei, {multicast + "1", multicast + "0"}, "vlan 20", "none");
    add(kHuawei, {multicast + "1", querier + "1", querier + "0"}, "vlan 20", "igmp-snooping enable");
    add(kHuawei, {link + "7"}, "interface Eth-Trunk1", group);
    add(kHuawei, {link + "7"}, "interface GigabitEthernet0/0/16", "eth-trunk 1");
    add(kHuawei, {link + "7"}, "interface GigabitEthernet0/0/17", "");
    add(kHuawei, {link + "7", link + "5"}, "interface Eth-Trunk1", "port link-type access|mode lacp");
    add(kHuawei, {single + "3"}, "interface GigabitEthernet0/0/13", "eth-trunk 1");
    add(kHuawei, {single + "3"}, "interface Eth-Trunk1", group);
    add(kHuawei, {singleUp + "3"}, "interface XGigabitEthernet0/0/1", "eth-trunk 1");
    add(kHuawei, {mirror + "1"}, "interface GigabitEthernet0/0/2", "port-mirroring to observe-port 1 inbound");
    add(kHuawei, {mirror + "1"}, "observe-port 1 interface GigabitEthernet0/0/10", "");
    add(kHuawei, {mirror + "1", mirror + "0"}, "interface GigabitEthernet0/0/2", "");
    add(kHuawei, {mirror + "1", mirror + "0"}, "observe-port 1 interface GigabitEthernet0/0/10", "none");
    add(kHuawei, {negotiation + "0"}, "interface GigabitEthernet0/0/5", "undo negotiation auto");
    add(kHuawei, {negotiation + "0", negotiation + "1"}, "interface GigabitEthernet0/0/5", "");
    add(kHuawei, {power + "4"}, "interface GigabitEthernet0/0/24", "undo poe enable");
    add(kHuawei, {power + "0"}, "interface GigabitEthernet0/0/7", "undo poe enable");
    add(kHuawei, {power + "0"}, "interface GigabitEthernet0/0/8", "");
    add(kHuawei, {power + "4", power + "5"}, "interface GigabitEthernet0/0/24", "");
    add(kHuawei, {ports + "0"}, "interface GigabitEthernet0/0/11", "shutdown");
    add(kHuawei, {ports + "0", ports + "1"}, "interface GigabitEthernet0/0/11", "");
    add(kHuawei, {QStringLiteral("getIpConflictCommands 0")}, "arp ip-conflict-detect enable", "");

    for (const bool twoStage : {false, true}) {
        add(kSub, {down + "7"}, "interface GE0/0/8", trunk, twoStage);
        add(kSub, {down + "7", down + "5"}, "interface GE0/0/8", "port default vlan 20", twoStage);
        add(kSub, {up + "3"}, "interface 10GE0/0/1", trunk, twoStage);
        add(kSub, {multicast + "1", querier + "1"}, "vlan 20", "igmp snooping enable|igmp snooping querier enable",
            twoStage);
        add(kSub, {multicast + "1", multicast + "0"}, "vlan 20", "none", twoStage);
        add(kSub, {link + "7"}, "interface GE0/0/16", "eth-trunk 1", twoStage);
        add(kSub, {single + "3"}, "interface GE0/0/13", "eth-trunk 1", twoStage);
        add(kSub, {mirror + "1"}, "interface GE0/0/2", "port-mirroring to observe-port 1 inbound", twoStage);
        add(kSub, {mirror + "1", mirror + "0"}, "interface GE0/0/2", "", twoStage);
        add(kSub, {negotiation + "0"}, "interface GE0/0/5", "undo negotiation auto", twoStage);
        add(kSub, {power + "4"}, "interface GE0/0/24", "undo poe enable", twoStage);
        add(kSub, {ports + "0"}, "interface GE0/0/11", "shutdown", twoStage);
    }

    const char *permit = "port link-type trunk|port trunk permit vlan 20";
    const char *member = "port link-type trunk|port trunk permit vlan 2 to 4094|port link-aggregation group 1";
    add(kHua3, {down + "7"}, "interface GigabitEthernet1/0/8", permit);
    add(kHua3, {down + "7"}, "interface GigabitEthernet1/0/9", "");
    add(kHua3, {down + "7", down + "5"}, "interface GigabitEthernet1/0/8", "port access vlan 20");
    add(kHua3, {down + "5", down + "7"}, "interface GigabitEthernet1/0/8", permit);
    add(kHua3, {up + "7"}, "interface Ten-GigabitEthernet1/0/28", permit);
    add(kHua3, {multicast + "1", querier + "1"}, "vlan 20", "igmp-snooping enable|igmp-snooping querier");
    add(kHua3, {multicast + "1", multicast + "0"}, "vlan 20", "");
    add(kHua3, {link + "7"}, "interface Bridge-Aggregation1",
        "port link-type trunk|port trunk permit vlan 2 to 4094|link-aggregation mode dynamic");
    add(kHua3, {link + "7"}, "interface GigabitEthernet1/0/16", member);
    add(kHua3, {single + "7"}, "interface GigabitEthernet1/0/13", member);
    add(kHua3, {single + "7"}, "interface GigabitEthernet1/0/14", "");
    add(kHua3, {singleUp + "3"}, "interface Ten-GigabitEthernet1/0/25", member);
    add(kHua3, {mirror + "1"}, "interface GigabitEthernet1/0/2", "mirroring-group 1 mirroring-port inbound");
    add(kHua3, {mirror + "1"}, "interface GigabitEthernet1/0/10", "mirroring-group 1 monitor-port");
    add(kHua3, {mirror + "1", mirror + "0"}, "interface GigabitEthernet1/0/10", "");
    add(kHua3, {negotiation + "0"}, "interface GigabitEthernet1/0/5", "speed 1000|duplex full");
    add(kHua3, {negotiation + "0", negotiation + "1"}, "interface GigabitEthernet1/0/5", "");
    add(kHua3, {power + "0"}, "interface GigabitEthernet1/0/7", "undo poe enable");
    add(kHua3, {power + "4", power + "1"}, "interface GigabitEthernet1/0/7", "");
    add(kHua3, {power + "4", power + "1"}, "interface GigabitEthernet1/0/8", "undo poe enable");
    add(kHua3, {ports + "0"}, "interface GigabitEthernet1/0/11", "shutdown");
}

void TestSwitchDeviceConfigSimulator::blocks_applied_changeTheSwitch()
{
    QFETCH(QString, file);
    QFETCH(QStringList, blocks);
    QFETCH(QByteArray, header);
    QFETCH(QString, section);
    QFETCH(bool, twoStage);
    SimulatorOptions options = switchFor(file);
    options.twoStage = twoStage;
    Operator person(file, options);
    apply(person, file, blocks);
    QVERIFY2(person.isAtUserView(), person.wholeDialogue().constData());
    QCOMPARE(sectionOf(person.configuration(), header), section);
}

// No gigabit ports: the ten-gigabit ones stand in for them, and the forty-gigabit ones for their uplinks.
void TestSwitchDeviceConfigSimulator::blocks_onAnAggregationSwitch_changeIt_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("blocks");
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QString>("section");
    const auto add = [](const QString &file, const QStringList &blocks, const QByteArray &header, const char *section) {
        QTest::addRow("%s %s: %s", qPrintable(file), qPrintable(blocks.join(QLatin1String(", "))), header.constData())
            << file << blocks << header << QString::fromLatin1(section);
    };
    // Getter and choices with the bit for the kind of switch.
    const auto block = [](const char *getter, int choices) {
        return QStringLiteral("%1 %2").arg(QLatin1String(getter)).arg(choices | kAggregation);
    };
    const QString downTrunk = block("getDownVlanCommands", kRange | kTrunk);
    const QString downAccess = block("getDownVlanCommands", kRange);
    const QString upTrunk = block("getUpGVlanCommands", kRange | kTrunk);
    const QString upAccess = block("getUpGVlanCommands", 0);
    const QString snoop = block("getMulticastCommands", kOn | kTrunk);
    const QString noSnoop = block("getMulticastCommands", kTrunk);
    const QString query = block("getQuerierCommands", kOn);
    const QString noQuery = block("getQuerierCommands", 0);
    const QString link = block("getLinkDownCommands", kRange | kTrunk);
    const QString single = block("getLinkGigabitSingleCommands", 0);
    const QString linkUp = block("getLinkUpCommands", kRange | kTrunk);
    const QString singleUp = block("getLink10GSingleCommands", kTrunk);
    const QString mirror = block("getMirrorCommands", kOn);
    const QString noMirror = block("getMirrorCommands", 0);
    const QString fixed = block("getAutoNegCommands", 0);
    const QString negotiated = block("getAutoNegCommands", kOn);
    const QString down = block("getInterfaceCommandsForPorts", 0);
    const QString up = block("getInterfaceCommandsForPorts", kOn);

    for (const QString &file : {kHuawei, kSub}) {
        const bool isSub = file == kSub;
        const QByteArray ten = isSub ? "interface 10GE0/0/" : "interface XGigabitEthernet0/0/";
        const char *trunk = "port link-type trunk|port trunk allow-pass vlan 20";
        const char *access = isSub ? "port default vlan 20" : "port link-type access|port default vlan 20";
        add(file, {downTrunk}, ten + '8', trunk);
        add(file, {downTrunk, downAccess}, ten + '8', access);
        add(file, {upTrunk}, "interface 40GE0/0/4", trunk);
        add(file, {upAccess}, "interface 40GE0/0/1", access);
        add(file, {snoop, query}, "vlan 20",
            isSub ? "igmp snooping enable|igmp snooping querier enable"
                  : "igmp-snooping enable|igmp-snooping querier enable");
        add(file, {snoop, query, noQuery}, "vlan 20", isSub ? "igmp snooping enable" : "igmp-snooping enable");
        add(file, {snoop, noSnoop}, "vlan 20", "none");
        add(file, {link}, ten + "16", "eth-trunk 1");
        add(file, {single}, ten + "13", "eth-trunk 1");
        add(file, {linkUp}, "interface 40GE0/0/2", "eth-trunk 1");
        add(file, {singleUp}, "interface 40GE0/0/1", "eth-trunk 1");
        add(file, {mirror}, ten + '2', "port-mirroring to observe-port 1 inbound");
        add(file, {mirror, noMirror}, ten + '2', "");
        add(file, {fixed}, ten + '5', "undo negotiation auto");
        add(file, {fixed, negotiated}, ten + '5', "");
        add(file, {down}, ten + "11", "shutdown");
        add(file, {down, up}, ten + "11", "");
    }

    const QByteArray ten = "interface Ten-GigabitEthernet1/0/";
    const char *permit = "port link-type trunk|port trunk permit vlan 20";
    const char *member = "port link-type trunk|port trunk permit vlan 2 to 4094|port link-aggregation group 1";
    add(kHua3, {downTrunk}, ten + '8', permit);
    add(kHua3, {downTrunk, downAccess}, ten + '8', "port access vlan 20");
    add(kHua3, {upTrunk}, "interface FortyGigE1/0/28", permit);
    add(kHua3, {upAccess}, "interface FortyGigE1/0/25", "port access vlan 20");
    add(kHua3, {snoop, query}, "vlan 20", "igmp-snooping enable|igmp-snooping querier");
    add(kHua3, {snoop, query, noQuery}, "vlan 20", "igmp-snooping enable");
    add(kHua3, {snoop, noSnoop}, "vlan 20", "");
    add(kHua3, {link}, ten + "16", member);
    add(kHua3, {single}, ten + "13", "port link-aggregation group 1");
    add(kHua3, {linkUp}, "interface FortyGigE1/0/26", member);
    add(kHua3, {singleUp}, "interface FortyGigE1/0/25", member);
    add(kHua3, {mirror}, ten + '2', "mirroring-group 1 mirroring-port inbound");
    add(kHua3, {mirror, noMirror}, ten + '2', "");
    add(kHua3, {fixed}, ten + '5', "speed 10000|duplex full");
    add(kHua3, {fixed, negotiated}, ten + '5', "");
    add(kHua3, {down}, ten + "11", "shutdown");
    add(kHua3, {down, up}, ten + "11", "");
}

void TestSwitchDeviceConfigSimulator::blocks_onAnAggregationSwitch_changeIt()
{
    QFETCH(QString, file);
    QFETCH(QStringList, blocks);
    QFETCH(QByteArray, header);
    QFETCH(QString, section);
    Operator person(file, switchFor(file, kAggregation));
    apply(person, file, blocks);
    QCOMPARE(person.refusals(), QStringList());
    QVERIFY2(person.isAtUserView(), person.wholeDialogue().constData());
    QCOMPARE(sectionOf(person.configuration(), header), section);
}

void TestSwitchDeviceConfigSimulator::power_onOpticalPorts_isRefusedAndChangesNothing_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<int>("choices");
    for (const QString &file : kFiles) {
        for (const int choices : {0, +kOn, +kRange, kOn | kRange})
            QTest::addRow("%s %d", qPrintable(file), choices) << file << (choices | kAggregation);
    }
}

void TestSwitchDeviceConfigSimulator::power_onOpticalPorts_isRefusedAndChangesNothing()
{
    QFETCH(QString, file);
    QFETCH(int, choices);
    Operator person(file, switchFor(file, choices));
    const QByteArray before = person.configuration();
    person.work(QStringLiteral("getPOECommands"), valuesFor(file, choices));
    QVERIFY(person.wholeDialogue().contains("The interface does not support PoE."));
    QCOMPARE(person.configuration(), before);
    QVERIFY(person.isAtUserView());
}

void TestSwitchDeviceConfigSimulator::export_pagedOrNot_isTheWholeConfiguration_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("options");
    for (const QString &file : kFiles) {
        for (const char *options : {"--lines 3000", "--lines 3000 --paging forced", "--paging forced --erase 42",
                                    "--descriptions ascii --paging forced --screen-lines 10"})
            QTest::addRow("%s %s", qPrintable(file), options) << file << QString::fromLatin1(options);
    }
}

void TestSwitchDeviceConfigSimulator::export_pagedOrNot_isTheWholeConfiguration()
{
    QFETCH(QString, file);
    QFETCH(QString, options);
    const simulator::ParsedOptions parsed =
        simulator::parseSimulatorOptions(options.split(QLatin1Char(' ')), switchFor(file));
    QCOMPARE(parsed.error, QString());
    Operator person(file, parsed.options);
    const QByteArray plain = person.configuration();
    const int begin = person.wholeDialogue().size();
    person.work(QStringLiteral("getExportCommands"), DeviceValues());
    const QByteArray back = "\x1b[" + QByteArray::number(parsed.options.eraseColumns) + 'D';
    const QByteArray erasure = back + QByteArray(parsed.options.eraseColumns, ' ') + back;
    const QByteArray all = person.wholeDialogue().mid(begin).replace("  ---- More ----" + erasure, "");
    const QByteArray echo = "display current-configuration\r\n";
    const int reply = all.indexOf(echo) + echo.size();
    QCOMPARE(all.mid(reply, all.lastIndexOf('\n') + 1 - reply), plain);
    QVERIFY(person.isAtUserView());
}

void TestSwitchDeviceConfigSimulator::export_typedAsItIs_doesNoHarm_data()
{
    QTest::addColumn<QString>("file");
    for (const QString &file : kFiles)
        QTest::newRow(qPrintable(file)) << file;
}

// Echo, prompts and all: what an exported file holds is refused line by line at the user view.
void TestSwitchDeviceConfigSimulator::export_typedAsItIs_doesNoHarm()
{
    QFETCH(QString, file);
    Operator person(file, switchFor(file));
    for (const char *getter : {"getDownVlanCommands", "getMulticastCommands", "getLinkUpCommands", "getMirrorCommands"})
        person.work(QString::fromLatin1(getter), valuesFor(file, kAllOn, QString::fromLatin1(getter)));
    QCOMPARE(person.refusals(), QStringList());
    const int begin = person.wholeDialogue().size();
    person.work(QStringLiteral("getExportCommands"), DeviceValues());
    const QByteArrayList exported = person.wholeDialogue().mid(begin).split('\n');
    const QByteArray before = person.configuration();
    QVERIFY(exported.size() > 100);
    for (const QByteArray &line : exported) {
        if (!line.trimmed().isEmpty())
            person.type(line.trimmed());
        QVERIFY2(person.isAtUserView(), line.constData());
    }
    QCOMPARE(person.configuration(), before);
}

// The texts by which the panel knows a reply, on models and releases that write differently.
void TestSwitchDeviceConfigSimulator::query_reply_isRecognised_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("getter");
    QTest::addColumn<QByteArrayList>("present");
    QTest::addColumn<QByteArrayList>("absent");
    const auto add = [](const QStringList &files, const char *options, const char *getter,
                        const QByteArrayList &present, const QByteArrayList &absent = {}) {
        for (const QString &file : files)
            QTest::addRow("%s %s %s", qPrintable(file), getter, options)
                << file << QString::fromLatin1(options).split(QLatin1Char(' '), Qt::SkipEmptyParts)
                << QString::fromLatin1(getter) << present << absent;
    };
    const QStringList huawei{kHuawei, kSub};
    const QStringList hua3{kHua3};
    add(huawei, "", "getVlanStatusCommands", {"number of VLANs"});
    add(huawei, "--old-vlan-listing", "getVlanStatusCommands", {"number of VLANs"}, {"number of vlans"});
    add(hua3, "", "getVlanStatusCommands", {"Total VLANs", "The VLANs include"});
    add(hua3, "--old-vlan-listing", "getVlanStatusCommands", {"Total VLANs"});
    add({kHuawei}, "--model 24+4+2 --subinterfaces 3", "getPortStatusCommands",
        {"Interface", "PHY", "\r\nGigabitEthernet0/0/24 ", "40GE0/0/1 "}, {"0/0/1.20"});
    add({kSub}, "--model 24+4+2 --subinterfaces 3", "getPortStatusCommands",
        {"Interface", "PHY", "\r\nGE0/0/24 ", "40GE0/0/1 "}, {"0/0/1.20"});
    add(hua3, "--model 24+4+2 --subinterfaces 3", "getPortStatusCommands",
        {"Interface", "Link", "Speed", "\r\nGE1/0/24 ", "40GE1/0/29 "}, {"M-GE", "FGE", "1/0/1.20"});
    add(kFiles, "--paging forced --model large", "getPortStatusCommands", {"Interface", "0/48 "}, {"command found"});
    add(huawei, "", "getInterfaceSpeedCommands", {"display device slot 0", "Board Type", "Optic", "Speed", "GE(C)"});
    add(hua3, "", "getInterfaceSpeedCommands", {"Interface", "Link", "InUsage"}, {"Speed"});
    add(kFiles, "", "getTransceiverCommands", {"transceiver information", "Transceiver Type", "transceiver is absent"});
    add(hua3, "", "getTransceiverCommands", {"\r\nXGE1/0/25 transceiver information:"}, {"GigabitEthernet"});
    add(huawei, "--ip-conflicts 3", "getIpConflictCommands", {"Conflict type"});
    add(kFiles, "", "getMulticastQueryCommands", {"VLAN 20"}, {"found at"});
    add(huawei, "", "getMulticastQueryCommands", {"igmp-snooping configuration"});
    add(hua3, "", "getQuerierQueryCommands", {"IGMP snooping", "Querier: Enabled"});
    add(huawei, "", "getMulticastForwardingTableCommands", {"forwarding-table vlan 20"}, {"found at"});
    add(hua3, "", "getMulticastForwardingTableCommands", {"multicast forwarding-table"}, {"found at"});
    add({kHuawei}, "", "getMirrorPortQueryCommands",
        {"display port-mirroring", "Observe-port 1 : GigabitEthernet0/0/10"});
    add(hua3, "", "getMirrorPortQueryCommands", {"Mirroring group 1:", "Monitor port: GigabitEthernet1/0/10"});
    add(huawei, "", "getLinkAggregationQueryCommands", {"Eth-Trunk1"}, {"Error"});
    add(hua3, "", "getLinkAggregationQueryCommands", {"Aggregate Interface", "Status", "Index", "Oper-Key"});
    add(huawei, "", "getPOEQueryCommands", {"display poe power", "Interface"}, {"PortName"});
    add(hua3, "", "getPOEQueryCommands", {"Interface", "PoE", "Priority"});
    add({kHuawei}, "", "getAutoNegotiationQueryCommands",
        {"display current-configuration", "\r\ninterface GigabitEthernet0/0/5\r\n"});
    add(huawei, "--question-end [y/n]:", "getSaveCommands", {"Save the configuration successfully"});
    add(hua3, "", "getSaveCommands", {"Saved the current configuration to mainboard device successfully"});
}

void TestSwitchDeviceConfigSimulator::query_reply_isRecognised()
{
    QFETCH(QString, file);
    QFETCH(QStringList, options);
    QFETCH(QString, getter);
    QFETCH(QByteArrayList, present);
    QFETCH(QByteArrayList, absent);
    const simulator::ParsedOptions parsed = simulator::parseSimulatorOptions(options, switchFor(file));
    QCOMPARE(parsed.error, QString());
    Operator person(file, parsed.options);
    for (const char *block : {"getMulticastCommands", "getQuerierCommands", "getLinkDownCommands", "getMirrorCommands"})
        person.work(QString::fromLatin1(block), valuesFor(file, kAllOn));
    const int begin = person.ruledDialogue().size();
    person.work(getter, valuesFor(file, kAllOn));
    const QByteArray reply = person.ruledDialogue().mid(begin);
    for (const QByteArray &text : present)
        QVERIFY2(reply.contains(text), (text + "\n" + reply).constData());
    for (const QByteArray &text : absent)
        QVERIFY2(!reply.contains(text), (text + "\n" + reply).constData());
    QVERIFY(person.isAtUserView());
}

void TestSwitchDeviceConfigSimulator::clear_refusedReset_isNoRestart_data()
{
    QTest::addColumn<QString>("file");
    for (const QString &file : kFiles)
        QTest::newRow(qPrintable(file)) << file;
}

void TestSwitchDeviceConfigSimulator::clear_refusedReset_isNoRestart()
{
    QFETCH(QString, file);
    Operator person(file, switchFor(file));
    simulator::Fault fault;
    fault.kind = simulator::FaultKind::Refuse;
    fault.command = "reset saved-configuration";
    person.console().addFault(fault);
    person.work(QStringLiteral("getClearLinkAggregationCommands"), DeviceValues());
    QCOMPARE(person.refusals().size(), 1);
    QVERIFY(person.isAtUserView());
    QVERIFY(!person.console().commands().contains("reboot"));
}

void TestSwitchDeviceConfigSimulator::clear_wholeConfiguration_isGoneAfterTheRestart_data()
{
    clear_refusedReset_isNoRestart_data();
}

// The restart asks whether to save, and saving would keep what is to be cleared.
void TestSwitchDeviceConfigSimulator::clear_wholeConfiguration_isGoneAfterTheRestart()
{
    QFETCH(QString, file);
    Operator person(file, switchFor(file));
    person.work(QStringLiteral("getDownVlanCommands"), valuesFor(file, kAllOn));
    person.work(QStringLiteral("getSaveCommands"), DeviceValues());
    QVERIFY(person.configuration().contains("port link-type trunk"));
    person.work(QStringLiteral("getClearLinkAggregationCommands"), DeviceValues());
    QCOMPARE(person.refusals(), QStringList());
    QVERIFY2(!person.configuration().contains("port link-type trunk"), person.wholeDialogue().constData());
}

QTEST_GUILESS_MAIN(TestSwitchDeviceConfigSimulator)
#include "tst_switchdeviceconfig_simulator.moc"
