#include "capturebuilder.h"
#include "octets.h"

#include <QStringList>

namespace capturebuilder {

namespace {

constexpr quint8 kProtocolIpv4 = 4;
constexpr quint8 kProtocolTcp = 6;
constexpr quint8 kProtocolUdp = 17;
constexpr quint8 kProtocolIpv6 = 41;
constexpr quint8 kProtocolFragment = 44;
constexpr quint8 kProtocolGre = 47;

const QByteArray kSlaveMac = QByteArray::fromHex("021b19000001");
const QByteArray kPtpMac = QByteArray::fromHex("011b19000000"); // IEEE 1588-2008 F.3

QByteArray ipv4Address(const QString &text)
{
    QByteArray address;
    const QStringList parts = text.split(QLatin1Char('.'));
    for (const QString &part : parts)
        octets::append(address, static_cast<quint8>(part.toUShort()));
    Q_ASSERT(address.size() == 4);
    return address;
}

QByteArray ipv6Groups(const QString &text)
{
    QByteArray groups;
    const QStringList parts = text.split(QLatin1Char(':'), Qt::SkipEmptyParts);
    for (const QString &part : parts)
        octets::append(groups, part.toUShort(nullptr, 16));
    return groups;
}

QByteArray ipv6Address(const QString &text)
{
    const int gap = text.indexOf(QLatin1String("::"));
    const QByteArray head = ipv6Groups(gap < 0 ? text : text.left(gap));
    const QByteArray tail = gap < 0 ? QByteArray() : ipv6Groups(text.mid(gap));
    Q_ASSERT(head.size() + tail.size() <= 16);
    return head + QByteArray(16 - head.size() - tail.size(), '\0') + tail;
}

// RFC 1071: one's complement of the one's complement sum of 16-bit words.
quint16 internetChecksum(const QByteArray &bytes)
{
    quint32 sum = 0;
    for (int i = 0; i < bytes.size(); ++i) {
        const auto octet = static_cast<quint8>(bytes.at(i));
        sum += i % 2 == 0 ? static_cast<quint32>(octet) << 8U : octet;
    }
    while ((sum >> 16U) != 0)
        sum = (sum & 0xffffU) + (sum >> 16U);
    return static_cast<quint16>(~sum & 0xffffU);
}

QByteArray cookedHeader2(quint16 protocol)
{
    QByteArray header;
    octets::append(header, protocol);
    header.append(2, '\0');
    octets::append(header, quint32(1)); // interface index
    octets::append(header, quint16(1)); // ARPHRD_ETHER
    octets::append(header, quint8(0));  // to us
    octets::append(header, quint8(6));
    return header + kSlaveMac + QByteArray(2, '\0');
}

QByteArray cookedHeader(quint16 protocol)
{
    QByteArray header;
    octets::append(header, quint16(0)); // to us
    octets::append(header, quint16(1)); // ARPHRD_ETHER
    octets::append(header, quint16(6));
    header += kSlaveMac + QByteArray(2, '\0');
    octets::append(header, protocol);
    return header;
}

QByteArray pppoeHeader(quint16 sessionId, int innerLength, bool ipv6)
{
    QByteArray header;
    octets::append(header, quint8(0x11)); // version 1, type 1
    octets::append(header, quint8(0));    // session data
    octets::append(header, sessionId);
    octets::append(header, static_cast<quint16>(innerLength + 2));
    octets::append(header, quint16(ipv6 ? 0x0057 : 0x0021));
    return header;
}

quint8 tcpOrUdp(bool udp)
{
    return udp ? kProtocolUdp : kProtocolTcp;
}

} // namespace

FrameBuilder &FrameBuilder::add(Kind kind, quint32 number, quint16 extra, quint16 linkType)
{
    Layer layer;
    layer.kind = kind;
    layer.number = number;
    layer.extra = extra;
    layer.linkType = linkType;
    _layers.append(layer);
    return *this;
}

FrameBuilder &FrameBuilder::ethernet()
{
    return add(Kind::Ethernet, 0, 0, linktype::Ethernet);
}

FrameBuilder &FrameBuilder::linuxCooked()
{
    return add(Kind::LinuxCooked, 0, 0, linktype::LinuxCooked);
}

FrameBuilder &FrameBuilder::linuxCooked2()
{
    return add(Kind::LinuxCooked2, 0, 0, linktype::LinuxCooked2);
}

FrameBuilder &FrameBuilder::nullLoopback(ByteOrder order, quint32 ipv6Family)
{
    add(Kind::Loopback, ipv6Family, 0, linktype::Null);
    _layers.last().order = order;
    return *this;
}

FrameBuilder &FrameBuilder::loop(quint32 ipv6Family)
{
    return add(Kind::Loopback, ipv6Family, 0, linktype::Loop);
}

FrameBuilder &FrameBuilder::vlan(quint16 vlanId, quint8 priority, quint16 tagProtocol)
{
    return add(Kind::Vlan, (static_cast<quint32>(priority) << 13U) | vlanId, tagProtocol);
}

FrameBuilder &FrameBuilder::pppoe(quint16 sessionId)
{
    return add(Kind::Pppoe, sessionId);
}

FrameBuilder &FrameBuilder::mpls(quint32 label)
{
    return add(Kind::Mpls, label);
}

FrameBuilder &FrameBuilder::gre()
{
    add(Kind::Gre);
    _layers.last().protocol = kProtocolGre;
    return *this;
}

FrameBuilder &FrameBuilder::ipv4(const QString &source, const QString &destination, const Ipv4Fields &fields)
{
    add(Kind::Ipv4);
    Layer &layer = _layers.last();
    layer.first = ipv4Address(source);
    layer.second = ipv4Address(destination);
    layer.ipv4 = fields;
    layer.protocol = kProtocolIpv4;
    return *this;
}

FrameBuilder &FrameBuilder::ipv6(const QString &source, const QString &destination)
{
    add(Kind::Ipv6);
    Layer &layer = _layers.last();
    layer.first = ipv6Address(source);
    layer.second = ipv6Address(destination);
    layer.protocol = kProtocolIpv6;
    return *this;
}

FrameBuilder &FrameBuilder::ipv6Extension(quint8 headerType, const QByteArray &body)
{
    add(Kind::Ipv6Extension);
    // RFC 8200 4.2: the header's length is a multiple of eight octets.
    _layers.last().first = body + QByteArray((8 - (body.size() + 2) % 8) % 8, '\0');
    _layers.last().protocol = headerType;
    return *this;
}

FrameBuilder &FrameBuilder::ipv6Fragment(quint16 offset, bool moreFragments, quint32 identification)
{
    // RFC 8200 4.5: 13 bits of offset in units of eight octets, two reserved, the M flag.
    add(Kind::Ipv6Fragment, identification, static_cast<quint16>(offset | (moreFragments ? 1U : 0U)));
    _layers.last().protocol = kProtocolFragment;
    return *this;
}

FrameBuilder &FrameBuilder::udp(quint16 sourcePort, quint16 destinationPort)
{
    add(Kind::Udp, sourcePort, destinationPort);
    _layers.last().protocol = kProtocolUdp;
    return *this;
}

FrameBuilder &FrameBuilder::tcp(quint16 sourcePort, quint16 destinationPort)
{
    add(Kind::Tcp, sourcePort, destinationPort);
    _layers.last().protocol = kProtocolTcp;
    return *this;
}

FrameBuilder &FrameBuilder::payload(const QByteArray &bytes, quint16 etherType, quint8 ipProtocol)
{
    add(Kind::Payload, 0, etherType);
    _layers.last().first = bytes;
    _layers.last().protocol = ipProtocol;
    return *this;
}

quint16 FrameBuilder::etherTypeAfter(int index) const
{
    if (index + 1 >= _layers.size())
        return 0xffff;
    const Layer &next = _layers.at(index + 1);
    switch (next.kind) {
    case Kind::Vlan:
    case Kind::Payload:
        return next.extra;
    case Kind::Ipv4:
        return 0x0800;
    case Kind::Ipv6:
        return 0x86dd;
    case Kind::Pppoe:
        return 0x8864;
    case Kind::Mpls:
        return 0x8847;
    case Kind::Ethernet:
        return 0x6558; // transparent bridging, as GRE names it
    case Kind::LinuxCooked:
    case Kind::LinuxCooked2:
    case Kind::Loopback:
    case Kind::Gre:
    case Kind::Ipv6Extension:
    case Kind::Ipv6Fragment:
    case Kind::Udp:
    case Kind::Tcp:
        break;
    }
    return 0xffff; // reserved: nothing that an Ethernet header can name
}

quint8 FrameBuilder::ipProtocolAfter(int index) const
{
    return index + 1 < _layers.size() ? _layers.at(index + 1).protocol : quint8(59); // no next header
}

quint32 FrameBuilder::loopbackFamily(int index) const
{
    const bool ipv6 = index + 1 < _layers.size() && _layers.at(index + 1).kind == Kind::Ipv6;
    const quint32 family = ipv6 ? _layers.at(index).number : 2; // AF_INET is 2 everywhere
    return _layers.at(index).order == ByteOrder::Big ? family : qbswap(family);
}

QByteArray FrameBuilder::wrapIpv4(int index, const QByteArray &inner) const
{
    const Layer &layer = _layers.at(index);
    const Ipv4Fields &fields = layer.ipv4;
    const QByteArray options = fields.options + QByteArray((4 - fields.options.size() % 4) % 4, '\0');
    const int headerLength = 20 + options.size();
    QByteArray header;
    octets::append(
        header,
        static_cast<quint8>(0x40U | fields.headerLengthIn32BitWords.value_or(static_cast<quint8>(headerLength / 4))));
    octets::append(header, quint8(0));
    octets::append(header, fields.totalLength.value_or(static_cast<quint16>(headerLength + inner.size())));
    octets::append(header, fields.identification);
    octets::append(header, static_cast<quint16>((fields.moreFragments ? 0x2000U : 0U) | fields.fragmentOffset / 8U));
    octets::append(header, fields.timeToLive);
    octets::append(header, fields.protocol.value_or(ipProtocolAfter(index)));
    octets::append(header, quint16(0));
    header += layer.first + layer.second + options;
    octets::set16(header, 10, internetChecksum(header));
    return header + inner;
}

QByteArray FrameBuilder::wrapIpv6(int index, const QByteArray &inner) const
{
    const Layer &layer = _layers.at(index);
    QByteArray header;
    octets::append(header, quint32(0x60000000));
    octets::append(header, static_cast<quint16>(inner.size()));
    octets::append(header, ipProtocolAfter(index));
    octets::append(header, quint8(64));
    return header + layer.first + layer.second + inner;
}

QByteArray FrameBuilder::wrapTransport(int index, const QByteArray &inner) const
{
    const Layer &layer = _layers.at(index);
    const bool udp = layer.kind == Kind::Udp;
    QByteArray segment;
    octets::append(segment, static_cast<quint16>(layer.number));
    octets::append(segment, layer.extra);
    if (udp) {
        octets::append(segment, static_cast<quint16>(inner.size() + 8));
        segment.append(2, '\0');
    } else {
        segment.append(8, '\0');                      // sequence and acknowledgement numbers
        octets::append(segment, quint32(0x5010ffff)); // five words of header, ACK, window
        segment.append(4, '\0');
    }
    segment += inner;

    int network = index - 1;
    while (network >= 0 && _layers.at(network).kind != Kind::Ipv4 && _layers.at(network).kind != Kind::Ipv6)
        --network;
    QByteArray covered;
    if (network >= 0) // RFC 768: the sum covers the addresses as well
        covered = _layers.at(network).first + _layers.at(network).second;
    octets::append(covered, static_cast<quint16>(tcpOrUdp(udp)));
    octets::append(covered, static_cast<quint16>(segment.size()));
    const quint16 checksum = internetChecksum(covered + segment);
    octets::set16(segment, udp ? 6 : 16, udp && checksum == 0 ? quint16(0xffff) : checksum);
    return segment;
}

QByteArray FrameBuilder::wrap(int index, const QByteArray &inner) const
{
    const Layer &layer = _layers.at(index);
    QByteArray header;
    switch (layer.kind) {
    case Kind::Ethernet:
        header = kPtpMac + kSlaveMac;
        octets::append(header, etherTypeAfter(index));
        break;
    case Kind::LinuxCooked:
        header = cookedHeader(etherTypeAfter(index));
        break;
    case Kind::LinuxCooked2:
        header = cookedHeader2(etherTypeAfter(index));
        break;
    case Kind::Loopback:
        octets::append(header, loopbackFamily(index));
        break;
    case Kind::Vlan:
        octets::append(header, static_cast<quint16>(layer.number));
        octets::append(header, etherTypeAfter(index));
        break;
    case Kind::Pppoe:
        header = pppoeHeader(static_cast<quint16>(layer.number), inner.size(), etherTypeAfter(index) == 0x86dd);
        break;
    case Kind::Mpls:
        // RFC 3032: 20 bits of label, 3 of traffic class, bottom of stack, time to live.
        octets::append(header, (layer.number << 12U) | (etherTypeAfter(index) == 0x8847 ? 0U : 0x100U) | 64U);
        break;
    case Kind::Gre:
        octets::append(header, quint16(0));
        octets::append(header, etherTypeAfter(index));
        break;
    case Kind::Ipv4:
        return wrapIpv4(index, inner);
    case Kind::Ipv6:
        return wrapIpv6(index, inner);
    case Kind::Ipv6Extension:
        octets::append(header, ipProtocolAfter(index));
        octets::append(header, static_cast<quint8>((layer.first.size() + 2) / 8 - 1));
        header += layer.first;
        break;
    case Kind::Ipv6Fragment:
        octets::append(header, ipProtocolAfter(index));
        octets::append(header, quint8(0));
        octets::append(header, layer.extra);
        octets::append(header, layer.number);
        break;
    case Kind::Udp:
    case Kind::Tcp:
        return wrapTransport(index, inner);
    case Kind::Payload:
        return layer.first + inner;
    }
    return header + inner;
}

Frame FrameBuilder::build() const
{
    Frame frame;
    for (int index = _layers.size() - 1; index >= 0; --index) {
        const Layer &layer = _layers.at(index);
        frame.bytes = wrap(index, frame.bytes);
        if (layer.kind == Kind::Ipv4) {
            const auto octet = [&layer](int i) { return QString::number(static_cast<quint8>(layer.first.at(i))); };
            frame.ipv4Source = QStringLiteral("%1.%2.%3.%4").arg(octet(0), octet(1), octet(2), octet(3));
        }
    }
    frame.linkType = _layers.isEmpty() ? linktype::Ethernet : _layers.first().linkType;
    return frame;
}

} // namespace capturebuilder
