#include "statustexts.h"

#include <QtCore/QRegularExpression>

#include <vector>

namespace {

// Where several rows fit, the first one counts. The analysis itself says the Chinese text, or the English one where it
// is listed under kEnglishTexts.
constexpr Text kChineseTexts[] = {
    // verdicts and statuses of the checks
    {"normal", "正常"},
    {"abnormal", "异常"},
    {"mostly normal", "基本正常"},
    {"unknown", "未知"},
    {"no Announce messages", "无Announce消息"},
    {"no Sync messages", "无Sync消息"},
    {"no Follow_Up messages", "无Follow_up消息"},
    {"no Delay_Req messages", "无Delay_Req消息"},
    {"no messages", "无消息"},
    {"not enough data", "数据不足"},
    {"abnormal (match rate: %1%, matched: %2/%3, late: %4, unanswered: %5)",
     "异常 (匹配率: %1%, 匹配: %2/%3, 超时: %4, 无回复: %5)"},
    {"normal (match rate: %1%, matched: %2/%3)", "正常 (匹配率: %1%, 匹配: %2/%3)"},
    {"abnormal (%1/%2 Sync windows)", "异常 (%1/%2 Sync消息)"},
    {"abnormal (%1/%2)", "异常 (%1/%2)"},
    // findings
    {"interval out of tolerance", "时间间隔异常"},
    {"slave did not reply", "从节点未回复"},
    {"late Delay_Resp", "Delay_Resp超时"},
    {"master did not reply", "主节点未回复"},
    {"unknown slave %1", "未知从节点%1"},
    // errors
    {"File does not exist: %1", "文件不存在：%1"},
    {"The file is larger than 1 GiB; choose a smaller one.", "文件大小超过1GB限制，请选择小于1GB的文件导入。"},
    {"No abnormal packets to export", "无异常数据包可导出"},
    {"Failed to export the findings to: %1", "导出失败: %1"},
};

constexpr Text kEnglishTexts[] = {
    {"No file selected", "未选择文件"},
    {"File does not exist: %1", "文件不存在：%1"},
    {"Failed to open pcap file: %1", "无法打开抓包文件：%1"},
    {"Analysis error: %1", "分析出错：%1"},
    {"No results to export", "无分析结果可导出"},
    {"Failed to export results to: %1", "分析结果导出失败：%1"},
};

// The analysis spells it so.
constexpr Text kNotChecked{"not checked", "未检查"};
constexpr const char *kNotCheckedSource = "no anylse";

struct KnownText
{
    QRegularExpression source;
    Text text;
};

// "%1" becomes a group; the places of every text stand in ascending order.
QRegularExpression patternOf(const char *text)
{
    QString pattern = QRegularExpression::escape(QString::fromUtf8(text));
    pattern.replace(QRegularExpression(QStringLiteral("\\\\%[1-9]")), QStringLiteral("(.*)"));
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern),
                              QRegularExpression::DotMatchesEverythingOption);
}

std::vector<KnownText> knownTexts()
{
    std::vector<KnownText> known;
    for (const Text &text : kChineseTexts)
        known.push_back({patternOf(text.chinese), text});
    for (const Text &text : kEnglishTexts)
        known.push_back({patternOf(text.english), text});
    known.push_back({patternOf(kNotCheckedSource), kNotChecked});
    return known;
}

} // namespace

QString analysisText(const QString &text, Language language)
{
    static const std::vector<KnownText> kKnown = knownTexts();
    for (const KnownText &known : kKnown) {
        const QRegularExpressionMatch match = known.source.match(text);
        if (match.hasMatch())
            return inLanguage(known.text, language, match.capturedTexts().mid(1));
    }
    return text;
}

bool isAbnormalStatus(const QString &status)
{
    return status.startsWith(QStringLiteral("异常"));
}

bool isNormalStatus(const QString &status)
{
    return status.startsWith(QStringLiteral("正常"));
}
