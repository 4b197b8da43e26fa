#include "capturebuilder.h"

#include <QTemporaryDir>
#include <QtTest>

using namespace capturebuilder;

namespace {

PtpMessage messageOf(PtpType type)
{
    PtpMessage message;
    message.type = type;
    message.sequenceId = 0x1234;
    message.timestamp = {0x010203040506ULL, 999999999};
    return message;
}

/// One's complement sum of the 16-bit words: 0xffff over anything that contains its own right checksum.
quint32 onesComplementSum(const QByteArray &bytes)
{
    quint32 sum = 0;
    for (int i = 0; i < bytes.size(); ++i)
        sum += static_cast<quint32>(static_cast<quint8>(bytes.at(i))) << (i % 2 == 0 ? 8U : 0U);
    while ((sum >> 16U) != 0)
        sum = (sum & 0xffffU) + (sum >> 16U);
    return sum;
}

CapturedPacket rawPacket(const RecordTime &time, const QByteArray &bytes)
{
    CapturedPacket packet;
    packet.time = time;
    packet.frame.bytes = bytes;
    return packet;
}

} // namespace

class TestCaptureBuilder : public QObject
{
    Q_OBJECT

private slots:
    void message_isWrittenInTransmissionOrder();
    void message_hasTheLengthOfItsType_data();
    void message_hasTheLengthOfItsType();
    void announce_bodyIsCompletelyFilled();
    void decodable_followsVersionAndLengths();
    void ipv4Udp_checksumsAreRight();
    void ipv4_optionsAndFragmentFields();
    void ipv6Udp_checksumCoversTheAddresses();
    void linkLayers_nameWhatFollows_data();
    void linkLayers_nameWhatFollows();
    void nestedIpv4_sourceIsTheOutermostOne();
    void pcap_bothByteOrdersAndResolutions_data();
    void pcap_bothByteOrdersAndResolutions();
    void pcap_snapLengthCutsTheFrame();
    void pcapng_blocksCarryTheirLengthTwice();
    void timeReadBack_losesWhatTheFileCannotHold();
    void site_withoutFaults_hasEveryMessage();
    void site_faultsTakeEffect();
    void site_sameSeedSameBytes();
    void writeFile_intoMissingFolderFails();
};

void TestCaptureBuilder::message_isWrittenInTransmissionOrder()
{
    PtpMessage message = messageOf(PtpType::DelayResp);
    message.transportSpecific = 1;
    message.minorVersionPTP = 1;
    message.domainNumber = 24;
    message.flagField = 0x0200;
    message.correctionField = -1;
    message.messageTypeSpecific = 0xa1a2a3a4;
    message.logMessageInterval = -3;
    message.requestingPortIdentity.portNumber = 7;
    QCOMPARE(message.toBytes().toHex(), QByteArray("19"
                                                   "12"
                                                   "0036"
                                                   "18"
                                                   "00"
                                                   "0200"
                                                   "ffffffffffffffff"
                                                   "a1a2a3a4"
                                                   "001b19fffe000001"
                                                   "0001"
                                                   "1234"
                                                   "03"
                                                   "fd"
                                                   "010203040506"
                                                   "3b9ac9ff"
                                                   "001b19fffe000001"
                                                   "0007"));
}

void TestCaptureBuilder::message_hasTheLengthOfItsType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("length");
    QTest::newRow("Sync") << int(PtpType::Sync) << 44;
    QTest::newRow("Delay_Req") << int(PtpType::DelayReq) << 44;
    QTest::newRow("Pdelay_Req") << int(PtpType::PdelayReq) << 54;
    QTest::newRow("Pdelay_Resp") << int(PtpType::PdelayResp) << 54;
    QTest::newRow("Follow_Up") << int(PtpType::FollowUp) << 44;
    QTest::newRow("Delay_Resp") << int(PtpType::DelayResp) << 54;
    QTest::newRow("Pdelay_Resp_Follow_Up") << int(PtpType::PdelayRespFollowUp) << 54;
    QTest::newRow("Announce") << int(PtpType::Announce) << 64;
    QTest::newRow("Signaling") << int(PtpType::Signaling) << 44;
    QTest::newRow("Management") << int(PtpType::Management) << 48;
}

