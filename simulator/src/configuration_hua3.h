#pragma once

#include "consolesession.h"

namespace simulator {

std::vector<OtherSection> hua3Sections(const ConsoleSession &session, const SwitchConfiguration &configuration);
SwitchConfiguration hua3FactoryConfiguration(const SimulatorOptions &options, const SwitchHardware &hardware);

} // namespace simulator
