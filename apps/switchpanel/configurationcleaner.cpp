#include "configurationcleaner.h"

#include <QtCore/QByteArrayList>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <vector>

namespace {

constexpr int kScreenColumns = 80;      // where switches wrap their log lines, in the middle of words
constexpr int kLongestSequence = 1'000; // no switch moves its cursor further

// One row of a terminal, as the bytes up to a line feed leave it.
class Row
{
public:
    void add(const QByteArray &bytes);
    QByteArray text() const;

private:
    int addSequence(const QByteArray &bytes, int at);
    void put(char character);
    void moveTo(int column);

    QByteArray _cells;
    int _column = 0;
    bool _hasMoved = false;
};

void Row::moveTo(int column)
{
    _column = std::max(0, std::min(column, _cells.size()));
    _hasMoved = true;
}

void Row::put(char character)
{
    if (_column < _cells.size())
        _cells[_column] = character;
    else
        _cells.append(character);
    ++_column;
}

// ESC [ number letter; how many bytes of it there are.
int Row::addSequence(const QByteArray &bytes, int at)
{
    int end = at + 1;
    if (end >= bytes.size() || bytes[end] != '[')
        return 1;
    int count = 0;
    for (++end; end < bytes.size() && (bytes[end] < '@' || bytes[end] > '~'); ++end) {
        if (bytes[end] >= '0' && bytes[end] <= '9')
            count = std::min(count * 10 + (bytes[end] - '0'), kLongestSequence);
    }
    const char last = end < bytes.size() ? bytes[end] : '\0';
    if (last == 'D')
        moveTo(_column - std::max(count, 1));
    else if (last == 'C')
        moveTo(_column + std::max(count, 1));
    else if (last == 'K')
        _cells.truncate(_column);
    return end + 1 - at;
}

void Row::add(const QByteArray &bytes)
{
    for (int at = 0; at < bytes.size();) {
        const char byte = bytes[at];
        int length = 1;
        if (byte == '\x1b')
            length = addSequence(bytes, at);
        else if (byte == '\b')
            moveTo(_column - 1);
        else if (byte == '\r')
            moveTo(0);
        else if (byte == '\t' || (static_cast<unsigned char>(byte) >= ' ' && byte != '\x7f'))
            put(byte);
        at += length;
    }
}

// Erasing leaves blanks behind.
QByteArray Row::text() const
{
    int size = _cells.size();
    while (_hasMoved && size > 0 && _cells[size - 1] == ' ')
        --size;
    return _cells.left(size);
}

// After a terminal's own filter, the pager's text stands in front of the line and only blanks are left of the erasing.
QByteArray withoutPager(const QByteArray &line)
{
    const QByteArray marker = QByteArrayLiteral("---- More ----");
    const int at = line.indexOf(marker);
    const bool isFirst = at >= 0 && line.left(at).trimmed().isEmpty();
    if (!isFirst)
        return line;
    int begin = at + marker.size();
    while (begin < line.size() && line[begin] == ' ')
        ++begin;
    return line.mid(begin);
}

QByteArrayList screenLines(const QByteArray &output)
{
    QByteArrayList lines;
    for (QByteArray bytes : output.split('\n')) {
        while (bytes.endsWith('\r'))
            bytes.chop(1);
        Row row;
        row.add(bytes);
        lines.append(withoutPager(row.text()));
    }
    return lines;
}

bool isLogLine(const QByteArray &line)
{
    static const QRegularExpression kStamp(
        QStringLiteral("^%?(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) {1,2}\\d{1,2} "
                       "(\\d{4} \\d\\d:\\d\\d:\\d\\d|\\d\\d:\\d\\d:\\d\\d:\\d{3} \\d{4} )"));
    constexpr int kStampSize = 40;
    return kStamp.match(QString::fromLatin1(line.left(kStampSize))).hasMatch();
}

// A log line goes on below as long as it fills the screen.
QByteArrayList withoutLogLines(const QByteArrayList &lines)
{
    QByteArrayList kept;
    bool isInside = false;
    for (const QByteArray &line : lines) {
        const bool isLog = isInside || isLogLine(line);
        if (!isLog)
            kept.append(line);
        isInside = isLog && line.size() == kScreenColumns;
    }
    return kept;
}

bool isShortFor(const QByteArray &word, const char *command, int shortest)
{
    return word.size() >= shortest && QByteArray(command).startsWith(word.toLower());
}

// The command that makes the listing, with or without the prompt in front.
bool isEcho(const QByteArray &line)
{
    int begin = 0;
    if (line.startsWith('<'))
        begin = line.indexOf('>') + 1;
    else if (line.startsWith('['))
        begin = line.indexOf(']') + 1;
    const QByteArrayList words = line.mid(begin).simplified().split(' ');
    return words.size() == 2 && isShortFor(words[0], "display", 3) && isShortFor(words[1], "current-configuration", 1);
}

bool isVersionLine(const QByteArray &line)
{
    static const QRegularExpression kVersion(QStringLiteral("^(\\[V\\d+R\\d+C\\d+\\w*\\]| ?version \\d.*)$"));
    return kVersion.match(QString::fromLatin1(line)).hasMatch();
}

bool isSeparator(const QByteArray &line)
{
    return line.trimmed() == "#";
}

// Where the listing begins: behind its echo; without one, where something looks like a listing. Behind the last line
// where nothing does.
int listingBegin(const QByteArrayList &lines)
{
    int begin = -1;
    for (int i = 0; i < lines.size(); ++i) {
        if (isEcho(lines[i]))
            begin = i + 1;
        else if (begin >= 0 && lines[i] == "return")
            return begin;
    }
    if (begin >= 0)
        return begin;
    const auto looksSo = [](const QByteArray &line) {
        return isSeparator(line) || line.startsWith('!') || isVersionLine(line);
    };
    return static_cast<int>(std::find_if(lines.cbegin(), lines.cend(), looksSo) - lines.cbegin());
}

struct Listing
{
    std::vector<QByteArrayList> sections;
    bool isComplete = false;
};

Listing listingOf(const QByteArrayList &lines)
{
    Listing listing;
    listing.sections.emplace_back();
    for (int i = listingBegin(lines); i < lines.size() && !listing.isComplete; ++i) {
        const QByteArray &line = lines[i];
        if (line == "return")
            listing.isComplete = true;
        else if (isSeparator(line))
            listing.sections.emplace_back();
        else if (!line.trimmed().isEmpty() && !line.startsWith('!') && !isVersionLine(line))
            listing.sections.back().append(line);
    }
    return listing;
}

bool isCleaned(const QByteArray &output)
{
    return output.startsWith("system-view\n") && output.endsWith("\nreturn\n");
}

} // namespace

CleanedConfiguration cleanedConfiguration(const QByteArray &output)
{
    if (isCleaned(output))
        return {output, true};
    const Listing listing = listingOf(withoutLogLines(screenLines(output)));
    QByteArray commands;
    for (const QByteArrayList &section : listing.sections) {
        if (section.isEmpty())
            continue;
        // A section may have opened a view of its own. A header that the switch refuses must not let its lines take
        // effect in the view before it; `quit` instead of `return` would then even end the login.
        commands +=
            commands.isEmpty() ? QByteArrayLiteral("system-view\n") : QByteArrayLiteral("return\nsystem-view\n");
        commands += section.join('\n') + '\n';
    }
    if (!commands.isEmpty())
        commands += QByteArrayLiteral("return\n");
    return {commands, listing.isComplete};
}
