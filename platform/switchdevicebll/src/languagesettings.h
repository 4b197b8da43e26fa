#pragma once

#include <QtCore/QString>

/// The one value that we keep in an ini file. Not QSettings: it would interpret what a damaged file holds as serialised
/// objects, and the file may contain nothing that we would trust.
namespace languagesettings {

/// The value of `code` in the section `[language]`, without blanks and quotes around it; empty when the file cannot be
/// read, is larger than 64 KiB, or does not have it. The last of several counts. Any text may come back.
QString read(const QString &path);

/// Sets that value and keeps every other line. The file is replaced as a whole or not at all. False with a sentence in
/// `error`.
bool write(const QString &path, const QString &code, QString *error);

} // namespace languagesettings
