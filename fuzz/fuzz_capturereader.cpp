// A capture file, read from disk the way the packet loop reads it: packets, layers, PTP messages, sessions.

#include "IPv4Layer.h"
#include "Packet.h"
#include "PcapFileDevice.h"
#include "UdpLayer.h"
#include "ptpv2parser/ptpv2parser.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

/// A file of this process, removed when it ends; several fuzzers may run at once.
class InputFile
{
public:
    InputFile()
        : _path(std::filesystem::temp_directory_path()
                / ("fuzz_capturereader_" + std::to_string(std::random_device{}()) + ".pcap"))
    {}
    ~InputFile()
    {
        std::error_code ignored;
        std::filesystem::remove(_path, ignored);
    }

    InputFile(const InputFile &) = delete;
    InputFile &operator=(const InputFile &) = delete;

    std::string write(const uint8_t *data, std::size_t size) const
    {
        std::ofstream file(_path, std::ios::binary | std::ios::trunc);
        if (size > 0)
            file.write(reinterpret_cast<const char *>(data), static_cast<std::streamsize>(size));
        require(file.flush().good());
        return _path.string();
    }

private:
    std::filesystem::path _path;
};

bool within(const pcpp::Layer &layer, const pcpp::RawPacket &packet)
{
    const uint8_t *begin = packet.getRawData();
    const uint8_t *end = begin + packet.getRawDataLen();
    return layer.getData() >= begin && layer.getData() + layer.getDataLen() <= end
           && layer.getLayerPayload() + layer.getLayerPayloadSize() <= end;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    static const InputFile inputFile;
    pcpp::PcapFileReaderDevice reader(inputFile.write(data, size));
    if (!reader.open())
        return 0;

    PTPv2::PTPv2Parser parser;
    PTPv2::PTPv2Analyzer analyzer;
    pcpp::RawPacket rawPacket;
    while (reader.getNextPacket(rawPacket)) {
        pcpp::Packet packet(&rawPacket, pcpp::UDP);
        if (const pcpp::IPv4Layer *ip = packet.getLayerOfType<pcpp::IPv4Layer>()) {
            require(within(*ip, rawPacket));
            require(ip->getSrcIPv4Address().toString().size() >= 7);
        }
        if (const pcpp::UdpLayer *udp = packet.getLayerOfType<pcpp::UdpLayer>())
            require(within(*udp, rawPacket));
        if (parser.parsePacket(packet))
            analyzer.addMessage(parser);
        parser.clear();
    }
    require(analyzer.getSyncSessions().size() == analyzer.sessionCount());
    return 0;
}
