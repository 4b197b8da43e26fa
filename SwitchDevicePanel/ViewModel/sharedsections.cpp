#include "sharedsections.h"

#include "linepattern.h"

namespace reply {

namespace {

using Kind = Effect::Kind;

//! The part between the first two ":"; null without one.
QStringView fieldBehindColon(QStringView line)
{
    const qsizetype colon = line.indexOf(QLatin1Char(':'));
    if (colon < 0)
        return {};
    const QStringView rest = line.mid(colon + 1);
    const qsizetype end = rest.indexOf(QLatin1Char(':'));
    return end < 0 ? rest : rest.left(end);
}

void addOpticalPort(const ReplyLine &line, QStringView text, Effects &effects)
{
    if (!line.has(Keyword::PageMarker)) {
        effects.push_back({Kind::Info, text});
        if (line.has(Keyword::GeCopper))
            effects.push_back({Kind::OpticalPort, text});
        return;
    }
    const QStringView port = behindPageMarker(text, QLatin1String("0/0/"));
    if (port.isNull())
        return;
    effects.push_back({Kind::Result, port});
    if (port.contains(QLatin1String("GE(C)")))
        effects.push_back({Kind::OpticalPort, port});
}

void addBoardType(QStringView text, Effects &effects)
{
    effects.push_back({Kind::Info, text});
    const QStringView boardType = fieldBehindColon(text).trimmed();
    if (!boardType.isEmpty())
        effects.push_back({Kind::BoardType, boardType});
}

} // namespace

Effects readOpticalPorts(const ReplyText &reply)
{
    if (!reply.has(Keyword::Optic) || !reply.has(Keyword::Speed))
        return {};
    Effects effects;
    effects.reserve(reply.lines().size() + 2);
    effects.push_back({Kind::OpticalPortsCleared, {}});
    bool isInTable = false;
    for (const ReplyLine &line : reply.lines()) {
        const QStringView text = line.text.trimmed();
        if (text.isEmpty())
            continue;
        if (line.has(Keyword::BoardType)) {
            addBoardType(text, effects);
        } else if (line.has(Keyword::Port) && line.has(Keyword::Optic)) {
            isInTable = true;
        } else if (isInTable) {
            if (text.startsWith(QLatin1Char('<')))
                break;
            addOpticalPort(line, text, effects);
        }
    }
    effects.push_back({Kind::WaitingEnded, {}});
    return effects;
}

std::optional<std::vector<PortMirroring>> readPortMirroring(const ReplyText &reply,
                                                            const InterfaceNamingProfile &naming)
{
    if (!reply.has(Keyword::EchoPortMirroring))
        return std::nullopt;
    const LinePattern destination(naming.observePortPattern, LinePattern::Dialect::QtRegExp);
    const LinePattern source(naming.inboundPortPattern, LinePattern::Dialect::QtRegExp);
    LineFinder port(reply, naming.mirrorPortKeyword);
    LineFinder observe(reply, naming.observePortKeyword);
    LineFinder inbound(reply, naming.inboundKeyword);
    constexpr int kUnknown = -1;
    PortMirroring found{kUnknown, kUnknown, kUnknown};
    std::vector<PortMirroring> all;
    for (const ReplyLine &line : reply.lines()) {
        if (!port.isIn(line))
            continue;
        // A row of the table names its destination again ("1 GigabitEthernet0/0/2 Inbound Observe-port 1"): both tests.
        if (observe.isIn(line)) {
            if (const auto match = destination.firstMatch(line.text)) {
                found.id = toNumber(match->group1);
                found.destinationPort = toNumber(match->group2);
            }
        }
        if (inbound.isIn(line)) {
            const auto match = source.firstMatch(line.text);
            found.sourcePort = match ? toNumber(match->group1) : kUnknown;
            if (found.id != kUnknown && found.sourcePort != kUnknown && found.destinationPort != kUnknown)
                all.push_back(found);
        }
    }
    return all;
}

bool isRebootNotice(const ReplyText &reply)
{
    return reply.has(Keyword::Reboot);
}

QStringView behindPageMarker(QStringView line, QLatin1String name)
{
    const qsizetype begin = line.indexOf(name);
    if (begin < 0)
        return {};
    const qsizetype end = line.indexOf(name, begin + name.size());
    return end < 0 ? line.mid(begin) : line.mid(begin, end - begin);
}

} // namespace reply
