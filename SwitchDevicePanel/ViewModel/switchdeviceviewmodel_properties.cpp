// The properties: readings, and setters that say which rule they follow.
#include "switchdeviceviewmodel.h"
#include "switchdeviceviewmodel_p.h"

#include "debuglog.h"

namespace {

// 4094 is legal in IEEE 802.1Q; refusing it here is deliberate.
bool isConfigurableVlan(int id)
{
    return id >= 1 && id <= 4093;
}

bool isSwitchWord(const QString &word)
{
    return word == QLatin1String("enable") || word == QLatin1String("disable");
}

bool isLinkType(const QString &word)
{
    return word == QLatin1String("access") || word == QLatin1String("trunk");
}

template<typename T, typename Signal>
void storeAlways(SwitchDeviceViewModel *viewModel, T &field, const T &value, Signal signal)
{
    field = value;
    emit(viewModel->*signal)();
}

template<typename T, typename Signal>
void storeOnChange(SwitchDeviceViewModel *viewModel, T &field, const T &value, Signal signal)
{
    if (field == value)
        return;
    storeAlways(viewModel, field, value, signal);
}

} // namespace

SwitchDeviceViewModel::LanguageType SwitchDeviceViewModel::languageType() const
{
    return _d->languageType;
}

int SwitchDeviceViewModel::baudRate() const
{
    return _d->connection.baudRate;
}

void SwitchDeviceViewModel::setBaudRate(int value)
{
    storeOnChange(this, _d->connection.baudRate, value, &SwitchDeviceViewModel::baudRateChanged);
}

QString SwitchDeviceViewModel::currentCom() const
{
    return _d->connection.currentCom;
}

void SwitchDeviceViewModel::setCurrentCom(const QString &value)
{
    storeAlways(this, _d->connection.currentCom, value, &SwitchDeviceViewModel::currentComChanged);
}

SwitchDeviceViewModel::ConnectType SwitchDeviceViewModel::connType() const
{
    return Login; // fixed reading: the dialogue is announced by currentconnectTypeChanged only
}

QString SwitchDeviceViewModel::userName() const
{
    return QString(); // fixed reading; the login name is userText
}

void SwitchDeviceViewModel::setUserName(const QString &)
{
    // Writes are ignored: the panel binds here, the login name is userText.
}

int SwitchDeviceViewModel::downComNum() const
{
    return _d->inventory.down.count();
}

int SwitchDeviceViewModel::upComNum() const
{
    return _d->inventory.up.count();
}

int SwitchDeviceViewModel::isAggregationSwitch() const
{
    return _d->inventory.isAggregationSwitch;
}

QString SwitchDeviceViewModel::curlogoChanged() const
{
    return _d->model.familyLabel;
}

QString SwitchDeviceViewModel::boardType() const
{
    return _d->inventory.boardType;
}

QString SwitchDeviceViewModel::downComRange() const
{
    return _d->inventory.downRangeText;
}

QString SwitchDeviceViewModel::upComRange() const
{
    return _d->inventory.upRangeText;
}

int SwitchDeviceViewModel::downPortMin() const
{
    return _d->vlan.downPortMin;
}

void SwitchDeviceViewModel::setDownPortMin(int value)
{
    logDebug() << "Setting downPortMin to:" << value << "Current value:" << _d->vlan.downPortMin;
    if (_d->vlan.downPortMin == value)
        return;
    _d->vlan.downPortMin = value;
    emit downPortMinChanged();
    logDebug() << "downPortMinChanged signal emitted";
}

bool SwitchDeviceViewModel::vlanEnable() const
{
    return _d->vlan.enable;
}

void SwitchDeviceViewModel::setVlanEnable(bool value)
{
    storeOnChange(this, _d->vlan.enable, value, &SwitchDeviceViewModel::vlanEnableChanged);
}

int SwitchDeviceViewModel::vlanId() const
{
    return _d->vlan.id;
}

void SwitchDeviceViewModel::setVlanId(int value)
{
    if (!isConfigurableVlan(value))
        return;
    storeOnChange(this, _d->vlan.id, value, &SwitchDeviceViewModel::vlanIdChanged);
}

QString SwitchDeviceViewModel::interfaceType() const
{
    return _d->vlan.interfaceType;
}

