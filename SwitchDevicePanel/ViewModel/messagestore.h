// The bounded memory of the packet loop: the latest messages, and what the checks need of each message type.
#pragma once

#include "messagequeue.h"
#include "storedmessage.h"

#include <array>

namespace analysis {

/*!
    Holds at most \c capacity messages, oldest first, and five lists by type. When it is full, the oldest fifth goes,
   from the messages and from every type list that holds more than a fifth; a type list may therefore reach further back
   than the messages.
*/
class MessageStore
{
public:
    enum TypeList { Announce, Sync, FollowUp, DelayReq, DelayResp, TypeListCount };

    explicit MessageStore(int capacity)
        : _capacity(static_cast<std::size_t>(capacity > 0 ? capacity : 0))
    {}

    void append(const StoredMessage &message, const TypeEntry &entry);

    //! Second guard, for capacities so small that a fifth is nothing: cuts the messages down to the capacity once they
    //! exceed it by a fifth, and says how many went.
    std::size_t removeExcess();

    const MessageQueue<StoredMessage> &messages() const { return _messages; }
    const MessageQueue<TypeEntry> &list(TypeList type) const { return _lists[type]; }

private:
    std::size_t _capacity;
    MessageQueue<StoredMessage> _messages;
    std::array<MessageQueue<TypeEntry>, TypeListCount> _lists;
};

} // namespace analysis
