#include "loglines.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace ovra {
namespace bll {

namespace {

constexpr int kScreenWidth = 80;
constexpr std::array<const char *, 12> kMonths{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                               "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// "Nov 20 2026 10:11:12", "%Nov  2 10:11:12:345 2026"
bool beginsWithDate(const QByteArray &line, int at)
{
    while (at < line.size() && (line.at(at) == '%' || line.at(at) == '#' || line.at(at) == ' '))
        ++at;
    if (at + 5 > line.size() || line.at(at + 3) != ' ')
        return false;
    const bool isMonth = std::any_of(kMonths.begin(), kMonths.end(), [&](const char *month) {
        return std::memcmp(line.constData() + at, month, 3) == 0;
    });
    at += 3;
    while (at < line.size() && line.at(at) == ' ')
        ++at;
    return isMonth && at < line.size() && line.at(at) >= '0' && line.at(at) <= '9';
}

// A log line starts right behind the prompt that stands there.
int behindPrompt(const QByteArray &line)
{
    if (line.isEmpty() || (line.at(0) != '<' && line.at(0) != '['))
        return 0;
    return line.indexOf(line.at(0) == '<' ? '>' : ']') + 1;
}

} // namespace

bool beginsLogLine(const QByteArray &line, int at)
{
    return beginsWithDate(line, at);
}

bool LogLineFinder::isLogLine(const QByteArray &line, const QByteArrayList &others, int standing)
{
    int width = line.size();
    while (width > 0 && (line.at(width - 1) == '\n' || line.at(width - 1) == '\r'))
        --width;
    const bool isOther =
        (standing == 0 && line.startsWith('<'))
        || std::any_of(others.begin(), others.end(), [&line](const QByteArray &text) { return line.contains(text); });
    const int begin = standing > 0 ? standing : behindPrompt(line);
    const bool isLog = (_goesOn && !isOther) || line.contains("%%") || beginsWithDate(line, begin);
    // A longer one comes from a switch that does not wrap. Some count what stood there, some do not.
    _goesOn = isLog && (width == kScreenWidth || width - standing == kScreenWidth);
    return isLog;
}

QByteArray withoutLogLines(const QByteArray &text, const QByteArrayList &others)
{
    LogLineFinder finder;
    QByteArray kept;
    kept.reserve(text.size());
    int begin = 0;
    for (int newline = text.indexOf('\n'); newline >= 0; newline = text.indexOf('\n', begin)) {
        const QByteArray line = text.mid(begin, newline + 1 - begin);
        if (!finder.isLogLine(line, others))
            kept += line;
        begin = newline + 1;
    }
    return kept + text.mid(begin);
}

} // namespace bll
} // namespace ovra
