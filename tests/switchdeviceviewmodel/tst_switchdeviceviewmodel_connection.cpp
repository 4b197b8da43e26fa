// The connection, the login dialogue and the read-back, over the recording platform.
#include "consolescene.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtTest/QtTest>

#include <algorithm>
#include <chrono>
#include <limits>
#include <thread>

using Family = ConsoleScene::Family;
using Slow = RecordingPlatform::Slow;

Q_DECLARE_METATYPE(ConsoleScene::Family)

namespace {

//! Toasts and loader texts of a view model, which announces them from more than one thread.
class ToastLog : public QObject
{
public:
    struct Toast
    {
        QString text;
        int state = -1;
        const QThread *thread = nullptr;
    };

    explicit ToastLog(SwitchDeviceViewModel *viewModel)
    {
        QObject::connect(
            viewModel, &SwitchDeviceViewModel::showToast, this,
            [this](const QString &text, int state) {
                add({text, state, QThread::currentThread()});
            },
            Qt::DirectConnection);
        QObject::connect(
            viewModel, &SwitchDeviceViewModel::isShowLoader, this,
            [this](bool isShown, const QString &text) {
                add({QStringLiteral("loader %1").arg(text), isShown ? 1 : 0, QThread::currentThread()});
            },
            Qt::DirectConnection);
    }

    QVector<Toast> toasts() const
    {
        const QMutexLocker locker(&_lock);
        return _toasts;
    }
    QStringList texts() const
    {
        QStringList texts;
        for (const Toast &toast : toasts())
            texts.append(toast.text + QStringLiteral(", ") + QString::number(toast.state));
        return texts;
    }

private:
    void add(const Toast &toast)
    {
        const QMutexLocker locker(&_lock);
        _toasts.append(toast);
    }

    mutable QMutex _lock; // guards _toasts
    QVector<Toast> _toasts;
};

RecordingPlatform &platform()
{
    return RecordingPlatform::instance();
}

long long msBetween(const RecordingPlatform::Call &first, const RecordingPlatform::Call &second)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(second.time - first.time).count();
}

//! The timers that a view model runs: that of the log, and those that wait for credentials.
int timers(ConsoleScene &scene)
{
    return int(scene.viewModel().findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly).size());
}

QString toast(const QString &text, int state = 0)
{
    return QStringLiteral("showToast(") + text + QStringLiteral(", %1)").arg(state);
}

} // namespace

class TestSwitchDeviceViewModelConnection : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // Opening and closing
    void deviceCommunicate_opensOnTheSessionsThread_thenWakesTheConsole();
    void deviceCommunicate_takesThePortAsItIsSetAtTheCall();
    void deviceCommunicate_portThatDoesNotOpen_saysWhy_data();
    void deviceCommunicate_portThatDoesNotOpen_saysWhy();
    void deviceCommunicate_failureToast_comesFromTheSessionsThread();
    void deviceCommunicate_withoutALink_saysNoReason();
    void deviceCommunicate_wakeUpLine_isQueuedOnTheOwnThread();
    void disconnect_whileThePortOpens_wakesNothing();
    void disconnect_thenConnect_wakesOnce();
    void disconnect_closesThePortFirst_thenSaysSo();
    void disconnect_dropsWhatWaits_andLeavesTheProperty();
    void refreshCOM_returnsTheListUnchanged();
    void setUserPassword_isIgnored();
    void threadFinished_reopensWithTheStoredParameters();

    // The dialogue
    void parseState_hasItsEffect_data();
    void parseState_hasItsEffect();
    void loginFailed_whileABlockIsOutstanding_sendsNoPassword();
    void loginSuccess_pageKeysTakeNoLineEnd();
    void loginSuccess_withoutCommands_asksNothing();
    void login_fromTheFirstPromptToTheListing();
    void login_wrongPassword_endsTheConnection();
    void login_afterADisconnect_isReportedAgain();
    void login_afterADisconnect_isReportedAgain_withoutANewConnection();
    void login_thatArrivesWithTheDisconnect_doesNotHideTheNextOne_data();
    void login_thatArrivesWithTheDisconnect_doesNotHideTheNextOne();

    // Missing credentials
    void login_emptyUserName_asksOncePerSecond_untilOneIsSet();
    void login_emptyPassword_asksOncePerSecond_untilOneIsSet();
    void login_promptAgain_startsNoSecondTimer();
    void login_promptAgainWithAName_sendsItOnce();
    void login_bothMissing_askForEach();
    void disconnect_endsTheQuestions();

    // Read-back
    void readBack_writesAndReadsTwice();
    void readBack_waitsHalfASecondBeforeItReads();
    void readBack_failingWrite_saysSoTwice();
    void readBack_closedPort_isWrittenToByTheCallerOnly();
    void readBack_withoutALink_fails();

    // Destruction
    void destruction_whileThePortOpens_nothingFollows_data();
    void destruction_whileThePortOpens_nothingFollows();
    void destruction_duringTheReadBack_nothingFollows();
    void destruction_duringTheReadBacksPause_nothingFollows();
    void destruction_betweenReplyAndItsEffects_nothingFollows_data();
    void destruction_betweenReplyAndItsEffects_nothingFollows();

private:
    std::unique_ptr<MessageLog> _log;
};

void TestSwitchDeviceViewModelConnection::init()
{
    _log = std::make_unique<MessageLog>();
}

