// The program: picks the sub-command and the language.
#pragma once

#include "command.h"

//! Runs the program with the words behind its own name.
ExitStatus runProgram(const QStringList &words);
