#include "connectionoptions.h"

#include "passwordfile.h"

namespace {

constexpr int kSlowest = 50;             // baud
constexpr int kFastest = 4'000'000;      // baud
constexpr int kLongestTimeout = 604'800; // seconds

constexpr Text kNoPort{"--port is missing ('switchpanel ports' lists the serial ports)",
                       "缺少 --port（'switchpanel ports' 列出串口）"};
constexpr Text kEmptyPort{"--port needs the name of a serial port", "--port 需要串口名"};
constexpr Text kUnknownSimulated{"there is no simulated switch '%1': sim:huawei, sim:huawei-sub or sim:hua3",
                                 "没有名为“%1”的模拟交换机：可用 sim:huawei、sim:huawei-sub 或 sim:hua3"};
constexpr Text kNotBaud{"--baud takes a number of bits per second, not '%1'", "--baud 需要每秒位数，不能是“%1”"};
constexpr Text kNotFamily{"--family takes huawei or hua3, not '%1'", "--family 只能是 huawei 或 hua3，不能是“%1”"};
constexpr Text kNotTimeout{"--timeout takes a whole number of seconds, not '%1'", "--timeout 需要整数秒，不能是“%1”"};
constexpr Text kOnlySimulated{"--simulator goes with --port sim:... only",
                              "--simulator 只能与 --port sim:... 一起使用"};

// Each takes its option into the request and returns what is wrong with it.

QString takePort(const Arguments &arguments, PortNeed need, ConnectionRequest &request)
{
    const QString prefix = QStringLiteral("sim:");
    const QString port = arguments.value("port");
    if (!arguments.has("port"))
        return need == PortNeed::Required ? inLanguage(kNoPort, request.language) : QString();
    if (port.isEmpty())
        return inLanguage(kEmptyPort, request.language);
    if (!port.startsWith(prefix)) {
        request.port = port;
        return {};
    }
    request.simulated = port.mid(prefix.size());
    const QStringList known{QStringLiteral("huawei"), QStringLiteral("huawei-sub"), QStringLiteral("hua3")};
    if (!known.contains(request.simulated))
        return inLanguage(kUnknownSimulated, request.language, {port});
    if (request.simulated == known.last())
        request.family = SwitchFamily::Hua3;
    return {};
}

QString takeBaudRate(const Arguments &arguments, ConnectionRequest &request)
{
    if (!arguments.has("baud"))
        return {};
    bool isNumber = false;
    request.baudRate = arguments.value("baud").toInt(&isNumber);
    const bool isGood = isNumber && request.baudRate >= kSlowest && request.baudRate <= kFastest;
    return isGood ? QString() : inLanguage(kNotBaud, request.language, {arguments.value("baud")});
}

QString takeFamily(const Arguments &arguments, ConnectionRequest &request)
{
    if (!arguments.has("family"))
        return {};
    const QString family = arguments.value("family");
    if (family == familyName(SwitchFamily::Huawei))
        request.family = SwitchFamily::Huawei;
    else if (family == familyName(SwitchFamily::Hua3))
        request.family = SwitchFamily::Hua3;
    else
        return inLanguage(kNotFamily, request.language, {family});
    return {};
}

QString takeCredentials(const Arguments &arguments, ConnectionRequest &request)
{
    if (arguments.has("user"))
        request.userName = arguments.value("user");
    if (!arguments.has("password-file"))
        return {};
    const PasswordFile file = readPasswordFile(arguments.value("password-file"), request.language);
    if (file.error.isEmpty())
        request.password = file.password;
    return file.error;
}

QString takeTimeout(const Arguments &arguments, ConnectionRequest &request)
{
    if (!arguments.has("timeout"))
        return {};
    bool isNumber = false;
    const int seconds = arguments.value("timeout").toInt(&isNumber);
    if (!isNumber || seconds < 1 || seconds > kLongestTimeout)
        return inLanguage(kNotTimeout, request.language, {arguments.value("timeout")});
    request.timeout = std::chrono::seconds(seconds);
    return {};
}

QString takeSimulator(const Arguments &arguments, ConnectionRequest &request)
{
    if (!arguments.has("simulator"))
        return {};
    if (arguments.has("port") && !request.isSimulated())
        return inLanguage(kOnlySimulated, request.language);
    request.simulator = arguments.value("simulator").split(QLatin1Char(' '), Qt::SkipEmptyParts);
    return {};
}

QString takeLanguage(const Arguments &arguments, ConnectionRequest &request)
{
    const Language before = request.language;
    if (!arguments.has("lang") || parseLanguage(arguments.value("lang"), request.language))
        return {};
    return languageError(arguments.value("lang"), before);
}

} // namespace

QString familyName(SwitchFamily family)
{
    return family == SwitchFamily::Huawei ? QStringLiteral("huawei") : QStringLiteral("hua3");
}

std::vector<Option> withConnectionOptions(std::vector<Option> own)
{
    static const std::vector<Option> kOptions{
        {"port",
         "P",
         {"serial port of the switch; sim:huawei, sim:huawei-sub, sim:hua3: a simulated one",
          "交换机所接串口；sim:huawei、sim:huawei-sub、sim:hua3 为模拟交换机"}},
        {"baud", "N", {"speed of the port in bits per second (default 9600)", "串口波特率（默认9600）"}},
        {"user", "U", {"user name for the login", "登录用户名"}},
        {"password-file",
         "F",
         {"file whose first line is the password (default: ask at the terminal)",
          "首行为密码的文件（默认在终端询问）"}},
        {"family", "huawei|hua3", {"kind of switch (default huawei)", "交换机类型（默认huawei）"}},
        {"simulator",
         "ARGS",
         {"arguments of the simulated switch, as 'switchpanel simulate' takes them",
          "模拟交换机的参数，与 'switchpanel simulate' 相同"}},
        {"timeout", "S", {"give up after S seconds", "S秒后放弃"}},
        {"quiet", nullptr, {"tell nothing on the way but errors", "除错误外不显示过程信息"}},
        {"log", nullptr, {"show the log, as the panel's log view does", "显示日志，与面板日志窗口相同"}},
        {"verbose", nullptr, {"show debug messages", "显示调试信息"}},
        {"lang", "zh|en", {"language of the output (default: the system's)", "输出语言（默认为系统语言）"}},
        {"help", nullptr, {"show this text", "显示本说明"}},
    };
    own.insert(own.end(), kOptions.begin(), kOptions.end());
    return own;
}

QString takeConnection(const Arguments &arguments, PortNeed need, ConnectionRequest &request)
{
    QString error = takeLanguage(arguments, request);
    const auto then = [&error](QString next) {
        if (error.isEmpty())
            error = std::move(next);
    };
    then(takePort(arguments, need, request));
    then(takeBaudRate(arguments, request));
    then(takeFamily(arguments, request));
    then(takeTimeout(arguments, request));
    then(takeSimulator(arguments, request));
    then(takeCredentials(arguments, request));
    request.isQuiet = arguments.has("quiet");
    request.isLogShown = arguments.has("log");
    request.isVerbose = arguments.has("verbose");
    return error;
}
