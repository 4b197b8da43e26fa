#pragma once

namespace ovra {
namespace bll {

/// The ports of one kind from the lowest to the highest number, both included.
struct PortRange
{
    int min = 0;
    int max = 0;
};

} // namespace bll
} // namespace ovra
