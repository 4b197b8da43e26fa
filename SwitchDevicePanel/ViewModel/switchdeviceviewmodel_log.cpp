// Log routing: Qt's messages of the switch modules, and batched console lines, become logMessage signals for the panel.
#include "switchdeviceviewmodel.h"
#include "switchdeviceviewmodel_p.h"

#include <QtCore/QDateTime>
#include <QtCore/QMutexLocker>
#include <QtCore/QVector>

#include <algorithm>
#include <chrono>

namespace {

constexpr std::chrono::milliseconds kBatchInterval{100};

//! Who gets the messages. Any thread logs, so everything is behind the lock; posting under it keeps the target alive until
//! the line is in its event queue.
struct LogTargets
{
    QMutex lock; // guards instances and previous
    QVector<SwitchDeviceViewModel *> instances; // construction order: the last one is the target
    QtMessageHandler previous = nullptr;
};

LogTargets &logTargets()
{
    static LogTargets targets;
    return targets;
}

bool isSwitchModule(const QMessageLogContext &context)
{
    const QString file = QString::fromUtf8(context.file);
    const QString function = QString::fromUtf8(context.function);
    return file.contains(QLatin1String("SwitchDevicePanel"), Qt::CaseInsensitive)
        || file.contains(QLatin1String("switchdevice"), Qt::CaseInsensitive)
        || file.contains(QLatin1String("consoleportcomm"), Qt::CaseInsensitive)
        || function.contains(QLatin1String("SwitchDevice"), Qt::CaseInsensitive)
        || function.contains(QLatin1String("ConsolePort"), Qt::CaseInsensitive);
}

QString typedText(QtMsgType type, const QString &msg)
{
    switch (type) {
    case QtWarningMsg:
        return QStringLiteral("[Warning] %1").arg(msg);
    case QtCriticalMsg:
        return QStringLiteral("[Critical] %1").arg(msg);
    case QtFatalMsg:
        return QStringLiteral("[Fatal] %1").arg(msg);
    case QtInfoMsg:
        return QStringLiteral("[Info] %1").arg(msg);
    case QtDebugMsg:
        break;
    }
    return QString();
}

QString stampedLine(const QString &text)
{
    // Multi-argument arg(): a "%2" inside the message is the message's own.
    return QStringLiteral("[%1] %2").arg(
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz")), text);
}

void callPreviousHandler(QtMsgType type, const QMessageLogContext &context, const QString &msg)
{
    // A handler that was installed after ours and chains to it may have become our previous one: a second entry on the same
    // thread would call it for ever.
    thread_local bool isInside = false;
    if (isInside)
        return;
    QtMessageHandler previous = nullptr;
    {
        LogTargets &targets = logTargets();
        const QMutexLocker locker(&targets.lock);
        previous = targets.previous;
    }
    if (!previous)
        return;
    isInside = true;
    previous(type, context, msg);
    isInside = false;
}

} // namespace

void SwitchDeviceViewModel::startLogRouting()
{
    LogTargets &targets = logTargets();
    {
        const QMutexLocker locker(&targets.lock);
        targets.instances.append(this);
    }
    const QtMessageHandler replaced = qInstallMessageHandler(&SwitchDeviceViewModel::messageHandler);
    if (replaced == &SwitchDeviceViewModel::messageHandler)
        return; // another view model lives: its previous handler stays the previous one
    const QMutexLocker locker(&targets.lock);
    targets.previous = replaced;
}

void SwitchDeviceViewModel::stopLogRouting()
{
    LogTargets &targets = logTargets();
    QtMessageHandler previous = nullptr;
    {
        const QMutexLocker locker(&targets.lock);
        targets.instances.removeOne(this);
        if (!targets.instances.isEmpty())
            return;
        std::swap(previous, targets.previous);
    }
    qInstallMessageHandler(previous);
}

void SwitchDeviceViewModel::messageHandler(QtMsgType type, const QMessageLogContext &context, const QString &msg)
{
    callPreviousHandler(type, context, msg);
    // The many debug traces of the view model stay out of the panel.
    if (type == QtDebugMsg || !isSwitchModule(context))
        return;
    const QString line = stampedLine(typedText(type, msg));
    LogTargets &targets = logTargets();
    const QMutexLocker locker(&targets.lock);
    if (targets.instances.isEmpty())
        return;
    QMetaObject::invokeMethod(targets.instances.last(), "logMessage", Qt::QueuedConnection, Q_ARG(QString, line));
}

void SwitchDeviceViewModel::emitLogMessage(const QString &message, bool isDetailedLog)
{
    if (isDetailedLog && !_d->log.logMore)
        return;
    emit logMessage(message);
}

void SwitchDeviceViewModel::startLogBatching()
{
    _d->log.batchTimer = new QTimer(this);
    _d->log.batchTimer->setInterval(kBatchInterval);
    connect(_d->log.batchTimer, &QTimer::timeout, this, &SwitchDeviceViewModel::flushConsoleLines);
    _d->log.batchTimer->start();
}

void SwitchDeviceViewModel::stopLogBatching()
{
    _d->log.batchTimer->stop();
    delete _d->log.batchTimer;
    _d->log.batchTimer = nullptr;
}

void SwitchDeviceViewModel::flushConsoleLines()
{
    if (_d->log.resultLines.isEmpty())
        return;
    // Taken out before the signal: a receiver may cause new lines.
    const QStringList lines = std::exchange(_d->log.resultLines, QStringList());
    emit logMessage(lines.join(QLatin1Char('\n')));
}

void SwitchDeviceViewModel::collectConsoleLines(const QByteArray &data)
{
    if (!_d->log.logMore)
        return;
    const QStringList lines = QString::fromUtf8(data).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    _d->log.resultLines.append(lines);
}
