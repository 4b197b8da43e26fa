#include "IpAddress.h"

#include <cstring>

namespace pcpp {

std::string IPv4Address::toString() const
{
    uint8_t octets[4];
    std::memcpy(octets, &_address, sizeof octets);

    std::string text = std::to_string(octets[0]);
    for (int i = 1; i < 4; ++i)
        text.append(1, '.').append(std::to_string(octets[i]));
    return text;
}

} // namespace pcpp
