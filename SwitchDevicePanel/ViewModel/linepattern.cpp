#include "linepattern.h"

#include <algorithm>

namespace reply {

namespace {

constexpr QStringView kOperators = u".[]{}?*+|^$"; // no pattern of ours needs them

bool isAsciiDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

bool isAsciiSpace(QChar character)
{
    const ushort unicode = character.unicode();
    return unicode == ' ' || (unicode >= '\t' && unicode <= '\r');
}

} // namespace

bool LineMatch::isBehindDigit() const
{
    return !before.isEmpty() && isAsciiDigit(before.back());
}

//! One piece of a pattern.
struct LinePattern::Step
{
    enum class Kind { Literal, AsciiDigit, AnyDigit, AsciiSpace, AnySpace, GroupBegin, GroupEnd };

    Kind kind = Kind::Literal;
    QChar literal;
    qsizetype minimum = 1; // 0 only for a repetition
    bool isRepeated = false;

    bool isGroupMark() const { return kind == Kind::GroupBegin || kind == Kind::GroupEnd; }

    bool accepts(QChar character) const
    {
        switch (kind) {
        case Kind::Literal:
            return character == literal;
        case Kind::AsciiDigit:
            return isAsciiDigit(character);
        case Kind::AnyDigit:
            return character.isDigit();
        case Kind::AsciiSpace:
            return isAsciiSpace(character);
        case Kind::AnySpace:
            return character.isSpace();
        case Kind::GroupBegin:
        case Kind::GroupEnd:
            break;
        }
        return false;
    }

    //! How many characters of \a line, from \a at on, the step takes.
    qsizetype take(QStringView line, qsizetype at) const
    {
        const qsizetype limit = isRepeated ? line.size() : std::min(line.size(), at + 1);
        qsizetype end = at;
        while (end < limit && accepts(line[end]))
            ++end;
        return end - at;
    }
};

//! Turns a pattern into steps, or finds that it is none of ours.
class LinePattern::Compiler
{
public:
    Compiler(const QString &pattern, Dialect dialect)
        : _pattern(pattern)
        , _dialect(dialect)
    {}

    //! The steps; nothing for a pattern that cannot be matched in one pass.
    std::optional<std::vector<Step>> compile()
    {
        while (_at < _pattern.size()) {
            if (!addPiece(_pattern.at(_at++)))
                return std::nullopt;
        }
        if (_isInGroup || !isUnambiguous())
            return std::nullopt;
        return std::move(_steps);
    }

private:
    bool addPiece(QChar character)
    {
        if (character == QLatin1Char('('))
            return beginGroup();
        if (character == QLatin1Char(')'))
            return endGroup();
        if (character == QLatin1Char('\\'))
            return addClass();
        if (kOperators.contains(character))
            return false;
        Step step;
        step.literal = character;
        _steps.push_back(step);
        return true;
    }

    bool beginGroup()
    {
        if (_isInGroup || ++_groups > 2 || peek() == QLatin1Char('?'))
            return false;
        _isInGroup = true;
        addMark(Step::Kind::GroupBegin);
        return true;
    }

    bool endGroup()
    {
        if (!_isInGroup)
            return false;
        _isInGroup = false;
        addMark(Step::Kind::GroupEnd);
        return true;
    }

    void addMark(Step::Kind kind)
    {
        Step step;
        step.kind = kind;
        _steps.push_back(step);
    }

    bool addClass()
    {
        const bool isAscii = _dialect == Dialect::EcmaScript;
        Step step;
        if (peek() == QLatin1Char('d'))
            step.kind = isAscii ? Step::Kind::AsciiDigit : Step::Kind::AnyDigit;
        else if (peek() == QLatin1Char('s'))
            step.kind = isAscii ? Step::Kind::AsciiSpace : Step::Kind::AnySpace;
        else
            return false;
        ++_at;
        if (peek() == QLatin1Char('+') || peek() == QLatin1Char('*')) {
            step.isRepeated = true;
            step.minimum = peek() == QLatin1Char('*') ? 0 : 1;
            ++_at;
        }
        _steps.push_back(step);
        return true;
    }

