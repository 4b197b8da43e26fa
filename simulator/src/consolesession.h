#pragma once

#include "commandgrammar.h"
#include "dialect.h"
#include "eventqueue.h"
#include "interfacenames.h"
#include "lineeditor.h"
#include "pager.h"
#include "serialline.h"

#include <simulator/simulatoroptions.h>
#include <simulator/switchstate.h>

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>
#include <QtCore/QDateTime>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace simulator {

/// Where the user stands.
struct ViewState
{
    View view = kUserView;
    InterfaceId interface;          ///< of the views of one interface
    std::vector<std::size_t> ports; ///< of the group view
    int vlan = 0;                   ///< of the VLAN view
    QByteArray name;                ///< what the prompt says behind the switch's name
    QByteArray section;             ///< header of the section
};

/// What stands behind the bar of `display … | include WORD`.
struct LineFilter
{
    enum class Kind { Begin, Include, Exclude } kind = Kind::Include;
    QByteArray text;
};

/// What goes on between the user and the switch: login, command lines, questions, pager, log lines, restarts. What the
/// commands do is written in the commands_*.cpp; they are free functions that use the middle part of this interface.
class ConsoleSession
{
public:
    ConsoleSession(const SimulatorOptions &options, SerialLine &line);
    ~ConsoleSession();
    ConsoleSession(const ConsoleSession &) = delete;
    ConsoleSession &operator=(const ConsoleSession &) = delete;

    void receive(const QByteArray &bytes, Instant now);
    void advance(Instant now);
    std::optional<Instant> nextDue() const;

    void addFault(const Fault &fault);
    void clearFaults();
    void setNeighbour(std::size_t port, bool connected);
    const QByteArrayList &commands() const { return _commands; }

    // --- For the commands

    const SimulatorOptions &options() const { return _options; }
    const Dialect &dialect() const { return _dialect; }
    const InterfaceNames &names() const { return _names; }
    const SwitchState &state() const { return _state; }
    SwitchState &state() { return _state; }
    const SwitchConfiguration &running() const { return _state.running; }
    /// What configuration commands look at: the running configuration, or the candidate on two-stage releases.
    const SwitchConfiguration &configuration() const;
    /// The same, to be changed.
    SwitchConfiguration &change();
    bool isTwoStage() const { return _twoStage; }
    bool isUncommitted() const { return _uncommitted; }
    /// Enters the system view; `twoStage` matters only on two-stage releases.
    void beginConfiguration(bool twoStage);
    void commit();
    void forgetUncommitted();

    const ViewState &view() const { return _view; }
    void enter(const ViewState &view);

    void print(const QByteArray &text);
    void printLine(const QByteArray &text) { print(text + "\r\n"); }
    /// A listing, shown in screens. Nothing may be printed behind it.
    void show(const QByteArrayList &lines);
    /// An error answer, with its number where the release numbers them.
    void fail(const QByteArray &text);

    /// Asks until the answer is yes or no. `question` ends with its [Y/N], which the options may change.
    void askYesNo(const QByteArray &question, std::function<void(bool)> answered);
    void askLine(const QByteArray &prompt, LineKind kind, std::function<void(const QByteArray &)> answered);
    /// Goes on later; what the user types meanwhile waits.
    void after(Duration delay, std::function<void()> action);
    /// A time that the options hurry.
    Duration hurried(Duration time) const;

    void log(LogKind kind, const QByteArray &port = {});
    /// What is written for the change of a port's, its VLANs' and its group's state that a command is about to make.
    void logLinkChanges(const std::function<void()> &change);
    const QByteArrayList &logBuffer() const { return _logBuffer; }

