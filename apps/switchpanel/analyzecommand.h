// switchpanel analyze: captures to verdicts.
#pragma once

#include "capturereport.h"
#include "commandline.h"

ExitStatus runAnalyze(const QStringList &words, Language language);

//! The options that it takes.
const std::vector<Option> &analyzeOptions();
