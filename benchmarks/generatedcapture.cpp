#include "generatedcapture.h"

#include <QtCore/QFile>
#include <QtCore/QVector>

#include <array>
#include <cstring>

namespace {

using Bytes = QByteArray;

constexpr int kSlaves = 9;
constexpr std::int64_t kStartSeconds = 1'700'000'000;

void put16(Bytes &bytes, int at, unsigned value)
{
    bytes[at] = static_cast<char>(value >> 8U);
    bytes[at + 1] = static_cast<char>(value);
}

// Ethernet, IPv4 and UDP in front of a payload of zeros.
Bytes datagram(int host, unsigned port, int payload)
{
    Bytes frame(14 + 20 + 8 + payload, '\0');
    put16(frame, 12, 0x0800);
    frame[14] = 0x45;
    put16(frame, 16, static_cast<unsigned>(20 + 8 + payload));
    frame[22] = 64;
    frame[23] = 17;
    const std::array<int, 8> addresses{10, 0, 0, host, 224, 0, 1, 129};
    for (int i = 0; i < 8; ++i)
        frame[26 + i] = static_cast<char>(addresses[static_cast<std::size_t>(i)]);
    put16(frame, 34, port);
    put16(frame, 36, port);
    put16(frame, 38, static_cast<unsigned>(8 + payload));
    return frame;
}

Bytes ptpMessage(int host, int type, int length)
{
    Bytes frame = datagram(host, type < 8 ? 319 : 320, length);
    const int ptp = 42;
    frame[ptp] = static_cast<char>(type);
    frame[ptp + 1] = 2;
    put16(frame, ptp + 2, static_cast<unsigned>(length));
    put16(frame, ptp + 6, type == 0 ? 0x0200 : 0);
    frame[ptp + 20 + 7] = static_cast<char>(host);
    frame[ptp + 29] = 1;
    return frame;
}

Bytes tcpSegment()
{
    Bytes frame = datagram(50, 443, 1'200);
    frame[23] = 6;
    return frame;
}

class CaptureWriter
{
public:
    explicit CaptureWriter(const QString &path)
        : _file(path)
    {
        if (!_file.open(QIODevice::WriteOnly))
            return;
        // Native byte order, microseconds, Ethernet.
        const std::array<std::uint32_t, 6> header{0xa1b2c3d4, 0x00040002, 0, 0, 262'144, 1};
        append(header.data(), sizeof header);
    }

    bool isOpen() const { return _file.isOpen(); }
    std::int64_t packets() const { return _packets; }
    std::int64_t bytes() const { return _bytes; }

    void write(std::int64_t micros, const Bytes &frame)
    {
        const auto size = static_cast<std::uint32_t>(frame.size());
        const std::array<std::uint32_t, 4> record{static_cast<std::uint32_t>(micros / 1'000'000),
                                                  static_cast<std::uint32_t>(micros % 1'000'000), size, size};
        append(record.data(), sizeof record);
        append(frame.constData(), static_cast<std::size_t>(frame.size()));
        ++_packets;
    }

    void writeMessage(std::int64_t micros, Bytes &frame, unsigned sequenceId)
    {
        put16(frame, 42 + 30, sequenceId);
        write(micros, frame);
    }

    std::int64_t finish()
    {
        flush();
        _file.close();
        return _packets;
    }

private:
    void append(const void *data, std::size_t size)
    {
        _buffer.append(static_cast<const char *>(data), static_cast<int>(size));
        _bytes += static_cast<std::int64_t>(size);
        if (_buffer.size() > 1'000'000)
            flush();
    }

    void flush()
    {
        _file.write(_buffer);
        _buffer.resize(0);
    }

    QFile _file;
    Bytes _buffer;
    std::int64_t _packets = 0;
    std::int64_t _bytes = 0;
};

struct Site
{
    Bytes announce = ptpMessage(100, 11, 64);
    Bytes sync = ptpMessage(100, 0, 44);
    Bytes followUp = ptpMessage(100, 8, 44);
    QVector<Bytes> requests;
    QVector<Bytes> responses;

    Site()
    {
        for (int slave = 1; slave <= kSlaves; ++slave) {
            requests.append(ptpMessage(slave, 1, 44));
            Bytes response = ptpMessage(100, 9, 54);
            response[42 + 44 + 7] = static_cast<char>(slave);
            response[42 + 53] = 1;
            responses.append(response);
        }
    }
};

// One second of a healthy site.
template<typename Between>
void writeSecond(CaptureWriter &writer, Site &site, std::int64_t second, Between between)
{
    const auto sequence = static_cast<unsigned>(second & 0xffff);
    std::int64_t micros = (kStartSeconds + second) * 1'000'000;
    if (second % 2 == 0)
        writer.writeMessage(micros, site.announce, sequence);
    writer.writeMessage(micros += 100, site.sync, sequence);
    writer.writeMessage(micros += 100, site.followUp, sequence);
    for (int slave = 0; slave < kSlaves; ++slave) {
        micros += 90'000;
        between(micros);
        writer.writeMessage(micros, site.requests[slave], sequence);
        writer.writeMessage(micros + 300, site.responses[slave], sequence);
    }
}

void writeHealthySite(CaptureWriter &writer, std::int64_t bytes)
{
    Site site;
    for (std::int64_t second = 0; writer.bytes() < bytes; ++second)
        writeSecond(writer, site, second, [](std::int64_t) {});
}

void writeVideoSite(CaptureWriter &writer, std::int64_t bytes)
{
    Site site;
    const Bytes video = datagram(60, 5'004, 1'250);
    const Bytes tcp = tcpSegment();
    for (std::int64_t second = 0; writer.bytes() < bytes; ++second) {
        // About 20 PTP messages a second, and 19 times as many others.
        writeSecond(writer, site, second, [&](std::int64_t micros) {
            for (int i = 0; i < 42; ++i)
                writer.write(micros - 42 + i, i % 8 == 7 ? tcp : video);
        });
    }
}

void writeHostileTail(CaptureWriter &writer)
{
    constexpr int kSyncs = 5'320; // a window each: 9 slaves missing in nearly all of them
    constexpr int kRequests = 22'300;
    Site site;
    for (int i = 0; i < kSyncs; ++i)
        writer.writeMessage((kStartSeconds + i) * 1'000'000, site.sync, static_cast<unsigned>(i & 0xffff));
    // All requests and all responses in one second each, with one sequence id, and no response in time.
    for (int i = 0; i < kRequests; ++i)
        writer.writeMessage((kStartSeconds + 1) * 1'000'000 + i * 40, site.requests[0], 7);
    for (int i = 0; i < kRequests; ++i)
        writer.writeMessage((kStartSeconds + 9) * 1'000'000 - i * 40, site.responses[0], 7);
}

} // namespace

std::int64_t generateCapture(const QString &path, Traffic traffic, std::int64_t bytes)
{
    CaptureWriter writer(path);
    if (!writer.isOpen())
        return 0;
    switch (traffic) {
    case Traffic::PtpOnly:
        writeHealthySite(writer, bytes);
        break;
    case Traffic::VideoWithPtp:
        writeVideoSite(writer, bytes);
        break;
    case Traffic::HostileTail:
        writeHostileTail(writer);
        break;
    }
    return writer.finish();
}