void TestSwitchDeviceViewModelConnection::cleanup()
{
    const QStringList warnings = _log->takeWarnings();
    _log.reset();
    QCOMPARE(warnings, QStringList());
}

void TestSwitchDeviceViewModelConnection::deviceCommunicate_opensOnTheSessionsThread_thenWakesTheConsole()
{
    ConsoleScene scene;
    scene->setCurrentCom(QStringLiteral("COM3"));
    scene->setBaudRate(115200);
    scene.clear();
    QVERIFY(scene->deviceCommunicate());
    platform().waitForSession();
    scene.processEvents();

    QCOMPARE(scene.calls(), (QStringList{QStringLiteral("connectToSerial(\"COM3\", 115200, 0, 0, 0)"),
                                         QStringLiteral("sendControlCmd(\"\\r\\n\")")}));
    QCOMPARE(platform().calls().at(0).thread, platform().sessionThread());
    QCOMPARE(scene.signalTexts(),
             (QStringList{QStringLiteral("showToast(, 0)"), QStringLiteral("signal_deviceCommunicate()"),
                          QStringLiteral("isWaitingResponseChanged()")}));
    QVERIFY(scene->isWaitingResponse());
    QCOMPARE(_log->lines(QStringLiteral("info")), QStringList{QStringLiteral("connect_cmd执行中...")});
}

void TestSwitchDeviceViewModelConnection::deviceCommunicate_takesThePortAsItIsSetAtTheCall()
{
    ConsoleScene scene;
    scene->setCurrentCom(QStringLiteral("COM3"));
    scene->deviceCommunicate();
    scene->setCurrentCom(QStringLiteral("COM4"));
    scene->setBaudRate(1200);
    platform().waitForSession();
    QCOMPARE(scene.calls(), QStringList{QStringLiteral("connectToSerial(\"COM3\", 9600, 0, 0, 0)")});
}

void TestSwitchDeviceViewModelConnection::deviceCommunicate_portThatDoesNotOpen_saysWhy_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("text");
    QTest::newRow("Chinese") << QStringLiteral("zh_CN") << QStringLiteral("串口 COM3 正被其他程序占用")
                             << QStringLiteral("串口打开失败串口 COM3 正被其他程序占用");
    QTest::newRow("English") << QStringLiteral("en") << QStringLiteral("it is in use")
                             << QStringLiteral("Could not open the serial port: it is in use");
    QTest::newRow("place marker in the reason")
        << QStringLiteral("zh_CN") << QStringLiteral("%1 100%") << QStringLiteral("串口打开失败%1 100%");
    QTest::newRow("no reason") << QStringLiteral("zh_CN") << QString() << QStringLiteral("串口打开失败");
}

void TestSwitchDeviceViewModelConnection::deviceCommunicate_portThatDoesNotOpen_saysWhy()
{
    QFETCH(const QString, language);
    QFETCH(const QString, error);
    QFETCH(const QString, text);
    ConsoleScene scene(Family::Huawei, language);
    platform().setOpenResult(false, error);
    const ToastLog toasts(&scene.viewModel());
    QVERIFY(scene->deviceCommunicate());
    platform().waitForSession();
    scene.processEvents();
    QCOMPARE(toasts.texts(), (QStringList{QStringLiteral(", 0"), text + QStringLiteral(", 0")}));
    QCOMPARE(scene.sent(), QList<QByteArray>());
    QVERIFY(!scene->isWaitingResponse());
}

void TestSwitchDeviceViewModelConnection::deviceCommunicate_failureToast_comesFromTheSessionsThread()
{
    ConsoleScene scene;
    platform().setOpenResult(false, QStringLiteral("?"));
    const ToastLog toasts(&scene.viewModel());
    scene->deviceCommunicate();
    platform().waitForSession();
    QCOMPARE(toasts.toasts().size(), 2);
    QCOMPARE(toasts.toasts().at(0).thread, QThread::currentThread());
    QCOMPARE(toasts.toasts().at(1).thread, platform().sessionThread());
}

void TestSwitchDeviceViewModelConnection::deviceCommunicate_withoutALink_saysNoReason()
{
    ConsoleScene scene;
    platform().setOpenResult(false, QStringLiteral("unseen"));
    platform().setHasComm(false);
    const ToastLog toasts(&scene.viewModel());
    scene->deviceCommunicate();
    platform().waitForSession();
    QCOMPARE(toasts.texts().last(), QStringLiteral("串口打开失败, 0"));
}

void TestSwitchDeviceViewModelConnection::deviceCommunicate_wakeUpLine_isQueuedOnTheOwnThread()
{
    ConsoleScene scene;
    scene->deviceCommunicate();
    platform().waitForSession();
    QCOMPARE(scene.sent(), QList<QByteArray>()); // the port is open; the own thread has not come to it yet
    scene.processEvents();
    const auto sends = platform().callsOf(QStringLiteral("sendControlCmd"));
    QCOMPARE(sends.size(), 1);
    QCOMPARE(sends.first().thread, QThread::currentThread());
}

void TestSwitchDeviceViewModelConnection::disconnect_whileThePortOpens_wakesNothing()
{
    ConsoleScene scene;
    platform().hold(Slow::Opening);
    scene->deviceCommunicate();
    QTRY_COMPARE(platform().heldCalls(Slow::Opening), 1);
    scene->disconnectDevice();
    platform().release(Slow::Opening);
    platform().waitForSession();
    scene.processEvents();
    QCOMPARE(scene.sent(), QList<QByteArray>());
    QVERIFY(!scene->isWaitingResponse());
}

