#include "PcapFileDevice.h"
#include "capturefilebuilder.h"

#include <filesystem>
#include <string>
#include <vector>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace capturefilebuilder;
using namespace packetbuilder;

namespace {

struct Read
{
    int64_t seconds;
    int64_t nanoseconds;
    Bytes data;
    int linkType;
};

bool operator==(const Read &a, const Read &b)
{
    return a.seconds == b.seconds && a.nanoseconds == b.nanoseconds && a.data == b.data && a.linkType == b.linkType;
}

void PrintTo(const Read &read, std::ostream *out)
{
    *out << read.seconds << "." << read.nanoseconds << " " << read.data.size() << " bytes, link type " << read.linkType;
}

Read valuesOf(const pcpp::RawPacket &packet)
{
    return {packet.getPacketTimeStamp().tv_sec, packet.getPacketTimeStamp().tv_nsec,
            Bytes(packet.getRawData(), packet.getRawData() + packet.getRawDataLen()), packet.getLinkLayerType()};
}

std::vector<Read> readAll(pcpp::PcapFileReaderDevice &reader)
{
    std::vector<Read> all;
    pcpp::RawPacket packet;
    while (reader.getNextPacket(packet))
        all.push_back(valuesOf(packet));
    return all;
}

/// The packets of a file, which must open.
std::vector<Read> packetsOf(const Bytes &content)
{
    const TemporaryFile file("capture", content);
    pcpp::PcapFileReaderDevice reader(file.path());
    EXPECT_TRUE(reader.open());
    EXPECT_TRUE(reader.isOpened());
    return readAll(reader);
}

bool opens(const Bytes &content)
{
    const TemporaryFile file("capture", content);
    pcpp::PcapFileReaderDevice reader(file.path());
    return reader.open();
}

const std::vector<Record> kTwoRecords = {{1700000000, 999999, counting(60)}, {1700000001, 0, counting(1514)}};

struct FileKind
{
    const char *name;
    Bytes content;
    int64_t nanosecondsOfFirst;
};

void PrintTo(const FileKind &kind, std::ostream *out)
{
    *out << kind.name;
}

std::string nameOf(const testing::TestParamInfo<FileKind> &kind)
{
    return kind.param.name;
}

std::vector<FileKind> fileKinds()
{
    const auto pcap = [](ByteOrder order, Resolution resolution) {
        return pcapFile(order, resolution, 1, kTwoRecords);
    };
    return {
        {"micro_little", pcap(ByteOrder::Little, Resolution::Microseconds), 999999000},
        {"micro_big", pcap(ByteOrder::Big, Resolution::Microseconds), 999999000},
        {"nano_little", pcap(ByteOrder::Little, Resolution::Nanoseconds), 999999},
        {"nano_big", pcap(ByteOrder::Big, Resolution::Nanoseconds), 999999},
        {"pcapng_little", pcapngFile(ByteOrder::Little, 1, kTwoRecords), 999999},
        {"pcapng_big", pcapngFile(ByteOrder::Big, 1, kTwoRecords), 999999},
    };
}

class ReaderOfKind : public testing::TestWithParam<FileKind>
{};

} // namespace

TEST_P(ReaderOfKind, givesEveryPacketWithItsTime)
{
    const std::vector<Read> expected = {{1700000000, GetParam().nanosecondsOfFirst, counting(60), 1},
                                        {1700000001, 0, counting(1514), 1}};
    EXPECT_EQ(packetsOf(GetParam().content), expected);
}

TEST_P(ReaderOfKind, cutAnywhere_givesThePacketsBeforeTheCut)
{
    const Bytes &whole = GetParam().content;
    for (std::size_t cut = 1; cut <= 200; ++cut) {
        const Bytes content(whole.begin(), whole.end() - static_cast<std::ptrdiff_t>(cut));
        EXPECT_EQ(packetsOf(content).size(), 1U) << cut << " bytes short";
    }
    const Bytes withinHeader(whole.begin(), whole.begin() + 20);
    EXPECT_FALSE(opens(withinHeader)) << "cut within the file header";
}

INSTANTIATE_TEST_SUITE_P(CaptureReader, ReaderOfKind, testing::ValuesIn(fileKinds()), nameOf);

