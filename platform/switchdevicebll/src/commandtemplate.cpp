#include "commandtemplate.h"

#include <array>

namespace ovra {
namespace bll {

namespace {

constexpr int kLongestLine = 255; // a switch takes 255 characters at most on some releases
constexpr PortRange kPortBounds{0, 999};

ValueSpec number(const char *name, const char *label, PortRange bounds, std::optional<int> DeviceValues::*member)
{
    ValueSpec spec;
    spec.name = QLatin1String(name);
    spec.label = QString::fromUtf8(label);
    spec.kind = ValueKind::Number;
    spec.bounds = bounds;
    spec.number = member;
    return spec;
}

ValueSpec text(const char *name, const char *label, ValueKind kind, QString DeviceValues::*member)
{
    ValueSpec spec;
    spec.name = QLatin1String(name);
    spec.label = QString::fromUtf8(label);
    spec.kind = kind;
    spec.text = member;
    return spec;
}

ValueSpec word(const char *name, const char *label, QString DeviceValues::*member, const QStringList &choices)
{
    ValueSpec spec = text(name, label, ValueKind::Word, member);
    spec.choices = choices;
    return spec;
}

ValueSpec status(const char *name, const char *label, QString DeviceValues::*member)
{
    return word(name, label, member, {QStringLiteral("enable"), QStringLiteral("disable")});
}

ValueSpec ports(const char *name, const char *label, std::optional<PortRange> DeviceValues::*member,
                QString DeviceValues::*type)
{
    ValueSpec spec = text(name, label, ValueKind::Ports, type);
    spec.ports = member;
    spec.choices = QStringList{QStringLiteral("single"), QStringLiteral("several")};
    return spec;
}

ValueSpec portList(const char *name, const char *label)
{
    return text(name, label, ValueKind::PortList, nullptr);
}

using V = DeviceValues;

const std::vector<ValueSpec> &valueSpecs()
{
    static const std::vector<ValueSpec> specs{
        number("slot", "槽位号", {0, 255}, &V::slot),
        number("vlan", "VLAN号", {1, 4094}, &V::vlan), // IEEE 802.1Q: 0 and 4095 are no VLANs
        number("link", "链路聚合组", {0, 65535}, &V::link),
        number("mirror", "镜像组", {0, 65535}, &V::mirror),
        text("snooping-joiner", "连接符", ValueKind::Joiner, &V::snoopingJoiner),
        word("port-type", "接口类型", &V::portType, {QStringLiteral("access"), QStringLiteral("trunk")}),
        word("link-type", "链路聚合接口类型", &V::linkType, {QStringLiteral("access"), QStringLiteral("trunk")}),
        word("switch-type", "交换机类型", &V::switchType, {QStringLiteral("access"), QStringLiteral("aggregation")}),
        status("multicast-status", "组播状态", &V::multicastStatus),
        status("querier-status", "查询器状态", &V::querierStatus),
        status("mirror-status", "镜像状态", &V::mirrorStatus),
        status("autoneg-status", "自协商状态", &V::autoNegStatus),
        status("poe-status", "PoE状态", &V::poeStatus),
        status("interface-status", "接口状态", &V::interfaceStatus),
        ports("down-ports", "下行端口范围", &V::downPorts, &V::downType),
        ports("up-ports", "上行端口范围", &V::upPorts, &V::upType),
        ports("link-down-ports", "链路聚合下行端口范围", &V::linkDownPorts, &V::downType),
        ports("link-up-ports", "链路聚合上行端口范围", &V::linkUpPorts, &V::upType),
        ports("poe-ports", "PoE端口范围", &V::poePorts, &V::poeType),
        text("mirror-source", "镜像源端口", ValueKind::Port, &V::mirrorSource),
        text("mirror-destination", "镜像目的端口", ValueKind::Port, &V::mirrorDestination),
        text("autoneg-port", "自协商端口", ValueKind::Port, &V::autoNegPort),
        text("poe-port", "PoE端口", ValueKind::Port, &V::poePort),
        portList("ports", "端口列表"),
    };
    return specs;
}

struct PartName
{
    const char *name;
    Placeholder::Part part;
};

constexpr std::array<PartName, 4> kParts{{
    {"first", Placeholder::Part::First},
    {"last", Placeholder::Part::Last},
    {"first-number", Placeholder::Part::FirstNumber},
    {"last-number", Placeholder::Part::LastNumber},
}};

std::optional<Placeholder::Part> findPart(const QString &name)
{
    for (const PartName &part : kParts) {
        if (name == QLatin1String(part.name))
            return part.part;
    }
    return std::nullopt;
}

std::optional<Placeholder> ofRange(const ValueSpec *value, const QString &partName)
{
    const std::optional<Placeholder::Part> part = findPart(partName);
    if (!part || value == nullptr || value->kind != ValueKind::Ports)
        return std::nullopt;
    return Placeholder{value, *part, std::nullopt};
}

std::optional<Placeholder> ofWhole(const ValueSpec *value, const CommandScope &scope)
{
    if (value == nullptr)
        return std::nullopt;
    const bool fits = value->kind == ValueKind::Number || value->kind == ValueKind::Port
                      || (value->kind == ValueKind::Joiner && scope.hasJoiner);
    if (!fits)
        return std::nullopt;
    return Placeholder{value, Placeholder::Part::Whole, std::nullopt};
}

std::optional<Placeholder> ofNumber(const ValueSpec *value, const QString &fallback)
{
    bool isNumber = false;
    const int number = fallback.toInt(&isNumber);
    if (!isNumber || value == nullptr || value->kind != ValueKind::Number)
        return std::nullopt;
    if (number < value->bounds.min || number > value->bounds.max)
        return std::nullopt;
    return Placeholder{value, Placeholder::Part::Whole, number};
}

std::optional<Placeholder> parsePlaceholder(const QString &text, const CommandScope &scope)
{
    if (text == QLatin1String("port")) {
        if (!scope.isRepeated)
            return std::nullopt;
        return Placeholder{nullptr, Placeholder::Part::Each, std::nullopt};
    }
    const int colon = text.indexOf(QLatin1Char(':'));
    if (colon >= 0)
        return ofNumber(findValue(text.left(colon)), text.mid(colon + 1));
    const int dot = text.indexOf(QLatin1Char('.'));
    const ValueSpec *value = findValue(text.left(dot));
    return dot < 0 ? ofWhole(value, scope) : ofRange(value, text.mid(dot + 1));
}

QString faultOf(const QString &line)
{
    if (line.isEmpty() || line.trimmed() != line)
        return QStringLiteral("a line is empty or has blanks around it");
    if (line.size() > kLongestLine)
        return QStringLiteral("a line is longer than %1 characters").arg(kLongestLine);
    for (const QChar character : line) {
        if (!character.isPrint())
            return QStringLiteral("a line holds a control character");
    }
    if (line.contains(pageKey()))
        return QStringLiteral("\"%1\" contains the page key's name, \"%2\"").arg(line, pageKey());
    return {};
}

ParsedLine failed(const QString &error)
{
    return ParsedLine{{}, error};
}

} // namespace

const ValueSpec *findValue(const QString &name)
{
    for (const ValueSpec &spec : valueSpecs()) {
        if (spec.name == name)
            return &spec;
    }
    return nullptr;
}

std::optional<PortRange> boundsOf(const QString &name)
{
    if (name == QLatin1String("port"))
        return kPortBounds;
    const ValueSpec *spec = findValue(name);
    if (spec == nullptr || spec->kind != ValueKind::Number)
        return std::nullopt;
    return spec->bounds;
}

ParsedLine parseLine(const QString &text, const CommandScope &scope)
{
    const QString fault = faultOf(text);
    if (!fault.isEmpty())
        return failed(fault);
    ParsedLine parsed;
    int position = 0;
    while (position < text.size()) {
        const int open = text.indexOf(QLatin1Char('{'), position);
        const QString plain = text.mid(position, open < 0 ? -1 : open - position);
        if (plain.contains(QLatin1Char('}')))
            return failed(QStringLiteral("\"%1\" has a brace too many").arg(text));
        if (open < 0) {
            parsed.line.push_back({plain, std::nullopt});
            break;
        }
        const int close = text.indexOf(QLatin1Char('}'), open);
        if (close < 0)
            return failed(QStringLiteral("\"%1\" has a brace too many").arg(text));
        const QString name = text.mid(open + 1, close - open - 1);
        const std::optional<Placeholder> placeholder = parsePlaceholder(name, scope);
        if (!placeholder)
            return failed(QStringLiteral("there is no placeholder {%1} here").arg(name));
        parsed.line.push_back({plain, placeholder});
        position = close + 1;
    }
    return parsed;
}

QString pageKey()
{
    return QStringLiteral("space");
}

} // namespace bll
} // namespace ovra
