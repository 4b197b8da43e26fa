#include <switchdevicebll/switchdeviceconfig.h>

#include "commandexpansion.h"
#include "descriptionreader.h"
#include "usermessage.h"

#include <switchdevicebll/translatemanage.h>

#include <QtCore/QtDebug>

#include <mutex>
#include <utility>

namespace ovra {
namespace bll {

namespace {

QString translated(const QString &text)
{
    return lumen::trans::translate(OVRA::BLL::TranslateManage::getInstance()->currentTranslator(),
                                   QStringLiteral("SwitchDevice"), QString(), text);
}

QString sentence(const Refusal &refusal)
{
    const QString reason = filledIn(translated(refusal.text), QStringList(translated(refusal.label)) + refusal.values);
    return filledIn(translated(QStringLiteral("%1，未发送任何命令")), {reason});
}

} // namespace

struct SwitchDeviceConfig::Private
{
    DeviceValues values; // user-interface thread only

    mutable std::mutex lock; // guards the two below
    std::shared_ptr<const DeviceDescription> description;
    QString errorInfo;
};

SwitchDeviceConfig *SwitchDeviceConfig::getInstance()
{
    static SwitchDeviceConfig *const config = new SwitchDeviceConfig;
    return config;
}

SwitchDeviceConfig::SwitchDeviceConfig()
    : _d(new Private)
{}

bool SwitchDeviceConfig::loadXmlConfig(const QString &path)
{
    const ReadDescription read = readDescription(path);
    {
        const std::lock_guard<std::mutex> guard(_d->lock);
        _d->errorInfo = read.error;
        if (read.description)
            _d->description = read.description;
    }
    if (!read.description)
        qWarning("The device description was not loaded: %s", qUtf8Printable(read.error));
    return read.description != nullptr;
}

QString SwitchDeviceConfig::errorInfo() const
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    return _d->errorInfo;
}

std::shared_ptr<const DeviceDescription> SwitchDeviceConfig::description() const
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    return _d->description;
}

void SwitchDeviceConfig::setBoardNum(int slot)
{
    _d->values.slot = slot;
}

void SwitchDeviceConfig::setVlanId(int id)
{
    _d->values.vlan = id;
}

void SwitchDeviceConfig::setInterfaceType(const QString &type)
{
    _d->values.portType = type;
}

void SwitchDeviceConfig::setDownInterface(const QString &type)
{
    _d->values.downType = type;
}

void SwitchDeviceConfig::setUpInterface(const QString &type)
{
    _d->values.upType = type;
}

void SwitchDeviceConfig::setDownPortRange(const PortRange &range)
{
    _d->values.downPorts = range;
}

void SwitchDeviceConfig::setUpPortRange(const PortRange &range)
{
    _d->values.upPorts = range;
}

void SwitchDeviceConfig::setWildcard(const QString &joiner)
{
    _d->values.snoopingJoiner = joiner;
}

void SwitchDeviceConfig::setCurrentMulticastStatus(const QString &status)
{
    _d->values.multicastStatus = status;
}

void SwitchDeviceConfig::setSwitchType(const QString &type)
{
    _d->values.switchType = type;
}

void SwitchDeviceConfig::setCurrentQuerierStatus(const QString &status)
{
    _d->values.querierStatus = status;
}

void SwitchDeviceConfig::setLinkId(int id)
{
    _d->values.link = id;
}

void SwitchDeviceConfig::setLinkInterfaceType(const QString &type)
{
    _d->values.linkType = type;
}

void SwitchDeviceConfig::setLinkDownPortRange(const PortRange &range)
{
    _d->values.linkDownPorts = range;
}

void SwitchDeviceConfig::setLinkUpPortRange(const PortRange &range)
{
    _d->values.linkUpPorts = range;
}

void SwitchDeviceConfig::setMirrorId(int id)
{
    _d->values.mirror = id;
}

void SwitchDeviceConfig::setSourceportInfo(const QString &port)
{
    _d->values.mirrorSource = port;
}

void SwitchDeviceConfig::setDstportInfo(const QString &port)
{
    _d->values.mirrorDestination = port;
}

void SwitchDeviceConfig::setCurrentMirrorStatus(const QString &status)
{
    _d->values.mirrorStatus = status;
}

void SwitchDeviceConfig::setAutoNeg(QString port)
{
    _d->values.autoNegPort = std::move(port);
}

void SwitchDeviceConfig::setCurrentAutoNegStatus(const QString &status)
{
    _d->values.autoNegStatus = status;
}

void SwitchDeviceConfig::setPOEPort(const QString &port)
{
    _d->values.poePort = port;
}

void SwitchDeviceConfig::setPOEDownInterface(const QString &type)
{
    _d->values.poeType = type;
}

