#include "commands.h"
#include "listings.h"
#include "text.h"

#include <algorithm>

// `display interface brief` and its relatives of the Huawei family.

namespace simulator {

namespace {

bool isSub(const ConsoleSession &session)
{
    return session.options().family == Family::HuaweiSub;
}

// Column widths: of the name, of the physical state.
struct Widths
{
    int name, physical;
};

Widths widths(const ConsoleSession &session)
{
    return isSub(session) ? Widths{27, 9} : Widths{28, 6};
}

QByteArrayList legend(const ConsoleSession &session)
{
    const bool sub = isSub(session);
    QByteArrayList lines{"PHY: Physical", "*down: administratively down", "^down: standby"};
    if (!sub)
        lines << "#down: LBDT down";
    lines << "(l): loopback"
          << "(s): spoofing"
          << "(b): BFD down"
          << "(e): ETHOAM down";
    if (sub)
        lines << "(d): Dampening Suppressed"
              << "(p): port alarm down"
              << "(dl): DLDP down";
    return lines;
}

struct Row
{
    QByteArray name; // by which it is sorted
    QByteArrayList lines;
};

QByteArray trafficLine(const ConsoleSession &session, const QByteArray &name, const QByteArray &physical,
                       const QByteArray &protocol)
{
    const Widths width = widths(session);
    const bool up = physical == "up";
    const QByteArray use = up && !name.startsWith("NULL") ? QByteArrayLiteral("0.01%") : QByteArrayLiteral("0%");
    return left(name, width.name) + left(physical, width.physical) + left(protocol, 7) + right(use, 8) + right(use, 7)
           + right("0", 11) + right("0", 11);
}

QByteArray portName(const ConsoleSession &session, std::size_t port)
{
    const bool fast = session.state().hardware.ports[port].kind == InterfaceKind::TenGigabit;
    return session.names().longName(port) + (fast && session.options().speedInNames ? "(10G)" : "");
}

QByteArray upOrDown(bool up)
{
    return up ? QByteArrayLiteral("up") : QByteArrayLiteral("down");
}

void addPort(const ConsoleSession &session, std::size_t port, std::vector<Row> &rows)
{
    const QByteArray state = upOrDown(session.state().isUp(port));
    Row row{session.names().longName(port), {}};
    row.lines << trafficLine(session, portName(session, port), portStatus(session, port), state);
    for (const int sub : session.running().ports[port].subInterfaces)
        row.lines << trafficLine(session, session.names().longName(port) + '.' + number(sub), state, "down");
    rows.push_back(row);
}

// Members stand indented below their group and nowhere else.
void addTrunk(const ConsoleSession &session, int trunk, std::vector<Row> &rows)
{
    const QByteArray state = upOrDown(session.state().isTrunkUp(trunk));
    Row row{session.names().longName(InterfaceId{InterfaceKind::Trunk, trunk, 0}), {}};
    const bool shut = session.running().trunks.at(trunk).shutdown;
    row.lines << trafficLine(session, row.name, shut ? QByteArrayLiteral("*down") : state, state);
    for (const std::size_t member : session.running().trunkMembers(trunk))
        row.lines << trafficLine(session, "  " + portName(session, member), portStatus(session, member),
                                 upOrDown(session.state().isUp(member)));
    rows.push_back(row);
}

std::vector<Row> rowsByName(const ConsoleSession &session)
{
    std::vector<Row> rows;
    for (std::size_t port = 0; port < session.running().ports.size(); ++port) {
        if (!session.running().ports[port].trunk)
            addPort(session, port, rows);
    }
    for (const auto &trunk : session.running().trunks)
        addTrunk(session, trunk.first, rows);
    for (const auto &vlan : session.running().vlanInterfaces) {
        const QByteArray name = session.names().longName(InterfaceId{InterfaceKind::Vlan, vlan.first, 0});
        const QByteArray state = upOrDown(session.state().isVlanUp(vlan.first));
        rows.push_back({name, {trafficLine(session, name, state, state)}});
    }
    const QByteArray management = session.names().longName(InterfaceId{InterfaceKind::Management, 1, 0});
    const bool shut = session.running().management.shutdown;
    rows.push_back({management, {trafficLine(session, management, shut ? "*down" : "down", "down")}});
    rows.push_back({"NULL0", {trafficLine(session, "NULL0", "up", isSub(session) ? "up" : "up(s)")}});
    std::sort(rows.begin(), rows.end(),
              [](const Row &one, const Row &other) { return comesBefore(one.name, other.name); });
    return rows;
}

} // namespace

namespace commands {

void showInterfaceBrief(ConsoleSession &session, const Arguments &)
{
    QByteArrayList lines = legend(session);
    lines << (isSub(session) ? "InUti/OutUti: input utility rate/output utility rate"
                             : "InUti/OutUti: input utility/output utility");
    const Widths width = widths(session);
    lines << left("Interface", width.name) + left("PHY", width.physical)
                 + "Protocol  InUti OutUti   inErrors  outErrors";
    for (const Row &row : rowsByName(session))
        lines << row.lines;
    session.show(lines);
}

void showInterfaceDescription(ConsoleSession &session, const Arguments &)
{
    QByteArrayList lines = legend(session);
    lines << left("Interface", 30) + left("PHY", 8) + left("Protocol", 9) + "Description";
    for (const std::size_t port : portsByName(session))
        lines << left(session.names().longName(port), 30) + left(portStatus(session, port), 8)
                     + left(upOrDown(session.state().isUp(port)), 9) + session.running().ports[port].description;
    session.show(lines);
}

void showInterface(ConsoleSession &session, const Arguments &arguments)
{
    const InterfaceId id = arguments.interfaces.front();
    const QByteArray name = session.names().longName(id);
    const auto port = session.names().portIndex(id);
    if (!port) {
        const bool up = id.kind == InterfaceKind::Trunk ? session.state().isTrunkUp(id.number)
                                                        : session.state().isVlanUp(id.number);
        return session.show({name + " current state : " + (up ? "UP" : "DOWN"),
                             QByteArray("Line protocol current state : ") + (up ? "UP" : "DOWN"), "Description:"});
    }
    const PortConfiguration &configuration = session.running().ports[*port];
    const PortHardware &hardware = session.state().hardware.ports[*port];
    const QByteArray state = session.state().isUp(*port) ? "UP" : "DOWN";
    const QByteArray speed = hardware.kind == InterfaceKind::Gigabit      ? "1000"
                             : hardware.kind == InterfaceKind::TenGigabit ? "10000"
                                                                          : "40000";
    session.show(
        {name + " current state : " + (configuration.shutdown ? QByteArray("Administratively DOWN") : state),
         "Line protocol current state : " + state, "Description:" + configuration.description,
         "Switch Port, PVID : "
             + right(number(configuration.linkType == LinkType::Trunk ? configuration.trunkVlan : configuration.vlan),
                     4)
             + ", TPID : 8100(Hex), The Maximum Frame Length is 9216",
         "IP Sending Frames' Format is PKTFMT_ETHNT_2, Hardware address is 00e0-fc12-3456",
         QByteArray("Port Mode: ") + (hardware.fibre ? "COMMON FIBER" : "COMMON COPPER"),
         "Speed : " + (configuration.speed.isEmpty() ? speed : configuration.speed) + ",  Loopback: NONE",
         "Duplex: " + (configuration.duplex == "half" ? QByteArray("HALF") : QByteArray("FULL"))
             + ",  Negotiation: " + (configuration.negotiation ? "ENABLE" : "DISABLE"),
         "Mdi   : AUTO,  Flow-control: DISABLE", "Input peak rate 0 bits/sec, Record time: -",
         "Output peak rate 0 bits/sec, Record time: -", "Input:  0 packets, 0 bytes", "Output:  0 packets, 0 bytes"});
}

} // namespace commands

} // namespace simulator
