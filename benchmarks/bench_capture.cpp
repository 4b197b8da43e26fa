// Whole captures: the analysis against a bare libpcap loop and against tshark, its memory, and what comes after the
// packet loop. All ratios are taken within one run; machines are noisy.
#include "generatedcapture.h"
#include "peakmemory.h"

#include "packetAnalysisWorker.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
#include <QtCore/QLoggingCategory>
#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>
#include <QtCore/QTemporaryDir>

#include <pcap/pcap.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>

namespace {

constexpr std::int64_t kMebibyte = 1'048'576;

struct AnalysisTimes
{
    double loopSeconds = 0;
    double afterSeconds = 0;
    int records = 0;
    int findings = 0;
};

AnalysisTimes analyse(const QString &path)
{
    PacketAnalysisWorker worker;
    worker.setFilePath(path);
    AnalysisTimes times;
    QElapsedTimer timer;
    QObject::connect(&worker, &PacketAnalysisWorker::progress,
                     [&] { times.loopSeconds = double(timer.nsecsElapsed()) * 1e-9; });
    QObject::connect(&worker, &PacketAnalysisWorker::signalResults,
                     [&](const QVariantList &results, const QVariantMap &statistics) {
                         times.afterSeconds = double(timer.nsecsElapsed()) * 1e-9 - times.loopSeconds;
                         times.records = results.size();
                         times.findings = statistics.value(QStringLiteral("healthCheck"))
                                              .toMap()
                                              .value(QStringLiteral("abnormalPackets"))
                                              .toList()
                                              .size();
                     });
    QObject::connect(&worker, &PacketAnalysisWorker::error, [](const QString &message) {
        std::fprintf(stderr, "no analysis, no figure: %s\n", qPrintable(message));
        std::exit(1);
    });
    timer.start();
    worker.run();
    return times;
}

// The yardstick: every packet read, none looked at.
double bareLoopSeconds(const QString &path)
{
    QElapsedTimer timer;
    timer.start();
    char error[PCAP_ERRBUF_SIZE];
    pcap_t *capture = pcap_open_offline(path.toLocal8Bit().constData(), error);
    if (!capture)
        return 0;
    pcap_pkthdr *header = nullptr;
    const u_char *data = nullptr;
    while (pcap_next_ex(capture, &header, &data) == 1) {
    }
    pcap_close(capture);
    return double(timer.nsecsElapsed()) * 1e-9;
}

double bestOf(int rounds, const std::function<double()> &measure)
{
    double best = std::numeric_limits<double>::max();
    for (int i = 0; i < rounds; ++i)
        best = std::min(best, measure());
    return best;
}

void printRow(const char *what, const QString &value, const char *must, const char *goal)
{
    std::printf("%-58s %-26s must %-9s goal %s\n", what, qPrintable(value), must, goal);
    std::fflush(stdout);
}

QString ratioText(double part, double whole)
{
    return QStringLiteral("%1 x (%2 s / %3 s)").arg(part / whole, 0, 'f', 2).arg(part, 0, 'f', 2).arg(whole, 0, 'f', 2);
}

void benchLoop(const char *what, const QString &path, int rounds, const char *must, const char *goal)
{
    // Alternating, so that both see the same machine.
    double bare = std::numeric_limits<double>::max();
    double loop = bare;
    for (int i = 0; i < rounds; ++i) {
        bare = std::min(bare, bareLoopSeconds(path));
        loop = std::min(loop, analyse(path).loopSeconds);
    }
    printRow(what, ratioText(loop, bare), must, goal);
}

void benchAfterLoop(const char *what, const QString &path, int rounds)
{
    AnalysisTimes times;
    const double seconds = bestOf(rounds, [&] {
        times = analyse(path);
        return times.afterSeconds;
    });
    printRow(
        what,
        QStringLiteral("%1 s (%2 records, %3 findings)").arg(seconds, 0, 'f', 3).arg(times.records).arg(times.findings),
        "0.8 s", "0.4 s");
}

void benchTshark(const QString &path)
{
    const QString tshark = QStandardPaths::findExecutable(QStringLiteral("tshark"));
    if (tshark.isEmpty()) {
        std::printf("tshark is not installed: not compared\n");
        return;
    }
    QElapsedTimer timer;
    timer.start();
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    process.start(tshark,
                  {QStringLiteral("-r"), path, QStringLiteral("-Y"), QStringLiteral("ptp"), QStringLiteral("-T"),
                   QStringLiteral("fields"), QStringLiteral("-e"), QStringLiteral("frame.time_epoch"),
                   QStringLiteral("-e"), QStringLiteral("ip.src"), QStringLiteral("-e"),
                   QStringLiteral("ptp.v2.messagetype"), QStringLiteral("-e"), QStringLiteral("ptp.v2.sequenceid")});
    process.waitForFinished(-1);
    const double theirs = double(timer.nsecsElapsed()) * 1e-9;
    const double ours = bestOf(3, [&] {
        const AnalysisTimes times = analyse(path);
        return times.loopSeconds + times.afterSeconds;
    });
    printRow("whole analysis, faster than tshark with four fields", ratioText(theirs, ours), "60 x", "80 x");
}

void benchMemory(const char *what, const QString &path)
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--peak"), path});
    process.waitForFinished(-1);
    const double mebibytes = process.readAllStandardOutput().trimmed().toDouble() / kMebibyte;
    printRow(what, QStringLiteral("%1 MiB").arg(mebibytes, 0, 'f', 1), "150 MiB", "120 MiB");
}

