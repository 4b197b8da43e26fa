#include "usermessage.h"

namespace ovra {
namespace bll {

QString filledIn(const QString &text, const QStringList &values)
{
    QString result;
    for (int i = 0; i < text.size(); ++i) {
        const int number = text[i] == QLatin1Char('%') && i + 1 < text.size() ? text[i + 1].unicode() - u'0' : 0;
        if (number >= 1 && number <= 9 && number <= values.size()) {
            result += values[number - 1];
            ++i;
        } else {
            result += text[i];
        }
    }
    return result;
}

} // namespace bll
} // namespace ovra
