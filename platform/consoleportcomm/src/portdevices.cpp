#include "portdevices.h"

#include <QtCore/QFileInfo>
#include <QtSerialPort/QSerialPort>
#include <QtSerialPort/QSerialPortInfo>

#include <algorithm>
#include <mutex>
#include <vector>

namespace portdevices {

namespace {

struct RegisteredPort
{
    QString name;
    ConsoleportComm::DeviceFactory factory;
};

struct RegisteredPorts
{
    std::mutex lock; // guards ports
    std::vector<RegisteredPort> ports;
};

RegisteredPorts &registered()
{
    static RegisteredPorts *const ports = new RegisteredPorts; // the port thread may outlive static objects
    return *ports;
}

// With the lock held.
std::vector<RegisteredPort>::iterator find(RegisteredPorts &all, const QString &name)
{
    return std::find_if(all.ports.begin(), all.ports.end(),
                        [&name](const RegisteredPort &port) { return port.name == name; });
}

ConsoleportComm::DeviceFactory factoryOf(const QString &name)
{
    RegisteredPorts &all = registered();
    const std::lock_guard<std::mutex> guard(all.lock);
    const auto found = find(all, name);
    return found == all.ports.end() ? ConsoleportComm::DeviceFactory() : found->factory;
}

// Qt calls both "permission": a port that may not be opened and one that another program holds.
PortError::Kind deniedKind(const QString &port)
{
    const QString location = QSerialPortInfo(port).systemLocation();
    const QFileInfo file(location.isEmpty() ? port : location);
    return file.exists() && !(file.isReadable() && file.isWritable()) ? PortError::Kind::NoPermission
                                                                      : PortError::Kind::Busy;
}

PortError::Kind kindOf(QSerialPort::SerialPortError error, const QString &port)
{
    if (error == QSerialPort::PermissionError)
        return deniedKind(port);
    if (error == QSerialPort::DeviceNotFoundError)
        return PortError::Kind::NoSuchPort;
    if (error == QSerialPort::UnsupportedOperationError)
        return PortError::Kind::NotATerminal;
    return PortError::Kind::OpenFailed;
}

bool endsConnection(QSerialPort::SerialPortError error)
{
    switch (error) {
    case QSerialPort::ResourceError:
    case QSerialPort::ReadError:
    case QSerialPort::WriteError:
    case QSerialPort::DeviceNotFoundError:
    case QSerialPort::PermissionError:
    case QSerialPort::UnknownError:
        return true;
    default: // nothing happened, or a single call was refused
        return false;
    }
}

bool isPlainFileOrFolder(const QString &port)
{
    const QFileInfo file(port);
    return port.contains(QLatin1Char('/')) && (file.isFile() || file.isDir());
}

// The speed is set last: it is the only one of the settings that a port can refuse.
bool configure(QSerialPort &serial, int baudRate)
{
    return serial.setDataBits(QSerialPort::Data8) && serial.setParity(QSerialPort::NoParity)
           && serial.setStopBits(QSerialPort::OneStop) && serial.setFlowControl(QSerialPort::NoFlowControl)
           && serial.setBaudRate(baudRate);
}

std::unique_ptr<QIODevice> openSerial(const QString &port, int baudRate, PortError *error)
{
    auto serial = std::make_unique<QSerialPort>();
    serial->setPortName(port);
    *error = {PortError::Kind::NotATerminal, port, QString()};
    if (isPlainFileOrFolder(port)) // would be opened, and perhaps changed, before it turns out to be no terminal
        return nullptr;
    if (!serial->open(QIODevice::ReadWrite)) {
        *error = {kindOf(serial->error(), port), port, serial->errorString()};
        return nullptr;
    }
    if (!configure(*serial, baudRate)) {
        *error = {PortError::Kind::BadBaudRate, port, QString::number(baudRate)};
        return nullptr;
    }
    return serial;
}

std::unique_ptr<QIODevice> openRegistered(const ConsoleportComm::DeviceFactory &factory, const QString &port,
                                          PortError *error)
{
    std::unique_ptr<QIODevice> device = factory();
    if (device && device->open(QIODevice::ReadWrite | QIODevice::Unbuffered))
        return device;
    *error = device ? PortError{PortError::Kind::OpenFailed, port, device->errorString()}
                    : PortError{PortError::Kind::NoSuchPort, port, QString()};
    return nullptr;
}

} // namespace

bool add(const QString &name, ConsoleportComm::DeviceFactory factory)
{
    RegisteredPorts &all = registered();
    const std::lock_guard<std::mutex> guard(all.lock);
    if (name.isEmpty() || !factory || find(all, name) != all.ports.end())
        return false;
    all.ports.push_back({name, std::move(factory)});
    return true;
}

void remove(const QString &name)
{
    RegisteredPorts &all = registered();
    const std::lock_guard<std::mutex> guard(all.lock);
    const auto found = find(all, name);
    if (found != all.ports.end())
        all.ports.erase(found);
}

QStringList names()
{
    QStringList result;
    const QList<QSerialPortInfo> system = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &port : system)
        result << port.portName();
    RegisteredPorts &all = registered();
    const std::lock_guard<std::mutex> guard(all.lock);
    for (const RegisteredPort &port : all.ports) {
        result.removeAll(port.name); // hidden by the registered one
        result << port.name;
    }
    return result;
}

std::unique_ptr<QIODevice> open(const QString &port, int baudRate, PortError *error)
{
    const ConsoleportComm::DeviceFactory factory = factoryOf(port);
    return factory ? openRegistered(factory, port, error) : openSerial(port, baudRate, error);
}

void watchForEnd(QIODevice &device, QObject *context, const std::function<void(const QString &)> &end)
{
    if (auto *serial = qobject_cast<QSerialPort *>(&device)) {
        QObject::connect(serial, &QSerialPort::errorOccurred, context,
                         [serial, end](QSerialPort::SerialPortError error) {
                             if (endsConnection(error))
                                 end(serial->errorString());
                         });
        return;
    }
    QObject::connect(&device, &QIODevice::readChannelFinished, context, [&device, end] { end(device.errorString()); });
}

void discardUnsent(QIODevice &device)
{
    if (auto *serial = qobject_cast<QSerialPort *>(&device))
        serial->clear(QSerialPort::Output);
}

} // namespace portdevices
