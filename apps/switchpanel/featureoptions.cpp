#include "featureoptions.h"

namespace {

constexpr Text kNothing{"nothing to apply: name at least one setting", "没有要下发的配置：请至少指定一项"};
constexpr Text kNotNumber{"--%1 takes a whole number, not '%2'", "--%1 需要整数，不能是“%2”"};
constexpr Text kNotRange{"--%1 takes port numbers such as 5 or 1-8, not '%2'",
                         "--%1 需要端口号，如 5 或 1-8，不能是“%2”"};
constexpr Text kNotSwitch{"--%1 takes on or off, not '%2'", "--%1 只能是 on 或 off，不能是“%2”"};
constexpr Text kNotPorts{"--%1 takes port names separated by commas, such as g0/0/3,g0/0/5",
                         "--%1 需要以逗号分隔的端口名，如 g0/0/3,g0/0/5"};
constexpr Text kAlone{"--%1 goes with --%2", "--%1 需与 --%2 一起使用"};
constexpr Text kNeeds{"--%1 needs --%2", "--%1 缺少 --%2"};
constexpr Text kNeedsEither{"--%1 needs --%2 or --%3", "--%1 缺少 --%2 或 --%3"};
constexpr Text kNotBoth{"--%1 and --%2 exclude each other", "--%1 与 --%2 不能同时使用"};

struct Belonging
{
    const char *option;
    const char *head;
};

constexpr Belonging kBelongings[] = {
    {"ports", "vlan"},
    {"uplinks", "vlan"},
    {"access", "vlan"},
    {"trunk", "vlan"},
    {"multicast-vlan", "multicast"},
    {"querier-vlan", "querier"},
    {"group-ports", "group"},
    {"group-uplinks", "group"},
    {"group-access", "group"},
    {"mirror-id", "mirror"},
    {"from", "mirror"},
    {"to", "mirror"},
    {"autoneg-port", "autoneg"},
    {"poe-port", "poe"},
    {"poe-ports", "poe"},
};

//! Goes through the options of one command line, remembering the first error.
class FeatureReader
{
public:
    FeatureReader(const Arguments &arguments, Language language)
        : _arguments(arguments)
        , _language(language)
    {}

    FeatureRequest read();

private:
    void checkBelongings();
    VlanRequest vlan();
    SnoopingRequest snooping(const char *head, const char *vlanOption);
    GroupRequest group();
    MirrorRequest mirror();
    NegotiationRequest negotiation();
    PoeRequest poe();
    PortsRequest ports();

    void fail(const Text &text, const QStringList &values);
    bool has(const char *option) const { return _arguments.has(option); }
    int number(const char *option);
    std::optional<NumberRange> range(const char *option);
    bool isOn(const char *option);
    QString needed(const char *head, const char *option);
    void needEither(const char *head, const char *one, const char *other);

