#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace ovra {
namespace bll {

/// `text` with %1, %2 … %9 replaced by the first, second … value. A value may hold such a mark itself: it stays.
QString filledIn(const QString &text, const QStringList &values);

} // namespace bll
} // namespace ovra
