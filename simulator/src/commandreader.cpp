#include "commandreader.h"

#include "text.h"
#include "vlanlist.h"

#include <array>
#include <utility>

namespace simulator {

namespace {

using Kind = PatternElement::Kind;
using Status = Reading::Status;

// Qt's own conversion accepts signs.
bool isNumber(const QByteArray &text, int low, int high, int *value)
{
    bool ok = false;
    *value = text.toInt(&ok);
    return ok && text[0] >= '0' && text[0] <= '9' && *value >= low && *value <= high;
}

} // namespace

Tokens splitLine(const QByteArray &line)
{
    Tokens tokens;
    for (int i = 0; i < line.size();) {
        if (line[i] == ' ') {
            ++i;
            continue;
        }
        int end = i;
        while (end < line.size() && line[end] != ' ')
            ++end;
        tokens.push_back({line.mid(i, end - i), i});
        i = end;
    }
    return tokens;
}

PatternElement readPatternElement(const QByteArray &text)
{
    static const std::array<std::pair<const char *, Kind>, 5> kPlaceholders{{{"<word>", Kind::Word},
                                                                             {"<rest>", Kind::Rest},
                                                                             {"<interface>", Kind::Interface},
                                                                             {"<ports>", Kind::Ports},
                                                                             {"<vlans>", Kind::Vlans}}};
    if (!text.startsWith('<'))
        return {Kind::Words, text.split('|'), 0, 0, {}};
    for (const auto &placeholder : kPlaceholders) {
        if (text == placeholder.first)
            return {placeholder.second, {}, 0, 0, text};
    }
    const QByteArrayList limits = text.mid(1, text.size() - 2).split('-');
    return {Kind::Number, {}, limits.first().toInt(), limits.last().toInt(), text};
}

CommandReader::CommandReader(const QByteArray &line, const Tokens &tokens, const InterfaceNames &names)
    : _line(line)
    , _tokens(tokens)
    , _names(names)
{}

Reading CommandReader::read(const PatternElement &element, std::size_t at, Arguments *arguments) const
{
    switch (element.kind) {
    case Kind::Words:
        return {Status::Unrecognized, at};
    case Kind::Number:
        return readNumber(element, at, arguments);
    case Kind::Word:
        arguments->words << _tokens[at].text;
        return {Status::Read, at + 1};
    case Kind::Rest:
        arguments->words << _line.mid(_tokens[at].column).trimmed();
        return {Status::Read, _tokens.size()};
    case Kind::Interface:
        return readInterface(at, nullptr, arguments);
    case Kind::Ports:
        return readPorts(at, arguments);
    case Kind::Vlans:
        return readVlans(at, arguments);
    }
    return {};
}

bool CommandReader::isWord(std::size_t at, const char *word) const
{
    return at < _tokens.size() && isBeginning(_tokens[at].text, word);
}

Reading CommandReader::readNumber(const PatternElement &element, std::size_t at, Arguments *arguments) const
{
    int value = 0;
    if (!isNumber(_tokens[at].text, element.low, element.high, &value))
        return {Status::Wrong, at};
    arguments->numbers.push_back(value);
    return {Status::Read, at + 1};
}

// `implied` is the type of a number that stands alone, as behind `to`.
Reading CommandReader::readInterface(std::size_t at, const InterfaceType *implied, Arguments *arguments) const
{
    const auto parts = splitInterfaceName(_tokens[at].text);
    const InterfaceType *const type = parts.first.isEmpty() ? implied : _names.findType(parts.first);
    if (!type)
        return {Status::Unrecognized, at};
    const std::size_t numberAt = parts.second.isEmpty() ? at + 1 : at;
    if (numberAt == _tokens.size())
        return {Status::Incomplete, numberAt};
    const auto found = _names.find(*type, parts.second.isEmpty() ? _tokens[numberAt].text : parts.second);
    if (!found)
        return {Status::Wrong, numberAt};
    arguments->interfaces.push_back(*found);
    return {Status::Read, numberAt + 1};
}

Reading CommandReader::readPorts(std::size_t at, Arguments *arguments) const
{
    while (at < _tokens.size()) {
        const Reading reading = readPortRange(at, arguments);
        if (reading.status != Status::Read)
            return reading;
        at = reading.token;
    }
    return {Status::Read, at};
}

Reading CommandReader::readPortRange(std::size_t at, Arguments *arguments) const
{
    Arguments ends;
    const Reading first = readInterface(at, nullptr, &ends);
    if (first.status != Status::Read)
        return first;
    if (!_names.portIndex(ends.interfaces.front()))
        return {Status::Wrong, at};
    if (!isWord(first.token, "to")) {
        arguments->interfaces.push_back(ends.interfaces.front());
        return first;
    }
    if (first.token + 1 == _tokens.size())
        return {Status::Incomplete, first.token + 1};
    const Reading last = readInterface(first.token + 1, _names.type(ends.interfaces.front().kind), &ends);
    if (last.status != Status::Read)
        return last;
    return appendRange(ends.interfaces, first.token + 1, last.token, arguments);
}

Reading CommandReader::appendRange(const std::vector<InterfaceId> &ends, std::size_t blame, std::size_t behind,
                                   Arguments *arguments) const
{
    const auto first = _names.portIndex(ends.front()), last = _names.portIndex(ends.back());
    if (!first || !last || ends.front().kind != ends.back().kind || *first > *last)
        return {Status::Wrong, blame};
    for (std::size_t port = *first; port <= *last; ++port)
        arguments->interfaces.push_back(_names.id(port));
    return {Status::Read, behind};
}

Reading CommandReader::readVlans(std::size_t at, Arguments *arguments) const
{
    if (isSame(_tokens[at].text, "all")) {
        arguments->vlans = allVlans();
        return {Status::Read, at + 1};
    }
    while (at < _tokens.size()) {
        const Reading reading = readVlanRange(at, arguments);
        if (reading.status != Status::Read)
            return reading;
        at = reading.token;
    }
    return {Status::Read, at};
}

Reading CommandReader::readVlanRange(std::size_t at, Arguments *arguments) const
{
    int first = 0;
    if (!isNumber(_tokens[at].text, 1, kLastVlan, &first))
        return {Status::Wrong, at};
    int last = first;
    if (isWord(at + 1, "to")) {
        at += 2;
        if (at == _tokens.size())
            return {Status::Incomplete, at};
        if (!isNumber(_tokens[at].text, first, kLastVlan, &last))
            return {Status::Wrong, at};
    }
    for (int vlan = first; vlan <= last; ++vlan)
        arguments->vlans.set(static_cast<std::size_t>(vlan));
    return {Status::Read, at + 1};
}

} // namespace simulator
