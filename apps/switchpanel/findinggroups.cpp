#include "findinggroups.h"

#include <QtCore/QMap>

#include <algorithm>
#include <tuple>

namespace {

QString textOf(const QVariantMap &finding, const char *key)
{
    return finding.value(QLatin1String(key)).toString();
}

int rankOf(const QString &abnormalType)
{
    static const QStringList kOrder{QStringLiteral("时间间隔异常"), QStringLiteral("从节点未回复"),
                                    QStringLiteral("Delay_Resp超时"), QStringLiteral("主节点未回复")};
    const int rank = kOrder.indexOf(abnormalType);
    return rank < 0 ? kOrder.size() : rank;
}

// Sorts 10.0.0.9 before 10.0.0.10, and "unknown slave 2" before "unknown slave 10".
QString sortable(const QString &source)
{
    QString key;
    QString digits;
    const auto flush = [&key, &digits] {
        key += digits.isEmpty() ? QString() : digits.rightJustified(10, QLatin1Char('0'));
        digits.clear();
    };
    for (const QChar character : source) {
        if (character.isDigit()) {
            digits += character;
            continue;
        }
        flush();
        key += character;
    }
    flush();
    return key;
}

using GroupKey = std::tuple<int, QString, QString, QString, QString>; // the addresses twice: in order, then as they are

void addFinding(FindingGroup &group, const QString &timestamp)
{
    // One time, or two joined by " ~ ". Texts of this format compare like the times that they name.
    const QString separator = QStringLiteral(" ~ ");
    const QString first = timestamp.section(separator, 0, 0);
    const QString last = timestamp.section(separator, -1);
    if (group.count == 0 || first < group.first)
        group.first = first;
    if (group.count == 0 || last > group.last)
        group.last = last;
    ++group.count;
}

} // namespace

std::vector<FindingGroup> groupFindings(const QVariantList &findings)
{
    QMap<GroupKey, FindingGroup> groups;
    for (const QVariant &entry : findings) {
        const QVariantMap finding = entry.toMap();
        const QString abnormalType = textOf(finding, "abnormalType");
        const QString messageType = textOf(finding, "messageType");
        const QString source = textOf(finding, "sourceIp");
        FindingGroup &group = groups[{rankOf(abnormalType), abnormalType, messageType, sortable(source), source}];
        group.abnormalType = abnormalType;
        group.messageType = messageType;
        group.source = source;
        addFinding(group, textOf(finding, "timestamp"));
    }
    return {groups.cbegin(), groups.cend()};
}

QStringList inAddressOrder(QStringList addresses)
{
    std::sort(addresses.begin(), addresses.end(),
              [](const QString &one, const QString &other) { return sortable(one) < sortable(other); });
    return addresses;
}
