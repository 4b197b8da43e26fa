#include "devicedescription.h"

#include "lineending.h"
#include "loglines.h"

#include <algorithm>

namespace ovra {
namespace bll {

namespace {

constexpr std::chrono::seconds kUsualSilence{10};

QByteArray withoutBlanks(const QByteArray &text)
{
    QByteArray result;
    result.reserve(text.size());
    for (const char character : text) {
        if (static_cast<unsigned char>(character) > ' ')
            result.append(character);
    }
    return result.toLower();
}

bool isOneOf(const QByteArrayList &commands, const QByteArray &line)
{
    return std::any_of(commands.begin(), commands.end(),
                       [&line](const QByteArray &command) { return isCommand(line, command); });
}

bool isLetter(char byte)
{
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

bool beginsWithOne(const QByteArray &text, int begin, int end, const QByteArrayList &beginnings)
{
    return std::any_of(beginnings.begin(), beginnings.end(), [&text, begin, end](const QByteArray &beginning) {
        return end - begin >= beginning.size() && std::equal(beginning.begin(), beginning.end(), text.begin() + begin);
    });
}

} // namespace

PortRange DeviceDescription::limitOf(const QString &valueName) const
{
    const auto limit = limits.find(valueName);
    return limit != limits.end() ? limit->second : boundsOf(valueName).value_or(PortRange());
}

const QStringList &getterNames()
{
    static const QStringList names{
        QStringLiteral("getDownVlanCommands"),
        QStringLiteral("getUpGVlanCommands"),
        QStringLiteral("getVlanQueryCommands"),
        QStringLiteral("getMulticastCommands"),
        QStringLiteral("getMulticastQueryCommands"),
        QStringLiteral("getQuerierCommands"),
        QStringLiteral("getQuerierQueryCommands"),
        QStringLiteral("getLinkDownCommands"),
        QStringLiteral("getLinkGigabitSingleCommands"),
        QStringLiteral("getLinkUpCommands"),
        QStringLiteral("getLink10GSingleCommands"),
        QStringLiteral("getLinkAggregationQueryCommands"),
        QStringLiteral("getMirrorCommands"),
        QStringLiteral("getMirrorPortQueryCommands"),
        QStringLiteral("getAutoNegCommands"),
        QStringLiteral("getAutoNegotiationQueryCommands"),
        QStringLiteral("getPOECommands"),
        QStringLiteral("getPOEQueryCommands"),
        QStringLiteral("getInterfaceCommandsForPorts"),
        QStringLiteral("getVlanStatusCommands"),
        QStringLiteral("getPortStatusCommands"),
        QStringLiteral("getInterfaceSpeedCommands"),
        QStringLiteral("getTransceiverCommands"),
        QStringLiteral("getIpConflictCommands"),
        QStringLiteral("getMulticastForwardingTableCommands"),
        QStringLiteral("getSaveCommands"),
        QStringLiteral("getClearLinkAggregationCommands"),
        QStringLiteral("getExportCommands"),
    };
    return names;
}

std::optional<QByteArray> answerTo(const SessionFacts &facts, const QByteArray &line, const QByteArray &asked)
{
    const QByteArray question = withoutBlanks(asked);
    for (const KnownQuestion &known : facts.questions) {
        if (!known.command.isEmpty() && !isCommand(line, known.command))
            continue;
        if (question.contains(withoutBlanks(known.text)))
            return known.answer;
    }
    return std::nullopt;
}

std::chrono::seconds silenceLimit(const SessionFacts &facts, const QByteArray &line)
{
    for (const SlowCommand &slow : facts.slowCommands) {
        if (isCommand(line, slow.command))
            return slow.timeout;
    }
    return kUsualSilence;
}

std::optional<QByteArray> refusalIn(const SessionFacts &facts, const QByteArray &line, const QByteArray &reply,
                                    bool isConfiguring)
{
    if (isOneOf(facts.expectedRefusals, line))
        return std::nullopt;
    const bool isFreeText =
        isConfiguring && !facts.freeTextExceptions.isEmpty() && !isOneOf(facts.freeTextExceptions, line);
    LogLineFinder logLines;
    bool isLogged = false; // the second line of a trap is set off like a refusal
    int begin = 0;
    while (begin < reply.size()) {
        const int newline = reply.indexOf('\n', begin);
        const int end = newline < 0 ? reply.size() : newline;
        int text = begin;
        while (text < end && reply.at(text) == ' ')
            ++text;
        if (beginsWithOne(reply, text, end, facts.errorTexts))
            return reply.mid(text, end - text).trimmed();
        if (isFreeText) {
            const QByteArray whole = reply.mid(begin, end - begin);
            const bool isSetOff = text == begin + 1 && text < end && isLetter(reply.at(text));
            isLogged = logLines.isLogLine(whole) || (isLogged && isSetOff);
            if (isSetOff && !isLogged && !beginsWithOne(reply, text, end, facts.noticeTexts)
                && !containsOne(facts.questionEndings, whole))
                return whole.trimmed();
        }
        begin = end + 1;
    }
    return std::nullopt;
}

bool isRestart(const SessionFacts &facts, const QByteArray &line)
{
    return isOneOf(facts.restarts, line);
}

} // namespace bll
} // namespace ovra