    QChar peek() const { return _at < _pattern.size() ? _pattern.at(_at) : QChar(); }

    // Taking as much as possible is right when nothing that may follow a repetition begins with what it repeats: then
    // giving a character back never helps, and no start within a run does better than the run's first.
    bool isUnambiguous() const
    {
        for (auto step = _steps.begin(); step != _steps.end(); ++step) {
            if (!step->isRepeated)
                continue;
            for (auto next = std::next(step); next != _steps.end(); ++next) {
                if (next->isGroupMark())
                    continue;
                if (overlap(*step, *next))
                    return false;
                if (next->minimum > 0)
                    break;
            }
        }
        return true;
    }

    static bool overlap(const Step &repeated, const Step &next)
    {
        return next.kind == Step::Kind::Literal ? repeated.accepts(next.literal) : repeated.kind == next.kind;
    }

    const QString _pattern;
    const Dialect _dialect;
    std::vector<Step> _steps;
    int _at = 0;
    int _groups = 0;
    bool _isInGroup = false;
};

LinePattern::LinePattern(const QString &pattern, Dialect dialect)
{
    auto steps = Compiler(pattern, dialect).compile();
    if (!steps)
        return;
    _isValid = true;
    _steps = std::move(*steps);
    separateLeadingRun();
    const auto isPiece = [](const Step &step) { return !step.isGroupMark(); };
    _head = static_cast<std::size_t>(std::find_if(_steps.begin(), _steps.end(), isPiece) - _steps.begin());
}

LinePattern::LinePattern(LinePattern &&) noexcept = default;
LinePattern &LinePattern::operator=(LinePattern &&) noexcept = default;
LinePattern::~LinePattern() = default;

void LinePattern::separateLeadingRun()
{
    const auto isMandatory = [](const Step &step) { return !step.isGroupMark() && step.minimum > 0; };
    if (_steps.empty() || _steps.front().minimum > 0 || std::none_of(_steps.begin(), _steps.end(), isMandatory))
        return;
    _leadingRun = std::make_unique<const Step>(_steps.front());
    _steps.erase(_steps.begin());
}

std::optional<LineMatch> LinePattern::firstMatch(QStringView line) const
{
    if (!_isValid || line.size() > kLongestLine)
        return std::nullopt;
    if (_head == _steps.size())
        return matchAt(line, 0);
    const Step &head = _steps[_head];
    for (qsizetype start = 0; start <= line.size();) {
        if (head.minimum > 0) {
            while (start < line.size() && !head.accepts(line[start]))
                ++start;
            if (start == line.size())
                break;
        }
        if (auto match = matchAt(line, start))
            return match;
        start += std::max<qsizetype>(1, head.take(line, start)); // the rest of a run fails where its first failed
    }
    return std::nullopt;
}

std::optional<LineMatch> LinePattern::matchAt(QStringView line, qsizetype start) const
{
    LineMatch match;
    qsizetype at = start;
    qsizetype groupBegin = start;
    for (const Step &step : _steps) {
        if (step.kind == Step::Kind::GroupBegin) {
            groupBegin = at;
        } else if (step.kind == Step::Kind::GroupEnd) {
            (match.group1.isNull() ? match.group1 : match.group2) = line.mid(groupBegin, at - groupBegin);
        } else {
            const qsizetype taken = step.take(line, at);
            if (taken < step.minimum)
                return std::nullopt;
            at += taken;
        }
    }
    while (_leadingRun && start > 0 && _leadingRun->accepts(line[start - 1]))
        --start;
    match.before = line.left(start);
    match.whole = line.mid(start, at - start);
    return match;
}

int toNumber(QStringView text)
{
    constexpr qsizetype kSafeDigits = 9; // cannot overflow; a listing may hold a hundred thousand of them
    if (text.size() > kSafeDigits || !std::all_of(text.begin(), text.end(), isAsciiDigit))
        return text.toString().toInt();
    int number = 0;
    for (const QChar digit : text)
        number = number * 10 + (digit.unicode() - '0');
    return number;
}

} // namespace reply
