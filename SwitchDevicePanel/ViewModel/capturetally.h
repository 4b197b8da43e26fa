// What is counted over all messages of a capture, whether or not their records are kept.
#pragma once

#include "capturetexts.h"
#include "counttable.h"
#include "messagestore.h"

#include <QtCore/QVariant>

#include <array>
#include <limits>

namespace analysis {

/*!
    Counters per message type, domain, source port and source address, the time span, and the master clock's address.

    More than kMaxDistinct different ports or addresses are refused with std::runtime_error by checkLimits(): no site
   has them, and each would stay in memory.
*/
class CaptureTally
{
public:
    static constexpr std::size_t kMaxDistinct = 1'000'000;

    //! A time that is none, or at or before the epoch, does not count for the time span.
    void add(const StoredMessage &stored);

    void checkLimits(std::size_t syncSessions) const;

    //! The statistics map without "syncSessions" and "healthCheck".
    QVariantMap statistics(const MessageStore &store, CaptureTexts &texts) const;

private:
    struct AddressKey
    {
        quint32 ipv4 = 0;

        bool operator==(const AddressKey &other) const { return ipv4 == other.ipv4; }
        std::uint64_t mixed(std::uint64_t seed) const { return mixBits(ipv4 ^ seed); }
    };
    struct PortKey
    {
        PTPv2::PortIdentity identity{};

        bool operator==(const PortKey &other) const { return identity == other.identity; }
        std::uint64_t mixed(std::uint64_t seed) const;
    };

    QVariantMap timeRange(const MessageStore &store) const;
    QVariantMap typeCounts() const;
    QVariantMap domainCounts() const;

    std::array<int, 256> _types{};
    std::array<int, 256> _domains{};
    CountTable<PortKey> _ports;
    CountTable<AddressKey> _addresses;
    int _withoutAddress = 0;
    SourceAddress _masterClock;
    qint64 _earliest = std::numeric_limits<qint64>::max();
    qint64 _latest = std::numeric_limits<qint64>::min();
};

} // namespace analysis
