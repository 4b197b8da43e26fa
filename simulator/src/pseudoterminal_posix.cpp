#include "pseudoterminal.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

namespace simulator {

namespace {

constexpr int kAbsentPollMs = 10; // an absent user cannot be waited for, only looked for
constexpr int kLongestWaitMs = 60000;
constexpr std::size_t kBuffer = 4096;

// The settings stay with the terminal, so it suffices to open it for the moment. It also marks the terminal as left:
// until a first opening the system does not tell an absent user from a silent one.
bool makeRaw(const char *path)
{
    const int slave = ::open(path, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (slave < 0)
        return false;
    termios settings{};
    const bool done = ::tcgetattr(slave, &settings) == 0;
    ::cfmakeraw(&settings);
    const bool set = done && ::tcsetattr(slave, TCSANOW, &settings) == 0;
    ::close(slave);
    return set;
}

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

} // namespace

PseudoTerminal::PseudoTerminal()
{
    if (::pipe(_wakeUp) != 0)
        return;
    for (const int end : _wakeUp) {
        ::fcntl(end, F_SETFL, O_NONBLOCK);
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    }
}

PseudoTerminal::~PseudoTerminal()
{
    close();
    for (const int end : _wakeUp) {
        if (end >= 0)
            ::close(end);
    }
}

bool PseudoTerminal::isAvailable()
{
    return true;
}

bool PseudoTerminal::open()
{
    close();
    _error.clear();
    _master = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    const char *const name =
        _master >= 0 && ::grantpt(_master) == 0 && ::unlockpt(_master) == 0 ? ::ptsname(_master) : nullptr;
    if (name == nullptr || !makeRaw(name)) {
        _error = systemError();
        close();
        return false;
    }
    _path = QString::fromLocal8Bit(name);
    return true;
}

void PseudoTerminal::close()
{
    if (_master >= 0)
        ::close(_master);
    _master = -1;
    _path.clear();
}

void PseudoTerminal::wake()
{
    const char byte = 0;
    // A full pipe wakes as well.
    if (::write(_wakeUp[1], &byte, 1) < 0)
        return;
}

PseudoTerminal::Events PseudoTerminal::wait(std::optional<std::chrono::milliseconds> time, bool wantsToWrite)
{
    const int limit =
        time ? static_cast<int>(std::min<std::chrono::milliseconds::rep>(time->count(), kLongestWaitMs)) : -1;
    pollfd entries[2] = {{_wakeUp[0], POLLIN, 0},
                         {_master, static_cast<short>(wantsToWrite ? POLLIN | POLLOUT : POLLIN), 0}};
    ::poll(entries, 2, limit);
    if (_master >= 0 && (entries[1].revents & (POLLHUP | POLLIN)) == POLLHUP)
    { // an absent user ends every wait at once
        ::poll(entries, 1, limit < 0 ? kAbsentPollMs : std::min(limit, kAbsentPollMs));
        ::poll(entries + 1, 1, 0);
    }
    std::array<char, 64> drain{};
    while (::read(_wakeUp[0], drain.data(), drain.size()) > 0) {
    }
    return {(entries[1].revents & POLLIN) != 0, _master >= 0 && (entries[1].revents & POLLHUP) == 0};
}

QByteArray PseudoTerminal::read()
{
    QByteArray bytes;
    std::array<char, kBuffer> buffer{};
    for (ssize_t count = 0; (count = ::read(_master, buffer.data(), buffer.size())) > 0;)
        bytes.append(buffer.data(), static_cast<int>(count));
    return bytes;
}

int PseudoTerminal::write(const QByteArray &bytes)
{
    const ssize_t count = ::write(_master, bytes.constData(), static_cast<std::size_t>(bytes.size()));
    return count > 0 ? static_cast<int>(count) : 0;
}

} // namespace simulator
