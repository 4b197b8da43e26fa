// The built module in a real engine: a QML document logs in to a switch and reads its ports through bindings.
#include <simulator/simulatedswitch.h>

#include <QtCore/QPointer>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtTest/QtTest>

#include <memory>

namespace {

const QByteArray kPanel = R"(
import QtQml 2.15
import OVRAQuick.SwitchDevicePanel.ViewModel 1.0

QtObject {
    id: panel
    property SwitchDeviceViewModel device: SwitchDeviceViewModel {
        property int inventories: 0
        property string loginStates: ""
        onShowToast: panel.toasts = panel.toasts.concat([text + ", " + state])
        onLogMessage: panel.lines = panel.lines + 1
        onParseStateChanged: loginStates += state + " "
        onUpComRangeChanged: inventories = inventories + 1
    }
    property var toasts: []
    property int lines: 0
    property string title: device.boardType + " " + device.downComRange + " " + device.upComRange
    property bool isBusy: device.isWaitingResponse
    property string ports: device.inventories > 0 ? device.allInterface().join(" ") : ""

    function communicate(port, user, password) {
        device.curlogoChanged = device.lxTr("华为")
        device.currentCom = port
        device.userText = user
        device.passwordText = password
        device.disconnectDevice()
        return device.deviceCommunicate()
    }
    function assignVlan(vlan, first, last) {
        device.vlanEnable = true
        device.vlanDownPortEnable = true
        device.interfaceType = "access"
        device.vlanId = vlan
        device.downPortMin = first
        device.downPortMax = last
        device.sendSwitchDeviceCmd()
    }
}
)";

} // namespace

class TestConsolePlugin : public QObject
{
    Q_OBJECT

private slots:
    void document_logsIn_readsThePorts_andConfigures();
    void engine_destroyedWhileConnected_closesThePort();

private:
    QObject *create();
    bool communicate(QObject *panel, simulator::SimulatedSwitch &device);

    std::unique_ptr<QQmlEngine> _engine;
};

QObject *TestConsolePlugin::create()
{
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    _engine = std::make_unique<QQmlEngine>();
    _engine->addImportPath(QStringLiteral(SWITCHPANEL_QML_DIR));
    QQmlComponent component(_engine.get());
    component.setData(kPanel, QUrl());
    QObject *const panel = component.create();
    if (panel)
        panel->setParent(_engine.get());
    else
        qWarning() << component.errors();
    return panel;
}

bool TestConsolePlugin::communicate(QObject *panel, simulator::SimulatedSwitch &device)
{
    QVariant isStarted;
    QMetaObject::invokeMethod(panel, "communicate", Q_RETURN_ARG(QVariant, isStarted), Q_ARG(QVariant, device.start()),
                              Q_ARG(QVariant, QStringLiteral("admin")), Q_ARG(QVariant, QStringLiteral("Admin@123")));
    return isStarted.toBool();
}

void TestConsolePlugin::document_logsIn_readsThePorts_andConfigures()
{
    constexpr int kLimitMs = 30000;
    simulator::SimulatedSwitch device{simulator::SimulatorOptions()};
    QObject *const panel = create();
    QVERIFY(panel);
    QVERIFY(communicate(panel, device));
    QTRY_COMPARE_WITH_TIMEOUT(panel->property("title").toString(), QStringLiteral("S5720-28X-LI-AC (1-24) (1-4)"),
                              kLimitMs);
    const QStringList ports = panel->property("ports").toString().split(QLatin1Char(' '));
    QCOMPARE(ports.size(), 28);
    QCOMPARE(ports.first(), QStringLiteral("g0/0/1"));
    QCOMPARE(ports.last(), QStringLiteral("xg0/0/4"));
    const QObject *const viewModel = panel->property("device").value<QObject *>();
    QCOMPARE(viewModel->property("loginStates").toString(), QStringLiteral("0 1 3 "));
    const QString port = viewModel->property("currentCom").toString();
    QCOMPARE(panel->property("toasts").toStringList(),
             (QStringList{QStringLiteral("已断开连接, 0"), QStringLiteral(", 0"), QStringLiteral("用户名登录中, 0"),
                          QStringLiteral("密码登录中, 0"), QStringLiteral("已连console端口:%1, 1").arg(port)}));
    QVERIFY(panel->property("lines").toInt() > 0);

    QTRY_VERIFY_WITH_TIMEOUT(!panel->property("isBusy").toBool(), kLimitMs);
    QMetaObject::invokeMethod(panel, "assignVlan", Q_ARG(QVariant, 80), Q_ARG(QVariant, 2), Q_ARG(QVariant, 3));
    QTRY_VERIFY_WITH_TIMEOUT(device.device().state().running.ports[2].vlan == 80, kLimitMs);
    const simulator::SwitchConfiguration running = device.device().state().running;
    QCOMPARE(running.ports[0].vlan, 1);
    QCOMPARE(running.ports[1].vlan, 80);
    QCOMPARE(running.ports[3].vlan, 1);
    _engine.reset();
}

void TestConsolePlugin::engine_destroyedWhileConnected_closesThePort()
{
    constexpr int kLimitMs = 30000;
    simulator::SimulatedSwitch device{simulator::SimulatorOptions()};
    QObject *const panel = create();
    QVERIFY(panel);
    const QPointer<QObject> viewModel = panel->property("device").value<QObject *>();
    QVERIFY(communicate(panel, device));
    QTRY_VERIFY_WITH_TIMEOUT(device.device().received().contains("admin"), kLimitMs);
    QVERIFY(device.isPortOpen());
    _engine.reset();
    QVERIFY(viewModel.isNull());
    QTRY_VERIFY_WITH_TIMEOUT(!device.isPortOpen(), kLimitMs);
}

QTEST_GUILESS_MAIN(TestConsolePlugin)
#include "tst_console_plugin.moc"
