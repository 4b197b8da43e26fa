#pragma once

#include "ptpv2parser/ptpv2parser_export.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

/// IEEE 1588-2008 (PTP version 2): data types, message layouts and the decoder of one message. No Qt, no allocation.
namespace PTPv2 {

/// messageType, IEEE 1588-2008 table 19. The values without a name are reserved; a message may carry them.
enum class MessageType : uint8_t {
    Sync = 0x0,
    DelayReq = 0x1,
    PdelayReq = 0x2,
    PdelayResp = 0x3,
    FollowUp = 0x8,
    DelayResp = 0x9,
    PdelayRespFollowUp = 0xA,
    Announce = 0xB,
    Signaling = 0xC,
    Management = 0xD
};

/// ClockIdentity, IEEE 1588-2008 5.3.4: eight octets, an EUI-64 as a rule.
struct ClockIdentity
{
    std::array<uint8_t, 8> octets;

    /// Lower-case hexadecimal with ":" between the octets: "00:1b:19:ff:fe:00:00:01".
    PTPV2PARSER_EXPORT std::string toString() const;

    bool operator==(const ClockIdentity &other) const { return octets == other.octets; }
    bool operator!=(const ClockIdentity &other) const { return octets != other.octets; }
    bool operator<(const ClockIdentity &other) const { return octets < other.octets; }
};

/// PortIdentity, IEEE 1588-2008 5.3.5.
struct PortIdentity
{
    ClockIdentity clockIdentity;
    uint16_t portNumber;

    /// The clock identity, "-", the port number in decimal: "00:1b:19:ff:fe:00:00:01-1".
    PTPV2PARSER_EXPORT std::string toString() const;

    bool operator==(const PortIdentity &other) const
    {
        return clockIdentity == other.clockIdentity && portNumber == other.portNumber;
    }
    bool operator!=(const PortIdentity &other) const { return !(*this == other); }
    bool operator<(const PortIdentity &other) const
    {
        return clockIdentity == other.clockIdentity ? portNumber < other.portNumber
                                                    : clockIdentity < other.clockIdentity;
    }
};

/// Timestamp, IEEE 1588-2008 5.3.3: 48-bit seconds and nanoseconds of the PTP epoch. A damaged message may carry a
/// second and more in the nanoseconds.
struct Timestamp
{
    uint32_t secondsLow; ///< the lower 32 of the 48 bits
    uint32_t nanosecondsField;
    uint16_t secondsHigh; ///< the upper 16 of the 48 bits

    uint64_t secondsField() const { return uint64_t{secondsHigh} << 32 | secondsLow; }

    /// Seconds, ".", nanoseconds as nine digits: "1700000000.000000042". Nanoseconds of a second and more keep all
    /// their digits.
    PTPV2PARSER_EXPORT std::string toString() const;

    bool operator==(const Timestamp &other) const
    {
        return secondsLow == other.secondsLow && nanosecondsField == other.nanosecondsField
               && secondsHigh == other.secondsHigh;
    }
    bool operator!=(const Timestamp &other) const { return !(*this == other); }
};

/// The common message header, IEEE 1588-2008 13.3, in host byte order.
struct PTPv2Header
{
    int64_t correctionField; ///< nanoseconds times 2^16, signed (13.3.2.7)
    PortIdentity sourcePortIdentity;
    uint16_t messageLength; ///< header, body and suffix, in octets
    uint16_t sequenceId;
    uint16_t flagField; ///< octet 0 in the upper byte, octet 1 in the lower one (table 20)
    MessageType messageType;
    uint8_t versionPTP;      ///< lower four bits; 2 in every decoded message
    uint8_t minorVersionPTP; ///< upper four bits: 0 in IEEE 1588-2008, 1 in IEEE 1588-2019
    uint8_t domainNumber;
    int8_t logMessageInterval;

    MessageType getMessageType() const { return messageType; }
    bool twoStepFlag() const { return (flagField & 0x0200U) != 0; }
};

/// The body of an Announce message behind its originTimestamp, IEEE 1588-2008 13.5, in host byte order.
struct AnnounceBody
{
    uint32_t grandmasterClockQuality; ///< clockClass << 24 | clockAccuracy << 16 | offsetScaledLogVariance
    ClockIdentity grandmasterIdentity;
    int16_t currentUtcOffset; ///< seconds
    uint16_t stepsRemoved;
    uint8_t grandmasterPriority1;
    uint8_t grandmasterPriority2;
    uint8_t timeSource;
};

/// One decoded message with its capture time: a plain value of fixed size, cheap to copy and to store by the thousand.
struct PTPv2Message
{
    PTPv2Header header;
    int64_t captureSeconds;     ///< capture time since the Unix epoch; as far off as the capture file says
    int32_t captureNanoseconds; ///< 0 to 999999999
    /// Sync, Delay_Req and Announce: originTimestamp; Follow_Up: preciseOriginTimestamp; Delay_Resp: receiveTimestamp.
    /// Zero in messages of other types.
    Timestamp timestamp;
    union {
        PortIdentity requestingPortIdentity; ///< Delay_Resp only
        AnnounceBody announce;               ///< Announce only
    };
};

static_assert(std::is_trivially_copyable<PTPv2Message>::value, "messages are stored as plain bytes");
static_assert(sizeof(PTPv2Message) == 80, "fifty thousand messages in four megabytes");

/// What the decoder made of the bytes.
enum class DecodeResult {
    Ok,
    NotPTPv2,  ///< another version: not ours
    Truncated, ///< fewer bytes than a message of its type needs
    BadLength  ///< messageLength is below the minimum of the type or beyond the datagram
};

/// Decodes the message at the start of data (a datagram's payload of size bytes) into out, but for the capture time,
/// which becomes zero. Bytes behind messageLength are ignored; a message of a reserved type is its header.
/// Unless the answer is Ok, out holds nothing of use. Pure; any thread; never reads beyond size.
PTPV2PARSER_EXPORT DecodeResult decodeMessage(const uint8_t *data, std::size_t size, PTPv2Message &out);

} // namespace PTPv2
