#include "capturereport.h"

#include "findinggroups.h"
#include "statustexts.h"

#include <algorithm>

namespace {

constexpr int kIndent = 2;
// A damaged or hostile capture can hold thousands of addresses; the exports have them all.
constexpr std::size_t kMaxRows = 60;
constexpr int kMaxDecisive = 10;

constexpr Text kCapture{"Capture: %1", "抓包文件：%1"};
constexpr Text kVerdict{"Verdict: ", "结论："};
constexpr Text kVerdictLine{"%1: %2", "%1：%2"};
constexpr Text kInterrupted{"Stopped by Ctrl-C: the report covers the %1 packets read until then.",
                            "已被 Ctrl-C 中止：本报告只包含此前读取的 %1 个数据包。"};
constexpr Text kNoMessages{"There is no PTP message in this capture: nothing was judged.",
                           "抓包中没有PTP报文：未作任何判断。"};

constexpr Text kNotJudged{"not judged", "未判断"};

constexpr Text kChecks{"Checks", "检查项"};
constexpr Text kAnnounce{"Announce interval", "Announce间隔"};
constexpr Text kSync{"Sync interval", "Sync间隔"};
constexpr Text kFollowUp{"Follow_Up interval", "Follow_Up间隔"};
constexpr Text kSlaves{"Slave response", "从节点回复"};
constexpr Text kMatching{"Delay matching", "Delay匹配"};

constexpr Text kNetwork{"Network", "网络"};
constexpr Text kMasterClock{"Master clock", "主时钟"};
constexpr Text kCaptureTime{"Capture time", "抓包时间"};
constexpr Text kPackets{"Packets read", "读取数据包"};
constexpr Text kMessages{"PTP messages", "PTP报文"};
constexpr Text kKept{"%1 (checked: the newest %2)", "%1（检查最新的 %2 个）"};
constexpr Text kDomains{"Domains", "域"};
constexpr Text kPorts{"Clock ports", "时钟端口"};
constexpr Text kExpected{"Expected slaves", "期望从节点"};
constexpr Text kWindows{"%1, in windows of %2 s", "%1，统计间隔 %2 秒"};

constexpr Text kClocks{"Messages by source", "各地址报文数"};
constexpr Text kMaster{"master", "主时钟"};
constexpr Text kNoAddress{"(no IPv4 address)", "（无IPv4地址）"};

constexpr Text kSessions{"Sync sessions", "同步会话"};
constexpr Text kMasterPort{"Master port", "主端口"};
constexpr Text kOffset{"Offset (ns)", "时钟偏差 (ns)"};
constexpr Text kPathDelay{"Path delay (ns)", "路径时延 (ns)"};
constexpr Text kNoExchange{"no complete exchange", "没有完整的交互"};

constexpr Text kFindings{"Findings: %1", "异常数据包：%1"};
constexpr Text kFinding{"Finding", "异常类型"};
constexpr Text kMessage{"Message", "报文"};
constexpr Text kSource{"Source", "来源"};
constexpr Text kCount{"Count", "数量"};
constexpr Text kFirst{"First", "首次"};
constexpr Text kLast{"Last", "末次"};
constexpr Text kMoreRows{"... and %1 more", "……还有 %1 项"};

constexpr Text kDecisive{"No check reads abnormal. The verdict is abnormal because of:",
                         "各检查项均无异常。结论为异常的原因："};
constexpr Text kDecisiveFinding{"%1: %2 from %3, sequence id %4, at %5", "%1：%2，来自 %3，序号 %4，时间 %5"};

constexpr Text kSummary{"Summary", "汇总"};
constexpr Text kFile{"Capture", "抓包文件"};
constexpr Text kResult{"Verdict", "结论"};
constexpr Text kNumber{"Findings", "异常数"};
constexpr Text kFailed{"not analysed", "未能分析"};
constexpr Text kStopped{"stopped", "已中止"};

// In the order of an exchange; other types follow in alphabetical order.
constexpr const char *kMessageTypes[] = {"ANNOUNCE", "SYNC", "FOLLOW_UP", "DELAY_REQ", "DELAY_RESP"};

Style styleOfStatus(const QString &status)
{
    if (isAbnormalStatus(status))
        return Style::Bad;
    return isNormalStatus(status) ? Style::Good : Style::Doubtful;
}

QStringList statusesOf(const CaptureReport &report)
{
    return {report.announceStatus, report.syncStatus, report.followUpStatus, report.slaveStatus, report.matchingStatus};
}

//! Writes the sections of one report.
class ReportWriter
{
public:
    ReportWriter(const CaptureReport &report, Language language, const Painter &painter)
        : _report(report)
        , _language(language)
        , _painter(painter)
    {}

