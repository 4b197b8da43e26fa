#pragma once

#include "recordingplatform_export.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariantList>
#include <QtCore/QVector>

#include <chrono>
#include <functional>

class QThread;

/// What the view models asked of the platform libraries, and what the libraries shall answer.
///
/// One record of the whole process: every call but getInstance() and getCommPtr(), in the order in which the calls
/// began, as text: `setDownPortRange(1, 8)`, `setDownInterface("g")`, `sendControlCmd("display vlan\r\n")`. Line ends
/// and other control characters are escaped as in C++.
///
/// Until a test says otherwise: every port opens, is connected, takes everything and gives nothing to a timed read;
/// every getter NAME returns the two commands "NAME 1" and "NAME 2"; the language is Chinese; nobody has a serial port.
///
/// All functions may be called from any thread.
class RECORDINGPLATFORM_EXPORT RecordingPlatform final
{
public:
    struct Call
    {
        QString text;
        const QThread *thread = nullptr;
        std::chrono::steady_clock::time_point time;
    };
    using Commands = std::function<QStringList()>;

    static RecordingPlatform &instance();

    /// Forgets record and script. Nothing may be held.
    void reset();

    // The record
    QVector<Call> calls() const;
    QStringList texts() const;
    /// The calls whose text begins with that.
    QVector<Call> callsOf(const QString &begin) const;
    /// The blocks given to sendControlCmd(), as they are.
    QList<QByteArray> sent() const;
    void clearCalls();

    // The console session
    /// The switch says something: emits signal_dataReceived() on the session's thread. Returns when it is emitted.
    void feed(const QByteArray &bytes);
    /// The same on the calling thread.
    void feedHere(const QByteArray &bytes);
    /// Runs on the session's thread, like an opening does; returns behind everything that was posted there before.
    void waitForSession();
    /// Called inside sendControlCmd(), for hosts that answer at once.
    void setAnswer(std::function<void(const QByteArray &sent)> answer);
    const QThread *sessionThread() const;

    // The port
    void setPorts(const QVariantList &ports);
    /// What openings result in, and what errorInfo() says from then on.
    void setOpenResult(bool isOpen, const QString &errorInfo = QString());
    /// Whether the session has a link object at all.
    void setHasComm(bool hasComm);
    void setConnected(bool isConnected);
    /// Of the next raw writes in their order; the last one stays.
    void setWriteResults(const QList<bool> &results);
    void setReadReply(const QByteArray &bytes);

    /// Calls that take their time: while it is held, none of the kind returns.
    enum class Slow { Opening, ConnectionCheck, Reading };
    void hold(Slow call);
    void release(Slow call);
    /// How many are inside.
    int heldCalls(Slow call) const;

    // Device descriptions and language
    void setLoadResult(bool isLoaded);
    /// What the getter of that name returns.
    void setCommands(const QString &getter, const QStringList &commands);
    /// The same, found out at each call; it may look at the record.
    void setCommands(const QString &getter, const Commands &commands);
    void setLanguage(const QString &code);

    struct Private;
    Private &script() { return *_d; }

private:
    RecordingPlatform();

    Private *const _d;
};
