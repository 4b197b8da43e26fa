// The panel's settings become blocks of commands, one per feature, each with the query that shows its effect.
//
// The blocks are built in the order of kFeatures below and leave the queue in the order of their labels.
#include "switchdeviceviewmodel.h"
#include "switchdeviceviewmodel_p.h"

#include "commandblock.h"
#include "debuglog.h"

#include <switchdevicebll/switchdeviceconfig.h>

#include <algorithm>

using ovra::bll::PortRange;
using ovra::bll::SwitchDeviceConfig;

//! Builds and enqueues the blocks of one sendSwitchDeviceCmd().
class SwitchDeviceViewModel::FeatureSender
{
public:
    explicit FeatureSender(SwitchDeviceViewModel *viewModel)
        : _viewModel(viewModel)
        , _d(*viewModel->_d)
        , _config(*SwitchDeviceConfig::getInstance())
    {}

    //! False when no feature is enabled.
    bool sendEnabled();

private:
    using Setter = void (SwitchDeviceViewModel::*)(int);

    bool isAggregation() const { return _d.inventory.isAggregationSwitch == 1; }
    bool isHua3() const { return _d.model.familyLabel == _viewModel->lxTr(QStringLiteral("华三")); }
    void enqueue(const char *label, const QByteArray &block);

    void sendVlan();
    void sendMulticast();
    void sendQuerier();
    void sendLinkAggregation();
    void sendMirroring();
    void sendAutoNegotiation();
    void sendPoe();
    void sendInterfaces();

    void setDownInterface(const QString &gigabit, const QString &tenGigabit);
    void setUpInterface(const QString &tenGigabit, const QString &fortyGigabit);
    QStringList linkDownCommands();
    QStringList linkUpCommands();

    using RangeSetter = void (SwitchDeviceConfig::*)(const PortRange &);
    using Getter = QStringList (SwitchDeviceConfig::*)() const;
    QStringList stitchedPorts(const PortRange &range, RangeSetter setRange, Getter commands);

    PortRange loweredRange(const int &minimum, const int &maximum, Setter setMaximum);
    PortRange clampedRange(const int &minimum, const int &maximum, Setter setMinimum, Setter setMaximum);

    SwitchDeviceViewModel *const _viewModel;
    Private &_d;
    SwitchDeviceConfig &_config;
};

void SwitchDeviceViewModel::sendSwitchDeviceCmd()
{
    setWaitingResponse(true);
    if (!FeatureSender(this).sendEnabled())
        setWaitingResponse(false);
}

bool SwitchDeviceViewModel::FeatureSender::sendEnabled()
{
    struct Feature
    {
        const bool &isEnabled; // looked at when its turn comes: who hears of an earlier one may change it
        void (FeatureSender::*send)();
    };
    const Feature features[] = {
        {_d.vlan.enable, &FeatureSender::sendVlan},        {_d.multicast.enable, &FeatureSender::sendMulticast},
        {_d.querier.enable, &FeatureSender::sendQuerier},  {_d.link.enable, &FeatureSender::sendLinkAggregation},
        {_d.mirror.enable, &FeatureSender::sendMirroring}, {_d.autoNeg.enable, &FeatureSender::sendAutoNegotiation},
        {_d.poe.enable, &FeatureSender::sendPoe},          {_d.ports.enable, &FeatureSender::sendInterfaces},
    };
    bool isAnyEnabled = false;
    for (const Feature &feature : features) {
        if (!feature.isEnabled)
            continue;
        isAnyEnabled = true;
        (this->*feature.send)();
    }
    return isAnyEnabled;
}

void SwitchDeviceViewModel::FeatureSender::enqueue(const char *label, const QByteArray &block)
{
    logDebug() << block;
    _viewModel->enqueueCommand(_viewModel->lxTr(QString::fromUtf8(label)), block);
}

// On an aggregation switch the next faster ports stand in; the second call replaces the first value.
void SwitchDeviceViewModel::FeatureSender::setDownInterface(const QString &gigabit, const QString &tenGigabit)
{
    _config.setDownInterface(gigabit);
    if (isAggregation())
        _config.setDownInterface(tenGigabit);
}

void SwitchDeviceViewModel::FeatureSender::setUpInterface(const QString &tenGigabit, const QString &fortyGigabit)
{
    _config.setUpInterface(tenGigabit);
    if (isAggregation())
        _config.setUpInterface(fortyGigabit);
}