    void logout();
    void reboot();
    void setPaging(bool on) { _paging = on; }
    void setScreenWidth(int width) { _screenWidth = width; }
    void setRedraw(bool on) { _redraw = on; }
    void setMonitor(bool on) { _monitor = on; }
    const QByteArrayList &history() const { return _editor.history(); }
    Duration uptime() const { return _now - _bootedAt; }
    QDateTime clock() const;
    QByteArrayList configurationLines(const SwitchConfiguration &configuration) const;
    QByteArray configurationText(const SwitchConfiguration &configuration) const;

private:
    enum class Mode {
        Idle, ///< waits for Enter
        Line, ///< a line is being typed
        Pager,
        Busy, ///< something runs; typed bytes wait
        Deaf, ///< typed bytes are lost
        AutomaticConfiguration
    };
    struct ActiveFault
    {
        Fault fault;
        int left;    ///< how often it may still happen; negative: always
        int armedAt; ///< number of commands before it
    };

    // consolesession.cpp: beginning, end and time
    void begin(Start start);
    void beginLoggedIn(const QByteArray &command);
    void idleTimeout();
    void logChatter();
    void booted();

    // consolesession_input.cpp: what is typed, and what commands ask for
    bool takesKeys() const;
    void feed();
    void feedByte(char byte);
    void feedPager(char byte);
    void feedLine(char byte);
    void lineEntered(const QByteArray &text);
    void interrupted();
    void settle();

    // consolesession_login.cpp
    void idle();
    void automaticConfiguration();
    void beginLogin();
    void askUser();
    void askPassword(const QByteArray &user);
    void checkPassword(const QByteArray &user, const QByteArray &password);
    void wrongCredentials();
    void lock();
    void chooseFirstPassword();
    void changePassword(std::function<void()> then);
    void loggedIn();
    void askAboutPassword();
    void askAboutConfiguration();
    void welcome();

    // consolesession_output.cpp: prompts, errors, log lines
    QByteArray promptText() const;
    void showPrompt();
    QByteArray reprompt();
    QByteArray logLine(LogKind kind, const QByteArray &port);
    QByteArray logBurst(int lines);
    void emitLog(const QByteArray &line);
    int redrawWidth() const { return _redraw && _options.echoRedraw ? _screenWidth : 0; }

    // consolesession_commands.cpp: finding and running commands, help, faults of commands
    void commandEntered(const QByteArray &line);
    void runCommand(const QByteArray &line);
    void runForGroup(const CommandMatch &match);
    void reject(const CommandMatch &match);
    void complete();
    void help();
    unsigned searchedViews() const;
    QByteArray takeFilter(const QByteArray &line);
    bool strikeCommand(const QByteArray &line);
    bool hits(const ActiveFault &active, const QByteArray &line) const;
    bool apply(const Fault &fault, const QByteArray &line);
    void armLine(const Fault &fault);
    static bool concernsLine(FaultKind kind);

    const SimulatorOptions _options;
    SerialLine &_line;
    SwitchState _state;
    const Dialect _dialect;
    const InterfaceNames _names;
    const CommandGrammar _grammar;

    Instant _now{0};
    Instant _bootedAt{0};
    EventQueue _events;             // of the session; a restart forgets them
    std::optional<Instant> _idleAt; // when the session times out
    std::optional<Instant> _nextChatter;

    Mode _mode = Mode::Deaf;
    bool _waiting = false; // an event will go on
    bool _loggedIn = false;
    bool _lastWasReturn = false; // a line feed behind it is not another line
    std::deque<char> _typed;     // not yet looked at
    LineEditor _editor;
    LineKind _lineKind = LineKind::Command;
    std::function<void(const QByteArray &)> _lineHandler;
    std::optional<QByteArray> _interruptAnswer; // what Ctrl+C stands for in a question
    Pager _pager;
    bool _paging = true;
    int _screenWidth = 80;
    bool _redraw = true;
    bool _monitor = true;

    ViewState _view;
    bool _twoStage = false;
    bool _uncommitted = false;
    QByteArray _password; // the one that is right now
    bool _initialPassword = false;
    bool _firstLogin = false;
    int _failures = 0;
    int _errorNumber = 0;

    int _logNumber = 0;
    QByteArrayList _logBuffer;
    QByteArrayList _heldLogs; // until the next prompt
    std::vector<ActiveFault> _faults;
    QByteArrayList _commands;
    std::optional<LineFilter> _filter;        // of the next listing
    std::optional<QByteArray> _promptInstead; // of the next prompt; empty: none
};

} // namespace simulator
