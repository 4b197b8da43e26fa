#include "simulatecommand.h"

#include "commandhelp.h"
#include "interruptwatch.h"
#include "userio.h"

#include <simulator/simulatedswitch.h>
#include <simulator/simulatoroptions.h>

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

using simulator::ParsedOptions;
using simulator::SimulatedSwitch;

namespace {

constexpr CommandHelp kHelp{
    {"usage: switchpanel simulate [OPTIONS]", "用法：switchpanel simulate [选项]"},
    {"Runs a simulated switch on a pseudo terminal and prints the terminal's path, which any program can open as a\n"
     "serial port, until Ctrl-C. User name admin, password Admin@123.",
     "在伪终端上运行模拟交换机并输出其路径，任何程序都可以像串口一样打开它，直到 Ctrl-C。\n"
     "用户名 admin，密码 Admin@123。"},
    {"exit status: 0 ended by Ctrl-C, 2 could not.", "退出状态：0 由 Ctrl-C 结束，2 未能执行。"}};
constexpr Text kSwitchOptions{"the switch (times: 250ms, 5s, 2m):", "交换机（时间：250ms、5s、2m）："};
constexpr Text kSeeHelp{"try 'switchpanel simulate --help'", "请参阅 'switchpanel simulate --help'"};
constexpr Text kSuperfluous{"simulate does not know what to do with '%1'", "simulate 不需要参数“%1”"};
constexpr Text kNoTerminals{
    "this system has no pseudo terminals; use --port sim:huawei with the other commands instead",
    "本系统没有伪终端；请在其他命令中使用 --port sim:huawei"};
constexpr Text kNotStarted{"no pseudo terminal: %1", "无法建立伪终端：%1"};
constexpr Text kPulled{"the cable is pulled", "线缆已拔出"};

constexpr std::chrono::milliseconds kPoll{100};

const std::vector<Option> &simulateOptions()
{
    static const std::vector<Option> kOptions{
        {"lang", "zh|en", {"language of the output (default: the system's)", "输出语言（默认为系统语言）"}},
        {"help", nullptr, {"show this text", "显示本说明"}},
    };
    return kOptions;
}

struct SplitWords
{
    QStringList simulator;
    QStringList own;
};

SplitWords split(const QStringList &words)
{
    SplitWords result;
    for (int i = 0; i < words.size(); ++i) {
        bool takesValue = false;
        if (!simulator::isSimulatorOption(words[i], &takesValue)) {
            result.own.append(words[i]);
            continue;
        }
        result.simulator.append(words[i]);
        if (takesValue && !words[i].contains(QLatin1Char('=')) && i + 1 < words.size())
            result.simulator.append(words[++i]);
    }
    return result;
}

QStringList simulateHelp(Language language)
{
    QStringList lines = helpLines(kHelp, simulateOptions(), language);
    lines += {QString(), inLanguage(kSwitchOptions, language)};
    lines += simulator::simulatorOptionsHelp().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    return lines;
}

ExitStatus simulate(const simulator::SimulatorOptions &options, Language language)
{
    InterruptWatch interrupts;
    SimulatedSwitch device(options);
    const QString path = device.start();
    if (path.isEmpty()) {
        printError(inLanguage(kNotStarted, language, {device.errorString()}));
        return ExitStatus::Failed;
    }
    const ExitStatus printed = printLines({path});
    if (printed != ExitStatus::Done)
        return printed;

    QEventLoop loop;
    QTimer poll;
    QObject::connect(&interrupts, &InterruptWatch::interrupted, &loop, &QEventLoop::quit);
    QObject::connect(&poll, &QTimer::timeout, &loop, [&device, &poll, language] {
        if (!device.path().isEmpty())
            return;
        printError(inLanguage(kPulled, language));
        poll.stop();
    });
    poll.start(kPoll);
    loop.exec();
    return ExitStatus::Done;
}

} // namespace

ExitStatus runSimulate(const QStringList &words, Language language)
{
    const SplitWords parts = split(words);
    const Arguments arguments = parseArguments(parts.own, simulateOptions(), language);
    if (arguments.error.isEmpty() && arguments.has("help"))
        return printLines(simulateHelp(language));
    const ParsedOptions parsed = simulator::parseSimulatorOptions(parts.simulator);
    QString error = arguments.error;
    Language asked = language;
    if (error.isEmpty() && arguments.has("lang") && !parseLanguage(arguments.value("lang"), asked))
        error = languageError(arguments.value("lang"), language);
    if (error.isEmpty() && !arguments.operands.isEmpty())
        error = inLanguage(kSuperfluous, language, {arguments.operands.first()});
    if (error.isEmpty())
        error = parsed.error;
    if (!error.isEmpty())
        return failUsage(error, inLanguage(kSeeHelp, language));
    if (!SimulatedSwitch::isAvailable()) {
        printError(inLanguage(kNoTerminals, asked));
        return ExitStatus::Failed;
    }
    return simulate(parsed.options, asked);
}
