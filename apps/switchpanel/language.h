// The two languages of the program and the form in which its own texts are written down.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

enum class Language { English, Chinese };

//! One text of the program in both languages, UTF-8. Places to fill in are written %1, %2, …
struct Text
{
    const char *english;
    const char *chinese;
};

//! The text in the language, with %1, %2, … replaced by the values in one pass: a value that holds "%1" itself stays as
//! it is.
QString inLanguage(const Text &text, Language language, const QStringList &values = {});

//! Replaces %1 to %9 by the values, in one pass; a number without a value stays.
QString filledIn(const QString &pattern, const QStringList &values);

//! "zh" and "en" as --lang takes them; false for anything else, which leaves the language as it is.
bool parseLanguage(const QString &code, Language &language);

//! Chinese where the system's locale is any Chinese one, otherwise English.
Language systemLanguage();

//! What is wrong with this value of --lang.
QString languageError(const QString &value, Language language);
