#include "replytext.h"

#include <array>
#include <cstdint>
#include <queue>

namespace reply {

namespace {

struct KeywordText
{
    Keyword word;
    const char *text;
};

constexpr KeywordText kKeywords[] = {
    {Keyword::AggregateInterface, "Aggregate Interface"},
    {Keyword::AuthenticationFail, "Authentication fail"},
    {Keyword::AuthenticationFailed, "authentication failed"},
    {Keyword::BoardType, "Board Type"},
    {Keyword::CommandError, "command found at '^' position"},
    {Keyword::ConfirmPassword, "confirm password:"},
    {Keyword::ConflictType, "Conflict type"},
    {Keyword::ConnectorType, "Connector Type"},
    {Keyword::Description, "Description"},
    {Keyword::Duplex, "Duplex"},
    {Keyword::EchoCurrentConfiguration, "display current-configuration"},
    {Keyword::EchoIgmpConfiguration, "dis igmp-snooping configuration"},
    {Keyword::EchoPoePower, "display poe power"},
    {Keyword::EchoPortMirroring, "display port-mirroring"},
    {Keyword::EchoThis, "display this"},
    {Keyword::EnterPassword, "Enter password:"},
    {Keyword::FailedToLogin, "Failed to login"},
    {Keyword::Flag, "Flag"},
    {Keyword::Ge, "GE"},
    {Keyword::GeCopper, "GE(C)"},
    {Keyword::GigabitEthernet, "GigabitEthernet"},
    {Keyword::Greater, ">"},
    {Keyword::Hash, "#"},
    {Keyword::IgmpConfiguration, "igmp-snooping configuration"},
    {Keyword::IgmpSnooping, "IGMP snooping"},
    {Keyword::Index, "Index"},
    {Keyword::Interface, "Interface"},
    {Keyword::InUsage, "InUsage"},
    {Keyword::InvalidPassword, "Invalid password"},
    {Keyword::Less, "<"},
    {Keyword::Link, "Link"},
    {Keyword::Login, "Login"},
    {Keyword::MirroringGroup, "Mirroring group"},
    {Keyword::MirroringPort, "Mirroring port:"},
    {Keyword::MulticastForwarding, "multicast forwarding-table"},
    {Keyword::NoIgmpConfiguration, "There is no igmp-snooping configuration"},
    {Keyword::OperKey, "Oper-Key"},
    {Keyword::Optic, "Optic"},
    {Keyword::PageMarker, "---- More ----"},
    {Keyword::Password, "Password:"},
    {Keyword::PasswordIsInvalid, "The password is invalid"},
    {Keyword::Phy, "PHY"},
    {Keyword::PleaseEnableIgmp, "Please enable IGMP snooping in the global view first"},
    {Keyword::Poe, "PoE"},
    {Keyword::Port, "Port"},
    {Keyword::Priority, "Priority"},
    {Keyword::Querier, "Querier"},
    {Keyword::Reboot, "reboot"},
    {Keyword::Return, "return"},
    {Keyword::RightBracket, "]"},
    {Keyword::Slash, "/"},
    {Keyword::Speed, "Speed"},
    {Keyword::Status, "Status"},
    {Keyword::StatusField, "Status:"},
    {Keyword::TotalVlans, "Total VLANs"},
    {Keyword::TransceiverAbsent, "transceiver is absent"},
    {Keyword::TransceiverHeader, "transceiver information:"},
    {Keyword::TransceiverInformation, "transceiver information"},
    {Keyword::TransceiverType, "Transceiver Type"},
    {Keyword::Type, "Type"},
    {Keyword::TypeField, "Type:"},
    {Keyword::UndoNegotiation, "undo negotiation auto"},
    {Keyword::UnrecognizedCommand, "Unrecognized command found"},
    {Keyword::Username, "Username:"},
    {Keyword::VlanCount, "number of VLANs"},
    {Keyword::VlansInclude, "The VLANs include"},
    {Keyword::Wavelength, "Wavelength"},
};
static_assert(std::size(kKeywords) == static_cast<std::size_t>(Keyword::Count), "every keyword has its text");

/*!
    Finds all keywords at once (Aho and Corasick, 1975): one table look-up per character, however many keywords there
   are and however the text is made to almost match them.
*/
class KeywordAutomaton
{
public:
    KeywordAutomaton()
        : _states(1)
    {
        for (const KeywordText &keyword : kKeywords)
            insert(keyword);
        link();
    }

