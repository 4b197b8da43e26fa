#include "textanalysis.h"

#include <QMap>

namespace textanalysis {

namespace {

QString describe(const QVariant &value)
{
    QString text = value.toString();
    if (value.userType() == QMetaType::QVariantList)
        text = QStringLiteral("%1 entries").arg(value.toList().size());
    if (value.userType() == QMetaType::QVariantMap)
        text = QStringLiteral("keys ") + value.toMap().keys().join(QStringLiteral(", "));
    const QString type = value.isValid() ? QString::fromLatin1(value.typeName()) : QStringLiteral("nothing");
    return QStringLiteral("%1 \"%2\"").arg(type, text);
}

QString part(const QVariant &entry, const char *key)
{
    return entry.toMap().value(QLatin1String(key)).toString();
}

bool namesMissingSlave(const QVariant &entry)
{
    return part(entry, "abnormalType") == QStringLiteral("从节点未回复")
           && !part(entry, "sourceIp").startsWith(QStringLiteral("未知从节点"));
}

bool sameWindow(const QVariant &a, const QVariant &b)
{
    return namesMissingSlave(a) && namesMissingSlave(b) && part(a, "timestamp") == part(b, "timestamp")
           && part(a, "sequenceId") == part(b, "sequenceId");
}

/// The list with the missing addresses of each window in text order: they leave a hash set, in no particular order.
QVariantList withoutWindowOrder(const QVariantList &list)
{
    QVariantList ordered;
    for (int first = 0; first < list.size();) {
        QMap<QString, QVariantList> byAddress;
        int next = first;
        do {
            byAddress[part(list.at(next), "sourceIp")].append(list.at(next));
            ++next;
        } while (next < list.size() && sameWindow(list.at(first), list.at(next)));
        for (const QVariantList &entries : byAddress)
            ordered += entries;
        first = next;
    }
    return ordered;
}

QStringList mapDifferences(const QVariantMap &expected, const QVariantMap &actual, const QString &path)
{
    QStringList found;
    for (auto entry = expected.constBegin(); entry != expected.constEnd(); ++entry)
        found += differences(entry.value(), actual.value(entry.key()), path + QLatin1Char('/') + entry.key());
    for (auto entry = actual.constBegin(); entry != actual.constEnd(); ++entry) {
        if (!expected.contains(entry.key()))
            found += differences(QVariant(), entry.value(), path + QLatin1Char('/') + entry.key());
    }
    return found;
}

QStringList listDifferences(const QVariantList &expected, const QVariantList &actual, const QString &path)
{
    QStringList found;
    if (expected.size() != actual.size())
        found.append(
            QStringLiteral("%1: expected %2 entries, found %3").arg(path).arg(expected.size()).arg(actual.size()));
    const QVariantList left = withoutWindowOrder(expected);
    const QVariantList right = withoutWindowOrder(actual);
    for (int i = 0; i < qMin(left.size(), right.size()); ++i)
        found += differences(left.at(i), right.at(i), QStringLiteral("%1[%2]").arg(path).arg(i));
    return found;
}

} // namespace

QStringList differences(const QVariant &expected, const QVariant &actual, const QString &path)
{
    if (expected.userType() == actual.userType()) {
        if (expected.userType() == QMetaType::QVariantMap)
            return mapDifferences(expected.toMap(), actual.toMap(), path);
        if (expected.userType() == QMetaType::QVariantList)
            return listDifferences(expected.toList(), actual.toList(), path);
        if (expected == actual)
            return {};
    }
    return {QStringLiteral("%1: expected %2, found %3").arg(path, describe(expected), describe(actual))};
}

} // namespace textanalysis
