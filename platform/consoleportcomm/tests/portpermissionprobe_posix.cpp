// Gives up root's rights, if it has them, then opens the port that the argument names and prints why that does not
// work. The rights go here and not before the start, since the folder of this program may be root's alone.

#include <consoleportcomm/consoleportcomm.h>

#include <QtCore/QCoreApplication>

#include <unistd.h>
#ifdef Q_OS_LINUX
#include <sys/prctl.h>
#endif

#include <cstdio>

namespace {

constexpr uid_t kNobody = 65534;

bool giveUpRights()
{
    if (::geteuid() == 0 && ::setuid(kNobody) != 0)
        return false;
#ifdef Q_OS_LINUX
    ::prctl(PR_SET_DUMPABLE, 1); // the leak check at the end looks into its own process
#endif
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2 || !giveUpRights())
        return 1;
    const QCoreApplication application(argc, argv);
    ConsoleportComm comm;
    ConsoleportComm::startComThread();
    comm.open(QString::fromLocal8Bit(argv[1]), 9600);
    std::puts(comm.errorInfo().toUtf8().constData());
    ConsoleportComm::stopComThread();
    return 0;
}
