#include "capturebuilder.h"
#include "randomsource.h"

#include <map>
#include <utility>

namespace capturebuilder {

namespace {

const QString kPtpGroup = QStringLiteral("224.0.1.129"); // IEEE 1588-2008 D.3
constexpr int kMasterHost = 100;

RecordTime later(const RecordTime &start, qint64 milliseconds)
{
    const RecordTime shifted = RecordTime::fromMilliseconds(milliseconds + start.nanoseconds / 1000000U);
    return {start.seconds + shifted.seconds, shifted.nanoseconds + start.nanoseconds % 1000000U};
}

PortIdentity portOfHost(int host)
{
    PortIdentity port;
    port.clockIdentity.back() = static_cast<quint8>(host);
    return port;
}

/// Collects the packets of a site second by second.
class Site
{
public:
    explicit Site(const SiteOptions &options)
        : _options(options)
        , _random(options.seed)
    {}

    QVector<CapturedPacket> packets()
    {
        for (int second = 0; second < _options.seconds; ++second) {
            const bool paused = isPaused(second);
            if (!paused)
                addMaster(second);
            for (int slave = 1; slave <= _options.slaves; ++slave) {
                if (_options.lostSlave != slave || second < _options.lostFromSecond)
                    addExchange(second, slave, paused);
            }
        }
        QVector<CapturedPacket> packets;
        for (const auto &entry : _packets)
            packets.append(entry.second);
        return packets;
    }

private:
    bool isPaused(int second) const
    {
        return _options.pauseFromSecond >= 0 && second >= _options.pauseFromSecond
               && second < _options.pauseFromSecond + _options.pauseSeconds;
    }

    void add(PtpType type, qint64 milliseconds, int host, int sequence, int requestingHost = 0)
    {
        PtpMessage message;
        message.type = type;
        message.domainNumber = _options.domainNumber;
        message.sourcePortIdentity = portOfHost(host);
        message.requestingPortIdentity = portOfHost(requestingHost);
        message.announce.grandmasterIdentity = portOfHost(host).clockIdentity;
        message.sequenceId = static_cast<quint16>(sequence);
        message.flagField = type == PtpType::Sync ? 0x0200 : 0; // two-step
        const RecordTime time = later(_options.start, milliseconds);
        if (type != PtpType::Sync && type != PtpType::DelayReq) // both leave with a time stamp of zero
            message.timestamp = {static_cast<quint64>(time.seconds), time.nanoseconds};
        const QString address = _options.network + QLatin1Char('.') + QString::number(host);
        _packets.emplace(std::make_pair(time.seconds, time.nanoseconds), ptpOverUdp(time, address, message));
    }

    void addMaster(int second)
    {
        const qint64 base = second * 1000LL;
        if (second % 2 == 0)
            add(PtpType::Announce, base, kMasterHost, second / 2);
        add(PtpType::Sync, base, kMasterHost, second);
        add(PtpType::FollowUp, base + 1, kMasterHost, second);
    }

    void addExchange(int second, int slave, bool unheard)
    {
        // Requests spread over the middle of the second, so that an answer still falls into it.
        const qint64 time = second * 1000LL + 100 + (slave - 1) * 700LL / _options.slaves + _random.between(0, 20);
        add(PtpType::DelayReq, time, slave, second);
        ++_requests;
        if (unheard || (_options.unansweredEvery > 0 && _requests % _options.unansweredEvery == 0))
            return;
        const bool late = _options.lateEvery > 0 && _requests % _options.lateEvery == 0;
        const int delay = late ? _options.lateByMs : _options.responseDelayMs;
        add(PtpType::DelayResp, time + delay, kMasterHost, second, slave);
    }

    SiteOptions _options;
    RandomSource _random;
    std::multimap<std::pair<qint64, quint32>, CapturedPacket> _packets; // by time, equal times in order of creation
    int _requests = 0;
};

} // namespace

CapturedPacket ptpOverUdp(const RecordTime &time, const QString &source, const PtpMessage &message)
{
    const quint16 port = ptpPort(message.type);
    CapturedPacket packet;
    packet.time = time;
    packet.frame = FrameBuilder().ethernet().ipv4(source, kPtpGroup).udp(port, port).payload(message.toBytes()).build();
    if (message.isDecodable())
        packet.message = message;
    return packet;
}

CapturedPacket ptpOverEthernet(const RecordTime &time, const PtpMessage &message)
{
    CapturedPacket packet;
    packet.time = time;
    packet.frame = FrameBuilder().ethernet().payload(message.toBytes(), 0x88f7).build();
    return packet;
}

CapturedPacket videoPacket(const RecordTime &time, const QString &source, int payloadSize)
{
    CapturedPacket packet;
    packet.time = time;
    packet.frame = FrameBuilder()
                       .ethernet()
                       .ipv4(source, QStringLiteral("239.1.1.1"))
                       .udp(50000, 5004)
                       .payload(QByteArray(payloadSize, '\x47'))
                       .build();
    return packet;
}

QVector<CapturedPacket> ptpSite(const SiteOptions &options)
{
    return Site(options).packets();
}

} // namespace capturebuilder
