#include "blocklist.h"

#include <QtCore/QJsonObject>

namespace {

constexpr Text kHeading{"%1. %2 (%3 bytes)", "%1. %2（%3字节）"};

QString visible(QChar character)
{
    constexpr ushort kFirstPrintable = 0x20;
    constexpr ushort kDelete = 0x7f;
    switch (character.unicode()) {
    case '\r':
        return QStringLiteral("\\r");
    case '\n':
        return QStringLiteral("\\n");
    case '\\':
        return QStringLiteral("\\\\");
    default:
        break;
    }
    const bool isControl = character.unicode() < kFirstPrintable || character.unicode() == kDelete;
    return isControl ? QStringLiteral("\\x%1").arg(character.unicode(), 2, 16, QLatin1Char('0')) : QString(character);
}

} // namespace

QString visibleBytes(const QByteArray &bytes)
{
    QString text;
    for (const QChar character : QString::fromUtf8(bytes))
        text += visible(character);
    return text;
}

QStringList blockLines(const std::vector<CommandBlock> &blocks, Language language)
{
    QStringList lines;
    int number = 0;
    for (const CommandBlock &block : blocks) {
        lines += inLanguage(kHeading, language,
                            {QString::number(++number), block.label, QString::number(block.bytes.size())});
        for (int begin = 0; begin < block.bytes.size();) {
            const int lineEnd = block.bytes.indexOf('\n', begin);
            const int end = lineEnd < 0 ? block.bytes.size() : lineEnd + 1;
            lines += QStringLiteral("   ") + visibleBytes(block.bytes.mid(begin, end - begin));
            begin = end;
        }
    }
    return lines;
}

QJsonArray blocksJson(const std::vector<CommandBlock> &blocks)
{
    QJsonArray array;
    for (const CommandBlock &block : blocks) {
        array.append(QJsonObject{{QStringLiteral("label"), block.label},
                                 {QStringLiteral("bytes"), QString::fromUtf8(block.bytes)}});
    }
    return array;
}
