#include "exporttargets.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

namespace {

constexpr Text kEmpty{"--%1 needs the name of a file or folder", "--%1 需要文件名或文件夹名"};
constexpr Text kFolderNeeded{"with several captures --%1 needs an existing folder, which '%2' is not",
                             "分析多个抓包文件时，--%1 需要一个已存在的文件夹，而“%2”不是"};
constexpr Text kSameName{"--%1: two captures are named '%2' and would go to the same file",
                         "--%1：有两个抓包文件同名（%2），会写入同一个文件"};
constexpr Text kOverwrites{"--%1 would overwrite the capture '%2'", "--%1 会覆盖抓包文件“%2”"};

bool isSameFile(const QString &one, const QString &other)
{
    // Equal only where both exist; a file that is yet to be written overwrites nothing.
    return QFileInfo(one).exists() && QFileInfo(one) == QFileInfo(other);
}

ExportTargets refused(const Text &text, Language language, const QStringList &values)
{
    return {{}, inLanguage(text, language, values)};
}

} // namespace

ExportTargets exportTargets(const char *option, const QString &out, const QString &suffix, const QStringList &captures,
                            Language language)
{
    const QString name = QLatin1String(option);
    const bool isFolder = QFileInfo(out).isDir();
    if (out.isEmpty())
        return refused(kEmpty, language, {name});
    if (captures.size() > 1 && !isFolder)
        return refused(kFolderNeeded, language, {name, out});

    ExportTargets targets;
    for (const QString &capture : captures) {
        const QString fileName = QFileInfo(capture).fileName();
        const QString path = isFolder ? QDir(out).filePath(fileName + suffix) : out;
        if (targets.paths.contains(path, Qt::CaseInsensitive))
            return refused(kSameName, language, {name, fileName});
        targets.paths.append(path);
    }
    for (const QString &path : targets.paths) {
        for (const QString &capture : captures) {
            if (isSameFile(path, capture))
                return refused(kOverwrites, language, {name, capture});
        }
    }
    return targets;
}
