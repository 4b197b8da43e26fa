#pragma once

#include <chrono>

namespace simulator {

using Duration = std::chrono::microseconds;

/// Time since the simulated switch was switched on. Nothing in the simulator looks at a clock by itself.
using Instant = std::chrono::microseconds;

} // namespace simulator
