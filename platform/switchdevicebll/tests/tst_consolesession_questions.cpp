#include "sessionbench.h"

#include <QtTest/QTest>

using namespace ovra::bll;
using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;

namespace {

const QByteArray kPager = QByteArrayLiteral("  ---- More ----");
const QByteArray kErase = QByteArrayLiteral("\x1b[16D                \x1b[16D");

QByteArray erasing(int columns)
{
    const QByteArray back = "\x1b[" + QByteArray::number(columns) + 'D';
    return back + QByteArray(columns, ' ') + back;
}

} // namespace

// Questions and pagers.
class TestConsoleSessionQuestions : public QObject
{
    Q_OBJECT

private slots:
    void question_isAnswered_data();
    void question_isAnswered();
    void question_unknown_isWarnedOf();
    void question_ofOtherCommands_isNotTheDescriptions();
    void question_wordInTheEcho_isNotTheQuestion();
    void question_severalInOneCommand();
    void question_lineIsNeverTypedIntoOne();
    void question_askedForEver_endsTheReply();
    void question_standingBeforeTheBlock_data();
    void question_standingBeforeTheBlock();
    void question_everyEnding_isSeen_data();
    void question_everyEnding_isSeen();

    void pager_pageKey_turnsAllPages_data();
    void pager_pageKey_turnsAllPages();
    void pager_moreLines_turnAllPages();
    void pager_nothingLeft_isDelivered();
    void pager_oneKey_isForOneListing();
    void pager_everyErasure_isDropped_data();
    void pager_everyErasure_isDropped();
    void pager_leftOver_isLeftFirst();
    void pager_leftOver_withoutAPrompt_isUnanswered();
    void pager_leftOver_pageKeyFirst_turnsItsPages();
    void ownPaging_endsAfterQuietAtThePager();
    void ownPaging_endsAtThePrompt();
    void ownPaging_laterPages_areWithoutErasures();
    void pager_keptByTheSwitch_neverHangs();
};

void TestConsoleSessionQuestions::question_isAnswered_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<QByteArray>("question");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("isWarnedOf");
    const QByteArray save =
        "The current configuration will be written to the device.\r\nAre you sure to continue?[Y/N]";
    const QByteArray name = "Please input the file name(*.cfg)[flash:/startup.cfg]\r\n"
                            "(To leave the existing filename unchanged, press the enter key):";
    const QByteArray other = "Continue? [Y/N]:";
    QTest::newRow("description") << QByteArray("save\r\n") << save << QByteArray("Y\r\n") << false;
    QTest::newRow("description, Enter") << QByteArray("save\r\n") << name << QByteArray("\r\n") << false;
    QTest::newRow("description before the block's own")
        << QByteArray("save\r\nN\r\n") << save << QByteArray("Y\r\n") << false;
    QTest::newRow("block: Y") << QByteArray("clear\r\nY\r\n") << other << QByteArray("Y\r\n") << false;
    QTest::newRow("block: n") << QByteArray("clear\r\nn\r\n") << other << QByteArray("n\r\n") << false;
    QTest::newRow("block: Enter") << QByteArray("clear\r\n\r\n") << other << QByteArray("\r\n") << false;
    QTest::newRow("nothing left") << QByteArray("clear\r\n") << other << QByteArray("N\r\n") << true;
    QTest::newRow("another command next") << QByteArray("clear\r\nYes\r\n") << other << QByteArray("N\r\n") << true;
    QTest::newRow("page key next") << QByteArray("clear\r\nspace\r\n") << other << QByteArray("N\r\n") << true;
}

void TestConsoleSessionQuestions::question_isAnswered()
{
    QFETCH(QByteArray, block);
    QFETCH(QByteArray, question);
    QFETCH(QByteArray, answer);
    QFETCH(bool, isWarnedOf);
    SessionBench bench(shippedDescription(QStringLiteral("Hua3.xml")));
    bench.logIn();
    bench.submit(block);
    const QByteArray echo = bench.takeSent();
    bench.feed(echo + question);
    bench.pass(milliseconds(24));
    QCOMPARE(bench.takeSent(), QByteArray());
    bench.pass(milliseconds(1));
    QCOMPARE(bench.takeSent(), answer);
    QCOMPARE(bench.warnings.size(), isWarnedOf ? 1 : 0);
    bench.feed(answer + "done\r\n<NAME>");
    bench.pass(milliseconds(30));
    if (bench.replies.isEmpty()) { // a line is left
        const QByteArray last = bench.takeSent();
        bench.feed(last + "<NAME>");
        bench.pass(milliseconds(30));
        QCOMPARE(bench.replies, QByteArrayList({echo + question + answer + "done\r\n<NAME>" + last + "<NAME>"}));
    } else {
        QCOMPARE(bench.replies, QByteArrayList({echo + question + answer + "done\r\n<NAME>"}));
    }
}

