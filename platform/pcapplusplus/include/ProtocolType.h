#pragma once

#include <cstdint>

/// The part of PcapPlusPlus's public interface that this project calls, under PcapPlusPlus's own names, on libpcap.
/// Used where PcapPlusPlus itself is not installed; a program that compiles against these headers compiles unchanged
/// against PcapPlusPlus 22.11 and later.
namespace pcpp {

/// A set of protocols, one bit each; a single constant below names one protocol.
typedef uint64_t ProtocolType;

// Only protocols that the layer walk of Packet recognises have a name here.
constexpr ProtocolType UnknownProtocol = 0;
constexpr ProtocolType Ethernet = 1U << 0;
constexpr ProtocolType EthernetDot3 = 1U << 1; ///< IEEE 802.3 frame with a length field; the walk ends there
constexpr ProtocolType VLAN = 1U << 2;
constexpr ProtocolType SLL = 1U << 3;  ///< Linux cooked capture v1
constexpr ProtocolType SLL2 = 1U << 4; ///< Linux cooked capture v2
constexpr ProtocolType NULL_LOOPBACK = 1U << 5;
constexpr ProtocolType PPPoESession = 1U << 6;
constexpr ProtocolType MPLS = 1U << 7;
constexpr ProtocolType IPv4 = 1U << 8;
constexpr ProtocolType IPv6 = 1U << 9;
constexpr ProtocolType AuthenticationHeader = 1U << 10;
constexpr ProtocolType GREv0 = 1U << 11;
constexpr ProtocolType GREv1 = 1U << 12;
constexpr ProtocolType PPP_PPTP = 1U << 13;
constexpr ProtocolType UDP = 1U << 14;

} // namespace pcpp
