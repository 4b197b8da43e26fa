#pragma once

#include <switchdevicebll/portrange.h>
#include <switchdevicebll/switchdevicebll_export.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>

namespace ovra {
namespace bll {

struct DeviceDescription;

/// Turns the panel's settings into the console commands of the switch that a description file describes.
///
/// Load a description, set values, get the command lists. Setters keep what they are given, unchecked, and the second
/// call wins; values outlive a change of the description. A getter returns the commands for the values last set, in
/// typing order, from the user view back to the user view. An item that is exactly "space" is the key that turns the
/// pager's pages.
///
/// Values are data: a number beyond its limits, a text that is no port or interface type of this switch, or a setting
/// that was never made empties the list of every getter that needs it, and a warning says which value was refused. So
/// does a getter while no description is loaded.
///
/// Used from the user-interface thread, except where a function says otherwise.
class SWITCHDEVICEBLL_EXPORT SwitchDeviceConfig final
{
public:
    /// The one configuration of the process, created on the first call (from any thread) and never deleted.
    static SwitchDeviceConfig *getInstance();

    /// Reads a description file (share/devices/*.xml). False leaves the description in force that was loaded before;
    /// the reason is in errorInfo() and in a warning.
    bool loadXmlConfig(const QString &path);

    /// Why the last loadXmlConfig() failed: file, line and reason. Empty after a success. From any thread.
    QString errorInfo() const;

    /// The description in force, or null before the first one. It never changes; a later loadXmlConfig() brings another
    /// one. From any thread.
    std::shared_ptr<const DeviceDescription> description() const;

    /// The slot of the ports, unless the description has its own. 0 at first.
    void setBoardNum(int slot);

    /// VLANs, multicast and the querier: 1 to 4094.
    void setVlanId(int id);
    /// "access" or "trunk", of the ports in a VLAN.
    void setInterfaceType(const QString &type);
    /// Interface types of the port ranges, by name or alias: "g", "GigabitEthernet". Also of link aggregation.
    void setDownInterface(const QString &type);
    void setUpInterface(const QString &type);
    void setDownPortRange(const PortRange &range);
    void setUpPortRange(const PortRange &range);

    /// What joins the two words of the snooping commands, "-" or " ". Without it the description decides.
    void setWildcard(const QString &joiner);
    /// "enable" or "disable", as every status below.
    void setCurrentMulticastStatus(const QString &status);
    /// "access" or "aggregation".
    void setSwitchType(const QString &type);
    void setCurrentQuerierStatus(const QString &status);

    void setLinkId(int id);
    /// "access" or "trunk", of the group.
    void setLinkInterfaceType(const QString &type);
    void setLinkDownPortRange(const PortRange &range);
    void setLinkUpPortRange(const PortRange &range);

    void setMirrorId(int id);
    /// The mirrored port and the port that its traffic is copied to. A port is a text such as "g0/0/5"; a bare number
    /// is a port of the type last given to setDownInterface().
    void setSourceportInfo(const QString &port);
    void setDstportInfo(const QString &port);
    void setCurrentMirrorStatus(const QString &status);

    void setAutoNeg(QString port);
    void setCurrentAutoNegStatus(const QString &status);

    /// A port, or "all" for the range.
    void setPOEPort(const QString &port);
    void setPOEDownInterface(const QString &type);
    void setPOEDownPortRange(const PortRange &range);
    void setCurrentPOEStatus(const QString &status);

    void setCurrentInterfaceStatus(const QString &status);

    QStringList getDownVlanCommands() const;
    QStringList getUpGVlanCommands() const;
    QStringList getVlanQueryCommands() const;

    QStringList getMulticastCommands() const;
    QStringList getMulticastQueryCommands() const;
    QStringList getQuerierCommands() const;
    QStringList getQuerierQueryCommands() const;

    /// A group of the whole range, and of its lower port alone.
    QStringList getLinkDownCommands() const;
    QStringList getLinkGigabitSingleCommands() const;
    QStringList getLinkUpCommands() const;
    QStringList getLink10GSingleCommands() const;
    QStringList getLinkAggregationQueryCommands() const;

    QStringList getMirrorCommands() const;
    QStringList getMirrorPortQueryCommands() const;

    QStringList getAutoNegCommands() const;
    QStringList getAutoNegotiationQueryCommands() const;

    QStringList getPOECommands() const;
    QStringList getPOEQueryCommands() const;

    QStringList getInterfaceCommandsForPorts(const QStringList &ports) const;

    QStringList getVlanStatusCommands() const;
    QStringList getPortStatusCommands() const;
    QStringList getInterfaceSpeedCommands() const;
    QStringList getTransceiverCommands() const;
    QStringList getIpConflictCommands() const;
    QStringList getMulticastForwardingTableCommands() const;

    QStringList getSaveCommands() const;
    /// Clears the whole configuration and restarts the switch.
    QStringList getClearLinkAggregationCommands() const;
    /// Paging off, "space", the whole configuration, "space".
    QStringList getExportCommands() const;

private:
    struct Private;

    SwitchDeviceConfig();
    ~SwitchDeviceConfig() = default;
    Q_DISABLE_COPY(SwitchDeviceConfig)

    QStringList commandsOf(const char *getter, const QStringList &ports = {}) const;

    Private *const _d;
};

} // namespace bll
} // namespace ovra
