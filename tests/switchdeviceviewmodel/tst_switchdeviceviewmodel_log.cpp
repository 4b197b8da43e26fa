// What reaches the panel's log view, and what does not.
#include "switchdeviceviewmodel.h"

#include "signalrecorder.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QLoggingCategory>
#include <QtCore/QMutex>
#include <QtCore/QRegularExpression>
#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace {

struct Message
{
    QtMsgType type = QtDebugMsg;
    QByteArray file;
    int line = 0;
    QByteArray function;
    QByteArray category;
    QString text;
};

bool operator==(const Message &left, const Message &right)
{
    return left.type == right.type && left.file == right.file && left.line == right.line
           && left.function == right.function && left.category == right.category && left.text == right.text;
}

//! The application's own handler, there before any view model. All access behind the lock: messages come from any
//! thread.
struct Application
{
    QMutex lock;
    QVector<Message> messages;
    std::function<void()> onMessage; // called outside the lock
};

Application &application()
{
    static Application instance;
    return instance;
}

void applicationHandler(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    std::function<void()> onMessage;
    {
        const QMutexLocker locker(&application().lock);
        application().messages.append({type, context.file, context.line, context.function, context.category, text});
        onMessage = application().onMessage;
    }
    if (onMessage)
        onMessage();
}

QVector<Message> applicationMessages(const QString &text)
{
    const QMutexLocker locker(&application().lock);
    QVector<Message> found;
    for (const Message &message : application().messages) {
        if (message.text == text)
            found.append(message);
    }
    return found;
}

//! A handler that a library installs after the view model, and that passes everything on to the one it found.
QtMessageHandler chainedTo = nullptr;
std::atomic<int> chainedCalls{0};

void chainingHandler(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    ++chainedCalls;
    chainedTo(type, context, text);
}

QtMessageHandler installedHandler()
{
    const QtMessageHandler installed = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(installed);
    return installed;
}

void logWarning(const QString &text, const char *file = "SwitchDevicePanel/ViewModel/some.cpp",
                const char *function = "void f()")
{
    QMessageLogger(file, 1, function, "default").warning("%s", qUtf8Printable(text));
}

void processEvents()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

//! The line without its time stamp.
QString unstamped(const QString &line)
{
    return line.mid(line.indexOf(QStringLiteral("] ")) + 2);
}

QStringList unstampedLines(const SignalRecorder &recorder)
{
    QStringList lines;
    for (const SignalRecorder::Emission &emission : recorder.emissions()) {
        if (emission.name == QLatin1String("logMessage"))
            lines.append(unstamped(emission.arguments.first().toString()));
    }
    return lines;
}

} // namespace

class TestSwitchDeviceViewModelLog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // The message handler
    void applicationHandler_isCalledFirst_withTheSameArguments();
    void debugMessage_ofTheOwnSource_reachesTheApplicationOnly();
    void ownMessages_carryFileFromTheRepositoryRootAndFunction();
    void message_isShownForTheSwitchModulesOnly_data();
    void message_isShownForTheSwitchModulesOnly();
    void message_withoutContext_isNotShown();
    void line_namesTheType_data();
    void line_namesTheType();
    void line_beginsWithTheLocalTime();
    void message_withPlaceMarkers_isShownAsItIs_data();
    void message_withPlaceMarkers_isShownAsItIs();
    void message_isDeliveredThroughTheEventLoop();
    void message_ofAnotherThread_isEmittedOnTheOwnThread();
    void messages_ofOneThread_keepTheirOrder();

    // Several view models, other handlers
    void newestLivingViewModel_isTheTarget();
    void olderViewModelGone_newestStaysTheTarget();
    void applicationHandler_isBackAfterTheLastViewModel();
    void applicationHandler_isCalledOnce_howeverManyViewModels();
    void noApplicationHandler_qtsOwnIsBackAfterwards();
    void interposedHandler_passesEachMessageOnce();
    void interposedHandler_withLaterViewModel_doesNotRecurse();
    void interposedHandler_afterTheLastViewModel_doesNotRecurse();
    void loggingThreads_whileViewModelsComeAndGo_loseNothing();

    // Explicit lines
    void emitLogMessage_alwaysEmits();
    void emitLogMessage_detailed_needsLogMore();

    // Console lines
    void consoleLines_within100ms_arriveAsOneMessage();
    void consoleLines_areSplitAtLineEnds_data();
    void consoleLines_areSplitAtLineEnds();
    void consoleLines_withoutLogMore_areNotShown();
    void consoleLines_afterABatch_makeTheNextBatch();
    void consoleLines_ofTwoViewModels_stayApart();

