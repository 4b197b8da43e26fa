#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QMetaMethod>
#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

/// Listens to every signal of an object at once and keeps what was emitted, in order: for tests that want exactly these
/// signals and no others. destroyed() is left out. Lives on the sender's thread; may outlive the sender. Signals that
/// other threads emit are kept as well.
class SignalRecorder : public QObject
{
public:
    struct Emission
    {
        QString name;
        QVariantList arguments;
    };

    explicit SignalRecorder(QObject *sender);

    QVector<Emission> emissions() const;
    /// "name(argument, argument)", one per emission.
    QStringList texts() const;
    /// The same without the arguments: "name".
    QStringList names() const;
    int count(const QString &name) const;
    /// The arguments of the last emission of that name; empty when there was none.
    QVariantList lastArguments(const QString &name) const;
    void clear();

    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override;

private:
    QVector<QMetaMethod> _signals;
    mutable QMutex _lock; // guards _emissions
    QVector<Emission> _emissions;
};
