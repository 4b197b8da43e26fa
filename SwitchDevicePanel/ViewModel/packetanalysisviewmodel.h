// The view model of the PTP capture analysis: chooses, starts, stops, shows, exports.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <memory>

class PacketAnalysisWorker;
class QThread;

/*!
    Holds the chosen capture and the settings, runs one analysis at a time on a thread of its own, and turns what the
   worker reports into properties.

    Thread: the user-interface thread, which is never blocked for longer than it takes a finished worker's thread to
   end. Ownership: owns its thread and worker; both serve every analysis. Destroying the object in the middle of an
   analysis stops it first.

    A run is idle -> running (startAnalysis) -> finished (isAnalysisComplete) or failed (lastErrorMessage,
   analysisError). A new path, or clearResults(), in the middle of a run abandons it: none of its later signals changes
   the view model, and a new start waits in the background until it has ended.

    Texts: "no anylse" (spelled so on purpose) stands for a check that has not been made, "未知" for an unknown value.
*/
class PacketAnalysisViewModel : public QObject
{
    Q_OBJECT

    // clang-format off
    // Input and state
    Q_PROPERTY(QString      selectedFilePath       READ selectedFilePath       WRITE setSelectedFilePath       NOTIFY selectedFilePathChanged)
    Q_PROPERTY(bool         isAnalyzing            READ isAnalyzing                                            NOTIFY isAnalyzingChanged)
    Q_PROPERTY(bool         isAnalysisComplete     READ isAnalysisComplete                                     NOTIFY isAnalysisCompleteChanged)
    Q_PROPERTY(double       analysisProgress       READ analysisProgress                                       NOTIFY analysisProgressChanged)
    Q_PROPERTY(int          totalPackets           READ totalPackets                                           NOTIFY totalPacketsChanged)
    Q_PROPERTY(int          ptpv2Packets           READ ptpv2Packets                                           NOTIFY ptpv2PacketsChanged)
    Q_PROPERTY(QVariantList analysisResults        READ analysisResults                                        NOTIFY analysisResultsChanged)
    Q_PROPERTY(QVariantMap  statisticsData         READ statisticsData                                         NOTIFY statisticsDataChanged)
    Q_PROPERTY(QString      lastErrorMessage       READ lastErrorMessage                                       NOTIFY lastErrorMessageChanged)
    Q_PROPERTY(QString      selectedFileName       READ selectedFileName                                       NOTIFY selectedFilePathChanged)
    // Read out of the statistics
    Q_PROPERTY(QString      masterClockIp          READ masterClockIp                                          NOTIFY statisticsDataChanged)
    Q_PROPERTY(int          syncMessageCount       READ syncMessageCount                                       NOTIFY statisticsDataChanged)
    Q_PROPERTY(int          followUpMessageCount   READ followUpMessageCount                                   NOTIFY statisticsDataChanged)
    Q_PROPERTY(int          announceMessageCount   READ announceMessageCount                                   NOTIFY statisticsDataChanged)
    Q_PROPERTY(int          delayReqMessageCount   READ delayReqMessageCount                                   NOTIFY statisticsDataChanged)
    Q_PROPERTY(QString      captureTime            READ captureTime                                            NOTIFY statisticsDataChanged)
    Q_PROPERTY(int          uniqueSlaveCount       READ uniqueSlaveCount                                       NOTIFY statisticsDataChanged)
    Q_PROPERTY(QString      analysisResult         READ analysisResult                                         NOTIFY statisticsDataChanged)
    // Further names of the same values
    Q_PROPERTY(QVariantList packetResults          READ packetResults                                          NOTIFY analysisResultsChanged)
    Q_PROPERTY(double       progress               READ progress                                               NOTIFY analysisProgressChanged)
    Q_PROPERTY(QString      errorMessage           READ errorMessage                                           NOTIFY lastErrorMessageChanged)
    // Health check
    Q_PROPERTY(QString      announceIntervalStatus READ announceIntervalStatus                                 NOTIFY statisticsDataChanged)
    Q_PROPERTY(QString      syncIntervalStatus     READ syncIntervalStatus                                     NOTIFY statisticsDataChanged)
    Q_PROPERTY(QString      followUpIntervalStatus READ followUpIntervalStatus                                 NOTIFY statisticsDataChanged)
    Q_PROPERTY(QString      slaveResponseStatus    READ slaveResponseStatus                                    NOTIFY statisticsDataChanged)
    Q_PROPERTY(QVariantList abnormalTimeSegments   READ abnormalTimeSegments                                   NOTIFY statisticsDataChanged)
    Q_PROPERTY(QVariantList abnormalPackets        READ abnormalPackets                                        NOTIFY statisticsDataChanged)
    Q_PROPERTY(QString      overallHealthStatus    READ overallHealthStatus                                    NOTIFY statisticsDataChanged)
    // Settings
    Q_PROPERTY(double       slaveAnalysisInterval  READ slaveAnalysisInterval  WRITE setSlaveAnalysisInterval  NOTIFY slaveAnalysisIntervalChanged)
    Q_PROPERTY(int          decoderCount           READ decoderCount           WRITE setDecoderCount           NOTIFY decoderCountChanged)
    Q_PROPERTY(int          expectedSlaveCount     READ expectedSlaveCount     WRITE setExpectedSlaveCount     NOTIFY expectedSlaveCountChanged)
    // clang-format on

public:
    explicit PacketAnalysisViewModel(QObject *parent = nullptr);
    ~PacketAnalysisViewModel() override;

