#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>

namespace ovra {
namespace bll {

/// Whether a log line begins at this place.
bool beginsLogLine(const QByteArray &line, int at);

/// Tells log lines from other lines, one after the other: a switch breaks long ones at the screen's edge, so that a
/// line may be the rest of the one before.
class LogLineFinder
{
public:
    /// `line` with or without its end. One that holds one of `others`, or begins with the prompt of the user view, goes
    /// no log line on. The first `standing` bytes are a login prompt that stood there when the line was written.
    bool isLogLine(const QByteArray &line, const QByteArrayList &others = {}, int standing = 0);

private:
    bool _goesOn = false; // the line before was a log line exactly as wide as the screen
};

/// The text without the log lines in it. The last line, which has no end, always stays.
QByteArray withoutLogLines(const QByteArray &text, const QByteArrayList &others = {});

} // namespace bll
} // namespace ovra