private:
    QtMessageHandler _testHandler = nullptr;
};

void TestSwitchDeviceViewModelLog::init()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=true"));
    application().messages.clear();
    application().onMessage = nullptr;
    _testHandler = qInstallMessageHandler(&applicationHandler);
}

void TestSwitchDeviceViewModelLog::cleanup()
{
    qInstallMessageHandler(_testHandler);
}

void TestSwitchDeviceViewModelLog::applicationHandler_isCalledFirst_withTheSameArguments()
{
    SwitchDeviceViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    int shownBefore = -1;
    application().onMessage = [&] {
        QCoreApplication::sendPostedEvents(&viewModel); // would deliver a line that is posted already
        shownBefore = recorder.count(QStringLiteral("logMessage"));
    };
    QMessageLogger("consoleportcomm/port.cpp", 42, "void Port::open()", "console").critical("cannot %s", "open");
    application().onMessage = nullptr;

    const Message expected{QtCriticalMsg, "consoleportcomm/port.cpp",   42, "void Port::open()",
                           "console",     QStringLiteral("cannot open")};
    QCOMPARE(applicationMessages(expected.text), QVector<Message>{expected});
    QCOMPARE(shownBefore, 0);
    processEvents();
    QCOMPARE(recorder.count(QStringLiteral("logMessage")), 1);
}

void TestSwitchDeviceViewModelLog::debugMessage_ofTheOwnSource_reachesTheApplicationOnly()
{
    SwitchDeviceViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    viewModel.setDownPortMin(3);
    processEvents();
    QCOMPARE(applicationMessages(QStringLiteral("downPortMinChanged signal emitted")).size(), 1);
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("downPortMinChanged()")});
}

void TestSwitchDeviceViewModelLog::ownMessages_carryFileFromTheRepositoryRootAndFunction()
{
    // In release builds too, and without the folder that the sources happen to lie in: it might bear any name.
    SwitchDeviceViewModel viewModel;
    viewModel.setDownPortMin(3);
    const QVector<Message> messages = applicationMessages(QStringLiteral("downPortMinChanged signal emitted"));
    QCOMPARE(messages.size(), 1);
    QCOMPARE(QDir::fromNativeSeparators(QString::fromUtf8(messages.first().file)),
             QStringLiteral("SwitchDevicePanel/ViewModel/switchdeviceviewmodel_properties.cpp"));
    QVERIFY(messages.first().line > 0);
    QVERIFY2(messages.first().function.contains("SwitchDeviceViewModel::setDownPortMin"),
             messages.first().function.constData());
}

void TestSwitchDeviceViewModelLog::message_isShownForTheSwitchModulesOnly_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("function");
    QTest::addColumn<bool>("isShown");
    const QByteArray other = "videowall/scene.cpp";
    const QByteArray otherFunction = "void Scene::paint()";

    QTest::newRow("file SwitchDevicePanel") << QByteArray("SwitchDevicePanel/ViewModel/a.cpp") << otherFunction << true;
    QTest::newRow("file switchdevicepanel") << QByteArray("x/switchdevicepanel/a.cpp") << otherFunction << true;
    QTest::newRow("file switchdevice") << QByteArray("platform/switchdevicebll/src/a.cpp") << otherFunction << true;
    QTest::newRow("file SWITCHDEVICE") << QByteArray("SWITCHDEVICE.CPP") << otherFunction << true;
    QTest::newRow("file consoleportcomm") << QByteArray("platform/consoleportcomm/a.cpp") << otherFunction << true;
    QTest::newRow("file ConsolePortComm") << QByteArray("ConsolePortComm.cpp") << otherFunction << true;
    QTest::newRow("file consoleport alone") << QByteArray("consoleport.cpp") << otherFunction << false;
    QTest::newRow("function SwitchDevice") << other << QByteArray("bool ovra::bll::SwitchDevice::open()") << true;
    QTest::newRow("function switchdevice") << other << QByteArray("void switchdevice_probe()") << true;
    QTest::newRow("function ConsolePort") << other << QByteArray("void ConsolePort::run()") << true;
    QTest::newRow("function consoleport") << other << QByteArray("void my_consoleport()") << true;
    QTest::newRow("both") << QByteArray("switchdevice.cpp") << QByteArray("SwitchDevice::SwitchDevice()") << true;
    QTest::newRow("neither") << other << otherFunction << false;
    QTest::newRow("words apart") << QByteArray("switch/device.cpp") << QByteArray("Console::Port()") << false;
    QTest::newRow("file in UTF-8") << QByteArray("软件/switchdevice/a.cpp") << otherFunction << true;
    QTest::newRow("file not in UTF-8") << QByteArray("\xc8\xed/switchdevice/a.cpp") << otherFunction << true;
}

