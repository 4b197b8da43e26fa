#include "commandblock.h"

#include <utility>

namespace {

constexpr char kPageKey[] = "space";

} // namespace

bool isPageKey(const QString &command)
{
    return command.contains(QLatin1String(kPageKey));
}

void appendCommands(QByteArray &block, const QStringList &commands, PageKeys pageKeys)
{
    for (const QString &command : commands) {
        block += command.toUtf8();
        if (pageKeys == PageKeys::AsLines || !isPageKey(command))
            block += kLineEnd;
    }
}

QByteArray commandBlock(const QStringList &commands, PageKeys pageKeys)
{
    QByteArray block;
    appendCommands(block, commands, pageKeys);
    return block;
}

ExportBlocks exportBlocks(const QStringList &commands)
{
    ExportBlocks blocks;
    for (const QString &command : commands) {
        if (command != QLatin1String(kPageKey))
            blocks.rest += command.toUtf8() + kLineEnd;
        else if (!blocks.rest.isEmpty())
            blocks.numbered.append(std::exchange(blocks.rest, QByteArray()) + kPageKey);
    }
    return blocks;
}
