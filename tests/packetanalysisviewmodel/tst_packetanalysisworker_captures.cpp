// The worker with real files: which it opens, what it makes of every kind of capture, what it keeps, counts and
// reports.
#include "packetAnalysisWorker.h"

#include "capturebuilder.h"
#include "largecaptures.h"
#include "signalrecorder.h"
#include "systemlimits.h"
#include "textanalysis.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <functional>
#include <limits>

using capturebuilder::ByteOrder;
using capturebuilder::CapturedPacket;
using capturebuilder::FrameBuilder;
using capturebuilder::PcapFormat;
using capturebuilder::PcapngFormat;
using capturebuilder::PtpMessage;
using capturebuilder::PtpType;
using capturebuilder::RecordTime;

Q_DECLARE_METATYPE(CapturedPacket)
Q_DECLARE_METATYPE(PtpMessage)

namespace {

constexpr qint64 kLargestFile = 1'073'741'824;
constexpr qint64 kStart = 1'700'000'000'000; // milliseconds since the epoch
const QString kSource = QStringLiteral("10.0.0.5");
const QString kMulticast = QStringLiteral("224.0.1.129");

struct Run
{
    QStringList calls; //!< signals with their arguments; results as "signalResults"
    QVariantList results;
    QVariantMap statistics;

    QVariantMap health() const { return statistics.value(QStringLiteral("healthCheck")).toMap(); }
    QVariantMap counts(const char *key) const { return statistics.value(QLatin1String(key)).toMap(); }
    qint64 time(const char *key) const { return counts("timeRange").value(QLatin1String(key)).toLongLong(); }
};

Run analyse(const QString &path, int expectedSlaves = 9, bool isStoppedAtOnce = false)
{
    PacketAnalysisWorker worker;
    worker.setFilePath(path);
    worker.setExpectedSlaveCount(expectedSlaves);
    if (isStoppedAtOnce)
        worker.setRunBegunCallback([&worker] { worker.stopProcessing(); });
    const SignalRecorder recorder(&worker);
    worker.run();
    Run run;
    for (const SignalRecorder::Emission &emission : recorder.emissions()) {
        if (emission.name != QLatin1String("signalResults")) {
            QStringList arguments;
            for (const QVariant &argument : emission.arguments)
                arguments.append(argument.toString());
            run.calls.append(QStringLiteral("%1(%2)").arg(emission.name, arguments.join(QStringLiteral(", "))));
            continue;
        }
        run.calls.append(emission.name);
        run.results = emission.arguments.at(0).toList();
        run.statistics = emission.arguments.at(1).toMap();
    }
    return run;
}

QStringList successOf(int packets)
{
    QStringList calls;
    for (int i = 1000; i <= packets; i += 1000)
        calls.append(QStringLiteral("progress(%1, %1)").arg(i));
    return calls
           + QStringList{QStringLiteral("progress(%1, %1)").arg(packets), QStringLiteral("signalResults"),
                         QStringLiteral("finished()")};
}

QStringList refusalOf(const QString &path)
{
    return {QStringLiteral("error(Failed to open pcap file: %1)").arg(path)};
}

PtpMessage message(PtpType type, quint16 sequenceId = 1)
{
    PtpMessage message;
    message.type = type;
    message.sequenceId = sequenceId;
    return message;
}

CapturedPacket ptp(PtpType type, qint64 offset, const QString &source = kSource, quint16 sequenceId = 1)
{
    return capturebuilder::ptpOverUdp(RecordTime::fromMilliseconds(kStart + offset), source, message(type, sequenceId));
}

//! One message of every kind that is decoded, the second slightly late in its millisecond.
QVector<CapturedPacket> oneOfEach()
{
    QVector<CapturedPacket> packets{ptp(PtpType::Announce, 0),   ptp(PtpType::Sync, 10),
                                    ptp(PtpType::FollowUp, 11),  ptp(PtpType::DelayReq, 20),
                                    ptp(PtpType::DelayResp, 25), ptp(PtpType::Management, 30)};
    packets[1].time.nanoseconds += 999'999;
    return packets;
}

//! A Sync in a frame whose outer layers the test has put up, with what a reader must find in it.
CapturedPacket syncIn(FrameBuilder builder, quint16 sourcePort = 319, quint16 destinationPort = 319)
{
    CapturedPacket packet;
    packet.time = RecordTime::fromMilliseconds(kStart);
    packet.message = message(PtpType::Sync);
    packet.frame = builder.udp(sourcePort, destinationPort).payload(packet.message->toBytes()).build();
    return packet;
}

QVariantList recordsOf(const QVector<CapturedPacket> &packets)
{
    QVariantList records;
    for (const CapturedPacket &packet : packets)
        records.append(textanalysis::record(packet));
    return records;
}

} // namespace

class TestPacketAnalysisWorkerCaptures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void interface_isTheDocumentedOne();

    // Kinds of capture files
    void fileFormat_isRead_data();
    void fileFormat_isRead();
    void frame_isRead_data();
    void frame_isRead();
    void frame_isPassedOver_data();
    void frame_isPassedOver();
    void port_decides_data();
    void port_decides();
    void truncatedFile_givesWhatIsWhole_data();
    void truncatedFile_givesWhatIsWhole();

    // Files that are no captures
    void missingFile_givesTwoErrors();
    void noCapture_givesOneError_data();
    void noCapture_givesOneError();
    void pipe_givesOneError_andDoesNotWait();
    void deniedFile_givesOneError();
    void fileOfOneGigabyte_isAccepted();
    void fileOfOneGigabyteAndAByte_isRefused();
    void pathInChinese_isOpened_data();
    void pathInChinese_isOpened();

    // Records
    void record_ofEachType_hasItsKeys_data();
    void record_ofEachType_hasItsKeys();
    void record_texts_areTheMessagesFields();
    void record_negativeCorrection_isALargeNumber();
    void record_withoutIpv4_hasNoSource();
    void record_time_isTruncatedToMilliseconds();

    // The store
    void store_keepsTheNewestRecords_data();
    void store_keepsTheNewestRecords();
    void store_trimsTypeListsOverAFifth();

    // Statistics and signals
    void noPackets_giveEmptyStatistics();
    void noPtp_givesNoRecords();
    void progress_comesEveryThousandPackets_data();
    void progress_comesEveryThousandPackets();
    void counts_areByTypeDomainPortAndSource();
    void masterClock_isTheFirstSyncWithAnAddress();
    void masterClock_outlivesItsRecord();
    void syncTimes_areFirstAndSecondLast_data();
    void syncTimes_areFirstAndSecondLast();
    void timeRange_spansAllRecords();
    void healthCheck_isPartOfTheStatistics();
    void syncSession_hasItsKeys();
    void stop_beforeTheFirstPacket_reportsNothingRead();
    void run_twice_reportsTheSame();
    void tooManyFindings_breakOff();

