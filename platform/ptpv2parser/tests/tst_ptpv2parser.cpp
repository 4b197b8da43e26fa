#include "ptpv2parser/ptpv2parser.h"

#include "Packet.h"
#include "packetbuilder.h"
#include "ptpv2messagebuilder.h"

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

using namespace PTPv2;
using namespace packetbuilder;
using namespace ptpv2messagebuilder;

namespace {

Bytes datagramPacket(const Bytes &message)
{
    return ipv4(udp(319, 319, message));
}

bool parse(PTPv2Parser &parser, const Bytes &bytes, timespec time = {})
{
    pcpp::RawPacket raw(bytes.data(), static_cast<int>(bytes.size()), time, false, pcpp::LINKTYPE_RAW);
    pcpp::Packet packet(&raw, pcpp::UDP);
    return parser.parsePacket(packet);
}

} // namespace

TEST(PTPv2Parser, ports_eventAndGeneral)
{
    for (unsigned port = 0; port <= 0xFFFF; ++port)
        ASSERT_EQ(PTPv2Parser::isPTPv2Port(static_cast<uint16_t>(port)), port == 319 || port == 320) << port;
}

TEST(PTPv2Parser, messageTypeNames)
{
    const char *const expected[16] = {
        "SYNC",    "DELAY_REQ", "PDELAY_REQ", "PDELAY_RESP",           "UNKNOWN",  "UNKNOWN",   "UNKNOWN",
        "UNKNOWN", "FOLLOW_UP", "DELAY_RESP", "PDELAY_RESP_FOLLOW_UP", "ANNOUNCE", "SIGNALING", "MANAGEMENT",
        "UNKNOWN", "UNKNOWN"};
    for (uint8_t type = 0; type < 16; ++type)
        EXPECT_EQ(PTPv2Parser::messageTypeToString(static_cast<MessageType>(type)), expected[type]);
}

TEST(PTPv2Parser, withoutAMessage_hasNone)
{
    const PTPv2Parser parser;
    EXPECT_FALSE(parser.hasPTPv2Message());
    EXPECT_FALSE(parser.getSyncMessage());
    EXPECT_EQ(parser.getHeader().sequenceId, 0);
}

TEST(PTPv2Parser, sync_headerBodyAndCaptureTime)
{
    PTPv2Parser parser;
    Header header;
    header.sequenceId = 77;
    header.domainNumber = 3;
    ASSERT_TRUE(parse(parser, datagramPacket(sync(header, {12, 34})), {1700000000, 123456789}));
    EXPECT_TRUE(parser.hasPTPv2Message());
    EXPECT_EQ(parser.getHeader().getMessageType(), MessageType::Sync);
    EXPECT_EQ(parser.getHeader().sequenceId, 77);
    EXPECT_EQ(parser.getHeader().domainNumber, 3);
    EXPECT_EQ(parser.message().captureSeconds, 1700000000);
    EXPECT_EQ(parser.message().captureNanoseconds, 123456789);
    ASSERT_TRUE(parser.getSyncMessage());
    EXPECT_EQ(parser.getSyncMessage()->originTimestamp.toString(), "12.000000034");
    EXPECT_FALSE(parser.getDelayReqMessage());
    EXPECT_FALSE(parser.getFollowUpMessage());
    EXPECT_FALSE(parser.getDelayRespMessage());
    EXPECT_FALSE(parser.getAnnounceMessage());
}

TEST(PTPv2Parser, eachType_hasItsOwnBodyOnly)
{
    for (unsigned type = 0; type < 16; ++type) {
        PTPv2Parser parser;
        ASSERT_TRUE(parse(parser, datagramPacket(smallestMessage(type)))) << "type " << type;
        EXPECT_EQ(parser.getSyncMessage() != nullptr, type == 0) << "type " << type;
        EXPECT_EQ(parser.getDelayReqMessage() != nullptr, type == 1) << "type " << type;
        EXPECT_EQ(parser.getFollowUpMessage() != nullptr, type == 8) << "type " << type;
        EXPECT_EQ(parser.getDelayRespMessage() != nullptr, type == 9) << "type " << type;
        EXPECT_EQ(parser.getAnnounceMessage() != nullptr, type == 11) << "type " << type;
    }
}

