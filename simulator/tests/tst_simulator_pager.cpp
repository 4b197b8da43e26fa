#include "consoleuser.h"

#include <QtTest/QTest>

using namespace simulator;

namespace {

constexpr char kMarker[] = "  ---- More ----";

SimulatorOptions paging(const QString &arguments = {})
{
    SimulatorOptions options = ConsoleUser::atWork();
    options.paging = Paging::Normal;
    return withArguments(arguments, options);
}

QByteArray erase(int columns)
{
    const QByteArray back = "\x1b[" + QByteArray::number(columns) + 'D';
    return back + QByteArray(columns, ' ') + back;
}

} // namespace

class TestSimulatorPager : public QObject
{
    Q_OBJECT

private slots:
    void screen_has24LinesAndTheMarker();
    void blank_showsTheNextScreenBehindTheErasedMarker_data();
    void blank_showsTheNextScreenBehindTheErasedMarker();
    void enter_showsTheNextLine();
    void ctrlC_stops();
    void otherKeys_data();
    void otherKeys();
    void fourBlanksAndEnter_pageAndThenGoToTheCommandLine();
    void allScreensTogether_areTheListing();
    void shortListing_isNotPaged();
    void switchedOff_data();
    void switchedOff();
    void forced_refusesToBeSwitchedOff_data();
    void forced_refusesToBeSwitchedOff();
    void newSession_pagesAgain();
};

void TestSimulatorPager::screen_has24LinesAndTheMarker()
{
    ConsoleUser user(paging());
    const QByteArray shown = user.enter("display interface brief");
    QCOMPARE(shown.count("\r\n"), 1 + 24); // the echo and the screen
    QVERIFY(shown.endsWith(QByteArray("\r\n") + kMarker));
}

void TestSimulatorPager::blank_showsTheNextScreenBehindTheErasedMarker_data()
{
    QTest::addColumn<int>("columns");
    QTest::newRow("newer") << 16;
    QTest::newRow("older") << 42;
}

void TestSimulatorPager::blank_showsTheNextScreenBehindTheErasedMarker()
{
    QFETCH(int, columns);
    ConsoleUser user(paging(QStringLiteral("--erase %1").arg(columns)));
    user.enter("display interface brief");
    const QByteArray next = user.keys(" ");
    QVERIFY2(next.startsWith(erase(columns) + "GigabitEthernet0/0/15 "), next.constData());
    QVERIFY(next.endsWith("\r\n<HUAWEI>"));
}

void TestSimulatorPager::enter_showsTheNextLine()
{
    ConsoleUser user(paging());
    user.enter("display interface brief");
    const QByteArray next = user.keys("\r\n"); // one key
    QVERIFY(next.startsWith(erase(16) + "GigabitEthernet0/0/15 "));
    QVERIFY(next.endsWith(kMarker));
    QCOMPARE(next.count("\r\n"), 1);
}

void TestSimulatorPager::ctrlC_stops()
{
    ConsoleUser user(paging());
    user.enter("display interface brief");
    QCOMPARE(user.keys("\x03"), erase(16) + "<HUAWEI>");
}

void TestSimulatorPager::otherKeys_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("shown");
    QTest::newRow("ignored") << "" << QByteArray();
    QTest::newRow("stop") << "--pager-keys stop" << erase(16) + "<HUAWEI>pace";
}

void TestSimulatorPager::otherKeys()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArray, shown);
    ConsoleUser user(paging(arguments));
    user.enter("display interface brief");
    QCOMPARE(user.keys("space"), shown);
}

void TestSimulatorPager::fourBlanksAndEnter_pageAndThenGoToTheCommandLine()
{
    ConsoleUser user(paging());
    user.enter("display interface brief");
    const QByteArray rest = user.keys("    \r\n");
    QVERIFY2(rest.endsWith("\r\n<HUAWEI>   \r\n<HUAWEI>"), rest.constData());
}

void TestSimulatorPager::allScreensTogether_areTheListing()
{
    ConsoleUser user(paging(QStringLiteral("--lines 500")));
    QByteArray listing = user.enter("display current-configuration");
    int screens = 1;
    while (listing.endsWith(kMarker)) {
        listing += user.keys(" ");
        ++screens;
    }
    QVERIFY(screens > 20);
    listing.replace(kMarker + erase(16), "");
    QCOMPARE(listing, "display current-configuration\r\n" + user.console().configurationText() + "<HUAWEI>");
}

void TestSimulatorPager::shortListing_isNotPaged()
{
    ConsoleUser user(paging());
    QVERIFY(user.enter("display version").endsWith("\r\n<HUAWEI>"));
}

void TestSimulatorPager::switchedOff_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("huawei")
        << "" << QByteArray("screen-length 0 temporary")
        << QByteArray("Info: The configuration takes effect on the current user terminal interface only.\r\n");
    QTest::newRow("hua3") << "--family hua3" << QByteArray("screen-length disable") << QByteArray();
}

void TestSimulatorPager::switchedOff()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, answer);
    ConsoleUser user(paging(arguments));
    QCOMPARE(user.answer(line), answer);
    const QByteArray listing = user.enter("display current-configuration");
    QVERIFY(!listing.contains(kMarker));
    QVERIFY(listing.endsWith('>'));
}

void TestSimulatorPager::forced_refusesToBeSwitchedOff_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("answer");
    QTest::newRow("huawei")
        << "--paging forced" << QByteArray("screen-length 0 temporary")
        << QByteArray("Error: You do not have permission to run the command or the command is incomplete.\r\n");
    QTest::newRow("hua3") << "--paging forced --family hua3" << QByteArray("screen-length disable")
                          << QByteArray(" Permission denied.\r\n");
}

void TestSimulatorPager::forced_refusesToBeSwitchedOff()
{
    QFETCH(QString, arguments);
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, answer);
    ConsoleUser user(paging(arguments));
    QCOMPARE(user.answer(line), answer);
    QVERIFY(user.enter("display current-configuration").endsWith(kMarker));
}

void TestSimulatorPager::newSession_pagesAgain()
{
    ConsoleUser user(paging(QStringLiteral("--login none")));
    user.work({"screen-length 0 temporary", "quit", ""});
    QVERIFY(user.enter("display interface brief").endsWith(kMarker));
}

QTEST_GUILESS_MAIN(TestSimulatorPager)
#include "tst_simulator_pager.moc"
