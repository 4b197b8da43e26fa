// Hostile message records through every check of the analysis: lists of maps with any texts in them.
#include "packetAnalysisWorker.h"

#include <QtCore/QLoggingCategory>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace {

//! Takes values off the fuzzer's bytes; zeros when they are used up.
class Bytes
{
public:
    Bytes(const std::uint8_t *data, std::size_t size)
        : _data(data)
        , _size(size)
    {}

    bool isEmpty() const { return _size == 0; }

    template<typename T>
    T take()
    {
        T value{};
        const std::size_t count = sizeof value < _size ? sizeof value : _size;
        if (count > 0)
            std::memcpy(&value, _data, count);
        _data += count;
        _size -= count;
        return value;
    }

    QString text(std::size_t length)
    {
        const std::size_t count = length < _size ? length : _size;
        QString text = QString::fromUtf8(reinterpret_cast<const char *>(_data), static_cast<int>(count));
        _data += count;
        _size -= count;
        return text;
    }

private:
    const std::uint8_t *_data;
    std::size_t _size;
};

QString timeText(Bytes &bytes)
{
    const auto kind = bytes.take<std::uint8_t>();
    if (kind % 8 == 0)
        return bytes.text(kind % 32);
    return QStringLiteral("20%1-03-%2 0%3:%4:%5.%6")
        .arg(bytes.take<std::uint8_t>() % 100, 2, 10, QLatin1Char('0'))
        .arg(kind % 32, 2, 10, QLatin1Char('0'))
        .arg(bytes.take<std::uint8_t>() % 10)
        .arg(bytes.take<std::uint8_t>() % 61, 2, 10, QLatin1Char('0'))
        .arg(bytes.take<std::uint8_t>() % 61, 2, 10, QLatin1Char('0'))
        .arg(bytes.take<std::uint16_t>() % 1000, 3, 10, QLatin1Char('0'));
}

QVariantMap record(Bytes &bytes)
{
    const auto shape = bytes.take<std::uint8_t>();
    QVariantMap record{{QStringLiteral("timestamp"), timeText(bytes)},
                       {QStringLiteral("sequenceId"), QString::number(bytes.take<std::uint8_t>() % 8)}};
    if (shape % 4 == 0)
        record.insert(QStringLiteral("sourceIp"), bytes.text(shape % 16));
    else if (shape % 4 != 1)
        record.insert(QStringLiteral("sourceIp"), QStringLiteral("10.0.0.%1").arg(bytes.take<std::uint8_t>() % 12));
    return record;
}

QList<QVariantMap> records(Bytes &bytes)
{
    QList<QVariantMap> list;
    const int count = bytes.take<std::uint8_t>() % 64;
    while (list.size() < count && !bytes.isEmpty())
        list.append(record(bytes));
    return list;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    Bytes bytes(data, size);
    PacketAnalysisWorker worker;
    worker.setSlaveAnalysisInterval(bytes.take<double>());
    const auto expectedSlaves = bytes.take<std::int32_t>();
    const auto cutoff = bytes.take<qint64>();
    const QList<QVariantMap> announce = records(bytes);
    const QList<QVariantMap> sync = records(bytes);
    const QList<QVariantMap> followUp = records(bytes);
    const QList<QVariantMap> delayReq = records(bytes);
    const QList<QVariantMap> delayResp = records(bytes);
    worker.filterDataBeforeTimestamp(sync, cutoff);
    worker.filterSyncMessagesBeforeLastSync(sync, cutoff);
    worker.filterDelayMessagesBeforeLastSync(delayReq, cutoff);
    try {
        worker.performHealthCheckFromStream(announce, sync, followUp, delayReq, delayResp, expectedSlaves);
    } catch (const std::runtime_error &) {
        // More findings than an analysis reports: the error that the worker turns into its signal.
    }
    return 0;
}
