#include "textanalysis.h"

#include <QDateTime>
#include <QSet>

#include <algorithm>
#include <cmath>
#include <limits>

using capturebuilder::CapturedPacket;
using capturebuilder::PtpMessage;
using capturebuilder::PtpType;

namespace textanalysis {

namespace {

const QString kTimeFormat = QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz");
const QString kNormal = QStringLiteral("正常");

constexpr qint64 kNoTime = std::numeric_limits<qint64>::min();

QString text(const QVariantMap &record, const char *key)
{
    return record.value(QLatin1String(key)).toString();
}

QDateTime timeOf(const QString &timestamp)
{
    return QDateTime::fromString(timestamp, kTimeFormat);
}

QDateTime timeOf(const QVariantMap &record)
{
    return timeOf(text(record, "timestamp"));
}

QVariantMap finding(const QString &timestamp, const QString &messageType, const QString &sourceIp,
                    const QString &sequenceId, const QString &abnormalType)
{
    return {{QStringLiteral("timestamp"), timestamp},
            {QStringLiteral("messageType"), messageType},
            {QStringLiteral("sourceIp"), sourceIp},
            {QStringLiteral("sequenceId"), sequenceId},
            {QStringLiteral("abnormalType"), abnormalType}};
}

void refuseWhenTooMany(double count)
{
    if (count > kMaximumFindings)
        throw TooManyFindings("too many findings");
}

QString typeText(PtpType type)
{
    switch (type) {
    case PtpType::Sync:
        return QStringLiteral("SYNC");
    case PtpType::DelayReq:
        return QStringLiteral("DELAY_REQ");
    case PtpType::PdelayReq:
        return QStringLiteral("PDELAY_REQ");
    case PtpType::PdelayResp:
        return QStringLiteral("PDELAY_RESP");
    case PtpType::FollowUp:
        return QStringLiteral("FOLLOW_UP");
    case PtpType::DelayResp:
        return QStringLiteral("DELAY_RESP");
    case PtpType::PdelayRespFollowUp:
        return QStringLiteral("PDELAY_RESP_FOLLOW_UP");
    case PtpType::Announce:
        return QStringLiteral("ANNOUNCE");
    case PtpType::Signaling:
        return QStringLiteral("SIGNALING");
    case PtpType::Management:
        return QStringLiteral("MANAGEMENT");
    }
    return QStringLiteral("UNKNOWN"); // a reserved type
}

void fillAnnounce(QVariantMap &record, const capturebuilder::AnnounceFields &announce)
{
    const quint32 quality = (static_cast<quint32>(announce.clockClass) << 24U)
                            | (static_cast<quint32>(announce.clockAccuracy) << 16U) | announce.offsetScaledLogVariance;
    record[QStringLiteral("currentUtcOffset")] = QString::number(announce.currentUtcOffset);
    record[QStringLiteral("grandmasterPriority1")] = QString::number(announce.grandmasterPriority1);
    record[QStringLiteral("grandmasterClockQuality")] = QString::number(quality);
    record[QStringLiteral("grandmasterPriority2")] = QString::number(announce.grandmasterPriority2);
    record[QStringLiteral("grandmasterIdentity")] = toText(announce.grandmasterIdentity);
    record[QStringLiteral("stepsRemoved")] = QString::number(announce.stepsRemoved);
    record[QStringLiteral("timeSource")] = QString::number(announce.timeSource);
}

void fillBody(QVariantMap &record, const PtpMessage &message)
{
    const QString time = toText(message.timestamp);
    if (message.type == PtpType::Sync || message.type == PtpType::DelayReq || message.type == PtpType::Announce)
        record[QStringLiteral("originTimestamp")] = time;
    if (message.type == PtpType::FollowUp)
        record[QStringLiteral("preciseOriginTimestamp")] = time;
    if (message.type == PtpType::DelayResp) {
        record[QStringLiteral("receiveTimestamp")] = time;
        record[QStringLiteral("requestingPortIdentity")] = toText(message.requestingPortIdentity);
    }
    if (message.type == PtpType::Announce)
        fillAnnounce(record, message.announce);
}

/// The record stores and counters that one reading of a capture fills.
struct Stores
{
    int maximumRecords = 0;
    Records results;
    QMap<QString, Records> byType = {{QStringLiteral("ANNOUNCE"), {}},
                                     {QStringLiteral("SYNC"), {}},
                                     {QStringLiteral("FOLLOW_UP"), {}},
                                     {QStringLiteral("DELAY_REQ"), {}},
                                     {QStringLiteral("DELAY_RESP"), {}}};
    QVariantMap messageTypes;
    QVariantMap domains;
    QVariantMap sourcePorts;
    QVariantMap sourceIps;
    QString masterClockIp;
    qint64 earliest = std::numeric_limits<qint64>::max();
    qint64 latest = std::numeric_limits<qint64>::min();

