// A console reply, decoded, split into lines and searched for every keyword in one pass.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringView>

#include <bitset>
#include <cstddef>
#include <vector>

namespace reply {

//! The texts by which the parsers recognise replies and lines. Case matters; none contains a line end.
enum class Keyword {
    AggregateInterface,       // "Aggregate Interface"
    AuthenticationFail,       // "Authentication fail"
    AuthenticationFailed,     // "authentication failed"
    BoardType,                // "Board Type"
    CommandError,             // "command found at '^' position"
    ConfirmPassword,          // "confirm password:"
    ConflictType,             // "Conflict type"
    ConnectorType,            // "Connector Type"
    Description,              // "Description"
    Duplex,                   // "Duplex"
    EchoCurrentConfiguration, // "display current-configuration"
    EchoIgmpConfiguration,    // "dis igmp-snooping configuration"
    EchoPoePower,             // "display poe power"
    EchoPortMirroring,        // "display port-mirroring"
    EchoThis,                 // "display this"
    EnterPassword,            // "Enter password:"
    FailedToLogin,            // "Failed to login"
    Flag,                     // "Flag"
    Ge,                       // "GE"
    GeCopper,                 // "GE(C)"
    GigabitEthernet,          // "GigabitEthernet"
    Greater,                  // ">"
    Hash,                     // "#"
    IgmpConfiguration,        // "igmp-snooping configuration"
    IgmpSnooping,             // "IGMP snooping"
    Index,                    // "Index"
    Interface,                // "Interface"
    InUsage,                  // "InUsage"
    InvalidPassword,          // "Invalid password"
    Less,                     // "<"
    Link,                     // "Link"
    Login,                    // "Login"
    MirroringGroup,           // "Mirroring group"
    MirroringPort,            // "Mirroring port:"
    MulticastForwarding,      // "multicast forwarding-table"
    NoIgmpConfiguration,      // "There is no igmp-snooping configuration"
    OperKey,                  // "Oper-Key"
    Optic,                    // "Optic"
    PageMarker,               // "---- More ----"
    Password,                 // "Password:"
    PasswordIsInvalid,        // "The password is invalid"
    Phy,                      // "PHY"
    PleaseEnableIgmp,         // "Please enable IGMP snooping in the global view first"
    Poe,                      // "PoE"
    Port,                     // "Port"
    Priority,                 // "Priority"
    Querier,                  // "Querier"
    Reboot,                   // "reboot"
    Return,                   // "return"
    RightBracket,             // "]"
    Slash,                    // "/"
    Speed,                    // "Speed"
    Status,                   // "Status"
    StatusField,              // "Status:"
    TotalVlans,               // "Total VLANs"
    TransceiverAbsent,        // "transceiver is absent"
    TransceiverHeader,        // "transceiver information:"
    TransceiverInformation,   // "transceiver information"
    TransceiverType,          // "Transceiver Type"
    Type,                     // "Type"
    TypeField,                // "Type:"
    UndoNegotiation,          // "undo negotiation auto"
    UnrecognizedCommand,      // "Unrecognized command found"
    Username,                 // "Username:"
    VlanCount,                // "number of VLANs"
    VlansInclude,             // "The VLANs include"
    Wavelength,               // "Wavelength"
    Count
};
using KeywordSet = std::bitset<static_cast<std::size_t>(Keyword::Count)>;

struct ReplyLine
{
    QStringView text; // without its line end, not trimmed
    KeywordSet words;

    bool has(Keyword word) const { return words[static_cast<std::size_t>(word)]; }
};

/*!
    Owns the text that every view handed out by the parsers points into: it outlives their results. The pass over the
   text takes time linear in its length whatever stands in it.
*/
class ReplyText
{
public:
    //! \a bytes are UTF-8; what is not becomes U+FFFD.
    explicit ReplyText(const QByteArray &bytes);
    ReplyText(const ReplyText &) = delete;
    ReplyText &operator=(const ReplyText &) = delete;

    QStringView text() const { return _text; }

    //! Split at CR LF only, empty lines kept: at least one line, and an empty last one behind a final CR LF.
    const std::vector<ReplyLine> &lines() const { return _lines; }

    //! Whether the word stands anywhere in the reply.
    bool has(Keyword word) const { return _words[static_cast<std::size_t>(word)]; }

private:
    void addLine(qsizetype begin, qsizetype end, const KeywordSet &words);

    const QString _text;
    std::vector<ReplyLine> _lines;
    KeywordSet _words;
};

//! Looks for a text that is known at run time only, such as a keyword of a naming profile.
class LineFinder
{
public:
    LineFinder(const ReplyText &reply, QStringView text);

    //! Whether \a line contains the text. Lines are asked for in their order; some may be left out.
    bool isIn(const ReplyLine &line);

private:
    const QStringView _reply;
    const QStringView _text;
    qsizetype _next = 0; // first occurrence behind the begin of the last line asked for
    bool _isSearched = false;
};

} // namespace reply
