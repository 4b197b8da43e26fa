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

// The switch that a description is for: 24 gigabit ports with PoE, 4 ten-gigabit ports; at the user view.
SimulatorOptions switchFor(const QString &file)
{
    SimulatorOptions options;
    options.family = file == kHua3 ? Family::Hua3 : file == kSub ? Family::HuaweiSub : Family::Huawei;
    options.model.poe = true;
    options.start = simulator::Start::UserView;
    return options;
}

// What a panel would have set. `isOn`, `isTrunk`, `isRange` are the choices that blocks make.
DeviceValues valuesFor(const QString &file, bool isOn, bool isTrunk, bool isRange)
{
    const bool isSub = file == kSub;
    const bool isHua3 = file == kHua3;
    const QString down = isSub ? QStringLiteral("GE") : QStringLiteral("g");
    const QString slot = isHua3 ? QStringLiteral("1") : QStringLiteral("0");
    const QString status = isOn ? QStringLiteral("enable") : QStringLiteral("disable");
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
    values.downType = down;
    values.poeType = down;
    values.upType = isSub ? QStringLiteral("10GE") : isHua3 ? QStringLiteral("t") : QStringLiteral("xg");
    values.downPorts = PortRange{1, isRange ? 8 : 1};
    values.upPorts = PortRange{firstUp, isRange ? firstUp + 3 : firstUp};
    values.linkDownPorts = PortRange{13, isRange ? 16 : 13};
    values.linkUpPorts = PortRange{firstUp, isRange ? firstUp + 1 : firstUp};
    values.poePorts = PortRange{1, 24};
    values.link = 1;
    values.mirror = 1;
    values.mirrorSource = down + slot + QStringLiteral("/0/2");
    values.mirrorDestination = down + slot + QStringLiteral("/0/10");
    values.autoNegPort = down + slot + QStringLiteral("/0/5");
    values.poePort = isRange ? QStringLiteral("all") : down + slot + QStringLiteral("/0/7");
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
        if (!expansion.refusal.isEmpty())
            qWarning("%s: %s", qPrintable(getter), qPrintable(expansion.refusal));
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
        take(line, _terminal.exchange(line + "\r\n"));
        for (int i = 0; i < 1000; ++i) {
            const QByteArray open = _last.mid(_last.lastIndexOf('\n') + 1);
            if (endsWithOne(open, _description->session.pagerTexts))
                take(line, _terminal.exchange(" "));
            else if (endsWithOne(open, _description->session.questionEndings))
                take(line, _terminal.exchange(answerTo(_description->session, line, _last).value_or("N") + "\r\n"));
            else
                break;
        }
    }

    static bool endsWithOne(const QByteArray &text, const QByteArrayList &ends)
    {
        return std::any_of(ends.begin(), ends.end(), [&text](const QByteArray &end) { return text.endsWith(end); });
    }

    void take(const QByteArray &line, const QByteArray &reply)
    {
        _last = reply;
        _all += reply;
        const std::optional<QByteArray> refusal = refusalIn(_description->session, line, reply);
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
    QStringList _refusals;
    bool _isRefused = false;
};

// Every getter with each combination of choices.
void addBlocks()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("getter");
    QTest::addColumn<int>("choices"); // bits: on, trunk, range
    for (const QString &file : kFiles) {
        for (const QString &getter : getterNames()) {
            QStringList seen;
            const auto description = shipped(file);
            for (int choices = 7; choices >= 0; --choices) {
                const DeviceValues values = valuesFor(file, (choices & 1) != 0, (choices & 2) != 0, (choices & 4) != 0);
                const QString commands =
                    expand(description->blocks.at(getter), *description, values, portsOf(values)).commands.join('\n');
                if (seen.contains(commands))
                    continue;
                seen << commands;
                QTest::addRow("%s %s %d", qPrintable(file), qPrintable(getter), choices) << file << getter << choices;
            }
        }
    }
}

DeviceValues valuesOfRow(const QString &file, int choices)
{
    return valuesFor(file, (choices & 1) != 0, (choices & 2) != 0, (choices & 4) != 0);
}

// What a list needs before it: a group to show, snooping to switch off, a mirror to remove.
void prepare(Operator &person, const QString &file, const QString &getter, int choices)
{
    const bool isOff = (choices & 1) == 0;
    const bool isQuery = getter.contains(QLatin1String("Query")) || getter.contains(QLatin1String("Table"));
    if (!isOff && !isQuery && getter != QLatin1String("getQuerierCommands"))
        return;
    for (const char *block : {"getMulticastCommands", "getLinkDownCommands", "getMirrorCommands"})
        person.work(QString::fromLatin1(block), valuesFor(file, true, true, true));
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
    void blocks_applied_changeTheSwitch_data();
    void blocks_applied_changeTheSwitch();
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
    Operator person(file, switchFor(file));
    prepare(person, file, getter, choices);
    person.work(getter, valuesOfRow(file, choices));
    QCOMPARE(person.refusals(), QStringList());
    QCOMPARE(person.isAtUserView(), getter != QLatin1String("getClearLinkAggregationCommands"));
}

void TestSwitchDeviceConfigSimulator::block_eachLineRefused_leavesTheUserView()
{
    QFETCH(QString, file);
    QFETCH(QString, getter);
    QFETCH(int, choices);
    QStringList lines = Operator(file, switchFor(file)).commandsOf(getter, valuesOfRow(file, choices));
    lines.removeAll(pageKey());
    for (int i = 0; i < lines.size(); ++i) {
        if (lines.at(i) == QLatin1String("return"))
            continue; // whoever sends the lists leaves a view that one of them could not leave
        Operator person(file, switchFor(file));
        simulator::Fault fault;
        fault.kind = simulator::FaultKind::Refuse;
        fault.line = i + 1;
        person.console().addFault(fault);
        person.work(lines);
        QVERIFY2(person.isAtUserView(), person.wholeDialogue().constData());
        person.type("display clock");
        QVERIFY2(person.isAtUserView() && person.lastReply().contains("2026"), person.wholeDialogue().constData());
    }
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
    for (const QString &block : blocks)
        person.work(block.section(QLatin1Char(' '), 0, 0),
                    valuesOfRow(file, block.section(QLatin1Char(' '), 1).toInt()));
    QVERIFY2(person.isAtUserView(), person.wholeDialogue().constData());
    QCOMPARE(sectionOf(person.configuration(), header), section);
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
        person.work(QString::fromLatin1(block), valuesFor(file, true, true, true));
    const int begin = person.ruledDialogue().size();
    person.work(getter, valuesFor(file, true, true, true));
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
    person.work(QStringLiteral("getDownVlanCommands"), valuesFor(file, true, true, true));
    person.work(QStringLiteral("getSaveCommands"), DeviceValues());
    QVERIFY(person.configuration().contains("port link-type trunk"));
    person.work(QStringLiteral("getClearLinkAggregationCommands"), DeviceValues());
    QCOMPARE(person.refusals(), QStringList());
    QVERIFY2(!person.configuration().contains("port link-type trunk"), person.wholeDialogue().constData());
}

QTEST_GUILESS_MAIN(TestSwitchDeviceConfigSimulator)
#include "tst_switchdeviceconfig_simulator.moc"
