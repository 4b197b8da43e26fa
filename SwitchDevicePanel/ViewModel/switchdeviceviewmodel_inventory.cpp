// The family of the connected switch, and the ports that it has reported.
#include "switchdeviceviewmodel.h"
#include "switchdeviceviewmodel_p.h"

#include <switchdevicebll/switchdeviceconfig.h>

#include <QtCore/QCoreApplication>

// A label of neither family loads the last description again, and is announced like any other.
void SwitchDeviceViewModel::setCurlogoChanged(const QString &value)
{
    SwitchModel &model = _d->model;
    if (model.familyLabel == value)
        return;
    model.familyLabel = value;
    if (value == lxTr(QStringLiteral("华为"))) {
        model.descriptionPath = QCoreApplication::applicationDirPath() + QLatin1String(kHuaweiDescription);
        model.naming.take(huaweiNaming());
    } else if (value == lxTr(QStringLiteral("华三"))) {
        model.descriptionPath = QCoreApplication::applicationDirPath() + QLatin1String(kHua3Description);
        model.naming.take(hua3Naming());
    }
    ovra::bll::SwitchDeviceConfig::getInstance()->loadXmlConfig(model.descriptionPath);
    emit curlogoChangedChanged(value);
}

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
