// Construction, destruction, language and interface of the switch view model.
#include "switchdeviceviewmodel.h"

#include "signalrecorder.h"

#include <consoleportcomm/consoleportcomm.h>
#include <switchdevicebll/switchdevice.h>
#include <zrextensionsystem/pluginmanager.h>

#include <QtCore/QBuffer>
#include <QtCore/QMetaEnum>
#include <QtCore/QPointer>
#include <QtCore/QProcess>
#include <QtCore/QProcessEnvironment>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtTest/QtTest>

#include <cstdio>
#include <memory>

namespace {

const QString kDisconnected = QStringLiteral("已断开连接");
constexpr const char *kPrintLanguage = "--print-language";

// In declaration order.
const QStringList kSignals{
    QStringLiteral("showToast(QString,int)"),
    QStringLiteral("currentconnectTypeChanged(ConnectType)"),
    QStringLiteral("changeLanguage()"),
    QStringLiteral("languageTypeChanged()"),
    QStringLiteral("isShowLoader(bool,QString)"),
    QStringLiteral("signal_loadLanguage(QString)"),
    QStringLiteral("signal_threadFinished()"),
    QStringLiteral("signal_deviceCommunicate()"),
    QStringLiteral("comDownNumChanged(int)"),
    QStringLiteral("comUpNumChanged(int)"),
    QStringLiteral("parseStateChanged(ParseState)"),
    QStringLiteral("logMessage(QString)"),
    QStringLiteral("baudRateChanged()"),
    QStringLiteral("currentComChanged()"),
    QStringLiteral("currentuserNameChanged(QString)"),
    QStringLiteral("vlanEnableChanged()"),
    QStringLiteral("vlanIdChanged()"),
    QStringLiteral("interfaceTypeChanged()"),
    QStringLiteral("upPortMinChanged()"),
    QStringLiteral("upPortMaxChanged()"),
    QStringLiteral("downPortMinChanged()"),
    QStringLiteral("downPortMaxChanged()"),
    QStringLiteral("multicastEnableChanged()"),
    QStringLiteral("multicastStatusChanged()"),
    QStringLiteral("multicastVlanIdChanged()"),
    QStringLiteral("querierEnableChanged()"),
    QStringLiteral("querierStatusChanged()"),
    QStringLiteral("querierVlanIdChanged()"),
    QStringLiteral("linkAggregationEnableChanged()"),
    QStringLiteral("linkIdChanged()"),
    QStringLiteral("linkInterfaceTypeChanged()"),
    QStringLiteral("linkUpPortMinChanged()"),
    QStringLiteral("linkUpPortMaxChanged()"),
    QStringLiteral("linkDownPortMinChanged()"),
    QStringLiteral("linkDownPortMaxChanged()"),
    QStringLiteral("mirrorPortEnableChanged()"),
    QStringLiteral("mirrorStatusChanged()"),
    QStringLiteral("mirrorIdChanged()"),
    QStringLiteral("mirrorSourcePortChanged()"),
    QStringLiteral("mirrorDstPortChanged()"),
    QStringLiteral("autoNegEnableChanged()"),
    QStringLiteral("autoNegStatusChanged()"),
    QStringLiteral("autoNegPortChanged()"),
    QStringLiteral("isWaitingResponseChanged()"),
    QStringLiteral("isAggregationSwitchChanged()"),
    QStringLiteral("poeEnableChanged()"),
    QStringLiteral("poeStatusChanged()"),
    QStringLiteral("poePortChanged()"),
    QStringLiteral("poeDownPortMinChanged()"),
    QStringLiteral("poeDownPortMaxChanged()"),
    QStringLiteral("curlogoChangedChanged(QString)"),
    QStringLiteral("boardTypeChanged()"),
    QStringLiteral("logMoreChanged()"),
    QStringLiteral("userTextChanged()"),
    QStringLiteral("passwordTextChanged()"),
    QStringLiteral("downComRangeChanged(QString)"),
    QStringLiteral("upComRangeChanged(QString)"),
    QStringLiteral("vlanUpPortEnableChanged(bool)"),
    QStringLiteral("vlanDownPortEnableChanged()"),
    QStringLiteral("linkUpPortEnableChanged()"),
    QStringLiteral("linkDownPortEnableChanged()"),
    QStringLiteral("interfaceEnableChanged()"),
    QStringLiteral("interfaceStatusChanged()"),
    QStringLiteral("selectedInterfacePortsChanged()"),
};

// In declaration order; return type, access, signature.
const QStringList kSlotsAndInvokables{
    QStringLiteral("void public slot_deviceCommunicate()"),
    QStringLiteral("void public slot_readBack()"),
    QStringLiteral("void public slot_languageChange(QString)"),
    QStringLiteral("void public slot_threadFinished()"),
    QStringLiteral("void public slot_RecAllData(QByteArray)"),
    QStringLiteral("void public slot_handleParseState(ParseState)"),
    QStringLiteral("void public messageHandler(QtMsgType,QMessageLogContext,QString)"),
    QStringLiteral("void public onCommandCompleted()"),
    QStringLiteral("void private onDataReceived(QByteArray)"),
    QStringLiteral("void private emitLogMessage(QString,bool)"),
    QStringLiteral("void private emitLogMessage(QString)"),
    QStringLiteral("QString public lxTr(QString)"),
    QStringLiteral("bool public deviceCommunicate()"),
    QStringLiteral("void public disconnectDevice()"),
    QStringLiteral("QVariantList public refreshCOM()"),
    QStringLiteral("void public setUserPassword(QByteArray,QByteArray)"),
    QStringLiteral("void public setShadowVisible(bool)"),
    QStringLiteral("void public sendSwitchDeviceCmd()"),
    QStringLiteral("void public clearAllConfig()"),
    QStringLiteral("void public queryDeviceStatus(QString)"),
    QStringLiteral("QVariantList public gInterface()"),
    QStringLiteral("QVariantList public xgInterface()"),
    QStringLiteral("QVariantList public poeInterface()"),
    QStringLiteral("QVariantList public allInterface()"),
    QStringLiteral("int public downInterfaceMin()"),
    QStringLiteral("int public downInterfaceMax()"),
    QStringLiteral("int public upInterfaceMin()"),
    QStringLiteral("int public upInterfaceMax()"),
    QStringLiteral("void public saveSwitchDeviceCmd()"),
    QStringLiteral("QString public getDefaultConfigPath()"),
    QStringLiteral("void public exportSwitchInfo()"),
    QStringLiteral("void public setExportPath(QString)"),
    QStringLiteral("QString public getExportPath()"),
    QStringLiteral("void public importSwitchInfo(QString)"),
};

QVector<QMetaMethod> ownMethods()
{
    const QMetaObject &metaObject = SwitchDeviceViewModel::staticMetaObject;
    QVector<QMetaMethod> methods;
    for (int i = metaObject.methodOffset(); i < metaObject.methodCount(); ++i)
        methods.append(metaObject.method(i));
    return methods;
}

QString describe(const QMetaMethod &method)
{
    const char *access = method.access() == QMetaMethod::Public ? "public" : "private";
    return QStringLiteral("%1 %2 %3")
        .arg(QLatin1String(method.typeName()), QLatin1String(access), QLatin1String(method.methodSignature()));
}

//! What stands where at the moment of the last toast.
struct Remains
{
    QString text;
    int state = -1;
    bool hasAnalysis = true;
    int threads = -1;
    int timers = -1;
};

//! Opens a port named "scratch" that takes everything and answers nothing.
class ScratchPort
{
public:
    ScratchPort()
    {
        ConsoleportComm::registerPort(_name, [] { return std::make_unique<QBuffer>(); });
    }
    ~ScratchPort() { ConsoleportComm::unregisterPort(_name); }
    ScratchPort(const ScratchPort &) = delete;
    ScratchPort &operator=(const ScratchPort &) = delete;

