#include "consolesession.h"

#include "generaldescription.h"

#include <algorithm>
#include <utility>

namespace ovra {
namespace bll {

namespace {

using Milliseconds = std::chrono::milliseconds;

// A serial adapter hands over what it has every 16 ms; at 9600 baud bytes come every millisecond.
constexpr Milliseconds kShortQuiet{25};
// What looks like a prompt also stands inside listings, which go on sooner than this.
constexpr Milliseconds kLongQuiet{300};
constexpr Milliseconds kNudgeAfter{2000};
constexpr Milliseconds kRestartQuiet{2000};
constexpr std::chrono::minutes kLongestBoot{5};
constexpr std::chrono::hours kLongestBlock{1};
constexpr qint64 kLargestReply = 16 * 1024 * 1024;

bool isInk(char byte)
{
    return static_cast<unsigned char>(byte) > ' ';
}

bool hasText(const QByteArray &line)
{
    return std::any_of(line.begin(), line.end(), isInk);
}

} // namespace

ConsoleSession::ConsoleSession(DescriptionSource source)
    : _source(std::move(source))
    , _description(generalDescription())
{
    _screen.setFacts(&facts());
}

void ConsoleSession::connected()
{
    disconnected();
    _isOpen = true;
    _isToldClosed = false;
}

SessionActions ConsoleSession::connectionLost()
{
    _isOpen = false;
    if (_state != State::Idle)
        finishBroken();
    startWaiting();
    disconnected();
    return takeActions();
}

void ConsoleSession::disconnected()
{
    _isOpen = false;
    _isLoggedIn = false;
    _name.clear();
    _restartedAt.reset();
    _isFlooded = false;
    _waiting.clear();
    _state = State::Idle;
    _block = {};
    _notice = Notice::None;
    _logLines = {};
    _screen.clear();
}

SessionActions ConsoleSession::submit(const QByteArray &block, Time now)
{
    _now = now;
    _waiting.push_back(block);
    startWaiting();
    return takeActions();
}

SessionActions ConsoleSession::receive(const QByteArray &bytes, Time now)
{
    _now = now;
    if (bytes.isEmpty())
        return {};
    for (const char byte : bytes)
        takeByte(byte);
    _lastByte = _lastActivity = now;
    if (_state == State::Idle)
        takeUnsolicited(bytes);
    else if (_block.received > kLargestReply)
        finishFlooded();
    _isJudged = false;
    startWaiting();
    return takeActions();
}

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

// --- blocks

void ConsoleSession::startWaiting()
{
    while (_state == State::Idle && !_waiting.empty()) {
        const QByteArray block = std::move(_waiting.front());
        _waiting.pop_front();
        begin(block);
    }
}

void ConsoleSession::begin(const QByteArray &block)
{
    _description = _source ? _source() : nullptr;
    if (!_description)
        _description = generalDescription();
    _screen.setFacts(&facts());
    _block = {};
    _block.items = itemsOf(block);
    _block.isSingleLine = _block.items.size() == 1 && _block.items.front().kind == BlockItem::Kind::Line;
    _block.begun = _now;
    _state = State::Preparing;
    if (!_isOpen)
        return finishUnanswered();
    beginExchange({});
    _exchange.hasLineEnd = true;
    const LineEnding standing = endingOf(facts(), _screen.line(), _name);
    const bool isUp = standing.kind == LineEnding::Kind::Prompt || standing.isWholeLine;
    if (!_isFlooded && (!_restartedAt || isUp))
        start();
}

// With what the line is waiting for.
void ConsoleSession::start()
{
    _restartedAt.reset();
    _isFlooded = false;
    const LineEnding standing = endingOf(facts(), _screen.line(), _name);
    const bool isLoginPrompt =
        standing.kind == LineEnding::Kind::UserName || standing.kind == LineEnding::Kind::Password;
    if (isLoginPrompt && standing.isWholeLine)
        _isLoggedIn = false;
    if (standing.kind == LineEnding::Kind::Question)
        return atQuestion();
    if (standing.kind == LineEnding::Kind::Pager)
        return startAtPager();
    if (_isLoggedIn)
        return nextItem(standing.kind == LineEnding::Kind::Prompt);
    if (isLoginPrompt)
        return atLoginPrompt();
    startBeforeLogin();
}

void ConsoleSession::startAtPager()
{
    const bool turnsPage = !_block.items.empty() && _block.items.front().kind != BlockItem::Kind::Line;
    if (!_isLoggedIn || !turnsPage)
        return atPager();
    const BlockItem item = _block.items.front();
    _block.items.pop_front();
    if (item.kind == BlockItem::Kind::Paging)
        return type(item);
    _state = State::Answering;
    _exchange.isOwn = false;
    turnPage();
}

// Enter shows where an earlier user has left the line.
void ConsoleSession::startBeforeLogin()
{
    if (!_block.items.empty() && _block.items.front().kind == BlockItem::Kind::Line
        && _block.items.front().text.isEmpty())
        nextItem(false);
    else
        typeOwn({}, "\r");
}

// --- bytes

void ConsoleSession::takeByte(char byte)
{
    if (_state != State::Idle) {
        ++_block.received;
        _exchange.echo.take(byte);
        _exchange.hasInk = _exchange.hasInk || isInk(byte);
    }
    if (_screen.take(byte))
        lineCompleted();
}

void ConsoleSession::lineCompleted()
{
    const QByteArray line = _screen.completedLine();
    _exchange.hasLineEnd = true;
    _endsInLog = _logLines.isLogLine(line);
    if (_exchange.echoEnd == 0 && _exchange.echo.isComplete() && !_endsInLog)
        _exchange.echoEnd = _screen.segmentSize();
    if (_endsInLog || !hasText(line))
        return;
    _lastNews = _now;
    _notice = noticeIn(line);
    if (_state == State::Idle && _notice != Notice::None) { // the switch has logged out, or come up again
        _isLoggedIn = false;
        _restartedAt.reset();
    }
    // Enter alone is no credential: where it is refused, the line has stood at an earlier user's password prompt.
    const bool isTyped = _state == State::Answering && _exchange.isLogin && !_exchange.line.isEmpty();
    if (isTyped && _exchange.failureEnd == 0 && containsOne(facts().failureTexts, line))
        _exchange.failureEnd = _screen.segmentSize();
}

ConsoleSession::Notice ConsoleSession::noticeIn(const QByteArray &line) const
{
    if (containsOne(facts().pressEnterTexts, line))
        return Notice::PressEnter;
    return containsOne(facts().interruptTexts, line) ? Notice::Interrupt : Notice::None;
}

void ConsoleSession::takeUnsolicited(const QByteArray &bytes)
{
    debug(QStringLiteral("unasked: ") + QString::fromUtf8(bytes));
    _screen.beginSegment();
    _screen.trim();
}

// --- time

void ConsoleSession::judgeLine()
{
    _isJudged = true;
    _ending = {};
    if (_isFlooded)
        return;
    // An answer need not be echoed, not even its Enter: what follows it then stands on the question's line.
    const bool isBehindAnswer = _exchange.answers > 0 && !_exchange.hasLineEnd;
    const QByteArray line = isBehindAnswer ? _screen.segmentFrom(_exchange.askedAt) : _screen.line();
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
        return _exchange.hasLineEnd || _exchange.answers > 0;
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
    bool isSure = false;
    switch (_ending.kind) {
    case LineEnding::Kind::None:
        break;
    case LineEnding::Kind::Prompt:
        isSure = _ending.isNamed && _exchange.echo.isComplete();
        break;
    case LineEnding::Kind::Question:
        isSure = true;
        break;
    case LineEnding::Kind::Pager:
        isSure = !_exchange.isPaging;
        break;
    case LineEnding::Kind::UserName:
    case LineEnding::Kind::Password:
        isSure = !_isLoggedIn || _ending.isWholeLine;
        break;
    }
    return isSure ? kShortQuiet : kLongQuiet;
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
    return std::clamp<Time>(_lastByte + kShortQuiet, due, due + kRestartQuiet);
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

SessionActions ConsoleSession::takeActions()
{
    return std::exchange(_actions, {});
}

} // namespace bll
} // namespace ovra