void TestSwitchDeviceViewModelLog::message_isShownForTheSwitchModulesOnly()
{
    QFETCH(const QByteArray, file);
    QFETCH(const QByteArray, function);
    QFETCH(const bool, isShown);
    SwitchDeviceViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    QMessageLogger(file.constData(), 1, function.constData(), "default").warning("text");
    QMessageLogger(file.constData(), 1, function.constData(), "default").info("text");
    processEvents();
    const QStringList shown{QStringLiteral("[Warning] text"), QStringLiteral("[Info] text")};
    QCOMPARE(unstampedLines(recorder), isShown ? shown : QStringList());
    QCOMPARE(applicationMessages(QStringLiteral("text")).size(), 2);
}

void TestSwitchDeviceViewModelLog::message_withoutContext_isNotShown()
{
    SwitchDeviceViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    QMessageLogger(nullptr, 0, nullptr).warning("SwitchDevice in the text only");
    processEvents();
    QCOMPARE(recorder.texts(), QStringList());
    QCOMPARE(applicationMessages(QStringLiteral("SwitchDevice in the text only")).size(), 1);
}

void TestSwitchDeviceViewModelLog::line_namesTheType_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("debug is never shown") << int(QtDebugMsg) << QStringList();
    QTest::newRow("info") << int(QtInfoMsg) << QStringList{QStringLiteral("[Info] text")};
    QTest::newRow("warning") << int(QtWarningMsg) << QStringList{QStringLiteral("[Warning] text")};
    QTest::newRow("critical") << int(QtCriticalMsg) << QStringList{QStringLiteral("[Critical] text")};
    QTest::newRow("fatal") << int(QtFatalMsg) << QStringList{QStringLiteral("[Fatal] text")};
    QTest::newRow("a type that Qt may add") << 7 << QStringList{QString()};
}

void TestSwitchDeviceViewModelLog::line_namesTheType()
{
    QFETCH(const int, type);
    QFETCH(const QStringList, lines);
    SwitchDeviceViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    // Directly: Qt itself ends the process after a fatal message.
    const QMessageLogContext context("switchdevice.cpp", 1, "f", "default");
    SwitchDeviceViewModel::messageHandler(static_cast<QtMsgType>(type), context, QStringLiteral("text"));
    processEvents();
    QCOMPARE(unstampedLines(recorder), lines);
    const QVector<Message> expected{
        {static_cast<QtMsgType>(type), "switchdevice.cpp", 1, "f", "default", QStringLiteral("text")}};
    QCOMPARE(applicationMessages(QStringLiteral("text")), expected);
}

void TestSwitchDeviceViewModelLog::line_beginsWithTheLocalTime()
{
    SwitchDeviceViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    const QString format = QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz");
    const QString before = QDateTime::currentDateTime().toString(format);
    logWarning(QStringLiteral("text"));
    const QString after = QDateTime::currentDateTime().toString(format);
    processEvents();
    const QString line = recorder.lastArguments(QStringLiteral("logMessage")).value(0).toString();
    const QRegularExpression shape(
        QStringLiteral(R"(\A\[(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3})\] \[Warning\] text\z)"));
    const QRegularExpressionMatch match = shape.match(line);
    QVERIFY2(match.hasMatch(), qUtf8Printable(line));
    QVERIFY(before <= match.captured(1));
    QVERIFY(match.captured(1) <= after);
}

void TestSwitchDeviceViewModelLog::message_withPlaceMarkers_isShownAsItIs_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("%1") << QStringLiteral("port %1 of %2");
    QTest::newRow("%2 alone") << QStringLiteral("%2");
    QTest::newRow("per cent") << QStringLiteral("100 % done, 50%");
    QTest::newRow("empty") << QString();
    QTest::newRow("several lines") << QStringLiteral("one\r\ntwo\n\nthree");
    QTest::newRow("Chinese") << QStringLiteral("串口已打开");
}

