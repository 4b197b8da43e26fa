#include "texttable.h"

#include <QtCore/QVector>

#include <algorithm>

namespace {

constexpr int kColumnGap = 2;

struct CodeRange
{
    uint first;
    uint last;
};

// Unicode Standard Annex #11: the wide and full-width ranges, unassigned code points between them included.
constexpr CodeRange kWideRanges[] = {
    {0x1100, 0x115f},   {0x2e80, 0x303e},   {0x3041, 0x33ff},   {0x3400, 0x4dbf},   {0x4e00, 0x9fff},
    {0xa000, 0xa4cf},   {0xa960, 0xa97f},   {0xac00, 0xd7a3},   {0xf900, 0xfaff},   {0xfe10, 0xfe19},
    {0xfe30, 0xfe6f},   {0xff01, 0xff60},   {0xffe0, 0xffe6},   {0x16fe0, 0x18cff}, {0x1b000, 0x1b2ff},
    {0x1f300, 0x1f64f}, {0x1f680, 0x1f6ff}, {0x1f900, 0x1faff}, {0x20000, 0x3fffd},
};

bool isWide(uint character)
{
    return std::any_of(std::begin(kWideRanges), std::end(kWideRanges), [character](const CodeRange &range) {
        return character >= range.first && character <= range.last;
    });
}

int cellsOf(uint character)
{
    switch (QChar::category(character)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
    case QChar::Other_Control:
        return 0;
    default:
        return isWide(character) ? 2 : 1;
    }
}

int cellsOf(const QVector<uint> &characters)
{
    int cells = 0;
    for (const uint character : characters)
        cells += cellsOf(character);
    return cells;
}

QString toString(const QVector<uint> &characters)
{
    return QString::fromUcs4(characters.constData(), characters.size());
}

// As many leading characters as fit.
QVector<uint> fitting(const QVector<uint> &characters, int width)
{
    int cells = 0;
    int count = 0;
    while (count < characters.size() && cells + cellsOf(characters[count]) <= width)
        cells += cellsOf(characters[count++]);
    return characters.mid(0, count);
}

const char *colourOf(Style style)
{
    switch (style) {
    case Style::Heading:
        return "\x1b[1m";
    case Style::Good:
        return "\x1b[32m";
    case Style::Bad:
        return "\x1b[31m";
    case Style::Doubtful:
        return "\x1b[33m";
    case Style::Faint:
        return "\x1b[2m";
    case Style::Plain:
        break;
    }
    return "";
}

} // namespace

int displayWidth(const QString &text)
{
    return cellsOf(text.toUcs4());
}

QString elided(const QString &text, int width)
{
    const QVector<uint> characters = text.toUcs4();
    if (cellsOf(characters) <= width)
        return text;
    const QString dots = QStringLiteral("...");
    if (width <= dots.size())
        return toString(fitting(characters, std::max(width, 0)));
    const int room = width - dots.size();
    const QVector<uint> head = fitting(characters, room / 2);
    QVector<uint> reversed = characters;
    std::reverse(reversed.begin(), reversed.end());
    QVector<uint> tail = fitting(reversed, room - cellsOf(head));
    std::reverse(tail.begin(), tail.end());
    return toString(head) + dots + toString(tail);
}

QString printable(const QString &text)
{
    QString clean = text;
    for (QChar &character : clean) {
        if (character.category() == QChar::Other_Control)
            character = QLatin1Char('?');
    }
    return clean;
}

QString Painter::painted(const QString &text, Style style) const
{
    if (!_isColoured || style == Style::Plain || text.isEmpty())
        return text;
    return QLatin1String(colourOf(style)) + text + QLatin1String("\x1b[0m");
}

void TextTable::alignRight(int column)
{
    const auto index = static_cast<std::size_t>(column);
    if (_rightAligned.size() <= index)
        _rightAligned.resize(index + 1);
    _rightAligned[index] = true;
}

void TextTable::addRow(std::vector<Cell> row)
{
    _rows.push_back(std::move(row));
}

QStringList TextTable::lines(const Painter &painter) const
{
    const std::vector<int> widths = columnWidths();
    QStringList lines;
    for (const std::vector<Cell> &row : _rows)
        lines.append(line(row, widths, painter));
    return lines;
}

std::vector<int> TextTable::columnWidths() const
{
    std::vector<int> widths;
    for (const std::vector<Cell> &row : _rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], displayWidth(row[column].text));
    }
    return widths;
}

bool TextTable::isRightAligned(std::size_t column) const
{
    return column < _rightAligned.size() && _rightAligned[column];
}

QString TextTable::line(const std::vector<Cell> &row, const std::vector<int> &widths, const Painter &painter) const
{
    QString line(_indent, QLatin1Char(' '));
    QString blanks; // written before the next text only, so that no line ends in blanks
    for (std::size_t column = 0; column < row.size(); ++column) {
        const Cell &cell = row[column];
        const QString padding(widths[column] - displayWidth(cell.text), QLatin1Char(' '));
        const bool isRight = isRightAligned(column);
        if (isRight)
            blanks += padding;
        if (!cell.text.isEmpty()) {
            line += blanks + painter.painted(cell.text, cell.style);
            blanks.clear();
        }
        if (!isRight)
            blanks += padding;
        blanks += QString(kColumnGap, QLatin1Char(' '));
    }
    return line;
}
