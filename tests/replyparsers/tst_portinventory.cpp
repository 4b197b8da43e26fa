#include "portinventory.h"
#include "replydescription.h"

#include <QtTest/QtTest>

namespace {

const char kHeader[] = "Interface                   PHY   Protocol  InUti OutUti   inErrors  outErrors\r\n";

QByteArray row(const QString &port)
{
    return port.toLatin1() + "      up    up           0%     0%          0          0\r\n";
}

//! Rows for the ports \a name\c 0/0/first to \a name\c 0/0/last.
QByteArray rows(const char *name, int first, int last)
{
    QByteArray bytes;
    for (int port = first; port <= last; ++port)
        bytes += row(QStringLiteral("%1%2").arg(QLatin1String(name)).arg(port));
    return bytes;
}

QString names(const char *prefix, int first, int last)
{
    QStringList list;
    for (int port = first; port <= last; ++port)
        list.append(QStringLiteral("%1%2").arg(QLatin1String(prefix)).arg(port));
    return list.join(QLatin1Char(' '));
}

QStringList readPorts(const QByteArray &listing, const InterfaceNamingProfile &naming, bool isAggregationSwitch = false)
{
    const reply::ReplyText text(listing);
    const auto inventory = readHuaweiPorts(text, naming, isAggregationSwitch);
    return inventory ? describe(*inventory) : QStringList();
}

QStringList inventory(const QString &slot, int headers, const QString &down, const QString &up,
                      const QString &downRange, const QString &upRange)
{
    QStringList lines = slot.split(QLatin1Char(','));
    lines.append(QStringLiteral("headers %1").arg(headers));
    if (down.isEmpty() || down.startsWith(QLatin1String("10GE")) || down.startsWith(QLatin1String("xg")))
        lines.append(QStringLiteral("no gigabit port"));
    lines << QStringLiteral("down ports: ") + down << QStringLiteral("up ports: ") + up;
    lines << QStringLiteral("down range ") + downRange << QStringLiteral("up range ") + upRange;
    return lines;
}

const QString kNone = QStringLiteral("not found");
const QString kShort = QStringLiteral("slot 0,sub-model");

} // namespace

class TestPortInventory : public QObject
{
    Q_OBJECT

private slots:
    void listing_withoutBothHeaderWords_isNone_data();
    void listing_withoutBothHeaderWords_isNone();
    void listing_givesTheInventory_data();
    void listing_givesTheInventory();
    void knownAggregationSwitch_keepsTenGigabitPortsDown();
    void shortNames_areReadAsSubModelWhateverTheFamily();
    void overlongLine_holdsNoPort();
    void slotOfAnOverlongLine_isNotRead();
    void scan_hua3_excludesByItsOwnWord();
    void scan_patternWithoutGroup_takesTheWholeMatch();
    void scan_patternOfTwoParts_leavesTheRange();
    void span_ofPortsNumberedZero_isNotFound();
};

void TestPortInventory::listing_withoutBothHeaderWords_isNone_data()
{
    QTest::addColumn<QByteArray>("listing");
    QTest::newRow("no PHY") << QByteArray("Interface  Link\r\n") + rows("GE0/0/", 1, 4);
    QTest::newRow("no Interface") << QByteArray("PHY: Physical\r\n") + rows("GE0/0/", 1, 4);
    QTest::newRow("lower case") << QByteArray("interface phy\r\n") + rows("GE0/0/", 1, 4);
    QTest::newRow("empty") << QByteArray();
}

void TestPortInventory::listing_withoutBothHeaderWords_isNone()
{
    QFETCH(QByteArray, listing);
    QVERIFY(!readHuaweiPorts(reply::ReplyText(listing), huaweiNaming(), false));
}

