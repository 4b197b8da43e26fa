// The real analysis keeps messages in binary form and texts to itself; it must still say what the plain one in
// textanalysis.h says, which does everything with texts. Random captures in several time zones, most of them around the
// changes of their clocks. SWITCHPANEL_SEED and SWITCHPANEL_ROUNDS change the seed and the number of rounds of all
// zones together; a failing round prints the seed that repeats it alone.
#include "packetAnalysisWorker.h"

#include "localtimezone.h"
#include "randomcapture.h"

#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>
#include <limits>
#include <stdexcept>

using textanalysis::Records;

namespace {

constexpr quint64 kDefaultSeed = 20231029;
constexpr int kDefaultRounds = 2100;

const QList<QByteArray> kZones{"UTC",          "Europe/Berlin", "America/New_York", "Australia/Lord_Howe",
                               "Pacific/Apia", "Asia/Kolkata"};

quint64 firstSeed()
{
    bool given = false;
    const quint64 seed = qEnvironmentVariable("SWITCHPANEL_SEED").toULongLong(&given);
    return given ? seed : kDefaultSeed;
}

int roundsPerZone()
{
    bool given = false;
    const int rounds = qEnvironmentVariableIntValue("SWITCHPANEL_ROUNDS", &given);
    const int zones = kZones.size();
    return ((given ? rounds : kDefaultRounds) + zones - 1) / zones;
}

/// Everything one run of the worker says.
struct Observed
{
    QStringList signalOrder; ///< names, repetitions of progress once
    QVector<int> progress;
    QString error;
    QVariantList results;
    QVariantMap statistics;
};

Observed observe(PacketAnalysisWorker &worker)
{
    Observed observed;
    QObject context; // ends the connections with the run
    const auto note = [&observed](const QString &name) {
        if (observed.signalOrder.isEmpty() || observed.signalOrder.last() != name)
            observed.signalOrder.append(name);
    };
    QObject::connect(&worker, &PacketAnalysisWorker::progress, &context, [&](int current, int total) {
        note(QStringLiteral("progress"));
        observed.progress.append(current == total ? current : -1);
    });
    QObject::connect(&worker, &PacketAnalysisWorker::signalResults, &context,
                     [&](const QVariantList &results, const QVariantMap &statistics) {
                         note(QStringLiteral("signalResults"));
                         observed.results = results;
                         observed.statistics = statistics;
                     });
    QObject::connect(&worker, &PacketAnalysisWorker::error, &context, [&](const QString &message) {
        note(QStringLiteral("error"));
        observed.error = message;
    });
    QObject::connect(&worker, &PacketAnalysisWorker::finished, &context, [&] { note(QStringLiteral("finished")); });
    worker.run();
    return observed;
}

/// Another sequence for each zone, the same on every machine.
RandomSource randomFor(const QByteArray &zone, quint64 seed)
{
    return RandomSource(seed + (static_cast<quint64>(kZones.indexOf(zone)) << 48U));
}

QVariantList toVariants(const Records &records)
{
    QVariantList list;
    for (const QVariantMap &record : records)
        list.append(record);
    return list;
}

QVariant toVariant(const textanalysis::CheckResult &result)
{
    return QVariantList{result.first, QVariant(result.second)};
}

/// What a call gives, or that it refused.
QVariant valueOrRefusal(const std::function<QVariant()> &call)
{
    try {
        return call();
    } catch (const std::runtime_error &) {
        return QStringLiteral("refused: too many findings");
    }
}

QStringList outcomeDifferences(const textanalysis::Outcome &expected, Observed observed)
{
    const QStringList order =
        expected.tooManyFindings
            ? QStringList{QStringLiteral("progress"), QStringLiteral("error"), QStringLiteral("finished")}
            : QStringList{QStringLiteral("progress"), QStringLiteral("signalResults"), QStringLiteral("finished")};
    QStringList found;
    if (observed.signalOrder != order)
        found.append(
            QStringLiteral("signals: expected %1, found %2 %3")
                .arg(order.join(QLatin1Char(' ')), observed.signalOrder.join(QLatin1Char(' ')), observed.error));
    if (observed.progress != expected.progress)
        found.append(QStringLiteral("progress: expected %1 reports, found %2 or other counts")
                         .arg(expected.progress.size())
                         .arg(observed.progress.size()));
    if (expected.tooManyFindings) {
        const QString prefix = QStringLiteral("Analysis error: ");
        if (!observed.error.startsWith(prefix) || observed.error.size() == prefix.size())
            found.append(QStringLiteral("error text: ") + observed.error);
        return found;
    }
    if (observed.statistics.take(QStringLiteral("syncSessions")).userType() != QMetaType::QVariantList)
        found.append(QStringLiteral("no list of sync sessions"));
    found += textanalysis::differences(expected.results, observed.results, QStringLiteral("results"));
    found += textanalysis::differences(expected.statistics, observed.statistics, QStringLiteral("statistics"));
    return found;
}

QByteArray report(const QByteArray &zone, quint64 seed, const QString &what, const QStringList &differences)
{
    const QString head =
        QStringLiteral("%1 differences; repeat with SWITCHPANEL_SEED=%2 SWITCHPANEL_ROUNDS=1 and row %3\n%4\n")
            .arg(differences.size())
            .arg(seed)
            .arg(QString::fromLatin1(zone), what);
    return (head + differences.mid(0, 12).join(QLatin1Char('\n'))).toUtf8();
}

} // namespace

