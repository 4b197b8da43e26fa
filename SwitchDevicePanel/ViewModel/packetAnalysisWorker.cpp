#include "packetAnalysisWorker.h"

#include "capturetally.h"
#include "capturetexts.h"
#include "debuglog.h"
#include "healthcheck.h"
#include "messagestore.h"
#include "recordlists.h"
#include "wallclock.h"

#include <QtCore/QDateTime>
#include <QtCore/QFileInfo>
#include <QtCore/QTextCodec>
#include <QtCore/QtEndian>

#include <IPv4Layer.h>
#include <Packet.h>
#include <PcapFileDevice.h>
#include <RawPacket.h>
#include <UdpLayer.h>
#include <ptpv2parser/ptpv2parser.h>

#include <exception>
#include <limits>

namespace {

constexpr qint64 kMaxFileSize = 1'073'741'824; // 1 GiB; exactly this is accepted
constexpr int kProgressPackets = 1'000;
constexpr int kCleanupPackets = 10'000;

// The analysed file's name may come from any desktop; the capture library takes bytes.
constexpr const char *kPathEncodings[] = {"UTF-8", "GBK", "GB2312", "Big5", "Shift_JIS", "EUC-JP", "ISO-8859-1"};

// Capture time in milliseconds since the epoch: the nanoseconds divided, towards zero.
qint64 captureMsecs(const timespec &time)
{
    constexpr qint64 kNanos = 1'000'000'000;
    constexpr qint64 kLastExact =
        std::numeric_limits<qint64>::max() / kNanos - 5'000; // leaves room for any 32-bit fraction
    const auto seconds = static_cast<qint64>(time.tv_sec);
    const auto nanoseconds = static_cast<qint64>(time.tv_nsec);
    if (seconds > -kLastExact && seconds < kLastExact)
        return (seconds * kNanos + nanoseconds) / 1'000'000;
    // A pcapng file can name years that nanoseconds in 64 bits cannot.
    constexpr qint64 kLast = std::numeric_limits<qint64>::max() / 2'000;
    return qBound(-kLast, seconds, kLast) * 1'000;
}

bool isPtpDatagram(pcpp::UdpLayer &udp)
{
    const pcpp::udphdr *header = udp.getUdpHeader();
    return PTPv2::PTPv2Parser::isPTPv2Port(qFromBigEndian<quint16>(header->portSrc))
           || PTPv2::PTPv2Parser::isPTPv2Port(qFromBigEndian<quint16>(header->portDst));
}

analysis::SourceAddress sourceOf(const pcpp::Packet &packet)
{
    const auto *ipv4 = packet.getLayerOfType<pcpp::IPv4Layer>();
    if (!ipv4)
        return {};
    return {ipv4->getSrcIPv4Address().toInt(), true};
}

analysis::TypeEntry typeEntryOf(const analysis::StoredMessage &stored)
{
    return {stored.readMsecs, stored.source.ipv4, stored.message.header.sequenceId, stored.source.isKnown,
            stored.hasTime};
}

analysis::CheckMessages checkMessages(const analysis::MessageQueue<analysis::TypeEntry> &entries,
                                      analysis::CaptureTexts &texts)
{
    analysis::CheckMessages messages;
    messages.reserve(entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const analysis::TypeEntry &entry = entries[i];
        analysis::CheckMessage message;
        message.msecs = entry.msecs;
        message.hasTime = entry.hasTime;
        message.source = texts.sourceNumber({entry.ipv4, entry.hasAddress});
        message.sequence = entry.sequenceId;
        messages.push_back(message);
    }
    return messages;
}

QPair<QString, QList<QVariant>> toPair(const analysis::CheckResult &result)
{
    return {result.status, analysis::toVariantList(result.findings)};
}

void logFiltered(const char *what, const QList<QVariantMap> &kept, const QList<QVariantMap> &all, const char *when,
                 qint64 cutoff)
{
    logDebug() << what << kept.size() << "/" << all.size() << when
               << QDateTime::fromMSecsSinceEpoch(cutoff).toString(analysis::WallClock::format());
}

} // namespace

PacketAnalysisWorker::PacketAnalysisWorker(QObject *parent)
    : QObject(parent)
    , _parser(std::make_unique<PTPv2::PTPv2Parser>())
    , _analyzer(std::make_unique<PTPv2::PTPv2Analyzer>())
{}

PacketAnalysisWorker::~PacketAnalysisWorker() = default;

void PacketAnalysisWorker::run()
{
    _isStopRequested.store(false, std::memory_order_relaxed);
    if (_runBegun)
        _runBegun();
    try {
        if (!openPcapFile()) {
            emit error(QStringLiteral("Failed to open pcap file: ") + _filePath);
            return;
        }
        processPcapPackets();
        emit finished();
    } catch (const std::exception &exception) {
        emit error(QStringLiteral("Analysis error: %1").arg(QString::fromUtf8(exception.what())));
        emit finished();
    }
}

