// Leaves the process in the way that the argument names, while the port thread is wanted. Whoever starts this program
// looks at its exit status and at the time that it takes.

#include <consoleportcomm/consoleportcomm.h>

#include <QtCore/QBuffer>
#include <QtCore/QCoreApplication>

#include <cstdlib>
#include <memory>
#include <string>

namespace {

constexpr int kPortDead = 3;

// Not deleted: at the end of the process it is still there, with its port open.
bool openPort()
{
    static auto *const comm = new ConsoleportComm;
    return comm->open(QStringLiteral("probe"), 9600);
}

} // namespace

int main(int argc, char **argv)
{
    const std::string way = argc > 1 ? argv[1] : "";
    ConsoleportComm::registerPort(QStringLiteral("probe"), [] { return std::make_unique<QBuffer>(); });
    ConsoleportComm::startComThread();
    if (way == "no application")
        return openPort() ? kPortDead : 0;

    auto application = std::make_unique<QCoreApplication>(argc, argv);
    if (!openPort())
        return kPortDead;
    if (way == "second application") {
        application.reset();
        if (openPort())
            return kPortDead;
        application = std::make_unique<QCoreApplication>(argc, argv);
        return openPort() ? 0 : kPortDead;
    }
    if (way == "exit")
        std::exit(0); // the application is not destroyed then
    if (way == "application abandoned")
        static_cast<void>(application.release());
    return 0;
}