// Ports behind the copper ones that the slot listing has named are left out, as far as the range begins before them.
PortRange SwitchDeviceViewModel::FeatureSender::loweredRange(const int &minimum, const int &maximum, Setter setMaximum)
{
    const int opticalPorts = _d.inventory.opticalPortLines.size();
    if (opticalPorts != 0 && minimum <= opticalPorts && opticalPorts < maximum)
        (_viewModel->*setMaximum)(opticalPorts);
    return {minimum, maximum};
}

// Both values are the properties' own fields: what is written back is what is read.
PortRange SwitchDeviceViewModel::FeatureSender::clampedRange(const int &minimum, const int &maximum, Setter setMinimum,
                                                             Setter setMaximum)
{
    const PortBounds bounds = _d.inventory.up;
    const auto clamped = [bounds](int port) { return std::max(std::min(port, bounds.maximum), bounds.minimum); };
    int lower = clamped(minimum);
    int upper = clamped(maximum);
    if (lower > upper)
        std::swap(lower, upper);
    (_viewModel->*setMinimum)(lower);
    (_viewModel->*setMaximum)(upper);
    return {lower, upper};
}

void SwitchDeviceViewModel::FeatureSender::sendVlan()
{
    const VlanSettings &vlan = _d.vlan;
    const InterfaceNamingProfile &naming = _d.model.naming;
    _config.setVlanId(vlan.id);
    _config.setInterfaceType(vlan.interfaceType);
    _config.setBoardNum(_d.inventory.slotNumber);
    QByteArray block;
    if (vlan.downPortEnable) {
        setDownInterface(naming.downPortPrefix, naming.upPortPrefix);
        _config.setDownPortRange(
            loweredRange(vlan.downPortMin, vlan.downPortMax, &SwitchDeviceViewModel::setDownPortMax));
        appendCommands(block, _config.getDownVlanCommands());
    }
    if (vlan.upPortEnable) {
        setUpInterface(naming.upPortPrefix, naming.upPort40Prefix);
        _config.setUpPortRange(clampedRange(vlan.upPortMin, vlan.upPortMax, &SwitchDeviceViewModel::setUpPortMin,
                                            &SwitchDeviceViewModel::setUpPortMax));
        appendCommands(block, _config.getUpGVlanCommands());
    }
    appendCommands(block, _config.getVlanQueryCommands());
    enqueue("VLAN划分", block);
}

void SwitchDeviceViewModel::FeatureSender::sendMulticast()
{
    _config.setVlanId(_d.multicast.vlanId);
    _config.setWildcard(_d.model.naming.portSeparator);
    _config.setCurrentMulticastStatus(_d.multicast.status);
    _config.setSwitchType(isAggregation() ? QStringLiteral("aggregation") : QStringLiteral("access"));
    QByteArray block = commandBlock(_config.getMulticastCommands());
    appendCommands(block, _config.getMulticastQueryCommands());
    enqueue("组播", block);
}

void SwitchDeviceViewModel::FeatureSender::sendQuerier()
{
    _config.setVlanId(_d.querier.vlanId);
    _config.setWildcard(_d.model.naming.portSeparator);
    _config.setCurrentQuerierStatus(_d.querier.status);
    QByteArray block = commandBlock(_config.getQuerierCommands());
    appendCommands(block, _config.getQuerierQueryCommands());
    enqueue("查询器", block);
}

void SwitchDeviceViewModel::FeatureSender::sendLinkAggregation()
{
    _config.setLinkId(_d.link.id);
    _config.setLinkInterfaceType(_d.link.interfaceType);
    if (!isHua3())
        _config.setBoardNum(_d.inventory.slotNumber);
    QByteArray block;
    if (_d.link.downPortEnable)
        appendCommands(block, linkDownCommands());
    if (_d.link.upPortEnable)
        appendCommands(block, linkUpCommands());
    appendCommands(block, _config.getLinkAggregationQueryCommands(), isHua3() ? PageKeys::Bare : PageKeys::AsLines);
    enqueue("链路聚合", block);
}

QStringList SwitchDeviceViewModel::FeatureSender::linkDownCommands()
{
    setDownInterface(_d.model.naming.linkDownPortPrefix, _d.model.naming.linkUpPortPrefix);
    const PortRange range =
        loweredRange(_d.link.downPortMin, _d.link.downPortMax, &SwitchDeviceViewModel::setLinkDownPortMax);
    _config.setLinkDownPortRange(range);
    if (range.min > range.max)
        return {};
    if (range.min == range.max)
        return _config.getLinkGigabitSingleCommands();
    if (isHua3())
        return stitchedPorts(range, &SwitchDeviceConfig::setLinkDownPortRange,
                             &SwitchDeviceConfig::getLinkGigabitSingleCommands);
    return _config.getLinkDownCommands();
}

