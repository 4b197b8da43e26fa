// Replies that no switch writes: all of them are read, quickly, and none harms the reader.
#include "replydescription.h"

#include <QtCore/QElapsedTimer>
#include <QtTest/QtTest>

#include <initializer_list>
#include <optional>
#include <random>

namespace {

constexpr int kMebibyte = 1 << 20;

#if defined(NDEBUG) && !defined(SWITCHPANEL_SANITIZED) // an optimised build
constexpr qint64 kDeadlineMsecs = 100;
#else
constexpr qint64 kDeadlineMsecs = 5'000; // sanitizers included; a backtracking engine takes minutes
#endif
constexpr int kRounds = 5; // the fastest counts: other programs share the machine

// Satisfies every section that no label is needed for.
const char kEverything[] =
    "Interface PHY\r\nOptic Speed Port Interface\r\nnumber of VLANs\r\ndisplay port-mirroring\r\n"
    "display current-configuration\r\ndisplay poe power\r\ntransceiver information:\r\ndisplay this\r\n#\r\n"
    "igmp-snooping configuration\r\nInterface Link Duplex Type Speed Description PoE Priority InUsage\r\n"
    "Aggregate Interface\r\nPort Status Index Oper-Key Flag\r\nTotal VLANs\r\nIGMP snooping\r\nQuerier\r\n"
    "multicast forwarding-table\r\nMirroring group 1:\r\n";

QByteArray repeated(const QByteArray &piece, int size = kMebibyte)
{
    QByteArray bytes;
    bytes.reserve(size + piece.size());
    while (bytes.size() < size)
        bytes += piece;
    return bytes;
}

QByteArray noise(bool isText)
{
    std::mt19937 random(1);
    QByteArray bytes(kMebibyte, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = static_cast<char>(isText ? 32 + random() % 95 : random() % 256);
    return bytes;
}

//! \a line, filled up with \a filler to the longest length that is searched.
QByteArray longestLine(const QByteArray &front, char filler, const QByteArray &back)
{
    return front + QByteArray(1024 - front.size() - back.size(), filler) + back + "\r\n";
}

void addHostileRows()
{
    const auto row = [](const char *tag, const QByteArray &bytes) { QTest::newRow(tag) << bytes; };
    row("nothing", QByteArray());
    row("NULs", QByteArray(kMebibyte, '\0'));
    row("0xFF", QByteArray(kMebibyte, '\xff'));
    row("cut characters", repeated("\xe7\xab"));
    row("noise", noise(false));
    row("text noise", noise(true));
    row("one line", QByteArray(kMebibyte, 'x'));
    row("one line of digits", QByteArray("GE") + QByteArray(kMebibyte, '1'));
    row("one line of names", repeated("GE0/0/1 "));
    row("blanks", QByteArray(kMebibyte, ' '));
    row("CR only", QByteArray(kMebibyte, '\r'));
    row("LF only", QByteArray(kMebibyte, '\n'));
    row("CR LF only", repeated("\r\n"));
    row("CR CR LF only", repeated("\r\r\n"));
    row("page markers", repeated("---- More ----0/0/GE1/"));
    row("dashes", QByteArray(kMebibyte, '-'));
    row("headers", repeated("Interface PHY\r\n"));
    row("short lines", repeated("A\r\n"));
    row("marks", repeated("#\r\n"));
    row("gigabit ports", repeated("GE1/1/1\r\n"));
    row("10-gigabit ports", repeated("10GE1/1/1\r\n"));
    row("40-gigabit ports", repeated("40GE1/1/1\r\n"));
    row("long names", repeated("GigabitEthernet1/1/1\r\n"));
    row("half names", repeated(longestLine("GE1", 'G', "GE1/1/")));
    row("names without numbers", repeated(repeated("GE1", 1020) + "\r\n"));
    row("long digit runs", repeated(longestLine("GE", '1', "/")));
    row("digit runs behind slashes", repeated(longestLine("GE1/1/", '9', "")));
    row("mirroring: blanks", repeated(longestLine("", ' ', "GigabitEthernet Inbound Observe-port")));
    row("mirroring: digits", repeated(longestLine("", '1', "GigabitEthernet Inbound Observe-port")));
    row("mirroring: digits and blanks", repeated(repeated("1 ", 1000) + "GigabitEthernetInbound\r\n"));
    row("mirroring: half rows", repeated(repeated("1 GigabitEthernet0/0/1 ", 980) + "Inbound\r\n"));
    row("mirroring: destinations", repeated("Observe-port 1 : GigabitEthernet0/0/1 Inbound\r\n"));
    row("configuration headings", repeated("interface GigabitEthernet0/0/1\r\n"));
    row("configuration with sub-interfaces",
        repeated("interface GigabitEthernet0/0/1.1\r\n undo negotiation auto\r\n"));
    row("modules", repeated("GE0/0/1 transceiver information:\r\nWavelength\r\n"));
    row("absent modules", repeated("GE0/0/1 transceiver is absent\r\n"));
    row("module details", QByteArray("GE0/0/1 transceiver information:\r\n") + repeated("Wavelength\r\n"));
    row("table headers", repeated("Interface Link Duplex Type\r\n"));
    row("VLAN headings", repeated("The VLANs include\r\n"));
    row("VLAN counts", repeated("Total VLANs: 1\r\n"));
    row("snooping headings", repeated("IGMP snooping\r\n"));
    row("queriers", repeated("Querier\r\n"));
    row("group headings", repeated("Mirroring group:\r\n"));
    row("group headings without a colon", repeated("Mirroring group\r\n"));
    row("one line of group headings", repeated("Mirroring group"));
    row("group details", repeated("Type:\r\n"));
    row("one line of group details", repeated("Type:Status:Mirroring port:"));
    row("forwarding tables", repeated("multicast forwarding-table\r\n"));
    row("page markers in lines", repeated("---- More ----GE1/\r\n"));
    row("page markers without a name", repeated("---- More ----GE1\r\n"));
    row("prompts", repeated("<\r\n"));
    row("board types", repeated("Board Type : : \r\n"));
    row("beginnings of keywords", repeated("Please enable IGMP snooping in the global view firs"));
}

//! How much some sections have to say of a reply; looks at every view.
qsizetype amountOf(const reply::ReplyText &text,
                   std::initializer_list<reply::Effects (*)(const reply::ReplyText &)> all)
{
    qsizetype amount = 0;
    for (const auto section : all) {
        for (const reply::Effect &effect : section(text))
            amount += 1 + effect.text.size();
    }
    return amount;
}

qsizetype amountOf(const std::optional<reply::PortInventory> &inventory)
{
    return inventory ? 1 + inventory->downPorts.size() + inventory->upPorts.size() : 0;
}

//! What both families read.
qsizetype readShared(const reply::ReplyText &text, const InterfaceNamingProfile &naming)
{
    const auto mirrored = readPortMirroring(text, naming);
    qsizetype amount = mirrored ? 1 + static_cast<qsizetype>(mirrored->size()) : 0;
    for (const reply::TransceiverNote &note : readTransceivers(text, naming).logged)
        amount += 1 + note.details.size();
    return amount;
}

qsizetype readByHuawei(const reply::ReplyText &text, const InterfaceNamingProfile &naming)
{
    return amountOf(text, {reply::readMulticastTable, reply::readMorePages, reply::readIpConflicts,
                           reply::readOpticalPorts, reply::readVlanListing, reply::readPoePower,
                           reply::readInterfaceView, reply::readIgmpConfiguration})
           + amountOf(readHuaweiPorts(text, naming, false)) + readShared(text, naming)
           + (readAutoNegotiation(text, naming, QStringLiteral("g0/0/1")) ? 1 : 0)
           + static_cast<int>(readLoginPrompt(text, false));
}

qsizetype readByHua3(const reply::ReplyText &text, const InterfaceNamingProfile &naming)
{
    const auto groups = readHua3MirroringGroups(text);
    return amountOf(text, {reply::readHua3MulticastTable, reply::readHua3IpConflicts, reply::readHua3PortStatus,
                           reply::readHua3VlanSummary, reply::readHua3Snooping, reply::readHua3Querier,
                           reply::readHua3LinkAggregation, reply::readHua3PoeInterfaces, reply::readHua3PoeUsage,
                           reply::readHua3ForwardingTable, reply::readHua3OpticalPorts})
           + (groups ? 1 + groups->size() : 0) + amountOf(readHua3Ports(text, naming, false)) + readShared(text, naming)
           + static_cast<int>(readHua3LoginPrompt(text, false));
}

struct Family
{
    qsizetype (*read)(const reply::ReplyText &, const InterfaceNamingProfile &);
    const InterfaceNamingProfile &naming;
};

const Family kFamilies[] = {
    {readByHuawei, huaweiNaming()}, {readByHuawei, huaweiSubModelNaming()}, {readByHua3, hua3Naming()}};

} // namespace

class TestHostileReplies : public QObject
{
    Q_OBJECT

private slots:
    void reply_isReadInTime_data();
    void reply_isReadInTime();
    void views_lieWithinTheReply_data();
    void views_lieWithinTheReply();
};

void TestHostileReplies::reply_isReadInTime_data()
{
    QTest::addColumn<QByteArray>("bytes");
    addHostileRows();
}

void TestHostileReplies::reply_isReadInTime()
{
    QFETCH(QByteArray, bytes);
    for (const Family &family : kFamilies) {
        qint64 elapsed = kDeadlineMsecs;
        qsizetype amount = 0;
        for (int round = 0; round < kRounds && elapsed >= kDeadlineMsecs; ++round) {
            QElapsedTimer timer;
            timer.start();
            const reply::ReplyText text(kEverything + bytes);
            amount = family.read(text, family.naming);
            elapsed = timer.elapsed();
        }
        QVERIFY2(elapsed < kDeadlineMsecs, qPrintable(QStringLiteral("%1 ms").arg(elapsed)));
        const reply::ReplyText nothing{QByteArray()};
        QVERIFY(amount > family.read(nothing, family.naming)); // the front satisfies the sections
    }
}

void TestHostileReplies::views_lieWithinTheReply_data()
{
    reply_isReadInTime_data();
}

void TestHostileReplies::views_lieWithinTheReply()
{
    QFETCH(QByteArray, bytes);
    const reply::ReplyText text(kEverything + bytes);
    const auto isInside = [&text](QStringView view) {
        return view.data() >= text.text().data()
               && view.data() + view.size() <= text.text().data() + text.text().size();
    };
    const QString constant = QStringLiteral("There is no igmp - snooping configuration");
    for (const auto section :
         {reply::readOpticalPorts, reply::readPoePower, reply::readInterfaceView, reply::readHua3PortStatus,
          reply::readHua3VlanSummary, reply::readHua3Snooping, reply::readHua3Querier, reply::readHua3LinkAggregation,
          reply::readHua3PoeInterfaces, reply::readHua3PoeUsage, reply::readHua3ForwardingTable})
    {
        for (const reply::Effect &effect : section(text))
            QVERIFY(effect.text.isNull() || isInside(effect.text) || effect.text == constant);
    }
    for (const InterfaceNamingProfile *naming : {&huaweiSubModelNaming(), &hua3Naming()}) {
        for (const reply::TransceiverNote &note : readTransceivers(text, *naming).logged)
            QVERIFY(!note.port || isInside(*note.port));
    }
}

QTEST_APPLESS_MAIN(TestHostileReplies)
#include "tst_hostilereplies.moc"
