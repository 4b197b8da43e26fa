#include "capturebuilder.h"

#include <QFile>
#include <QtEndian>

#include <limits>

namespace capturebuilder {

namespace {

constexpr bool kHostIsLittle = Q_BYTE_ORDER == Q_LITTLE_ENDIAN;

/// Appends numbers in the byte order of the file.
class Writer
{
public:
    explicit Writer(ByteOrder order)
        : _order(order)
    {}

    template<typename Number>
    void put(Number number)
    {
        const Number ordered = _order == ByteOrder::Big ? qToBigEndian(number) : qToLittleEndian(number);
        _bytes.append(reinterpret_cast<const char *>(&ordered), static_cast<int>(sizeof ordered));
    }
    void putBytes(const QByteArray &bytes) { _bytes += bytes; }
    void padTo32Bits() { _bytes.append((4 - _bytes.size() % 4) % 4, '\0'); }
    const QByteArray &bytes() const { return _bytes; }

private:
    ByteOrder _order;
    QByteArray _bytes;
};

quint16 linkTypeOf(const QVector<CapturedPacket> &packets, const std::optional<quint16> &wanted)
{
    if (wanted)
        return *wanted;
    return packets.isEmpty() ? linktype::Ethernet : packets.first().frame.linkType;
}

QByteArray cut(const QByteArray &bytes, quint32 snapLength)
{
    return static_cast<quint32>(bytes.size()) > snapLength ? bytes.left(static_cast<int>(snapLength)) : bytes;
}

// pcapng blocks carry their length in front and behind.
void putBlock(Writer &file, ByteOrder order, quint32 type, const Writer &body)
{
    Writer padded(order);
    padded.putBytes(body.bytes());
    padded.padTo32Bits();
    const auto length = static_cast<quint32>(padded.bytes().size() + 12);
    file.put(type);
    file.put(length);
    file.putBytes(padded.bytes());
    file.put(length);
}

/// Units per second that an if_tsresol octet stands for.
quint64 unitsPerSecond(const std::optional<quint8> &resolution)
{
    const quint8 value = resolution.value_or(6);
    const quint32 exponent = value & 0x7fU;
    quint64 units = 1;
    for (quint32 i = 0; i < exponent; ++i)
        units *= (value & 0x80U) != 0 ? 2 : 10;
    return units;
}

quint64 toUnits(const RecordTime &time, quint64 units)
{
    // Whole seconds apart, so that 10^9 units times nanoseconds stay below 2^64.
    const quint64 seconds = static_cast<quint64>(time.seconds) + time.nanoseconds / 1000000000U;
    return seconds * units + (time.nanoseconds % 1000000000U) * units / 1000000000U;
}

} // namespace

RecordTime RecordTime::fromMilliseconds(qint64 milliseconds, quint32 extraNanoseconds)
{
    qint64 seconds = milliseconds / 1000;
    qint64 rest = milliseconds % 1000;
    if (rest < 0) {
        rest += 1000;
        --seconds;
    }
    return {seconds, static_cast<quint32>(rest) * 1000000U + extraNanoseconds};
}

QByteArray toPcap(const QVector<CapturedPacket> &packets, const PcapFormat &format)
{
    Writer file(format.order);
    file.put(quint32(format.nanoseconds ? 0xa1b23c4d : 0xa1b2c3d4));
    file.put(quint16(2)); // version 2.4
    file.put(quint16(4));
    file.put(quint32(0)); // time zone and accuracy, always zero
    file.put(quint32(0));
    file.put(format.snapLength);
    file.put(quint32(linkTypeOf(packets, format.linkType)));
    for (const CapturedPacket &packet : packets) {
        const QByteArray bytes = cut(packet.frame.bytes, format.snapLength);
        file.put(static_cast<quint32>(packet.time.seconds)); // negative times wrap
        file.put(format.nanoseconds ? packet.time.nanoseconds : packet.time.nanoseconds / 1000U);
        file.put(static_cast<quint32>(bytes.size()));
        file.put(static_cast<quint32>(packet.frame.bytes.size()));
        file.putBytes(bytes);
    }
    return file.bytes();
}

QByteArray toPcapng(const QVector<CapturedPacket> &packets, const PcapngFormat &format)
{
    Writer file(format.order);

    Writer section(format.order);
    section.put(quint32(0x1a2b3c4d));
    section.put(quint16(1)); // version 1.0
    section.put(quint16(0));
    section.put(std::numeric_limits<quint64>::max()); // length not known
    putBlock(file, format.order, 0x0a0d0d0a, section);

    Writer interface(format.order);
    interface.put(linkTypeOf(packets, format.linkType));
    interface.put(quint16(0));
    interface.put(format.snapLength);
    if (format.timestampResolution) {
        interface.put(quint16(9)); // if_tsresol
        interface.put(quint16(1));
        interface.put(*format.timestampResolution);
        interface.padTo32Bits();
        interface.put(quint32(0)); // end of options
    }
    putBlock(file, format.order, 1, interface);

    const quint64 units = unitsPerSecond(format.timestampResolution);
    for (const CapturedPacket &packet : packets) {
        const QByteArray bytes = cut(packet.frame.bytes, format.snapLength);
        const quint64 time = toUnits(packet.time, units);
        Writer block(format.order);
        block.put(quint32(0)); // interface
        block.put(static_cast<quint32>(time >> 32U));
        block.put(static_cast<quint32>(time & 0xffffffffU));
        block.put(static_cast<quint32>(bytes.size()));
        block.put(static_cast<quint32>(packet.frame.bytes.size()));
        block.putBytes(bytes);
        putBlock(file, format.order, 6, block);
    }
    return file.bytes();
}

RecordTime timeReadBack(const RecordTime &time, const PcapFormat &format)
{
    RecordTime read = time;
    if (!format.nanoseconds)
        read.nanoseconds = time.nanoseconds / 1000U * 1000U;
    const auto field = static_cast<quint32>(time.seconds);
    const bool machineOrder = (format.order == ByteOrder::Little) == kHostIsLittle;
    read.seconds = machineOrder ? static_cast<qint64>(static_cast<qint32>(field)) : static_cast<qint64>(field);
    return read;
}

RecordTime timeReadBack(const RecordTime &time, const PcapngFormat &format)
{
    const quint64 units = unitsPerSecond(format.timestampResolution);
    const quint64 ticks = toUnits(time, units);
    return {static_cast<qint64>(ticks / units), static_cast<quint32>(ticks % units * 1000000000U / units)};
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
}

} // namespace capturebuilder
