#include "sessionbench.h"

#include <QtCore/QElapsedTimer>
#include <QtTest/QTest>

using namespace ovra::bll;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;

// When a reply ends, and what happens when it does not.
class TestConsoleSessionTiming : public QObject
{
    Q_OBJECT

private slots:
    void ending_comesAfterItsQuietTime_data();
    void ending_comesAfterItsQuietTime();
    void ending_moreBytes_startTheQuietTimeAgain();
    void lookAlike_insideAListing_isNoEnd_data();
    void lookAlike_insideAListing_isNoEnd();
    void name_thatHasChanged_isLearned();
    void silence_oneEnterAfterTwoSeconds();
    void silence_swallowedPrompt_isFoundAgain();
    void silence_slowSwitch_promptOfTheEnterEndsNoReply();
    void silence_logLinesDoNotPostponeEnter();
    void silence_noEnterAheadOfAKnownQuestion();
    void silence_questionThatNeverComes_getsEnterInTheEnd();
    void timeout_countsFromTheLastByte();
    void timeout_slowCommand_hasItsOwn();
    void timeout_noAnswer_isEmptyOnce();
    void timeout_answerInBetween_startsAgain();
    void timeout_brokenReply_isDeliveredAndWarnedOf();
    void timeout_laterLines_areNotTyped();
    void closedPort_isEmptyOnce();
    void restart_endsTwoSecondsAfterItsLastAnswer();
    void restart_bootText_isInNoReply_data();
    void restart_bootText_isInNoReply();
    void restart_slowAnswer_isNoBootText();
    void restart_nothingIsSentWhileTheSwitchBoots();
    void restart_bannerEndsTheStartUp();
    void restart_thatWasDenied_isOver();
    void restart_neverSeenUp_isGivenUp();
    void longReply_isCappedAndWarnedOf();
    void longReply_restIsInNoOtherReply();
    void longReply_byteByByte_takesLinearTime();
    void garbage_ofAMegabyte_takesLinearTime_data();
    void garbage_ofAMegabyte_takesLinearTime();
    void endlessTrickle_endsAfterAnHour();
};

void TestConsoleSessionTiming::ending_comesAfterItsQuietTime_data()
{
    QTest::addColumn<QByteArray>("written");
    QTest::addColumn<int>("quietMs");
    QTest::newRow("learned name, user view") << QByteArray("dis\r\n<NAME>") << 25;
    QTest::newRow("learned name, other view") << QByteArray("dis\r\n[NAME-vlan20]") << 25;
    QTest::newRow("other name, user view") << QByteArray("dis\r\n<C4>") << 300;
    QTest::newRow("release") << QByteArray("dis\r\n[V200R009C00SPC500]") << 300;
    QTest::newRow("longer name") << QByteArray("dis\r\n<NAMES>") << 300;
    QTest::newRow("longer name, other view") << QByteArray("dis\r\n[NAMES]") << 300;
    QTest::newRow("user name prompt") << QByteArray("dis\r\nUsername:") << 25;
    QTest::newRow("user name prompt, lower case") << QByteArray("dis\r\nlogin: ") << 25;
    QTest::newRow("password prompt") << QByteArray("dis\r\nPassword:") << 25;
    QTest::newRow("text that ends like a password prompt") << QByteArray("dis\r\n set the password:") << 300;
    QTest::newRow("pager") << QByteArray("dis\r\n  ---- More ----") << 25;
}

void TestConsoleSessionTiming::ending_comesAfterItsQuietTime()
{
    QFETCH(QByteArray, written);
    QFETCH(int, quietMs);
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\n");
    bench.feed(written);
    bench.pass(milliseconds(quietMs - 1));
    QCOMPARE(bench.replies, QByteArrayList());
    bench.pass(milliseconds(1));
    QCOMPARE(bench.replies, QByteArrayList({written}));
}

void TestConsoleSessionTiming::ending_moreBytes_startTheQuietTimeAgain()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\n");
    for (const char byte : QByteArray("dis\r\n<NAME>\r\n<NAME>")) {
        bench.feed(QByteArray(1, byte));
        bench.pass(milliseconds(24));
        QCOMPARE(bench.replies, QByteArrayList());
    }
    bench.pass(milliseconds(1));
    QCOMPARE(bench.replies, QByteArrayList({"dis\r\n<NAME>\r\n<NAME>"}));
}

