#pragma once

#include "ptpv2parser/ptpv2types.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace PTPv2 {

/// The clock identity as one number, for comparing and hashing; equal only for equal identities.
inline uint64_t asNumber(const ClockIdentity &identity)
{
    uint64_t number = 0;
    static_assert(sizeof number == sizeof identity.octets, "a clock identity has eight octets");
    std::memcpy(&number, identity.octets.data(), sizeof number);
    return number;
}

/// Capture times of Delay_Req messages by port, domain and sequenceId, for the Delay_Resp to come.
///
/// A table of fixed size: 256 sets of eight entries, the oldest of a set gives way. Adding and finding look at one set,
/// whatever the messages hold. Requests that were answered stay, since a second master may answer as well.
class OutstandingRequests
{
public:
    struct Entry
    {
        uint64_t clock;
        uint64_t rest; // port, domain and sequenceId; 0: free
        int64_t seconds;
        int32_t nanoseconds;
        uint32_t order; // grows with every request
    };

    OutstandingRequests()
        : _entries(kSets * kWays)
    {}

    void clear() { _entries.assign(_entries.size(), Entry{}); }

    void add(const PTPv2Message &request)
    {
        const PTPv2Header &header = request.header;
        const uint64_t clock = asNumber(header.sourcePortIdentity.clockIdentity);
        const uint64_t rest = restOfKey(header.sourcePortIdentity.portNumber, header);
        Entry *set = setOf(clock, rest);
        Entry *chosen = set;
        for (Entry *entry = set; entry != set + kWays; ++entry) {
            if (entry->rest == 0 || (entry->rest == rest && entry->clock == clock)) {
                chosen = entry;
                break;
            }
            if (_order - entry->order > _order - chosen->order) // ages, so that the count may wrap
                chosen = entry;
        }
        *chosen = {clock, rest, request.captureSeconds, request.captureNanoseconds, _order++};
    }

    /// The request that a Delay_Resp answers (IEEE 1588-2008 11.3.2), or nullptr. Valid until the next add().
    const Entry *find(const PTPv2Message &response)
    {
        const PortIdentity &requester = response.requestingPortIdentity;
        const uint64_t clock = asNumber(requester.clockIdentity);
        const uint64_t rest = restOfKey(requester.portNumber, response.header);
        const Entry *set = setOf(clock, rest);
        for (const Entry *entry = set; entry != set + kWays; ++entry) {
            if (entry->rest == rest && entry->clock == clock)
                return entry;
        }
        return nullptr;
    }

private:
    static constexpr std::size_t kWays = 8;
    static constexpr unsigned kSetBits = 8;
    static constexpr std::size_t kSets = std::size_t{1} << kSetBits;

    static uint64_t restOfKey(uint16_t portNumber, const PTPv2Header &header)
    {
        constexpr uint64_t used = uint64_t{1} << 63;
        return used | uint64_t{portNumber} << 24 | uint64_t{header.domainNumber} << 16 | header.sequenceId;
    }

    Entry *setOf(uint64_t clock, uint64_t rest)
    {
        // Multiplication carries the differences, which are in single octets of either part, into the upper bits.
        const uint64_t mixed = ((clock * 0x9E3779B97F4A7C15U) ^ rest) * 0xD6E8FEB86659FD93U;
        return _entries.data() + (mixed >> (64 - kSetBits)) * kWays;
    }

    std::vector<Entry> _entries;
    uint32_t _order = 0;
};

} // namespace PTPv2
