#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// Runs the built program as a user would, with pipes for its output.
struct ProgramRun
{
    int exitStatus = -1; ///< -1: it crashed or did not end in time
    QString output;
    QString errors;

    QStringList outputLines() const;
    bool printed(const QString &line) const; ///< a whole line of the output, blanks at its ends aside
};

/// `environment` holds "NAME=value" entries that replace those of the test.
ProgramRun runSwitchpanel(const QStringList &arguments, const QStringList &environment = {});

/// Path of the built program.
QString switchpanelProgram();

/// Path of a file in samples/.
QString samplePath(const QString &name);
