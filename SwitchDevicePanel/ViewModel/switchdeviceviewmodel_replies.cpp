// What a reply of the switch changes. The reply parsers say what stands in the text, section by section; here the
// answers are applied in the sections' order, each before the next one is asked for.
#include "switchdeviceviewmodel.h"
#include "switchdeviceviewmodel_p.h"

#include "commandblock.h"
#include "debuglog.h"
#include "hua3replyparser.h"
#include "huaweireplyparser.h"

#include <switchdevicebll/switchdeviceconfig.h>

#include <QtCore/QCoreApplication>

#include <utility>

namespace {

constexpr std::chrono::milliseconds kCompletionDelay{200};
constexpr int kSuccess = 1; // of showToast()

// Replies that wait for their parse; of the whole process, one list per family. User-interface thread only.
QList<QByteArray> pendingHuaweiReplies;
QList<QByteArray> pendingHua3Replies;

// The first listing of a configuration after the plugin is loaded is announced, and no later one.
bool currentConfigurationAnnounced = false;

QVariantList toVariants(const QStringList &texts)
{
    QVariantList variants;
    variants.reserve(texts.size());
    for (const QString &text : texts)
        variants.append(text);
    return variants;
}

} // namespace

//! Applies one reply to the view model.
class SwitchDeviceViewModel::ReplyReader
{
public:
    ReplyReader(SwitchDeviceViewModel *viewModel, const QByteArray &bytes, bool isInForce)
        : _viewModel(viewModel)
        , _d(*viewModel->_d)
        , _isInForce(isInForce)
        , _reply(bytes)
        , _label(_d.queue.currentLabel)
    {}

    void readHuawei();
    void readHua3();

private:
    bool isAnswerTo(QStringView label) const { return _label == tr(label); }
    QString tr(QStringView text) const { return _viewModel->lxTr(text.toString()); }
    void endWaiting() { _viewModel->setWaitingResponse(false); }

    void takeHuaweiPorts();
    void clearPorts();
    void takeSubModel();
    void takePorts(const reply::PortInventory &ports);
    void takeDownSpan(const reply::PortSpan &span);
    void takeUpSpan(const reply::PortSpan &span);
    void queryOpticalPorts();
    void takeEffects(const reply::Effects &effects);
    void takeEffect(const reply::Effect &effect);
    void takeBoardType(const QString &type);
    void takeHuaweiMirroring();
    void takeHua3Mirroring();
    void takeHua3MirroringGroups();
    void takeConfiguration();
    void announceConfiguration();
    void takeTransceivers();
    void takeLoginPrompt(reply::LoginPrompt prompt);

    SwitchDeviceViewModel *const _viewModel;
    Private &_d;
    const bool _isInForce;         // not overtaken by the next connection
    const reply::ReplyText _reply; // results of the parsers point into it
    const QString _label;          // of the block that is being answered
};

void SwitchDeviceViewModel::startParsing(const QByteArray &data)
{
    pendingHuaweiReplies.append(data);
    parseLater(data, &ReplyReader::readHuawei, pendingHuaweiReplies);
}

void SwitchDeviceViewModel::startParsingHua3(const QByteArray &data)
{
    pendingHua3Replies.append(data);
    parseLater(data, &ReplyReader::readHua3, pendingHua3Replies);
}

void SwitchDeviceViewModel::parseLater(const QByteArray &data, void (ReplyReader::*read)(),
                                       QList<QByteArray> &pendingReplies)
{
    _d->receive.isParsing = true;
    const auto parse = [this, data, read, &pendingReplies, origin = replyOrigin()] {
        const int session = currentSession();
        const bool isInForce = isReplyInForce(origin);
        ReplyReader reader(this, data, isInForce);
        (reader.*read)();
        pendingReplies.clear();
        // A reply that has itself ended the session (a failed login does) completes what it has sent since.
        finishParsing(isInForce && session != currentSession() ? replyOrigin() : origin);
    };
    QMetaObject::invokeMethod(this, parse, Qt::QueuedConnection);
}

// The switch gets a moment before its next block. What was sent after a disconnect is not completed by a reply from
// before it.
void SwitchDeviceViewModel::finishParsing(const ReplyOrigin &origin)
{
    _d->receive.isParsing = false;
    const auto complete = [this, origin] {
        if (isReplyInForce(origin))
            onCommandCompleted();
    };
    QTimer::singleShot(kCompletionDelay, this,
                       [this, complete] { QMetaObject::invokeMethod(this, complete, Qt::QueuedConnection); });
}

