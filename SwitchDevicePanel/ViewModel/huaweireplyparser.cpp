#include "huaweireplyparser.h"

#include "linepattern.h"

#include <algorithm>
#include <utility>

namespace reply {

namespace {

using Kind = Effect::Kind;

constexpr QStringView kMulticastOff = u"未开启全局组播";
constexpr QStringView kNoMulticast = u"没有组播配置";
constexpr QStringView kNoPoe = u"not support poe";
constexpr QStringView kNoInterfaceSnooping = u"There is no igmp - snooping configuration";

//! Why a switch shows no snooping: off for the whole switch, or nothing configured; null when it does show some.
QStringView missingSnooping(const ReplyText &reply)
{
    if (reply.has(Keyword::PleaseEnableIgmp))
        return kMulticastOff;
    return reply.has(Keyword::NoIgmpConfiguration) ? kNoMulticast : QStringView();
}

void addPoeLine(const ReplyLine &line, QStringView text, Effects &effects)
{
    const QStringView shown = line.has(Keyword::PageMarker) ? behindPageMarker(text, QLatin1String("GE1/")) : text;
    if (!shown.isNull())
        effects.push_back({Kind::Result, shown});
}

void addPoeTable(const ReplyText &reply, Effects &effects)
{
    effects.reserve(reply.lines().size() + 1);
    bool isInTable = false;
    for (const ReplyLine &line : reply.lines()) {
        const QStringView text = line.text.trimmed();
        if (text.isEmpty())
            continue;
        if (line.has(Keyword::Interface)) {
            effects.push_back({Kind::Result, text});
            isInTable = true;
        } else if (isInTable) {
            addPoeLine(line, text, effects); // the prompt that ends the table is part of the result
            isInTable = !text.startsWith(QLatin1Char('<'));
        }
    }
}

//! The lines between the first and the second line with "#"; all behind the first when there is no second.
std::pair<std::size_t, std::size_t> firstSection(const std::vector<ReplyLine> &lines)
{
    const auto isMark = [](const ReplyLine &line) { return line.has(Keyword::Hash); };
    const auto first = std::find_if(lines.begin(), lines.end(), isMark);
    const auto begin = first == lines.end() ? first : first + 1;
    const auto end = std::find_if(begin, lines.end(), isMark);
    return {static_cast<std::size_t>(begin - lines.begin()), static_cast<std::size_t>(end - lines.begin())};
}

/*!
    The interface sections of one port in a configuration. Sections are told apart by their heading, and the heading
   that sorts first decides ("…0/0/1" before its sub-interface "…0/0/1.20"), whatever their order in the listing.
*/
class NegotiationSections
{
public:
    NegotiationSections(const InterfaceNamingProfile &naming, QStringView port)
        : _pattern(naming.autoNegInterfacePattern, LinePattern::Dialect::QtRegExp)
        , _port(port)
    {}

    void begin(const ReplyLine &line)
    {
        _current = line.text.trimmed();
        if (line.text.size() > kLongestLine)
            return;
        const auto match = _pattern.firstMatch(_current);
        if (!match || match->group1 != _port || (_isFound && _first.compare(_current) < 0))
            return;
        _first = _current;
        _isFound = true;
        _isOn = true;
    }

    void switchOff()
    {
        if (_isFound && _current == _first)
            _isOn = false;
    }

    void end() { _current = QStringView(); }