    bool open() const { return session()->connectToSerial(_name, 9600, 0, 0, 0); }
    static bool isOpen() { return session()->getCommPtr()->getIsConnected(); }

private:
    static ovra::bll::SwitchDevice *session() { return ovra::bll::SwitchDevice::getInstance(); }

    const QString _name = QStringLiteral("scratch");
};

//! Language and one text of a view model in a process of its own with the given locale.
QString languageUnder(const QString &locale)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"LANG", "LC_ALL", "LC_MESSAGES", "LANGUAGE"})
        environment.insert(QLatin1String(name), locale);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), {QLatin1String(kPrintLanguage)});
    process.waitForFinished(60'000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

int printLanguage(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const SwitchDeviceViewModel viewModel;
    const QString text = viewModel.lxTr(kDisconnected);
    std::printf("%d %s\n", int(viewModel.languageType()), text.toUtf8().constData());
    return 0;
}

} // namespace

class TestSwitchDeviceViewModel : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void signals_standInDocumentedOrder();
    void signalParameters_haveTheNamesThatHandlersUse();
    void slotsAndInvokables_standInDocumentedOrder();
    void enums_haveDocumentedValues_data();
    void enums_haveDocumentedValues();

    void construction_startsTwoThreadsAndTheLogTimer();
    void construction_announcesTheLanguageToTheSession();
    void construction_startsThePortThread();
    void construction_takesLanguageFromTheConfiguration_data();
    void construction_takesLanguageFromTheConfiguration();
    void destruction_showsTheDisconnectionToastAfterEverythingElse();
    void destruction_inEnglish_showsTheTranslatedToast();
    void destruction_closesTheSerialPort();
    void twoViewModels_shareNothingButTheSession();
    void twoViewModels_eitherMayGoFirst_data();
    void twoViewModels_eitherMayGoFirst();
    void firstOfTwoViewModels_gone_leavesThePortThreadToTheOther();

    void disconnectDevice_showsToastAndClosesThePort();
    void deviceCommunicate_announcesAndReturnsTrue();
    void languageChange_switchesTextsFirst_thenAnnounces();
    void languageChange_selectsLanguage_data();
    void languageChange_selectsLanguage();
    void languageChange_ofTheSession_isFollowed();
    void lxTr_unknownText_isReturnedAsItIs();
    void setShadowVisible_reachesTheHost();
};

