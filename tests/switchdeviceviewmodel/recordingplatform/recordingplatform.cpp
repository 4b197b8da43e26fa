#include "recordingplatform.h"
#include "scriptedplatform.h"

#include <switchdevicebll/switchdevice.h>

#include <QtCore/QThread>

#include <cstdio>
#include <cstdlib>

using ovra::bll::SwitchDevice;

namespace {

// A test that forgets to release what it holds fails instead of hanging.
constexpr std::chrono::seconds kLongestHold{60};

QString escaped(const QString &text)
{
    QString shown = QStringLiteral("\"");
    for (const QChar character : text) {
        if (character == QLatin1Char('\r'))
            shown += QLatin1String("\\r");
        else if (character == QLatin1Char('\n'))
            shown += QLatin1String("\\n");
        else if (character == QLatin1Char('"') || character == QLatin1Char('\\'))
            shown += QLatin1Char('\\') + QString(character);
        else if (character < QLatin1Char(' '))
            shown += QStringLiteral("\\x%1").arg(character.unicode(), 2, 16, QLatin1Char('0'));
        else
            shown += character;
    }
    return shown + QLatin1Char('"');
}

} // namespace

namespace recording {

QString shown(const QByteArray &bytes)
{
    return escaped(QString::fromUtf8(bytes));
}

QString shown(const QString &text)
{
    return escaped(text);
}

QString shown(const QStringList &texts)
{
    QStringList all;
    for (const QString &text : texts)
        all.append(escaped(text));
    return QStringLiteral("{%1}").arg(all.join(QStringLiteral(", ")));
}

} // namespace recording

void RecordingPlatform::Private::restore()
{
    calls.clear();
    sent.clear();
    ports.clear();
    isOpenable = true;
    errorInfo.clear();
    hasComm = true;
    isConnected = true;
    writeResults = {true};
    readReply.clear();
    answer = nullptr;
    isLoadable = true;
    commands.clear();
    language = QStringLiteral("zh_CN");
}

void RecordingPlatform::Private::record(const QString &text)
{
    const std::lock_guard<std::mutex> guard(lock);
    calls.append({text, QThread::currentThread(), std::chrono::steady_clock::now()});
}

void RecordingPlatform::Private::pass(Slow call, std::unique_lock<std::mutex> &held)
{
    Gate &passed = gate(call);
    ++passed.waiting;
    const bool isOpen = gateOpened.wait_for(held, kLongestHold, [&passed] { return !passed.isClosed; });
    --passed.waiting;
    if (isOpen)
        return;
    std::fputs("recordingplatform: a held call was never released\n", stderr);
    std::abort();
}

void RecordingPlatform::Private::setHeld(Slow call, bool isHeld)
{
    {
        const std::lock_guard<std::mutex> guard(lock);
        gate(call).isClosed = isHeld;
    }
    gateOpened.notify_all();
}

RecordingPlatform &RecordingPlatform::instance()
{
    static RecordingPlatform *const platform = new RecordingPlatform; // outlives every thread
    return *platform;
}

RecordingPlatform::RecordingPlatform()
    : _d(new Private)
{}

void RecordingPlatform::reset()
{
    waitForSession();
    const std::lock_guard<std::mutex> guard(_d->lock);
    _d->restore();
}

QVector<RecordingPlatform::Call> RecordingPlatform::calls() const
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    return _d->calls;
}

QStringList RecordingPlatform::texts() const
{
    QStringList texts;
    for (const Call &call : calls())
        texts.append(call.text);
    return texts;
}

QVector<RecordingPlatform::Call> RecordingPlatform::callsOf(const QString &begin) const
{
    QVector<Call> found;
    for (const Call &call : calls()) {
        if (call.text.startsWith(begin))
            found.append(call);
    }
    return found;
}

QList<QByteArray> RecordingPlatform::sent() const
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    return _d->sent;
}

void RecordingPlatform::clearCalls()
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    _d->calls.clear();
    _d->sent.clear();
}

void RecordingPlatform::feed(const QByteArray &bytes)
{
    SwitchDevice *const device = SwitchDevice::getInstance();
    QMetaObject::invokeMethod(
        device, [device, bytes] { emit device->signal_dataReceived(bytes); }, Qt::BlockingQueuedConnection);
}

void RecordingPlatform::feedHere(const QByteArray &bytes)
{
    emit SwitchDevice::getInstance()->signal_dataReceived(bytes);
}

void RecordingPlatform::waitForSession()
{
    QMetaObject::invokeMethod(
        SwitchDevice::getInstance(), [] {}, Qt::BlockingQueuedConnection);
}

void RecordingPlatform::setAnswer(std::function<void(const QByteArray &)> answer)
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    _d->answer = std::move(answer);
}

const QThread *RecordingPlatform::sessionThread() const
{
    return SwitchDevice::getInstance()->thread();
}

void RecordingPlatform::setPorts(const QVariantList &ports)
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    _d->ports = ports;
}

void RecordingPlatform::setOpenResult(bool isOpen, const QString &errorInfo)
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    _d->isOpenable = isOpen;
    _d->errorInfo = errorInfo;
}

void RecordingPlatform::setHasComm(bool hasComm)
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    _d->hasComm = hasComm;
}

void RecordingPlatform::setConnected(bool isConnected)
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    _d->isConnected = isConnected;
}

void RecordingPlatform::setWriteResults(const QList<bool> &results)
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    _d->writeResults = results;
}

void RecordingPlatform::setReadReply(const QByteArray &bytes)
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    _d->readReply = bytes;
}

void RecordingPlatform::hold(Slow call)
{
    _d->setHeld(call, true);
}

void RecordingPlatform::release(Slow call)
{
    _d->setHeld(call, false);
}

int RecordingPlatform::heldCalls(Slow call) const
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    return _d->gate(call).waiting;
}

void RecordingPlatform::setLoadResult(bool isLoaded)
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    _d->isLoadable = isLoaded;
}

void RecordingPlatform::setCommands(const QString &getter, const QStringList &commands)
{
    setCommands(getter, [commands] { return commands; });
}

void RecordingPlatform::setCommands(const QString &getter, const Commands &commands)
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    _d->commands.insert(getter, commands);
}

void RecordingPlatform::setLanguage(const QString &code)
{
    const std::lock_guard<std::mutex> guard(_d->lock);
    _d->language = code;
}
