// What all commands that talk to a switch do in the same way.
#pragma once

#include "commandhelp.h"
#include "switchsession.h"

#include <functional>

//! One such command: its table and its texts.
struct SwitchCommand
{
    const char *name;
    CommandHelp help;
    std::vector<Option> options; //!< its own, without those of the connection
    std::chrono::seconds timeout;
    bool hasDryRun = false;
    int operands = 0;
    Text missingOperand{}; //!< what to say when one of them is missing
};

//! The command line of one, read and checked.
struct SwitchCommandLine
{
    Arguments arguments;
    ConnectionRequest connection;
    //! Set when there is nothing to run: the help is printed, or what is wrong is told.
    std::optional<ExitStatus> end;
};

std::vector<Option> optionsOf(const SwitchCommand &command);

//! Reads the words behind the command's name.
SwitchCommandLine readCommandLine(const SwitchCommand &command, const QStringList &words, Language language);

//! Tells a wrong command line as all commands do.
ExitStatus refuseUsage(const SwitchCommand &command, const QString &reason, Language language);

//! What is done with a switch whose inventory has been read.
using SwitchOperation = std::function<Outcome(SwitchSession &)>;

//! Connects, does it, ends the connection, tells a bad outcome.
ExitStatus withSwitch(const ConnectionRequest &request, const SwitchOperation &operation);

//! Prints the blocks that the action would send, as text or with --json as a document.
ExitStatus printDryRun(const SwitchCommandLine &line, const SwitchAction &action);

//! "exit status: ..." of these commands.
extern const Text kSwitchStatuses;
//! Of commands whose only JSON document is that of --dry-run.
extern const Option kDryRunJson;

//! Prints a JSON document.
ExitStatus printJson(const QJsonDocument &document);
