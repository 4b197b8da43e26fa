#pragma once

#include "IPv4Layer.h"
#include "ProtocolType.h"
#include "RawPacket.h"
#include "UdpLayer.h"

namespace pcpp {

/// A raw packet seen as a stack of protocol layers, from the link layer up to the first UDP header.
///
/// The walk reads Ethernet II, VLAN tags (0x8100, 0x88a8, 0x9100, stacked), Linux cooked captures, raw IP, null and
/// loopback captures, PPPoE sessions, MPLS label stacks, IPv4, IPv6 with extension headers, IP in IP and GRE. It ends
/// at a header that was not captured whole, at a fragment that is not the first, and at anything else.
///
/// The packet borrows the raw packet, which must stay and keep its bytes. Nothing is allocated: building a packet for
/// each record of a capture costs some nanoseconds. Not copyable; any one thread.
class Packet
{
public:
    /// Walks all layers. The raw packet stays the caller's.
    explicit Packet(RawPacket *rawPacket)
        : Packet(rawPacket, UnknownProtocol)
    {}

    /// Walks the layers up to and including the first one of the protocol parseUntil.
    Packet(RawPacket *rawPacket, ProtocolType parseUntil)
        : _rawPacket(rawPacket)
    {
        parse(parseUntil);
    }

    Packet(const Packet &) = delete;
    Packet &operator=(const Packet &) = delete;

    RawPacket *getRawPacket() const { return _rawPacket; }

    /// Whether a layer of this protocol was found.
    bool isPacketOfType(ProtocolType protocolType) const { return (_protocols & protocolType) != 0; }

    /// The outermost layer of type TLayer (IPv4Layer or UdpLayer), or nullptr. It belongs to the packet.
    template<class TLayer>
    TLayer *getLayerOfType() const;

private:
    friend class LayerWalk;

    void parse(ProtocolType parseUntil);

    RawPacket *_rawPacket;
    ProtocolType _protocols = UnknownProtocol;
    // Layers are handed out as pointers to non-const by const members, as PcapPlusPlus does.
    mutable IPv4Layer _ipv4;
    mutable UdpLayer _udp;
};

template<>
inline IPv4Layer *Packet::getLayerOfType<IPv4Layer>() const
{
    return isPacketOfType(IPv4) ? &_ipv4 : nullptr;
}

template<>
inline UdpLayer *Packet::getLayerOfType<UdpLayer>() const
{
    return isPacketOfType(UDP) ? &_udp : nullptr;
}

} // namespace pcpp