void SwitchDeviceViewModel::ReplyReader::readHuawei()
{
    takeHuaweiPorts();
    if (isAnswerTo(reply::kMulticastTableLabel))
        takeEffects(reply::readMulticastTable(_reply));
    if (_label == reply::kMorePagesLabel)
        takeEffects(reply::readMorePages(_reply));
    if (isAnswerTo(reply::kIpConflictLabel))
        takeEffects(reply::readIpConflicts(_reply));
    takeEffects(reply::readOpticalPorts(_reply));
    takeEffects(reply::readVlanListing(_reply));
    takeHuaweiMirroring();
    takeConfiguration();
    takeEffects(reply::readPoePower(_reply));
    if (reply::isTransceiverListing(_reply)) {
        takeTransceivers();
        endWaiting();
    }
    takeEffects(reply::readInterfaceView(_reply));
    takeLoginPrompt(reply::readLoginPrompt(_reply, _d.receive.isLoggedIn));
    announceConfiguration();
    takeEffects(reply::readIgmpConfiguration(_reply));
    if (reply::isCommandError(_reply))
        qWarning().noquote() << _label + tr(u"执行失败");
    if (reply::isRebootNotice(_reply))
        emit _viewModel->showToast(tr(u"配置正在清除 ，请5分钟后重新连接"), kSuccess);
}

void SwitchDeviceViewModel::ReplyReader::readHua3()
{
    if (isAnswerTo(reply::kMulticastTableLabel))
        takeEffects(reply::readHua3MulticastTable(_reply));
    if (isAnswerTo(reply::kIpConflictLabel))
        takeEffects(reply::readHua3IpConflicts(_reply));
    takeEffects(reply::readHua3PortStatus(_reply));
    takeEffects(reply::readHua3VlanSummary(_reply));
    takeEffects(reply::readHua3Snooping(_reply));
    takeEffects(reply::readHua3Querier(_reply));
    takeEffects(reply::readHua3LinkAggregation(_reply));
    takeHua3MirroringGroups();
    takeEffects(reply::readHua3PoeInterfaces(_reply));
    takeEffects(reply::readHua3PoeUsage(_reply));
    takeEffects(reply::readHua3ForwardingTable(_reply));
    takeEffects(reply::readHua3OpticalPorts(_reply));
    takeHua3Mirroring();
    takeLoginPrompt(reply::readHua3LoginPrompt(_reply, _d.receive.isLoggedIn));
    if (const auto ports = reply::readHua3Ports(_reply, _d.model.naming, _d.inventory.isAggregationSwitch == 1)) {
        clearPorts();
        takePorts(*ports);
    }
    if (reply::isHua3TransceiverListing(_reply))
        takeTransceivers();
    // In Chinese whatever the language: this family's text has never been translated.
    if (reply::isRebootNotice(_reply))
        emit _viewModel->showToast(QStringLiteral("配置正在清除 ，请5分钟后重新连接"), kSuccess);
}

void SwitchDeviceViewModel::ReplyReader::takeHuaweiPorts()
{
    const auto ports = reply::readHuaweiPorts(_reply, _d.model.naming, _d.inventory.isAggregationSwitch == 1);
    if (!ports)
        return;
    clearPorts();
    _d.inventory.slotNumber = ports->slot;
    if (ports->isSubModel)
        takeSubModel();
    for (int header = 0; header < ports->headerCount; ++header)
        emit _viewModel->logMessage(tr(u"端口状态信息:"));
    takePorts(*ports);
    if (isAnswerTo(reply::kPortListingLabel))
        queryOpticalPorts();
    endWaiting();
}

// Before anything is announced: whoever hears of the new listing sees no port of the old one.
void SwitchDeviceViewModel::ReplyReader::clearPorts()
{
    _d.inventory.downPorts.clear();
    _d.inventory.upPorts.clear();
}

// Only its listing tells the sub-model from the rest of the family.
void SwitchDeviceViewModel::ReplyReader::takeSubModel()
{
    _d.model.descriptionPath = QCoreApplication::applicationDirPath() + QLatin1String(kHuaweiSubModelDescription);
    ovra::bll::SwitchDeviceConfig::getInstance()->loadXmlConfig(_d.model.descriptionPath);
    _d.model.naming.take(huaweiSubModelNaming());
}

