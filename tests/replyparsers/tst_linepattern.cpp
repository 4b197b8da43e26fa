#include "interfacenamingprofile.h"
#include "linepattern.h"

#include <QtCore/QRegExp>
#include <QtTest/QtTest>

#include <functional>
#include <random>
#include <regex>

using reply::LinePattern;
using Dialect = LinePattern::Dialect;

Q_DECLARE_METATYPE(Dialect)

namespace {

//! What an engine finds: where, and the texts of the whole match and of two groups. Empty when it finds nothing.
using Found = QStringList;

Found found(const LinePattern &pattern, const QString &line)
{
    const auto match = pattern.firstMatch(line);
    if (!match)
        return {};
    return {match->before.toString(), match->whole.toString(), match->group1.toString(), match->group2.toString()};
}

QString group(const std::smatch &match, std::size_t index)
{
    return index < match.size() ? QString::fromStdString(match.str(index)) : QString();
}

using Engine = std::function<Found(const QString &)>;

Engine qtRegExpEngine(const QString &pattern)
{
    return [regExp = QRegExp(pattern)](const QString &line) -> Found {
        const int position = regExp.indexIn(line);
        if (position < 0)
            return {};
        return {line.left(position), regExp.cap(0), regExp.cap(1), regExp.cap(2)};
    };
}

Engine stdRegexEngine(const QString &pattern)
{
    return [regex = std::regex(pattern.toStdString())](const QString &line) -> Found {
        const std::string bytes = line.toStdString();
        std::smatch match;
        if (!std::regex_search(bytes, match, regex))
            return {};
        return {QString::fromStdString(match.prefix().str()), group(match, 0), group(match, 1), group(match, 2)};
    };
}

//! What the pattern means, according to those who define its dialect.
Engine engineOf(const QString &pattern, Dialect dialect)
{
    return dialect == Dialect::QtRegExp ? qtRegExpEngine(pattern) : stdRegexEngine(pattern);
}

QStringList profilePatterns()
{
    QStringList patterns{QStringLiteral("GigabitEthernet(\\d+)/"), QStringLiteral("GE(\\d+)/"),
                         QStringLiteral("40GE(\\d+/\\d+/\\d+)"), QStringLiteral("g0/0/(\\d+)")};
    for (const InterfaceNamingProfile *naming : {&huaweiNaming(), &hua3Naming(), &huaweiSubModelNaming()}) {
        patterns << naming->downPortPattern << naming->upPortPattern << naming->observePortPattern
                 << naming->inboundPortPattern << naming->autoNegInterfacePattern;
    }
    patterns.removeDuplicates();
    return patterns;
}

//! Lines made of the pieces that the patterns are about, so that many almost match.
class LineMaker
{
public:
    QString line()
    {
        QString line;
        for (int count = pick(14); count > 0; --count)
            line += piece();
        return line;
    }

private:
    int pick(int count) { return static_cast<int>(_random() % static_cast<unsigned>(count)); }

    QString piece()
    {
        static const QStringList pieces{QStringLiteral("GE"),
                                        QStringLiteral("10GE"),
                                        QStringLiteral("40GE"),
                                        QStringLiteral("XGE"),
                                        QStringLiteral("MultiGE"),
                                        QStringLiteral("GigabitEthernet"),
                                        QStringLiteral("XGigabitEthernet"),
                                        QStringLiteral("g0/0/"),
                                        QStringLiteral("Observe-port"),
                                        QStringLiteral("Inbound"),
                                        QStringLiteral("/"),
                                        QStringLiteral("0/0/"),
                                        QStringLiteral("0/0/1"),
                                        QStringLiteral("/0/"),
                                        QStringLiteral(":"),
                                        QStringLiteral(" "),
                                        QStringLiteral("   "),
                                        QStringLiteral("\t"),
                                        QStringLiteral("1"),
                                        QStringLiteral("24"),
                                        QStringLiteral("007"),
                                        QString(QChar(0x0663)),
                                        QString(QChar(0x00A0)),
                                        QString(QChar(0x3000)),
                                        QString(QChar(0x0085)),
                                        QString(QChar(0x001F)),
                                        QString(QChar(0)),
                                        QStringLiteral("端口"),
                                        QString(QChar(0xFFFD)),
                                        QStringLiteral("Observe-port 1 : GigabitEthernet0/0/10"),
                                        QStringLiteral("Observe-port 1:MultiGE0/0/"),
                                        QStringLiteral("  1  GigabitEthernet0/0/2"),
                                        QStringLiteral(" 1 MultiGE0/0/2  Inbound")};
        return pieces.at(pick(pieces.size()));
    }

