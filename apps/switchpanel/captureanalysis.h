// One capture through the view model, from start to report.
#pragma once

#include "capturereport.h"

#include <packetanalysisviewmodel.h>

#include <QtCore/QEventLoop>
#include <QtCore/QObject>

#include <optional>

//! What the user chose; what is not set keeps the view model's default.
struct AnalysisSettings
{
    std::optional<int> decoders;
    std::optional<double> interval; // seconds
};

/*!
    Analyses one capture with a view model of its own. run() blocks in an event loop of its own until the analysis has
   ended; the exports write what it found.
*/
class CaptureAnalysis : public QObject
{
    Q_OBJECT

public:
    CaptureAnalysis(const QString &filePath, const AnalysisSettings &settings);
    ~CaptureAnalysis() override;

    CaptureReport run();

    //! Each is nothing when the file is written, otherwise the analysis's error message (empty: the log has said it).
    std::optional<QString> exportResults(const QString &path);
    std::optional<QString> exportFindings(const QString &path);

public slots:
    //! Ends the analysis early: what was read until now is judged and reported.
    void interrupt();

signals:
    void packetsRead(int count);

private:
    CaptureReport report() const;
    template<typename Export>
    std::optional<QString> errorOf(Export &&write);

    PacketAnalysisViewModel _viewModel;
    QEventLoop _loop;
    QStringList _errors;
    bool _isInterrupted = false;
};
