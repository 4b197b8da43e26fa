#include "commandline.h"

#include "texttable.h"

#include <algorithm>

namespace {

constexpr Text kUnknownOption{"unknown option: %1", "未知选项：%1"};
constexpr Text kMissingValue{"%1 needs a value: %2", "%1 缺少参数：%2"};
constexpr Text kSuperfluousValue{"%1 takes no value", "%1 不带参数"};
constexpr Text kTwice{"%1 is given twice", "%1 重复出现"};

const Option *findOption(const std::vector<Option> &options, const QString &name)
{
    const auto found = std::find_if(options.begin(), options.end(),
                                    [&name](const Option &option) { return name == QLatin1String(option.name); });
    return found == options.end() ? nullptr : &*found;
}

//! Goes through the words of one command line.
class ArgumentReader
{
public:
    ArgumentReader(const QStringList &words, const std::vector<Option> &options, Language language)
        : _words(words)
        , _options(options)
        , _language(language)
    {}

    Arguments read();

private:
    void readOption(const QString &word);
    void store(const Option &option, const QString &word, const QString &value);
    void fail(const Text &text, const QStringList &values) { _arguments.error = inLanguage(text, _language, values); }

    const QStringList &_words;
    const std::vector<Option> &_options;
    Language _language;
    int _next = 0;
    Arguments _arguments;
};

Arguments ArgumentReader::read()
{
    bool isOptionsEnd = false;
    while (_next < _words.size() && _arguments.error.isEmpty()) {
        const QString word = _words[_next++];
        if (isOptionsEnd || !word.startsWith(QLatin1Char('-')) || word == QLatin1String("-"))
            _arguments.operands.append(word);
        else if (word == QLatin1String("--"))
            isOptionsEnd = true;
        else
            readOption(word == QLatin1String("-h") ? QStringLiteral("--help") : word);
    }
    return _arguments;
}

void ArgumentReader::readOption(const QString &word)
{
    const QString name = word.section(QLatin1Char('='), 0, 0);
    const bool hasValue = word.contains(QLatin1Char('='));
    const Option *option = name.startsWith(QLatin1String("--")) ? findOption(_options, name.mid(2)) : nullptr;
    if (!option)
        return fail(kUnknownOption, {name});
    if (!option->value) {
        if (hasValue)
            return fail(kSuperfluousValue, {name});
        return store(*option, name, QString());
    }
    if (hasValue)
        return store(*option, name, word.section(QLatin1Char('='), 1));
    if (_next == _words.size())
        return fail(kMissingValue, {name, QLatin1String(option->value)});
    store(*option, name, _words[_next++]);
}

void ArgumentReader::store(const Option &option, const QString &word, const QString &value)
{
    if (_arguments.has(option.name))
        return fail(kTwice, {word});
    _arguments.options.insert(QLatin1String(option.name), value);
}

} // namespace

Arguments parseArguments(const QStringList &words, const std::vector<Option> &options, Language language)
{
    return ArgumentReader(words, options, language).read();
}

QStringList optionLines(const std::vector<Option> &options, Language language)
{
    TextTable table(2);
    for (const Option &option : options) {
        QString usage = QStringLiteral("--") + QLatin1String(option.name);
        if (option.value)
            usage += QLatin1Char(' ') + QLatin1String(option.value);
        table.addRow({{usage}, {inLanguage(option.description, language)}});
    }
    return table.lines(Painter(false));
}

Language languageAskedFor(const QStringList &words, Language fallback)
{
    const QString option = QStringLiteral("--lang");
    Language language = fallback;
    for (int i = 0; i < words.size(); ++i) {
        if (words[i] == QLatin1String("--"))
            break;
        if (words[i] == option && i + 1 < words.size())
            parseLanguage(words[i + 1], language);
        else if (words[i].startsWith(option + QLatin1Char('=')))
            parseLanguage(words[i].mid(option.size() + 1), language);
    }
    return language;
}