TEST(CaptureReader, linkTypeOfTheFile_reachesEveryPacket)
{
    const struct
    {
        uint32_t inFile;
        int linkType;
    } rows[] = {{0, pcpp::LINKTYPE_NULL},         {108, pcpp::LINKTYPE_LOOP}, {113, pcpp::LINKTYPE_LINUX_SLL},
                {276, pcpp::LINKTYPE_LINUX_SLL2}, {228, pcpp::LINKTYPE_IPV4}, {229, pcpp::LINKTYPE_IPV6}};
    for (const auto &row : rows) {
        const auto packets =
            packetsOf(pcapFile(ByteOrder::Little, Resolution::Microseconds, row.inFile, {{1, 2, counting(20)}}));
        ASSERT_EQ(packets.size(), 1U);
        EXPECT_EQ(packets[0].linkType, row.linkType) << "link type " << row.inFile;
    }
    // libpcap numbers raw IP by system.
    const auto raw = packetsOf(pcapFile(ByteOrder::Little, Resolution::Microseconds, 101, {{1, 2, counting(20)}}));
    ASSERT_EQ(raw.size(), 1U);
    EXPECT_TRUE(raw[0].linkType == pcpp::LINKTYPE_DLT_RAW1 || raw[0].linkType == pcpp::LINKTYPE_DLT_RAW2)
        << raw[0].linkType;
}

TEST(CaptureReader, packetCutByTheSnapLength_keepsItsLengthOnTheWire)
{
    Writer writer(ByteOrder::Little);
    writer.u32(0xA1B2C3D4).u16(2).u16(4).u32(0).u32(0).u32(96).u32(1);
    writer.u32(1).u32(2).u32(96).u32(1400).raw(counting(96));
    const TemporaryFile file("capture", writer.bytes());
    pcpp::PcapFileReaderDevice reader(file.path());
    ASSERT_TRUE(reader.open());
    pcpp::RawPacket packet;
    ASSERT_TRUE(reader.getNextPacket(packet));
    EXPECT_EQ(packet.getRawDataLen(), 96);
    EXPECT_EQ(packet.getFrameLength(), 1400);
}

