#pragma once

#include "packetbuilder.h"

#include <array>

/// PTP messages as bytes, laid out by IEEE 1588-2008 clause 13 and independent of the decoder.
namespace ptpv2messagebuilder {

using packetbuilder::be16;
using packetbuilder::be32;
using packetbuilder::be64;
using packetbuilder::Bytes;
using packetbuilder::join;

struct Port
{
    uint64_t clockIdentity = 0x001B19FFFE000001;
    unsigned portNumber = 1;
};

inline Bytes portIdentity(const Port &port)
{
    return join({be64(port.clockIdentity), be16(port.portNumber)});
}

struct Time
{
    uint64_t seconds = 0;
    uint32_t nanoseconds = 0;
};

inline Bytes timestamp(const Time &time)
{
    return join({be16(time.seconds >> 32 & 0xFFFF), be32(time.seconds & 0xFFFFFFFF), be32(time.nanoseconds)});
}

struct Header
{
    unsigned type = 0;
    Port source = {};
    unsigned sequenceId = 0;
    unsigned domainNumber = 0;
    int64_t correctionField = 0;
    bool twoStep = false;
    unsigned versionOctet = 2;
    unsigned transportSpecific = 0;
    int logMessageInterval = 0;
};

/// The message with its messageLength right.
inline Bytes message(const Header &header, const Bytes &body)
{
    return join(
        {{static_cast<uint8_t>(header.transportSpecific << 4 | header.type), static_cast<uint8_t>(header.versionOctet)},
         be16(34 + body.size()),
         {static_cast<uint8_t>(header.domainNumber), 0, static_cast<uint8_t>(header.twoStep ? 2 : 0), 0},
         be64(static_cast<uint64_t>(header.correctionField)),
         be32(0),
         portIdentity(header.source),
         be16(header.sequenceId),
         {0, static_cast<uint8_t>(header.logMessageInterval)},
         body});
}

inline Bytes sync(Header header, const Time &origin)
{
    header.type = 0;
    return message(header, timestamp(origin));
}

inline Bytes delayReq(Header header, const Time &origin = {})
{
    header.type = 1;
    return message(header, timestamp(origin));
}

inline Bytes followUp(Header header, const Time &preciseOrigin)
{
    header.type = 8;
    return message(header, timestamp(preciseOrigin));
}

inline Bytes delayResp(Header header, const Time &receive, const Port &requesting)
{
    header.type = 9;
    return message(header, join({timestamp(receive), portIdentity(requesting)}));
}

struct Announce
{
    Time origin = {};
    int currentUtcOffset = 37;
    unsigned priority1 = 128;
    uint32_t clockQuality = 0xF8FEFFFF;
    unsigned priority2 = 127;
    uint64_t grandmasterIdentity = 0x001B19FFFE000001;
    unsigned stepsRemoved = 0;
    unsigned timeSource = 0xA0;
};

inline Bytes announce(Header header, const Announce &fields = {})
{
    header.type = 11;
    return message(header, join({timestamp(fields.origin),
                                 be16(static_cast<uint16_t>(fields.currentUtcOffset)),
                                 {0, static_cast<uint8_t>(fields.priority1)},
                                 be32(fields.clockQuality),
                                 {static_cast<uint8_t>(fields.priority2)},
                                 be64(fields.grandmasterIdentity),
                                 be16(fields.stepsRemoved),
                                 {static_cast<uint8_t>(fields.timeSource)}}));
}

/// Octets of a message of each type without suffix, header included; 34 for the reserved types.
constexpr std::array<std::size_t, 16> kMessageLengths = {44, 44, 54, 54, 34, 34, 34, 34,
                                                         44, 54, 54, 64, 44, 48, 34, 34};

/// A message of any type with its smallest length and a body of counting octets.
inline Bytes smallestMessage(unsigned type)
{
    Header header;
    header.type = type;
    return message(header, packetbuilder::counting(kMessageLengths.at(type) - 34));
}

} // namespace ptpv2messagebuilder
