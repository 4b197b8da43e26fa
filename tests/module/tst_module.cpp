// The QML module, imported from its folder by a real engine.
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtTest/QtTest>

#include <memory>

namespace {

const QByteArray kImport = "import OVRAQuick.SwitchDevicePanel.ViewModel 1.0\n";

} // namespace

class TestModule : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void qmldir_namesModulePluginAndTypes();
    void types_areCreatable_data();
    void types_areCreatable();
    void import_ofAnotherVersion_isRefused_data();
    void import_ofAnotherVersion_isRefused();
    void import_ofNoFurtherTypes();
    void connectType_isNotCreatable();
    void enumerator_resolvesThroughConnectType_data();
    void enumerator_resolvesThroughConnectType();
    void packetAnalysis_isReachable();
    void properties_bindAndNotify();
    void readings_thatCannotBeWritten_areRefused_data();
    void readings_thatCannotBeWritten_areRefused();
    void userName_writtenFromQml_hasNoEffect();
    void signalHandler_getsArgumentsByName();
    void twoViewModels_inOneDocument();
    void unreferencedViewModel_isDestroyedByTheEngine();
    void viewModelOfTheEngine_isDestroyedWithIt();
    void destroyedByQml_stopsItsThreads();
    void twoEngines_importTheModule();

private:
    //! The object that the document makes; null, with the errors printed, when it makes none.
    QObject *create(const QByteArray &document);
    QString errorsOf(const QByteArray &document);
    //! A document that makes a view model of its own, in JavaScript's ownership.
    QByteArray parentDocument();

    QTemporaryDir _folder;
    std::unique_ptr<QQmlEngine> _engine;
};

void TestModule::init()
{
    _engine = std::make_unique<QQmlEngine>();
    _engine->addImportPath(QStringLiteral(SWITCHPANEL_QML_DIR));
}

void TestModule::cleanup()
{
    _engine.reset();
}

QObject *TestModule::create(const QByteArray &document)
{
    QQmlComponent component(_engine.get());
    component.setData(document, QUrl());
    if (component.isError())
        qWarning() << component.errors();
    QObject *object = component.create();
    if (object)
        object->setParent(_engine.get());
    return object;
}

QString TestModule::errorsOf(const QByteArray &document)
{
    QQmlComponent component(_engine.get());
    component.setData(document, QUrl());
    return component.errorString();
}

QByteArray TestModule::parentDocument()
{
    QFile file(_folder.filePath(QStringLiteral("Child.qml")));
    if (!file.open(QIODevice::WriteOnly) || file.write(kImport + "SwitchDeviceViewModel { vlanId: 9 }") < 0)
        qFatal("Cannot write %s", qUtf8Printable(file.fileName()));
    return kImport + R"(
        SwitchDeviceViewModel {
            property var child: Qt.createComponent(")"
           + QUrl::fromLocalFile(file.fileName()).toEncoded() + R"(").createObject(null)
            function forget() { child = null }
            function destroyChild() { child.destroy() }
        })";
}

void TestModule::qmldir_namesModulePluginAndTypes()
{
    QFile file(QStringLiteral(SWITCHPANEL_MODULE_DIR "/qmldir"));
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    const QList<QByteArray> lines = file.readAll().trimmed().split('\n');
    QCOMPARE(lines, (QList<QByteArray>{"module OVRAQuick.SwitchDevicePanel.ViewModel",
                                       "plugin switchdevicepanelviewmodelplugin",
                                       "classname SwitchDevicePanelViewModelPlugin", "typeinfo plugins.qmltypes"}));
    QVERIFY(QFile::exists(QStringLiteral(SWITCHPANEL_MODULE_DIR "/plugins.qmltypes")));
}

void TestModule::types_areCreatable_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::newRow("SwitchDeviceViewModel") << QByteArray("SwitchDeviceViewModel");
    QTest::newRow("PacketAnalysisViewModel") << QByteArray("PacketAnalysisViewModel");
}

void TestModule::types_areCreatable()
{
    QFETCH(const QByteArray, type);
    QQmlComponent component(_engine.get());
    component.setData(kImport + type + " {}", QUrl());
    const std::unique_ptr<QObject> object(component.create());
    QVERIFY2(object, qUtf8Printable(component.errorString()));
    QCOMPARE(object->parent(), nullptr);
    QVERIFY(object->inherits(type.constData()));
}

void TestModule::import_ofAnotherVersion_isRefused_data()
{
    QTest::addColumn<QByteArray>("version");
    for (const char *version : {"1.1", "2.0", "0.9", "0.0", "1.65"})
        QTest::newRow(version) << QByteArray(version);
}

