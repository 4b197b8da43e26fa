#include "ptpv2parser/ptpv2types.h"

namespace PTPv2 {

std::string ClockIdentity::toString() const
{
    static const char digits[] = "0123456789abcdef";
    std::string text;
    text.reserve(octets.size() * 3);
    for (const uint8_t octet : octets) {
        if (!text.empty())
            text += ':';
        text += digits[octet >> 4];
        text += digits[octet & 0x0F];
    }
    return text;
}

std::string PortIdentity::toString() const
{
    return clockIdentity.toString() + '-' + std::to_string(portNumber);
}

std::string Timestamp::toString() const
{
    constexpr std::size_t fractionDigits = 9;
    const std::string fraction = std::to_string(nanosecondsField);
    std::string text = std::to_string(secondsField());
    text += '.';
    if (fraction.size() < fractionDigits)
        text.append(fractionDigits - fraction.size(), '0');
    return text + fraction;
}

} // namespace PTPv2
