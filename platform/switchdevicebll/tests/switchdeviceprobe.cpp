// Leaves the process in the way that the argument names, with the console session running. Whoever starts this program
// looks at its exit status and at the time that it takes.

#include <switchdevicebll/switchdevice.h>

#include <consoleportcomm/consoleportcomm.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QSemaphore>
#include <QtCore/QThread>

#include <cstdlib>
#include <memory>
#include <string>

using ovra::bll::SwitchDevice;

namespace {

constexpr int kNoSession = 3;

// Whether a job that is posted to the session is done.
bool sessionRuns()
{
    auto done = std::make_shared<QSemaphore>();
    QMetaObject::invokeMethod(
        SwitchDevice::getInstance(), [done] { done->release(); }, Qt::QueuedConnection);
    return done->tryAcquire(1, 10000);
}

} // namespace

int main(int argc, char **argv)
{
    const std::string way = argc > 1 ? argv[1] : "";
    if (way == "no application") {
        SwitchDevice *const device = SwitchDevice::getInstance();
        device->disConnectSerial();
        return device->thread()->isRunning() ? kNoSession : 0;
    }
    if (way == "created before the application")
        SwitchDevice::getInstance();

    auto application = std::make_unique<QCoreApplication>(argc, argv);
    if (!sessionRuns())
        return kNoSession;
    if (way == "second application") {
        for (int i = 0; i < 3; ++i) {
            application.reset();
            if (SwitchDevice::getInstance()->thread()->isRunning())
                return kNoSession;
            application = std::make_unique<QCoreApplication>(argc, argv);
            if (!sessionRuns())
                return kNoSession;
        }
    }
    if (way == "used after the application") {
        application.reset();
        SwitchDevice::getInstance()->disConnectSerial();
        return SwitchDevice::getInstance()->connectToSerial(QStringLiteral("x"), 9600, 0, 0, 0) ? kNoSession : 0;
    }
    if (way == "busy at the end") {
        QMetaObject::invokeMethod(
            SwitchDevice::getInstance(), [] { QThread::msleep(500); }, Qt::QueuedConnection);
        return 0;
    }
    if (way == "exit")
        std::exit(0); // the application is not destroyed then
    if (way == "application abandoned")
        static_cast<void>(application.release());
    return 0;
}
