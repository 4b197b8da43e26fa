// The payload of a UDP datagram, as it comes from a capture: decoded, printed, and given to the analyzer. What follows
// a message is taken for the next one, so that one input can hold a whole exchange.

#include "ptpv2parser/ptpv2analyzer.h"
#include "ptpv2parser/ptpv2parser.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

void require(bool condition)
{
    if (!condition)
        std::abort();
}

void print(const PTPv2::PTPv2Message &message)
{
    using PTPv2::MessageType;
    require(!PTPv2::PTPv2Parser::messageTypeToString(message.header.messageType).empty());
    require(message.header.sourcePortIdentity.toString().size() >= 25);
    require(message.timestamp.toString().size() >= 11);
    if (message.header.messageType == MessageType::DelayResp)
        require(message.requestingPortIdentity.toString().size() >= 25);
    if (message.header.messageType == MessageType::Announce)
        require(message.announce.grandmasterIdentity.toString().size() == 23);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    PTPv2::PTPv2Analyzer analyzer;
    PTPv2::PTPv2Message message;
    for (uint64_t count = 0; PTPv2::decodeMessage(data, size, message) == PTPv2::DecodeResult::Ok; ++count) {
        require(message.header.messageLength >= 34 && message.header.messageLength <= size);
        print(message);
        // Any capture time: reserved octets decide, so that the input can choose hostile ones.
        message.captureSeconds = static_cast<int64_t>((uint64_t{data[16]} << 56) + data[17] + count);
        message.captureNanoseconds = data[18] * 1000;
        analyzer.addMessage(message);
        data += message.header.messageLength;
        size -= message.header.messageLength;
    }
    const std::vector<PTPv2::SyncSession> sessions = analyzer.getSyncSessions();
    require(sessions.size() == analyzer.sessionCount());
    for (const PTPv2::SyncSession &session : sessions)
        require(std::isfinite(session.clockOffset) && std::isfinite(session.pathDelay));
    return 0;
}
