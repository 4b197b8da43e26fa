#include "portobject.h"

#include "portdevices.h"

#include <QtCore/QDebug>
#include <QtCore/QMutexLocker>

#include <algorithm>

QString PortStatus::port() const
{
    const QMutexLocker guard(&_lock);
    return _port;
}

void PortStatus::setPort(const QString &port)
{
    const QMutexLocker guard(&_lock);
    _port = port;
}

PortError PortStatus::error() const
{
    const QMutexLocker guard(&_lock);
    return _error;
}

void PortStatus::setError(const PortError &error)
{
    const QMutexLocker guard(&_lock);
    _error = error;
}

PortObject::PortObject()
    : _status(std::make_shared<PortStatus>())
    , _handover(std::make_shared<PortHandover>([this] {
        QMetaObject::invokeMethod(
            this, [this] { _handover->serve(); }, Qt::QueuedConnection);
    }))
{}

PortObject::~PortObject()
{
    retire();
}

void PortObject::openPort(const QString &port, int baudRate, unsigned closings, const PortHandover::ReplyPtr &reply)
{
    closePort();
    if (_status->closings != closings)
        return;

    PortError error;
    std::unique_ptr<QIODevice> device = portdevices::open(port, baudRate, &error);
    if (reply->isAbandoned()) // opening can take as long as the driver likes
        return;
    if (!device) {
        qWarning().noquote() << error.text();
        _status->setError(error);
        return;
    }

    _port = port;
    _status->setPort(port);
    _status->baudRate = baudRate;
    _status->setError({});
    adopt(std::move(device));
    qInfo().noquote() << portText(QStringLiteral("串口 %1 已打开，波特率 %2")).arg(port, QString::number(baudRate));

    // In this order: whoever revokes after the look clears the flag after it was set.
    _status->connected = true;
    if (_status->closings != closings) {
        _status->setError({PortError::Kind::OpenRevoked, port, QString()});
        closePort();
        return;
    }
    if (!reply->finish(true)) {
        _status->setError({PortError::Kind::OpenTimedOut, port, QString()});
        closePort();
    }
}

void PortObject::adopt(std::unique_ptr<QIODevice> device)
{
    _losing = false;
    _device = std::move(device);
    connect(_device.get(), &QIODevice::readyRead, this, &PortObject::readDevice);
    connect(_device.get(), &QIODevice::bytesWritten, this, &PortObject::countWritten);
    portdevices::watchForEnd(*_device, this, [this](const QString &reason) {
        if (_losing) // a dead port may report without end
            return;
        _losing = true;
        // Later, since the report comes from inside the device. The device may be another one by then.
        QMetaObject::invokeMethod(
            this,
            [this, reason] {
                if (_losing)
                    loseDevice(reason);
            },
            Qt::QueuedConnection);
    });
}

void PortObject::closePort()
{
    if (!_device)
        return;
    dropDevice();
    qInfo().noquote() << portText(QStringLiteral("串口 %1 已关闭")).arg(_port);
}

void PortObject::dropDevice()
{
    _status->connected = false;
    _losing = false;
    _device->disconnect(this);
    _device->close();
    _device.reset();
    _writes.clear(); // which fails them
    _handover->forgetReceived();
    _handover->dismissReaders();
}

void PortObject::loseDevice(const QString &reason)
{
    readDevice(); // the switch's last words
    const PortError error{PortError::Kind::Vanished, _port, reason};
    qWarning().noquote() << error.text();
    _status->setError(error);
    dropDevice();
    emit lost();
}

void PortObject::readDevice()
{
    const QByteArray bytes = _device->readAll();
    if (bytes.isEmpty())
        return;
    _handover->addReceived(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    emit received(bytes);
}

void PortObject::write(const QByteArray &bytes, const PortHandover::ReplyPtr &reply)
{
    if (!_device) {
        _status->setError({PortError::Kind::NotOpen, _port, QString()});
        return;
    }
    _handover->forgetReceived();
    if (bytes.isEmpty()) {
        reply->finish(true);
        return;
    }
    // Noted before the write: a device without a buffer reports the bytes from inside of it.
    _writes.push_back({bytes.size(), reply});
    if (_device->write(bytes) < 0) {
        _status->setError({PortError::Kind::WriteFailed, _port, _device->errorString()});
        _writes.pop_back();
    }
}

void PortObject::countWritten(qint64 bytes)
{
    while (bytes > 0 && !_writes.empty()) {
        PendingWrite &first = _writes.front();
        const qint64 share = std::min(bytes, first.bytesLeft);
        first.bytesLeft -= share;
        bytes -= share;
        if (first.bytesLeft == 0) {
            first.reply->finish(true);
            _writes.pop_front();
        }
    }
}

void PortObject::discardWrites()
{
    if (!_device || _writes.empty())
        return;
    portdevices::discardUnsent(*_device);
    _writes.clear();
}

void PortObject::retire()
{
    _handover->close();
    closePort();
}
