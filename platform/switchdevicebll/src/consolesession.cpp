#include "consolesession.h"

#include "generaldescription.h"

#include <algorithm>
#include <utility>

namespace ovra {
namespace bll {

namespace {

constexpr int kLongestStanding = 160; // two lines of a screen

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
    _wasEmpty = false;
    _isCredentialDue = true;
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
    _isEnterOpen = false;
    _waiting.clear();
    _state = State::Idle;
    _block = {};
    _notice = Notice::None;
    _logLines = {};
    _reopened = 0;
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
    // A pause before anything has come is the switch thinking.
    const bool hasPaused = _screen.segmentSize() > _exchange.askedAt && now >= _lastActivity + kLongQuiet;
    if (_exchange.isRestart && !_exchange.bootBegin && hasPaused)
        _exchange.bootBegin = _screen.segmentSize();
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
    const int standing = standingIn(line);
    _endsInLog = _logLines.isLogLine(line, facts().failureTexts, standing);
    const int reopened = std::exchange(_reopened, 0);
    if (_endsInLog && standing > 0) {
        _reopened = standing;
        _screen.reopenLine(standing);
        return;
    }
    if (reopened > 0 && _screen.isCompletedLineNew()) // nothing waits there any more: the text goes on behind the log
        _screen.cutCompletedLine(reopened);
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

// The length of the login prompt at the line's beginning that a log line was written behind: the switch still waits for
// the name or the password. Not after the login, where log lines stay in the reply, and not where Enter has been typed.
int ConsoleSession::standingIn(const QByteArray &line) const
{
    if (_isLoggedIn || (_state != State::Idle && !_screen.isCompletedLineNew()))
        return 0;
    if (_reopened > 0)
        return _reopened;
    const int last = std::min(line.size(), kLongestStanding);
    for (int at = 1; at < last; ++at) {
        if (!beginsLogLine(line, at))
            continue;
        // "Last login: Nov 20" is none.
        return endingOf(facts(), line.left(at), _name).isWholeLine ? at : 0;
    }
    return 0;
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

SessionActions ConsoleSession::takeActions()
{
    return std::exchange(_actions, {});
}

} // namespace bll
} // namespace ovra