    // Input and state
    QString selectedFilePath() const;
    bool isAnalyzing() const;
    bool isAnalysisComplete() const;
    double analysisProgress() const; //!< 0 to 100
    int totalPackets() const;
    int ptpv2Packets() const;
    QVariantList analysisResults() const;
    QVariantMap statisticsData() const;
    QString lastErrorMessage() const;
    QString selectedFileName() const;

    // Read out of the statistics
    QString masterClockIp() const;
    int syncMessageCount() const;
    int followUpMessageCount() const;
    int announceMessageCount() const;
    int delayReqMessageCount() const;
    QString captureTime() const;
    int uniqueSlaveCount() const;
    QString analysisResult() const;

    // Further names of the same values
    QVariantList packetResults() const;
    double progress() const; //!< 0 to 1
    QString errorMessage() const;

    // Health check
    QString announceIntervalStatus() const;
    QString syncIntervalStatus() const;
    QString followUpIntervalStatus() const;
    QString slaveResponseStatus() const;
    QVariantList abnormalTimeSegments() const; //!< always empty: no check fills it
    QVariantList abnormalPackets() const;
    QString overallHealthStatus() const;

    // Settings
    double slaveAnalysisInterval() const; //!< seconds
    void setSlaveAnalysisInterval(double seconds);
    int decoderCount() const; //!< clocks on the site, the master included
    void setDecoderCount(int count);
    int expectedSlaveCount() const; //!< stored and announced only: the analysis expects decoderCount - 1 slaves
    void setExpectedSlaveCount(int count);

signals:
    void selectedFilePathChanged();
    void isAnalyzingChanged();
    void isAnalysisCompleteChanged();
    void analysisProgressChanged();
    void totalPacketsChanged();
    void ptpv2PacketsChanged();
    void analysisResultsChanged();
    void statisticsDataChanged();
    void lastErrorMessageChanged();
    void analysisFinished();
    void analysisError(const QString &errorMessage);
    void resultsCleared();
    void slaveAnalysisIntervalChanged();
    void decoderCountChanged();
    void expectedSlaveCountChanged();

public slots:
    //! Ends the running analysis early; it reports what it has read and finishes.
    void stopAnalysis();
    void clearResults();
    //! Writes the whole analysis as an indented JSON document. Failures: lastErrorMessage; success: silence.
    void exportResults(const QString &exportPath);

private slots:
    void onWorkerFinished();
    void onWorkerError(const QString &errorMessage);
    void onWorkerProgress(int current, int total);
    void onWorkerResults(const QVariantList &results, const QVariantMap &statistics);

public:
    //! Chooses the file, unless an analysis is running; does not start anything.
    Q_INVOKABLE void analyzePacketFile(const QString &filePath);
    //! Writes the findings as comma-separated text, UTF-8 with byte-order mark. Failures: lastErrorMessage; success:
    //! silence.
    Q_INVOKABLE void exportAbnormalPackets(const QString &exportPath);
    //! Starts the analysis of the selected file; ignored while one runs.
    Q_INVOKABLE void startAnalysis();
    Q_INVOKABLE void setSelectedFilePath(const QString &path);

private:
    struct Private;

    void setAnalyzing(bool isAnalyzing);
    void setAnalysisComplete(bool isComplete);
    void setProgressPercent(double percent);
    void setTotalPackets(int count);
    void setPtpv2Packets(int count);
    void setResults(const QVariantList &results);
    void setStatistics(const QVariantMap &statistics);
    void setLastError(const QString &text);
    int reset();
    bool isLatest(int resets) const;

    QVariantMap section(const QString &name) const;
    QString healthText(const QString &key) const;
    int messageCount(const QString &type) const;

    void launchRun();
    void abandonRun();
    void onThreadFinished();
    void onRunBegun();
    bool isFromOldRun() const;
    void stopThread();

    std::unique_ptr<Private> _d;
};
