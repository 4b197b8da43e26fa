#include "analyzecommand.h"

#include "captureanalysis.h"
#include "commandhelp.h"
#include "exporttargets.h"
#include "interruptwatch.h"
#include "logoutput.h"
#include "progressdisplay.h"
#include "statustexts.h"
#include "userio.h"

#include <QtCore/QFileInfo>

#include <cmath>
#include <variant>

namespace {

constexpr CommandHelp kHelp{
    {"usage: switchpanel analyze [OPTIONS] FILE...", "用法：switchpanel analyze [选项] 文件..."},
    {"Reads captures (pcap, pcapng) of PTP version 2 traffic and judges the timing network: the intervals of\n"
     "Announce, Sync and Follow_Up, whether every slave asks for its delay, and whether it is answered in time.",
     "读取PTPv2抓包文件（pcap、pcapng），检查时钟网络：Announce、Sync、Follow_Up的间隔，\n"
     "各从节点是否发送延迟请求，以及请求是否及时得到应答。"},
    {"exit status: 0 healthy, 1 abnormal, 2 could not analyse, 130 stopped by Ctrl-C;\n"
     "of several files the worst. switchpanel(1) has the details.",
     "退出状态：0 正常，1 异常，2 未能分析，130 被 Ctrl-C 中止；\n多个文件时取最坏的结果。详见 switchpanel(1)。"}};
constexpr Text kSeeHelp{"try 'switchpanel analyze --help'", "请参阅 'switchpanel analyze --help'"};

constexpr Text kNoFile{"analyze needs a capture file", "analyze 需要抓包文件"};
constexpr Text kNotWhole{"--decoders takes a whole number, not '%1'", "--decoders 需要整数，不能是“%1”"};
constexpr Text kNotSeconds{"--interval takes a number of seconds, not '%1'", "--interval 需要秒数，不能是“%1”"};

constexpr Text kAbout{"%1: %2", "%1：%2"};
constexpr Text kIsFolder{"it is a folder", "这是一个文件夹"};
constexpr Text kNoPermission{"it may not be read", "没有读取权限"};
constexpr Text kNotFile{"it is not a regular file", "这不是普通文件"};
constexpr Text kIsEmpty{"it is empty", "文件为空"};
constexpr Text kNoCapture{"it is not a capture that can be read (pcap or pcapng)",
                          "不是可读取的抓包文件（pcap或pcapng）"};
constexpr Text kNoMessages{"%1: no PTP message in it: nothing was judged", "%1：没有PTP报文：未作任何判断"};
constexpr Text kNotWritten{"%1 is not written: %2", "未写入 %1：%2"};
constexpr Text kNotWrittenStopped{"%1 is not written: the analysis was stopped", "未写入 %1：分析已被中止"};
constexpr Text kNotWrittenWhole{"%1 is not written", "未写入 %1"};
constexpr Text kNoOutput{"the report could not be written", "无法输出报告"};

//! A command line of analyze, checked.
struct Request
{
    Language language = Language::English;
    AnalysisSettings settings;
    QStringList captures;
    QStringList resultFiles;  // as many as captures, or none
    QStringList findingFiles; // likewise
    bool isQuiet = false;
    bool isVerbose = false;
};

// Each takes its options into the request and returns what is wrong with them.

QString takeNumbers(const Arguments &arguments, Request &request)
{
    bool isNumber = true;
    if (arguments.has("decoders"))
        request.settings.decoders = arguments.value("decoders").toInt(&isNumber);
    if (!isNumber)
        return inLanguage(kNotWhole, request.language, {arguments.value("decoders")});
    if (arguments.has("interval"))
        request.settings.interval = arguments.value("interval").toDouble(&isNumber);
    if (!isNumber || (request.settings.interval && !std::isfinite(*request.settings.interval)))
        return inLanguage(kNotSeconds, request.language, {arguments.value("interval")});
    return {};
}

QString takeExports(const Arguments &arguments, Request &request)
{
    ExportTargets results;
    ExportTargets findings;
    if (arguments.has("json"))
        results =
            exportTargets("json", arguments.value("json"), QStringLiteral(".json"), request.captures, request.language);
    if (arguments.has("csv"))
        findings =
            exportTargets("csv", arguments.value("csv"), QStringLiteral(".csv"), request.captures, request.language);
    request.resultFiles = results.paths;
    request.findingFiles = findings.paths;
    return results.error.isEmpty() ? findings.error : results.error;
}

QString takeArguments(const Arguments &arguments, Request &request)
{
    if (!arguments.error.isEmpty())
        return arguments.error;
    Language asked = request.language;
    if (arguments.has("lang") && !parseLanguage(arguments.value("lang"), asked))
        return languageError(arguments.value("lang"), request.language);
    request.captures = arguments.operands;
    request.isQuiet = arguments.has("quiet");
    request.isVerbose = arguments.has("verbose");
    if (request.captures.isEmpty())
        return inLanguage(kNoFile, request.language);
    const QString error = takeNumbers(arguments, request);
    return error.isEmpty() ? takeExports(arguments, request) : error;
}

// Why a file that exists does not open, as far as it can be seen from outside.
Text openingFault(const QString &path)
{
    const QFileInfo file(path);
    if (file.isDir())
        return kIsFolder;
    if (!file.isFile())
        return kNotFile;
    if (!file.isReadable())
        return kNoPermission;
    return file.size() == 0 ? kIsEmpty : kNoCapture;
}

//! Serves one command line.
class Analyzer
{
public:
    explicit Analyzer(const Request &request)
        : _request(request)
        , _painter(hasColours())
    {}

