#pragma once

#include <simulator/switchstate.h>

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>

#include <optional>
#include <vector>

namespace simulator {

/// How one kind of interface is called in a dialect.
struct InterfaceType
{
    InterfaceKind kind;
    QByteArray longName;                 ///< in prompts, configuration and listings
    QByteArray shortName;                ///< in tables
    QByteArray path;                     ///< what stands before the number, e.g. "0/0/"
    int firstNumber = 0, lastNumber = 0; ///< of the others; ports are looked up
};

/// Writes and reads the names of a switch's interfaces.
class InterfaceNames
{
public:
    InterfaceNames(std::vector<InterfaceType> types, const SwitchHardware &hardware);

    QByteArray longName(const InterfaceId &id) const;
    QByteArray shortName(const InterfaceId &id) const;
    QByteArray longName(std::size_t port) const;
    QByteArray shortName(std::size_t port) const;
    /// `0/0/7`
    QByteArray path(std::size_t port) const;
    const InterfaceType *type(InterfaceKind kind) const;

    /// The type that a word means: its name or an unambiguous beginning of it.
    const InterfaceType *findType(const QByteArray &word) const;
    /// The interface of that type with the number part `0/0/7`, `0/0/7.20` or `12`; nothing when the switch has none.
    std::optional<InterfaceId> find(const InterfaceType &type, const QByteArray &numberPart) const;

    /// The index of the port that is meant, unless it is no port.
    std::optional<std::size_t> portIndex(const InterfaceId &id) const;
    InterfaceId id(std::size_t port) const;
    QByteArrayList typeNames() const;

private:
    const std::vector<InterfaceType> _types;
    const SwitchHardware &_hardware; // outlives this object
};

/// Splits `GigabitEthernet0/0/7` into `GigabitEthernet` and `0/0/7`; either may be empty.
std::pair<QByteArray, QByteArray> splitInterfaceName(const QByteArray &word);

} // namespace simulator