void TestCaptureBuilder::message_hasTheLengthOfItsType()
{
    QFETCH(int, type);
    QFETCH(int, length);
    PtpMessage message = messageOf(static_cast<PtpType>(type));
    QCOMPARE(message.toBytes().size(), length);
    QCOMPARE(message.minimumLength(), length);
    QCOMPARE(int(message.announcedLength()), length);
    message.suffix = QByteArray(6, 'x');
    QCOMPARE(message.toBytes().size(), length + 6);
    QCOMPARE(int(message.announcedLength()), length + 6);
}

void TestCaptureBuilder::announce_bodyIsCompletelyFilled()
{
    PtpMessage message = messageOf(PtpType::Announce);
    message.announce.currentUtcOffset = -2;
    message.announce.grandmasterPriority1 = 1;
    message.announce.clockClass = 6;
    message.announce.clockAccuracy = 0x21;
    message.announce.offsetScaledLogVariance = 0x4e5d;
    message.announce.grandmasterPriority2 = 2;
    message.announce.grandmasterIdentity = {{1, 2, 3, 4, 5, 6, 7, 8}};
    message.announce.stepsRemoved = 258;
    message.announce.timeSource = 0x20;
    QCOMPARE(message.toBytes().mid(44).toHex(), QByteArray("fffe"
                                                           "00"
                                                           "01"
                                                           "06"
                                                           "21"
                                                           "4e5d"
                                                           "02"
                                                           "0102030405060708"
                                                           "0102"
                                                           "20"));
}

void TestCaptureBuilder::decodable_followsVersionAndLengths()
{
    PtpMessage message = messageOf(PtpType::Announce);
    QVERIFY(message.isDecodable());
    QVERIFY(message.isDecodable(64));
    QVERIFY(!message.isDecodable(63));
    message.messageLength = 63;
    QVERIFY(!message.isDecodable());
    message.messageLength = 65;
    QVERIFY(!message.isDecodable());
    message.suffix = QByteArray(1, '\0');
    QVERIFY(message.isDecodable());
    message.versionPTP = 1;
    QVERIFY(!message.isDecodable());
}

void TestCaptureBuilder::ipv4Udp_checksumsAreRight()
{
    const CapturedPacket packet = ptpOverUdp({1, 0}, QStringLiteral("192.168.100.7"), messageOf(PtpType::DelayReq));
    const QByteArray ip = packet.frame.bytes.mid(14);
    QCOMPARE(onesComplementSum(ip.left(20)), 0xffffU);
    const QByteArray pseudo = ip.mid(12, 8) + QByteArray::fromHex("0011") + ip.mid(24, 2);
    QCOMPARE(onesComplementSum(pseudo + ip.mid(20)), 0xffffU);
    QCOMPARE(ip.mid(20, 4).toHex(), QByteArray("013f013f"));
    QCOMPARE(ip.mid(2, 2).toHex(), QByteArray("0048")); // 20 + 8 + 44
    QCOMPARE(*packet.frame.ipv4Source, QStringLiteral("192.168.100.7"));
    QVERIFY(packet.message.has_value());
    QCOMPARE(packet.frame.linkType, linktype::Ethernet);
}

void TestCaptureBuilder::ipv4_optionsAndFragmentFields()
{
    Ipv4Fields fields;
    fields.options = QByteArray::fromHex("940400");
    fields.fragmentOffset = 1480;
    fields.moreFragments = true;
    fields.protocol = 17;
    const QByteArray ip = FrameBuilder()
                              .ipv4(QStringLiteral("10.0.0.1"), QStringLiteral("10.0.0.2"), fields)
                              .payload(QByteArray(8, 'p'))
                              .build()
                              .bytes;
    QCOMPARE(ip.left(1).toHex(), QByteArray("46"));
    QCOMPARE(ip.mid(2, 2).toHex(), QByteArray("0020"));
    QCOMPARE(ip.mid(6, 4).toHex(), QByteArray("20b94011")); // 1480 / 8 = 185, M flag, TTL, UDP
    QCOMPARE(ip.mid(20, 4).toHex(), QByteArray("94040000"));
    QCOMPARE(onesComplementSum(ip.left(24)), 0xffffU);
}