void TestSwitchDeviceViewModelConnection::disconnect_thenConnect_wakesOnce()
{
    ConsoleScene scene;
    platform().hold(Slow::Opening);
    scene->deviceCommunicate();
    QTRY_COMPARE(platform().heldCalls(Slow::Opening), 1);
    scene->disconnectDevice();
    scene->deviceCommunicate();
    platform().release(Slow::Opening);
    platform().waitForSession();
    scene.processEvents();
    QCOMPARE(platform().callsOf(QStringLiteral("connectToSerial")).size(), 2);
    QCOMPARE(scene.sent(), QList<QByteArray>{"\r\n"});
}

void TestSwitchDeviceViewModelConnection::disconnect_closesThePortFirst_thenSaysSo()
{
    QStringList callsAtToast;
    ConsoleScene scene;
    connect(&scene.viewModel(), &SwitchDeviceViewModel::showToast, &scene.viewModel(),
            [&callsAtToast, &scene] { callsAtToast = scene.calls(); });
    scene->disconnectDevice();
    QCOMPARE(callsAtToast, QStringList{QStringLiteral("disConnectSerial()")});
    QCOMPARE(scene.signalTexts(), QStringList{toast(QStringLiteral("已断开连接"))});
}

void TestSwitchDeviceViewModelConnection::disconnect_dropsWhatWaits_andLeavesTheProperty()
{
    ConsoleScene scene;
    scene->slot_handleParseState(SwitchDeviceViewModel::InputMore);            // "enter", outstanding
    scene->slot_handleParseState(SwitchDeviceViewModel::CurrentConfiguration); // "--more--", waits
    scene.clear();
    _log->clear();
    scene->disconnectDevice();
    QVERIFY(scene->isWaitingResponse());
    QCOMPARE(scene.signalTexts(), QStringList{toast(QStringLiteral("已断开连接"))});

    // The label stays until the next completion; nothing follows that one.
    scene.complete();
    QCOMPARE(_log->lines(QStringLiteral("info")), QStringList{QStringLiteral("enter执行结束")});
    QVERIFY(!scene->isWaitingResponse());
    QCOMPARE(scene.sent(), QList<QByteArray>());
    scene.complete();
    QCOMPARE(_log->lines(QStringLiteral("info")).mid(1), QStringList{QStringLiteral("执行结束")});
}

void TestSwitchDeviceViewModelConnection::refreshCOM_returnsTheListUnchanged()
{
    ConsoleScene scene;
    QCOMPARE(scene->refreshCOM(), QVariantList());
    const QVariantList ports{QStringLiteral("COM10"), QStringLiteral("COM2"), QStringLiteral("COM2"), 7};
    platform().setPorts(ports);
    QCOMPARE(scene->refreshCOM(), ports);
    QCOMPARE(scene.calls(), (QStringList{QStringLiteral("getCOMList()"), QStringLiteral("getCOMList()")}));
}

void TestSwitchDeviceViewModelConnection::setUserPassword_isIgnored()
{
    ConsoleScene scene;
    scene->setUserPassword("admin", "secret");
    QCOMPARE(scene->userText(), QString());
    QCOMPARE(scene->passwordText(), QString());
    QCOMPARE(scene.signalTexts(), QStringList());
    QCOMPARE(scene.calls(), QStringList());
}

void TestSwitchDeviceViewModelConnection::threadFinished_reopensWithTheStoredParameters()
{
    // Nothing ever stores any: not those of the connection.
    ConsoleScene scene;
    scene->setCurrentCom(QStringLiteral("COM3"));
    scene.clear();
    emit scene->signal_threadFinished();
    QCOMPARE(scene.calls(), QStringList{QStringLiteral("connectToSerial(\"\", 0, 0, 0, 0)")});
    QCOMPARE(platform().calls().first().thread, QThread::currentThread());
    QCOMPARE(scene.signalTexts(), QStringList{QStringLiteral("signal_threadFinished()")});
}

