#include "loglines.h"

#include <QtCore/QRegularExpression>

LogLine splitLogLine(const QString &line)
{
    static const QRegularExpression kStamped(QStringLiteral(
        "^\\[\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3}\\] \\[(Info|Warning|Critical|Fatal)\\] "));
    const QRegularExpressionMatch match = kStamped.match(line);
    if (!match.hasMatch())
        return {{}, line};
    return {match.captured(1), line.mid(match.capturedEnd())};
}