    ExitStatus run();

private:
    CaptureReport analyze(int index);
    void tell(const CaptureReport &report);
    void tellErrors(const CaptureReport &report) const;
    void exportAll(CaptureAnalysis &analysis, const CaptureReport &report, int index);
    void exportFindings(CaptureAnalysis &analysis, const CaptureReport &report, const QString &path);
    void checkExport(const QString &path, const std::optional<QString> &error);
    void print(const QStringList &lines);
    QString say(const Text &text, const QStringList &values = {}) const
    {
        return inLanguage(text, _request.language, values);
    }

    const Request &_request;
    Painter _painter;
    InterruptWatch _interrupts;
    ExitStatus _status = ExitStatus::Healthy;
    bool _isFirstReport = true;
};

ExitStatus Analyzer::run()
{
    std::vector<CaptureReport> reports;
    for (int i = 0; i < _request.captures.size(); ++i) {
        reports.push_back(analyze(i));
        _status = worse(_status, exitStatusOf(reports.back()));
        if (reports.back().isInterrupted)
            break;
    }
    if (_request.captures.size() > 1 && !_request.isQuiet)
        print(summaryLines(reports, _request.language, _painter));
    return _status;
}

CaptureReport Analyzer::analyze(int index)
{
    CaptureAnalysis analysis(_request.captures[index], _request.settings);
    ProgressDisplay progress(_request.captures[index], _request.language, !_request.isQuiet);
    QObject::connect(&analysis, &CaptureAnalysis::packetsRead, &analysis,
                     [&progress](int packets) { progress.update(packets); });
    QObject::connect(&_interrupts, &InterruptWatch::interrupted, &analysis, &CaptureAnalysis::interrupt);
    CaptureReport report = analysis.run();
    progress.finish();
    tell(report);
    exportAll(analysis, report, index);
    return report;
}

void Analyzer::tell(const CaptureReport &report)
{
    if (!report.errors.isEmpty())
        return tellErrors(report);
    if (_request.isQuiet)
        print({verdictLine(report, _request.language, _painter)});
    else
        print(reportLines(report, _request.language, _painter));
    if (messageCountOf(report) == 0)
        printError(say(kNoMessages, {report.filePath}));
}

void Analyzer::tellErrors(const CaptureReport &report) const
{
    for (const QString &error : report.errors)
        printError(analysisText(error, _request.language));
    // "Failed to open" alone does not say why.
    const bool isUnexplained =
        report.errors.size() == 1 && report.errors.first().startsWith(QLatin1String("Failed to open"));
    if (isUnexplained)
        printError(say(kAbout, {report.filePath, say(openingFault(report.filePath))}));
}

void Analyzer::exportAll(CaptureAnalysis &analysis, const CaptureReport &report, int index)
{
    if (!report.errors.isEmpty())
        return;
    const QString results = _request.resultFiles.value(index);
    const QString findings = _request.findingFiles.value(index);
    if (report.isInterrupted) {
        // A file cannot say that it covers half a capture.
        for (const QString &path : {results, findings}) {
            if (!path.isEmpty())
                printError(say(kNotWrittenStopped, {path}));
        }
        return;
    }
    if (!results.isEmpty())
        checkExport(results, analysis.exportResults(results));
    if (!findings.isEmpty())
        exportFindings(analysis, report, findings);
}

void Analyzer::exportFindings(CaptureAnalysis &analysis, const CaptureReport &report, const QString &path)
{
    const std::optional<QString> error = analysis.exportFindings(path);
    if (!report.findings.isEmpty())
        return checkExport(path, error);
    // Nothing to write is good news.
    if (error && !_request.isQuiet)
        printError(say(kNotWritten, {path, analysisText(*error, _request.language)}));
}

void Analyzer::checkExport(const QString &path, const std::optional<QString> &error)
{
    if (!error)
        return;
    printError(error->isEmpty() ? say(kNotWrittenWhole, {path}) : analysisText(*error, _request.language));
    _status = worse(_status, ExitStatus::Failed);
}

void Analyzer::print(const QStringList &lines)
{
    // A blank line between reports.
    const bool isApart = !_isFirstReport && !_request.isQuiet;
    const ExitStatus status = printLines(isApart ? QStringList(QString()) + lines : lines);
    if (status == ExitStatus::Failed && _status != ExitStatus::Failed)
        printError(say(kNoOutput));
    _status = worse(_status, status);
    _isFirstReport = false;
}

} // namespace

