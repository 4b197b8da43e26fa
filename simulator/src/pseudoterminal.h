#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <chrono>
#include <optional>

namespace simulator {

/// The switch's side of a pseudo terminal, raw in both directions. Used by one thread, but for wake().
class PseudoTerminal
{
public:
    PseudoTerminal();
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal &) = delete;
    PseudoTerminal &operator=(const PseudoTerminal &) = delete;

    static bool isAvailable();

    /// Makes a new one. False with an errorString().
    bool open();
    /// Takes it away: whoever has it open sees the line go dead.
    void close();
    bool isOpen() const { return _master >= 0; }
    QString path() const { return _path; }
    QString errorString() const { return _error; }

    struct Events
    {
        bool readable = false;
        bool userPresent = false; ///< some program has the other side open
    };

    /// Waits for bytes, for room to write if that is wanted, for wake() or for the time. Nothing for the time: for
    /// ever.
    Events wait(std::optional<std::chrono::milliseconds> time, bool wantsToWrite);
    /// Ends a wait() from any thread, the next one if there is none.
    void wake();

    QByteArray read();
    /// How many of the bytes the line has taken.
    int write(const QByteArray &bytes);

private:
    int _master = -1;
    [[maybe_unused]] int _wakeUp[2] = {-1, -1}; // a pipe: read end, write end
    QString _path;
    QString _error;
};

} // namespace simulator
