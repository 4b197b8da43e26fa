// The windows of the slave response check: who is expected, who answered, who is missing.
#pragma once

#include "healthcheck.h"

#include <string>
#include <vector>

namespace analysis {

//! Text of the error that ends an analysis with too many findings. \a count is exact, or a lower bound.
std::string tooManyFindings(qint64 count);

//! Window length in milliseconds of an interval in seconds.
qint64 windowMsecs(double intervalSeconds);

struct TimeSpan
{
    qint64 startMsecs = 0;
    qint64 endMsecs = 0; // > startMsecs
};

/*!
    Cuts a time span into windows [start, start + W) and compares each one's requesting slaves with the expected ones.

    Both numbers, of windows and of findings, are known before any window is walked: time stamps that span decades make
    billions of empty windows, each with every slave missing.
*/
class SlaveWindows
{
public:
    //! \a texts must outlive the object; \a delayReq may be in any order.
    SlaveWindows(const CheckMessages &delayReq, const TimeSpan &span, const SlaveExpectation &expectation,
                 MessageTexts &texts);

    qint64 count() const { return _count; }

    //! How many findings walk() would make; over kMaxFindings it may be a lower bound.
    qint64 findingCount() const { return _findingCount; }

    //! Appends the findings of all windows, in window order, and returns the number of abnormal windows.
    qint64 walk(WallClock &clock, Findings &findings);

private:
    struct Request
    {
        qint64 window;
        qint32 source;
    };

    void expectSeen(const std::vector<qint32> &seen);
    void expectNumbered(const std::vector<qint32> &seen);
    void placeRequests(const CheckMessages &delayReq, const TimeSpan &span);
    void predictFindings();
    qint32 memberNumber(const QString &source) const;
    QString memberText(qint32 member) const;

    //! The requests of one window: where the next window's begin, and how many slaves sent them.
    struct Responders
    {
        std::size_t nextRequest;
        qint64 count;
    };

    Responders markResponders(std::size_t firstRequest, qint64 window);
    qint64 judgeWindow(qint64 window, qint64 responderCount, WallClock &clock, Findings &findings);
    void logWindow(qint64 window, std::size_t firstRequest, std::size_t nextRequest) const;

    MessageTexts &_texts;
    int _expectedCount;
    qint64 _startMsecs;
    qint64 _length;
    qint64 _count;
    qint64 _findingCount = 0;

    // The expected set: the sources seen, or numbered hosts of one /24 network.
    QString _prefix;                  // of numbered hosts
    std::vector<qint32> _seenMembers; // member -> source, where the sources seen are the expected ones
    qint32 _memberCount = 0;
    std::vector<qint32> _memberOfSource; // source -> member, -1 where it is none

    std::vector<Request> _requests;        // by window
    std::vector<qint64> _answeredBySource; // source -> last window in which it sent a request
    std::vector<qint64> _answeredByMember;
    std::vector<QString> _memberTexts; // made when first missing; shared by all findings
};

} // namespace analysis