void TestSwitchDeviceViewModelConnection::parseState_hasItsEffect_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("toasts"); // in the order of all signals; "*" is the change of isWaitingResponse
    const QString zh = QStringLiteral("zh_CN");
    const QString en = QStringLiteral("en");
    const QString none;
    const QStringList silent;

    QTest::newRow("NeedUsername") << zh << 0 << QStringLiteral("login_cmd") << QByteArray("管理员\r\n")
                                  << QStringList{QStringLiteral("login"), QStringLiteral("*"),
                                                 toast(QStringLiteral("用户名登录中"))};
    QTest::newRow("NeedUsername, English") << en << 0 << QStringLiteral("login_cmd") << QByteArray("管理员\r\n")
                                           << QStringList{QStringLiteral("login"), QStringLiteral("*"),
                                                          toast(QStringLiteral("Logging in with the user name"))};
    QTest::newRow("NeedPassword") << zh << 1 << QStringLiteral("password_cmd") << QByteArray("Pass word\r\n")
                                  << QStringList{QStringLiteral("login"), QStringLiteral("*"),
                                                 toast(QStringLiteral("密码登录中"))};
    QTest::newRow("NeedPassword, English") << en << 1 << QStringLiteral("password_cmd") << QByteArray("Pass word\r\n")
                                           << QStringList{QStringLiteral("login"), QStringLiteral("*"),
                                                          toast(QStringLiteral("Logging in with the password"))};
    QTest::newRow("NeedConfirmPassword") << zh << 2 << none << QByteArray() << silent;
    QTest::newRow("LoginSuccess") << zh << 3 << QStringLiteral("接口解析")
                                  << QByteArray("getPortStatusCommands 1\r\ngetPortStatusCommands 2\r\n")
                                  << QStringList{toast(QStringLiteral("已连console端口:COM3"), 1), QStringLiteral("*")};
    QTest::newRow("LoginSuccess, English")
        << en << 3 << QStringLiteral("Interface discovery")
        << QByteArray("getPortStatusCommands 1\r\ngetPortStatusCommands 2\r\n")
        << QStringList{toast(QStringLiteral("Connected to console port: COM3"), 1), QStringLiteral("*")};
    QTest::newRow("LoginFailed while idle")
        << zh << 4 << QStringLiteral("用户名") << QByteArray("Pass word\r\n")
        << QStringList{QStringLiteral("*"), toast(QStringLiteral("已断开连接")),
                       toast(QStringLiteral("登录失败,检查用户名或者密码后重新连接"))};
    QTest::newRow("LoginFailed while idle, English")
        << en << 4 << QStringLiteral("User name") << QByteArray("Pass word\r\n")
        << QStringList{QStringLiteral("*"), toast(QStringLiteral("Disconnected")),
                       toast(QStringLiteral("Login failed, check the user name or password and connect again"))};
    QTest::newRow("InputMore") << zh << 5 << QStringLiteral("enter") << QByteArray("\r\n")
                               << QStringList{QStringLiteral("*")};
    QTest::newRow("ConnectSuccess") << zh << 6 << none << QByteArray()
                                    << QStringList{toast(QStringLiteral("已连console端口:COM3"), 1)};
    QTest::newRow("CurrentConfiguration")
        << zh << 7 << QStringLiteral("--more--") << QByteArray("    \r\n") << QStringList{QStringLiteral("*")};
    QTest::newRow("ParseSuccess") << zh << 8 << none << QByteArray() << silent;
    QTest::newRow("ConfigInfo") << zh << 9 << QStringLiteral("--cinfig yes--") << QByteArray("Y\r\nquit\r\nquit\r\n")
                                << QStringList{QStringLiteral("*")};
    QTest::newRow("Unknown") << zh << 10 << none << QByteArray() << silent;
    QTest::newRow("beyond the last") << zh << 11 << none << QByteArray() << silent;
    QTest::newRow("far beyond") << zh << 1000 << none << QByteArray() << silent;
}

void TestSwitchDeviceViewModelConnection::parseState_hasItsEffect()
{
    QFETCH(const QString, language);
    QFETCH(const int, state);
    QFETCH(const QString, label);
    QFETCH(const QByteArray, bytes);
    QFETCH(QStringList, toasts);
    ConsoleScene scene(Family::Huawei, language);
    scene->setCurrentCom(QStringLiteral("COM3"));
    scene->setUserText(QStringLiteral("管理员"));
    scene->setPasswordText(QStringLiteral("Pass word"));
    scene.clear();
    _log->clear();

    scene->slot_handleParseState(static_cast<SwitchDeviceViewModel::ParseState>(state));
    toasts.replaceInStrings(QStringLiteral("*"), QStringLiteral("isWaitingResponseChanged()"));
    toasts.replaceInStrings(QStringLiteral("login"), QStringLiteral("currentconnectTypeChanged(0)"));
    QCOMPARE(scene.signalTexts(), toasts);
    QCOMPARE(scene.sent(), bytes.isEmpty() ? QList<QByteArray>() : QList<QByteArray>{bytes});
    QCOMPARE(_log->lines(QStringLiteral("info")),
             label.isEmpty() ? QStringList() : QStringList{label + scene.tr("执行中...")});
}

void TestSwitchDeviceViewModelConnection::loginFailed_whileABlockIsOutstanding_sendsNoPassword()
{
    ConsoleScene scene;
    scene->setPasswordText(QStringLiteral("secret"));
    scene->slot_handleParseState(SwitchDeviceViewModel::InputMore);
    scene.clear();
    scene->slot_handleParseState(SwitchDeviceViewModel::LoginFailed);
    QCOMPARE(scene.calls(), QStringList{QStringLiteral("disConnectSerial()")});
    QCOMPARE(scene.signalTexts(), (QStringList{toast(QStringLiteral("已断开连接")),
                                               toast(QStringLiteral("登录失败,检查用户名或者密码后重新连接"))}));
    scene.complete();
    QCOMPARE(scene.sent(), QList<QByteArray>());
}

void TestSwitchDeviceViewModelConnection::loginSuccess_pageKeysTakeNoLineEnd()
{
    ConsoleScene scene;
    platform().setCommands(QStringLiteral("getPortStatusCommands"),
                           {QStringLiteral("screen-length 0"), QStringLiteral("space"), QStringLiteral("端口"),
                            QStringLiteral("a space b"), QStringLiteral("Space"), QString()});
    scene->slot_handleParseState(SwitchDeviceViewModel::LoginSuccess);
    QCOMPARE(scene.sent(), QList<QByteArray>{"screen-length 0\r\nspace端口\r\na space bSpace\r\n\r\n"});
}

void TestSwitchDeviceViewModelConnection::loginSuccess_withoutCommands_asksNothing()
{
    ConsoleScene scene;
    platform().setCommands(QStringLiteral("getPortStatusCommands"), QStringList());
    scene->slot_handleParseState(SwitchDeviceViewModel::LoginSuccess);
    QCOMPARE(scene.sent(), QList<QByteArray>());
    QVERIFY(!scene->isWaitingResponse());
}

