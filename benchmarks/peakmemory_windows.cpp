#include "peakmemory.h"

#include <windows.h>

#include <psapi.h>

std::int64_t peakMemoryBytes()
{
    PROCESS_MEMORY_COUNTERS counters{};
    if (!GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters))
        return 0;
    return static_cast<std::int64_t>(counters.PeakWorkingSetSize);
}