void TestSwitchDeviceViewModel::cleanup()
{
    // The translator is shared by all view models of the process.
    SwitchDeviceViewModel().slot_languageChange(QStringLiteral("zh_CN"));
}

void TestSwitchDeviceViewModel::signals_standInDocumentedOrder()
{
    QStringList declared;
    for (const QMetaMethod &method : ownMethods()) {
        if (method.methodType() == QMetaMethod::Signal)
            declared.append(QLatin1String(method.methodSignature()));
    }
    QCOMPARE(declared, kSignals);
    QCOMPARE(declared.size(), 64);
}

void TestSwitchDeviceViewModel::signalParameters_haveTheNamesThatHandlersUse()
{
    QStringList named;
    for (const QMetaMethod &method : ownMethods()) {
        if (method.methodType() == QMetaMethod::Signal && !method.name().endsWith("Changed")
            && method.parameterCount() > 0)
            named.append(QLatin1String(method.name() + ": " + method.parameterNames().join(", ")));
    }
    QCOMPARE(named, (QStringList{QStringLiteral("showToast: text, state"), QStringLiteral("isShowLoader: isShow, text"),
                                 QStringLiteral("signal_loadLanguage: type"), QStringLiteral("logMessage: message")}));
}

void TestSwitchDeviceViewModel::slotsAndInvokables_standInDocumentedOrder()
{
    QStringList declared;
    for (const QMetaMethod &method : ownMethods()) {
        if (method.methodType() != QMetaMethod::Signal)
            declared.append(describe(method));
    }
    QCOMPARE(declared, kSlotsAndInvokables);
}

