// The command queue: one block of console bytes is outstanding at most. The waiting ones stand in a map, so that they
// leave in the order of their labels, not of their arrival, and a block under a waiting label replaces that one.
#include "switchdeviceviewmodel.h"
#include "switchdeviceviewmodel_p.h"

#include "debuglog.h"

#include <switchdevicebll/switchdevice.h>

#include <QtCore/QFile>
#include <QtCore/QMutexLocker>
#include <QtCore/QTextStream>

#include <utility>

namespace {

// The decoder takes a byte-order mark at the beginning for one of a file, and drops it.
QString decodedReply(const QByteArray &data)
{
    const QString text = QString::fromUtf8(data.constData(), data.size()); // the other overload ends at a NUL
    return data.startsWith("\xef\xbb\xbf") ? QChar(QChar::ByteOrderMark) + text : text;
}

} // namespace

void SwitchDeviceViewModel::enqueueCommand(const QString &label, const QByteArray &bytes)
{
    if (bytes.isEmpty()) {
        setWaitingResponse(false);
        return;
    }
    bool isFree = false;
    {
        const QMutexLocker locker(&_d->queue.lock);
        _d->queue.pending.insert(label, bytes);
        isFree = !_d->queue.isOutstanding;
    }
    if (isFree)
        processNextCommand();
}

void SwitchDeviceViewModel::processNextCommand()
{
    QString label;
    QByteArray bytes;
    {
        const QMutexLocker locker(&_d->queue.lock);
        // Outstanding: who hears of a completion may have sent the next block already.
        if (_d->queue.isOutstanding || _d->queue.pending.isEmpty())
            return;
        _d->queue.isOutstanding = true;
        label = _d->queue.pending.firstKey();
        bytes = _d->queue.pending.take(label);
        _d->queue.currentLabel = label;
        _d->queue.currentBytes = bytes;
    }
    _d->queue.isSentInSession = true;
    logDebug() << "Processing command:" << label << ":" << bytes;
    // Unique: an entry that a disconnect dropped has left its connection behind.
    connect(_d->device, &ovra::bll::SwitchDevice::signal_dataReceived, this, &SwitchDeviceViewModel::onDataReceived,
            Qt::UniqueConnection);
    if (_d->queue.observer)
        _d->queue.observer(label, bytes);
    _d->device->sendControlCmd(bytes);
    qInfo().noquote() << label + lxTr(QStringLiteral("执行中..."));
    if (_d->log.logMore)
        qInfo().noquote() << QString::fromUtf8(bytes.constData(), bytes.size());
    setWaitingResponse(true);
}

void SwitchDeviceViewModel::setCommandObserver(CommandObserver observer)
{
    _d->queue.observer = std::move(observer);
}

bool SwitchDeviceViewModel::isQueueIdle() const
{
    const QMutexLocker locker(&_d->queue.lock);
    return !_d->queue.isOutstanding && _d->queue.pending.isEmpty();
}

void SwitchDeviceViewModel::onDataReceived(const QByteArray &data)
{
    const QString label = _d->queue.currentLabel;
    const bool isExport = label.contains(lxTr(QStringLiteral("导出配置")));
    if (data.isEmpty()) {
        qInfo().noquote() << label + lxTr(QStringLiteral("执行失败，请重试..."));
        if (isExport)
            _d->files.isExportRunning = false;
        enqueueCommand(QStringLiteral("enter"), QByteArrayLiteral("\r\n"));
        setWaitingResponse(false);
        onCommandCompleted();
        return;
    }
    collectConsoleLines(data);
    if (isExport)
        appendToExport(data);
    else if (_d->model.familyLabel == lxTr(QStringLiteral("华为")))
        startParsing(data);
    else
        startParsingHua3(data);
}

void SwitchDeviceViewModel::appendToExport(const QByteArray &data)
{
    QFile file(_d->files.exportPath);
    if (file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text)) {
        QTextStream stream(&file);
        stream.setCodec("UTF-8");
        stream << decodedReply(data);
        stream.flush();
        if (stream.status() != QTextStream::Ok || !file.flush())
            qWarning().noquote() << lxTr(QStringLiteral("导出文件写入失败：")) + file.fileName() + QStringLiteral(": ")
                                        + file.errorString();
        file.close();
        // The second numbered piece is the configuration itself.
        const QString &label = _d->queue.currentLabel;
        if (label.contains(lxTr(QStringLiteral("导出配置1")))
            || label.contains(lxTr(QStringLiteral("导出配置")) + u'1'))
            _d->files.isExportRunning = false;
    } else {
        qWarning().noquote() << lxTr(QStringLiteral("导出文件无法打开：")) + file.fileName() + QStringLiteral(": ")
                                    + file.errorString();
        _d->files.isExportRunning = false;
    }
    {
        const QMutexLocker locker(&_d->queue.lock);
        _d->queue.isOutstanding = false;
    }
    setWaitingResponse(false);
    onCommandCompleted();
}

void SwitchDeviceViewModel::onCommandCompleted()
{
    QString label;
    bool hasCommand = false;
    {
        const QMutexLocker locker(&_d->queue.lock);
        hasCommand = !_d->queue.currentBytes.isEmpty();
        label = _d->queue.currentLabel;
        _d->queue.currentBytes.clear();
        _d->queue.currentLabel.clear();
        _d->queue.isOutstanding = false;
    }
    if (hasCommand)
        disconnect(_d->device, &ovra::bll::SwitchDevice::signal_dataReceived, this,
                   &SwitchDeviceViewModel::onDataReceived);
    setWaitingResponse(false);
    qInfo().noquote() << label + lxTr(QStringLiteral("执行结束"));
    processNextCommand();
}

SwitchDeviceViewModel::ReplyOrigin SwitchDeviceViewModel::replyOrigin() const
{
    const CommandQueue &queue = _d->queue;
    const int session = currentSession();
    return {session, session > 0 && !queue.isSentInSession, queue.wakeUps};
}

// A reply from before a disconnect counts until something is sent behind it; one that came in later, but before the
// next connection, until that one is made.
bool SwitchDeviceViewModel::isReplyInForce(const ReplyOrigin &origin) const
{
    const CommandQueue &queue = _d->queue;
    const bool isOutlived = origin.session != currentSession() && queue.isSentInSession;
    const bool isOvertaken = origin.isLate && origin.wakeUps != queue.wakeUps;
    return !isOutlived && !isOvertaken;
}

void SwitchDeviceViewModel::slot_RecAllData(const QByteArray &data)
{
    if (data.isEmpty())
        return;
    {
        const QMutexLocker locker(&_d->receive.lock);
        _d->receive.chunks.append(data);
    }
    // There is no invokable of that name: Qt warns, and nothing is parsed. Replies go by onDataReceived().
    if (!_d->receive.isParsing)
        QMetaObject::invokeMethod(this, "startParsing", Qt::QueuedConnection);
}