void PacketAnalysisWorker::stopProcessing()
{
    _isStopRequested.store(true, std::memory_order_relaxed);
}

bool PacketAnalysisWorker::isStopped() const
{
    return _isStopRequested.load(std::memory_order_relaxed) || isAbandoned();
}

bool PacketAnalysisWorker::openPcapFile()
{
    const QFileInfo file(_filePath);
    if (!file.exists()) {
        emit error(QStringLiteral("文件不存在：") + _filePath);
        return false;
    }
    if (file.size() > kMaxFileSize) {
        emit error(QStringLiteral("文件大小超过1GB限制，请选择小于1GB的文件导入。"));
        return false;
    }
    logDebug() << "File size:" << file.size() << "bytes (" << file.size() / 1'048'576 << "MB)";
    if (!file.isFile())
        return false; // a folder is no capture, and opening a pipe would wait for its other end

    for (const char *encoding : kPathEncodings) {
        const QTextCodec *codec = QTextCodec::codecForName(encoding);
        if (!codec) {
            logDebug() << "Codec not found for encoding:" << encoding;
            continue;
        }
        const QByteArray path = codec->fromUnicode(_filePath);
        logDebug() << "Trying encoding:" << encoding << "Path:" << _filePath << "->" << path;
        if (openReader(path)) {
            logDebug() << "Successfully opened pcap file with encoding:" << encoding;
            return true;
        }
        logDebug() << "Failed to open pcap file with encoding:" << encoding;
    }
    logDebug() << "Trying with original path encoding";
    const bool isOpen = openReader(QByteArray::fromStdString(_filePath.toStdString()));
    logDebug() << (isOpen ? "Successfully opened with original path encoding"
                          : "Failed to open with original path encoding");
    return isOpen;
}

bool PacketAnalysisWorker::openReader(const QByteArray &encodedPath)
{
    _reader = std::make_unique<pcpp::PcapFileReaderDevice>(encodedPath.toStdString());
    return _reader->open();
}

void PacketAnalysisWorker::processPcapPackets()
{
    if (!_reader || !_parser || !_analyzer)
        return;
    analysis::WallClock clock;
    analysis::MessageStore store(_maxRecordsInMemory);
    analysis::CaptureTally tally;
    _analyzer->clear();

    const int packets = readPackets(store, tally, clock);
    if (isAbandoned())
        return;
    emit progress(packets, packets);
    tally.checkLimits(_analyzer->sessionCount()); // those of the packets behind the last report

    analysis::CaptureTexts texts(clock);
    QVariantMap statistics = tally.statistics(store, texts);
    statistics.insert(QStringLiteral("syncSessions"), syncSessions());
    const QVariantMap health = healthCheck(store, texts, clock);
    statistics.insert(QStringLiteral("healthCheck"), health);
    logDebug() << "Before signalResults - Abnormal packets count:"
               << health.value(QStringLiteral("abnormalPackets")).toList().size();

    QVariantList results;
    results.reserve(static_cast<int>(store.messages().size()));
    for (std::size_t i = 0; i < store.messages().size(); ++i)
        results.append(texts.record(store.messages()[i]));
    if (isAbandoned())
        return;
    emit signalResults(results, statistics);
}

int PacketAnalysisWorker::readPackets(analysis::MessageStore &store, analysis::CaptureTally &tally,
                                      analysis::WallClock &clock)
{
    int packets = 0;
    int sinceProgress = 0;
    pcpp::RawPacket raw;
    while (!isStopped() && _reader->getNextPacket(raw)) {
        ++packets;
        // Nothing behind UDP is of interest; parsing on would be wasted on the video streams of a site.
        pcpp::Packet packet(&raw, pcpp::UDP);
        auto *udp = packet.getLayerOfType<pcpp::UdpLayer>();
        if (udp && isPtpDatagram(*udp) && _parser->parsePacket(packet)) {
            _analyzer->addMessage(*_parser);
            const qint64 msecs = captureMsecs(raw.getPacketTimeStamp());
            const analysis::WallClock::Time read = clock.reread(msecs);
            const analysis::StoredMessage stored{msecs, read.msecs, read.isValid, sourceOf(packet), _parser->message()};
            store.append(stored, typeEntryOf(stored));
            tally.add(stored);
            _parser->clear();
        }
        if (++sinceProgress < kProgressPackets)
            continue;
        sinceProgress = 0;
        emit progress(packets, packets);
        tally.checkLimits(_analyzer->sessionCount());
        if (packets % kCleanupPackets != 0)
            continue;
        if (const std::size_t removed = store.removeExcess())
            logDebug() << "Memory cleanup: removed" << removed << "old packets";
    }
    return packets;
}

