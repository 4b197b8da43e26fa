// The command queue and the collection of replies, over the recording platform.
#include "consolescene.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <algorithm>
#include <limits>

using VM = SwitchDeviceViewModel;

namespace {

// Blocks whose label is known, and what they send. In the order of their labels.
const QByteArray kMore = "    \r\n";       // "--more--", by CurrentConfiguration
const QByteArray kEnter = "\r\n";          // "enter", by InputMore
const QByteArray kLogin = "admin\r\n";     // "login_cmd", by NeedUsername
const QByteArray kPassword = "secret\r\n"; // "password_cmd", by NeedPassword

RecordingPlatform &platform()
{
    return RecordingPlatform::instance();
}

QString running(const char *label)
{
    return QString::fromUtf8(label) + QStringLiteral("执行中...");
}

QString ended(const char *label)
{
    return QString::fromUtf8(label) + QStringLiteral("执行结束");
}

QString failed(const char *label)
{
    return QString::fromUtf8(label) + QStringLiteral("执行失败，请重试...");
}

class QueueScene : public ConsoleScene
{
public:
    explicit QueueScene(Family family = Family::Huawei)
        : ConsoleScene(family)
    {
        viewModel().setUserText(QStringLiteral("admin"));
        viewModel().setPasswordText(QStringLiteral("secret"));
        clear();
    }
    void enqueue(VM::ParseState state) { viewModel().slot_handleParseState(state); }
};

} // namespace

class TestSwitchDeviceViewModelQueue : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // Sending
    void enqueue_whileIdle_sendsAtOnce_inThisOrder();
    void enqueue_whileBusy_leavesInLabelOrder();
    void enqueue_labelsOfSeveralLanguages_areOrderedAsPlainText();
    void enqueue_sameLabelWhileBusy_sendsTheSecondBytesOnly();
    void enqueue_labelOfTheOutstandingBlock_isSentAfterIt();
    void enqueue_withoutBytes_endsTheWaitingOnly_data();
    void enqueue_withoutBytes_endsTheWaitingOnly();
    void send_withLogMore_logsTheBytes();
    void send_logsItsBytesForDevelopers();

    // Replies
    void reply_completesAfter200ms();
    void reply_beforeAnythingWasSent_completesWhatItBringsAbout();
    void reply_whileNothingIsOutstanding_isNotListenedTo();
    void reply_ofAnyThread_isReadOnTheOwnThread();
    void reply_inTwoChunks_eachCompletes();
    void reply_goesToTheFamilysParser_data();
    void reply_goesToTheFamilysParser();
    void reply_withLogMore_showsItsLines();
    void reply_withANul_isShownWhole();
    void reply_insideTheSending_isTakenAsAnyOther();
    void completed_whileSomebodySendsInAnswerToIt_keepsOneOutstanding();
    void completed_withNothingCurrent_isHarmless();

    // Silence
    void silence_asksForARepetition_andSendsEnter();
    void silence_withBlocksWaiting_keepsTheLabelOrder();
    void silence_isNeitherParsedNorShown();
    void silence_twice_doesNotPileUp();

    // Disconnecting
    void disconnect_inTheMiddle_freesTheQueue();
    void disconnect_completionFromBefore_leavesTheNewBlockAlone();
    void disconnect_completionFromBefore_withoutANewBlock_runs();
    void disconnect_replyFromBefore_completesWhatItCaused();
    void disconnect_replyFromBefore_leavesTheNextConnectionAlone();
    void disconnect_byTheReplyItself_completesWhatItSentSince();
    void disconnect_listeningOn_isNotListenedToTwice();

    // Received chunks that nobody reads
    void recAllData_findsNoParser();
    void recAllData_whileAReplyIsRead_asksForNone();

    // Two view models, many lines
    void twoViewModels_haveQueuesOfTheirOwn();
    void twoViewModels_takingTurns_hearTheirOwnReplies();

private:
    std::unique_ptr<MessageLog> _log;
};

void TestSwitchDeviceViewModelQueue::init()
{
    _log = std::make_unique<MessageLog>();
}

