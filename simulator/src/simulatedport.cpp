#include <simulator/simulatedport.h>

#include <algorithm>
#include <utility>

namespace simulator {

SimulatedPort::SimulatedPort(std::shared_ptr<RunningSwitch> device, QObject *parent)
    : QIODevice(parent)
    , _device(std::move(device))
    , _timer(this)
{
    _timer.setSingleShot(true);
    _timer.setTimerType(Qt::PreciseTimer);
    connect(&_timer, &QTimer::timeout, this, &SimulatedPort::pump);
}

SimulatedPort::~SimulatedPort()
{
    SimulatedPort::close();
}

bool SimulatedPort::open(OpenMode mode)
{
    if (_device->isCablePulled()) {
        setErrorString(tr("the cable of the simulated switch is pulled"));
        return false;
    }
    _ended = false;
    _incoming.clear();
    _device->transmit(); // what was written while nobody listened is lost
    _device->portReopened();
    _device->setListener([this] { QMetaObject::invokeMethod(this, &SimulatedPort::pump, Qt::QueuedConnection); });
    QIODevice::open(mode | QIODevice::Unbuffered);
    pump();
    return true;
}

void SimulatedPort::close()
{
    if (!isOpen())
        return;
    _device->setListener({});
    _timer.stop();
    QIODevice::close();
}

bool SimulatedPort::isSequential() const
{
    return true;
}

qint64 SimulatedPort::bytesAvailable() const
{
    return _incoming.size() + QIODevice::bytesAvailable();
}

qint64 SimulatedPort::readData(char *data, qint64 maxSize)
{
    const int size = static_cast<int>(std::min<qint64>(maxSize, _incoming.size()));
    std::copy_n(_incoming.constData(), size, data);
    _incoming.remove(0, size);
    return size;
}

qint64 SimulatedPort::writeData(const char *data, qint64 size)
{
    _device->receive(QByteArray(data, static_cast<int>(size)));
    QMetaObject::invokeMethod(
        this, [this, size] { emit bytesWritten(size); }, Qt::QueuedConnection);
    return size;
}

// Each piece is announced by itself, as a serial port would.
void SimulatedPort::pump()
{
    if (!isOpen() || _ended)
        return;
    const QByteArrayList pieces = _device->transmit();
    for (const QByteArray &piece : pieces) {
        _incoming += piece;
        emit readyRead();
        if (!isOpen())
            return;
    }
    if (_device->isCablePulled()) {
        _ended = true;
        setErrorString(tr("the cable of the simulated switch was pulled"));
        emit readChannelFinished();
        return;
    }
    if (const auto wait = _device->nextDueIn())
        _timer.start(*wait);
}

} // namespace simulator
