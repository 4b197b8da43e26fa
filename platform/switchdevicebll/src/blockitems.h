#pragma once

#include <QtCore/QByteArray>

#include <deque>

namespace ovra {
namespace bll {

/// One piece of a block of commands.
struct BlockItem
{
    enum class Kind {
        Line,   // typed and ended with Enter
        Paging, // the same, but the caller turns the pager's pages with it: blanks and nothing else
        PageKey // the word "space": turns the pages of the line before it, and is never typed as text
    };

    Kind kind = Kind::Line;
    QByteArray text; // without its end

    /// A line that answers a question and means nothing anywhere else.
    bool isYesOrNo() const;
    /// A line that may answer a question: yes, no, or just Enter.
    bool isAnswer() const;
};

/// Takes a block apart. Lines end with CR LF (a single CR or LF is taken for the same); text behind the last one is a
/// line like the others.
std::deque<BlockItem> itemsOf(const QByteArray &block);

} // namespace bll
} // namespace ovra
