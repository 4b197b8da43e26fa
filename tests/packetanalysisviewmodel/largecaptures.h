#pragma once

#include "capturebuilder.h"

#include <QtCore/QString>

/// Capture files that are too large to build in memory. False when the file cannot be written.
namespace largecaptures {

/// A healthy site's packets over and over: long enough to be read for a while. Returns the number of packets through
/// `packets`.
bool writeLong(const QString &path, int *packets);

/// The capture followed by nothing up to `size` bytes; takes no space on the disk beyond the capture where the file
/// system knows sparse files.
bool writeSparse(const QString &path, const QByteArray &capture, qint64 size);

/// The header of a record that claims more bytes than any file here has, little-endian.
QByteArray overrunningRecordHeader();

} // namespace largecaptures
