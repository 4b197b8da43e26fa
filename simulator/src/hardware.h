#pragma once

#include <simulator/simulatoroptions.h>
#include <simulator/switchstate.h>

namespace simulator {

class ConsoleSession;

/// Ports, neighbours and modules as the options have them.
SwitchHardware makeHardware(const SimulatorOptions &options);

/// Fills a factory configuration with the contents that the options ask for.
void furnish(const SimulatorOptions &options, const ConsoleSession &session, SwitchConfiguration &configuration);

/// What factory configurations of all families have in common.
SwitchConfiguration plainConfiguration(const SwitchHardware &hardware, const QByteArray &name, LinkType linkType);

} // namespace simulator
