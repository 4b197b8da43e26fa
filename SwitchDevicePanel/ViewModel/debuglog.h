// Debug messages whose text is built only while somebody listens.
#pragma once

#include <QtCore/QDebug>
#include <QtCore/QLoggingCategory>

namespace analysis {

//! Qt's own category "default", so that these messages look and filter exactly like qDebug().
inline const QLoggingCategory &defaultLog()
{
    return *QLoggingCategory::defaultCategory();
}

} // namespace analysis

//! qDebug() builds its text even when debug output is switched off; this does not even evaluate the operands. Spelled
//! out, since qCDebug(category) leaves the variable arguments of its macro empty, which C++17 does not allow.
#define logDebug()                                                                                                     \
    for (bool isDebugOn = analysis::defaultLog().isDebugEnabled(); isDebugOn; isDebugOn = false)                       \
    QMessageLogger(QT_MESSAGELOG_FILE, QT_MESSAGELOG_LINE, QT_MESSAGELOG_FUNC, analysis::defaultLog().categoryName())  \
        .debug()
