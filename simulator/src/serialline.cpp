#include "serialline.h"

#include "text.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace simulator {

namespace {

constexpr int kFifo = 16; // bytes that a serial port hands over at once
constexpr int kCompactFrom = 1 << 16;
constexpr qint64 kMicrosecondsPerSecond = 1000000;

} // namespace

SerialLine::SerialLine(int bytesPerSecond, int largestChunk, Duration chunkGap, quint32 seed)
    : _bytesPerSecond(bytesPerSecond)
    , _largestChunk(largestChunk)
    , _chunkGap(chunkGap)
    , _random(seed)
{
    choosePiece();
}

quint32 SerialLine::random(quint32 below)
{
    return below == 0 ? 0 : static_cast<quint32>(_random()) % below;
}

QByteArray SerialLine::garbage(int size)
{
    QByteArray bytes(size, '\0');
    for (char &byte : bytes)
        byte = static_cast<char>(random(256));
    return bytes;
}

void SerialLine::choosePiece()
{
    if (_largestChunk > 0)
        _piece = 1 + static_cast<int>(random(static_cast<quint32>(_largestChunk)));
    else
        _piece = _bytesPerSecond > 0 ? kFifo : std::numeric_limits<int>::max();
}

void SerialLine::append(const QByteArray &bytes, Instant now)
{
    if (bytes.isEmpty() || _cut || _cutting || isHung(now))
        return;
    const bool wasEmpty = !hasBacklog();
    _backlog += damaged(bytes, now);
    if (wasEmpty) {
        _start = now;
        _sentSinceStart = 0;
    }
}

bool SerialLine::interject(const QByteArray &lines)
{
    const int lineEnd = _backlog.indexOf(kLineEnd, _offset);
    if (lineEnd < 0)
        return false;
    _backlog.insert(lineEnd + 2, lines);
    return true;
}

// --- leaving

std::optional<Instant> SerialLine::nextDue() const
{
    if (!hasBacklog())
        return _cutting && !_cut ? std::optional<Instant>(_lastPiece) : std::nullopt;
    if (_bytesPerSecond > 0) {
        const qint64 last = _sentSinceStart + std::min(_piece, _backlog.size() - _offset);
        return _start + Duration((last * kMicrosecondsPerSecond + _bytesPerSecond - 1) / _bytesPerSecond);
    }
    return _largestChunk > 0 ? std::max(_start, _lastPiece + _chunkGap) : _start;
}

QByteArray SerialLine::takePiece()
{
    QByteArray piece = _backlog.mid(_offset, _piece);
    _offset += piece.size();
    _sentSinceStart += piece.size();
    if (_offset == _backlog.size() || _offset > kCompactFrom) {
        _backlog.remove(0, _offset);
        _offset = 0;
    }
    choosePiece();
    return piece;
}

QByteArrayList SerialLine::take(Instant now)
{
    QByteArrayList pieces;
    for (auto due = nextDue(); due && *due <= now && hasBacklog(); due = nextDue()) {
        _lastPiece = *due;
        pieces << takePiece();
    }
    if (_cutting && !hasBacklog())
        _cut = true;
    return pieces;
}

void SerialLine::discardBacklog()
{
    _backlog.clear();
    _offset = 0;
}

// --- faults

void SerialLine::arm(Defect defect)
{
    defect.position += _appended;
    const auto behind = std::find_if(_defects.begin(), _defects.end(),
                                     [&defect](const Defect &other) { return other.position > defect.position; });
    _defects.insert(behind, std::move(defect));
}

void SerialLine::cutAfter(qint64 bytes)
{
    if (bytes > 0)
        arm({bytes, Effect::Cut, {}, {}, 0});
    else
        _cutting = true;
}

void SerialLine::hangAfter(qint64 bytes, Duration time)
{
    arm({bytes, Effect::Hang, {}, time, 0});
}

void SerialLine::insertAfter(qint64 bytes, const QByteArray &inserted, bool atLineEnd)
{
    arm({bytes, atLineEnd ? Effect::InsertAtLineEnd : Effect::Insert, inserted, {}, 0});
}

void SerialLine::dropAfter(qint64 bytes)
{
    arm({bytes, Effect::Drop, {}, {}, 0});
}

void SerialLine::padAfter(qint64 bytes, int nuls)
{
    arm({bytes, Effect::Pad, {}, {}, nuls});
}

void SerialLine::endReply()
{
    _dropping = false;
    _padding = 0;
}

bool SerialLine::isHung(Instant now) const
{
    return _hungUntil && now < *_hungUntil;
}

void SerialLine::plugIn()
{
    _cut = _cutting = false;
    discardBacklog();
}

void SerialLine::clearFaults()
{
    _defects.clear();
    endReply();
}

void SerialLine::wake()
{
    _hungUntil.reset();
}

// Does what the defect at the beginning of `rest` does. False when nothing of `rest` is to follow.
bool SerialLine::strike(const Defect &defect, QByteArray *out, QByteArray *rest, Instant now)
{
    switch (defect.effect) {
    case Effect::Cut:
        _cutting = true;
        return false;
    case Effect::Hang:
        _hungUntil = defect.time > Duration::zero() ? now + defect.time : Instant::max();
        return false;
    case Effect::Insert:
        *out += defect.inserted;
        return true;
    case Effect::InsertAtLineEnd: {
        const int lineEnd = rest->indexOf(kLineEnd);
        if (lineEnd < 0) { // there will be one later
            _defects.insert(_defects.begin(), defect);
            _defects.front().position = _appended + rest->size();
            return true;
        }
        *out += rest->left(lineEnd + 2) + defect.inserted;
        rest->remove(0, lineEnd + 2);
        return true;
    }
    case Effect::Drop:
        _dropping = true;
        return false;
    case Effect::Pad:
        _padding = defect.nuls;
        return true;
    }
    return true;
}

QByteArray SerialLine::damaged(QByteArray bytes, Instant now)
{
    QByteArray out;
    bool goesOn = !_dropping;
    while (goesOn && !_defects.empty() && _defects.front().position - _appended < bytes.size()) {
        const Defect defect = _defects.front();
        const int before = static_cast<int>(std::max<qint64>(0, defect.position - _appended));
        _defects.erase(_defects.begin());
        out += bytes.left(before);
        bytes.remove(0, before);
        _appended += before;
        const int size = bytes.size();
        goesOn = strike(defect, &out, &bytes, now);
        _appended += size - bytes.size();
    }
    if (goesOn) {
        out += bytes;
        _appended += bytes.size();
    }
    if (_padding > 0)
        out.replace(kLineEnd, QByteArray(_padding, '\0') + kLineEnd);
    return out;
}

} // namespace simulator
