#pragma once

#include "ptpv2parser/ptpv2analyzer.h"
#include "ptpv2parser/ptpv2parser_export.h"
#include "ptpv2parser/ptpv2types.h"

#include <memory>
#include <string>

namespace pcpp {
class Packet;
}

namespace PTPv2 {

/// Sync, IEEE 1588-2008 13.6.
struct SyncMessage
{
    Timestamp originTimestamp;
};

/// Delay_Req, IEEE 1588-2008 13.6.
struct DelayReqMessage
{
    Timestamp originTimestamp;
};

/// Follow_Up, IEEE 1588-2008 13.7.
struct FollowUpMessage
{
    Timestamp preciseOriginTimestamp;
};

/// Delay_Resp, IEEE 1588-2008 13.8.
struct DelayRespMessage
{
    Timestamp receiveTimestamp;
    PortIdentity requestingPortIdentity;
};

/// Announce, IEEE 1588-2008 13.5.
struct AnnounceMessage : AnnounceBody
{
    Timestamp originTimestamp;
};

/// Takes the PTPv2 message out of a packet and keeps it until the next packet or clear(). One thread at a time.
/// Parsing a packet allocates nothing; message() and getHeader() cost nothing. The typed getters are for readers that
/// want a body they can hold on to.
class PTPV2PARSER_EXPORT PTPv2Parser
{
public:
    PTPv2Parser();
    ~PTPv2Parser();

    PTPv2Parser(const PTPv2Parser &) = delete;
    PTPv2Parser &operator=(const PTPv2Parser &) = delete;

    /// The UDP ports of IEEE 1588-2008 annex D: 319 (event messages) and 320 (general messages).
    static bool isPTPv2Port(uint16_t port) { return port == 319 || port == 320; }

    /// "SYNC", "DELAY_REQ", "PDELAY_REQ", "PDELAY_RESP", "FOLLOW_UP", "DELAY_RESP", "PDELAY_RESP_FOLLOW_UP",
    /// "ANNOUNCE", "SIGNALING", "MANAGEMENT", and "UNKNOWN" for the reserved types.
    static std::string messageTypeToString(MessageType type);

    /// Decodes the payload of the packet's UDP layer, whatever its ports, and takes the capture time from the raw
    /// packet. False, and no message is held, when there is no UDP layer or decodeMessage() refuses the datagram.
    bool parsePacket(pcpp::Packet &packet);

    /// Forgets the message. Bodies handed out before stay as they are.
    void clear() { _hasMessage = false; }

    bool hasPTPv2Message() const { return _hasMessage; }

    /// The message held; without one the last message's remains, or zeros.
    const PTPv2Message &message() const { return _message; }
    const PTPv2Header &getHeader() const { return _message.header; }

    /// The body of the message held, empty when there is no message or it is of another type. A body belongs to its
    /// holder and never changes; its memory is used again once nobody holds it.
    std::shared_ptr<const SyncMessage> getSyncMessage() const;
    std::shared_ptr<const DelayReqMessage> getDelayReqMessage() const;
    std::shared_ptr<const FollowUpMessage> getFollowUpMessage() const;
    std::shared_ptr<const DelayRespMessage> getDelayRespMessage() const;
    std::shared_ptr<const AnnounceMessage> getAnnounceMessage() const;

private:
    struct Bodies;

    bool holds(MessageType type) const { return _hasMessage && _message.header.messageType == type; }

    PTPv2Message _message;
    bool _hasMessage = false;
    std::unique_ptr<Bodies> _bodies; // storage behind the typed getters
};

} // namespace PTPv2