void TestConsoleSessionTiming::lookAlike_insideAListing_isNoEnd_data()
{
    QTest::addColumn<QByteArray>("lookAlike");
    for (const char *text : {"[V200R009C00SPC500]", "<C4>", "[Y]", "description <C4>", "<NAME> is its name", "[NAME",
                             "SL<->", "<a b>", "<>", "[]", "[~]"})
        QTest::newRow(text) << QByteArray(text);
}

// The line ends a while later: on a slow line, or because the switch thinks.
void TestConsoleSessionTiming::lookAlike_insideAListing_isNoEnd()
{
    QFETCH(QByteArray, lookAlike);
    SessionBench bench;
    bench.logIn();
    bench.submit("display current-configuration\r\n");
    bench.feed("display current-configuration\r\n" + lookAlike);
    bench.pass(milliseconds(290));
    QCOMPARE(bench.replies, QByteArrayList());
    bench.feed("\r\nsysname NAME\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies,
             QByteArrayList({"display current-configuration\r\n" + lookAlike + "\r\nsysname NAME\r\n<NAME>"}));
}

void TestConsoleSessionTiming::name_thatHasChanged_isLearned()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("sysname OTHER\r\nreturn\r\n");
    bench.takeSent();
    bench.feed("sysname OTHER\r\n[OTHER]");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.takeSent(), QByteArray("return\r\n"));
    bench.feed("return\r\n<OTHER>");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.replies.size(), 1);
    QCOMPARE(bench.session.name(), QByteArray("OTHER"));
    bench.submit("dis\r\n");
    bench.feed("dis\r\n<OTHER>");
    bench.pass(milliseconds(25));
    QCOMPARE(bench.replies.size(), 2);
}

void TestConsoleSessionTiming::silence_oneEnterAfterTwoSeconds()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\n");
    bench.takeSent();
    bench.feed("dis\r\nsome text\r\n");
    bench.pass(milliseconds(1999));
    QCOMPARE(bench.takeSent(), QByteArray());
    bench.pass(milliseconds(1));
    QCOMPARE(bench.takeSent(), QByteArray("\r"));
    bench.pass(seconds(7)); // once per line
    QCOMPARE(bench.takeSent(), QByteArray());
    bench.feed("more\r\n");
    bench.pass(seconds(9));
    QCOMPARE(bench.takeSent(), QByteArray());
}

void TestConsoleSessionTiming::silence_swallowedPrompt_isFoundAgain()
{
    const QByteArray log = "Nov 20 2026 10:11:12+00:00 NAME %%01IFPDT/4/IF_STATE(l)[3]:down.\r\n";
    SessionBench bench;
    bench.logIn();
    bench.submit("shutdown\r\nreturn\r\n");
    bench.takeSent();
    bench.feed("shutdown\r\n[NAME]" + log);
    bench.pass(seconds(2));
    QCOMPARE(bench.takeSent(), QByteArray("\r"));
    bench.feed("\r\n[NAME]");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("return\r\n"));
    bench.feed("return\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"shutdown\r\n[NAME]" + log + "\r\n[NAME]return\r\n<NAME>"}));
}

void TestConsoleSessionTiming::silence_slowSwitch_promptOfTheEnterEndsNoReply()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("display a\r\ndisplay b\r\n");
    bench.feed("display a\r\n");
    bench.pass(milliseconds(2400)); // Enter has been sent
    bench.feed("AAA\r\n<NAME>");
    bench.pass(milliseconds(100));
    QVERIFY(bench.sent.endsWith("display b\r\n"));
    bench.feed("display b\r\n");
    bench.pass(milliseconds(1000));
    bench.feed("<NAME>"); // for the Enter
    bench.pass(milliseconds(1000));
    QCOMPARE(bench.replies, QByteArrayList());
    bench.feed("\r\nBBB\r\n<NAME>");
    bench.pass(milliseconds(100));
    QCOMPARE(bench.replies.size(), 1);
    QVERIFY2(bench.replies.first().endsWith("BBB\r\n<NAME>"), bench.replies.first().constData());
}

