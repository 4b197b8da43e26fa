// A first-in first-out store of small values in one block of memory.
#pragma once

#include <cstddef>
#include <vector>

namespace analysis {

/*!
    Append at the end, drop from the front, read in order. Memory is one ring that only grows when it is full, so a
   store that is trimmed regularly settles at its size and appending never allocates again.
*/
template<typename T>
class MessageQueue
{
public:
    std::size_t size() const { return _size; }

    const T &operator[](std::size_t index) const { return _ring[(_first + index) & (_ring.size() - 1)]; }

    void append(const T &value)
    {
        if (_size == _ring.size())
            grow();
        _ring[(_first + _size) & (_ring.size() - 1)] = value;
        ++_size;
    }

    void dropFront(std::size_t count)
    {
        count = count < _size ? count : _size;
        if (count == 0)
            return;
        _first = (_first + count) & (_ring.size() - 1);
        _size -= count;
    }

private:
    static constexpr std::size_t kFirstCapacity = 1'024; // a power of two, as every later capacity

    void grow()
    {
        std::vector<T> larger(_ring.empty() ? kFirstCapacity : _ring.size() * 2);
        for (std::size_t i = 0; i < _size; ++i)
            larger[i] = (*this)[i];
        _ring.swap(larger);
        _first = 0;
    }

    std::vector<T> _ring;
    std::size_t _first = 0;
    std::size_t _size = 0;
};

} // namespace analysis