void TestCaptureBuilder::ipv6Udp_checksumCoversTheAddresses()
{
    const Frame frame = FrameBuilder()
                            .ipv6(QStringLiteral("fe80::1"), QStringLiteral("ff0e::181"))
                            .ipv6Extension(0)
                            .udp(320, 320)
                            .payload(QByteArrayLiteral("abc"))
                            .build();
    const QByteArray &ip = frame.bytes;
    QCOMPARE(frame.linkType, linktype::Raw);
    QVERIFY(!frame.ipv4Source.has_value());
    QCOMPARE(ip.left(8).toHex(), QByteArray("6000000000130040")); // hop-by-hop follows, 8 + 11 octets
    QCOMPARE(ip.mid(8, 32).toHex(), QByteArray("fe800000000000000000000000000001"
                                               "ff0e0000000000000000000000000181"));
    QCOMPARE(ip.mid(40, 8).toHex(), QByteArray("1100000000000000"));
    const QByteArray pseudo = ip.mid(8, 32) + QByteArray::fromHex("0011") + ip.mid(52, 2);
    QCOMPARE(onesComplementSum(pseudo + ip.mid(48) + QByteArray(1, '\0')), 0xffffU);
}

void TestCaptureBuilder::linkLayers_nameWhatFollows_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<int>("linkType");
    QTest::addColumn<int>("found");
    QTest::addColumn<int>("linkTypeFound");
    QTest::addColumn<QByteArray>("head");
    const auto row = [](const char *name, FrameBuilder builder, quint16 linkType, const char *head) {
        const Frame frame =
            builder.ipv4(QStringLiteral("1.2.3.4"), QStringLiteral("5.6.7.8")).payload(QByteArray()).build();
        const QByteArray expected(head);
        QTest::newRow(name) << frame.bytes << int(linkType) << frame.bytes.size() - 20 << int(frame.linkType)
                            << expected;
    };
    row("raw", FrameBuilder(), linktype::Raw, "");
    row("Ethernet", FrameBuilder().ethernet(), linktype::Ethernet, "011b19000000021b190000010800");
    row("VLAN", FrameBuilder().ethernet().vlan(100, 5), linktype::Ethernet, "011b19000000021b190000018100a0640800");
    row("stacked VLAN", FrameBuilder().ethernet().vlan(2, 0, 0x88a8).vlan(3), linktype::Ethernet,
        "011b19000000021b1900000188a80002810000030800");
    row("Linux cooked", FrameBuilder().linuxCooked(), linktype::LinuxCooked, "000000010006021b1900000100000800");
    row("Linux cooked 2", FrameBuilder().linuxCooked2(), linktype::LinuxCooked2,
        "080000000000000100010006021b190000010000");
    row("null, little endian", FrameBuilder().nullLoopback(), linktype::Null, "02000000");
    row("null, big endian", FrameBuilder().nullLoopback(ByteOrder::Big), linktype::Null, "00000002");
    row("loop", FrameBuilder().loop(), linktype::Loop, "00000002");
    row("PPPoE", FrameBuilder().ethernet().pppoe(9), linktype::Ethernet,
        "011b19000000021b190000018864"
        "1100000900160021");
    row("MPLS", FrameBuilder().ethernet().mpls(16).mpls(17), linktype::Ethernet,
        "011b19000000021b190000018847"
        "00010040"
        "00011140");
    row("GRE", FrameBuilder().gre(), linktype::Raw, "00000800");
}

void TestCaptureBuilder::linkLayers_nameWhatFollows()
{
    QFETCH(QByteArray, frame);
    QFETCH(int, linkType);
    QFETCH(int, found);
    QFETCH(int, linkTypeFound);
    QFETCH(QByteArray, head);
    QCOMPARE(frame.left(found).toHex(), head);
    QCOMPARE(linkTypeFound, linkType);
}