void TestPortInventory::listing_givesTheInventory_data()
{
    QTest::addColumn<QByteArray>("listing");
    QTest::addColumn<QStringList>("expected");
    const QByteArray header = kHeader;
    const QString slot0 = QStringLiteral("slot 0");

    QTest::newRow("short naming, 24+4 ports") << header + rows("10GE0/0/", 1, 4) + rows("GE0/0/", 1, 24)
                                              << inventory(kShort, 1, names("GE0/0/", 1, 24), names("10GE0/0/", 1, 4),
                                                           QStringLiteral("1-24"), QStringLiteral("1-4"));
    QTest::newRow("long naming, 24+4 ports")
        << header + rows("GigabitEthernet0/0/", 1, 24) + rows("XGigabitEthernet0/0/", 1, 4)
        << inventory(slot0, 1, names("g0/0/", 1, 24), names("xg0/0/", 1, 4), QStringLiteral("1-24"),
                     QStringLiteral("1-4"));
    QTest::newRow("only 10GE and 40GE: an aggregation switch")
        << header + rows("10GE0/0/", 1, 24) + rows("40GE0/0/", 1, 6)
        << inventory(kShort, 1, names("10GE0/0/", 1, 24), QString(), QStringLiteral("1-24"), QStringLiteral("1-6"));
    QTest::newRow("only 10GE and 25GE and 100GE")
        << header + rows("10GE0/0/", 1, 8) + rows("25GE0/0/", 1, 6) + rows("100GE0/0/", 1, 2)
        << inventory(kShort, 1, names("10GE0/0/", 1, 8), QString(), QStringLiteral("1-8"), kNone);
    QTest::newRow("gigabit ports beside 40GE")
        << header + rows("40GE0/0/", 1, 2) + rows("GE0/0/", 1, 8)
        << inventory(kShort, 1, names("GE0/0/", 1, 8), QString(), QStringLiteral("1-8"), kNone);
    QTest::newRow("MultiGE") << header + rows("MultiGE0/0/", 1, 4)
                             << inventory(kShort, 1, names("GE0/0/", 1, 4), QString(), QStringLiteral("1-4"), kNone);
    QTest::newRow("a gigabit line that also holds 10GE")
        << header + "GE0/0/1  up  up  to 10GE\r\nGE0/0/2  up  up\r\n"
        << inventory(kShort, 1, QStringLiteral("GE0/0/2"), QString(), QStringLiteral("2-2"), kNone);
    QTest::newRow("a gigabit line that names a 10-gigabit port")
        << header + "GE0/0/1  up  up  to 10GE0/0/3\r\nGE0/0/2  up  up\r\n"
        << inventory(kShort, 1, QStringLiteral("GE0/0/2"), QStringLiteral("10GE0/0/3"), QStringLiteral("2-2"),
                     QStringLiteral("3-3"));
    QTest::newRow("long naming on a switch with faster ports only")
        << header + rows("XGigabitEthernet0/0/", 1, 4) + rows("40GE0/0/", 1, 2)
        << inventory(slot0, 1, names("xg0/0/", 1, 4), QString(), QStringLiteral("1-4"), QStringLiteral("1-2"));
    QTest::newRow("no port at all") << header + "NULL0   up   up(s)\r\nVlanif1   up   up\r\n"
                                    << inventory(slot0, 1, QString(), QString(), kNone, kNone);
    QTest::newRow("header only") << header << inventory(slot0, 1, QString(), QString(), kNone, kNone);
    QTest::newRow("two header lines") << header + header + rows("GE0/0/", 1, 1)
                                      << inventory(kShort, 2, QStringLiteral("GE0/0/1"), QString(),
                                                   QStringLiteral("1-1"), kNone);
    QTest::newRow("header words on two lines")
        << QByteArray("PHY: Physical\r\nInterface\r\n") + rows("GE0/0/", 1, 2)
        << inventory(kShort, 0, names("GE0/0/", 1, 2), QString(), QStringLiteral("1-2"), kNone);
    QTest::newRow("a port on the header line is no gigabit port but a 10-gigabit one")
        << QByteArray("Interface PHY GE0/0/9 10GE0/0/8\r\n") + rows("GE0/0/", 1, 2)
        << inventory(kShort, 1, names("GE0/0/", 1, 2), QStringLiteral("10GE0/0/8"), QStringLiteral("1-2"),
                     QStringLiteral("8-8"));
    QTest::newRow("slot 3") << header + rows("GE3/0/", 1, 2)
                            << inventory(QStringLiteral("slot 3,sub-model"), 1, names("GE3/0/", 1, 2), QString(),
                                         QStringLiteral("1-2"), kNone);
    QTest::newRow("first interface decides the slot")
        << header + rows("GigabitEthernet2/0/", 1, 1) + rows("GE5/0/", 1, 1)
        << inventory(QStringLiteral("slot 2"), 1, QStringLiteral("g2/0/1"), QString(), QStringLiteral("1-1"), kNone);
    QTest::newRow("a long name without a slot moves the walk on")
        << header + "GigabitEthernet  down\r\n" + rows("GE4/0/", 1, 1)
        << inventory(QStringLiteral("slot 4,sub-model"), 1, QStringLiteral("GE4/0/1"), QString(), QStringLiteral("1-1"),
                     kNone);
    QTest::newRow("a line with a long name is not tried for a short one")
        << header + "GigabitEthernet GE7/0/1\r\n" + rows("GigabitEthernet1/0/", 1, 1)
        << inventory(QStringLiteral("slot 1"), 1, QStringLiteral("g1/0/1"), QString(), QStringLiteral("1-1"), kNone);
    QTest::newRow("short words without a slot move the walk on")
        << header + "PAGE 1/2\r\nGE\r\n" + rows("GigabitEthernet1/0/", 1, 1)
        << inventory(QStringLiteral("slot 1"), 1, QStringLiteral("g1/0/1"), QString(), QStringLiteral("1-1"), kNone);
    QTest::newRow("several subslots fold into one range")
        << header + "GE0/0/7 up\r\nGE0/1/3 up\r\nGE1/0/20 up\r\n"
        << inventory(kShort, 1, QStringLiteral("GE0/0/7 GE0/1/3 GE1/0/20"), QString(), QStringLiteral("3-20"), kNone);
    QTest::newRow("ports of a group are indented")
        << header + "Eth-Trunk2  up\r\n  GigabitEthernet8/1/16  up\r\n  GigabitEthernet15/1/0(10G) up\r\n"
        << inventory(QStringLiteral("slot 8"), 1, QStringLiteral("g8/1/16 g15/1/0"), QString(), QStringLiteral("0-16"),
                     kNone);
    QTest::newRow("port number beyond 31 bits")
        << header + "GE0/0/5 up\r\nGE0/0/99999999999 up\r\n"
        << inventory(kShort, 1, QStringLiteral("GE0/0/5 GE0/0/99999999999"), QString(), QStringLiteral("0-5"), kNone);
    QTest::newRow("slot beyond 31 bits") << header + "GE99999999999/0/5 up\r\n"
                                         << inventory(kShort, 1, QStringLiteral("GE99999999999/0/5"), QString(),
                                                      QStringLiteral("5-5"), kNone);
    QTest::newRow("only a port numbered 0") << header + "GE0/0/0 up\r\n"
                                            << inventory(kShort, 1, QStringLiteral("GE0/0/0"), QString(), kNone, kNone);
    QTest::newRow("LF only: everything is one header line") << QByteArray("Interface PHY\nGE0/0/1 up\nGE0/0/2 up\n")
                                                            << inventory(kShort, 1, QString(), QString(), kNone, kNone);
}