    const Arguments &_arguments;
    Language _language;
    QString _error;
};

void FeatureReader::fail(const Text &text, const QStringList &values)
{
    if (_error.isEmpty())
        _error = inLanguage(text, _language, values);
}

int FeatureReader::number(const char *option)
{
    bool isNumber = false;
    const int value = _arguments.value(option).toInt(&isNumber);
    if (!isNumber)
        fail(kNotNumber, {QLatin1String(option), _arguments.value(option)});
    return value;
}

std::optional<NumberRange> FeatureReader::range(const char *option)
{
    if (!has(option))
        return std::nullopt;
    const QString text = _arguments.value(option);
    const QStringList ends = text.split(QLatin1Char('-'));
    bool isFirst = false;
    bool isLast = false;
    const NumberRange range{ends.first().toInt(&isFirst), ends.last().toInt(&isLast)};
    if (!isFirst || !isLast || ends.size() > 2 || range.first < 1 || range.last < range.first)
        fail(kNotRange, {QLatin1String(option), text});
    return range;
}

bool FeatureReader::isOn(const char *option)
{
    const QString text = _arguments.value(option);
    if (text != QLatin1String("on") && text != QLatin1String("off"))
        fail(kNotSwitch, {QLatin1String(option), text});
    return text == QLatin1String("on");
}

QString FeatureReader::needed(const char *head, const char *option)
{
    if (_arguments.value(option).isEmpty())
        fail(kNeeds, {QLatin1String(head), QLatin1String(option)});
    return _arguments.value(option);
}

void FeatureReader::needEither(const char *head, const char *one, const char *other)
{
    if (!has(one) && !has(other))
        fail(kNeedsEither, {QLatin1String(head), QLatin1String(one), QLatin1String(other)});
}

VlanRequest FeatureReader::vlan()
{
    VlanRequest vlan;
    vlan.id = number("vlan");
    vlan.isTrunk = has("trunk");
    vlan.ports = range("ports");
    vlan.uplinks = range("uplinks");
    if (has("access") && has("trunk"))
        fail(kNotBoth, {QStringLiteral("access"), QStringLiteral("trunk")});
    needEither("vlan", "ports", "uplinks");
    return vlan;
}

SnoopingRequest FeatureReader::snooping(const char *head, const char *vlanOption)
{
    SnoopingRequest snooping;
    snooping.isOn = isOn(head);
    if (has(vlanOption))
        snooping.vlan = number(vlanOption);
    return snooping;
}

GroupRequest FeatureReader::group()
{
    GroupRequest group;
    group.id = number("group");
    group.isTrunk = !has("group-access");
    group.ports = range("group-ports");
    group.uplinks = range("group-uplinks");
    needEither("group", "group-ports", "group-uplinks");
    return group;
}

MirrorRequest FeatureReader::mirror()
{
    MirrorRequest mirror;
    mirror.isOn = isOn("mirror");
    if (has("mirror-id"))
        mirror.id = number("mirror-id");
    mirror.from = needed("mirror", "from");
    mirror.to = needed("mirror", "to");
    return mirror;
}

NegotiationRequest FeatureReader::negotiation()
{
    return {isOn("autoneg"), needed("autoneg", "autoneg-port")};
}

PoeRequest FeatureReader::poe()
{
    return {isOn("poe"), needed("poe", "poe-port"), range("poe-ports")};
}

PortsRequest FeatureReader::ports()
{
    const char *const option = has("enable-ports") ? "enable-ports" : "shutdown-ports";
    const QStringList ports = _arguments.value(option).split(QLatin1Char(','));
    if (has("enable-ports") && has("shutdown-ports"))
        fail(kNotBoth, {QStringLiteral("enable-ports"), QStringLiteral("shutdown-ports")});
    if (ports.contains(QString()))
        fail(kNotPorts, {QLatin1String(option)});
    return {has("enable-ports"), ports};
}

void FeatureReader::checkBelongings()
{
    for (const Belonging &belonging : kBelongings) {
        if (has(belonging.option) && !has(belonging.head))
            fail(kAlone, {QLatin1String(belonging.option), QLatin1String(belonging.head)});
    }
}

FeatureRequest FeatureReader::read()
{
    FeatureRequest request;
    checkBelongings();
    if (has("vlan"))
        request.vlan = vlan();
    if (has("multicast"))
        request.multicast = snooping("multicast", "multicast-vlan");
    if (has("querier"))
        request.querier = snooping("querier", "querier-vlan");
    if (has("group"))
        request.group = group();
    if (has("mirror"))
        request.mirror = mirror();
    if (has("autoneg"))
        request.negotiation = negotiation();
    if (has("poe"))
        request.poe = poe();
    if (has("enable-ports") || has("shutdown-ports"))
        request.ports = ports();
    const bool isAny = request.vlan || request.multicast || request.querier || request.group || request.mirror
                       || request.negotiation || request.poe || request.ports;
    if (!isAny)
        fail(kNothing, {});
    request.error = _error;
    return request;
}

} // namespace

const std::vector<Option> &featureOptions()
{
    static const std::vector<Option> kOptions{
        {"vlan", "ID", {"put ports into this VLAN (1 to 4093)", "将端口划入该VLAN（1至4093）"}},
        {"ports", "A-B", {"the gigabit ports with these numbers", "这些编号的千兆端口"}},
        {"uplinks", "A-B", {"the 10-gigabit ports with these numbers", "这些编号的万兆端口"}},
        {"access", nullptr, {"as access ports (default)", "作为access端口（默认）"}},
        {"trunk", nullptr, {"as trunk ports", "作为trunk端口"}},
        {"multicast", "on|off", {"IGMP snooping", "组播（IGMP snooping）"}},
        {"multicast-vlan", "ID", {"in this VLAN (default 1)", "所在VLAN（默认1）"}},
        {"querier", "on|off", {"IGMP querier", "IGMP查询器"}},
        {"querier-vlan", "ID", {"in this VLAN (default 1)", "所在VLAN（默认1）"}},
        {"group", "ID", {"bundle ports in this link aggregation group", "将端口加入该链路聚合组"}},
        {"group-ports", "A-B", {"the gigabit ports with these numbers", "这些编号的千兆端口"}},
        {"group-uplinks", "A-B", {"the 10-gigabit ports with these numbers", "这些编号的万兆端口"}},
        {"group-access", nullptr, {"as an access link (default: trunk)", "作为access链路（默认trunk）"}},
        {"mirror", "on|off", {"copy a port's incoming traffic to another port", "将端口的入方向流量镜像到另一端口"}},
        {"mirror-id", "N", {"number of the mirroring (default 1)", "镜像组编号（默认1）"}},
        {"from", "PORT", {"the port whose traffic is copied, such as g0/0/2", "源端口，如g0/0/2"}},
        {"to", "PORT", {"the port that gets the copies", "目的端口"}},
        {"autoneg", "on|off", {"auto-negotiation of a port", "端口自协商"}},
        {"autoneg-port", "PORT", {"that port", "该端口"}},
        {"poe", "on|off", {"power over Ethernet", "POE供电"}},
        {"poe-port", "PORT|all", {"of one port, or of the range", "单个端口，或端口范围"}},
        {"poe-ports", "A-B", {"that range (default: all gigabit ports)", "该范围（默认全部千兆端口）"}},
        {"enable-ports", "LIST", {"switch ports on: names separated by commas", "开启端口：以逗号分隔的端口名"}},
        {"shutdown-ports", "LIST", {"switch ports off", "关闭端口"}},
    };
    return kOptions;
}

FeatureRequest takeFeatures(const Arguments &arguments, Language language)
{
    return FeatureReader(arguments, language).read();
}
