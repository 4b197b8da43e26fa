#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>
#include <vector>

namespace ovra {
namespace bll {

/// An interface type as the switch spells it in full, and the other spellings that stand for it.
struct InterfaceType
{
    QString name;
    QStringList aliases;
};

/// How a kind of switch names its ports: type, separator, slot/subslot/port.
struct InterfaceNames
{
    QString defaultType;
    QString separator;
    int subslot = 0;
    std::vector<InterfaceType> types;

    /// The full name of the type that `text` stands for, in any case. Nothing for any other text: an interface type
    /// comes from this list or does not reach the switch.
    std::optional<QString> fullType(const QString &text) const;

    /// "GigabitEthernet 0/0/5". `type` is a full name.
    QString portName(const QString &type, const QString &number) const { return type + separator + number; }

    /// "0/0/5"
    QString portNumber(int slot, int port) const;
};

/// A port as somebody wrote it, taken apart: "g0/0/5", "GigabitEthernet 0/0/5", or a bare "5".
struct PortText
{
    QString type;   // as it was written; empty: a bare number
    QString number; // "0/0/5", or "5"
};

/// Nothing when the text has any other shape.
std::optional<PortText> splitPort(const QString &text);

} // namespace bll
} // namespace ovra
