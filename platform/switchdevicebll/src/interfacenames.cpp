#include "interfacenames.h"

#include <QtCore/QRegularExpression>

namespace ovra {
namespace bll {

namespace {

// No port name is longer; a pattern never sees more.
constexpr int kLongestPort = 64;

bool isAlias(const InterfaceType &type, const QString &text)
{
    return type.name.compare(text, Qt::CaseInsensitive) == 0 || type.aliases.contains(text, Qt::CaseInsensitive);
}

QRegularExpression portPattern()
{
    // Anchored at both ends: "$" alone would let a line end pass behind the number.
    return QRegularExpression(QRegularExpression::anchoredPattern(
        QStringLiteral("([A-Za-z0-9-]*[A-Za-z]) ?([0-9]{1,3}/[0-9]{1,3}/[0-9]{1,3})|([0-9]{1,3})")));
}

} // namespace

std::optional<QString> InterfaceNames::fullType(const QString &text) const
{
    for (const InterfaceType &type : types) {
        if (isAlias(type, text))
            return type.name;
    }
    return std::nullopt;
}

QString InterfaceNames::portNumber(int slot, int port) const
{
    return QStringLiteral("%1/%2/%3").arg(slot).arg(subslot).arg(port);
}

std::optional<PortText> splitPort(const QString &text)
{
    static const QRegularExpression pattern = portPattern();
    if (text.size() > kLongestPort)
        return std::nullopt;
    const QRegularExpressionMatch match = pattern.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    if (match.capturedStart(3) >= 0)
        return PortText{QString(), match.captured(3)};
    return PortText{match.captured(1), match.captured(2)};
}

} // namespace bll
} // namespace ovra
