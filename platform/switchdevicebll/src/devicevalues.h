#pragma once

#include <switchdevicebll/portrange.h>

#include <QtCore/QString>

#include <optional>

namespace ovra {
namespace bll {

/// What the panel has set last, unchecked: texts may hold anything. A number or range that was never set has no value;
/// the slot is 0 until a switch has told its own.
struct DeviceValues
{
    std::optional<int> slot = 0;

    std::optional<int> vlan;
    QString portType; // "access" or "trunk"

    QString snoopingJoiner; // what stands between the two words of the snooping commands
    QString multicastStatus;
    QString switchType; // "access" or "aggregation"
    QString querierStatus;

    std::optional<int> link;
    QString linkType; // "access" or "trunk"

    std::optional<int> mirror;
    QString mirrorSource;
    QString mirrorDestination;
    QString mirrorStatus;

    QString autoNegPort;
    QString autoNegStatus;

    QString poePort;
    QString poeStatus;

    QString interfaceStatus;

    QString downType; // interface types: "g", "GigabitEthernet", …
    QString upType;
    QString poeType;
    std::optional<PortRange> downPorts;
    std::optional<PortRange> upPorts;
    std::optional<PortRange> linkDownPorts;
    std::optional<PortRange> linkUpPorts;
    std::optional<PortRange> poePorts;
};

} // namespace bll
} // namespace ovra
