#include "Packet.h"

#include <algorithm>
#include <cstring>

namespace pcpp {

namespace {

constexpr size_t kEthernetHeader = 14;
constexpr size_t kVlanTag = 4;
constexpr size_t kLinuxCookedHeader = 16;
constexpr size_t kLinuxCookedV2Header = 20;
constexpr size_t kNullHeader = 4;
constexpr size_t kPppoeHeader = 8; // RFC 2516 4: six octets, and the PPP protocol number
constexpr size_t kMplsLabel = 4;
constexpr size_t kIpv4MinimumHeader = 20;
constexpr size_t kIpv6Header = 40;
constexpr size_t kUdpHeader = 8;

constexpr uint16_t kFirstEtherType = 0x0600; // IEEE 802.3 3.2.6: smaller values are lengths

uint16_t read16(const uint8_t *data)
{
    return static_cast<uint16_t>(data[0] << 8 | data[1]);
}

uint32_t read32(const uint8_t *data)
{
    return uint32_t{read16(data)} << 16 | read16(data + 2);
}

/// The value as it stands in memory, for fields that are handed on in network byte order.
template<typename T>
T readAsIs(const uint8_t *data)
{
    T value;
    std::memcpy(&value, data, sizeof value);
    return value;
}

} // namespace

/// One pass over the headers of a packet. Each step reads one header from the bytes that are left, takes it off and
/// names the next step; a header that is not there whole ends the walk. Every step but the last takes bytes off, so the
/// walk ends however the headers are nested.
class LayerWalk
{
public:
    explicit LayerWalk(Packet &packet)
        : _packet(packet)
        , _data(packet._rawPacket->getRawData())
        , _left(static_cast<size_t>(std::max(packet._rawPacket->getRawDataLen(), 0)))
    {}

    void run(ProtocolType parseUntil);

private:
    enum class Step {
        End,
        EthernetFrame,
        Vlan,
        LinuxCooked,
        LinuxCookedV2,
        NullLoopback,
        PppoeSession,
        PppInGre,
        Mpls,
        IpByVersion,
        Ipv4,
        Ipv6,
        IpPayload,
        Ipv6Options,
        Ipv6Fragment,
        Authentication,
        Gre,
        Udp
    };

    Step firstStep() const;
    Step take(Step step);

    Step takeEthernet();
    Step takeVlan();
    Step takeLinuxCooked(size_t headerLength, size_t protocolOffset, ProtocolType protocol);
    Step takeNullLoopback();
    Step takePppoeSession();
    Step takePppInGre();
    Step takeMpls();
    Step ipByVersion() const;
    Step takeIpv4();
    Step takeIpv6();
    Step takeIpv6Options();
    Step takeIpv6Fragment();
    Step takeAuthenticationHeader();
    Step takeGre();
    Step takeGreV0(uint16_t flags);
    Step takeGreV1(uint16_t flags);
    Step takeUdp();

    Step byEtherType(uint16_t etherType) const;
    Step byPppProtocol(uint16_t protocol) const;
    Step byIpProtocol() const;

    bool has(size_t length) const { return _left >= length; }
    void found(ProtocolType protocol) { _packet._protocols |= protocol; }
    void advance(size_t length)
    {
        _data += length;
        _left -= length;
    }

