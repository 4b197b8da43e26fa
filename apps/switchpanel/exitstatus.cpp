#include "exitstatus.h"

#include <algorithm>

ExitStatus worse(ExitStatus one, ExitStatus other)
{
    return std::max(one, other);
}
