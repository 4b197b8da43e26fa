// switchpanel connect: what switch is it?
#pragma once

#include "command.h"

ExitStatus runConnect(const QStringList &words, Language language);
