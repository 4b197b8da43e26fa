#pragma once

#include "devicedescription.h"

#include <QtCore/QByteArray>

namespace ovra {
namespace bll {

/// What the last, unterminated line of the console is waiting for.
struct LineEnding
{
    enum class Kind { None, Prompt, Question, Pager, UserName, Password };

    Kind kind = Kind::None;
    // Of a prompt
    bool isUserView = false;
    bool isNamed = false; // bears the name that was asked about
    QByteArray name;      // between the brackets, without the marks
    // Of a login prompt: nothing else stands on the line.
    bool isWholeLine = false;
};

/// Judges a line by its text alone. `name` is the switch's, empty while it is not known. Only the end of a long line is
/// looked at.
LineEnding endingOf(const SessionFacts &facts, const QByteArray &line, const QByteArray &name);

/// Where the pager's text begins, with the blanks before it, at the end of these bytes (blanks behind it do not count).
/// -1 when there is none.
int pagerAtEnd(const SessionFacts &facts, const QByteArray &bytes, int from);

/// Whether this byte, and whether anything in the line, leaves something to see.
bool isInk(char byte);
bool hasText(const QByteArray &line);

/// Whether one of the texts stands in the line.
bool containsOne(const QByteArrayList &texts, const QByteArray &line);

} // namespace bll
} // namespace ovra
