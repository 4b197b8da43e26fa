// switchpanel export, import, clean-export: configurations as files.
#pragma once

#include "command.h"

ExitStatus runExport(const QStringList &words, Language language);
ExitStatus runImport(const QStringList &words, Language language);
ExitStatus runCleanExport(const QStringList &words, Language language);
