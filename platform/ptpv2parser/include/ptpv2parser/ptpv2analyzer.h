#pragma once

#include "ptpv2parser/ptpv2parser_export.h"
#include "ptpv2parser/ptpv2types.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace PTPv2 {

class PTPv2Parser;

/// What is known of one master port in one domain.
struct SyncSession
{
    PortIdentity masterPortIdentity;
    uint8_t domainNumber;
    /// Offset from master and mean path delay of the last complete exchange in nanoseconds, IEEE 1588-2008 11.2 and
    /// 11.3. Zero while hasValidSync is false.
    double clockOffset;
    double pathDelay;
    bool hasValidSync;             ///< whether there has been a complete exchange
    uint16_t lastSyncSequence;     ///< sequenceId of the last Sync; 0 before the first
    uint16_t lastFollowUpSequence; ///< likewise of the last Follow_Up
};

/// Follows the messages of a capture and works out, for each master port and domain, the offset and the mean path delay
/// that a slave would measure if it stood where the capture was taken. One thread at a time.
///
/// A complete exchange is a Sync (with the Follow_Up of the same sequenceId unless it is one-step) and a Delay_Resp of
/// the same port with the Delay_Req that it answers. It is evaluated when the last of its messages arrives: a
/// Delay_Resp goes with the last complete Sync before it.
///
/// Memory: a fixed table of outstanding requests, shared by all slave ports (about 64 KiB; under thousands of requests
/// that nobody answers the oldest are forgotten), and about 0.4 KiB per session. Nothing is allocated for a message
/// unless it opens a session. A hostile capture can open a session per packet; sessionCount() is there for a caller
/// that wants to stop then.
class PTPV2PARSER_EXPORT PTPv2Analyzer
{
public:
    PTPv2Analyzer();
    ~PTPv2Analyzer();

    PTPv2Analyzer(const PTPv2Analyzer &) = delete;
    PTPv2Analyzer &operator=(const PTPv2Analyzer &) = delete;

    /// Takes the message that the parser holds; without one does nothing.
    void addMessage(const PTPv2Parser &parser);
    void addMessage(const PTPv2Message &message);

    /// One session per master port identity and domain, in the order in which the first Sync or Follow_Up of each came.
    std::vector<SyncSession> getSyncSessions() const;

    /// Number of sessions, without building them.
    std::size_t sessionCount() const;

    /// Forgets everything.
    void clear();

private:
    struct Private;
    std::unique_ptr<Private> _d;
};

} // namespace PTPv2
