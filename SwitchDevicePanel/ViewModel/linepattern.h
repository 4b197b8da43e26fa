// A pattern of a naming profile, searched in one line after the other.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringView>

#include <memory>
#include <optional>
#include <vector>

namespace reply {

//! A longer line matches no pattern: no switch writes one.
constexpr qsizetype kLongestLine = 1024; // UTF-16 code units

//! Where a pattern was found. The views are parts of the searched line.
struct LineMatch
{
    QStringView before; // the line up to the match
    QStringView whole;
    QStringView group1; // null when the pattern has no such group
    QStringView group2;

    //! Group 1, or the whole match of a pattern without groups.
    QStringView value() const { return group1.isNull() ? whole : group1; }
    //! "GE0/0/1" in "40GE0/0/1" is the tail of a faster port's name.
    bool isBehindDigit() const;
};

/*!
    Compiled once per listing. A pattern is a sequence of literal characters, digits (\\d) and blanks (\\s), which may
   be repeated (+ or *), with at most two flat groups, in which every repetition ends where the next piece begins; the
   time of a search is linear in the line whatever stands in it. The patterns of all naming profiles are of this kind.
   Any other one is invalid and matches nothing: the regular-expression engines take 35 ms for one scan of 1 MiB
   (std::regex, which also recurses on long lines) or 30 ms for a single line of 1000 blanks (QRegExp), and std::regex
   leaves symbols behind that a plugin would export.
*/
class LinePattern
{
public:
    enum class Dialect {
        EcmaScript, // as in std::regex: \d and \s know ASCII only
        QtRegExp,   // as in QRegExp's default syntax: \d and \s know all of Unicode
    };

    LinePattern(const QString &pattern, Dialect dialect);
    LinePattern(LinePattern &&) noexcept;
    LinePattern &operator=(LinePattern &&) noexcept;
    ~LinePattern();

    //! The leftmost match; none in a line of more than kLongestLine characters.
    std::optional<LineMatch> firstMatch(QStringView line) const;

    //! False for a pattern that matches nothing because it is not of the kind above.
    bool isValid() const { return _isValid; }

private:
    struct Step;
    class Compiler;

    void separateLeadingRun();
    std::optional<LineMatch> matchAt(QStringView line, qsizetype start) const;

    // A pattern may begin with blanks that need not be there. They change where a match begins, not whether there is
    // one, so the search leaves them out and extends the match to the left afterwards.
    std::unique_ptr<const Step> _leadingRun;
    std::vector<Step> _steps;
    std::size_t _head = 0; // first step that takes characters; behind the last when none does
    bool _isValid = false;
};

//! Decimal number without error check: 0 when \a text is none or does not fit.
int toNumber(QStringView text);

} // namespace reply
