#pragma once

#include <basecomm/applicationthread.h>

#include <chrono>
#include <mutex>
#include <vector>

class PortObject;

/// The port thread, who wants it, and what lives on it. Any thread.
class PortHub final
{
public:
    static PortHub &instance();

    void start();
    void stop();

    /// Takes the port over from the calling thread.
    void adopt(PortObject *port);

    /// Closes the port and has it deleted by the port thread, when that runs next. Waits `limit` for the closing.
    void release(PortObject *port, std::chrono::milliseconds limit);

    bool isPortThread() const;

private:
    PortHub();
    ~PortHub() = default;

    void openCounters();
    void retirePorts();

    std::mutex _countLock; // guards _count; taken before the thread's own lock and before _portsLock
    int _count = 0;
    std::mutex _portsLock; // guards _ports and _serving
    std::vector<PortObject *> _ports;
    bool _serving = false;
    ApplicationThread *const _thread;
};
