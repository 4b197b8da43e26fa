#include <commandline.h>

#include <QtTest/QtTest>

Q_DECLARE_METATYPE(Language)

namespace {

const std::vector<Option> &options()
{
    static const std::vector<Option> kOptions{{"decoders", "N", {"clocks", "时钟"}},
                                              {"json", "OUT", {"export", "导出"}},
                                              {"lang", "zh|en", {"language", "语言"}},
                                              {"quiet", nullptr, {"say little", "少说"}},
                                              {"help", nullptr, {"this text", "本说明"}}};
    return kOptions;
}

Arguments parsed(const QStringList &words)
{
    return parseArguments(words, options(), Language::English);
}

} // namespace

class TestCommandLine : public QObject
{
    Q_OBJECT

private slots:
    void parseArguments_mixesOptionsAndOperands();
    void parseArguments_valueBehindEqualsSign();
    void parseArguments_valueMayLookLikeAnOption();
    void parseArguments_doubleDashEndsOptions();
    void parseArguments_singleDashIsAnOperand();
    void parseArguments_shortHelp();
    void parseArguments_errors_data();
    void parseArguments_errors();
    void optionLines_listEveryOptionInItsLanguage();
    void languageAskedFor_data();
    void languageAskedFor();
};

void TestCommandLine::parseArguments_mixesOptionsAndOperands()
{
    const Arguments arguments = parsed({"a.pcap", "--decoders", "5", "b.pcap", "--quiet"});
    QCOMPARE(arguments.error, QString());
    QCOMPARE(arguments.operands, QStringList({"a.pcap", "b.pcap"}));
    QCOMPARE(arguments.value("decoders"), QStringLiteral("5"));
    QVERIFY(arguments.has("quiet"));
    QVERIFY(!arguments.has("json"));
}

void TestCommandLine::parseArguments_valueBehindEqualsSign()
{
    QCOMPARE(parsed({"--json=out=1.json"}).value("json"), QStringLiteral("out=1.json"));
    const Arguments empty = parsed({"--json="});
    QVERIFY(empty.error.isEmpty());
    QVERIFY(empty.has("json"));
    QCOMPARE(empty.value("json"), QString());
}

void TestCommandLine::parseArguments_valueMayLookLikeAnOption()
{
    const Arguments arguments = parsed({"--decoders", "-3", "--json", "--quiet"});
    QCOMPARE(arguments.error, QString());
    QCOMPARE(arguments.value("decoders"), QStringLiteral("-3"));
    QCOMPARE(arguments.value("json"), QStringLiteral("--quiet"));
    QVERIFY(!arguments.has("quiet"));
}

void TestCommandLine::parseArguments_doubleDashEndsOptions()
{
    const Arguments arguments = parsed({"--quiet", "--", "--help", "--", "-x"});
    QCOMPARE(arguments.error, QString());
    QCOMPARE(arguments.operands, QStringList({"--help", "--", "-x"}));
    QVERIFY(!arguments.has("help"));
}

void TestCommandLine::parseArguments_singleDashIsAnOperand()
{
    QCOMPARE(parsed({"-"}).operands, QStringList({"-"}));
}

void TestCommandLine::parseArguments_shortHelp()
{
    QVERIFY(parsed({"-h"}).has("help"));
}

void TestCommandLine::parseArguments_errors_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("chinese");

    QTest::newRow("unknown") << QStringList{"--fast"} << "unknown option: --fast"
                             << "未知选项：--fast";
    QTest::newRow("unknown, with a value") << QStringList{"--fast=3"} << "unknown option: --fast"
                                           << "未知选项：--fast";
    QTest::newRow("one dash") << QStringList{"-quiet"} << "unknown option: -quiet"
                              << "未知选项：-quiet";
    QTest::newRow("abbreviated") << QStringList{"--dec", "3"} << "unknown option: --dec"
                                 << "未知选项：--dec";
    QTest::newRow("value missing") << QStringList{"a", "--json"} << "--json needs a value: OUT"
                                   << "--json 缺少参数：OUT";
    QTest::newRow("superfluous value") << QStringList{"--quiet=1"} << "--quiet takes no value"
                                       << "--quiet 不带参数";
    QTest::newRow("twice") << QStringList{"--json", "a", "--json", "b"} << "--json is given twice"
                           << "--json 重复出现";
    QTest::newRow("the first error counts") << QStringList{"--fast", "--slow"} << "unknown option: --fast"
                                            << "未知选项：--fast";
}

void TestCommandLine::parseArguments_errors()
{
    QFETCH(QStringList, words);
    QTEST(parseArguments(words, options(), Language::English).error, "english");
    QTEST(parseArguments(words, options(), Language::Chinese).error, "chinese");
}

void TestCommandLine::optionLines_listEveryOptionInItsLanguage()
{
    QCOMPARE(optionLines(options(), Language::English),
             QStringList({"  --decoders N  clocks", "  --json OUT    export", "  --lang zh|en  language",
                          "  --quiet       say little", "  --help        this text"}));
    QCOMPARE(optionLines(options(), Language::Chinese).first(), QStringLiteral("  --decoders N  时钟"));
}

void TestCommandLine::languageAskedFor_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<Language>("language");

    QTest::newRow("not at all") << QStringList{"analyze", "a.pcap"} << Language::English;
    QTest::newRow("two words") << QStringList{"analyze", "--lang", "zh"} << Language::Chinese;
    QTest::newRow("one word") << QStringList{"--lang=zh"} << Language::Chinese;
    QTest::newRow("unknown") << QStringList{"--lang", "de"} << Language::English;
    QTest::newRow("no value") << QStringList{"--lang"} << Language::English;
    QTest::newRow("behind an error") << QStringList{"--fast", "--lang", "zh"} << Language::Chinese;
    QTest::newRow("behind the options") << QStringList{"--", "--lang", "zh"} << Language::English;
}

void TestCommandLine::languageAskedFor()
{
    QFETCH(QStringList, words);
    QTEST(::languageAskedFor(words, Language::English), "language");
}

QTEST_APPLESS_MAIN(TestCommandLine)

#include "tst_commandline.moc"