void TestConsoleSessionQuestions::question_unknown_isWarnedOf()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("format flash:\r\n");
    bench.feed("format flash:\r\nAll data will be lost.\r\nProceed\r\n with format? [Y/N]:");
    bench.pass(milliseconds(30));
    QVERIFY(bench.sent.endsWith("N\r\n"));
    QCOMPARE(
        bench.warnings,
        QStringList({QStringLiteral("交换机询问“%1”，已回答 N|All data will be lost. Proceed with format? [Y/N]:")}));
}

void TestConsoleSessionQuestions::question_ofOtherCommands_isNotTheDescriptions()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    bench.submit("undo vlan 20\r\n");
    bench.feed("undo vlan 20\r\nThe current configuration will be written to the device. Continue? [Y/N]:");
    bench.pass(milliseconds(30));
    QVERIFY(bench.sent.endsWith("N\r\n"));
}

// "reboot" is what was typed; the question is another one.
void TestConsoleSessionQuestions::question_wordInTheEcho_isNotTheQuestion()
{
    SessionBench bench(shippedDescription(QStringLiteral("Huawei.xml")));
    bench.logIn();
    bench.submit("reboot\r\n");
    bench.feed("reboot\r\nErase everything? [Y/N]:");
    bench.pass(milliseconds(30));
    QVERIFY2(bench.sent.endsWith("N\r\n"), bench.sent.constData());
    QCOMPARE(bench.warnings.size(), 1);
}

void TestConsoleSessionQuestions::question_severalInOneCommand()
{
    SessionBench bench(shippedDescription(QStringLiteral("Hua3.xml")));
    bench.logIn();
    bench.submit("save\r\n");
    bench.takeSent();
    bench.feed("save\r\nAre you sure? [Y/N]:");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("Y\r\n"));
    bench.feed("Y\r\n(To leave the existing filename unchanged, press the enter key):");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("\r\n"));
    bench.feed("\r\nflash:/startup.cfg exists, overwrite? [Y/N]:");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("Y\r\n"));
    bench.feed("Y\r\nSaved.\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies.size(), 1);
    QCOMPARE(bench.warnings, QStringList());
}

void TestConsoleSessionQuestions::question_lineIsNeverTypedIntoOne()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("clear\r\nquit\r\n");
    bench.takeSent();
    bench.feed("clear\r\nContinue? [Y/N]:");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("N\r\n"));
    bench.feed("N\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("quit\r\n"));
}

void TestConsoleSessionQuestions::question_askedForEver_endsTheReply()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("clear\r\n");
    bench.takeSent();
    bench.feed("clear\r\n");
    int asked = 0;
    while (bench.replies.isEmpty() && asked < 100) {
        ++asked;
        bench.feed("Yes or no? [Y/N]:");
        bench.pass(milliseconds(30));
        if (bench.replies.isEmpty())
            bench.feed("N\r\n");
    }
    QCOMPARE(asked, 9);
    QVERIFY(bench.replies.first().endsWith("[Y/N]:"));
}

void TestConsoleSessionQuestions::question_standingBeforeTheBlock_data()
{
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<QByteArray>("typed");
    QTest::newRow("answer") << QByteArray("Y\r\n") << QByteArray("Y\r\n");
    QTest::newRow("command") << QByteArray("dis\r\n") << QByteArray("N\r\n");
}