    std::optional<bool> isOn() const { return _isFound ? std::optional(_isOn) : std::nullopt; }

private:
    const LinePattern _pattern;
    const QStringView _port;
    QStringView _current;
    QStringView _first;
    bool _isFound = false;
    bool _isOn = true;
};

} // namespace

Effects readMulticastTable(const ReplyText &reply)
{
    const QStringView missing = missingSnooping(reply);
    Effects effects;
    effects.push_back(missing.isNull() ? Effect{Kind::ResultEveryLine, {}} : Effect{Kind::InfoTranslated, missing});
    effects.push_back({Kind::MorePagesRequested, {}});
    effects.push_back({Kind::WaitingEnded, {}});
    return effects;
}

Effects readMorePages(const ReplyText &reply)
{
    if (reply.has(Keyword::Less))
        return {};
    return {{Kind::ResultEveryLine, {}}, {Kind::MorePagesRequested, {}}, {Kind::WaitingEnded, {}}};
}

Effects readIpConflicts(const ReplyText &reply)
{
    const bool hasConflict = reply.has(Keyword::ConflictType);
    return {hasConflict ? Effect{Kind::ResultEveryLine, {}} : Effect{Kind::Info, kNoIpConflict},
            {Kind::WaitingEnded, {}}};
}

Effects readVlanListing(const ReplyText &reply)
{
    if (!reply.has(Keyword::VlanCount))
        return {};
    return {{Kind::InfoEveryLine, {}}, {Kind::WaitingEnded, {}}};
}

bool isCurrentConfiguration(const ReplyText &reply)
{
    return reply.has(Keyword::EchoCurrentConfiguration);
}

std::optional<AutoNegotiation> readAutoNegotiation(const ReplyText &reply, const InterfaceNamingProfile &naming,
                                                   const QString &askedPort)
{
    if (!isCurrentConfiguration(reply))
        return std::nullopt;
    const LinePattern asked(QStringLiteral(R"(g0/0/(\d+))"), LinePattern::Dialect::QtRegExp);
    const auto port = asked.firstMatch(askedPort);
    if (!port)
        return std::nullopt;
    NegotiationSections sections(naming, port->group1);
    LineFinder heading(reply, naming.configInterfaceKeyword);
    for (const ReplyLine &line : reply.lines()) {
        if (heading.isIn(line))
            sections.begin(line);
        if (line.has(Keyword::UndoNegotiation))
            sections.switchOff();
        if (line.has(Keyword::Hash) && line.text.trimmed() == QLatin1String("#"))
            sections.end();
    }
    const auto isOn = sections.isOn();
    if (!isOn)
        return std::nullopt;
    return AutoNegotiation{port->group1.toString(), *isOn};
}

Effects readPoePower(const ReplyText &reply)
{
    if (!reply.has(Keyword::EchoPoePower))
        return {};
    Effects effects;
    if (reply.has(Keyword::UnrecognizedCommand))
        effects.push_back({Kind::Info, kNoPoe});
    else
        addPoeTable(reply, effects);
    effects.push_back({Kind::WaitingEnded, {}});
    return effects;
}

bool isTransceiverListing(const ReplyText &reply)
{
    return reply.has(Keyword::TransceiverAbsent) || reply.has(Keyword::TransceiverInformation);
}

Effects readInterfaceView(const ReplyText &reply)
{
    if (!reply.has(Keyword::EchoThis))
        return {};
    const std::vector<ReplyLine> &lines = reply.lines();
    const auto [begin, end] = firstSection(lines);
    Effects effects;
    effects.reserve(2 * (end - begin) + 1);
    effects.assign(end - begin, {Kind::Info, kNoInterfaceSnooping}); // for every line, whatever it says
    for (std::size_t i = begin; i < end; ++i) {
        if (!lines[i].text.isEmpty() && !lines[i].has(Keyword::Return))
            effects.push_back({Kind::Info, lines[i].text.trimmed()});
    }
    effects.push_back({Kind::WaitingEnded, {}});
    return effects;
}

LoginPrompt readLoginPrompt(const ReplyText &reply, bool isLoggedIn)
{
    if (reply.has(Keyword::Username))
        return LoginPrompt::Username;
    if (reply.has(Keyword::Password))
        return LoginPrompt::Password;
    if (reply.has(Keyword::EnterPassword) || reply.has(Keyword::ConfirmPassword))
        return LoginPrompt::ConfirmPassword;
    if (!isLoggedIn && (reply.has(Keyword::Greater) || reply.has(Keyword::RightBracket)))
        return LoginPrompt::Ready;
    if (reply.has(Keyword::AuthenticationFail) || reply.has(Keyword::InvalidPassword)
        || reply.has(Keyword::PasswordIsInvalid))
        return LoginPrompt::Refused;
    return reply.has(Keyword::FailedToLogin) ? LoginPrompt::Failed : LoginPrompt::None;
}

Effects readIgmpConfiguration(const ReplyText &reply)
{
    if (!reply.has(Keyword::IgmpConfiguration))
        return {};
    const QStringView missing = missingSnooping(reply);
    if (!missing.isNull())
        return {{Kind::InfoTranslated, missing}};
    if (reply.has(Keyword::EchoIgmpConfiguration))
        return {};
    return {{Kind::InfoEveryLine, {}}};
}

bool isCommandError(const ReplyText &reply)
{
    return reply.has(Keyword::CommandError);
}

} // namespace reply
