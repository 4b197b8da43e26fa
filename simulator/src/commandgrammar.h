#pragma once

#include "interfacenames.h"

#include <simulator/switchstate.h>

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <vector>

namespace simulator {

class ConsoleSession;

/// What a command line gave for the placeholders of its pattern, in order within each kind.
struct Arguments
{
    bool undo = false;    ///< the line begins with the word undo
    QByteArray line;      ///< the command with its keywords written out
    QByteArrayList words; ///< choices written out, words, rests of lines
    std::vector<int> numbers;
    std::vector<InterfaceId> interfaces;
    VlanSet vlans;
};

/// The views as bits, so that a command can belong to several.
enum View : unsigned {
    kUserView = 1U << 0U,
    kSystemView = 1U << 1U,
    kPortView = 1U << 2U,
    kGroupView = 1U << 3U, ///< several ports
    kVlanView = 1U << 4U,
    kTrunkView = 1U << 5U,
    kVlanInterfaceView = 1U << 6U,
    kManagementView = 1U << 7U,
    kSectionView = 1U << 8U, ///< of an OtherSection
    kSnoopingView = 1U << 9U,
    kGroupDefinitionView = 1U << 10U, ///< a group that its members are still to be named for
    kAnyView = ~0U
};

constexpr unsigned kInterfaceViews = kPortView | kTrunkView | kVlanInterfaceView | kManagementView;
constexpr unsigned kBridgedViews = kPortView | kTrunkView;
constexpr unsigned kNoUserView = kAnyView & ~static_cast<unsigned>(kUserView);

/// Levels of users. Each may do what those below it may.
enum UserLevel : int { kVisit, kMonitor, kConfigure, kManage };

/// A command: where it can be typed, by whom, how it is written, what it does.
///
/// Pattern: words separated by blanks. `a|b` is a choice, `[…]` may be left out (with all that is in it), and the
/// placeholders are <1-64> (a number), <word>, <rest> (the rest of the line), <interface>, <ports> (ports and ranges `A
/// to B`), <vlans> (`2 5 to 9`).
struct CommandRow
{
    unsigned views;
    int level;
    const char *pattern;
    void (*run)(ConsoleSession &, const Arguments &);
};

template<std::size_t size>
void append(std::vector<CommandRow> &rows, const CommandRow (&more)[size])
{
    // Not insert(): at -O3 GCC 12 believes that it writes beyond the vector.
    std::copy(std::begin(more), std::end(more), std::back_inserter(rows));
}

struct CommandMatch
{
    enum class Status { Complete, Unrecognized, Incomplete, TooMany, Wrong, Ambiguous };

    Status status = Status::Unrecognized;
    int column = 0; ///< of the sign that is to blame, in the typed line
    const CommandRow *row = nullptr;
    Arguments arguments;
};

/// The commands of a dialect, read once.
class CommandGrammar
{
public:
    explicit CommandGrammar(const std::vector<CommandRow> &rows);
    ~CommandGrammar();
    CommandGrammar(const CommandGrammar &) = delete;
    CommandGrammar &operator=(const CommandGrammar &) = delete;

    /// Finds the command that a line means in one of the views; those of earlier rows come first.
    CommandMatch match(const QByteArray &line, unsigned views, const InterfaceNames &names) const;

    /// What can stand where the line ends: words, placeholders, "<cr>". For a line that ends inside a word, the words
    /// that begin with it.
    QByteArrayList expected(const QByteArray &line, unsigned views, const InterfaceNames &names) const;

private:
    struct Pattern;
    struct Walk;
    std::vector<std::unique_ptr<Pattern>> _patterns;
};

} // namespace simulator
