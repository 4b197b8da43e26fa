#include "consolescreen.h"
#include "generaldescription.h"
#include "loglines.h"
#include "transcriptplayer.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

using namespace ovra::bll;
using std::chrono::milliseconds;

namespace {

const QString kHuawei = QStringLiteral("Huawei.xml");
const QString kHua3 = QStringLiteral("Hua3.xml");

// Folder of recorded dialogues, for those who have some. What the tests themselves need is in here.
const QString kTranscripts = QString::fromLocal8Bit(qgetenv("SWITCHPANEL_TRANSCRIPTS"));

const QByteArray kErase = QByteArrayLiteral("\x1b[16D                \x1b[16D");
const QByteArray kWideErase = "\x1b[42D" + QByteArray(42, ' ') + "\x1b[42D";

struct Transcript
{
    QByteArray tag;
    QString file;
    QByteArray bytes;
};

QByteArray listing(const QByteArray &erase)
{
    QByteArray text = "display interface brief\r\nPHY: Physical\r\n*down: administratively down\r\n"
                      "Interface                   PHY   Protocol  InUti OutUti   inErrors  outErrors\r\n";
    for (int port = 1; port <= 12; ++port) {
        text += "GigabitEthernet0/0/" + QByteArray::number(port) + "        up    up        0.01%  0.01%\r\n";
        if (port % 5 == 0)
            text += "  ---- More ----" + erase;
    }
    return text;
}

QList<Transcript> ownTranscripts()
{
    const QByteArray welcome = "\r\n\r\nInfo: The max number of VTY users is 15, the number of current VTY users "
                               "online is 0.\r\n      The current login time is 2026-11-20 10:11:12+00:00.\r\n";
    return {
        {"login at the first try", kHuawei,
         "\r\n\r\nLogin authentication\r\n\r\n\r\nUsername:a user name, or a password\r\nPassword:" + welcome
             + "<lab-1>screen-length 0 temporary\r\nInfo: The configuration takes effect on the current user terminal "
               "interface only.\r\n<lab-1>display clock\r\n2026-11-20 10:11:12\r\nFriday\r\n<lab-1>"},
        {"login at the second try", kHuawei,
         "\r\n\r\nUsername:a user name, or a password\r\nPassword:\r\nAuthentication fail" + QByteArray(1, '\0')
             + "\r\n\r\nUsername:a user name, or a password\r\nPassword:" + welcome
             + "<lab-1>display clock\r\nFriday\r\n<lab-1>"},
        {"question at the login", kHuawei,
         "\r\nPassword:\r\nWarning: The initial password poses security risks.\r\nThe password needs to be changed. "
         "Change now? [Y/N]:N\r\n"
             + welcome + "<lab-1>display clock\r\nFriday\r\n<lab-1>"},
        {"pages", kHuawei, "\r\n<lab-1>" + listing(kErase) + "<lab-1>display clock\r\nFriday\r\n<lab-1>"},
        {"pages, older release", kHuawei, "\r\n<lab-1>" + listing(kWideErase) + "<lab-1>"},
        {"long line and a question", kHuawei,
         "\r\n<lab-1>port split dimension interface 100GE1/0/2 100GE1/0/4 100GE1/0/6 100GE1/0/8 \x1b[1D 100GE1/0/10 "
         "100GE1/0/12\r\nWarning: The ports will be deleted. Continue? [Y/N]:N\r\n<lab-1>"},
        {"question without any echo", kHuawei, "\r\n<lab-1>reset counters\r\nContinue? [Y/N]:<lab-1>"},
        {"brackets in a listing", kHuawei,
         "\r\n<lab-1>display current-configuration\r\n[V200R009C00SPC500]\r\n#\r\n description <C4> work\r\n<C4>\r\n"
         "[lab]\r\n#\r\nreturn\r\n<lab-1>display clock\r\nFriday\r\n<lab-1>"},
        {"other alphabet, NULs, bells", kHua3,
         "\r\nlogin: a user name, or a password\r\nPassword:\r\n****\r\n" + QByteArray("\0<lab-1>\a", 9)
             + "display clock\r\r\n" + QByteArray("\xb9\xa4\xd7\xf7\0\xff\r\r\n", 9) + QByteArray("\0<lab-1>\a", 9)},
    };
}

QList<Transcript> recordedTranscripts()
{
    QList<Transcript> found;
    if (kTranscripts.isEmpty())
        return found;
    for (const QFileInfo &info : QDir(kTranscripts).entryInfoList({QStringLiteral("*.raw.txt")})) {
        QFile file(info.filePath());
        if (!file.open(QIODevice::ReadOnly))
            qFatal("%s", qPrintable(file.errorString()));
        found << Transcript{info.fileName().toLocal8Bit(), kHuawei, file.readAll()};
    }
    return found;
}

void addTranscripts()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("bytes");
    for (const Transcript &transcript : ownTranscripts() + recordedTranscripts())
        QTest::newRow(transcript.tag.constData()) << transcript.file << transcript.bytes;
}

