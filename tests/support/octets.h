#pragma once

#include <QByteArray>
#include <QtEndian>

/// Appends numbers to a byte array in network order.
namespace octets {

template<typename Number>
void append(QByteArray &bytes, Number number)
{
    const Number ordered = qToBigEndian(number);
    bytes.append(reinterpret_cast<const char *>(&ordered), static_cast<int>(sizeof ordered));
}

inline void append(QByteArray &bytes, quint8 number)
{
    bytes.append(static_cast<char>(number));
}

/// Overwrites two octets at `position`.
inline void set16(QByteArray &bytes, int position, quint16 number)
{
    bytes[position] = static_cast<char>(number >> 8U);
    bytes[position + 1] = static_cast<char>(number & 0xffU);
}

} // namespace octets
