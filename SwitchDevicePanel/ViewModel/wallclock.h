// Local wall-clock texts of capture times: "yyyy-MM-dd hh:mm:ss.zzz", to and from milliseconds since the Unix epoch.
#pragma once

#include <QtCore/QString>

#include <vector>

namespace analysis {

/*!
    Formats and parses the time texts of message records, with the results that QDateTime gives and without its price.

    Every comparison of the analysis is made on the text of a time, parsed back. In the hour that the end of daylight
   saving repeats, a text may mean either of two instants and is read as one of them, so "format, then parse" is not the
   identity; reread() gives that result without a text.

    Qt is asked once per day (or per quarter of an hour on days on which the offset changes); inside such a span the
   offset is a constant. Times that Qt treats otherwise (years before 1000 or after 9998), texts of another shape,
   wall-clock readings that never were, and spans that do not look alike all over go through Qt one by one.

    Not thread-safe; keep one per analysis. Reads the system's time zone when a span is first seen.
*/
class WallClock
{
public:
    //! A time read from a text. \c msecs is what QDateTime::toMSecsSinceEpoch() says, also for an invalid time.
    struct Time
    {
        qint64 msecs = 0;
        bool isValid = false;
    };

    WallClock();

    //! The format that all texts have.
    static QString format();

    //! The wall-clock text of an instant.
    QString text(qint64 msecs);
    //! The instant that a text means.
    Time parse(const QString &text);
    //! parse(text(msecs)).
    Time reread(qint64 msecs);

private:
    static constexpr qint64 kNoSpan = INT64_MIN;

    //! What is constant over a span of time on one axis: the instants, or the readings of the local wall clock.
    struct Span
    {
        qint64 index = kNoSpan;
        qint64 offset = 0; // local minus UTC, in milliseconds
        qint64 echo = 0;   // of instants: read back minus given; not 0 in one pass of a repeated hour
        bool isUniform = false;
    };
    using Probe = Span (*)(qint64 msecs);

    //! Direct-mapped cache. A capture of a few minutes touches one entry; one whose times are spread over a century
    //! makes the table grow until every day has its place.
    struct SpanTable
    {
        std::vector<Span> spans;
        std::size_t conflicts = 0;
    };
    struct SpanCache
    {
        SpanTable days;
        SpanTable quarters;
    };

    static Span probeInstant(qint64 msecs);
    static Span probeReading(qint64 local);
    static Span &placeOf(SpanTable &table, qint64 index);
    static void grow(SpanTable &table);
    static const Span &spanAt(SpanTable &table, qint64 msecs, qint64 length, Probe probe);
    static const Span &spanOf(SpanCache &cache, qint64 msecs, Probe probe);

    SpanCache _instants;
    SpanCache _readings;
};

} // namespace analysis
