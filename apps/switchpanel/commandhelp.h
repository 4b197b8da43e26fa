// The help text of a sub-command, always in the same order.
#pragma once

#include "commandline.h"

struct CommandHelp
{
    Text usage;
    Text purpose;
    Text statuses;
};

//! Usage, purpose, options, exit statuses.
QStringList helpLines(const CommandHelp &help, const std::vector<Option> &options, Language language);
