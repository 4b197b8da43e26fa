#include "blockitems.h"

#include <algorithm>

namespace ovra {
namespace bll {

namespace {

bool isBlank(const QByteArray &text)
{
    return std::all_of(text.begin(), text.end(), [](char character) { return character == ' '; });
}

BlockItem itemOf(const QByteArray &text)
{
    if (text == "space")
        return {BlockItem::Kind::PageKey, {}};
    if (!text.isEmpty() && isBlank(text))
        return {BlockItem::Kind::Paging, text};
    return {BlockItem::Kind::Line, text};
}

} // namespace

bool BlockItem::isYesOrNo() const
{
    const QByteArray word = text.toUpper();
    return kind == Kind::Line && (word == "Y" || word == "N");
}

bool BlockItem::isAnswer() const
{
    return isYesOrNo() || (kind == Kind::Line && text.isEmpty());
}

std::deque<BlockItem> itemsOf(const QByteArray &block)
{
    std::deque<BlockItem> items;
    int begin = 0;
    for (int at = 0; at < block.size(); ++at) {
        const char character = block.at(at);
        if (character != '\r' && character != '\n')
            continue;
        items.push_back(itemOf(block.mid(begin, at - begin)));
        if (character == '\r' && at + 1 < block.size() && block.at(at + 1) == '\n')
            ++at;
        begin = at + 1;
    }
    if (begin < block.size())
        items.push_back(itemOf(block.mid(begin)));
    return items;
}

} // namespace bll
} // namespace ovra
