/*
    What a console reply of the Huawei family says, section by section.

    Every function looks at the whole reply and knows nothing of the others: one reply may satisfy several. The view
   model asks them in the order in which they stand here, which is part of the behaviour, and applies each answer before
   it asks for the next: the port inventory may change the naming that later sections read with.

    As in sharedsections.h, nothing translates, logs or signals, views point into the reply, and all of it is linear.
*/
#pragma once

#include "portinventory.h"
#include "sharedsections.h"
#include "transceiverparser.h"

#include <optional>

namespace reply {

//! More labels; translated, except kMorePagesLabel.
inline constexpr QStringView kPortListingLabel = u"接口解析";
inline constexpr QStringView kOpticalPortsLabel = u"光电端口解析";
inline constexpr QStringView kMorePagesLabel = u"more igmp";

//! What kMorePagesLabel sends: blanks turn the page, the line end is harmless at a prompt.
inline constexpr char kMorePagesBytes[] = "    \r\n";

// 1. Port inventory: readHuaweiPorts() in portinventory.h.

//! 2. To be asked for a reply to kMulticastTableLabel only.
Effects readMulticastTable(const ReplyText &reply);

//! 3. To be asked for a reply to kMorePagesLabel only. Empty once the user-view prompt is back.
Effects readMorePages(const ReplyText &reply);

//! 4. To be asked for a reply to kIpConflictLabel only.
Effects readIpConflicts(const ReplyText &reply);

// 5. Optical ports: readOpticalPorts() in sharedsections.h.

//! 6. The listing of VLANs with their count.
Effects readVlanListing(const ReplyText &reply);

// 7. Mirrored ports: readPortMirroring() in sharedsections.h; each is a debug log line.

//! 8. and 13. The current configuration was listed: 8 ends the waiting, 13 announces the first such reply of the
//! process.
bool isCurrentConfiguration(const ReplyText &reply);

struct AutoNegotiation
{
    QString port; // the number, as it stands in the port that was asked for
    bool isOn = true;
};

/*!
    8. Whether the port \a askedPort ("g0/0/1") negotiates, from the current configuration, which shows only what is
   off. Nothing when the reply is no such listing, the text names no port, or the port has no section.
*/
std::optional<AutoNegotiation> readAutoNegotiation(const ReplyText &reply, const InterfaceNamingProfile &naming,
                                                   const QString &askedPort);

//! 9. Power over Ethernet; lines cut by a page marker are cut back to the port's name.
Effects readPoePower(const ReplyText &reply);

//! 10. The reply goes to readTransceivers(); behind that the waiting ends.
bool isTransceiverListing(const ReplyText &reply);

//! 11. The first section of an interface view's own settings.
Effects readInterfaceView(const ReplyText &reply);

//! 12. The first prompt that the reply contains, in the order of the enumerators.
LoginPrompt readLoginPrompt(const ReplyText &reply, bool isLoggedIn);

//! 14. IGMP snooping of one VLAN. Does not end the waiting; empty also for the echo of the abbreviated command.
Effects readIgmpConfiguration(const ReplyText &reply);

//! 15. A warning with the current label.
bool isCommandError(const ReplyText &reply);

// 16. Restart: isRebootNotice() in sharedsections.h.

} // namespace reply
