// What all commands that talk to a switch have in common on their command lines.
#pragma once

#include "commandline.h"

#include <chrono>
#include <optional>

enum class SwitchFamily { Huawei, Hua3 };

//! "huawei", "hua3".
QString familyName(SwitchFamily family);

//! Which switch to talk to, and how; checked.
struct ConnectionRequest
{
    Language language = Language::English;
    QString port;          //!< a name that the system knows; empty with a simulated switch
    QString simulated;     //!< the family of the built-in simulated switch ("huawei", "huawei-sub", "hua3") or empty
    QStringList simulator; //!< further arguments of the simulated switch
    int baudRate = 9600;
    SwitchFamily family = SwitchFamily::Huawei;
    std::optional<QString> userName;
    std::optional<QString> password;
    std::chrono::seconds timeout{60}; //!< for everything together; time at a prompt for the user not counted
    bool isQuiet = false;
    bool isLogShown = false;
    bool isVerbose = false;

    bool isSimulated() const { return !simulated.isEmpty(); }
    //! As the user named it.
    QString portText() const { return isSimulated() ? QStringLiteral("sim:") + simulated : port; }
};

//! Whether a command line has to name a port.
enum class PortNeed { Required, Optional };

//! `own`, and behind them the options of every command that talks to a switch.
std::vector<Option> withConnectionOptions(std::vector<Option> own);

//! Takes these options into the request, whose language and time-out are defaults. What is wrong with them, or nothing.
QString takeConnection(const Arguments &arguments, PortNeed need, ConnectionRequest &request);
