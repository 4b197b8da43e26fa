#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>

#include <initializer_list>
#include <utility>

namespace simulator {

constexpr char kLineEnd[] = "\r\n";

inline QByteArray left(const QByteArray &text, int width)
{
    return text.leftJustified(width);
}

inline QByteArray right(const QByteArray &text, int width)
{
    return text.rightJustified(width);
}

inline QByteArray number(qint64 value)
{
    return QByteArray::number(value);
}

/// A number with leading zeros.
inline QByteArray digits(int value, int width)
{
    return QByteArray::number(value).rightJustified(width, '0');
}

inline QByteArray rule(int width, char sign = '-')
{
    return QByteArray(width, sign);
}

/// Puts values in the place of {name} in a text of a dialect.
inline QByteArray fill(QByteArray text, std::initializer_list<std::pair<const char *, QByteArray>> values)
{
    for (const auto &value : values)
        text.replace('{' + QByteArray(value.first) + '}', value.second);
    return text;
}

/// The lines with a line end behind each.
inline QByteArray joinLines(const QByteArrayList &lines)
{
    return lines.isEmpty() ? QByteArray() : lines.join(kLineEnd) + kLineEnd;
}

/// Whether `text` is a beginning of `word`, capitals and small letters alike. The empty text is none.
bool isBeginning(const QByteArray &text, const QByteArray &word);
bool isSame(const QByteArray &one, const QByteArray &other);

} // namespace simulator