private:
    QString write(const QByteArray &bytes, const QString &name = QStringLiteral("capture.pcap"));
    QString write(const QVector<CapturedPacket> &packets) { return write(capturebuilder::toPcap(packets)); }

    std::unique_ptr<QTemporaryDir> _folder;
};

QString TestPacketAnalysisWorkerCaptures::write(const QByteArray &bytes, const QString &name)
{
    QString path = _folder->filePath(name);
    if (!capturebuilder::writeFile(path, bytes))
        qFatal("Cannot write %s", qUtf8Printable(path));
    return path;
}

void TestPacketAnalysisWorkerCaptures::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
}

void TestPacketAnalysisWorkerCaptures::init()
{
    _folder = std::make_unique<QTemporaryDir>();
    QVERIFY(_folder->isValid());
}

void TestPacketAnalysisWorkerCaptures::interface_isTheDocumentedOne()
{
    const QMetaObject &metaObject = PacketAnalysisWorker::staticMetaObject;
    QStringList declared;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i)
        declared.append(QLatin1String(metaObject.method(i).methodSignature()));
    QCOMPARE(declared, (QStringList{QStringLiteral("finished()"), QStringLiteral("error(QString)"),
                                    QStringLiteral("progress(int,int)"),
                                    QStringLiteral("signalResults(QVariantList,QVariantMap)"), QStringLiteral("run()"),
                                    QStringLiteral("stopProcessing()")}));
}

void TestPacketAnalysisWorkerCaptures::fileFormat_isRead_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QVariantList>("records");
    const QVector<CapturedPacket> packets = oneOfEach();
    const QVariantList records = recordsOf(packets);
    for (const bool nanoseconds : {false, true}) {
        for (const ByteOrder order : {ByteOrder::Little, ByteOrder::Big}) {
            PcapFormat format;
            format.nanoseconds = nanoseconds;
            format.order = order;
            const QByteArray tag = QByteArray("pcap, ") + (nanoseconds ? "nanoseconds, " : "microseconds, ")
                                   + (order == ByteOrder::Little ? "little-endian" : "big-endian");
            QTest::newRow(tag.constData()) << capturebuilder::toPcap(packets, format) << records;
        }
    }
    PcapngFormat bigEndian;
    bigEndian.order = ByteOrder::Big;
    PcapngFormat nanoseconds;
    nanoseconds.timestampResolution = 9;
    PcapngFormat binary;
    binary.timestampResolution = 0x80 | 20; // about a microsecond
    QTest::newRow("pcapng") << capturebuilder::toPcapng(packets) << records;
    QTest::newRow("pcapng, big-endian") << capturebuilder::toPcapng(packets, bigEndian) << records;
    QTest::newRow("pcapng, nanoseconds") << capturebuilder::toPcapng(packets, nanoseconds) << records;
    QVector<CapturedPacket> onlyExact = packets; // times that 1/1048576 s can express
    for (CapturedPacket &packet : onlyExact)
        packet.time.nanoseconds = 500'000'000;
    QTest::newRow("pcapng, binary fractions") << capturebuilder::toPcapng(onlyExact, binary) << recordsOf(onlyExact);
}

void TestPacketAnalysisWorkerCaptures::fileFormat_isRead()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QVariantList, records);
    const Run run = analyse(write(bytes));
    QCOMPARE(run.calls, successOf(records.size()));
    QCOMPARE(textanalysis::differences(records, run.results), QStringList());
}

void TestPacketAnalysisWorkerCaptures::frame_isRead_data()
{
    QTest::addColumn<CapturedPacket>("packet");
    capturebuilder::Ipv4Fields options;
    options.options = QByteArray::fromHex("94040000"); // router alert, IETF RFC 2113
    const QString ipv6Source = QStringLiteral("fe80::1");
    const QString ipv6Multicast = QStringLiteral("ff02::181");
    QTest::newRow("Ethernet") << syncIn(FrameBuilder().ethernet().ipv4(kSource, kMulticast));
    QTest::newRow("IPv4 with options") << syncIn(FrameBuilder().ethernet().ipv4(kSource, kMulticast, options));
    QTest::newRow("VLAN") << syncIn(FrameBuilder().ethernet().vlan(100).ipv4(kSource, kMulticast));
    QTest::newRow("stacked VLAN") << syncIn(
        FrameBuilder().ethernet().vlan(7, 0, 0x88a8).vlan(100, 5).ipv4(kSource, kMulticast));
    QTest::newRow("VLAN in VLAN of the same kind")
        << syncIn(FrameBuilder().ethernet().vlan(7).vlan(100).ipv4(kSource, kMulticast));
    QTest::newRow("Linux cooked") << syncIn(FrameBuilder().linuxCooked().ipv4(kSource, kMulticast));
    QTest::newRow("Linux cooked, version 2") << syncIn(FrameBuilder().linuxCooked2().ipv4(kSource, kMulticast));
    QTest::newRow("raw IPv4") << syncIn(FrameBuilder().ipv4(kSource, kMulticast));
    QTest::newRow("loopback") << syncIn(FrameBuilder().nullLoopback().ipv4(kSource, kMulticast));
    QTest::newRow("IPv6") << syncIn(FrameBuilder().ethernet().ipv6(ipv6Source, ipv6Multicast));
    QTest::newRow("IPv6 in a VLAN") << syncIn(FrameBuilder().ethernet().vlan(100).ipv6(ipv6Source, ipv6Multicast));
    QTest::newRow("IPv6 with an extension header")
        << syncIn(FrameBuilder().ethernet().ipv6(ipv6Source, ipv6Multicast).ipv6Extension(0));
    QTest::newRow("raw IPv6") << syncIn(FrameBuilder().ipv6(ipv6Source, ipv6Multicast));
}