void SwitchDeviceConfig::setPOEDownPortRange(const PortRange &range)
{
    _d->values.poePorts = range;
}

void SwitchDeviceConfig::setCurrentPOEStatus(const QString &status)
{
    _d->values.poeStatus = status;
}

void SwitchDeviceConfig::setCurrentInterfaceStatus(const QString &status)
{
    _d->values.interfaceStatus = status;
}

QStringList SwitchDeviceConfig::getDownVlanCommands() const
{
    return commandsOf("getDownVlanCommands");
}

QStringList SwitchDeviceConfig::getUpGVlanCommands() const
{
    return commandsOf("getUpGVlanCommands");
}

QStringList SwitchDeviceConfig::getVlanQueryCommands() const
{
    return commandsOf("getVlanQueryCommands");
}

QStringList SwitchDeviceConfig::getMulticastCommands() const
{
    return commandsOf("getMulticastCommands");
}

QStringList SwitchDeviceConfig::getMulticastQueryCommands() const
{
    return commandsOf("getMulticastQueryCommands");
}

QStringList SwitchDeviceConfig::getQuerierCommands() const
{
    return commandsOf("getQuerierCommands");
}

QStringList SwitchDeviceConfig::getQuerierQueryCommands() const
{
    return commandsOf("getQuerierQueryCommands");
}

QStringList SwitchDeviceConfig::getLinkDownCommands() const
{
    return commandsOf("getLinkDownCommands");
}

QStringList SwitchDeviceConfig::getLinkGigabitSingleCommands() const
{
    return commandsOf("getLinkGigabitSingleCommands");
}

QStringList SwitchDeviceConfig::getLinkUpCommands() const
{
    return commandsOf("getLinkUpCommands");
}

QStringList SwitchDeviceConfig::getLink10GSingleCommands() const
{
    return commandsOf("getLink10GSingleCommands");
}

QStringList SwitchDeviceConfig::getLinkAggregationQueryCommands() const
{
    return commandsOf("getLinkAggregationQueryCommands");
}

QStringList SwitchDeviceConfig::getMirrorCommands() const
{
    return commandsOf("getMirrorCommands");
}

QStringList SwitchDeviceConfig::getMirrorPortQueryCommands() const
{
    return commandsOf("getMirrorPortQueryCommands");
}

QStringList SwitchDeviceConfig::getAutoNegCommands() const
{
    return commandsOf("getAutoNegCommands");
}

QStringList SwitchDeviceConfig::getAutoNegotiationQueryCommands() const
{
    return commandsOf("getAutoNegotiationQueryCommands");
}

QStringList SwitchDeviceConfig::getPOECommands() const
{
    return commandsOf("getPOECommands");
}

QStringList SwitchDeviceConfig::getPOEQueryCommands() const
{
    return commandsOf("getPOEQueryCommands");
}

QStringList SwitchDeviceConfig::getInterfaceCommandsForPorts(const QStringList &ports) const
{
    return commandsOf("getInterfaceCommandsForPorts", ports);
}

QStringList SwitchDeviceConfig::getVlanStatusCommands() const
{
    return commandsOf("getVlanStatusCommands");
}

QStringList SwitchDeviceConfig::getPortStatusCommands() const
{
    return commandsOf("getPortStatusCommands");
}

QStringList SwitchDeviceConfig::getInterfaceSpeedCommands() const
{
    return commandsOf("getInterfaceSpeedCommands");
}

QStringList SwitchDeviceConfig::getTransceiverCommands() const
{
    return commandsOf("getTransceiverCommands");
}

QStringList SwitchDeviceConfig::getIpConflictCommands() const
{
    return commandsOf("getIpConflictCommands");
}

QStringList SwitchDeviceConfig::getMulticastForwardingTableCommands() const
{
    return commandsOf("getMulticastForwardingTableCommands");
}

QStringList SwitchDeviceConfig::getSaveCommands() const
{
    return commandsOf("getSaveCommands");
}

QStringList SwitchDeviceConfig::getClearLinkAggregationCommands() const
{
    return commandsOf("getClearLinkAggregationCommands");
}

QStringList SwitchDeviceConfig::getExportCommands() const
{
    return commandsOf("getExportCommands");
}

QStringList SwitchDeviceConfig::commandsOf(const char *getter, const QStringList &ports) const
{
    const std::shared_ptr<const DeviceDescription> current = description();
    if (!current) {
        qWarning().noquote() << translated(QStringLiteral("未加载设备描述文件，未发送任何命令"));
        return {};
    }
    // The reader lets no description pass that lacks a block.
    const Expansion expansion = expand(current->blocks.at(QLatin1String(getter)), *current, _d->values, ports);
    if (expansion.refusal)
        qWarning().noquote() << sentence(*expansion.refusal);
    return expansion.commands;
}

} // namespace bll
} // namespace ovra