void TestConsoleSessionTiming::silence_logLinesDoNotPostponeEnter()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("shutdown\r\n");
    bench.takeSent();
    bench.feed("shutdown\r\n[NAME]");
    for (int i = 0; i < 4; ++i) {
        bench.feed("Nov 20 2026 10:11:12+00:00 NAME %%01IFPDT/4/IF_STATE(l)[3]:down.\r\n");
        bench.pass(milliseconds(600));
    }
    QCOMPARE(bench.takeSent(), QByteArray("\r"));
}

void TestConsoleSessionTiming::silence_noEnterAheadOfAKnownQuestion()
{
    SessionBench bench(shippedDescription(QStringLiteral("Hua3.xml")));
    bench.logIn();
    bench.submit("save\r\n");
    bench.takeSent();
    bench.feed("save\r\nPlease wait\r\n");
    bench.pass(seconds(10));
    QCOMPARE(bench.takeSent(), QByteArray());
    bench.feed("Are you sure? [Y/N]:");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("Y\r\n"));
    bench.pass(seconds(2)); // now a log line may have swallowed the prompt
    QCOMPARE(bench.takeSent(), QByteArray("\r"));
}

// A log line about the saved file has swallowed the prompt.
void TestConsoleSessionTiming::silence_questionThatNeverComes_getsEnterInTheEnd()
{
    SessionBench bench(shippedDescription(QStringLiteral("Hua3.xml")));
    bench.logIn();
    bench.submit("save force\r\n");
    bench.takeSent();
    bench.feed("save force\r\nSaved.\r\n");
    bench.pass(milliseconds(59999));
    QCOMPARE(bench.takeSent(), QByteArray());
    bench.pass(milliseconds(1));
    QCOMPARE(bench.takeSent(), QByteArray("\r"));
}

void TestConsoleSessionTiming::timeout_countsFromTheLastByte()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\n");
    for (int i = 0; i < 10; ++i) {
        bench.feed("dis\r\n");
        bench.pass(seconds(9));
        QCOMPARE(bench.replies, QByteArrayList());
    }
    bench.pass(milliseconds(999));
    QCOMPARE(bench.replies, QByteArrayList());
    bench.pass(milliseconds(1));
    QCOMPARE(bench.replies.size(), 1);
}

void TestConsoleSessionTiming::timeout_slowCommand_hasItsOwn()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    bench.submit("display current-configuration\r\n");
    bench.pass(milliseconds(29999));
    QCOMPARE(bench.replies, QByteArrayList());
    bench.pass(milliseconds(1));
    QCOMPARE(bench.replies, QByteArrayList({""}));
}

void TestConsoleSessionTiming::timeout_noAnswer_isEmptyOnce()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("one\r\n");
    bench.pass(milliseconds(9999));
    QCOMPARE(bench.replies, QByteArrayList());
    bench.pass(milliseconds(1));
    QCOMPARE(bench.replies, QByteArrayList({""}));
    QCOMPARE(bench.warnings, QStringList());
    bench.submit("two\r\n");
    bench.pass(seconds(10));
    QCOMPARE(bench.replies, QByteArrayList({"", "\r\n"}));
    QCOMPARE(bench.warnings, QStringList({QStringLiteral("交换机没有应答，请检查连接线和波特率|")}));
    bench.submit("three\r\n");
    bench.pass(seconds(10));
    QCOMPARE(bench.replies, QByteArrayList({"", "\r\n", ""})); // not two in a row
}

void TestConsoleSessionTiming::timeout_answerInBetween_startsAgain()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("one\r\n");
    bench.pass(seconds(10));
    bench.submit("two\r\n");
    bench.feed("two\r\n<NAME>");
    bench.pass(milliseconds(30));
    bench.submit("three\r\n");
    bench.pass(seconds(10));
    QCOMPARE(bench.replies, QByteArrayList({"", "two\r\n<NAME>", ""}));
}

void TestConsoleSessionTiming::timeout_brokenReply_isDeliveredAndWarnedOf()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("display vlan\r\n");
    bench.feed("display vlan\r\nThe total num");
    bench.pass(seconds(10));
    QCOMPARE(bench.replies, QByteArrayList({"display vlan\r\nThe total num"}));
    QCOMPARE(bench.warnings, QStringList({QStringLiteral("命令 %1 的应答不完整|display vlan")}));
}