void TestPortInventory::listing_givesTheInventory()
{
    QFETCH(QByteArray, listing);
    QFETCH(QStringList, expected);
    QCOMPARE(readPorts(listing, huaweiNaming()), expected);
}

void TestPortInventory::knownAggregationSwitch_keepsTenGigabitPortsDown()
{
    const QByteArray listing = kHeader + rows("GE0/0/", 1, 2) + rows("10GE0/0/", 1, 4);
    QCOMPARE(readPorts(listing, huaweiNaming(), true),
             inventory(kShort, 1, names("GE0/0/", 1, 2) + QLatin1Char(' ') + names("10GE0/0/", 1, 4), QString(),
                       QStringLiteral("1-4"), kNone));
}

void TestPortInventory::shortNames_areReadAsSubModelWhateverTheFamily()
{
    const QByteArray listing = kHeader + rows("GE0/0/", 1, 2) + rows("10GE0/0/", 1, 2);
    const QStringList expected = readPorts(listing, huaweiSubModelNaming());
    QCOMPARE(readPorts(listing, huaweiNaming()), expected);
    QCOMPARE(readPorts(listing, hua3Naming()), expected);
}

void TestPortInventory::overlongLine_holdsNoPort()
{
    const QByteArray fits = QByteArray("GE0/0/1").leftJustified(1024, '.') + "\r\n";
    const QByteArray tooLong = QByteArray("GE0/0/2").leftJustified(1025, '.') + "\r\n";
    const QByteArray tenGigabit = QByteArray("10GE0/0/3").leftJustified(1025, ' ') + "\r\n";
    QCOMPARE(readPorts(kHeader + fits + tooLong + tenGigabit, huaweiNaming()),
             inventory(kShort, 1, QStringLiteral("GE0/0/1"), QString(), QStringLiteral("1-1"), kNone));
    const QByteArray fortyGigabit = QByteArray("40GE0/0/3").leftJustified(1025, ' ') + "\r\n";
    QCOMPARE(readPorts(kHeader + fortyGigabit, huaweiNaming()),
             inventory(QStringLiteral("slot 0"), 1, QString(), QString(), kNone, kNone));
}

