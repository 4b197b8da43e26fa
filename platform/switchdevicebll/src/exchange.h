#pragma once

#include <QtCore/QByteArray>

#include <chrono>
#include <optional>

namespace ovra {
namespace bll {

/// Watches for the echo of a typed line: its characters in their order, whatever stands between them. Echoes come with
/// redraw marks and log lines in the middle, and not at all where a password is asked for.
class EchoWatch
{
public:
    EchoWatch() = default;
    explicit EchoWatch(const QByteArray &line)
        : _line(line)
    {
        skipBlanks();
    }

    bool isComplete() const { return _at == _line.size(); }
    void take(char byte)
    {
        if (isComplete() || _looked == kLongestEcho)
            return;
        ++_looked;
        if (byte != _line.at(_at))
            return;
        ++_at;
        skipBlanks();
    }

private:
    void skipBlanks()
    {
        while (_at < _line.size() && static_cast<unsigned char>(_line.at(_at)) <= ' ')
            ++_at;
    }

    // What looks like the echo farther away is something else.
    static constexpr int kLongestEcho = 4096;
    QByteArray _line;
    int _at = 0;
    int _looked = 0;
};

/// One line that was typed, and what has come of it.
struct Exchange
{
    using Time = std::chrono::steady_clock::time_point;

    QByteArray line;
    bool isSecret = false;      // answers a password prompt
    bool isOwn = false;         // the session's, not the block's
    bool isLogin = false;       // typed before the first prompt
    bool isPaging = false;      // the caller turns the pages
    bool isConfiguring = false; // typed in another view than the user view
    bool isRestart = false;     // restarts the switch
    bool asks = false;          // the description expects questions
    std::chrono::milliseconds silenceLimit{0};

    EchoWatch echo;
    int echoEnd = 0;         // behind the echoed line, in the screen's segment; 0 while there is none
    int failureEnd = 0;      // behind the line that says that a login was refused
    bool hasLineEnd = false; // since Enter was pressed last
    bool hasInk = false;     // something to see, likewise
    bool isNudged = false;
    bool maySeeStray = false;        // the prompt behind an Enter of the line before
    int answers = 0;                 // questions answered
    int askedAt = 0;                 // where in the segment the next question's text may begin
    std::optional<Time> confirmedAt; // the last answer other than no
    std::optional<int> bootBegin;    // of a restart, in the segment: what the switch wrote after a pause
};

} // namespace bll
} // namespace ovra
