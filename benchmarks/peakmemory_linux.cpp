#include "peakmemory.h"

#include <fstream>
#include <string>

std::int64_t peakMemoryBytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        std::int64_t kibibytes = 0;
        if (word == "VmHWM:" && status >> kibibytes)
            return kibibytes * 1024;
    }
    return 0;
}
