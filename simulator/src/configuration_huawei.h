#pragma once

#include "consolesession.h"

namespace simulator {

std::vector<OtherSection> huaweiSections(const ConsoleSession &session, const SwitchConfiguration &configuration);
SwitchConfiguration huaweiFactoryConfiguration(const SimulatorOptions &options, const SwitchHardware &hardware);
SwitchConfiguration huaweiSubFactoryConfiguration(const SimulatorOptions &options, const SwitchHardware &hardware);

} // namespace simulator