void SwitchDeviceViewModel::setInterfaceType(const QString &value)
{
    if (!isLinkType(value))
        return;
    storeOnChange(this, _d->vlan.interfaceType, value, &SwitchDeviceViewModel::interfaceTypeChanged);
}

int SwitchDeviceViewModel::upPortMin() const
{
    return _d->vlan.upPortMin;
}

void SwitchDeviceViewModel::setUpPortMin(int value)
{
    storeAlways(this, _d->vlan.upPortMin, value, &SwitchDeviceViewModel::upPortMinChanged);
}

int SwitchDeviceViewModel::upPortMax() const
{
    return _d->vlan.upPortMax;
}

void SwitchDeviceViewModel::setUpPortMax(int value)
{
    storeAlways(this, _d->vlan.upPortMax, value, &SwitchDeviceViewModel::upPortMaxChanged);
}

int SwitchDeviceViewModel::downPortMax() const
{
    return _d->vlan.downPortMax;
}

void SwitchDeviceViewModel::setDownPortMax(int value)
{
    storeOnChange(this, _d->vlan.downPortMax, value, &SwitchDeviceViewModel::downPortMaxChanged);
}

bool SwitchDeviceViewModel::vlanUpPortEnable() const
{
    return _d->vlan.upPortEnable;
}

void SwitchDeviceViewModel::setVlanUpPortEnable(bool value)
{
    if (_d->vlan.upPortEnable == value)
        return;
    _d->vlan.upPortEnable = value;
    emit vlanUpPortEnableChanged(value);
}

bool SwitchDeviceViewModel::vlanDownPortEnable() const
{
    return _d->vlan.downPortEnable;
}

void SwitchDeviceViewModel::setVlanDownPortEnable(bool value)
{
    storeOnChange(this, _d->vlan.downPortEnable, value, &SwitchDeviceViewModel::vlanDownPortEnableChanged);
}

bool SwitchDeviceViewModel::multicastEnable() const
{
    return _d->multicast.enable;
}

void SwitchDeviceViewModel::setMulticastEnable(bool value)
{
    storeOnChange(this, _d->multicast.enable, value, &SwitchDeviceViewModel::multicastEnableChanged);
}

QString SwitchDeviceViewModel::multicastStatus() const
{
    return _d->multicast.status;
}

void SwitchDeviceViewModel::setMulticastStatus(const QString &value)
{
    if (!isSwitchWord(value))
        return;
    storeOnChange(this, _d->multicast.status, value, &SwitchDeviceViewModel::multicastStatusChanged);
}

int SwitchDeviceViewModel::multicastVlanId() const
{
    return _d->multicast.vlanId;
}

void SwitchDeviceViewModel::setMulticastVlanId(int value)
{
    if (!isConfigurableVlan(value))
        return;
    storeOnChange(this, _d->multicast.vlanId, value, &SwitchDeviceViewModel::multicastVlanIdChanged);
}

bool SwitchDeviceViewModel::querierEnable() const
{
    return _d->querier.enable;
}

void SwitchDeviceViewModel::setQuerierEnable(bool value)
{
    storeOnChange(this, _d->querier.enable, value, &SwitchDeviceViewModel::querierEnableChanged);
}

QString SwitchDeviceViewModel::querierStatus() const
{
    return _d->querier.status;
}

void SwitchDeviceViewModel::setQuerierStatus(const QString &value)
{
    if (!isSwitchWord(value))
        return;
    storeOnChange(this, _d->querier.status, value, &SwitchDeviceViewModel::querierStatusChanged);
}

int SwitchDeviceViewModel::querierVlanId() const
{
    return _d->querier.vlanId;
}

void SwitchDeviceViewModel::setQuerierVlanId(int value)
{
    if (!isConfigurableVlan(value))
        return;
    storeOnChange(this, _d->querier.vlanId, value, &SwitchDeviceViewModel::querierVlanIdChanged);
}

bool SwitchDeviceViewModel::linkAggregationEnable() const
{
    return _d->link.enable;
}

void SwitchDeviceViewModel::setLinkAggregationEnable(bool value)
{
    storeOnChange(this, _d->link.enable, value, &SwitchDeviceViewModel::linkAggregationEnableChanged);
}

int SwitchDeviceViewModel::linkId() const
{
    return _d->link.id;
}

void SwitchDeviceViewModel::setLinkId(int value)
{
    storeOnChange(this, _d->link.id, value, &SwitchDeviceViewModel::linkIdChanged);
}

