#include "wallclock.h"

#include <QtCore/QDateTime>

#include <array>

namespace analysis {

namespace {

constexpr qint64 kDayMsecs = 86'400'000;
constexpr qint64 kQuarterMsecs = 900'000; // time zones change their offset at quarters of an hour
constexpr std::size_t kFirstSpans = 64;   // a power of two, as every later size
constexpr std::size_t kMaxSpans = 65'536; // every day that 32-bit seconds can name

// Years 1000 to 9998: four digits, and two days away from where the text changes its shape in any zone.
constexpr qint64 kFirstPlain = -30'610'051'200'000;
constexpr qint64 kLastPlain = 253'370'592'000'000;

constexpr qint64 kEpochJulianDay = 2'440'588;
constexpr int kTextLength = 23; // yyyy-MM-dd hh:mm:ss.zzz

constexpr qint64 floorDiv(qint64 value, qint64 divisor)
{
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

bool isPlain(qint64 msecs)
{
    return msecs >= kFirstPlain && msecs < kLastPlain;
}

struct Civil
{
    int year;
    int month;
    int day;
};

// Proleptic Gregorian calendar from days since 1970-01-01, counted in eras of 400 years that begin on 1 March.
Civil civilOfDays(qint64 days)
{
    const qint64 shifted = days + 719'468;
    const qint64 era = floorDiv(shifted, 146'097);
    const auto dayOfEra = static_cast<int>(shifted - era * 146'097);
    const int yearOfEra = (dayOfEra - dayOfEra / 1'460 + dayOfEra / 36'524 - dayOfEra / 146'096) / 365;
    const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int monthFromMarch = (5 * dayOfYear + 2) / 153;
    const int month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    const auto year = static_cast<int>(yearOfEra + era * 400) + (month <= 2 ? 1 : 0);
    return {year, month, dayOfYear - (153 * monthFromMarch + 2) / 5 + 1};
}

qint64 daysOfCivil(const Civil &date)
{
    const int year = date.month <= 2 ? date.year - 1 : date.year;
    const qint64 era = floorDiv(year, 400);
    const qint64 yearOfEra = year - era * 400;
    const int monthFromMarch = date.month > 2 ? date.month - 3 : date.month + 9;
    const int dayOfYear = (153 * monthFromMarch + 2) / 5 + date.day - 1;
    return era * 146'097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719'468;
}

bool isLeapYear(int year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int daysInMonth(int year, int month)
{
    constexpr std::array<int, 12> kDays{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeapYear(year) ? 29 : kDays[static_cast<std::size_t>(month - 1)];
}

void putDigits(QChar *at, int value, int digits)
{
    for (int i = digits - 1; i >= 0; --i) {
        at[i] = QChar(ushort('0' + value % 10));
        value /= 10;
    }
}

// -1 when one of the characters is no ASCII digit.
int digitsAt(const QChar *at, int digits)
{
    int value = 0;
    for (int i = 0; i < digits; ++i) {
        const ushort unit = at[i].unicode();
        if (unit < '0' || unit > '9')
            return -1;
        value = value * 10 + (unit - '0');
    }
    return value;
}

QString plainText(qint64 localMsecs)
{
    const qint64 days = floorDiv(localMsecs, kDayMsecs);
    const Civil date = civilOfDays(days);
    const auto ofDay = static_cast<int>(localMsecs - days * kDayMsecs);
    QString text(kTextLength, Qt::Uninitialized);
    QChar *at = text.data();
    putDigits(at, date.year, 4);
    at[4] = QLatin1Char('-');
    putDigits(at + 5, date.month, 2);
    at[7] = QLatin1Char('-');
    putDigits(at + 8, date.day, 2);
    at[10] = QLatin1Char(' ');
    putDigits(at + 11, ofDay / 3'600'000, 2);
    at[13] = QLatin1Char(':');
    putDigits(at + 14, ofDay / 60'000 % 60, 2);
    at[16] = QLatin1Char(':');
    putDigits(at + 17, ofDay / 1'000 % 60, 2);
    at[19] = QLatin1Char('.');
    putDigits(at + 20, ofDay % 1'000, 3);
    return text;
}

// Local milliseconds of a text of exactly the fixed shape with every field in range; nothing else is judged here.
bool readPlainText(const QString &text, qint64 *localMsecs)
{
    if (text.size() != kTextLength)
        return false;
    const QChar *at = text.constData();
    if (at[4] != QLatin1Char('-') || at[7] != QLatin1Char('-') || at[10] != QLatin1Char(' ')
        || at[13] != QLatin1Char(':') || at[16] != QLatin1Char(':') || at[19] != QLatin1Char('.'))
        return false;
    const Civil date{digitsAt(at, 4), digitsAt(at + 5, 2), digitsAt(at + 8, 2)};
    const int hour = digitsAt(at + 11, 2);
    const int minute = digitsAt(at + 14, 2);
    const int second = digitsAt(at + 17, 2);
    const int milli = digitsAt(at + 20, 3);
    if (date.year < 1000 || date.month < 1 || date.month > 12 || date.day < 1 || hour < 0 || hour > 23 || minute < 0
        || minute > 59 || second < 0 || second > 59 || milli < 0)
        return false;
    if (date.day > daysInMonth(date.year, date.month))
        return false;
    *localMsecs = daysOfCivil(date) * kDayMsecs + milli + qint64{1'000} * ((hour * 60 + minute) * 60 + second);
    return isPlain(*localMsecs);
}

// The fields of a date-time as if they were UTC.
qint64 localMsecsOf(const QDateTime &time)
{
    return (time.date().toJulianDay() - kEpochJulianDay) * kDayMsecs + time.time().msecsSinceStartOfDay();
}

} // namespace

WallClock::WallClock()
{
    for (SpanCache *cache : {&_instants, &_readings}) {
        cache->days.spans.resize(kFirstSpans);
        cache->quarters.spans.resize(kFirstSpans);
    }
}

QString WallClock::format()
{
    return QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz");
}

QString WallClock::text(qint64 msecs)
{
    if (isPlain(msecs)) {
        const Span &span = spanOf(_instants, msecs, probeInstant);
        if (span.isUniform)
            return plainText(msecs + span.offset);
    }
    return QDateTime::fromMSecsSinceEpoch(msecs).toString(format());
}

WallClock::Time WallClock::parse(const QString &text)
{
    qint64 local = 0;
    if (readPlainText(text, &local)) {
        const Span &span = spanOf(_readings, local, probeReading);
        if (span.isUniform)
            return {local - span.offset, true};
    }
    const QDateTime time = QDateTime::fromString(text, format());
    return {time.toMSecsSinceEpoch(), time.isValid()};
}

WallClock::Time WallClock::reread(qint64 msecs)
{
    if (isPlain(msecs)) {
        const Span &span = spanOf(_instants, msecs, probeInstant);
        if (span.isUniform)
            return {msecs + span.echo, true};
    }
    return parse(text(msecs));
}

WallClock::Span WallClock::probeInstant(qint64 msecs)
{
    const qint64 local = localMsecsOf(QDateTime::fromMSecsSinceEpoch(msecs));
    const Span reading = probeReading(local);
    return {kNoSpan, local - msecs, local - reading.offset - msecs, reading.isUniform};
}

WallClock::Span WallClock::probeReading(qint64 local)
{
    // A text, and not the fields: Qt reads a text field by field, and which of two instants a repeated reading becomes
    // depends on what the C library converted just before.
    const QDateTime time = QDateTime::fromString(plainText(local), format());
    return {kNoSpan, local - time.toMSecsSinceEpoch(), 0, time.isValid()};
}

WallClock::Span &WallClock::placeOf(SpanTable &table, qint64 index)
{
    return table.spans[static_cast<std::size_t>(index) & (table.spans.size() - 1)];
}

void WallClock::grow(SpanTable &table)
{
    std::vector<Span> old(table.spans.size() * 4);
    old.swap(table.spans);
    table.conflicts = 0;
    for (const Span &span : old) {
        if (span.index != kNoSpan)
            placeOf(table, span.index) = span;
    }
}

const WallClock::Span &WallClock::spanAt(SpanTable &table, qint64 msecs, qint64 length, Probe probe)
{
    const qint64 index = floorDiv(msecs, length);
    const Span &known = placeOf(table, index);
    if (known.index == index)
        return known;
    if (known.index != kNoSpan && ++table.conflicts > table.spans.size() / 4 && table.spans.size() < kMaxSpans)
        grow(table);
    Span &span = placeOf(table, index);
    const qint64 start = index * length;
    span = probe(start);
    span.index = index;
    for (const qint64 point : {start + length / 2, start + length - 1}) {
        const Span other = probe(point);
        if (!other.isUniform || other.offset != span.offset || other.echo != span.echo)
            span.isUniform = false;
    }
    return span;
}

const WallClock::Span &WallClock::spanOf(SpanCache &cache, qint64 msecs, Probe probe)
{
    const Span &day = spanAt(cache.days, msecs, kDayMsecs, probe);
    return day.isUniform ? day : spanAt(cache.quarters, msecs, kQuarterMsecs, probe);
}

} // namespace analysis
