#include "language.h"

#include <QtCore/QLocale>

namespace {

constexpr Text kUnknownLanguage{"--lang takes zh or en, not '%1'", "--lang 只能是 zh 或 en，不能是“%1”"};

} // namespace

QString inLanguage(const Text &text, Language language, const QStringList &values)
{
    const QString pattern = QString::fromUtf8(language == Language::Chinese ? text.chinese : text.english);
    return values.isEmpty() ? pattern : filledIn(pattern, values);
}

QString filledIn(const QString &pattern, const QStringList &values)
{
    QString filled;
    for (int i = 0; i < pattern.size(); ++i) {
        const bool isPlace = pattern[i] == QLatin1Char('%') && i + 1 < pattern.size();
        const int number = isPlace ? pattern[i + 1].digitValue() : -1;
        if (number < 1 || number > values.size()) {
            filled += pattern[i];
            continue;
        }
        filled += values[number - 1];
        ++i;
    }
    return filled;
}

bool parseLanguage(const QString &code, Language &language)
{
    if (code == QLatin1String("zh"))
        language = Language::Chinese;
    else if (code == QLatin1String("en"))
        language = Language::English;
    else
        return false;
    return true;
}

Language systemLanguage()
{
    return QLocale::system().language() == QLocale::Chinese ? Language::Chinese : Language::English;
}

QString languageError(const QString &value, Language language)
{
    return inLanguage(kUnknownLanguage, language, {value});
}
