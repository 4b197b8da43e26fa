// The port inventory, and the operations that configure the switch.
#include "switchdeviceviewmodel.h"
#include "switchdeviceviewmodel_p.h"

QVariantList SwitchDeviceViewModel::gInterface()
{
    return _d->inventory.downPorts;
}

QVariantList SwitchDeviceViewModel::xgInterface()
{
    return _d->inventory.upPorts;
}

QVariantList SwitchDeviceViewModel::poeInterface()
{
    return QVariantList{QStringLiteral("all")} + _d->inventory.downPorts;
}

QVariantList SwitchDeviceViewModel::allInterface()
{
    return _d->inventory.downPorts + _d->inventory.upPorts;
}

int SwitchDeviceViewModel::downInterfaceMin()
{
    return _d->inventory.down.minimum;
}

int SwitchDeviceViewModel::downInterfaceMax()
{
    return _d->inventory.down.maximum;
}

int SwitchDeviceViewModel::upInterfaceMin()
{
    return _d->inventory.up.minimum;
}

int SwitchDeviceViewModel::upInterfaceMax()
{
    return _d->inventory.up.maximum;
}

void SwitchDeviceViewModel::setExportPath(const QString &path)
{
    _d->files.exportPath = path;
}

QString SwitchDeviceViewModel::getExportPath()
{
    return _d->files.exportPath;
}

void SwitchDeviceViewModel::sendSwitchDeviceCmd() {}

void SwitchDeviceViewModel::clearAllConfig() {}

void SwitchDeviceViewModel::queryDeviceStatus(const QString &) {}

void SwitchDeviceViewModel::saveSwitchDeviceCmd() {}

QString SwitchDeviceViewModel::getDefaultConfigPath()
{
    return QString();
}

void SwitchDeviceViewModel::exportSwitchInfo() {}

void SwitchDeviceViewModel::importSwitchInfo(const QString &) {}