    Packet &_packet;
    const uint8_t *_data;
    size_t _left;
    uint8_t _ipProtocol = 0; // protocol of the innermost IP header, or next header of its last extension
    bool _inIpv6 = false;    // whether extension headers may follow
};

void LayerWalk::run(ProtocolType parseUntil)
{
    for (Step step = firstStep(); step != Step::End && !_packet.isPacketOfType(parseUntil);)
        step = take(step);
}

LayerWalk::Step LayerWalk::firstStep() const
{
    switch (_packet._rawPacket->getLinkLayerType()) {
    case LINKTYPE_ETHERNET:
        return Step::EthernetFrame;
    case LINKTYPE_LINUX_SLL:
        return Step::LinuxCooked;
    case LINKTYPE_LINUX_SLL2:
        return Step::LinuxCookedV2;
    case LINKTYPE_NULL:
    case LINKTYPE_LOOP:
        return Step::NullLoopback;
    case LINKTYPE_DLT_RAW1:
    case LINKTYPE_DLT_RAW2:
    case LINKTYPE_RAW:
        return Step::IpByVersion;
    case LINKTYPE_IPV4:
        return Step::Ipv4;
    case LINKTYPE_IPV6:
        return Step::Ipv6;
    }
    return Step::End; // a link type of the file that has no name here
}

LayerWalk::Step LayerWalk::take(Step step)
{
    switch (step) {
    case Step::End:
        return Step::End;
    case Step::EthernetFrame:
        return takeEthernet();
    case Step::Vlan:
        return takeVlan();
    case Step::LinuxCooked:
        return takeLinuxCooked(kLinuxCookedHeader, 14, SLL);
    case Step::LinuxCookedV2:
        return takeLinuxCooked(kLinuxCookedV2Header, 0, SLL2);
    case Step::NullLoopback:
        return takeNullLoopback();
    case Step::PppoeSession:
        return takePppoeSession();
    case Step::PppInGre:
        return takePppInGre();
    case Step::Mpls:
        return takeMpls();
    case Step::IpByVersion:
        return ipByVersion();
    case Step::Ipv4:
        return takeIpv4();
    case Step::Ipv6:
        return takeIpv6();
    case Step::IpPayload:
        return byIpProtocol();
    case Step::Ipv6Options:
        return takeIpv6Options();
    case Step::Ipv6Fragment:
        return takeIpv6Fragment();
    case Step::Authentication:
        return takeAuthenticationHeader();
    case Step::Gre:
        return takeGre();
    case Step::Udp:
        return takeUdp();
    }
    return Step::End;
}

LayerWalk::Step LayerWalk::takeEthernet()
{
    if (!has(kEthernetHeader))
        return Step::End;
    const uint16_t etherType = read16(_data + 12);
    if (etherType < kFirstEtherType) {
        found(EthernetDot3);
        return Step::End;
    }
    found(Ethernet);
    advance(kEthernetHeader);
    return byEtherType(etherType);
}

LayerWalk::Step LayerWalk::takeVlan()
{
    if (!has(kVlanTag))
        return Step::End;
    const uint16_t etherType = read16(_data + 2);
    found(VLAN);
    advance(kVlanTag);
    return byEtherType(etherType);
}

LayerWalk::Step LayerWalk::takeLinuxCooked(size_t headerLength, size_t protocolOffset, ProtocolType protocol)
{
    if (!has(headerLength))
        return Step::End;
    const uint16_t etherType = read16(_data + protocolOffset);
    found(protocol);
    advance(headerLength);
    return byEtherType(etherType);
}

LayerWalk::Step LayerWalk::takeNullLoopback()
{
    if (!has(kNullHeader))
        return Step::End;
    // The address family stands in the byte order of the machine that captured. Families are small numbers: the half
    // that is not zero tells the order.
    const uint32_t bigEndian = read32(_data);
    const uint32_t littleEndian =
        uint32_t{_data[3]} << 24 | uint32_t{_data[2]} << 16 | uint32_t{_data[1]} << 8 | _data[0];
    const uint32_t family = bigEndian > 0xFFFF ? littleEndian : bigEndian;
    found(NULL_LOOPBACK);
    advance(kNullHeader);
    switch (family) {
    case 2:
        return Step::Ipv4;
    case 24: // NetBSD, OpenBSD and Npcap
    case 28: // FreeBSD
    case 30: // macOS
        return Step::Ipv6;
    default:
        return Step::End;
    }
}

LayerWalk::Step LayerWalk::takePppoeSession()
{
    if (!has(kPppoeHeader))
        return Step::End;
    const uint16_t protocol = read16(_data + 6);
    found(PPPoESession);
    advance(kPppoeHeader);
    return byPppProtocol(protocol);
}

LayerWalk::Step LayerWalk::takePppInGre()
{
    if (!has(4)) // RFC 1662 3.1: address, control, and the PPP protocol number
        return Step::End;
    const uint16_t protocol = read16(_data + 2);
    found(PPP_PPTP);
    advance(4);
    return byPppProtocol(protocol);
}

LayerWalk::Step LayerWalk::takeMpls()
{
    if (!has(kMplsLabel))
        return Step::End;
    const bool bottomOfStack = (_data[2] & 0x01U) != 0; // RFC 3032 2.1
    found(MPLS);
    advance(kMplsLabel);
    return bottomOfStack ? Step::IpByVersion : Step::Mpls;
}

LayerWalk::Step LayerWalk::ipByVersion() const
{
    if (!has(1))
        return Step::End;
    switch (_data[0] >> 4) {
    case 4:
        return Step::Ipv4;
    case 6:
        return Step::Ipv6;
    default:
        return Step::End;
    }
}

LayerWalk::Step LayerWalk::takeIpv4()
{
    if (!has(kIpv4MinimumHeader))
        return Step::End;
    const size_t headerLength = size_t{_data[0] & 0x0FU} * 4;
    if (_data[0] >> 4 != 4 || headerLength < kIpv4MinimumHeader)
        return Step::End;
    // A total length of 0 is left by network cards that cut the segments themselves; what was captured is taken then.
    const size_t totalLength = read16(_data + 2);
    if (totalLength != 0)
        _left = std::min(_left, totalLength);

    if (!_packet.isPacketOfType(IPv4)) {
        IPv4Layer &layer = _packet._ipv4;
        layer.setBytes(_data, _left, std::min(headerLength, _left));
        layer._source = readAsIs<uint32_t>(_data + 12);
        layer._destination = readAsIs<uint32_t>(_data + 16);
    }
    found(IPv4);
    const bool laterFragment = (read16(_data + 6) & 0x1FFFU) != 0;
    if (laterFragment || !has(headerLength))
        return Step::End;
    _ipProtocol = _data[9];
    _inIpv6 = false;
    advance(headerLength);
    return Step::IpPayload;
}

LayerWalk::Step LayerWalk::takeIpv6()
{
    if (!has(kIpv6Header) || _data[0] >> 4 != 6)
        return Step::End;
    const size_t payloadLength = read16(_data + 4);
    found(IPv6);
    _ipProtocol = _data[6];
    _inIpv6 = true;
    advance(kIpv6Header);
    _left = std::min(_left, payloadLength);
    return Step::IpPayload;
}

// Hop-by-hop options, routing header, destination options (RFC 8200 4.3, 4.4, 4.6): one layout.
LayerWalk::Step LayerWalk::takeIpv6Options()
{
    if (!has(2))
        return Step::End;
    const size_t length = (size_t{_data[1]} + 1) * 8;
    if (!has(length))
        return Step::End;
    _ipProtocol = _data[0];
    advance(length);
    return Step::IpPayload;
}

LayerWalk::Step LayerWalk::takeIpv6Fragment()
{
    if (!has(8)) // RFC 8200 4.5
        return Step::End;
    const bool laterFragment = (read16(_data + 2) & 0xFFF8U) != 0;
    if (laterFragment)
        return Step::End;
    _ipProtocol = _data[0];
    advance(8);
    return Step::IpPayload;
}

LayerWalk::Step LayerWalk::takeAuthenticationHeader()
{
    if (!has(2))
        return Step::End;
    const size_t length = (size_t{_data[1]} + 2) * 4; // RFC 4302 2.2
    if (!has(length))
        return Step::End;
    found(AuthenticationHeader);
    _ipProtocol = _data[0];
    advance(length);
    return Step::IpPayload;
}

LayerWalk::Step LayerWalk::takeGre()
{
    if (!has(4))
        return Step::End;
    const uint16_t flags = read16(_data);
    switch (flags & 0x0007U) {
    case 0:
        return takeGreV0(flags);
    case 1:
        return takeGreV1(flags);
    default:
        return Step::End;
    }
}

LayerWalk::Step LayerWalk::takeGreV0(uint16_t flags)
{
    constexpr unsigned checksumPresent = 0x8000;
    constexpr unsigned routingPresent = 0x4000;
    constexpr unsigned keyPresent = 0x2000;
    constexpr unsigned sequencePresent = 0x1000;

    if (flags & routingPresent) // RFC 2784 2.3: to be discarded
        return Step::End;
    const size_t length = 4U + (flags & checksumPresent ? 4U : 0U) + (flags & keyPresent ? 4U : 0U)
                          + (flags & sequencePresent ? 4U : 0U); // RFC 2890 2
    if (!has(length))
        return Step::End;
    const uint16_t etherType = read16(_data + 2);
    found(GREv0);
    advance(length);
    return etherType == 0x6558 ? Step::EthernetFrame : byEtherType(etherType); // transparent Ethernet bridging
}

LayerWalk::Step LayerWalk::takeGreV1(uint16_t flags)
{
    constexpr unsigned sequencePresent = 0x1000;
    constexpr unsigned acknowledgmentPresent = 0x0080;

    const size_t length =
        8U + (flags & sequencePresent ? 4U : 0U) + (flags & acknowledgmentPresent ? 4U : 0U); // RFC 2637 4.1
    if (!has(length))
        return Step::End;
    const uint16_t etherType = read16(_data + 2);
    found(GREv1);
    advance(length);
    return etherType == 0x880B ? Step::PppInGre : Step::End;
}

LayerWalk::Step LayerWalk::takeUdp()
{
    if (!has(kUdpHeader))
        return Step::End;
    UdpLayer &layer = _packet._udp;
    layer.setBytes(_data, _left, kUdpHeader);
    layer._header = readAsIs<udphdr>(_data);
    found(UDP);
    return Step::End;
}

LayerWalk::Step LayerWalk::byEtherType(uint16_t etherType) const
{
    switch (etherType) {
    case 0x0800:
        return Step::Ipv4;
    case 0x86DD:
        return Step::Ipv6;
    case 0x8100:
    case 0x88A8:
    case 0x9100:
        return Step::Vlan;
    case 0x8847:
        return Step::Mpls;
    case 0x8864:
        return Step::PppoeSession;
    default:
        return Step::End;
    }
}

LayerWalk::Step LayerWalk::byPppProtocol(uint16_t protocol) const
{
    switch (protocol) {
    case 0x0021:
        return Step::Ipv4;
    case 0x0057:
        return Step::Ipv6;
    default:
        return Step::End;
    }
}

LayerWalk::Step LayerWalk::byIpProtocol() const
{
    switch (_ipProtocol) {
    case 17:
        return Step::Udp;
    case 4:  // IPv4 in IP, RFC 2003
    case 41: // IPv6 in IP, RFC 4213
        return Step::IpByVersion;
    case 47:
        return Step::Gre;
    case 51:
        return Step::Authentication;
    case 0:  // hop-by-hop options
    case 43: // routing
    case 60: // destination options
        return _inIpv6 ? Step::Ipv6Options : Step::End;
    case 44:
        return _inIpv6 ? Step::Ipv6Fragment : Step::End;
    default:
        return Step::End;
    }
}

void Packet::parse(ProtocolType parseUntil)
{
    LayerWalk(*this).run(parseUntil);
}

} // namespace pcpp
