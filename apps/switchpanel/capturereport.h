// The outcome of one analysis as a value, and as a report that a person reads.
#pragma once

#include "exitstatus.h"
#include "language.h"
#include "texttable.h"

#include <QtCore/QVariant>

#include <vector>

//! What the view model says of one capture; texts are the analysis's own.
struct CaptureReport
{
    QString filePath;
    QStringList errors;         //!< not empty: the capture could not be analysed
    bool isInterrupted = false; //!< Ctrl-C came: the rest covers what was read until then

    QString verdict;
    QString announceStatus;
    QString syncStatus;
    QString followUpStatus;
    QString slaveStatus;
    QString matchingStatus;

    QString masterClock;
    QString captureTime;
    int packetsRead = 0;
    int recordsKept = 0;
    int expectedSlaves = 0;
    double slaveInterval = 0; //!< seconds
    QVariantMap messageTypes; //!< messages per type, all that were read
    QVariantMap domains;      //!< likewise per domain number
    QVariantMap sources;      //!< likewise per source address
    int clockPorts = 0;
    QVariantList syncSessions;
    QVariantList findings;
};

ExitStatus exitStatusOf(const CaptureReport &report);

//! Messages in all.
qint64 messageCountOf(const CaptureReport &report);

//! The report's lines.
QStringList reportLines(const CaptureReport &report, Language language, const Painter &painter);

//! "path: verdict".
QString verdictLine(const CaptureReport &report, Language language, const Painter &painter);

//! One line per capture, under a heading.
QStringList summaryLines(const std::vector<CaptureReport> &reports, Language language, const Painter &painter);