    void add(const QVariantMap &record)
    {
        if (results.size() >= maximumRecords)
            dropOldest(maximumRecords / 5);
        results.append(record);
        count(record);
        const QString type = text(record, "messageType");
        if (byType.contains(type))
            byType[type].append(record);
    }

    void trimToMaximum()
    {
        if (results.size() > maximumRecords * 1.2)
            dropOldest(results.size() - maximumRecords);
    }

private:
    void dropOldest(int number)
    {
        results = results.mid(number);
        for (Records &list : byType) {
            if (list.size() > number)
                list = list.mid(number);
        }
    }

    void count(const QVariantMap &record)
    {
        const auto addOne = [&record](QVariantMap &counter, const char *key) {
            counter[text(record, key)] = counter.value(text(record, key)).toInt() + 1;
        };
        addOne(messageTypes, "messageType");
        addOne(domains, "domainNumber");
        addOne(sourcePorts, "sourcePortId");
        addOne(sourceIps, "sourceIp");
        if (text(record, "messageType") == QLatin1String("SYNC") && masterClockIp.isEmpty())
            masterClockIp = text(record, "sourceIp");
        const QDateTime time = timeOf(record);
        if (time.isValid() && time.toMSecsSinceEpoch() > 0) {
            earliest = qMin(earliest, time.toMSecsSinceEpoch());
            latest = qMax(latest, time.toMSecsSinceEpoch());
        }
    }
};

QVariantMap timeRange(const Stores &stores)
{
    QList<qint64> syncTimes;
    for (const QVariantMap &record : stores.results) {
        const QDateTime time = timeOf(record);
        if (text(record, "messageType") == QLatin1String("SYNC") && time.isValid() && time.toMSecsSinceEpoch() > 0)
            syncTimes.append(time.toMSecsSinceEpoch());
    }
    std::sort(syncTimes.begin(), syncTimes.end());
    qint64 first = stores.earliest;
    qint64 secondLast = stores.latest;
    if (!syncTimes.isEmpty()) {
        first = syncTimes.first();
        secondLast = syncTimes.at(qMax(0, syncTimes.size() - 2));
    }
    // Wraps when there was no time at all.
    const quint64 duration = static_cast<quint64>(stores.latest) - static_cast<quint64>(stores.earliest);
    return {{QStringLiteral("start"), QVariant(stores.earliest)},
            {QStringLiteral("end"), QVariant(stores.latest)},
            {QStringLiteral("duration"), QVariant(static_cast<qint64>(duration))},
            {QStringLiteral("firstSyncTime"), QVariant(first)},
            {QStringLiteral("secondLastSyncTime"), QVariant(secondLast)}};
}

QVariantMap statistics(const Stores &stores)
{
    return {{QStringLiteral("totalPackets"), stores.results.size()},
            {QStringLiteral("ptpv2Packets"), stores.results.size()},
            {QStringLiteral("timeRange"), timeRange(stores)},
            {QStringLiteral("masterClockIp"), stores.masterClockIp},
            {QStringLiteral("messageTypes"), stores.messageTypes},
            {QStringLiteral("domains"), stores.domains},
            {QStringLiteral("sourcePorts"), stores.sourcePorts},
            {QStringLiteral("sourceIps"), stores.sourceIps}};
}

template<typename Condition>
Records keep(const Records &records, Condition condition)
{
    Records kept;
    for (const QVariantMap &record : records) {
        const QDateTime time = timeOf(record);
        if (time.isValid() && condition(time.toMSecsSinceEpoch()))
            kept.append(record);
    }
    return kept;
}

/// Window length of the slave check in milliseconds. Longer than all of history is as good as any longer one.
qint64 windowLength(double interval)
{
    const double seconds = std::isfinite(interval) ? std::round(interval) : 1.0;
    return static_cast<qint64>(qBound(1.0, seconds, 1e12)) * 1000;
}

/// Distinct source addresses in order of first appearance.
QStringList seenAddresses(const Records &delayReq)
{
    QStringList seen;
    for (const QVariantMap &record : delayReq) {
        if (!seen.contains(text(record, "sourceIp")))
            seen.append(text(record, "sourceIp"));
    }
    return seen;
}

QStringList expectedAddresses(const QStringList &seen, int expectedSlaveCount)
{
    if (seen.size() >= expectedSlaveCount)
        return seen;
    QString network = QStringLiteral("192.168.100.");
    if (!seen.isEmpty()) {
        const QStringList parts = seen.first().split(QLatin1Char('.'));
        if (parts.size() == 4)
            network = parts.at(0) + QLatin1Char('.') + parts.at(1) + QLatin1Char('.') + parts.at(2) + QLatin1Char('.');
    }
    QStringList expected;
    for (int i = 1; i <= expectedSlaveCount; ++i)
        expected.append(network + QString::number(i));
    return expected;
}

/// A request of the slave check: when and from whom.
struct Request
{
    qint64 time = 0;
    QString sourceIp;
};

QList<Request> requestsByTime(const Records &delayReq)
{
    QList<Request> requests;
    for (const QVariantMap &record : delayReq) {
        const QDateTime time = timeOf(record);
        if (time.isValid()) // a request without a time is in no window
            requests.append({time.toMSecsSinceEpoch(), text(record, "sourceIp")});
    }
    std::stable_sort(requests.begin(), requests.end(),
                     [](const Request &a, const Request &b) { return a.time < b.time; });
    return requests;
}

QStringList missingInWindow(const QStringList &expected, const QSet<QString> &responding)
{
    QStringList missing;
    for (const QString &address : expected) {
        if (!responding.contains(address))
            missing.append(address);
    }
    return missing;
}

/// The addresses that the window's findings name; none for a good window.
QStringList namesOfMissing(const QStringList &expected, const QSet<QString> &responding, int expectedSlaveCount)
{
    QStringList names = missingInWindow(expected, responding);
    if (names.isEmpty()) {
        for (qint64 k = 1; k <= qint64(expectedSlaveCount) - responding.size(); ++k)
            names.append(QStringLiteral("未知从节点%1").arg(k));
    }
    return names;
}

enum class Answer { Matched, Late, None };

Answer answerTo(qint64 requested, const Records &responses)
{
    for (const QVariantMap &response : responses) {
        const QDateTime time = timeOf(response);
        if (!time.isValid())
            continue;
        const qint64 delay = time.toMSecsSinceEpoch() - requested;
        if (delay >= 0 && delay <= 50)
            return Answer::Matched;
        if (delay > 50 && delay <= 100)
            return Answer::Late;
    }
    return Answer::None;
}

void sortByTime(QList<QVariant> &findings)
{
    QList<QPair<QDateTime, QVariant>> keyed;
    for (const QVariant &entry : findings)
        keyed.append({timeOf(entry.toMap()), entry});
    std::stable_sort(keyed.begin(), keyed.end(), [](const auto &a, const auto &b) { return a.first < b.first; });
    findings.clear();
    for (const auto &entry : keyed)
        findings.append(entry.second);
}

} // namespace

QString toText(const capturebuilder::ClockIdentity &identity)
{
    QStringList octets;
    for (const quint8 octet : identity)
        octets.append(QStringLiteral("%1").arg(octet, 2, 16, QLatin1Char('0')));
    return octets.join(QLatin1Char(':'));
}

QString toText(const capturebuilder::PortIdentity &port)
{
    return toText(port.clockIdentity) + QLatin1Char('-') + QString::number(port.portNumber);
}

QString toText(const capturebuilder::PtpTimestamp &timestamp)
{
    const quint64 seconds = timestamp.seconds & 0xffffffffffffULL;
    return QStringLiteral("%1.%2").arg(seconds).arg(timestamp.nanoseconds, 9, 10, QLatin1Char('0'));
}

qint64 milliseconds(const capturebuilder::RecordTime &time)
{
    return (time.seconds * 1000000000LL + time.nanoseconds) / 1000000;
}

QString timeText(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds).toString(kTimeFormat);
}

