#pragma once

#include "capturebuilder.h"

#include <QList>
#include <QPair>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <stdexcept>

/// The capture analysis a second time, deliberately plain: every message is a map of texts, every time is formatted as
/// local time and parsed back wherever it is needed, every list is walked from its start. Slow, and independent of the
/// worker, so that the two can be compared over random captures. Qt Core only; uses the time zone of the process.
namespace textanalysis {

using Records = QList<QVariantMap>;
/// Status text and findings of one check.
using CheckResult = QPair<QString, QList<QVariant>>;

/// Thrown by the checks when more than `kMaximumFindings` findings would come together.
class TooManyFindings : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};
constexpr int kMaximumFindings = 300000;

struct Settings
{
    int expectedSlaveCount = 9;
    double slaveAnalysisInterval = 1.0; ///< seconds
    int maximumRecords = 50000;
};

/// What one analysis must give.
struct Outcome
{
    bool tooManyFindings = false; ///< the analysis ends with an error; results and statistics stay empty
    QVariantList results;
    QVariantMap statistics; ///< without "syncSessions", which is the decoding library's affair
    QVector<int> progress;  ///< packet counts that are reported, in order
};

/// The whole analysis of packets in file order.
Outcome analyse(const QVector<capturebuilder::CapturedPacket> &packets, const Settings &settings = {});

/// The record of a packet that carries a message.
QVariantMap record(const capturebuilder::CapturedPacket &packet);

/// Time of the packet in milliseconds since the Unix epoch, truncated towards zero.
qint64 milliseconds(const capturebuilder::RecordTime &time);
/// Local time as "yyyy-MM-dd hh:mm:ss.zzz".
QString timeText(qint64 milliseconds);

QString toText(const capturebuilder::ClockIdentity &identity);
QString toText(const capturebuilder::PortIdentity &port);
QString toText(const capturebuilder::PtpTimestamp &timestamp);

// The single steps, over records.
Records filterDataBeforeTimestamp(const Records &records, qint64 cutoff);
Records filterDelayMessagesBeforeLastSync(const Records &records, qint64 cutoff);
Records filterSyncMessagesBeforeLastSync(const Records &records, qint64 cutoff);
/// Smallest 64-bit number when there is no Sync with a valid time.
qint64 lastSyncTime(const Records &sync);
CheckResult checkMessageInterval(const Records &messages, int expectedIntervalMs, const QString &messageTypeName);
CheckResult checkSlaveResponseWithDetails(const Records &sync, const Records &delayReq, int expectedSlaveCount,
                                          double slaveAnalysisInterval = 1.0);
CheckResult checkDelayReqRespMatching(const Records &delayReq, const Records &delayResp);
QVariantMap performHealthCheckFromStream(const Records &announce, const Records &sync, const Records &followUp,
                                         const Records &delayReq, const Records &delayResp, int expectedSlaveCount,
                                         double slaveAnalysisInterval = 1.0);

/// Where two values differ, one line each, empty when they are equal. Types count (an int is not a qint64), except that
/// the addresses missing in one and the same window of the slave check may come in any order.
QStringList differences(const QVariant &expected, const QVariant &actual, const QString &path = QString());

} // namespace textanalysis
