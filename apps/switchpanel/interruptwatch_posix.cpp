#include "interruptwatch.h"

#include <QtCore/QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

// Written by the signal handler, which may call next to nothing: a byte into a pipe that the event loop watches.
volatile std::sig_atomic_t handlerPipe = -1;

void onSignal(int /*number*/)
{
    const int savedError = errno;
    const char byte = 0;
    // A full pipe already says what this byte would say.
    [[maybe_unused]] const ssize_t written = ::write(handlerPipe, &byte, 1);
    errno = savedError;
}

void prepareEnd(int descriptor)
{
    ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
    ::fcntl(descriptor, F_SETFD, FD_CLOEXEC);
}

} // namespace

struct InterruptWatch::Private
{
    std::array<int, 2> pipe{-1, -1}; // read end, write end
    std::unique_ptr<QSocketNotifier> notifier;
    struct sigaction previous = {};
    bool isInstalled = false;
};

InterruptWatch::InterruptWatch(QObject *parent)
    : QObject(parent)
    , _d(new Private)
{
    ::sigaction(SIGINT, nullptr, &_d->previous);
    if (_d->previous.sa_handler == SIG_IGN || ::pipe(_d->pipe.data()) != 0)
        return;
    for (const int end : _d->pipe)
        prepareEnd(end);
    _d->notifier = std::make_unique<QSocketNotifier>(_d->pipe[0], QSocketNotifier::Read);
    connect(_d->notifier.get(), &QSocketNotifier::activated, this, [this] {
        _d->notifier->setEnabled(false);
        emit interrupted();
    });

    handlerPipe = _d->pipe[1];
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART; // the second Ctrl-C finds the usual handling
    sigemptyset(&action.sa_mask);
    _d->isInstalled = ::sigaction(SIGINT, &action, nullptr) == 0;
}

InterruptWatch::~InterruptWatch()
{
    if (_d->isInstalled)
        ::sigaction(SIGINT, &_d->previous, nullptr);
    handlerPipe = -1;
    _d->notifier.reset();
    for (const int end : _d->pipe) {
        if (end >= 0)
            ::close(end);
    }
}