void TestConsoleSessionTiming::timeout_laterLines_areNotTyped()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("one\r\ntwo\r\nthree\r\n");
    bench.feed("one\r\n<NAME>");
    bench.pass(milliseconds(30));
    bench.takeSent();
    bench.pass(seconds(30));
    QVERIFY(!bench.sent.contains("three"));
    QCOMPARE(bench.replies, QByteArrayList({"one\r\n<NAME>"}));
    QCOMPARE(bench.warnings, QStringList({QStringLiteral("命令 %1 的应答不完整|two")}));
}

void TestConsoleSessionTiming::closedPort_isEmptyOnce()
{
    SessionBench bench;
    bench.session.disconnected();
    for (int i = 0; i < 3; ++i)
        bench.submit("\r\n");
    QCOMPARE(bench.replies, QByteArrayList({"", "\r\n", "\r\n"}));
    QCOMPARE(bench.warnings.size(), 2);
    QCOMPARE(bench.sent, QByteArray());
    bench.session.connected();
    bench.submit("\r\n");
    bench.pass(seconds(10));
    QCOMPARE(bench.replies.last(), QByteArray());
}

void TestConsoleSessionTiming::restart_endsTwoSecondsAfterItsLastAnswer()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    bench.submit("reboot\r\n");
    bench.takeSent();
    bench.feed("reboot\r\nInfo: The system is now comparing the configuration, please wait.\r\n");
    bench.pass(seconds(15)); // it takes its time
    QCOMPARE(bench.takeSent(), QByteArray());
    QCOMPARE(bench.replies, QByteArrayList());
    bench.feed("Warning: The configuration has been modified, and it will be saved. Continue? [Y/N]:");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("N\r\n"));
    bench.feed("N\r\n");
    bench.pass(seconds(5)); // no is not the last word
    bench.feed("System will reboot! Continue?[Y/N]:");
    bench.pass(milliseconds(25));
    QCOMPARE(bench.takeSent(), QByteArray("Y\r\n"));
    bench.feed("Y\r\n");
    bench.pass(milliseconds(1990));
    bench.feed("Really reboot?[Y/N]:"); // just in time
    bench.pass(milliseconds(25));
    QCOMPARE(bench.takeSent(), QByteArray("Y\r\n"));
    bench.feed("Y\r\nInfo: system is rebooting, please wait...\r\n");
    bench.pass(milliseconds(1999));
    QCOMPARE(bench.replies, QByteArrayList());
    bench.pass(milliseconds(1));
    QCOMPARE(bench.replies.size(), 1);
    QVERIFY(bench.replies.first().endsWith("Y\r\nInfo: system is rebooting, please wait...\r\n"));
    QCOMPARE(bench.warnings, QStringList());
    QVERIFY(!bench.session.isLoggedIn());
}

namespace {

void restart(SessionBench &bench)
{
    bench.logIn();
    bench.submit("reboot\r\n");
    bench.feed("reboot\r\nSystem will reboot! Continue?[Y/N]:");
    bench.pass(milliseconds(25));
    bench.feed("Y\r\n");
    bench.pass(seconds(2));
    QCOMPARE(bench.replies.size(), 1);
    bench.forget();
}

} // namespace

void TestConsoleSessionTiming::restart_bootText_isInNoReply_data()
{
    QTest::addColumn<QByteArray>("question"); // the one that is answered; empty: none
    QTest::addColumn<QByteArray>("end");
    QTest::newRow("after two seconds") << QByteArray("System will reboot! Continue?[Y/N]:") << QByteArray();
    QTest::newRow("by the banner") << QByteArray("System will reboot! Continue?[Y/N]:")
                                   << QByteArray("Please Press ENTER.\r\n");
    QTest::newRow("last answer no") << QByteArray("Save the configuration? [Y/N]:")
                                    << QByteArray("Please Press ENTER.\r\n");
    QTest::newRow("no question") << QByteArray() << QByteArray("Please Press ENTER.\r\n");
}