QString SwitchDeviceViewModel::linkInterfaceType() const
{
    return _d->link.interfaceType;
}

void SwitchDeviceViewModel::setLinkInterfaceType(const QString &value)
{
    storeOnChange(this, _d->link.interfaceType, value, &SwitchDeviceViewModel::linkInterfaceTypeChanged);
}

int SwitchDeviceViewModel::linkUpPortMin() const
{
    return _d->link.upPortMin;
}

void SwitchDeviceViewModel::setLinkUpPortMin(int value)
{
    storeAlways(this, _d->link.upPortMin, value, &SwitchDeviceViewModel::linkUpPortMinChanged);
}

int SwitchDeviceViewModel::linkUpPortMax() const
{
    return _d->link.upPortMax;
}

void SwitchDeviceViewModel::setLinkUpPortMax(int value)
{
    storeAlways(this, _d->link.upPortMax, value, &SwitchDeviceViewModel::linkUpPortMaxChanged);
}

int SwitchDeviceViewModel::linkDownPortMin() const
{
    return _d->link.downPortMin;
}

void SwitchDeviceViewModel::setLinkDownPortMin(int value)
{
    storeAlways(this, _d->link.downPortMin, value, &SwitchDeviceViewModel::linkDownPortMinChanged);
}

int SwitchDeviceViewModel::linkDownPortMax() const
{
    return _d->link.downPortMax;
}

void SwitchDeviceViewModel::setLinkDownPortMax(int value)
{
    storeAlways(this, _d->link.downPortMax, value, &SwitchDeviceViewModel::linkDownPortMaxChanged);
}

bool SwitchDeviceViewModel::mirrorPortEnable() const
{
    return _d->mirror.enable;
}

void SwitchDeviceViewModel::setMirrorPortEnable(bool value)
{
    storeOnChange(this, _d->mirror.enable, value, &SwitchDeviceViewModel::mirrorPortEnableChanged);
}

QString SwitchDeviceViewModel::mirrorStatus() const
{
    return _d->mirror.status;
}

void SwitchDeviceViewModel::setMirrorStatus(const QString &value)
{
    storeOnChange(this, _d->mirror.status, value, &SwitchDeviceViewModel::mirrorStatusChanged);
}

int SwitchDeviceViewModel::mirrorId() const
{
    return _d->mirror.id;
}

void SwitchDeviceViewModel::setMirrorId(int value)
{
    storeOnChange(this, _d->mirror.id, value, &SwitchDeviceViewModel::mirrorIdChanged);
}

QString SwitchDeviceViewModel::mirrorSourcePort() const
{
    return _d->mirror.sourcePort;
}

void SwitchDeviceViewModel::setMirrorSourcePort(const QString &value)
{
    storeOnChange(this, _d->mirror.sourcePort, value, &SwitchDeviceViewModel::mirrorSourcePortChanged);
}

QString SwitchDeviceViewModel::mirrorDstPort() const
{
    return _d->mirror.dstPort;
}

void SwitchDeviceViewModel::setMirrorDstPort(const QString &value)
{
    storeOnChange(this, _d->mirror.dstPort, value, &SwitchDeviceViewModel::mirrorDstPortChanged);
}

bool SwitchDeviceViewModel::autoNegEnable() const
{
    return _d->autoNeg.enable;
}

void SwitchDeviceViewModel::setAutoNegEnable(bool value)
{
    storeOnChange(this, _d->autoNeg.enable, value, &SwitchDeviceViewModel::autoNegEnableChanged);
}

QString SwitchDeviceViewModel::autoNegStatus() const
{
    return _d->autoNeg.status;
}

void SwitchDeviceViewModel::setAutoNegStatus(const QString &value)
{
    storeOnChange(this, _d->autoNeg.status, value, &SwitchDeviceViewModel::autoNegStatusChanged);
}

QString SwitchDeviceViewModel::autoNegPort() const
{
    return _d->autoNeg.port;
}

void SwitchDeviceViewModel::setAutoNegPort(const QString &value)
{
    storeOnChange(this, _d->autoNeg.port, value, &SwitchDeviceViewModel::autoNegPortChanged);
}

bool SwitchDeviceViewModel::isWaitingResponse() const
{
    return _d->queue.isWaitingResponse;
}

