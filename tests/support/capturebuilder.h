#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <array>
#include <optional>

/// Builds PTP messages, the frames that carry them and the capture files that hold the frames, for tests. Everything is
/// a plain value: fill the fields, ask for the bytes. Lengths and checksums are right unless a test overrides them, so
/// that other tools read the files without complaint. Qt Core only; usable from any thread.
namespace capturebuilder {

enum class ByteOrder { Little, Big };

/// Capture time of a record as its file carries it. `nanoseconds` may be a second or more: odd writers do that, and
/// readers must cope. Seconds before 1970 are negative.
struct RecordTime
{
    qint64 seconds = 0;
    quint32 nanoseconds = 0;

    /// The time so many milliseconds since the Unix epoch (may be negative), nanoseconds below one second.
    static RecordTime fromMilliseconds(qint64 milliseconds, quint32 extraNanoseconds = 0);
};

// ---- PTP messages (IEEE 1588-2008 clause 13)
// ----------------------------------------------------------------------------

enum class PtpType : quint8 {
    Sync = 0x0,
    DelayReq = 0x1,
    PdelayReq = 0x2,
    PdelayResp = 0x3,
    FollowUp = 0x8,
    DelayResp = 0x9,
    PdelayRespFollowUp = 0xa,
    Announce = 0xb,
    Signaling = 0xc,
    Management = 0xd
};

using ClockIdentity = std::array<quint8, 8>;

/// IEEE 1588-2008 5.3.5.
struct PortIdentity
{
    ClockIdentity clockIdentity{{0x00, 0x1b, 0x19, 0xff, 0xfe, 0x00, 0x00, 0x01}};
    quint16 portNumber = 1;
};

/// IEEE 1588-2008 5.3.3; the upper 16 bits of `seconds` are not transmitted.
struct PtpTimestamp
{
    quint64 seconds = 0;
    quint32 nanoseconds = 0;
};

/// What only Announce carries (IEEE 1588-2008 13.5).
struct AnnounceFields
{
    qint16 currentUtcOffset = 37;
    quint8 grandmasterPriority1 = 128;
    quint8 clockClass = 248;
    quint8 clockAccuracy = 0xfe;
    quint16 offsetScaledLogVariance = 0xffff;
    quint8 grandmasterPriority2 = 128;
    ClockIdentity grandmasterIdentity{{0x00, 0x1b, 0x19, 0xff, 0xfe, 0x00, 0x00, 0x01}};
    quint16 stepsRemoved = 0;
    quint8 timeSource = 0xa0;
};

/// One PTP message; the defaults make a valid Sync.
struct PtpMessage
{
    PtpType type = PtpType::Sync;
    quint8 transportSpecific = 0;         ///< high nibble of octet 0 (majorSdoId in the 2019 edition)
    quint8 versionPTP = 2;                ///< low nibble of octet 1
    quint8 minorVersionPTP = 0;           ///< high nibble of octet 1
    std::optional<quint16> messageLength; ///< instead of the real length
    quint8 domainNumber = 0;
    quint8 minorSdoId = 0; ///< octet 5, reserved in the 2008 edition
    quint16 flagField = 0;
    qint64 correctionField = 0; ///< nanoseconds times 65536
    quint32 messageTypeSpecific = 0;
    PortIdentity sourcePortIdentity;
    quint16 sequenceId = 0;
    std::optional<quint8> controlField; ///< instead of the type's own
    qint8 logMessageInterval = 0;

    PtpTimestamp timestamp;              ///< origin, precise origin, receive or request receipt time stamp, by type
    PortIdentity requestingPortIdentity; ///< Delay_Resp, Pdelay_Resp; target port of Signaling and Management
    AnnounceFields announce;
    QByteArray suffix; ///< TLVs or rubbish after the body, counted in the message's length

