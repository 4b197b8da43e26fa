#include "healthcheck.h"

#include "debuglog.h"
#include "slavewindows.h"

#include <QtCore/QDateTime>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <string>

namespace analysis {

namespace {

constexpr int kAnnounceIntervalMsecs = 2'000;
constexpr int kSyncIntervalMsecs = 1'000;
constexpr qint64 kIntervalToleranceMsecs = 100;
constexpr qint64 kMatchMsecs = 50;    // a response up to here is in time
constexpr qint64 kTimeoutMsecs = 100; // a response up to here is late, one behind it is none
constexpr double kAbnormalShare = 0.1;
constexpr double kMatchRate = 0.9;
constexpr qint64 kNoSync = std::numeric_limits<qint64>::min();

QString normalStatus()
{
    return QStringLiteral("正常");
}

Finding intervalFinding(const CheckMessage &earlier, const CheckMessage &later, const QString &typeName,
                        MessageTexts &texts)
{
    Finding finding;
    finding.timestamp = texts.timestamp(earlier) + QLatin1String(" ~ ") + texts.timestamp(later);
    finding.messageType = typeName;
    finding.sourceIp = texts.source(later.source);
    finding.sequenceId = texts.sequence(later.sequence);
    finding.abnormalType = QStringLiteral("时间间隔异常");
    return finding;
}

//! The responses of one capture, grouped by sequence id.
class ResponseIndex
{
public:
    ResponseIndex(const CheckMessages &responses, qint32 sequenceCount)
        : _responses(responses)
        , _firstOfGroup(static_cast<std::size_t>(sequenceCount) + 1, 0)
        , _treeOfGroup(static_cast<std::size_t>(sequenceCount), -1)
    {
        for (const CheckMessage &response : responses)
            ++_firstOfGroup[static_cast<std::size_t>(response.sequence) + 1];
        for (std::size_t i = 1; i < _firstOfGroup.size(); ++i)
            _firstOfGroup[i] += _firstOfGroup[i - 1];
        std::vector<qint32> next(_firstOfGroup.begin(), _firstOfGroup.end() - 1);
        _order.resize(responses.size());
        for (std::size_t i = 0; i < responses.size(); ++i)
            _order[static_cast<std::size_t>(next[static_cast<std::size_t>(responses[i].sequence)]++)] =
                static_cast<qint32>(i);
    }

    //! The first response in capture order with the sequence id and a time in [from, to]; nullptr if there is none.
    const CheckMessage *firstWithin(qint32 sequence, qint64 from, qint64 to)
    {
        const auto group = static_cast<std::size_t>(sequence);
        const qint32 begin = _firstOfGroup[group];
        const qint32 end = _firstOfGroup[group + 1];
        if (end - begin > kLinearGroup)
            return treeOf(group, begin, end).firstWithin(_responses, from, to);
        for (qint32 i = begin; i < end; ++i) {
            const CheckMessage &response = _responses[static_cast<std::size_t>(_order[static_cast<std::size_t>(i)])];
            if (response.hasTime && response.msecs >= from && response.msecs <= to)
                return &response;
        }
        return nullptr;
    }

private:
    static constexpr qint32 kLinearGroup = 32; // below this, looking at each is faster than a tree

    //! A group by time, with the smallest capture position over every range of it (a bottom-up segment tree).
    struct Tree
    {
        std::vector<qint64> times;
        std::vector<qint32> smallest; // smallest[n + i] is the position of the i-th by time

        const CheckMessage *firstWithin(const CheckMessages &responses, qint64 from, qint64 to) const
        {
            const auto low = std::lower_bound(times.begin(), times.end(), from);
            const auto high = std::upper_bound(low, times.end(), to);
            qint32 best = std::numeric_limits<qint32>::max();
            auto left = static_cast<std::size_t>(low - times.begin()) + times.size();
            auto right = static_cast<std::size_t>(high - times.begin()) + times.size();
            for (; left < right; left /= 2, right /= 2) {
                if (left % 2 == 1)
                    best = std::min(best, smallest[left++]);
                if (right % 2 == 1)
                    best = std::min(best, smallest[--right]);
            }
            return best == std::numeric_limits<qint32>::max() ? nullptr : &responses[static_cast<std::size_t>(best)];
        }
    };

    const Tree &treeOf(std::size_t group, qint32 begin, qint32 end)
    {
        qint32 &tree = _treeOfGroup[group];
        if (tree < 0) {
            tree = static_cast<qint32>(_trees.size());
            _trees.push_back(buildTree(begin, end));
        }
        return _trees[static_cast<std::size_t>(tree)];
    }