void SwitchDeviceViewModel::ReplyReader::takePorts(const reply::PortInventory &ports)
{
    if (ports.hasNoGigabitPort) {
        _d.inventory.isAggregationSwitch = 1;
        emit _viewModel->isAggregationSwitchChanged();
    }
    _d.inventory.downPorts = toVariants(ports.downPorts);
    _d.inventory.upPorts = toVariants(ports.upPorts);
    if (ports.down.isFound())
        takeDownSpan(ports.down);
    if (ports.up.isFound())
        takeUpSpan(ports.up);
    const PortBounds down = _d.inventory.down;
    const PortBounds up = _d.inventory.up;
    emit _viewModel->comDownNumChanged(down.count());
    emit _viewModel->comUpNumChanged(up.count());
    _d.inventory.downRangeText = QStringLiteral("(%1-%2)").arg(down.minimum).arg(down.maximum);
    emit _viewModel->downComRangeChanged(_d.inventory.downRangeText);
    _d.inventory.upRangeText = QStringLiteral("(%1-%2)").arg(up.minimum).arg(up.maximum);
    emit _viewModel->upComRangeChanged(_d.inventory.upRangeText);
}

// The setters' order is the one in which the panel hears of the new ranges.
void SwitchDeviceViewModel::ReplyReader::takeDownSpan(const reply::PortSpan &span)
{
    _d.inventory.down = {span.minimum, span.maximum};
    _viewModel->setDownPortMax(span.maximum);
    _viewModel->setDownPortMin(span.minimum);
    _viewModel->setLinkDownPortMin(span.minimum);
    _viewModel->setLinkDownPortMax(span.maximum);
    _viewModel->setPoeDownPortMax(span.maximum);
    _viewModel->setPoeDownPortMin(span.minimum);
}

void SwitchDeviceViewModel::ReplyReader::takeUpSpan(const reply::PortSpan &span)
{
    _d.inventory.up = {span.minimum, span.maximum};
    _viewModel->setUpPortMax(span.maximum);
    _viewModel->setUpPortMin(span.minimum);
    _viewModel->setLinkUpPortMin(span.minimum);
    _viewModel->setLinkUpPortMax(span.maximum);
}

// Which ports are copper, and the board type, stand in the listing of the slot.
void SwitchDeviceViewModel::ReplyReader::queryOpticalPorts()
{
    const QString slotListing = QStringLiteral("display device slot");
    QByteArray block;
    const QStringList commands = ovra::bll::SwitchDeviceConfig::getInstance()->getInterfaceSpeedCommands();
    for (const QString &command : commands) {
        const bool isOfSlot = command.contains(slotListing);
        block += isOfSlot ? slotListing.toUtf8() + ' ' + QByteArray::number(_d.inventory.slotNumber) : command.toUtf8();
        if (!isPageKey(command))
            block += kLineEnd;
    }
    _viewModel->enqueueCommand(tr(reply::kOpticalPortsLabel), block);
}

void SwitchDeviceViewModel::ReplyReader::takeEffects(const reply::Effects &effects)
{
    for (const reply::Effect &effect : effects)
        takeEffect(effect);
}

void SwitchDeviceViewModel::ReplyReader::takeEffect(const reply::Effect &effect)
{
    using Kind = reply::Effect::Kind;
    const QString text = effect.text.toString();
    switch (effect.kind) {
    case Kind::Info:
        qInfo().noquote() << text;
        break;
    case Kind::InfoDetailed:
        if (_d.log.logMore)
            qInfo().noquote() << text;
        break;
    case Kind::InfoTranslated:
        qInfo().noquote() << tr(effect.text);
        break;
    case Kind::InfoEveryLine:
        for (const reply::ReplyLine &line : _reply.lines())
            qInfo().noquote() << line.text.toString();
        break;
    case Kind::Result:
        _d.log.resultLines.append(text);
        break;
    case Kind::ResultEveryLine:
        for (const reply::ReplyLine &line : _reply.lines())
            _d.log.resultLines.append(line.text.toString());
        break;
    case Kind::OpticalPortsCleared:
        _d.inventory.opticalPortLines.clear();
        break;
    case Kind::OpticalPort:
        _d.inventory.opticalPortLines.append(text);
        break;
    case Kind::BoardType:
        takeBoardType(text);
        break;
    case Kind::MorePagesRequested:
        _viewModel->enqueueCommand(reply::kMorePagesLabel.toString(), QByteArray(reply::kMorePagesBytes));
        break;
    case Kind::WaitingEnded:
        endWaiting();
        break;
    }
}