    /// Octets that the type needs at least, header included (IEEE 1588-2008 13.5 to 13.12; 34 for a type without a
    /// body).
    int minimumLength() const;
    /// The message in transmission order.
    QByteArray toBytes() const;
    /// What the header announces: `messageLength` when set, otherwise the real length.
    quint16 announcedLength() const;
    /// True when a version 2 decoder must accept a datagram that holds the first `captured` octets of the message (all
    /// of them when negative) and nothing else: version, type's minimum, announced length.
    bool isDecodable(int captured = -1) const;
};

// ---- Frames
// -------------------------------------------------------------------------------------------------------------

/// Link types of capture files (https://www.tcpdump.org/linktypes.html).
namespace linktype {
constexpr quint16 Null = 0;
constexpr quint16 Ethernet = 1;
constexpr quint16 Raw = 101;
constexpr quint16 Loop = 108;
constexpr quint16 LinuxCooked = 113;
constexpr quint16 LinuxCooked2 = 276;
} // namespace linktype

/// IPv4 header fields that a test may want to bend.
struct Ipv4Fields
{
    quint8 timeToLive = 64;
    quint16 identification = 0;
    quint16 fragmentOffset = 0; ///< octets, a multiple of 8
    bool moreFragments = false;
    QByteArray options;                             ///< filled up with zeros to a multiple of four octets, at most 40
    std::optional<quint16> totalLength;             ///< instead of the real length
    std::optional<quint8> protocol;                 ///< instead of the next layer's
    std::optional<quint8> headerLengthIn32BitWords; ///< instead of the real one
};

/// A frame as captured, with what a reader has to know about it.
struct Frame
{
    QByteArray bytes;
    quint16 linkType = linktype::Ethernet;
    std::optional<QString> ipv4Source; ///< source address of the outermost IPv4 header, if there is one
};

/// Stacks protocol layers from the outside in and fills lengths, next-protocol fields and checksums:
/// `FrameBuilder().ethernet().vlan(100).ipv4("10.0.0.1", "224.0.1.129").udp(319, 319).payload(bytes).build()`.
/// The first layer decides the link type: an IP header first makes a raw IP frame.
class FrameBuilder
{
public:
    FrameBuilder &ethernet();
    FrameBuilder &linuxCooked();
    FrameBuilder &linuxCooked2();
    /// BSD loopback header; the address family stands in the byte order of the machine that captured.
    FrameBuilder &nullLoopback(ByteOrder order = ByteOrder::Little, quint32 ipv6Family = 30);
    /// OpenBSD loopback header: the same in network byte order.
    FrameBuilder &loop(quint32 ipv6Family = 24);
    FrameBuilder &vlan(quint16 vlanId, quint8 priority = 0, quint16 tagProtocol = 0x8100);
    FrameBuilder &pppoe(quint16 sessionId = 1);
    FrameBuilder &mpls(quint32 label);
    /// Generic routing encapsulation, version 0 without optional fields.
    FrameBuilder &gre();
    FrameBuilder &ipv4(const QString &source, const QString &destination, const Ipv4Fields &fields = {});
    FrameBuilder &ipv6(const QString &source, const QString &destination);
    /// An IPv6 extension header of the common shape (hop-by-hop 0, routing 43, destination options 60).
    FrameBuilder &ipv6Extension(quint8 headerType, const QByteArray &body = QByteArray(6, '\0'));
    /// IPv6 fragment header; the offset counts octets and is a multiple of 8.
    FrameBuilder &ipv6Fragment(quint16 offset, bool moreFragments, quint32 identification = 1);
    FrameBuilder &udp(quint16 sourcePort, quint16 destinationPort);
    /// A TCP segment with the ACK flag, no options.
    FrameBuilder &tcp(quint16 sourcePort, quint16 destinationPort);
    /// The innermost octets; the numbers say what stands in a link or IP header directly in front of them.
    FrameBuilder &payload(const QByteArray &bytes, quint16 etherType = 0xffff, quint8 ipProtocol = 253);

    Frame build() const;

private:
    enum class Kind {
        Ethernet,
        LinuxCooked,
        LinuxCooked2,
        Loopback,
        Vlan,
        Pppoe,
        Mpls,
        Gre,
        Ipv4,
        Ipv6,
        Ipv6Extension,
        Ipv6Fragment,
        Udp,
        Tcp,
        Payload
    };
    struct Layer
    {
        Kind kind = Kind::Payload;
        QByteArray first;    // source address; extension body; payload; packed fixed header
        QByteArray second;   // destination address
        quint32 number = 0;  // VLAN tag, label, session, identification, source port, loopback's IPv6 family
        quint16 extra = 0;   // tag protocol, destination port, fragment word, ether type
        quint8 protocol = 0; // the number that names this layer in an IP header in front of it
        quint16 linkType = linktype::Raw;
        ByteOrder order = ByteOrder::Big;
        Ipv4Fields ipv4;
    };

