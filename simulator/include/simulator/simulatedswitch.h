#pragma once

#include <simulator/runningswitch.h>

#include <QtCore/QString>

#include <memory>

namespace simulator {

/// A simulated switch behind a pseudo terminal, which any program can open as a serial port. Runs on a thread of its
/// own.
///
/// The port may be closed and opened again; meanwhile what the switch writes is lost, as on a real line. A pulled cable
/// takes the pseudo terminal away under whoever has it open. Functions from any thread, start() and stop() from one at
/// a time.
class SimulatedSwitch
{
public:
    explicit SimulatedSwitch(const SimulatorOptions &options);
    /// Stops.
    ~SimulatedSwitch();
    SimulatedSwitch(const SimulatedSwitch &) = delete;
    SimulatedSwitch &operator=(const SimulatedSwitch &) = delete;

    /// Whether the system has pseudo terminals.
    static bool isAvailable();

    /// Makes the pseudo terminal. Its path, or an empty text with an errorString().
    QString start();
    /// Takes the pseudo terminal away. Returns within a second.
    void stop();
    bool isRunning() const;

    /// Of the present pseudo terminal; empty while the cable is pulled.
    QString path() const;
    QString errorString() const;
    /// Whether the switch sees a program that has the port open.
    bool isPortOpen() const;

    /// Plugs a pulled cable in again. The new path, which may differ from the old one; empty with an errorString() on
    /// failure.
    QString plugIn();

    /// The switch itself: its state, its faults.
    RunningSwitch &device();
    const RunningSwitch &device() const;

private:
    struct Private;
    const std::unique_ptr<Private> _d;
};

} // namespace simulator
