#include "program.h"

#include "analyzecommand.h"
#include "applycommand.h"
#include "commandline.h"
#include "configurationcommands.h"
#include "connectcommand.h"
#include "maintenancecommands.h"
#include "portscommand.h"
#include "querycommand.h"
#include "simulatecommand.h"
#include "texttable.h"
#include "userio.h"

#include <QtCore/QCoreApplication>

#include <algorithm>

namespace {

constexpr Command kCommands[] = {
    {"analyze", {"judge the PTP traffic in captures", "分析抓包文件中的PTP报文"}, runAnalyze},
    {"ports", {"list the serial ports", "列出串口"}, runPorts},
    {"connect", {"log in to a switch and tell what it is", "登录交换机并显示其信息"}, runConnect},
    {"query", {"ask a switch for its status", "查询交换机状态"}, runQuery},
    {"apply", {"change settings of a switch", "修改交换机配置"}, runApply},
    {"save", {"save the configuration on the switch", "在交换机上保存配置"}, runSave},
    {"clear", {"erase the configuration of a switch", "清空交换机配置"}, runClear},
    {"export", {"write the configuration of a switch to a file", "将交换机配置导出到文件"}, runExport},
    {"import", {"send a file of commands to a switch", "将命令文件发送给交换机"}, runImport},
    {"clean-export", {"turn an export into a file of commands", "将导出文件转换为命令文件"}, runCleanExport},
    {"simulate", {"run a simulated switch", "运行模拟交换机"}, runSimulate},
};

constexpr Text kUsage{"usage: switchpanel COMMAND [ARGUMENTS]", "用法：switchpanel 命令 [参数]"};
constexpr Text kCommandList{"commands:", "命令："};
constexpr Text kOptionList{"options:", "选项："};
constexpr Text kMore{"'switchpanel COMMAND --help' explains a command.",
                     "'switchpanel 命令 --help' 显示该命令的说明。"};
constexpr Text kUnknownCommand{"unknown command: %1", "未知命令：%1"};
constexpr Text kNoCommand{"no command given", "未指定命令"};
constexpr Text kSeeHelp{"try 'switchpanel --help'", "请参阅 'switchpanel --help'"};

const std::vector<Option> &programOptions()
{
    static const std::vector<Option> kOptions{
        {"help", nullptr, {"show this text", "显示本说明"}},
        {"version", nullptr, {"show the version", "显示版本"}},
        {"lang", "zh|en", {"language of the output (default: the system's)", "输出语言（默认为系统语言）"}},
    };
    return kOptions;
}

QStringList helpLines(Language language)
{
    QStringList lines{inLanguage(kUsage, language), QString(), inLanguage(kCommandList, language)};
    TextTable table(2);
    for (const Command &command : kCommands)
        table.addRow({{QLatin1String(command.name)}, {inLanguage(command.summary, language)}});
    lines += table.lines(Painter(false));
    lines += {QString(), inLanguage(kOptionList, language)};
    lines += optionLines(programOptions(), language);
    lines += {QString(), inLanguage(kMore, language)};
    return lines;
}

ExitStatus refuse(const QString &reason, Language language)
{
    return failUsage(reason, inLanguage(kSeeHelp, language));
}

// The words in front of the first one that is neither an option nor the value of --lang.
int commandPosition(const QStringList &words)
{
    int position = 0;
    while (position < words.size() && words[position].startsWith(QLatin1Char('-')))
        position += words[position] == QLatin1String("--lang") ? 2 : 1;
    return std::min(position, words.size());
}

} // namespace

ExitStatus runProgram(const QStringList &words)
{
    const Language language = languageAskedFor(words, systemLanguage());
    const int position = commandPosition(words);
    const Arguments arguments = parseArguments(words.mid(0, position), programOptions(), language);
    Language asked = language;
    if (!arguments.error.isEmpty())
        return refuse(arguments.error, language);
    if (arguments.has("lang") && !parseLanguage(arguments.value("lang"), asked))
        return refuse(languageError(arguments.value("lang"), language), language);
    if (arguments.has("help"))
        return printLines(helpLines(language));
    if (arguments.has("version"))
        return printLines({QStringLiteral("switchpanel ") + QCoreApplication::applicationVersion()});
    if (position == words.size())
        return refuse(inLanguage(kNoCommand, language), language);

    const auto command =
        std::find_if(std::begin(kCommands), std::end(kCommands), [&words, position](const Command &candidate) {
            return words[position] == QLatin1String(candidate.name);
        });
    if (command == std::end(kCommands))
        return refuse(inLanguage(kUnknownCommand, language, {words[position]}), language);
    return command->run(words.mid(position + 1), language);
}
