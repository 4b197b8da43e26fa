#include "systemlimits.h"

#include <QtCore/QFile>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace systemlimits {

namespace {

constexpr uid_t kRoot = 0;
constexpr uid_t kNobody = 65534;

// The real user as well as the effective one, where the system lets a process keep the way back: access(), and with it
// QFileInfo, goes by the real one.
bool actAs(uid_t user)
{
#ifdef Q_OS_LINUX
    return setresuid(user, user, kRoot) == 0;
#else
    return seteuid(user) == 0;
#endif
}

} // namespace

UnprivilegedScope::UnprivilegedScope()
{
    _wasChanged = geteuid() == kRoot && actAs(kNobody);
    _isUnprivileged = geteuid() != kRoot;
}

UnprivilegedScope::~UnprivilegedScope()
{
    if (_wasChanged && !actAs(kRoot))
        qFatal("Cannot become the superuser again");
}

FileSizeLimit::FileSizeLimit(qint64 bytes)
{
    rlimit limit{};
    if (getrlimit(RLIMIT_FSIZE, &limit) != 0)
        return;
    _before = limit.rlim_cur;
    limit.rlim_cur = static_cast<rlim_t>(bytes);
    // Without this the first write beyond the limit would end the process instead of failing.
    std::signal(SIGXFSZ, SIG_IGN);
    _isInForce = setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

FileSizeLimit::~FileSizeLimit()
{
    rlimit limit{};
    if (!_isInForce || getrlimit(RLIMIT_FSIZE, &limit) != 0)
        return;
    limit.rlim_cur = static_cast<rlim_t>(_before);
    if (setrlimit(RLIMIT_FSIZE, &limit) != 0)
        qFatal("Cannot lift the limit of file sizes again");
}

bool makePipe(const QString &path)
{
    return mkfifo(QFile::encodeName(path).constData(), 0600) == 0;
}

bool makeSymbolicLink(const QString &target, const QString &path)
{
    return symlink(QFile::encodeName(target).constData(), QFile::encodeName(path).constData()) == 0;
}

QString fullDevice()
{
    const QString device = QStringLiteral("/dev/full");
    return QFile::exists(device) ? device : QString();
}

} // namespace systemlimits
