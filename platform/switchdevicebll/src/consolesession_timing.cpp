#include "consolesession.h"

#include <algorithm>

namespace ovra {
namespace bll {

namespace {

using Milliseconds = std::chrono::milliseconds;

// A serial adapter hands over what it has every 16 ms; at 9600 baud bytes come every millisecond.
constexpr Milliseconds kShortQuiet{25};
constexpr Milliseconds kNudgeAfter{2000};
constexpr Milliseconds kRestartQuiet{2000};
constexpr std::chrono::minutes kLongestBoot{5};
constexpr std::chrono::hours kLongestBlock{1};

} // namespace

SessionActions ConsoleSession::advance(Time now)
{
    _now = now;
    if (_state != State::Idle) {
        if (!_isJudged && now >= _lastByte + kShortQuiet)
            judgeLine();
        if (const auto due = reactionAt(); due && now >= *due)
            reactToLine();
        else if (const auto nudge = nudgeAt(); nudge && now >= *nudge)
            this->nudge();
        else if (now >= expiresAt())
            expire();
    }
    startWaiting();
    return takeActions();
}

std::optional<ConsoleSession::Time> ConsoleSession::dueAt() const
{
    if (_state == State::Idle)
        return std::nullopt;
    Time due = expiresAt();
    if (!_isJudged)
        due = std::min<Time>(due, _lastByte + kShortQuiet);
    if (const auto reaction = reactionAt())
        due = std::min(due, *reaction);
    if (const auto nudge = nudgeAt())
        due = std::min(due, *nudge);
    return due;
}

void ConsoleSession::judgeLine()
{
    _isJudged = true;
    _ending = {};
    if (_isFlooded)
        return;
    // What was typed need not be echoed, not even its Enter: what follows it then stands on the line of the prompt or
    // question before.
    _isBehindAnswer = !_exchange.hasLineEnd && (_exchange.answers > 0 || _exchange.hasInk);
    const QByteArray line = _isBehindAnswer ? _screen.segmentFrom(_exchange.askedAt) : _screen.line();
    const LineEnding ending = endingOf(facts(), line, _name);
    // What a switch that boots asks is none of our business.
    const bool isBooting =
        _restartedAt && (ending.kind == LineEnding::Kind::Question || ending.kind == LineEnding::Kind::Pager);
    if (isAnswered(ending.kind) && !isBooting)
        _ending = ending;
    if (ending.kind == LineEnding::Kind::None && hasText(line))
        _notice = noticeIn(line);
}

// What stood there when the line was typed is no answer to it.
bool ConsoleSession::isAnswered(LineEnding::Kind kind) const
{
    switch (kind) {
    case LineEnding::Kind::None:
    case LineEnding::Kind::Pager:
        return true;
    case LineEnding::Kind::Prompt:
    case LineEnding::Kind::Question:
        return _exchange.hasLineEnd || _exchange.answers > 0 || _exchange.hasInk;
    case LineEnding::Kind::UserName:
    case LineEnding::Kind::Password:
        return _exchange.hasLineEnd || _exchange.hasInk;
    }
    return false;
}

std::optional<ConsoleSession::Time> ConsoleSession::reactionAt() const
{
    if (_isJudged && (_ending.kind != LineEnding::Kind::None || _notice != Notice::None || _exchange.failureEnd > 0))
        return _lastByte + quietTime();
    return std::nullopt;
}

Milliseconds ConsoleSession::quietTime() const
{
    // Without a line end it may be the echo of what was typed.
    const bool isPastEcho = _exchange.hasLineEnd || _exchange.answers > 0;
    bool isSure = false;
    switch (_ending.kind) {
    case LineEnding::Kind::None:
        break;
    case LineEnding::Kind::Prompt:
        if (isPerhapsStray())
            return kNudgeAfter;
        isSure = _ending.isNamed && _exchange.echo.isComplete() && isPastEcho;
        break;
    case LineEnding::Kind::Question:
        isSure = isPastEcho;
        break;
    case LineEnding::Kind::Pager:
        isSure = !_exchange.isPaging;
        break;
    case LineEnding::Kind::UserName:
    case LineEnding::Kind::Password:
        // One that a log line was written behind may be about to be written again.
        isSure = _reopened == 0 && (!_isLoggedIn || (_ending.isWholeLine && isPastEcho));
        break;
    }
    return isSure ? kShortQuiet : kLongQuiet;
}

// A slow switch answers the line first, and then the Enter that was meant to wake it.
bool ConsoleSession::isPerhapsStray() const
{
    if (!_exchange.maySeeStray || _exchange.echoEnd == 0)
        return false;
    const QByteArray written = _screen.segmentFrom(_exchange.echoEnd);
    return !hasText(written.left(written.size() - _screen.line().size()));
}

// When something has to be tried because nothing happens.
std::optional<ConsoleSession::Time> ConsoleSession::nudgeAt() const
{
    if (_isFlooded)
        return std::min<Time>(_lastByte + kLongQuiet, _block.begun + kNudgeAfter);
    if (_restartedAt)
        return *_restartedAt + kLongestBoot;
    if (_exchange.isRestart)
        return restartsAt();
    if (_exchange.isNudged)
        return std::nullopt;
    // Typed ahead, Enter would answer a question that is still to come.
    if (_exchange.asks && _exchange.answers == 0)
        return _lastActivity + _exchange.silenceLimit / 2;
    // Where one log line has swallowed the prompt, more of them are not what is waited for.
    const bool isOnlyLogged = _endsInLog && _screen.line().isEmpty();
    return (isOnlyLogged ? _lastNews : _lastActivity) + kNudgeAfter;
}

// A question that has just come is answered first.
std::optional<ConsoleSession::Time> ConsoleSession::restartsAt() const
{
    if (!_exchange.confirmedAt)
        return std::nullopt;
    const Time due = *_exchange.confirmedAt + kRestartQuiet;
    return std::clamp<Time>(_lastByte + kShortQuiet, due, due + kLongQuiet);
}

void ConsoleSession::nudge()
{
    if (_isFlooded || _restartedAt)
        return start();
    if (_exchange.isRestart)
        return finishRestart();
    if (_state == State::Preparing && _block.nudges >= kMostNudges)
        return finishUnanswered();
    if (_state == State::Preparing && !_isLoggedIn)
        return nextItem(false); // nobody answers to Enter; perhaps to the line itself
    _exchange.isNudged = true;
    _isEnterOpen = !_endsInLog; // behind a log line the prompt is gone, and the one of the Enter takes its place
    send("\r");
}

ConsoleSession::Time ConsoleSession::expiresAt() const
{
    return std::min<Time>(_lastActivity + _exchange.silenceLimit, _block.begun + kLongestBlock);
}

void ConsoleSession::expire()
{
    if (_exchange.isRestart)
        finishRestart();
    else
        finishBroken();
}

} // namespace bll
} // namespace ovra