void TestSwitchDeviceViewModel::enums_haveDocumentedValues_data()
{
    QTest::addColumn<QStringList>("keys"); // from 0 on
    QTest::newRow("LanguageType") << QStringList{QStringLiteral("Zh"), QStringLiteral("En")};
    QTest::newRow("ConnectType") << QStringList{QStringLiteral("Login"), QStringLiteral("ConfrimPassword"),
                                                QStringLiteral("ChangePassword"), QStringLiteral("Null")};
    QTest::newRow("ParseState") << QStringList{QStringLiteral("NeedUsername"),
                                               QStringLiteral("NeedPassword"),
                                               QStringLiteral("NeedConfirmPassword"),
                                               QStringLiteral("LoginSuccess"),
                                               QStringLiteral("LoginFailed"),
                                               QStringLiteral("InputMore"),
                                               QStringLiteral("ConnectSuccess"),
                                               QStringLiteral("CurrentConfiguration"),
                                               QStringLiteral("ParseSuccess"),
                                               QStringLiteral("ConfigInfo"),
                                               QStringLiteral("Unknown")};
}

void TestSwitchDeviceViewModel::enums_haveDocumentedValues()
{
    QFETCH(const QStringList, keys);
    const QMetaObject &metaObject = SwitchDeviceViewModel::staticMetaObject;
    const QMetaEnum metaEnum = metaObject.enumerator(metaObject.indexOfEnumerator(QTest::currentDataTag()));
    QCOMPARE(metaEnum.keyCount(), keys.size());
    for (int i = 0; i < keys.size(); ++i) {
        QCOMPARE(QString::fromLatin1(metaEnum.key(i)), keys.at(i));
        QCOMPARE(metaEnum.value(i), i);
    }
}

void TestSwitchDeviceViewModel::construction_startsTwoThreadsAndTheLogTimer()
{
    const SwitchDeviceViewModel viewModel;
    const auto threads = viewModel.findChildren<QThread *>();
    QCOMPARE(threads.size(), 2);
    for (const QThread *thread : threads) {
        QVERIFY(thread->isRunning());
        QCOMPARE(thread->priority(), QThread::InheritPriority);
    }
    const auto timers = viewModel.findChildren<QTimer *>();
    QCOMPARE(timers.size(), 1);
    QVERIFY(timers.first()->isActive());
    QVERIFY(!timers.first()->isSingleShot());
    QCOMPARE(timers.first()->interval(), 100);
}

void TestSwitchDeviceViewModel::construction_announcesTheLanguageToTheSession()
{
    QStringList codes;
    const QObject receiver; // the session lives on another thread: its signal arrives here queued
    // What earlier view models announced may still be on its way to that thread.
    QMetaObject::invokeMethod(
        ovra::bll::SwitchDevice::getInstance(), [] {}, Qt::BlockingQueuedConnection);
    connect(ovra::bll::SwitchDevice::getInstance(), &ovra::bll::SwitchDevice::signal_loadLanguage, &receiver,
            [&codes](const QString &code) { codes.append(code); });
    const SwitchDeviceViewModel viewModel;
    QTRY_COMPARE(codes, QStringList{QStringLiteral("zh_CN")});
}

void TestSwitchDeviceViewModel::construction_startsThePortThread()
{
    const ScratchPort port;
    QVERIFY(!port.open()); // no view model, no port thread
    const SwitchDeviceViewModel viewModel;
    QVERIFY(port.open());
}

void TestSwitchDeviceViewModel::construction_takesLanguageFromTheConfiguration_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("printed"); // number of the language, translation of one text
    QTest::newRow("zh_CN is Zh") << QStringLiteral("zh_CN.UTF-8") << QStringLiteral("0 ") + kDisconnected;
    QTest::newRow("en is En") << QStringLiteral("en_GB.UTF-8") << QStringLiteral("1 Disconnected");
}

void TestSwitchDeviceViewModel::construction_takesLanguageFromTheConfiguration()
{
    QFETCH(const QString, locale);
    QFETCH(const QString, printed);
    QCOMPARE(languageUnder(locale), printed);
}

void TestSwitchDeviceViewModel::destruction_showsTheDisconnectionToastAfterEverythingElse()
{
    auto viewModel = std::make_unique<SwitchDeviceViewModel>();
    const SwitchDeviceViewModel *object = viewModel.get();
    const QPointer<PacketAnalysisViewModel> analysis = viewModel->packetAnalysis();
    Remains remains;
    connect(object, &SwitchDeviceViewModel::showToast, [&](const QString &text, int state) {
        remains = {text, state, !analysis.isNull(), int(object->findChildren<QThread *>().size()),
                   int(object->findChildren<QTimer *>().size())};
    });
    const SignalRecorder recorder(viewModel.get());

    viewModel.reset();
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("showToast(%1, 0)").arg(kDisconnected)});
    QCOMPARE(remains.text, kDisconnected);
    QCOMPARE(remains.state, 0);
    QVERIFY(!remains.hasAnalysis);
    QCOMPARE(remains.threads, 0);
    QCOMPARE(remains.timers, 0);
}

