#include "hua3replyparser.h"

#include <algorithm>

namespace reply {

namespace {

using Kind = Effect::Kind;

constexpr char kPortName[] = "GE1/";

//! A line of a table that is cut back to the port's name when a page marker stands in it.
void addPagedLine(const ReplyLine &line, QStringView text, Kind kind, Effects &effects)
{
    if (!line.has(Keyword::PageMarker)) {
        effects.push_back({kind, text});
        return;
    }
    const QStringView port = behindPageMarker(text, QLatin1String(kPortName));
    if (!port.isNull())
        effects.push_back({Kind::Info, port});
}

void addPlainLine(const ReplyLine & /*line*/, QStringView text, Kind kind, Effects &effects)
{
    effects.push_back({kind, text});
}

/*!
    The tables of a listing: from a line that \a isHeader up to the prompt, which \a addLine gets as well; headers and
   lines become effects of \a kind. Behind a prompt another header begins another table.
*/
template<typename IsHeader, typename AddLine>
void addTables(const ReplyText &reply, Kind kind, IsHeader isHeader, AddLine addLine, Effects &effects)
{
    effects.reserve(reply.lines().size() + 1);
    bool isInTable = false;
    for (const ReplyLine &line : reply.lines()) {
        const QStringView text = line.text.trimmed();
        if (text.isEmpty())
            continue;
        if (isHeader(line)) {
            effects.push_back({kind, text});
            isInTable = true;
        } else if (isInTable) {
            addLine(line, text, kind, effects);
            isInTable = !text.startsWith(QLatin1Char('<'));
        }
    }
}

bool isPoeHeader(const ReplyLine &line)
{
    return line.has(Keyword::Interface);
}

bool isGroupHeading(const ReplyLine &line)
{
    return line.has(Keyword::MirroringGroup) && line.text.contains(QLatin1Char(':'));
}

bool isGroupDetail(const ReplyLine &line)
{
    return line.has(Keyword::TypeField) || line.has(Keyword::StatusField) || line.has(Keyword::MirroringPort)
           || line.has(Keyword::GigabitEthernet);
}

Effects linesWith(const ReplyText &reply, Keyword word)
{
    Effects effects;
    if (!reply.has(word))
        return effects;
    for (const ReplyLine &line : reply.lines()) {
        if (line.has(word))
            effects.push_back({Kind::Info, line.text});
    }
    return effects;
}

} // namespace

Effects readHua3MulticastTable(const ReplyText & /*reply*/)
{
    return {{Kind::InfoEveryLine, {}}};
}

Effects readHua3IpConflicts(const ReplyText &reply)
{
    constexpr std::size_t kFewestLines = 2; // the echo and a record
    return {reply.lines().size() < kFewestLines ? Effect{Kind::Info, kNoIpConflict} : Effect{Kind::InfoEveryLine, {}}};
}

Effects readHua3PortStatus(const ReplyText &reply)
{
    if (!reply.has(Keyword::Interface) || !reply.has(Keyword::Link) || !reply.has(Keyword::Speed))
        return {};
    const auto isHeader = [hasDescription = reply.has(Keyword::Description)](const ReplyLine &line) {
        return hasDescription && line.has(Keyword::Interface) && line.has(Keyword::Link) && line.has(Keyword::Duplex)
               && line.has(Keyword::Type);
    };
    Effects effects;
    addTables(reply, Kind::Info, isHeader, addPagedLine, effects);
    effects.push_back({Kind::WaitingEnded, {}});
    return effects;
}

Effects readHua3VlanSummary(const ReplyText &reply)
{
    if (!reply.has(Keyword::TotalVlans))
        return {};
    Effects effects;
    const std::vector<ReplyLine> &lines = reply.lines();
    for (auto line = lines.begin(); line != lines.end(); ++line) {
        if (!line->has(Keyword::TotalVlans) && !line->has(Keyword::VlansInclude))
            continue;
        effects.push_back({Kind::Info, line->text});
        if (line->has(Keyword::VlansInclude) && line + 1 != lines.end())
            effects.push_back({Kind::Info, (line + 1)->text});
    }
    effects.push_back({Kind::WaitingEnded, {}});
    return effects;
}

Effects readHua3Snooping(const ReplyText &reply)
{
    return linesWith(reply, Keyword::IgmpSnooping);
}

Effects readHua3Querier(const ReplyText &reply)
{
    Effects effects = linesWith(reply, Keyword::Querier);
    if (!effects.empty())
        effects.push_back({Kind::WaitingEnded, {}});
    return effects;
}

Effects readHua3LinkAggregation(const ReplyText &reply)
{
    if (!reply.has(Keyword::AggregateInterface))
        return {};
    const bool hasLegend = reply.has(Keyword::Priority) && reply.has(Keyword::Flag);
    const auto isHeader = [hasLegend](const ReplyLine &line) {
        return hasLegend && line.has(Keyword::Port) && line.has(Keyword::Status) && line.has(Keyword::Index)
               && line.has(Keyword::OperKey);
    };
    Effects effects;
    addTables(reply, Kind::InfoDetailed, isHeader, addPlainLine, effects);
    effects.push_back({Kind::WaitingEnded, {}});
    return effects;
}

std::optional<QString> readHua3MirroringGroups(const ReplyText &reply)
{
    if (!reply.has(Keyword::MirroringGroup))
        return std::nullopt;
    QString groups;
    bool isInGroup = false;
    for (const ReplyLine &line : reply.lines()) {
        if (isGroupHeading(line)) {
            isInGroup = true;
        } else if (isInGroup) {
            const QStringView text = line.text.trimmed();
            if (isGroupDetail(line))
                groups.append(text.data(), static_cast<int>(text.size())).append(QLatin1Char('\n'));
            isInGroup = !text.startsWith(QLatin1Char('<'));
        }
    }
    return groups;
}

Effects readHua3PoeInterfaces(const ReplyText &reply)
{
    if (!reply.has(Keyword::Interface) || !reply.has(Keyword::Poe) || !reply.has(Keyword::Priority))
        return {};
    Effects effects;
    addTables(reply, Kind::InfoDetailed, isPoeHeader, addPagedLine, effects);
    effects.push_back({Kind::WaitingEnded, {}});
    return effects;
}

Effects readHua3PoeUsage(const ReplyText &reply)
{
    if (!reply.has(Keyword::Interface) || !reply.has(Keyword::Link) || !reply.has(Keyword::InUsage))
        return {};
    Effects effects;
    addTables(reply, Kind::Info, isPoeHeader, addPagedLine, effects);
    effects.push_back({Kind::WaitingEnded, {}});
    return effects;
}

Effects readHua3ForwardingTable(const ReplyText &reply)
{
    const std::vector<ReplyLine> &lines = reply.lines();
    const auto named = std::find_if(lines.begin(), lines.end(),
                                    [](const ReplyLine &line) { return line.has(Keyword::MulticastForwarding); });
    if (named == lines.end() || named + 1 == lines.end())
        return {};
    return {{Kind::Info, (named + 1)->text}};
}

Effects readHua3OpticalPorts(const ReplyText &reply)
{
    return reply.has(Keyword::Port) ? readOpticalPorts(reply) : Effects();
}

LoginPrompt readHua3LoginPrompt(const ReplyText &reply, bool isLoggedIn)
{
    if (reply.has(Keyword::Username) || reply.has(Keyword::Login))
        return LoginPrompt::Username;
    if (reply.has(Keyword::Password))
        return LoginPrompt::Password;
    if (reply.has(Keyword::EnterPassword) || reply.has(Keyword::ConfirmPassword))
        return LoginPrompt::ConfirmPassword;
    if (!isLoggedIn && (reply.has(Keyword::Greater) || reply.has(Keyword::RightBracket)))
        return LoginPrompt::Ready;
    if (reply.has(Keyword::AuthenticationFailed) || reply.has(Keyword::InvalidPassword))
        return LoginPrompt::Refused;
    return reply.has(Keyword::FailedToLogin) ? LoginPrompt::Failed : LoginPrompt::None;
}

std::optional<PortInventory> readHua3Ports(const ReplyText &reply, const InterfaceNamingProfile &naming,
                                           bool isAggregationSwitch)
{
    if (!reply.has(Keyword::Interface) || !reply.has(Keyword::Link) || !reply.has(Keyword::Speed))
        return std::nullopt;
    PortInventory inventory = scanPorts(reply, naming, QStringLiteral("XG"), isAggregationSwitch);
    inventory.headerCount = 0; // this family announces none
    return inventory;
}

bool isHua3TransceiverListing(const ReplyText &reply)
{
    return reply.has(Keyword::TransceiverInformation);
}

} // namespace reply
