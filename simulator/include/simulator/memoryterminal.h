#pragma once

#include <simulator/switchconsole.h>

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>

namespace simulator {

/// A terminal on a simulated switch with a clock of its own: minutes pass in microseconds.
class MemoryTerminal
{
public:
    explicit MemoryTerminal(const SimulatorOptions &options);

    SwitchConsole &console() { return _console; }
    const SwitchConsole &console() const { return _console; }
    Instant now() const { return _now; }

    void type(const QByteArray &bytes);
    /// What comes while so much time passes.
    QByteArray advance(Duration time);
    /// What comes until nothing has come for `quiet`, or for ten minutes.
    QByteArray settle(Duration quiet = std::chrono::seconds(2));
    /// Types, and what comes then.
    QByteArray exchange(const QByteArray &bytes, Duration quiet = std::chrono::seconds(2));
    /// The pieces that the last call received, as a reader would see them.
    const QByteArrayList &pieces() const { return _pieces; }

private:
    QByteArray collect();

    SwitchConsole _console;
    Instant _now{0};
    QByteArrayList _pieces;
};

} // namespace simulator
