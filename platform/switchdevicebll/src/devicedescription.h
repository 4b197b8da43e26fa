#pragma once

#include "commandtemplate.h"
#include "interfacenames.h"
#include "replyrules.h"

#include <QtCore/QByteArrayList>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <chrono>
#include <map>
#include <optional>
#include <vector>

namespace ovra {
namespace bll {

/// `<NAME>` of the user view, or `[NAME]`, `[NAME-vlan20]`, `[~NAME]` of the views below.
struct PromptShape
{
    bool isUserView = false;
    QByteArray begin;
    QByteArray end;
    QByteArray marks; // characters that may stand between the beginning and the name, each at most once
};

/// How a switch takes its pager's text off the screen after a key, in the stream of bytes.
enum class PagerErasure {
    CursorLeft,     // ESC[nD, n blanks, ESC[nD
    CarriageReturn, // CR, blanks, CR
    Backspace       // BS, blanks, BS
};

/// An answer that is known beforehand.
struct KnownQuestion
{
    QByteArray command; // only while this command is being answered; empty: always, also before the first prompt
    QByteArray text;    // in the question; empty: every question of the command
    QByteArray answer;  // without a line end; may be empty
};

struct SlowCommand
{
    QByteArray command;
    std::chrono::seconds timeout{0};
};

/// What the console session has to know of a kind of switch. All texts are bytes as the switch writes them.
struct SessionFacts
{
    std::vector<PromptShape> prompts;
    QByteArray promptNameCharacters; // beside letters and digits
    QByteArrayList promptPrefixes;   // texts that may stand before a prompt on its line
    QByteArrayList userNamePrompts;  // ends of the last, unterminated line; any case
    QByteArrayList passwordPrompts;  // the same; longer ones first
    QByteArrayList newPasswordTexts; // in lower case, of a password prompt that asks for another one than that in force
    QByteArrayList failureTexts;     // of a login that was refused
    QByteArrayList pressEnterTexts;  // an idle console that wants Enter
    QByteArrayList interruptTexts;   // a notice that goes on until Ctrl+C, then Enter
    QByteArrayList pagerTexts;       // without the blanks before them
    std::vector<PagerErasure> pagerErasures;
    QByteArrayList expectedRefusals; // commands that clear what may not be there: their refusal means nothing
    QByteArrayList errorTexts;       // beginnings of a line by which the switch refuses a command
    // With any: in the views of the configuration each line with one blank and a letter in front is a refusal, but not
    // that of these commands.
    QByteArrayList freeTextExceptions;
    QByteArrayList noticeTexts;           // beginnings of such lines that are none
    QByteArrayList questionEndings;       // ends of the last, unterminated line
    std::vector<KnownQuestion> questions; // the first one that fits counts
    std::vector<SlowCommand> slowCommands;
    // A restart is not typed behind a line of its block that was refused: a reset that failed must not become a mere
    // restart.
    QByteArrayList restarts;
};

/// A description file, read and checked. Never changed after that: any thread may read it.
struct DeviceDescription
{
    QString name;
    QString path;
    std::optional<int> slot; // in place of the one that the panel sets
    QString snoopingJoiner;  // where the panel has set none
    InterfaceNames interfaces;
    std::map<QString, PortRange> limits;   // by value name, and "port"; only those that the file narrows
    std::map<QString, CommandList> blocks; // by getter, every one of getterNames()
    SessionFacts session;
    std::vector<ReplyRule> replyRules;

    PortRange limitOf(const QString &valueName) const;
};

/// The command lists that a description has to give, by the names of the functions that return them.
const QStringList &getterNames();

/// The answer that the description knows for a question. `line` is the line that is being answered, empty before the
/// first prompt; `asked` is what the switch has written since the last line or answer. Case and blanks, line ends
/// included, do not count: switches wrap and space these texts differently.
std::optional<QByteArray> answerTo(const SessionFacts &facts, const QByteArray &line, const QByteArray &asked);

/// How long the switch may be silent while it answers this line.
std::chrono::seconds silenceLimit(const SessionFacts &facts, const QByteArray &line);

/// The line of `reply` by which the switch has refused `line`, without blanks around it. Nothing when it has not, or
/// when the refusal of this command means nothing. `reply` is what follows the echo, `isConfiguring` whether the line
/// was typed in another view than the user view.
std::optional<QByteArray> refusalIn(const SessionFacts &facts, const QByteArray &line, const QByteArray &reply,
                                    bool isConfiguring);

/// Whether this line restarts the switch.
bool isRestart(const SessionFacts &facts, const QByteArray &line);

} // namespace bll
} // namespace ovra
