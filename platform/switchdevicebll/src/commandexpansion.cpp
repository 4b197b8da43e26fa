#include "commandexpansion.h"

namespace ovra {
namespace bll {

namespace {

constexpr int kMostCommands = 10000;
constexpr int kLongestQuote = 60;

// What a person may see of a text that can hold anything.
QString quoted(const QString &text)
{
    QString result;
    for (const QChar character : text.left(kLongestQuote)) {
        if (character.isPrint())
            result += character;
        else
            result += QStringLiteral("\\u%1").arg(character.unicode(), 4, 16, QLatin1Char('0'));
    }
    return QLatin1Char('"') + result + (text.size() > kLongestQuote ? QStringLiteral("…\"") : QStringLiteral("\""));
}

class Expander
{
public:
    Expander(const DeviceDescription &description, const DeviceValues &values, const QStringList &ports)
        : _description(description)
        , _values(values)
        , _ports(ports)
    {
        if (description.slot)
            _values.slot = description.slot;
    }

    Expansion run(const CommandList &block)
    {
        if (addAll(block))
            return Expansion{_commands, {}};
        return Expansion{{}, _refusal};
    }

private:
    bool addAll(const CommandList &nodes);
    bool add(const CommandNode &node);
    bool addLine(const LineTemplate &line);
    bool addChoice(const CommandNode &node);
    bool addRepetition(const CommandNode &node);
    bool addCommand(const QString &command);

    std::optional<QString> choiceOf(const ValueSpec &value);
    std::optional<QStringList> portsOf(const ValueSpec &value);
    std::optional<QStringList> listedPorts(const ValueSpec &value);
    std::optional<QString> textOf(const Placeholder &placeholder);
    std::optional<QString> wholeText(const ValueSpec &value, std::optional<int> fallback);
    std::optional<QString> numberText(const ValueSpec &value, std::optional<int> fallback = std::nullopt);
    std::optional<QString> joinerText(const ValueSpec &value);
    std::optional<QString> slotNumber(int port);
    std::optional<PortText> portText(const QString &label, const QString &text);
    std::optional<PortRange> rangeOf(const ValueSpec &value);
    std::optional<QString> typeOf(const ValueSpec &value);

    std::nullopt_t refuse(const QString &text, const QString &label, const QStringList &values = {})
    {
        _refusal = {text, label, values};
        return std::nullopt;
    }
    bool isWithin(int number, const QString &limit) const
    {
        const PortRange range = _description.limitOf(limit);
        return number >= range.min && number <= range.max;
    }

    // "slot/subslot/port"
    bool isPortNumber(const QString &text) const
    {
        return isWithin(text.section(QLatin1Char('/'), 0, 0).toInt(), QStringLiteral("slot"))
               && isWithin(text.section(QLatin1Char('/'), 2, 2).toInt(), QStringLiteral("port"));
    }

