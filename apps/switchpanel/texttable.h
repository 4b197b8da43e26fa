// Columns that stay straight in a terminal, double-width characters and colours included.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <vector>

//! Number of terminal cells that the text takes: two for East Asian wide characters, none for combining marks.
int displayWidth(const QString &text);

//! The text cut to at most `width` cells, with "..." in its middle where something was left out.
QString elided(const QString &text, int width);

//! The text without control characters (a file name may hold any), each replaced by "?".
QString printable(const QString &text);

enum class Style { Plain, Heading, Good, Bad, Doubtful, Faint };

//! Turns styles into terminal colours, or leaves the text alone.
class Painter
{
public:
    explicit Painter(bool isColoured)
        : _isColoured(isColoured)
    {}

    QString painted(const QString &text, Style style) const;

private:
    bool _isColoured;
};

struct Cell
{
    QString text;
    Style style = Style::Plain;
};

//! Rows of cells; every column as wide as its widest cell, two blanks between columns, none at the end of a line.
class TextTable
{
public:
    explicit TextTable(int indent)
        : _indent(indent)
    {}

    void alignRight(int column);
    void addRow(std::vector<Cell> row);
    QStringList lines(const Painter &painter) const;

private:
    std::vector<int> columnWidths() const;
    bool isRightAligned(std::size_t column) const;
    QString line(const std::vector<Cell> &row, const std::vector<int> &widths, const Painter &painter) const;

    int _indent;
    std::vector<std::vector<Cell>> _rows;
    std::vector<bool> _rightAligned;
};
