#include "capturetexts.h"

#include <ptpv2parser/ptpv2parser.h>

#include <cstring>

namespace analysis {

namespace {

constexpr qint32 kSequenceIds = 65'536;

QString dottedQuad(quint32 networkOrder)
{
    uchar octets[4];
    std::memcpy(octets, &networkOrder, sizeof octets);
    return QStringLiteral("%1.%2.%3.%4").arg(octets[0]).arg(octets[1]).arg(octets[2]).arg(octets[3]);
}

QByteArray identityKey(const PTPv2::PortIdentity &identity)
{
    QByteArray key(10, Qt::Uninitialized);
    std::memcpy(key.data(), identity.clockIdentity.octets.data(), 8);
    std::memcpy(key.data() + 8, &identity.portNumber, 2);
    return key;
}

quint64 sourceKey(const SourceAddress &address)
{
    return address.isKnown ? address.ipv4 : quint64(1) << 32U;
}

// Records are sorted maps. Keys are inserted in their order with the end as hint, which costs no search.
void append(QVariantMap &record, const QString &key, const QString &text)
{
    record.insert(record.cend(), key, text);
}

} // namespace

CaptureTexts::CaptureTexts(WallClock &clock)
    : _clock(clock)
    , _smallNumbers(kSequenceIds)
{}

QVariantMap CaptureTexts::record(const StoredMessage &stored)
{
    const PTPv2::PTPv2Header &header = stored.message.header;
    QVariantMap record;
    append(record, QStringLiteral("correctionField"), correction(header.correctionField));
    append(record, QStringLiteral("domainNumber"), number(header.domainNumber));
    append(record, QStringLiteral("messageLength"), number(header.messageLength));
    append(record, QStringLiteral("messageType"), messageType(header.messageType));
    append(record, QStringLiteral("sequenceId"), number(header.sequenceId));
    if (stored.source.isKnown)
        append(record, QStringLiteral("sourceIp"), address(stored.source));
    append(record, QStringLiteral("sourcePortId"), portIdentity(header.sourcePortIdentity));
    append(record, QStringLiteral("timestamp"), _clock.text(stored.msecs));
    insertBody(record, stored.message);
    return record;
}

void CaptureTexts::insertBody(QVariantMap &record, const PTPv2::PTPv2Message &message)
{
    switch (message.header.messageType) {
    case PTPv2::MessageType::Sync:
    case PTPv2::MessageType::DelayReq:
        record.insert(QStringLiteral("originTimestamp"), timestampText(message.timestamp));
        return;
    case PTPv2::MessageType::FollowUp:
        record.insert(QStringLiteral("preciseOriginTimestamp"), timestampText(message.timestamp));
        return;
    case PTPv2::MessageType::DelayResp:
        record.insert(QStringLiteral("receiveTimestamp"), timestampText(message.timestamp));
        record.insert(QStringLiteral("requestingPortIdentity"), portIdentity(message.requestingPortIdentity));
        return;
    case PTPv2::MessageType::Announce:
        insertAnnounce(record, message);
        return;
    case PTPv2::MessageType::PdelayReq:
    case PTPv2::MessageType::PdelayResp:
    case PTPv2::MessageType::PdelayRespFollowUp:
    case PTPv2::MessageType::Signaling:
    case PTPv2::MessageType::Management:
        return; // the header only
    }
}

void CaptureTexts::insertAnnounce(QVariantMap &record, const PTPv2::PTPv2Message &message)
{
    const PTPv2::AnnounceBody &announce = message.announce;
    record.insert(QStringLiteral("originTimestamp"), timestampText(message.timestamp));
    record.insert(QStringLiteral("currentUtcOffset"), QString::number(announce.currentUtcOffset));
    record.insert(QStringLiteral("grandmasterPriority1"), number(announce.grandmasterPriority1));
    record.insert(QStringLiteral("grandmasterClockQuality"), QString::number(announce.grandmasterClockQuality));
    record.insert(QStringLiteral("grandmasterPriority2"), number(announce.grandmasterPriority2));
    record.insert(QStringLiteral("grandmasterIdentity"), clockIdentity(announce.grandmasterIdentity));
    record.insert(QStringLiteral("stepsRemoved"), number(announce.stepsRemoved));
    record.insert(QStringLiteral("timeSource"), number(announce.timeSource));
}

qint32 CaptureTexts::sourceNumber(const SourceAddress &address)
{
    const auto next = static_cast<qint32>(_sources.size());
    const auto found = _sourceNumbers.constFind(sourceKey(address));
    if (found != _sourceNumbers.constEnd())
        return *found;
    _sourceNumbers.insert(sourceKey(address), next);
    // Records without "sourceIp" read as an empty text wherever messages are grouped by it.
    _sources.push_back(address.isKnown ? dottedQuad(address.ipv4) : QStringLiteral(""));
    return next;
}

QString CaptureTexts::address(const SourceAddress &address)
{
    return source(sourceNumber(address));
}

QString CaptureTexts::portIdentity(const PTPv2::PortIdentity &identity)
{
    QString &text = _portIdentities[identityKey(identity)];
    if (text.isNull())
        text = QString::fromStdString(identity.toString());
    return text;
}

QString CaptureTexts::messageType(PTPv2::MessageType type)
{
    switch (type) {
    case PTPv2::MessageType::Sync:
        return QStringLiteral("SYNC");
    case PTPv2::MessageType::DelayReq:
        return QStringLiteral("DELAY_REQ");
    case PTPv2::MessageType::FollowUp:
        return QStringLiteral("FOLLOW_UP");
    case PTPv2::MessageType::DelayResp:
        return QStringLiteral("DELAY_RESP");
    case PTPv2::MessageType::Announce:
        return QStringLiteral("ANNOUNCE");
    case PTPv2::MessageType::PdelayReq:
    case PTPv2::MessageType::PdelayResp:
    case PTPv2::MessageType::PdelayRespFollowUp:
    case PTPv2::MessageType::Signaling:
    case PTPv2::MessageType::Management:
        break;
    }
    return QString::fromStdString(PTPv2::PTPv2Parser::messageTypeToString(type));
}

QString CaptureTexts::timestamp(const CheckMessage &message)
{
    return _clock.text(message.msecs);
}

QString CaptureTexts::source(qint32 source)
{
    return _sources[static_cast<std::size_t>(source)];
}

QString CaptureTexts::sequence(qint32 sequence)
{
    return number(sequence);
}

qint32 CaptureTexts::sourceCount() const
{
    return static_cast<qint32>(_sources.size());
}

qint32 CaptureTexts::sequenceCount() const
{
    return kSequenceIds;
}

QString CaptureTexts::number(qint64 value)
{
    if (value < 0 || value >= kSequenceIds)
        return QString::number(value);
    QString &text = _smallNumbers[static_cast<std::size_t>(value)];
    if (text.isNull())
        text = QString::number(value);
    return text;
}

QString CaptureTexts::correction(qint64 correctionField)
{
    // Unsigned on purpose: a negative correction shows as a large number.
    return correctionField < 0 ? QString::number(static_cast<quint64>(correctionField)) : number(correctionField);
}

QString CaptureTexts::timestampText(const PTPv2::Timestamp &timestamp)
{
    if (timestamp != PTPv2::Timestamp{})
        return QString::fromStdString(timestamp.toString());
    // Two-step Syncs and most requests carry zeros.
    if (_zeroTimestamp.isNull())
        _zeroTimestamp = QString::fromStdString(timestamp.toString());
    return _zeroTimestamp;
}

QString CaptureTexts::clockIdentity(const PTPv2::ClockIdentity &identity)
{
    return QString::fromStdString(identity.toString());
}

} // namespace analysis