void TestConsoleSessionQuestions::question_standingBeforeTheBlock()
{
    QFETCH(QByteArray, block);
    QFETCH(QByteArray, typed);
    SessionBench bench;
    bench.logIn();
    bench.feed("\r\nA question that somebody else is asked? [Y/N]:");
    bench.submit(block);
    QCOMPARE(bench.takeSent(), typed);
    bench.feed(typed + "so be it\r\n<NAME>");
    bench.pass(milliseconds(300));
    if (typed == block) {
        QCOMPARE(bench.replies, QByteArrayList({typed + "so be it\r\n<NAME>"}));
        return;
    }
    QCOMPARE(bench.warnings.size(), 1);
    QCOMPARE(bench.takeSent(), block);
    bench.feed("dis\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"dis\r\n<NAME>"})); // what came of the question is in no reply
}

void TestConsoleSessionQuestions::question_everyEnding_isSeen_data()
{
    QTest::addColumn<QByteArray>("ending");
    QTest::addColumn<bool>("isQuestion");
    for (const char *ending :
         {"[Y/N]:", "[Y/N]", "[y/n]:", "(y/n)[n]:", "[Y(yes)/N(no)/C(cancel)]:", "[Y/N]: ", "press the enter key):"})
        QTest::newRow(ending) << QByteArray(ending) << true;
    for (const char *ending : {"[Y/N] is what it asks", "[Y/N]:\r\n", "Y/N"})
        QTest::newRow(ending) << QByteArray(ending) << false;
}

void TestConsoleSessionQuestions::question_everyEnding_isSeen()
{
    QFETCH(QByteArray, ending);
    QFETCH(bool, isQuestion);
    SessionBench bench;
    bench.logIn();
    bench.submit("clear\r\n");
    bench.takeSent();
    bench.feed("clear\r\nContinue? " + ending);
    bench.pass(milliseconds(1500));
    QCOMPARE(bench.takeSent(), QByteArray(isQuestion ? "N\r\n" : ""));
    // The same where the line breaks before it.
    bench.feed("\r\n" + ending);
    bench.pass(milliseconds(1500));
    QCOMPARE(bench.takeSent(), QByteArray(isQuestion ? "N\r\n" : ""));
}

void TestConsoleSessionQuestions::pager_pageKey_turnsAllPages_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::newRow("with CR LF") << QByteArray("space\r\n");
    QTest::newRow("without") << QByteArray("space");
}

void TestConsoleSessionQuestions::pager_pageKey_turnsAllPages()
{
    QFETCH(QByteArray, key);
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\n" + key);
    bench.takeSent();
    bench.feed("dis\r\npage 1\r\n" + kPager);
    for (int page = 2; page < 6; ++page) {
        bench.pass(milliseconds(30));
        QCOMPARE(bench.takeSent(), QByteArray(" "));
        bench.feed(kErase + "page " + QByteArray::number(page) + "\r\n" + (page < 5 ? kPager : "<NAME>"));
    }
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray());
    QCOMPARE(bench.replies, QByteArrayList({"dis\r\npage 1\r\npage 2\r\npage 3\r\npage 4\r\npage 5\r\n<NAME>"}));
}

void TestConsoleSessionQuestions::pager_moreLines_turnAllPages()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\nquit\r\n");
    bench.takeSent();
    bench.feed("dis\r\n1\r\n" + kPager);
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray(" "));
    bench.feed(kErase + "2\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("quit\r\n"));
    bench.feed("quit\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"dis\r\n1\r\n2\r\n<NAME>quit\r\n<NAME>"}));
}

void TestConsoleSessionQuestions::pager_nothingLeft_isDelivered()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\n");
    bench.takeSent();
    bench.feed("dis\r\n1\r\n" + kPager);
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray());
    QCOMPARE(bench.replies, QByteArrayList({"dis\r\n1\r\n" + kPager}));
}

void TestConsoleSessionQuestions::pager_oneKey_isForOneListing()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("one\r\nspace\r\ntwo\r\n");
    bench.takeSent();
    bench.feed("one\r\n1\r\n" + kPager);
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray(" "));
    bench.feed(kErase + "<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("two\r\n"));
    bench.feed("two\r\n1\r\n" + kPager);
    bench.pass(seconds(1));
    QCOMPARE(bench.takeSent(), QByteArray());
    QCOMPARE(bench.replies, QByteArrayList({"one\r\n1\r\n<NAME>two\r\n1\r\n" + kPager}));
}

void TestConsoleSessionQuestions::pager_everyErasure_isDropped_data()
{
    QTest::addColumn<QByteArray>("written"); // behind the key
    QTest::addColumn<QByteArray>("kept");
    QTest::newRow("16 columns") << erasing(16) + "2\r\n" << QByteArray("2\r\n");
    QTest::newRow("42 columns") << erasing(42) + "2\r\n" << QByteArray("2\r\n");
    QTest::newRow("with NULs") << QByteArray("\x1b[1\0"
                                             "6D",
                                             6)
                                      + QByteArray(16, ' ') + "\x1b[16D2\r\n"
                               << QByteArray("2\r\n");
    QTest::newRow("carriage return") << "\r" + QByteArray(16, ' ') + "\r2\r\n" << QByteArray("2\r\n");
    QTest::newRow("backspaces") << QByteArray(16, '\b') + QByteArray(16, ' ') + QByteArray(16, '\b') + "2\r\n"
                                << QByteArray("2\r\n");
    QTest::newRow("none") << QByteArray("2\r\n") << QByteArray("2\r\n");
    QTest::newRow("line end instead") << QByteArray("\r\n2\r\n") << QByteArray("\r\n2\r\n");
    QTest::newRow("data of blanks") << erasing(16) + "    2\r\n" << QByteArray("    2\r\n");
    QTest::newRow("another sequence") << QByteArray("\x1b[2K2\r\n") << QByteArray("\x1b[2K2\r\n");
    QTest::newRow("half a sequence") << QByteArray("\x1b[16D    2\r\n") << QByteArray("\x1b[16D    2\r\n");
}

