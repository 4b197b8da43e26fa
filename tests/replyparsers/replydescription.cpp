#include "replydescription.h"

using reply::Effect;
using reply::LoginPrompt;

namespace {

QString effectText(const Effect &effect)
{
    const QString text = effect.text.toString();
    switch (effect.kind) {
    case Effect::Kind::Info:
        return QStringLiteral("info ") + text;
    case Effect::Kind::InfoDetailed:
        return QStringLiteral("info detailed ") + text;
    case Effect::Kind::InfoTranslated:
        return QStringLiteral("info translated ") + text;
    case Effect::Kind::InfoEveryLine:
        return QStringLiteral("info every line");
    case Effect::Kind::Result:
        return QStringLiteral("result ") + text;
    case Effect::Kind::ResultEveryLine:
        return QStringLiteral("result every line");
    case Effect::Kind::OpticalPortsCleared:
        return QStringLiteral("optical ports cleared");
    case Effect::Kind::OpticalPort:
        return QStringLiteral("optical port ") + text;
    case Effect::Kind::BoardType:
        return QStringLiteral("board type ") + text;
    case Effect::Kind::MorePagesRequested:
        return QStringLiteral("more pages");
    case Effect::Kind::WaitingEnded:
        return QStringLiteral("waiting ended");
    }
    return QStringLiteral("unknown effect");
}

QString spanText(const reply::PortSpan &span)
{
    if (!span.isFound())
        return QStringLiteral("not found");
    return QStringLiteral("%1-%2").arg(span.minimum).arg(span.maximum);
}

QString blockText(const reply::TransceiverNote &note)
{
    const QString kind = note.isAbsent ? QStringLiteral("absent ") : QStringLiteral("block ");
    return kind + note.text(QStringLiteral(":")).replace(QLatin1Char('\n'), QLatin1Char('|'));
}

bool isAnswerTo(const Question &question, QStringView label)
{
    return question.label == label.toString();
}

//! Collects the descriptions under the number of their section.
class Report
{
public:
    void add(int section, const QStringList &descriptions)
    {
        for (const QString &description : descriptions)
            add(section, description);
    }

    void add(int section, const QString &description)
    {
        lines.append(QStringLiteral("%1 %2").arg(section).arg(description));
    }

    QStringList lines;
};

void addMirroring(int section, const reply::ReplyText &text, const Question &question, Report &report)
{
    const auto mirrored = readPortMirroring(text, question.naming);
    if (!mirrored)
        return;
    for (const reply::PortMirroring &port : *mirrored) {
        report.add(
            section,
            QStringLiteral("mirroring %1: %2 to %3").arg(port.id).arg(port.sourcePort).arg(port.destinationPort));
    }
    report.add(section, QStringLiteral("waiting ended"));
}

void addConfiguration(const reply::ReplyText &text, const Question &question, Report &report)
{
    if (!isCurrentConfiguration(text))
        return;
    if (const auto state = readAutoNegotiation(text, question.naming, question.askedPort))
        report.add(8, QStringLiteral("port %1 negotiates: %2").arg(state->port, state->isOn ? "yes" : "no"));
    report.add(8, QStringLiteral("waiting ended"));
}

void addQueryAnswers(const reply::ReplyText &text, const Question &question, Report &report)
{
    if (isAnswerTo(question, reply::kMulticastTableLabel))
        report.add(2, describe(readMulticastTable(text)));
    if (isAnswerTo(question, reply::kMorePagesLabel))
        report.add(3, describe(readMorePages(text)));
    if (isAnswerTo(question, reply::kIpConflictLabel))
        report.add(4, describe(readIpConflicts(text)));
}

void addNotices(const reply::ReplyText &text, Report &report)
{
    if (isCurrentConfiguration(text))
        report.add(13, QStringLiteral("current configuration"));
    report.add(14, describe(readIgmpConfiguration(text)));
    if (isCommandError(text))
        report.add(15, QStringLiteral("command error"));
    if (isRebootNotice(text))
        report.add(16, QStringLiteral("reboot"));
}

void addMirroringGroups(const reply::ReplyText &text, Report &report)
{
    const auto groups = readHua3MirroringGroups(text);
    if (!groups)
        return;
    if (!groups->isEmpty())
        report.add(8, QStringLiteral("groups ") + QString(*groups).replace(QLatin1Char('\n'), QLatin1Char('|')));
    report.add(8, QStringLiteral("waiting ended"));
}

void addHua3Listings(const reply::ReplyText &text, const Question &question, Report &report)
{
    if (isAnswerTo(question, reply::kMulticastTableLabel))
        report.add(1, describe(readHua3MulticastTable(text)));
    if (isAnswerTo(question, reply::kIpConflictLabel))
        report.add(2, describe(readHua3IpConflicts(text)));
    report.add(3, describe(readHua3PortStatus(text)));
    report.add(4, describe(readHua3VlanSummary(text)));
    report.add(5, describe(readHua3Snooping(text)));
    report.add(6, describe(readHua3Querier(text)));
    report.add(7, describe(readHua3LinkAggregation(text)));
    addMirroringGroups(text, report);
    report.add(9, describe(readHua3PoeInterfaces(text)));
    report.add(10, describe(readHua3PoeUsage(text)));
    report.add(11, describe(readHua3ForwardingTable(text)));
    report.add(12, describe(readHua3OpticalPorts(text)));
    addMirroring(13, text, question, report);
}

} // namespace

