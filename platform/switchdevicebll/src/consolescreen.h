#pragma once

#include "devicedescription.h"

#include <QtCore/QByteArray>

namespace ovra {
namespace bll {

/// What the switch writes, cleaned of what only a terminal needs:
///
/// - NULs,
/// - the mark by which the echo of a long line is redrawn at the screen's edge (blank ESC[1D),
/// - CR CR LF, which becomes CR LF,
/// - the pager's text with the sequence that erases it, once a key was pressed.
///
/// Works byte by byte, so that it makes no difference in which pieces the bytes arrive. Each byte costs the same,
/// whatever has come before.
class ConsoleScreen
{
public:
    /// The facts must stay valid until the next call. What is on the screen stays.
    void setFacts(const SessionFacts *facts) { _facts = facts; }

    /// An empty screen.
    void clear();

    /// True when the byte has completed a line.
    bool take(char byte);

    /// Keeps the unterminated line, forgets everything before it, and counts what comes from here on as new.
    void beginSegment();

    /// The unterminated line begins with its last `size` bytes: what stood before them was answered without a line end.
    void shortenLine(int size);

    /// What has come since beginSegment().
    QByteArray segment() const { return _text.mid(_segment); }
    int segmentSize() const { return _text.size() - _segment; }
    /// The end of it, from this place on.
    QByteArray segmentFrom(int at) const { return _text.mid(_segment + at); }

    /// The unterminated line, what stood on it before beginSegment() included.
    QByteArray line() const { return _text.mid(_line); }
    /// The line that was completed last, with its end.
    QByteArray completedLine() const { return _text.mid(_completed, _line - _completed); }

    /// Whether that line has begun since beginSegment().
    bool isCompletedLineNew() const { return _completed >= _segment; }
    /// Takes that line away but for its beginning, which stands there without an end again.
    void reopenLine(int kept);
    /// Takes the beginning of that line away.
    void cutCompletedLine(int size);

    /// A key is about to be sent to the pager at the end of the line: takes its text away, and the sequence that erases
    /// it, should one come.
    void answerPager();

    /// Forgets the beginning of an endless line. For a screen that nobody reads.
    void trim();

private:
    enum class Stage { None, FirstMove, Blanks, SecondMove };

    bool put(char byte);
    bool beginsErasure(char byte) const;
    bool takeErasure(char byte);
    bool continuesErasure(char byte);
    bool isMove() const;
    bool isMoveComplete() const;
    bool release();
    bool allows(PagerErasure erasure) const;
    void cutBack(int size);

    const SessionFacts *_facts = nullptr;
    QByteArray _text;
    int _segment = 0;   // where the present one begins
    int _line = 0;      // where the unterminated line begins
    int _completed = 0; // where the line before it begins

    // An erasing sequence that may be under way.
    bool _isAnswered = false; // its pager's text has been taken away
    Stage _stage = Stage::None;
    PagerErasure _kind = PagerErasure::CursorLeft;
    QByteArray _held; // what has come of it
    QByteArray _move; // the part under way
    int _back = 0;    // length of the first one
};

} // namespace bll
} // namespace ovra