QVariantMap record(const CapturedPacket &packet)
{
    const PtpMessage &message = packet.message.value();
    QVariantMap record;
    record[QStringLiteral("timestamp")] = timeText(milliseconds(packet.time));
    if (packet.frame.ipv4Source)
        record[QStringLiteral("sourceIp")] = *packet.frame.ipv4Source;
    record[QStringLiteral("messageType")] = typeText(message.type);
    record[QStringLiteral("sequenceId")] = QString::number(message.sequenceId);
    record[QStringLiteral("domainNumber")] = QString::number(message.domainNumber);
    record[QStringLiteral("sourcePortId")] = toText(message.sourcePortIdentity);
    record[QStringLiteral("messageLength")] = QString::number(message.announcedLength());
    record[QStringLiteral("correctionField")] = QString::number(static_cast<quint64>(message.correctionField));
    fillBody(record, message);
    return record;
}

Records filterDataBeforeTimestamp(const Records &records, qint64 cutoff)
{
    return keep(records, [cutoff](qint64 time) { return time <= cutoff; });
}

Records filterDelayMessagesBeforeLastSync(const Records &records, qint64 cutoff)
{
    return keep(records, [cutoff](qint64 time) { return time < cutoff; });
}

Records filterSyncMessagesBeforeLastSync(const Records &records, qint64 cutoff)
{
    return keep(records, [cutoff](qint64 time) { return time < cutoff; });
}

