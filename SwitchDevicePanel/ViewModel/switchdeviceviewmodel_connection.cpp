// The serial connection and the login dialogue.
#include "switchdeviceviewmodel.h"
#include "switchdeviceviewmodel_p.h"

#include "commandblock.h"
#include "debuglog.h"
#include "huaweireplyparser.h"

#include <consoleportcomm/consoleportcomm.h>
#include <switchdevicebll/switchdevice.h>
#include <switchdevicebll/switchdeviceconfig.h>

#include <QtCore/QMutexLocker>

#include <functional>
#include <thread>
#include <utility>

namespace {

constexpr std::chrono::milliseconds kCredentialInterval{1000};
constexpr std::chrono::milliseconds kReadBackDelay{500};
constexpr int kReadBackTimeoutMs = 3000;

// States of showToast().
constexpr int kInformation = 0;
constexpr int kSuccess = 1;
constexpr int kReadBackFailure = 3;

void endTimer(QTimer *&timer)
{
    if (!timer)
        return;
    timer->stop();
    timer->disconnect();
    timer->deleteLater();
    timer = nullptr;
}

// The work of the read-back's own thread, which knows the view model by its callbacks only.
void checkConnection(const BaseComm *comm, const std::function<bool()> &check,
                     const std::function<void(bool isAlive)> &report)
{
    report(comm && comm->getIsConnected() && check());
}

} // namespace

bool SwitchDeviceViewModel::deviceCommunicate()
{
    emit signal_deviceCommunicate();
    return true;
}

// The port is opened on the console session's thread: opening may take seconds.
void SwitchDeviceViewModel::slot_deviceCommunicate()
{
    emit showToast(QString(), kInformation);
    const auto open = [self = _d->self, device = _d->device, port = _d->connection.currentCom,
                       baudRate = _d->connection.baudRate, session = currentSession()] {
        if (!self->isWanted(session))
            return;
        const bool isOpen = device->connectToSerial(port, baudRate, 0, 0, 0);
        const QMutexLocker locker(&self->lock);
        SwitchDeviceViewModel *const viewModel = self->viewModel;
        if (!viewModel)
            return;
        if (isOpen) {
            QMetaObject::invokeMethod(
                viewModel, [viewModel, session] { viewModel->wakeConsole(session); }, Qt::QueuedConnection);
            return;
        }
        const ConsoleportComm *const comm = device->getCommPtr();
        const QString reason = comm ? comm->errorInfo() : QString();
        emit viewModel->showToast(viewModel->lxTr(QStringLiteral("串口打开失败")) + reason, kInformation);
    };
    QMetaObject::invokeMethod(_d->device, open, Qt::QueuedConnection);
}

int SwitchDeviceViewModel::currentSession() const
{
    return _d->self->session.loadRelaxed();
}

// Makes the switch print its prompt, unless the connection was ended while it was being made.
void SwitchDeviceViewModel::wakeConsole(int session)
{
    CommandQueue &queue = _d->queue;
    if (session != currentSession())
        return;
    ++queue.wakeUps;
    if (std::exchange(queue.wokenSession, session) != session)
        _d->receive.isLoggedIn = false; // a prompt of the connection before may have arrived since that one's end
    enqueueCommand(QStringLiteral("connect_cmd"), QByteArrayLiteral("\r\n"));
}

void SwitchDeviceViewModel::disconnectDevice()
{
    _d->self->session.fetchAndAddRelaxed(1);
    _d->device->disConnectSerial();
    _d->receive.isLoggedIn = false; // the next connection reports its login again
    _d->queue.isSentInSession = false;
    {
        const QMutexLocker locker(&_d->queue.lock);
        _d->queue.isOutstanding = false;
        _d->queue.currentBytes.clear();
        _d->queue.pending.clear();
    }
    // An export that a pulled cable has ended must not keep later ones from starting.
    _d->files.isExportRunning = false;
    endTimer(_d->connection.userNameTimer);
    endTimer(_d->connection.passwordTimer);
    emit showToast(lxTr(QStringLiteral("已断开连接")), kInformation);
}

QVariantList SwitchDeviceViewModel::refreshCOM()
{
    return ConsoleportComm::getCOMList();
}

void SwitchDeviceViewModel::setUserPassword(const QByteArray &, const QByteArray &)
{
    // Accepted and ignored: the dialogue reads userText and passwordText.
}

void SwitchDeviceViewModel::slot_threadFinished()
{
    const ReopenSettings &reopen = _d->reopen;
    _d->device->connectToSerial(reopen.port, reopen.a, reopen.d, reopen.b, reopen.c);
}

