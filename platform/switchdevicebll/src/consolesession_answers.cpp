#include "consolesession.h"

#include <algorithm>
#include <utility>

namespace ovra {
namespace bll {

namespace {

constexpr char kInterrupt = '\x03';
constexpr char kPageKey = ' ';
constexpr int kMostAnswers = 8; // a switch that asks the same for ever
constexpr int kMostReturns = 2;
constexpr int kLongestQuestion = 4096;

} // namespace

void ConsoleSession::reactToLine()
{
    const Notice notice = std::exchange(_notice, Notice::None);
    if (_exchange.failureEnd > 0)
        return atFailure();
    const LineEnding ending = std::exchange(_ending, {});
    switch (ending.kind) {
    case LineEnding::Kind::None:
        return atNotice(notice);
    case LineEnding::Kind::Prompt:
        return atPrompt(ending);
    case LineEnding::Kind::Question:
        return atQuestion();
    case LineEnding::Kind::Pager:
        return atPager();
    case LineEnding::Kind::UserName:
    case LineEnding::Kind::Password:
        return atLoginPrompt();
    }
}

// The switch is idle, or configures itself: nobody is logged in.
void ConsoleSession::atNotice(Notice notice)
{
    _restartedAt.reset();
    if (_isLoggedIn && _state == State::Answering) {
        if (_exchange.isRestart)
            closeRestart();
        else
            closeSegment();
        loseLogin();
        if (_exchange.isRestart)
            return finish();
    }
    _isLoggedIn = false;
    if (++_block.nudges >= kMostNudges)
        return;
    if (notice == Notice::Interrupt)
        typeOwn({}, QByteArray(1, kInterrupt) + '\r');
    else if (_state == State::Preparing)
        startBeforeLogin();
    else
        typeOwn({}, "\r");
}

void ConsoleSession::atPrompt(const LineEnding &ending)
{
    _restartedAt.reset();
    if (!_isLoggedIn && !ending.isUserView && _block.returns < kMostReturns) {
        ++_block.returns;
        return typeOwn("return", "\r\n");
    }
    _isLoggedIn = true;
    if (ending.isUserView && ending.name != _name) {
        _name = ending.name;
        debug(QStringLiteral("the switch is called ") + QString::fromUtf8(_name));
    }
    const int written = _screen.segmentSize() - _exchange.askedAt;
    if (_state == State::Answering)
        closeSegment();
    else
        _screen.beginSegment();
    if (_isBehindAnswer)
        _screen.shortenLine(written);
    if (ending.isUserView)
        _block.isStuck = false;
    nextItem(true);
}

void ConsoleSession::atQuestion()
{
    const bool isOfLine = _isLoggedIn && _state == State::Answering;
    if (_exchange.answers >= kMostAnswers || _block.nudges >= kMostNudges)
        return isOfLine ? closeAndFinish() : finishUnanswered();

    QByteArray asked = _screen.segmentFrom(std::max(_exchange.askedAt, _exchange.echoEnd)).right(kLongestQuestion);
    if (asked.size() < _screen.line().size())
        asked = _screen.line();
    QByteArray answer;
    if (const auto known = answerTo(facts(), isOfLine ? _exchange.line : QByteArray(), asked)) {
        answer = *known;
    } else if (_isLoggedIn && !_block.items.empty() && _block.items.front().isAnswer()) {
        const BlockItem item = _block.items.front();
        _block.items.pop_front();
        if (!isOfLine)
            return type(item);
        answer = item.text;
    } else {
        answer = "N";
        warn(QStringLiteral("交换机询问“%1”，已回答 N"), {QString::fromUtf8(asked).simplified().right(200)});
    }
    this->answer(answer);
}

void ConsoleSession::answer(const QByteArray &answer)
{
    debug(QStringLiteral("question answered: ") + QString::fromUtf8(answer));
    if (!_isLoggedIn || _state != State::Answering) {
        ++_block.nudges;
        return typeOwn(answer, "\r\n");
    }
    ++_exchange.answers;
    if (answer.toUpper() != "N") // which is followed by another question, or by the prompt
        _exchange.confirmedAt = _now;
    _exchange.askedAt = _screen.segmentSize();
    _exchange.bootBegin.reset();
    _exchange.hasLineEnd = _exchange.hasInk = false;
    expectAnswer();
    send(answer + "\r\n");
}

void ConsoleSession::atPager()
{
    if (_isLoggedIn && _state == State::Answering)
        return _block.items.empty() ? closeAndFinish() : turnPage();
    if (++_block.nudges >= kMostNudges)
        return;
    _screen.answerPager();
    typeOwn({}, QByteArray(1, kInterrupt));
    _exchange.hasLineEnd = true; // no Enter, no new line
}

void ConsoleSession::turnPage()
{
    _screen.answerPager();
    expectAnswer();
    _exchange.hasLineEnd = true;
    send(QByteArray(1, kPageKey));
}

void ConsoleSession::atLoginPrompt()
{
    _restartedAt.reset();
    if (containsOne(facts().newPasswordTexts, _screen.line().toLower()))
        warn(QStringLiteral("交换机要求设置新密码，请先用终端程序设置，再重新连接"));
    if (_state == State::Answering) {
        closeSegment();
        if (_isLoggedIn)
            loseLogin();
        finish();
        _isCredentialDue = true;
        return;
    }
    _isLoggedIn = false;
    const bool isEnter = !_block.items.empty() && _block.items.front().text.isEmpty();
    if (_block.isSingleLine && !_block.items.empty() && (_isCredentialDue || isEnter))
        return nextItem(false);
    // What nobody has asked for are commands, which must not be taken for names and passwords.
    loseLogin();
    _block.reply = applyLoginRules(_description->replyRules, "\r\n" + _screen.line()).reply;
    finish();
    _isCredentialDue = true;
}

// What stands behind the failure is not looked at: with a new prompt in it, the same password would be sent again.
void ConsoleSession::atFailure()
{
    _block.reply += loginReply(_screen.segment().left(_exchange.failureEnd));
    finish();
    _isCredentialDue = true;
}

void ConsoleSession::loseLogin()
{
    const bool isSurprise = _isLoggedIn && !_exchange.isRestart;
    _isLoggedIn = false;
    const auto lines = std::count_if(_block.items.begin(), _block.items.end(), [](const BlockItem &item) {
        return item.kind == BlockItem::Kind::Line && !item.isAnswer();
    });
    _block.items.clear();
    if (lines > 0)
        warn(QStringLiteral("交换机已退出登录，有 %1 条命令没有执行"), {QString::number(lines)});
    else if (isSurprise)
        warn(QStringLiteral("交换机已退出登录"));
}

// --- typing

void ConsoleSession::nextItem(bool isAtPrompt)
{
    while (!_block.items.empty()) {
        const BlockItem item = _block.items.front();
        _block.items.pop_front();
        if (!isUseless(item, isAtPrompt))
            return type(item);
    }
    // What needs the user view would be refused from now on: a second try, which is no part of the reply.
    if (std::exchange(_block.isStuck, false))
        return typeOwn("return", "\r\n");
    finish();
}

bool ConsoleSession::isUseless(const BlockItem &item, bool isAtPrompt)
{
    if (item.kind == BlockItem::Kind::PageKey)
        return true;
    if (isAtPrompt && item.isYesOrNo()) {
        debug(QStringLiteral("no question for the answer ") + QString::fromUtf8(item.text));
        return true;
    }
    if (_block.isRefused && isRestart(facts(), item.text)) {
        warn(QStringLiteral("前面的命令被拒绝，没有执行 %1"), {QString::fromUtf8(item.text)});
        return true;
    }
    return false;
}

void ConsoleSession::type(const BlockItem &item)
{
    // Before the first prompt too: what should answer a password prompt may meet another one.
    const LineEnding standing = endingOf(facts(), _screen.line(), _name);
    const bool isSecret = !_isLoggedIn || standing.kind == LineEnding::Kind::Password;
    _screen.answerPager();
    beginExchange(item.text);
    _exchange.isSecret = isSecret;
    _exchange.isConfiguring = standing.kind == LineEnding::Kind::Prompt && !standing.isUserView;
    _exchange.isPaging = item.kind == BlockItem::Kind::Paging;
    _state = State::Answering;
    debug(QStringLiteral("typed: ") + shownLine());
    send(item.text + "\r\n");
}

void ConsoleSession::typeOwn(const QByteArray &line, const QByteArray &end)
{
    beginExchange(line);
    _exchange.isOwn = true;
    send(line + end);
}

void ConsoleSession::beginExchange(const QByteArray &line)
{
    _screen.beginSegment();
    _reopened = 0;
    _exchange = {};
    _exchange.maySeeStray = std::exchange(_isEnterOpen, false);
    _exchange.line = line;
    _exchange.echo = EchoWatch(line);
    _exchange.isLogin = !_isLoggedIn;
    _exchange.isRestart = _isLoggedIn && isRestart(facts(), line);
    _exchange.asks =
        std::any_of(facts().questions.begin(), facts().questions.end(), [&line](const KnownQuestion &known) {
            return !known.command.isEmpty() && isCommand(line, known.command);
        });
    _exchange.silenceLimit = silenceLimit(facts(), line);
    _notice = Notice::None;
    _ending = {};
    _isJudged = true;
    expectAnswer();
}

void ConsoleSession::expectAnswer()
{
    _lastActivity = _lastNews = _now;
}

void ConsoleSession::send(const QByteArray &bytes)
{
    SessionAction action;
    action.kind = SessionAction::Kind::Send;
    action.bytes = bytes;
    _actions.push_back(std::move(action));
}

} // namespace bll
} // namespace ovra
