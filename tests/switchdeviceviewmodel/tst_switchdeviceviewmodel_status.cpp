// Status queries, over the recording platform, whose getters return their own name twice.
#include "consolescene.h"

#include <QtTest/QtTest>

using Family = ConsoleScene::Family;
using VM = SwitchDeviceViewModel;

namespace {

RecordingPlatform &platform()
{
    return RecordingPlatform::instance();
}

struct Query
{
    const char *type;
    const char *preparation; // the call in front of the getter; empty: none
    const char *getter;
};

const Query kQueries[] = {
    {"vlan", "", "getVlanStatusCommands"},
    {"组播", "setVlanId(17)", "getMulticastQueryCommands"},
    {"端口状态监测", "", "getPortStatusCommands"},
    {"接口速率", "setBoardNum(3)", "getInterfaceSpeedCommands"},
    {"光模块", "", "getTransceiverCommands"},
    {"IP冲突", "", "getIpConflictCommands"},
    {"组播转发表", "", "getMulticastForwardingTableCommands"},
};

//! A view model whose switch has slot 3, and multicast in VLAN 17.
class StatusScene : public ConsoleScene
{
public:
    explicit StatusScene(const QString &language = QStringLiteral("zh_CN"))
        : ConsoleScene(Family::Huawei, language)
    {
        answer("Interface PHY\r\nGigabitEthernet3/0/1 up\r\n");
        viewModel().disconnectDevice(); // that reply completes nothing of the test's own
        viewModel().setMulticastVlanId(17);
        clear();
    }
};

} // namespace

class TestSwitchDeviceViewModelStatus : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void query_sendsItsCommands_underItsOwnName_data();
    void query_sendsItsCommands_underItsOwnName();
    void query_unknownType_sendsNothing_data();
    void query_unknownType_sendsNothing();
    void query_whileWaiting_isRefused();
    void query_backToBack_theSecondIsRefused();
    void query_ofAReplyThatEndsTheWaiting_mayFollowAtOnce();
    void query_pageKeys_takeNoLineEnd_data();
    void query_pageKeys_takeNoLineEnd();
    void query_withoutCommands_sendsNothing();

private:
    std::unique_ptr<MessageLog> _log;
};

void TestSwitchDeviceViewModelStatus::init()
{
    _log = std::make_unique<MessageLog>();
}

void TestSwitchDeviceViewModelStatus::cleanup()
{
    const QStringList warnings = _log->takeWarnings();
    _log.reset();
    QCOMPARE(warnings, QStringList());
}

void TestSwitchDeviceViewModelStatus::query_sendsItsCommands_underItsOwnName_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("preparation");
    QTest::addColumn<QString>("getter");
    for (const char *language : {"zh_CN", "en"}) {
        for (const Query &query : kQueries)
            QTest::newRow(qPrintable(QString::fromUtf8(query.type) + QLatin1String(", ") + QLatin1String(language)))
                << QString::fromLatin1(language) << QString::fromUtf8(query.type)
                << QString::fromLatin1(query.preparation) << QString::fromLatin1(query.getter);
    }
}

void TestSwitchDeviceViewModelStatus::query_sendsItsCommands_underItsOwnName()
{
    QFETCH(const QString, language);
    QFETCH(const QString, type);
    QFETCH(const QString, preparation);
    QFETCH(const QString, getter);
    StatusScene scene(language);
    const QString label = scene->lxTr(type);
    scene->queryDeviceStatus(label);
    QStringList calls{preparation, getter + QStringLiteral("()"),
                      QStringLiteral("sendControlCmd(\"%1 1\\r\\n%1 2\\r\\n\")").arg(getter)};
    calls.removeAll(QString());
    QCOMPARE(scene.calls(), calls);
    QCOMPARE(scene.sent(), QList<QByteArray>{QStringLiteral("%1 1\r\n%1 2\r\n").arg(getter).toUtf8()});
    QCOMPARE(_log->lines(QStringLiteral("info")).last(), label + scene.tr("执行中..."));
    QCOMPARE(scene.signalTexts(), QStringList{QStringLiteral("isWaitingResponseChanged()")});
    QVERIFY(scene->isWaitingResponse());
}

