#pragma once

#include "porterror.h"
#include "porthandover.h"

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>
#include <QtCore/QMutex>
#include <QtCore/QObject>

#include <atomic>
#include <deque>
#include <memory>

/// What a port and its users know together. Any thread.
class PortStatus
{
public:
    std::atomic<bool> connected{false};
    /// Raised by every closing that is asked for: an opening that began under a lower number has been revoked.
    std::atomic<unsigned> closings{0};
    std::atomic<int> baudRate{9600};

    /// The name of the port that was opened last.
    QString port() const;
    void setPort(const QString &port);

    PortError error() const;
    void setError(const PortError &error);

private:
    mutable QMutex _lock; // guards both
    QString _port;
    PortError _error;
};

/// The port itself. Lives on the port thread and is used by nothing else; others reach it through the counter.
class PortObject final : public QObject
{
    Q_OBJECT

public:
    PortObject();
    ~PortObject() override;

    const std::shared_ptr<PortStatus> &status() const { return _status; }
    const std::shared_ptr<PortHandover> &handover() const { return _handover; }

    void openPort(const QString &port, int baudRate, unsigned closings, const PortHandover::ReplyPtr &reply);
    void closePort();
    void write(const QByteArray &bytes, const PortHandover::ReplyPtr &reply);

    /// Gives up all writing in progress, when a caller has waited long enough for it.
    void discardWrites();

    /// The thread is about to end: closes the counter and the port.
    void retire();

signals:
    void received(const QByteArray &bytes);
    void lost();

private:
    struct PendingWrite
    {
        qint64 bytesLeft = 0;
        PortHandover::ReplyPtr reply;
    };

    void adopt(std::unique_ptr<QIODevice> device);
    void dropDevice();
    void readDevice();
    void countWritten(qint64 bytes);
    void loseDevice(const QString &reason);

    const std::shared_ptr<PortStatus> _status;
    const std::shared_ptr<PortHandover> _handover;
    std::unique_ptr<QIODevice> _device;
    QString _port;
    std::deque<PendingWrite> _writes;
    bool _losing = false; // the device has reported its end, and its removal is under way
};