    QStringList lines();

private:
    void addHead();
    void addChecks();
    void addNetwork();
    void addSources();
    void addSessions();
    void addFindings();
    void addDecisiveFindings();

    QString say(const Text &text, const QStringList &values = {}) const { return inLanguage(text, _language, values); }
    QString sayStatus(const QString &text) const { return analysisText(text, _language); }
    Cell heading(const Text &text) const { return {say(text), Style::Faint}; }
    void addHeading(const QString &title);
    void addTable(const TextTable &table) { _lines += table.lines(_painter); }
    void addMoreRows(std::size_t count);
    QString countsText(const QVariantMap &counts, QStringList names) const;
    QString messagesText() const;

    const CaptureReport &_report;
    Language _language;
    const Painter &_painter;
    QStringList _lines;
};

QStringList ReportWriter::lines()
{
    addHead();
    addChecks();
    addNetwork();
    addSources();
    addSessions();
    addFindings();
    addDecisiveFindings();
    return _lines;
}

void ReportWriter::addHeading(const QString &title)
{
    _lines.append(QString());
    _lines.append(_painter.painted(title, Style::Heading));
}

void ReportWriter::addMoreRows(std::size_t count)
{
    if (count > kMaxRows)
        _lines.append(QString(kIndent, QLatin1Char(' ')) + say(kMoreRows, {QString::number(count - kMaxRows)}));
}

void ReportWriter::addHead()
{
    _lines.append(_painter.painted(say(kCapture, {printable(_report.filePath)}), Style::Heading));
    const bool isJudged = messageCountOf(_report) > 0;
    _lines.append(_painter.painted(say(kVerdict), Style::Heading)
                  + (isJudged ? _painter.painted(sayStatus(_report.verdict), styleOfStatus(_report.verdict))
                              : _painter.painted(say(kNotJudged), Style::Doubtful)));
    if (_report.isInterrupted)
        _lines.append(_painter.painted(say(kInterrupted, {QString::number(_report.packetsRead)}), Style::Doubtful));
    if (!isJudged)
        _lines.append(_painter.painted(say(kNoMessages), Style::Doubtful));
}

void ReportWriter::addChecks()
{
    addHeading(say(kChecks));
    const Text names[] = {kAnnounce, kSync, kFollowUp, kSlaves, kMatching};
    const QStringList statuses = statusesOf(_report);
    TextTable table(kIndent);
    for (int i = 0; i < statuses.size(); ++i)
        table.addRow({{say(names[i])}, {sayStatus(statuses[i]), styleOfStatus(statuses[i])}});
    addTable(table);
}

QString ReportWriter::countsText(const QVariantMap &counts, QStringList names) const
{
    for (auto entry = counts.cbegin(); entry != counts.cend(); ++entry) {
        if (!names.contains(entry.key()))
            names.append(entry.key());
    }
    QStringList texts;
    for (const QString &name : names)
        texts.append(name + QLatin1Char(' ') + QString::number(counts.value(name).toInt()));
    return texts.join(QStringLiteral(", "));
}

QString ReportWriter::messagesText() const
{
    QString count = QString::number(messageCountOf(_report));
    if (_report.recordsKept == messageCountOf(_report))
        return count;
    return say(kKept, {count, QString::number(_report.recordsKept)});
}

void ReportWriter::addNetwork()
{
    QStringList types;
    for (const char *type : kMessageTypes)
        types.append(QLatin1String(type));

    addHeading(say(kNetwork));
    TextTable table(kIndent);
    const QString master = _report.masterClock.isEmpty() ? QStringLiteral("未知") : _report.masterClock;
    table.addRow({{say(kMasterClock)}, {sayStatus(master)}});
    table.addRow({{say(kCaptureTime)}, {sayStatus(_report.captureTime)}});
    table.addRow({{say(kPackets)}, {QString::number(_report.packetsRead)}});
    table.addRow({{say(kMessages)}, {messagesText()}});
    table.addRow({{}, {countsText(_report.messageTypes, types)}});
    if (!_report.domains.isEmpty())
        table.addRow({{say(kDomains)}, {QStringList(_report.domains.keys()).join(QStringLiteral(", "))}});
    table.addRow({{say(kPorts)}, {QString::number(_report.clockPorts)}});
    table.addRow({{say(kExpected)},
                  {say(kWindows, {QString::number(_report.expectedSlaves), QString::number(_report.slaveInterval)})}});
    addTable(table);
}

void ReportWriter::addSources()
{
    if (_report.sources.isEmpty())
        return;
    addHeading(say(kClocks));
    TextTable table(kIndent);
    table.alignRight(1);
    std::size_t rows = 0;
    for (const QString &source : inAddressOrder(_report.sources.keys())) {
        if (++rows > kMaxRows)
            break;
        const bool isMaster = !source.isEmpty() && source == _report.masterClock;
        table.addRow({{source.isEmpty() ? say(kNoAddress) : source},
                      {QString::number(_report.sources.value(source).toInt())},
                      {isMaster ? say(kMaster) : QString()}});
    }
    addTable(table);
    addMoreRows(static_cast<std::size_t>(_report.sources.size()));
}

void ReportWriter::addSessions()
{
    if (_report.syncSessions.isEmpty())
        return;
    addHeading(say(kSessions));
    TextTable table(kIndent);
    table.alignRight(1);
    table.alignRight(2);
    table.addRow({heading(kMasterPort), heading(kOffset), heading(kPathDelay)});
    std::size_t rows = 0;
    for (const QVariant &entry : _report.syncSessions) {
        if (++rows > kMaxRows)
            break;
        const QVariantMap session = entry.toMap();
        const QString port = session.value(QStringLiteral("masterPort")).toString();
        const auto nanoseconds = [&session](const char *key) {
            return QString::number(session.value(QLatin1String(key)).toDouble(), 'f', 0);
        };
        if (session.value(QStringLiteral("hasValidSync")).toBool())
            table.addRow({{port}, {nanoseconds("clockOffset")}, {nanoseconds("pathDelay")}});
        else
            table.addRow({{port}, {QStringLiteral("-")}, {QStringLiteral("-")}, {say(kNoExchange)}});
    }
    addTable(table);
    addMoreRows(static_cast<std::size_t>(_report.syncSessions.size()));
}

void ReportWriter::addFindings()
{
    addHeading(say(kFindings, {QString::number(_report.findings.size())}));
    if (_report.findings.isEmpty())
        return;
    TextTable table(kIndent);
    table.alignRight(3);
    table.addRow(
        {heading(kFinding), heading(kMessage), heading(kSource), heading(kCount), heading(kFirst), heading(kLast)});
    const std::vector<FindingGroup> groups = groupFindings(_report.findings);
    for (std::size_t i = 0; i < groups.size() && i < kMaxRows; ++i) {
        const FindingGroup &group = groups[i];
        table.addRow({{sayStatus(group.abnormalType)},
                      {group.messageType},
                      {group.source.isEmpty() ? say(kNoAddress) : sayStatus(group.source)},
                      {QString::number(group.count)},
                      {group.first},
                      {group.last}});
    }
    addTable(table);
    addMoreRows(groups.size());
}

void ReportWriter::addDecisiveFindings()
{
    // A few findings leave their check normal, but one is enough for the verdict.
    const QStringList statuses = statusesOf(_report);
    if (_report.findings.isEmpty() || std::any_of(statuses.cbegin(), statuses.cend(), isAbnormalStatus))
        return;
    _lines.append(QString());
    _lines.append(_painter.painted(say(kDecisive), Style::Bad));
    const QString indent(kIndent, QLatin1Char(' '));
    for (const QVariant &entry : _report.findings.mid(0, kMaxDecisive)) {
        const QVariantMap finding = entry.toMap();
        const auto text = [&finding, this](const char *key) {
            return sayStatus(finding.value(QLatin1String(key)).toString());
        };
        _lines.append(indent
                      + say(kDecisiveFinding, {text("abnormalType"), text("messageType"), text("sourceIp"),
                                               text("sequenceId"), text("timestamp")}));
    }
    if (_report.findings.size() > kMaxDecisive)
        _lines.append(indent + say(kMoreRows, {QString::number(_report.findings.size() - kMaxDecisive)}));
}

Cell verdictCell(const CaptureReport &report, Language language)
{
    if (!report.errors.isEmpty())
        return {inLanguage(kFailed, language), Style::Doubtful};
    if (report.isInterrupted)
        return {inLanguage(kStopped, language), Style::Doubtful};
    // A network without messages has no findings, and would read as normal: a wrong mirror port is not a healthy site.
    if (messageCountOf(report) == 0)
        return {inLanguage(kNotJudged, language), Style::Doubtful};
    return {analysisText(report.verdict, language), styleOfStatus(report.verdict)};
}

} // namespace

