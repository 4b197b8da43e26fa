// The console: from opening the port to a filled panel, against a bare client that waits for prompts and does nothing
// else, on the simulated switch behind a pseudo terminal. Both in one run; machines are noisy.
#include "interfacenamingprofile.h"
#include "portinventory.h"
#include "switchdeviceviewmodel.h"

#include <simulator/simulatedswitch.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTimer>
#include <QtSerialPort/QSerialPort>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>

namespace {

constexpr std::chrono::seconds kLimit{60};
constexpr int kRounds = 3;
constexpr int kBytesPerSecondAt9600Baud = 960; // 8N1

double secondsOf(const QElapsedTimer &timer)
{
    return double(timer.nsecsElapsed()) * 1e-9;
}

[[noreturn]] void giveUp(const char *what)
{
    std::fprintf(stderr, "%s, no figure\n", what);
    std::exit(1);
}

simulator::SimulatorOptions switchOptions(simulator::Family family, int bytesPerSecond)
{
    simulator::SimulatorOptions options;
    options.family = family;
    options.bytesPerSecond = bytesPerSecond;
    options.logs = false;
    return options;
}

// Runs the event loop until the signal has come.
template<typename Signal>
void waitFor(SwitchDeviceViewModel &viewModel, Signal signal, const char *what)
{
    QEventLoop loop;
    QObject::connect(&viewModel, signal, &loop, &QEventLoop::quit);
    QTimer::singleShot(kLimit, &loop, [what] { giveUp(what); });
    loop.exec();
}

struct PanelTimes
{
    double inventory = 0; // deviceCommunicate() to upComRangeChanged
    double boardType = 0; // ... to boardTypeChanged
    double query = 0;     // queryDeviceStatus() to the end of the waiting, one listing
    int lines = 0;        // typed up to the inventory; each is a round trip
};

PanelTimes measurePanel(simulator::Family family, int bytesPerSecond)
{
    const simulator::SimulatorOptions options = switchOptions(family, bytesPerSecond);
    simulator::SimulatedSwitch device(options);
    SwitchDeviceViewModel viewModel;
    viewModel.setCurrentCom(device.start());
    viewModel.setUserText(QString::fromUtf8(options.user));
    viewModel.setPasswordText(QString::fromUtf8(options.password));
    viewModel.setCurlogoChanged(viewModel.lxTr(QStringLiteral("华为")));

    PanelTimes times;
    QElapsedTimer timer;
    timer.start();
    viewModel.deviceCommunicate();
    waitFor(viewModel, &SwitchDeviceViewModel::upComRangeChanged, "no inventory");
    times.inventory = secondsOf(timer);
    times.lines = device.device().received().count('\r');
    waitFor(viewModel, &SwitchDeviceViewModel::boardTypeChanged, "no board type");
    times.boardType = secondsOf(timer);

    // The queue is quiet again once its last block is done.
    QEventLoop pause;
    QTimer::singleShot(std::chrono::milliseconds(500), &pause, &QEventLoop::quit);
    pause.exec();
    timer.start();
    viewModel.queryDeviceStatus(QStringLiteral("vlan"));
    if (!viewModel.isWaitingResponse())
        giveUp("no query");
    waitFor(viewModel, &SwitchDeviceViewModel::isWaitingResponseChanged, "no answer to a query");
    times.query = secondsOf(timer);
    return times;
}

// A client that knows nothing but prompts.
class BareClient
{
public:
    explicit BareClient(const QString &path)
    {
        _port.setPortName(path);
        _port.setBaudRate(QSerialPort::Baud9600);
        if (!_port.open(QIODevice::ReadWrite))
            giveUp("the bare client cannot open the port");
    }

    QByteArray exchange(const QByteArray &line, const char *end)
    {
        _port.write(line + "\r\n");
        QByteArray reply;
        while (!reply.endsWith(end)) {
            if (!_port.waitForReadyRead(int(std::chrono::milliseconds(kLimit).count())))
                giveUp("the bare client waits for ever");
            reply += _port.readAll();
        }
        return reply;
    }

private:
    QSerialPort _port;
};

double measureBareClient(simulator::Family family, int bytesPerSecond)
{
    const simulator::SimulatorOptions options = switchOptions(family, bytesPerSecond);
    simulator::SimulatedSwitch device(options);
    const QString path = device.start();
    QElapsedTimer timer;
    timer.start();
    BareClient client(path);
    client.exchange(QByteArray(), "Username:");
    client.exchange(options.user, "Password:");
    client.exchange(options.password, ">");
    client.exchange(QByteArrayLiteral("screen-length 0 temporary"), ">");
    const reply::ReplyText listing(client.exchange(QByteArrayLiteral("display interface brief"), ">"));
    const auto ports = reply::readHuaweiPorts(listing, huaweiNaming(), false);
    if (!ports || ports->downPorts.size() + ports->upPorts.size() != 28)
        giveUp("the bare client misses ports");
    return secondsOf(timer);
}

void report(const char *name, simulator::Family family, int bytesPerSecond, double goalSeconds)
{
    PanelTimes best;
    best.inventory = best.boardType = best.query = std::numeric_limits<double>::max();
    double bare = std::numeric_limits<double>::max();
    for (int round = 0; round < kRounds; ++round) {
        const PanelTimes times = measurePanel(family, bytesPerSecond);
        best.inventory = std::min(best.inventory, times.inventory);
        best.boardType = std::min(best.boardType, times.boardType);
        best.query = std::min(best.query, times.query);
        best.lines = times.lines;
        bare = std::min(bare, measureBareClient(family, bytesPerSecond));
    }
    std::printf("%-28s %6.2f s  %3d round trips   bare client %5.2f s   %5.2f x   goal %.1f s %s\n", name,
                best.inventory, best.lines, bare, best.inventory / bare, goalSeconds,
                best.inventory <= goalSeconds ? "" : "MISSED");
    std::printf("    with optical ports       %6.2f s\n", best.boardType);
    std::printf("    one VLAN listing         %6.3f s  (two lines, from the call to the end of the waiting)\n",
                best.query);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.info=false\n"));
    if (!simulator::SimulatedSwitch::isAvailable()) {
        std::fprintf(stderr, "This system has no pseudo terminals.\n");
        return 0;
    }
    std::printf("deviceCommunicate() to upComRangeChanged, 28 ports, best of %d\n", kRounds);
    report("Huawei, full speed", simulator::Family::Huawei, 0, 1.6);
    report("Huawei, 9600 baud", simulator::Family::Huawei, kBytesPerSecondAt9600Baud, 4.7);
    report("sub-model, full speed", simulator::Family::HuaweiSub, 0, 1.6);
    report("sub-model, 9600 baud", simulator::Family::HuaweiSub, kBytesPerSecondAt9600Baud, 4.7);
    return 0;
}
