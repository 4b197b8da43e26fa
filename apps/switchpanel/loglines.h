// Lines of the view model's log.
#pragma once

#include <QtCore/QString>

//! A line that came through Qt's message logger stands there as "[2026-11-20 10:11:12.000] [Info] text".
struct LogLine
{
    QString level; //!< "Info", "Warning", "Critical", "Fatal"; empty: the line is nothing but its text
    QString text;
};

LogLine splitLogLine(const QString &line);