void TestConsoleSessionTiming::restart_bootText_isInNoReply()
{
    QFETCH(QByteArray, question);
    QFETCH(QByteArray, end);
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    bench.submit("reboot\r\n");
    QByteArray told = "reboot\r\n" + question;
    bench.feed(told);
    bench.pass(milliseconds(25));
    if (!question.isEmpty()) {
        bench.feed("Y\r\n");
        told += "Y\r\n";
    }
    bench.pass(milliseconds(250));
    bench.feed("Info: system is rebooting, please wait...\r\n");
    told += "Info: system is rebooting, please wait...\r\n";
    for (int i = 0; i < 4; ++i) {
        bench.pass(milliseconds(300));
        bench.feed("BIOS Username: LOADING ...\r\n");
    }
    bench.feed(end);
    bench.pass(milliseconds(1200));
    QCOMPARE(bench.replies, QByteArrayList{told});
}

// The switch needs a while for the echo, too.
void TestConsoleSessionTiming::restart_slowAnswer_isNoBootText()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    bench.submit("reboot\r\n");
    bench.pass(milliseconds(800));
    bench.feed("reboot\r\nInfo: system is rebooting, please wait...\r\n");
    bench.pass(milliseconds(500));
    bench.feed("BIOS LOADING ...\r\nPlease Press ENTER.\r\n");
    bench.pass(milliseconds(1200));
    QCOMPARE(bench.replies, QByteArrayList{"reboot\r\nInfo: system is rebooting, please wait...\r\n"});
}

void TestConsoleSessionTiming::restart_nothingIsSentWhileTheSwitchBoots()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    restart(bench);
    bench.feed("BIOS LOADING ...\r\n");
    bench.submit("display vlan\r\n");
    for (int i = 0; i < 8; ++i) {
        bench.feed("Press Ctrl+B to break auto startup ... 3\b2\b1\b0\r\nload? [Y/N]");
        bench.pass(seconds(9));
    }
    QCOMPARE(bench.sent, QByteArray());
    QCOMPARE(bench.replies, QByteArrayList());
    bench.pass(seconds(1));
    QCOMPARE(bench.sent, QByteArray());
    QCOMPARE(bench.replies, QByteArrayList({""})); // of the start-up nothing
}

void TestConsoleSessionTiming::restart_bannerEndsTheStartUp()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    restart(bench);
    bench.feed("BIOS LOADING ...\r\n");
    bench.submit("\r\n");
    bench.feed("Recover configuration...OK!\r\nUser interface con0 is available\r\n\r\n\r\nPlease Press ENTER.\r\n");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.takeSent(), QByteArray("\r\n"));
    bench.feed("\r\n\r\nUsername:");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"\r\n\r\nUsername:"}));
}

void TestConsoleSessionTiming::restart_thatWasDenied_isOver()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    bench.submit("reboot\r\n");
    bench.feed(
        "reboot\r\nError: You do not have permission to run the command or the command is incomplete.\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies.size(), 1);
    QVERIFY(bench.session.isLoggedIn());
    bench.takeSent();
    bench.submit("dis\r\n");
    QCOMPARE(bench.takeSent(), QByteArray("dis\r\n"));
}

// It may have come up while nobody looked.
void TestConsoleSessionTiming::restart_neverSeenUp_isGivenUp()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    restart(bench);
    bench.pass(minutes(5));
    bench.submit("\r\n");
    bench.pass(milliseconds(0));
    QCOMPARE(bench.takeSent(), QByteArray("\r\n"));
}

namespace {

constexpr int kMebibyte = 1024 * 1024;

QByteArray line(int length)
{
    return QByteArray(length - 2, 'x') + "\r\n";
}

} // namespace

void TestConsoleSessionTiming::longReply_isCappedAndWarnedOf()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\n");
    for (int i = 0; i < 17 && bench.replies.isEmpty(); ++i) {
        bench.feed(line(1024).repeated(1024));
        bench.pass(seconds(1));
    }
    QCOMPARE(bench.replies.size(), 1);
    QCOMPARE(bench.replies.first().size(), 16 * kMebibyte);
    QCOMPARE(bench.warnings.size(), 1);
    QVERIFY(bench.warnings.first().contains(QLatin1String("16 MiB")));
}

