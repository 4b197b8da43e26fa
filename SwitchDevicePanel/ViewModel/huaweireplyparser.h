/*
    What a console reply of the Huawei family says, section by section.

    Every function looks at the whole reply and knows nothing of the others: one reply may satisfy several. The view
   model asks them in the order in which they stand here, which is part of the behaviour, and applies each answer before
   it asks for the next: the port inventory may change the naming that later sections read with.

    Nothing here translates, logs or signals. Texts named "translated" are Chinese source texts, to be put into the
   user's language by whoever applies them. Every QStringView points into the reply, which has to outlive the result, or
   to a constant. All functions are linear in the length of the reply and safe for any text.
*/
#pragma once

#include "interfacenamingprofile.h"
#include "portinventory.h"
#include "replytext.h"
#include "transceiverparser.h"

#include <optional>
#include <vector>

namespace reply {

//! Labels of queued commands by which a reply's question is known; translated, except kMorePagesLabel.
inline constexpr QStringView kPortListingLabel = u"接口解析";
inline constexpr QStringView kOpticalPortsLabel = u"光电端口解析";
inline constexpr QStringView kMulticastTableLabel = u"组播转发表";
inline constexpr QStringView kIpConflictLabel = u"IP冲突";
inline constexpr QStringView kMorePagesLabel = u"more igmp";

//! What kMorePagesLabel sends: blanks turn the page, the line end is harmless at a prompt.
inline constexpr char kMorePagesBytes[] = "    \r\n";

//! One visible consequence of a reply.
struct Effect
{
    enum class Kind {
        Info,                // an info log line
        InfoTranslated,      // an info log line, translated
        InfoEveryLine,       // one info log line per line of the reply, empty ones too; text is null
        Result,              // appended to the result lines
        ResultEveryLine,     // every line of the reply appended to the result lines, empty ones too; text is null
        OpticalPortsCleared, // the list of optical port lines is emptied; text is null
        OpticalPort,         // appended to the optical port lines
        BoardType,           // the board type, announced when it differs from the known one
        MorePagesRequested,  // kMorePagesBytes queued under kMorePagesLabel; text is null
        WaitingEnded,        // isWaitingResponse becomes false; text is null
    };

    Kind kind;
    QStringView text;

    friend bool operator==(const Effect &a, const Effect &b) { return a.kind == b.kind && a.text == b.text; }
    friend bool operator!=(const Effect &a, const Effect &b) { return !(a == b); }
};
//! In the order in which they become visible. Empty: the reply does not satisfy the section.
using Effects = std::vector<Effect>;

// 1. Port inventory: readHuaweiPorts() in portinventory.h.

//! 2. To be asked for a reply to kMulticastTableLabel only.
Effects readMulticastTable(const ReplyText &reply);

//! 3. To be asked for a reply to kMorePagesLabel only. Empty once the user-view prompt is back.
Effects readMorePages(const ReplyText &reply);

//! 4. To be asked for a reply to kIpConflictLabel only.
Effects readIpConflicts(const ReplyText &reply);

//! 5. Board type and the table of optical ports; lines cut by a page marker are cut back to the port's name.
Effects readOpticalPorts(const ReplyText &reply);

//! 6. The listing of VLANs with their count.
Effects readVlanListing(const ReplyText &reply);

//! One mirrored port; each is a debug log line, and ends the waiting.
struct PortMirroring
{
    int id = 0;
    int sourcePort = 0;
    int destinationPort = 0;
};

/*!
    7. Mirrored ports, in listing order; nothing when the reply is no such listing. An existing value ends the waiting
   once more, even when it is empty. A row counts only behind the line that names the destination.
*/
std::optional<std::vector<PortMirroring>> readPortMirroring(const ReplyText &reply,
                                                            const InterfaceNamingProfile &naming);

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

enum class LoginPrompt {
    None,
    Username,        // state NeedUsername
    Password,        // state NeedPassword
    ConfirmPassword, // state NeedConfirmPassword
    Ready,           // a command prompt before the login was announced: log line, state LoginSuccess, then isLoggedIn
    Refused,         // state LoginFailed
    Failed,          // a log line only
};

//! 12. The first prompt that the reply contains, in the order of the enumerators.
LoginPrompt readLoginPrompt(const ReplyText &reply, bool isLoggedIn);

//! 14. IGMP snooping of one VLAN. Does not end the waiting; empty also for the echo of the abbreviated command.
Effects readIgmpConfiguration(const ReplyText &reply);

//! 15. A warning with the current label.
bool isCommandError(const ReplyText &reply);

//! 16. The switch clears its configuration and restarts: a toast.
bool isRebootNotice(const ReplyText &reply);

} // namespace reply
