#include "localtimezone.h"

#include <QtGlobal>

#include <time.h>

namespace {

struct RuntimeZone
{
    const char *ianaName;
    const char *runtimeName; // the C runtime knows offsets and the rules of the United States only
};

const RuntimeZone kRuntimeZones[] = {{"UTC", "UTC0"},
                                     {"Europe/Berlin", "CET-1CST"},
                                     {"America/New_York", "EST5EDT"},
                                     {"Australia/Lord_Howe", "LHS-10:30LHD"},
                                     {"Pacific/Apia", "WST-13"},
                                     {"Asia/Kolkata", "IST-5:30"}};

} // namespace

bool setLocalTimeZone(const QByteArray &ianaName)
{
    for (const RuntimeZone &zone : kRuntimeZones) {
        if (ianaName == zone.ianaName) {
            if (!qputenv("TZ", zone.runtimeName))
                return false;
            _tzset();
            return true;
        }
    }
    return false;
}
