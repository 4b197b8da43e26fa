// The ports of a switch, read from its interface listing.
#pragma once

#include "interfacenamingprofile.h"
#include "replytext.h"

#include <QtCore/QStringList>

#include <limits>
#include <optional>

namespace reply {

//! Smallest and largest port number seen.
struct PortSpan
{
    static constexpr int kNone = std::numeric_limits<int>::max();

    int minimum = kNone;
    int maximum = 0;

    void include(int port);
    //! False also for ports that are all numbered 0: such a span is not taken over.
    bool isFound() const { return minimum != kNone && maximum != 0; }
};

/*!
    What one listing says. To be applied in the order of the fields; then the spans that are found go to the range
    properties, and counts and range texts are announced from the stored ranges even when nothing was found.
*/
struct PortInventory
{
    int slot = 0;            // Huawei only: first number of the first interface name
    bool isSubModel = false; // Huawei only: the switch writes GE0/0/1; its description and naming apply from here on
    int headerCount = 0;     // header lines ("Interface … PHY") in the listing, each announced
    bool hasNoGigabitPort = false; // an aggregation switch: to be set and announced
    QStringList downPorts;         // prefix and slot/subslot/port, in listing order
    QStringList upPorts;
    PortSpan down;
    PortSpan up;
};

/*!
    Looks for gigabit ports, then, when there is none, for the numbers of 40-gigabit ports, then for 10-gigabit ports,
   which are down ports of an aggregation switch. \a isAggregationSwitch says that the switch counts as one already. A
   line with \a excludedText is never a gigabit port. Slot and sub-model stay at their defaults.
*/
PortInventory scanPorts(const ReplyText &reply, const InterfaceNamingProfile &naming, const QString &excludedText,
                        bool isAggregationSwitch);

/*!
    The listing of "display interface brief" of the Huawei family; nothing when \a reply is not one. A listing with
   short names is read with the sub-model's naming, whatever \a naming is.
*/
std::optional<PortInventory> readHuaweiPorts(const ReplyText &reply, const InterfaceNamingProfile &naming,
                                             bool isAggregationSwitch);

} // namespace reply
