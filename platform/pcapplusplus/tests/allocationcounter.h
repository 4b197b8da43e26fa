#pragma once

#include <cstddef>

/// Number of calls of the global operator new so far. A program that links allocationcounter.cpp has that operator
/// replaced by a counting one.
std::size_t allocationCount();
