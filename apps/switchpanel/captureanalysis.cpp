#include "captureanalysis.h"

#include "logoutput.h"

#include <algorithm>
#include <limits>

CaptureAnalysis::CaptureAnalysis(const QString &filePath, const AnalysisSettings &settings)
{
    _viewModel.setSelectedFilePath(filePath);
    if (settings.decoders)
        _viewModel.setDecoderCount(*settings.decoders);
    if (settings.interval)
        _viewModel.setSlaveAnalysisInterval(*settings.interval);

    connect(&_viewModel, &PacketAnalysisViewModel::totalPacketsChanged, this,
            [this] { emit packetsRead(_viewModel.totalPackets()); });
    // A run may report a second error; it is on its way when the first one arrives. So the loop ends behind it.
    const auto leave = [this] { QMetaObject::invokeMethod(&_loop, &QEventLoop::quit, Qt::QueuedConnection); };
    connect(&_viewModel, &PacketAnalysisViewModel::analysisFinished, this, leave);
    connect(&_viewModel, &PacketAnalysisViewModel::analysisError, this, [this, leave](const QString &message) {
        _errors.append(message);
        leave();
    });
}

CaptureAnalysis::~CaptureAnalysis() = default;

CaptureReport CaptureAnalysis::run()
{
    _viewModel.startAnalysis();
    if (_viewModel.isAnalyzing())
        _loop.exec();
    else
        _errors.append(_viewModel.lastErrorMessage()); // refused at once
    return report();
}

void CaptureAnalysis::interrupt()
{
    _isInterrupted = true;
    _viewModel.stopAnalysis();
}

CaptureReport CaptureAnalysis::report() const
{
    const QVariantMap statistics = _viewModel.statisticsData();
    const auto map = [&statistics](const char *key) { return statistics.value(QLatin1String(key)).toMap(); };
    CaptureReport report;
    report.filePath = _viewModel.selectedFilePath();
    report.errors = _errors;
    report.isInterrupted = _isInterrupted;
    report.verdict = _viewModel.analysisResult();
    report.announceStatus = _viewModel.announceIntervalStatus();
    report.syncStatus = _viewModel.syncIntervalStatus();
    report.followUpStatus = _viewModel.followUpIntervalStatus();
    report.slaveStatus = _viewModel.slaveResponseStatus();
    report.matchingStatus = map("healthCheck").value(QStringLiteral("delayReqRespMatchingStatus")).toString();
    report.masterClock = _viewModel.masterClockIp();
    report.captureTime = _viewModel.captureTime();
    report.packetsRead = _viewModel.totalPackets();
    report.recordsKept = _viewModel.ptpv2Packets();
    // One of the decoders is the master. The analysis does not count below the smallest int either.
    report.expectedSlaves = std::max(_viewModel.decoderCount(), std::numeric_limits<int>::min() + 1) - 1;
    report.slaveInterval = _viewModel.slaveAnalysisInterval();
    report.messageTypes = map("messageTypes");
    report.domains = map("domains");
    report.sources = map("sourceIps");
    report.clockPorts = _viewModel.uniqueSlaveCount();
    report.syncSessions = statistics.value(QStringLiteral("syncSessions")).toList();
    report.findings = _viewModel.abnormalPackets();
    return report;
}

template<typename Export>
std::optional<QString> CaptureAnalysis::errorOf(Export &&write)
{
    const QString before = _viewModel.lastErrorMessage();
    const int warnings = LogOutput::warningCount();
    write();
    if (_viewModel.lastErrorMessage() != before)
        return _viewModel.lastErrorMessage();
    // A disk that fills up after the file was opened is told to the log only.
    if (LogOutput::warningCount() != warnings)
        return QString();
    return std::nullopt;
}

std::optional<QString> CaptureAnalysis::exportResults(const QString &path)
{
    return errorOf([this, &path] { _viewModel.exportResults(path); });
}

std::optional<QString> CaptureAnalysis::exportFindings(const QString &path)
{
    return errorOf([this, &path] { _viewModel.exportAbnormalPackets(path); });
}
