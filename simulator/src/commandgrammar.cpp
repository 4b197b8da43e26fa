#include "commandgrammar.h"

#include "commandreader.h"
#include "text.h"

#include <algorithm>
#include <utility>

namespace simulator {

namespace {

using Kind = PatternElement::Kind;

// `a [b] [c]` is `a b c`, `a b`, `a c` and `a`.
QByteArrayList withoutOptions(const QByteArray &pattern)
{
    const int open = pattern.indexOf('[');
    if (open < 0)
        return {pattern};
    const int close = pattern.indexOf(']', open);
    const QByteArray tail = pattern.mid(close + 1);
    return withoutOptions(pattern.left(open) + pattern.mid(open + 1, close - open - 1) + tail)
           + withoutOptions(pattern.left(open) + tail);
}

int commonBeginning(const QByteArray &one, const QByteArray &other)
{
    int size = 0;
    while (size < one.size() && size < other.size()
           && qstrnicmp(one.constData() + size, other.constData() + size, 1) == 0)
        ++size;
    return size;
}

} // namespace

struct CommandGrammar::Pattern
{
    const CommandRow *row;
    std::vector<PatternElement> elements;
};

// A line is read word by word along all patterns at once, as the switch does it: which words a beginning can mean
// depends on all commands that have not been ruled out by the words before it.
struct CommandGrammar::Walk
{
    struct Cursor
    {
        const Pattern *pattern;
        std::size_t element = 0;
        std::size_t token = 0;
        Arguments arguments;

        bool isAtEnd() const { return element == pattern->elements.size(); }
        const PatternElement &next() const { return pattern->elements[element]; }
        bool expectsWords() const { return !isAtEnd() && next().kind == Kind::Words; }
    };

    Walk(const CommandGrammar &grammar, QByteArray typed, unsigned views, const InterfaceNames &interfaceNames)
        : line(std::move(typed))
        , tokens(splitLine(line))
        , reader(line, tokens, interfaceNames)
    {
        for (const auto &pattern : grammar._patterns) {
            // Every pattern begins with a word; the others are not worth a cursor.
            if ((pattern->row->views & views) != 0
                && (tokens.empty() || !words(pattern->elements.front(), tokens.front().text).isEmpty()))
                cursors.push_back({pattern.get(), 0, 0, {}});
            if ((pattern->row->views & views) != 0 && !tokens.empty())
                noteClosest(pattern->elements.front(), tokens.front());
        }
    }

    static QByteArrayList words(const PatternElement &element, const QByteArray &beginning)
    {
        QByteArrayList result;
        for (const QByteArray &word : element.words) {
            if (isSame(beginning, word))
                return {word};
            if (isBeginning(beginning, word))
                result << word;
        }
        return result;
    }

    void noteClosest(const PatternElement &element, const Token &token)
    {
        for (const QByteArray &word : element.words)
            closest = std::max(closest, token.column + commonBeginning(token.text, word));
    }

    void run()
    {
        for (std::size_t at = 0; at < tokens.size() && !failure; ++at)
            step(at);
    }

    void fail(CommandMatch::Status status, int column) { failure = {status, column, nullptr, {}}; }

    int columnOf(std::size_t token) const { return token < tokens.size() ? tokens[token].column : line.size(); }

    // One word, for the cursors that have come to it.
    void step(std::size_t at)
    {
        const QByteArrayList candidates = candidateWords(at);
        if (candidates.size() > 1)
            return fail(CommandMatch::Status::Ambiguous, columnOf(at));
        if (candidates.isEmpty())
            readPlaceholders(at);
        else
            takeWord(at, candidates.first());
    }

    QByteArrayList candidateWords(std::size_t at) const
    {
        QByteArrayList candidates;
        for (const Cursor &cursor : cursors) {
            if (cursor.token != at || !cursor.expectsWords())
                continue;
            for (const QByteArray &word : words(cursor.next(), tokens[at].text)) {
                if (isSame(word, tokens[at].text))
                    return {word};
                if (!candidates.contains(word))
                    candidates << word;
            }
        }
        return candidates;
    }

    void takeWord(std::size_t at, const QByteArray &word)
    {
        std::vector<Cursor> alive;
        for (Cursor &cursor : cursors) {
            if (cursor.token > at)
                alive.push_back(std::move(cursor));
            else if (cursor.expectsWords() && cursor.next().words.contains(word))
                alive.push_back(advanced(std::move(cursor), word));
        }
        cursors = std::move(alive);
    }