void TestPortInventory::slotOfAnOverlongLine_isNotRead()
{
    const QByteArray longName = QByteArray("GigabitEthernet6/0/1").leftJustified(1025, '.') + "\r\n";
    const QByteArray shortName = QByteArray("GE6/0/1").leftJustified(1025, '.') + "\r\n";
    QCOMPARE(readPorts(kHeader + longName + shortName + rows("GigabitEthernet1/0/", 1, 1), huaweiNaming()),
             inventory(QStringLiteral("slot 1"), 1, QStringLiteral("g1/0/1"), QString(), QStringLiteral("1-1"), kNone));
}

void TestPortInventory::scan_hua3_excludesByItsOwnWord()
{
    const QByteArray listing =
        "Interface Link Speed\r\n" + rows("GE1/0/", 1, 24) + rows("XGE1/0/", 25, 28) + rows("40GE1/0/", 29, 30);
    const reply::ReplyText text(listing);
    QCOMPARE(describe(scanPorts(text, hua3Naming(), QStringLiteral("XG"), false)),
             inventory(QStringLiteral("slot 0"), 0, names("g1/0/", 1, 24), names("t1/0/", 25, 28),
                       QStringLiteral("1-24"), QStringLiteral("25-28")));
    const reply::ReplyText excluded("Interface Link Speed\r\nGE1/0/1 XG\r\nGE1/0/2 XG\r\n");
    QCOMPARE(describe(scanPorts(excluded, hua3Naming(), QStringLiteral("XG"), false)),
             inventory(QStringLiteral("slot 0"), 0, QString(), QString(), kNone, kNone));
}

void TestPortInventory::scan_patternWithoutGroup_takesTheWholeMatch()
{
    InterfaceNamingProfile naming = huaweiNaming();
    naming.downPortPattern = QStringLiteral("Ge\\d+/\\d+/\\d+");
    const reply::ReplyText text("Ge0/0/3 up\r\nGe0/0/5 up\r\n");
    QCOMPARE(describe(scanPorts(text, naming, QStringLiteral("XG"), false)),
             inventory(QStringLiteral("slot 0"), 0, QStringLiteral("gGe0/0/3 gGe0/0/5"), QString(),
                       QStringLiteral("3-5"), kNone));
}

void TestPortInventory::scan_patternOfTwoParts_leavesTheRange()
{
    InterfaceNamingProfile naming = huaweiNaming();
    naming.downPortPattern = QStringLiteral("Ge(\\d+/\\d+)");
    const reply::ReplyText text("Ge0/3 up\r\n");
    QCOMPARE(describe(scanPorts(text, naming, QStringLiteral("XG"), false)),
             inventory(QStringLiteral("slot 0"), 0, QStringLiteral("g0/3"), QString(), kNone, kNone));
}

void TestPortInventory::span_ofPortsNumberedZero_isNotFound()
{
    reply::PortSpan span;
    QVERIFY(!span.isFound());
    span.include(0);
    QVERIFY(!span.isFound());
    span.include(3);
    QVERIFY(span.isFound());
    QCOMPARE(span.minimum, 0);
    QCOMPARE(span.maximum, 3);
}

QTEST_APPLESS_MAIN(TestPortInventory)
#include "tst_portinventory.moc"