class TestAnalysisEquivalence : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void randomCaptures_data() { addZones(); }
    void randomCaptures();
    void randomRecords_data() { addZones(); }
    void randomRecords();
    void everyAmbiguousMinute_data() { addZones(); }
    void everyAmbiguousMinute();
    void moreThanTheStoreHolds_data();
    void moreThanTheStoreHolds();
    void findingsUpToTheLimit_data();
    void findingsUpToTheLimit();

private:
    static void addZones();
    QStringList compare(const randomcapture::Capture &capture, PacketAnalysisWorker &worker) const;

    QTemporaryDir _folder;
};

void TestAnalysisEquivalence::initTestCase()
{
    QVERIFY(_folder.isValid());
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    qInfo("seed %llu, %d rounds for each of %d zones", firstSeed(), roundsPerZone(), int(kZones.size()));
}

void TestAnalysisEquivalence::init()
{
    QVERIFY(setLocalTimeZone("UTC"));
}

void TestAnalysisEquivalence::addZones()
{
    QTest::addColumn<QByteArray>("zone");
    for (const QByteArray &zone : kZones)
        QTest::newRow(zone.constData()) << zone;
}

QStringList TestAnalysisEquivalence::compare(const randomcapture::Capture &capture, PacketAnalysisWorker &worker) const
{
    const QString path = _folder.filePath(QStringLiteral("round.pcap"));
    if (!capturebuilder::writeFile(path, capture.file))
        return {QStringLiteral("the capture cannot be written")};
    worker.setFilePath(path);
    worker.setExpectedSlaveCount(capture.settings.expectedSlaveCount);
    worker.setSlaveAnalysisInterval(capture.settings.slaveAnalysisInterval);
    const Observed observed = observe(worker);
    return outcomeDifferences(textanalysis::analyse(capture.packets, capture.settings), observed);
}

void TestAnalysisEquivalence::randomCaptures()
{
    QFETCH(QByteArray, zone);
    QVERIFY(setLocalTimeZone(zone));
    PacketAnalysisWorker reused;
    for (int round = 0; round < roundsPerZone(); ++round) {
        const quint64 seed = firstSeed() + static_cast<quint64>(round);
        RandomSource random = randomFor(zone, seed);
        const randomcapture::Capture capture = randomcapture::capture(random, zone);
        PacketAnalysisWorker fresh;
        // The view model runs one worker again and again; nothing of an earlier run may be left in it.
        const QStringList differences = compare(capture, round % 2 == 0 ? fresh : reused);
        QVERIFY2(differences.isEmpty(), report(zone, seed, capture.description, differences).constData());
    }
}

