// The listing of optical modules, one short block of text per port.
#pragma once

#include "interfacenamingprofile.h"
#include "replytext.h"

#include <optional>
#include <vector>

namespace reply {

//! What the listing says of one port. The port is a part of the reply's text.
struct TransceiverNote
{
    bool isAbsent = false;           // no module in the cage
    std::optional<QStringView> port; // interface name; none when a listing followed a header that names no known port
    QString details; // type, connector and wavelength lines, each trimmed and with "\n"; empty when absent

    //! Nothing to say at all.
    bool isEmpty() const { return !port && details.isEmpty(); }
    //! Port and \a title, when the port is known, and the details behind them.
    QString text(const QString &title) const;
};

/*!
    The last block of a listing goes to the result lines, all others to the log, as soon as the next port begins: the
   panel relies on the difference.
*/
struct TransceiverListing
{
    std::vector<TransceiverNote> logged; // in the order in which they are announced
    std::optional<TransceiverNote> last; // only a block with details
};

//! Reads the listing of either family. A reply without such a listing gives an empty value.
TransceiverListing readTransceivers(const ReplyText &reply, const InterfaceNamingProfile &naming);

} // namespace reply