    using StateId = std::uint16_t;
    static constexpr StateId kStart = 0;

    StateId next(StateId state, QChar character) const
    {
        const ushort unicode = character.unicode();
        return unicode < kAlphabet ? _states[state].next[unicode] : kStart; // keywords are plain ASCII
    }

    bool isHit(StateId state) const { return _states[state].isHit; }
    const KeywordSet &words(StateId state) const { return _states[state].words; }

private:
    static constexpr std::size_t kAlphabet = 128;

    struct State
    {
        std::array<StateId, kAlphabet> next{};
        KeywordSet words;
        bool isHit = false;
    };

    void insert(const KeywordText &keyword)
    {
        StateId state = kStart;
        for (const char *character = keyword.text; *character != '\0'; ++character) {
            const auto index = static_cast<unsigned char>(*character);
            if (_states[state].next[index] == kStart) {
                const auto added = static_cast<StateId>(_states.size());
                _states.emplace_back();
                _states[state].next[index] = added;
            }
            state = _states[state].next[index];
        }
        _states[state].words.set(static_cast<std::size_t>(keyword.word));
    }

    // Breadth first: a state's longest proper suffix that is itself a state is shorter, so its moves are known already.
    void link()
    {
        std::vector<StateId> suffix(_states.size(), kStart);
        std::queue<StateId> waiting;
        waiting.push(kStart);
        while (!waiting.empty()) {
            const StateId state = waiting.front();
            waiting.pop();
            _states[state].words |= _states[suffix[state]].words;
            _states[state].isHit = _states[state].words.any();
            for (std::size_t i = 0; i < kAlphabet; ++i) {
                const StateId child = _states[state].next[i];
                const StateId fallback = state == kStart ? kStart : _states[suffix[state]].next[i];
                if (child == kStart) {
                    _states[state].next[i] = fallback;
                } else {
                    suffix[child] = fallback;
                    waiting.push(child);
                }
            }
        }
    }

    std::vector<State> _states;
};

std::size_t lineEnds(QStringView text)
{
    std::size_t count = 0;
    for (qsizetype i = 1; i < text.size(); ++i)
        count += text[i] == QLatin1Char('\n') && text[i - 1] == QLatin1Char('\r') ? 1U : 0U;
    return count;
}

const KeywordAutomaton &keywordAutomaton()
{
    static const KeywordAutomaton automaton;
    return automaton;
}

} // namespace

ReplyText::ReplyText(const QByteArray &bytes)
    : _text(QString::fromUtf8(bytes.constData(), bytes.size())) // the overload for byte arrays stops at a NUL
{
    const KeywordAutomaton &automaton = keywordAutomaton();
    const QStringView text = _text;
    _lines.reserve(lineEnds(text) + 1);
    KeywordAutomaton::StateId state = KeywordAutomaton::kStart;
    KeywordSet words;
    qsizetype lineBegin = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        state = automaton.next(state, text[i]);
        if (automaton.isHit(state))
            words |= automaton.words(state);
        if (text[i] == QLatin1Char('\n') && i > 0 && text[i - 1] == QLatin1Char('\r')) {
            addLine(lineBegin, i - 1, words);
            words.reset();
            lineBegin = i + 1;
        }
    }
    addLine(lineBegin, text.size(), words);
}

void ReplyText::addLine(qsizetype begin, qsizetype end, const KeywordSet &words)
{
    _lines.push_back({QStringView(_text).mid(begin, end - begin), words});
    _words |= words;
}

LineFinder::LineFinder(const ReplyText &reply, QStringView text)
    : _reply(reply.text())
    , _text(text)
{}

bool LineFinder::isIn(const ReplyLine &line)
{
    const qsizetype begin = line.text.data() - _reply.data();
    if (!_isSearched || _next < begin) {
        _isSearched = true;
        _next = _reply.indexOf(_text, begin);
        if (_next < 0)
            _next = _reply.size() + 1; // nowhere
    }
    return _next + _text.size() <= begin + line.text.size();
}

} // namespace reply
