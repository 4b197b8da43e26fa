#include "portscommand.h"

#include "commandhelp.h"
#include "logoutput.h"
#include "switchcommand.h"
#include "userio.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

namespace {

constexpr CommandHelp kHelp{
    {"usage: switchpanel ports [OPTIONS]", "用法：switchpanel ports [选项]"},
    {"Lists the serial ports of this machine, one a line.", "列出本机串口，每行一个。"},
    {"exit status: 0 done (also without any port), 2 could not.", "退出状态：0 完成（没有串口时也是），2 未能执行。"}};
constexpr Text kSeeHelp{"try 'switchpanel ports --help'", "请参阅 'switchpanel ports --help'"};
constexpr Text kSuperfluous{"ports does not know what to do with '%1'", "ports 不需要参数“%1”"};
constexpr Text kNone{"there is no serial port", "没有串口"};

const std::vector<Option> &portsOptions()
{
    static const std::vector<Option> kOptions{
        {"json", nullptr, {"print a JSON document", "输出JSON文档"}},
        {"lang", "zh|en", {"language of the output (default: the system's)", "输出语言（默认为系统语言）"}},
        {"help", nullptr, {"show this text", "显示本说明"}},
    };
    return kOptions;
}

QStringList portNames()
{
    SwitchDeviceViewModel viewModel;
    QStringList names;
    for (const QVariant &port : viewModel.refreshCOM())
        names.append(port.toString());
    return names;
}

} // namespace

ExitStatus runPorts(const QStringList &words, Language language)
{
    const Arguments arguments = parseArguments(words, portsOptions(), language);
    if (arguments.error.isEmpty() && arguments.has("help"))
        return printLines(helpLines(kHelp, portsOptions(), language));
    QString error = arguments.error;
    Language asked = language;
    if (error.isEmpty() && arguments.has("lang") && !parseLanguage(arguments.value("lang"), asked))
        error = languageError(arguments.value("lang"), language);
    if (error.isEmpty() && !arguments.operands.isEmpty())
        error = inLanguage(kSuperfluous, language, {arguments.operands.first()});
    if (!error.isEmpty())
        return failUsage(error, inLanguage(kSeeHelp, language));

    const LogOutput log(LogLevel::Warning);
    const QStringList names = portNames();
    if (arguments.has("json"))
        return printJson(QJsonDocument(QJsonArray::fromStringList(names)));
    if (!names.isEmpty())
        return printLines(names);
    printError(inLanguage(kNone, asked));
    return ExitStatus::Done;
}
