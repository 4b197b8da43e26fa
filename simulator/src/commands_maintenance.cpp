#include "commands.h"
#include "consolesession.h"
#include "text.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace simulator {

namespace {

constexpr int kMostDots = 12;
constexpr Duration kComparing = std::chrono::seconds(1);
constexpr Duration kErasing = std::chrono::seconds(2);

void dots(ConsoleSession &session, int left, Duration pause, const std::function<void()> &then)
{
    if (left == 0)
        return then();
    session.after(pause, [&session, left, pause, then] {
        session.print(".");
        dots(session, left - 1, pause, then);
    });
}

// Silence with a dot now and then.
void work(ConsoleSession &session, Duration time, const std::function<void()> &then)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time).count();
    const int count = std::clamp(static_cast<int>(seconds), 1, kMostDots);
    dots(session, count, session.hurried(time) / count, then);
}

void write(ConsoleSession &session)
{
    session.print(session.dialect().maintenance.saving);
    work(session, session.options().saveTime, [&session] {
        session.state().saved = session.running();
        session.print(session.dialect().maintenance.saved);
        session.log(LogKind::Saved);
    });
}

bool isSaved(const ConsoleSession &session)
{
    const auto &saved = session.state().saved;
    return saved && session.configurationText(*saved) == session.configurationText(session.running());
}

void askToReboot(ConsoleSession &session)
{
    session.askYesNo(session.dialect().maintenance.rebootQuestion, [&session](bool yes) {
        if (!yes)
            return;
        session.print(session.dialect().maintenance.rebooting);
        session.reboot();
    });
}

// File name and overwriting, which only the Hua3 family asks about.
void askForFile(ConsoleSession &session)
{
    const QByteArray file = session.dialect().startupFile;
    session.printLine("Please input the file name(*.cfg)[" + file + ']');
    session.askLine(QByteArrayLiteral("(To leave the existing filename unchanged, press the enter key):"),
                    LineKind::Plain, [&session, file](const QByteArray &typed) {
                        const QByteArray name = typed.trimmed().isEmpty() ? file : typed.trimmed();
                        if (!session.state().saved)
                            return write(session);
                        session.askYesNo(name + " exists, overwrite? [Y/N]:", [&session](bool yes) {
                            if (yes)
                                write(session);
                        });
                    });
}

} // namespace

namespace commands {

void save(ConsoleSession &session, const Arguments &)
{
    session.askYesNo(session.dialect().maintenance.saveQuestion, [&session](bool yes) {
        if (!yes)
            return;
        if (session.options().family == Family::Hua3)
            askForFile(session);
        else
            write(session);
    });
}

void saveForced(ConsoleSession &session, const Arguments &)
{
    write(session);
}

void resetSaved(ConsoleSession &session, const Arguments &)
{
    const MaintenanceTexts &texts = session.dialect().maintenance;
    session.askYesNo(texts.resetQuestion, [&session, &texts](bool yes) {
        if (!yes)
            return;
        session.print(texts.resetting);
        work(session, kErasing, [&session, &texts] {
            session.state().saved.reset();
            session.print(texts.reset);
        });
    });
}

// Restarts by itself.
void resetFactory(ConsoleSession &session, const Arguments &)
{
    const MaintenanceTexts &texts = session.dialect().maintenance;
    session.askYesNo(texts.factoryQuestion, [&session, &texts](bool yes) {
        if (!yes)
            return;
        session.askYesNo(texts.factorySecondQuestion, [&session, &texts](bool sure) {
            if (!sure)
                return;
            session.state().saved.reset();
            session.print(texts.rebooting);
            session.reboot();
        });
    });
}

// Takes effect at the next start, which the user has to bring about.
void restoreFactory(ConsoleSession &session, const Arguments &)
{
    session.askYesNo(session.dialect().maintenance.factoryQuestion, [&session](bool yes) {
        if (!yes)
            return;
        session.print(
            "Restoring the factory default configuration. This process might take a few minutes. Please wait");
        work(session, kErasing, [&session] {
            session.state().saved.reset();
            session.print(
                "Done.\r\nPlease reboot the system to place the factory default configuration into effect.\r\n");
        });
    });
}

void reboot(ConsoleSession &session, const Arguments &)
{
    session.print(session.dialect().maintenance.comparing);
    session.after(session.hurried(kComparing), [&session] {
        if (isSaved(session))
            return askToReboot(session);
        session.askYesNo(session.dialect().maintenance.rebootUnsavedQuestion, [&session](bool yes) {
            if (yes)
                session.state().saved = session.running();
            askToReboot(session);
        });
    });
}

} // namespace commands

} // namespace simulator
