#include "switchdevicepanelviewmodelplugin.h"

#include "packetanalysisviewmodel.h"
#include "switchdeviceviewmodel.h"

#include <QtQml/qqml.h>

namespace {

constexpr const char *kModuleUri = "OVRAQuick.SwitchDevicePanel.ViewModel";
constexpr int kMajor = 1;
constexpr int kMinor = 0;

} // namespace

void SwitchDevicePanelViewModelPlugin::registerTypes(const char *)
{
    qmlRegisterType<SwitchDeviceViewModel>(kModuleUri, kMajor, kMinor, "SwitchDeviceViewModel");
    qmlRegisterType<PacketAnalysisViewModel>(kModuleUri, kMajor, kMinor, "PacketAnalysisViewModel");
    qmlRegisterUncreatableMetaObject(SwitchDeviceViewModel::staticMetaObject, kModuleUri, kMajor, kMinor, "ConnectType",
                                     QStringLiteral("Not creatable as it is an enum type."));
}
