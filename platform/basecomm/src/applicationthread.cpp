#include <basecomm/applicationthread.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QDebug>
#include <QtCore/QLoggingCategory>
#include <QtCore/QThread>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <vector>

namespace {

constexpr std::chrono::milliseconds kStopLimit{10000};

// Every thread of this kind, in order of creation, and whether an application exists.
struct Registry
{
    std::mutex lock;
    std::vector<ApplicationThread *> threads;
    bool applicationExists = false;
};

Registry &registry()
{
    static Registry *const theRegistry = new Registry; // outlives all static objects
    return *theRegistry;
}

// Returns the threads to tell. They are told without the lock, since what they still do may create another one.
std::vector<ApplicationThread *> noteApplication(bool exists)
{
    Registry &all = registry();
    const std::lock_guard<std::mutex> guard(all.lock);
    all.applicationExists = exists;
    return all.threads;
}

QObject *doormanFor(QThread *thread)
{
    auto *doorman = new QObject;
    doorman->moveToThread(thread);
    return doorman;
}

} // namespace

ApplicationThread::ApplicationThread(const QString &name, Hook beforeStart, Hook beforeStop)
    : _beforeStart(std::move(beforeStart))
    , _beforeStop(std::move(beforeStop))
    , _thread(new QThread)
    , _doorman(doormanFor(_thread))
{
    _thread->setObjectName(name);

    // Called for the application that exists now, if any, and for every later one.
    static std::once_flag hooked;
    std::call_once(hooked, [] { qAddPreRoutine(&ApplicationThread::applicationStarts); });

    Registry &all = registry();
    const std::lock_guard<std::mutex> guard(all.lock);
    all.threads.push_back(this);
    _applicationExists = all.applicationExists;
}

QThread *ApplicationThread::thread() const
{
    return _thread;
}

void ApplicationThread::setWanted(bool wanted)
{
    const std::lock_guard<std::mutex> guard(_lock);
    _wanted = wanted;
    adjust();
}

void ApplicationThread::applicationStarts()
{
    qAddPostRoutine(&ApplicationThread::applicationEnds); // Qt forgets it with each application
#ifndef Q_OS_WIN
    // What the first log message creates must be there before: of static objects and exit functions, the younger goes
    // first.
    QLoggingCategory::defaultCategory();
    // For processes that end without destroying their application: a thread that still ran would run on without Qt's
    // static objects. On Windows all other threads have gone by then.
    std::atexit(&ApplicationThread::applicationEnds);
#endif
    for (ApplicationThread *thread : noteApplication(true))
        thread->setApplicationExists(true);
}

void ApplicationThread::applicationEnds()
{
    // Last come, first gone: a thread may still need one that was there before it to finish its work.
    const std::vector<ApplicationThread *> threads = noteApplication(false);
    std::for_each(threads.rbegin(), threads.rend(),
                  [](ApplicationThread *thread) { thread->setApplicationExists(false); });
}

void ApplicationThread::setApplicationExists(bool exists)
{
    const std::lock_guard<std::mutex> guard(_lock);
    _applicationExists = exists;
    adjust();
}

void ApplicationThread::adjust()
{
    const bool run = _wanted && _applicationExists;
    if (run && !_started)
        start();
    else if (!run && _started)
        stop();
}

void ApplicationThread::start()
{
    // Still on its way out if it was the thread itself that no longer wanted to run, or if a job outlasted the limit.
    if (_thread->isRunning() && !_thread->wait(QDeadlineTimer(kStopLimit))) {
        qWarning().noquote() << "the thread" << _thread->objectName() << "is still busy and cannot be started again";
        return;
    }
    if (_beforeStart)
        _beforeStart();
    _thread->start();
    _started = true;
}

void ApplicationThread::stop()
{
    _started = false;
    const auto finish = [this] {
        if (_beforeStop)
            _beforeStop();
        _thread->quit();
    };
    if (_thread == QThread::currentThread()) {
        finish();
        return;
    }
    // As a job, because quit() is lost on a thread whose event loop has yet to begin.
    QMetaObject::invokeMethod(_doorman, finish, Qt::QueuedConnection);
    if (!_thread->wait(QDeadlineTimer(kStopLimit)))
        qWarning().noquote() << "the thread" << _thread->objectName() << "does not end; it is left to itself";
}
