// Uses nothing but names that PcapPlusPlus has from 22.11 on, the way the packet loop does. What compiles and passes
// here with the bundled library must do so with an installed PcapPlusPlus.

#include "IPv4Layer.h"
#include "IpAddress.h"
#include "Packet.h"
#include "PcapFileDevice.h"
#include "ProtocolType.h"
#include "RawPacket.h"
#include "UdpLayer.h"
#include "capturefilebuilder.h"

#include <cstring>

using namespace capturefilebuilder;
using namespace packetbuilder;

namespace {

uint16_t hostOrder(uint16_t networkOrder)
{
    uint8_t octets[2];
    std::memcpy(octets, &networkOrder, sizeof octets);
    return static_cast<uint16_t>(octets[0] << 8 | octets[1]);
}

Bytes captureOfOneDatagram()
{
    const Bytes frame = join({ethernet(0x0800), ipv4(udp(12345, 319, counting(44)))});
    return pcapFile(ByteOrder::Little, Resolution::Nanoseconds, 1, {{1700000000, 123456789, frame}});
}

} // namespace

TEST(PcapPublicNames, packetLoop_readsTimePortsAddressAndPayload)
{
    const TemporaryFile file("capture.pcap", captureOfOneDatagram());
    pcpp::PcapFileReaderDevice reader(file.path());
    ASSERT_TRUE(reader.open());

    pcpp::RawPacket rawPacket;
    ASSERT_TRUE(reader.getNextPacket(rawPacket));
    EXPECT_EQ(rawPacket.getPacketTimeStamp().tv_sec, 1700000000);
    EXPECT_EQ(rawPacket.getPacketTimeStamp().tv_nsec, 123456789);
    EXPECT_EQ(rawPacket.getRawDataLen(), 14 + 20 + 8 + 44);
    EXPECT_EQ(rawPacket.getRawData()[12], 0x08);
    EXPECT_EQ(rawPacket.getLinkLayerType(), pcpp::LINKTYPE_ETHERNET);

    const pcpp::Packet packet(&rawPacket, pcpp::UDP);
    EXPECT_EQ(packet.getRawPacket(), &rawPacket);
    EXPECT_TRUE(packet.isPacketOfType(pcpp::UDP));
    EXPECT_TRUE(packet.isPacketOfType(pcpp::IPv4));
    EXPECT_FALSE(packet.isPacketOfType(pcpp::IPv6));

    const pcpp::UdpLayer *udpLayer = packet.getLayerOfType<pcpp::UdpLayer>();
    ASSERT_NE(udpLayer, nullptr);
    const pcpp::udphdr *header = udpLayer->getUdpHeader();
    EXPECT_EQ(hostOrder(header->portSrc), 12345);
    EXPECT_EQ(hostOrder(header->portDst), 319);
    EXPECT_EQ(hostOrder(header->length), 8 + 44);
    EXPECT_EQ(udpLayer->getLayerPayloadSize(), 44U);
    EXPECT_EQ(udpLayer->getLayerPayload()[43], 44);

    const pcpp::IPv4Layer *ipLayer = packet.getLayerOfType<pcpp::IPv4Layer>();
    ASSERT_NE(ipLayer, nullptr);
    const pcpp::IPv4Address address = ipLayer->getSrcIPv4Address();
    EXPECT_EQ(address.toString(), "192.168.100.7");
    const uint32_t asNumber = address.toInt();
    EXPECT_EQ(std::memcmp(&asNumber, "\xC0\xA8\x64\x07", 4), 0) << "toInt() keeps network byte order";
    EXPECT_EQ(ipLayer->getSrcIPAddress().toString(), "192.168.100.7");

    EXPECT_FALSE(reader.getNextPacket(rawPacket));
    reader.close();
}

TEST(PcapPublicNames, packetWithoutParseUntil_walksToUdpAsWell)
{
    const TemporaryFile file("capture.pcap", captureOfOneDatagram());
    pcpp::PcapFileReaderDevice reader(file.path());
    ASSERT_TRUE(reader.open());
    pcpp::RawPacket rawPacket;
    ASSERT_TRUE(reader.getNextPacket(rawPacket));
    const pcpp::Packet packet(&rawPacket);
    EXPECT_NE(packet.getLayerOfType<pcpp::UdpLayer>(), nullptr);
}

TEST(PcapPublicNames, missingFile_doesNotOpen)
{
    pcpp::PcapFileReaderDevice reader(testing::TempDir() + "no such capture.pcap");
    EXPECT_FALSE(reader.open());
}