const std::vector<Option> &analyzeOptions()
{
    static const std::vector<Option> kOptions{
        {"decoders",
         "N",
         {"clocks on the site, the master included (default 10); N-1 slaves are expected",
          "现场时钟数，含主时钟（默认10）；期望从节点数为N-1"}},
        {"interval",
         "S",
         {"seconds in which every slave must ask, rounded, at least 1 (default 1)",
          "每个从节点必须发出请求的统计间隔，单位秒，取整且不小于1（默认1）"}},
        {"json", "OUT", {"write records and statistics to the file OUT", "将全部记录和统计写入文件OUT"}},
        {"csv", "OUT", {"write the findings to the file OUT as a table", "将异常数据包以表格写入文件OUT"}},
        {"quiet", nullptr, {"print one line per capture: the verdict", "每个抓包文件只输出一行结论"}},
        {"lang", "zh|en", {"language of the output (default: the system's)", "输出语言（默认为系统语言）"}},
        {"verbose", nullptr, {"show the analysis's debug messages", "显示分析的调试信息"}},
        {"help", nullptr, {"show this text", "显示本说明"}},
    };
    return kOptions;
}

ExitStatus runAnalyze(const QStringList &words, Language language)
{
    const Arguments arguments = parseArguments(words, analyzeOptions(), language);
    if (arguments.error.isEmpty() && arguments.has("help"))
        return printLines(helpLines(kHelp, analyzeOptions(), language));
    Request request;
    request.language = language;
    const QString error = takeArguments(arguments, request);
    if (!error.isEmpty())
        return failUsage(error, inLanguage(kSeeHelp, language));
    const LogOutput log(request.isVerbose ? LogLevel::Debug : LogLevel::Info);
    return Analyzer(request).run();
}
