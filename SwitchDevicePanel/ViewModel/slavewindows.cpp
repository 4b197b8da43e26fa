#include "slavewindows.h"

#include "debuglog.h"

#include <QtCore/QSet>
#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>

namespace analysis {

namespace {

constexpr double kDefaultIntervalSeconds = 1.0;
constexpr double kLongestWindowSeconds = 1e12; // longer than any span that time texts can name

QString defaultPrefix()
{
    return QStringLiteral("192.168.100.");
}

std::vector<qint32> seenSources(const CheckMessages &delayReq, qint32 sourceCount)
{
    std::vector<qint32> seen;
    std::vector<bool> isSeen(static_cast<std::size_t>(sourceCount), false);
    for (const CheckMessage &request : delayReq) {
        if (isSeen[static_cast<std::size_t>(request.source)])
            continue;
        isSeen[static_cast<std::size_t>(request.source)] = true;
        seen.push_back(request.source);
    }
    return seen;
}

qint64 windowsIn(const TimeSpan &span, qint64 length)
{
    const qint64 duration = span.endMsecs - span.startMsecs;
    return duration / length + (duration % length > 0 ? 1 : 0);
}

} // namespace

std::string tooManyFindings(qint64 count)
{
    return "more than " + std::to_string(kMaxFindings) + " findings (at least " + std::to_string(count)
           + "): check the time stamps of the capture, the number of decoders and the analysis interval";
}

qint64 windowMsecs(double intervalSeconds)
{
    if (!std::isfinite(intervalSeconds))
        intervalSeconds = kDefaultIntervalSeconds;
    // Whole seconds, halves away from zero: 1.4 s makes windows of 1 s, 1.5 s of 2 s.
    const double seconds = std::min(std::max(std::round(intervalSeconds), 1.0), kLongestWindowSeconds);
    return static_cast<qint64>(seconds) * 1'000;
}

SlaveWindows::SlaveWindows(const CheckMessages &delayReq, const TimeSpan &span, const SlaveExpectation &expectation,
                           MessageTexts &texts)
    : _texts(texts)
    , _expectedCount(expectation.slaveCount)
    , _startMsecs(span.startMsecs)
    , _length(windowMsecs(expectation.intervalSeconds))
    , _count(windowsIn(span, _length))
    , _memberOfSource(static_cast<std::size_t>(texts.sourceCount()), -1)
    , _answeredBySource(static_cast<std::size_t>(texts.sourceCount()), -1)
{
    const std::vector<qint32> seen = seenSources(delayReq, texts.sourceCount());
    if (static_cast<qint64>(seen.size()) >= _expectedCount)
        expectSeen(seen);
    else
        expectNumbered(seen);
    placeRequests(delayReq, span);
    predictFindings();
}

void SlaveWindows::expectSeen(const std::vector<qint32> &seen)
{
    _seenMembers = seen;
    _memberCount = static_cast<qint32>(seen.size());
    for (qint32 member = 0; member < _memberCount; ++member)
        _memberOfSource[static_cast<std::size_t>(seen[static_cast<std::size_t>(member)])] = member;
}

void SlaveWindows::expectNumbered(const std::vector<qint32> &seen)
{
    _memberCount = _expectedCount;
    _prefix = defaultPrefix();
    if (!seen.empty()) {
        const QStringList parts = _texts.source(seen.front()).split(QLatin1Char('.'));
        if (parts.size() == 4)
            _prefix = parts[0] + QLatin1Char('.') + parts[1] + QLatin1Char('.') + parts[2] + QLatin1Char('.');
    }
    for (const qint32 source : seen)
        _memberOfSource[static_cast<std::size_t>(source)] = memberNumber(_texts.source(source));
}

// Which numbered host an address is; the number must be written as the expected address writes it.
qint32 SlaveWindows::memberNumber(const QString &source) const
{
    if (!source.startsWith(_prefix))
        return -1;
    const QString host = source.mid(_prefix.size());
    const int number = host.toInt();
    const bool isExpected = number >= 1 && number <= _expectedCount && QString::number(number) == host;
    return isExpected ? number - 1 : -1;
}

QString SlaveWindows::memberText(qint32 member) const
{
    return _prefix.isEmpty() ? _texts.source(_seenMembers[static_cast<std::size_t>(member)])
                             : _prefix + QString::number(member + 1);
}

void SlaveWindows::placeRequests(const CheckMessages &delayReq, const TimeSpan &span)
{
    for (const CheckMessage &request : delayReq) {
        if (!request.hasTime || request.msecs < span.startMsecs)
            continue;
        const qint64 window = (request.msecs - span.startMsecs) / _length;
        if (window < _count)
            _requests.push_back({window, request.source});
    }
    // Within a window the order does not matter: the check asks who is there.
    std::sort(_requests.begin(), _requests.end(),
              [](const Request &a, const Request &b) { return a.window < b.window; });
}

void SlaveWindows::predictFindings()
{
    if (_memberCount == 0)
        return;          // nobody is expected and nobody was seen: every window is good
    qint64 answered = 0; // expected slaves that answered, over all windows
    qint64 answeredWindows = 0;
    std::vector<qint64> lastAnswer(_memberOfSource.size(), -1);
    for (std::size_t i = 0; i < _requests.size(); ++i) {
        const Request &request = _requests[i];
        if (i == 0 || request.window != _requests[i - 1].window)
            ++answeredWindows;
        qint64 &last = lastAnswer[static_cast<std::size_t>(request.source)];
        // Different sources are different members: texts with equal numbers are equal.
        if (last != request.window && _memberOfSource[static_cast<std::size_t>(request.source)] >= 0)
            ++answered;
        last = request.window;
    }
    // Each window without any request misses at least one slave; the product is computed only where it cannot overflow.
    _findingCount = _count - answeredWindows;
    if (_findingCount <= kMaxFindings)
        _findingCount = _count * _memberCount - answered;
}

SlaveWindows::Responders SlaveWindows::markResponders(std::size_t firstRequest, qint64 window)
{
    Responders responders{firstRequest, 0};
    for (std::size_t &next = responders.nextRequest; next < _requests.size() && _requests[next].window == window;
         ++next) {
        const auto source = static_cast<std::size_t>(_requests[next].source);
        if (_answeredBySource[source] == window)
            continue;
        _answeredBySource[source] = window;
        ++responders.count;
        if (_memberOfSource[source] >= 0)
            _answeredByMember[static_cast<std::size_t>(_memberOfSource[source])] = window;
    }
    return responders;
}

qint64 SlaveWindows::walk(WallClock &clock, Findings &findings)
{
    if (_memberCount == 0)
        return 0; // nobody to miss in any window, of which there may be billions: not walked, and not logged
    findings.reserve(findings.size() + static_cast<std::size_t>(_findingCount));
    _answeredByMember.assign(static_cast<std::size_t>(_memberCount), -1);
    _memberTexts.assign(static_cast<std::size_t>(_memberCount), QString());
    qint64 abnormal = 0;
    std::size_t next = 0;
    for (qint64 window = 0; window < _count; ++window) {
        const Responders responders = markResponders(next, window);
        logWindow(window, next, responders.nextRequest);
        next = responders.nextRequest;
        if (judgeWindow(window, responders.count, clock, findings) > 0)
            ++abnormal;
    }
    return abnormal;
}

qint64 SlaveWindows::judgeWindow(qint64 window, qint64 responderCount, WallClock &clock, Findings &findings)
{
    const std::size_t before = findings.size();
    Finding finding;
    const auto addFinding = [&](const QString &source) {
        if (finding.timestamp.isEmpty()) {
            finding.msecs = _startMsecs + window * _length;
            finding.hasTime = true;
            finding.timestamp = clock.text(finding.msecs);
            finding.messageType = QStringLiteral("DELAY_REQ");
            finding.sequenceId = QString::number(window + 1);
            finding.abnormalType = QStringLiteral("从节点未回复");
        }
        finding.sourceIp = source;
        findings.push_back(finding);
    };
    for (qint32 member = 0; member < _memberCount; ++member) {
        if (_answeredByMember[static_cast<std::size_t>(member)] == window)
            continue;
        QString &text = _memberTexts[static_cast<std::size_t>(member)];
        if (text.isNull())
            text = memberText(member);
        addFinding(text);
    }
    if (findings.size() == before) {
        // Everybody expected is there, and still too few: slaves that cannot be named.
        for (qint64 missing = 1; missing <= _expectedCount - responderCount; ++missing) {
            addFinding(QStringLiteral("未知从节点%1").arg(missing));
            logDebug() << "Created abnormal packet for unknown missing slave:" << missing;
        }
    }
    return static_cast<qint64>(findings.size() - before);
}

void SlaveWindows::logWindow(qint64 window, std::size_t firstRequest, std::size_t nextRequest) const
{
    if (!defaultLog().isDebugEnabled())
        return;
    QSet<QString> responding;
    for (std::size_t i = firstRequest; i < nextRequest; ++i)
        responding.insert(_texts.source(_requests[i].source));
    QSet<QString> missing;
    for (qint32 member = 0; member < _memberCount; ++member) {
        if (_answeredByMember[static_cast<std::size_t>(member)] != window)
            missing.insert(memberText(member));
    }
    logDebug() << "Window" << window + 1 << "- Responding slaves:" << responding << "Missing slaves:" << missing;
}

} // namespace analysis