qint64 lastSyncTime(const Records &sync)
{
    qint64 last = kNoTime;
    for (const QVariantMap &record : sync) {
        const QDateTime time = timeOf(record);
        if (time.isValid())
            last = qMax(last, time.toMSecsSinceEpoch());
    }
    return last;
}

CheckResult checkMessageInterval(const Records &messages, int expectedIntervalMs, const QString &messageTypeName)
{
    if (messages.isEmpty())
        return {QStringLiteral("无消息"), {}};
    QList<QVariant> findings;
    int checked = 0;
    for (int i = 1; i < messages.size(); ++i) {
        const QVariantMap &earlier = messages.at(i - 1);
        const QVariantMap &later = messages.at(i);
        const QDateTime from = timeOf(earlier);
        const QDateTime to = timeOf(later);
        if (!from.isValid() || !to.isValid())
            continue;
        ++checked;
        if (qAbs(from.msecsTo(to) - expectedIntervalMs) > 100) {
            const QString range = text(earlier, "timestamp") + QStringLiteral(" ~ ") + text(later, "timestamp");
            findings.append(finding(range, messageTypeName, text(later, "sourceIp"), text(later, "sequenceId"),
                                    QStringLiteral("时间间隔异常")));
        }
    }
    if (checked == 0)
        return {QStringLiteral("数据不足"), findings};
    if (static_cast<double>(findings.size()) / checked > 0.1)
        return {QStringLiteral("异常 (%1/%2)").arg(findings.size()).arg(checked), findings};
    return {kNormal, findings};
}

