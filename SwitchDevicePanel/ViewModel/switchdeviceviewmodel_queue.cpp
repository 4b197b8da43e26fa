// The command queue and the collection of replies.
#include "switchdeviceviewmodel.h"
#include "switchdeviceviewmodel_p.h"

void SwitchDeviceViewModel::onDataReceived(const QByteArray &data)
{
    collectConsoleLines(data);
}

void SwitchDeviceViewModel::slot_RecAllData(const QByteArray &) {}

void SwitchDeviceViewModel::onCommandCompleted() {}
