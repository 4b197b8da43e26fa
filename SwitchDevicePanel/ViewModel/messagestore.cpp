#include "messagestore.h"

namespace analysis {

namespace {

MessageStore::TypeList listOf(PTPv2::MessageType type)
{
    switch (type) {
    case PTPv2::MessageType::Announce:
        return MessageStore::Announce;
    case PTPv2::MessageType::Sync:
        return MessageStore::Sync;
    case PTPv2::MessageType::FollowUp:
        return MessageStore::FollowUp;
    case PTPv2::MessageType::DelayReq:
        return MessageStore::DelayReq;
    case PTPv2::MessageType::DelayResp:
        return MessageStore::DelayResp;
    case PTPv2::MessageType::PdelayReq:
    case PTPv2::MessageType::PdelayResp:
    case PTPv2::MessageType::PdelayRespFollowUp:
    case PTPv2::MessageType::Signaling:
    case PTPv2::MessageType::Management:
        break;
    }
    return MessageStore::TypeListCount;
}

} // namespace

void MessageStore::append(const StoredMessage &message, const TypeEntry &entry)
{
    if (_messages.size() >= _capacity) {
        const std::size_t fifth = _capacity / 5;
        _messages.dropFront(fifth);
        for (MessageQueue<TypeEntry> &list : _lists) {
            if (list.size() > fifth)
                list.dropFront(fifth);
        }
    }
    _messages.append(message);
    const TypeList list = listOf(message.message.header.messageType);
    if (list != TypeListCount)
        _lists[list].append(entry);
}

std::size_t MessageStore::removeExcess()
{
    if (_messages.size() <= _capacity + _capacity / 5)
        return 0;
    const std::size_t excess = _messages.size() - _capacity;
    _messages.dropFront(excess);
    for (MessageQueue<TypeEntry> &list : _lists) {
        if (list.size() > excess)
            list.dropFront(excess);
    }
    return excess;
}

} // namespace analysis