void TestSwitchDeviceViewModelQueue::cleanup()
{
    const QStringList warnings = _log->takeWarnings();
    _log.reset();
    QCOMPARE(warnings, QStringList());
}

void TestSwitchDeviceViewModelQueue::enqueue_whileIdle_sendsAtOnce_inThisOrder()
{
    QueueScene scene;
    QList<QByteArray> sentAtChange;
    QStringList loggedAtChange;
    const QObject watch;
    connect(&scene.viewModel(), &VM::isWaitingResponseChanged, &watch, [&] {
        sentAtChange = scene.sent();
        loggedAtChange = _log->lines();
    });
    _log->clear();
    scene.enqueue(VM::InputMore);
    QCOMPARE(scene.sent(), QList<QByteArray>{kEnter});
    QCOMPARE(platform().calls().first().thread, QThread::currentThread());
    QVERIFY(scene->isWaitingResponse());
    QCOMPARE(scene.signalTexts(), QStringList{QStringLiteral("isWaitingResponseChanged()")});
    // The property changes last.
    QCOMPARE(sentAtChange, QList<QByteArray>{kEnter});
    QCOMPARE(loggedAtChange, (QStringList{QStringLiteral("debug Processing command: \"enter\" : \"\\r\\n\""),
                                          QStringLiteral("info ") + running("enter")}));
}

void TestSwitchDeviceViewModelQueue::enqueue_whileBusy_leavesInLabelOrder()
{
    QueueScene scene;
    scene.enqueue(VM::NeedUsername); // idle: sent at once, although its label is not the smallest
    scene.enqueue(VM::NeedPassword);
    scene.enqueue(VM::InputMore);
    scene.enqueue(VM::CurrentConfiguration);
    QCOMPARE(scene.sent(), QList<QByteArray>{kLogin});
    for (int i = 0; i < 4; ++i)
        scene.complete();
    QCOMPARE(scene.sent(), (QList<QByteArray>{kLogin, kMore, kEnter, kPassword}));
    QCOMPARE(_log->lines(QStringLiteral("info")),
             (QStringList{running("login_cmd"), ended("login_cmd"), running("--more--"), ended("--more--"),
                          running("enter"), ended("enter"), running("password_cmd"), ended("password_cmd")}));
    QVERIFY(!scene->isWaitingResponse());
}

void TestSwitchDeviceViewModelQueue::enqueue_labelsOfSeveralLanguages_areOrderedAsPlainText()
{
    QueueScene scene;
    scene.enqueue(VM::InputMore);
    scene->saveSwitchDeviceCmd();    // "保存配置", U+4FDD
    scene->clearAllConfig();         // "清空配置", U+6E05
    scene.enqueue(VM::LoginSuccess); // "接口解析", U+63A5
    scene.enqueue(VM::NeedUsername);
    for (int i = 0; i < 5; ++i)
        scene.complete();
    QCOMPARE(_log->lines(QStringLiteral("info")).filter(QStringLiteral("执行中")),
             (QStringList{running("enter"), running("login_cmd"), running("保存配置"), running("接口解析"),
                          running("清空配置")}));
}

void TestSwitchDeviceViewModelQueue::enqueue_sameLabelWhileBusy_sendsTheSecondBytesOnly()
{
    QueueScene scene;
    scene.enqueue(VM::InputMore);
    scene.enqueue(VM::NeedUsername);
    scene->setUserText(QStringLiteral("operator"));
    scene.enqueue(VM::NeedUsername);
    scene.complete();
    scene.complete();
    QCOMPARE(scene.sent(), (QList<QByteArray>{kEnter, "operator\r\n"}));
}

void TestSwitchDeviceViewModelQueue::enqueue_labelOfTheOutstandingBlock_isSentAfterIt()
{
    QueueScene scene;
    scene.enqueue(VM::InputMore);
    scene.enqueue(VM::InputMore);
    QCOMPARE(scene.sent().size(), 1);
    scene.complete();
    QCOMPARE(scene.sent().size(), 2);
}

