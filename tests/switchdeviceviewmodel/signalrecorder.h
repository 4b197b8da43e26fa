#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QMetaMethod>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

/// Listens to every signal of an object at once and keeps what was emitted, in order: for tests that want exactly these
/// signals and no others. destroyed() is left out. Lives on the sender's thread; may outlive the sender.
class SignalRecorder : public QObject
{
public:
    struct Emission
    {
        QString name;
        QVariantList arguments;
    };

    explicit SignalRecorder(QObject *sender);

    const QVector<Emission> &emissions() const { return _emissions; }
    /// "name(argument, argument)", one per emission.
    QStringList texts() const;
    /// The same without the arguments: "name".
    QStringList names() const;
    int count(const QString &name) const;
    /// The arguments of the last emission of that name; empty when there was none.
    QVariantList lastArguments(const QString &name) const;
    void clear() { _emissions.clear(); }

    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override;

private:
    QVector<QMetaMethod> _signals;
    QVector<Emission> _emissions;
};