// A process of its own: prints how far the analysis raised its peak.
int reportPeak(const QString &path)
{
    const std::int64_t idle = peakMemoryBytes();
    analyse(path);
    std::printf("%lld\n", static_cast<long long>(peakMemoryBytes() - idle));
    return 0;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Measures the capture analysis on captures that it generates."));
    parser.addHelpOption();
    const QCommandLineOption size(QStringLiteral("size"), QStringLiteral("Size of the large captures in MiB (1024)."),
                                  QStringLiteral("MiB"), QStringLiteral("1024"));
    const QCommandLineOption tsharkSize(
        QStringLiteral("tshark-size"),
        QStringLiteral("Size of the capture for the comparison with tshark in MiB (128)."), QStringLiteral("MiB"),
        QStringLiteral("128"));
    const QCommandLineOption rounds(QStringLiteral("rounds"), QStringLiteral("Rounds; the best one counts (3)."),
                                    QStringLiteral("N"), QStringLiteral("3"));
    const QCommandLineOption peak(QStringLiteral("peak"),
                                  QStringLiteral("Only print by how many bytes FILE raises the peak."),
                                  QStringLiteral("FILE"));
    parser.addOptions({size, tsharkSize, rounds, peak});
    parser.process(application);
    if (parser.isSet(peak))
        return reportPeak(parser.value(peak));

    const QTemporaryDir folder;
    const auto file = [&folder](const char *name) { return folder.filePath(QLatin1String(name)); };
    const std::int64_t bytes = (parser.value(size).toLongLong() - 1) * kMebibyte; // below the limit of 1 GiB
    const int count = std::max(1, parser.value(rounds).toInt());
    const std::int64_t messages = generateCapture(file("ptp.pcap"), Traffic::PtpOnly, bytes);
    const std::int64_t packets = generateCapture(file("video.pcap"), Traffic::VideoWithPtp, bytes);
    generateCapture(file("tail.pcap"), Traffic::HostileTail, 0);
    generateCapture(file("small.pcap"), Traffic::PtpOnly, std::min(bytes, 100 * kMebibyte));
    generateCapture(file("tshark.pcap"), Traffic::PtpOnly, parser.value(tsharkSize).toLongLong() * kMebibyte);
    if (messages == 0 || packets == 0) {
        std::fprintf(stderr, "cannot write captures to %s\n", qPrintable(folder.path()));
        return 1;
    }
    std::printf("%s MiB each: %lld PTP messages; %lld packets with 5 %% PTP\n", qPrintable(parser.value(size)),
                static_cast<long long>(messages), static_cast<long long>(packets));

    benchLoop("packet loop over a bare libpcap loop, PTP only", file("ptp.pcap"), count, "3 x", "2 x");
    benchLoop("packet loop over a bare libpcap loop, 5 % PTP", file("video.pcap"), count, "1.5 x", "1.2 x");
    benchAfterLoop("after the loop, full stores", file("ptp.pcap"), count);
    benchAfterLoop("after the loop, one sequence id, 70 000 findings", file("tail.pcap"), count);
    benchTshark(file("tshark.pcap"));
    benchMemory("peak memory, PTP only", file("ptp.pcap"));
    benchMemory("peak memory, PTP only, 100 MiB", file("small.pcap"));
    benchMemory("peak memory, one sequence id, 70 000 findings", file("tail.pcap"));
    return 0;
}