void TestPacketAnalysisWorkerCaptures::frame_isRead()
{
    QFETCH(const CapturedPacket, packet);
    const Run run = analyse(write(QVector<CapturedPacket>{packet}));
    QCOMPARE(run.calls, successOf(1));
    QCOMPARE(textanalysis::differences(recordsOf({packet}), run.results), QStringList());
}

void TestPacketAnalysisWorkerCaptures::frame_isPassedOver_data()
{
    QTest::addColumn<CapturedPacket>("packet");
    const auto ethernet = [] { return FrameBuilder().ethernet().ipv4(kSource, kMulticast); };
    const QByteArray sync = message(PtpType::Sync).toBytes();
    CapturedPacket packet = syncIn(ethernet());
    QTest::newRow("PTP directly in Ethernet") << capturebuilder::ptpOverEthernet(packet.time, message(PtpType::Sync));
    packet.frame = ethernet().tcp(319, 319).payload(sync).build();
    QTest::newRow("TCP") << packet;
    packet.frame = ethernet().udp(319, 319).payload(sync.left(43)).build();
    QTest::newRow("a Sync one octet short") << packet;
    packet.frame = ethernet().udp(319, 319).payload(QByteArray()).build();
    QTest::newRow("nothing in the datagram") << packet;
    packet.frame = ethernet().udp(319, 319).payload(QByteArray(44, '\xff')).build();
    QTest::newRow("rubbish") << packet;
    PtpMessage versionOne = message(PtpType::Sync);
    versionOne.versionPTP = 1;
    packet.frame = ethernet().udp(319, 319).payload(versionOne.toBytes()).build();
    QTest::newRow("version 1") << packet;
    capturebuilder::Ipv4Fields laterFragment;
    laterFragment.fragmentOffset = 1480;
    packet.frame =
        FrameBuilder().ethernet().ipv4(kSource, kMulticast, laterFragment).udp(319, 319).payload(sync).build();
    QTest::newRow("a later fragment") << packet;
    packet.frame.bytes = packet.frame.bytes.left(10);
    QTest::newRow("a frame cut in its Ethernet header") << packet;
}

void TestPacketAnalysisWorkerCaptures::frame_isPassedOver()
{
    QFETCH(const CapturedPacket, packet);
    // Silently, and without harm to what follows.
    const CapturedPacket good = ptp(PtpType::Sync, 5);
    const Run run = analyse(write(QVector<CapturedPacket>{packet, good}));
    QCOMPARE(run.calls, successOf(2));
    QCOMPARE(textanalysis::differences(recordsOf({good}), run.results), QStringList());
}

void TestPacketAnalysisWorkerCaptures::port_decides_data()
{
    QTest::addColumn<int>("sourcePort");
    QTest::addColumn<int>("destinationPort");
    QTest::addColumn<int>("records");
    QTest::newRow("event port, destination only") << 50'000 << 319 << 1;
    QTest::newRow("event port, source only") << 319 << 50'000 << 1;
    QTest::newRow("general port, destination only") << 50'000 << 320 << 1;
    QTest::newRow("general port, source only") << 320 << 50'000 << 1;
    QTest::newRow("both") << 319 << 320 << 1;
    QTest::newRow("neither") << 318 << 321 << 0;
    QTest::newRow("byte order confused") << 0x3f01 << 0x4001 << 0; // 319 and 320 the other way round
}

void TestPacketAnalysisWorkerCaptures::port_decides()
{
    QFETCH(const int, sourcePort);
    QFETCH(const int, destinationPort);
    QFETCH(const int, records);
    const CapturedPacket packet = syncIn(FrameBuilder().ethernet().ipv4(kSource, kMulticast),
                                         static_cast<quint16>(sourcePort), static_cast<quint16>(destinationPort));
    QCOMPARE(analyse(write(QVector<CapturedPacket>{packet})).results.size(), records);
}

void TestPacketAnalysisWorkerCaptures::truncatedFile_givesWhatIsWhole_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("packets");
    const QByteArray capture = capturebuilder::toPcap(oneOfEach());
    const int last = oneOfEach().last().frame.bytes.size();
    QTest::newRow("whole") << capture << 6;
    QTest::newRow("one octet short") << capture.chopped(1) << 5;
    QTest::newRow("within the last frame") << capture.chopped(last / 2) << 5;
    QTest::newRow("behind the last record header") << capture.chopped(last) << 5;
    QTest::newRow("within the last record header") << capture.chopped(last + 7) << 5;
    QTest::newRow("file header only") << capture.left(24) << 0;
}

void TestPacketAnalysisWorkerCaptures::truncatedFile_givesWhatIsWhole()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const int, packets);
    const Run run = analyse(write(bytes));
    QCOMPARE(run.calls, successOf(packets));
    QCOMPARE(run.results, recordsOf(oneOfEach().mid(0, packets)));
}

void TestPacketAnalysisWorkerCaptures::missingFile_givesTwoErrors()
{
    const QString path = _folder->filePath(QStringLiteral("缺少.pcap"));
    QCOMPARE(analyse(path).calls, QStringList{QStringLiteral("error(文件不存在：%1)").arg(path)} + refusalOf(path));
}

