#pragma once

#include "porterror.h"

#include <consoleportcomm/consoleportcomm.h>

#include <QtCore/QIODevice>
#include <QtCore/QStringList>

#include <functional>
#include <memory>

/// Where open port devices come from: the system's serial ports and the ports that the host has registered.
namespace portdevices {

bool add(const QString &name, ConsoleportComm::DeviceFactory factory);
void remove(const QString &name);
QStringList names();

/// An open device, or null with the reason in `error`. Port thread only.
std::unique_ptr<QIODevice> open(const QString &port, int baudRate, PortError *error);

/// Calls `end` with the reason when the device has come to its end, perhaps more than once. `end` must not delete it.
void watchForEnd(QIODevice &device, QObject *context, const std::function<void(const QString &reason)> &end);

/// Throws away what the system has not sent yet, where the device can do that.
void discardUnsent(QIODevice &device);

} // namespace portdevices