void TestSwitchDeviceViewModelQueue::enqueue_withoutBytes_endsTheWaitingOnly_data()
{
    QTest::addColumn<bool>("isBusy");
    QTest::newRow("while idle") << false;
    QTest::newRow("while a block is outstanding and one waits") << true;
}

void TestSwitchDeviceViewModelQueue::enqueue_withoutBytes_endsTheWaitingOnly()
{
    QFETCH(const bool, isBusy);
    QueueScene scene;
    if (isBusy) {
        scene.enqueue(VM::InputMore);
        scene.enqueue(VM::NeedUsername);
    }
    platform().setCommands(QStringLiteral("getSaveCommands"), QStringList());
    scene.clear();
    scene->saveSwitchDeviceCmd();
    QCOMPARE(scene.sent(), QList<QByteArray>());
    QVERIFY(!scene->isWaitingResponse());
    // Busy: the property said so already.
    QCOMPARE(scene.countOf("isWaitingResponseChanged"), isBusy ? 1 : 2);
    // The queue's own flag is another thing: the outstanding block still holds the next one back.
    scene.enqueue(VM::InputMore);
    QCOMPARE(scene.sent().size(), isBusy ? 0 : 1);
    if (!isBusy)
        return;
    scene.complete();
    QCOMPARE(scene.sent(), QList<QByteArray>{kEnter});
}

void TestSwitchDeviceViewModelQueue::send_withLogMore_logsTheBytes()
{
    QueueScene scene;
    scene->setLogMore(true);
    scene.enqueue(VM::NeedUsername);
    QCOMPARE(_log->lines(QStringLiteral("info")), (QStringList{running("login_cmd"), QStringLiteral("admin\r\n")}));
}

void TestSwitchDeviceViewModelQueue::send_logsItsBytesForDevelopers()
{
    QueueScene scene;
    scene->setUserText(QStringLiteral("a\"b"));
    _log->clear();
    scene.enqueue(VM::NeedUsername);
    QCOMPARE(_log->lines(QStringLiteral("debug")),
             QStringList{QStringLiteral("Processing command: \"login_cmd\" : \"a\\\"b\\r\\n\"")});
}