    Tree buildTree(qint32 begin, qint32 end) const
    {
        std::vector<std::pair<qint64, qint32>> byTime;
        for (qint32 i = begin; i < end; ++i) {
            const qint32 position = _order[static_cast<std::size_t>(i)];
            const CheckMessage &response = _responses[static_cast<std::size_t>(position)];
            if (response.hasTime)
                byTime.emplace_back(response.msecs, position);
        }
        std::sort(byTime.begin(), byTime.end());
        Tree tree;
        const std::size_t count = byTime.size();
        tree.smallest.resize(count * 2);
        for (std::size_t i = 0; i < count; ++i) {
            tree.times.push_back(byTime[i].first);
            tree.smallest[count + i] = byTime[i].second;
        }
        for (std::size_t i = count; i-- > 1;)
            tree.smallest[i] = std::min(tree.smallest[2 * i], tree.smallest[2 * i + 1]);
        return tree;
    }

    const CheckMessages &_responses;
    std::vector<qint32> _firstOfGroup;
    std::vector<qint32> _treeOfGroup;
    std::vector<qint32> _order;
    std::vector<Tree> _trees;
};

struct DelayCounts
{
    int total = 0;
    int matched = 0;
    int timeout = 0;
    int noResponse = 0;
};

Finding delayFinding(const CheckMessage &request, const QString &abnormalType, MessageTexts &texts)
{
    Finding finding;
    finding.msecs = request.msecs;
    finding.hasTime = true;
    finding.timestamp = texts.timestamp(request);
    finding.messageType = QStringLiteral("DELAY_RESP");
    finding.sourceIp = texts.source(request.source);
    finding.sequenceId = texts.sequence(request.sequence);
    finding.abnormalType = abnormalType;
    return finding;
}

QString delayStatus(const DelayCounts &counts)
{
    if (counts.total == 0)
        return QStringLiteral("数据不足");
    const double rate = static_cast<double>(counts.matched) / counts.total;
    const QString percent = QString::number(rate * 100, 'f', 1);
    const QString matched = QString::number(counts.matched);
    const QString total = QString::number(counts.total);
    if (rate < kMatchRate) {
        return QStringLiteral("异常 (匹配率: %1%, 匹配: %2/%3, 超时: %4, 无回复: %5)")
            .arg(percent, matched, total, QString::number(counts.timeout), QString::number(counts.noResponse));
    }
    return QStringLiteral("正常 (匹配率: %1%, 匹配: %2/%3)").arg(percent, matched, total);
}

void logShrunkLists(const CheckLists &all, const CheckLists &kept, qint64 lastSync, MessageTexts &texts)
{
    if (!defaultLog().isDebugEnabled())
        return;
    logDebug() << "Data filtering results:";
    logDebug() << "  Announce messages:" << kept.announce.size() << "/" << all.announce.size();
    logDebug() << "  Sync messages:" << kept.sync.size() << "/" << all.sync.size();
    logDebug() << "  Follow_Up messages:" << kept.followUp.size() << "/" << all.followUp.size();
    logDebug() << "  Delay_Req messages:" << kept.delayReq.size() << "/" << all.delayReq.size();
    logDebug() << "  Delay_Resp messages:" << kept.delayResp.size() << "/" << all.delayResp.size();
    if (kept.sync.size() < all.sync.size()) {
        logDebug() << "Filtered out last Sync message:";
        for (const CheckMessage &message : all.sync) {
            if (message.hasTime && message.msecs >= lastSync)
                logDebug() << "  Filtered out Sync:" << texts.timestamp(message);
        }
    }
    if (kept.delayReq.size() < all.delayReq.size()) {
        logDebug() << "Filtered out Delay_Req messages corresponding to last Sync:";
        for (const CheckMessage &message : all.delayReq) {
            if (message.hasTime && message.msecs >= lastSync)
                logDebug() << "  Filtered out:" << texts.timestamp(message) << "from" << texts.source(message.source);
        }
    }
}

void logFilter(const char *what, std::size_t kept, std::size_t total, qint64 cutoff)
{
    logDebug() << what << kept << "/" << total
               << "before last Sync at:" << QDateTime::fromMSecsSinceEpoch(cutoff).toString(WallClock::format());
}

// A Sync whose Follow_Up, requests or responses fall behind the end of the capture must not count as a failure.
CheckLists cutAtLastSync(const CheckLists &lists, MessageTexts &texts)
{
    const qint64 lastSync = lastSyncMsecs(lists.sync);
    if (lastSync == kNoSync) {
        logDebug() << "No Sync messages found, using all data";
        return lists;
    }
    CheckLists kept{lists.announce, before(lists.sync, lastSync), lists.followUp, before(lists.delayReq, lastSync),
                    before(lists.delayResp, lastSync)};
    logFilter("Filtered Sync messages:", kept.sync.size(), lists.sync.size(), lastSync);
    logFilter("Filtered Delay messages:", kept.delayReq.size(), lists.delayReq.size(), lastSync);
    logFilter("Filtered Delay messages:", kept.delayResp.size(), lists.delayResp.size(), lastSync);
    logShrunkLists(lists, kept, lastSync, texts);
    return kept;
}

void append(Findings &all, Findings &&more)
{
    all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

// Each finding's key is its timestamp text, read once. A range is no time, and QDateTime sorts what is no time to the
// front.
void sortByTime(Findings &findings, WallClock &clock)
{
    constexpr qint64 kBeforeAll = std::numeric_limits<qint64>::min();
    for (Finding &finding : findings) {
        const WallClock::Time read = finding.hasTime ? clock.reread(finding.msecs) : WallClock::Time();
        finding.sortMsecs = read.isValid ? read.msecs : kBeforeAll;
    }
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding &a, const Finding &b) { return a.sortMsecs < b.sortMsecs; });
}

QString verdict(const HealthReport &report, const CheckLists &lists)
{
    const QString normal = normalStatus();
    // A check without messages does not count. The delay status is never the bare word, so any delay check counts as
    // not normal: intended.
    const bool isAllNormal = (lists.announce.empty() || report.announceIntervalStatus == normal)
                             && (lists.sync.empty() || report.syncIntervalStatus == normal)
                             && (lists.followUp.empty() || report.followUpIntervalStatus == normal)
                             && (lists.sync.empty() || report.slaveResponseStatus == normal)
                             && (lists.delayReq.empty() || report.delayReqRespMatchingStatus == normal);
    return !report.findings.empty() && !isAllNormal ? QStringLiteral("异常") : normal;
}

} // namespace

