#include "lineeditor.h"

namespace simulator {

namespace {

constexpr int kLongestLine = 512;
constexpr int kHistory = 10;
constexpr char kInterrupt = '\x03';
constexpr char kBell = '\a';
constexpr char kBackspace = '\b';
constexpr char kTab = '\t';
constexpr char kPrevious = '\x10';
constexpr char kNext = '\x0e';
constexpr char kEraseLine = '\x15';
constexpr char kEraseWord = '\x17';
constexpr char kEraseLeft = '\x18';
constexpr char kUserView = '\x1a';
constexpr char kEscape = '\x1b';
constexpr char kDelete = '\x7f';

// Forces a terminal that waits at its right edge into the next row.
constexpr char kRedrawMark[] = " \x1b[1D";

bool isControl(char byte)
{
    return static_cast<unsigned char>(byte) < 0x20 || byte == kDelete;
}

} // namespace

void LineEditor::begin(LineKind kind, int promptLength, int screenWidth)
{
    _kind = kind;
    _text.clear();
    _promptLength = promptLength;
    _screenWidth = screenWidth;
    _column = screenWidth > 0 ? promptLength % screenWidth : 0;
    _escape = Escape::No;
    _recalled = _history.size();
}

QByteArray LineEditor::echoOf(char byte)
{
    if (_kind == LineKind::Hidden)
        return {};
    QByteArray echo(1, byte);
    if (_kind == LineKind::Command && _screenWidth > 0 && ++_column == _screenWidth) {
        echo += kRedrawMark;
        _column = 0;
    }
    return echo;
}

QByteArray LineEditor::insert(const QByteArray &text)
{
    QByteArray echo;
    for (const char byte : text) {
        if (_text.size() == kLongestLine)
            return echo + kBell;
        _text += byte;
        echo += echoOf(byte);
    }
    return echo;
}

QByteArray LineEditor::redraw()
{
    const QByteArray text = _text;
    _text.clear();
    _column = _screenWidth > 0 ? _promptLength % _screenWidth : 0;
    return insert(text);
}

QByteArray LineEditor::erase(int count)
{
    QByteArray echo;
    for (; count > 0 && !_text.isEmpty(); --count) {
        _text.chop(1);
        if (_kind == LineKind::Hidden)
            continue;
        echo += "\b \b";
        _column = _screenWidth > 0 ? (_column + _screenWidth - 1) % _screenWidth : 0;
    }
    return echo;
}

void LineEditor::remember(const QByteArray &line)
{
    if (line.isEmpty() || (!_history.isEmpty() && _history.last() == line))
        return;
    _history << line;
    if (_history.size() > kHistory)
        _history.removeFirst();
}

QByteArray LineEditor::recall(int step)
{
    const int wanted = _recalled + step;
    if (_kind != LineKind::Command || wanted < 0 || wanted > _history.size())
        return QByteArray(1, kBell);
    _recalled = wanted;
    const QByteArray echo = erase(_text.size());
    return echo + insert(wanted < _history.size() ? _history.at(wanted) : QByteArray());
}

LineEditor::Result LineEditor::escapeByte(char byte)
{
    if (_escape == Escape::Begun) {
        _escape = byte == '[' || byte == 'O' ? Escape::Sequence : Escape::No;
        return {};
    }
    if (byte < 0x40) // parameters
        return {};
    _escape = Escape::No;
    if (byte == 'A')
        return {recall(-1), Event::None};
    if (byte == 'B')
        return {recall(+1), Event::None};
    return {};
}

LineEditor::Result LineEditor::editingKey(char byte)
{
    switch (byte) {
    case kBackspace:
    case kDelete:
        return {erase(1), Event::None};
    case kEraseLine:
    case kEraseLeft:
        return {erase(_text.size()), Event::None};
    case kEraseWord:
        return {erase(_text.size() - (_text.trimmed().lastIndexOf(' ') + 1)), Event::None};
    case kPrevious:
        return {recall(-1), Event::None};
    case kNext:
        return {recall(+1), Event::None};
    case kTab:
        return {{}, Event::Complete};
    case kUserView:
        return {{}, Event::UserView};
    case kEscape:
        _escape = Escape::Begun;
        return {};
    default: // a key without a meaning here
        return {};
    }
}

LineEditor::Result LineEditor::feed(char byte)
{
    if (_escape != Escape::No)
        return escapeByte(byte);
    if (byte == '\r' || byte == '\n')
        return {"\r\n", Event::Enter};
    if (byte == kInterrupt)
        return {{}, Event::Interrupt};
    if (isControl(byte))
        return editingKey(byte);
    if (byte == '?' && _kind == LineKind::Command)
        return {"?\r\n", Event::Help};
    return {insert(QByteArray(1, byte)), Event::None};
}

} // namespace simulator
