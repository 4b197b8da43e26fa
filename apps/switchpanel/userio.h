// What every sub-command says in the same way.
#pragma once

#include "exitstatus.h"
#include "language.h"

#include <QtCore/QStringList>

//! Writes the lines to standard output. Failed when they cannot be written, otherwise Healthy.
ExitStatus printLines(const QStringList &lines);

//! "switchpanel: text" on standard error.
void printError(const QString &text);

//! Tells what is wrong with the command line and where help is.
ExitStatus failUsage(const QString &reason, const QString &advice);

//! Whether standard output is to have colours: a terminal that understands them, and NO_COLOR is not set.
bool hasColours();
