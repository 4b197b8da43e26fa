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

    void type(const QByteArray &line)
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

private:
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

} // namespace

/// The command lists on simulated switches: what they say is understood, does what it is for, and leaves the switch
/// where the next list begins.
class TestSwitchDeviceConfigSimulator : public QObject
{
    Q_OBJECT

private slots:
    void block_everyLine_isUnderstood_data() { addBlocks(); }
    void block_everyLine_isUnderstood();
    void block_eachLineRefused_leavesTheUserView_data() { addBlocks(); }
    void block_eachLineRefused_leavesTheUserView();
};

void TestSwitchDeviceConfigSimulator::block_everyLine_isUnderstood()
{
    QFETCH(QString, file);
    QFETCH(QString, getter);
    QFETCH(int, choices);
    Operator person(file, switchFor(file));
    const DeviceValues values = valuesOfRow(file, choices);
    person.work(getter, values);
    const QStringList unknown = person.refusals().filter(QStringLiteral("found at '^' position"));
    QVERIFY2(person.refusals().isEmpty(), qPrintable(person.refusals().join('\n')));
    QVERIFY(person.isAtUserView() || getter == QLatin1String("getClearLinkAggregationCommands"));
}

void TestSwitchDeviceConfigSimulator::block_eachLineRefused_leavesTheUserView()
{
    QFETCH(QString, file);
    QFETCH(QString, getter);
    QFETCH(int, choices);
    const DeviceValues values = valuesOfRow(file, choices);
    const QStringList lines = Operator(file, switchFor(file)).commandsOf(getter, values);
    for (int i = 0; i < lines.size(); ++i) {
        if (lines.at(i) == pageKey() || lines.at(i) == QLatin1String("return"))
            continue; // the console session leaves a view that a list has left open
        Operator person(file, switchFor(file));
        simulator::Fault fault;
        fault.kind = simulator::FaultKind::Refuse;
        fault.line = i + 1;
        person.console().addFault(fault);
        person.work(lines);
        QVERIFY2(person.isAtUserView(), (lines.at(i).toUtf8() + "\n" + person.wholeDialogue()).constData());
        person.type("display clock");
        QVERIFY2(person.isAtUserView() && person.lastReply().contains("2026"), person.lastReply().constData());
    }
}

QTEST_GUILESS_MAIN(TestSwitchDeviceConfigSimulator)
#include "tst_switchdeviceconfig_simulator.moc"
