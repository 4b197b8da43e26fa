#include "commands.h"
#include "listings.h"
#include "text.h"

// Link groups, mirroring and address conflicts as the Huawei family lists them.

namespace simulator {

namespace {

QByteArrayList manualTrunk(const ConsoleSession &session, int trunk, int up)
{
    QByteArrayList lines{"WorkingMode: NORMAL         Hash arithmetic: According to SIP-XOR-DIP         ",
                         "Least Active-linknumber: 1  Max Bandwidth-affected-linknumber: 8              ",
                         QByteArray("Operate status: ") + (up > 0 ? "up  " : "down")
                             + "        Number Of Up Port In Trunk: " + left(number(up), 22),
                         rule(80), "PortName                      Status      Weight "};
    for (const std::size_t member : session.running().trunkMembers(trunk))
        lines << left(session.names().longName(member), 30) + left(session.state().isUp(member) ? "Up" : "Down", 12)
                     + "1      ";
    return lines;
}

QByteArrayList lacpTrunk(const ConsoleSession &session, int trunk, int up)
{
    QByteArrayList lines{"Local:",
                         "LAG ID: " + left(number(trunk), 20) + "WorkingMode: LACP                                 ",
                         "Preempt Delay: Disabled     Hash arithmetic: According to SIP-XOR-DIP         ",
                         "System Priority: 32768      System ID: 00e0-fc12-3456                         ",
                         "Least Active-linknumber: 1  Max Active-linknumber: 8                          ",
                         QByteArray("Operate status: ") + (up > 0 ? "up  " : "down")
                             + "        Number Of Up Port In Trunk: " + left(number(up), 22),
                         rule(80),
                         "ActorPortName          Status   PortType PortPri PortNo PortKey PortState Weight"};
    QByteArrayList partners{"", "Partner:", rule(80),
                            "ActorPortName          SysPri   SystemID        PortPri PortNo PortKey PortState"};
    int index = 0;
    for (const std::size_t member : session.running().trunkMembers(trunk)) {
        const QByteArray name = left(session.names().longName(member), 23);
        const bool active = session.state().isUp(member);
        const bool gigabit = session.state().hardware.ports[member].kind == InterfaceKind::Gigabit;
        lines << name + left(active ? "Selected" : "Unselect", 9) + left(gigabit ? "1GE" : "10GE", 9) + "32768   "
                     + left(number(++index), 7) + left(number(304 + trunk), 8)
                     + (active ? "10111100  1     " : "10100010  1     ");
        partners << name
                        + (active ? "65535    00e0-fc65-4321  32768   " + left(number(index), 7) + "9       10111100"
                                  : "0        0000-0000-0000  0       0      0       10100011");
    }
    return lines + partners;
}

QByteArrayList trunkLines(const ConsoleSession &session, int trunk)
{
    int up = 0;
    for (const std::size_t member : session.running().trunkMembers(trunk))
        up += session.state().isUp(member) ? 1 : 0;
    const QByteArray name = session.names().longName(InterfaceId{InterfaceKind::Trunk, trunk, 0});
    return QByteArrayList{name + "'s state information is:"}
               + (session.running().trunks.at(trunk).lacp ? lacpTrunk(session, trunk, up)
                                                          : manualTrunk(session, trunk, up))
           << "  ";
}

bool writesNewMirrorListing(const ConsoleSession &session)
{
    return session.options().newMirrorListing || session.options().family == Family::HuaweiSub;
}

QByteArray monitorName(const ConsoleSession &session, int group)
{
    const auto &monitor = session.running().mirrorGroups.at(group).monitor;
    return monitor ? session.names().longName(*monitor) : QByteArrayLiteral("-");
}

QByteArrayList newMirrorLines(const ConsoleSession &session)
{
    QByteArrayList lines{rule(70), "MirroringPort            Direction  ObservePort : Interface", rule(70)};
    for (const auto &source : mirrorSources(session.running()))
        lines << left(session.names().longName(source.second), 25)
                     + left(directionWord(session.running().ports[source.second].mirrors.at(source.first), true), 11)
                     + number(source.first) + " : " + monitorName(session, source.first);
    return lines << rule(70);
}

QByteArrayList oldMirrorLines(const ConsoleSession &session)
{
    QByteArrayList lines;
    for (const auto &group : session.running().mirrorGroups)
        lines << "  Observe-port " + number(group.first) + " : " + monitorName(session, group.first);
    lines << "  " + rule(70) << "  Port-mirror:"
          << "  " + rule(70) << "       Mirror-port               Direction  Observe-port"
          << "  " + rule(70);
    int row = 0;
    for (const auto &source : mirrorSources(session.running()))
        lines << "  " + left(number(++row), 5) + left(session.names().longName(source.second), 26)
                     + left(directionWord(session.running().ports[source.second].mirrors.at(source.first), true), 11)
                     + "Observe-port " + number(source.first);
    return lines << "  " + rule(70);
}

} // namespace

namespace commands {

void showTrunks(ConsoleSession &session, const Arguments &)
{
    QByteArrayList lines;
    for (const auto &trunk : session.running().trunks)
        lines << trunkLines(session, trunk.first);
    session.show(lines);
}

void showTrunk(ConsoleSession &session, const Arguments &arguments)
{
    const int trunk = arguments.numbers.front();
    if (session.running().trunks.count(trunk) == 0)
        return session.fail(session.dialect().refusals.noTrunk);
    session.show(trunkLines(session, trunk));
}

void showMirroring(ConsoleSession &session, const Arguments &)
{
    session.show(writesNewMirrorListing(session) ? newMirrorLines(session) : oldMirrorLines(session));
}

void showObservePorts(ConsoleSession &session, const Arguments &)
{
    QByteArrayList lines{"  " + rule(70)};
    for (const auto &group : session.running().mirrorGroups)
        lines << "  Index          : " + number(group.first)
              << "  Interface      : " + monitorName(session, group.first) << "  " + rule(70);
    session.show(lines);
}

// Nothing is recorded while detection is off.
void showIpConflicts(ConsoleSession &session, const Arguments &)
{
    QByteArrayList lines;
    if (session.running().ipConflictDetection) {
        for (const IpConflict &conflict : session.state().hardware.ipConflicts)
            lines << "Conflict type              : Remote IP conflict"
                  << "IP address                 : " + conflict.address
                  << "System time                : "
                         + session.clock().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")).toLatin1()
                  << "Conflict count             : 1"
                  << "Suppress count             : 0"
                  << "Old interface              : " + session.names().longName(conflict.port)
                  << "New interface              : " + session.names().longName(conflict.port)
                  << "Old MAC address            : " + conflict.firstMac
                  << "New MAC address            : " + conflict.secondMac
                  << "Old VLAN/CEVLAN            : " + number(conflict.vlan) + "/0"
                  << "New VLAN/CEVLAN            : " + number(conflict.vlan) + "/0"
                  << "";
    }
    session.show(lines);
}

} // namespace commands

} // namespace simulator
