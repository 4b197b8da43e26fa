#pragma once

#include "RawPacket.h"

#include <memory>
#include <string>

namespace pcpp {

/// Reads the packets of a capture file, in the file's order: pcap with micro- and nanosecond times in both byte orders,
/// and pcapng as far as libpcap reads it. One thread at a time; no call blocks on anything but the file system.
class PcapFileReaderDevice
{
public:
    /// @param fileName The path in the encoding that the file system takes; its bytes are handed on as they are
    explicit PcapFileReaderDevice(const std::string &fileName);
    /// Closes the file.
    ~PcapFileReaderDevice();

    PcapFileReaderDevice(const PcapFileReaderDevice &) = delete;
    PcapFileReaderDevice &operator=(const PcapFileReaderDevice &) = delete;

    /// Opens the file and reads its header. False for a missing or unreadable file, for one that is no capture, and for
    /// what is not a regular file (directory, pipe, device), which is never waited for. True again when already open.
    bool open();
    bool isOpened() const;

    /// Reads the next packet. The packet borrows the reader's buffer until the next call, close() or the destructor.
    /// False at the end of the file, at a record that is cut short or damaged, and when the file is not open.
    bool getNextPacket(RawPacket &rawPacket);

    /// Closes the file; packets read from it must not be used any more. Does nothing when the file is not open.
    void close();

    std::string getFileName() const { return _fileName; }
    /// The link type of the open file.
    LinkLayerType getLinkLayerType() const { return _linkType; }

private:
    struct Capture;

    std::string _fileName;
    std::unique_ptr<Capture> _capture; // empty while closed
    LinkLayerType _linkType = LINKTYPE_ETHERNET;
};

} // namespace pcpp
