// One switch through the view model, from the opening of its port to the end.
#pragma once

#include "connectionoptions.h"
#include "exitstatus.h"
#include "interruptwatch.h"
#include "inventory.h"
#include "simulatedline.h"

#include <switchdeviceviewmodel.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

//! How something ended. The reason is a sentence for the user, empty when there is nothing to say.
struct Outcome
{
    ExitStatus status = ExitStatus::Done;
    QString reason;
};

//! What the view model is to do. Returns what is wrong with it, or nothing.
using SwitchAction = std::function<QString(SwitchDeviceViewModel &)>;

/*!
    Owns a view model for one switch and runs an event loop of its own for as long as something is under way: until the
   command queue is empty, the time is over, the port is gone, the login is refused, or Ctrl-C.

       connectDevice()                            run(action)
         port opened ─▶ login ─▶ inventory read ─▶ queue empty ─▶ action sent ─▶ queue empty
              └─────────────┴────────────┴── Outcome of the failure ──┘

   What the view model says to its user (toasts) goes to standard error, its log likewise where asked for. Needs a
   LogOutput that was there before. One object at a time, on the main thread.
*/
class SwitchSession : public QObject
{
    Q_OBJECT

public:
    explicit SwitchSession(const ConnectionRequest &request);
    //! Closes the port. Returns when the port's thread has ended.
    ~SwitchSession() override;

    SwitchDeviceViewModel &viewModel() { return *_viewModel; }
    Language language() const { return _request.language; }

    //! Opens the port, logs in and reads the whole inventory. A simulated switch is switched on first.
    Outcome connectDevice();

    //! Calls the action, which hands blocks to the queue, and waits until all are answered. A warning of the view model
    //! or of the libraries meanwhile is a refusal (its text is on standard error then).
    Outcome run(const SwitchAction &action);

    Inventory inventory();

    //! What the log said in answer to the last run(): lines of the switch's replies, as the panel shows them.
    QStringList results() const { return _results; }

private:
    enum class Missing { Nothing, UserName, Password };

    void listen();
    void onToast(const QString &text);
    void onParseState(SwitchDeviceViewModel::ParseState state);
    void onLogMessage(const QString &message);
    void takeLogLine(const QString &line);
    void fail(ExitStatus status, const QString &reason);
    void failAtPort(const QString &reason);

    QString openSimulated();
    void setPassword(const QString &password);
    void setUp(const QString &portName);
    Outcome wait();
    void check();
    void askForCredential();
    void settleLog();
    Outcome inventoryOutcome() const;
    QString silenceReason() const;
    QString translated(const char *chinese) const { return _viewModel->lxTr(QString::fromUtf8(chinese)); }
    QString say(const Text &text, const QStringList &values = {}) const
    {
        return inLanguage(text, _request.language, values);
    }

    const ConnectionRequest _request;
    std::unique_ptr<SimulatedLine> _simulated; // outlives the view model, which has its port open
    std::unique_ptr<SwitchDeviceViewModel> _viewModel;
    InterruptWatch _interrupts;
    QEventLoop _loop;
    QElapsedTimer _elapsed;
    qint64 _askingMsecs = 0; // time that the user took, which counts for nobody

    int _warnings = 0; // before what is under way

    Outcome _end;
    bool _hasEnded = false;
    bool _hasBegun = false;
    bool _isLoggedIn = false;
    bool _hasInventory = false;
    std::atomic<bool> _hasHeard{false}; // set from the port thread
    Missing _missing = Missing::Nothing;
    QStringList _results;
};
