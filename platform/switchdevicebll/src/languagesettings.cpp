#include "languagesettings.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>
#include <QtCore/QStringList>

#include <optional>

namespace languagesettings {

namespace {

constexpr qint64 kLargestFile = 65536;
const QString kSection = QStringLiteral("[language]");
const QString kKey = QStringLiteral("code");

// Where the value stands in the lines of the file, or where its section begins.
struct Place
{
    int section = -1;
    int value = -1;
};

QString keyOf(const QString &line)
{
    return line.left(line.indexOf(QLatin1Char('='))).trimmed();
}

Place findPlace(const QStringList &lines)
{
    Place place;
    bool inSection = false;
    for (int i = 0; i < lines.size(); ++i) {
        const QString line = lines.at(i).trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            inSection = line.compare(kSection, Qt::CaseInsensitive) == 0;
            if (inSection)
                place.section = i;
        } else if (inSection && line.contains(QLatin1Char('=')) && keyOf(line) == kKey) {
            place.value = i;
        }
    }
    return place;
}

std::optional<QStringList> readLines(const QString &path)
{
    QFile file(path);
    // One byte more than allowed tells too large a file, and is all that is read of an endless one.
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.read(kLargestFile + 1);
    if (bytes.size() > kLargestFile)
        return std::nullopt;
    QStringList lines = QString::fromUtf8(bytes).remove(QLatin1Char('\r')).split(QLatin1Char('\n'));
    if (lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

QString unquoted(const QString &text)
{
    const bool quoted = text.size() >= 2 && text.startsWith(QLatin1Char('"')) && text.endsWith(QLatin1Char('"'));
    return quoted ? text.mid(1, text.size() - 2) : text;
}

void setValue(QStringList &lines, const QString &code)
{
    const QString line = kKey + QLatin1Char('=') + code;
    const Place place = findPlace(lines);
    if (place.value >= 0)
        lines[place.value] = line;
    else if (place.section >= 0)
        lines.insert(place.section + 1, line);
    else
        lines << kSection << line;
}

} // namespace

QString read(const QString &path)
{
    const QStringList lines = readLines(path).value_or(QStringList());
    const int index = findPlace(lines).value;
    if (index < 0)
        return {};
    const QString &line = lines.at(index);
    return unquoted(line.mid(line.indexOf(QLatin1Char('=')) + 1).trimmed());
}

bool write(const QString &path, const QString &code, QString *error)
{
    QStringList lines;
    if (QFileInfo::exists(path)) {
        const std::optional<QStringList> present = readLines(path);
        if (!present) { // replacing it would destroy settings of others
            *error = QStringLiteral("%1 exists but cannot be read").arg(path);
            return false;
        }
        lines = *present;
    }
    setValue(lines, code);

    QSaveFile file(path);
    const QByteArray bytes = lines.join(QLatin1Char('\n')).toUtf8() + '\n';
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit())
        return true;
    *error = QStringLiteral("%1 cannot be written: %2").arg(path, file.errorString());
    return false;
}

} // namespace languagesettings
