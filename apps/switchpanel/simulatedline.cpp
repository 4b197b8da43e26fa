#include "simulatedline.h"

#include <consoleportcomm/consoleportcomm.h>
#include <simulator/simulatedport.h>

using simulator::RunningSwitch;
using simulator::SimulatedPort;
using simulator::SimulatedSwitch;

SimulatedLine::SimulatedLine(const simulator::SimulatorOptions &options)
    : _options(options)
{}

SimulatedLine::~SimulatedLine()
{
    if (!_registeredName.isEmpty())
        ConsoleportComm::unregisterPort(_registeredName);
}

QString SimulatedLine::start(const QString &portText)
{
    if (SimulatedSwitch::isAvailable()) {
        _terminal = std::make_unique<SimulatedSwitch>(_options);
        QString path = _terminal->start();
        _error = _terminal->errorString();
        return path;
    }
    const auto device = std::make_shared<RunningSwitch>(_options);
    const auto makePort = [device]() -> std::unique_ptr<QIODevice> { return std::make_unique<SimulatedPort>(device); };
    if (ConsoleportComm::registerPort(portText, makePort))
        _registeredName = portText;
    return _registeredName;
}

simulator::ParsedOptions simulatorOptions(const ConnectionRequest &request)
{
    return simulator::parseSimulatorOptions(QStringList{QStringLiteral("--family"), request.simulated}
                                            + request.simulator);
}
