#pragma once

#include <QtGlobal>

/// Deterministic random numbers for tests: the same seed gives the same sequence with every compiler and library, which
/// the distributions of <random> do not promise. SplitMix64; not for anything but test data.
class RandomSource
{
public:
    explicit RandomSource(quint64 seed)
        : _state(seed)
    {}

    quint64 next()
    {
        _state += 0x9e3779b97f4a7c15ULL;
        quint64 mixed = _state;
        mixed = (mixed ^ (mixed >> 30U)) * 0xbf58476d1ce4e5b9ULL;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94d049bb133111ebULL;
        return mixed ^ (mixed >> 31U);
    }

    /// A number in [lowest, highest], both included; the range must not be wider than 2^62.
    qint64 between(qint64 lowest, qint64 highest)
    {
        return lowest + static_cast<qint64>(next() % static_cast<quint64>(highest - lowest + 1));
    }

    /// An index into a list of `count` entries (at least one).
    int below(int count) { return static_cast<int>(between(0, count - 1)); }

    /// True in about `percent` of a hundred calls.
    bool chance(int percent) { return below(100) < percent; }

    /// One entry of a non-empty list.
    template<typename List>
    auto pick(const List &list)
    {
        return list[static_cast<typename List::size_type>(below(static_cast<int>(list.size())))];
    }

private:
    quint64 _state;
};
