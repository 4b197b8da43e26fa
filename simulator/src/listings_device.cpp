#include "commands.h"
#include "listings.h"
#include "text.h"

// Hardware listings of the Huawei family.

namespace simulator {

namespace {

constexpr int kTotalPower = 370000; // milliwatts
constexpr int kMostPower = 30000;

struct Kind
{
    const char *name;
    const char *speed;
};

Kind kindOf(InterfaceKind kind)
{
    switch (kind) {
    case InterfaceKind::TenGigabit:
        return {"10GE", "10000"};
    case InterfaceKind::FortyGigabit:
        return {"40GE", "40000"};
    default: // the gigabit ports; nothing else has hardware
        return {"GE", "1000"};
    }
}

QByteArray slotRow(const ConsoleSession &session, std::size_t port)
{
    const PortHardware &hardware = session.state().hardware.ports[port];
    const PortConfiguration &configuration = session.running().ports[port];
    const Kind kind = kindOf(hardware.kind);
    const bool powered = session.state().hardware.poe && !hardware.fibre;
    return left(session.names().path(port), 8) + left(QByteArray(kind.name) + (hardware.fibre ? "(F)" : "(C)"), 10)
           + left(hardware.module ? "Present" : "Absent", 8) + left(hardware.fibre ? "-" : "Auto", 5)
           + left(configuration.speed.isEmpty() ? QByteArray(kind.speed) : configuration.speed, 7)
           + left(configuration.duplex == "half" ? "Half" : "Full", 7) + left("Disable", 8)
           + left(session.state().isUp(port) ? "Up" : "Down", 6)
           + (powered ? (configuration.poe ? "Enable" : "Disable") : "-");
}

QByteArrayList moduleLines(const ConsoleSession &session, std::size_t port, bool verbose)
{
    const PortHardware &hardware = session.state().hardware.ports[port];
    const QByteArray name = session.names().longName(port);
    if (!hardware.module)
        return {"Info: Port " + name + ", transceiver is absent."};
    const Transceiver &module = *hardware.module;
    const QByteArray wavelength = session.options().blankInWavelength ? "Wavelength (nm)" : "Wavelength(nm)";
    QByteArrayList lines{
        name + " transceiver information:",
        rule(61),
        "Common information:",
        "  " + left("Transceiver Type", 31) + ':' + module.type,
        "  " + left("Connector Type", 31) + ':' + module.connector,
        "  " + left(wavelength, 31) + ':' + number(module.wavelengthNm),
        "  " + left("Transfer Distance(m)", 31) + ':' + number(module.distanceM) + "(9um)",
        "  " + left("Digital Diagnostic Monitoring", 31) + ":YES",
        "  " + left("Vendor Name", 31) + ':' + module.vendor,
        "  " + left("Vendor Part Number", 31) + ':',
        "  " + left("Ordering Name", 31) + ':',
        rule(61),
        "Manufacture information:",
        "  " + left("Manu. Serial Number", 31) + ':' + module.serial,
        "  " + left("Manufacturing Date", 31) + ":2025-03-20",
        "  " + left("Vendor Name", 31) + ':' + module.vendor,
        rule(61),
    };
    if (verbose)
        lines << QByteArrayList{"Diagnostic information:",
                                "  " + left("Temperature(C)", 31) + ":38.00",
                                "  " + left("Voltage(V)", 31) + ":3.27",
                                "  " + left("Bias Current(mA)", 31) + ":17.20",
                                "  " + left("RX Power(dBM)", 31) + ":-6.12",
                                "  " + left("TX Power(dBM)", 31) + ":-5.98",
                                rule(61)};
    return lines;
}

std::vector<std::size_t> poweredPorts(const ConsoleSession &session)
{
    std::vector<std::size_t> ports;
    for (std::size_t port = 0; port < session.state().hardware.ports.size(); ++port) {
        if (!session.state().hardware.ports[port].fibre)
            ports.push_back(port);
    }
    return ports;
}

} // namespace

namespace commands {

void showDevice(ConsoleSession &session, const Arguments &)
{
    const QByteArray board = session.state().hardware.boardType;
    session.show({board + "'s Device status:",
                  "Slot Sub  Type                   Online    Power    Register     Status     Role", rule(79),
                  "0    -    " + left(board, 23) + "Present   PowerOn  Registered   Normal     Master"});
}

void showSlot(ConsoleSession &session, const Arguments &arguments)
{
    if (arguments.numbers.front() != 0)
        return session.fail(QByteArrayLiteral("Error: The slot does not exist."));
    const QByteArray board = session.state().hardware.boardType;
    QByteArrayList lines{rule(70),
                         "Board Type         : " + board,
                         "Board Description  : " + board + " Routing Switch",
                         rule(70),
                         "Port    Port      Optic   MDI  Speed  Duplex Flow-   Port  PoE",
                         "        Type      Status       (Mbps)        Ctrl    State State",
                         rule(70)};
    for (std::size_t port = 0; port < session.state().hardware.ports.size(); ++port)
        lines << slotRow(session, port);
    session.show(lines);
}

void showVersion(ConsoleSession &session, const Arguments &)
{
    const QByteArray board = session.state().hardware.boardType;
    session.show({"Huawei Versatile Routing Platform Software",
                  "VRP (R) software, Version 5.170 (" + board.split('-').first() + " V200R019C10SPC500)",
                  "Copyright (C) 2000-2020 HUAWEI TECH Co., Ltd.",
                  "HUAWEI " + board + " Routing Switch uptime is " + uptimeText(session), "",
                  "ES5D2T28S003 0(Master)  : uptime is " + uptimeText(session),
                  "DDR             Memory Size : 512   M bytes", "FLASH Total     Memory Size : 512   M bytes",
                  "FLASH Available Memory Size : 240   M bytes", "Pcb           Version   : VER.B",
                  "BootROM       Version   : 0215.0000", "CPLD          Version   : 0108",
                  "Software      Version   : VRP (R) Software, Version 5.170 (V200R019C10SPC500)"});
}

void showStartup(ConsoleSession &session, const Arguments &)
{
    const QByteArray file = session.state().saved ? session.dialect().startupFile : QByteArrayLiteral("NULL");
    session.show({"MainBoard:", "  Configured startup system software:        flash:/system.cc",
                  "  Startup system software:                   flash:/system.cc",
                  "  Next startup system software:              flash:/system.cc",
                  "  Startup saved-configuration file:          " + file,
                  "  Next startup saved-configuration file:     " + file});
}

void showTransceivers(ConsoleSession &session, const Arguments &arguments)
{
    QByteArrayList lines;
    for (std::size_t port = 0; port < session.state().hardware.ports.size(); ++port) {
        if (session.state().hardware.ports[port].fibre)
            lines << moduleLines(session, port, arguments.line.contains("verbose"));
    }
    session.show(lines);
}

void showTransceiver(ConsoleSession &session, const Arguments &arguments)
{
    const auto port = session.names().portIndex(arguments.interfaces.front());
    if (!port || !session.state().hardware.ports[*port].fibre)
        return session.fail(QByteArrayLiteral("Error: The interface does not support this operation."));
    session.show(moduleLines(session, *port, arguments.line.contains("verbose")));
}

void showPower(ConsoleSession &session, const Arguments &)
{
    QByteArrayList lines{left("PortName", 25) + left("Class", 8) + left("REFPW(mW)", 10) + left("USMPW(mW)", 10)
                             + left("CURPW(mW)", 10) + left("PKPW(mW)", 10) + "AVGPW(mW)",
                         rule(82)};
    for (const std::size_t port : poweredPorts(session)) {
        const int drawn = powerDrawn(session, port);
        lines << left(session.names().longName(port), 25) + left(drawn > 0 ? "3" : "-", 8)
                     + left(drawn > 0 ? "15400" : "-", 10) + left(number(kMostPower), 10) + left(number(drawn), 10)
                     + left(number(drawn), 10) + number(drawn);
    }
    session.show(lines);
}

void showPowerState(ConsoleSession &session, const Arguments &)
{
    QByteArrayList lines{left("PortName", 25) + left("PowerOn/Off", 13) + left("Enabled", 9) + left("FastOn", 8)
                             + left("Priority", 10) + "Status",
                         rule(79)};
    for (const std::size_t port : poweredPorts(session)) {
        const bool on = powerDrawn(session, port) > 0;
        const bool enabled = session.running().ports[port].poe;
        lines << left(session.names().longName(port), 25) + left(on ? "on" : "off", 13)
                     + left(enabled ? "enable" : "disable", 9) + left("disable", 8) + left("Low", 10)
                     + (on        ? "Powered"
                        : enabled ? "Detecting"
                                  : "Disabled");
    }
    session.show(lines);
}

void showPowerInformation(ConsoleSession &session, const Arguments &)
{
    int drawn = 0;
    for (const std::size_t port : poweredPorts(session))
        drawn += powerDrawn(session, port);
    session.show({"PSE Information of slot 0:", "  User Set Max Power(mW)           : " + number(kTotalPower),
                  "  POE Power Supply(mW)             : " + number(kTotalPower),
                  "  Available Total Power(mW)        : " + number(kTotalPower - drawn),
                  "  Total Power Consumption(mW)      : " + number(drawn),
                  "  Power Peak Value(mW)             : " + number(drawn), "  Power-Management Mode            : auto",
                  "  Power High Inrush                : disable"});
}

} // namespace commands

} // namespace simulator