void TestSwitchDeviceViewModelConnection::login_fromTheFirstPromptToTheListing()
{
    ConsoleScene scene;
    scene->setCurrentCom(QStringLiteral("COM3"));
    scene->setUserText(QStringLiteral("admin"));
    scene->setPasswordText(QStringLiteral("secret"));
    scene.clear();
    _log->clear();
    scene->deviceCommunicate();
    QTRY_COMPARE(scene.sent().size(), 1);
    platform().feed("\r\nLogin authentication\r\n\r\n\r\nUsername:");
    QTRY_COMPARE(scene.sent().size(), 2);
    platform().feed("admin\r\nPassword:");
    QTRY_COMPARE(scene.sent().size(), 3);
    platform().feed("\r\nInfo: The max number of VTY users is 10.\r\n<Switch>");
    QTRY_COMPARE(scene.sent().size(), 4);

    QCOMPARE(scene.sent(), (QList<QByteArray>{"\r\n", "admin\r\n", "secret\r\n",
                                              "getPortStatusCommands 1\r\ngetPortStatusCommands 2\r\n"}));
    // Each reply gives the switch its 200 ms before the next block.
    const auto sends = platform().callsOf(QStringLiteral("sendControlCmd"));
    for (int i = 1; i < sends.size(); ++i) {
        QVERIFY2(msBetween(sends.at(i - 1), sends.at(i)) >= 200, qPrintable(sends.at(i).text));
    }
    scene.processEvents();
    QStringList shown = scene.signalTexts();
    QCOMPARE(shown.removeAll(QStringLiteral("isWaitingResponseChanged()")), 7);
    // Own connections come first: a state is seen behind what it causes.
    const QStringList expected{toast(QString()),
                               QStringLiteral("signal_deviceCommunicate()"),
                               QStringLiteral("currentconnectTypeChanged(0)"),
                               toast(QStringLiteral("用户名登录中")),
                               QStringLiteral("parseStateChanged(0)"),
                               QStringLiteral("currentconnectTypeChanged(0)"),
                               toast(QStringLiteral("密码登录中")),
                               QStringLiteral("parseStateChanged(1)"),
                               QStringLiteral("logMessage(登录成功..)"),
                               toast(QStringLiteral("已连console端口:COM3"), 1),
                               QStringLiteral("parseStateChanged(3)")};
    QCOMPARE(shown, expected);
    QCOMPARE(_log->lines(QStringLiteral("info")),
             (QStringList{QStringLiteral("connect_cmd执行中..."), QStringLiteral("connect_cmd执行结束"),
                          QStringLiteral("login_cmd执行中..."), QStringLiteral("login_cmd执行结束"),
                          QStringLiteral("password_cmd执行中..."), QStringLiteral("password_cmd执行结束"),
                          QStringLiteral("接口解析执行中...")}));
    QStringList panel;
    for (const QString &line : _log->lines(QStringLiteral("info")))
        panel.append(QStringLiteral("[Info] ") + line);
    QCOMPARE(scene.panelLines(), panel);
}

void TestSwitchDeviceViewModelConnection::login_wrongPassword_endsTheConnection()
{
    ConsoleScene scene;
    scene->setPasswordText(QStringLiteral("wrong"));
    scene->slot_handleParseState(SwitchDeviceViewModel::NeedPassword);
    scene.clear();
    _log->clear();
    scene.answer("\r\nAuthentication fail\r\n");
    QCOMPARE(scene.calls(), QStringList{QStringLiteral("disConnectSerial()")});
    QCOMPARE(scene.signalTexts().mid(0, 2),
             (QStringList{toast(QStringLiteral("已断开连接")),
                          toast(QStringLiteral("登录失败,检查用户名或者密码后重新连接"))}));
    // Nothing was sent since: the reply still completes what it answered, and nothing follows.
    QTRY_COMPARE(_log->lines(QStringLiteral("info")), QStringList{QStringLiteral("password_cmd执行结束")});
    QCOMPARE(scene.sent(), QList<QByteArray>());
    QVERIFY(!scene->isWaitingResponse());
}

void TestSwitchDeviceViewModelConnection::login_afterADisconnect_isReportedAgain()
{
    ConsoleScene scene;
    scene.logIn();
    scene->slot_handleParseState(SwitchDeviceViewModel::InputMore);
    scene.clear();
    scene.answer("<Switch>");
    QCOMPARE(scene.announcedLines(), QStringList());
    scene->disconnectDevice();
    scene->deviceCommunicate();
    platform().waitForSession();
    scene.processEvents();
    scene.answer("<Switch>");
    QCOMPARE(scene.announcedLines(), QStringList{QStringLiteral("登录成功..")});
}

void TestSwitchDeviceViewModelConnection::login_afterADisconnect_isReportedAgain_withoutANewConnection()
{
    ConsoleScene scene;
    scene.logIn();
    scene->disconnectDevice();
    scene.clear();
    scene.answer("<Switch>");
    QCOMPARE(scene.announcedLines(), QStringList{QStringLiteral("登录成功..")});
}

void TestSwitchDeviceViewModelConnection::login_thatArrivesWithTheDisconnect_doesNotHideTheNextOne_data()
{
    QTest::addColumn<bool>("isReadFirst");
    QTest::newRow("read before the user connects again") << true;
    QTest::newRow("read when the new connection stands") << false;
}