void TestSwitchDeviceViewModelQueue::reply_completesAfter200ms()
{
    // The best of several: other programs run on this machine, and make it later, but never earlier.
    qint64 best = std::numeric_limits<qint64>::max();
    for (int i = 0; i < 4; ++i) {
        QueueScene scene;
        scene.enqueue(VM::InputMore);
        scene.enqueue(VM::NeedUsername);
        _log->clear();
        QElapsedTimer timer;
        timer.start();
        platform().feed("nothing known");
        QVERIFY(QTest::qWaitFor([&scene] { return scene.sent().size() == 2; }));
        best = std::min(best, timer.elapsed());
        QVERIFY2(timer.elapsed() >= 200, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(_log->lines(QStringLiteral("info")), (QStringList{ended("enter"), running("login_cmd")}));
        scene.processEvents();
        QCOMPARE(scene.countOf("isWaitingResponseChanged"), 3);
        QVERIFY(scene->isWaitingResponse());
    }
    QVERIFY2(best < 250, qPrintable(QString::number(best)));
}

void TestSwitchDeviceViewModelQueue::reply_beforeAnythingWasSent_completesWhatItBringsAbout()
{
    // No disconnect has been: this reply is none from before one.
    QueueScene scene;
    scene.answer("Username:");
    QCOMPARE(scene.sent(), QList<QByteArray>{kLogin});
    QTRY_COMPARE(_log->lines(QStringLiteral("info")), (QStringList{running("login_cmd"), ended("login_cmd")}));
    QVERIFY(!scene->isWaitingResponse());
}

void TestSwitchDeviceViewModelQueue::reply_whileNothingIsOutstanding_isNotListenedTo()
{
    QueueScene scene;
    scene->setLogMore(true);
    scene.clear();
    platform().feed("before\r\nUsername:");
    scene.processEvents();
    scene.enqueue(VM::InputMore);
    scene.complete();
    scene.clear();
    platform().feed("behind\r\nUsername:");
    QTest::qWait(250); // longer than batching and completion take
    QCOMPARE(scene.signalTexts(), QStringList());
    QCOMPARE(scene.calls(), QStringList());
}

void TestSwitchDeviceViewModelQueue::reply_ofAnyThread_isReadOnTheOwnThread()
{
    QueueScene scene;
    const QThread *readOn = nullptr;
    const QObject watch;
    connect(
        &scene.viewModel(), &VM::parseStateChanged, &watch, [&readOn] { readOn = QThread::currentThread(); },
        Qt::DirectConnection);
    scene.enqueue(VM::InputMore);
    platform().feed("Username:");
    QCOMPARE(scene.countOf("parseStateChanged"), 0);
    scene.processEvents();
    QCOMPARE(scene.countOf("parseStateChanged"), 1);
    QCOMPARE(readOn, QThread::currentThread());
    // On the own thread it is read later, too: whoever delivers is never held up.
    platform().feedHere("Username:");
    QCOMPARE(scene.countOf("parseStateChanged"), 1);
    scene.processEvents();
    QCOMPARE(scene.countOf("parseStateChanged"), 2);
}

void TestSwitchDeviceViewModelQueue::reply_inTwoChunks_eachCompletes()
{
    QueueScene scene;
    scene.enqueue(VM::CurrentConfiguration);
    scene.enqueue(VM::InputMore);
    scene.enqueue(VM::NeedUsername);
    scene.enqueue(VM::NeedPassword);
    platform().feed("one");
    platform().feed("two");
    QTRY_COMPARE(scene.sent().size(), 3);
    QCOMPARE(_log->lines(QStringLiteral("info")), (QStringList{running("--more--"), ended("--more--"), running("enter"),
                                                               ended("enter"), running("login_cmd")}));
    QTest::qWait(250);
    QCOMPARE(scene.sent().size(), 3);
}

void TestSwitchDeviceViewModelQueue::reply_goesToTheFamilysParser_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("familyLabel");
    QTest::addColumn<bool>("isHuawei");
    const QString zh = QStringLiteral("zh_CN");
    const QString en = QStringLiteral("en");
    QTest::newRow("Huawei") << zh << QStringLiteral("华为") << true;
    QTest::newRow("Hua3") << zh << QStringLiteral("华三") << false;
    QTest::newRow("another") << zh << QStringLiteral("其他") << false;
    QTest::newRow("none") << zh << QString() << false;
    QTest::newRow("Huawei in English") << en << QStringLiteral("Huawei") << true;
    QTest::newRow("Hua3 in English") << en << QStringLiteral("Hua3") << false;
    QTest::newRow("Huawei in the other language") << en << QStringLiteral("华为") << false;
}

void TestSwitchDeviceViewModelQueue::reply_goesToTheFamilysParser()
{
    QFETCH(const QString, language);
    QFETCH(const QString, familyLabel);
    QFETCH(const bool, isHuawei);
    ConsoleScene scene(ConsoleScene::Family::None, language);
    scene->setCurlogoChanged(familyLabel);
    scene.clear();
    // Each family knows a failure text of its own.
    scene.answer("The password is invalid");
    QCOMPARE(scene.countOf("parseStateChanged"), isHuawei ? 1 : 0);
    scene.answer("authentication failed");
    QCOMPARE(scene.countOf("parseStateChanged"), 1);
}

void TestSwitchDeviceViewModelQueue::reply_withLogMore_showsItsLines()
{
    QueueScene scene;
    scene->setLogMore(true);
    scene.enqueue(VM::InputMore);
    scene.clear();
    platform().feed("\r\none\r\n\r\n 二 \r\n");
    scene.processEvents();
    QTRY_COMPARE(scene.announcedLines(), QStringList{QStringLiteral("one\n 二 ")});
}

void TestSwitchDeviceViewModelQueue::reply_withANul_isShownWhole()
{
    QueueScene scene;
    scene->setLogMore(true);
    scene.clear();
    scene.answer(QByteArray("one\0\r\ntwo", 9));
    QTRY_COMPARE(scene.announcedLines().size(), 1);
    QCOMPARE(scene.announcedLines().first().section(QLatin1Char('\n'), 1), QStringLiteral("two"));
}

