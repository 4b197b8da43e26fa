#pragma once

#include <simulator/fault.h>
#include <simulator/instant.h>

#include <QtCore/QByteArray>
#include <QtCore/QDateTime>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <vector>

namespace simulator {

/// Which switch's console language is spoken.
enum class Family {
    Huawei,    ///< GigabitEthernet0/0/1, XGigabitEthernet0/0/1
    HuaweiSub, ///< the same commands with the names GE0/0/1 (or MultiGE0/0/1) and 10GE0/0/1
    Hua3       ///< GigabitEthernet1/0/1, Ten-GigabitEthernet1/0/25, commands of its own
};

/// What is built into the switch. The n-th port of a kind is called by the family's rules.
struct SwitchModel
{
    int gigabit = 24;
    /// How many of the gigabit ports are copper, from the first on; the others take optical modules.
    int copper = 24;
    int tenGigabit = 4;
    int fortyGigabit = 0;
    bool poe = false;
    /// As `display version` and the slot listing call it; empty: a name that fits family and ports.
    QByteArray boardType;
};

enum class LoginKind { None, Password, User };

/// What follows wrong credentials; releases differ. Each family has its own wording for each.
enum class FailureText {
    Short, ///< the oldest wording, ended by a NUL
    UserOrPassword,
    InvalidPassword,
    Authentication
};

enum class AfterLock {
    Idle,   ///< the line goes back to the idle banner at once
    Silence ///< the line is dead for the lock time
};

enum class Paging {
    Normal, ///< may be switched off
    Forced, ///< switching it off is refused for want of rights
    Off
};

enum class PagerKeys { IgnoreOthers, OthersStop };

/// Where an earlier user has left the console.
enum class Start { Idle, LoginPrompt, UserView, SystemView, HalfTyped, Pager, Question, Booting };

enum class Descriptions {
    None,
    Ascii, ///< some with angle brackets, as people write them
    Gbk    ///< bytes that are not UTF-8
};

/// Everything that can be chosen about a simulated switch before it is switched on. Times are those of a real switch;
/// `hurry` divides the long ones.
struct SimulatorOptions
{
    Family family = Family::Huawei;
    SwitchModel model;
    /// The configured name; empty: the factory's.
    QByteArray name;

    // Login
    LoginKind login = LoginKind::User;
    QByteArray user = QByteArrayLiteral("admin");
    QByteArray password = QByteArrayLiteral("Admin@123");
    FailureText failureText = FailureText::Short;
    int failuresBeforeLock = 3;
    AfterLock afterLock = AfterLock::Idle;
    bool initialPasswordQuestion = false;
    bool firstLoginPassword = false;
    bool insecureConfigurationQuestion = false;
    /// Hua3: `login:` instead of `Username:`.
    bool loginInLowerCase = true;
    /// 0 visit, 1 monitor, 2 configuration, 3 and above management.
    int userLevel = 15;

    // Manner of writing
    Paging paging = Paging::Normal;
    int screenLines = 24;
    /// Columns of the sequence that erases the pager's marker: 16, or 42 on older releases.
    int eraseColumns = 16;
    PagerKeys pagerKeys = PagerKeys::IgnoreOthers;
    bool echoRedraw = true;
    bool groupEcho = true;
    bool carriageReturnTwice = false;
    QByteArray promptPrefix;
    bool promptNul = false;
    bool promptBell = false;
    bool errorNumbers = false;
    /// How a yes-or-no question ends, e.g. "[Y/N]", "[y/n]:", "(y/n)[n]:"; empty: as each question usually does.
    QByteArray questionEnd;

    // Release
    bool versionLine = true; ///< [V200R009C00SPC500] heads the configuration; Huawei only
    bool oldVlanListing = false;
    bool newMirrorListing = false; ///< always so on the sub-model
    bool blankInWavelength = false;
    bool multiGigabitNames = false;  ///< MultiGE instead of GE; sub-model only
    bool speedInNames = false;       ///< GigabitEthernet0/0/1(10G) in the brief listing
    bool twoStage = false;           ///< nothing takes effect before commit; sub-model only
    bool negotiationOnFibre = false; ///< 10-gigabit ports accept `undo negotiation auto`

    // Contents
    /// At least so many lines of running configuration.
    int configurationLines = 0;
    Descriptions descriptions = Descriptions::None;
    /// Logical interfaces 0/0/n.20 below the first so many ports.
    int subInterfaces = 0;
    int ipConflicts = 0;
    bool startupConfiguration = true; ///< Hua3 without one repeats its notice of automatic configuration

    // Log lines
    bool logs = true;
    bool logReprompt = true;
    Duration logDelay = std::chrono::milliseconds(40);
    /// A log line of its own accord every so often; 0: never.
    Duration logEvery{0};

    // Time
    Start start = Start::Idle;
    Duration saveTime = std::chrono::seconds(5);
    Duration bootTime = std::chrono::seconds(150);
    Duration lockTime = std::chrono::minutes(5);
    Duration idleTimeout = std::chrono::minutes(10);
    /// Divides the four times above.
    int hurry = 1;
    /// Wall clock at time 0, UTC.
    QDateTime clock{QDate(2026, 11, 20), QTime(10, 11, 12), Qt::UTC};

    // The line
    /// Bytes a second; 0: as fast as the reader can. 9600 baud are 960.
    int bytesPerSecond = 0;
    /// Replies come in pieces of 1 to so many bytes; 0: as they are.
    int largestChunk = 0;
    Duration chunkGap = std::chrono::milliseconds(1);
    quint32 seed = 1;

    std::vector<Fault> faults;
};

/// `SimulatorOptions` from a command line, or why not.
struct ParsedOptions
{
    SimulatorOptions options;
    QString error; ///< empty when all is well; names the argument otherwise
};

/// Reads arguments such as `--model 48+4 --login password --speed 960 --fault cut:after=1200` on top of `defaults`.
/// Both
/// `--name value` and `--name=value` are accepted. simulatorOptionsHelp() lists the names.
ParsedOptions parseSimulatorOptions(const QStringList &arguments, const SimulatorOptions &defaults = {});

/// A line for each argument that parseSimulatorOptions() knows.
QString simulatorOptionsHelp();

/// The arguments that parseSimulatorOptions() takes `--name` with a value for, and those without: for programs that
/// pick them out of a longer command line. The names carry their dashes.
bool isSimulatorOption(const QString &argument, bool *takesValue);

} // namespace simulator
