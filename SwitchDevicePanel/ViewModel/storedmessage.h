// One message as the packet loop keeps it: fixed size, no text.
#pragma once

#include <QtCore/QtGlobal>

#include <ptpv2parser/ptpv2types.h>

namespace analysis {

//! Where a message came from. PTP over IPv6 or without IP has no IPv4 address; that is a source of its own.
struct SourceAddress
{
    quint32 ipv4 = 0; // network byte order, as PcapPlusPlus gives it
    bool isKnown = false;
};

struct StoredMessage
{
    qint64 msecs = 0;     // capture time since the Unix epoch
    qint64 readMsecs = 0; // of its time text, read back
    bool hasTime = false; // whether the text is a time
    SourceAddress source;
    PTPv2::PTPv2Message message{};
};

//! What the health checks need of a message of the five types that they look at.
struct TypeEntry
{
    qint64 msecs = 0; // of the time text, read back
    quint32 ipv4 = 0;
    quint16 sequenceId = 0;
    bool hasAddress = false;
    bool hasTime = false;
};

} // namespace analysis