void TestPacketAnalysisWorkerCaptures::noCapture_givesOneError_data()
{
    QTest::addColumn<QByteArray>("bytes");
    const QByteArray capture = capturebuilder::toPcap(oneOfEach());
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("one octet") << capture.left(1);
    QTest::newRow("cut in the file header") << capture.left(23);
    QTest::newRow("text") << QByteArray("<HUAWEI>display version\r\nHuawei Versatile Routing Platform Software\r\n");
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("an executable's head")
        << QByteArray::fromHex("7f454c46020101000000000000000000") + QByteArray(100, 'x');
}

void TestPacketAnalysisWorkerCaptures::noCapture_givesOneError()
{
    QFETCH(const QByteArray, bytes);
    const QString path = write(bytes);
    QCOMPARE(analyse(path).calls, refusalOf(path));
    QCOMPARE(analyse(_folder->path()).calls, refusalOf(_folder->path())); // nor is a folder
}

void TestPacketAnalysisWorkerCaptures::pipe_givesOneError_andDoesNotWait()
{
    const QString path = _folder->filePath(QStringLiteral("pipe"));
    if (!systemlimits::makePipe(path)) {
        QTest::qSkip("This system has no named pipes among its files", __FILE__, __LINE__);
        return;
    }
    QCOMPARE(analyse(path).calls, refusalOf(path)); // nobody ever writes into it
}

void TestPacketAnalysisWorkerCaptures::deniedFile_givesOneError()
{
    const QString path = write(oneOfEach());
    QVERIFY(QFile::setPermissions(_folder->path(), QFile::Permissions(0x7755)));
    QVERIFY(QFile::setPermissions(path, QFile::Permissions()));
    const systemlimits::UnprivilegedScope scope;
    if (!scope.isUnprivileged()) {
        QTest::qSkip("This system has no other user to act as", __FILE__, __LINE__);
        return;
    }
    QCOMPARE(analyse(path).calls, refusalOf(path));
}

void TestPacketAnalysisWorkerCaptures::fileOfOneGigabyte_isAccepted()
{
    const QString path = _folder->filePath(QStringLiteral("large.pcap"));
    const CapturedPacket packet = ptp(PtpType::Sync, 0);
    QVERIFY(largecaptures::writeSparse(
        path, capturebuilder::toPcap({packet}) + largecaptures::overrunningRecordHeader(), kLargestFile));
    const Run run = analyse(path);
    QCOMPARE(run.calls, successOf(1));
    QCOMPARE(run.results, recordsOf({packet}));
}

void TestPacketAnalysisWorkerCaptures::fileOfOneGigabyteAndAByte_isRefused()
{
    const QString path = _folder->filePath(QStringLiteral("large.pcap"));
    QVERIFY(largecaptures::writeSparse(
        path, capturebuilder::toPcap({ptp(PtpType::Sync, 0)}) + largecaptures::overrunningRecordHeader(),
        kLargestFile + 1));
    QCOMPARE(analyse(path).calls,
             QStringList{QStringLiteral("error(文件大小超过1GB限制，请选择小于1GB的文件导入。)")} + refusalOf(path));
}

void TestPacketAnalysisWorkerCaptures::pathInChinese_isOpened_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("Chinese") << QStringLiteral("华为交换机 抓包（一）.pcap");
    QTest::newRow("outside of the basic plane") << QStringLiteral("𠀀.pcap");
    QTest::newRow("Japanese") << QStringLiteral("パケット.pcap");
    QTest::newRow("accents") << QStringLiteral("Zürich-été.pcap");
    QTest::newRow("punctuation") << QStringLiteral("a 'b' $c; %1.pcap");
}

void TestPacketAnalysisWorkerCaptures::pathInChinese_isOpened()
{
    QFETCH(const QString, name);
    QVERIFY(QDir(_folder->path()).mkdir(QStringLiteral("现场")));
    const QString path = write(capturebuilder::toPcap(oneOfEach()), QStringLiteral("现场/") + name);
    QCOMPARE(analyse(path).calls, successOf(6));
}

void TestPacketAnalysisWorkerCaptures::record_ofEachType_hasItsKeys_data()
{
    QTest::addColumn<PtpMessage>("sent");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QStringList>("bodyKeys");
    const QStringList announceKeys{QStringLiteral("originTimestamp"),      QStringLiteral("currentUtcOffset"),
                                   QStringLiteral("grandmasterPriority1"), QStringLiteral("grandmasterClockQuality"),
                                   QStringLiteral("grandmasterPriority2"), QStringLiteral("grandmasterIdentity"),
                                   QStringLiteral("stepsRemoved"),         QStringLiteral("timeSource")};
    const QStringList origin{QStringLiteral("originTimestamp")};
    QTest::newRow("Sync") << message(PtpType::Sync) << QStringLiteral("SYNC") << origin;
    QTest::newRow("Delay_Req") << message(PtpType::DelayReq) << QStringLiteral("DELAY_REQ") << origin;
    QTest::newRow("Follow_Up") << message(PtpType::FollowUp) << QStringLiteral("FOLLOW_UP")
                               << QStringList{QStringLiteral("preciseOriginTimestamp")};
    QTest::newRow("Delay_Resp") << message(PtpType::DelayResp) << QStringLiteral("DELAY_RESP")
                                << QStringList{QStringLiteral("receiveTimestamp"),
                                               QStringLiteral("requestingPortIdentity")};
    QTest::newRow("Announce") << message(PtpType::Announce) << QStringLiteral("ANNOUNCE") << announceKeys;
    QTest::newRow("Pdelay_Req") << message(PtpType::PdelayReq) << QStringLiteral("PDELAY_REQ") << QStringList();
    QTest::newRow("Pdelay_Resp") << message(PtpType::PdelayResp) << QStringLiteral("PDELAY_RESP") << QStringList();
    QTest::newRow("Pdelay_Resp_Follow_Up")
        << message(PtpType::PdelayRespFollowUp) << QStringLiteral("PDELAY_RESP_FOLLOW_UP") << QStringList();
    QTest::newRow("Signaling") << message(PtpType::Signaling) << QStringLiteral("SIGNALING") << QStringList();
    QTest::newRow("Management") << message(PtpType::Management) << QStringLiteral("MANAGEMENT") << QStringList();
}

