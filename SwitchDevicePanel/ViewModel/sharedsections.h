/*
    The vocabulary of the reply parsers, and the sections that both families read alike.

    Nothing here translates, logs or signals. Texts named "translated" are Chinese source texts, to be put into the
   user's language by whoever applies them. Every QStringView points into the reply, which has to outlive the result, or
   to a constant. All functions are linear in the length of the reply and safe for any text.
*/
#pragma once

#include "interfacenamingprofile.h"
#include "replytext.h"

#include <QtCore/QStringView>

#include <optional>
#include <vector>

namespace reply {

//! Labels of queued commands by which a reply's question is known; translated.
inline constexpr QStringView kMulticastTableLabel = u"组播转发表";
inline constexpr QStringView kIpConflictLabel = u"IP冲突";

//! The answer of a switch without conflicts.
inline constexpr QStringView kNoIpConflict = u"\u200BNo IP conflict"; // the zero-width space is part of the text

//! One visible consequence of a reply.
struct Effect
{
    enum class Kind {
        Info,                // an info log line
        InfoDetailed,        // an info log line while logMore is on, else nothing
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

enum class LoginPrompt {
    None,
    Username,        // state NeedUsername
    Password,        // state NeedPassword
    ConfirmPassword, // state NeedConfirmPassword
    Ready,           // a command prompt before the login was announced: log line, state LoginSuccess, then isLoggedIn
    Refused,         // state LoginFailed
    Failed,          // a log line only
};

//! One mirrored port; ends the waiting once it is announced.
struct PortMirroring
{
    int id = 0;
    int sourcePort = 0;
    int destinationPort = 0;
};

//! Board type and the table of optical ports; lines cut by a page marker are cut back to the port's name.
Effects readOpticalPorts(const ReplyText &reply);

/*!
    Mirrored ports, in listing order; nothing when the reply is no such listing. An existing value ends the waiting once
   more, even when it is empty. A row counts only behind the line that names the destination.
*/
std::optional<std::vector<PortMirroring>> readPortMirroring(const ReplyText &reply,
                                                            const InterfaceNamingProfile &naming);

//! The switch clears its configuration and restarts: a toast.
bool isRebootNotice(const ReplyText &reply);

/*!
    What a page marker left of a table line: \a name and what follows it, up to the next \a name. The marker and its
   erasing stand in front. Null when the line has no \a name.
*/
QStringView behindPageMarker(QStringView line, QLatin1String name);

} // namespace reply