    std::mt19937 _random{20260101};
};

} // namespace

class TestLinePattern : public QObject
{
    Q_OBJECT

private slots:
    void pattern_findsWhatTheEngineFinds_data();
    void pattern_findsWhatTheEngineFinds();
    void otherPattern_isInvalidAndFindsNothing_data();
    void otherPattern_isInvalidAndFindsNothing();
    void brokenPattern_findsNothing_data();
    void brokenPattern_findsNothing();
    void lineOf1024Characters_isTheLongestSearched();
    void value_isGroupOneOrTheWholeMatch();
    void behindDigit_looksAtTheCharacterBefore_data();
    void behindDigit_looksAtTheCharacterBefore();
    void number_isZeroWhenItIsNone_data();
    void number_isZeroWhenItIsNone();
};

void TestLinePattern::pattern_findsWhatTheEngineFinds_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<Dialect>("dialect");
    const QStringList more{QString(),
                           QStringLiteral("GE"),
                           QStringLiteral("(GE)(\\d+)"),
                           QStringLiteral("\\d+"),
                           QStringLiteral("\\s*"),
                           QStringLiteral("(\\s*)GE"),
                           QStringLiteral("\\s*GE\\d*"),
                           QStringLiteral("(\\d*)/(\\s+)"),
                           QStringLiteral("\\d\\s"),
                           QStringLiteral("()1")};
    for (const QString &pattern : profilePatterns() + more) {
        QTest::addRow("ECMAScript %s", qPrintable(pattern)) << pattern << Dialect::EcmaScript;
        QTest::addRow("QRegExp %s", qPrintable(pattern)) << pattern << Dialect::QtRegExp;
    }
}

void TestLinePattern::pattern_findsWhatTheEngineFinds()
{
    QFETCH(QString, pattern);
    QFETCH(Dialect, dialect);
    const LinePattern ours(pattern, dialect);
    const Engine engine = engineOf(pattern, dialect);
    QVERIFY(ours.isValid());
    LineMaker maker;
    int matches = 0;
    for (int i = 0; i < 3000; ++i) {
        const QString line = maker.line();
        const Found expected = engine(line);
        if (found(ours, line) != expected)
            QFAIL(qPrintable(QStringLiteral("[%1] is searched differently").arg(line)));
        matches += expected.isEmpty() ? 0 : 1;
    }
    QVERIFY2(matches > 0, "no line matched");
}

void TestLinePattern::otherPattern_isInvalidAndFindsNothing_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<Dialect>("dialect");
    QTest::addColumn<QString>("line");
    const QString line = QStringLiteral("端口 GE0/0/12 up");
    for (const char *pattern :
         {"GE(\\d+/\\d+/\\d+)\\s*(up|down)", "G.(0/0/(\\d+))", "(?:GE|XGE)(\\d+)", "\\d+(\\d)", "x?GE", "[A-Z]+\\d",
          "(端|x)", "^端", "(\\d{2})", "(G)(E)(0)", "\\s*\\s+G", "(\\d+)\\d*"})
    {
        QTest::addRow("ECMAScript %s", pattern) << QString::fromUtf8(pattern) << Dialect::EcmaScript << line;
        QTest::addRow("QRegExp %s", pattern) << QString::fromUtf8(pattern) << Dialect::QtRegExp << line;
    }
    QTest::newRow("group left out") << QStringLiteral("(x)?GE(\\d+)") << Dialect::EcmaScript << line;
}

