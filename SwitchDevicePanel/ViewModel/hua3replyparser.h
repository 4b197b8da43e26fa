/*
    What a console reply of the Hua3 family says, section by section.

    Every function looks at the whole reply and knows nothing of the others: one reply may satisfy several. The view
   model asks them in the order in which they stand here, which is part of the behaviour, and applies each answer before
   it asks for the next. This family never changes the naming.

     1  label is kMulticastTableLabel: the effects of readHua3MulticastTable()
     2  label is kIpConflictLabel: the effects of readHua3IpConflicts()
     3  to 7: the effects of readHua3PortStatus(), readHua3VlanSummary(), readHua3Snooping(), readHua3Querier(),
        readHua3LinkAggregation()
     8  readHua3MirroringGroups(): when it has a value, a text that is not empty is an info log line behind another one
        with kMirroringGroupHeading, translated; the waiting ends with any value
     9  to 12: the effects of readHua3PoeInterfaces(), readHua3PoeUsage(), readHua3ForwardingTable(),
        readHua3OpticalPorts()
    13  readPortMirroring(): each port is an info log line while logMore is on, nothing otherwise, and ends the waiting;
        an existing value ends it once more
    14  readHua3LoginPrompt(): as the Huawei family's
    15  readHua3Ports(): clears both port lists, then as the Huawei family's inventory, but no slot, no sub-model, no
        header lines to announce, and no further query; does not end the waiting, section 3 has done so
    16  isHua3TransceiverListing(): the reply goes to readTransceivers(); does not end the waiting
    17  isRebootNotice(): the toast, in Chinese whatever the language

    Of the effects, those of 3, 4, 6, 7, 9, 10 and 12 contain the end of the waiting, those of 1, 2, 5 and 11 do not.

    Tables (3, 7, 9, 10): lines are trimmed, empty ones left out. The prompt that ends a table is its last line. A line
   behind a page marker is cut back to the port's name in 3, 9 and 10.

    As in sharedsections.h, nothing translates, logs or signals, views point into the reply, and all of it is linear.
*/
#pragma once

#include "portinventory.h"
#include "sharedsections.h"
#include "transceiverparser.h"

#include <QtCore/QString>

#include <optional>

namespace reply {

//! Stands above what the mirroring groups say; translated.
inline constexpr QStringView kMirroringGroupHeading = u"镜像端口配置信息:";

//! 1. To be asked for a reply to kMulticastTableLabel only.
Effects readHua3MulticastTable(const ReplyText &reply);

//! 2. To be asked for a reply to kIpConflictLabel only. A reply of a single line holds no record.
Effects readHua3IpConflicts(const ReplyText &reply);

//! 3. The table of bridged interfaces. The same reply is also the inventory, see readHua3Ports().
Effects readHua3PortStatus(const ReplyText &reply);

//! 4. The number of VLANs, and their ids, which stand on the line below their heading.
Effects readHua3VlanSummary(const ReplyText &reply);

//! 5. The headings of the snooping listing.
Effects readHua3Snooping(const ReplyText &reply);

//! 6. The querier lines of the snooping listing.
Effects readHua3Querier(const ReplyText &reply);

//! 7. The member table of the aggregation groups.
Effects readHua3LinkAggregation(const ReplyText &reply);

/*!
    8. Type, state and ports of the mirroring groups, each trimmed and with "\n"; empty when the listing names none.
   Nothing when the reply is no such listing.
*/
std::optional<QString> readHua3MirroringGroups(const ReplyText &reply);

//! 9. Power over Ethernet, port by port. Only what stands behind a page marker is shown without logMore.
Effects readHua3PoeInterfaces(const ReplyText &reply);

//! 10. Usage of the interfaces.
Effects readHua3PoeUsage(const ReplyText &reply);

//! 11. The line below the first one that names the multicast forwarding table, which may be the echo.
Effects readHua3ForwardingTable(const ReplyText &reply);

//! 12. As readOpticalPorts(), for a reply that also names ports.
Effects readHua3OpticalPorts(const ReplyText &reply);

// 13. Mirrored ports: readPortMirroring() in sharedsections.h.

//! 14. The first prompt that the reply contains, in the order of the enumerators. Newer software asks for a "Login".
LoginPrompt readHua3LoginPrompt(const ReplyText &reply, bool isLoggedIn);

/*!
    15. The ports in the listing of "display interface brief"; nothing when \a reply is not one. A line that names a
   10-gigabit port ("XG") is never a gigabit port.
*/
std::optional<PortInventory> readHua3Ports(const ReplyText &reply, const InterfaceNamingProfile &naming,
                                           bool isAggregationSwitch);

//! 16. An absent module alone is no listing here.
bool isHua3TransceiverListing(const ReplyText &reply);

// 17. Restart: isRebootNotice() in sharedsections.h.

} // namespace reply