QStringList SwitchDeviceViewModel::FeatureSender::linkUpCommands()
{
    setUpInterface(_d.model.naming.linkUpPortPrefix, _d.model.naming.linkUpPort40Prefix);
    const PortRange range = clampedRange(_d.link.upPortMin, _d.link.upPortMax, &SwitchDeviceViewModel::setLinkUpPortMin,
                                         &SwitchDeviceViewModel::setLinkUpPortMax);
    _config.setLinkUpPortRange(range);
    if (range.min == range.max)
        return _config.getLink10GSingleCommands();
    if (isHua3())
        return stitchedPorts(range, &SwitchDeviceConfig::setLinkUpPortRange,
                             &SwitchDeviceConfig::getLink10GSingleCommands);
    return _config.getLinkUpCommands();
}

// Hua3 takes one port at a time into a group: the head of the list once, the two lines of each port, the tail once.
QStringList SwitchDeviceViewModel::FeatureSender::stitchedPorts(const PortRange &range, RangeSetter setRange,
                                                                Getter commands)
{
    constexpr int kHead = 3;
    constexpr int kPortLines = 2;
    constexpr int kMostPorts = 4096;
    QStringList stitched = (_config.*commands)().mid(0, kHead);
    QStringList last;
    // The range comes unchecked from the panel; no switch has as many ports as this.
    const int end = int(std::min<qint64>(range.max, qint64(range.min) + kMostPorts - 1));
    for (qint64 number = range.min; number <= end; ++number) {
        const int port = int(number);
        (_config.*setRange)({port, port});
        last = (_config.*commands)();
        if (last.size() >= kHead + kPortLines)
            stitched += last.mid(kHead, kPortLines);
    }
    return stitched + last.mid(kHead + kPortLines);
}

void SwitchDeviceViewModel::FeatureSender::sendMirroring()
{
    _config.setMirrorId(_d.mirror.id);
    _config.setSourceportInfo(_d.mirror.sourcePort);
    _config.setDstportInfo(_d.mirror.dstPort);
    _config.setCurrentMirrorStatus(_d.mirror.status);
    QByteArray block = commandBlock(_config.getMirrorCommands());
    appendCommands(block, _config.getMirrorPortQueryCommands());
    enqueue("镜像端口配置", block);
}

void SwitchDeviceViewModel::FeatureSender::sendAutoNegotiation()
{
    _config.setAutoNeg(_d.autoNeg.port);
    _config.setCurrentAutoNegStatus(_d.autoNeg.status);
    QByteArray block = commandBlock(_config.getAutoNegCommands());
    appendCommands(block, _config.getAutoNegotiationQueryCommands(), PageKeys::Bare);
    enqueue("自协商开关", block);
}

void SwitchDeviceViewModel::FeatureSender::sendPoe()
{
    const int opticalPorts = _d.inventory.opticalPortLines.size();
    PortRange range{_d.poe.downPortMin, _d.poe.downPortMax};
    if (opticalPorts != 0 && range.min <= opticalPorts)
        range.max = std::min(range.max, opticalPorts);

    _config.setPOEPort(_d.poe.port);
    _config.setPOEDownInterface(_d.model.naming.downPortPrefix);
    if (isAggregation())
        _config.setPOEDownInterface(_d.model.naming.upPortPrefix);
    _config.setPOEDownPortRange(range);
    _config.setBoardNum(_d.inventory.slotNumber);
    _config.setCurrentPOEStatus(_d.poe.status);
    QByteArray block = commandBlock(_config.getPOECommands());
    appendCommands(block, _config.getPOEQueryCommands(), PageKeys::Bare);
    enqueue("POE设置", block);
}

void SwitchDeviceViewModel::FeatureSender::sendInterfaces()
{
    QStringList ports;
    for (const QVariant &port : qAsConst(_d.ports.selectedPorts))
        ports.append(port.toString());
    _config.setCurrentInterfaceStatus(_d.ports.status);
    _config.setBoardNum(_d.inventory.slotNumber);
    _config.setDownInterface(_d.model.naming.downPortPrefix);
    const QByteArray block = commandBlock(_config.getInterfaceCommandsForPorts(ports));
    logDebug().noquote() << _viewModel->lxTr(QStringLiteral("接口设置命令:")) << block;
    _viewModel->enqueueCommand(_viewModel->lxTr(QStringLiteral("接口设置")), block);
}
