// The checks over lists of message records: texts in, texts out.
#pragma once

#include "healthcheck.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QVariantMap>

namespace analysis {

/*!
    Turns lists of records into the checks' values, reading every time text once, and gives the texts back. The lists
   must outlive the object. A missing key reads as an empty text.
*/
class RecordTexts : public MessageTexts
{
public:
    explicit RecordTexts(WallClock &clock)
        : _clock(clock)
    {}

    CheckMessages read(const QList<QVariantMap> &records);

    // MessageTexts
    QString timestamp(const CheckMessage &message) override { return _timestamps[message.record]; }
    QString source(qint32 source) override { return _sources.texts[source]; }
    QString sequence(qint32 sequence) override { return _sequences.texts[sequence]; }
    qint32 sourceCount() const override { return _sources.texts.size(); }
    qint32 sequenceCount() const override { return _sequences.texts.size(); }

private:
    struct TextNumbers
    {
        QHash<QString, qint32> numbers;
        QList<QString> texts;

        qint32 number(const QString &text);
    };

    WallClock &_clock;
    QList<QString> _timestamps;
    TextNumbers _sources;
    TextNumbers _sequences;
};

//! The records whose time is at or before the cut-off (inclusive) or strictly before it; others and unreadable ones go.
enum class Cutoff { Inclusive, Strict };
QList<QVariantMap> recordsBefore(const QList<QVariantMap> &records, qint64 cutoff, Cutoff kind, WallClock &clock);

} // namespace analysis