void TestCaptureBuilder::nestedIpv4_sourceIsTheOutermostOne()
{
    const Frame frame = FrameBuilder()
                            .ethernet()
                            .ipv4(QStringLiteral("10.0.0.1"), QStringLiteral("10.0.0.2"))
                            .ipv4(QStringLiteral("10.9.9.1"), QStringLiteral("10.9.9.2"))
                            .udp(319, 319)
                            .payload(QByteArray(4, 'x'))
                            .build();
    QCOMPARE(*frame.ipv4Source, QStringLiteral("10.0.0.1"));
    QCOMPARE(int(frame.bytes.at(14 + 9)), 4);
    QCOMPARE(int(frame.bytes.at(14 + 29)), 17);
}

void TestCaptureBuilder::pcap_bothByteOrdersAndResolutions_data()
{
    QTest::addColumn<bool>("nanoseconds");
    QTest::addColumn<bool>("big");
    QTest::addColumn<QByteArray>("hex");
    QTest::newRow("little, micro") << false << false
                                   << QByteArray("d4c3b2a1"
                                                 "02000400"
                                                 "00000000"
                                                 "00000000"
                                                 "00000400"
                                                 "01000000"
                                                 "feffffff"
                                                 "40420f00"
                                                 "02000000"
                                                 "02000000"
                                                 "abcd");
    QTest::newRow("big, micro") << false << true
                                << QByteArray("a1b2c3d4"
                                              "00020004"
                                              "00000000"
                                              "00000000"
                                              "00040000"
                                              "00000001"
                                              "fffffffe"
                                              "000f4240"
                                              "00000002"
                                              "00000002"
                                              "abcd");
    QTest::newRow("little, nano") << true << false
                                  << QByteArray("4d3cb2a1"
                                                "02000400"
                                                "00000000"
                                                "00000000"
                                                "00000400"
                                                "01000000"
                                                "feffffff"
                                                "07ca9a3b"
                                                "02000000"
                                                "02000000"
                                                "abcd");
    QTest::newRow("big, nano") << true << true
                               << QByteArray("a1b23c4d"
                                             "00020004"
                                             "00000000"
                                             "00000000"
                                             "00040000"
                                             "00000001"
                                             "fffffffe"
                                             "3b9aca07"
                                             "00000002"
                                             "00000002"
                                             "abcd");
}

void TestCaptureBuilder::pcap_bothByteOrdersAndResolutions()
{
    QFETCH(bool, nanoseconds);
    QFETCH(bool, big);
    QFETCH(QByteArray, hex);
    PcapFormat format;
    format.nanoseconds = nanoseconds;
    format.order = big ? ByteOrder::Big : ByteOrder::Little;
    QCOMPARE(toPcap({rawPacket({-2, 1000000007}, QByteArray::fromHex("abcd"))}, format).toHex(), hex);
}

void TestCaptureBuilder::pcap_snapLengthCutsTheFrame()
{
    PcapFormat format;
    format.snapLength = 3;
    const QByteArray file = toPcap({rawPacket({1, 0}, QByteArrayLiteral("abcdef"))}, format);
    QCOMPARE(file.mid(24).toHex(), QByteArray("0100000000000000"
                                              "03000000"
                                              "06000000"
                                              "616263"));
}

void TestCaptureBuilder::pcapng_blocksCarryTheirLengthTwice()
{
    PcapngFormat format;
    format.order = ByteOrder::Big;
    format.timestampResolution = quint8(9);
    const QByteArray file = toPcapng({rawPacket({2, 5}, QByteArrayLiteral("abcde"))}, format);
    QCOMPARE(file.toHex(), QByteArray("0a0d0d0a"
                                      "0000001c"
                                      "1a2b3c4d"
                                      "00010000"
                                      "ffffffffffffffff"
                                      "0000001c"
                                      "00000001"
                                      "00000020"
                                      "00010000"
                                      "00040000"
                                      "00090001"
                                      "09000000"
                                      "00000000"
                                      "00000020"
                                      "00000006"
                                      "00000028"
                                      "00000000"
                                      "00000000"
                                      "77359405"
                                      "00000005"
                                      "00000005"
                                      "6162636465000000"
                                      "00000028"));
}

