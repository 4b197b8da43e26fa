// Where an export of each capture goes.
#pragma once

#include "language.h"

#include <QtCore/QStringList>

//! One file per capture, in their order; with an error there is none.
struct ExportTargets
{
    QStringList paths;
    QString error; //!< a sentence for the user, empty when all is well
};

/*!
    Where --`option` OUT writes for these captures: into OUT itself, or, when OUT is a folder, into a file of that
   folder named after the capture with `suffix` added ("healthy.pcap.json"). Several captures need a folder, and names
   that differ by more than upper and lower case. An OUT that is one of the captures is refused.
*/
ExportTargets exportTargets(const char *option, const QString &out, const QString &suffix, const QStringList &captures,
                            Language language);
