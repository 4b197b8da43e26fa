#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <numeric>
#include <vector>

/// Packets out of headers, outermost first: `join({ethernet(0x0800), ipv4(17, udpDatagram), udpDatagram})`. All numbers
/// are written in network byte order; checksums are zero, which no reader here looks at.
namespace packetbuilder {

using Bytes = std::vector<uint8_t>;

inline Bytes join(std::initializer_list<Bytes> parts)
{
    Bytes all;
    for (const Bytes &part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

inline Bytes be16(std::size_t value)
{
    return {static_cast<uint8_t>(value >> 8), static_cast<uint8_t>(value)};
}

inline Bytes be32(std::size_t value)
{
    return join({be16(value >> 16 & 0xFFFF), be16(value & 0xFFFF)});
}

inline Bytes be64(uint64_t value)
{
    return join({be32(value >> 32), be32(value & 0xFFFFFFFF)});
}

/// 1, 2, 3 …
inline Bytes counting(std::size_t size)
{
    Bytes bytes(size);
    std::iota(bytes.begin(), bytes.end(), uint8_t{1});
    return bytes;
}

inline Bytes ethernet(unsigned typeOrLength)
{
    return join({{1, 0, 0x5E, 0, 1, 129, 2, 0, 0, 0, 0, 1}, be16(typeOrLength)});
}

inline Bytes vlanTag(unsigned etherType)
{
    return join({be16(5U << 13 | 100), be16(etherType)});
}

inline Bytes udp(unsigned source, unsigned destination, const Bytes &payload)
{
    return join({be16(source), be16(destination), be16(8 + payload.size()), be16(0), payload});
}

struct Ipv4Fields
{
    unsigned protocol = 17;
    Bytes options = {};
    unsigned fragment = 0; ///< flags and fragment offset, as in the header
    uint8_t lastOctet = 7; ///< source address 192.168.100.<lastOctet>
};

inline Bytes ipv4(const Ipv4Fields &fields, const Bytes &payload)
{
    const std::size_t headerLength = 20 + fields.options.size();
    return join({{static_cast<uint8_t>(0x40 | headerLength / 4), 0},
                 be16(headerLength + payload.size()),
                 be16(0x1234),
                 be16(fields.fragment),
                 {1, static_cast<uint8_t>(fields.protocol)},
                 be16(0),
                 {192, 168, 100, fields.lastOctet, 224, 0, 1, 129},
                 fields.options,
                 payload});
}

inline Bytes ipv4(const Bytes &payload)
{
    return ipv4(Ipv4Fields{}, payload);
}

inline Bytes ipv6(unsigned nextHeader, const Bytes &payload)
{
    Bytes addresses(32, 0);
    addresses[0] = 0xFE;
    addresses[1] = 0x80;
    addresses[16] = 0xFF;
    return join({{0x60, 0, 0, 0}, be16(payload.size()), {static_cast<uint8_t>(nextHeader), 1}, addresses, payload});
}

/// Hop-by-hop options, routing header or destination options of 8 × (extraUnits + 1) octets.
inline Bytes ipv6Options(unsigned nextHeader, unsigned extraUnits = 0)
{
    Bytes header(8 * (std::size_t{extraUnits} + 1), 0);
    header[0] = static_cast<uint8_t>(nextHeader);
    header[1] = static_cast<uint8_t>(extraUnits);
    return header;
}

inline Bytes ipv6Fragment(unsigned nextHeader, unsigned offsetAndFlags)
{
    return join({{static_cast<uint8_t>(nextHeader), 0}, be16(offsetAndFlags), be32(0xABCD)});
}

inline Bytes authenticationHeader(unsigned nextHeader)
{
    return join({{static_cast<uint8_t>(nextHeader), 4, 0, 0}, Bytes(20, 0x5A)});
}

inline Bytes pppoeSession(unsigned pppProtocol, const Bytes &payload)
{
    return join({{0x11, 0}, be16(1), be16(2 + payload.size()), be16(pppProtocol), payload});
}

inline Bytes mplsLabel(bool bottomOfStack)
{
    return {0, 1, static_cast<uint8_t>(0x40 | (bottomOfStack ? 1 : 0)), 64};
}

inline Bytes gre(unsigned flagsAndVersion, unsigned etherType, const Bytes &optionalFields)
{
    return join({be16(flagsAndVersion), be16(etherType), optionalFields});
}

inline Bytes linuxCooked(unsigned etherType)
{
    return join({be16(0), be16(1), be16(6), {2, 0, 0, 0, 0, 1, 0, 0}, be16(etherType)});
}

inline Bytes linuxCookedV2(unsigned etherType)
{
    return join({be16(etherType), be16(0), be32(3), be16(1), {0, 6, 2, 0, 0, 0, 0, 1, 0, 0}});
}

} // namespace packetbuilder