void TestSwitchDeviceViewModel::destruction_inEnglish_showsTheTranslatedToast()
{
    auto viewModel = std::make_unique<SwitchDeviceViewModel>();
    viewModel->slot_languageChange(QStringLiteral("en"));
    const SignalRecorder recorder(viewModel.get());
    viewModel.reset();
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("showToast(Disconnected, 0)")});
}

void TestSwitchDeviceViewModel::destruction_closesTheSerialPort()
{
    const ScratchPort port;
    {
        const SwitchDeviceViewModel viewModel;
        QVERIFY(port.open());
        QVERIFY(ScratchPort::isOpen());
    }
    QVERIFY(!ScratchPort::isOpen());
}

void TestSwitchDeviceViewModel::twoViewModels_shareNothingButTheSession()
{
    SwitchDeviceViewModel first;
    SwitchDeviceViewModel second;
    QVERIFY(first.packetAnalysis() != second.packetAnalysis());
    const SignalRecorder recorder(&second);
    first.setVlanId(7);
    first.setUserText(QStringLiteral("admin"));
    first.packetAnalysis()->setDecoderCount(3);
    QCOMPARE(second.vlanId(), 1);
    QCOMPARE(second.userText(), QString());
    QCOMPARE(second.packetAnalysis()->decoderCount(), 10);
    QCOMPARE(recorder.texts(), QStringList());
}

void TestSwitchDeviceViewModel::twoViewModels_eitherMayGoFirst_data()
{
    QTest::addColumn<bool>("olderFirst");
    QTest::newRow("the older first") << true;
    QTest::newRow("the newer first") << false;
}

void TestSwitchDeviceViewModel::twoViewModels_eitherMayGoFirst()
{
    QFETCH(const bool, olderFirst);
    auto older = std::make_unique<SwitchDeviceViewModel>();
    auto newer = std::make_unique<SwitchDeviceViewModel>();
    auto &leaving = olderFirst ? older : newer;
    auto &staying = olderFirst ? newer : older;
    const SignalRecorder recorder(staying.get());
    leaving.reset();
    QCOMPARE(recorder.texts(), QStringList());
    staying->setVlanId(12);
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("vlanIdChanged()")});
    staying.reset();
    QCOMPARE(recorder.count(QStringLiteral("showToast")), 1);
}

void TestSwitchDeviceViewModel::firstOfTwoViewModels_gone_leavesThePortThreadToTheOther()
{
    const ScratchPort port;
    auto leaving = std::make_unique<SwitchDeviceViewModel>();
    const SwitchDeviceViewModel staying;
    QVERIFY(port.open());
    leaving.reset();
    QVERIFY(!ScratchPort::isOpen()); // one session for all: destroying either closes the port
    QVERIFY(port.open());
}

void TestSwitchDeviceViewModel::disconnectDevice_showsToastAndClosesThePort()
{
    const ScratchPort port;
    SwitchDeviceViewModel viewModel;
    QVERIFY(port.open());
    const SignalRecorder recorder(&viewModel);
    viewModel.disconnectDevice();
    QVERIFY(!ScratchPort::isOpen());
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("showToast(%1, 0)").arg(kDisconnected)});
}

void TestSwitchDeviceViewModel::deviceCommunicate_announcesAndReturnsTrue()
{
    SwitchDeviceViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    QVERIFY(viewModel.deviceCommunicate());
    QCOMPARE(recorder.count(QStringLiteral("signal_deviceCommunicate")), 1);
}

