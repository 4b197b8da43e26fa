#include "switchcommand.h"

#include "dryrun.h"
#include "logoutput.h"
#include "userio.h"

#include <QtCore/QJsonDocument>

namespace {

constexpr Text kSeeHelp{"try 'switchpanel %1 --help'", "请参阅 'switchpanel %1 --help'"};
constexpr Text kSuperfluous{"%1 does not know what to do with '%2'", "%1 不需要参数“%2”"};
constexpr Text kListingAlone{"--listing goes with --dry-run", "--listing 需与 --dry-run 一起使用"};

const std::vector<Option> &dryRunOptions()
{
    static const std::vector<Option> kOptions{
        {"dry-run", nullptr, {"print what would be sent, open no port", "只显示将要发送的内容，不打开串口"}},
        {"listing",
         "FILE",
         {"--dry-run for the switch whose port listing (display interface brief) is saved in FILE",
          "--dry-run 使用FILE中保存的端口列表（display interface brief）"}},
    };
    return kOptions;
}

QString operandError(const SwitchCommand &command, const QStringList &operands, Language language)
{
    if (operands.size() > command.operands)
        return inLanguage(kSuperfluous, language, {QLatin1String(command.name), operands[command.operands]});
    return operands.size() < command.operands ? inLanguage(command.missingOperand, language) : QString();
}

LogLevel logLevel(const ConnectionRequest &request)
{
    return request.isVerbose ? LogLevel::Debug : LogLevel::Warning;
}

ExitStatus tell(const Outcome &outcome)
{
    if (!outcome.reason.isEmpty())
        printError(outcome.reason);
    return outcome.status;
}

} // namespace

const Text kSwitchStatuses{
    "exit status: 0 done, 1 the switch refused the login or a command, 2 could not, 130 stopped by Ctrl-C.\n"
    "switchpanel(1) has the details.",
    "退出状态：0 完成，1 交换机拒绝登录或命令，2 未能执行，130 被 Ctrl-C 中止。\n详见 switchpanel(1)。"};

const Option kDryRunJson{"json", nullptr, {"with --dry-run: a JSON document", "与 --dry-run 一起：输出JSON文档"}};

std::vector<Option> optionsOf(const SwitchCommand &command)
{
    std::vector<Option> options = command.options;
    if (command.hasDryRun)
        options.insert(options.end(), dryRunOptions().begin(), dryRunOptions().end());
    return withConnectionOptions(std::move(options));
}

SwitchCommandLine readCommandLine(const SwitchCommand &command, const QStringList &words, Language language)
{
    SwitchCommandLine line;
    line.arguments = parseArguments(words, optionsOf(command), language);
    line.connection.language = language;
    line.connection.timeout = command.timeout;
    QString error = line.arguments.error;
    if (error.isEmpty() && line.arguments.has("help")) {
        line.end = printLines(helpLines(command.help, optionsOf(command), language));
        return line;
    }
    const bool isDry = line.arguments.has("dry-run");
    if (error.isEmpty())
        error = operandError(command, line.arguments.operands, language);
    if (error.isEmpty() && line.arguments.has("listing") && !isDry)
        error = inLanguage(kListingAlone, language);
    if (error.isEmpty())
        error = takeConnection(line.arguments, isDry ? PortNeed::Optional : PortNeed::Required, line.connection);
    if (!error.isEmpty())
        line.end = refuseUsage(command, error, language);
    return line;
}

ExitStatus refuseUsage(const SwitchCommand &command, const QString &reason, Language language)
{
    return failUsage(reason, inLanguage(kSeeHelp, language, {QLatin1String(command.name)}));
}

ExitStatus withSwitch(const ConnectionRequest &request, const SwitchOperation &operation)
{
    const LogOutput log(logLevel(request));
    SwitchSession session(request);
    const Outcome connected = session.connectDevice();
    return tell(connected.status == ExitStatus::Done ? operation(session) : connected);
}

ExitStatus printDryRun(const SwitchCommandLine &line, const SwitchAction &action)
{
    const LogOutput log(logLevel(line.connection));
    const DryRun run = dryRun(line.connection, line.arguments.value("listing"), action);
    if (run.outcome.status != ExitStatus::Done && run.outcome.status != ExitStatus::Refused)
        return tell(run.outcome);
    const ExitStatus printed = line.arguments.has("json")
                                   ? printJson(QJsonDocument(blocksJson(run.blocks)))
                                   : printLines(blockLines(run.blocks, line.connection.language));
    return worse(printed, tell(run.outcome));
}

ExitStatus printJson(const QJsonDocument &document)
{
    return printLines({QString::fromUtf8(document.toJson()).trimmed()});
}
