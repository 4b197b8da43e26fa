// What would be sent, without a switch.
#pragma once

#include "blocklist.h"
#include "connectionoptions.h"
#include "switchsession.h"

struct DryRun
{
    Outcome outcome;
    std::vector<CommandBlock> blocks; //!< in sending order
};

/*!
    Lets the view model send what the action makes it send, to a console that only shows port listings: that of the
   file, or without one that of the built-in simulated switch of the family. No serial port is opened.

   The file is what `display interface brief` printed; what `display device slot` printed may stand in it, too, for the
   number of copper ports.
*/
DryRun dryRun(const ConnectionRequest &request, const QString &listingFile, const SwitchAction &action);