void TestSwitchDeviceViewModelLog::message_withPlaceMarkers_isShownAsItIs()
{
    QFETCH(const QString, text);
    SwitchDeviceViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    logWarning(text);
    processEvents();
    QCOMPARE(unstampedLines(recorder), QStringList{QStringLiteral("[Warning] ") + text});
}

void TestSwitchDeviceViewModelLog::message_isDeliveredThroughTheEventLoop()
{
    SwitchDeviceViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    logWarning(QStringLiteral("text"));
    QCOMPARE(recorder.texts(), QStringList());
    processEvents();
    QCOMPARE(unstampedLines(recorder), QStringList{QStringLiteral("[Warning] text")});
}

void TestSwitchDeviceViewModelLog::message_ofAnotherThread_isEmittedOnTheOwnThread()
{
    SwitchDeviceViewModel viewModel;
    QStringList lines;
    const QThread *emittedOn = nullptr;
    connect(
        &viewModel, &SwitchDeviceViewModel::logMessage, &viewModel,
        [&](const QString &line) {
            lines.append(unstamped(line));
            emittedOn = QThread::currentThread();
        },
        Qt::DirectConnection);
    std::thread([] { logWarning(QStringLiteral("from afar")); }).join();
    QCOMPARE(lines, QStringList());
    processEvents();
    QCOMPARE(lines, QStringList{QStringLiteral("[Warning] from afar")});
    QCOMPARE(emittedOn, viewModel.thread());
}

void TestSwitchDeviceViewModelLog::messages_ofOneThread_keepTheirOrder()
{
    SwitchDeviceViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    QStringList expected;
    for (int i = 0; i < 100; ++i) {
        logWarning(QString::number(i));
        expected.append(QStringLiteral("[Warning] %1").arg(i));
    }
    processEvents();
    QCOMPARE(unstampedLines(recorder), expected);
}

void TestSwitchDeviceViewModelLog::newestLivingViewModel_isTheTarget()
{
    SwitchDeviceViewModel first;
    const SignalRecorder firstRecorder(&first);
    {
        SwitchDeviceViewModel second;
        const SignalRecorder secondRecorder(&second);
        logWarning(QStringLiteral("to the second"));
        processEvents();
        QCOMPARE(unstampedLines(firstRecorder), QStringList());
        QCOMPARE(unstampedLines(secondRecorder), QStringList{QStringLiteral("[Warning] to the second")});
    }
    logWarning(QStringLiteral("to the first"));
    processEvents();
    QCOMPARE(unstampedLines(firstRecorder), QStringList{QStringLiteral("[Warning] to the first")});
}

void TestSwitchDeviceViewModelLog::olderViewModelGone_newestStaysTheTarget()
{
    auto older = std::make_unique<SwitchDeviceViewModel>();
    SwitchDeviceViewModel newer;
    const SignalRecorder recorder(&newer);
    older.reset();
    logWarning(QStringLiteral("text"));
    processEvents();
    QCOMPARE(unstampedLines(recorder), QStringList{QStringLiteral("[Warning] text")});
}

void TestSwitchDeviceViewModelLog::applicationHandler_isBackAfterTheLastViewModel()
{
    auto first = std::make_unique<SwitchDeviceViewModel>();
    auto second = std::make_unique<SwitchDeviceViewModel>();
    QVERIFY(installedHandler() != &applicationHandler);
    first.reset();
    QVERIFY(installedHandler() != &applicationHandler);
    second.reset();
    QVERIFY(installedHandler() == &applicationHandler);
    const SwitchDeviceViewModel third;
    logWarning(QStringLiteral("text"));
    QCOMPARE(applicationMessages(QStringLiteral("text")).size(), 1);
}

void TestSwitchDeviceViewModelLog::applicationHandler_isCalledOnce_howeverManyViewModels()
{
    const SwitchDeviceViewModel first;
    const SwitchDeviceViewModel second;
    const SwitchDeviceViewModel third;
    logWarning(QStringLiteral("text"));
    QCOMPARE(applicationMessages(QStringLiteral("text")).size(), 1);
}

void TestSwitchDeviceViewModelLog::noApplicationHandler_qtsOwnIsBackAfterwards()
{
    qInstallMessageHandler(nullptr);
    const QtMessageHandler own = installedHandler();
    {
        const SwitchDeviceViewModel first;
        const SwitchDeviceViewModel second;
        QVERIFY(installedHandler() != own);
    }
    QVERIFY(installedHandler() == own);
}

