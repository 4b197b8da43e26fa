#include "replyrules.h"

#include <QtCore/QByteArrayMatcher>

namespace ovra {
namespace bll {

namespace {

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

int skipBlanks(const QByteArray &bytes, int from)
{
    while (from < bytes.size() && bytes.at(from) == ' ')
        ++from;
    return from;
}

// Whether the bytes from `at` on begin with the pattern. A digit run is taken whole: nothing is tried twice.
bool beginsWith(const QByteArray &bytes, int at, const QByteArray &pattern)
{
    for (const char expected : pattern) {
        if (at >= bytes.size())
            return false;
        if (expected != '#') {
            if (bytes.at(at++) != expected)
                return false;
            continue;
        }
        if (!isDigit(bytes.at(at)))
            return false;
        while (at < bytes.size() && isDigit(bytes.at(at)))
            ++at;
    }
    return true;
}

// Hands over each line with its end, and whether it has one.
template<typename Visit>
void forEachLine(const QByteArray &reply, Visit visit)
{
    int begin = 0;
    while (begin < reply.size()) {
        const int newline = reply.indexOf('\n', begin);
        const int end = newline < 0 ? reply.size() : newline + 1;
        visit(begin, end, newline >= 0);
        begin = end;
    }
}

QByteArray emptyWithRoomFor(const QByteArray &reply)
{
    QByteArray result;
    result.reserve(reply.size());
    return result;
}

// Not QByteArray::replace(): it moves the rest of the reply for every few thousand occurrences.
QByteArray replacedAnywhere(const ReplyRule &rule, const QByteArray &reply)
{
    const QByteArrayMatcher matcher(rule.text);
    QByteArray result = emptyWithRoomFor(reply);
    int from = 0;
    for (int at = matcher.indexIn(reply); at >= 0; at = matcher.indexIn(reply, from)) {
        result.append(reply.constData() + from, at - from).append(rule.with);
        from = at + rule.text.size();
    }
    return result.append(reply.constData() + from, reply.size() - from);
}

QByteArray replacedAtLineStart(const ReplyRule &rule, const QByteArray &reply)
{
    QByteArray result = emptyWithRoomFor(reply);
    forEachLine(reply, [&](int begin, int end, bool) {
        int rest = begin;
        const int first = skipBlanks(reply, begin);
        if (reply.mid(first, rule.text.size()) == rule.text) {
            result.append(reply.constData() + begin, first - begin).append(rule.with);
            rest = first + rule.text.size();
        }
        result.append(reply.constData() + rest, end - rest);
    });
    return result;
}

// Lines that match go to `taken`, the others stay. The prompt stays, and is kept apart.
QByteArray withoutLines(const ReplyRule &rule, const QByteArray &reply, QByteArray *taken, QByteArray *prompt)
{
    QByteArray kept = emptyWithRoomFor(reply);
    forEachLine(reply, [&](int begin, int end, bool isTerminated) {
        QByteArray *target = &kept;
        if (!isTerminated)
            target = prompt;
        else if (beginsWith(reply, skipBlanks(reply, begin), rule.text))
            target = taken;
        target->append(reply.constData() + begin, end - begin);
    });
    return kept;
}

QByteArray dropped(const ReplyRule &rule, const QByteArray &reply)
{
    QByteArray taken;
    QByteArray prompt;
    return withoutLines(rule, reply, &taken, &prompt) + prompt;
}

QByteArray moved(const ReplyRule &rule, const QByteArray &reply)
{
    QByteArray taken;
    QByteArray prompt;
    return withoutLines(rule, reply, &taken, &prompt) + taken + prompt;
}

QByteArray ended(const ReplyRule &rule, const QByteArray &reply)
{
    const int at = reply.indexOf(rule.text);
    const int newline = at < 0 ? -1 : reply.indexOf('\n', at);
    return newline < 0 ? reply : reply.left(newline + 1);
}

QByteArray applied(const ReplyRule &rule, const QByteArray &reply)
{
    switch (rule.kind) {
    case ReplyRule::Kind::Replace:
        return rule.atLineStart ? replacedAtLineStart(rule, reply) : replacedAnywhere(rule, reply);
    case ReplyRule::Kind::Drop:
        return dropped(rule, reply);
    case ReplyRule::Kind::Move:
        return moved(rule, reply);
    case ReplyRule::Kind::End:
        return ended(rule, reply);
    }
    return reply;
}

QString sentenceOf(const ReplyRule &rule)
{
    const QString text = QString::fromUtf8(rule.text).simplified();
    switch (rule.kind) {
    case ReplyRule::Kind::Replace:
        return QStringLiteral("\"%1\" replaced by \"%2\"").arg(text, QString::fromUtf8(rule.with).simplified());
    case ReplyRule::Kind::Drop:
        return QStringLiteral("lines beginning with \"%1\" dropped").arg(text);
    case ReplyRule::Kind::Move:
        return QStringLiteral("lines beginning with \"%1\" moved to the end").arg(text);
    case ReplyRule::Kind::End:
        return QStringLiteral("reply ended behind \"%1\"").arg(text);
    }
    return {};
}

template<typename Applies>
RuledReply applyRules(const std::vector<ReplyRule> &rules, const QByteArray &reply, Applies applies)
{
    RuledReply result{reply, {}};
    for (const ReplyRule &rule : rules) {
        if (!applies(rule))
            continue;
        const QByteArray changed = applied(rule, result.reply);
        if (changed == result.reply)
            continue;
        result.reply = changed;
        result.fired << sentenceOf(rule);
    }
    return result;
}

} // namespace

bool isCommand(const QByteArray &line, const QByteArray &command)
{
    const QByteArray typed = line.simplified();
    return typed.startsWith(command) && (typed.size() == command.size() || typed.at(command.size()) == ' ');
}

RuledReply applyReplyRules(const std::vector<ReplyRule> &rules, const QByteArray &line, const QByteArray &reply)
{
    return applyRules(rules, reply, [&line](const ReplyRule &rule) {
        return !rule.command.isEmpty() && isCommand(line, rule.command);
    });
}

RuledReply applyLoginRules(const std::vector<ReplyRule> &rules, const QByteArray &reply)
{
    return applyRules(rules, reply, [](const ReplyRule &rule) { return rule.command.isEmpty(); });
}

} // namespace bll
} // namespace ovra
