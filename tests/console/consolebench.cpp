#include "consolebench.h"

#include <consoleportcomm/consoleportcomm.h>
#include <switchdevicebll/switchdevice.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QLoggingCategory>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <algorithm>
#include <cstdio>

using simulator::Family;
using simulator::SwitchModel;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kSlowness = 4;
#else
constexpr int kSlowness = 1;
#endif

QtMessageHandler theOutput = nullptr;

void passWarnings(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtDebugMsg || type == QtInfoMsg || qEnvironmentVariableIsSet("SWITCHPANEL_QUIET"))
        return;
    theOutput(type, context, text);
}

// How a family spells its ports in the panel's lists, and where its numbers begin.
struct PortNames
{
    const char *gigabit, *tenGigabit;
    int slot;
    bool isNumberedThrough;
};

PortNames portNames(Family family)
{
    switch (family) {
    case Family::Huawei:
        return {"g", "xg", 0, false};
    case Family::HuaweiSub:
        return {"GE", "10GE", 0, false};
    case Family::Hua3:
        return {"g", "t", 1, true};
    }
    return {};
}

QStringList portList(const char *prefix, int slot, int first, int count)
{
    QStringList ports;
    for (int port = first; port < first + count; ++port)
        ports.append(QStringLiteral("%1%2/0/%3").arg(QLatin1String(prefix)).arg(slot).arg(port));
    return ports;
}

QStringList texts(const QVariantList &values)
{
    QStringList texts;
    for (const QVariant &value : values)
        texts.append(value.toString());
    return texts;
}

struct Inventory
{
    QStringList down, up;
    int downMin = -1, downMax = -1, upMin = -1, upMax = -1;
    bool isAggregation = false;
    QString boardType;
    int copperPorts = 0; // as the log shows them

    QStringList lines() const;
};

QString range(int minimum, int maximum)
{
    return QStringLiteral("(%1-%2)").arg(minimum).arg(maximum);
}

QStringList Inventory::lines() const
{
    return {QStringLiteral("gInterface ") + down.join(QLatin1Char(' ')),
            QStringLiteral("xgInterface ") + up.join(QLatin1Char(' ')),
            QStringLiteral("poeInterface ") + (QStringList{QStringLiteral("all")} + down).join(QLatin1Char(' ')),
            QStringLiteral("allInterface ") + (down + up).join(QLatin1Char(' ')),
            QStringLiteral("interface bounds %1 %2").arg(range(downMin, downMax), range(upMin, upMax)),
            QStringLiteral("VLAN ranges %1 %2")
                .arg(range(std::max(downMin, 0), std::max(downMax, 0)), range(std::max(upMin, 0), std::max(upMax, 0))),
            QStringLiteral("counts %1 %2").arg(downMax - downMin).arg(upMax - upMin),
            QStringLiteral("aggregation %1").arg(int(isAggregation)),
            QStringLiteral("boardType ") + boardType,
            QStringLiteral("copper ports %1").arg(copperPorts),
            QStringLiteral("comDownNumChanged %1").arg(downMax - downMin),
            QStringLiteral("comUpNumChanged %1").arg(upMax - upMin),
            QStringLiteral("downComRangeChanged ") + range(downMin, downMax),
            QStringLiteral("upComRangeChanged ") + range(upMin, upMax)};
}

} // namespace

std::chrono::milliseconds patience(std::chrono::milliseconds usual)
{
    return usual * kSlowness * (qEnvironmentVariableIsSet("CI") ? 2 : 1);
}

bool waitUntil(const std::function<bool()> &condition, std::chrono::milliseconds usual)
{
    return QTest::qWaitFor(condition, int(patience(usual).count()));
}

QuietLog::QuietLog()
{
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    theOutput = qInstallMessageHandler(&passWarnings);
}

QuietLog::~QuietLog()
{
    qInstallMessageHandler(theOutput);
}