void TestSwitchDeviceViewModelLog::interposedHandler_passesEachMessageOnce()
{
    SwitchDeviceViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    chainedCalls = 0;
    chainedTo = qInstallMessageHandler(&chainingHandler);
    logWarning(QStringLiteral("text"));
    processEvents();
    QCOMPARE(chainedCalls.load(), 1);
    QCOMPARE(applicationMessages(QStringLiteral("text")).size(), 1);
    QCOMPARE(unstampedLines(recorder), QStringList{QStringLiteral("[Warning] text")});
}

void TestSwitchDeviceViewModelLog::interposedHandler_withLaterViewModel_doesNotRecurse()
{
    // The later view model finds a handler that leads back to ours: each must be called once, and the line shown once.
    const SwitchDeviceViewModel first;
    chainedCalls = 0;
    chainedTo = qInstallMessageHandler(&chainingHandler);
    SwitchDeviceViewModel second;
    const SignalRecorder recorder(&second);
    logWarning(QStringLiteral("text"));
    processEvents();
    QCOMPARE(chainedCalls.load(), 1);
    QCOMPARE(unstampedLines(recorder), QStringList{QStringLiteral("[Warning] text")});
    QCOMPARE(applicationMessages(QStringLiteral("text")).size(), 1);
}

void TestSwitchDeviceViewModelLog::interposedHandler_afterTheLastViewModel_doesNotRecurse()
{
    auto first = std::make_unique<SwitchDeviceViewModel>();
    chainedTo = qInstallMessageHandler(&chainingHandler);
    auto second = std::make_unique<SwitchDeviceViewModel>();
    first.reset();
    second.reset();
    chainedCalls = 0;
    logWarning(QStringLiteral("text"));
    QVERIFY(chainedCalls.load() <= 1);
    QCOMPARE(applicationMessages(QStringLiteral("text")).size(), 1);
}

void TestSwitchDeviceViewModelLog::loggingThreads_whileViewModelsComeAndGo_loseNothing()
{
    std::atomic<bool> isOver{false};
    std::atomic<int> logged{0};
    std::vector<std::thread> threads;
    threads.reserve(3);
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            while (!isOver) {
                logWarning(QStringLiteral("race"));
                ++logged;
                std::this_thread::yield();
            }
        });
    }
    QElapsedTimer timer;
    timer.start();
    int rounds = 0;
    while (timer.elapsed() < 500 || rounds < 20) {
        const SwitchDeviceViewModel first;
        const SwitchDeviceViewModel second;
        processEvents();
        ++rounds;
    }
    isOver = true;
    for (std::thread &thread : threads)
        thread.join();
    QVERIFY(logged.load() > 0);
    QCOMPARE(applicationMessages(QStringLiteral("race")).size(), logged.load());
}

void TestSwitchDeviceViewModelLog::emitLogMessage_alwaysEmits()
{
    SwitchDeviceViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    QVERIFY(QMetaObject::invokeMethod(&viewModel, "emitLogMessage", Q_ARG(QString, QStringLiteral("short"))));
    QVERIFY(QMetaObject::invokeMethod(&viewModel, "emitLogMessage", Q_ARG(QString, QStringLiteral("plain")),
                                      Q_ARG(bool, false)));
    QCOMPARE(recorder.texts(), (QStringList{QStringLiteral("logMessage(short)"), QStringLiteral("logMessage(plain)")}));
}

void TestSwitchDeviceViewModelLog::emitLogMessage_detailed_needsLogMore()
{
    SwitchDeviceViewModel viewModel;
    const auto emitDetailed = [&viewModel] {
        return QMetaObject::invokeMethod(&viewModel, "emitLogMessage", Q_ARG(QString, QStringLiteral("detail")),
                                         Q_ARG(bool, true));
    };
    SignalRecorder recorder(&viewModel);
    QVERIFY(emitDetailed());
    QCOMPARE(recorder.texts(), QStringList());

    viewModel.setLogMore(true);
    recorder.clear();
    QVERIFY(emitDetailed());
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("logMessage(detail)")});

    viewModel.setLogMore(false);
    recorder.clear();
    QVERIFY(emitDetailed());
    QCOMPARE(recorder.texts(), QStringList());
}