QVariantMap Finding::toMap() const
{
    // In key order and with a hint: each insertion at the end is O(1).
    QVariantMap map;
    map.insert(map.cend(), QStringLiteral("abnormalType"), abnormalType);
    map.insert(map.cend(), QStringLiteral("messageType"), messageType);
    map.insert(map.cend(), QStringLiteral("sequenceId"), sequenceId);
    map.insert(map.cend(), QStringLiteral("sourceIp"), sourceIp);
    map.insert(map.cend(), QStringLiteral("timestamp"), timestamp);
    return map;
}

QVariantList toVariantList(const Findings &findings)
{
    QVariantList list;
    list.reserve(static_cast<int>(findings.size()));
    for (const Finding &finding : findings)
        list.append(finding.toMap());
    return list;
}

QVariantMap HealthReport::toMap() const
{
    QVariantMap map;
    map.insert(QStringLiteral("announceIntervalStatus"), announceIntervalStatus);
    map.insert(QStringLiteral("syncIntervalStatus"), syncIntervalStatus);
    map.insert(QStringLiteral("followUpIntervalStatus"), followUpIntervalStatus);
    map.insert(QStringLiteral("slaveResponseStatus"), slaveResponseStatus);
    map.insert(QStringLiteral("delayReqRespMatchingStatus"), delayReqRespMatchingStatus);
    map.insert(QStringLiteral("abnormalPackets"), toVariantList(findings));
    map.insert(QStringLiteral("overallHealthStatus"), overallHealthStatus);
    return map;
}

qint64 lastSyncMsecs(const CheckMessages &sync)
{
    qint64 last = kNoSync;
    for (const CheckMessage &message : sync) {
        if (message.hasTime)
            last = std::max(last, message.msecs);
    }
    return last;
}

CheckMessages before(const CheckMessages &messages, qint64 cutoff)
{
    CheckMessages kept;
    kept.reserve(messages.size());
    std::copy_if(messages.begin(), messages.end(), std::back_inserter(kept),
                 [cutoff](const CheckMessage &message) { return message.hasTime && message.msecs < cutoff; });
    return kept;
}

CheckResult checkInterval(const CheckMessages &messages, int expectedMsecs, const QString &typeName,
                          MessageTexts &texts)
{
    if (messages.empty())
        return {QStringLiteral("无消息"), {}};
    CheckResult result;
    int checked = 0;
    int abnormal = 0;
    for (std::size_t i = 1; i < messages.size(); ++i) {
        const CheckMessage &previous = messages[i - 1];
        const CheckMessage &current = messages[i];
        if (!previous.hasTime || !current.hasTime)
            continue;
        ++checked;
        if (std::llabs(current.msecs - previous.msecs - expectedMsecs) <= kIntervalToleranceMsecs)
            continue;
        ++abnormal;
        result.findings.push_back(intervalFinding(previous, current, typeName, texts));
    }
    if (checked == 0)
        result.status = QStringLiteral("数据不足");
    else if (static_cast<double>(abnormal) / checked > kAbnormalShare)
        result.status = QStringLiteral("异常 (%1/%2)").arg(abnormal).arg(checked);
    else
        result.status = normalStatus();
    return result;
}