void TestSwitchDeviceViewModel::languageChange_switchesTextsFirst_thenAnnounces()
{
    SwitchDeviceViewModel viewModel;
    QString textAtChange;
    auto languageAtChange = SwitchDeviceViewModel::En;
    connect(&viewModel, &SwitchDeviceViewModel::changeLanguage, &viewModel, [&] {
        textAtChange = viewModel.lxTr(kDisconnected);
        languageAtChange = viewModel.languageType();
    });
    const SignalRecorder recorder(&viewModel);
    viewModel.slot_languageChange(QStringLiteral("en"));
    QCOMPARE(recorder.texts(),
             (QStringList{QStringLiteral("changeLanguage()"), QStringLiteral("languageTypeChanged()")}));
    QCOMPARE(textAtChange, QStringLiteral("Disconnected"));
    QCOMPARE(languageAtChange, SwitchDeviceViewModel::Zh);
    QCOMPARE(viewModel.languageType(), SwitchDeviceViewModel::En);
}

void TestSwitchDeviceViewModel::languageChange_selectsLanguage_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<int>("language");
    QTest::addColumn<QString>("text");
    QTest::newRow("zh_CN") << QStringLiteral("zh_CN") << int(SwitchDeviceViewModel::Zh) << kDisconnected;
    QTest::newRow("en") << QStringLiteral("en") << int(SwitchDeviceViewModel::En) << QStringLiteral("Disconnected");
    QTest::newRow("unknown") << QStringLiteral("fr") << int(SwitchDeviceViewModel::Zh) << kDisconnected;
    QTest::newRow("empty") << QString() << int(SwitchDeviceViewModel::Zh) << kDisconnected;
    QTest::newRow("codes are compared exactly")
        << QStringLiteral("EN") << int(SwitchDeviceViewModel::Zh) << kDisconnected;
}

void TestSwitchDeviceViewModel::languageChange_selectsLanguage()
{
    QFETCH(const QString, code);
    QFETCH(const int, language);
    QFETCH(const QString, text);
    SwitchDeviceViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    viewModel.slot_languageChange(code);
    QCOMPARE(int(viewModel.languageType()), language);
    QCOMPARE(viewModel.lxTr(kDisconnected), text);
    // Announced whether the language differs or not: the panel reloads its texts.
    QCOMPARE(recorder.names(), (QStringList{QStringLiteral("changeLanguage"), QStringLiteral("languageTypeChanged")}));
}

void TestSwitchDeviceViewModel::languageChange_ofTheSession_isFollowed()
{
    const SwitchDeviceViewModel first;
    const SwitchDeviceViewModel second;
    emit ovra::bll::SwitchDevice::getInstance()->signal_languageChange(QStringLiteral("en"));
    QTRY_COMPARE(first.languageType(), SwitchDeviceViewModel::En);
    QTRY_COMPARE(second.languageType(), SwitchDeviceViewModel::En);
    QCOMPARE(first.lxTr(kDisconnected), QStringLiteral("Disconnected"));
}

void TestSwitchDeviceViewModel::lxTr_unknownText_isReturnedAsItIs()
{
    SwitchDeviceViewModel viewModel;
    for (const char *code : {"zh_CN", "en"}) {
        viewModel.slot_languageChange(QLatin1String(code));
        QCOMPARE(viewModel.lxTr(QStringLiteral("没有译文 %1")), QStringLiteral("没有译文 %1"));
        QCOMPARE(viewModel.lxTr(QString()), QString());
    }
}

void TestSwitchDeviceViewModel::setShadowVisible_reachesTheHost()
{
    QList<bool> wishes;
    const QObject host;
    connect(ZR::ExtensionSystem::PluginManager::instance(), &ZR::ExtensionSystem::PluginManager::shadowVisibleRequested,
            &host, [&wishes](bool visible) { wishes.append(visible); });
    SwitchDeviceViewModel viewModel;
    viewModel.setShadowVisible(false);
    viewModel.setShadowVisible(true);
    QCOMPARE(wishes, (QList<bool>{false, true}));
}

int main(int argc, char **argv)
{
    if (argc == 2 && qstrcmp(argv[1], kPrintLanguage) == 0)
        return printLanguage(argc, argv);
    QCoreApplication application(argc, argv);
    TestSwitchDeviceViewModel test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_switchdeviceviewmodel.moc"
