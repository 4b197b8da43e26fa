// State of PacketAnalysisViewModel.
#pragma once

#include "packetanalysisviewmodel.h"

#include <QtCore/QThread>

class PacketAnalysisWorker;

//! The run on the worker's thread, as the user-interface thread knows it. Runs are numbered from 1; started == ended:
//! none.
struct AnalysisRun
{
    int started = 0;
    int ended = 0;                // runs whose thread has finished and whose signals have all arrived
    bool isAbandoned = false;     // the latest run reports to nobody
    bool isStartPending = false;  // a start waits for the abandoned run to end
    bool isStopRequested = false; // of the latest start
};

//! What a start hands to the worker; a start that is held back keeps what was set when it was called.
struct AnalysisInput
{
    QString filePath;
    int expectedSlaveCount = 9;
    double slaveAnalysisInterval = 1.0; // seconds
};

struct PacketAnalysisViewModel::Private
{
    QString selectedFilePath;
    bool isAnalyzing = false;
    bool isAnalysisComplete = false;
    double progressPercent = 0; // 0 to 100
    int totalPackets = 0;
    int ptpv2Packets = 0;
    QVariantList results;
    QVariantMap statistics;
    QString lastError;
    int expectedSlaveCount = 9;
    double slaveAnalysisInterval = 1.0; // seconds
    int decoderCount = 10;

    QThread *thread = nullptr;
    PacketAnalysisWorker *worker = nullptr; // lives on the thread

    AnalysisRun run;
    AnalysisInput input; // of the latest start
    int resets = 0;      // a handler that clears or starts anew makes the rest of what a signal says obsolete
};
