#include "configurationcommands.h"

#include "configurationcleaner.h"
#include "switchcommand.h"
#include "userio.h"

#include <QtCore/QSaveFile>
#include <QtCore/QTemporaryDir>

#include <cstdio>

namespace {

constexpr Text kUnreadable{"'%1' cannot be read: %2", "无法读取“%1”：%2"};
constexpr Text kUnwritable{"'%1' cannot be written: %2", "无法写入“%1”：%2"};
constexpr Text kNoTemporary{"there is no room for a temporary file: %1", "无法创建临时文件：%1"};
constexpr Text kNoCommands{"'%1' has no command in it", "“%1”中没有命令"};
constexpr Text kIncomplete{"the configuration did not come whole: '%1' is not written", "配置不完整：未写入“%1”"};
constexpr Text kNoConfiguration{"'%1' holds no whole configuration listing (the last line, return, is missing)",
                                "“%1”中没有完整的配置（缺少最后一行return）"};
constexpr Text kWritten{"%1: %2 lines", "%1：%2行"};
constexpr Text kSuperfluous{"clean-export does not know what to do with '%1'", "clean-export 不需要参数“%1”"};
constexpr Text kTwoFiles{"clean-export needs two files: IN and OUT", "clean-export 需要两个文件：IN 和 OUT"};
constexpr Text kSeeHelp{"try 'switchpanel clean-export --help'", "请参阅 'switchpanel clean-export --help'"};

const SwitchCommand &exportCommand()
{
    static const SwitchCommand kCommand{
        "export",
        {{"usage: switchpanel export FILE --port P [OPTIONS]", "用法：switchpanel export 文件 --port P [选项]"},
         {"Writes the configuration of a switch to FILE, as the console showed it; '-' is standard output.\n"
          "A FILE that is there is replaced once all of it has come.",
          "将交换机配置写入文件，内容为控制台原始输出；“-”为标准输出。\n完整收到后才替换已有文件。"},
         kSwitchStatuses},
        {{"clean",
          nullptr,
          {"as commands that 'switchpanel import' replays", "写成可由 'switchpanel import' 重放的命令"}},
         kDryRunJson},
        std::chrono::seconds(1'800),
        true,
        1,
        {"export needs the name of a file", "export 需要文件名"}};
    return kCommand;
}

const SwitchCommand &importCommand()
{
    static const SwitchCommand kCommand{
        "import",
        {{"usage: switchpanel import FILE --port P [OPTIONS]", "用法：switchpanel import 文件 --port P [选项]"},
         {"Sends the lines of FILE to a switch as commands, one after the other.",
          "将文件各行作为命令依次发送给交换机。"},
         kSwitchStatuses},
        {kDryRunJson},
        std::chrono::seconds(7'200),
        true,
        1,
        {"import needs the name of a file", "import 需要文件名"}};
    return kCommand;
}

constexpr CommandHelp kCleanHelp{
    {"usage: switchpanel clean-export IN OUT [OPTIONS]", "用法：switchpanel clean-export 输入 输出 [选项]"},
    {"Turns what a console showed of a configuration (IN) into commands that replay it (OUT; '-' is standard output).",
     "将控制台输出的配置（输入）转换为可重放的命令（输出；“-”为标准输出）。"},
    {"exit status: 0 done, 2 could not.", "退出状态：0 完成，2 未能执行。"}};

const std::vector<Option> &cleanOptions()
{
    static const std::vector<Option> kOptions{
        {"lang", "zh|en", {"language of the output (default: the system's)", "输出语言（默认为系统语言）"}},
        {"help", nullptr, {"show this text", "显示本说明"}},
    };
    return kOptions;
}

struct FileText
{
    QByteArray bytes;
    QString error;
};

FileText readFile(const QString &path, Language language)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {{}, inLanguage(kUnreadable, language, {path, file.errorString()})};
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return {{}, inLanguage(kUnreadable, language, {path, file.errorString()})};
    return {bytes, {}};
}

//! A file that is there whole or not at all; "-" is standard output.
class OutputFile
{
public:
    OutputFile(QString path, Language language)
        : _path(std::move(path))
        , _language(language)
        , _file(_path)
    {}

    //! Each returns what is wrong, or nothing.
    QString open()
    {
        // Devices and folders that take no new files are written directly.
        _file.setDirectWriteFallback(true);
        return isStandardOutput() || _file.open(QIODevice::WriteOnly) ? QString() : error(_file);
    }
    QString write(const QByteArray &bytes)
    {
        if (isStandardOutput()) {
            QFile output;
            const bool isWritten = output.open(stdout, QIODevice::WriteOnly | QIODevice::Unbuffered)
                                   && output.write(bytes) == bytes.size() && output.flush();
            return isWritten ? QString() : error(output);
        }
        const bool isWritten = _file.write(bytes) == bytes.size() && _file.commit();
        return isWritten ? QString() : error(_file);
    }

private:
    bool isStandardOutput() const { return _path == QLatin1String("-"); }
    QString error(const QFileDevice &file) const
    {
        return inLanguage(kUnwritable, _language, {_path, file.errorString()});
    }

    const QString _path;
    const Language _language;
    QSaveFile _file;
};

SwitchAction exportAction(const QString &path)
{
    return [path](SwitchDeviceViewModel &viewModel) {
        viewModel.setExportPath(path);
        viewModel.exportSwitchInfo();
        return QString();
    };
}

// The view model writes while replies arrive; what it has written counts once all of it is there.
Outcome exportTo(OutputFile &output, const SwitchCommandLine &line, SwitchSession &session)
{
    const Language language = line.connection.language;
    const QString target = line.arguments.operands.first();
    const QTemporaryDir folder;
    if (!folder.isValid())
        return {ExitStatus::Failed, inLanguage(kNoTemporary, language, {folder.errorString()})};
    const QString raw = folder.filePath(QStringLiteral("configuration"));
    Outcome outcome = session.run(exportAction(raw));
    if (outcome.status != ExitStatus::Done && outcome.status != ExitStatus::Refused)
        return outcome;
    const FileText text = readFile(raw, language);
    if (!text.error.isEmpty())
        return {ExitStatus::Failed, text.error};
    const CleanedConfiguration cleaned = cleanedConfiguration(text.bytes);
    if (!cleaned.isComplete)
        return {ExitStatus::Failed, inLanguage(kIncomplete, language, {target})};
    const QByteArray &bytes = line.arguments.has("clean") ? cleaned.commands : text.bytes;
    const QString error = output.write(bytes);
    if (!error.isEmpty())
        return {ExitStatus::Failed, error};
    if (!line.connection.isQuiet)
        printError(inLanguage(kWritten, language, {target, QString::number(bytes.count('\n'))}));
    return {}; // paging that cannot be switched off is no refusal that matters once all of it is here
}

// FILE is left alone; the view model has one of its own, in which nothing arrives.
ExitStatus dryExport(const SwitchCommandLine &line)
{
    const QTemporaryDir folder;
    if (!folder.isValid()) {
        printError(inLanguage(kNoTemporary, line.connection.language, {folder.errorString()}));
        return ExitStatus::Failed;
    }
    return printDryRun(line, exportAction(folder.filePath(QStringLiteral("configuration"))));
}

bool hasCommand(const QByteArray &bytes)
{
    return !bytes.trimmed().isEmpty();
}

QString cleanFile(const QString &in, const QString &out, Language language)
{
    const FileText text = readFile(in, language);
    if (!text.error.isEmpty())
        return text.error;
    const CleanedConfiguration cleaned = cleanedConfiguration(text.bytes);
    if (!cleaned.isComplete)
        return inLanguage(kNoConfiguration, language, {in});
    OutputFile output(out, language);
    const QString error = output.open();
    return error.isEmpty() ? output.write(cleaned.commands) : error;
}

} // namespace

ExitStatus runExport(const QStringList &words, Language language)
{
    const SwitchCommandLine line = readCommandLine(exportCommand(), words, language);
    if (line.end)
        return *line.end;
    if (line.arguments.has("dry-run"))
        return dryExport(line);
    OutputFile output(line.arguments.operands.first(), line.connection.language);
    const QString error = output.open(); // before the switch is asked for minutes
    if (!error.isEmpty()) {
        printError(error);
        return ExitStatus::Failed;
    }
    return withSwitch(line.connection,
                      [&output, &line](SwitchSession &session) { return exportTo(output, line, session); });
}

ExitStatus runImport(const QStringList &words, Language language)
{
    const SwitchCommandLine line = readCommandLine(importCommand(), words, language);
    if (line.end)
        return *line.end;
    const QString path = line.arguments.operands.first();
    const FileText text = readFile(path, line.connection.language);
    const bool isEmpty = text.error.isEmpty() && !hasCommand(text.bytes);
    if (!text.error.isEmpty() || isEmpty) {
        printError(isEmpty ? inLanguage(kNoCommands, line.connection.language, {path}) : text.error);
        return ExitStatus::Failed;
    }
    const SwitchAction import = [&path](SwitchDeviceViewModel &viewModel) {
        viewModel.importSwitchInfo(path);
        return QString();
    };
    if (line.arguments.has("dry-run"))
        return printDryRun(line, import);
    return withSwitch(line.connection, [&import](SwitchSession &session) { return session.run(import); });
}

ExitStatus runCleanExport(const QStringList &words, Language language)
{
    const Arguments arguments = parseArguments(words, cleanOptions(), language);
    if (arguments.error.isEmpty() && arguments.has("help"))
        return printLines(helpLines(kCleanHelp, cleanOptions(), language));
    QString error = arguments.error;
    Language asked = language;
    if (error.isEmpty() && arguments.has("lang") && !parseLanguage(arguments.value("lang"), asked))
        error = languageError(arguments.value("lang"), language);
    if (error.isEmpty() && arguments.operands.size() < 2)
        error = inLanguage(kTwoFiles, language);
    if (error.isEmpty() && arguments.operands.size() > 2)
        error = inLanguage(kSuperfluous, language, {arguments.operands[2]});
    if (!error.isEmpty())
        return failUsage(error, inLanguage(kSeeHelp, language));
    error = cleanFile(arguments.operands[0], arguments.operands[1], asked);
    if (error.isEmpty())
        return ExitStatus::Done;
    printError(error);
    return ExitStatus::Failed;
}
