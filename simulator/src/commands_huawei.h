#pragma once

#include "commandgrammar.h"

#include <vector>

namespace simulator {

/// The commands of the Huawei family. `poe`: with those for power over Ethernet.
std::vector<CommandRow> huaweiCommands(bool poe);
/// What the sub-model knows beside them. `twoStage`: releases where nothing takes effect before commit.
std::vector<CommandRow> huaweiSubCommands(bool twoStage);

} // namespace simulator
