// What every sub-command says in the same way.
#pragma once

#include "capturereport.h"
#include "language.h"

#include <QtCore/QStringList>

//! Writes the lines to standard output. Failed when they cannot be written, otherwise Healthy.
ExitStatus printLines(const QStringList &lines);

//! "switchpanel: text" on standard error.
void printError(const QString &text);

//! Tells what is wrong with the command line and where help is.
ExitStatus failUsage(const QString &reason, const QString &advice);

//! What is wrong with this value of --lang.
QString languageError(const QString &value, Language language);
