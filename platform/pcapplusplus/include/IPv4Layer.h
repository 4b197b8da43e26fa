#pragma once

#include "IpAddress.h"
#include "Layer.h"

namespace pcpp {

/// An IPv4 header (RFC 791). Obtained from Packet::getLayerOfType(), valid as long as the packet.
class IPv4Layer : public Layer
{
public:
    IPv4Address getSrcIPv4Address() const { return IPv4Address(_source); }
    IPv4Address getDstIPv4Address() const { return IPv4Address(_destination); }
    IPAddress getSrcIPAddress() const { return getSrcIPv4Address(); }
    IPAddress getDstIPAddress() const { return getDstIPv4Address(); }

private:
    friend class Packet;
    friend class LayerWalk;

    IPv4Layer() = default;

    uint32_t _source = 0; // network byte order
    uint32_t _destination = 0;
};

} // namespace pcpp
