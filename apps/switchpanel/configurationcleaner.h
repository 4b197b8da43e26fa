// From what a console showed to what it can be told: a configuration listing as a file of commands.
#pragma once

#include <QtCore/QByteArray>

struct CleanedConfiguration
{
    QByteArray commands;     //!< LF line ends, `system-view` first, `return` last; empty when nothing was found
    bool isComplete = false; //!< the listing's own last line, `return`, was there
};

/*!
    Turns the raw console output of `display current-configuration` into commands that replay it. Left out are: what
   stands before the listing and behind it, prompts and echo, pager texts with their erasing, NULs and other control
   characters, log lines (wrapped at column 80, too), the software version, and comments. Sections come back to the
   system view before the next one begins. Bytes beyond ASCII stay as they are. What has been cleaned before stays as it
   is.

   Pure; linear in the length of `output`.
*/
CleanedConfiguration cleanedConfiguration(const QByteArray &output);