void SwitchDeviceViewModel::slot_handleParseState(ParseState state)
{
    switch (state) {
    case NeedUsername:
        requestUserName();
        break;
    case NeedPassword:
        requestPassword();
        break;
    case LoginSuccess:
        emit showToast(lxTr(QStringLiteral("已连console端口:")) + _d->connection.currentCom, kSuccess);
        sendPortListing();
        break;
    case LoginFailed:
        // Sent in the case only that nothing is outstanding: the disconnect empties the queue.
        enqueueCommand(lxTr(QStringLiteral("用户名")), _d->connection.passwordText.toUtf8() + "\r\n");
        disconnectDevice();
        emit showToast(lxTr(QStringLiteral("登录失败,检查用户名或者密码后重新连接")), kInformation);
        break;
    case InputMore:
        enqueueCommand(QStringLiteral("enter"), QByteArrayLiteral("\r\n"));
        break;
    case ConnectSuccess:
        emit showToast(lxTr(QStringLiteral("已连console端口:")) + _d->connection.currentCom, kSuccess);
        break;
    case CurrentConfiguration:
        enqueueCommand(QStringLiteral("--more--"), QByteArrayLiteral("    \r\n"));
        break;
    case ConfigInfo:
        enqueueCommand(QStringLiteral("--cinfig yes--"), QByteArrayLiteral("Y\r\nquit\r\nquit\r\n"));
        break;
    case NeedConfirmPassword:
    case ParseSuccess:
    case Unknown:
        break;
    }
}

void SwitchDeviceViewModel::requestUserName()
{
    emit currentconnectTypeChanged(Login);
    ConnectionSettings &connection = _d->connection;
    if (!connection.userText.isEmpty()) {
        endTimer(connection.userNameTimer);
        sendUserName();
        return;
    }
    if (connection.userNameTimer)
        return;
    connection.userNameTimer = new QTimer(this);
    connection.userNameTimer->setInterval(kCredentialInterval);
    connect(connection.userNameTimer, &QTimer::timeout, this, [this] {
        if (_d->connection.userText.isEmpty()) {
            logDebug() << "_userName is null";
            emit showToast(lxTr(QStringLiteral("请先设置用户名")), kInformation);
            return;
        }
        logDebug() << "user name:" << _d->connection.userText;
        sendUserName();
        endTimer(_d->connection.userNameTimer);
    });
    connection.userNameTimer->start();
}

void SwitchDeviceViewModel::requestPassword()
{
    emit currentconnectTypeChanged(Login);
    ConnectionSettings &connection = _d->connection;
    if (!connection.passwordText.isEmpty()) {
        endTimer(connection.passwordTimer);
        sendPassword();
        return;
    }
    if (connection.passwordTimer)
        return;
    connection.passwordTimer = new QTimer(this);
    connection.passwordTimer->setInterval(kCredentialInterval);
    connect(connection.passwordTimer, &QTimer::timeout, this, [this] {
        if (_d->connection.passwordText.isEmpty()) {
            logDebug() << "_password is null";
            emit showToast(lxTr(QStringLiteral("请先设置密码")), kInformation);
            return;
        }
        sendPassword();
        endTimer(_d->connection.passwordTimer);
    });
    connection.passwordTimer->start();
}

void SwitchDeviceViewModel::sendUserName()
{
    enqueueCommand(QStringLiteral("login_cmd"), _d->connection.userText.toUtf8() + "\r\n");
    emit showToast(lxTr(QStringLiteral("用户名登录中")), kInformation);
}

void SwitchDeviceViewModel::sendPassword()
{
    enqueueCommand(QStringLiteral("password_cmd"), _d->connection.passwordText.toUtf8() + "\r\n");
    emit showToast(lxTr(QStringLiteral("密码登录中")), kInformation);
}

void SwitchDeviceViewModel::sendPortListing()
{
    const QStringList commands = ovra::bll::SwitchDeviceConfig::getInstance()->getPortStatusCommands();
    enqueueCommand(lxTr(reply::kPortListingLabel.toString()), commandBlock(commands, PageKeys::Bare));
}

// Twice on purpose: once on a thread of its own, once here, where it holds up the interface.
void SwitchDeviceViewModel::slot_readBack()
{
    emit isShowLoader(true, lxTr(QStringLiteral("回读中...")));

    const auto report = [self = _d->self](bool isAlive) {
        const QMutexLocker locker(&self->lock);
        SwitchDeviceViewModel *const viewModel = self->viewModel;
        if (!viewModel)
            return;
        emit viewModel->isShowLoader(false, QString());
        if (!isAlive)
            emit viewModel->showToast(viewModel->lxTr(QStringLiteral("回读失败")), kReadBackFailure);
    };
    std::thread(checkConnection, _d->device->getCommPtr(), &readBackPara, report).detach();

    const bool isAlive = readBackPara();
    emit isShowLoader(false, QString());
    if (!isAlive)
        emit showToast(lxTr(QStringLiteral("回读失败")), kReadBackFailure);
}

// True also when the switch says nothing: a silent line is not told from a slow one here.
bool SwitchDeviceViewModel::readBackPara()
{
    ConsoleportComm *const comm = ovra::bll::SwitchDevice::getInstance()->getCommPtr();
    if (!comm || !comm->rawWrite(QByteArrayLiteral("\r")))
        return false;
    std::this_thread::sleep_for(kReadBackDelay);
    const QByteArray bytes = comm->timedRead(kReadBackTimeoutMs);
    logDebug() << "read back para" << bytes;
    return true;
}
