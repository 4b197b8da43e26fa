#include "userio.h"

#include "console.h"
#include "texttable.h"

namespace {

constexpr Text kUnknownLanguage{"--lang takes zh or en, not '%1'", "--lang 只能是 zh 或 en，不能是“%1”"};

} // namespace

ExitStatus printLines(const QStringList &lines)
{
    const QString text = lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
    return console::write(console::Stream::Output, text) ? ExitStatus::Healthy : ExitStatus::Failed;
}

void printError(const QString &text)
{
    console::write(console::Stream::Error, QStringLiteral("switchpanel: ") + printable(text) + QLatin1Char('\n'));
}

ExitStatus failUsage(const QString &reason, const QString &advice)
{
    printError(reason);
    printError(advice);
    return ExitStatus::Failed;
}

QString languageError(const QString &value, Language language)
{
    return inLanguage(kUnknownLanguage, language, {value});
}
