// The built-in simulated switch as a port that can be opened.
#pragma once

#include "connectionoptions.h"

#include <simulator/runningswitch.h>
#include <simulator/simulatedswitch.h>
#include <simulator/simulatoroptions.h>

#include <memory>

/*!
    A simulated switch that is switched on while this object lives. It stands behind a pseudo terminal, so that talking
   to it goes through the system's serial ports; where the system has no pseudo terminals, it is a port that the
   communication library knows by the name "sim:...".
*/
class SimulatedLine
{
public:
    explicit SimulatedLine(const simulator::SimulatorOptions &options);
    ~SimulatedLine();
    SimulatedLine(const SimulatedLine &) = delete;
    SimulatedLine &operator=(const SimulatedLine &) = delete;

    //! Switches it on. The name to open, or an empty text with an errorString().
    QString start(const QString &portText);
    QString errorString() const { return _error; }

private:
    const simulator::SimulatorOptions _options;
    std::unique_ptr<simulator::SimulatedSwitch> _terminal;
    QString _registeredName;
    QString _error;
};

//! What a command line says about its simulated switch.
simulator::ParsedOptions simulatorOptions(const ConnectionRequest &request);
