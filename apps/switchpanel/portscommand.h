// switchpanel ports: the serial ports of this machine.
#pragma once

#include "commandline.h"
#include "exitstatus.h"

ExitStatus runPorts(const QStringList &words, Language language);
