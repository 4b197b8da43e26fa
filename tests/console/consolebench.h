#pragma once

#include "switchdeviceviewmodel.h"

#include <simulator/simulatedswitch.h>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <chrono>
#include <functional>
#include <memory>

/// A limit for what should happen soon; longer where machines are slow: under continuous integration, and with
/// sanitizers.
std::chrono::milliseconds patience(std::chrono::milliseconds usual);

constexpr std::chrono::seconds kPatience{20};

/// How much of a test's table a program runs: the usual rows at every run of the tests, the thorough ones by a program
/// of their own that runs in release builds only.
enum class Effort { Usual, Thorough };

#ifdef SWITCHPANEL_THOROUGH
constexpr Effort kEffort = Effort::Thorough;
#else
constexpr Effort kEffort = Effort::Usual;
#endif

/// Runs the event loop until the condition holds. False when it does not within the limit.
bool waitUntil(const std::function<bool()> &condition, std::chrono::milliseconds usual = kPatience);

/// Keeps the information that view models log out of the test's own output. Create it before the view models.
class QuietLog
{
public:
    QuietLog();
    ~QuietLog();
    QuietLog(const QuietLog &) = delete;
    QuietLog &operator=(const QuietLog &) = delete;
};

/// What a view model tells its user, in order. Lives on the view model's thread; what comes from other threads is added
/// when it arrives there.
class PanelRecord : public QObject
{
public:
    explicit PanelRecord(SwitchDeviceViewModel *panel);

    /// "text, state"
    const QStringList &toasts() const { return _toasts; }
    /// The message logger's lines without their time stamps, "[Info] text", and everybody else's, each line by itself.
    const QStringList &logs() const { return _logs; }
    QStringList logsWith(const QString &text) const { return _logs.filter(text); }
    /// Texts of the message logger's warnings.
    QStringList warnings() const;
    /// Of the blocks that were sent, in order.
    const QStringList &labels() const { return _labels; }
    /// Bytes of the blocks that were sent, in order.
    const QByteArrayList &blocks() const { return _blocks; }
    /// The ranges and counts of inventories as they were announced: "downComRangeChanged (1-24)".
    const QStringList &inventorySignals() const { return _inventorySignals; }
    int inventories() const;
    void clear();

private:
    void addLog(const QString &message);

    QStringList _toasts;
    QStringList _logs;
    QStringList _labels;
    QByteArrayList _blocks;
    QStringList _inventorySignals;
};

/// A simulated switch on a pseudo terminal, and a view model at the other end.
class ConsoleBench
{
public:
    /// The switch runs, and the panel's port, family and credentials are set; nothing is opened.
    explicit ConsoleBench(const simulator::SimulatorOptions &options);
    /// printIfFailed()
    ~ConsoleBench();
    ConsoleBench(const ConsoleBench &) = delete;
    ConsoleBench &operator=(const ConsoleBench &) = delete;

    /// From arguments as the simulator's command line takes them: "--family hua3 --login none".
    static simulator::SimulatorOptions options(const QString &arguments);

    const simulator::SimulatorOptions &switchOptions() const { return _options; }
    simulator::SimulatedSwitch &device() { return _device; }
    simulator::SwitchConfiguration running() const { return _device.device().state().running; }
    /// Command lines that the switch has got since the last forget().
    QByteArrayList commands() const { return _device.device().commands().mid(_forgottenCommands); }
    void addFault(const simulator::Fault &fault) { _device.device().addFault(fault); }

    SwitchDeviceViewModel &panel() { return *_panel; }
    SwitchDeviceViewModel *operator->() { return _panel.get(); }
    /// Destroys the view model, and makes another one.
    void endPanel();
    void beginPanel();
    PanelRecord &record() { return *_record; }
    /// The text in the panel's language.
    QString tr(const char *text) const { return _panel->lxTr(QString::fromUtf8(text)); }

    /// Writes the family's label in the panel's language.
    void setFamily();
    /// Calls deviceCommunicate(). True when an inventory has come and everything that follows it is done.
    bool connectPanel(std::chrono::milliseconds usual = kPatience);
    /// A new connection in the way one is made: the cable is in, disconnectDevice(), deviceCommunicate().
    bool reconnectPanel(std::chrono::milliseconds usual = kPatience);
    /// Until no block is outstanding or waits.
    bool waitUntilIdle(std::chrono::milliseconds usual = kPatience);
    /// What has happened so far is not looked at any more.
    void forget();

    /// The inventory since the last forget(): what the properties and lists say, and what was announced.
    QStringList inventory();
    /// What inventory() should be, by what is built into the switch.
    QStringList expectedInventory();

    /// Prints what has happened since the last forget() when the test has failed.
    void printIfFailed();

    /// What the switch prints when somebody presses Enter beside the panel; without the line ends before it.
    QByteArray standingPrompt();

private:
    bool takeLateLines();

    const simulator::SimulatorOptions _options;
    simulator::SimulatedSwitch _device;
    std::unique_ptr<SwitchDeviceViewModel> _panel;
    std::unique_ptr<PanelRecord> _record;
    int _forgottenCommands = 0;
};

Q_DECLARE_METATYPE(simulator::SimulatorOptions)