void TestConsoleSessionTiming::longReply_restIsInNoOtherReply()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\n");
    bench.submit("display vlan\r\n");
    bench.takeSent();
    bench.feed(line(1024).repeated(17 * 1024));
    for (int i = 0; i < 100; ++i) {
        bench.feed(line(1024));
        bench.pass(milliseconds(10));
    }
    QCOMPARE(bench.replies.size(), 1);
    QCOMPARE(bench.takeSent(), QByteArray());
    bench.feed("<NAME>");
    bench.pass(milliseconds(300));
    QCOMPARE(bench.takeSent(), QByteArray("display vlan\r\n"));
    bench.feed("display vlan\r\n1\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies.last(), QByteArray("display vlan\r\n1\r\n<NAME>"));
}

// Compared within one run: four times the bytes must not take sixteen times as long.
void TestConsoleSessionTiming::longReply_byteByByte_takesLinearTime()
{
    const auto timeFor = [](int lines) {
        SessionBench bench;
        bench.logIn();
        bench.submit("dis\r\n");
        QElapsedTimer timer;
        timer.start();
        for (int i = 0; i < lines; ++i) {
            for (const char byte : line(100))
                bench.feed(QByteArray(1, byte));
        }
        const qint64 elapsed = timer.nsecsElapsed();
        bench.feed("<NAME>");
        bench.pass(milliseconds(300));
        return bench.replies.size() == 1 ? elapsed : -1;
    };
    timeFor(1000);
    const qint64 once = std::min(timeFor(5000), timeFor(5000));
    const qint64 four = std::min(timeFor(20000), timeFor(20000));
    QVERIFY(once > 0 && four > 0);
    QVERIFY2(four < 8 * once, qPrintable(QStringLiteral("%1 %2").arg(once).arg(four)));
}

void TestConsoleSessionTiming::garbage_ofAMegabyte_takesLinearTime_data()
{
    QTest::addColumn<QByteArray>("garbage");
    QTest::newRow("one line") << QByteArray(kMebibyte, 'x');
    QTest::newRow("escapes") << QByteArray("\x1b[1D").repeated(kMebibyte / 4);
    QTest::newRow("redraw marks") << QByteArray(" \x1b[1D").repeated(kMebibyte / 5);
    QTest::newRow("carriage returns") << QByteArray(kMebibyte, '\r');
    QTest::newRow("pagers") << QByteArray("---- More ----").repeated(kMebibyte / 14);
    QTest::newRow("pagers half erased") << QByteArray("---- More ----\x1b[16D    ").repeated(kMebibyte / 23);
    QTest::newRow("blanks") << QByteArray(kMebibyte, ' ') + "---- More ----";
    QTest::newRow("prompts") << QByteArray("<NAME>").repeated(kMebibyte / 6);
    QTest::newRow("line ends") << QByteArray(kMebibyte, '\n');
    QTest::newRow("log lines") << QByteArray("%%\r\n").repeated(kMebibyte / 4);
}

void TestConsoleSessionTiming::garbage_ofAMegabyte_takesLinearTime()
{
    QFETCH(QByteArray, garbage);
    constexpr int kPiece = 16;
    constexpr int kLimitMs = 5000; // quadratic, it would be minutes
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    bench.submit("display interface brief\r\n");
    QElapsedTimer timer;
    timer.start();
    for (int at = 0; at < garbage.size(); at += kPiece)
        bench.feed(garbage.mid(at, kPiece));
    bench.pass(minutes(2));
    QVERIFY2(timer.elapsed() < kLimitMs, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(bench.replies.size(), 1);
}

void TestConsoleSessionTiming::endlessTrickle_endsAfterAnHour()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\n");
    for (int i = 0; i < 3599; ++i) {
        bench.feed("x");
        bench.pass(seconds(1));
    }
    QCOMPARE(bench.replies, QByteArrayList());
    bench.pass(seconds(1));
    QCOMPARE(bench.replies.size(), 1);
    QCOMPARE(bench.warnings.size(), 1);
}

QTEST_GUILESS_MAIN(TestConsoleSessionTiming)
#include "tst_consolesession_timing.moc"
