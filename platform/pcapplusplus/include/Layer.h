#pragma once

#include <cstddef>
#include <cstdint>

namespace pcpp {

/// One protocol layer of a packet: its bytes are those of the RawPacket below it and live as long.
class Layer
{
public:
    /// First byte of the layer's header.
    uint8_t *getData() const { return const_cast<uint8_t *>(_data); }
    /// Header and payload, as far as they were captured and belong to the layer (padding of the frame does not).
    size_t getDataLen() const { return _dataLength; }
    /// The captured length of the layer's header; never more than getDataLen().
    size_t getHeaderLen() const { return _headerLength; }
    uint8_t *getLayerPayload() const { return const_cast<uint8_t *>(_data) + _headerLength; }
    size_t getLayerPayloadSize() const { return _dataLength - _headerLength; }

protected:
    Layer() = default;

    void setBytes(const uint8_t *data, size_t dataLength, size_t headerLength)
    {
        _data = data;
        _dataLength = dataLength;
        _headerLength = headerLength;
    }

private:
    const uint8_t *_data = nullptr;
    size_t _dataLength = 0;
    size_t _headerLength = 0;
};

} // namespace pcpp
