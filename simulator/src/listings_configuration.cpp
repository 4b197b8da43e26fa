#include "commands.h"
#include "consolesession.h"
#include "text.h"

#include <QtCore/QLocale>

namespace simulator {

namespace {

QByteArrayList framed(const QByteArrayList &head, const QByteArrayList &lines)
{
    QByteArrayList result = head;
    result << QByteArrayLiteral("#") << lines;
    if (!lines.isEmpty())
        result << QByteArrayLiteral("#");
    return result << QByteArrayLiteral("return");
}

// The section with this header; those without a header when it is empty.
QByteArrayList sectionLines(const ConsoleSession &session, const QByteArray &header)
{
    QByteArrayList lines;
    for (const OtherSection &section : session.dialect().sections(session, session.configuration())) {
        if (section.header != header)
            continue;
        if (header.isEmpty()) {
            lines << section.lines;
            continue;
        }
        lines << header;
        for (const QByteArray &line : section.lines)
            lines << ' ' + line;
    }
    return lines;
}

QByteArray headerOfView(const ConsoleSession &session)
{
    const ViewState &view = session.view();
    if (view.view == kVlanView)
        return "vlan " + number(view.vlan);
    if (view.view == kSectionView)
        return view.section;
    if (view.view == kSnoopingView)
        return QByteArrayLiteral("igmp-snooping");
    return "interface " + session.names().longName(view.interface);
}

} // namespace

namespace commands {

void showConfiguration(ConsoleSession &session, const Arguments &)
{
    session.show(session.configurationLines(session.running()));
}

void showInterfaceConfiguration(ConsoleSession &session, const Arguments &arguments)
{
    const QByteArray header = "interface " + session.names().longName(arguments.interfaces.front());
    session.show(framed({}, sectionLines(session, header)));
}

void showSaved(ConsoleSession &session, const Arguments &)
{
    if (session.state().saved)
        session.show(session.configurationLines(*session.state().saved));
    else
        session.fail(QByteArrayLiteral("Error: The saved configuration file does not exist."));
}

void showCandidate(ConsoleSession &session, const Arguments &)
{
    session.show(session.configurationLines(session.configuration()));
}

void showThis(ConsoleSession &session, const Arguments &)
{
    const View view = session.view().view;
    if (view == kUserView || view == kGroupView || view == kGroupDefinitionView)
        return session.show(framed(session.dialect().configurationHead, {}));
    const QByteArray header = view == kSystemView ? QByteArray() : headerOfView(session);
    session.show(framed(session.dialect().configurationHead, sectionLines(session, header)));
}

void showClock(ConsoleSession &session, const Arguments &)
{
    const QDateTime clock = session.clock();
    session.printLine(clock.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")).toLatin1());
    session.printLine(QLocale::c().dayName(clock.date().dayOfWeek()).toUtf8());
    session.printLine(QByteArrayLiteral("Time Zone(UTC) : UTC"));
}

void showHistory(ConsoleSession &session, const Arguments &)
{
    QByteArrayList lines;
    for (const QByteArray &line : session.history())
        lines << "  " + line;
    session.show(lines);
}

void showLogBuffer(ConsoleSession &session, const Arguments &)
{
    QByteArrayList lines{QByteArrayLiteral("Logging buffer configuration and contents : enabled"),
                         QByteArrayLiteral("Allowed max buffer size : 1024"),
                         QByteArrayLiteral("Actual buffer size : 512"),
                         "Current messages : " + number(session.logBuffer().size()), QByteArray()};
    for (int i = session.logBuffer().size() - 1; i >= 0; --i)
        lines << session.logBuffer().at(i);
    session.show(lines);
}

} // namespace commands

} // namespace simulator