void TestModule::import_ofAnotherVersion_isRefused()
{
    QFETCH(const QByteArray, version);
    const QByteArray document =
        "import OVRAQuick.SwitchDevicePanel.ViewModel " + version + "\nSwitchDeviceViewModel {}";
    const QString expected =
        QStringLiteral("module \"OVRAQuick.SwitchDevicePanel.ViewModel\" version %1 is not installed")
            .arg(QLatin1String(version));
    const QString errors = errorsOf(document);
    QVERIFY2(errors.contains(expected), qUtf8Printable(errors));
    // Once loaded in its own version, still not.
    QVERIFY(create(kImport + "SwitchDeviceViewModel {}"));
    QVERIFY(errorsOf(document).contains(expected));
}

void TestModule::import_ofNoFurtherTypes()
{
    // The worker and the enums' own names stay inside.
    for (const char *type : {"PacketAnalysisWorker", "ParseState", "LanguageType"})
        QVERIFY2(errorsOf(kImport + type + " {}").contains(QLatin1String("is not a type")), type);
}

void TestModule::connectType_isNotCreatable()
{
    const QString errors = errorsOf(kImport + "ConnectType {}");
    QVERIFY2(errors.contains(QStringLiteral("Not creatable as it is an enum type.")), qUtf8Printable(errors));
}

void TestModule::enumerator_resolvesThroughConnectType_data()
{
    QTest::addColumn<int>("value");
    const auto addEnum = [](const QList<QByteArray> &keys) {
        for (int i = 0; i < keys.size(); ++i)
            QTest::newRow(keys.at(i).constData()) << i;
    };
    addEnum({"Login", "ConfrimPassword", "ChangePassword", "Null"});
    addEnum({"NeedUsername", "NeedPassword", "NeedConfirmPassword", "LoginSuccess", "LoginFailed", "InputMore",
             "ConnectSuccess", "CurrentConfiguration", "ParseSuccess", "ConfigInfo", "Unknown"});
    addEnum({"Zh", "En"});
}

void TestModule::enumerator_resolvesThroughConnectType()
{
    QFETCH(const int, value);
    const QByteArray document =
        kImport + "SwitchDeviceViewModel { property var result: ConnectType." + QTest::currentDataTag() + " }";
    const QObject *object = create(document);
    QVERIFY(object);
    QCOMPARE(object->property("result"), QVariant(value)); // undefined where it does not resolve
}

void TestModule::packetAnalysis_isReachable()
{
    QObject *object = create(kImport + R"(
        SwitchDeviceViewModel {
            property string status: packetAnalysis.syncIntervalStatus
            property string master: packetAnalysis.masterClockIp
            property int decoders: packetAnalysis.decoderCount
            property bool isSame: packetAnalysis === packetAnalysis
            function setDecoders(count) { packetAnalysis.decoderCount = count }
        })");
    QVERIFY(object);
    QCOMPARE(object->property("status"), QVariant(QStringLiteral("no anylse")));
    QCOMPARE(object->property("master"), QVariant(QStringLiteral("未知")));
    QCOMPARE(object->property("decoders"), QVariant(10));
    QCOMPARE(object->property("isSame"), QVariant(true));
    QVERIFY(QMetaObject::invokeMethod(object, "setDecoders", Q_ARG(QVariant, 7)));
    QCOMPARE(object->property("decoders"), QVariant(7));
}

void TestModule::properties_bindAndNotify()
{
    QObject *object = create(kImport + R"(
        SwitchDeviceViewModel {
            vlanId: 5
            interfaceType: "trunk"
            selectedInterfacePorts: ["1", "3"]
            property int followed: vlanId
            property int changes: 0
            onVlanIdChanged: changes += 1
            function setTo(id) { vlanId = id }
        })");
    QVERIFY(object);
    const int changesAtStart = object->property("changes").toInt();
    for (const int id : {4094, 5, 6}) // refused, equal, new
        QVERIFY(QMetaObject::invokeMethod(object, "setTo", Q_ARG(QVariant, id)));
    QCOMPARE(object->property("followed"), QVariant(6));
    QCOMPARE(object->property("changes").toInt() - changesAtStart, 1);
    QCOMPARE(object->property("interfaceType"), QVariant(QStringLiteral("trunk")));
    QCOMPARE(object->property("selectedInterfacePorts").toList(),
             (QVariantList{QStringLiteral("1"), QStringLiteral("3")}));
}

