// What a sub-command is.
#pragma once

#include "exitstatus.h"
#include "language.h"

#include <QtCore/QStringList>

//! One sub-command. A new one is a row in the table of program.cpp and a source of its own.
struct Command
{
    const char *name;
    Text summary;
    //! Runs it with the words behind its name. Errors are its own to tell, on standard error.
    ExitStatus (*run)(const QStringList &words, Language language);
};
