#include "ptpv2parser/ptpv2analyzer.h"

#include "outstandingrequests.h"
#include "ptpv2parser/ptpv2parser.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace PTPv2 {

namespace {

/// A point in time. Seconds are kept within 2^60, which no real time reaches, so that sums and differences cannot
/// overflow.
struct Instant
{
    int64_t seconds = 0;
    int64_t nanoseconds = 0;
};

Instant instantOf(const Timestamp &timestamp)
{
    return {static_cast<int64_t>(timestamp.secondsField()), timestamp.nanosecondsField};
}

Instant captureInstant(int64_t seconds, int32_t nanoseconds)
{
    constexpr int64_t farthest = int64_t{1} << 60;
    return {std::clamp(seconds, -farthest, farthest), nanoseconds};
}

Instant operator-(const Instant &a, const Instant &b)
{
    return {a.seconds - b.seconds, a.nanoseconds - b.nanoseconds};
}

Instant operator+(const Instant &a, const Instant &b)
{
    return {a.seconds + b.seconds, a.nanoseconds + b.nanoseconds};
}

/// Rounded once only, where the sum fits in 64 bits: clocks of different epochs are decades apart.
double toNanoseconds(const Instant &difference)
{
    constexpr int64_t exactRange = 9000000000;
    constexpr int64_t nanosecondsPerSecond = 1000000000;
    if (difference.seconds > -exactRange && difference.seconds < exactRange)
        return static_cast<double>(difference.seconds * nanosecondsPerSecond + difference.nanoseconds);
    return static_cast<double>(difference.seconds) * 1e9 + static_cast<double>(difference.nanoseconds);
}

/// IEEE 1588-2008 13.3.2.7: nanoseconds times 2^16.
double correctionNs(int64_t correctionField)
{
    return static_cast<double>(correctionField) / 65536.0;
}

/// The master's half of an exchange: a one-step Sync, or a Sync with its Follow_Up.
struct SyncHalf
{
    Instant t1;              ///< sent, by the master's clock
    Instant t2;              ///< seen in the capture
    double correctionNs = 0; ///< correction fields of Sync and Follow_Up
};

/// The slave's half of an exchange: a Delay_Req and its Delay_Resp.
struct DelayHalf
{
    Instant t3; ///< Delay_Req seen in the capture
    Instant t4; ///< Delay_Req received, by the master's clock
    double correctionNs =
        0; ///< correction field of the Delay_Resp, to which the master has added that of the Delay_Req
};

/// A two-step Sync whose Follow_Up has not come.
struct OutstandingSync
{
    bool waiting = false;
    uint16_t sequenceId = 0;
    Instant t2;
    int64_t correctionField = 0;
};

/// A Follow_Up that was captured before its Sync. Captures are microseconds out of order now and then, so it waits for
/// the very next Sync and no longer: sequence ids come again.
struct EarlyFollowUp
{
    bool waiting = false;
    uint16_t sequenceId = 0;
    Timestamp preciseOriginTimestamp{};
    int64_t correctionField = 0;
};

class Session
{
public:
    Session(const PortIdentity &master, uint8_t domainNumber)
        : _result{master, domainNumber, 0, 0, false, 0, 0}
    {}

    const SyncSession &result() const { return _result; }
    bool isOf(const PortIdentity &master, uint8_t domainNumber) const
    {
        return _result.domainNumber == domainNumber && _result.masterPortIdentity == master;
    }

    void takeSync(const PTPv2Message &sync);
    void takeFollowUp(const PTPv2Message &followUp);
    void takeDelay(const DelayHalf &half);

private:
    OutstandingSync *outstandingSync(uint16_t sequenceId);
    void rememberSync(const OutstandingSync &sync);
    void complete(const OutstandingSync &sync, const Timestamp &origin, double originCorrectionNs);
    void evaluate();

