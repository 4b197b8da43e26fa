#include "usermessage.h"

#include <QtTest/QTest>

using ovra::bll::filledIn;

class TestUserMessage : public QObject
{
    Q_OBJECT

private slots:
    void filledIn_putsEachValueInItsPlace_data();
    void filledIn_putsEachValueInItsPlace();
};

void TestUserMessage::filledIn_putsEachValueInItsPlace_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("values");
    QTest::addColumn<QString>("expected");

    QTest::newRow("nothing to fill in") << "all well" << QStringList{"a"} << "all well";
    QTest::newRow("in order") << "%1 to %2" << QStringList{"a", "b"} << "a to b";
    QTest::newRow("in another order") << "%2 of %1" << QStringList{"a", "b"} << "b of a";
    QTest::newRow("twice") << "%1, %1" << QStringList{"a"} << "a, a";
    QTest::newRow("five") << "%1%2%3%4%5" << QStringList{"a", "b", "c", "d", "e"} << "abcde";
    QTest::newRow("a value with a mark in it") << "%1 %2" << QStringList{"%2", "%1"} << "%2 %1";
    QTest::newRow("an empty value") << "<%1>" << QStringList{QString()} << "<>";
    QTest::newRow("no value for it") << "%1 %2" << QStringList{"a"} << "a %2";
    QTest::newRow("no number") << "100 %, %0, %x, %" << QStringList{"a"} << "100 %, %0, %x, %";
    QTest::newRow("two digits") << "%12" << QStringList{"a"} << "a2";
}

void TestUserMessage::filledIn_putsEachValueInItsPlace()
{
    QFETCH(QString, text);
    QFETCH(QStringList, values);
    QTEST(filledIn(text, values), "expected");
}

QTEST_GUILESS_MAIN(TestUserMessage)
#include "tst_usermessage.moc"
