// How the stand-ins of the library's classes reach record and script.
#pragma once

#include "recordingplatform.h"

#include <switchdevicebll/portrange.h>

#include <QtCore/QMap>

#include <array>
#include <condition_variable>
#include <mutex>

//! Where calls of one kind wait while it is closed.
struct Gate
{
    bool isClosed = false;
    int waiting = 0;
};

struct RecordingPlatform::Private
{
    mutable std::mutex lock; // guards everything below
    std::condition_variable gateOpened;

    QVector<Call> calls;
    QList<QByteArray> sent;

    QVariantList ports;
    bool isOpenable = true;
    QString errorInfo;
    bool hasComm = true;
    bool isConnected = true;
    QList<bool> writeResults;
    QByteArray readReply;
    std::array<Gate, 3> gates; // by the value of Slow
    std::function<void(const QByteArray &)> answer;

    bool isLoadable = true;
    QMap<QString, Commands> commands;
    QString language;

    Private() { restore(); }
    void restore();

    //! Puts a call into the record.
    void record(const QString &text);
    //! The call waits while its kind is held. Under the lock, which is given away meanwhile.
    void pass(Slow call, std::unique_lock<std::mutex> &held);
    void setHeld(Slow call, bool isHeld);
    Gate &gate(Slow call) { return gates[static_cast<std::size_t>(call)]; }
};

namespace recording {

inline RecordingPlatform::Private &script()
{
    return RecordingPlatform::instance().script();
}

inline QString shown(int value)
{
    return QString::number(value);
}
QString shown(const QByteArray &bytes);
QString shown(const QString &text);
QString shown(const QStringList &texts);
inline QString shown(const ovra::bll::PortRange &range)
{
    return QStringLiteral("%1, %2").arg(range.min).arg(range.max);
}

//! Records `name(argument, argument)`.
template<typename... Arguments>
void record(const char *name, const Arguments &...arguments)
{
    const QStringList texts{shown(arguments)...};
    script().record(QStringLiteral("%1(%2)").arg(QLatin1String(name), texts.join(QStringLiteral(", "))));
}

} // namespace recording