CheckResult checkSlaves(const CheckMessages &sync, const CheckMessages &delayReq, const SlaveExpectation &expectation,
                        MessageTexts &texts, WallClock &clock)
{
    if (sync.empty())
        return {QStringLiteral("无Sync消息"), {}};
    if (!sync.front().hasTime || !sync.back().hasTime || sync.front().msecs >= sync.back().msecs)
        return {QStringLiteral("数据不足"), {}};
    SlaveWindows windows(delayReq, {sync.front().msecs, sync.back().msecs}, expectation, texts);
    if (windows.findingCount() > kMaxFindings)
        throw std::runtime_error(tooManyFindings(windows.findingCount()));
    CheckResult result;
    const qint64 abnormal = windows.walk(clock, result.findings);
    const double share = static_cast<double>(abnormal) / static_cast<double>(windows.count());
    result.status = share > kAbnormalShare ? QStringLiteral("异常 (%1/%2 Sync消息)").arg(abnormal).arg(windows.count())
                                           : normalStatus();
    return result;
}

CheckResult checkDelayMatching(const CheckMessages &delayReq, const CheckMessages &delayResp, MessageTexts &texts)
{
    if (delayReq.empty())
        return {QStringLiteral("无Delay_Req消息"), {}};
    ResponseIndex responses(delayResp, texts.sequenceCount());
    CheckResult result;
    DelayCounts counts;
    for (const CheckMessage &request : delayReq) {
        if (!request.hasTime)
            continue;
        ++counts.total;
        const CheckMessage *response =
            responses.firstWithin(request.sequence, request.msecs, request.msecs + kTimeoutMsecs);
        if (!response) {
            ++counts.noResponse;
            result.findings.push_back(delayFinding(request, QStringLiteral("主节点未回复"), texts));
            logDebug() << "Delay_Req without proper Delay_Resp:" << texts.sequence(request.sequence) << "from"
                       << texts.source(request.source) << "at" << texts.timestamp(request);
        } else if (response->msecs <= request.msecs + kMatchMsecs) {
            ++counts.matched;
        } else {
            ++counts.timeout;
            result.findings.push_back(delayFinding(request, QStringLiteral("Delay_Resp超时"), texts));
        }
    }
    result.status = delayStatus(counts);
    if (counts.total > 0) {
        logDebug() << "Delay_Req/Resp matching results:" << result.status;
        logDebug() << "Total Delay_Req:" << counts.total << "Matched:" << counts.matched << "Timeout:" << counts.timeout
                   << "No Response:" << counts.noResponse;
    }
    return result;
}

HealthReport checkHealth(const CheckLists &lists, const SlaveExpectation &expectation, MessageTexts &texts,
                         WallClock &clock)
{
    const CheckLists kept = cutAtLastSync(lists, texts);
    HealthReport report;

    CheckResult announce = checkInterval(kept.announce, kAnnounceIntervalMsecs, QStringLiteral("Announce"), texts);
    report.announceIntervalStatus = kept.announce.empty() ? QStringLiteral("无Announce消息") : announce.status;
    append(report.findings, std::move(announce.findings));

    CheckResult sync = checkInterval(kept.sync, kSyncIntervalMsecs, QStringLiteral("Sync"), texts);
    report.syncIntervalStatus = kept.sync.empty() ? QStringLiteral("无Sync消息") : sync.status;
    append(report.findings, std::move(sync.findings));

    CheckResult followUp = checkInterval(kept.followUp, kSyncIntervalMsecs, QStringLiteral("Follow_Up"), texts);
    report.followUpIntervalStatus = kept.followUp.empty() ? QStringLiteral("无Follow_up消息") : followUp.status;
    append(report.findings, std::move(followUp.findings));

    CheckResult slaves = checkSlaves(kept.sync, kept.delayReq, expectation, texts, clock);
    report.slaveResponseStatus = slaves.status;
    append(report.findings, std::move(slaves.findings));

    CheckResult delay = checkDelayMatching(kept.delayReq, kept.delayResp, texts);
    report.delayReqRespMatchingStatus = delay.status;
    append(report.findings, std::move(delay.findings));

    const auto count = static_cast<qint64>(report.findings.size());
    if (count > kMaxFindings)
        throw std::runtime_error(tooManyFindings(count));
    sortByTime(report.findings, clock);
    logDebug() << "Total abnormal packets collected:" << count;
    logDebug() << "All abnormal packets sorted by timestamp";
    report.overallHealthStatus = verdict(report, kept);
    return report;
}

} // namespace analysis
