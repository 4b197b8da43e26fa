// How often each key occurred, for the packet loop: no allocation per message, and no pattern of keys makes it slow.
#pragma once

#include <QtCore/QRandomGenerator>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace analysis {

/*!
    Counts occurrences of keys in an open-addressing table. \c Key offers operator== and a member
    \c{std::uint64_t mixed(std::uint64_t seed) const}; the seed is drawn per table, so that a capture cannot be made
   whose addresses all meet in one chain. Memory is two words per distinct key; size() lets the caller refuse absurd
   captures.
*/
template<typename Key>
class CountTable
{
public:
    CountTable()
        : _seed(QRandomGenerator::system()->generate64() | 1U)
        , _slots(kFirstSlots)
    {}

    void add(const Key &key)
    {
        Slot &slot = slotOf(key);
        if (slot.count++ > 0)
            return;
        slot.key = key;
        if (++_size * 2 > _slots.size())
            grow();
    }

    std::size_t size() const { return _size; }

    //! Calls visit(key, count) for every key, in no particular order.
    template<typename Visitor>
    void forEach(Visitor visit) const
    {
        for (const Slot &slot : _slots) {
            if (slot.count > 0)
                visit(slot.key, slot.count);
        }
    }

private:
    struct Slot
    {
        Key key{};
        int count = 0;
    };
    static constexpr std::size_t kFirstSlots = 256; // a power of two, as every later size

    Slot &slotOf(const Key &key)
    {
        const std::size_t mask = _slots.size() - 1;
        std::size_t at = static_cast<std::size_t>(key.mixed(_seed)) & mask;
        while (_slots[at].count > 0 && !(_slots[at].key == key))
            at = (at + 1) & mask;
        return _slots[at];
    }

    void grow()
    {
        std::vector<Slot> old(_slots.size() * 2);
        old.swap(_slots);
        for (const Slot &slot : old) {
            if (slot.count > 0)
                slotOf(slot.key) = slot;
        }
    }

    std::uint64_t _seed;
    std::size_t _size = 0;
    std::vector<Slot> _slots;
};

//! 64-bit finaliser: every input bit reaches every output bit.
inline std::uint64_t mixBits(std::uint64_t value)
{
    value ^= value >> 32U;
    value *= 0xd6e8feb86659fd93U;
    value ^= value >> 32U;
    value *= 0xd6e8feb86659fd93U;
    value ^= value >> 32U;
    return value;
}

} // namespace analysis
