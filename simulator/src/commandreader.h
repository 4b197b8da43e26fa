#pragma once

#include "commandgrammar.h"
#include "interfacenames.h"

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>

#include <cstddef>
#include <vector>

namespace simulator {

/// A word of a typed line.
struct Token
{
    QByteArray text;
    int column;
};

using Tokens = std::vector<Token>;

Tokens splitLine(const QByteArray &line);

/// A word or placeholder of a pattern.
struct PatternElement
{
    enum class Kind { Words, Number, Word, Rest, Interface, Ports, Vlans };

    Kind kind = Kind::Words;
    QByteArrayList words;   ///< of a choice: more than one
    int low = 0, high = 0;  ///< of a number
    QByteArray placeholder; ///< as the pattern has it
};

PatternElement readPatternElement(const QByteArray &text);

/// What reading a placeholder came to: the token behind it, or the one that is to blame.
struct Reading
{
    enum class Status { Read, Wrong, Unrecognized, Incomplete } status = Status::Read;
    std::size_t token = 0;
};

/// Reads what was typed for the placeholders of a pattern.
class CommandReader
{
public:
    /// All outlive this object.
    CommandReader(const QByteArray &line, const Tokens &tokens, const InterfaceNames &names);

    Reading read(const PatternElement &element, std::size_t at, Arguments *arguments) const;

private:
    bool isWord(std::size_t at, const char *word) const;
    Reading readNumber(const PatternElement &element, std::size_t at, Arguments *arguments) const;
    Reading readInterface(std::size_t at, const InterfaceType *implied, Arguments *arguments) const;
    Reading readPorts(std::size_t at, Arguments *arguments) const;
    Reading readPortRange(std::size_t at, Arguments *arguments) const;
    Reading appendRange(const std::vector<InterfaceId> &ends, std::size_t blame, std::size_t behind,
                        Arguments *arguments) const;
    Reading readVlans(std::size_t at, Arguments *arguments) const;
    Reading readVlanRange(std::size_t at, Arguments *arguments) const;

    const QByteArray &_line;
    const Tokens &_tokens;
    const InterfaceNames &_names;
};

} // namespace simulator
