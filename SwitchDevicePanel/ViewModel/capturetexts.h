// The texts of one capture: message records, and what the checks quote.
#pragma once

#include "healthcheck.h"
#include "storedmessage.h"

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <vector>

namespace analysis {

/*!
    Makes every text of a capture at most once per distinct value; equal texts share their memory, across records and
   findings. One analysis on one thread.
*/
class CaptureTexts : public MessageTexts
{
public:
    explicit CaptureTexts(WallClock &clock);

    //! The record of a message: a map of texts, one key per field of the common header and of the body of its type.
    QVariantMap record(const StoredMessage &stored);

    //! The number that stands for a source address in the checks.
    qint32 sourceNumber(const SourceAddress &address);

    QString address(const SourceAddress &address);
    QString portIdentity(const PTPv2::PortIdentity &identity);
    static QString messageType(PTPv2::MessageType type);

    // MessageTexts
    QString timestamp(const CheckMessage &message) override;
    QString source(qint32 source) override;
    QString sequence(qint32 sequence) override;
    qint32 sourceCount() const override;
    qint32 sequenceCount() const override;

private:
    void insertBody(QVariantMap &record, const PTPv2::PTPv2Message &message);
    void insertAnnounce(QVariantMap &record, const PTPv2::PTPv2Message &message);
    QString number(qint64 value);
    QString correction(qint64 correctionField);
    QString timestampText(const PTPv2::Timestamp &timestamp);
    QString clockIdentity(const PTPv2::ClockIdentity &identity);

    WallClock &_clock;
    std::vector<QString> _smallNumbers; // decimal texts of 0 to 65535: sequence ids, lengths, domains, ports
    QHash<quint64, qint32> _sourceNumbers;
    std::vector<QString> _sources;
    QHash<QByteArray, QString> _portIdentities;
    QString _zeroTimestamp;
};

} // namespace analysis
