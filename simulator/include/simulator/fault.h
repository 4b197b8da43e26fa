#pragma once

#include <simulator/instant.h>

#include <QtCore/QByteArray>

namespace simulator {

/// What goes wrong on the line or in the switch.
enum class FaultKind {
    Cut,         ///< the cable is pulled; nothing passes in either direction until it is plugged in again
    Hang,        ///< the switch falls silent and deaf, for `time`, or (0) until it sees the port opened anew
    Garbage,     ///< `amount` random bytes stand in the middle of the output
    Noise,       ///< `amount` bytes 0xFF, as a wrong speed or a reboot makes them
    Half,        ///< the rest of the reply is lost, its prompt included
    Logs,        ///< `amount` log lines stand in the middle of the reply
    Nul,         ///< `amount` NULs pad each line of the reply
    Delay,       ///< the reply begins only after `time`
    WrongPrompt, ///< the prompt behind the reply is `text`
    NoPrompt,    ///< the prompt behind the reply is missing
    Refuse,      ///< the command is answered with the error `text` (empty: unrecognized command) and not carried out
    Question,    ///< the switch asks `text` before it carries out the command; N leaves it undone
    Logout,      ///< the session ends instead, as after the idle time-out
    Reboot       ///< the switch restarts instead
};

/// One fault and what sets it off.
///
/// `command` names the command line that sets it off (a beginning of the line as typed, capitals and small letters
/// alike); `line` instead counts the command lines from the adding of the fault on, empty ones left out; 1 is the next
/// one. With neither, the kinds that concern the line (Cut, Hang, Garbage, Noise, Half, Logs, Nul) are set off by the
/// amount of output, and the others by the next command.
struct Fault
{
    FaultKind kind = FaultKind::Hang;
    QByteArray command;
    int line = 0;
    /// Bytes of output between what sets the fault off and its effect.
    int after = 0;
    int amount = 0;
    Duration time{0};
    QByteArray text;
    /// How often it happens; 0 is always.
    int times = 1;
};

} // namespace simulator
