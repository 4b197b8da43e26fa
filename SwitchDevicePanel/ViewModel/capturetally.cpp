#include "capturetally.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>

namespace analysis {

std::uint64_t CaptureTally::PortKey::mixed(std::uint64_t seed) const
{
    std::uint64_t clock = 0;
    std::memcpy(&clock, identity.clockIdentity.octets.data(), sizeof clock);
    return mixBits(mixBits(clock ^ seed) + identity.portNumber);
}

void CaptureTally::add(const StoredMessage &stored)
{
    const PTPv2::PTPv2Header &header = stored.message.header;
    ++_types[static_cast<std::size_t>(header.messageType)];
    ++_domains[header.domainNumber];
    _ports.add({header.sourcePortIdentity});
    if (stored.source.isKnown)
        _addresses.add({stored.source.ipv4});
    else
        ++_withoutAddress;
    if (header.messageType == PTPv2::MessageType::Sync && !_masterClock.isKnown)
        _masterClock = stored.source;
    if (stored.hasTime && stored.readMsecs > 0) {
        _earliest = std::min(_earliest, stored.readMsecs);
        _latest = std::max(_latest, stored.readMsecs);
    }
}

void CaptureTally::checkLimits(std::size_t syncSessions) const
{
    if (std::max({_ports.size(), _addresses.size(), syncSessions}) <= kMaxDistinct)
        return;
    throw std::runtime_error("more than " + std::to_string(kMaxDistinct)
                             + " different source ports or addresses: not the capture of one site");
}

QVariantMap CaptureTally::statistics(const MessageStore &store, CaptureTexts &texts) const
{
    QVariantMap ports;
    _ports.forEach(
        [&](const PortKey &key, int count) { ports.insert(QString::fromStdString(key.identity.toString()), count); });
    QVariantMap addresses;
    _addresses.forEach([&](const AddressKey &key, int count) {
        addresses.insert(texts.address({key.ipv4, true}), count);
    });
    if (_withoutAddress > 0)
        addresses.insert(texts.address({}), _withoutAddress);

    const auto records = static_cast<int>(store.messages().size());
    QVariantMap statistics;
    // Both keys carry the number of records kept, not of packets read.
    statistics.insert(QStringLiteral("totalPackets"), records);
    statistics.insert(QStringLiteral("ptpv2Packets"), records);
    statistics.insert(QStringLiteral("timeRange"), timeRange(store));
    statistics.insert(QStringLiteral("masterClockIp"), texts.address(_masterClock));
    statistics.insert(QStringLiteral("messageTypes"), typeCounts());
    statistics.insert(QStringLiteral("domains"), domainCounts());
    statistics.insert(QStringLiteral("sourcePorts"), ports);
    statistics.insert(QStringLiteral("sourceIps"), addresses);
    return statistics;
}

QVariantMap CaptureTally::timeRange(const MessageStore &store) const
{
    std::vector<qint64> syncTimes;
    for (std::size_t i = 0; i < store.messages().size(); ++i) {
        const StoredMessage &stored = store.messages()[i];
        if (stored.message.header.messageType == PTPv2::MessageType::Sync && stored.hasTime && stored.readMsecs > 0)
            syncTimes.push_back(stored.readMsecs);
    }
    qint64 firstSync = _earliest;
    qint64 secondLastSync = _latest;
    if (!syncTimes.empty()) {
        std::sort(syncTimes.begin(), syncTimes.end());
        firstSync = syncTimes.front();
        secondLastSync = syncTimes.size() > 1 ? syncTimes[syncTimes.size() - 2] : firstSync;
    }
    // Without any time the bounds keep their start values, and the duration wraps around to 1.
    const auto duration = static_cast<qint64>(static_cast<quint64>(_latest) - static_cast<quint64>(_earliest));
    return {{QStringLiteral("start"), _earliest},
            {QStringLiteral("end"), _latest},
            {QStringLiteral("duration"), duration},
            {QStringLiteral("firstSyncTime"), firstSync},
            {QStringLiteral("secondLastSyncTime"), secondLastSync}};
}

QVariantMap CaptureTally::typeCounts() const
{
    QVariantMap counts;
    for (std::size_t type = 0; type < _types.size(); ++type) {
        if (_types[type] == 0)
            continue;
        // Reserved types share one text.
        QVariant &count = counts[CaptureTexts::messageType(static_cast<PTPv2::MessageType>(type))];
        count = count.toInt() + _types[type];
    }
    return counts;
}

QVariantMap CaptureTally::domainCounts() const
{
    QVariantMap counts;
    for (std::size_t domain = 0; domain < _domains.size(); ++domain) {
        if (_domains[domain] > 0)
            counts.insert(QString::number(domain), _domains[domain]);
    }
    return counts;
}

} // namespace analysis
