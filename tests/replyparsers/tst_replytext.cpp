#include "replytext.h"

#include <QtCore/QStringList>
#include <QtTest/QtTest>

#include <random>

using reply::Keyword;
using reply::KeywordSet;
using reply::ReplyText;

namespace {

struct KeywordRow
{
    Keyword word;
    const char *text;
};

const KeywordRow kKeywords[] = {
    {Keyword::AggregateInterface, "Aggregate Interface"},
    {Keyword::AuthenticationFail, "Authentication fail"},
    {Keyword::AuthenticationFailed, "authentication failed"},
    {Keyword::BoardType, "Board Type"},
    {Keyword::CommandError, "command found at '^' position"},
    {Keyword::ConfirmPassword, "confirm password:"},
    {Keyword::ConflictType, "Conflict type"},
    {Keyword::ConnectorType, "Connector Type"},
    {Keyword::Description, "Description"},
    {Keyword::Duplex, "Duplex"},
    {Keyword::EchoCurrentConfiguration, "display current-configuration"},
    {Keyword::EchoIgmpConfiguration, "dis igmp-snooping configuration"},
    {Keyword::EchoPoePower, "display poe power"},
    {Keyword::EchoPortMirroring, "display port-mirroring"},
    {Keyword::EchoThis, "display this"},
    {Keyword::EnterPassword, "Enter password:"},
    {Keyword::FailedToLogin, "Failed to login"},
    {Keyword::Flag, "Flag"},
    {Keyword::Ge, "GE"},
    {Keyword::GeCopper, "GE(C)"},
    {Keyword::GigabitEthernet, "GigabitEthernet"},
    {Keyword::Greater, ">"},
    {Keyword::Hash, "#"},
    {Keyword::IgmpConfiguration, "igmp-snooping configuration"},
    {Keyword::IgmpSnooping, "IGMP snooping"},
    {Keyword::Index, "Index"},
    {Keyword::Interface, "Interface"},
    {Keyword::InUsage, "InUsage"},
    {Keyword::InvalidPassword, "Invalid password"},
    {Keyword::Less, "<"},
    {Keyword::Link, "Link"},
    {Keyword::Login, "Login"},
    {Keyword::MirroringGroup, "Mirroring group"},
    {Keyword::MirroringPort, "Mirroring port:"},
    {Keyword::MulticastForwarding, "multicast forwarding-table"},
    {Keyword::NoIgmpConfiguration, "There is no igmp-snooping configuration"},
    {Keyword::OperKey, "Oper-Key"},
    {Keyword::Optic, "Optic"},
    {Keyword::PageMarker, "---- More ----"},
    {Keyword::Password, "Password:"},
    {Keyword::PasswordIsInvalid, "The password is invalid"},
    {Keyword::Phy, "PHY"},
    {Keyword::PleaseEnableIgmp, "Please enable IGMP snooping in the global view first"},
    {Keyword::Poe, "PoE"},
    {Keyword::Port, "Port"},
    {Keyword::Priority, "Priority"},
    {Keyword::Querier, "Querier"},
    {Keyword::Reboot, "reboot"},
    {Keyword::Return, "return"},
    {Keyword::RightBracket, "]"},
    {Keyword::Slash, "/"},
    {Keyword::Speed, "Speed"},
    {Keyword::Status, "Status"},
    {Keyword::StatusField, "Status:"},
    {Keyword::TotalVlans, "Total VLANs"},
    {Keyword::TransceiverAbsent, "transceiver is absent"},
    {Keyword::TransceiverHeader, "transceiver information:"},
    {Keyword::TransceiverInformation, "transceiver information"},
    {Keyword::TransceiverType, "Transceiver Type"},
    {Keyword::Type, "Type"},
    {Keyword::TypeField, "Type:"},
    {Keyword::UndoNegotiation, "undo negotiation auto"},
    {Keyword::UnrecognizedCommand, "Unrecognized command found"},
    {Keyword::Username, "Username:"},
    {Keyword::VlanCount, "number of VLANs"},
    {Keyword::VlansInclude, "The VLANs include"},
    {Keyword::Wavelength, "Wavelength"},
};

//! The keywords in \a text, looked for one by one.
KeywordSet wordsIn(const QString &text)
{
    KeywordSet words;
    for (const KeywordRow &row : kKeywords)
        words.set(static_cast<std::size_t>(row.word), text.contains(QLatin1String(row.text)));
    return words;
}

QString namesOf(const KeywordSet &words)
{
    QStringList names;
    for (const KeywordRow &row : kKeywords) {
        if (words[static_cast<std::size_t>(row.word)])
            names.append(QLatin1String(row.text));
    }
    return names.join(QLatin1String(" | "));
}

QStringList lineTexts(const ReplyText &reply)
{
    QStringList texts;
    for (const reply::ReplyLine &line : reply.lines())
        texts.append(line.text.toString());
    return texts;
}

//! Text in which keywords stand whole, cut off, doubled and run together.
QString keywordSoup(std::mt19937 &random)
{
    QString text;
    for (int i = 0; i < 40; ++i) {
        const QString word = QString::fromLatin1(kKeywords[random() % std::size(kKeywords)].text);
        const int length = word.size();
        const int cut = static_cast<int>(random() % static_cast<unsigned>(length + 1));
        const unsigned kind = random() % 8;
        text += kind < 3 ? word : kind == 3 ? word.left(cut) : kind == 4 ? word.mid(cut) : QString();
        text += kind == 5 ? QStringLiteral("\r\n") : kind == 6 ? QStringLiteral("端") : QString();
    }
    return text;
}

} // namespace

