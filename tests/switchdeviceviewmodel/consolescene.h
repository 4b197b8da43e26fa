#pragma once

#include "recordingplatform.h"
#include "signalrecorder.h"
#include "switchdeviceviewmodel.h"

#include <QtCore/QMutex>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>

/// What the application's own message handler gets, from when on the object lives. Create it before the view models.
class MessageLog
{
public:
    MessageLog();
    ~MessageLog();
    MessageLog(const MessageLog &) = delete;
    MessageLog &operator=(const MessageLog &) = delete;

    /// "debug text", "info text", "warning text", "critical text": what the view model's own sources have logged.
    QStringList lines() const;
    /// The same of one level, without its name: lines("info").
    QStringList lines(const QString &level) const;
    /// Warnings and worse of anybody, Qt included; forgotten when taken. A test takes those that it causes.
    QStringList takeWarnings();
    void clear();

private:
    struct Message
    {
        QtMsgType type = QtDebugMsg;
        QString file;
        QString text;
    };

    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &text);

    static MessageLog *s_log;

    const QtMessageHandler _previous;
    mutable QMutex _lock; // guards _messages and _warnings
    QVector<Message> _messages;
    QStringList _warnings;
};

/// One view model over the recording platform. Record and signals begin behind the construction and the choice of the
/// family, so that they hold what the test itself brings about.
class ConsoleScene
{
public:
    enum class Family { None, Huawei, HuaweiSubModel, Hua3 };

    explicit ConsoleScene(Family family = Family::Huawei, const QString &language = QStringLiteral("zh_CN"));
    ~ConsoleScene();
    ConsoleScene(const ConsoleScene &) = delete;
    ConsoleScene &operator=(const ConsoleScene &) = delete;

    SwitchDeviceViewModel &viewModel() { return *_viewModel; }
    SwitchDeviceViewModel *operator->() { return _viewModel.get(); }
    /// Destroys the view model.
    void end() { _viewModel.reset(); }
    /// The switch shows its user view: from here on a prompt is no news. Takes 200 ms and leaves the queue idle.
    void logIn();

    /// The translation of \a text in the scene's language.
    QString tr(const char *text) const;

    /// The switch answers: the chunk arrives, is read, and everything that follows at once has happened. What follows
    /// 200 ms later has not.
    void answer(const QByteArray &bytes);
    /// The current block is over, without the 200 ms.
    void complete() { _viewModel->onCommandCompleted(); }
    /// Sends a block whose label is \a label, and forgets that it was sent: a query, or the listing behind a login.
    void ask(const QString &label);

    /// All signals in their order, log lines of Qt's message logger left out. Enumerators are numbers.
    QStringList signalTexts() const;
    /// The same without the texts that the console batching and the logger bring: everything but logMessage.
    QStringList signalTextsWithoutLog() const;
    int countOf(const char *signal) const { return _recorder->count(QLatin1String(signal)); }
    SignalRecorder &recorder() { return *_recorder; }
    /// What the panel's log view got from the message logger, without the time stamps.
    QStringList panelLines() const;
    /// The texts of signalTexts() that begin with "logMessage(", without it.
    QStringList announcedLines() const;

    QList<QByteArray> sent() const { return RecordingPlatform::instance().sent(); }
    QStringList calls() const { return RecordingPlatform::instance().texts(); }
    void clear();

    /// The 100 ms of the batched console lines are over.
    void flushConsoleLines();

    static void processEvents();
    // Replies without echo and prompt, which would be a login.
    /// 24 gigabit ports and 4 of 10 gigabits as the family lists them, with its header.
    static QByteArray listing(Family family, int downPorts = 24, int upPorts = 4);
    /// Ports of 10 and of 40 gigabits only.
    static QByteArray aggregationListing(Family family, int downPorts = 24, int upPorts = 6);
    /// The listing of a slot with that number of copper ports.
    static QByteArray slotListing(int copperPorts);

private:
    std::unique_ptr<SignalRecorder> _recorder; // outlives the view model, which may be emitting on another thread
    std::unique_ptr<SwitchDeviceViewModel> _viewModel;
};
