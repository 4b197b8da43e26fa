// The health checks of a PTP network, on plain values: no text is parsed here, and texts are made for findings only.
#pragma once

#include "wallclock.h"

#include <QtCore/QString>
#include <QtCore/QVariant>

#include <vector>

namespace analysis {

//! More findings than this tell nobody anything and would fill the memory: the analysis ends with an error instead.
constexpr qint64 kMaxFindings = 300'000;

/*!
    One message as the checks see it. Source and sequence are small numbers that stand for texts: equal texts have equal
    numbers, and MessageTexts gives the text back.
*/
struct CheckMessage
{
    qint64 msecs = 0;    // of the time text, read back
    qint32 source = 0;   // 0 … sourceCount()-1
    qint32 sequence = 0; // 0 … sequenceCount()-1
    qint32 record = 0;   // what timestamp() needs where the text was given; unused otherwise
    bool hasTime = false;
};
using CheckMessages = std::vector<CheckMessage>;

//! The texts behind the numbers of CheckMessage.
class MessageTexts
{
public:
    MessageTexts() = default;
    MessageTexts(const MessageTexts &) = delete;
    MessageTexts &operator=(const MessageTexts &) = delete;
    virtual ~MessageTexts() = default;

    virtual QString timestamp(const CheckMessage &message) = 0;
    virtual QString source(qint32 source) = 0;
    virtual QString sequence(qint32 sequence) = 0;
    virtual qint32 sourceCount() const = 0;
    virtual qint32 sequenceCount() const = 0;
};

//! The messages of one capture by type, in capture order.
struct CheckLists
{
    CheckMessages announce;
    CheckMessages sync;
    CheckMessages followUp;
    CheckMessages delayReq;
    CheckMessages delayResp;
};

//! One abnormal packet, and where it sorts.
struct Finding
{
    qint64 msecs = 0; // what the timestamp text was made of, where it is a time
    bool hasTime = false;
    qint64 sortMsecs = 0; // of the timestamp text, read back
    QString timestamp;
    QString messageType;
    QString sourceIp;
    QString sequenceId;
    QString abnormalType;

    QVariantMap toMap() const;
};
using Findings = std::vector<Finding>;

struct CheckResult
{
    QString status;
    Findings findings;
};

struct HealthReport
{
    QString announceIntervalStatus;
    QString syncIntervalStatus;
    QString followUpIntervalStatus;
    QString slaveResponseStatus;
    QString delayReqRespMatchingStatus;
    Findings findings; // by time
    QString overallHealthStatus;

    QVariantMap toMap() const;
};

//! How the slaves of a site are expected to answer.
struct SlaveExpectation
{
    int slaveCount = 9;
    double intervalSeconds = 1.0; // rounded to whole seconds, halves away from zero; never below one second
};

//! \c findings as the list of maps that leaves the worker.
QVariantList toVariantList(const Findings &findings);

//! The largest time of \a sync; INT64_MIN when none has one.
qint64 lastSyncMsecs(const CheckMessages &sync);

//! Messages with a time before \a cutoff, in order.
CheckMessages before(const CheckMessages &messages, qint64 cutoff);

//! Whether messages follow each other at \a expectedMsecs ± 100 ms (IEEE 1588-2008 7.7.2: the mean interval).
CheckResult checkInterval(const CheckMessages &messages, int expectedMsecs, const QString &typeName,
                          MessageTexts &texts);

/*!
    Whether every slave sent a Delay_Req in every window between the first and the last Sync. Throws std::runtime_error,
    before any window is walked, when the findings would be more than kMaxFindings.
*/
CheckResult checkSlaves(const CheckMessages &sync, const CheckMessages &delayReq, const SlaveExpectation &expectation,
                        MessageTexts &texts, WallClock &clock);

//! Whether every Delay_Req got a Delay_Resp with its sequence id in time. Any number of equal ids costs O(n log n).
CheckResult checkDelayMatching(const CheckMessages &delayReq, const CheckMessages &delayResp, MessageTexts &texts);

//! All checks on the lists cut at the last Sync. Throws std::runtime_error over kMaxFindings findings.
HealthReport checkHealth(const CheckLists &lists, const SlaveExpectation &expectation, MessageTexts &texts,
                         WallClock &clock);

} // namespace analysis
