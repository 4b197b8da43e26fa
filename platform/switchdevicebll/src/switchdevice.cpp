#include <switchdevicebll/switchdevice.h>

#include <basecomm/applicationthread.h>
#include <consoleportcomm/consoleportcomm.h>
#include <switchdevicebll/translatemanage.h>

#include <QtCore/QThread>

namespace ovra {
namespace bll {

SwitchDevice *SwitchDevice::getInstance()
{
    static SwitchDevice *const device = new SwitchDevice;
    return device;
}

// The link comes first and brings the port thread: of two threads the younger one ends first with the application, and
// a session that is waiting for the port still gets its answer.
SwitchDevice::SwitchDevice()
    : _comm(new ConsoleportComm(this))
    , _sessionThread(new ApplicationThread(QStringLiteral("console session")))
{
    ConsoleportComm::setTranslator(OVRA::BLL::TranslateManage::getInstance()->getTranslator());
    moveToThread(_sessionThread->thread());
    _sessionThread->setWanted(true);
}

bool SwitchDevice::connectToSerial(const QString &port, int baudRate, int parity, int stopBits, int flowControl)
{
    return _comm->open(port, baudRate, parity, stopBits, flowControl);
}

void SwitchDevice::disConnectSerial()
{
    _comm->close();
}

ConsoleportComm *SwitchDevice::getCommPtr() const
{
    return _comm;
}

} // namespace bll
} // namespace ovra
