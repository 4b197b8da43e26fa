// switchpanel save, switchpanel clear: the configuration of the whole switch.
#pragma once

#include "command.h"

ExitStatus runSave(const QStringList &words, Language language);
ExitStatus runClear(const QStringList &words, Language language);
