#include "userio.h"

#include "console.h"
#include "texttable.h"

ExitStatus printLines(const QStringList &lines)
{
    const QString text = lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
    return console::write(console::Stream::Output, text) ? ExitStatus::Done : ExitStatus::Failed;
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

bool hasColours()
{
    return console::hasEscapes(console::Stream::Output) && qEnvironmentVariableIsEmpty("NO_COLOR");
}
