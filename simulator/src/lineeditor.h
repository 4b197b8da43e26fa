#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>

namespace simulator {

/// What a typed line is, which decides its echo.
enum class LineKind { Command, Plain, Hidden };

/// Collects one typed line and says what is echoed.
class LineEditor
{
public:
    enum class Event { None, Enter, Interrupt, UserView, Complete, Help };
    struct Result
    {
        QByteArray echo;
        Event event = Event::None;
    };

    /// Begins a line behind a prompt of this length. Screen width 0 leaves out the redraw mark.
    void begin(LineKind kind, int promptLength, int screenWidth);
    Result feed(char byte);

    const QByteArray &text() const { return _text; }
    /// What the terminal has to be sent so that it shows the line again behind a fresh prompt.
    QByteArray redraw();
    /// Appends text as if it had been typed.
    QByteArray insert(const QByteArray &text);
    void remember(const QByteArray &line);
    const QByteArrayList &history() const { return _history; }

private:
    QByteArray echoOf(char byte);
    QByteArray erase(int count);
    Result editingKey(char byte);
    Result escapeByte(char byte);
    QByteArray recall(int step);

    LineKind _kind = LineKind::Command;
    QByteArray _text;
    int _promptLength = 0;
    int _column = 0;
    int _screenWidth = 80;
    enum class Escape { No, Begun, Sequence } _escape = Escape::No;
    QByteArrayList _history;
    int _recalled = 0; // index into the history; its size: the line being typed
};

} // namespace simulator
