// The serial connection and the login dialogue.
#include "switchdeviceviewmodel.h"
#include "switchdeviceviewmodel_p.h"

#include <switchdevicebll/switchdevice.h>

#include <QtCore/QMutexLocker>

bool SwitchDeviceViewModel::deviceCommunicate()
{
    emit signal_deviceCommunicate();
    return true;
}

void SwitchDeviceViewModel::disconnectDevice()
{
    _d->device->disConnectSerial();
    _d->receive.isLoggedIn = false;
    {
        const QMutexLocker locker(&_d->queue.lock);
        _d->queue.isOutstanding = false;
        _d->queue.currentBytes.clear();
        _d->queue.pending.clear();
    }
    emit showToast(lxTr(QStringLiteral("已断开连接")), 0);
}

QVariantList SwitchDeviceViewModel::refreshCOM()
{
    return QVariantList();
}

void SwitchDeviceViewModel::setUserPassword(const QByteArray &, const QByteArray &)
{
    // Accepted and ignored: the dialogue reads userText and passwordText.
}

void SwitchDeviceViewModel::slot_deviceCommunicate() {}

void SwitchDeviceViewModel::slot_readBack() {}

void SwitchDeviceViewModel::slot_threadFinished() {}

void SwitchDeviceViewModel::slot_handleParseState(ParseState) {}
