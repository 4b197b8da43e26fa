#include <language.h>

#include <QtTest/QtTest>

class TestLanguage : public QObject
{
    Q_OBJECT

private slots:
    void filledIn_replacesPlacesInOnePass_data();
    void filledIn_replacesPlacesInOnePass();
    void inLanguage_givesTheTextOfTheLanguage();
    void parseLanguage_takesTwoCodesOnly();
};

void TestLanguage::filledIn_replacesPlacesInOnePass_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QString>("filled");

    QTest::newRow("one") << "file %1 read" << QStringList{"a"} << "file a read";
    QTest::newRow("any order") << "%2 before %1" << QStringList{"a", "b"} << "b before a";
    QTest::newRow("twice") << "%1 %1" << QStringList{"a"} << "a a";
    QTest::newRow("a value that looks like a place") << "%1, %2" << QStringList{"%2", "b"} << "%2, b";
    QTest::newRow("per cent sign behind a place")
        << "rate %1%, matched" << QStringList{"90.0"} << "rate 90.0%, matched";
    QTest::newRow("no value") << "%1 and %2" << QStringList{"a"} << "a and %2";
    QTest::newRow("per cent sign at the end") << "100%" << QStringList{"a"} << "100%";
    QTest::newRow("place zero") << "%0" << QStringList{"a"} << "%0";
}

void TestLanguage::filledIn_replacesPlacesInOnePass()
{
    QFETCH(QString, pattern);
    QFETCH(QStringList, values);
    QTEST(filledIn(pattern, values), "filled");
}

void TestLanguage::inLanguage_givesTheTextOfTheLanguage()
{
    constexpr Text kText{"%1 slaves", "%1个从节点"};
    QCOMPARE(inLanguage(kText, Language::English, {QStringLiteral("9")}), QStringLiteral("9 slaves"));
    QCOMPARE(inLanguage(kText, Language::Chinese, {QStringLiteral("9")}), QStringLiteral("9个从节点"));
    QCOMPARE(inLanguage(kText, Language::English), QStringLiteral("%1 slaves"));
}

void TestLanguage::parseLanguage_takesTwoCodesOnly()
{
    Language language = Language::English;
    QVERIFY(parseLanguage(QStringLiteral("zh"), language));
    QCOMPARE(language, Language::Chinese);
    QVERIFY(!parseLanguage(QStringLiteral("de"), language));
    QCOMPARE(language, Language::Chinese);
    QVERIFY(parseLanguage(QStringLiteral("en"), language));
    QCOMPARE(language, Language::English);
}

QTEST_APPLESS_MAIN(TestLanguage)

#include "tst_language.moc"
