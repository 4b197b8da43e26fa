#include <simulator/simulatoroptions.h>

#include <QtCore/QTextStream>

#include <optional>
#include <utility>
#include <vector>

namespace simulator {

namespace {

template<typename Value>
using Words = std::vector<std::pair<const char *, Value>>;

template<typename Value>
bool choose(const Words<Value> &words, const QString &text, Value *value)
{
    for (const auto &word : words) {
        if (text == QLatin1String(word.first)) {
            *value = word.second;
            return true;
        }
    }
    return false;
}

bool readNumber(const QString &text, int low, int high, int *value)
{
    bool ok = false;
    const int number = text.toInt(&ok);
    if (!ok || number < low || number > high)
        return false;
    *value = number;
    return true;
}

// `250ms`, `5s`, `2m`; a plain number is milliseconds.
bool readTime(const QString &text, Duration *time)
{
    static const Words<std::chrono::milliseconds> kUnits{{"ms", std::chrono::milliseconds(1)},
                                                         {"s", std::chrono::seconds(1)},
                                                         {"m", std::chrono::minutes(1)},
                                                         {"", std::chrono::milliseconds(1)}};
    constexpr int kLongest = 1000000;
    for (const auto &unit : kUnits) {
        const QLatin1String name(unit.first);
        int count = 0;
        if (text.endsWith(name) && readNumber(text.chopped(name.size()), 0, kLongest, &count)) {
            *time = unit.second * count;
            return true;
        }
    }
    return false;
}

// `24+4` or `24+4+2`: gigabit, 10-gigabit and 40-gigabit ports.
bool readPortCounts(const QString &text, SwitchModel *model)
{
    constexpr int kMost = 96;
    const QStringList counts = text.split(QLatin1Char('+'));
    int gigabit = 0, ten = 0, forty = 0;
    if (counts.size() < 2 || counts.size() > 3 || !readNumber(counts[0], 0, kMost, &gigabit)
        || !readNumber(counts[1], 0, kMost, &ten) || (counts.size() == 3 && !readNumber(counts[2], 0, kMost, &forty)))
        return false;
    *model = {gigabit, gigabit, ten, forty, model->poe, model->boardType};
    return true;
}

bool readModel(const QString &text, SwitchModel *model)
{
    static const Words<SwitchModel> kModels{{"access", {24, 24, 4, 0, false, {}}},
                                            {"large", {48, 48, 4, 0, false, {}}},
                                            {"aggregation", {0, 0, 24, 6, false, {}}},
                                            {"mixed", {24, 16, 4, 0, false, {}}},
                                            {"poe", {24, 24, 4, 0, true, {}}}};
    const SwitchModel before = *model;
    if (!choose(kModels, text, model))
        return readPortCounts(text, model);
    model->poe |= before.poe;
    model->boardType = before.boardType;
    return true;
}

const Words<FaultKind> &faultKinds()
{
    static const Words<FaultKind> kKinds{
        {"cut", FaultKind::Cut},           {"hang", FaultKind::Hang},     {"garbage", FaultKind::Garbage},
        {"noise", FaultKind::Noise},       {"half", FaultKind::Half},     {"logs", FaultKind::Logs},
        {"nul", FaultKind::Nul},           {"delay", FaultKind::Delay},   {"prompt", FaultKind::WrongPrompt},
        {"noprompt", FaultKind::NoPrompt}, {"refuse", FaultKind::Refuse}, {"question", FaultKind::Question},
        {"logout", FaultKind::Logout},     {"reboot", FaultKind::Reboot},
    };
    return kKinds;
}

bool setFaultText(const QString &key, const QString &value, Fault *fault)
{
    const Words<QByteArray Fault::*> kTexts{{"command", &Fault::command}, {"text", &Fault::text}};
    QByteArray Fault::*member = nullptr;
    if (!choose(kTexts, key, &member))
        return false;
    fault->*member = value.toUtf8();
    return true;
}

bool setFaultNumber(const QString &key, const QString &value, Fault *fault)
{
    constexpr int kMost = 1 << 24;
    const Words<int Fault::*> kNumbers{
        {"line", &Fault::line}, {"after", &Fault::after}, {"amount", &Fault::amount}, {"times", &Fault::times}};
    int Fault::*member = nullptr;
    return choose(kNumbers, key, &member) && readNumber(value, 0, kMost, &(fault->*member));
}

bool setFaultValue(const QString &key, const QString &value, Fault *fault)
{
    if (key == QLatin1String("time"))
        return readTime(value, &fault->time);
    return setFaultText(key, value, fault) || setFaultNumber(key, value, fault);
}

// `kind:key=value,key=value`; the value of `text` reaches to the end.
bool readFault(const QString &text, std::vector<Fault> *faults)
{
    const int colon = text.indexOf(QLatin1Char(':'));
    Fault fault;
    if (!choose(faultKinds(), text.left(colon), &fault.kind))
        return false;
    QString rest = colon < 0 ? QString() : text.mid(colon + 1);
    while (!rest.isEmpty()) {
        const int equals = rest.indexOf(QLatin1Char('='));
        const QString key = rest.left(equals);
        const int comma = key == QLatin1String("text") ? -1 : rest.indexOf(QLatin1Char(','));
        const QString value = comma < 0 ? rest.mid(equals + 1) : rest.mid(equals + 1, comma - equals - 1);
        if (equals < 0 || !setFaultValue(key, value, &fault))
            return false;
        rest = comma < 0 ? QString() : rest.mid(comma + 1);
    }
    faults->push_back(fault);
    return true;
}

// One argument: its name, what its value looks like (nothing: it has none), what it is for, and what it does.
struct Row
{
    const char *name;
    const char *value;
    const char *help;
    bool (*apply)(SimulatorOptions &, const QString &);
};

template<auto member, int low, int high>
bool number(SimulatorOptions &options, const QString &text)
{
    return readNumber(text, low, high, &(options.*member));
}

template<auto member>
bool time(SimulatorOptions &options, const QString &text)
{
    return readTime(text, &(options.*member));
}

template<auto member>
bool bytes(SimulatorOptions &options, const QString &text)
{
    options.*member = text.toUtf8();
    return true;
}

template<auto member, bool value>
bool flag(SimulatorOptions &options, const QString &)
{
    options.*member = value;
    return true;
}

using O = SimulatorOptions;

const std::vector<Row> &rows()
{
    static const std::vector<Row> kRows{
        {"family", "huawei|huawei-sub|hua3", "whose console language is spoken",
         [](O &o, const QString &v) {
             return choose<Family>(
                 {{"huawei", Family::Huawei}, {"huawei-sub", Family::HuaweiSub}, {"hua3", Family::Hua3}}, v, &o.family);
         }},
        {"model", "access|large|aggregation|mixed|poe|G+X[+F]",
         "ports: 24+4, 48+4, 0+24+6, 24+4 of which 8 optical, 24+4 with PoE, or gigabit+10-gigabit+40-gigabit",
         [](O &o, const QString &v) { return readModel(v, &o.model); }},
        {"copper", "N", "how many of the gigabit ports are copper",
         [](O &o, const QString &v) { return readNumber(v, 0, 96, &o.model.copper); }},
        {"poe", nullptr, "ports feed devices",
         [](O &o, const QString &) {
             o.model.poe = true;
             return true;
         }},
        {"board", "TEXT", "board type",
         [](O &o, const QString &v) {
             o.model.boardType = v.toUtf8();
             return true;
         }},
        {"name", "TEXT", "name of the switch", bytes<&O::name>},
        {"login", "none|password|user", "what the login asks for",
         [](O &o, const QString &v) {
             return choose<LoginKind>(
                 {{"none", LoginKind::None}, {"password", LoginKind::Password}, {"user", LoginKind::User}}, v,
                 &o.login);
         }},
        {"user", "TEXT", "right user name (admin)", bytes<&O::user>},
        {"switch-password", "TEXT", "right password (Admin@123)", bytes<&O::password>},
        {"failure", "short|user-or-password|invalid|authentication", "wording of a failed login",
         [](O &o, const QString &v) {
             return choose<FailureText>({{"short", FailureText::Short},
                                         {"user-or-password", FailureText::UserOrPassword},
                                         {"invalid", FailureText::InvalidPassword},
                                         {"authentication", FailureText::Authentication}},
                                        v, &o.failureText);
         }},
        {"failures", "N", "failed logins before the line locks (3)", number<&O::failuresBeforeLock, 1, 1000>},
        {"lock", "idle|silence", "what a locked line does",
         [](O &o, const QString &v) {
             return choose<AfterLock>({{"idle", AfterLock::Idle}, {"silence", AfterLock::Silence}}, v, &o.afterLock);
         }},
        {"ask-initial-password", nullptr, "asks to change the initial password",
         flag<&O::initialPasswordQuestion, true>},
        {"ask-first-password", nullptr, "asks for a password to be set at the first login",
         flag<&O::firstLoginPassword, true>},
        {"ask-insecure", nullptr, "asks about risks in the configuration",
         flag<&O::insecureConfigurationQuestion, true>},
        {"old-login", nullptr, "Username: instead of login: (hua3)", flag<&O::loginInLowerCase, false>},
        {"level", "N", "user level (15)", number<&O::userLevel, 0, 15>},
        {"paging", "normal|forced|off", "forced: switching it off is refused",
         [](O &o, const QString &v) {
             return choose<Paging>({{"normal", Paging::Normal}, {"forced", Paging::Forced}, {"off", Paging::Off}}, v,
                                   &o.paging);
         }},
        {"screen-lines", "N", "lines of a screen (24)", number<&O::screenLines, 1, 512>},
        {"erase", "16|42", "columns of the sequence that erases the pager's marker", number<&O::eraseColumns, 1, 132>},
        {"pager-keys", "ignore|stop", "what other keys do at the pager",
         [](O &o, const QString &v) {
             return choose<PagerKeys>({{"ignore", PagerKeys::IgnoreOthers}, {"stop", PagerKeys::OthersStop}}, v,
                                      &o.pagerKeys);
         }},
        {"no-redraw", nullptr, "no redraw mark at column 80", flag<&O::echoRedraw, false>},
        {"no-group-echo", nullptr, "commands for several ports are not echoed per port", flag<&O::groupEcho, false>},
        {"crcrlf", nullptr, "Enter is echoed as CR CR LF", flag<&O::carriageReturnTwice, true>},
        {"prompt-prefix", "TEXT", "stands before every prompt", bytes<&O::promptPrefix>},
        {"prompt-nul", nullptr, "a NUL before every prompt", flag<&O::promptNul, true>},
        {"prompt-bell", nullptr, "a BEL behind every prompt", flag<&O::promptBell, true>},
        {"error-numbers", nullptr, "Error[1]: instead of Error:", flag<&O::errorNumbers, true>},
        {"question-end", "TEXT", "how questions end, e.g. [y/n]: or (y/n)[n]:", bytes<&O::questionEnd>},
        {"no-version-line", nullptr, "no version line above configurations", flag<&O::versionLine, false>},
        {"old-vlan-listing", nullptr, "the VLAN listing of older releases", flag<&O::oldVlanListing, true>},
        {"new-mirror-listing", nullptr, "the mirroring listing of newer releases", flag<&O::newMirrorListing, true>},
        {"wavelength-blank", nullptr, "a blank in Wavelength (nm)", flag<&O::blankInWavelength, true>},
        {"multige", nullptr, "ports are called MultiGE (huawei-sub)", flag<&O::multiGigabitNames, true>},
        {"speed-in-names", nullptr, "(10G) behind names in the brief listing", flag<&O::speedInNames, true>},
        {"two-stage", nullptr, "nothing takes effect before commit (huawei-sub)", flag<&O::twoStage, true>},
        {"negotiation-on-fibre", nullptr, "10-gigabit ports can negotiate", flag<&O::negotiationOnFibre, true>},
        {"lines", "N", "at least so many lines of configuration", number<&O::configurationLines, 0, 1000000>},
        {"descriptions", "none|ascii|gbk", "port descriptions",
         [](O &o, const QString &v) {
             return choose<Descriptions>(
                 {{"none", Descriptions::None}, {"ascii", Descriptions::Ascii}, {"gbk", Descriptions::Gbk}}, v,
                 &o.descriptions);
         }},
        {"subinterfaces", "N", "so many ports have one", number<&O::subInterfaces, 0, 96>},
        {"ip-conflicts", "N", "recorded address conflicts", number<&O::ipConflicts, 0, 10000>},
        {"no-startup", nullptr, "there is no startup configuration", flag<&O::startupConfiguration, false>},
        {"no-logs", nullptr, "no log lines on changes", flag<&O::logs, false>},
        {"no-log-reprompt", nullptr, "log lines swallow the prompt", flag<&O::logReprompt, false>},
        {"log-every", "TIME", "a log line every so often", time<&O::logEvery>},
        {"start", "idle|login|user|system|half-typed|pager|question|booting",
         "where an earlier user has left the console",
         [](O &o, const QString &v) {
             return choose<Start>({{"idle", Start::Idle},
                                   {"login", Start::LoginPrompt},
                                   {"user", Start::UserView},
                                   {"system", Start::SystemView},
                                   {"half-typed", Start::HalfTyped},
                                   {"pager", Start::Pager},
                                   {"question", Start::Question},
                                   {"booting", Start::Booting}},
                                  v, &o.start);
         }},
        {"save-time", "TIME", "how long saving takes (5s)", time<&O::saveTime>},
        {"boot-time", "TIME", "how long a restart takes (150s)", time<&O::bootTime>},
        {"lock-time", "TIME", "how long a line is locked (5m)", time<&O::lockTime>},
        {"idle-time", "TIME", "until an idle session ends (10m)", time<&O::idleTimeout>},
        {"hurry", "N", "divides the four times above", number<&O::hurry, 1, 1000000>},
        {"speed", "N", "bytes a second; 960 is 9600 baud; 0: full speed", number<&O::bytesPerSecond, 0, 10000000>},
        {"chunks", "N", "replies come in pieces of 1 to N bytes", number<&O::largestChunk, 0, 65536>},
        {"seed", "N", "for everything random",
         [](O &o, const QString &v) {
             bool ok = false;
             o.seed = v.toUInt(&ok);
             return ok;
         }},
        {"fault", "KIND[:KEY=VALUE,…]",
         "cut, hang, garbage, noise, half, logs, nul, delay, prompt, noprompt, refuse, question, logout, reboot; keys: "
         "command, line, after, amount, time, times, text (last)",
         [](O &o, const QString &v) { return readFault(v, &o.faults); }},
    };
    return kRows;
}

const Row *findRow(const QString &argument)
{
    if (!argument.startsWith(QLatin1String("--")))
        return nullptr;
    const QString name = argument.mid(2).section(QLatin1Char('='), 0, 0);
    for (const Row &row : rows()) {
        if (name == QLatin1String(row.name))
            return &row;
    }
    return nullptr;
}

QString failure(const QString &argument, const QString &value, const Row *row)
{
    if (!row)
        return QStringLiteral("unknown argument %1").arg(argument);
    if (value.isNull())
        return QStringLiteral("%1 needs a value: %2").arg(argument, QString::fromUtf8(row->value));
    return QStringLiteral("%1: not a value: %2 (%3)").arg(argument, value, QString::fromUtf8(row->value));
}

} // namespace

ParsedOptions parseSimulatorOptions(const QStringList &arguments, const SimulatorOptions &defaults)
{
    ParsedOptions parsed{defaults, {}};
    for (int i = 0; i < arguments.size(); ++i) {
        const QString argument = arguments.at(i).section(QLatin1Char('='), 0, 0);
        const Row *const row = findRow(argument);
        QString value;
        if (arguments.at(i).size() > argument.size())
            value = arguments.at(i).mid(argument.size() + 1);
        else if (row && row->value && i + 1 < arguments.size())
            value = arguments.at(++i);
        const bool surplus = row && !row->value && !value.isNull();
        if (!row || surplus || (row->value && value.isNull()) || !row->apply(parsed.options, value)) {
            parsed.error = surplus ? QStringLiteral("%1 takes no value").arg(argument) : failure(argument, value, row);
            return parsed;
        }
    }
    return parsed;
}

QString simulatorOptionsHelp()
{
    QString help;
    QTextStream stream(&help);
    for (const Row &row : rows()) {
        const QString value = row.value ? QLatin1Char(' ') + QString::fromUtf8(row.value) : QString();
        stream << "  --" << row.name << value << "\n        " << QString::fromUtf8(row.help) << "\n";
    }
    return help;
}

bool isSimulatorOption(const QString &argument, bool *takesValue)
{
    const Row *const row = findRow(argument);
    *takesValue = row && row->value && !argument.contains(QLatin1Char('='));
    return row != nullptr;
}

} // namespace simulator
