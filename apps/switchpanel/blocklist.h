// Blocks of console bytes, for people to read before they are sent.
#pragma once

#include "language.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonArray>
#include <QtCore/QStringList>

#include <vector>

//! What goes to the switch at once, under the name by which the queue knows it.
struct CommandBlock
{
    QString label;
    QByteArray bytes;
};

//! One line per line that is sent, each byte visible: "system-view\r\n", and "space" for the key that turns the pages.
QStringList blockLines(const std::vector<CommandBlock> &blocks, Language language);

//! The same exactly, as label and text.
QJsonArray blocksJson(const std::vector<CommandBlock> &blocks);

//! Bytes as a C string literal would hold them; UTF-8 text beyond ASCII stays readable.
QString visibleBytes(const QByteArray &bytes);
