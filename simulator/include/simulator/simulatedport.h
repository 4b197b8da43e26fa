#pragma once

#include <simulator/runningswitch.h>

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>
#include <QtCore/QTimer>

#include <memory>

namespace simulator {

/// A serial port inside the program with a simulated switch at its other end, for hosts that register ports of their
/// own and for systems without pseudo terminals. Lives on the thread that opens it, which needs an event loop. A switch
/// serves one port at a time; opening another takes it over.
class SimulatedPort final : public QIODevice
{
    Q_OBJECT

public:
    explicit SimulatedPort(std::shared_ptr<RunningSwitch> device, QObject *parent = nullptr);
    ~SimulatedPort() override;

    bool open(OpenMode mode) override;
    void close() override;
    bool isSequential() const override;
    qint64 bytesAvailable() const override;

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    void pump();

    const std::shared_ptr<RunningSwitch> _device;
    QTimer _timer;
    QByteArray _incoming;
    bool _ended = false;
};

} // namespace simulator