void TestLinePattern::otherPattern_isInvalidAndFindsNothing()
{
    QFETCH(QString, pattern);
    QFETCH(Dialect, dialect);
    QFETCH(QString, line);
    const LinePattern linePattern(pattern, dialect);
    QVERIFY(!engineOf(pattern, dialect)(line).isEmpty()); // the engine knows it, and the line fits
    QVERIFY(!linePattern.isValid());
    QVERIFY(!linePattern.firstMatch(line));
}

void TestLinePattern::brokenPattern_findsNothing_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::newRow("open group") << QStringLiteral("GE(\\d+");
    QTest::newRow("close group") << QStringLiteral("GE\\d+)");
    QTest::newRow("open class") << QStringLiteral("[GE");
}

void TestLinePattern::brokenPattern_findsNothing()
{
    QFETCH(QString, pattern);
    for (const Dialect dialect : {Dialect::EcmaScript, Dialect::QtRegExp}) {
        const LinePattern linePattern(pattern, dialect);
        QVERIFY(!linePattern.isValid());
        QVERIFY(!linePattern.firstMatch(QStringLiteral("GE0/0/1)")));
    }
}

void TestLinePattern::lineOf1024Characters_isTheLongestSearched()
{
    const QString name = QStringLiteral("GE0/0/1");
    for (const Dialect dialect : {Dialect::EcmaScript, Dialect::QtRegExp}) {
        const LinePattern linePattern(QStringLiteral("GE(\\d+/\\d+/\\d+)"), dialect);
        QVERIFY(linePattern.firstMatch(name.rightJustified(1024, QLatin1Char('.'))));
        QVERIFY(!linePattern.firstMatch(name.rightJustified(1025, QLatin1Char('.'))));
    }
}

void TestLinePattern::value_isGroupOneOrTheWholeMatch()
{
    const QString line = QStringLiteral("up GE0/0/7");
    QCOMPARE(LinePattern(QStringLiteral("GE(\\d+)/"), Dialect::EcmaScript).firstMatch(line)->value().toString(),
             QStringLiteral("0"));
    QCOMPARE(LinePattern(QStringLiteral("GE\\d+/"), Dialect::EcmaScript).firstMatch(line)->value().toString(),
             QStringLiteral("GE0/"));
}

void TestLinePattern::behindDigit_looksAtTheCharacterBefore_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("isBehindDigit");
    QTest::newRow("alone") << QStringLiteral("GE0/0/1") << false;
    QTest::newRow("40GE") << QStringLiteral("40GE0/0/1") << true;
    QTest::newRow("25GE, indented") << QStringLiteral("  25GE0/0/1") << true;
    QTest::newRow("MultiGE") << QStringLiteral("MultiGE0/0/1") << false;
    QTest::newRow("number and blank") << QStringLiteral("1 GE0/0/1") << false;
}

void TestLinePattern::behindDigit_looksAtTheCharacterBefore()
{
    QFETCH(QString, line);
    const QString pattern = huaweiSubModelNaming().downPortPattern;
    for (const Dialect dialect : {Dialect::EcmaScript, Dialect::QtRegExp})
        QTEST(LinePattern(pattern, dialect).firstMatch(line)->isBehindDigit(), "isBehindDigit");
}

void TestLinePattern::number_isZeroWhenItIsNone_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");
    QTest::newRow("plain") << QStringLiteral("24") << 24;
    QTest::newRow("leading zeros") << QStringLiteral("0010") << 10;
    QTest::newRow("largest") << QStringLiteral("2147483647") << 2147483647;
    QTest::newRow("one more") << QStringLiteral("2147483648") << 0;
    QTest::newRow("many digits") << QString(1000, QLatin1Char('9')) << 0;
    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("letters") << QStringLiteral("24a") << 0;
    QTest::newRow("digits of another script") << QString(QChar(0x0663)) << 0;
}

void TestLinePattern::number_isZeroWhenItIsNone()
{
    QFETCH(QString, text);
    QTEST(reply::toNumber(text), "number");
}

QTEST_APPLESS_MAIN(TestLinePattern)
#include "tst_linepattern.moc"
