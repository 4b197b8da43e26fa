#include "signalrecorder.h"

#include <QtCore/QMutexLocker>

SignalRecorder::SignalRecorder(QObject *sender)
{
    const QMetaObject *metaObject = sender->metaObject();
    for (int i = 0; i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        if (method.methodType() != QMetaMethod::Signal || method.name() == "destroyed")
            continue;
        // The slots have no names: their numbers follow on those of QObject's own methods.
        const int slot = QObject::staticMetaObject.methodCount() + _signals.size();
        QMetaObject::connect(sender, i, this, slot, Qt::DirectConnection);
        _signals.append(method);
    }
}

int SignalRecorder::qt_metacall(QMetaObject::Call call, int id, void **arguments)
{
    const int slot = QObject::qt_metacall(call, id, arguments);
    if (slot < 0 || call != QMetaObject::InvokeMetaMethod)
        return slot;
    const QMetaMethod &signal = _signals.at(slot);
    Emission emission{QString::fromLatin1(signal.name()), {}};
    for (int i = 0; i < signal.parameterCount(); ++i)
        emission.arguments.append(QVariant(signal.parameterType(i), arguments[i + 1]));
    const QMutexLocker locker(&_lock);
    _emissions.append(emission);
    return -1;
}

QVector<SignalRecorder::Emission> SignalRecorder::emissions() const
{
    const QMutexLocker locker(&_lock);
    return _emissions;
}

void SignalRecorder::clear()
{
    const QMutexLocker locker(&_lock);
    _emissions.clear();
}

QStringList SignalRecorder::texts() const
{
    QStringList texts;
    for (const Emission &emission : emissions()) {
        QStringList arguments;
        for (const QVariant &argument : emission.arguments)
            arguments.append(argument.toString());
        texts.append(QStringLiteral("%1(%2)").arg(emission.name, arguments.join(QStringLiteral(", "))));
    }
    return texts;
}

QStringList SignalRecorder::names() const
{
    QStringList names;
    for (const Emission &emission : emissions())
        names.append(emission.name);
    return names;
}

int SignalRecorder::count(const QString &name) const
{
    return names().count(name);
}

QVariantList SignalRecorder::lastArguments(const QString &name) const
{
    const QVector<Emission> kept = emissions();
    for (auto emission = kept.rbegin(); emission != kept.rend(); ++emission) {
        if (emission->name == name)
            return emission->arguments;
    }
    return {};
}
