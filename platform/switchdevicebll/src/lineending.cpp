#include "lineending.h"

#include <algorithm>

namespace ovra {
namespace bll {

namespace {

constexpr int kLongestPrompt = 160;
constexpr int kLongestEnd = 512;
constexpr char kBell = '\a';

bool isFiller(char character)
{
    return character == ' ' || character == kBell;
}

// Without bells and blanks behind it, and without carriage returns before it.
QByteArray stripped(const QByteArray &line)
{
    int begin = 0;
    int end = line.size();
    while (end > 0 && isFiller(line.at(end - 1)))
        --end;
    while (begin < end && line.at(begin) == '\r')
        ++begin;
    return line.mid(begin, end - begin);
}

// Names of other alphabets arrive in whatever encoding their switch uses.
bool isNameCharacter(const SessionFacts &facts, char character)
{
    const bool isLetter = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
    const bool isDigit = character >= '0' && character <= '9';
    return isLetter || isDigit || (static_cast<unsigned char>(character) & 0x80U) != 0
           || facts.promptNameCharacters.contains(character);
}

bool isName(const SessionFacts &facts, const QByteArray &text)
{
    return !text.isEmpty()
           && std::all_of(text.begin(), text.end(), [&](char character) { return isNameCharacter(facts, character); });
}

QByteArray withoutPrefix(const SessionFacts &facts, const QByteArray &line)
{
    for (const QByteArray &prefix : facts.promptPrefixes) {
        if (line.startsWith(prefix))
            return line.mid(prefix.size());
    }
    return line;
}

QByteArray withoutMarks(QByteArray marks, const QByteArray &text)
{
    int at = 0;
    while (at < text.size()) {
        const int mark = marks.indexOf(text.at(at));
        if (mark < 0)
            break;
        marks.remove(mark, 1);
        ++at;
    }
    return text.mid(at);
}

bool bearsName(const PromptShape &shape, const QByteArray &shown, const QByteArray &name)
{
    if (name.isEmpty() || !shown.startsWith(name))
        return false;
    return shown.size() == name.size() || (!shape.isUserView && shown.at(name.size()) == '-');
}

LineEnding promptOf(const SessionFacts &facts, const QByteArray &line, const QByteArray &name)
{
    const QByteArray text = withoutPrefix(facts, line);
    for (const PromptShape &shape : facts.prompts) {
        if (text.size() <= shape.begin.size() + shape.end.size() || !text.startsWith(shape.begin)
            || !text.endsWith(shape.end))
            continue;
        const QByteArray inner = text.mid(shape.begin.size(), text.size() - shape.begin.size() - shape.end.size());
        const QByteArray shown = withoutMarks(shape.marks, inner);
        if (isName(facts, shown))
            return {LineEnding::Kind::Prompt, shape.isUserView, bearsName(shape, shown, name), shown, false};
    }
    return {};
}

// The prompt in any case that the line ends with; empty when there is none.
QByteArray loginPromptOf(const QByteArrayList &prompts, const QByteArray &line)
{
    for (const QByteArray &prompt : prompts) {
        if (prompt.size() <= line.size()
            && qstrnicmp(line.constData() + line.size() - prompt.size(), prompt.constData(),
                         static_cast<uint>(prompt.size()))
                   == 0)
            return prompt;
    }
    return {};
}

LineEnding loginEnding(LineEnding::Kind kind, const QByteArray &prompt, const QByteArray &line)
{
    LineEnding ending;
    ending.kind = kind;
    ending.isWholeLine = prompt.size() == line.size();
    return ending;
}

} // namespace

LineEnding endingOf(const SessionFacts &facts, const QByteArray &line, const QByteArray &name)
{
    const QByteArray text = stripped(line.right(kLongestEnd));
    LineEnding ending;
    if (text.isEmpty())
        return ending;
    if (pagerAtEnd(facts, text, 0) >= 0) {
        ending.kind = LineEnding::Kind::Pager;
        return ending;
    }
    // Before the prompts: a question may be wrapped so that "[Y/N]" stands alone.
    const auto endsText = [&text](const QByteArray &end) { return text.endsWith(end); };
    if (std::any_of(facts.questionEndings.begin(), facts.questionEndings.end(), endsText)) {
        ending.kind = LineEnding::Kind::Question;
        return ending;
    }
    const QByteArray password = loginPromptOf(facts.passwordPrompts, text);
    if (!password.isEmpty())
        return loginEnding(LineEnding::Kind::Password, password, text);
    const QByteArray userName = loginPromptOf(facts.userNamePrompts, text);
    if (!userName.isEmpty())
        return loginEnding(LineEnding::Kind::UserName, userName, text);
    return line.size() <= kLongestPrompt ? promptOf(facts, text, name) : ending;
}

int pagerAtEnd(const SessionFacts &facts, const QByteArray &bytes, int from)
{
    int end = bytes.size();
    while (end > from && bytes.at(end - 1) == ' ')
        --end;
    for (const QByteArray &text : facts.pagerTexts) {
        int begin = end - text.size();
        if (begin < from || !std::equal(text.begin(), text.end(), bytes.begin() + begin))
            continue;
        while (begin > from && bytes.at(begin - 1) == ' ')
            --begin;
        return begin;
    }
    return -1;
}

bool isInk(char byte)
{
    return static_cast<unsigned char>(byte) > ' ';
}

bool hasText(const QByteArray &line)
{
    return std::any_of(line.begin(), line.end(), isInk);
}

bool containsOne(const QByteArrayList &texts, const QByteArray &line)
{
    return std::any_of(texts.begin(), texts.end(), [&line](const QByteArray &text) { return line.contains(text); });
}

} // namespace bll
} // namespace ovra
