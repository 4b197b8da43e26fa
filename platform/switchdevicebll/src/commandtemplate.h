#pragma once

#include "devicevalues.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>
#include <vector>

namespace ovra {
namespace bll {

/// What may be done with a value of the panel in a description.
///
/// | kind     | in a line                                | in a choice                          | in a repetition |
/// |----------|------------------------------------------|--------------------------------------|-----------------|
/// | Number   | {vlan}                                   |                                      |                 |
/// | Joiner   | {snooping-joiner}                        |                                      |                 |
/// | Word     |                                          | the word                             |                 |
/// | Ports    | {down-ports.first}, .last: port names;   | "single" or "several"                | each port       |
/// |          | .first-number, .last-number: "0/0/5"     |                                      |                 |
/// | Port     | {poe-port}                               | "", "all", or the full type          |                 |
/// | PortList |                                          |                                      | each port       |
///
/// Words only ever choose between lines that stand in the description; they reach no line themselves.
enum class ValueKind { Number, Joiner, Word, Ports, Port, PortList };

/// A value of the panel: its name in descriptions, what messages call it (in Chinese, to be translated), and where it
/// is kept.
struct ValueSpec
{
    QString name;
    QString label;
    ValueKind kind = ValueKind::Word;
    PortRange bounds;                                        // Number: no description may allow more
    QStringList choices;                                     // Word, Ports: what there is to choose by
    std::optional<int> DeviceValues::*number = nullptr;      // Number
    QString DeviceValues::*text = nullptr;                   // Joiner, Word, Port; Ports: the interface type
    std::optional<PortRange> DeviceValues::*ports = nullptr; // Ports
};

/// Null when there is no such value.
const ValueSpec *findValue(const QString &name);

/// The bounds that a description may narrow: those of a number, or those of a port number for "port".
std::optional<PortRange> boundsOf(const QString &name);

struct Placeholder
{
    enum class Part { Whole, First, Last, FirstNumber, LastNumber, Each };

    const ValueSpec *value = nullptr; // null for Each: the port of the repetition
    Part part = Part::Whole;
    std::optional<int> fallback; // Number: what stands there as long as nothing was set, {vlan:1}
};

/// A text and the placeholder behind it, if there is one.
struct LineSegment
{
    QString text;
    std::optional<Placeholder> placeholder;
};

using LineTemplate = std::vector<LineSegment>;

struct CommandNode;
using CommandList = std::vector<CommandNode>;

struct CommandBranch
{
    QString is;
    CommandList commands;
};

/// One item of a block: a line, a page key, a choice by a value, or a repetition over ports.
struct CommandNode
{
    enum class Kind { Line, PageKey, Choice, Repetition };

    Kind kind = Kind::Line;
    LineTemplate line;                    // Line
    const ValueSpec *value = nullptr;     // Choice, Repetition
    std::vector<CommandBranch> branches;  // Choice
    std::optional<CommandList> otherwise; // Choice
    CommandList repeated;                 // Repetition
};

/// Where a line stands, for what it may use.
struct CommandScope
{
    bool isRepeated = false; // {port} has a meaning
    bool hasJoiner = false;  // the description says what joins the snooping words where nothing was set
};

struct ParsedLine
{
    LineTemplate line;
    QString error; // a sentence, or empty
};

/// Takes a line of a description apart. Placeholders stand in braces; everything else goes to the switch as it is.
ParsedLine parseLine(const QString &text, const CommandScope &scope);

/// The page key in a command list: the panel writes it without a line end, and so it would any command that contains
/// the word. No line of a description may.
QString pageKey();

} // namespace bll
} // namespace ovra