void TestAnalysisEquivalence::randomRecords()
{
    QFETCH(QByteArray, zone);
    QVERIFY(setLocalTimeZone(zone));
    for (int round = 0; round < roundsPerZone(); round += 3) { // seven calls each: a third of the rounds will do
        const quint64 seed = firstSeed() + static_cast<quint64>(round);
        RandomSource random = randomFor(zone, seed);
        const qint64 base = randomcapture::baseTime(random, zone);
        const textanalysis::Settings settings = randomcapture::settings(random);
        const auto list = [&] { return randomcapture::records(random, zone, base, random.below(24)); };
        const Records announce = list();
        const Records sync = list();
        const Records followUp = list();
        const Records delayReq = list();
        const int responses = random.chance(90) ? random.below(24) : 200; // enough for long lists of one sequence id
        const Records delayResp = randomcapture::records(random, zone, base, responses);
        static const QVector<qint64> kEnds{0, std::numeric_limits<qint64>::min(), std::numeric_limits<qint64>::max()};
        const qint64 cutoff = random.chance(90) ? textanalysis::lastSyncTime(sync) : random.pick(kEnds);
        const int count = settings.expectedSlaveCount;
        const double interval = settings.slaveAnalysisInterval;
        PacketAnalysisWorker worker;
        worker.setSlaveAnalysisInterval(interval);

        QStringList found;
        const auto check = [&found](const char *name, const std::function<QVariant()> &expected,
                                    const std::function<QVariant()> &actual) {
            found += textanalysis::differences(valueOrRefusal(expected), valueOrRefusal(actual), QLatin1String(name));
        };
        check(
            "filterDataBeforeTimestamp",
            [&] { return toVariants(textanalysis::filterDataBeforeTimestamp(sync, cutoff)); },
            [&] { return toVariants(worker.filterDataBeforeTimestamp(sync, cutoff)); });
        check(
            "filterDelayMessagesBeforeLastSync",
            [&] { return toVariants(textanalysis::filterDelayMessagesBeforeLastSync(delayReq, cutoff)); },
            [&] { return toVariants(worker.filterDelayMessagesBeforeLastSync(delayReq, cutoff)); });
        check(
            "filterSyncMessagesBeforeLastSync",
            [&] { return toVariants(textanalysis::filterSyncMessagesBeforeLastSync(sync, cutoff)); },
            [&] { return toVariants(worker.filterSyncMessagesBeforeLastSync(sync, cutoff)); });
        check(
            "checkMessageInterval",
            [&] { return toVariant(textanalysis::checkMessageInterval(sync, 1000, QStringLiteral("Sync"))); },
            [&] { return toVariant(worker.checkMessageInterval(sync, 1000, QStringLiteral("Sync"))); });
        check(
            "checkSlaveResponseWithDetails",
            [&] { return toVariant(textanalysis::checkSlaveResponseWithDetails(sync, delayReq, count, interval)); },
            [&] { return toVariant(worker.checkSlaveResponseWithDetails(sync, delayReq, count)); });
        check(
            "checkDelayReqRespMatching",
            [&] { return toVariant(textanalysis::checkDelayReqRespMatching(delayReq, delayResp)); },
            [&] { return toVariant(worker.checkDelayReqRespMatching(delayReq, delayResp)); });
        check(
            "performHealthCheckFromStream",
            [&] {
                return textanalysis::performHealthCheckFromStream(announce, sync, followUp, delayReq, delayResp, count,
                                                                  interval);
            },
            [&] { return worker.performHealthCheckFromStream(announce, sync, followUp, delayReq, delayResp, count); });
        const QString what =
            QStringLiteral("records around %1 ms, %2 slaves, interval %3").arg(base).arg(count).arg(interval);
        QVERIFY2(found.isEmpty(), report(zone, seed, what, found).constData());
    }
}

