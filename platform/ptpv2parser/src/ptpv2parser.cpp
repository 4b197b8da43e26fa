#include "ptpv2parser/ptpv2parser.h"

#include <algorithm>

#include "Packet.h"
#include "RawPacket.h"
#include "UdpLayer.h"

namespace PTPv2 {

namespace {

constexpr long kNanosecondsPerSecond = 1000000000L;
constexpr std::size_t kUdpHeaderLength = 8;

uint16_t fromNetwork(uint16_t value)
{
    uint8_t octets[sizeof value];
    std::copy_n(reinterpret_cast<const uint8_t *>(&value), sizeof value, octets);
    return static_cast<uint16_t>(octets[0] << 8 | octets[1]);
}

/// Octets of the datagram's payload that are there: neither beyond what was captured nor beyond what the sender stated.
std::size_t datagramPayload(const pcpp::UdpLayer &udp)
{
    const std::size_t captured = udp.getLayerPayloadSize();
    const std::size_t stated = fromNetwork(udp.getUdpHeader()->length);
    if (stated == 0) // left to the network card, as in segments that it cuts itself
        return captured;
    return stated < kUdpHeaderLength ? 0 : std::min(captured, stated - kUdpHeaderLength);
}

/// Damaged captures hold fractions that are negative or a second and more: the same instant with a fraction in range.
void setCaptureTime(timespec time, PTPv2Message &message)
{
    auto seconds = static_cast<int64_t>(time.tv_sec);
    int64_t carry = time.tv_nsec / kNanosecondsPerSecond;
    long fraction = time.tv_nsec % kNanosecondsPerSecond;
    if (fraction < 0) {
        fraction += kNanosecondsPerSecond;
        --carry;
    }
    // Seconds at the end of their range come from hostile files only: there they stay, rather than wrap.
    const bool inRange = carry < 0 ? seconds >= INT64_MIN - carry : seconds <= INT64_MAX - carry;
    message.captureSeconds = inRange ? seconds + carry : seconds;
    message.captureNanoseconds = static_cast<int32_t>(fraction);
}

/// A body to fill in: the stored one, or a new one while somebody still holds that.
template<typename Body>
Body &writable(std::shared_ptr<Body> &stored)
{
    if (!stored || stored.use_count() > 1)
        stored = std::make_shared<Body>();
    return *stored;
}

} // namespace

struct PTPv2Parser::Bodies
{
    std::shared_ptr<SyncMessage> sync;
    std::shared_ptr<DelayReqMessage> delayReq;
    std::shared_ptr<FollowUpMessage> followUp;
    std::shared_ptr<DelayRespMessage> delayResp;
    std::shared_ptr<AnnounceMessage> announce;
};

PTPv2Parser::PTPv2Parser()
    : _message{}
    , _bodies(std::make_unique<Bodies>())
{}

PTPv2Parser::~PTPv2Parser() = default;

std::string PTPv2Parser::messageTypeToString(MessageType type)
{
    switch (type) {
    case MessageType::Sync:
        return "SYNC";
    case MessageType::DelayReq:
        return "DELAY_REQ";
    case MessageType::PdelayReq:
        return "PDELAY_REQ";
    case MessageType::PdelayResp:
        return "PDELAY_RESP";
    case MessageType::FollowUp:
        return "FOLLOW_UP";
    case MessageType::DelayResp:
        return "DELAY_RESP";
    case MessageType::PdelayRespFollowUp:
        return "PDELAY_RESP_FOLLOW_UP";
    case MessageType::Announce:
        return "ANNOUNCE";
    case MessageType::Signaling:
        return "SIGNALING";
    case MessageType::Management:
        return "MANAGEMENT";
    }
    return "UNKNOWN";
}

bool PTPv2Parser::parsePacket(pcpp::Packet &packet)
{
    _hasMessage = false;
    const pcpp::UdpLayer *udp = packet.getLayerOfType<pcpp::UdpLayer>();
    if (!udp || decodeMessage(udp->getLayerPayload(), datagramPayload(*udp), _message) != DecodeResult::Ok)
        return false;
    setCaptureTime(packet.getRawPacket()->getPacketTimeStamp(), _message);
    _hasMessage = true;
    return true;
}

std::shared_ptr<const SyncMessage> PTPv2Parser::getSyncMessage() const
{
    if (!holds(MessageType::Sync))
        return {};
    writable(_bodies->sync).originTimestamp = _message.timestamp;
    return _bodies->sync;
}

std::shared_ptr<const DelayReqMessage> PTPv2Parser::getDelayReqMessage() const
{
    if (!holds(MessageType::DelayReq))
        return {};
    writable(_bodies->delayReq).originTimestamp = _message.timestamp;
    return _bodies->delayReq;
}

std::shared_ptr<const FollowUpMessage> PTPv2Parser::getFollowUpMessage() const
{
    if (!holds(MessageType::FollowUp))
        return {};
    writable(_bodies->followUp).preciseOriginTimestamp = _message.timestamp;
    return _bodies->followUp;
}

std::shared_ptr<const DelayRespMessage> PTPv2Parser::getDelayRespMessage() const
{
    if (!holds(MessageType::DelayResp))
        return {};
    DelayRespMessage &body = writable(_bodies->delayResp);
    body.receiveTimestamp = _message.timestamp;
    body.requestingPortIdentity = _message.requestingPortIdentity;
    return _bodies->delayResp;
}

std::shared_ptr<const AnnounceMessage> PTPv2Parser::getAnnounceMessage() const
{
    if (!holds(MessageType::Announce))
        return {};
    AnnounceMessage &body = writable(_bodies->announce);
    static_cast<AnnounceBody &>(body) = _message.announce;
    body.originTimestamp = _message.timestamp;
    return _bodies->announce;
}

} // namespace PTPv2
