#include "capturebuilder.h"
#include "octets.h"

namespace capturebuilder {

namespace {

constexpr int kHeaderLength = 34;

void appendIdentity(QByteArray &bytes, const ClockIdentity &identity)
{
    for (const quint8 octet : identity)
        octets::append(bytes, octet);
}

void appendPort(QByteArray &bytes, const PortIdentity &port)
{
    appendIdentity(bytes, port.clockIdentity);
    octets::append(bytes, port.portNumber);
}

void appendTimestamp(QByteArray &bytes, const PtpTimestamp &timestamp)
{
    octets::append(bytes, static_cast<quint16>(timestamp.seconds >> 32U)); // 48-bit seconds
    octets::append(bytes, static_cast<quint32>(timestamp.seconds & 0xffffffffU));
    octets::append(bytes, timestamp.nanoseconds);
}

void appendAnnounce(QByteArray &bytes, const AnnounceFields &announce)
{
    octets::append(bytes, announce.currentUtcOffset);
    octets::append(bytes, quint8(0)); // reserved
    octets::append(bytes, announce.grandmasterPriority1);
    octets::append(bytes, announce.clockClass);
    octets::append(bytes, announce.clockAccuracy);
    octets::append(bytes, announce.offsetScaledLogVariance);
    octets::append(bytes, announce.grandmasterPriority2);
    appendIdentity(bytes, announce.grandmasterIdentity);
    octets::append(bytes, announce.stepsRemoved);
    octets::append(bytes, announce.timeSource);
}

QByteArray body(const PtpMessage &message)
{
    QByteArray bytes;
    switch (message.type) {
    case PtpType::Sync:
    case PtpType::DelayReq:
    case PtpType::FollowUp:
        appendTimestamp(bytes, message.timestamp);
        break;
    case PtpType::PdelayReq:
        appendTimestamp(bytes, message.timestamp);
        bytes.append(10, '\0'); // reserved, so that request and response have one length
        break;
    case PtpType::DelayResp:
    case PtpType::PdelayResp:
    case PtpType::PdelayRespFollowUp:
        appendTimestamp(bytes, message.timestamp);
        appendPort(bytes, message.requestingPortIdentity);
        break;
    case PtpType::Announce:
        appendTimestamp(bytes, message.timestamp);
        appendAnnounce(bytes, message.announce);
        break;
    case PtpType::Signaling:
        appendPort(bytes, message.requestingPortIdentity);
        break;
    case PtpType::Management:
        appendPort(bytes, message.requestingPortIdentity);
        bytes.append(4, '\0'); // boundary hops, action, reserved
        break;
    }
    return bytes;
}

// IEEE 1588-2008 table 23.
quint8 controlFieldOf(PtpType type)
{
    switch (type) {
    case PtpType::Sync:
        return 0;
    case PtpType::DelayReq:
        return 1;
    case PtpType::FollowUp:
        return 2;
    case PtpType::DelayResp:
        return 3;
    case PtpType::Management:
        return 4;
    case PtpType::PdelayReq:
    case PtpType::PdelayResp:
    case PtpType::PdelayRespFollowUp:
    case PtpType::Announce:
    case PtpType::Signaling:
        break;
    }
    return 5;
}

} // namespace

int PtpMessage::minimumLength() const
{
    return kHeaderLength + body(*this).size();
}

quint16 PtpMessage::announcedLength() const
{
    return messageLength.value_or(static_cast<quint16>(minimumLength() + suffix.size()));
}

QByteArray PtpMessage::toBytes() const
{
    QByteArray bytes;
    octets::append(bytes, static_cast<quint8>((transportSpecific << 4U) | static_cast<quint8>(type)));
    octets::append(bytes, static_cast<quint8>((minorVersionPTP << 4U) | versionPTP));
    octets::append(bytes, announcedLength());
    octets::append(bytes, domainNumber);
    octets::append(bytes, minorSdoId);
    octets::append(bytes, flagField);
    octets::append(bytes, correctionField);
    octets::append(bytes, messageTypeSpecific);
    appendPort(bytes, sourcePortIdentity);
    octets::append(bytes, sequenceId);
    octets::append(bytes, controlField.value_or(controlFieldOf(type)));
    octets::append(bytes, static_cast<quint8>(logMessageInterval));
    return bytes + body(*this) + suffix;
}

bool PtpMessage::isDecodable(int captured) const
{
    const int whole = minimumLength() + suffix.size();
    const int present = captured < 0 ? whole : qMin(captured, whole);
    return versionPTP == 2 && announcedLength() >= minimumLength() && announcedLength() <= present;
}

quint16 ptpPort(PtpType type)
{
    return static_cast<quint8>(type) < 0x8 ? 319 : 320; // types below 8 are event messages
}

} // namespace capturebuilder