PanelRecord::PanelRecord(SwitchDeviceViewModel *panel)
{
    connect(panel, &SwitchDeviceViewModel::showToast, this,
            [this](const QString &text, int state) { _toasts.append(QStringLiteral("%1, %2").arg(text).arg(state)); });
    connect(panel, &SwitchDeviceViewModel::logMessage, this, &PanelRecord::addLog);
    panel->setCommandObserver([this](const QString &label, const QByteArray &bytes) {
        _labels.append(label);
        _blocks.append(bytes);
    });
    const auto note = [this](const char *signal, const QString &value) {
        _inventorySignals.append(QLatin1String(signal) + QLatin1Char(' ') + value);
    };
    connect(panel, &SwitchDeviceViewModel::comDownNumChanged, this,
            [note](int count) { note("comDownNumChanged", QString::number(count)); });
    connect(panel, &SwitchDeviceViewModel::comUpNumChanged, this,
            [note](int count) { note("comUpNumChanged", QString::number(count)); });
    connect(panel, &SwitchDeviceViewModel::downComRangeChanged, this,
            [note](const QString &text) { note("downComRangeChanged", text); });
    connect(panel, &SwitchDeviceViewModel::upComRangeChanged, this,
            [note](const QString &text) { note("upComRangeChanged", text); });
}

void PanelRecord::addLog(const QString &message)
{
    static const QRegularExpression stamp(QStringLiteral(R"(\A\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\] )"));
    const auto match = stamp.match(message);
    if (match.hasMatch())
        _logs.append(message.mid(match.capturedLength()));
    else
        _logs.append(message.split(QLatin1Char('\n')));
}

QStringList PanelRecord::warnings() const
{
    const QString begin = QStringLiteral("[Warning] ");
    QStringList found;
    for (const QString &line : _logs) {
        if (line.startsWith(begin))
            found.append(line.mid(begin.size()));
    }
    return found;
}

int PanelRecord::inventories() const
{
    return _inventorySignals.filter(QStringLiteral("upComRangeChanged")).size();
}

void PanelRecord::clear()
{
    _toasts.clear();
    _logs.clear();
    _labels.clear();
    _blocks.clear();
    _inventorySignals.clear();
}

ConsoleBench::ConsoleBench(const simulator::SimulatorOptions &options)
    : _options(options)
    , _device(options)
{
    if (_device.start().isEmpty())
        qFatal("no pseudo terminal: %s", qUtf8Printable(_device.errorString()));
    beginPanel();
}

void ConsoleBench::beginPanel()
{
    _panel = std::make_unique<SwitchDeviceViewModel>();
    _record = std::make_unique<PanelRecord>(_panel.get());
    setFamily();
    _panel->setCurrentCom(_device.path());
    _panel->setUserText(QString::fromUtf8(_options.user));
    _panel->setPasswordText(QString::fromUtf8(_options.password));
}

ConsoleBench::~ConsoleBench()
{
    printIfFailed();
}

void ConsoleBench::printIfFailed()
{
    if (!QTest::currentTestFailed() || !_panel)
        return;
    // But for the rows of tables.
    static const QRegularExpression row(QStringLiteral(R"(\A\[Info\] .*\d/\d+/\d+ )"));
    QStringList logs = _record->logs();
    logs.erase(std::remove_if(logs.begin(), logs.end(), [](const QString &line) { return line.contains(row); }),
               logs.end());
    std::fprintf(stderr, "--- toasts\n%s\n--- log\n%s\n--- commands\n%s\n---\n",
                 qUtf8Printable(_record->toasts().join(QLatin1Char('\n'))),
                 qUtf8Printable(logs.join(QLatin1Char('\n'))), commands().join('\n').constData());
}