ExitStatus exitStatusOf(const CaptureReport &report)
{
    if (report.isInterrupted)
        return ExitStatus::Interrupted;
    if (!report.errors.isEmpty() || messageCountOf(report) == 0)
        return ExitStatus::Failed;
    return report.verdict == QStringLiteral("正常") ? ExitStatus::Healthy : ExitStatus::Abnormal;
}

qint64 messageCountOf(const CaptureReport &report)
{
    qint64 count = 0;
    for (const QVariant &messages : report.messageTypes)
        count += messages.toInt();
    return count;
}

QStringList reportLines(const CaptureReport &report, Language language, const Painter &painter)
{
    return ReportWriter(report, language, painter).lines();
}

QString verdictLine(const CaptureReport &report, Language language, const Painter &painter)
{
    const Cell verdict = verdictCell(report, language);
    return inLanguage(kVerdictLine, language,
                      {printable(report.filePath), painter.painted(verdict.text, verdict.style)});
}

QStringList summaryLines(const std::vector<CaptureReport> &reports, Language language, const Painter &painter)
{
    TextTable table(kIndent);
    table.alignRight(2);
    table.alignRight(3);
    const auto heading = [language](const Text &text) { return Cell{inLanguage(text, language), Style::Faint}; };
    table.addRow({heading(kFile), heading(kResult), heading(kNumber), heading(kMessages), heading(kMasterClock)});
    for (const CaptureReport &report : reports) {
        std::vector<Cell> row{{printable(report.filePath)}, verdictCell(report, language)};
        if (report.errors.isEmpty()) {
            row.push_back({QString::number(report.findings.size())});
            row.push_back({QString::number(messageCountOf(report))});
            row.push_back({report.masterClock});
        }
        table.addRow(std::move(row));
    }
    return QStringList(painter.painted(inLanguage(kSummary, language), Style::Heading)) + table.lines(painter);
}