void TestCaptureBuilder::timeReadBack_losesWhatTheFileCannotHold()
{
    const ByteOrder own = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? ByteOrder::Little : ByteOrder::Big;
    const ByteOrder other = own == ByteOrder::Little ? ByteOrder::Big : ByteOrder::Little;
    PcapFormat pcap;
    pcap.order = own;
    const RecordTime late{0x80000000LL, 1500000999};
    QCOMPARE(timeReadBack(late, pcap).seconds, -0x80000000LL);
    QCOMPARE(timeReadBack(late, pcap).nanoseconds, 1500000000U);
    pcap.order = other;
    pcap.nanoseconds = true;
    QCOMPARE(timeReadBack(late, pcap).seconds, 0x80000000LL);
    QCOMPARE(timeReadBack(late, pcap).nanoseconds, 1500000999U);

    PcapngFormat pcapng;
    QCOMPARE(timeReadBack(late, pcapng).seconds, 0x80000001LL);
    QCOMPARE(timeReadBack(late, pcapng).nanoseconds, 500000000U);
    pcapng.timestampResolution = quint8(0x81); // half seconds
    QCOMPARE(timeReadBack({7, 999999999}, pcapng).seconds, 7LL);
    QCOMPARE(timeReadBack({7, 999999999}, pcapng).nanoseconds, 500000000U);
}

void TestCaptureBuilder::site_withoutFaults_hasEveryMessage()
{
    SiteOptions options;
    options.slaves = 3;
    options.seconds = 10;
    const QVector<CapturedPacket> packets = ptpSite(options);
    QMap<PtpType, int> counts;
    for (const CapturedPacket &packet : packets) {
        QVERIFY(packet.message.has_value());
        ++counts[packet.message->type];
    }
    const QMap<PtpType, int> expected{{PtpType::Sync, 10},
                                      {PtpType::FollowUp, 10},
                                      {PtpType::Announce, 5},
                                      {PtpType::DelayReq, 30},
                                      {PtpType::DelayResp, 30}};
    QCOMPARE(counts, expected);
    QVERIFY(std::is_sorted(packets.begin(), packets.end(), [](const CapturedPacket &a, const CapturedPacket &b) {
        return std::tie(a.time.seconds, a.time.nanoseconds) < std::tie(b.time.seconds, b.time.nanoseconds);
    }));
}

void TestCaptureBuilder::site_faultsTakeEffect()
{
    SiteOptions options;
    options.slaves = 2;
    options.seconds = 10;
    options.lostSlave = 2;
    options.lostFromSecond = 4;
    options.pauseFromSecond = 6;
    options.pauseSeconds = 2;
    options.unansweredEvery = 7;
    QMap<PtpType, int> counts;
    int fromLost = 0;
    for (const CapturedPacket &packet : ptpSite(options)) {
        ++counts[packet.message->type];
        fromLost += *packet.frame.ipv4Source == QStringLiteral("192.168.100.2") ? 1 : 0;
    }
    QCOMPARE(counts.value(PtpType::Sync), 8);
    QCOMPARE(counts.value(PtpType::Announce), 4);
    QCOMPARE(counts.value(PtpType::DelayReq), 14);
    QCOMPARE(counts.value(PtpType::DelayResp), 14 - 2 - 2); // requests 7 and 14, and those of the two silent seconds
    QCOMPARE(fromLost, 4);
}

void TestCaptureBuilder::site_sameSeedSameBytes()
{
    SiteOptions options;
    const QByteArray first = toPcap(ptpSite(options));
    QCOMPARE(toPcap(ptpSite(options)), first);
    options.seed = 2;
    QVERIFY(toPcap(ptpSite(options)) != first);
}

void TestCaptureBuilder::writeFile_intoMissingFolderFails()
{
    const QTemporaryDir folder;
    QVERIFY(writeFile(folder.filePath(QStringLiteral("a.pcap")), toPcap({})));
    QCOMPARE(QFileInfo(folder.filePath(QStringLiteral("a.pcap"))).size(), 24);
    QVERIFY(!writeFile(folder.filePath(QStringLiteral("missing/a.pcap")), toPcap({})));
}

QTEST_APPLESS_MAIN(TestCaptureBuilder)
#include "tst_capturebuilder.moc"
