#include "consolescreen.h"

#include "lineending.h"

#include <algorithm>

namespace ovra {
namespace bll {

namespace {

constexpr char kEscape = '\x1b';
constexpr char kBackspace = '\b';
constexpr int kLongestErasure = 600; // three times a wide screen
constexpr int kKeptLine = 1024;
const QByteArray kRedrawMark = QByteArrayLiteral(" \x1b[1D");

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

} // namespace

void ConsoleScreen::clear()
{
    _text.clear();
    _held.clear();
    _move.clear();
    _segment = _line = _completed = 0;
    _isAnswered = false;
    _stage = Stage::None;
}

bool ConsoleScreen::take(char byte)
{
    if (byte == '\0')
        return false;
    if (_stage != Stage::None)
        return takeErasure(byte);
    if (beginsErasure(byte)) {
        _stage = Stage::FirstMove;
        _kind = byte == kEscape      ? PagerErasure::CursorLeft
                : byte == kBackspace ? PagerErasure::Backspace
                                     : PagerErasure::CarriageReturn;
        _move.clear();
        _back = 0;
        return takeErasure(byte);
    }
    _isAnswered = false;
    return put(byte);
}

void ConsoleScreen::beginSegment()
{
    _text.remove(0, _line);
    _line = _completed = 0;
    _segment = _text.size();
}

void ConsoleScreen::shortenLine(int size)
{
    const int surplus = _text.size() - _line - size;
    if (surplus <= 0)
        return;
    _text.remove(_line, surplus);
    _segment = std::max(_line, _segment - surplus);
}

void ConsoleScreen::reopenLine(int kept)
{
    _line = _completed;
    cutBack(_completed + kept);
}

void ConsoleScreen::cutCompletedLine(int size)
{
    _text.remove(_completed, size);
    _line -= size;
    _segment = std::min(_segment, _line);
}

void ConsoleScreen::answerPager()
{
    const int begin = _facts == nullptr ? -1 : pagerAtEnd(*_facts, _text, _line);
    if (begin < 0)
        return;
    cutBack(begin);
    _isAnswered = true;
}

void ConsoleScreen::trim()
{
    if (_text.size() < 64 * kKeptLine)
        return;
    _text.remove(0, _text.size() - kKeptLine);
    _line = _completed = 0;
    _segment = _text.size();
}

bool ConsoleScreen::put(char byte)
{
    if (byte == 'D' && _text.size() - _line >= kRedrawMark.size() - 1
        && std::equal(kRedrawMark.begin(), kRedrawMark.end() - 1, _text.end() - (kRedrawMark.size() - 1)))
    {
        cutBack(_text.size() - (kRedrawMark.size() - 1));
        return false;
    }
    if (byte != '\n') {
        _text.append(byte);
        return false;
    }
    while (_text.size() - _line >= 2 && _text.endsWith("\r\r"))
        _text.chop(1);
    _text.append(byte);
    _completed = _line;
    _line = _text.size();
    return true;
}

bool ConsoleScreen::beginsErasure(char byte) const
{
    const bool isMove = (byte == kEscape && allows(PagerErasure::CursorLeft))
                        || (byte == kBackspace && allows(PagerErasure::Backspace))
                        || (byte == '\r' && allows(PagerErasure::CarriageReturn));
    return isMove && (_isAnswered || pagerAtEnd(*_facts, _text, _line) >= 0);
}

// Back to the line's beginning, blanks over the text, back again.
bool ConsoleScreen::takeErasure(char byte)
{
    if (!continuesErasure(byte)) {
        const bool completedBefore = release();
        return take(byte) || completedBefore;
    }
    _held.append(byte);
    if (_stage != Stage::SecondMove || !isMoveComplete())
        return false;
    _held.clear();
    _stage = Stage::None;
    if (!_isAnswered)
        cutBack(std::max(pagerAtEnd(*_facts, _text, _line), _line));
    _isAnswered = false;
    return false;
}

bool ConsoleScreen::continuesErasure(char byte)
{
    if (_held.size() == kLongestErasure)
        return false;
    if (byte == ' ' && (_stage == Stage::Blanks || (_stage == Stage::FirstMove && isMoveComplete()))) {
        _stage = Stage::Blanks;
        return true;
    }
    if (_stage == Stage::Blanks) {
        _stage = Stage::SecondMove;
        _move.clear();
    }
    _move.append(byte);
    if (_stage == Stage::FirstMove)
        _back = _move.size();
    return isMove();
}

// Whether the part under way can still become a cursor's way back.
bool ConsoleScreen::isMove() const
{
    switch (_kind) {
    case PagerErasure::CursorLeft: {
        if (_move.size() <= 2)
            return QByteArrayLiteral("\x1b[").startsWith(_move);
        const int digits = _move.size() - 2 - (_move.endsWith('D') ? 1 : 0);
        return digits > 0 && std::all_of(_move.begin() + 2, _move.begin() + 2 + digits, isDigit);
    }
    case PagerErasure::CarriageReturn:
        return _move == "\r";
    case PagerErasure::Backspace:
        return _move.endsWith(kBackspace);
    }
    return false;
}

bool ConsoleScreen::isMoveComplete() const
{
    switch (_kind) {
    case PagerErasure::CursorLeft:
        return _move.endsWith('D');
    case PagerErasure::CarriageReturn:
        return _move == "\r";
    case PagerErasure::Backspace:
        return _move.size() == _back;
    }
    return false;
}

// It was no erasure: what was held back is text.
bool ConsoleScreen::release()
{
    const QByteArray held = _held;
    _held.clear();
    _stage = Stage::None;
    _isAnswered = false;
    bool completed = false;
    for (const char byte : held)
        completed = put(byte) || completed;
    return completed;
}

bool ConsoleScreen::allows(PagerErasure erasure) const
{
    return _facts != nullptr
           && std::find(_facts->pagerErasures.begin(), _facts->pagerErasures.end(), erasure)
                  != _facts->pagerErasures.end();
}

void ConsoleScreen::cutBack(int size)
{
    _text.truncate(size);
    _segment = std::min(_segment, size);
    _line = std::min(_line, size);
    _completed = std::min(_completed, _line);
}

} // namespace bll
} // namespace ovra
