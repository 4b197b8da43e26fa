#pragma once

#include <simulator/fault.h>
#include <simulator/instant.h>
#include <simulator/simulatoroptions.h>
#include <simulator/switchstate.h>

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>

#include <memory>
#include <optional>

namespace simulator {

/// The console of a managed switch as a pure machine: typed bytes and the time go in, bytes and the time at which they
/// leave the line come out. No thread, no clock, no input or output of its own; not safe to share between threads.
///
///     idle ──Enter──▶ login ──right──▶ command line ◀──▶ pager, question, busy
///      ▲  ▲             │ wrong              │ quit, time-out │ reboot
///      │  └──lock, ◀────┘                    ▼                ▼
///      └────────────────────────────────── idle ◀───────── booting
///
/// Never true: output while the cable is out; a command carried out while another one runs or asks.
///
/// Times that are passed in never decrease; an earlier one counts as the latest so far.
class SwitchConsole
{
public:
    explicit SwitchConsole(const SimulatorOptions &options);
    ~SwitchConsole();
    SwitchConsole(const SwitchConsole &) = delete;
    SwitchConsole &operator=(const SwitchConsole &) = delete;

    /// Bytes that arrive from the user's side of the line.
    void receive(const QByteArray &bytes, Instant now);

    /// What has left the line by `now`, in the pieces in which a reader would see it.
    QByteArrayList transmit(Instant now);

    /// When transmit() has something to do next; nothing when only typing can change anything.
    std::optional<Instant> nextDue() const;

    /// Whether a fault has pulled the cable. Bytes are lost in both directions then.
    bool isCablePulled() const;
    void plugIn();

    /// The user has closed the port and opened it again. The switch does not notice, but a hang ends.
    void portReopened();

    void addFault(const Fault &fault);
    void clearFaults();

    /// Connects or disconnects the neighbour of the port with this index, with the log lines that follow. False if
    /// there is no such port.
    bool setNeighbour(std::size_t port, bool connected, Instant now);

    const SwitchState &state() const;
    /// The running configuration as `display current-configuration` writes it, with CR LF line ends, from the first
    /// line after the echoed command to the last one before the prompt.
    QByteArray configurationText() const;
    /// Everything that was typed, NULs and all.
    const QByteArray &received() const;
    /// Command lines that were carried out or refused, in order, empty ones left out.
    const QByteArrayList &commands() const;

private:
    struct Private;
    const std::unique_ptr<Private> _d;
};

} // namespace simulator