QByteArrayList replies(const QString &file, const QByteArray &transcript, const Pieces &pieces = {})
{
    return TranscriptPlayer(shippedDescription(file), transcript, pieces).play();
}

// The part behind the login as it has to be handed up.
QByteArray cleaned(const QByteArray &transcript)
{
    QString text = QString::fromLatin1(transcript.constData(), transcript.size());
    text.remove(QChar(0));
    text.remove(QRegularExpression(QStringLiteral("  ---- More ----\x1b\\[(\\d+)D *\x1b\\[\\1D")));
    text.remove(QLatin1String(" \x1b[1D"));
    text.replace(QLatin1String("\r\r\n"), QLatin1String("\r\n"));
    static const QRegularExpression firstPrompt(QStringLiteral("(?:^|\\n)<[^<> ]+>\a?"));
    const QRegularExpressionMatch match = firstPrompt.match(text);
    return text.mid(match.capturedEnd()).toLatin1();
}

// What a screen makes of the bytes, one by one.
QByteArray shown(const QByteArray &bytes)
{
    const auto description = generalDescription();
    ConsoleScreen screen;
    screen.setFacts(&description->session);
    for (const char byte : bytes)
        screen.take(byte);
    return screen.segment();
}

QByteArrayList casesOf(const QString &name)
{
    QFile file(kTranscripts + QStringLiteral("/byte_cases.json"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArrayList found;
    const QJsonArray values = QJsonDocument::fromJson(file.readAll()).object().value(name).toArray();
    for (const auto &value : values)
        found << value.toString().toUtf8();
    return found;
}

QByteArray lastLine(const QByteArray &bytes)
{
    return bytes.mid(bytes.lastIndexOf('\n') + 1);
}

} // namespace

// Bytes: what is cleaned, and that it makes no difference in which pieces they come.
class TestConsoleSessionBytes : public QObject
{
    Q_OBJECT

private slots:
    void transcript_isHandedUpCleaned_data();
    void transcript_isHandedUpCleaned();
    void transcript_everySplitInTwo_isTheSame_data();
    void transcript_everySplitInTwo_isTheSame();
    void transcript_byteByByte_isTheSame_data();
    void transcript_byteByByte_isTheSame();
    void transcript_randomPieces_areTheSame_data();
    void transcript_randomPieces_areTheSame();
    void screen_cleansBytes_data();
    void screen_cleansBytes();
    void lineEnding_isRecognised_data();
    void lineEnding_isRecognised();
    void logLine_isRecognised_data();
    void logLine_isRecognised();
    void logLine_wrapped_isDroppedWhole();
};

void TestConsoleSessionBytes::transcript_isHandedUpCleaned_data()
{
    addTranscripts();
}

void TestConsoleSessionBytes::transcript_isHandedUpCleaned()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, bytes);
    TranscriptPlayer player(shippedDescription(file), bytes);
    const QByteArrayList handedUp = player.play();
    QByteArray behindLogin;
    bool isLoggedIn = false;
    for (const QByteArray &reply : handedUp) {
        if (isLoggedIn)
            behindLogin += reply;
        const QByteArray end = lastLine(reply);
        isLoggedIn = isLoggedIn || (end.startsWith('<') && (end.endsWith('>') || end.endsWith(">\a")));
    }
    QVERIFY2(isLoggedIn, handedUp.join("\n----\n").constData());
    QCOMPARE(behindLogin, cleaned(bytes));
    QVERIFY2(player.bench().session.isLoggedIn(), handedUp.join("\n----\n").constData());
}