TEST(PTPv2Parser, bodies_carryTheFieldsOfTheMessage)
{
    PTPv2Parser parser;
    ASSERT_TRUE(parse(parser, datagramPacket(delayReq({}, {1, 2}))));
    EXPECT_EQ(parser.getDelayReqMessage()->originTimestamp.toString(), "1.000000002");
    ASSERT_TRUE(parse(parser, datagramPacket(followUp({}, {3, 4}))));
    EXPECT_EQ(parser.getFollowUpMessage()->preciseOriginTimestamp.toString(), "3.000000004");
    ASSERT_TRUE(parse(parser, datagramPacket(delayResp({}, {5, 6}, {7, 8}))));
    EXPECT_EQ(parser.getDelayRespMessage()->receiveTimestamp.toString(), "5.000000006");
    EXPECT_EQ(parser.getDelayRespMessage()->requestingPortIdentity.toString(), "00:00:00:00:00:00:00:07-8");

    Announce fields;
    fields.origin = {9, 10};
    fields.currentUtcOffset = -1;
    fields.stepsRemoved = 2;
    ASSERT_TRUE(parse(parser, datagramPacket(announce({}, fields))));
    const std::shared_ptr<const AnnounceMessage> body = parser.getAnnounceMessage();
    EXPECT_EQ(body->originTimestamp.toString(), "9.000000010");
    EXPECT_EQ(body->currentUtcOffset, -1);
    EXPECT_EQ(body->grandmasterPriority1, 128);
    EXPECT_EQ(body->grandmasterClockQuality, 0xF8FEFFFFU);
    EXPECT_EQ(body->grandmasterPriority2, 127);
    EXPECT_EQ(body->grandmasterIdentity.toString(), "00:1b:19:ff:fe:00:00:01");
    EXPECT_EQ(body->stepsRemoved, 2);
    EXPECT_EQ(body->timeSource, 0xA0);
}

TEST(PTPv2Parser, bodyHeldByTheCaller_doesNotChangeWithTheNextMessage)
{
    PTPv2Parser parser;
    ASSERT_TRUE(parse(parser, datagramPacket(sync({}, {1, 0}))));
    const std::shared_ptr<const SyncMessage> first = parser.getSyncMessage();
    ASSERT_TRUE(parse(parser, datagramPacket(sync({}, {2, 0}))));
    const std::shared_ptr<const SyncMessage> second = parser.getSyncMessage();
    parser.clear();
    EXPECT_EQ(first->originTimestamp.secondsLow, 1U);
    EXPECT_EQ(second->originTimestamp.secondsLow, 2U);
}

TEST(PTPv2Parser, clear_forgetsTheMessage)
{
    PTPv2Parser parser;
    ASSERT_TRUE(parse(parser, datagramPacket(sync({}, {1, 0}))));
    parser.clear();
    EXPECT_FALSE(parser.hasPTPv2Message());
    EXPECT_FALSE(parser.getSyncMessage());
}

TEST(PTPv2Parser, refusedPacket_leavesNoMessageOfTheOneBefore)
{
    PTPv2Parser parser;
    ASSERT_TRUE(parse(parser, datagramPacket(sync({}, {1, 0}))));
    EXPECT_FALSE(parse(parser, datagramPacket(counting(20))));
    EXPECT_FALSE(parser.hasPTPv2Message());
    ASSERT_TRUE(parse(parser, datagramPacket(sync({}, {1, 0}))));
    EXPECT_FALSE(parse(parser, ipv4({6, {}, 0, 7}, sync({}, {1, 0})))) << "no UDP layer";
    EXPECT_FALSE(parser.hasPTPv2Message());
}

TEST(PTPv2Parser, overIpv6AndAnyPort_isParsed)
{
    PTPv2Parser parser;
    EXPECT_TRUE(parse(parser, ipv6(17, udp(4000, 5000, sync({}, {1, 0})))));
}

TEST(PTPv2Parser, udpLengthField_boundsTheDatagram)
{
    PTPv2Parser parser;
    Bytes bytes = datagramPacket(sync({}, {1, 0}));
    const auto setUdpLength = [&bytes](unsigned length) { bytes[20 + 5] = static_cast<uint8_t>(length); };
    setUdpLength(8 + 43);
    EXPECT_FALSE(parse(parser, bytes)) << "the message does not fit into the datagram";
    setUdpLength(7);
    EXPECT_FALSE(parse(parser, bytes)) << "shorter than its own header";
    setUdpLength(8 + 200);
    EXPECT_TRUE(parse(parser, bytes)) << "the rest of the datagram was not captured";
    setUdpLength(0);
    EXPECT_TRUE(parse(parser, bytes)) << "length left to the network card";
}

TEST(PTPv2Parser, captureTimeOutOfRange_isTheSameInstantWithTheFractionInRange)
{
    const struct
    {
        timespec given;
        int64_t seconds;
        int32_t nanoseconds;
    } rows[] = {
        {{10, 1000000000}, 11, 0},
        {{10, 2147483647}, 12, 147483647},
        {{10, -1}, 9, 999999999},
        {{10, -2000000000}, 8, 0},
        {{-1, 5}, -1, 5},
        {{std::numeric_limits<time_t>::max(), 1000000000}, std::numeric_limits<time_t>::max(), 0},
        {{std::numeric_limits<time_t>::min(), -1}, std::numeric_limits<time_t>::min(), 999999999},
    };
    for (const auto &row : rows) {
        PTPv2Parser parser;
        ASSERT_TRUE(parse(parser, datagramPacket(sync({}, {1, 0})), row.given));
        EXPECT_EQ(parser.message().captureSeconds, row.seconds)
            << row.given.tv_sec << " s " << row.given.tv_nsec << " ns";
        EXPECT_EQ(parser.message().captureNanoseconds, row.nanoseconds)
            << row.given.tv_sec << " s " << row.given.tv_nsec << " ns";
    }
}