    SyncSession _result;
    std::array<OutstandingSync, 4> _outstanding; // at high Sync rates the next Sync may overtake a Follow_Up
    std::size_t _nextOutstanding = 0;
    EarlyFollowUp _early;
    SyncHalf _sync;
    DelayHalf _delay;
    bool _hasSync = false;
    bool _hasDelay = false;
};

OutstandingSync *Session::outstandingSync(uint16_t sequenceId)
{
    for (OutstandingSync &sync : _outstanding) {
        if (sync.waiting && sync.sequenceId == sequenceId)
            return &sync;
    }
    return nullptr;
}

void Session::rememberSync(const OutstandingSync &sync)
{
    if (OutstandingSync *earlier = outstandingSync(sync.sequenceId)) {
        *earlier = sync;
        return;
    }
    _outstanding[_nextOutstanding] = sync;
    _nextOutstanding = (_nextOutstanding + 1) % _outstanding.size();
}

void Session::takeSync(const PTPv2Message &message)
{
    const OutstandingSync sync{true, message.header.sequenceId,
                               captureInstant(message.captureSeconds, message.captureNanoseconds),
                               message.header.correctionField};
    _result.lastSyncSequence = sync.sequenceId;
    if (!message.header.twoStepFlag())
        complete(sync, message.timestamp, 0);
    else if (_early.waiting && _early.sequenceId == sync.sequenceId)
        complete(sync, _early.preciseOriginTimestamp, correctionNs(_early.correctionField));
    else
        rememberSync(sync);
    _early.waiting = false;
}

void Session::takeFollowUp(const PTPv2Message &message)
{
    const PTPv2Header &header = message.header;
    _result.lastFollowUpSequence = header.sequenceId;
    if (OutstandingSync *sync = outstandingSync(header.sequenceId)) {
        complete(*sync, message.timestamp, correctionNs(header.correctionField));
        sync->waiting = false;
    } else {
        _early = {true, header.sequenceId, message.timestamp, header.correctionField};
    }
}

void Session::complete(const OutstandingSync &sync, const Timestamp &origin, double originCorrectionNs)
{
    _sync = {instantOf(origin), sync.t2, correctionNs(sync.correctionField) + originCorrectionNs};
    _hasSync = true;
    // Later Syncs wait for a Delay_Resp of their own.
    if (_hasDelay && !_result.hasValidSync)
        evaluate();
}

void Session::takeDelay(const DelayHalf &half)
{
    _delay = half;
    _hasDelay = true;
    if (_hasSync)
        evaluate();
}

void Session::evaluate()
{
    // IEEE 1588-2008 11.3.2: <meanPathDelay> = [(t2 - t3) + (t4 - t1) - corrections] / 2, with the correction fields of
    // Sync, Follow_Up and Delay_Resp. The master has added the Delay_Req's own to the Delay_Resp's (same clause).
    // Seconds are subtracted before anything is rounded: (t2 - t1) and (t4 - t3) may both be decades.
    const Instant masterToSlave = _sync.t2 - _sync.t1;
    const Instant slaveToMaster = _delay.t4 - _delay.t3;
    const double roundTripNs = toNanoseconds(masterToSlave + slaveToMaster);
    _result.pathDelay = (roundTripNs - _sync.correctionNs - _delay.correctionNs) / 2;
    // 11.2: <offsetFromMaster> = t2 - t1 - <meanPathDelay> - corrections of Sync and Follow_Up.
    _result.clockOffset = toNanoseconds(masterToSlave) - _result.pathDelay - _sync.correctionNs;
    _result.hasValidSync = true;
}

/// Identity of a session, ordered in any fixed way.
using SessionKey = std::pair<uint64_t, uint32_t>;

SessionKey keyOf(const PTPv2Header &header)
{
    const PortIdentity &port = header.sourcePortIdentity;
    return {asNumber(port.clockIdentity), uint32_t{port.portNumber} << 8 | header.domainNumber};
}

} // namespace

struct PTPv2Analyzer::Private
{
    Session *findSession(const PTPv2Header &header);
    Session &session(const PTPv2Header &header);
    void takeDelayResp(const PTPv2Message &response);

    std::vector<Session> sessions; // in order of appearance
    // A tree, since its look-ups stay logarithmic whatever identities a capture brings.
    std::map<SessionKey, std::size_t> indexes;
    std::size_t lastUsed = 0; // most captures have one master; may be out of date
    OutstandingRequests requests;
};

Session *PTPv2Analyzer::Private::findSession(const PTPv2Header &header)
{
    if (lastUsed < sessions.size() && sessions[lastUsed].isOf(header.sourcePortIdentity, header.domainNumber))
        return &sessions[lastUsed];
    const auto found = indexes.find(keyOf(header));
    if (found == indexes.end())
        return nullptr;
    lastUsed = found->second;
    return &sessions[lastUsed];
}

Session &PTPv2Analyzer::Private::session(const PTPv2Header &header)
{
    if (Session *known = findSession(header))
        return *known;
    lastUsed = sessions.size();
    indexes.emplace(keyOf(header), lastUsed);
    return sessions.emplace_back(header.sourcePortIdentity, header.domainNumber);
}

void PTPv2Analyzer::Private::takeDelayResp(const PTPv2Message &response)
{
    Session *known = findSession(response.header);
    if (!known)
        return;
    if (const OutstandingRequests::Entry *request = requests.find(response)) {
        known->takeDelay({captureInstant(request->seconds, request->nanoseconds), instantOf(response.timestamp),
                          correctionNs(response.header.correctionField)});
    }
}

PTPv2Analyzer::PTPv2Analyzer()
    : _d(std::make_unique<Private>())
{}

PTPv2Analyzer::~PTPv2Analyzer() = default;

void PTPv2Analyzer::addMessage(const PTPv2Parser &parser)
{
    if (parser.hasPTPv2Message())
        addMessage(parser.message());
}

void PTPv2Analyzer::addMessage(const PTPv2Message &message)
{
    switch (message.header.messageType) {
    case MessageType::Sync:
        _d->session(message.header).takeSync(message);
        return;
    case MessageType::FollowUp:
        _d->session(message.header).takeFollowUp(message);
        return;
    case MessageType::DelayReq:
        _d->requests.add(message);
        return;
    case MessageType::DelayResp:
        _d->takeDelayResp(message);
        return;
    case MessageType::PdelayReq: // the peer delay mechanism belongs to links, not to sessions
    case MessageType::PdelayResp:
    case MessageType::PdelayRespFollowUp:
    case MessageType::Announce:
    case MessageType::Signaling:
    case MessageType::Management:
        return;
    }
}

std::vector<SyncSession> PTPv2Analyzer::getSyncSessions() const
{
    std::vector<SyncSession> results;
    results.reserve(_d->sessions.size());
    for (const Session &session : _d->sessions)
        results.push_back(session.result());
    return results;
}

std::size_t PTPv2Analyzer::sessionCount() const
{
    return _d->sessions.size();
}

void PTPv2Analyzer::clear()
{
    _d->sessions.clear();
    _d->indexes.clear();
    _d->requests.clear();
}

} // namespace PTPv2