TEST(CaptureReader, packetsBeyondTheReadBuffer_areWhole)
{
    // Two packets that together exceed any buffer between file and reader.
    const std::vector<Record> records = {{1, 0, counting(250000)}, {2, 0, counting(250001)}, {3, 0, counting(60)}};
    const auto packets = packetsOf(pcapFile(ByteOrder::Little, Resolution::Microseconds, 1, records));
    ASSERT_EQ(packets.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(packets[i].data, records[i].data);
}

TEST(CaptureReader, copyOfAPacket_outlivesTheReader)
{
    const TemporaryFile file("capture", pcapFile(ByteOrder::Little, Resolution::Microseconds, 1, kTwoRecords));
    pcpp::RawPacket copy;
    {
        pcpp::PcapFileReaderDevice reader(file.path());
        ASSERT_TRUE(reader.open());
        pcpp::RawPacket packet;
        ASSERT_TRUE(reader.getNextPacket(packet));
        copy = packet;
        ASSERT_TRUE(reader.getNextPacket(packet));
    }
    EXPECT_EQ(valuesOf(copy), (Read{1700000000, 999999000, counting(60), 1}));
}

TEST(CaptureReader, packetThatOwnedItsBytes_isFilledAgain)
{
    const TemporaryFile file("capture", pcapFile(ByteOrder::Little, Resolution::Microseconds, 1, kTwoRecords));
    pcpp::PcapFileReaderDevice reader(file.path());
    ASSERT_TRUE(reader.open());
    pcpp::RawPacket packet(new uint8_t[5], 5, timespec{}, true, pcpp::LINKTYPE_NULL);
    ASSERT_TRUE(reader.getNextPacket(packet)); // a leak of the five bytes fails under the address sanitizer
    EXPECT_EQ(valuesOf(packet), (Read{1700000000, 999999000, counting(60), 1}));
}

TEST(CaptureReader, damagedRecordLength_endsTheFile)
{
    Bytes content = pcapFile(ByteOrder::Little, Resolution::Microseconds, 1, kTwoRecords);
    const std::size_t secondRecord = 24 + 16 + 60;
    for (std::size_t i = 0; i < 4; ++i)
        content[secondRecord + 8 + i] = 0xFF;
    EXPECT_EQ(packetsOf(content).size(), 1U);
}

TEST(CaptureReader, noCapture_doesNotOpen)
{
    EXPECT_FALSE(opens({}));
    EXPECT_FALSE(opens(counting(23)));
    EXPECT_FALSE(opens(Bytes(4096, 'x')));
}

TEST(CaptureReader, headerOnly_opensAndHasNoPackets)
{
    EXPECT_TRUE(packetsOf(pcapFile(ByteOrder::Big, Resolution::Microseconds, 1, {})).empty());
}

TEST(CaptureReader, whatIsNotARegularFile_doesNotOpen)
{
    EXPECT_FALSE(pcpp::PcapFileReaderDevice(testing::TempDir()).open());
    EXPECT_FALSE(pcpp::PcapFileReaderDevice("").open());
    EXPECT_FALSE(pcpp::PcapFileReaderDevice(testing::TempDir() + "no such capture").open());
}

#ifndef _WIN32
TEST(CaptureReader, pipeAndDevice_areRefusedAtOnce)
{
    const std::string path = testing::TempDir() + "tst_capturereader_fifo";
    std::remove(path.c_str());
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_FALSE(pcpp::PcapFileReaderDevice(path).open()); // a pipe that was opened would wait for its writer for ever

    const int descriptor = ::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    ASSERT_GE(descriptor, 0);
    const Bytes content = pcapFile(ByteOrder::Little, Resolution::Microseconds, 1, kTwoRecords);
    ASSERT_EQ(write(descriptor, content.data(), content.size()), static_cast<ssize_t>(content.size()));
    EXPECT_FALSE(pcpp::PcapFileReaderDevice(path).open()) << "a capture waits in the pipe";
    Bytes left(content.size());
    EXPECT_EQ(read(descriptor, left.data(), left.size()), static_cast<ssize_t>(left.size())) << "nothing was taken out";
    close(descriptor);
    std::remove(path.c_str());
    EXPECT_FALSE(pcpp::PcapFileReaderDevice("/dev/zero").open());
}
#endif

TEST(CaptureReader, nameOfOneDash_isAFileAndNotTheStandardInput)
{
    const std::filesystem::path before = std::filesystem::current_path();
    const std::filesystem::path folder = std::filesystem::path(testing::TempDir()) / "tst_capturereader_dash";
    std::filesystem::create_directories(folder);
    std::filesystem::current_path(folder);
    const Bytes content = pcapFile(ByteOrder::Little, Resolution::Microseconds, 1, kTwoRecords);
    std::ofstream("-", std::ios::binary)
        .write(reinterpret_cast<const char *>(content.data()), static_cast<std::streamsize>(content.size()));
    pcpp::PcapFileReaderDevice reader("-");
    EXPECT_TRUE(reader.open());
    EXPECT_EQ(readAll(reader).size(), 2U);
    reader.close();
    std::filesystem::current_path(before);
    std::filesystem::remove_all(folder);
}

TEST(CaptureReader, nameWithNul_isNotCutThere)
{
    const TemporaryFile file("capture", pcapFile(ByteOrder::Little, Resolution::Microseconds, 1, kTwoRecords));
    EXPECT_FALSE(pcpp::PcapFileReaderDevice(file.path() + std::string("\0.pcap", 6)).open());
}

TEST(CaptureReader, nameInChinese_opens)
{
    const TemporaryFile file("抓包.pcap", pcapFile(ByteOrder::Little, Resolution::Microseconds, 1, kTwoRecords));
    pcpp::PcapFileReaderDevice reader(file.path());
    EXPECT_TRUE(reader.open());
    EXPECT_EQ(readAll(reader).size(), 2U);
}

TEST(CaptureReader, notOpenOrClosed_hasNoPackets)
{
    const TemporaryFile file("capture", pcapFile(ByteOrder::Little, Resolution::Microseconds, 1, kTwoRecords));
    pcpp::PcapFileReaderDevice reader(file.path());
    pcpp::RawPacket packet;
    EXPECT_FALSE(reader.isOpened());
    EXPECT_FALSE(reader.getNextPacket(packet));
    reader.close();
    ASSERT_TRUE(reader.open());
    ASSERT_TRUE(reader.open()) << "open already";
    ASSERT_TRUE(reader.getNextPacket(packet));
    reader.close();
    EXPECT_FALSE(reader.isOpened());
    EXPECT_FALSE(reader.getNextPacket(packet));
    ASSERT_TRUE(reader.open());
    EXPECT_EQ(readAll(reader).size(), 2U) << "opened again, read from the start";
}