void TestSwitchDeviceViewModelConnection::login_thatArrivesWithTheDisconnect_doesNotHideTheNextOne()
{
    QFETCH(const bool, isReadFirst);
    ConsoleScene scene;
    scene->deviceCommunicate();
    platform().waitForSession();
    scene.processEvents();
    platform().feed("<Switch>"); // on its way while the user disconnects
    scene->disconnectDevice();
    if (isReadFirst)
        scene.processEvents();
    scene->deviceCommunicate();
    platform().waitForSession();
    scene.processEvents();
    scene.clear();
    scene.answer("<Switch>");
    QCOMPARE(scene.announcedLines(), QStringList{QStringLiteral("登录成功..")});
}

void TestSwitchDeviceViewModelConnection::login_emptyUserName_asksOncePerSecond_untilOneIsSet()
{
    ConsoleScene scene;
    QElapsedTimer timer;
    timer.start();
    scene->slot_handleParseState(SwitchDeviceViewModel::NeedUsername);
    QCOMPARE(scene.signalTexts().size(), 1); // currentconnectTypeChanged, and no toast yet
    QCOMPARE(scene.countOf("currentconnectTypeChanged"), 1);
    QCOMPARE(timers(scene), 2);
    scene.clear();
    QTRY_COMPARE_WITH_TIMEOUT(scene.countOf("showToast"), 1, 3000);
    QVERIFY2(timer.elapsed() >= 950 && timer.elapsed() < 1500, qPrintable(QString::number(timer.elapsed())));
    QTRY_COMPARE_WITH_TIMEOUT(scene.countOf("showToast"), 2, 3000);
    QVERIFY2(timer.elapsed() >= 1900 && timer.elapsed() < 2500, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(scene.signalTexts(),
             (QStringList{toast(QStringLiteral("请先设置用户名")), toast(QStringLiteral("请先设置用户名"))}));
    QCOMPARE(scene.sent(), QList<QByteArray>());
    QCOMPARE(_log->lines(QStringLiteral("debug")).count(QStringLiteral("_userName is null")), 2);

    scene->setUserText(QStringLiteral("admin"));
    QCOMPARE(scene.sent(), QList<QByteArray>()); // it is looked at when the timer comes round
    scene.clear();
    QTRY_COMPARE_WITH_TIMEOUT(scene.sent(), QList<QByteArray>{"admin\r\n"}, 3000);
    QCOMPARE(scene.signalTexts(),
             (QStringList{QStringLiteral("isWaitingResponseChanged()"), toast(QStringLiteral("用户名登录中"))}));
    QVERIFY(_log->lines(QStringLiteral("debug")).contains(QStringLiteral("user name: \"admin\"")));
    QCOMPARE(_log->lines(QStringLiteral("info")), QStringList{QStringLiteral("login_cmd执行中...")});
    QTRY_COMPARE(timers(scene), 1);
    scene.clear();
    QTest::qWait(1100);
    QCOMPARE(scene.signalTexts(), QStringList());
    QCOMPARE(scene.sent(), QList<QByteArray>());
}

void TestSwitchDeviceViewModelConnection::login_emptyPassword_asksOncePerSecond_untilOneIsSet()
{
    ConsoleScene scene(Family::Huawei, QStringLiteral("en"));
    scene->slot_handleParseState(SwitchDeviceViewModel::NeedPassword);
    QCOMPARE(scene.countOf("currentconnectTypeChanged"), 1);
    scene.clear();
    QTRY_COMPARE_WITH_TIMEOUT(scene.signalTexts(), QStringList{toast(QStringLiteral("Please set the password first"))},
                              3000);
    scene->setPasswordText(QStringLiteral("secret"));
    scene.clear();
    QTRY_COMPARE_WITH_TIMEOUT(scene.sent(), QList<QByteArray>{"secret\r\n"}, 3000);
    QCOMPARE(scene.signalTexts(), (QStringList{QStringLiteral("isWaitingResponseChanged()"),
                                               toast(QStringLiteral("Logging in with the password"))}));
    QCOMPARE(_log->lines(QStringLiteral("info")), QStringList{QStringLiteral("password_cmd in progress...")});
    QTRY_COMPARE(timers(scene), 1);
}

void TestSwitchDeviceViewModelConnection::login_promptAgain_startsNoSecondTimer()
{
    ConsoleScene scene;
    for (int i = 0; i < 3; ++i) {
        scene->slot_handleParseState(SwitchDeviceViewModel::NeedUsername);
        scene->slot_handleParseState(SwitchDeviceViewModel::NeedPassword);
    }
    QCOMPARE(timers(scene), 3);
    QCOMPARE(scene.countOf("currentconnectTypeChanged"), 6);
}

void TestSwitchDeviceViewModelConnection::login_promptAgainWithAName_sendsItOnce()
{
    ConsoleScene scene;
    scene->slot_handleParseState(SwitchDeviceViewModel::NeedUsername);
    scene->slot_handleParseState(SwitchDeviceViewModel::NeedPassword);
    scene->setUserText(QStringLiteral("admin"));
    scene->setPasswordText(QStringLiteral("secret"));
    scene->slot_handleParseState(SwitchDeviceViewModel::NeedUsername);
    QCOMPARE(scene.sent(), QList<QByteArray>{"admin\r\n"});
    scene.complete();
    scene->slot_handleParseState(SwitchDeviceViewModel::NeedPassword);
    scene.complete();
    QTRY_COMPARE(timers(scene), 1);
    QTest::qWait(1100);
    QCOMPARE(scene.sent(), (QList<QByteArray>{"admin\r\n", "secret\r\n"}));
}

void TestSwitchDeviceViewModelConnection::login_bothMissing_askForEach()
{
    ConsoleScene scene;
    scene->slot_handleParseState(SwitchDeviceViewModel::NeedUsername);
    scene->slot_handleParseState(SwitchDeviceViewModel::NeedPassword);
    scene.clear();
    QTRY_COMPARE_WITH_TIMEOUT(scene.countOf("showToast"), 2, 3000);
    QStringList shown = scene.signalTexts();
    shown.sort();
    QStringList expected{toast(QStringLiteral("请先设置用户名")), toast(QStringLiteral("请先设置密码"))};
    expected.sort();
    QCOMPARE(shown, expected);
    scene->setUserText(QStringLiteral("admin")); // ends the one, not the other
    QTRY_COMPARE_WITH_TIMEOUT(scene.sent(), QList<QByteArray>{"admin\r\n"}, 3000);
    QTRY_COMPARE(timers(scene), 2);
}

void TestSwitchDeviceViewModelConnection::disconnect_endsTheQuestions()
{
    ConsoleScene scene;
    scene->slot_handleParseState(SwitchDeviceViewModel::NeedUsername);
    scene->slot_handleParseState(SwitchDeviceViewModel::NeedPassword);
    scene->disconnectDevice();
    scene->setUserText(QStringLiteral("admin"));
    scene.clear();
    QTRY_COMPARE(timers(scene), 1);
    QTest::qWait(1100);
    QCOMPARE(scene.signalTexts(), QStringList());
    QCOMPARE(scene.calls(), QStringList());
}

void TestSwitchDeviceViewModelConnection::readBack_writesAndReadsTwice()
{
    ConsoleScene scene;
    platform().setReadReply("\r\n<Switch>");
    const ToastLog toasts(&scene.viewModel());
    scene->slot_readBack();
    QTRY_COMPARE(toasts.texts().count(QStringLiteral("loader , 0")), 2);
    QCOMPARE(toasts.texts(), (QStringList{QStringLiteral("loader 回读中..., 1"), QStringLiteral("loader , 0"),
                                          QStringLiteral("loader , 0")}));
    QStringList calls = scene.calls();
    calls.sort();
    QCOMPARE(calls, (QStringList{QStringLiteral("getIsConnected()"), QStringLiteral("rawWrite(\"\\r\")"),
                                 QStringLiteral("rawWrite(\"\\r\")"), QStringLiteral("timedRead(3000)"),
                                 QStringLiteral("timedRead(3000)")}));
    QCOMPARE(_log->lines(QStringLiteral("debug")).count(QStringLiteral("read back para \"\\r\\n<Switch>\"")), 2);

    // Once on the caller's thread and once on one of its own.
    const auto writes = platform().callsOf(QStringLiteral("rawWrite"));
    QVERIFY(writes.at(0).thread != writes.at(1).thread);
    QVERIFY(writes.at(0).thread == QThread::currentThread() || writes.at(1).thread == QThread::currentThread());
    for (const auto &write : writes)
        QVERIFY(write.thread != platform().sessionThread());
    scene.end(); // waits for the other thread to be through with its signals
}

void TestSwitchDeviceViewModelConnection::readBack_waitsHalfASecondBeforeItReads()
{
    // The best of a few: other programs run on this machine, and make it later, but never earlier.
    constexpr long long kLate = 600;
    long long best = std::numeric_limits<long long>::max();
    for (int i = 0; i < 3 && best >= kLate; ++i) {
        ConsoleScene scene;
        scene->slot_readBack();
        QTRY_COMPARE(platform().callsOf(QStringLiteral("timedRead")).size(), 2);
        const auto reads = platform().callsOf(QStringLiteral("timedRead"));
        for (const auto &write : platform().callsOf(QStringLiteral("rawWrite"))) {
            const auto &read = reads.at(0).thread == write.thread ? reads.at(0) : reads.at(1);
            QCOMPARE(read.thread, write.thread);
            QVERIFY(msBetween(write, read) >= 500);
            best = std::min(best, msBetween(write, read));
        }
    }
    QVERIFY2(best < kLate, qPrintable(QString::number(best)));
}

void TestSwitchDeviceViewModelConnection::readBack_failingWrite_saysSoTwice()
{
    ConsoleScene scene;
    platform().setWriteResults({false});
    const ToastLog toasts(&scene.viewModel());
    scene->slot_readBack();
    QTRY_COMPARE(toasts.texts().size(), 5);
    QStringList texts = toasts.texts();
    QCOMPARE(texts.takeFirst(), QStringLiteral("loader 回读中..., 1"));
    QCOMPARE(texts.count(QStringLiteral("loader , 0")), 2);
    QCOMPARE(texts.count(QStringLiteral("回读失败, 3")), 2);
    QCOMPARE(texts.first(), QStringLiteral("loader , 0")); // the loader goes before its toast comes
    QCOMPARE(texts.last(), QStringLiteral("回读失败, 3"));
    QCOMPARE(platform().callsOf(QStringLiteral("timedRead")).size(), 0);
    scene.end(); // waits for the other thread to be through with its signals
}

void TestSwitchDeviceViewModelConnection::readBack_closedPort_isWrittenToByTheCallerOnly()
{
    ConsoleScene scene;
    platform().setConnected(false);
    const ToastLog toasts(&scene.viewModel());
    scene->slot_readBack();
    QTRY_COMPARE(toasts.texts().size(), 4);
    QCOMPARE(toasts.texts().count(QStringLiteral("回读失败, 3")), 1);
    const auto writes = platform().callsOf(QStringLiteral("rawWrite"));
    QCOMPARE(writes.size(), 1);
    QCOMPARE(writes.first().thread, QThread::currentThread());
    for (const auto &shown : toasts.toasts()) {
        if (shown.state == 3)
            QVERIFY(shown.thread != QThread::currentThread());
    }
    scene.end(); // waits for the other thread to be through with its signals
}

void TestSwitchDeviceViewModelConnection::readBack_withoutALink_fails()
{
    ConsoleScene scene;
    platform().setHasComm(false);
    const ToastLog toasts(&scene.viewModel());
    scene->slot_readBack();
    QTRY_COMPARE(toasts.texts().count(QStringLiteral("回读失败, 3")), 2);
    QCOMPARE(scene.calls(), QStringList());
    scene.end(); // waits for the other thread to be through with its signals
}

void TestSwitchDeviceViewModelConnection::destruction_whileThePortOpens_nothingFollows_data()
{
    QTest::addColumn<bool>("isOpen");
    QTest::newRow("it opens") << true;
    QTest::newRow("it does not") << false;
}

void TestSwitchDeviceViewModelConnection::destruction_whileThePortOpens_nothingFollows()
{
    QFETCH(const bool, isOpen);
    ConsoleScene scene;
    platform().setOpenResult(isOpen, QStringLiteral("?"));
    platform().hold(Slow::Opening);
    scene->deviceCommunicate();
    QTRY_COMPARE(platform().heldCalls(Slow::Opening), 1);
    scene.clear();
    scene.end(); // does not wait for it
    QCOMPARE(scene.calls(), (QStringList{QStringLiteral("stopComThread()"), QStringLiteral("disConnectSerial()")}));
    QCOMPARE(scene.signalTexts(), QStringList{toast(QStringLiteral("已断开连接"))});
    platform().release(Slow::Opening);
    platform().waitForSession();
    scene.processEvents();
    QCOMPARE(scene.signalTexts().size(), 1);
    QCOMPARE(scene.calls().size(), 2);
}

void TestSwitchDeviceViewModelConnection::destruction_duringTheReadBack_nothingFollows()
{
    ConsoleScene scene;
    platform().setWriteResults({false});
    platform().hold(Slow::ConnectionCheck);
    scene->slot_readBack();
    QTRY_COMPARE(platform().heldCalls(Slow::ConnectionCheck), 1);
    scene.end();
    const int emitted = scene.recorder().emissions().size();
    platform().clearCalls();
    platform().release(Slow::ConnectionCheck);
    QTRY_COMPARE(scene.calls(), QStringList{QStringLiteral("rawWrite(\"\\r\")")});
    QTest::qWait(100);
    QCOMPARE(scene.recorder().emissions().size(), emitted);
}

void TestSwitchDeviceViewModelConnection::destruction_duringTheReadBacksPause_nothingFollows()
{
    ConsoleScene scene;
    platform().setWriteResults({false});
    platform().hold(Slow::ConnectionCheck);
    scene->slot_readBack();
    QTRY_COMPARE(platform().heldCalls(Slow::ConnectionCheck), 1);
    platform().setWriteResults({true});
    platform().hold(Slow::Reading);
    platform().release(Slow::ConnectionCheck);
    QTRY_COMPARE(platform().heldCalls(Slow::Reading), 1);
    scene.end();
    const int emitted = scene.recorder().emissions().size();
    platform().release(Slow::Reading);
    QTRY_COMPARE(_log->lines(QStringLiteral("debug")).count(QStringLiteral("read back para \"\"")), 1);
    QTest::qWait(100);
    QCOMPARE(scene.recorder().emissions().size(), emitted);
}

void TestSwitchDeviceViewModelConnection::destruction_betweenReplyAndItsEffects_nothingFollows_data()
{
    QTest::addColumn<int>("stage");
    QTest::newRow("the chunk is on its way") << 0;
    QTest::newRow("its parse is posted") << 1;
    QTest::newRow("its completion is due") << 2;
    QTest::newRow("a credential is waited for") << 3;
}

void TestSwitchDeviceViewModelConnection::destruction_betweenReplyAndItsEffects_nothingFollows()
{
    QFETCH(const int, stage);
    ConsoleScene scene;
    scene->slot_handleParseState(SwitchDeviceViewModel::InputMore);
    scene.clear();
    if (stage == 0)
        platform().feed("Password:");
    else if (stage == 1)
        platform().feedHere("Password:");
    else
        scene.answer(stage == 2 ? "nothing known" : "Password:");
    scene.end();
    const int emitted = scene.recorder().emissions().size();
    platform().clearCalls();
    QTest::qWait(300); // longer than the completion takes
    platform().feed("<Switch>");
    scene.processEvents();
    QCOMPARE(scene.recorder().emissions().size(), emitted);
    QCOMPARE(scene.calls(), QStringList());
}

QTEST_GUILESS_MAIN(TestSwitchDeviceViewModelConnection)
#include "tst_switchdeviceviewmodel_connection.moc"