void TestSwitchDeviceViewModelQueue::reply_insideTheSending_isTakenAsAnyOther()
{
    QueueScene scene;
    platform().setAnswer([](const QByteArray &sent) { platform().feedHere(sent == kEnter ? QByteArray() : "ok"); });
    scene.enqueue(VM::NeedUsername);
    scene.enqueue(VM::NeedPassword);
    QTRY_COMPARE(scene.sent(), (QList<QByteArray>{kLogin, kPassword}));
    QTRY_VERIFY(!scene->isWaitingResponse());
    QCOMPARE(_log->lines(QStringLiteral("info")),
             (QStringList{running("login_cmd"), ended("login_cmd"), running("password_cmd"), ended("password_cmd")}));
}

void TestSwitchDeviceViewModelQueue::completed_whileSomebodySendsInAnswerToIt_keepsOneOutstanding()
{
    // The panel asks for the next thing as soon as nothing is waited for, while a block waits.
    QueueScene scene;
    scene.enqueue(VM::CurrentConfiguration);
    scene.enqueue(VM::NeedPassword);
    const QObject panel;
    int asked = 0;
    connect(&scene.viewModel(), &VM::isWaitingResponseChanged, &panel, [&] {
        if (!scene->isWaitingResponse() && ++asked == 1)
            scene.enqueue(VM::InputMore);
    });
    scene.complete();
    QCOMPARE(scene.sent(), (QList<QByteArray>{kMore, kEnter}));
    scene.complete();
    QCOMPARE(scene.sent(), (QList<QByteArray>{kMore, kEnter, kPassword}));
}

void TestSwitchDeviceViewModelQueue::completed_withNothingCurrent_isHarmless()
{
    QueueScene scene;
    scene.complete();
    QCOMPARE(scene.signalTexts(), QStringList());
    QCOMPARE(scene.calls(), QStringList());
    QCOMPARE(_log->lines(QStringLiteral("info")), QStringList{ended("")});
}

void TestSwitchDeviceViewModelQueue::silence_asksForARepetition_andSendsEnter()
{
    QueueScene scene;
    scene.enqueue(VM::NeedUsername);
    scene.clear();
    _log->clear();
    platform().feed(QByteArray());
    scene.processEvents();
    QCOMPARE(_log->lines(QStringLiteral("info")),
             (QStringList{failed("login_cmd"), ended("login_cmd"), running("enter")}));
    QCOMPARE(scene.sent(), QList<QByteArray>{kEnter});
    QCOMPARE(scene.signalTexts(),
             (QStringList{QStringLiteral("isWaitingResponseChanged()"), QStringLiteral("isWaitingResponseChanged()")}));
    QVERIFY(scene->isWaitingResponse());
    QCOMPARE(scene.panelLines(), (QStringList{QStringLiteral("[Info] ") + failed("login_cmd"),
                                              QStringLiteral("[Info] ") + ended("login_cmd"),
                                              QStringLiteral("[Info] ") + running("enter")}));
}

void TestSwitchDeviceViewModelQueue::silence_withBlocksWaiting_keepsTheLabelOrder()
{
    QueueScene scene;
    scene.enqueue(VM::NeedUsername);
    scene.enqueue(VM::CurrentConfiguration);
    scene.enqueue(VM::NeedPassword);
    scene.answer(QByteArray());
    QCOMPARE(scene.sent(), (QList<QByteArray>{kLogin, kMore}));
    scene.complete();
    scene.complete();
    QCOMPARE(scene.sent(), (QList<QByteArray>{kLogin, kMore, kEnter, kPassword}));
}

void TestSwitchDeviceViewModelQueue::silence_isNeitherParsedNorShown()
{
    QueueScene scene;
    scene->setLogMore(true);
    scene.enqueue(VM::NeedUsername);
    scene.clear();
    scene.answer(QByteArray());
    QTest::qWait(250); // no completion of a parse comes later
    QCOMPARE(scene.announcedLines(), QStringList());
    QVERIFY(scene->isWaitingResponse());
    QCOMPARE(_log->lines(QStringLiteral("info")).filter(QStringLiteral("执行结束")), QStringList{ended("login_cmd")});
}