QStringList describe(const reply::Effects &effects)
{
    QStringList lines;
    for (const Effect &effect : effects)
        lines.append(effectText(effect));
    return lines;
}

QStringList describe(const reply::PortInventory &inventory)
{
    QStringList lines{QStringLiteral("slot %1").arg(inventory.slot)};
    if (inventory.isSubModel)
        lines.append(QStringLiteral("sub-model"));
    lines.append(QStringLiteral("headers %1").arg(inventory.headerCount));
    if (inventory.hasNoGigabitPort)
        lines.append(QStringLiteral("no gigabit port"));
    lines.append(QStringLiteral("down ports: ") + inventory.downPorts.join(QLatin1Char(' ')));
    lines.append(QStringLiteral("up ports: ") + inventory.upPorts.join(QLatin1Char(' ')));
    lines.append(QStringLiteral("down range ") + spanText(inventory.down));
    lines.append(QStringLiteral("up range ") + spanText(inventory.up));
    return lines;
}

QStringList describe(const reply::TransceiverListing &listing)
{
    QStringList lines;
    for (const reply::TransceiverNote &note : listing.logged)
        lines.append(QStringLiteral("log ") + blockText(note));
    if (listing.last)
        lines.append(QStringLiteral("result ") + blockText(*listing.last));
    return lines;
}

QString describe(LoginPrompt prompt)
{
    switch (prompt) {
    case LoginPrompt::None:
        return QStringLiteral("none");
    case LoginPrompt::Username:
        return QStringLiteral("user name");
    case LoginPrompt::Password:
        return QStringLiteral("password");
    case LoginPrompt::ConfirmPassword:
        return QStringLiteral("confirm password");
    case LoginPrompt::Ready:
        return QStringLiteral("ready");
    case LoginPrompt::Refused:
        return QStringLiteral("refused");
    case LoginPrompt::Failed:
        return QStringLiteral("failed");
    }
    return QStringLiteral("unknown prompt");
}

QStringList describeReply(const QByteArray &bytes, Question question)
{
    const reply::ReplyText text(bytes);
    Report report;
    if (const auto inventory = readHuaweiPorts(text, question.naming, question.isAggregationSwitch)) {
        report.add(1, describe(*inventory));
        if (inventory->isSubModel)
            question.naming.take(huaweiSubModelNaming());
    }
    addQueryAnswers(text, question, report);
    report.add(5, describe(readOpticalPorts(text)));
    report.add(6, describe(readVlanListing(text)));
    addMirroring(7, text, question, report);
    addConfiguration(text, question, report);
    report.add(9, describe(readPoePower(text)));
    if (isTransceiverListing(text))
        report.add(10, describe(readTransceivers(text, question.naming)));
    report.add(11, describe(readInterfaceView(text)));
    const LoginPrompt prompt = readLoginPrompt(text, question.isLoggedIn);
    if (prompt != LoginPrompt::None)
        report.add(12, describe(prompt));
    addNotices(text, report);
    return report.lines;
}

QStringList describeHua3Reply(const QByteArray &bytes, const Question &question)
{
    const reply::ReplyText text(bytes);
    Report report;
    addHua3Listings(text, question, report);
    const LoginPrompt prompt = readHua3LoginPrompt(text, question.isLoggedIn);
    if (prompt != LoginPrompt::None)
        report.add(14, describe(prompt));
    if (const auto inventory = readHua3Ports(text, question.naming, question.isAggregationSwitch))
        report.add(15, describe(*inventory));
    if (isHua3TransceiverListing(text))
        report.add(16, describe(readTransceivers(text, question.naming)));
    if (isRebootNotice(text))
        report.add(17, QStringLiteral("reboot"));
    return report.lines;
}