void TestAnalysisEquivalence::everyAmbiguousMinute()
{
    // One message of each kind in every minute of the three hours around each change, also those of other zones.
    QFETCH(QByteArray, zone);
    QVERIFY(setLocalTimeZone(zone));
    const QList<qint64> changes{1679792400000, 1698541200000,  // Berlin, 2023
                                1678604400000, 1699164000000,  // New York, 2023
                                1680361200000, 1696087800000,  // Lord Howe, 2023
                                1617458400000, 1601128800000}; // Apia, 2021 and 2020
    for (const qint64 change : changes) {
        randomcapture::Capture capture;
        for (int minute = -90; minute <= 90; ++minute) {
            for (const auto type :
                 {capturebuilder::PtpType::Announce, capturebuilder::PtpType::Sync, capturebuilder::PtpType::FollowUp,
                  capturebuilder::PtpType::DelayReq, capturebuilder::PtpType::DelayResp})
            {
                capturebuilder::PtpMessage message;
                message.type = type;
                message.sequenceId = static_cast<quint16>(minute + 90);
                const auto time = capturebuilder::RecordTime::fromMilliseconds(change + minute * 60000LL);
                capture.packets.append(capturebuilder::ptpOverUdp(time, QStringLiteral("10.0.0.1"), message));
            }
        }
        capture.file = capturebuilder::toPcap(capture.packets);
        capture.settings.expectedSlaveCount = 1;
        capture.settings.slaveAnalysisInterval = 60;
        PacketAnalysisWorker worker;
        const QStringList found = compare(capture, worker);
        QVERIFY2(found.isEmpty(), report(zone, 0, QStringLiteral("change at %1 ms").arg(change), found).constData());
    }
}

void TestAnalysisEquivalence::moreThanTheStoreHolds_data()
{
    QTest::addColumn<int>("messages");
    // Each time the store of 50 000 is full it is cut by a fifth. The Announce list then has exactly a fifth of the
    // store's capacity, which is not yet too long, the second time more.
    QTest::newRow("50 001 messages") << 50001;
    QTest::newRow("60 001 messages") << 60001;
}

void TestAnalysisEquivalence::moreThanTheStoreHolds()
{
    QFETCH(int, messages);
    randomcapture::Capture capture;
    RandomSource random(firstSeed());
    for (int i = 0; i < messages; ++i) {
        static const QVector<capturebuilder::PtpType> kTypes{
            capturebuilder::PtpType::Sync, capturebuilder::PtpType::DelayReq, capturebuilder::PtpType::DelayResp};
        capturebuilder::PtpMessage message;
        message.type = i % 5 == 0 ? capturebuilder::PtpType::Announce : random.pick(kTypes);
        message.sequenceId = static_cast<quint16>(i);
        const auto time = capturebuilder::RecordTime::fromMilliseconds(1698539400000 + i * 7LL);
        capture.packets.append(capturebuilder::ptpOverUdp(time, QStringLiteral("10.0.0.1"), message));
    }
    capture.file = capturebuilder::toPcap(capture.packets);
    capture.settings.expectedSlaveCount = 1;
    PacketAnalysisWorker worker;
    const QStringList found = compare(capture, worker);
    QVERIFY2(found.isEmpty(),
             report("UTC", firstSeed(), QStringLiteral("%1 messages").arg(messages), found).constData());
}

void TestAnalysisEquivalence::findingsUpToTheLimit_data()
{
    QTest::addColumn<int>("slaves");
    // Two windows without a request, one interval of Sync off its mark.
    QTest::newRow("299 999 findings") << 149999;
    QTest::newRow("300 001 findings") << 150000;
}

void TestAnalysisEquivalence::findingsUpToTheLimit()
{
    QFETCH(int, slaves);
    randomcapture::Capture capture;
    for (const qint64 offset : {0, 2000, 3000}) {
        capturebuilder::PtpMessage message;
        const auto time = capturebuilder::RecordTime::fromMilliseconds(1700000000000 + offset);
        capture.packets.append(capturebuilder::ptpOverUdp(time, QStringLiteral("10.0.0.100"), message));
    }
    capture.file = capturebuilder::toPcap(capture.packets);
    capture.settings.expectedSlaveCount = slaves;
    PacketAnalysisWorker worker;
    const QStringList found = compare(capture, worker);
    QVERIFY2(found.isEmpty(), report("UTC", 0, QStringLiteral("%1 slaves").arg(slaves), found).constData());
}

QTEST_GUILESS_MAIN(TestAnalysisEquivalence)
#include "tst_analysis_equivalence.moc"