void TestConsoleSessionBytes::transcript_everySplitInTwo_isTheSame_data()
{
    addTranscripts();
}

void TestConsoleSessionBytes::transcript_everySplitInTwo_isTheSame()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, bytes);
    const QByteArrayList whole = replies(file, bytes);
    for (int at = 1; at < bytes.size(); ++at) {
        for (const int gapMs : {0, 24}) {
            const QByteArrayList split = replies(file, bytes, {{at}, milliseconds(gapMs)});
            QVERIFY2(split == whole, (QByteArray::number(at) + '\n' + split.join("\n----\n")).constData());
        }
    }
}

void TestConsoleSessionBytes::transcript_byteByByte_isTheSame_data()
{
    addTranscripts();
}

void TestConsoleSessionBytes::transcript_byteByByte_isTheSame()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, bytes);
    const QByteArrayList whole = replies(file, bytes);
    for (const int gapMs : {0, 1, 24}) {
        Pieces pieces = Pieces::random(1, bytes.size(), 1);
        pieces.gap = milliseconds(gapMs);
        QCOMPARE(replies(file, bytes, pieces), whole);
    }
}

void TestConsoleSessionBytes::transcript_randomPieces_areTheSame_data()
{
    addTranscripts();
}

void TestConsoleSessionBytes::transcript_randomPieces_areTheSame()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, bytes);
    const QByteArrayList whole = replies(file, bytes);
    for (int seed = 0; seed < 200; ++seed) {
        const Pieces pieces = Pieces::random(static_cast<quint32>(seed), bytes.size(), 1 + seed % 40);
        const QByteArrayList split = replies(file, bytes, pieces);
        QVERIFY2(split == whole, ("seed " + QByteArray::number(seed) + '\n' + split.join("\n----\n")).constData());
    }
}

void TestConsoleSessionBytes::screen_cleansBytes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("text");
    const auto same = [](const char *tag, const QByteArray &bytes) { QTest::newRow(tag) << bytes << bytes; };
    QTest::newRow("NUL") << QByteArray("a\0b\0", 4) << QByteArray("ab");
    QTest::newRow("redraw mark") << QByteArray("dis \x1b[1Dplay") << QByteArray("display");
    QTest::newRow("redraw mark with a NUL") << QByteArray("dis \x1b\0[1Dplay", 13) << QByteArray("display");
    same("cursor moves farther", "dis \x1b[2Dplay");
    same("no blank before it", "dis\x1b[1Dplay");
    same("escape alone", "\x1b");
    QTest::newRow("CR CR LF") << QByteArray("a\r\r\nb") << QByteArray("a\r\nb");
    QTest::newRow("CR NUL CR LF") << QByteArray("a\r\0\r\nb", 6) << QByteArray("a\r\nb");
    same("CR in a line", "a\rb\r\r");
    same("LF alone", "a\nb");
    QTest::newRow("pager that was answered") << "1\r\n  ---- More ----" + kErase + "2\r\n" << QByteArray("1\r\n2\r\n");
    QTest::newRow("two of them") << "1\r\n  ---- More ----" + kErase + "  ---- More ----" + kWideErase + "2"
                                 << QByteArray("1\r\n2");
    same("pager that waits", "1\r\n  ---- More ----");
    same("pager and a line end", "1\r\n  ---- More ----\r\n2");
    same("erasure without a pager", kErase + "2");
    same("half an erasure", "  ---- More ----\x1b[16D    x");
    same("not UTF-8", "\xff\xfe\xb9\xa4");
    same("backspaces", "3\b2\b1\b0");
}

void TestConsoleSessionBytes::screen_cleansBytes()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, text);
    QCOMPARE(shown(bytes), text);
}

