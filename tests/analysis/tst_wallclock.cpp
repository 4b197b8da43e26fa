#include "localtimezone.h"
#include "wallclock.h"

#include <QtCore/QDateTime>
#include <QtCore/QRandomGenerator>
#include <QtTest/QtTest>

using analysis::WallClock;

class TestWallClock : public QObject
{
    Q_OBJECT

private slots:
    void everyInstant_readsAsQtWritesIt_data();
    void everyInstant_readsAsQtWritesIt();
    void everyText_meansWhatQtSays_data();
    void everyText_meansWhatQtSays();
    void repeatedHour_isReadAsItsFirstPass();
    void oddTexts_areReadLikeQt_data();
    void oddTexts_areReadLikeQt();
};

namespace {

constexpr qint64 kHour = 3'600'000;

QString qtText(qint64 msecs)
{
    return QDateTime::fromMSecsSinceEpoch(msecs).toString(WallClock::format());
}

QDateTime qtTime(const QString &text)
{
    return QDateTime::fromString(text, WallClock::format());
}

void addZones()
{
    QTest::addColumn<QByteArray>("zone");
    for (const char *zone :
         {"UTC", "Europe/Berlin", "America/New_York", "Australia/Lord_Howe", "Asia/Kolkata", "Pacific/Apia",
          "America/St_Johns", "Africa/Monrovia", "Africa/Casablanca", "Asia/Shanghai", "Europe/Moscow"})
        QTest::newRow(zone) << QByteArray(zone);
}

// Instants at and around every change of the offset between 1969 and 2040, and spread over the years that texts can
// name.
QVector<qint64> interestingInstants()
{
    QVector<qint64> instants;
    QRandomGenerator random(20'260'329);
    int offset = QDateTime::fromMSecsSinceEpoch(-100'000'000'000).offsetFromUtc();
    for (qint64 at = -100'000'000'000; at < 2'240'000'000'000; at += 6 * kHour) {
        const int next = QDateTime::fromMSecsSinceEpoch(at + 6 * kHour).offsetFromUtc();
        if (next != offset) {
            for (qint64 near = at - 3 * kHour; near < at + 9 * kHour; near += kHour / 4) {
                instants << near - 1 << near << near + 1 << near + random.bounded(int(kHour / 4));
            }
        }
        offset = next;
    }
    for (int i = 0; i < 3'000; ++i)
        instants << qint64(random.generate64() % 4'500'000'000'000U) - 2'200'000'000'000;
    // Years around 1000, 9999 and 10000, and beyond what a calendar names.
    instants << -62'135'596'800'000 << -30'610'224'000'000 << -30'610'051'200'001 << 253'370'591'999'999
             << 253'370'592'000'000 << 253'402'300'799'999 << 253'402'300'800'000 << 400'000'000'000'000
             << -400'000'000'000'000 << 0 << -1 << 1;
    return instants;
}

} // namespace

void TestWallClock::everyInstant_readsAsQtWritesIt_data()
{
    addZones();
}

void TestWallClock::everyInstant_readsAsQtWritesIt()
{
    QFETCH(QByteArray, zone);
    QVERIFY(setLocalTimeZone(zone));
    WallClock clock;
    const QVector<qint64> instants = interestingInstants();
    QVERIFY(instants.size() > 3'000);
    for (const qint64 instant : instants) {
        const QString text = qtText(instant);
        QCOMPARE(clock.text(instant), text);
        const QDateTime expected = qtTime(text);
        const WallClock::Time time = clock.reread(instant);
        QCOMPARE(time.isValid, expected.isValid());
        QCOMPARE(time.msecs, expected.toMSecsSinceEpoch());
    }
}

void TestWallClock::everyText_meansWhatQtSays_data()
{
    addZones();
}

void TestWallClock::everyText_meansWhatQtSays()
{
    QFETCH(QByteArray, zone);
    QVERIFY(setLocalTimeZone(zone));
    WallClock clock;
    // Wall-clock readings taken as if they were UTC: in a zone with a gap, some of them do not exist.
    for (const qint64 instant : interestingInstants()) {
        const QString text = QDateTime::fromMSecsSinceEpoch(instant, Qt::UTC).toString(WallClock::format());
        const QDateTime expected = qtTime(text);
        const WallClock::Time time = clock.parse(text);
        QVERIFY2(time.isValid == expected.isValid(), qPrintable(text));
        QVERIFY2(time.msecs == expected.toMSecsSinceEpoch(), qPrintable(text));
    }
}

void TestWallClock::repeatedHour_isReadAsItsFirstPass()
{
    QVERIFY(setLocalTimeZone("Europe/Berlin"));
    constexpr qint64 kSummer = 1'761'438'600'000; // 2025-10-26 02:30 in summer time
    constexpr qint64 kWinter = kSummer + kHour;   // the same reading in standard time
    WallClock clock;
    QCOMPARE(clock.text(kSummer), QStringLiteral("2025-10-26 02:30:00.000"));
    QCOMPARE(clock.text(kWinter), clock.text(kSummer));
    for (const qint64 readBefore : {kSummer - 2 * kHour, kWinter + 2 * kHour}) { // the order of reading does not matter
        QCOMPARE(clock.reread(readBefore).msecs, readBefore);
        QCOMPARE(clock.reread(kWinter).msecs, kSummer);
        QCOMPARE(clock.reread(kSummer).msecs, kSummer);
        QCOMPARE(clock.parse(QStringLiteral("2025-10-26 02:59:59.999")).msecs, kSummer + kHour / 2 - 1);
    }
}

void TestWallClock::oddTexts_areReadLikeQt_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"",
                             " ",
                             "~",
                             "2026-01-01",
                             "2026-01-01 00:00:00",
                             "2026-01-01 00:00:00.00",
                             "2026-01-01 00:00:00.0000",
                             "2026-1-01 00:00:00.000",
                             "2026-13-01 00:00:00.000",
                             "2026-00-01 00:00:00.000",
                             "2026-02-29 00:00:00.000",
                             "2024-02-29 00:00:00.000",
                             "2000-02-29 12:00:00.000",
                             "1900-02-29 12:00:00.000",
                             "2026-04-31 00:00:00.000",
                             "2026-01-01 24:00:00.000",
                             "2026-01-01 23:60:00.000",
                             "2026-01-01 23:59:60.000",
                             "2026-01-01T00:00:00.000",
                             "2026/01/01 00:00:00.000",
                             "+026-01-01 00:00:00.000",
                             "-026-01-01 00:00:00.000",
                             "0000-01-01 00:00:00.000",
                             "0001-01-01 00:00:00.000",
                             "0999-12-31 23:59:59.999",
                             "1000-01-01 00:00:00.000",
                             "9999-12-31 23:59:59.999",
                             "10000-01-01 00:00:00.000",
                             " 2026-01-01 00:00:00.000",
                             "2026-01-01 00:00:00.000 ",
                             "2026-01-01 00:00:00,000",
                             "２０２６-01-01 00:00:00.000",
                             "2026-01-01 00:00:00.00a",
                             "2026-01-01 00:00:00.000 ~ 2026-01-01 00:00:01.000",
                             "1582-10-10 00:00:00.000",
                             "1969-12-31 23:59:59.999",
                             "2038-01-19 03:14:08.000"})
        QTest::newRow(text) << QString::fromUtf8(text);
}

void TestWallClock::oddTexts_areReadLikeQt()
{
    QFETCH(QString, text);
    for (const char *zone : {"UTC", "America/New_York"}) {
        QVERIFY(setLocalTimeZone(zone));
        WallClock clock;
        const QDateTime expected = qtTime(text);
        const WallClock::Time time = clock.parse(text);
        QCOMPARE(time.isValid, expected.isValid());
        QCOMPARE(time.msecs, expected.toMSecsSinceEpoch());
    }
}

QTEST_APPLESS_MAIN(TestWallClock)
#include "tst_wallclock.moc"