QVariantList PacketAnalysisWorker::syncSessions() const
{
    QVariantList entries;
    for (const PTPv2::SyncSession &session : _analyzer->getSyncSessions()) {
        entries.append(
            QVariantMap{{QStringLiteral("masterPort"), QString::fromStdString(session.masterPortIdentity.toString())},
                        {QStringLiteral("clockOffset"), session.clockOffset},
                        {QStringLiteral("pathDelay"), session.pathDelay},
                        {QStringLiteral("hasValidSync"), session.hasValidSync},
                        {QStringLiteral("lastSyncSequence"), int(session.lastSyncSequence)},
                        {QStringLiteral("lastFollowUpSequence"), int(session.lastFollowUpSequence)}});
    }
    return entries;
}

QVariantMap PacketAnalysisWorker::healthCheck(const analysis::MessageStore &store, analysis::CaptureTexts &texts,
                                              analysis::WallClock &clock) const
{
    const analysis::CheckLists lists{checkMessages(store.list(analysis::MessageStore::Announce), texts),
                                     checkMessages(store.list(analysis::MessageStore::Sync), texts),
                                     checkMessages(store.list(analysis::MessageStore::FollowUp), texts),
                                     checkMessages(store.list(analysis::MessageStore::DelayReq), texts),
                                     checkMessages(store.list(analysis::MessageStore::DelayResp), texts)};
    return analysis::checkHealth(lists, {_expectedSlaveCount, _slaveAnalysisInterval}, texts, clock).toMap();
}

QList<QVariantMap> PacketAnalysisWorker::filterDataBeforeTimestamp(const QList<QVariantMap> &records,
                                                                   qint64 cutoff) const
{
    analysis::WallClock clock;
    const QList<QVariantMap> kept = analysis::recordsBefore(records, cutoff, analysis::Cutoff::Inclusive, clock);
    logFiltered("Filtered messages:", kept, records, "cutoff time:", cutoff);
    return kept;
}

QList<QVariantMap> PacketAnalysisWorker::filterDelayMessagesBeforeLastSync(const QList<QVariantMap> &records,
                                                                           qint64 cutoff) const
{
    analysis::WallClock clock;
    const QList<QVariantMap> kept = analysis::recordsBefore(records, cutoff, analysis::Cutoff::Strict, clock);
    logFiltered("Filtered Delay messages:", kept, records, "before last Sync at:", cutoff);
    return kept;
}

QList<QVariantMap> PacketAnalysisWorker::filterSyncMessagesBeforeLastSync(const QList<QVariantMap> &records,
                                                                          qint64 cutoff) const
{
    analysis::WallClock clock;
    const QList<QVariantMap> kept = analysis::recordsBefore(records, cutoff, analysis::Cutoff::Strict, clock);
    logFiltered("Filtered Sync messages:", kept, records, "before last Sync at:", cutoff);
    return kept;
}

QVariantMap PacketAnalysisWorker::performHealthCheckFromStream(
    const QList<QVariantMap> &announce, const QList<QVariantMap> &sync, const QList<QVariantMap> &followUp,
    const QList<QVariantMap> &delayReq, const QList<QVariantMap> &delayResp, int expectedSlaveCount) const
{
    analysis::WallClock clock;
    analysis::RecordTexts texts(clock);
    const analysis::CheckLists lists{texts.read(announce), texts.read(sync), texts.read(followUp), texts.read(delayReq),
                                     texts.read(delayResp)};
    return analysis::checkHealth(lists, {expectedSlaveCount, _slaveAnalysisInterval}, texts, clock).toMap();
}

QPair<QString, QList<QVariant>> PacketAnalysisWorker::checkSlaveResponseWithDetails(const QList<QVariantMap> &sync,
                                                                                    const QList<QVariantMap> &delayReq,
                                                                                    int expectedSlaveCount) const
{
    analysis::WallClock clock;
    analysis::RecordTexts texts(clock);
    const analysis::CheckMessages syncs = texts.read(sync);
    const analysis::CheckMessages requests = texts.read(delayReq);
    return toPair(analysis::checkSlaves(syncs, requests, {expectedSlaveCount, _slaveAnalysisInterval}, texts, clock));
}

QPair<QString, QList<QVariant>>
PacketAnalysisWorker::checkDelayReqRespMatching(const QList<QVariantMap> &delayReq,
                                                const QList<QVariantMap> &delayResp) const
{
    analysis::WallClock clock;
    analysis::RecordTexts texts(clock);
    const analysis::CheckMessages requests = texts.read(delayReq);
    const analysis::CheckMessages responses = texts.read(delayResp);
    return toPair(analysis::checkDelayMatching(requests, responses, texts));
}

QPair<QString, QList<QVariant>> PacketAnalysisWorker::checkMessageInterval(const QList<QVariantMap> &messages,
                                                                           int expectedIntervalMs,
                                                                           const QString &messageTypeName) const
{
    analysis::WallClock clock;
    analysis::RecordTexts texts(clock);
    return toPair(analysis::checkInterval(texts.read(messages), expectedIntervalMs, messageTypeName, texts));
}
