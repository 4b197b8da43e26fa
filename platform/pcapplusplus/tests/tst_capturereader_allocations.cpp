// A program of its own, since it replaces the global operator new.

#include "Packet.h"
#include "PcapFileDevice.h"
#include "allocationcounter.h"
#include "capturefilebuilder.h"

using namespace capturefilebuilder;
using namespace packetbuilder;

TEST(CaptureReaderAllocations, readingAndWalkingPackets_allocatesNothing)
{
    std::vector<Record> records;
    for (uint32_t i = 0; i < 500; ++i)
        records.push_back({i, 0, join({ethernet(0x0800), ipv4(udp(319, 319, counting(44 + i)))})});
    const TemporaryFile file("capture", pcapFile(ByteOrder::Little, Resolution::Microseconds, 1, records));
    pcpp::PcapFileReaderDevice reader(file.path());
    ASSERT_TRUE(reader.open());

    const std::size_t before = allocationCount();
    ASSERT_GT(before, 0U) << "the counting operator is not in use";
    std::size_t datagrams = 0;
    pcpp::RawPacket rawPacket;
    while (reader.getNextPacket(rawPacket)) {
        const pcpp::Packet packet(&rawPacket, pcpp::UDP);
        if (packet.getLayerOfType<pcpp::UdpLayer>())
            ++datagrams;
    }
    EXPECT_EQ(allocationCount() - before, 0U);
    EXPECT_EQ(datagrams, records.size());
}
