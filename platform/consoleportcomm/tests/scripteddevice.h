#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QThread>

#include <algorithm>
#include <atomic>
#include <memory>
#include <utility>

class ScriptedDevice;

/// What a test tells a scripted device and learns from it. Any thread.
struct DeviceScript
{
    std::atomic<bool> openFails{false};
    std::atomic<bool> stallWrites{false}; // takes bytes, but never reports them as sent
    std::atomic<bool> refuseWrites{false};
    std::atomic<int> openDelayMs{0};
    std::atomic<int> opened{0};
    std::atomic<int> living{0};
    std::atomic<QThread *> livesOn{nullptr};
    std::atomic<ScriptedDevice *> device{nullptr}; // the last one made

    QMutex lock; // guards written
    QByteArray written;

    QByteArray writtenSoFar()
    {
        const QMutexLocker guard(&lock);
        return written;
    }
};

/// A port without hardware behind it.
class ScriptedDevice final : public QIODevice
{
    Q_OBJECT

public:
    explicit ScriptedDevice(std::shared_ptr<DeviceScript> script)
        : _script(std::move(script))
    {
        ++_script->living;
        _script->livesOn = QThread::currentThread();
        _script->device = this;
    }
    ~ScriptedDevice() override { --_script->living; }

    bool open(OpenMode mode) override
    {
        QThread::msleep(static_cast<unsigned long>(_script->openDelayMs));
        if (_script->openFails) {
            setErrorString(QStringLiteral("scripted failure"));
            return false;
        }
        ++_script->opened;
        return QIODevice::open(mode);
    }
    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return _incoming.size() + QIODevice::bytesAvailable(); }

    // Any thread; what they do happens on the device's own one.
    void feed(const QByteArray &bytes)
    {
        QMetaObject::invokeMethod(
            this,
            [this, bytes] {
                _incoming += bytes;
                emit readyRead();
            },
            Qt::QueuedConnection);
    }
    void vanish(const QString &reason, const QByteArray &lastWords = {})
    {
        QMetaObject::invokeMethod(
            this,
            [this, reason, lastWords] {
                _incoming += lastWords;
                setErrorString(reason);
                emit readChannelFinished();
                emit readChannelFinished(); // dead devices repeat themselves
            },
            Qt::QueuedConnection);
    }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const int size = static_cast<int>(qMin<qint64>(maxSize, _incoming.size()));
        std::copy_n(_incoming.constData(), size, data);
        _incoming.remove(0, size);
        return size;
    }
    qint64 writeData(const char *data, qint64 size) override
    {
        if (_script->refuseWrites) {
            setErrorString(QStringLiteral("scripted refusal"));
            return -1;
        }
        {
            const QMutexLocker guard(&_script->lock);
            _script->written.append(data, static_cast<int>(size));
        }
        if (!_script->stallWrites)
            emit bytesWritten(size);
        return size;
    }

private:
    const std::shared_ptr<DeviceScript> _script;
    QByteArray _incoming;
};