    const DeviceDescription &_description;
    DeviceValues _values;
    const QStringList &_ports;
    QString _port; // of the repetition that is running
    QStringList _commands;
    Refusal _refusal;
};

bool Expander::addAll(const CommandList &nodes)
{
    for (const CommandNode &node : nodes) {
        if (!add(node))
            return false;
    }
    return true;
}

bool Expander::add(const CommandNode &node)
{
    switch (node.kind) {
    case CommandNode::Kind::Line:
        return addLine(node.line);
    case CommandNode::Kind::PageKey:
        return addCommand(pageKey());
    case CommandNode::Kind::Choice:
        return addChoice(node);
    case CommandNode::Kind::Repetition:
        return addRepetition(node);
    }
    return false;
}

bool Expander::addLine(const LineTemplate &line)
{
    QString command;
    for (const LineSegment &segment : line) {
        command += segment.text;
        if (!segment.placeholder)
            continue;
        const std::optional<QString> text = textOf(*segment.placeholder);
        if (!text)
            return false;
        command += *text;
    }
    return addCommand(command);
}

bool Expander::addCommand(const QString &command)
{
    if (_commands.size() >= kMostCommands) {
        refuse(QStringLiteral("%1超过 %2 条"), QStringLiteral("命令"), {QString::number(kMostCommands)});
        return false;
    }
    _commands << command;
    return true;
}

bool Expander::addChoice(const CommandNode &node)
{
    const std::optional<QString> chosen = choiceOf(*node.value);
    if (!chosen)
        return false;
    QStringList known;
    for (const CommandBranch &branch : node.branches) {
        if (branch.is == *chosen)
            return addAll(branch.commands);
        known << branch.is;
    }
    if (node.otherwise)
        return addAll(*node.otherwise);
    refuse(QStringLiteral("%1 %2 不在 %3 之中"), node.value->label,
           {quoted(*chosen), known.join(QStringLiteral(", "))});
    return false;
}

bool Expander::addRepetition(const CommandNode &node)
{
    const std::optional<QStringList> ports = portsOf(*node.value);
    if (!ports)
        return false;
    for (const QString &port : *ports) {
        _port = port;
        if (!addAll(node.repeated))
            return false;
    }
    return true;
}

std::optional<QString> Expander::choiceOf(const ValueSpec &value)
{
    if (value.kind == ValueKind::Ports) {
        const std::optional<PortRange> range = rangeOf(value);
        if (!range)
            return std::nullopt;
        return range->min == range->max ? QStringLiteral("single") : QStringLiteral("several");
    }
    const QString &text = _values.*value.text;
    if (value.kind == ValueKind::Word || text.isEmpty() || text == QLatin1String("all"))
        return text;
    const std::optional<PortText> port = portText(value.label, text);
    return port ? std::optional<QString>(port->type) : std::nullopt;
}

std::optional<QStringList> Expander::portsOf(const ValueSpec &value)
{
    if (value.kind == ValueKind::PortList)
        return listedPorts(value);
    const std::optional<PortRange> range = rangeOf(value);
    const std::optional<QString> type = range ? typeOf(value) : std::nullopt;
    if (!type)
        return std::nullopt;
    QStringList ports;
    for (int port = range->min; port <= range->max; ++port) {
        const std::optional<QString> number = slotNumber(port);
        if (!number)
            return std::nullopt;
        ports << _description.interfaces.portName(*type, *number);
    }
    return ports;
}

std::optional<QStringList> Expander::listedPorts(const ValueSpec &value)
{
    const int most = _description.limitOf(QStringLiteral("port")).max;
    if (_ports.isEmpty())
        return refuse(QStringLiteral("%1为空"), value.label);
    if (_ports.size() > most)
        return refuse(QStringLiteral("%1超过 %2 个"), value.label, {QString::number(most)});
    QStringList ports;
    for (const QString &text : _ports) {
        const std::optional<PortText> port = portText(QStringLiteral("所列端口"), text);
        if (!port)
            return std::nullopt;
        ports << _description.interfaces.portName(port->type, port->number);
    }
    return ports;
}

std::optional<QString> Expander::textOf(const Placeholder &placeholder)
{
    if (placeholder.part == Placeholder::Part::Each)
        return _port;
    const ValueSpec &value = *placeholder.value;
    if (placeholder.part == Placeholder::Part::Whole)
        return wholeText(value, placeholder.fallback);

    const std::optional<PortRange> range = rangeOf(value);
    if (!range)
        return std::nullopt;
    const bool isFirst =
        placeholder.part == Placeholder::Part::First || placeholder.part == Placeholder::Part::FirstNumber;
    const bool isNumber =
        placeholder.part == Placeholder::Part::FirstNumber || placeholder.part == Placeholder::Part::LastNumber;
    std::optional<QString> number = slotNumber(isFirst ? range->min : range->max);
    const std::optional<QString> type = number && !isNumber ? typeOf(value) : std::nullopt;
    if (isNumber || !number)
        return number;
    return type ? std::optional<QString>(_description.interfaces.portName(*type, *number)) : std::nullopt;
}

std::optional<QString> Expander::wholeText(const ValueSpec &value, std::optional<int> fallback)
{
    if (value.kind == ValueKind::Number)
        return numberText(value, fallback);
    if (value.kind == ValueKind::Joiner)
        return joinerText(value);
    const std::optional<PortText> port = portText(value.label, _values.*value.text);
    return port ? std::optional<QString>(_description.interfaces.portName(port->type, port->number)) : std::nullopt;
}

std::optional<QString> Expander::numberText(const ValueSpec &value, std::optional<int> fallback)
{
    const std::optional<int> set = _values.*value.number;
    const std::optional<int> number = set ? set : fallback;
    if (!number)
        return refuse(QStringLiteral("未设置%1"), value.label);
    if (!isWithin(*number, value.name)) {
        const PortRange range = _description.limitOf(value.name);
        return refuse(QStringLiteral("%1 %2 不在 %3 到 %4 之间"), value.label,
                      {QString::number(*number), QString::number(range.min), QString::number(range.max)});
    }
    return QString::number(*number);
}

std::optional<QString> Expander::joinerText(const ValueSpec &value)
{
    const QString &text = _values.*value.text;
    if (text.isEmpty())
        return _description.snoopingJoiner;
    if (text != QLatin1String("-") && text != QLatin1String(" "))
        return refuse(QStringLiteral("%1 %2 既不是连字符也不是空格"), value.label, {quoted(text)});
    return text;
}

std::optional<QString> Expander::slotNumber(int port)
{
    const std::optional<QString> slot = numberText(*findValue(QStringLiteral("slot")));
    return slot ? std::optional<QString>(_description.interfaces.portNumber(slot->toInt(), port)) : std::nullopt;
}

// The port as the switch spells it: full type, slot/subslot/port.
std::optional<PortText> Expander::portText(const QString &label, const QString &text)
{
    if (text.isEmpty())
        return refuse(QStringLiteral("未设置%1"), label);
    const std::optional<PortText> split = splitPort(text);
    if (split && split->type.isEmpty()) {
        // A bare number: a down port of the switch, or its most usual kind as long as no type was set.
        const int number = split->number.toInt();
        const QString &set = _values.downType;
        const std::optional<QString> type =
            _description.interfaces.fullType(set.isEmpty() ? _description.interfaces.defaultType : set);
        const std::optional<QString> path = slotNumber(number);
        if (type && path && isWithin(number, QStringLiteral("port")))
            return PortText{*type, *path};
    } else if (split) {
        const std::optional<QString> type = _description.interfaces.fullType(split->type);
        if (type && isPortNumber(split->number))
            return PortText{*type, split->number};
    }
    return refuse(QStringLiteral("%1 %2 不是 %3 的端口"), label, {quoted(text), _description.name});
}

std::optional<PortRange> Expander::rangeOf(const ValueSpec &value)
{
    const std::optional<PortRange> range = _values.*value.ports;
    if (!range)
        return refuse(QStringLiteral("未设置%1"), value.label);
    const QString port = QStringLiteral("port");
    if (range->min > range->max || !isWithin(range->min, port) || !isWithin(range->max, port)) {
        const PortRange limit = _description.limitOf(port);
        return refuse(QStringLiteral("%1 %2 到 %3 不是 %4 到 %5 之内的递增范围"), value.label,
                      {QString::number(range->min), QString::number(range->max), QString::number(limit.min),
                       QString::number(limit.max)});
    }
    return range;
}

// The interface type of a port range.
std::optional<QString> Expander::typeOf(const ValueSpec &value)
{
    const QString &text = _values.*value.text;
    std::optional<QString> type = _description.interfaces.fullType(text);
    if (!type)
        return refuse(QStringLiteral("%1的接口类型 %2 不属于 %3"), value.label, {quoted(text), _description.name});
    return type;
}

} // namespace

Expansion expand(const CommandList &block, const DeviceDescription &description, const DeviceValues &values,
                 const QStringList &ports)
{
    return Expander(description, values, ports).run(block);
}

} // namespace bll
} // namespace ovra
