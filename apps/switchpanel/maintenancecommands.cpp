#include "maintenancecommands.h"

#include "console.h"
#include "switchcommand.h"
#include "userio.h"

namespace {

constexpr Text kQuestion{"This erases the configuration of the switch on %1 and restarts it. Continue? [y/N] ",
                         "此操作将清空 %1 上交换机的配置并重启交换机。是否继续？[y/N] "};
constexpr Text kNotAsked{"clear asks before it erases anything: --yes, or a terminal to answer at",
                         "clear 在清空前需要确认：请加 --yes，或在终端中运行"};
constexpr Text kNotCleared{"nothing was erased", "未清空任何配置"};

const SwitchCommand &saveCommand()
{
    static const SwitchCommand kCommand{
        "save",
        {{"usage: switchpanel save --port P [OPTIONS]", "用法：switchpanel save --port P [选项]"},
         {"Saves the configuration on the switch, so that it outlives a restart.",
          "在交换机上保存配置，重启后仍然有效。"},
         kSwitchStatuses},
        {kDryRunJson},
        std::chrono::seconds(300),
        true};
    return kCommand;
}

const SwitchCommand &clearCommand()
{
    static const SwitchCommand kCommand{
        "clear",
        {{"usage: switchpanel clear --port P [OPTIONS]", "用法：switchpanel clear --port P [选项]"},
         {"Erases the saved configuration of the switch and restarts it, which takes minutes. Asks first.",
          "清空交换机保存的配置并重启，需要几分钟。执行前会询问。"},
         kSwitchStatuses},
        {{"yes", nullptr, {"do not ask", "不询问"}}, kDryRunJson},
        std::chrono::seconds(600),
        true};
    return kCommand;
}

ExitStatus runAction(const SwitchCommandLine &line, const SwitchAction &action)
{
    if (line.arguments.has("dry-run"))
        return printDryRun(line, action);
    return withSwitch(line.connection, [&action](SwitchSession &session) { return session.run(action); });
}

bool isYes(const QString &answer)
{
    const QString word = answer.trimmed().toLower();
    return word == QLatin1String("y") || word == QLatin1String("yes") || word == QStringLiteral("是");
}

// Done: go on.
ExitStatus confirm(const ConnectionRequest &request)
{
    const auto say = [&request](const Text &text) { return inLanguage(text, request.language, {request.portText()}); };
    if (!console::hasKeyboard()) {
        printError(say(kNotAsked));
        return ExitStatus::Failed;
    }
    const console::Answer answer = console::ask(say(kQuestion), console::Echo::On);
    if (isYes(answer.text))
        return ExitStatus::Done;
    printError(say(kNotCleared));
    return answer.kind == console::Answer::Kind::Interrupted ? ExitStatus::Interrupted : ExitStatus::Failed;
}

} // namespace

ExitStatus runSave(const QStringList &words, Language language)
{
    const SwitchCommandLine line = readCommandLine(saveCommand(), words, language);
    if (line.end)
        return *line.end;
    return runAction(line, [](SwitchDeviceViewModel &viewModel) {
        viewModel.saveSwitchDeviceCmd();
        return QString();
    });
}

ExitStatus runClear(const QStringList &words, Language language)
{
    const SwitchCommandLine line = readCommandLine(clearCommand(), words, language);
    if (line.end)
        return *line.end;
    const bool isAsked = !line.arguments.has("yes") && !line.arguments.has("dry-run");
    const ExitStatus answer = isAsked ? confirm(line.connection) : ExitStatus::Done;
    if (answer != ExitStatus::Done)
        return answer;
    return runAction(line, [](SwitchDeviceViewModel &viewModel) {
        viewModel.clearAllConfig();
        return QString();
    });
}