simulator::SimulatorOptions ConsoleBench::options(const QString &arguments)
{
    const auto parsed = simulator::parseSimulatorOptions(arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    if (!parsed.error.isEmpty())
        qFatal("%s: %s", qUtf8Printable(arguments), qUtf8Printable(parsed.error));
    return parsed.options;
}

void ConsoleBench::endPanel()
{
    _record.reset();
    _panel.reset();
}

void ConsoleBench::setFamily()
{
    _panel->setCurlogoChanged(tr(_options.family == Family::Hua3 ? "华三" : "华为"));
}

bool ConsoleBench::connectPanel(std::chrono::milliseconds usual)
{
    const int before = _record->inventories();
    _panel->deviceCommunicate();
    const auto isDone = [this, before] { return _record->inventories() > before && _panel->isQueueIdle(); };
    return waitUntil(isDone, usual) && takeLateLines();
}

bool ConsoleBench::reconnectPanel(std::chrono::milliseconds usual)
{
    _panel->disconnectDevice();
    _panel->setCurrentCom(_device.plugIn());
    forget();
    return connectPanel(usual);
}

bool ConsoleBench::waitUntilIdle(std::chrono::milliseconds usual)
{
    return waitUntil([this] { return _panel->isQueueIdle(); }, usual) && takeLateLines();
}

// The logger's lines come by the event queue.
bool ConsoleBench::takeLateLines()
{
    QCoreApplication::sendPostedEvents(_panel.get(), QEvent::MetaCall);
    return true;
}

void ConsoleBench::forget()
{
    takeLateLines();
    _record->clear();
    _forgottenCommands = _device.device().commands().size();
}

QStringList ConsoleBench::inventory()
{
    Inventory found;
    found.down = texts(_panel->gInterface());
    found.up = texts(_panel->xgInterface());
    found.downMin = _panel->downInterfaceMin();
    found.downMax = _panel->downInterfaceMax();
    found.upMin = _panel->upInterfaceMin();
    found.upMax = _panel->upInterfaceMax();
    found.isAggregation = _panel->isAggregationSwitch() != 0;
    found.boardType = _panel->boardType();
    found.copperPorts = _record->logsWith(QStringLiteral("GE(C)")).size();
    QStringList lines = found.lines();
    // What else the panel says of the same, in place of what follows from the above.
    lines[2] = QStringLiteral("poeInterface ") + texts(_panel->poeInterface()).join(QLatin1Char(' '));
    lines[3] = QStringLiteral("allInterface ") + texts(_panel->allInterface()).join(QLatin1Char(' '));
    lines[5] =
        QStringLiteral("VLAN ranges %1 %2")
            .arg(range(_panel->downPortMin(), _panel->downPortMax()), range(_panel->upPortMin(), _panel->upPortMax()));
    lines[6] = QStringLiteral("counts %1 %2").arg(_panel->downComNum()).arg(_panel->upComNum());
    return lines.mid(0, 10) + _record->inventorySignals();
}

QStringList ConsoleBench::expectedInventory()
{
    const PortNames names = portNames(_options.family);
    const SwitchModel &model = _options.model;
    const int firstTen = names.isNumberedThrough ? model.gigabit + 1 : 1;
    const int firstForty = names.isNumberedThrough ? model.gigabit + model.tenGigabit + 1 : 1;
    const QStringList tenGigabit = portList(names.tenGigabit, names.slot, firstTen, model.tenGigabit);

    Inventory expected;
    expected.isAggregation = model.gigabit == 0;
    if (expected.isAggregation) {
        expected.down = tenGigabit;
        expected.downMin = firstTen;
        expected.downMax = firstTen + model.tenGigabit - 1;
        if (model.fortyGigabit > 0) {
            expected.upMin = firstForty;
            expected.upMax = firstForty + model.fortyGigabit - 1;
        }
    } else {
        expected.down = portList(names.gigabit, names.slot, 1, model.gigabit);
        expected.downMin = 1;
        expected.downMax = model.gigabit;
        expected.up = tenGigabit;
        if (model.tenGigabit > 0) {
            expected.upMin = firstTen;
            expected.upMax = firstTen + model.tenGigabit - 1;
        }
    }
    // Nothing tells the Hua3 family's board type or which of its ports are copper.
    if (_options.family != Family::Hua3) {
        expected.boardType = QString::fromUtf8(_device.device().state().hardware.boardType);
        expected.copperPorts = std::min(model.copper, model.gigabit);
    }
    return expected.lines();
}

QByteArray ConsoleBench::standingPrompt()
{
    ConsoleportComm *const comm = ovra::bll::SwitchDevice::getInstance()->getCommPtr();
    if (!comm->rawWrite(QByteArrayLiteral("\r")))
        return {};
    constexpr int kStepMs = 50;
    QByteArray bytes;
    QElapsedTimer timer;
    timer.start();
    while (!bytes.endsWith('>') && !bytes.endsWith(']') && !timer.hasExpired(patience(kPatience / 4).count()))
        bytes += comm->timedRead(kStepMs);
    return bytes.mid(bytes.lastIndexOf('\n') + 1);
}
