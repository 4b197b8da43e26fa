#include "RawPacket.h"

#include <algorithm>
#include <utility>

namespace pcpp {

RawPacket::RawPacket(const RawPacket &other)
    : _timestamp(other._timestamp)
    , _dataLength(other._dataLength)
    , _frameLength(other._frameLength)
    , _linkType(other._linkType)
{
    if (!other._data)
        return;
    auto *bytes = new uint8_t[static_cast<size_t>(_dataLength)];
    std::copy_n(other._data, _dataLength, bytes);
    _data = bytes;
    _ownsData = true;
}

RawPacket &RawPacket::operator=(const RawPacket &other)
{
    if (this == &other)
        return *this;
    RawPacket copy(other);
    std::swap(_data, copy._data);
    std::swap(_ownsData, copy._ownsData);
    _timestamp = copy._timestamp;
    _dataLength = copy._dataLength;
    _frameLength = copy._frameLength;
    _linkType = copy._linkType;
    return *this;
}

} // namespace pcpp