static bool receive(SwitchDeviceViewModel &viewModel, const QByteArray &data)
{
    return QMetaObject::invokeMethod(&viewModel, "onDataReceived", Q_ARG(QByteArray, data));
}

// The batches of console lines, without what parsing the reply and completing its block log.
static QStringList consoleBatches(const SignalRecorder &recorder)
{
    QStringList batches;
    for (const QString &text : recorder.texts()) {
        const bool isStamped = text.startsWith(QLatin1String("logMessage(["));
        if (text.startsWith(QLatin1String("logMessage(")) && !isStamped
            && text != QStringLiteral("logMessage(登录成功..)"))
            batches.append(text);
    }
    return batches;
}

void TestSwitchDeviceViewModelLog::consoleLines_within100ms_arriveAsOneMessage()
{
    SwitchDeviceViewModel viewModel;
    viewModel.setLogMore(true);
    const SignalRecorder recorder(&viewModel);
    QStringList lines;
    for (int i = 1; i <= 20; ++i) {
        lines.append(QStringLiteral("line %1").arg(i));
        QVERIFY(receive(viewModel, lines.last().toUtf8() + "\r\n"));
    }
    QCOMPARE(recorder.texts(), QStringList()); // nothing before the timer
    const QStringList batch{QStringLiteral("logMessage(%1)").arg(lines.join(QLatin1Char('\n')))};
    QTRY_COMPARE(consoleBatches(recorder), batch);
    QTest::qWait(150); // and nothing after it
    QCOMPARE(consoleBatches(recorder), batch);
}

void TestSwitchDeviceViewModelLog::consoleLines_areSplitAtLineEnds_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QString>("shown");
    QTest::newRow("lines") << QByteArray("<SW>display vlan\r\nVID  Type\r\n1    common\r\n<SW>")
                           << QStringLiteral("<SW>display vlan\nVID  Type\n1    common\n<SW>");
    QTest::newRow("empty pieces") << QByteArray("\r\n\r\na\r\n\r\nb\r\n") << QStringLiteral("a\nb");
    QTest::newRow("line feed alone is no end") << QByteArray("a\nb\r\nc") << QStringLiteral("a\nb\nc");
    QTest::newRow("UTF-8") << QByteArray("接口\r\n端口") << QStringLiteral("接口\n端口");
}

void TestSwitchDeviceViewModelLog::consoleLines_areSplitAtLineEnds()
{
    QFETCH(const QByteArray, data);
    QFETCH(const QString, shown);
    SwitchDeviceViewModel viewModel;
    viewModel.setLogMore(true);
    const SignalRecorder recorder(&viewModel);
    QVERIFY(receive(viewModel, data));
    QTRY_COMPARE(consoleBatches(recorder), QStringList{QStringLiteral("logMessage(%1)").arg(shown)});
}

void TestSwitchDeviceViewModelLog::consoleLines_withoutLogMore_areNotShown()
{
    SwitchDeviceViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    QVERIFY(receive(viewModel, "secret\r\n"));
    viewModel.setLogMore(true); // too late for that line
    QVERIFY(receive(viewModel, "open\r\n"));
    QTRY_COMPARE(consoleBatches(recorder), QStringList{QStringLiteral("logMessage(open)")});
}

void TestSwitchDeviceViewModelLog::consoleLines_afterABatch_makeTheNextBatch()
{
    SwitchDeviceViewModel viewModel;
    viewModel.setLogMore(true);
    const SignalRecorder recorder(&viewModel);
    QVERIFY(receive(viewModel, "one\r\ntwo\r\n"));
    QTRY_COMPARE(consoleBatches(recorder).size(), 1);
    QVERIFY(receive(viewModel, "three\r\n"));
    QTRY_COMPARE(consoleBatches(recorder),
                 (QStringList{QStringLiteral("logMessage(one\ntwo)"), QStringLiteral("logMessage(three)")}));
}

void TestSwitchDeviceViewModelLog::consoleLines_ofTwoViewModels_stayApart()
{
    SwitchDeviceViewModel first;
    const SwitchDeviceViewModel second;
    first.setLogMore(true);
    const SignalRecorder recorder(&first);
    QVERIFY(receive(first, "mine\r\n"));
    QTRY_COMPARE(consoleBatches(recorder), QStringList{QStringLiteral("logMessage(mine)")});
}

QTEST_GUILESS_MAIN(TestSwitchDeviceViewModelLog)
#include "tst_switchdeviceviewmodel_log.moc"