void TestSwitchDeviceViewModelQueue::silence_twice_doesNotPileUp()
{
    QueueScene scene;
    scene.enqueue(VM::NeedUsername);
    platform().feed(QByteArray());
    scene.processEvents();
    platform().feed(QByteArray());
    scene.processEvents();
    QCOMPARE(scene.sent(), (QList<QByteArray>{kLogin, kEnter, kEnter}));
    platform().feed("\r\n");
    QTRY_VERIFY(!scene->isWaitingResponse());
    QCOMPARE(scene.sent().size(), 3);
}

void TestSwitchDeviceViewModelQueue::disconnect_inTheMiddle_freesTheQueue()
{
    QueueScene scene;
    scene.enqueue(VM::NeedUsername);
    scene.enqueue(VM::NeedPassword);
    scene->disconnectDevice();
    scene.clear();
    scene.enqueue(VM::InputMore);
    QCOMPARE(scene.sent(), QList<QByteArray>{kEnter});
    scene.complete();
    QCOMPARE(scene.sent(), QList<QByteArray>{kEnter}); // what waited is gone
}

void TestSwitchDeviceViewModelQueue::disconnect_completionFromBefore_leavesTheNewBlockAlone()
{
    QueueScene scene;
    scene.enqueue(VM::NeedUsername);
    scene.answer("nothing known");
    scene->disconnectDevice();
    scene.enqueue(VM::InputMore);
    scene.enqueue(VM::CurrentConfiguration);
    scene.clear();
    _log->clear();
    QTest::qWait(300);
    QCOMPARE(scene.sent(), QList<QByteArray>());
    QVERIFY(scene->isWaitingResponse());
    QCOMPARE(_log->lines(QStringLiteral("info")), QStringList());
    // Its own reply completes it.
    platform().feed("nothing known");
    QTRY_COMPARE(scene.sent(), QList<QByteArray>{kMore});
}

void TestSwitchDeviceViewModelQueue::disconnect_completionFromBefore_withoutANewBlock_runs()
{
    QueueScene scene;
    scene.enqueue(VM::NeedUsername);
    scene.answer("nothing known");
    scene->disconnectDevice();
    _log->clear();
    QVERIFY(scene->isWaitingResponse());
    QTRY_COMPARE(_log->lines(QStringLiteral("info")), QStringList{ended("login_cmd")});
    QVERIFY(!scene->isWaitingResponse());
}

void TestSwitchDeviceViewModelQueue::disconnect_replyFromBefore_completesWhatItCaused()
{
    QueueScene scene;
    scene.enqueue(VM::NeedUsername);
    scene->disconnectDevice();
    platform().feed("Username:"); // was on its way
    scene.processEvents();        // is read: the user name goes out into the new session
    QCOMPARE(scene.sent(), (QList<QByteArray>{kLogin, kLogin}));
    _log->clear();
    QTRY_COMPARE(_log->lines(QStringLiteral("info")), QStringList{ended("login_cmd")});
    QVERIFY(!scene->isWaitingResponse());
}

void TestSwitchDeviceViewModelQueue::disconnect_replyFromBefore_leavesTheNextConnectionAlone()
{
    QueueScene scene;
    scene.enqueue(VM::NeedUsername);
    scene->disconnectDevice();
    platform().feed("nothing known"); // was on its way
    scene.processEvents();
    scene.clear();
    scene->deviceCommunicate();
    QTRY_COMPARE(scene.sent(), QList<QByteArray>{kEnter});
    _log->clear();
    QTest::qWait(300);
    QCOMPARE(_log->lines(QStringLiteral("info")), QStringList());
    QVERIFY(scene->isWaitingResponse());
}

