// The plugin library as Qt's loader sees it.
#include <QtCore/QJsonObject>
#include <QtCore/QLibrary>
#include <QtCore/QPluginLoader>
#include <QtCore/QPointer>
#include <QtQml/QQmlExtensionPlugin>
#include <QtTest/QtTest>

namespace {

const QString kPlugin = QStringLiteral(SWITCHPANEL_PLUGIN);
constexpr const char *kClassName = "SwitchDevicePanelViewModelPlugin";

} // namespace

class TestPlugin : public QObject
{
    Q_OBJECT

private slots:
    void metaData_namesInterfaceAndClass_andNothingElse();
    void instance_isOneObject_untilItIsDeleted();
    void entryPoint_makesANewObject_onlyAfterTheOldOneIsGone();
    void metacast_knowsOwnNameAndInterface();
    void plugin_overridesTypeRegistrationOnly();
};

void TestPlugin::metaData_namesInterfaceAndClass_andNothingElse()
{
    const QPluginLoader loader(kPlugin);
    const QJsonObject metaData = loader.metaData();
    QCOMPARE(metaData.value(QStringLiteral("IID")).toString(),
             QStringLiteral("org.qt-project.Qt.QQmlExtensionInterface/1.0"));
    QCOMPARE(metaData.value(QStringLiteral("className")).toString(), QLatin1String(kClassName));
    const int qtVersion = metaData.value(QStringLiteral("version")).toInt();
    QCOMPARE(qtVersion & 0xffff00, 0x050f00); // Qt 5.15
    // What the loader adds itself, and no description of the plugin's own.
    QCOMPARE(metaData.value(QStringLiteral("MetaData")).toObject(), QJsonObject());
    const QStringList builtIn{QStringLiteral("IID"),       QStringLiteral("MetaData"), QStringLiteral("archreq"),
                              QStringLiteral("className"), QStringLiteral("debug"),    QStringLiteral("version")};
    for (const QString &key : metaData.keys())
        QVERIFY2(builtIn.contains(key), qUtf8Printable(key));
    QVERIFY(!loader.isLoaded()); // read without running code of the plugin
}

void TestPlugin::instance_isOneObject_untilItIsDeleted()
{
    QPluginLoader loader(kPlugin);
    const QPointer<QObject> first = loader.instance();
    QVERIFY2(first, qUtf8Printable(loader.errorString()));
    QCOMPARE(first->metaObject()->className(), kClassName);
    QCOMPARE(first->parent(), nullptr);
    QCOMPARE(loader.instance(), first.data());
    QPluginLoader another(kPlugin);
    QCOMPARE(another.instance(), first.data());

    delete first.data();
    const QPointer<QObject> second = loader.instance();
    QVERIFY(second);
    QVERIFY(first.isNull());
    QCOMPARE(second->metaObject()->className(), kClassName);
    QCOMPARE(another.instance(), second.data());
}

void TestPlugin::entryPoint_makesANewObject_onlyAfterTheOldOneIsGone()
{
    using EntryPoint = QObject *(*)();
    QLibrary library(kPlugin);
    const auto entryPoint = reinterpret_cast<EntryPoint>(library.resolve("qt_plugin_instance"));
    QVERIFY(entryPoint);
    QVERIFY(library.resolve("qt_plugin_query_metadata"));
    const QPointer<QObject> first = entryPoint();
    QVERIFY(first);
    QCOMPARE(entryPoint(), first.data());
    delete first.data();
    QVERIFY(first.isNull());
    const QPointer<QObject> second = entryPoint();
    QVERIFY(second);
    QCOMPARE(entryPoint(), second.data());
}

void TestPlugin::metacast_knowsOwnNameAndInterface()
{
    QPluginLoader loader(kPlugin);
    QObject *instance = loader.instance();
    QVERIFY(instance);
    QCOMPARE(instance->qt_metacast(kClassName), static_cast<void *>(instance));
    QVERIFY(instance->qt_metacast("QQmlExtensionPlugin"));
    QVERIFY(instance->qt_metacast(QQmlExtensionInterface_iid));
    QVERIFY(qobject_cast<QQmlExtensionInterface *>(instance));
    QCOMPARE(instance->qt_metacast("SwitchDeviceViewModel"), nullptr);
    QCOMPARE(instance->qt_metacast(nullptr), nullptr);
}

void TestPlugin::plugin_overridesTypeRegistrationOnly()
{
    QPluginLoader loader(kPlugin);
    const QObject *instance = loader.instance();
    QVERIFY(instance);
    const QMetaObject *metaObject = instance->metaObject();
    QCOMPARE(metaObject->superClass(), &QQmlExtensionPlugin::staticMetaObject);
    QCOMPARE(metaObject->methodCount(), QQmlExtensionPlugin::staticMetaObject.methodCount());
    QCOMPARE(metaObject->propertyCount(), QQmlExtensionPlugin::staticMetaObject.propertyCount());
    QCOMPARE(metaObject->classInfoCount(), 0);
    QCOMPARE(instance->children().size(), 0);
}

QTEST_GUILESS_MAIN(TestPlugin)
#include "tst_plugin.moc"
