#include "commands.h"
#include "listings.h"
#include "text.h"

// Hardware, aggregation and mirroring listings of the Hua3 family.

namespace simulator {

namespace {

constexpr int kTotalPower = 370000; // milliwatts

QByteArray watts(int milliwatts)
{
    return number(milliwatts / 1000) + '.' + number(milliwatts % 1000 / 100);
}

QByteArrayList aggregationLegend()
{
    return {"Loadsharing Type: Shar -- Loadsharing, NonS -- Non-Loadsharing",
            "Port Status: S -- Selected, U -- Unselected, I -- Individual",
            "Port: A -- Auto port, M -- Management port, R -- Reference port",
            "Flags:  A -- LACP_Activity, B -- LACP_Timeout, C -- Aggregation,",
            "        D -- Synchronization, E -- Collecting, F -- Distributing,",
            "        G -- Defaulted, H -- Expired",
            ""};
}

QByteArrayList dynamicMembers(const ConsoleSession &session, int trunk)
{
    QByteArrayList lines{"System ID: 0x8000, 00e0-fc12-3456",
                         "Local:", "  Port                Status   Priority Index    Oper-Key               Flag"};
    QByteArrayList partners{"Remote:", "  Actor               Priority Index    Oper-Key SystemID               Flag"};
    int index = 0;
    for (const std::size_t member : session.running().trunkMembers(trunk)) {
        const bool up = session.state().isUp(member);
        const QByteArray name = session.names().shortName(member);
        ++index;
        lines << "  " + left(name + (index == 1 ? "(R)" : ""), 20) + left(up ? "S" : "U", 9) + left("32768", 9)
                     + left(number(index), 9) + left(number(trunk), 23) + (up ? "{ACDEF}" : "{AC}");
        partners << "  " + left(name, 20) + left("32768", 9) + left(number(index), 9) + left(number(trunk), 9)
                        + left(up ? "0x8000, 00e0-fc65-4321" : "0x8000, 0000-0000-0000", 23)
                        + (up ? "{ACDEF}" : "{DEF}");
    }
    return lines + partners;
}

QByteArrayList staticMembers(const ConsoleSession &session, int trunk)
{
    QByteArrayList lines{"  Port             Status  Priority Oper-Key"};
    for (const std::size_t member : session.running().trunkMembers(trunk))
        lines << "  " + left(session.names().shortName(member), 17) + left(session.state().isUp(member) ? "S" : "U", 8)
                     + left("32768", 9) + number(trunk);
    return lines;
}

QByteArrayList aggregation(const ConsoleSession &session, int trunk, const TrunkConfiguration &configuration)
{
    QByteArrayList lines{
        "Aggregate Interface: " + session.names().longName(InterfaceId{InterfaceKind::Trunk, trunk, 0}),
        "Creation Mode: Manual", QByteArray("Aggregation Mode: ") + (configuration.lacp ? "Dynamic" : "Static"),
        "Loadsharing Type: Shar", "Management VLANs: None"};
    return lines + (configuration.lacp ? dynamicMembers(session, trunk) : staticMembers(session, trunk)) << "";
}

QByteArrayList mirrorGroup(const ConsoleSession &session, int number, const MirrorGroup &group)
{
    QByteArrayList sources;
    for (const auto &source : mirrorSources(session.running())) {
        if (source.first == number)
            sources << "        " + session.names().longName(source.second) + "  "
                           + directionWord(session.running().ports[source.second].mirrors.at(number), true);
    }
    const bool active = group.monitor && !sources.isEmpty();
    QByteArrayList lines{"Mirroring group " + simulator::number(number) + ':', "    Type: Local",
                         QByteArray("    Status: ") + (active ? "Active" : "Incomplete"), "    Mirroring port:"};
    return lines + sources << "    Monitor port: "
                                  + (group.monitor ? session.names().longName(*group.monitor)
                                                   : QByteArray("Not configured"));
}

QByteArrayList moduleLines(const ConsoleSession &session, std::size_t port)
{
    const PortHardware &hardware = session.state().hardware.ports[port];
    QByteArrayList lines{session.names().longName(port) + " transceiver information:"};
    if (!hardware.module)
        return lines << "Error: The transceiver is absent.";
    const Transceiver &module = *hardware.module;
    const QByteArray wavelength = session.options().blankInWavelength ? "Wavelength (nm)" : "Wavelength(nm)";
    return lines << "  " + left("Transceiver Type", 30) + ": " + module.type
                 << "  " + left("Connector Type", 30) + ": " + module.connector
                 << "  " + left(wavelength, 30) + ": " + number(module.wavelengthNm)
                 << "  " + left("Transfer Distance(km)", 30) + ": " + QByteArray::number(module.distanceM / 1000.0)
                        + (module.distanceM < 1000 ? "(MMF)" : "(SMF)")
                 << "  " + left("Digital Diagnostic Monitoring", 30) + ": YES"
                 << "  " + left("Vendor Name", 30) + ": " + module.vendor << "";
}

} // namespace

namespace commands {

void showHua3Aggregations(ConsoleSession &session, const Arguments &arguments)
{
    QByteArrayList lines = aggregationLegend();
    for (const auto &trunk : session.running().trunks) {
        if (arguments.interfaces.empty() || arguments.interfaces.front().number == trunk.first)
            lines << aggregation(session, trunk.first, trunk.second);
    }
    session.show(lines);
}

void showHua3AggregationSummary(ConsoleSession &session, const Arguments &)
{
    QByteArrayList lines = aggregationLegend();
    lines << "AGG        AGG   Partner ID              Selected  Unselected  Individual  Share"
          << "Interface  Mode                          Ports     Ports       Ports       Type" << rule(80);
    for (const auto &trunk : session.running().trunks) {
        int up = 0, down = 0;
        for (const std::size_t member : session.running().trunkMembers(trunk.first))
            ++(session.state().isUp(member) ? up : down);
        lines << left(session.names().shortName(InterfaceId{InterfaceKind::Trunk, trunk.first, 0}), 11)
                     + left(trunk.second.lacp ? "D" : "S", 6)
                     + left(trunk.second.lacp ? "0x8000, 00e0-fc65-4321" : "None", 24) + left(number(up), 10)
                     + left(number(down), 12) + left("0", 12) + "Shar";
    }
    session.show(lines);
}

void showHua3Mirroring(ConsoleSession &session, const Arguments &arguments)
{
    QByteArrayList lines;
    for (const auto &group : session.running().mirrorGroups) {
        if (arguments.numbers.empty() || arguments.numbers.front() == group.first)
            lines << mirrorGroup(session, group.first, group.second);
    }
    session.show(lines);
}

void showHua3Power(ConsoleSession &session, const Arguments &)
{
    QByteArrayList lines{" Interface  PoE      Priority CurPower Oper     IEEE  Detection",
                         "            Status            (W)      State    Class Status"};
    int on = 0, used = 0;
    for (std::size_t port = 0; port < session.running().ports.size(); ++port) {
        if (session.state().hardware.ports[port].fibre)
            continue;
        const int drawn = powerDrawn(session, port);
        const bool enabled = session.running().ports[port].poe;
        on += drawn > 0 ? 1 : 0;
        used += drawn;
        lines << ' ' + left(session.names().shortName(port), 11) + left(enabled ? "Enabled" : "Disabled", 9)
                     + left("Low", 9) + left(watts(drawn), 9) + left(drawn > 0 ? "On" : "Off", 9)
                     + left(drawn > 0 ? "3" : "0", 6)
                     + (drawn > 0 ? "Delivering power"
                        : enabled ? "Searching"
                                  : "Disabled");
    }
    lines << " ---  On State Ports: " + number(on) + "; Used: " + watts(used)
                 + "(W); Remaining: " + watts(kTotalPower - used) + "(W)  ---";
    session.show(lines);
}

void showHua3Transceivers(ConsoleSession &session, const Arguments &)
{
    QByteArrayList lines;
    for (std::size_t port = 0; port < session.running().ports.size(); ++port) {
        if (session.state().hardware.ports[port].fibre)
            lines << moduleLines(session, port);
    }
    session.show(lines);
}

void showHua3Transceiver(ConsoleSession &session, const Arguments &arguments)
{
    const auto port = session.names().portIndex(arguments.interfaces.front());
    if (!port || !session.state().hardware.ports[*port].fibre)
        return session.fail(QByteArrayLiteral(" The interface does not support transceivers."));
    session.show(moduleLines(session, *port));
}

void showHua3Device(ConsoleSession &session, const Arguments &)
{
    session.show(
        {"Slot Type              State    Subslot  Soft Ver             Patch Ver",
         "1    " + left(session.state().hardware.boardType, 18) + "Master   0        " + left("6318P01", 21) + "None"});
}

void showHua3Manufacture(ConsoleSession &session, const Arguments &)
{
    session.show({"Slot 1 CPU 0:", " DEVICE_NAME          : " + session.state().hardware.boardType,
                  " DEVICE_SERIAL_NUMBER : 219801A0SIM0000001", " MAC_ADDRESS          : 00E0-FC12-3456",
                  " MANUFACTURING_DATE   : 2025-03-20", " VENDOR_NAME          : H3C"});
}

void showHua3Version(ConsoleSession &session, const Arguments &)
{
    const QByteArray board = session.state().hardware.boardType;
    session.show({"H3C Comware Software, Version 7.1.070, Release 6318P01",
                  "Copyright (c) 2004-2020 New H3C Technologies Co., Ltd. All rights reserved.",
                  "H3C " + board + " uptime is " + uptimeText(session), "Last reboot reason : Cold reboot", "",
                  "Boot image: flash:/boot.bin", "Boot image version: 7.1.070, Release 6318P01", "", "Slot 1:",
                  "Uptime is " + uptimeText(session), board + " with 1 Processor", "BOARD TYPE:         " + board,
                  "DRAM:               512M bytes", "FLASH:              256M bytes", "Bootrom Version:    147"});
}

void showHua3IpConflicts(ConsoleSession &session, const Arguments &)
{
    QByteArrayList lines;
    if (!session.state().hardware.ipConflicts.empty())
        lines << "IP address       System MAC       Conflict MAC     Interface  Time";
    for (const IpConflict &conflict : session.state().hardware.ipConflicts)
        lines << left(conflict.address, 17) + left(conflict.firstMac, 17) + left(conflict.secondMac, 17)
                     + left(session.names().shortName(conflict.port), 11)
                     + session.clock().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")).toLatin1();
    session.show(lines);
}

} // namespace commands

} // namespace simulator
