// switchpanel simulate: a switch to try things on.
#pragma once

#include "commandline.h"
#include "exitstatus.h"

ExitStatus runSimulate(const QStringList &words, Language language);
