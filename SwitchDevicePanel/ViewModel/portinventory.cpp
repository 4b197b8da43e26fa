#include "portinventory.h"

#include "linepattern.h"

#include <algorithm>

namespace reply {

namespace {

bool isHeader(const ReplyLine &line)
{
    return line.has(Keyword::Interface) && line.has(Keyword::Phy);
}

//! The third "/"-separated part of \a port; nothing when there are fewer.
std::optional<int> portNumber(QStringView port)
{
    const auto slash = [](QChar character) { return character == QLatin1Char('/'); };
    const auto first = std::find_if(port.begin(), port.end(), slash);
    const auto second = first == port.end() ? first : std::find_if(first + 1, port.end(), slash);
    if (second == port.end())
        return std::nullopt;
    const auto end = std::find_if(second + 1, port.end(), slash);
    return toNumber(QStringView(second + 1, end));
}

void include(PortSpan &span, QStringView port)
{
    if (const auto number = portNumber(port))
        span.include(*number);
}

QString prefixed(const QString &prefix, QStringView port)
{
    QString name;
    name.reserve(prefix.size() + static_cast<int>(port.size()));
    name.append(prefix).append(port.data(), static_cast<int>(port.size()));
    return name;
}

void scanGigabitPorts(const ReplyText &reply, const InterfaceNamingProfile &naming, const QString &excludedText,
                      PortInventory &inventory)
{
    const LinePattern pattern(naming.downPortPattern, LinePattern::Dialect::EcmaScript);
    for (const ReplyLine &line : reply.lines()) {
        if (line.text.isEmpty())
            continue;
        if (isHeader(line)) {
            ++inventory.headerCount;
            continue;
        }
        const auto match = pattern.firstMatch(line.text);
        if (!match || match->isBehindDigit() || line.text.contains(excludedText))
            continue;
        inventory.downPorts.append(prefixed(naming.downPortPrefix, match->value()));
        include(inventory.down, match->value());
    }
}

// A fixed pattern for every model; the ports give the range only and stand in no list.
void scan40GigabitPorts(const ReplyText &reply, PortSpan &span)
{
    const LinePattern pattern(QStringLiteral(R"(40GE(\d+/\d+/\d+))"), LinePattern::Dialect::EcmaScript);
    for (const ReplyLine &line : reply.lines()) {
        if (const auto match = pattern.firstMatch(line.text))
            include(span, match->value());
    }
}

void scan10GigabitPorts(const ReplyText &reply, const InterfaceNamingProfile &naming, QStringList &ports,
                        PortSpan &span)
{
    const LinePattern pattern(naming.upPortPattern, LinePattern::Dialect::EcmaScript);
    for (const ReplyLine &line : reply.lines()) {
        if (line.text.isEmpty())
            continue;
        const auto match = pattern.firstMatch(line.text);
        if (!match)
            continue;
        ports.append(prefixed(naming.upPortPrefix, match->value()));
        include(span, match->value());
    }
}

struct SlotLine
{
    int slot = 0;
    bool isSubModel = false;
};

//! From the first line whose interface name has a slot. Any short name decides, a 10-gigabit one as well.
SlotLine findSlot(const ReplyText &reply)
{
    const LinePattern longName(QStringLiteral(R"(GigabitEthernet(\d+)/)"), LinePattern::Dialect::QtRegExp);
    const LinePattern shortName(QStringLiteral(R"(GE(\d+)/)"), LinePattern::Dialect::QtRegExp);
    for (const ReplyLine &line : reply.lines()) {
        if (line.has(Keyword::GigabitEthernet)) {
            if (const auto match = longName.firstMatch(line.text))
                return {toNumber(match->group1), false};
        } else if (line.has(Keyword::Ge) && line.has(Keyword::Slash)) {
            if (const auto match = shortName.firstMatch(line.text))
                return {toNumber(match->group1), true};
        }
    }
    return {};
}

} // namespace

void PortSpan::include(int port)
{
    minimum = std::min(minimum, port);
    maximum = std::max(maximum, port);
}

PortInventory scanPorts(const ReplyText &reply, const InterfaceNamingProfile &naming, const QString &excludedText,
                        bool isAggregationSwitch)
{
    PortInventory inventory;
    scanGigabitPorts(reply, naming, excludedText, inventory);
    if (inventory.downPorts.isEmpty()) {
        inventory.hasNoGigabitPort = true;
        scan40GigabitPorts(reply, inventory.up);
    }
    if (isAggregationSwitch || inventory.hasNoGigabitPort)
        scan10GigabitPorts(reply, naming, inventory.downPorts, inventory.down);
    else
        scan10GigabitPorts(reply, naming, inventory.upPorts, inventory.up);
    return inventory;
}

std::optional<PortInventory> readHuaweiPorts(const ReplyText &reply, const InterfaceNamingProfile &naming,
                                             bool isAggregationSwitch)
{
    if (!reply.has(Keyword::Interface) || !reply.has(Keyword::Phy))
        return std::nullopt;
    const SlotLine found = findSlot(reply);
    const InterfaceNamingProfile &listed = found.isSubModel ? huaweiSubModelNaming() : naming;
    PortInventory inventory = scanPorts(reply, listed, listed.tenGigExcludeKeyword, isAggregationSwitch);
    inventory.slot = found.slot;
    inventory.isSubModel = found.isSubModel;
    return inventory;
}

} // namespace reply
