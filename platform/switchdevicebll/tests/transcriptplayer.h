#pragma once

#include "sessionbench.h"

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>
#include <QtCore/QList>
#include <QtCore/QRandomGenerator>

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace ovra {
namespace bll {

/// The lengths of the pieces in which a transcript arrives, one after the other; what is left comes as it is written.
struct Pieces
{
    QList<int> lengths;
    std::chrono::milliseconds gap{0};

    /// Pieces of 1 to `largest` bytes, the same ones for the same seed.
    static Pieces random(quint32 seed, int bytes, int largest)
    {
        QRandomGenerator random(seed);
        Pieces pieces;
        pieces.gap = std::chrono::milliseconds(random.bounded(20));
        for (int left = bytes; left > 0; left -= pieces.lengths.last())
            pieces.lengths << random.bounded(1, largest + 1);
        return pieces;
    }
};

/// Plays the switch of a transcript: everything that it wrote in a dialogue, byte for byte. What was typed follows from
/// that: the transcript holds the echoes, and stops wherever the switch waited for something.
class TranscriptPlayer
{
public:
    TranscriptPlayer(std::shared_ptr<const DeviceDescription> description, QByteArray transcript, Pieces pieces = {})
        : _bench(std::move(description))
        , _transcript(std::move(transcript))
        , _pieces(std::move(pieces))
    {}

    /// Types everything that was typed in the dialogue, each line as a block of its own with a page key behind it. The
    /// replies; the last one tells what went wrong, if something did.
    QByteArrayList play()
    {
        _bench.submit("\r\n");
        int seen = 0;
        for (;;) {
            if (!_bench.sent.isEmpty()) {
                if (_at == _transcript.size())
                    return _bench.replies << "typed too much: " + _bench.sent;
                _bench.takeSent();
                writeToTheNextStop();
            } else if (_bench.replies.size() > seen) {
                ++seen;
                if (_at == _transcript.size())
                    return _bench.replies;
                _bench.submit(nextBlock());
            } else if (!_bench.passUntilAction(std::chrono::minutes(5))) {
                return _bench.replies << "nothing happens at byte " + QByteArray::number(_at);
            }
        }
    }

    const SessionBench &bench() const { return _bench; }

private:
    bool endsAt(int end, const QByteArray &text) const
    {
        return end - _at >= text.size() && _transcript.mid(end - text.size(), text.size()) == text;
    }
    bool isPromptEnd(int end) const
    {
        if (_transcript.at(end - 1) == '\a')
            --end;
        else if (end < _transcript.size() && _transcript.at(end) == '\a')
            return false;
        const char last = _transcript.at(end - 1);
        if (last != '>' && last != ']')
            return false;
        const int begin = _transcript.lastIndexOf(last == '>' ? '<' : '[', end - 1);
        if (begin < _at || (begin > _at && !QByteArray("\r\nD\0", 4).contains(_transcript.at(begin - 1))))
            return false;
        const QByteArray name = _transcript.mid(begin + 1, end - begin - 2);
        return !name.isEmpty() && !name.contains(' ') && _transcript.mid(end, 2) != "\r\n";
    }
    bool isStop(int end) const
    {
        for (const char *text : {"Username:", "Password:", "login: ", "[Y/N]:", "  ---- More ----"}) {
            if (endsAt(end, text))
                return true;
        }
        return isPromptEnd(end);
    }

    void writeToTheNextStop()
    {
        int end = _at + 1;
        while (end < _transcript.size() && !isStop(end))
            ++end;
        QByteArray bytes = _transcript.mid(_at, end - _at);
        _at = end;
        while (!_pieces.lengths.isEmpty() && _pieces.lengths.first() < bytes.size()) {
            const int length = _pieces.lengths.takeFirst();
            _bench.feed(bytes.left(length));
            bytes.remove(0, length);
            _bench.pass(_pieces.gap);
        }
        if (!_pieces.lengths.isEmpty() && (_pieces.lengths.first() -= bytes.size()) == 0)
            _pieces.lengths.removeFirst();
        _bench.feed(bytes);
    }

    // What was typed where the switch waits now.
    QByteArray nextBlock() const
    {
        if (!QByteArray(">]\a").contains(_transcript.at(_at - 1)))
            return "a user name, or a password\r\n";
        const int end = _transcript.indexOf("\r\n", _at);
        return _transcript.mid(_at, end - _at).replace(" \x1b[1D", "").replace('\r', "") + "\r\nspace";
    }

    SessionBench _bench;
    const QByteArray _transcript;
    Pieces _pieces;
    int _at = 0; // written so far
};

} // namespace bll
} // namespace ovra
