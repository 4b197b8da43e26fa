#pragma once

#include "packetbuilder.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

/// Capture files in memory and on disk, written field by field.
namespace capturefilebuilder {

using packetbuilder::Bytes;

enum class ByteOrder { Little, Big };
enum class Resolution { Microseconds, Nanoseconds };

struct Record
{
    uint32_t seconds = 0;
    uint32_t fraction = 0; ///< in units of the file's resolution
    Bytes data = {};
};

/// Writes numbers in the byte order of the file.
class Writer
{
public:
    explicit Writer(ByteOrder order)
        : _order(order)
    {}

    Writer &u16(uint32_t value) { return number(value, 2); }
    Writer &u32(uint32_t value) { return number(value, 4); }
    Writer &raw(const Bytes &bytes)
    {
        _bytes.insert(_bytes.end(), bytes.begin(), bytes.end());
        return *this;
    }
    const Bytes &bytes() const { return _bytes; }

private:
    Writer &number(uint32_t value, int octets)
    {
        for (int i = 0; i < octets; ++i) {
            const int shift = 8 * (_order == ByteOrder::Little ? i : octets - 1 - i);
            _bytes.push_back(static_cast<uint8_t>(value >> shift));
        }
        return *this;
    }

    ByteOrder _order;
    Bytes _bytes;
};

inline Bytes pcapFile(ByteOrder order, Resolution resolution, uint32_t linkType, const std::vector<Record> &records)
{
    Writer writer(order);
    writer.u32(resolution == Resolution::Microseconds ? 0xA1B2C3D4 : 0xA1B23C4D);
    writer.u16(2).u16(4).u32(0).u32(0).u32(262144).u32(linkType);
    for (const Record &record : records) {
        const auto length = static_cast<uint32_t>(record.data.size());
        writer.u32(record.seconds).u32(record.fraction).u32(length).u32(length).raw(record.data);
    }
    return writer.bytes();
}

/// A pcapng file with one section, one interface with nanosecond times and an enhanced packet block per record.
inline Bytes pcapngFile(ByteOrder order, uint32_t linkType, const std::vector<Record> &records)
{
    Writer writer(order);
    writer.u32(0x0A0D0D0A).u32(28).u32(0x1A2B3C4D).u16(1).u16(0).u32(0xFFFFFFFF).u32(0xFFFFFFFF).u32(28);
    writer.u32(1).u32(32).u16(linkType).u16(0).u32(262144);
    writer.u16(9).u16(1).raw({9, 0, 0, 0}).u32(0).u32(32); // if_tsresol: 10^-9
    for (const Record &record : records) {
        const auto length = static_cast<uint32_t>(record.data.size());
        const uint32_t padding = (4 - length % 4) % 4;
        const uint64_t time = record.seconds * uint64_t{1000000000} + record.fraction;
        writer.u32(6).u32(32 + length + padding).u32(0);
        writer.u32(static_cast<uint32_t>(time >> 32)).u32(static_cast<uint32_t>(time)).u32(length).u32(length);
        writer.raw(record.data).raw(Bytes(padding, 0)).u32(32 + length + padding);
    }
    return writer.bytes();
}

/// A file in the test's folder for temporary files, removed at the end of the scope.
class TemporaryFile
{
public:
    TemporaryFile(const std::string &name, const Bytes &content)
        : _path(testing::TempDir() + nameOfTest() + "_" + name)
    {
        std::ofstream file(_path, std::ios::binary);
        file.write(reinterpret_cast<const char *>(content.data()), static_cast<std::streamsize>(content.size()));
        EXPECT_TRUE(file.flush().good()) << _path;
    }
    ~TemporaryFile() { std::remove(_path.c_str()); }

    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    const std::string &path() const { return _path; }

private:
    /// Tests run side by side, and parameterised ones have "/" in their names.
    static std::string nameOfTest()
    {
        const testing::TestInfo *test = testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string(test->test_suite_name()) + "_" + test->name();
        std::replace(name.begin(), name.end(), '/', '_');
        return name;
    }

    std::string _path;
};

} // namespace capturefilebuilder
