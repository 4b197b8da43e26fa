#include <zrextensionsystem/pluginmanager.h>

#include <QtCore/QThread>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

using ZR::ExtensionSystem::PluginManager;

class TestPluginManager : public QObject
{
    Q_OBJECT

private slots:
    void shadow_beforeAnyWish_isVisible();
    void shadow_everyWish_reachesTheHost();
    void shadow_wishFromAnotherThread_arrivesOnTheHostsThread();
};

void TestPluginManager::shadow_beforeAnyWish_isVisible()
{
    QVERIFY(PluginManager::instance()->isShadowVisible());
}

void TestPluginManager::shadow_everyWish_reachesTheHost()
{
    QSignalSpy wishes(PluginManager::instance(), &PluginManager::shadowVisibleRequested);
    PluginManager::setShadowVisible(false);
    QVERIFY(!PluginManager::instance()->isShadowVisible());
    PluginManager::setShadowVisible(false);
    PluginManager::setShadowVisible(true);
    QVERIFY(PluginManager::instance()->isShadowVisible());
    const QList<QList<QVariant>> expected{{false}, {false}, {true}};
    QCOMPARE(QList<QList<QVariant>>(wishes), expected);
}

void TestPluginManager::shadow_wishFromAnotherThread_arrivesOnTheHostsThread()
{
    QObject host;
    int wishes = 0;
    QThread *arrivedOn = nullptr;
    connect(PluginManager::instance(), &PluginManager::shadowVisibleRequested, &host, [&](bool visible) {
        wishes += visible ? 0 : 1;
        arrivedOn = QThread::currentThread();
    });
    const std::unique_ptr<QThread> plugin(QThread::create([] { PluginManager::setShadowVisible(false); }));
    plugin->start();
    QVERIFY(plugin->wait(10000));
    QCOMPARE(wishes, 0); // queued: nothing may happen to a window on a foreign thread
    QTRY_COMPARE(wishes, 1);
    QCOMPARE(arrivedOn, thread());
}

QTEST_GUILESS_MAIN(TestPluginManager)
#include "tst_pluginmanager.moc"
