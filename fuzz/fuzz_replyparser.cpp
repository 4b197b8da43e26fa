// Hostile console replies through every section of the reply parsers, and the line patterns against their engines.
#include "hua3replyparser.h"
#include "huaweireplyparser.h"
#include "linepattern.h"

#include <QtCore/QRegExp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <regex>
#include <string>
#include <vector>

namespace {

using reply::LinePattern;
using reply::ReplyText;

constexpr qsizetype kEngineLine = 128; // the engines are slow, or recurse, on longer ones
constexpr std::size_t kEngineLines = 8;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

const InterfaceNamingProfile &namingOf(std::uint8_t choice)
{
    switch (choice % 3) {
    case 0:
        return huaweiNaming();
    case 1:
        return hua3Naming();
    default:
        return huaweiSubModelNaming();
    }
}

void checkEffects(const ReplyText &text, const reply::Effects &effects)
{
    for (const reply::Effect &effect : effects) {
        const bool isEveryLine =
            effect.kind == reply::Effect::Kind::InfoEveryLine || effect.kind == reply::Effect::Kind::ResultEveryLine;
        require(!isEveryLine || effect.text.isNull());
        require(effect.text.size() <= text.text().size() + 100);      // constants are shorter than that
        require(effect.text.toString().size() == effect.text.size()); // reads every character
    }
}

void checkInventory(const ReplyText &text, const std::optional<reply::PortInventory> &inventory)
{
    if (!inventory)
        return;
    const auto lines = text.lines().size();
    require(static_cast<std::size_t>(inventory->downPorts.size()) <= 2 * lines);
    require(static_cast<std::size_t>(inventory->upPorts.size()) <= lines);
    require(inventory->slot >= 0 && inventory->up.maximum >= 0 && inventory->down.maximum >= 0);
}

void checkHuaweiSections(const ReplyText &text, const InterfaceNamingProfile &naming)
{
    for (const auto section :
         {reply::readMulticastTable, reply::readMorePages, reply::readIpConflicts, reply::readOpticalPorts,
          reply::readVlanListing, reply::readPoePower, reply::readInterfaceView, reply::readIgmpConfiguration})
        checkEffects(text, section(text));
    if (const auto state = readAutoNegotiation(text, naming, QStringLiteral("g0/0/1")))
        require(state->port == QLatin1String("1"));
    require(readLoginPrompt(text, true) != reply::LoginPrompt::Ready);
    readLoginPrompt(text, false);
}

void checkHua3Sections(const ReplyText &text)
{
    for (const auto section : {reply::readHua3MulticastTable, reply::readHua3IpConflicts, reply::readHua3PortStatus,
                               reply::readHua3VlanSummary, reply::readHua3Snooping, reply::readHua3Querier,
                               reply::readHua3LinkAggregation, reply::readHua3PoeInterfaces, reply::readHua3PoeUsage,
                               reply::readHua3ForwardingTable, reply::readHua3OpticalPorts})
    {
        const reply::Effects effects = section(text);
        checkEffects(text, effects);
        require(effects.size() <= 2 * text.lines().size() + 2);
    }
    if (const auto groups = readHua3MirroringGroups(text))
        require(groups->isEmpty() || groups->endsWith(QLatin1Char('\n')));
    require(readHua3LoginPrompt(text, true) != reply::LoginPrompt::Ready);
    readHua3LoginPrompt(text, false);
}

void checkSharedSections(const ReplyText &text, const InterfaceNamingProfile &naming)
{
    if (const auto mirrored = readPortMirroring(text, naming))
        require(mirrored->size() <= text.lines().size());
    for (const reply::TransceiverNote &note : readTransceivers(text, naming).logged)
        require(!note.isEmpty());
}

//! A pattern for both of its readers.
struct QtPattern
{
    explicit QtPattern(const QString &pattern)
        : ours(pattern, LinePattern::Dialect::QtRegExp)
        , engine(pattern)
    {}

    void compareOn(const QString &line) const
    {
        const auto match = ours.firstMatch(line);
        require(match.has_value() == (engine.indexIn(line) >= 0));
        require(!match
                || (match->whole == engine.cap(0) && match->group1 == engine.cap(1) && match->group2 == engine.cap(2)));
    }

    LinePattern ours;
    QRegExp engine;
};

struct EcmaPattern
{
    explicit EcmaPattern(const QString &pattern)
        : ours(pattern, LinePattern::Dialect::EcmaScript)
        , engine(pattern.toStdString())
    {}

    void compareOn(const QString &line) const
    {
        const auto match = ours.firstMatch(line);
        const std::string bytes = line.toStdString();
        std::smatch found;
        require(match.has_value() == std::regex_search(bytes, found, engine));
        require(!match || match->group1 == QString::fromStdString(found.str(1)));
    }

    LinePattern ours;
    std::regex engine;
};

//! All patterns of one naming; compiled once, since an engine takes longer to compile one than to search a line.
struct Patterns
{
    explicit Patterns(const InterfaceNamingProfile &naming)
    {
        for (const QString &pattern : {naming.observePortPattern, naming.inboundPortPattern,
                                       naming.autoNegInterfacePattern, naming.downPortPattern, naming.upPortPattern})
            qt.emplace_back(pattern);
        for (const QString &pattern : {naming.downPortPattern, naming.upPortPattern})
            ecma.emplace_back(pattern);
    }

    std::vector<QtPattern> qt;
    std::vector<EcmaPattern> ecma;
};

const Patterns &patternsOf(std::uint8_t choice)
{
    static const Patterns patterns[] = {Patterns(namingOf(0)), Patterns(namingOf(1)), Patterns(namingOf(2))};
    return patterns[choice % 3];
}

void compareWithEngines(const ReplyText &text, const Patterns &patterns)
{
    std::size_t compared = 0;
    for (const reply::ReplyLine &line : text.lines()) {
        if (line.text.isEmpty() || line.text.size() > kEngineLine)
            continue;
        if (++compared > kEngineLines)
            return;
        const QString copy = line.text.toString();
        for (const QtPattern &pattern : patterns.qt)
            pattern.compareOn(copy);
        for (const EcmaPattern &pattern : patterns.ecma)
            pattern.compareOn(copy);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    // The first byte chooses the naming, so that a seed is a printable digit and the reply behind it.
    const std::uint8_t choice = data[0];
    const InterfaceNamingProfile &naming = namingOf(choice);
    const ReplyText text(QByteArray(reinterpret_cast<const char *>(data + 1), static_cast<int>(size - 1)));
    checkInventory(text, readHuaweiPorts(text, naming, choice % 2 == 1));
    checkInventory(text, readHua3Ports(text, naming, choice % 2 == 1));
    checkHuaweiSections(text, naming);
    checkHua3Sections(text);
    checkSharedSections(text, naming);
    compareWithEngines(text, patternsOf(choice));
    return 0;
}