    static Cursor advanced(Cursor cursor, const QByteArray &word)
    {
        if (cursor.next().words.size() > 1)
            cursor.arguments.words << word;
        cursor.arguments.undo |= cursor.token == 0 && word == "undo";
        cursor.arguments.line += (cursor.token == 0 ? QByteArray() : QByteArray(" ")) + word;
        ++cursor.element;
        ++cursor.token;
        return cursor;
    }

    void readPlaceholders(std::size_t at)
    {
        std::vector<Cursor> alive;
        Reading worst{Reading::Status::Read, 0};
        bool anyEnded = false;
        for (Cursor &cursor : cursors) {
            if (cursor.token > at) {
                alive.push_back(std::move(cursor));
                continue;
            }
            anyEnded |= cursor.isAtEnd();
            if (cursor.isAtEnd())
                continue;
            if (at > 0)
                noteClosest(cursor.next(), tokens[at]);
            const Reading reading = reader.read(cursor.next(), at, &cursor.arguments);
            if (reading.status == Reading::Status::Read) {
                cursor.arguments.line += ' ' + textOf(at, reading.token);
                cursor.token = reading.token;
                ++cursor.element;
                alive.push_back(std::move(cursor));
            } else if (cursor.next().kind != Kind::Words && reading.token >= worst.token) {
                worst = reading;
            }
        }
        cursors = std::move(alive);
        if (cursors.empty())
            failAt(at, worst, anyEnded);
    }

    void failAt(std::size_t at, const Reading &worst, bool anyEnded)
    {
        if (worst.status == Reading::Status::Wrong)
            fail(CommandMatch::Status::Wrong, columnOf(worst.token));
        else if (worst.status == Reading::Status::Incomplete)
            fail(CommandMatch::Status::Incomplete, line.size());
        else if (anyEnded && worst.status == Reading::Status::Read)
            fail(CommandMatch::Status::TooMany, columnOf(at));
        else
            fail(CommandMatch::Status::Unrecognized, std::max(closest, columnOf(at)));
    }

    QByteArray textOf(std::size_t from, std::size_t behind) const
    {
        QByteArrayList texts;
        for (std::size_t i = from; i < behind; ++i)
            texts << tokens[i].text;
        return texts.join(' ');
    }

    QByteArray line;
    Tokens tokens;
    CommandReader reader;
    std::vector<Cursor> cursors;
    std::optional<CommandMatch> failure;
    int closest = 0; // column of the first sign that no word has there
};

CommandGrammar::CommandGrammar(const std::vector<CommandRow> &rows)
{
    for (const CommandRow &row : rows) {
        const QByteArrayList variants = withoutOptions(row.pattern);
        for (const QByteArray &variant : variants) {
            auto pattern = std::make_unique<Pattern>();
            pattern->row = &row;
            const QByteArrayList words = variant.simplified().split(' ');
            for (const QByteArray &word : words)
                pattern->elements.push_back(readPatternElement(word));
            _patterns.push_back(std::move(pattern));
        }
    }
}

CommandGrammar::~CommandGrammar() = default;

CommandMatch CommandGrammar::match(const QByteArray &line, unsigned views, const InterfaceNames &names) const
{
    Walk walk(*this, line, views, names);
    if (walk.cursors.empty())
        return {CommandMatch::Status::Unrecognized, walk.closest, nullptr, {}};
    walk.run();
    if (walk.failure)
        return *walk.failure;
    for (Walk::Cursor &cursor : walk.cursors) {
        if (cursor.isAtEnd())
            return {CommandMatch::Status::Complete, 0, cursor.pattern->row, std::move(cursor.arguments)};
    }
    return {CommandMatch::Status::Incomplete, line.size(), nullptr, {}};
}

QByteArrayList CommandGrammar::expected(const QByteArray &line, unsigned views, const InterfaceNames &names) const
{
    const int lastBlank = line.lastIndexOf(' ') + 1;
    const QByteArray beginning = line.mid(lastBlank);
    Walk walk(*this, line.left(lastBlank), views, names);
    walk.run();
    QByteArrayList result;
    if (walk.failure)
        return result;
    for (const Walk::Cursor &cursor : walk.cursors) {
        QByteArrayList next;
        if (cursor.isAtEnd())
            next << QByteArrayLiteral("<cr>");
        else if (cursor.next().kind == Kind::Words)
            next = beginning.isEmpty() ? cursor.next().words : Walk::words(cursor.next(), beginning);
        else
            next << cursor.next().placeholder;
        for (const QByteArray &word : next) {
            if (!result.contains(word) && (beginning.isEmpty() || !word.startsWith('<')))
                result << word;
        }
    }
    std::sort(result.begin(), result.end());
    return result;
}

} // namespace simulator
