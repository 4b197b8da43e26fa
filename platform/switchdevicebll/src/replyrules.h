#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

#include <vector>

namespace ovra {
namespace bll {

/// One correction of what switches write differently from the wording that the reply parsers know.
struct ReplyRule
{
    enum class Kind {
        Replace, // every occurrence of `text`, or where `atLineStart` is set, `text` at the start of a line
        Drop,    // lines that begin with the pattern `text`
        Move,    // lines that begin with the pattern `text` go behind all others, in their order
        End      // the reply ends behind the first line that contains `text`
    };

    Kind kind = Kind::Replace;
    QByteArray command; // the rule sees replies of this command; empty: the login dialogue
    QByteArray text;    // a line end in it is the switch's CR LF
    QByteArray with;    // Replace
    bool atLineStart = false;
};

/// A reply behind its rules, with one sentence for each rule that changed something.
struct RuledReply
{
    QByteArray reply;
    QStringList fired;
};

/// Whether a line that was typed is the command `command`, with or without words behind it.
bool isCommand(const QByteArray &line, const QByteArray &command);

/// Applies the rules for `line`, the line that was typed without its end, in their order. `reply` is what the switch
/// wrote behind the echo of that line. Its last line, the prompt, has no line end: it is never dropped or moved.
///
/// In the patterns of Drop and Move "#" stands for one or more digits and everything else for itself; blanks before the
/// first character of a line do not count. The time is linear in the length of the reply.
RuledReply applyReplyRules(const std::vector<ReplyRule> &rules, const QByteArray &line, const QByteArray &reply);

/// The same for what the switch writes before the first prompt of a connection: the rules without a command.
RuledReply applyLoginRules(const std::vector<ReplyRule> &rules, const QByteArray &reply);

} // namespace bll
} // namespace ovra
