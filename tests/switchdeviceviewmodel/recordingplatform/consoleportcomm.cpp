#include "scriptedplatform.h"

#include <consoleportcomm/consoleportcomm.h>

#include <utility>

using recording::script;

struct ConsoleportComm::Private
{};

ConsoleportComm::ConsoleportComm(QObject *parent)
    : BaseComm(parent)
    , _d(new Private)
{}

ConsoleportComm::~ConsoleportComm() = default;

void ConsoleportComm::startComThread()
{
    recording::record("startComThread");
}

void ConsoleportComm::stopComThread()
{
    recording::record("stopComThread");
}

QVariantList ConsoleportComm::getCOMList()
{
    recording::record("getCOMList");
    const std::lock_guard<std::mutex> guard(script().lock);
    return script().ports;
}

bool ConsoleportComm::getIsConnected() const
{
    recording::record("getIsConnected");
    std::unique_lock<std::mutex> lock(script().lock);
    script().pass(RecordingPlatform::Slow::ConnectionCheck, lock);
    return script().isConnected;
}

QString ConsoleportComm::errorInfo() const
{
    recording::record("errorInfo");
    const std::lock_guard<std::mutex> guard(script().lock);
    return script().errorInfo;
}

bool ConsoleportComm::rawWrite(const QByteArray &bytes)
{
    recording::record("rawWrite", bytes);
    const std::lock_guard<std::mutex> guard(script().lock);
    QList<bool> &results = script().writeResults;
    return results.size() > 1 ? results.takeFirst() : results.first();
}

QByteArray ConsoleportComm::timedRead(int timeoutMs)
{
    recording::record("timedRead", timeoutMs);
    std::unique_lock<std::mutex> lock(script().lock);
    script().pass(RecordingPlatform::Slow::Reading, lock);
    return script().readReply;
}
