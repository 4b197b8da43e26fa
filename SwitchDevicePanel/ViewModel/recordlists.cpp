#include "recordlists.h"

namespace analysis {

namespace {

QString textOf(const QVariantMap &record, const QString &key)
{
    return record.value(key).toString();
}

} // namespace

qint32 RecordTexts::TextNumbers::number(const QString &text)
{
    const auto found = numbers.constFind(text);
    if (found != numbers.constEnd())
        return *found;
    numbers.insert(text, texts.size());
    texts.append(text);
    return texts.size() - 1;
}

CheckMessages RecordTexts::read(const QList<QVariantMap> &records)
{
    CheckMessages messages;
    messages.reserve(static_cast<std::size_t>(records.size()));
    for (const QVariantMap &record : records) {
        const QString timestamp = textOf(record, QStringLiteral("timestamp"));
        const WallClock::Time time = _clock.parse(timestamp);
        CheckMessage message;
        message.msecs = time.msecs;
        message.hasTime = time.isValid;
        message.source = _sources.number(textOf(record, QStringLiteral("sourceIp")));
        message.sequence = _sequences.number(textOf(record, QStringLiteral("sequenceId")));
        message.record = _timestamps.size();
        _timestamps.append(timestamp);
        messages.push_back(message);
    }
    return messages;
}

QList<QVariantMap> recordsBefore(const QList<QVariantMap> &records, qint64 cutoff, Cutoff kind, WallClock &clock)
{
    QList<QVariantMap> kept;
    for (const QVariantMap &record : records) {
        const WallClock::Time time = clock.parse(textOf(record, QStringLiteral("timestamp")));
        if (time.isValid && (time.msecs < cutoff || (kind == Cutoff::Inclusive && time.msecs == cutoff)))
            kept.append(record);
    }
    return kept;
}

} // namespace analysis
