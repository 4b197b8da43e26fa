// The QML extension plugin: makes the view models available to QML, and nothing else.
#pragma once

#include <QtQml/QQmlExtensionPlugin>

/*!
    Registers the types of the module "OVRAQuick.SwitchDevicePanel.ViewModel" 1.0: SwitchDeviceViewModel and
    PacketAnalysisViewModel (creatable), and ConnectType, the holder of SwitchDeviceViewModel's enums (not creatable).
*/
class SwitchDevicePanelViewModelPlugin : public QQmlExtensionPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlExtensionInterface_iid)

public:
    //! The module URI is fixed: \a uri, the import that the engine resolves, is not looked at.
    void registerTypes(const char *uri) override;
};
