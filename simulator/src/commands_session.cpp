#include "commands.h"
#include "consolesession.h"
#include "text.h"

#include <utility>

namespace simulator {

namespace {

void leaveConfiguration(ConsoleSession &session);

void askAboutUncommitted(ConsoleSession &session)
{
    session.askLine(session.dialect().maintenance.uncommittedQuestion, LineKind::Plain,
                    [&session](const QByteArray &line) {
                        const QByteArray answer = line.trimmed().toLower();
                        if (answer == "y" || answer == "yes")
                            session.commit();
                        else if (answer == "n" || answer == "no")
                            session.forgetUncommitted();
                        else if (answer == "c" || answer == "cancel")
                            return;
                        leaveConfiguration(session);
                    });
}

void leaveConfiguration(ConsoleSession &session)
{
    if (session.isUncommitted())
        askAboutUncommitted(session);
    else
        session.enter({});
}

// Settings without an effect here: a line is kept, its undo takes it away again or is kept in its place.
void remember(QByteArrayList &lines, const Arguments &arguments)
{
    const QByteArray base = arguments.undo ? arguments.line.mid(5) : arguments.line;
    const bool known = lines.removeAll(base) > 0;
    lines.removeAll("undo " + base);
    if (!arguments.undo || !known)
        lines << arguments.line;
}

// How the prompt calls a section.
QByteArray sectionPrompt(const QByteArray &header)
{
    const QByteArray last = header.mid(header.lastIndexOf(' ') + 1);
    if (header.startsWith("user-interface con") || header.startsWith("line aux") || header.startsWith("line con"))
        return (header.startsWith("user") ? "ui-console" : "line-aux") + last;
    if (header.startsWith("user-interface vty") || header.startsWith("line vty"))
        return (header.startsWith("user") ? "ui-vty0-" : "line-vty0-") + last;
    if (header.startsWith("acl"))
        return "acl-adv-" + last;
    return header.split(' ').first();
}

} // namespace

namespace commands {

void systemView(ConsoleSession &session, const Arguments &)
{
    session.printLine(session.dialect().answers.systemView);
    session.beginConfiguration(true);
}

void systemViewImmediately(ConsoleSession &session, const Arguments &)
{
    session.printLine(session.dialect().answers.systemView);
    session.beginConfiguration(false);
}

void commit(ConsoleSession &session, const Arguments &)
{
    session.commit();
}

// What the view stood for may be gone with it.
void clearCandidate(ConsoleSession &session, const Arguments &)
{
    session.forgetUncommitted();
    session.enter({kSystemView, {}, {}, 0, {}, {}});
}

void quit(ConsoleSession &session, const Arguments &)
{
    const View view = session.view().view;
    if (view == kUserView)
        session.logout();
    else if (view == kSystemView)
        leaveConfiguration(session);
    else
        session.enter({kSystemView, {}, {}, 0, {}, {}});
}

void toUserView(ConsoleSession &session, const Arguments &)
{
    if (session.view().view != kUserView)
        leaveConfiguration(session);
}

void pagingOff(ConsoleSession &session, const Arguments &arguments)
{
    if (session.options().paging == Paging::Forced)
        return session.fail(session.dialect().errors.permission);
    session.setPaging(arguments.numbers.front() != 0);
    session.printLine(session.dialect().answers.pagingOff);
}

void pagingOn(ConsoleSession &session, const Arguments &)
{
    session.setPaging(true);
}

void pagingOffSilently(ConsoleSession &session, const Arguments &)
{
    if (session.options().paging == Paging::Forced)
        session.fail(session.dialect().errors.permission);
    else
        session.setPaging(false);
}

void screenWidth(ConsoleSession &session, const Arguments &arguments)
{
    const int width = arguments.numbers.front();
    session.askYesNo(QByteArrayLiteral("Warning: This command will change the default screen width. Continue? [Y/N]:"),
                     [&session, width](bool yes) {
                         if (yes)
                             session.setScreenWidth(width);
                     });
}

void echoMode(ConsoleSession &session, const Arguments &arguments)
{
    session.setRedraw(arguments.words.front() != "line");
}

void terminalMonitor(ConsoleSession &session, const Arguments &arguments)
{
    session.setMonitor(!arguments.undo);
    session.printLine(arguments.undo ? session.dialect().answers.monitorOff : session.dialect().answers.monitorOn);
}

void rename(ConsoleSession &session, const Arguments &arguments)
{
    session.change().name = arguments.undo ? session.dialect().factoryName : arguments.words.front();
}

void infoCenter(ConsoleSession &session, const Arguments &arguments)
{
    session.change().infoCenter = !arguments.undo;
}

void ipConflictDetection(ConsoleSession &session, const Arguments &arguments)
{
    session.change().ipConflictDetection = !arguments.undo;
}

void enterSection(ConsoleSession &session, const Arguments &arguments)
{
    const QByteArray header = arguments.line;
    bool exists = false;
    for (const OtherSection &section : session.configuration().sections)
        exists |= section.header == header;
    if (!exists)
        session.change().sections.push_back({header, {}});
    session.enter({kSectionView, {}, {}, 0, sectionPrompt(header), header});
}

void sectionLine(ConsoleSession &session, const Arguments &arguments)
{
    const QByteArray header = session.view().section;
    for (OtherSection &section : session.change().sections) {
        if (section.header == header)
            remember(section.lines, arguments);
    }
}

void systemLine(ConsoleSession &session, const Arguments &arguments)
{
    remember(session.change().otherLines, arguments);
}

void interfaceLine(ConsoleSession &session, const Arguments &arguments)
{
    const ViewState &view = session.view();
    SwitchConfiguration &configuration = session.change();
    const auto port = session.names().portIndex(view.interface);
    if (port)
        remember(configuration.ports[*port].otherLines, arguments);
    else if (view.interface.kind == InterfaceKind::Trunk)
        remember(configuration.trunks[view.interface.number].otherLines, arguments);
    else
        remember(configuration.management.otherLines, arguments);
}

void vlanInterfaceLine(ConsoleSession &session, const Arguments &arguments)
{
    remember(session.change().vlanInterfaces[session.view().interface.number], arguments);
}

void accepted(ConsoleSession &, const Arguments &) {}

} // namespace commands

} // namespace simulator
