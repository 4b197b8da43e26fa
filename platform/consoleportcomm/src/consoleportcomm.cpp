#include <consoleportcomm/consoleportcomm.h>

#include "portdevices.h"
#include "porthub.h"
#include "portobject.h"

#include <QtCore/QIODevice>

#include <algorithm>
#include <chrono>
#include <cstdint>

namespace {

using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds kOpenLimit{5000};
constexpr Milliseconds kWriteLimit{2000};
constexpr Milliseconds kReleaseLimit{5000};
constexpr int kBitsPerByte = 10; // start bit, 8 data bits, stop bit

Milliseconds timeOnLine(int bytes, int baudRate)
{
    return Milliseconds(std::int64_t{1000} * kBitsPerByte * bytes / std::max(baudRate, 1));
}

} // namespace

struct ConsoleportComm::Private
{
    PortObject *const port = new PortObject; // handed to the hub, which deletes it
    const std::shared_ptr<PortStatus> status = port->status();
    const std::shared_ptr<PortHandover> handover = port->handover();

    bool fail(PortError::Kind kind, const QString &name, const QString &detail = {}) const
    {
        status->setError({kind, name, detail});
        return false;
    }

    PortHandover::Outcome call(const PortHandover::Work &work, Milliseconds limit) const
    {
        return PortHub::instance().isPortThread() ? PortHandover::callHere(work) : handover->call(work, limit);
    }
};

ConsoleportComm::ConsoleportComm(QObject *parent)
    : BaseComm(parent)
    , _d(std::make_unique<Private>())
{
    connect(_d->port, &PortObject::received, this, &ConsoleportComm::bytesReceived, Qt::DirectConnection);
    connect(_d->port, &PortObject::lost, this, &ConsoleportComm::portLost, Qt::DirectConnection);
    PortHub::instance().adopt(_d->port);
}

ConsoleportComm::~ConsoleportComm()
{
    close();
    PortHub::instance().release(_d->port, kReleaseLimit);
}

void ConsoleportComm::startComThread()
{
    PortHub::instance().start();
}

void ConsoleportComm::stopComThread()
{
    PortHub::instance().stop();
}

QVariantList ConsoleportComm::getCOMList()
{
    QVariantList list;
    const QStringList names = portdevices::names();
    for (const QString &name : names)
        list << name;
    return list;
}

bool ConsoleportComm::registerPort(const QString &name, DeviceFactory factory)
{
    return portdevices::add(name, std::move(factory));
}

void ConsoleportComm::unregisterPort(const QString &name)
{
    portdevices::remove(name);
}

void ConsoleportComm::setTranslator(const lumen::trans::Translator *translator)
{
    setPortTextTranslator(translator);
}

bool ConsoleportComm::open(const QString &port, int baudRate, int parity, int stopBits, int flowControl)
{
    close();
    if (port.isEmpty())
        return _d->fail(PortError::Kind::NoPortChosen, port);
    if (baudRate <= 0)
        return _d->fail(PortError::Kind::BadBaudRate, port, QString::number(baudRate));
    if (parity != 0 || stopBits != 0 || flowControl != 0)
        return _d->fail(PortError::Kind::UnsupportedSettings, port);

    // What stays if the opening is given up on the way, by close() or by the end of the thread.
    _d->fail(PortError::Kind::OpenRevoked, port);
    const auto work = [object = _d->port, port, baudRate, closings = _d->status->closings.load()](
                          const PortHandover::ReplyPtr &reply) { object->openPort(port, baudRate, closings, reply); };
    switch (_d->call(work, kOpenLimit)) {
    case PortHandover::Outcome::Done:
        return true;
    case PortHandover::Outcome::Failed:
        return false;
    case PortHandover::Outcome::TimedOut:
        return _d->fail(PortError::Kind::OpenTimedOut, port);
    case PortHandover::Outcome::Refused:
        return _d->fail(PortError::Kind::ThreadNotRunning, port);
    }
    return false;
}

void ConsoleportComm::close()
{
    ++_d->status->closings;
    _d->status->connected = false;
    _d->handover->dismissReaders();
    _d->handover->post([object = _d->port](const PortHandover::ReplyPtr &) { object->closePort(); });
}

bool ConsoleportComm::getIsConnected() const
{
    return _d->status->connected;
}

QString ConsoleportComm::errorInfo() const
{
    return _d->status->error().text();
}

bool ConsoleportComm::rawWrite(const QByteArray &bytes)
{
    if (!getIsConnected())
        return _d->fail(PortError::Kind::NotOpen, QString());

    const auto work = [object = _d->port, bytes](const PortHandover::ReplyPtr &reply) { object->write(bytes, reply); };
    const Milliseconds limit = kWriteLimit + timeOnLine(bytes.size(), _d->status->baudRate);
    switch (_d->call(work, limit)) {
    case PortHandover::Outcome::Done:
        return true;
    case PortHandover::Outcome::Failed: // the port object has said why, unless it was told to close meanwhile
        return _d->status->error().kind == PortError::Kind::None && _d->fail(PortError::Kind::NotOpen, QString());
    case PortHandover::Outcome::TimedOut:
        _d->handover->post([object = _d->port](const PortHandover::ReplyPtr &) { object->discardWrites(); });
        return _d->fail(PortError::Kind::WriteTimedOut, _d->status->port());
    case PortHandover::Outcome::Refused:
        return _d->fail(PortError::Kind::NotOpen, QString());
    }
    return false;
}

QByteArray ConsoleportComm::timedRead(int timeoutMs)
{
    const unsigned visit = _d->handover->visit(); // before the look at the port: it may be closed right behind that
    if (!getIsConnected())
        return {};
    // The port thread would wait for itself.
    const int limit = PortHub::instance().isPortThread() ? 0 : std::max(timeoutMs, 0);
    return QByteArray::fromStdString(_d->handover->awaitReceived(Milliseconds(limit), visit));
}