void SwitchDeviceViewModel::ReplyReader::takeBoardType(const QString &type)
{
    if (_d.inventory.boardType == type)
        return;
    _d.inventory.boardType = type;
    emit _viewModel->boardTypeChanged();
}

void SwitchDeviceViewModel::ReplyReader::takeHuaweiMirroring()
{
    const auto ports = reply::readPortMirroring(_reply, _d.model.naming);
    if (!ports)
        return;
    for (const reply::PortMirroring &port : *ports) {
        logDebug().noquote() << QStringLiteral("镜像id：%1，源端口号%2，目的端口号%3")
                                    .arg(port.id)
                                    .arg(port.sourcePort)
                                    .arg(port.destinationPort);
        endWaiting();
    }
    endWaiting();
}

void SwitchDeviceViewModel::ReplyReader::takeHua3Mirroring()
{
    const auto ports = reply::readPortMirroring(_reply, _d.model.naming);
    if (!ports)
        return;
    for (const reply::PortMirroring &port : *ports) {
        if (_d.log.logMore)
            qInfo().noquote() << tr(u"镜像id:") << port.id << tr(u"源端口号:") << port.sourcePort << tr(u"目的端口号:")
                              << port.destinationPort;
        endWaiting();
    }
    endWaiting();
}

void SwitchDeviceViewModel::ReplyReader::takeHua3MirroringGroups()
{
    const std::optional<QString> groups = reply::readHua3MirroringGroups(_reply);
    if (!groups)
        return;
    if (!groups->isEmpty()) {
        qInfo().noquote() << tr(reply::kMirroringGroupHeading);
        qInfo().noquote() << *groups;
    }
    endWaiting();
}

void SwitchDeviceViewModel::ReplyReader::takeConfiguration()
{
    const auto state = reply::readAutoNegotiation(_reply, _d.model.naming, _d.autoNeg.port);
    if (state && _d.log.logMore)
        _d.log.resultLines.append(tr(u"端口") + state->port + tr(u"自协商状态:")
                                  + (state->isOn ? tr(u"已开启") : tr(u"未开启")));
    if (reply::isCurrentConfiguration(_reply))
        endWaiting();
}

void SwitchDeviceViewModel::ReplyReader::announceConfiguration()
{
    if (!reply::isCurrentConfiguration(_reply) || std::exchange(currentConfigurationAnnounced, true))
        return;
    emit _viewModel->parseStateChanged(CurrentConfiguration);
}

void SwitchDeviceViewModel::ReplyReader::takeTransceivers()
{
    _viewModel->parseTransceiverInfo(_reply);
}

void SwitchDeviceViewModel::parseTransceiverInfo(const reply::ReplyText &text)
{
    const QString found = lxTr(QStringLiteral("光模块信息:"));
    const QString absent = lxTr(QStringLiteral("未检测到光模块"));
    const reply::TransceiverListing listing = reply::readTransceivers(text, _d->model.naming);
    for (const reply::TransceiverNote &note : listing.logged)
        emit logMessage(note.text(note.isAbsent ? absent : found));
    if (listing.last)
        _d->log.resultLines.append(listing.last->text(found));
}

void SwitchDeviceViewModel::ReplyReader::takeLoginPrompt(reply::LoginPrompt prompt)
{
    if (!_isInForce)
        return; // the prompt of a connection that is over says nothing of the new one's login
    switch (prompt) {
    case reply::LoginPrompt::Username:
        emit _viewModel->parseStateChanged(NeedUsername);
        break;
    case reply::LoginPrompt::Password:
        emit _viewModel->parseStateChanged(NeedPassword);
        break;
    case reply::LoginPrompt::ConfirmPassword:
        emit _viewModel->parseStateChanged(NeedConfirmPassword);
        break;
    case reply::LoginPrompt::Ready:
        _d.receive.isLoggedIn = true; // first: a receiver may disconnect, and that stays
        emit _viewModel->logMessage(tr(u"登录成功.."));
        emit _viewModel->parseStateChanged(LoginSuccess);
        break;
    case reply::LoginPrompt::Refused:
        emit _viewModel->parseStateChanged(LoginFailed);
        break;
    case reply::LoginPrompt::Failed:
        emit _viewModel->logMessage(tr(u"登录失败"));
        break;
    case reply::LoginPrompt::None:
        break;
    }
}
