#include "packetanalysisviewmodel.h"
#include "packetanalysisviewmodel_p.h"

#include "packetAnalysisWorker.h"

#include <QtCore/QDateTime>
#include <QtCore/QFileInfo>

#include <chrono>
#include <cmath>
#include <limits>

namespace {

constexpr unsigned long kThreadStopMsecs = 5'000;
constexpr double kProgressStep = 0.01; // percent; smaller moves are not announced

QString unknownText()
{
    return QStringLiteral("未知");
}

// A key that is present with an empty text reads as that text, not as the fallback.
QString textOr(const QVariantMap &map, const QString &key, const QString &fallback)
{
    const auto found = map.constFind(key);
    return found == map.constEnd() ? fallback : found->toString();
}

int expectedSlaves(int decoderCount)
{
    // One of the decoders is the master.
    return decoderCount == std::numeric_limits<int>::min() ? decoderCount : decoderCount - 1;
}

QString captureTimeText(qint64 msecs)
{
    return QDateTime::fromMSecsSinceEpoch(msecs).toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

} // namespace

PacketAnalysisViewModel::PacketAnalysisViewModel(QObject *parent)
    : QObject(parent)
    , _d(new Private)
{
    _d->thread = new QThread(this);
    _d->worker = new PacketAnalysisWorker;
    _d->worker->moveToThread(_d->thread);
    connect(_d->thread, &QThread::started, _d->worker, &PacketAnalysisWorker::run);
    connect(_d->worker, &PacketAnalysisWorker::finished, this, &PacketAnalysisViewModel::onWorkerFinished);
    connect(_d->worker, &PacketAnalysisWorker::error, this, &PacketAnalysisViewModel::onWorkerError);
    connect(_d->worker, &PacketAnalysisWorker::progress, this, &PacketAnalysisViewModel::onWorkerProgress);
    connect(_d->worker, &PacketAnalysisWorker::signalResults, this, &PacketAnalysisViewModel::onWorkerResults);

    // Queued behind everything that the run has emitted: when it arrives, the run is over for this object.
    connect(_d->thread, &QThread::finished, this, &PacketAnalysisViewModel::onThreadFinished);
    _d->worker->setRunBegunCallback(
        [this] { QMetaObject::invokeMethod(this, &PacketAnalysisViewModel::onRunBegun, Qt::QueuedConnection); });
}

PacketAnalysisViewModel::~PacketAnalysisViewModel()
{
    _d->worker->stopProcessing();
    // The stop alone would still make the checks and the records of what was read.
    _d->worker->abandon();
    stopThread();
    delete _d->worker;
    delete _d->thread;
}

// Runs

void PacketAnalysisViewModel::setSelectedFilePath(const QString &path)
{
    if (path == _d->selectedFilePath)
        return;
    abandonRun();
    _d->selectedFilePath = path;
    reset();
    emit selectedFilePathChanged();
}

void PacketAnalysisViewModel::analyzePacketFile(const QString &filePath)
{
    if (!_d->isAnalyzing)
        setSelectedFilePath(filePath);
}

void PacketAnalysisViewModel::startAnalysis()
{
    if (_d->isAnalyzing)
        return;
    if (_d->selectedFilePath.isEmpty()) {
        setLastError(QStringLiteral("No file selected"));
        return;
    }
    if (!QFileInfo::exists(_d->selectedFilePath)) {
        setLastError(QStringLiteral("File does not exist: ") + _d->selectedFilePath);
        return;
    }
    // A run may still be there: abandoned, or about to end (this is called from one of its own last signals).
    abandonRun();
    const int resets = reset();
    if (!isLatest(resets))
        return;
    _d->run.isStopRequested = false;
    _d->run.isStartPending = true;
    _d->input = {_d->selectedFilePath, expectedSlaves(_d->decoderCount), _d->slaveAnalysisInterval};
    setAnalyzing(true);
    if (_d->run.isStartPending && !_d->thread->isRunning())
        launchRun();
}

void PacketAnalysisViewModel::launchRun()
{
    _d->run.isStartPending = false;
    _d->run.isAbandoned = false;
    ++_d->run.started;
    _d->worker->clearAbandoned();
    _d->worker->setFilePath(_d->input.filePath);
    _d->worker->setExpectedSlaveCount(_d->input.expectedSlaveCount);
    _d->worker->setSlaveAnalysisInterval(_d->input.slaveAnalysisInterval);
    _d->thread->start();
}

void PacketAnalysisViewModel::stopAnalysis()
{
    _d->run.isStopRequested = true;
    _d->worker->stopProcessing();
}

void PacketAnalysisViewModel::onRunBegun()
{
    // run() clears the stop flag when it begins; a stop from before that is said again.
    if (_d->run.isStopRequested && _d->thread->isRunning())
        _d->worker->stopProcessing();
}

void PacketAnalysisViewModel::clearResults()
{
    abandonRun();
    reset();
    emit resultsCleared();
}

void PacketAnalysisViewModel::abandonRun()
{
    _d->run.isStartPending = false;
    if (!_d->thread->isRunning())
        return;
    _d->run.isAbandoned = true;
    _d->worker->abandon();
    _d->thread->quit();
}

void PacketAnalysisViewModel::onThreadFinished()
{
    ++_d->run.ended;
    if (_d->run.isStartPending && !_d->thread->isRunning())
        launchRun();
}

bool PacketAnalysisViewModel::isFromOldRun() const
{
    // Signals of a run come before its thread's finished(), so what arrives now belongs to the first run that has not
    // ended.
    const int arriving = _d->run.ended + 1;
    return arriving < _d->run.started || (arriving == _d->run.started && _d->run.isAbandoned);
}

void PacketAnalysisViewModel::stopThread()
{
    if (!_d->thread->isRunning())
        return;
    _d->thread->quit();
    if (_d->thread->wait(kThreadStopMsecs))
        return;
    // The worker hangs in the file system: nothing better is left than to end its thread as it stands.
    _d->thread->terminate();
    _d->thread->wait();
}

// Every change signal may be answered by clearing or by a new start; what this signal still has to say is then of no
// interest.

void PacketAnalysisViewModel::onWorkerFinished()
{
    if (isFromOldRun())
        return;
    const int resets = _d->resets;
    setAnalyzing(false);
    if (isLatest(resets))
        setAnalysisComplete(true);
    if (isLatest(resets))
        setProgressPercent(100);
    if (!isLatest(resets))
        return;
    stopThread();
    emit analysisFinished();
}

void PacketAnalysisViewModel::onWorkerError(const QString &errorMessage)
{
    if (isFromOldRun())
        return;
    const int resets = _d->resets;
    setAnalyzing(false);
    if (isLatest(resets))
        setLastError(errorMessage);
    if (!isLatest(resets))
        return;
    stopThread();
    emit analysisError(errorMessage);
}

void PacketAnalysisViewModel::onWorkerProgress(int current, int total)
{
    if (isFromOldRun())
        return;
    const int resets = _d->resets;
    setTotalPackets(total);
    if (isLatest(resets))
        setProgressPercent(total >= 1 ? static_cast<double>(current) / total * 100 : 0);
}

void PacketAnalysisViewModel::onWorkerResults(const QVariantList &results, const QVariantMap &statistics)
{
    if (isFromOldRun())
        return;
    const int resets = _d->resets;
    setResults(results);
    if (isLatest(resets))
        setStatistics(statistics);
    if (isLatest(resets))
        setPtpv2Packets(results.size());
}

// Setters: each stores and notifies only on a change.

int PacketAnalysisViewModel::reset()
{
    const int resets = ++_d->resets;
    setAnalyzing(false);
    setAnalysisComplete(false);
    setProgressPercent(0);
    setTotalPackets(0);
    setPtpv2Packets(0);
    setResults({});
    setStatistics({});
    setLastError(QString());
    return resets;
}

bool PacketAnalysisViewModel::isLatest(int resets) const
{
    return _d->resets == resets;
}

void PacketAnalysisViewModel::setAnalyzing(bool isAnalyzing)
{
    if (_d->isAnalyzing == isAnalyzing)
        return;
    _d->isAnalyzing = isAnalyzing;
    emit isAnalyzingChanged();
}

void PacketAnalysisViewModel::setAnalysisComplete(bool isComplete)
{
    if (_d->isAnalysisComplete == isComplete)
        return;
    _d->isAnalysisComplete = isComplete;
    emit isAnalysisCompleteChanged();
}

void PacketAnalysisViewModel::setProgressPercent(double percent)
{
    if (std::abs(_d->progressPercent - percent) <= kProgressStep)
        return;
    _d->progressPercent = percent;
    emit analysisProgressChanged();
}

void PacketAnalysisViewModel::setTotalPackets(int count)
{
    if (_d->totalPackets == count)
        return;
    _d->totalPackets = count;
    emit totalPacketsChanged();
}

void PacketAnalysisViewModel::setPtpv2Packets(int count)
{
    if (_d->ptpv2Packets == count)
        return;
    _d->ptpv2Packets = count;
    emit ptpv2PacketsChanged();
}

void PacketAnalysisViewModel::setResults(const QVariantList &results)
{
    if (_d->results == results)
        return;
    _d->results = results;
    emit analysisResultsChanged();
}

void PacketAnalysisViewModel::setStatistics(const QVariantMap &statistics)
{
    if (_d->statistics == statistics)
        return;
    _d->statistics = statistics;
    emit statisticsDataChanged();
}

void PacketAnalysisViewModel::setLastError(const QString &text)
{
    if (_d->lastError == text)
        return;
    _d->lastError = text;
    emit lastErrorMessageChanged();
}

void PacketAnalysisViewModel::setSlaveAnalysisInterval(double seconds)
{
    if (qFuzzyCompare(_d->slaveAnalysisInterval, seconds))
        return;
    _d->slaveAnalysisInterval = seconds;
    emit slaveAnalysisIntervalChanged();
}

void PacketAnalysisViewModel::setDecoderCount(int count)
{
    if (_d->decoderCount == count)
        return;
    _d->decoderCount = count;
    emit decoderCountChanged();
}

void PacketAnalysisViewModel::setExpectedSlaveCount(int count)
{
    if (_d->expectedSlaveCount == count)
        return;
    _d->expectedSlaveCount = count;
    emit expectedSlaveCountChanged();
}

// Readings

QString PacketAnalysisViewModel::selectedFilePath() const
{
    return _d->selectedFilePath;
}

QString PacketAnalysisViewModel::selectedFileName() const
{
    return QFileInfo(_d->selectedFilePath).fileName();
}

bool PacketAnalysisViewModel::isAnalyzing() const
{
    return _d->isAnalyzing;
}

bool PacketAnalysisViewModel::isAnalysisComplete() const
{
    return _d->isAnalysisComplete;
}

double PacketAnalysisViewModel::analysisProgress() const
{
    return _d->progressPercent;
}

double PacketAnalysisViewModel::progress() const
{
    return _d->progressPercent / 100;
}

int PacketAnalysisViewModel::totalPackets() const
{
    return _d->totalPackets;
}

int PacketAnalysisViewModel::ptpv2Packets() const
{
    return _d->ptpv2Packets;
}

QVariantList PacketAnalysisViewModel::analysisResults() const
{
    return _d->results;
}

QVariantList PacketAnalysisViewModel::packetResults() const
{
    return _d->results;
}

QVariantMap PacketAnalysisViewModel::statisticsData() const
{
    return _d->statistics;
}

QString PacketAnalysisViewModel::lastErrorMessage() const
{
    return _d->lastError;
}

QString PacketAnalysisViewModel::errorMessage() const
{
    return _d->lastError;
}

double PacketAnalysisViewModel::slaveAnalysisInterval() const
{
    return _d->slaveAnalysisInterval;
}

int PacketAnalysisViewModel::decoderCount() const
{
    return _d->decoderCount;
}

int PacketAnalysisViewModel::expectedSlaveCount() const
{
    return _d->expectedSlaveCount;
}

QVariantMap PacketAnalysisViewModel::section(const QString &name) const
{
    return _d->statistics.value(name).toMap();
}

int PacketAnalysisViewModel::messageCount(const QString &type) const
{
    return section(QStringLiteral("messageTypes")).value(type).toInt();
}

QString PacketAnalysisViewModel::healthText(const QString &key) const
{
    return textOr(section(QStringLiteral("healthCheck")), key, QStringLiteral("no anylse"));
}

QString PacketAnalysisViewModel::masterClockIp() const
{
    return textOr(_d->statistics, QStringLiteral("masterClockIp"), unknownText());
}

int PacketAnalysisViewModel::syncMessageCount() const
{
    return messageCount(QStringLiteral("SYNC"));
}

int PacketAnalysisViewModel::followUpMessageCount() const
{
    return messageCount(QStringLiteral("FOLLOW_UP"));
}

int PacketAnalysisViewModel::announceMessageCount() const
{
    return messageCount(QStringLiteral("ANNOUNCE"));
}

int PacketAnalysisViewModel::delayReqMessageCount() const
{
    return messageCount(QStringLiteral("DELAY_REQ"));
}

QString PacketAnalysisViewModel::captureTime() const
{
    const QVariantMap range = section(QStringLiteral("timeRange"));
    const qint64 first = range.value(QStringLiteral("firstSyncTime")).toLongLong();
    const qint64 second = range.value(QStringLiteral("secondLastSyncTime")).toLongLong();
    if (first < 1 || second < 1)
        return unknownText();
    return captureTimeText(first) + QLatin1String(" --- ") + captureTimeText(second);
}

int PacketAnalysisViewModel::uniqueSlaveCount() const
{
    return section(QStringLiteral("sourcePorts")).size();
}

QString PacketAnalysisViewModel::analysisResult() const
{
    const QString overall = overallHealthStatus();
    if (!abnormalPackets().isEmpty() || overall == QStringLiteral("异常"))
        return QStringLiteral("异常");
    if (overall == QStringLiteral("正常"))
        return QStringLiteral("正常");
    return _d->ptpv2Packets < 1 ? QStringLiteral("异常") : QStringLiteral("基本正常");
}

QString PacketAnalysisViewModel::announceIntervalStatus() const
{
    return healthText(QStringLiteral("announceIntervalStatus"));
}

QString PacketAnalysisViewModel::syncIntervalStatus() const
{
    return healthText(QStringLiteral("syncIntervalStatus"));
}

QString PacketAnalysisViewModel::followUpIntervalStatus() const
{
    return healthText(QStringLiteral("followUpIntervalStatus"));
}

QString PacketAnalysisViewModel::slaveResponseStatus() const
{
    return healthText(QStringLiteral("slaveResponseStatus"));
}

QVariantList PacketAnalysisViewModel::abnormalTimeSegments() const
{
    return section(QStringLiteral("healthCheck")).value(QStringLiteral("abnormalTimeSegments")).toList();
}

QVariantList PacketAnalysisViewModel::abnormalPackets() const
{
    return section(QStringLiteral("healthCheck")).value(QStringLiteral("abnormalPackets")).toList();
}

QString PacketAnalysisViewModel::overallHealthStatus() const
{
    return healthText(QStringLiteral("overallHealthStatus"));
}
