#include "systemlimits.h"

namespace systemlimits {

// A Windows process cannot act as another user without that user's password, and has no limit of file sizes and no
// named pipes among its files.

UnprivilegedScope::UnprivilegedScope() = default;

UnprivilegedScope::~UnprivilegedScope() = default;

FileSizeLimit::FileSizeLimit(qint64) {}

FileSizeLimit::~FileSizeLimit() = default;

bool makePipe(const QString &)
{
    return false;
}

bool makeSymbolicLink(const QString &, const QString &)
{
    return false;
}

QString fullDevice()
{
    return QString();
}

} // namespace systemlimits
