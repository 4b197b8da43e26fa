#pragma once

#include "Layer.h"

namespace pcpp {

/// UDP header (RFC 768), every field in network byte order:
///
///     0         2         4         6         8
///     | portSrc | portDst | length  | checksum|
struct udphdr
{
    uint16_t portSrc;
    uint16_t portDst;
    uint16_t length; ///< header and payload, as the sender stated it: may be more or less than what was captured
    uint16_t headerChecksum;
};

static_assert(sizeof(udphdr) == 8, "the UDP header has eight octets");

/// A UDP header. Obtained from Packet::getLayerOfType(), valid as long as the packet. The payload is what the IP layer
/// leaves of the captured bytes; it is not cut to the UDP length field.
class UdpLayer : public Layer
{
public:
    /// The header's fields, a copy kept in the layer (the bytes of a capture have no alignment).
    udphdr *getUdpHeader() const { return &_header; }

    /// Ports in host byte order.
    uint16_t getSrcPort() const { return fromNetwork(_header.portSrc); }
    uint16_t getDstPort() const { return fromNetwork(_header.portDst); }

private:
    friend class Packet;
    friend class LayerWalk;

    UdpLayer() = default;

    static uint16_t fromNetwork(const uint16_t &value)
    {
        const auto *octets = reinterpret_cast<const uint8_t *>(&value);
        return static_cast<uint16_t>(octets[0] << 8 | octets[1]);
    }

    mutable udphdr _header{};
};

} // namespace pcpp