// A refused login in the output of a configuration listing: it disconnects, and then asks for the listing's next page.
void TestSwitchDeviceViewModelQueue::disconnect_byTheReplyItself_completesWhatItSentSince()
{
    QueueScene scene;
    scene.enqueue(VM::NeedUsername);
    scene.clear();
    platform().feed("display current-configuration\r\nInvalid password\r\n");
    QTRY_COMPARE(scene.sent(), QList<QByteArray>{kMore});
    _log->clear();
    QTRY_COMPARE(_log->lines(QStringLiteral("info")), QStringList{ended("--more--")});
    QVERIFY(!scene->isWaitingResponse());
    QVERIFY(scene->isQueueIdle());
}

void TestSwitchDeviceViewModelQueue::disconnect_listeningOn_isNotListenedToTwice()
{
    QueueScene scene;
    scene->setLogMore(true);
    for (int i = 0; i < 3; ++i) {
        scene.enqueue(VM::InputMore);
        scene->disconnectDevice(); // leaves the connection to the session behind
    }
    scene.enqueue(VM::InputMore);
    scene.clear();
    platform().feed("once");
    scene.processEvents();
    QTRY_COMPARE(scene.announcedLines(), QStringList{QStringLiteral("once")});
    QTRY_VERIFY(!scene->isWaitingResponse());
    platform().feed("behind");
    QTest::qWait(150);
    QCOMPARE(scene.announcedLines(), QStringList{QStringLiteral("once")});
}

void TestSwitchDeviceViewModelQueue::recAllData_findsNoParser()
{
    QueueScene scene;
    scene->slot_RecAllData(QByteArray());
    scene.processEvents();
    QCOMPARE(_log->takeWarnings(), QStringList());
    scene->slot_RecAllData("Username:");
    scene.processEvents();
    QCOMPARE(
        _log->takeWarnings(),
        QStringList{QStringLiteral("QMetaObject::invokeMethod: No such method SwitchDeviceViewModel::startParsing()")});
    QCOMPARE(scene.signalTexts(), QStringList());
    QCOMPARE(scene.calls(), QStringList());
}

void TestSwitchDeviceViewModelQueue::recAllData_whileAReplyIsRead_asksForNone()
{
    QueueScene scene;
    scene.enqueue(VM::InputMore);
    platform().feedHere("nothing known"); // its parse is posted
    scene->slot_RecAllData("more");
    QCOMPARE(_log->takeWarnings(), QStringList());
    scene.processEvents();
    scene->slot_RecAllData("more");
    QCOMPARE(_log->takeWarnings().size(), 1);
}

void TestSwitchDeviceViewModelQueue::twoViewModels_haveQueuesOfTheirOwn()
{
    QueueScene first;
    SwitchDeviceViewModel second;
    first.enqueue(VM::InputMore);
    first.enqueue(VM::NeedUsername);
    second.slot_handleParseState(VM::CurrentConfiguration);
    QCOMPARE(first.sent(), (QList<QByteArray>{kEnter, kMore}));
    second.disconnectDevice();
    first.complete();
    QCOMPARE(first.sent(), (QList<QByteArray>{kEnter, kMore, kLogin}));
}

void TestSwitchDeviceViewModelQueue::twoViewModels_takingTurns_hearTheirOwnReplies()
{
    QueueScene first;
    SwitchDeviceViewModel second;
    second.setCurlogoChanged(QStringLiteral("华为"));
    const SignalRecorder recorder(&second);
    first.enqueue(VM::InputMore);
    platform().feed("Username:");
    QTRY_COMPARE(first.sent(), (QList<QByteArray>{kEnter, kLogin}));
    first.complete();
    QCOMPARE(recorder.count(QStringLiteral("parseStateChanged")), 0);
    first.clear();
    second.slot_handleParseState(VM::InputMore);
    platform().feed("Username:");
    first.processEvents();
    QCOMPARE(recorder.count(QStringLiteral("parseStateChanged")), 1);
    QCOMPARE(first.countOf("parseStateChanged"), 0);
}

QTEST_GUILESS_MAIN(TestSwitchDeviceViewModelQueue)
#include "tst_switchdeviceviewmodel_queue.moc"
