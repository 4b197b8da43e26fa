#pragma once

#include <cstdint>
#include <string>

namespace pcpp {

/// An IPv4 address.
class IPv4Address
{
public:
    IPv4Address() = default;

    /// @param addrAsInt The address in network byte order, as toInt() returns it
    explicit IPv4Address(uint32_t addrAsInt)
        : _address(addrAsInt)
    {}

    /// The four octets as they stand in the header, read as one native number (network byte order).
    uint32_t toInt() const { return _address; }

    /// Dotted quad.
    std::string toString() const;

    bool operator==(const IPv4Address &other) const { return _address == other._address; }
    bool operator!=(const IPv4Address &other) const { return _address != other._address; }

private:
    uint32_t _address = 0;
};

/// An address of either family; the layers of this library yield IPv4 addresses only.
class IPAddress
{
public:
    IPAddress() = default;
    /// Implicit, as in PcapPlusPlus.
    IPAddress(const IPv4Address &address)
        : _ipv4(address)
    {}

    bool isIPv4() const { return true; }
    const IPv4Address &getIPv4() const { return _ipv4; }
    std::string toString() const { return _ipv4.toString(); }

private:
    IPv4Address _ipv4;
};

} // namespace pcpp