void TestConsoleSessionBytes::lineEnding_isRecognised_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("kind");
    const auto add = [](const QByteArrayList &lines, LineEnding::Kind kind) {
        for (const QByteArray &line : lines)
            QTest::newRow(line.constData()) << line << static_cast<int>(kind);
    };
    add({"<core-1.lab>", "[~host]", "[*host-a]", "[~host-1-100GE11/0/25]", "[*host-100GE1/1/1:1]",
         "[host-100GE3/3/3.111]", "<21.a.b.c-1.k1>", "<a/b>", "<a:b>", "<a@b(c)_d>", "HRP_A<fw>", "(M)[fw]",
         "<\xe4\xba\xa4>"},
        LineEnding::Kind::Prompt);
    add({"password cipher ..cut..:SL<->", "<>", "[]", "<a b>", "x<a>", "<a>x", "[~~a]", "", " ", "<a", "a>",
         "description [a]", "#", "<" + QByteArray(200, 'a') + ">"},
        LineEnding::Kind::None);
    add({"Continue? [Y/N]:", "sure ?[Y/N]", "[Y/N]", "[y/n]:"}, LineEnding::Kind::Question);
    add({"  ---- More ----", "---- More ----", "  ---- More ---- "}, LineEnding::Kind::Pager);
    add({"Username:", "username: ", "LOGIN:", "lab login:"}, LineEnding::Kind::UserName);
    add({"Password:", "password: ", "Enter Password:", "Confirm Password:"}, LineEnding::Kind::Password);
    for (const QByteArray &one : casesOf(QStringLiteral("TestHuaweiPrompt")))
        add({lastLine(one)}, LineEnding::Kind::Prompt);
    for (const QByteArray &one : casesOf(QStringLiteral("TestHuaweiNotPrompt")))
        add({lastLine(one)}, LineEnding::Kind::None);
    for (const char *name : {"TestHuaweiQuestion", "TestHuaweiPasswordChangeCallback"}) {
        for (const QByteArray &one : casesOf(QString::fromLatin1(name)))
            add({lastLine(one)}, LineEnding::Kind::Question);
    }
}

void TestConsoleSessionBytes::lineEnding_isRecognised()
{
    QFETCH(QByteArray, line);
    QFETCH(int, kind);
    QCOMPARE(static_cast<int>(endingOf(shippedDescription(kHuawei)->session, line, {}).kind), kind);
    QCOMPARE(static_cast<int>(endingOf(generalDescription()->session, line, {}).kind), kind);
}

void TestConsoleSessionBytes::logLine_isRecognised_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("isLogLine");
    for (const char *line : {"Nov 20 2026 10:11:12+00:00 NAME %%01IFPDT/4/IF_STATE(l)[3]:Interface",
                             "Nov  2 2026 10:11:12 NAME L2IFPPI/4/MFLPVLANALARM:OID 1.3.6",
                             "%Nov 20 10:11:12:345 2026 NAME IFNET/3/PHY_UPDOWN: Physical state",
                             "#Nov 20 10:11:12:345 2026 NAME IFNET/3/PHY_UPDOWN: Physical state",
                             "<NAME>Nov 20 2026 10:11:12+00:00 NAME %%01CFM/4/SAVE_FILE(l)[1]:",
                             "[NAME-vlan20]%Nov 20 10:11:12:345 2026 NAME x"})
        QTest::newRow(line) << QByteArray(line) << true;
    for (const char *line : {"November", "Nov", "", "<NAME>", "<NAME", "Info: The max number of VTY users is 8",
                             "Nov x", "      The current login time is Nov 20", "Password:"})
        QTest::newRow(line) << QByteArray(line) << false;
}

void TestConsoleSessionBytes::logLine_isRecognised()
{
    QFETCH(QByteArray, line);
    QFETCH(bool, isLogLine);
    QCOMPARE(LogLineFinder().isLogLine(line), isLogLine);
    QCOMPARE(LogLineFinder().isLogLine(line + "\r\n"), isLogLine);
}

void TestConsoleSessionBytes::logLine_wrapped_isDroppedWhole()
{
    const QByteArray first = QByteArray("Nov 20 2026 10:11:12 NAME %%01X/4/Y(l)[3]:").leftJustified(80, 'a') + "\r\n";
    const QByteArray second = QByteArray(80, 'b') + "\r\n";
    QCOMPARE(withoutLogLines("1\r\n" + first + second + "ccc\r\n2\r\n<NAME>"), QByteArray("1\r\n2\r\n<NAME>"));
}

QTEST_GUILESS_MAIN(TestConsoleSessionBytes)
#include "tst_consolesession_bytes.moc"
