#pragma once

#include <basecomm/basecomm_export.h>

#include <QtCore/QString>

#include <functional>
#include <mutex>

class QObject;
class QThread;

/// A thread with an event loop for objects that live as long as the process.
///
/// It runs while it is wanted and a QCoreApplication exists: it starts with the application (or at once, when that is
/// there already), ends before the application goes or the process exits, and starts again with the next one. Objects
/// that were moved to it stay on it through all that; what is posted to them meanwhile waits. So a singleton needs to
/// know neither whether an application exists yet nor whether it still does.
///
/// Made for singletons: create it with `new` and never delete it. All functions may be called from any thread, but not
/// from inside one of the two hooks.
class BASECOMM_EXPORT ApplicationThread final
{
public:
    using Hook = std::function<void()>;

    /// `name` is shown by debuggers. `beforeStart` is called by whoever starts the thread, just before it starts;
    /// `beforeStop` on the thread itself, as the last thing that it does.
    explicit ApplicationThread(const QString &name, Hook beforeStart = {}, Hook beforeStop = {});
    ~ApplicationThread() = delete;
    ApplicationThread(const ApplicationThread &) = delete;
    ApplicationThread &operator=(const ApplicationThread &) = delete;

    /// The thread to move objects to. It is the same one for the whole life of the process.
    QThread *thread() const;

    /// Says whether anybody needs the thread (at first nobody does). Not wanted: when this returns, the thread has
    /// ended, unless the call came from the thread itself or a job on it took longer than 10 s, which is reported as a
    /// warning.
    void setWanted(bool wanted);

private:
    static void applicationStarts();
    static void applicationEnds();

    void setApplicationExists(bool exists);
    void adjust();
    void start();
    void stop();

    const Hook _beforeStart;
    const Hook _beforeStop;
    QThread *const _thread;
    QObject *const _doorman; // lives on the thread; the context of the job that ends it
    std::mutex _lock;        // guards the three flags, and is held while the thread starts and ends
    bool _wanted = false;
    bool _applicationExists = false;
    bool _started = false;
};
