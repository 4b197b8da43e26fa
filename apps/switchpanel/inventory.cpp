#include "inventory.h"

#include <QtCore/QJsonArray>

#include <algorithm>

namespace {

constexpr Text kHeading{"Switch on %1", "%1 上的交换机"};
constexpr Text kBoardType{"Board type", "单板类型"};
constexpr Text kProfile{"Profile", "类型"};
constexpr Text kRole{"Kind", "种类"};
constexpr Text kAccess{"access switch", "接入交换机"};
constexpr Text kAggregation{"aggregation switch (no gigabit ports)", "汇聚交换机（无千兆端口）"};
constexpr Text kDown{"Down ports", "下行端口"};
constexpr Text kUp{"Up ports", "上行端口"};
constexpr Text kPorts{"%1, range %2: %3", "%1个，范围%2：%3"};
constexpr Text kNumbersOnly{"range %1", "范围%1"};
constexpr Text kNone{"none", "无"};
constexpr Text kUnknown{"not told", "未知"};

struct PortName
{
    QString stem; // up to and with the last "/"
    int number = 0;
    bool isNumbered = false;
};

PortName split(const QString &name)
{
    const int slash = name.lastIndexOf(QLatin1Char('/'));
    PortName port;
    port.stem = name.left(slash + 1);
    port.number = name.midRef(slash + 1).toInt(&port.isNumbered);
    return port;
}

bool follows(const PortName &port, const PortName &before)
{
    return port.isNumbered && before.isNumbered && port.stem == before.stem && port.number == before.number + 1;
}

QString portsText(const PortGroup &ports, Language language)
{
    if (!ports.names.isEmpty())
        return inLanguage(kPorts, language, {QString::number(ports.names.size()), ports.range, portRuns(ports.names)});
    // 40-gigabit ports of an aggregation switch are counted, not listed.
    return ports.highest > 0 ? inLanguage(kNumbersOnly, language, {ports.range}) : inLanguage(kNone, language);
}

QJsonObject portsJson(const PortGroup &ports)
{
    return {{QStringLiteral("ports"), QJsonArray::fromStringList(ports.names)},
            {QStringLiteral("lowest"), ports.lowest},
            {QStringLiteral("highest"), ports.highest},
            {QStringLiteral("range"), ports.range},
            {QStringLiteral("count"), ports.count}};
}

} // namespace

QString profileOf(const Inventory &inventory)
{
    const auto isShort = [](const QString &name) {
        return name.startsWith(QLatin1String("GE")) || name.startsWith(QLatin1String("10GE"));
    };
    const QStringList names = inventory.down.names + inventory.up.names;
    const bool isSub =
        inventory.family == QLatin1String("huawei") && std::any_of(names.cbegin(), names.cend(), isShort);
    return isSub ? QStringLiteral("huawei-sub") : inventory.family;
}

QStringList inventoryLines(const Inventory &inventory, Language language, const Painter &painter)
{
    const auto say = [language](const Text &text) { return inLanguage(text, language); };
    TextTable table(2);
    const QString board = inventory.boardType.isEmpty() ? say(kUnknown) : printable(inventory.boardType);
    table.addRow({{say(kBoardType)}, {board}});
    table.addRow({{say(kProfile)}, {profileOf(inventory)}});
    table.addRow({{say(kRole)}, {say(inventory.isAggregationSwitch ? kAggregation : kAccess)}});
    table.addRow({{say(kDown)}, {portsText(inventory.down, language)}});
    table.addRow({{say(kUp)}, {portsText(inventory.up, language)}});
    return QStringList(painter.painted(inLanguage(kHeading, language, {printable(inventory.port)}), Style::Heading))
           + table.lines(painter);
}

QJsonObject inventoryJson(const Inventory &inventory)
{
    return {{QStringLiteral("port"), inventory.port},
            {QStringLiteral("family"), inventory.family},
            {QStringLiteral("profile"), profileOf(inventory)},
            {QStringLiteral("boardType"), inventory.boardType},
            {QStringLiteral("isAggregationSwitch"), inventory.isAggregationSwitch},
            {QStringLiteral("down"), portsJson(inventory.down)},
            {QStringLiteral("up"), portsJson(inventory.up)}};
}

QString portRuns(const QStringList &names)
{
    QStringList runs;
    for (int first = 0; first < names.size();) {
        int last = first;
        while (last + 1 < names.size() && follows(split(names[last + 1]), split(names[last])))
            ++last;
        runs.append(last == first ? names[first] : names[first] + QLatin1Char('-') + names[last]);
        first = last + 1;
    }
    return runs.join(QStringLiteral(", "));
}