void TestConsoleSessionQuestions::pager_everyErasure_isDropped()
{
    QFETCH(QByteArray, written);
    QFETCH(QByteArray, kept);
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\nspace");
    bench.feed("dis\r\n1\r\n" + kPager);
    bench.pass(milliseconds(30));
    bench.feed(written + "<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"dis\r\n1\r\n" + kept + "<NAME>"}));
}

void TestConsoleSessionQuestions::pager_leftOver_isLeftFirst()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\n");
    bench.feed("dis\r\n1\r\n" + kPager);
    bench.pass(milliseconds(30));
    bench.forget();
    bench.submit("display vlan\r\n");
    QCOMPARE(bench.takeSent(), QByteArray("\x03"));
    bench.feed(kErase + "<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.takeSent(), QByteArray("display vlan\r\n"));
    bench.feed("display vlan\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"display vlan\r\n<NAME>"}));
}

void TestConsoleSessionQuestions::pager_leftOver_withoutAPrompt_isUnanswered()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\n");
    bench.feed("dis\r\n1\r\n" + kPager);
    bench.pass(milliseconds(30));
    bench.forget();
    bench.submit("display vlan\r\n");
    bench.pass(minutes(1));
    QVERIFY2(!bench.sent.contains("display"), bench.sent.constData()); // the first letters would be keys
    QCOMPARE(bench.replies, QByteArrayList({""}));
}

void TestConsoleSessionQuestions::pager_leftOver_pageKeyFirst_turnsItsPages()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\n");
    bench.feed("dis\r\n1\r\n" + kPager);
    bench.pass(milliseconds(30));
    bench.forget();
    bench.submit("space\r\n");
    QCOMPARE(bench.takeSent(), QByteArray(" "));
    bench.feed(kErase + "2\r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"2\r\n<NAME>"}));
}

void TestConsoleSessionQuestions::ownPaging_endsAfterQuietAtThePager()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\n");
    bench.feed("dis\r\n1\r\n" + kPager);
    bench.pass(milliseconds(30));
    bench.forget();
    bench.submit("    \r\n");
    QCOMPARE(bench.takeSent(), QByteArray("    \r\n"));
    bench.feed(kErase + "2\r\n" + kPager);
    bench.pass(milliseconds(299));
    QCOMPARE(bench.replies, QByteArrayList());
    bench.pass(milliseconds(1));
    QCOMPARE(bench.takeSent(), QByteArray());
    QCOMPARE(bench.replies, QByteArrayList({"2\r\n" + kPager}));
}

void TestConsoleSessionQuestions::ownPaging_endsAtThePrompt()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\n");
    bench.feed("dis\r\n1\r\n" + kPager);
    bench.pass(milliseconds(30));
    bench.forget();
    bench.submit("    \r\n");
    bench.feed(kErase + "2\r\n<NAME>   \r\n<NAME>");
    bench.pass(milliseconds(30));
    QCOMPARE(bench.replies, QByteArrayList({"2\r\n<NAME>   \r\n<NAME>"}));
}

void TestConsoleSessionQuestions::ownPaging_laterPages_areWithoutErasures()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\n");
    bench.feed("dis\r\n1\r\n" + kPager);
    bench.pass(milliseconds(30));
    bench.forget();
    bench.submit("    \r\n");
    bench.feed(kErase + "2\r\n" + kPager + kErase + "3\r\n" + kPager + kErase + "4\r\n" + kPager);
    bench.pass(milliseconds(300));
    QCOMPARE(bench.replies, QByteArrayList({"2\r\n3\r\n4\r\n" + kPager}));
}

// It answers each key with the same pager.
void TestConsoleSessionQuestions::pager_keptByTheSwitch_neverHangs()
{
    SessionBench bench;
    bench.logIn();
    bench.submit("dis\r\nspace");
    bench.feed("dis\r\n1\r\n");
    int keys = 0;
    while (bench.replies.isEmpty() && keys < 1000000) {
        bench.feed(kPager);
        bench.pass(milliseconds(100));
        ++keys;
    }
    QCOMPARE(bench.replies.size(), 1);
    QVERIFY(bench.replies.first().startsWith("dis\r\n1\r\n"));
}

QTEST_GUILESS_MAIN(TestConsoleSessionQuestions)
#include "tst_consolesession_questions.moc"
