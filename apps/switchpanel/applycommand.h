// switchpanel apply: the panel's settings.
#pragma once

#include "command.h"

ExitStatus runApply(const QStringList &words, Language language);
