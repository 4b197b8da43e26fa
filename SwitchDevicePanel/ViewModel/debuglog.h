// Debug messages whose text is built only while somebody listens.
#pragma once

#include <QtCore/QLoggingCategory>

namespace analysis {

//! Qt's own category "default", so that these messages look and filter exactly like qDebug().
inline const QLoggingCategory &defaultLog()
{
    return *QLoggingCategory::defaultCategory();
}

} // namespace analysis

//! qDebug() builds its text even when debug output is switched off; this does not even evaluate the operands.
#define logDebug() qCDebug(analysis::defaultLog)
