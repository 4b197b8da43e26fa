// One analysis of one capture file: packets in, records, checks and statistics out.
#pragma once

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <atomic>
#include <functional>
#include <memory>

namespace pcpp {
class PcapFileReaderDevice;
}
namespace PTPv2 {
class PTPv2Analyzer;
class PTPv2Parser;
} // namespace PTPv2
namespace analysis {
class CaptureTally;
class CaptureTexts;
class MessageStore;
class WallClock;
} // namespace analysis

/*!
    Reads a capture and judges the health of its PTPv2 network (IEEE 1588-2008).

    Thread: lives on the thread of its owner's choice without a parent; the setters are called while run() is not
   running, stopProcessing() and abandon() from any thread at any time. Everything else, all signals included, happens
   on the thread that run() is called on.

    Signals of one run, in order: progress (repeatedly), signalResults, finished. A file that cannot be opened: one or
   two error signals and no finished. An analysis that breaks off with an exception: error, then finished. A run that
   was stopped reports what it has read; one that was abandoned reports nothing but finished.

    The packet loop keeps messages in binary form and allocates nothing per packet; texts are made at the end, for the
   records that are left.
*/
class PacketAnalysisWorker : public QObject
{
    Q_OBJECT

public:
    explicit PacketAnalysisWorker(QObject *parent = nullptr);
    ~PacketAnalysisWorker() override;

    //! The capture file, as the user chose it.
    void setFilePath(const QString &path) { _filePath = path; }
    //! How many slaves answer on a healthy site; default 9. With 0 or less, whoever was seen is expected.
    void setExpectedSlaveCount(int count) { _expectedSlaveCount = count; }
    //! Length of a window of the slave check in seconds, default 1.0; rounded to whole seconds, at least one. A value
    //! that is not a finite number counts as the default.
    void setSlaveAnalysisInterval(double seconds) { _slaveAnalysisInterval = seconds; }
    //! Called on the run's thread once run() has cleared the stop flag: from then on a stop is not lost.
    void setRunBegunCallback(std::function<void()> callback) { _runBegun = std::move(callback); }

    //! Ends the run as soon as possible and skips everything behind the packet loop; lasts until clearAbandoned().
    void abandon() { _isAbandoned.store(true, std::memory_order_relaxed); }
    void clearAbandoned() { _isAbandoned.store(false, std::memory_order_relaxed); }

    // Checks over lists of message records. Times are milliseconds since the Unix epoch; a record whose "timestamp"
    // does not parse is left out by every filter.

    //! Records at or before the cut-off.
    QList<QVariantMap> filterDataBeforeTimestamp(const QList<QVariantMap> &records, qint64 cutoff) const;
    //! Records strictly before the cut-off.
    QList<QVariantMap> filterDelayMessagesBeforeLastSync(const QList<QVariantMap> &records, qint64 cutoff) const;
    QList<QVariantMap> filterSyncMessagesBeforeLastSync(const QList<QVariantMap> &records, qint64 cutoff) const;
    //! All checks; the health check map. Throws std::runtime_error over 300 000 findings.
    QVariantMap performHealthCheckFromStream(const QList<QVariantMap> &announce, const QList<QVariantMap> &sync,
                                             const QList<QVariantMap> &followUp, const QList<QVariantMap> &delayReq,
                                             const QList<QVariantMap> &delayResp, int expectedSlaveCount) const;
    //! Status and findings; throws std::runtime_error over 300 000 findings.
    QPair<QString, QList<QVariant>> checkSlaveResponseWithDetails(const QList<QVariantMap> &sync,
                                                                  const QList<QVariantMap> &delayReq,
                                                                  int expectedSlaveCount) const;
    //! Status and findings.
    QPair<QString, QList<QVariant>> checkDelayReqRespMatching(const QList<QVariantMap> &delayReq,
                                                              const QList<QVariantMap> &delayResp) const;
    //! Status and findings of one message type; \a messageTypeName stands in the findings.
    QPair<QString, QList<QVariant>> checkMessageInterval(const QList<QVariantMap> &messages, int expectedIntervalMs,
                                                         const QString &messageTypeName) const;

signals:
    void finished();
    void error(const QString &errorMessage);
    //! Both are the number of packets read so far, PTP or not.
    void progress(int current, int total);
    void signalResults(const QVariantList &results, const QVariantMap &statistics);

public slots:
    void run();
    //! Ends the packet loop after the packet in hand; what was read is still analysed.
    void stopProcessing();

private:
    bool openPcapFile();
    bool openReader(const QByteArray &encodedPath);
    void processPcapPackets();
    int readPackets(analysis::MessageStore &store, analysis::CaptureTally &tally, analysis::WallClock &clock);
    QVariantList syncSessions() const;
    QVariantMap healthCheck(const analysis::MessageStore &store, analysis::CaptureTexts &texts,
                            analysis::WallClock &clock) const;
    bool isStopped() const;
    bool isAbandoned() const { return _isAbandoned.load(std::memory_order_relaxed); }

    QString _filePath;
    std::atomic<bool> _isStopRequested{false}; // relaxed: it carries no data
    std::atomic<bool> _isAbandoned{false};
    int _expectedSlaveCount = 9;
    std::unique_ptr<PTPv2::PTPv2Parser> _parser;
    std::unique_ptr<PTPv2::PTPv2Analyzer> _analyzer;
    std::unique_ptr<pcpp::PcapFileReaderDevice> _reader;
    double _slaveAnalysisInterval = 1.0; // seconds
    int _maxRecordsInMemory = 50'000;
    std::function<void()> _runBegun;
};
