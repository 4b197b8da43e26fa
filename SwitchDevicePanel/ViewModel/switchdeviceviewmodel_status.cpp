// Status queries: one kind of status at a time, under its own name as the label.
#include "switchdeviceviewmodel.h"
#include "switchdeviceviewmodel_p.h"

#include "commandblock.h"

#include <switchdevicebll/switchdeviceconfig.h>

using ovra::bll::SwitchDeviceConfig;

namespace {

enum class Preparation { None, MulticastVlan, Slot };

struct StatusQuery
{
    const char *type; // as the panel names it, untranslated
    Preparation preparation;
    QStringList (SwitchDeviceConfig::*commands)() const;
};

const StatusQuery kQueries[] = {
    {"vlan", Preparation::None, &SwitchDeviceConfig::getVlanStatusCommands},
    {"组播", Preparation::MulticastVlan, &SwitchDeviceConfig::getMulticastQueryCommands},
    {"端口状态监测", Preparation::None, &SwitchDeviceConfig::getPortStatusCommands},
    {"接口速率", Preparation::Slot, &SwitchDeviceConfig::getInterfaceSpeedCommands},
    {"光模块", Preparation::None, &SwitchDeviceConfig::getTransceiverCommands},
    {"IP冲突", Preparation::None, &SwitchDeviceConfig::getIpConflictCommands},
    {"组播转发表", Preparation::None, &SwitchDeviceConfig::getMulticastForwardingTableCommands},
};

} // namespace

void SwitchDeviceViewModel::queryDeviceStatus(const QString &queryType)
{
    // Never stacked on an outstanding command.
    if (_d->queue.isWaitingResponse)
        return;
    setWaitingResponse(true);
    QStringList commands;
    for (const StatusQuery &query : kQueries) {
        if (queryType != lxTr(QString::fromUtf8(query.type)))
            continue;
        SwitchDeviceConfig *const config = SwitchDeviceConfig::getInstance();
        if (query.preparation == Preparation::MulticastVlan)
            config->setVlanId(_d->multicast.vlanId);
        else if (query.preparation == Preparation::Slot)
            config->setBoardNum(_d->inventory.slotNumber);
        commands = (config->*query.commands)();
        break;
    }
    enqueueCommand(queryType, commandBlock(commands, PageKeys::Bare));
}
