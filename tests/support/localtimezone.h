#pragma once

#include <QByteArray>

/// Moves the process to another local time zone, given by its name in the IANA database ("Europe/Berlin"). The C
/// library and with it QDateTime follow at once. Not for use while another thread converts times. False when the
/// platform cannot follow the zone; the zone in force is then undefined.
bool setLocalTimeZone(const QByteArray &ianaName);
