#include "scriptedplatform.h"

#include <switchdevicebll/switchdeviceconfig.h>

using recording::script;

namespace ovra {
namespace bll {

namespace {

template<typename... Arguments>
QStringList scriptedCommands(const char *getter, const Arguments &...arguments)
{
    recording::record(getter, arguments...);
    const QString name = QLatin1String(getter);
    RecordingPlatform::Commands commands;
    {
        const std::lock_guard<std::mutex> guard(script().lock);
        commands = script().commands.value(name);
    }
    return commands ? commands() : QStringList{name + QStringLiteral(" 1"), name + QStringLiteral(" 2")};
}

} // namespace

struct SwitchDeviceConfig::Private
{};

SwitchDeviceConfig::SwitchDeviceConfig()
    : _d(nullptr)
{}

SwitchDeviceConfig *SwitchDeviceConfig::getInstance()
{
    static SwitchDeviceConfig *const config = new SwitchDeviceConfig;
    return config;
}

bool SwitchDeviceConfig::loadXmlConfig(const QString &path)
{
    recording::record("loadXmlConfig", path);
    const std::lock_guard<std::mutex> guard(script().lock);
    return script().isLoadable;
}

void SwitchDeviceConfig::setBoardNum(int slot)
{
    recording::record("setBoardNum", slot);
}

void SwitchDeviceConfig::setVlanId(int id)
{
    recording::record("setVlanId", id);
}

void SwitchDeviceConfig::setInterfaceType(const QString &type)
{
    recording::record("setInterfaceType", type);
}

void SwitchDeviceConfig::setDownInterface(const QString &type)
{
    recording::record("setDownInterface", type);
}

void SwitchDeviceConfig::setUpInterface(const QString &type)
{
    recording::record("setUpInterface", type);
}

void SwitchDeviceConfig::setDownPortRange(const PortRange &range)
{
    recording::record("setDownPortRange", range);
}

void SwitchDeviceConfig::setUpPortRange(const PortRange &range)
{
    recording::record("setUpPortRange", range);
}

void SwitchDeviceConfig::setWildcard(const QString &joiner)
{
    recording::record("setWildcard", joiner);
}

void SwitchDeviceConfig::setCurrentMulticastStatus(const QString &status)
{
    recording::record("setCurrentMulticastStatus", status);
}

void SwitchDeviceConfig::setSwitchType(const QString &type)
{
    recording::record("setSwitchType", type);
}

void SwitchDeviceConfig::setCurrentQuerierStatus(const QString &status)
{
    recording::record("setCurrentQuerierStatus", status);
}

void SwitchDeviceConfig::setLinkId(int id)
{
    recording::record("setLinkId", id);
}

void SwitchDeviceConfig::setLinkInterfaceType(const QString &type)
{
    recording::record("setLinkInterfaceType", type);
}

void SwitchDeviceConfig::setLinkDownPortRange(const PortRange &range)
{
    recording::record("setLinkDownPortRange", range);
}

void SwitchDeviceConfig::setLinkUpPortRange(const PortRange &range)
{
    recording::record("setLinkUpPortRange", range);
}

void SwitchDeviceConfig::setMirrorId(int id)
{
    recording::record("setMirrorId", id);
}

void SwitchDeviceConfig::setSourceportInfo(const QString &port)
{
    recording::record("setSourceportInfo", port);
}

void SwitchDeviceConfig::setDstportInfo(const QString &port)
{
    recording::record("setDstportInfo", port);
}

void SwitchDeviceConfig::setCurrentMirrorStatus(const QString &status)
{
    recording::record("setCurrentMirrorStatus", status);
}

void SwitchDeviceConfig::setAutoNeg(QString port)
{
    const QString taken = std::move(port);
    recording::record("setAutoNeg", taken);
}

void SwitchDeviceConfig::setCurrentAutoNegStatus(const QString &status)
{
    recording::record("setCurrentAutoNegStatus", status);
}

void SwitchDeviceConfig::setPOEPort(const QString &port)
{
    recording::record("setPOEPort", port);
}

void SwitchDeviceConfig::setPOEDownInterface(const QString &type)
{
    recording::record("setPOEDownInterface", type);
}

void SwitchDeviceConfig::setPOEDownPortRange(const PortRange &range)
{
    recording::record("setPOEDownPortRange", range);
}

void SwitchDeviceConfig::setCurrentPOEStatus(const QString &status)
{
    recording::record("setCurrentPOEStatus", status);
}

void SwitchDeviceConfig::setCurrentInterfaceStatus(const QString &status)
{
    recording::record("setCurrentInterfaceStatus", status);
}

QStringList SwitchDeviceConfig::getDownVlanCommands() const
{
    return scriptedCommands("getDownVlanCommands");
}

QStringList SwitchDeviceConfig::getUpGVlanCommands() const
{
    return scriptedCommands("getUpGVlanCommands");
}

QStringList SwitchDeviceConfig::getVlanQueryCommands() const
{
    return scriptedCommands("getVlanQueryCommands");
}

QStringList SwitchDeviceConfig::getMulticastCommands() const
{
    return scriptedCommands("getMulticastCommands");
}

QStringList SwitchDeviceConfig::getMulticastQueryCommands() const
{
    return scriptedCommands("getMulticastQueryCommands");
}

QStringList SwitchDeviceConfig::getQuerierCommands() const
{
    return scriptedCommands("getQuerierCommands");
}

QStringList SwitchDeviceConfig::getQuerierQueryCommands() const
{
    return scriptedCommands("getQuerierQueryCommands");
}

QStringList SwitchDeviceConfig::getLinkDownCommands() const
{
    return scriptedCommands("getLinkDownCommands");
}

QStringList SwitchDeviceConfig::getLinkGigabitSingleCommands() const
{
    return scriptedCommands("getLinkGigabitSingleCommands");
}

QStringList SwitchDeviceConfig::getLinkUpCommands() const
{
    return scriptedCommands("getLinkUpCommands");
}

QStringList SwitchDeviceConfig::getLink10GSingleCommands() const
{
    return scriptedCommands("getLink10GSingleCommands");
}

QStringList SwitchDeviceConfig::getLinkAggregationQueryCommands() const
{
    return scriptedCommands("getLinkAggregationQueryCommands");
}

QStringList SwitchDeviceConfig::getMirrorCommands() const
{
    return scriptedCommands("getMirrorCommands");
}

QStringList SwitchDeviceConfig::getMirrorPortQueryCommands() const
{
    return scriptedCommands("getMirrorPortQueryCommands");
}

QStringList SwitchDeviceConfig::getAutoNegCommands() const
{
    return scriptedCommands("getAutoNegCommands");
}

QStringList SwitchDeviceConfig::getAutoNegotiationQueryCommands() const
{
    return scriptedCommands("getAutoNegotiationQueryCommands");
}

QStringList SwitchDeviceConfig::getPOECommands() const
{
    return scriptedCommands("getPOECommands");
}

QStringList SwitchDeviceConfig::getPOEQueryCommands() const
{
    return scriptedCommands("getPOEQueryCommands");
}

QStringList SwitchDeviceConfig::getInterfaceCommandsForPorts(const QStringList &ports) const
{
    return scriptedCommands("getInterfaceCommandsForPorts", ports);
}

QStringList SwitchDeviceConfig::getVlanStatusCommands() const
{
    return scriptedCommands("getVlanStatusCommands");
}

QStringList SwitchDeviceConfig::getPortStatusCommands() const
{
    return scriptedCommands("getPortStatusCommands");
}

QStringList SwitchDeviceConfig::getInterfaceSpeedCommands() const
{
    return scriptedCommands("getInterfaceSpeedCommands");
}

QStringList SwitchDeviceConfig::getTransceiverCommands() const
{
    return scriptedCommands("getTransceiverCommands");
}

QStringList SwitchDeviceConfig::getIpConflictCommands() const
{
    return scriptedCommands("getIpConflictCommands");
}

QStringList SwitchDeviceConfig::getMulticastForwardingTableCommands() const
{
    return scriptedCommands("getMulticastForwardingTableCommands");
}

QStringList SwitchDeviceConfig::getSaveCommands() const
{
    return scriptedCommands("getSaveCommands");
}

QStringList SwitchDeviceConfig::getClearLinkAggregationCommands() const
{
    return scriptedCommands("getClearLinkAggregationCommands");
}

QStringList SwitchDeviceConfig::getExportCommands() const
{
    return scriptedCommands("getExportCommands");
}

} // namespace bll
} // namespace ovra
