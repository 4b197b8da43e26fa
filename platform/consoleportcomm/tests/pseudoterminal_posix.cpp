#include "pseudoterminal_posix.h"

#include <QtCore/QElapsedTimer>

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

namespace {

constexpr int kLimitMs = 10000;

// The slave's settings are kept by the terminal itself, so it suffices to open it for the moment.
void makeRaw(const char *path)
{
    const int slave = ::open(path, O_RDWR | O_NOCTTY);
    termios settings{};
    if (slave >= 0 && ::tcgetattr(slave, &settings) == 0) {
        ::cfmakeraw(&settings);
        ::tcsetattr(slave, TCSANOW, &settings);
    }
    if (slave >= 0)
        ::close(slave);
}

} // namespace

PseudoTerminal::PseudoTerminal()
{
    _master = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    if (_master < 0 || ::grantpt(_master) != 0 || ::unlockpt(_master) != 0)
        return;
    const char *const name = ::ptsname(_master);
    if (name == nullptr)
        return;
    makeRaw(name);
    _path = QString::fromLocal8Bit(name);
}

PseudoTerminal::~PseudoTerminal()
{
    close();
}

bool PseudoTerminal::isValid() const
{
    return !_path.isEmpty();
}

QString PseudoTerminal::path() const
{
    return _path;
}

bool PseudoTerminal::send(const QByteArray &bytes)
{
    return ::write(_master, bytes.constData(), static_cast<size_t>(bytes.size())) == bytes.size();
}

QByteArray PseudoTerminal::take(int atLeast)
{
    QByteArray taken;
    QElapsedTimer timer;
    timer.start();
    do {
        pollfd entry{_master, POLLIN, 0};
        ::poll(&entry, 1, atLeast > 0 ? 10 : 0);
        char buffer[4096];
        for (ssize_t n = 0; (n = ::read(_master, buffer, sizeof buffer)) > 0;)
            taken.append(buffer, static_cast<int>(n));
    } while (taken.size() < atLeast && timer.elapsed() < kLimitMs);
    return taken;
}

void PseudoTerminal::close()
{
    if (_master >= 0)
        ::close(_master);
    _master = -1;
}