void TestSwitchDeviceViewModelStatus::query_unknownType_sendsNothing_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("type");
    QTest::newRow("empty") << QStringLiteral("zh_CN") << QString();
    QTest::newRow("no such type") << QStringLiteral("zh_CN") << QStringLiteral("温度");
    QTest::newRow("with a blank") << QStringLiteral("zh_CN") << QStringLiteral("组播 ");
    QTest::newRow("other letters") << QStringLiteral("zh_CN") << QStringLiteral("VLAN");
    QTest::newRow("English while Chinese") << QStringLiteral("zh_CN") << QStringLiteral("Multicast");
    for (const Query &query : kQueries) {
        const QString type = QString::fromUtf8(query.type);
        if (type != QLatin1String("vlan")) // the same in every language
            QTest::newRow(qPrintable(type + QLatin1String(" while English"))) << QStringLiteral("en") << type;
    }
}

void TestSwitchDeviceViewModelStatus::query_unknownType_sendsNothing()
{
    QFETCH(const QString, language);
    QFETCH(const QString, type);
    StatusScene scene(language);
    scene->queryDeviceStatus(type);
    QCOMPARE(scene.calls(), QStringList());
    QCOMPARE(scene.signalTexts(),
             (QStringList{QStringLiteral("isWaitingResponseChanged()"), QStringLiteral("isWaitingResponseChanged()")}));
    QVERIFY(!scene->isWaitingResponse());
}

void TestSwitchDeviceViewModelStatus::query_whileWaiting_isRefused()
{
    StatusScene scene;
    scene->slot_handleParseState(VM::InputMore);
    scene.clear();
    for (const QString &type : {QStringLiteral("组播"), QStringLiteral("温度")}) {
        scene->queryDeviceStatus(type);
        QCOMPARE(scene.calls(), QStringList());
        QCOMPARE(scene.signalTexts(), QStringList());
        QVERIFY(scene->isWaitingResponse());
    }
    scene.complete();
    QCOMPARE(scene.sent(), QList<QByteArray>()); // refused, not put off
}

void TestSwitchDeviceViewModelStatus::query_backToBack_theSecondIsRefused()
{
    StatusScene scene;
    scene->queryDeviceStatus(QStringLiteral("vlan"));
    scene->queryDeviceStatus(QStringLiteral("光模块"));
    scene.complete();
    QCOMPARE(scene.sent().size(), 1);
    scene->queryDeviceStatus(QStringLiteral("光模块"));
    QCOMPARE(scene.sent().size(), 2);
}

void TestSwitchDeviceViewModelStatus::query_ofAReplyThatEndsTheWaiting_mayFollowAtOnce()
{
    // The property ends with the reply, the queue's own flag 200 ms later: the next query waits for its turn.
    StatusScene scene;
    scene->queryDeviceStatus(QStringLiteral("vlan"));
    scene.answer("The total number of VLANs is : 1");
    QVERIFY(!scene->isWaitingResponse());
    scene->queryDeviceStatus(QStringLiteral("光模块"));
    QVERIFY(scene->isWaitingResponse());
    QCOMPARE(scene.sent().size(), 1);
    QTRY_COMPARE(scene.sent().size(), 2);
}

void TestSwitchDeviceViewModelStatus::query_pageKeys_takeNoLineEnd_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("getter");
    for (const Query &query : kQueries)
        QTest::newRow(query.type) << QString::fromUtf8(query.type) << QString::fromLatin1(query.getter);
}

void TestSwitchDeviceViewModelStatus::query_pageKeys_takeNoLineEnd()
{
    QFETCH(const QString, type);
    QFETCH(const QString, getter);
    StatusScene scene;
    platform().setCommands(getter, {QStringLiteral("space"), QStringLiteral("显示"), QStringLiteral("a space b"),
                                    QStringLiteral("SPACE"), QStringLiteral("whitespace"), QStringLiteral("end")});
    scene->queryDeviceStatus(type);
    QCOMPARE(scene.sent(), QList<QByteArray>{"space显示\r\na space bSPACE\r\nwhitespaceend\r\n"});
}

void TestSwitchDeviceViewModelStatus::query_withoutCommands_sendsNothing()
{
    StatusScene scene;
    platform().setCommands(QStringLiteral("getTransceiverCommands"), QStringList());
    scene->queryDeviceStatus(QStringLiteral("光模块"));
    QCOMPARE(scene.sent(), QList<QByteArray>());
    QVERIFY(!scene->isWaitingResponse());
    QCOMPARE(scene.countOf("isWaitingResponseChanged"), 2);
}

QTEST_GUILESS_MAIN(TestSwitchDeviceViewModelStatus)
#include "tst_switchdeviceviewmodel_status.moc"
