// Command lists become the bytes of one block for the queue.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

inline constexpr char kLineEnd[] = "\r\n";

//! Whether the command holds the word "space", which stands for the key that turns a pager's page.
bool isPageKey(const QString &command);

//! Whether a page key goes out without a line end.
enum class PageKeys { AsLines, Bare };

//! Appends the commands in their order, as UTF-8, each with CR LF behind it unless it is a bare page key.
void appendCommands(QByteArray &block, const QStringList &commands, PageKeys pageKeys = PageKeys::AsLines);

QByteArray commandBlock(const QStringList &commands, PageKeys pageKeys = PageKeys::AsLines);

/*!
    The blocks of an export. Each element that is exactly "space" closes a block, with the word behind the block's
   lines; one without a line before it is dropped. What stands behind the last one is `rest`.
*/
struct ExportBlocks
{
    QList<QByteArray> numbered;
    QByteArray rest;
};
ExportBlocks exportBlocks(const QStringList &commands);