CheckResult checkSlaveResponseWithDetails(const Records &sync, const Records &delayReq, int expectedSlaveCount,
                                          double slaveAnalysisInterval)
{
    if (sync.isEmpty())
        return {QStringLiteral("无Sync消息"), {}};
    const QDateTime first = timeOf(sync.first());
    const QDateTime last = timeOf(sync.last());
    if (!first.isValid() || !last.isValid() || first.toMSecsSinceEpoch() >= last.toMSecsSinceEpoch())
        return {QStringLiteral("数据不足"), {}};

    const qint64 length = windowLength(slaveAnalysisInterval);
    const qint64 end = last.toMSecsSinceEpoch();
    const qint64 windows = (end - first.toMSecsSinceEpoch() + length - 1) / length;
    const QStringList seen = seenAddresses(delayReq);
    // Each request takes at most one address from one window's missing ones.
    const double expectedSize = qMax(seen.size(), expectedSlaveCount);
    refuseWhenTooMany(static_cast<double>(windows) * expectedSize - delayReq.size());
    const QStringList expected = expectedAddresses(seen, expectedSlaveCount);
    if (expected.isEmpty()) // nobody asks and nobody is expected to: every window is good, be there billions
        return {kNormal, {}};

    const QList<Request> requests = requestsByTime(delayReq);
    QList<QVariant> findings;
    int abnormal = 0;
    int number = 0;
    int next = 0;
    for (qint64 start = first.toMSecsSinceEpoch(); start < end; start += length) {
        ++number;
        QSet<QString> responding;
        while (next < requests.size() && requests.at(next).time < start)
            ++next;
        for (; next < requests.size() && requests.at(next).time < start + length; ++next)
            responding.insert(requests.at(next).sourceIp);
        const QStringList names = namesOfMissing(expected, responding, expectedSlaveCount);
        if (!names.isEmpty())
            ++abnormal;
        for (const QString &name : names)
            findings.append(finding(timeText(start), QStringLiteral("DELAY_REQ"), name, QString::number(number),
                                    QStringLiteral("从节点未回复")));
        refuseWhenTooMany(findings.size());
    }
    if (static_cast<double>(abnormal) / number > 0.1)
        return {QStringLiteral("异常 (%1/%2 Sync消息)").arg(abnormal).arg(number), findings};
    return {kNormal, findings};
}

CheckResult checkDelayReqRespMatching(const Records &delayReq, const Records &delayResp)
{
    if (delayReq.isEmpty())
        return {QStringLiteral("无Delay_Req消息"), {}};
    QMap<QString, Records> groups;
    for (const QVariantMap &response : delayResp)
        groups[text(response, "sequenceId")].append(response);

    QList<QVariant> findings;
    int total = 0;
    int matched = 0;
    int late = 0;
    int unanswered = 0;
    for (const QVariantMap &request : delayReq) {
        const QDateTime time = timeOf(request);
        if (!time.isValid())
            continue;
        ++total;
        const Answer answer = answerTo(time.toMSecsSinceEpoch(), groups.value(text(request, "sequenceId")));
        if (answer == Answer::Matched) {
            ++matched;
            continue;
        }
        ++(answer == Answer::Late ? late : unanswered);
        findings.append(
            finding(text(request, "timestamp"), QStringLiteral("DELAY_RESP"), text(request, "sourceIp"),
                    text(request, "sequenceId"),
                    answer == Answer::Late ? QStringLiteral("Delay_Resp超时") : QStringLiteral("主节点未回复")));
    }
    if (total == 0)
        return {QStringLiteral("数据不足"), findings};
    const double rate = static_cast<double>(matched) / total;
    const QString percentage = QString::number(rate * 100, 'f', 1);
    if (rate < 0.9) {
        return {QStringLiteral("异常 (匹配率: %1%, 匹配: %2/%3, 超时: %4, 无回复: %5)")
                    .arg(percentage)
                    .arg(matched)
                    .arg(total)
                    .arg(late)
                    .arg(unanswered),
                findings};
    }
    return {QStringLiteral("正常 (匹配率: %1%, 匹配: %2/%3)").arg(percentage).arg(matched).arg(total), findings};
}