class TestReplyText : public QObject
{
    Q_OBJECT

private slots:
    void lines_areSplitAtCrLfOnly_data();
    void lines_areSplitAtCrLfOnly();
    void bytes_areDecodedAsUtf8_data();
    void bytes_areDecodedAsUtf8();
    void everyKeyword_isFoundAndOnlyTheOnesInIt_data();
    void everyKeyword_isFoundAndOnlyTheOnesInIt();
    void keywordSoup_isReadAsWordByWordSearchReadsIt();
    void keyword_acrossALineEnd_isNotFound();
    void lineFinder_findsWhatContainsFinds_data();
    void lineFinder_findsWhatContainsFinds();
};

void TestReplyText::lines_areSplitAtCrLfOnly_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("one line") << QByteArray("<Switch>");
    QTest::newRow("CR LF") << QByteArray("a\r\n\r\nb\r\n");
    QTest::newRow("only line ends") << QByteArray("\r\n\r\n\r\n");
    QTest::newRow("LF only") << QByteArray("a\nb\n");
    QTest::newRow("CR only") << QByteArray("a\rb\r");
    QTest::newRow("CR CR LF") << QByteArray("a\r\r\nb");
    QTest::newRow("LF CR") << QByteArray("a\n\rb\n\r\nc");
    QTest::newRow("ends in CR") << QByteArray("a\r\nb\r");
}

void TestReplyText::lines_areSplitAtCrLfOnly()
{
    QFETCH(QByteArray, bytes);
    QCOMPARE(lineTexts(ReplyText(bytes)), QString::fromUtf8(bytes).split(QStringLiteral("\r\n")));
}

void TestReplyText::bytes_areDecodedAsUtf8_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::newRow("Chinese") << QByteArray("\xe7\xab\xaf\xe5\x8f\xa3") << QStringLiteral("端口");
    QTest::newRow("cut character") << QByteArray("a\xe7\xab") << QStringLiteral("a") + QString(2, QChar(0xFFFD));
    QTest::newRow("noise") << QByteArray("\xff\xfe") << QString(2, QChar(0xFFFD));
    QTest::newRow("NUL") << QByteArray("a\0b", 3) << QStringLiteral("a") + QChar(0) + QStringLiteral("b");
    QTest::newRow("beyond the first plane") << QByteArray("\xf0\x9f\x98\x80") << QString::fromUcs4(U"\U0001F600");
}

void TestReplyText::bytes_areDecodedAsUtf8()
{
    QFETCH(QByteArray, bytes);
    QTEST(ReplyText(bytes).text().toString(), "text");
}

void TestReplyText::everyKeyword_isFoundAndOnlyTheOnesInIt_data()
{
    QTest::addColumn<QString>("text");
    for (const KeywordRow &row : kKeywords)
        QTest::newRow(row.text) << QString::fromLatin1(row.text);
}

void TestReplyText::everyKeyword_isFoundAndOnlyTheOnesInIt()
{
    QFETCH(QString, text);
    const QStringList variants{text,           QStringLiteral("ab ") + text + QStringLiteral(" cd"),
                               text.mid(1),    text.chopped(1),
                               text.toUpper(), text.left(1) + text};
    for (const QString &variant : variants) {
        const ReplyText reply(variant.toUtf8());
        QCOMPARE(namesOf(reply.lines().front().words), namesOf(wordsIn(variant)));
        for (const KeywordRow &row : kKeywords)
            QCOMPARE(reply.has(row.word), variant.contains(QLatin1String(row.text)));
    }
}

void TestReplyText::keywordSoup_isReadAsWordByWordSearchReadsIt()
{
    std::mt19937 random(7);
    for (int i = 0; i < 2000; ++i) {
        const ReplyText reply(keywordSoup(random).toUtf8());
        for (const reply::ReplyLine &line : reply.lines())
            QCOMPARE(namesOf(line.words), namesOf(wordsIn(line.text.toString())));
        for (const KeywordRow &row : kKeywords)
            QCOMPARE(reply.has(row.word), reply.text().contains(QLatin1String(row.text)));
    }
}

void TestReplyText::keyword_acrossALineEnd_isNotFound()
{
    const ReplyText reply("Inter\r\nface");
    QVERIFY(!reply.has(Keyword::Interface));
}

void TestReplyText::lineFinder_findsWhatContainsFinds_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("keyword") << QStringLiteral("Inbound");
    QTest::newRow("empty") << QString();
    QTest::newRow("one character") << QStringLiteral("d");
    QTest::newRow("nowhere") << QStringLiteral("Outbound");
    QTest::newRow("across a line end") << QStringLiteral("d\r\nI");
}

void TestReplyText::lineFinder_findsWhatContainsFinds()
{
    QFETCH(QString, text);
    const ReplyText reply("x Inbound\r\nInbound\r\n\r\nInboun\r\nd Inbound Inbound\r\nInbou\r\nInbound");
    for (std::size_t step = 1; step <= 3; ++step) {
        reply::LineFinder finder(reply, text);
        for (std::size_t i = 0; i < reply.lines().size(); i += step) {
            const reply::ReplyLine &line = reply.lines()[i];
            QCOMPARE(finder.isIn(line), line.text.toString().contains(text));
        }
    }
}

QTEST_APPLESS_MAIN(TestReplyText)
#include "tst_replytext.moc"
