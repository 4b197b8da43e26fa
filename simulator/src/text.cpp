#include "text.h"

namespace simulator {

bool isBeginning(const QByteArray &text, const QByteArray &word)
{
    return !text.isEmpty() && text.size() <= word.size()
           && qstrnicmp(text.constData(), word.constData(), static_cast<uint>(text.size())) == 0;
}

bool isSame(const QByteArray &one, const QByteArray &other)
{
    return one.size() == other.size() && isBeginning(one, other);
}

} // namespace simulator
