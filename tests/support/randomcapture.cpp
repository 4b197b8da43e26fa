#include "randomcapture.h"

#include <QDateTime>
#include <QTimeZone>

#include <cmath>
#include <limits>

using namespace capturebuilder;

namespace randomcapture {

namespace {

constexpr qint64 kSecond = 1000;
constexpr qint64 kHour = 3600 * kSecond;
constexpr qint64 kYear = 31556952 * kSecond;

const QString kGroup = QStringLiteral("224.0.1.129");
const QString kGroupIpv6 = QStringLiteral("ff0e::181");

/// The capture file's own properties.
struct Format
{
    bool pcapng = false;
    PcapFormat pcap;
    PcapngFormat next;
    quint16 linkType = linktype::Ethernet;

    quint32 snapLength() const { return pcapng ? next.snapLength : pcap.snapLength; }
};

Format randomFormat(RandomSource &random)
{
    Format format;
    format.pcapng = random.chance(20);
    const ByteOrder order = random.chance(60) ? ByteOrder::Little : ByteOrder::Big;
    format.pcap.order = order;
    format.next.order = order;
    format.pcap.nanoseconds = random.chance(40);
    if (random.chance(70)) {
        static const quint8 kResolutions[] = {3, 6, 9, 0x80 | 10, 0x80 | 20};
        format.next.timestampResolution = kResolutions[random.below(5)];
    }
    if (random.chance(5))
        format.pcap.snapLength = format.next.snapLength = static_cast<quint32>(random.between(40, 110));
    static const QVector<quint16> kLinkTypes{linktype::Ethernet, linktype::Ethernet,    linktype::Ethernet,
                                             linktype::Ethernet, linktype::LinuxCooked, linktype::LinuxCooked2,
                                             linktype::Raw,      linktype::Null,        linktype::Loop};
    format.linkType = random.pick(kLinkTypes);
    format.pcap.linkType = format.linkType;
    format.next.linkType = format.linkType;
    return format;
}

// ---- Frames ---------------------------------------------------------------------------------------------------------

FrameBuilder linkLayer(RandomSource &random, quint16 linkType)
{
    FrameBuilder frame;
    if (linkType == linktype::LinuxCooked)
        return frame.linuxCooked();
    if (linkType == linktype::LinuxCooked2)
        return frame.linuxCooked2();
    if (linkType == linktype::Null)
        return frame.nullLoopback(random.chance(50) ? ByteOrder::Little : ByteOrder::Big);
    if (linkType == linktype::Loop)
        return frame.loop();
    if (linkType == linktype::Raw)
        return frame;
    frame.ethernet();
    switch (random.below(12)) {
    case 0:
        frame.vlan(static_cast<quint16>(random.below(4095)), 5);
        break;
    case 1:
        frame.vlan(2, 0, random.chance(50) ? 0x88a8 : 0x8100).vlan(100);
        break;
    case 2:
        frame.pppoe();
        break;
    case 3:
        frame.mpls(1000);
        if (random.chance(50))
            frame.mpls(1001);
        break;
    default:
        break;
    }
    return frame;
}

void networkLayer(RandomSource &random, FrameBuilder &frame, const QString &source)
{
    Ipv4Fields fields;
    if (random.chance(10))
        fields.options = QByteArray(random.below(40), '\x01');
    switch (random.below(16)) {
    case 0: // no IPv4 at all: a record without a source address
        frame.ipv6(QStringLiteral("fe80::1:2"), kGroupIpv6);
        if (random.chance(40))
            frame.ipv6Extension(random.chance(50) ? 0 : 60, QByteArray(random.below(20), '\0'));
        break;
    case 1:
        frame.ipv4(source, QStringLiteral("10.77.0.1"), fields).ipv4(QStringLiteral("172.16.0.9"), kGroup);
        break;
    case 2:
        frame.ipv4(source, QStringLiteral("10.77.0.1"), fields).ipv6(QStringLiteral("fe80::9"), kGroupIpv6);
        break;
    case 3:
        frame.ipv6(QStringLiteral("fe80::9"), QStringLiteral("fe80::a")).ipv4(source, kGroup, fields);
        break;
    case 4:
        frame.ipv4(source, QStringLiteral("10.77.0.1"), fields).gre().ipv4(QStringLiteral("172.16.0.9"), kGroup);
        break;
    default:
        frame.ipv4(source, kGroup, fields);
        break;
    }
}

/// Ports of which at least one is a PTP port.
void portLayer(RandomSource &random, FrameBuilder &frame, PtpType type)
{
    const quint16 port = ptpPort(type);
    const auto other = static_cast<quint16>(random.between(1024, 65535));
    const int kind = random.below(10);
    frame.udp(kind == 0 ? other : port, kind == 1 ? other : port);
}

/// A frame that carries the message and is no PTP over UDP for one reason or another.
Frame unheardFrame(RandomSource &random, quint16 linkType, const QString &source, const PtpMessage &message)
{
    FrameBuilder frame = linkLayer(random, linkType);
    const QByteArray bytes = message.toBytes();
    switch (random.below(5)) {
    case 0:
        return frame.ipv4(source, kGroup).udp(5000, 3190).payload(bytes).build();
    case 1:
        return frame.ipv4(source, kGroup).tcp(319, 319).payload(bytes).build();
    case 2: {
        Ipv4Fields fragment;
        fragment.fragmentOffset = 8;
        return frame.ipv4(source, kGroup, fragment).udp(319, 319).payload(bytes).build();
    }
    case 3:
        return frame.ipv6(QStringLiteral("fe80::3"), kGroupIpv6)
            .ipv6Fragment(8, random.chance(50))
            .udp(319, 319)
            .payload(bytes)
            .build();
    default:
        return linkType == linktype::Raw ? frame.ipv4(source, kGroup).payload(bytes).build()
                                         : frame.payload(bytes, 0x88f7).build();
    }
}

// ---- Messages -------------------------------------------------------------------------------------------------------

PortIdentity randomPort(RandomSource &random)
{
    PortIdentity port;
    port.clockIdentity.back() = static_cast<quint8>(random.below(3));
    port.portNumber = static_cast<quint16>(random.chance(90) ? 1 : random.below(65536));
    return port;
}

PtpType randomType(RandomSource &random)
{
    static const QVector<PtpType> kUsual{PtpType::Sync,     PtpType::Sync,     PtpType::FollowUp,  PtpType::Announce,
                                         PtpType::DelayReq, PtpType::DelayReq, PtpType::DelayResp, PtpType::DelayResp};
    return random.chance(94) ? random.pick(kUsual) : static_cast<PtpType>(random.below(16));
}

/// Fields that records show, filled from end to end of their ranges.
void fillFields(RandomSource &random, PtpMessage &message)
{
    message.transportSpecific = static_cast<quint8>(random.below(16));
    message.minorVersionPTP = static_cast<quint8>(random.below(16));
    message.domainNumber = static_cast<quint8>(random.chance(80) ? random.below(2) : random.below(256));
    message.flagField = static_cast<quint16>(random.below(65536));
    message.correctionField = random.chance(50) ? 0 : static_cast<qint64>(random.next());
    message.sourcePortIdentity = randomPort(random);
    message.requestingPortIdentity = randomPort(random);
    message.timestamp = {random.next(), static_cast<quint32>(random.next())};
    message.announce.currentUtcOffset = static_cast<qint16>(random.between(-32768, 32767));
    message.announce.clockClass = static_cast<quint8>(random.below(256));
    message.announce.offsetScaledLogVariance = static_cast<quint16>(random.below(65536));
    message.announce.stepsRemoved = static_cast<quint16>(random.below(65536));
    message.announce.timeSource = static_cast<quint8>(random.below(256));
    if (random.chance(10))
        message.suffix = QByteArray(random.below(40), 't');
}

void breakMessage(RandomSource &random, PtpMessage &message)
{
    switch (random.below(3)) {
    case 0:
        message.versionPTP = static_cast<quint8>(random.chance(50) ? 1 : random.below(16));
        break;
    case 1:
        message.messageLength = static_cast<quint16>(random.below(message.announcedLength() + 20));
        break;
    default: // rubbish behind the message, not counted in its length
        message.messageLength = message.announcedLength();
        message.suffix += QByteArray(random.below(9), 'r');
        break;
    }
}

/// What a reader makes of a frame of which `length` octets were kept; the message is the frame's last part.
bool survivesCut(const Frame &frame, const PtpMessage &message, int length)
{
    const int kept = qMin(length, frame.bytes.size());
    return message.isDecodable(qMax(0, kept - (frame.bytes.size() - message.toBytes().size())));
}

QString randomSource(RandomSource &random, PtpType type)
{
    if (random.chance(5))
        return QStringLiteral("172.%1.0.%2").arg(random.below(256)).arg(random.below(256));
    const bool slave = type == PtpType::DelayReq;
    return QStringLiteral("10.0.0.%1").arg(slave ? random.between(1, 4) : random.between(100, 101));
}

CapturedPacket randomPacket(RandomSource &random, const Format &format, const RecordTime &time, PtpMessage message,
                            const QString &source)
{
    CapturedPacket packet;
    packet.time = time;
    if (random.chance(4))
        breakMessage(random, message);
    if (random.chance(5)) {
        packet.frame = unheardFrame(random, format.linkType, source, message);
        return packet;
    }
    FrameBuilder frame = linkLayer(random, format.linkType);
    networkLayer(random, frame, source);
    portLayer(random, frame, message.type);
    packet.frame = frame.payload(message.toBytes()).build();
    const int length = random.chance(3) ? random.below(packet.frame.bytes.size() + 1) : packet.frame.bytes.size();
    if (survivesCut(packet.frame, message, qMin(length, static_cast<int>(format.snapLength()))))
        packet.message = message;
    packet.frame.bytes.truncate(length);
    return packet;
}

// ---- Times ----------------------------------------------------------------------------------------------------------

/// Fractions of a second as files may have them, above a second included.
quint32 randomFraction(RandomSource &random)
{
    return random.chance(97) ? static_cast<quint32>(random.below(1000000))
                             : static_cast<quint32>(random.between(0, 1147000000));
}

RecordTime recordTime(RandomSource &random, qint64 milliseconds)
{
    return RecordTime::fromMilliseconds(milliseconds, randomFraction(random));
}

qint64 nominalStep(PtpType type)
{
    return type == PtpType::Announce ? 2 * kSecond : kSecond;
}

/// Messages of each type about their nominal interval apart, requests and responses in pairs, all with small errors.
QVector<CapturedPacket> nearlyRegular(RandomSource &random, const Format &format, qint64 base, int count)
{
    QMap<PtpType, qint64> clocks;
    QVector<CapturedPacket> packets;
    qint64 lastRequest = base;
    quint16 lastSequence = 0;
    const int errorMs = random.chance(50) ? 3 : 130;
    for (int i = 0; i < count; ++i) {
        PtpMessage message;
        message.type = randomType(random);
        fillFields(random, message);
        qint64 &clock = clocks[message.type];
        clock += nominalStep(message.type) + random.between(-errorMs, errorMs);
        qint64 time = base + clock;
        message.sequenceId = static_cast<quint16>(clock / nominalStep(message.type));
        if (message.type == PtpType::DelayResp) {
            time = lastRequest + random.between(-2, random.chance(80) ? 52 : 110);
            message.sequenceId = lastSequence;
        }
        if (message.type == PtpType::DelayReq) {
            lastRequest = time;
            lastSequence = message.sequenceId;
        }
        packets.append(
            randomPacket(random, format, recordTime(random, time), message, randomSource(random, message.type)));
        if (random.chance(2)) // twice in the file, as mirrored ports give it
            packets.append(packets.last());
    }
    return packets;
}

/// Any message at any time within `spreadMs` of the base.
QVector<CapturedPacket> irregular(RandomSource &random, const Format &format, qint64 base, qint64 spreadMs, int count)
{
    QVector<CapturedPacket> packets;
    for (int i = 0; i < count; ++i) {
        PtpMessage message;
        message.type = randomType(random);
        fillFields(random, message);
        message.sequenceId = static_cast<quint16>(random.chance(95) ? random.below(6) : random.below(65536));
        const qint64 time = base + random.between(-spreadMs, spreadMs);
        packets.append(
            randomPacket(random, format, recordTime(random, time), message, randomSource(random, message.type)));
    }
    return packets;
}

/// Many requests and responses of one sequence id within a second or so.
QVector<CapturedPacket> crowd(RandomSource &random, const Format &format, qint64 base, int count)
{
    QVector<CapturedPacket> packets;
    for (int i = 0; i < count; ++i) {
        PtpMessage message;
        message.type = random.chance(70) ? PtpType::DelayResp : PtpType::DelayReq;
        if (i == 0 || i == count - 1)
            message.type = PtpType::Sync;
        fillFields(random, message);
        const qint64 time = base + (i == count - 1 ? 2 * kSecond : random.between(0, 1500));
        packets.append(
            randomPacket(random, format, recordTime(random, time), message, randomSource(random, message.type)));
    }
    return packets;
}

/// Every check must cope with the absence of what the others judge.
QVector<CapturedPacket> withoutSomeTypes(RandomSource &random, const QVector<CapturedPacket> &packets)
{
    const int share = random.chance(50) ? 100 : 60;
    QMap<PtpType, bool> kept;
    for (const PtpType type :
         {PtpType::Announce, PtpType::Sync, PtpType::FollowUp, PtpType::DelayReq, PtpType::DelayResp})
        kept[type] = random.chance(share);
    QVector<CapturedPacket> left;
    for (const CapturedPacket &packet : packets) {
        if (kept.value(packet.message->type))
            left.append(packet);
    }
    return left;
}

/// A site of which a tenth is faulty, on the spot or just beside it: ten windows or gaps, ten or twenty requests.
QVector<CapturedPacket> siteOnTheEdge(RandomSource &random, qint64 base)
{
    SiteOptions options;
    options.seed = random.next();
    options.start = recordTime(random, base);
    options.slaves = static_cast<int>(random.between(1, 2));
    options.seconds = static_cast<int>(random.between(11, 13)); // the last Sync and what follows it are not judged
    switch (random.below(3)) {
    case 0:
        options.lostSlave = 1;
        options.lostFromSecond = static_cast<int>(random.between(8, 10));
        break;
    case 1:
        options.pauseFromSecond = 5;
        options.pauseSeconds = 1;
        break;
    default:
        options.unansweredEvery = 10;
        break;
    }
    return withoutSomeTypes(random, ptpSite(options));
}

/// A site with one or two faults, Ethernet only.
QVector<CapturedPacket> site(RandomSource &random, qint64 base)
{
    SiteOptions options;
    options.seed = random.next();
    options.start = recordTime(random, base);
    options.slaves = random.below(5);
    options.seconds = random.below(16);
    options.responseDelayMs = static_cast<int>(random.between(0, 49));
    options.lostSlave = random.below(4);
    options.lostFromSecond = random.below(16);
    options.pauseFromSecond = random.chance(30) ? random.below(16) : -1;
    options.pauseSeconds = random.below(4);
    options.lateEvery = random.chance(30) ? random.below(20) : 0;
    options.lateByMs = static_cast<int>(random.between(49, 102));
    options.unansweredEvery = random.chance(30) ? random.below(20) : 0;
    return ptpSite(options);
}

QVector<CapturedPacket> randomPackets(RandomSource &random, const Format &format, qint64 base)
{
    const int count = random.chance(1) ? 400 : random.below(60);
    if (random.chance(3))
        return crowd(random, format, base, static_cast<int>(random.between(60, 160)));
    switch (random.below(10)) {
    case 0:
        return irregular(random, format, base, 30 * kSecond, count);
    case 1:
        return irregular(random, format, base, random.chance(5) ? kHour : 180 * kSecond, count);
    case 2:
        return irregular(random, format, base, random.chance(5) ? 40 * kYear : 40, count);
    case 3:
        return irregular(random, format, base, 3 * kSecond, count);
    case 4:
    case 5:
        if (format.linkType == linktype::Ethernet && format.snapLength() > 200)
            return random.chance(60) ? site(random, base) : siteOnTheEdge(random, base);
        break;
    default:
        break;
    }
    return nearlyRegular(random, format, base, count);
}

QString describe(const Format &format, const Capture &capture, qint64 base)
{
    return QStringLiteral("%1, %2 endian, link type %3, %4 packets around %5 ms, %6 slaves, interval %7")
        .arg(format.pcapng ? QStringLiteral("pcapng") : QStringLiteral("pcap"),
             format.pcap.order == ByteOrder::Big ? QStringLiteral("big") : QStringLiteral("little"))
        .arg(format.linkType)
        .arg(capture.packets.size())
        .arg(base)
        .arg(capture.settings.expectedSlaveCount)
        .arg(capture.settings.slaveAnalysisInterval);
}

// ---- Record texts ---------------------------------------------------------------------------------------------------

/// A wall-clock text around the zone's last change before `base` or shortly after it, in the hour that the change
/// leaves out if it goes forward.
QString skippedTimeText(RandomSource &random, const QByteArray &zone, qint64 base)
{
    const QTimeZone rules(zone);
    const QTimeZone::OffsetData change =
        rules.previousTransition(QDateTime::fromMSecsSinceEpoch(base + 2 * kHour, Qt::UTC));
    if (!change.atUtc.isValid())
        return QStringLiteral("2023-02-30 00:00:00.000");
    const int before = rules.offsetFromUtc(change.atUtc.addSecs(-1));
    const QDateTime wall = change.atUtc.addSecs(before).addMSecs(random.between(-2, 3600) * kSecond / 2);
    return wall.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
}

QString oddTimeText(RandomSource &random)
{
    static const QStringList kTexts{
        QString(),
        QStringLiteral(" "),
        QStringLiteral("never"),
        QStringLiteral("2023-06-15"),
        QStringLiteral("2023-06-15 12:00:00"),
        QStringLiteral("2023-06-15 12:00:00.5"),
        QStringLiteral("2023-06-15 12:00:00.50"),
        QStringLiteral("2023-06-15 12:00:00.0000"),
        QStringLiteral("2023-06-15 12:00:00,000"),
        QStringLiteral("2023-06-15T12:00:00.000"),
        QStringLiteral(" 2023-06-15 12:00:00.000"),
        QStringLiteral("2023-06-15 12:00:00.000 "),
        QStringLiteral("2023-06-15  12:00:00.000"),
        QStringLiteral("2023-6-15 12:00:00.000"),
        QStringLiteral("2023-06-15 1:00:00.000"),
        QStringLiteral("2023-06-15 12:00:00.000 ~ 2023-06-15 12:00:01.000"),
        QStringLiteral("2023-02-29 12:00:00.000"),
        QStringLiteral("2024-02-29 12:00:00.000"),
        QStringLiteral("2100-02-29 12:00:00.000"),
        QStringLiteral("2023-13-01 12:00:00.000"),
        QStringLiteral("2023-00-01 12:00:00.000"),
        QStringLiteral("2023-01-00 12:00:00.000"),
        QStringLiteral("2023-04-31 12:00:00.000"),
        QStringLiteral("2023-06-15 24:00:00.000"),
        QStringLiteral("2023-06-15 23:60:00.000"),
        QStringLiteral("2023-06-15 23:59:60.000"),
        QStringLiteral("2011-12-30 12:00:00.000"), // a day that Apia never had
        QStringLiteral("0000-01-01 00:00:00.000"),
        QStringLiteral("0001-01-01 00:00:00.000"),
        QStringLiteral("-001-01-01 00:00:00.000"),
        QStringLiteral("-0001-01-01 00:00:00.000"),
        QStringLiteral("0099-12-31 23:59:59.999"),
        QStringLiteral("1582-10-10 12:00:00.000"),
        QStringLiteral("1899-12-31 23:59:59.999"),
        QStringLiteral("1969-12-31 23:59:59.999"),
        QStringLiteral("1970-01-01 00:00:00.000"),
        QStringLiteral("2038-01-19 03:14:08.000"),
        QStringLiteral("2400-02-29 12:00:00.000"),
        QStringLiteral("9999-12-31 23:59:59.999"),
        QStringLiteral("10000-01-01 00:00:00.000"),
        QStringLiteral("+2023-06-15 12:00:00.000"),
        QStringLiteral("２０２３-06-15 12:00:00.000"),
        QStringLiteral("2023-06-15 12:00:00.٠٠٠"),
        QStringLiteral("2023-0a-15 12:00:00.000"),
        QStringLiteral("2023-+6-15 12:00:00.000"),
        QStringLiteral("2023--6-15 12:00:00.000"),
        QStringLiteral("2023- 6-15 12:00:00.000"),
        QStringLiteral("2023-06-15 -1:00:00.000"),
        QStringLiteral("2023-06-15 12:00:00.-01"),
        QStringLiteral("2023-06-15 12:00:00. 01"),
    };
    return random.pick(kTexts);
}

QString damagedTimeText(RandomSource &random, qint64 time)
{
    QString text = textanalysis::timeText(time);
    const QString characters = QStringLiteral("0123456789 -:.x");
    return text.replace(random.below(text.size()), 1, random.pick(characters));
}

QString randomTimeText(RandomSource &random, const QByteArray &zone, qint64 base)
{
    const int kind = random.below(100);
    if (kind < 4)
        return oddTimeText(random);
    if (kind < 6)
        return skippedTimeText(random, zone, base);
    const qint64 time = base + random.between(-20, 20) * 500 + random.between(-60, 60);
    return kind < 8 ? damagedTimeText(random, time) : textanalysis::timeText(time);
}

QString randomAddressText(RandomSource &random)
{
    static const QStringList kOdd{QString(),
                                  QStringLiteral("fe80::1"),
                                  QStringLiteral("1.2.3"),
                                  QStringLiteral("1.2.3.4.5"),
                                  QStringLiteral("..."),
                                  QStringLiteral("%1.%2.%3.%4"),
                                  QStringLiteral("%2.%1.99.x"),
                                  QStringLiteral("一.二.三.四")};
    if (random.chance(5))
        return random.pick(kOdd);
    return QStringLiteral("192.168.100.%1").arg(random.between(1, 4));
}

} // namespace

qint64 baseTime(RandomSource &random, const QByteArray &zone)
{
    const qint64 anywhere = random.between(-69 * kYear, 136 * kYear);
    const int kind = random.below(20);
    if (kind == 0)
        return anywhere;
    if (kind == 1)
        return random.chance(40) ? 0 : random.between(-5 * kSecond, 5 * kSecond); // the epoch itself
    const qint64 year = kind < 16 ? random.between(0, 67 * kYear) : anywhere;
    const QDateTime from = QDateTime::fromMSecsSinceEpoch(year, Qt::UTC);
    const QTimeZone::OffsetData change = QTimeZone(zone).nextTransition(from);
    if (!change.atUtc.isValid() || qAbs(change.atUtc.toMSecsSinceEpoch() - year) > 2 * kYear)
        return year;
    const qint64 reach = random.chance(60) ? 20 * kSecond : kHour + 20 * kSecond;
    return change.atUtc.toMSecsSinceEpoch() + random.between(-reach, reach);
}

textanalysis::Settings settings(RandomSource &random)
{
    static const QVector<double> kIntervals{0.0,
                                            -1.0,
                                            0.4,
                                            0.5,
                                            1.4,
                                            1.5,
                                            2.5,
                                            7.0,
                                            60.0,
                                            3600.0,
                                            1e9,
                                            1e300,
                                            -1e300,
                                            std::nan(""),
                                            std::numeric_limits<double>::infinity(),
                                            -std::numeric_limits<double>::infinity()};
    static const QVector<int> kCounts{
        0, -1, -2, 9, 20, 254, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()};
    textanalysis::Settings settings;
    settings.slaveAnalysisInterval = random.chance(60) ? 1.0 : random.pick(kIntervals);
    settings.expectedSlaveCount = random.chance(88) ? random.below(6) : random.pick(kCounts);
    return settings;
}

Capture capture(RandomSource &random, const QByteArray &zone)
{
    const Format format = randomFormat(random);
    qint64 base = baseTime(random, zone);
    if (format.pcapng && base < kYear)
        base = kYear - base; // pcapng knows no time before 1970
    if (format.pcapng && random.chance(5))
        base = random.between(136 * kYear, 280 * kYear); // up to 2250, not far below what 64-bit nanoseconds can hold
    QVector<CapturedPacket> packets = randomPackets(random, format, base);

    Capture capture;
    capture.settings = settings(random);
    for (CapturedPacket &packet : packets) {
        if (format.pcapng && packet.time.seconds < 0)
            packet.time.seconds = 0;
        CapturedPacket read = packet;
        read.time = format.pcapng ? timeReadBack(packet.time, format.next) : timeReadBack(packet.time, format.pcap);
        capture.packets.append(read);
    }
    capture.file = format.pcapng ? toPcapng(packets, format.next) : toPcap(packets, format.pcap);
    if (!packets.isEmpty() && random.chance(3)) { // broken off inside its last record
        capture.file.chop(1 + random.below(12));
        capture.packets.removeLast();
    }
    capture.description = describe(format, capture, base);
    return capture;
}

textanalysis::Records records(RandomSource &random, const QByteArray &zone, qint64 base, int count)
{
    textanalysis::Records list;
    for (int i = 0; i < count; ++i) {
        QVariantMap record;
        if (random.chance(98))
            record[QStringLiteral("timestamp")] = randomTimeText(random, zone, base);
        if (random.chance(97))
            record[QStringLiteral("sourceIp")] = randomAddressText(random);
        if (random.chance(97))
            record[QStringLiteral("sequenceId")] = QString::number(random.below(5));
        list.append(record);
    }
    return list;
}

} // namespace randomcapture
