#pragma once

#include <cstdint>

/// The largest resident set that this process has had, in bytes; 0 where the system does not tell.
std::int64_t peakMemoryBytes();
