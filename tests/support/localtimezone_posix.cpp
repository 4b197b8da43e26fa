#include "localtimezone.h"

#include <QtGlobal>

#include <ctime>

bool setLocalTimeZone(const QByteArray &ianaName)
{
    if (!qputenv("TZ", ianaName))
        return false;
    tzset();
    return true;
}
