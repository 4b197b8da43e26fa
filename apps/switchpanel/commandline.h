// Command lines: options by table, so that parsing, --help and the manual page's test read the same list.
#pragma once

#include "language.h"

#include <QtCore/QMap>

#include <vector>

struct Option
{
    const char *name;  //!< without the dashes
    const char *value; //!< name of its value in the help, nullptr for a switch
    Text description;
};

//! What stands on a command line. With an error, the rest is what was read before it.
struct Arguments
{
    QMap<QString, QString> options; //!< value by name; a switch that is given has an empty value
    QStringList operands;
    QString error; //!< a sentence for the user, empty when all is well

    bool has(const char *name) const { return options.contains(QLatin1String(name)); }
    QString value(const char *name) const { return options.value(QLatin1String(name)); }
};

/*!
    Reads "--name", "--name value" and "--name=value" in any order, among operands; "--" ends the options. The word
   behind an option that takes a value is its value, whatever it looks like. "-h" stands for "--help". Unknown options,
   missing or superfluous values, and an option given twice are errors.
*/
Arguments parseArguments(const QStringList &words, const std::vector<Option> &options, Language language);

//! The options as lines of a help text.
QStringList optionLines(const std::vector<Option> &options, Language language);

//! The language that "--lang" asks for anywhere on the line, otherwise `fallback`: errors in the rest are told in it.
Language languageAskedFor(const QStringList &words, Language fallback);
