#pragma once

#include <cstdint>
#include <ctime>

namespace pcpp {

/// Link-layer header types as a capture file states them (the values of libpcap's registry).
enum LinkLayerType : int {
    LINKTYPE_NULL = 0, ///< BSD loopback: address family in the byte order of the capturing machine
    LINKTYPE_ETHERNET = 1,
    LINKTYPE_DLT_RAW1 = 12, ///< raw IP; libpcap reports LINKTYPE_RAW files under this number on most systems
    LINKTYPE_DLT_RAW2 = 14, ///< raw IP, as numbered by OpenBSD
    LINKTYPE_RAW = 101,
    LINKTYPE_LOOP = 108, ///< OpenBSD loopback: address family in network byte order
    LINKTYPE_LINUX_SLL = 113,
    LINKTYPE_IPV4 = 228,
    LINKTYPE_IPV6 = 229,
    LINKTYPE_LINUX_SLL2 = 276
};

/// The captured bytes of one packet with its time and link type. Default constructed it holds nothing; one object can
/// be filled again and again.
///
/// A packet filled by PcapFileReaderDevice borrows the reader's buffer: its bytes are valid until the next
/// getNextPacket() on that reader, its close() or its destruction. A copy of such a packet has bytes of its own.
class RawPacket
{
public:
    RawPacket() = default;

    /// Refers to rawDataLen bytes at rawData; with deleteRawDataAtDestructor the bytes come from `new uint8_t[]` and
    /// belong to the packet, otherwise they stay the caller's and must outlive it.
    RawPacket(const uint8_t *rawData, int rawDataLen, timespec timestamp, bool deleteRawDataAtDestructor,
              LinkLayerType layerType = LINKTYPE_ETHERNET)
        : _data(rawData)
        , _timestamp(timestamp)
        , _dataLength(rawDataLen)
        , _frameLength(rawDataLen)
        , _linkType(layerType)
        , _ownsData(deleteRawDataAtDestructor)
    {}

    RawPacket(const RawPacket &other);
    RawPacket &operator=(const RawPacket &other);

    ~RawPacket() { clear(); }

    /// Forgets the bytes (and frees them if they belong to the packet).
    void clear()
    {
        if (_ownsData)
            delete[] _data;
        _data = nullptr;
        _dataLength = 0;
        _frameLength = 0;
        _ownsData = false;
    }

    const uint8_t *getRawData() const { return _data; }
    /// Number of bytes captured.
    int getRawDataLen() const { return _dataLength; }
    /// Number of bytes that the packet had on the wire.
    int getFrameLength() const { return _frameLength; }
    LinkLayerType getLinkLayerType() const { return _linkType; }

    /// Capture time since the Unix epoch, nanoseconds where the file has them. The values are the file's: in a damaged
    /// file tv_nsec may be negative or a second and more.
    timespec getPacketTimeStamp() const { return _timestamp; }

private:
    friend class PcapFileReaderDevice;

    void borrow(const uint8_t *data, int dataLength, int frameLength, timespec timestamp, LinkLayerType linkType)
    {
        if (_ownsData)
            clear();
        _data = data;
        _timestamp = timestamp;
        _dataLength = dataLength;
        _frameLength = frameLength;
        _linkType = linkType;
    }

    const uint8_t *_data = nullptr;
    timespec _timestamp{};
    int _dataLength = 0;
    int _frameLength = 0;
    LinkLayerType _linkType = LINKTYPE_ETHERNET;
    bool _ownsData = false;
};

} // namespace pcpp
