#include "consolesession.h"

#include <utility>

namespace ovra {
namespace bll {

void ConsoleSession::closeSegment()
{
    if (_exchange.isLogin)
        _block.reply += loginReply(_screen.segment());
    else if (!_exchange.isOwn)
        _block.reply += commandReply(_screen.segment());
    _screen.beginSegment();
}

// What the switch writes after a pause, it writes while it boots.
void ConsoleSession::closeRestart()
{
    const QByteArray text = _screen.segment();
    _block.reply += commandReply(text.left(_exchange.bootBegin.value_or(text.size())));
    _screen.beginSegment();
}

QByteArray ConsoleSession::commandReply(const QByteArray &text)
{
    const QByteArray answer = text.mid(_exchange.echoEnd);
    const bool isCommandLine = !_exchange.line.trimmed().isEmpty();
    if (const auto refusal =
            isCommandLine ? refusalIn(facts(), _exchange.line, answer, _exchange.isConfiguring) : std::nullopt)
    {
        _block.isRefused = true;
        _block.isStuck = _block.isStuck || _exchange.line.trimmed() == "return";
        warn(QStringLiteral("交换机拒绝了命令 %1：%2"), {shownLine(), QString::fromUtf8(*refusal)});
    }
    const RuledReply ruled = applyReplyRules(_description->replyRules, _exchange.line, answer);
    for (const QString &rule : ruled.fired)
        debug(rule);
    return text.left(_exchange.echoEnd) + ruled.reply;
}

// Log lines are dropped: a bracket in one of them would pass for a login.
QByteArray ConsoleSession::loginReply(const QByteArray &text)
{
    QByteArray answer = withoutLogLines(text.mid(_exchange.echoEnd), facts().failureTexts);
    // Enter was refused as the password of an earlier user, who has left the line there. What matters is what is asked
    // for now.
    if (_exchange.line.isEmpty() && containsOne(facts().failureTexts, answer))
        answer = "\r\n" + _screen.line();
    const RuledReply ruled = applyLoginRules(_description->replyRules, answer);
    for (const QString &rule : ruled.fired)
        debug(rule);
    return _exchange.isOwn ? ruled.reply
                           : withoutLogLines(text.left(_exchange.echoEnd), facts().failureTexts) + ruled.reply;
}

void ConsoleSession::closeAndFinish()
{
    closeSegment();
    finish();
}

// A block that needed no typing is answered with an empty line, which nobody takes for anything.
void ConsoleSession::finish()
{
    deliver(_block.reply.isEmpty() ? QByteArrayLiteral("\r\n") : _block.reply.left(kLargestReply));
    _wasEmpty = false;
}

void ConsoleSession::finishRestart()
{
    closeRestart();
    loseLogin();
    _restartedAt = _now;
    finish();
}

// The switch or the port has fallen silent in the middle.
void ConsoleSession::finishBroken()
{
    if (_state == State::Answering && !_exchange.isLogin)
        closeSegment();
    if (_block.reply.isEmpty())
        return finishUnanswered();
    warn(QStringLiteral("命令 %1 的应答不完整"), {shownLine()});
    finish();
}

void ConsoleSession::finishFlooded()
{
    _isFlooded = true;
    if (_state == State::Answering && !_exchange.isLogin)
        closeSegment();
    if (_block.reply.isEmpty())
        return finishUnanswered();
    warn(QStringLiteral("命令 %1 的应答超过 16 MiB，其余部分被丢弃"), {shownLine()});
    finish();
}

void ConsoleSession::finishUnanswered()
{
    const bool isEmptyAllowed = !_wasEmpty && (_isOpen || !_isToldClosed);
    _isToldClosed = _isToldClosed || !_isOpen;
    if (isEmptyAllowed) {
        deliver({});
        _wasEmpty = true;
        return;
    }
    warn(QStringLiteral("交换机没有应答，请检查连接线和波特率"));
    deliver("\r\n");
    _wasEmpty = false;
}

void ConsoleSession::deliver(const QByteArray &reply)
{
    debug(QStringLiteral("reply of %1 bytes").arg(reply.size()));
    SessionAction action;
    action.kind = SessionAction::Kind::Deliver;
    action.bytes = reply;
    _actions.push_back(std::move(action));
    _isCredentialDue = false;
    _state = State::Idle;
    _block = {};
    _exchange = {};
    _notice = Notice::None;
    _screen.beginSegment();
}

QString ConsoleSession::shownLine() const
{
    return _exchange.isSecret ? QStringLiteral("****") : QString::fromUtf8(_exchange.line);
}

void ConsoleSession::debug(const QString &text)
{
    SessionAction action;
    action.kind = SessionAction::Kind::Debug;
    action.text = text;
    _actions.push_back(std::move(action));
}

void ConsoleSession::warn(const QString &text, const QStringList &values)
{
    SessionAction action;
    action.kind = SessionAction::Kind::Warning;
    action.text = text;
    action.values = values;
    _actions.push_back(std::move(action));
}

} // namespace bll
} // namespace ovra
