#pragma once

#include "commandgrammar.h"

#include <vector>

namespace simulator {

/// The commands of the Hua3 family. `poe`: with those for power over Ethernet.
std::vector<CommandRow> hua3Commands(bool poe);

} // namespace simulator