void TestModule::readings_thatCannotBeWritten_areRefused_data()
{
    QTest::addColumn<QByteArray>("statement");
    for (const char *statement : {"downComNum = 3", "upComNum = 3", "boardType = 'S5735'", "packetAnalysis = null",
                                  "connType = 2", "isWaitingResponse = true", "toast = 'text'"})
        QTest::newRow(statement) << QByteArray(statement);
}

void TestModule::readings_thatCannotBeWritten_areRefused()
{
    QFETCH(const QByteArray, statement);
    const QObject *object = create(kImport + R"(
        SwitchDeviceViewModel {
            function isRefused() { try { )"
                                   + statement + R"(; return false } catch (error) { return true } }
            property bool wasRefused: isRefused()
        })");
    QVERIFY(object);
    QCOMPARE(object->property("wasRefused"), QVariant(true));
}

void TestModule::userName_writtenFromQml_hasNoEffect()
{
    const QObject *object = create(kImport + R"(
        SwitchDeviceViewModel {
            function write() { userName = "admin"; return "[" + userName + "]" }
            property string result: write()
        })");
    QVERIFY(object);
    QCOMPARE(object->property("result"), QVariant(QStringLiteral("[]")));
}

void TestModule::signalHandler_getsArgumentsByName()
{
    QObject *object = create(kImport + R"(
        SwitchDeviceViewModel {
            property string shown
            onShowToast: shown = text + "/" + state
        })");
    QVERIFY(object);
    QVERIFY(QMetaObject::invokeMethod(object, "disconnectDevice"));
    QCOMPARE(object->property("shown"), QVariant(QStringLiteral("已断开连接/0")));
}

void TestModule::twoViewModels_inOneDocument()
{
    const QObject *object = create(kImport + R"(
        SwitchDeviceViewModel {
            id: first
            vlanId: 2
            property SwitchDeviceViewModel second: SwitchDeviceViewModel { vlanId: first.vlanId + 1 }
            property PacketAnalysisViewModel alone: PacketAnalysisViewModel { decoderCount: 4 }
            property int sum: vlanId + second.vlanId
            property bool hasOwnAnalysis: packetAnalysis !== second.packetAnalysis && packetAnalysis !== alone
        })");
    QVERIFY(object);
    QCOMPARE(object->property("sum"), QVariant(5));
    QCOMPARE(object->property("hasOwnAnalysis"), QVariant(true));
}

void TestModule::unreferencedViewModel_isDestroyedByTheEngine()
{
    QObject *object = create(parentDocument());
    QVERIFY(object);
    const QPointer<QObject> child = object->property("child").value<QObject *>();
    QVERIFY(child);
    QCOMPARE(child->parent(), nullptr);
    QCOMPARE(child->property("vlanId"), QVariant(9));
    QCOMPARE(QQmlEngine::objectOwnership(child), QQmlEngine::JavaScriptOwnership);
    const QPointer<QObject> analysis = child->property("packetAnalysis").value<QObject *>();
    QVERIFY(analysis);
    _engine->collectGarbage();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(child); // still referenced

    QVERIFY(QMetaObject::invokeMethod(object, "forget"));
    _engine->collectGarbage();
    QTRY_VERIFY(child.isNull());
    QVERIFY(analysis.isNull());
}

void TestModule::viewModelOfTheEngine_isDestroyedWithIt()
{
    QObject *object = create(parentDocument());
    QVERIFY(object);
    const QPointer<QObject> child = object->property("child").value<QObject *>();
    QVERIFY(child);
    _engine.reset();
    QVERIFY(child.isNull());
}

void TestModule::destroyedByQml_stopsItsThreads()
{
    QObject *object = create(parentDocument());
    QVERIFY(object);
    const QPointer<QObject> child = object->property("child").value<QObject *>();
    QVERIFY(child);
    const auto threads = child->findChildren<QThread *>();
    QCOMPARE(threads.size(), 2);
    const QPointer<QThread> thread = threads.first();
    QVERIFY(QMetaObject::invokeMethod(object, "destroyChild"));
    QTRY_VERIFY(child.isNull());
    QVERIFY(thread.isNull());
}

void TestModule::twoEngines_importTheModule()
{
    QVERIFY(create(kImport + "SwitchDeviceViewModel {}"));
    QQmlEngine second;
    second.addImportPath(QStringLiteral(SWITCHPANEL_QML_DIR));
    QQmlComponent component(&second);
    component.setData(kImport + "PacketAnalysisViewModel {}", QUrl());
    const std::unique_ptr<QObject> object(component.create());
    QVERIFY2(object, qUtf8Printable(component.errorString()));
}

QTEST_GUILESS_MAIN(TestModule)
#include "tst_module.moc"
