// A program of its own, since it replaces the global operator new.

#include "Packet.h"
#include "allocationcounter.h"
#include "packetbuilder.h"
#include "ptpv2messagebuilder.h"
#include "ptpv2parser/ptpv2parser.h"

#include <gtest/gtest.h>

using namespace packetbuilder;
using namespace ptpv2messagebuilder;

namespace {

std::vector<Bytes> packetsOfOneSecond(unsigned sequenceId)
{
    const Port slave{0x001B19FFFE000005, 1};
    Header master;
    master.sequenceId = sequenceId;
    master.twoStep = true;
    Header request;
    request.source = slave;
    request.sequenceId = sequenceId;
    std::vector<Bytes> packets;
    for (const Bytes &message : {sync(master, {1, 2}), followUp(master, {1, 2}), delayReq(request),
                                 delayResp(master, {3, 4}, slave), announce(master)})
        packets.push_back(ipv4(udp(319, 319, message)));
    return packets;
}

std::size_t parseAll(const std::vector<Bytes> &packets, PTPv2::PTPv2Parser &parser, PTPv2::PTPv2Analyzer &analyzer)
{
    std::size_t bodies = 0;
    for (const Bytes &bytes : packets) {
        pcpp::RawPacket raw(bytes.data(), static_cast<int>(bytes.size()), timespec{}, false, pcpp::LINKTYPE_RAW);
        pcpp::Packet packet(&raw, pcpp::UDP);
        if (!parser.parsePacket(packet))
            continue;
        analyzer.addMessage(parser);
        if (parser.getSyncMessage() || parser.getFollowUpMessage() || parser.getDelayReqMessage()
            || parser.getDelayRespMessage() || parser.getAnnounceMessage())
            ++bodies;
        parser.clear();
    }
    return bodies;
}

} // namespace

TEST(PTPv2Allocations, messagesOfAKnownMaster_allocateNothing)
{
    std::vector<Bytes> packets;
    for (unsigned sequenceId = 0; sequenceId < 300; ++sequenceId) {
        for (const Bytes &packet : packetsOfOneSecond(sequenceId))
            packets.push_back(packet);
    }
    PTPv2::PTPv2Parser parser;
    PTPv2::PTPv2Analyzer analyzer;
    ASSERT_EQ(parseAll(packetsOfOneSecond(65535), parser, analyzer), 5U);
    ASSERT_EQ(analyzer.sessionCount(), 1U);

    const std::size_t before = allocationCount();
    ASSERT_GT(before, 0U) << "the counting operator is not in use";
    EXPECT_EQ(parseAll(packets, parser, analyzer), packets.size());
    EXPECT_EQ(allocationCount() - before, 0U);
    EXPECT_TRUE(analyzer.getSyncSessions().front().hasValidSync);
}
