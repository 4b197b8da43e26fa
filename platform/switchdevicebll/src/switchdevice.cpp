#include <switchdevicebll/switchdevice.h>

#include "consolesession.h"
#include "usermessage.h"

#include <basecomm/applicationthread.h>
#include <consoleportcomm/consoleportcomm.h>
#include <lxtranslate/translator.h>
#include <switchdevicebll/switchdeviceconfig.h>
#include <switchdevicebll/translatemanage.h>

#include <QtCore/QDebug>
#include <QtCore/QThread>
#include <QtCore/QTimer>

#include <algorithm>
#include <atomic>
#include <deque>
#include <mutex>
#include <utility>

namespace ovra {
namespace bll {

namespace {

using Clock = std::chrono::steady_clock;

// What callers want of the session, in the order in which they wanted it.
struct Request
{
    enum class Kind { Connecting, Connected, Disconnected, Block };

    Kind kind = Kind::Block;
    QByteArray block;
};

} // namespace

/// Everything but the requests is used on the session's thread only.
struct SwitchDevice::Private
{
    explicit Private(SwitchDevice *owner);

    // Any thread
    void request(Request::Kind kind, const QByteArray &block = {});

    // The session's thread
    void serve();
    void serve(const Request &request);
    void receive(const QByteArray &bytes);
    void portLost();
    void timeOut();
    void perform(const SessionActions &actions);
    bool write(const QByteArray &bytes);
    void setTimer();

    SwitchDevice *const device;
    ConsoleportComm *const comm;
    const lumen::trans::Translator *const translator;
    ApplicationThread *const thread;
    QTimer *const timer;
    ConsoleSession session;

    std::mutex lock; // guards requests
    std::deque<Request> requests;
    // How often the port was closed on purpose, and opened anew; and how much of that the session knows of. What it
    // wanted before is not delivered any more after the one, and not sent any more after either.
    std::atomic<unsigned> disconnections{0};
    std::atomic<unsigned> connections{0};
    unsigned servedDisconnections = 0;
    unsigned servedConnections = 0;
};

// The link comes first and brings the port thread: of two threads the younger one ends first with the application, and
// a session that is waiting for the port still gets its answer.
SwitchDevice::Private::Private(SwitchDevice *owner)
    : device(owner)
    , comm(new ConsoleportComm(owner))
    , translator(OVRA::BLL::TranslateManage::getInstance()->getTranslator())
    // A timer does not outlive its thread's run.
    , thread(new ApplicationThread(QStringLiteral("console session"), {}, [this] { timer->stop(); }))
    , timer(new QTimer(owner))
    , session([] { return SwitchDeviceConfig::getInstance()->description(); })
{
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    connect(timer, &QTimer::timeout, owner, [this] { timeOut(); });
    connect(comm, &ConsoleportComm::bytesReceived, owner, [this](const QByteArray &bytes) { receive(bytes); });
    connect(comm, &ConsoleportComm::portLost, owner, [this] { portLost(); });
}

void SwitchDevice::Private::request(Request::Kind kind, const QByteArray &block)
{
    {
        const std::lock_guard<std::mutex> guard(lock);
        if (kind == Request::Kind::Disconnected) {
            ++disconnections;
            requests.erase(std::remove_if(requests.begin(), requests.end(),
                                          [](const Request &one) { return one.kind == Request::Kind::Block; }),
                           requests.end());
        }
        if (kind == Request::Kind::Connecting)
            ++connections;
        requests.push_back({kind, block});
    }
    QMetaObject::invokeMethod(
        device, [this] { serve(); }, Qt::QueuedConnection);
}

void SwitchDevice::Private::serve()
{
    for (;;) {
        Request next;
        {
            const std::lock_guard<std::mutex> guard(lock);
            if (requests.empty())
                break;
            next = std::move(requests.front());
            requests.pop_front();
        }
        serve(next);
    }
    setTimer();
}

void SwitchDevice::Private::serve(const Request &request)
{
    switch (request.kind) {
    case Request::Kind::Connecting:
        ++servedConnections;
        return perform(session.connectionLost());
    case Request::Kind::Connected:
        return session.connected();
    case Request::Kind::Disconnected:
        ++servedDisconnections;
        return session.disconnected();
    case Request::Kind::Block:
        return perform(session.submit(request.block, Clock::now()));
    }
}

void SwitchDevice::Private::receive(const QByteArray &bytes)
{
    serve();
    perform(session.receive(bytes, Clock::now()));
    setTimer();
}

void SwitchDevice::Private::portLost()
{
    serve();
    if (!comm->getIsConnected()) // another port may have been opened since
        perform(session.connectionLost());
    setTimer();
}

void SwitchDevice::Private::timeOut()
{
    serve();
    if (const auto due = session.dueAt(); due && *due <= Clock::now())
        perform(session.advance(Clock::now()));
    setTimer();
}

void SwitchDevice::Private::perform(const SessionActions &actions)
{
    bool isLost = false;
    for (const SessionAction &action : actions) {
        if (servedDisconnections != disconnections)
            return;
        switch (action.kind) {
        case SessionAction::Kind::Send:
            isLost = isLost || (servedConnections == connections && !write(action.bytes));
            break;
        case SessionAction::Kind::Deliver:
            emit device->signal_dataReceived(action.bytes);
            break;
        case SessionAction::Kind::Debug:
            qDebug().noquote() << action.text;
            break;
        case SessionAction::Kind::Warning:
            qWarning().noquote() << filledIn(
                lumen::trans::translate(translator, QStringLiteral("SwitchDevice"), QString(), action.text),
                action.values);
            break;
        }
    }
    if (isLost)
        perform(session.connectionLost());
}

// False when there is no port any more. One that takes no bytes is a switch that does not answer.
bool SwitchDevice::Private::write(const QByteArray &bytes)
{
    if (comm->rawWrite(bytes))
        return true;
    if (servedDisconnections == disconnections)
        qWarning().noquote() << comm->errorInfo();
    return comm->getIsConnected();
}

void SwitchDevice::Private::setTimer()
{
    const auto due = session.dueAt();
    if (!due)
        return timer->stop();
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(*due - Clock::now());
    timer->start(std::max(left, std::chrono::milliseconds(0)));
}

SwitchDevice *SwitchDevice::getInstance()
{
    static SwitchDevice *const device = new SwitchDevice;
    return device;
}

SwitchDevice::SwitchDevice()
    : _d(new Private(this))
{
    ConsoleportComm::setTranslator(_d->translator);
    moveToThread(_d->thread->thread());
    _d->thread->setWanted(true);
}

bool SwitchDevice::connectToSerial(const QString &port, int baudRate, int parity, int stopBits, int flowControl)
{
    _d->request(Request::Kind::Connecting);
    if (!_d->comm->open(port, baudRate, parity, stopBits, flowControl))
        return false;
    _d->request(Request::Kind::Connected);
    return true;
}

void SwitchDevice::disConnectSerial()
{
    _d->request(Request::Kind::Disconnected);
    _d->comm->close();
}

void SwitchDevice::sendControlCmd(const QByteArray &bytes)
{
    _d->request(Request::Kind::Block, bytes);
}

ConsoleportComm *SwitchDevice::getCommPtr() const
{
    return _d->comm;
}

} // namespace bll
} // namespace ovra
