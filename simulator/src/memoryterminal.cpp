#include <simulator/memoryterminal.h>

#include <algorithm>

namespace simulator {

namespace {

constexpr Duration kLongestSettle = std::chrono::minutes(10); // a switch may never be quiet

} // namespace

MemoryTerminal::MemoryTerminal(const SimulatorOptions &options)
    : _console(options)
{}

void MemoryTerminal::type(const QByteArray &bytes)
{
    _console.receive(bytes, _now);
}

QByteArray MemoryTerminal::collect()
{
    const QByteArrayList pieces = _console.transmit(_now);
    _pieces += pieces;
    return pieces.join();
}

QByteArray MemoryTerminal::advance(Duration time)
{
    _pieces.clear();
    const Instant end = _now + time;
    QByteArray bytes = collect();
    for (auto due = _console.nextDue(); due && *due <= end; due = _console.nextDue()) {
        _now = std::max(_now, *due);
        bytes += collect();
    }
    _now = end;
    return bytes;
}

QByteArray MemoryTerminal::settle(Duration quiet)
{
    _pieces.clear();
    QByteArray bytes = collect();
    const Instant limit = _now + kLongestSettle;
    Instant last = _now;
    for (auto due = _console.nextDue(); due && *due <= std::min(last + quiet, limit); due = _console.nextDue()) {
        _now = std::max(_now, *due);
        const QByteArray more = collect();
        if (!more.isEmpty())
            last = _now;
        bytes += more;
    }
    _now = std::max(_now, std::min(last + quiet, limit));
    return bytes;
}

QByteArray MemoryTerminal::exchange(const QByteArray &bytes, Duration quiet)
{
    type(bytes);
    return settle(quiet);
}

} // namespace simulator
