#include "porthub.h"

#include "portobject.h"

#include <QtCore/QThread>

#include <algorithm>

PortHub &PortHub::instance()
{
    static PortHub *const hub = new PortHub; // never deleted, like its thread
    return *hub;
}

PortHub::PortHub()
    : _thread(new ApplicationThread(
        QStringLiteral("console port"), [this] { openCounters(); }, [this] { retirePorts(); }))
{}

void PortHub::start()
{
    const std::lock_guard<std::mutex> guard(_countLock);
    ++_count;
    _thread->setWanted(true);
}

void PortHub::stop()
{
    const std::lock_guard<std::mutex> guard(_countLock);
    if (_count == 0 || --_count > 0)
        return;
    _thread->setWanted(false);
}

void PortHub::adopt(PortObject *port)
{
    port->moveToThread(_thread->thread());
    const std::lock_guard<std::mutex> guard(_portsLock);
    _ports.push_back(port);
    if (_serving)
        port->handover()->open();
}

void PortHub::release(PortObject *port, std::chrono::milliseconds limit)
{
    // Closed while it is still on the list, so that an ending thread closes it in any case.
    if (isPortThread())
        port->retire();
    else
        port->handover()->call([port](const PortHandover::ReplyPtr &) { port->retire(); }, limit);
    {
        const std::lock_guard<std::mutex> guard(_portsLock);
        _ports.erase(std::remove(_ports.begin(), _ports.end(), port), _ports.end());
    }
    port->deleteLater();
}

bool PortHub::isPortThread() const
{
    return QThread::currentThread() == _thread->thread();
}

// Open from the moment at which the thread is started: what is asked for before its event loop runs waits.
void PortHub::openCounters()
{
    const std::lock_guard<std::mutex> guard(_portsLock);
    _serving = true;
    for (PortObject *port : _ports)
        port->handover()->open();
}

void PortHub::retirePorts()
{
    const std::lock_guard<std::mutex> guard(_portsLock);
    _serving = false;
    for (PortObject *port : _ports)
        port->retire();
}
