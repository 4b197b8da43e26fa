#pragma once

#include <QtCore/QByteArray>

namespace ovra {
namespace bll {

/// Tells log lines from other lines, one after the other: a switch breaks long ones at the screen's edge, so that a
/// line may be the rest of the one before.
class LogLineFinder
{
public:
    /// `line` with or without its end.
    bool isLogLine(const QByteArray &line);

private:
    bool _goesOn = false; // the line before was a log line as wide as the screen
};

/// The text without the log lines in it. The last line, which has no end, always stays.
QByteArray withoutLogLines(const QByteArray &text);

} // namespace bll
} // namespace ovra
