#include "hardware.h"

#include "consolesession.h"
#include "text.h"

#include <algorithm>

namespace simulator {

namespace {

constexpr int kRulesPerList = 1000;
constexpr int kFirstList = 3000;

// Every fifth port has a neighbour, as a switch in use looks.
bool hasNeighbour(int number)
{
    return number % 5 == 1;
}

Transceiver moduleFor(InterfaceKind kind, int number)
{
    const QByteArray serial = "SIM" + digits(number * 7919 % 1000000, 6);
    switch (kind) {
    case InterfaceKind::TenGigabit:
        return {"10GBASE_SR_SFP", "LC", 850, 300, "OEM", serial};
    case InterfaceKind::FortyGigabit:
        return {"40GBASE_LR4", "LC", 1310, 10000, "OEM", serial};
    default: // gigabit: no other kind takes modules
        return {"1000_BASE_LX_SFP", "LC", 1310, 10000, "OEM", serial};
    }
}

// `number` is the one in the name, `index` counts within the kind from 1.
PortHardware makePort(InterfaceKind kind, int number, int index, bool fibre)
{
    PortHardware port;
    port.kind = kind;
    port.number = number;
    port.fibre = fibre;
    port.cable = hasNeighbour(index);
    if (fibre && (port.cable || index % 2 == 0))
        port.module = moduleFor(kind, number);
    return port;
}

QByteArray usualBoardType(const SimulatorOptions &options)
{
    const SwitchModel &model = options.model;
    const int ports = model.gigabit + model.tenGigabit + model.fortyGigabit;
    const bool aggregation = model.gigabit == 0;
    const QByteArray power = model.poe ? "-PWR" : "";
    switch (options.family) {
    case Family::Huawei:
        return (aggregation ? "S6720-" : "S5720-") + number(ports) + (aggregation ? "C" : "X") + power + "-LI-AC";
    case Family::HuaweiSub:
        return aggregation
                   ? "CE6855-" + number(model.tenGigabit) + "S" + number(model.fortyGigabit) + "Q-HI"
                   : "S5735-S" + number(model.gigabit) + (model.poe ? "P" : "T") + number(model.tenGigabit) + "X";
    case Family::Hua3:
        return (aggregation ? "S6520X-" : "S5130S-") + number(ports) + "S" + power + "-EI";
    }
    return {};
}

void addIpConflicts(int count, SwitchHardware &hardware)
{
    for (int i = 1; i <= count && !hardware.ports.empty(); ++i) {
        const QByteArray tail = digits(i, 4);
        hardware.ipConflicts.push_back({"10.20.0." + number(i % 250 + 1), "00e0-fc01-" + tail, "00e0-fc02-" + tail,
                                        static_cast<std::size_t>(i) % hardware.ports.size(), 1});
    }
}

QByteArray descriptionOf(Descriptions kind, int number)
{
    switch (kind) {
    case Descriptions::None:
        return {};
    case Descriptions::Ascii:
        return number % 3 == 0 ? "<C" + simulator::number(number) + "> work - station [east]"
                               : "to rack " + simulator::number(number);
    case Descriptions::Gbk: // "camera" in GBK
        return "\xc9\xe3\xcf\xf1\xbb\xfa" + simulator::number(number);
    }
    return {};
}

void addFiller(int wantedLines, const ConsoleSession &session, SwitchConfiguration &configuration)
{
    int lines = session.configurationLines(configuration).size();
    for (int list = kFirstList; lines < wantedLines; ++list) {
        OtherSection section{"acl number " + number(list), {}};
        const int rules = std::min(wantedLines - lines, kRulesPerList);
        for (int rule = 0; rule < rules; ++rule)
            section.lines << "rule " + number(5 * rule + 5) + " permit ip source 10." + number(list % 256) + '.'
                                 + number(rule / 250) + '.' + number(rule % 250 + 1) + " 0";
        lines += rules + 2; // its header and the separator behind it
        configuration.sections.insert(configuration.sections.begin() + (list - kFirstList), section);
    }
}

} // namespace

SwitchHardware makeHardware(const SimulatorOptions &options)
{
    const SwitchModel &model = options.model;
    SwitchHardware hardware;
    hardware.boardType = model.boardType.isEmpty() ? usualBoardType(options) : model.boardType;
    hardware.poe = model.poe;
    const bool through = options.family == Family::Hua3;
    const auto add = [&hardware, through](InterfaceKind kind, int count, int copper) {
        const int offset = through ? static_cast<int>(hardware.ports.size()) : 0;
        for (int index = 1; index <= count; ++index)
            hardware.ports.push_back(makePort(kind, offset + index, index, index > copper));
    };
    add(InterfaceKind::Gigabit, model.gigabit, model.copper);
    add(InterfaceKind::TenGigabit, model.tenGigabit, 0);
    add(InterfaceKind::FortyGigabit, model.fortyGigabit, 0);
    addIpConflicts(options.ipConflicts, hardware);
    return hardware;
}

SwitchConfiguration plainConfiguration(const SwitchHardware &hardware, const QByteArray &name, LinkType linkType)
{
    SwitchConfiguration configuration;
    configuration.name = name;
    configuration.ports.resize(hardware.ports.size());
    for (PortConfiguration &port : configuration.ports)
        port.linkType = linkType;
    configuration.vlans[1] = {};
    configuration.vlanInterfaces[1] = {};
    return configuration;
}

void furnish(const SimulatorOptions &options, const ConsoleSession &session, SwitchConfiguration &configuration)
{
    if (!options.name.isEmpty())
        configuration.name = options.name;
    int number = 0;
    for (PortConfiguration &port : configuration.ports) {
        port.description = descriptionOf(options.descriptions, ++number);
        if (number <= options.subInterfaces)
            port.subInterfaces.insert(20);
    }
    addFiller(options.configurationLines, session, configuration);
}

} // namespace simulator
