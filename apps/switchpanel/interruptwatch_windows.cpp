#include "interruptwatch.h"

#include <atomic>

#include <windows.h>

namespace {

// The one watch that lives; the console calls its handler on a thread of its own.
std::atomic<InterruptWatch *> watching{nullptr};

BOOL WINAPI onConsoleEvent(DWORD event)
{
    if (event != CTRL_C_EVENT)
        return FALSE;
    InterruptWatch *watch = watching.exchange(nullptr);
    if (!watch)
        return FALSE; // the second time: end the program
    QMetaObject::invokeMethod(watch, &InterruptWatch::interrupted, Qt::QueuedConnection);
    return TRUE;
}

} // namespace

struct InterruptWatch::Private
{};

InterruptWatch::InterruptWatch(QObject *parent)
    : QObject(parent)
    , _d(new Private)
{
    watching = this;
    SetConsoleCtrlHandler(onConsoleEvent, TRUE);
}

InterruptWatch::~InterruptWatch()
{
    // Taking the handler away waits for one that runs.
    SetConsoleCtrlHandler(onConsoleEvent, FALSE);
    watching = nullptr;
}
