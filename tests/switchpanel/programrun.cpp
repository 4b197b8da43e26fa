#include "programrun.h"

#include <QtCore/QProcess>

#include <algorithm>

namespace {

constexpr int kEndMsecs = 60'000;

} // namespace

QStringList ProgramRun::outputLines() const
{
    return output.split(QLatin1Char('\n'));
}

bool ProgramRun::printed(const QString &line) const
{
    const QStringList lines = outputLines();
    return std::any_of(lines.cbegin(), lines.cend(),
                       [&line](const QString &printed) { return printed.trimmed() == line; });
}

ProgramRun runSwitchpanel(const QStringList &arguments, const QStringList &environment)
{
    QProcess process;
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.remove(QStringLiteral("QT_LOGGING_RULES"));
    for (const QString &entry : environment)
        variables.insert(entry.section(QLatin1Char('='), 0, 0), entry.section(QLatin1Char('='), 1));
    process.setProcessEnvironment(variables);
    process.start(switchpanelProgram(), arguments, QIODevice::ReadOnly);

    ProgramRun run;
    const bool hasEnded = process.waitForFinished(kEndMsecs) && process.exitStatus() == QProcess::NormalExit;
    run.exitStatus = hasEnded ? process.exitCode() : -1;
    run.output = QString::fromUtf8(process.readAllStandardOutput());
    run.errors = QString::fromUtf8(process.readAllStandardError());
    return run;
}

QString switchpanelProgram()
{
    return QStringLiteral(SWITCHPANEL_PROGRAM);
}

QString samplePath(const QString &name)
{
    return QStringLiteral(SWITCHPANEL_SAMPLES "/") + name;
}