void SwitchDeviceViewModel::setWaitingResponse(bool value)
{
    storeOnChange(this, _d->queue.isWaitingResponse, value, &SwitchDeviceViewModel::isWaitingResponseChanged);
}

bool SwitchDeviceViewModel::poeEnable() const
{
    return _d->poe.enable;
}

void SwitchDeviceViewModel::setPoeEnable(bool value)
{
    storeOnChange(this, _d->poe.enable, value, &SwitchDeviceViewModel::poeEnableChanged);
}

QString SwitchDeviceViewModel::poeStatus() const
{
    return _d->poe.status;
}

void SwitchDeviceViewModel::setPoeStatus(const QString &value)
{
    if (!isSwitchWord(value))
        return;
    storeOnChange(this, _d->poe.status, value, &SwitchDeviceViewModel::poeStatusChanged);
}

QString SwitchDeviceViewModel::poePort() const
{
    return _d->poe.port;
}

void SwitchDeviceViewModel::setPoePort(const QString &value)
{
    storeOnChange(this, _d->poe.port, value, &SwitchDeviceViewModel::poePortChanged);
}

int SwitchDeviceViewModel::poeDownPortMin() const
{
    return _d->poe.downPortMin;
}

void SwitchDeviceViewModel::setPoeDownPortMin(int value)
{
    storeOnChange(this, _d->poe.downPortMin, value, &SwitchDeviceViewModel::poeDownPortMinChanged);
}

int SwitchDeviceViewModel::poeDownPortMax() const
{
    return _d->poe.downPortMax;
}

void SwitchDeviceViewModel::setPoeDownPortMax(int value)
{
    storeOnChange(this, _d->poe.downPortMax, value, &SwitchDeviceViewModel::poeDownPortMaxChanged);
}

bool SwitchDeviceViewModel::logMore() const
{
    return _d->log.logMore;
}

void SwitchDeviceViewModel::setLogMore(bool value)
{
    storeOnChange(this, _d->log.logMore, value, &SwitchDeviceViewModel::logMoreChanged);
}

QString SwitchDeviceViewModel::userText() const
{
    return _d->connection.userText;
}

void SwitchDeviceViewModel::setUserText(const QString &value)
{
    storeOnChange(this, _d->connection.userText, value, &SwitchDeviceViewModel::userTextChanged);
}

QString SwitchDeviceViewModel::passwordText() const
{
    return _d->connection.passwordText;
}

void SwitchDeviceViewModel::setPasswordText(const QString &value)
{
    storeOnChange(this, _d->connection.passwordText, value, &SwitchDeviceViewModel::passwordTextChanged);
}

bool SwitchDeviceViewModel::linkUpPortEnable() const
{
    return _d->link.upPortEnable;
}

void SwitchDeviceViewModel::setLinkUpPortEnable(bool value)
{
    storeOnChange(this, _d->link.upPortEnable, value, &SwitchDeviceViewModel::linkUpPortEnableChanged);
}

bool SwitchDeviceViewModel::linkDownPortEnable() const
{
    return _d->link.downPortEnable;
}

void SwitchDeviceViewModel::setLinkDownPortEnable(bool value)
{
    storeOnChange(this, _d->link.downPortEnable, value, &SwitchDeviceViewModel::linkDownPortEnableChanged);
}

bool SwitchDeviceViewModel::interfaceEnable() const
{
    return _d->ports.enable;
}

void SwitchDeviceViewModel::setInterfaceEnable(bool value)
{
    storeOnChange(this, _d->ports.enable, value, &SwitchDeviceViewModel::interfaceEnableChanged);
}

QString SwitchDeviceViewModel::interfaceStatus() const
{
    return _d->ports.status;
}

void SwitchDeviceViewModel::setInterfaceStatus(const QString &value)
{
    if (!isSwitchWord(value))
        return;
    storeOnChange(this, _d->ports.status, value, &SwitchDeviceViewModel::interfaceStatusChanged);
}

QVariantList SwitchDeviceViewModel::selectedInterfacePorts() const
{
    return _d->ports.selectedPorts;
}

void SwitchDeviceViewModel::setSelectedInterfacePorts(const QVariantList &value)
{
    storeOnChange(this, _d->ports.selectedPorts, value, &SwitchDeviceViewModel::selectedInterfacePortsChanged);
}
