// switchpanel query: one status page of the panel.
#pragma once

#include "command.h"

ExitStatus runQuery(const QStringList &words, Language language);