void TestPacketAnalysisWorkerCaptures::record_ofEachType_hasItsKeys()
{
    QFETCH(const PtpMessage, sent);
    QFETCH(const QString, type);
    QFETCH(const QStringList, bodyKeys);
    const CapturedPacket packet = capturebuilder::ptpOverUdp(RecordTime::fromMilliseconds(kStart), kSource, sent);
    const Run run = analyse(write(QVector<CapturedPacket>{packet}));
    QCOMPARE(run.results.size(), 1);
    const QVariantMap record = run.results.first().toMap();
    QStringList keys = bodyKeys + QStringList{QStringLiteral("timestamp"),     QStringLiteral("sourceIp"),
                                              QStringLiteral("messageType"),   QStringLiteral("sequenceId"),
                                              QStringLiteral("domainNumber"),  QStringLiteral("sourcePortId"),
                                              QStringLiteral("messageLength"), QStringLiteral("correctionField")};
    keys.sort();
    QCOMPARE(record.keys(), keys);
    for (const QVariant &value : record)
        QCOMPARE(value.userType(), int(QMetaType::QString));
    QCOMPARE(record.value(QStringLiteral("messageType")).toString(), type);
}

void TestPacketAnalysisWorkerCaptures::record_texts_areTheMessagesFields()
{
    PtpMessage announce = message(PtpType::Announce, 65'535);
    announce.domainNumber = 127;
    announce.correctionField = qint64(3) * 65'536;
    announce.sourcePortIdentity = {{{0x00, 0x1b, 0x19, 0xff, 0xfe, 0xab, 0xcd, 0xef}}, 258};
    announce.timestamp = {281'474'976'710'655, 5};
    announce.announce.currentUtcOffset = -37;
    announce.announce.grandmasterPriority1 = 1;
    announce.announce.clockClass = 6;
    announce.announce.clockAccuracy = 0x21;
    announce.announce.offsetScaledLogVariance = 0x4e5d;
    announce.announce.grandmasterPriority2 = 255;
    announce.announce.grandmasterIdentity = {{0xff, 0, 0, 0, 0, 0, 0, 0x0a}};
    announce.announce.stepsRemoved = 4;
    announce.announce.timeSource = 0x20;
    const CapturedPacket packet =
        capturebuilder::ptpOverUdp(RecordTime::fromMilliseconds(kStart + 7), kSource, announce);
    const Run run = analyse(write(QVector<CapturedPacket>{packet}));
    const QVariantMap expected{{QStringLiteral("timestamp"), QStringLiteral("2023-11-14 22:13:20.007")},
                               {QStringLiteral("sourceIp"), kSource},
                               {QStringLiteral("messageType"), QStringLiteral("ANNOUNCE")},
                               {QStringLiteral("sequenceId"), QStringLiteral("65535")},
                               {QStringLiteral("domainNumber"), QStringLiteral("127")},
                               {QStringLiteral("sourcePortId"), QStringLiteral("00:1b:19:ff:fe:ab:cd:ef-258")},
                               {QStringLiteral("messageLength"), QStringLiteral("64")},
                               {QStringLiteral("correctionField"), QStringLiteral("196608")},
                               {QStringLiteral("originTimestamp"), QStringLiteral("281474976710655.000000005")},
                               {QStringLiteral("currentUtcOffset"), QStringLiteral("-37")},
                               {QStringLiteral("grandmasterPriority1"), QStringLiteral("1")},
                               {QStringLiteral("grandmasterClockQuality"), QString::number(0x06214e5d)},
                               {QStringLiteral("grandmasterPriority2"), QStringLiteral("255")},
                               {QStringLiteral("grandmasterIdentity"), QStringLiteral("ff:00:00:00:00:00:00:0a")},
                               {QStringLiteral("stepsRemoved"), QStringLiteral("4")},
                               {QStringLiteral("timeSource"), QStringLiteral("32")}};
    QCOMPARE(textanalysis::differences(QVariantList{expected}, run.results), QStringList());
}

void TestPacketAnalysisWorkerCaptures::record_negativeCorrection_isALargeNumber()
{
    PtpMessage sync = message(PtpType::Sync);
    sync.correctionField = -1;
    const Run run = analyse(write({capturebuilder::ptpOverUdp(RecordTime::fromMilliseconds(kStart), kSource, sync)}));
    QCOMPARE(run.results.value(0).toMap().value(QStringLiteral("correctionField")).toString(),
             QStringLiteral("18446744073709551615"));
}

void TestPacketAnalysisWorkerCaptures::record_withoutIpv4_hasNoSource()
{
    const CapturedPacket packet =
        syncIn(FrameBuilder().ethernet().ipv6(QStringLiteral("fe80::1"), QStringLiteral("ff02::181")));
    const Run run = analyse(write(QVector<CapturedPacket>{packet}));
    QCOMPARE(run.results.size(), 1);
    QVERIFY(!run.results.first().toMap().contains(QStringLiteral("sourceIp")));
    QCOMPARE(run.counts("sourceIps"), (QVariantMap{{QString(), 1}}));
    QCOMPARE(run.statistics.value(QStringLiteral("masterClockIp")), QVariant(QString()));
}

void TestPacketAnalysisWorkerCaptures::record_time_isTruncatedToMilliseconds()
{
    PcapFormat format;
    format.nanoseconds = true;
    QVector<CapturedPacket> packets{ptp(PtpType::Sync, 0), ptp(PtpType::Sync, 0)};
    packets[0].time.nanoseconds = 1'999'999;
    packets[1].time.nanoseconds = 999'999'999;
    const Run run = analyse(write(capturebuilder::toPcap(packets, format)));
    QStringList times;
    for (const QVariant &record : run.results)
        times.append(record.toMap().value(QStringLiteral("timestamp")).toString());
    QCOMPARE(times,
             (QStringList{QStringLiteral("2023-11-14 22:13:20.001"), QStringLiteral("2023-11-14 22:13:20.999")}));
}

void TestPacketAnalysisWorkerCaptures::store_keepsTheNewestRecords_data()
{
    QTest::addColumn<int>("messages");
    QTest::addColumn<int>("kept");
    QTest::newRow("as many as fit") << 50'000 << 50'000;
    QTest::newRow("one more drops a fifth") << 50'001 << 40'001;
    QTest::newRow("full again") << 60'000 << 50'000;
    QTest::newRow("and one more again") << 60'001 << 40'001;
}

//! Frames that differ in their times and sequence ids only, written without building each anew.
static QByteArray longCapture(int messages, const std::function<CapturedPacket(int)> &packetAt)
{
    QByteArray capture = capturebuilder::toPcap({packetAt(0)});
    for (int i = 1; i < messages; ++i)
        capture += capturebuilder::toPcap({packetAt(i)}).mid(24);
    return capture;
}

void TestPacketAnalysisWorkerCaptures::store_keepsTheNewestRecords()
{
    QFETCH(const int, messages);
    QFETCH(const int, kept);
    // Of a type without a list of its own: the store alone is looked at.
    const auto packetAt = [](int i) { return ptp(PtpType::Management, i, kSource, static_cast<quint16>(i)); };
    const Run run = analyse(write(longCapture(messages, packetAt)));
    QCOMPARE(run.calls, successOf(messages));
    QCOMPARE(run.results.size(), kept);
    QCOMPARE(run.results.first().toMap(), textanalysis::record(packetAt(messages - kept)));
    QCOMPARE(run.results.last().toMap(), textanalysis::record(packetAt(messages - 1)));
    QCOMPARE(run.statistics.value(QStringLiteral("totalPackets")), QVariant(kept));
    QCOMPARE(run.statistics.value(QStringLiteral("ptpv2Packets")), QVariant(kept));
    // What was dropped is still counted.
    QCOMPARE(run.counts("messageTypes"), (QVariantMap{{QStringLiteral("MANAGEMENT"), messages}}));
    QCOMPARE(run.time("start"), kStart);
}

void TestPacketAnalysisWorkerCaptures::store_trimsTypeListsOverAFifth()
{
    // 40 000 Follow_Ups, 1.2 s apart, then 10 000 Announces and one more: the store drops 10 000 records, as does the
    // list of Follow_Ups; the list of Announces holds exactly a fifth and stays.
    const int followUps = 40'000;
    const int announces = 10'000;
    const auto packetAt = [](int i) {
        const bool isFollowUp = i < followUps;
        return ptp(isFollowUp ? PtpType::FollowUp : PtpType::Announce, qint64(i) * 1200);
    };
    const Run run = analyse(write(longCapture(followUps + announces + 1, packetAt)));
    QCOMPARE(run.results.size(), 40'001);
    const int followUpGaps = followUps - 10'000 - 1;
    const int announceGaps = announces;
    QCOMPARE(run.health().value(QStringLiteral("followUpIntervalStatus")).toString(),
             QStringLiteral("异常 (%1/%1)").arg(followUpGaps));
    QCOMPARE(run.health().value(QStringLiteral("announceIntervalStatus")).toString(),
             QStringLiteral("异常 (%1/%1)").arg(announceGaps));
}

void TestPacketAnalysisWorkerCaptures::noPackets_giveEmptyStatistics()
{
    const Run run = analyse(write(capturebuilder::toPcap({ptp(PtpType::Sync, 0)}).left(24)));
    QCOMPARE(run.calls, successOf(0));
    const qint64 highest = std::numeric_limits<qint64>::max();
    const qint64 lowest = std::numeric_limits<qint64>::min();
    const QVariantMap expected{
        {QStringLiteral("totalPackets"), 0},
        {QStringLiteral("ptpv2Packets"), 0},
        {QStringLiteral("timeRange"),
         QVariantMap{{QStringLiteral("start"), highest},
                     {QStringLiteral("end"), lowest},
                     {QStringLiteral("duration"), qint64(1)}, // the difference, wrapped around
                     {QStringLiteral("firstSyncTime"), highest},
                     {QStringLiteral("secondLastSyncTime"), lowest}}},
        {QStringLiteral("masterClockIp"), QString()},
        {QStringLiteral("messageTypes"), QVariantMap()},
        {QStringLiteral("domains"), QVariantMap()},
        {QStringLiteral("sourcePorts"), QVariantMap()},
        {QStringLiteral("sourceIps"), QVariantMap()},
        {QStringLiteral("syncSessions"), QVariantList()},
        {QStringLiteral("healthCheck"),
         QVariantMap{{QStringLiteral("announceIntervalStatus"), QStringLiteral("无Announce消息")},
                     {QStringLiteral("syncIntervalStatus"), QStringLiteral("无Sync消息")},
                     {QStringLiteral("followUpIntervalStatus"), QStringLiteral("无Follow_up消息")},
                     {QStringLiteral("slaveResponseStatus"), QStringLiteral("无Sync消息")},
                     {QStringLiteral("delayReqRespMatchingStatus"), QStringLiteral("无Delay_Req消息")},
                     {QStringLiteral("abnormalPackets"), QVariantList()},
                     {QStringLiteral("overallHealthStatus"), QStringLiteral("正常")}}}};
    QCOMPARE(textanalysis::differences(expected, run.statistics), QStringList());
}

void TestPacketAnalysisWorkerCaptures::noPtp_givesNoRecords()
{
    const QVector<CapturedPacket> packets(20,
                                          capturebuilder::videoPacket(RecordTime::fromMilliseconds(kStart), kSource));
    const Run run = analyse(write(packets));
    QCOMPARE(run.calls, successOf(20));
    QCOMPARE(run.results, QVariantList());
    QCOMPARE(run.statistics.value(QStringLiteral("totalPackets")), QVariant(0));
    QCOMPARE(run.statistics.value(QStringLiteral("ptpv2Packets")), QVariant(0));
    QCOMPARE(run.health().value(QStringLiteral("slaveResponseStatus")), QVariant(QStringLiteral("无Sync消息")));
}

void TestPacketAnalysisWorkerCaptures::progress_comesEveryThousandPackets_data()
{
    QTest::addColumn<int>("packets");
    for (const int packets : {1, 999, 1000, 1001, 2999})
        QTest::newRow(QByteArray::number(packets).constData()) << packets;
}

void TestPacketAnalysisWorkerCaptures::progress_comesEveryThousandPackets()
{
    QFETCH(const int, packets);
    const QVector<CapturedPacket> capture(
        packets, capturebuilder::videoPacket(RecordTime::fromMilliseconds(kStart), kSource, 20));
    QCOMPARE(analyse(write(capture)).calls, successOf(packets));
}

void TestPacketAnalysisWorkerCaptures::counts_areByTypeDomainPortAndSource()
{
    PtpMessage other = message(PtpType::Sync);
    other.domainNumber = 4;
    other.sourcePortIdentity.portNumber = 2;
    const QString otherSource = QStringLiteral("10.0.0.6");
    const QVector<CapturedPacket> packets{
        ptp(PtpType::Sync, 0), ptp(PtpType::Sync, 1), ptp(PtpType::DelayReq, 2),
        capturebuilder::ptpOverUdp(RecordTime::fromMilliseconds(kStart + 3), otherSource, other)};
    const Run run = analyse(write(packets));
    QCOMPARE(run.counts("messageTypes"), (QVariantMap{{QStringLiteral("SYNC"), 3}, {QStringLiteral("DELAY_REQ"), 1}}));
    QCOMPARE(run.counts("domains"), (QVariantMap{{QStringLiteral("0"), 3}, {QStringLiteral("4"), 1}}));
    QCOMPARE(run.counts("sourcePorts"), (QVariantMap{{QStringLiteral("00:1b:19:ff:fe:00:00:01-1"), 3},
                                                     {QStringLiteral("00:1b:19:ff:fe:00:00:01-2"), 1}}));
    QCOMPARE(run.counts("sourceIps"), (QVariantMap{{kSource, 3}, {otherSource, 1}}));
    for (const char *counts : {"messageTypes", "domains", "sourcePorts", "sourceIps"}) {
        for (const QVariant &count : run.counts(counts))
            QCOMPARE(count.userType(), int(QMetaType::Int));
    }
}

void TestPacketAnalysisWorkerCaptures::masterClock_isTheFirstSyncWithAnAddress()
{
    const CapturedPacket nameless =
        syncIn(FrameBuilder().ethernet().ipv6(QStringLiteral("fe80::1"), QStringLiteral("ff02::181")));
    const QVector<CapturedPacket> packets{ptp(PtpType::Announce, -2, QStringLiteral("10.0.0.1")), nameless,
                                          ptp(PtpType::DelayReq, 1, QStringLiteral("10.0.0.2")),
                                          ptp(PtpType::Sync, 2, QStringLiteral("10.0.0.3")),
                                          ptp(PtpType::Sync, 3, QStringLiteral("10.0.0.4"))};
    QCOMPARE(analyse(write(packets)).statistics.value(QStringLiteral("masterClockIp")),
             QVariant(QStringLiteral("10.0.0.3")));
}

void TestPacketAnalysisWorkerCaptures::masterClock_outlivesItsRecord()
{
    const auto packetAt = [](int i) {
        return i == 0 ? ptp(PtpType::Sync, 0, QStringLiteral("10.0.0.3"))
                      : ptp(PtpType::Management, i, QStringLiteral("10.0.0.4"));
    };
    const Run run = analyse(write(longCapture(50'001, packetAt)));
    QCOMPARE(run.results.size(), 40'001);
    QCOMPARE(run.statistics.value(QStringLiteral("masterClockIp")), QVariant(QStringLiteral("10.0.0.3")));
}

void TestPacketAnalysisWorkerCaptures::syncTimes_areFirstAndSecondLast_data()
{
    QTest::addColumn<QVector<int>>("syncs"); // milliseconds; a request each at 0 and 9000
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("secondLast");
    QTest::newRow("three") << QVector<int>{1000, 2000, 3000} << 1000 << 2000;
    QTest::newRow("two") << QVector<int>{1000, 2000} << 1000 << 1000;
    QTest::newRow("out of order") << QVector<int>{3000, 1000, 2000} << 1000 << 2000;
    QTest::newRow("two last at once") << QVector<int>{1000, 3000, 3000} << 1000 << 3000;
    QTest::newRow("one") << QVector<int>{1000} << 1000 << 1000;
    QTest::newRow("none: the time range") << QVector<int>() << 0 << 9000;
}

void TestPacketAnalysisWorkerCaptures::syncTimes_areFirstAndSecondLast()
{
    QFETCH(const QVector<int>, syncs);
    QFETCH(const int, first);
    QFETCH(const int, secondLast);
    QVector<CapturedPacket> packets{ptp(PtpType::DelayReq, 0)};
    for (const int sync : syncs)
        packets.append(ptp(PtpType::Sync, sync));
    packets.append(ptp(PtpType::DelayReq, 9000));
    const Run run = analyse(write(packets));
    QCOMPARE(run.time("firstSyncTime"), kStart + first);
    QCOMPARE(run.time("secondLastSyncTime"), kStart + secondLast);
    // Inside of the time range only.
    QVERIFY(!run.statistics.contains(QStringLiteral("firstSyncTime")));
    QVERIFY(!run.statistics.contains(QStringLiteral("secondLastSyncTime")));
}

void TestPacketAnalysisWorkerCaptures::timeRange_spansAllRecords()
{
    const QVector<CapturedPacket> packets{ptp(PtpType::Sync, 500), ptp(PtpType::Management, -200),
                                          ptp(PtpType::DelayResp, 7000), ptp(PtpType::Sync, 600)};
    const QVariantMap range = analyse(write(packets)).counts("timeRange");
    QCOMPARE(range, (QVariantMap{{QStringLiteral("start"), kStart - 200},
                                 {QStringLiteral("end"), kStart + 7000},
                                 {QStringLiteral("duration"), qint64(7200)},
                                 {QStringLiteral("firstSyncTime"), kStart + 500},
                                 {QStringLiteral("secondLastSyncTime"), kStart + 500}}));
    for (const QVariant &time : range)
        QCOMPARE(time.userType(), int(QMetaType::LongLong));
}

void TestPacketAnalysisWorkerCaptures::healthCheck_isPartOfTheStatistics()
{
    capturebuilder::SiteOptions options;
    options.slaves = 4;
    options.seconds = 12;
    options.lostSlave = 2;
    options.lostFromSecond = 5;
    const Run run = analyse(write(capturebuilder::ptpSite(options)), 4);
    QCOMPARE(run.health().keys(),
             (QStringList{QStringLiteral("abnormalPackets"), QStringLiteral("announceIntervalStatus"),
                          QStringLiteral("delayReqRespMatchingStatus"), QStringLiteral("followUpIntervalStatus"),
                          QStringLiteral("overallHealthStatus"), QStringLiteral("slaveResponseStatus"),
                          QStringLiteral("syncIntervalStatus")}));
    const QVariantList findings = run.health().value(QStringLiteral("abnormalPackets")).toList();
    QCOMPARE(findings.size(), 5); // windows 6 to 10; the last Sync is not looked at
    for (int i = 0; i < findings.size(); ++i) {
        const QVariantMap expected{
            {QStringLiteral("timestamp"),
             textanalysis::timeText(textanalysis::milliseconds(options.start) + qint64(5 + i) * 1000)},
            {QStringLiteral("messageType"), QStringLiteral("DELAY_REQ")},
            {QStringLiteral("sourceIp"), QStringLiteral("192.168.100.2")},
            {QStringLiteral("sequenceId"), QString::number(6 + i)},
            {QStringLiteral("abnormalType"), QStringLiteral("从节点未回复")}};
        QCOMPARE(textanalysis::differences(expected, findings.at(i)), QStringList());
    }
    QCOMPARE(run.health().value(QStringLiteral("slaveResponseStatus")).toString(),
             QStringLiteral("异常 (5/10 Sync消息)"));
    QCOMPARE(run.health().value(QStringLiteral("overallHealthStatus")).toString(), QStringLiteral("异常"));
}

void TestPacketAnalysisWorkerCaptures::syncSession_hasItsKeys()
{
    capturebuilder::SiteOptions options;
    options.slaves = 1;
    options.seconds = 5;
    const Run run = analyse(write(capturebuilder::ptpSite(options)), 1);
    const QVariantList sessions = run.statistics.value(QStringLiteral("syncSessions")).toList();
    QCOMPARE(sessions.size(), 1);
    const QVariantMap session = sessions.first().toMap();
    QCOMPARE(session.keys(), (QStringList{QStringLiteral("clockOffset"), QStringLiteral("hasValidSync"),
                                          QStringLiteral("lastFollowUpSequence"), QStringLiteral("lastSyncSequence"),
                                          QStringLiteral("masterPort"), QStringLiteral("pathDelay")}));
    QCOMPARE(session.value(QStringLiteral("clockOffset")).userType(), int(QMetaType::Double));
    QCOMPARE(session.value(QStringLiteral("pathDelay")).userType(), int(QMetaType::Double));
    QCOMPARE(session.value(QStringLiteral("hasValidSync")), QVariant(true));
    QCOMPARE(session.value(QStringLiteral("masterPort")).userType(), int(QMetaType::QString));
    QCOMPARE(session.value(QStringLiteral("lastSyncSequence")).toInt(),
             session.value(QStringLiteral("lastFollowUpSequence")).toInt());
}

void TestPacketAnalysisWorkerCaptures::stop_beforeTheFirstPacket_reportsNothingRead()
{
    const Run run = analyse(write(oneOfEach()), 9, true);
    QCOMPARE(run.calls, successOf(0));
    QCOMPARE(run.results, QVariantList());
    QCOMPARE(run.health().value(QStringLiteral("overallHealthStatus")), QVariant(QStringLiteral("正常")));
}

void TestPacketAnalysisWorkerCaptures::run_twice_reportsTheSame()
{
    PacketAnalysisWorker worker;
    worker.setFilePath(write(capturebuilder::ptpSite()));
    const SignalRecorder recorder(&worker);
    worker.stopProcessing(); // forgotten when a run begins
    worker.run();
    worker.run();
    QCOMPARE(recorder.count(QStringLiteral("finished")), 2);
    const int half = recorder.emissions().size() / 2;
    QCOMPARE(recorder.names().mid(0, half), recorder.names().mid(half));
    for (int i = 0; i < half; ++i)
        QCOMPARE(recorder.emissions().at(i).arguments, recorder.emissions().at(half + i).arguments);
}

void TestPacketAnalysisWorkerCaptures::tooManyFindings_breakOff()
{
    const Run run = analyse(write(capturebuilder::ptpSite()), 400'000);
    QCOMPARE(run.calls.size(), 3);
    QVERIFY(run.calls.at(0).startsWith(QStringLiteral("progress(")));
    QVERIFY2(run.calls.at(1).startsWith(QStringLiteral("error(Analysis error: ")), qUtf8Printable(run.calls.at(1)));
    QCOMPARE(run.calls.at(2), QStringLiteral("finished()"));
    QCOMPARE(run.results, QVariantList());
}

QTEST_GUILESS_MAIN(TestPacketAnalysisWorkerCaptures)
#include "tst_packetanalysisworker_captures.moc"