QVariantMap performHealthCheckFromStream(const Records &announce, const Records &sync, const Records &followUp,
                                         const Records &delayReq, const Records &delayResp, int expectedSlaveCount,
                                         double slaveAnalysisInterval)
{
    const qint64 cutoff = lastSyncTime(sync);
    const bool filtered = cutoff != kNoTime;
    const Records keptSync = filtered ? filterSyncMessagesBeforeLastSync(sync, cutoff) : sync;
    const Records keptReq = filtered ? filterDelayMessagesBeforeLastSync(delayReq, cutoff) : delayReq;
    const Records keptResp = filtered ? filterDelayMessagesBeforeLastSync(delayResp, cutoff) : delayResp;

    CheckResult announceCheck{QStringLiteral("无Announce消息"), {}};
    if (!announce.isEmpty())
        announceCheck = checkMessageInterval(announce, 2000, QStringLiteral("Announce"));
    CheckResult syncCheck{QStringLiteral("无Sync消息"), {}};
    if (!keptSync.isEmpty())
        syncCheck = checkMessageInterval(keptSync, 1000, QStringLiteral("Sync"));
    CheckResult followUpCheck{QStringLiteral("无Follow_up消息"), {}};
    if (!followUp.isEmpty())
        followUpCheck = checkMessageInterval(followUp, 1000, QStringLiteral("Follow_Up"));
    const CheckResult slaveCheck =
        checkSlaveResponseWithDetails(keptSync, keptReq, expectedSlaveCount, slaveAnalysisInterval);
    const CheckResult delayCheck = checkDelayReqRespMatching(keptReq, keptResp);

    QList<QVariant> findings =
        announceCheck.second + syncCheck.second + followUpCheck.second + slaveCheck.second + delayCheck.second;
    refuseWhenTooMany(findings.size());
    sortByTime(findings);

    const bool allNormal =
        (announce.isEmpty() || announceCheck.first == kNormal) && (keptSync.isEmpty() || syncCheck.first == kNormal)
        && (followUp.isEmpty() || followUpCheck.first == kNormal) && (keptSync.isEmpty() || slaveCheck.first == kNormal)
        && (keptReq.isEmpty() || delayCheck.first == kNormal);
    return {
        {QStringLiteral("announceIntervalStatus"), announceCheck.first},
        {QStringLiteral("syncIntervalStatus"), syncCheck.first},
        {QStringLiteral("followUpIntervalStatus"), followUpCheck.first},
        {QStringLiteral("slaveResponseStatus"), slaveCheck.first},
        {QStringLiteral("delayReqRespMatchingStatus"), delayCheck.first},
        {QStringLiteral("abnormalPackets"), QVariant(findings)},
        {QStringLiteral("overallHealthStatus"), findings.isEmpty() || allNormal ? kNormal : QStringLiteral("异常")}};
}

Outcome analyse(const QVector<CapturedPacket> &packets, const Settings &settings)
{
    Outcome outcome;
    Stores stores;
    stores.maximumRecords = settings.maximumRecords;
    int count = 0;
    for (const CapturedPacket &packet : packets) {
        ++count;
        if (packet.message)
            stores.add(record(packet));
        if (count % 1000 == 0) {
            outcome.progress.append(count);
            if (count % 10000 == 0)
                stores.trimToMaximum();
        }
    }
    outcome.progress.append(count);

    try {
        const QVariantMap health = performHealthCheckFromStream(
            stores.byType.value(QStringLiteral("ANNOUNCE")), stores.byType.value(QStringLiteral("SYNC")),
            stores.byType.value(QStringLiteral("FOLLOW_UP")), stores.byType.value(QStringLiteral("DELAY_REQ")),
            stores.byType.value(QStringLiteral("DELAY_RESP")), settings.expectedSlaveCount,
            settings.slaveAnalysisInterval);
        outcome.statistics = statistics(stores);
        outcome.statistics[QStringLiteral("healthCheck")] = health;
    } catch (const TooManyFindings &) {
        outcome.tooManyFindings = true;
        return outcome;
    }
    for (const QVariantMap &record : stores.results)
        outcome.results.append(record);
    return outcome;
}

} // namespace textanalysis
