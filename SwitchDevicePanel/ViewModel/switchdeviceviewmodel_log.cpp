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

/*!
    Who gets the messages, and who had them before. Any thread logs, so everything is behind the lock; posting under it
   keeps the target alive until the line is in its event queue, and installing under it makes messages wait until it is
   known where they go.
*/
struct LogTargets
{
    QMutex lock;                                // guards instances and previous
    QVector<SwitchDeviceViewModel *> instances; // construction order: the last one is the target
    // The handlers that ours has replaced, the latest at the end. There is more than one when somebody installed a
    // handler while a view model lived, and that one may lead back to ours. The first stays for messages that are on
    // their way.
    QVector<QtMessageHandler> previous;
};

LogTargets &logTargets()
{
    // Never destroyed: a host's static objects may log, or end a view model, after ours are gone.
    static LogTargets &targets = *new LogTargets;
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

// How often the current thread is inside messageHandler(): a handler that replaced ours and was replaced by it in turn
// leads back here, and then the one before it is meant.
thread_local int handlerDepth = 0;

QtMessageHandler previousHandler(int depth)
{
    LogTargets &targets = logTargets();
    const QMutexLocker locker(&targets.lock);
    const int index = targets.previous.size() - 1 - depth;
    return index >= 0 ? targets.previous[index] : nullptr;
}

void callPreviousHandler(QtMsgType type, const QMessageLogContext &context, const QString &msg)
{
    const QtMessageHandler previous = previousHandler(handlerDepth);
    if (!previous)
        return;
    ++handlerDepth;
    previous(type, context, msg);
    --handlerDepth;
}

} // namespace

void SwitchDeviceViewModel::startLogRouting()
{
    LogTargets &targets = logTargets();
    const QMutexLocker locker(&targets.lock);
    targets.instances.append(this);
    const QtMessageHandler replaced = qInstallMessageHandler(&SwitchDeviceViewModel::messageHandler);
    // Ours is there already while another view model lives, and must not become its own predecessor.
    if (replaced == &SwitchDeviceViewModel::messageHandler)
        return;
    if (targets.previous.isEmpty() || targets.previous.last() != replaced)
        targets.previous.append(replaced);
}

void SwitchDeviceViewModel::stopLogRouting()
{
    LogTargets &targets = logTargets();
    const QMutexLocker locker(&targets.lock);
    targets.instances.removeOne(this);
    if (!targets.instances.isEmpty())
        return;
    qInstallMessageHandler(targets.previous.last());
    if (targets.previous.size() > 1)
        targets.previous.removeLast();
}

void SwitchDeviceViewModel::messageHandler(QtMsgType type, const QMessageLogContext &context, const QString &msg)
{
    callPreviousHandler(type, context, msg);
    // The many debug traces of the view model stay out of the panel.
    if (type == QtDebugMsg || handlerDepth > 0 || !isSwitchModule(context))
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
    const QString text = QString::fromUtf8(data.constData(), data.size()); // the other overload ends at a NUL
    const QStringList lines = text.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    _d->log.resultLines.append(lines);
}
