#pragma once

#include "randomsource.h"
#include "textanalysis.h"

/// Random captures and record lists for comparing the analysis with the plain one. What one seed gives depends on the
/// zone's rules, nothing else.
namespace randomcapture {

/// A capture file with what a reader must find in it and the settings to analyse it with.
struct Capture
{
    QByteArray file;
    /// In file order, times and messages as they come back from the file.
    QVector<capturebuilder::CapturedPacket> packets;
    textanalysis::Settings settings;
    QString description; ///< for failure messages
};

/// A small capture (0 to some 60 packets, now and then 400). Times crowd around the changes of the zone's offset and
/// the ends of what files can hold; files come in every format, link type and byte order; packets in every wrapping,
/// broken ones among them.
Capture capture(RandomSource &random, const QByteArray &zone);

/// Settings from ordinary to absurd.
textanalysis::Settings settings(RandomSource &random);

/// Milliseconds since the epoch: mostly close to a change of the zone's offset in [1901, 2106], within an hour of it.
qint64 baseTime(RandomSource &random, const QByteArray &zone);

/// Records whose texts may be anything: times close to `base`, times that a clock change left out, malformed and
/// missing ones; addresses and sequence ids likewise.
textanalysis::Records records(RandomSource &random, const QByteArray &zone, qint64 base, int count);

} // namespace randomcapture
