#include "scriptedplatform.h"

#include <basecomm/applicationthread.h>
#include <consoleportcomm/consoleportcomm.h>
#include <switchdevicebll/switchdevice.h>

#include <QtCore/QThread>

using recording::script;

namespace ovra {
namespace bll {

struct SwitchDevice::Private
{
    ConsoleportComm *const comm;
    ApplicationThread *const thread;
};

SwitchDevice *SwitchDevice::getInstance()
{
    static SwitchDevice *const device = new SwitchDevice;
    return device;
}

SwitchDevice::SwitchDevice()
    : _d(new Private{new ConsoleportComm(this), new ApplicationThread(QStringLiteral("recorded session"))})
{
    moveToThread(_d->thread->thread());
    _d->thread->setWanted(true);
}

bool SwitchDevice::connectToSerial(const QString &port, int baudRate, int parity, int stopBits, int flowControl)
{
    recording::record("connectToSerial", port, baudRate, parity, stopBits, flowControl);
    std::unique_lock<std::mutex> lock(script().lock);
    script().pass(RecordingPlatform::Slow::Opening, lock);
    return script().isOpenable;
}

void SwitchDevice::disConnectSerial()
{
    recording::record("disConnectSerial");
}

void SwitchDevice::sendControlCmd(const QByteArray &bytes)
{
    recording::record("sendControlCmd", bytes);
    std::function<void(const QByteArray &)> answer;
    {
        const std::lock_guard<std::mutex> guard(script().lock);
        script().sent.append(bytes);
        answer = script().answer;
    }
    if (answer)
        answer(bytes);
}

ConsoleportComm *SwitchDevice::getCommPtr() const
{
    const std::lock_guard<std::mutex> guard(script().lock);
    return script().hasComm ? _d->comm : nullptr;
}

} // namespace bll
} // namespace ovra
