#include "ptpv2parser/ptpv2types.h"

#include <algorithm>

namespace PTPv2 {

namespace {

// Octets of the common header and, header included, of each message up to the end of its fixed part (IEEE 1588-2008
// 13.3 to 13.12). TLVs may follow.
constexpr std::size_t kHeaderLength = 34;

constexpr uint8_t kMinimumLength[16] = {
    44, // Sync
    44, // Delay_Req
    54, // Pdelay_Req
    54, // Pdelay_Resp
    kHeaderLength,
    kHeaderLength,
    kHeaderLength,
    kHeaderLength,
    44, // Follow_Up
    54, // Delay_Resp
    54, // Pdelay_Resp_Follow_Up
    64, // Announce
    44, // Signaling
    48, // Management
    kHeaderLength,
    kHeaderLength,
};

uint16_t read16(const uint8_t *data)
{
    return static_cast<uint16_t>(data[0] << 8 | data[1]);
}

uint32_t read32(const uint8_t *data)
{
    return uint32_t{read16(data)} << 16 | read16(data + 2);
}

uint64_t read64(const uint8_t *data)
{
    return uint64_t{read32(data)} << 32 | read32(data + 4);
}

void readClockIdentity(const uint8_t *data, ClockIdentity &out)
{
    std::copy_n(data, out.octets.size(), out.octets.begin());
}

void readPortIdentity(const uint8_t *data, PortIdentity &out)
{
    readClockIdentity(data, out.clockIdentity);
    out.portNumber = read16(data + 8);
}

void readTimestamp(const uint8_t *data, Timestamp &out)
{
    out.secondsHigh = read16(data);
    out.secondsLow = read32(data + 2);
    out.nanosecondsField = read32(data + 6);
}

// Octet  0  transportSpecific | messageType        6  flagField (2)                   30  sequenceId (2)
//        1  minorVersionPTP | versionPTP           8  correctionField (8)             32  controlField
//        2  messageLength (2)                     16  reserved (4)                    33  logMessageInterval
//        4  domainNumber, reserved                20  sourcePortIdentity (10)
void readHeader(const uint8_t *data, PTPv2Header &out)
{
    out.messageType = static_cast<MessageType>(data[0] & 0x0FU);
    out.versionPTP = data[1] & 0x0FU;
    out.minorVersionPTP = data[1] >> 4;
    out.messageLength = read16(data + 2);
    out.domainNumber = data[4];
    out.flagField = read16(data + 6);
    out.correctionField = static_cast<int64_t>(read64(data + 8));
    readPortIdentity(data + 20, out.sourcePortIdentity);
    out.sequenceId = read16(data + 30);
    out.logMessageInterval = static_cast<int8_t>(data[33]);
}

// Octet 34  originTimestamp (10)        47  grandmasterPriority1         53  grandmasterIdentity (8)
//       44  currentUtcOffset (2)        48  grandmasterClockQuality (4)  61  stepsRemoved (2)
//       46  reserved                    52  grandmasterPriority2         63  timeSource
void readAnnounce(const uint8_t *data, AnnounceBody &out)
{
    out.currentUtcOffset = static_cast<int16_t>(read16(data + 44));
    out.grandmasterPriority1 = data[47];
    out.grandmasterClockQuality = read32(data + 48);
    out.grandmasterPriority2 = data[52];
    readClockIdentity(data + 53, out.grandmasterIdentity);
    out.stepsRemoved = read16(data + 61);
    out.timeSource = data[63];
}

// The caller has made sure that the message's minimum length is there.
void readBody(const uint8_t *data, PTPv2Message &out)
{
    switch (out.header.messageType) {
    case MessageType::Sync:
    case MessageType::DelayReq:
    case MessageType::FollowUp:
        readTimestamp(data + 34, out.timestamp);
        return;
    case MessageType::DelayResp:
        readTimestamp(data + 34, out.timestamp);
        readPortIdentity(data + 44, out.requestingPortIdentity);
        return;
    case MessageType::Announce:
        readTimestamp(data + 34, out.timestamp);
        readAnnounce(data, out.announce);
        return;
    case MessageType::PdelayReq:
    case MessageType::PdelayResp:
    case MessageType::PdelayRespFollowUp:
    case MessageType::Signaling:
    case MessageType::Management:
        return;
    }
}

} // namespace

DecodeResult decodeMessage(const uint8_t *data, std::size_t size, PTPv2Message &out)
{
    if (size < 2)
        return DecodeResult::Truncated;
    if ((data[1] & 0x0FU) != 2)
        return DecodeResult::NotPTPv2;
    const std::size_t minimumLength = kMinimumLength[data[0] & 0x0FU];
    if (size < minimumLength)
        return DecodeResult::Truncated;
    const std::size_t messageLength = read16(data + 2);
    if (messageLength < minimumLength || messageLength > size)
        return DecodeResult::BadLength;

    out = {};
    readHeader(data, out.header);
    readBody(data, out);
    return DecodeResult::Ok;
}

} // namespace PTPv2