    FrameBuilder &add(Kind kind, quint32 number = 0, quint16 extra = 0, quint16 linkType = linktype::Raw);
    QByteArray wrap(int index, const QByteArray &inner) const;
    QByteArray wrapIpv4(int index, const QByteArray &inner) const;
    QByteArray wrapIpv6(int index, const QByteArray &inner) const;
    QByteArray wrapTransport(int index, const QByteArray &inner) const;
    quint16 etherTypeAfter(int index) const;
    quint8 ipProtocolAfter(int index) const;
    quint32 loopbackFamily(int index) const;

    QVector<Layer> _layers;
};

/// One record of a capture: the frame, its time, and what an analysis must find in it.
struct CapturedPacket
{
    RecordTime time;
    Frame frame;
    /// The PTP message that a reader must decode from the frame; empty for a packet that it has to pass over.
    std::optional<PtpMessage> message;
};

/// A PTP message in Ethernet, IPv4 and UDP, multicast, on the port that its type uses (319 event, 320 general).
/// `message` of the result is set only when a decoder must accept it.
CapturedPacket ptpOverUdp(const RecordTime &time, const QString &source, const PtpMessage &message);
/// A PTP message directly in Ethernet (ether type 0x88f7): not UDP, so the analysis passes over it.
CapturedPacket ptpOverEthernet(const RecordTime &time, const PtpMessage &message);
/// UDP traffic of something else.
CapturedPacket videoPacket(const RecordTime &time, const QString &source, int payloadSize = 1316);
/// 319 for Sync, Delay_Req and the peer delay events, 320 for the rest (IEEE 1588-2008 D.2).
quint16 ptpPort(PtpType type);

// ---- Capture files
// ------------------------------------------------------------------------------------------------------

/// Classic pcap. The link type is that of the first packet unless given.
struct PcapFormat
{
    bool nanoseconds = false;
    ByteOrder order = ByteOrder::Little;
    quint32 snapLength = 262144; ///< frames are cut to it
    std::optional<quint16> linkType;
};

/// pcapng with one section, one interface and enhanced packet blocks.
struct PcapngFormat
{
    ByteOrder order = ByteOrder::Little;
    /// if_tsresol: power of ten, or power of two with the highest bit set; without it microseconds hold.
    std::optional<quint8> timestampResolution;
    quint32 snapLength = 262144;
    std::optional<quint16> linkType;
};

QByteArray toPcap(const QVector<CapturedPacket> &packets, const PcapFormat &format = {});
/// Only times of 1970 or later can be written.
QByteArray toPcapng(const QVector<CapturedPacket> &packets, const PcapngFormat &format = {});
/// The time that libpcap reports for a record of such a file at nanosecond precision: parts below the file's resolution
/// are lost, and a file in the machine's own byte order has its 32-bit fields read as signed numbers.
RecordTime timeReadBack(const RecordTime &time, const PcapFormat &format);
RecordTime timeReadBack(const RecordTime &time, const PcapngFormat &format);
/// Writes (and replaces) a file; false when it cannot be written whole.
bool writeFile(const QString &path, const QByteArray &bytes);

// ---- A whole site
// -------------------------------------------------------------------------------------------------------

/// A network of one master and its slaves. Without faults it is one that the checks call normal: Sync and Follow_Up
/// every second, Announce every two, one answered Delay_Req per slave after each Sync.
struct SiteOptions
{
    int slaves = 9;
    int seconds = 30; ///< number of Sync messages
    RecordTime start{1700000000, 0};
    quint64 seed = 1; ///< moves the requests by some milliseconds inside their second
    int responseDelayMs = 2;
    quint8 domainNumber = 0;
    QString network = QStringLiteral("192.168.100"); ///< the master is host 100, the slaves are 1, 2, …

    // Faults
    int lostSlave = 0;        ///< number of a slave that falls silent, 0 for none
    int lostFromSecond = 0;   ///< since when
    int pauseFromSecond = -1; ///< the master sends nothing from here on, negative for never
    int pauseSeconds = 0;     ///< for so long
    int lateEvery = 0;        ///< every n-th answer is late, 0 for none
    int lateByMs = 60;        ///< the delay of a late answer
    int unansweredEvery = 0;  ///< every n-th request stays without an answer, 0 for none
};

/// The site's packets in time order.
QVector<CapturedPacket> ptpSite(const SiteOptions &options = {});

} // namespace capturebuilder
