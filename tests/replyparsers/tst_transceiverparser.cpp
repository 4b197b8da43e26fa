#include "replydescription.h"

#include <QtTest/QtTest>

namespace {

QStringList readModules(const QByteArray &listing, const InterfaceNamingProfile &naming)
{
    const reply::ReplyText text(listing);
    return describe(readTransceivers(text, naming));
}

QByteArray block(const char *port, const char *type)
{
    return QByteArray(port) + " transceiver information:\r\n"
           + "-------------------------------------------------------------\r\n" + "Common information:\r\n"
           + "  Transceiver Type               :" + type + "\r\n" + "  Connector Type                 :LC\r\n"
           + "  Wavelength(nm)                 :850\r\n" + "  Vendor Name                    :HG GENUINE\r\n";
}

QString details(const char *type)
{
    return QStringLiteral("Transceiver Type               :%1|Connector Type                 :LC|"
                          "Wavelength(nm)                 :850|")
        .arg(QLatin1String(type));
}

} // namespace

class TestTransceiverParser : public QObject
{
    Q_OBJECT

private slots:
    void listing_givesItsNotes_data();
    void listing_givesItsNotes();
    void longNames_areReadWithTheLongNaming();
    void text_withoutPort_isTheDetailsAlone();
};

void TestTransceiverParser::listing_givesItsNotes_data()
{
    QTest::addColumn<QByteArray>("listing");
    QTest::addColumn<QStringList>("expected");
    const QString sx = details("1000_BASE_SX_SFP");
    const QString sr = details("10GBASE_SR");

    QTest::newRow("empty") << QByteArray() << QStringList();
    QTest::newRow("one port: its block is the result")
        << block("GE0/0/3", "1000_BASE_SX_SFP") << QStringList{QStringLiteral("result block GE0/0/3:") + sx};
    QTest::newRow("two ports: the first block is logged, the second is the result")
        << block("GE0/0/3", "1000_BASE_SX_SFP") + block("GE0/0/4", "10GBASE_SR")
        << QStringList{QStringLiteral("log block GE0/0/3:") + sx, QStringLiteral("result block GE0/0/4:") + sr};
    QTest::newRow("10GE wins over the GE in it")
        << block("10GE0/0/1", "10GBASE_SR") << QStringList{QStringLiteral("result block 10GE0/0/1:") + sr};
    QTest::newRow("40GE is read as the GE in it")
        << block("40GE0/0/1", "10GBASE_SR") << QStringList{QStringLiteral("result block GE0/0/1:") + sr};
    QTest::newRow("absent") << QByteArray("GE0/0/3 transceiver is absent\r\n")
                            << QStringList{QStringLiteral("log absent GE0/0/3:")};
    QTest::newRow("absent, as switches write it") << QByteArray("Info: Port GE0/0/3, transceiver is absent.\r\n")
                                                  << QStringList{QStringLiteral("log absent GE0/0/3:")};
    QTest::newRow("absent 10GE is named by the GE in it")
        << QByteArray("10GE0/0/3 transceiver is absent\r\n") << QStringList{QStringLiteral("log absent GE0/0/3:")};
    QTest::newRow("absent without a port") << QByteArray("Error: The transceiver is absent.\r\n") << QStringList();
    QTest::newRow("absent ends the block, which stays the result")
        << block("GE0/0/3", "1000_BASE_SX_SFP")
               + "Info: Port GE0/0/4, transceiver is absent.\r\n  Wavelength(nm) :1310\r\n"
        << QStringList{QStringLiteral("log absent GE0/0/4:"), QStringLiteral("result block GE0/0/3:") + sx};
    QTest::newRow("absent without a port ends the block too")
        << block("GE0/0/3", "1000_BASE_SX_SFP") + "Error: The transceiver is absent.\r\n  Wavelength(nm) :1310\r\n"
        << QStringList{QStringLiteral("result block GE0/0/3:") + sx};
    QTest::newRow("a header alone is logged when the next comes, and is no result")
        << QByteArray("GE0/0/1 transceiver information:\r\nGE0/0/2 transceiver information:\r\n")
        << QStringList{QStringLiteral("log block GE0/0/1:")};
    QTest::newRow("header without a known port flushes and goes on without a name")
        << block("GE0/0/3", "1000_BASE_SX_SFP") + block("Ethernet1", "10GBASE_SR")
        << QStringList{QStringLiteral("log block GE0/0/3:") + sx, QStringLiteral("result block ") + sr};
    QTest::newRow("header without a known port at the beginning opens no block")
        << block("Ethernet1", "10GBASE_SR") << QStringList();
    QTest::newRow("details before any header") << QByteArray("Transceiver Type : x\r\n") << QStringList();
    QTest::newRow("header without the colon")
        << QByteArray("GE0/0/1 transceiver information\r\nWavelength : 1\r\n") << QStringList();
    QTest::newRow("header and absent on one line: the header counts")
        << QByteArray("GE0/0/1 transceiver information: transceiver is absent\r\nWavelength : 1\r\n")
        << QStringList{QStringLiteral("result block GE0/0/1:Wavelength : 1|")};
    QTest::newRow("lower-case keys are dropped")
        << QByteArray("GE0/0/1 transceiver information:\r\ntransceiver type : x\r\nConnector Type : LC\r\n")
        << QStringList{QStringLiteral("result block GE0/0/1:Connector Type : LC|")};
    QTest::newRow("overlong header names no port")
        << QByteArray("GE0/0/1 transceiver information:").rightJustified(1025, ' ') + "\r\nWavelength : 1\r\n"
        << QStringList();
    QTest::newRow("overlong absent line names no port")
        << QByteArray("GE0/0/1 transceiver is absent").leftJustified(1025, '.') + "\r\n"
        << QStringList();
}

void TestTransceiverParser::listing_givesItsNotes()
{
    QFETCH(QByteArray, listing);
    QFETCH(QStringList, expected);
    QCOMPARE(readModules(listing, huaweiSubModelNaming()), expected);
}

void TestTransceiverParser::longNames_areReadWithTheLongNaming()
{
    const QByteArray listing = block("GigabitEthernet0/0/25", "1000_BASE_LX_SFP")
                               + block("XGigabitEthernet0/0/1", "10GBASE_SR")
                               + "Info: Port GigabitEthernet0/0/26, transceiver is absent.\r\n";
    const QStringList expected{QStringLiteral("log block GigabitEthernet0/0/25:") + details("1000_BASE_LX_SFP"),
                               QStringLiteral("log absent GigabitEthernet0/0/26:"),
                               QStringLiteral("result block XGigabitEthernet0/0/1:") + details("10GBASE_SR")};
    QCOMPARE(readModules(listing, huaweiNaming()), expected);
}

void TestTransceiverParser::text_withoutPort_isTheDetailsAlone()
{
    reply::TransceiverNote note;
    QVERIFY(note.isEmpty());
    note.details = QStringLiteral("Wavelength : 1\n");
    QVERIFY(!note.isEmpty());
    QCOMPARE(note.text(QStringLiteral("光模块信息:")), QStringLiteral("Wavelength : 1\n"));
    const QString port = QStringLiteral("GE0/0/1");
    note.port = port;
    QCOMPARE(note.text(QStringLiteral("光模块信息:")), QStringLiteral("GE0/0/1光模块信息:Wavelength : 1\n"));
}

QTEST_APPLESS_MAIN(TestTransceiverParser)
#include "tst_transceiverparser.moc"
