#include "dryrun.h"

#include "listingconsole.h"

#include <consoleportcomm/consoleportcomm.h>
#include <simulator/memoryterminal.h>

#include <QtCore/QFile>

#include <atomic>
#include <memory>

namespace {

constexpr Text kUnreadable{"the port listing '%1' cannot be read: %2", "无法读取端口列表“%1”：%2"};

//! A port by this name while it lives, with the console at its other end.
class RegisteredConsole
{
public:
    RegisteredConsole(QString name, const ListingConsole::Reply &reply)
        : _name(std::move(name))
    {
        ConsoleportComm::registerPort(
            _name, [reply]() -> std::unique_ptr<QIODevice> { return std::make_unique<ListingConsole>(reply); });
    }
    ~RegisteredConsole() { ConsoleportComm::unregisterPort(_name); }
    RegisteredConsole(const RegisteredConsole &) = delete;
    RegisteredConsole &operator=(const RegisteredConsole &) = delete;

    const QString &name() const { return _name; }

private:
    const QString _name;
};

// A listing as a person saved it, with any line ends.
QByteArray withLineEnds(QByteArray listing)
{
    listing.replace("\r", "").replace("\n", "\r\n");
    if (!listing.endsWith("\r\n"))
        listing += "\r\n";
    return listing;
}

ListingConsole::Reply replyFromFile(const QByteArray &listing)
{
    return [listing](const QByteArray &command) {
        return command.startsWith("display interface") ? listing : QByteArray();
    };
}

// Once the inventory is read, nothing is to be said any more: an answer would be one to a switch that is not there.
ListingConsole::Reply replyWhile(std::shared_ptr<const std::atomic<bool>> isAsked, ListingConsole::Reply reply)
{
    return [isAsked = std::move(isAsked), reply = std::move(reply)](const QByteArray &command) {
        return *isAsked ? reply(command) : QByteArray();
    };
}

// The simulated switch is asked in its own time, which passes in no time here.
ListingConsole::Reply replyFromSimulator(simulator::SimulatorOptions options)
{
    options.login = simulator::LoginKind::None;
    options.start = simulator::Start::UserView;
    options.paging = simulator::Paging::Off;
    options.logs = false;
    const auto terminal = std::make_shared<simulator::MemoryTerminal>(options);
    terminal->settle();
    return [terminal](const QByteArray &command) {
        QByteArray shown = terminal->exchange(command + '\r');
        shown.remove(0, shown.indexOf('\n') + 1);       // the echo
        return shown.left(shown.lastIndexOf('\n') + 1); // but for the prompt
    };
}

Outcome makeReply(const ConnectionRequest &request, const QString &listingFile, ListingConsole::Reply *reply)
{
    if (!listingFile.isEmpty()) {
        QFile file(listingFile);
        if (!file.open(QIODevice::ReadOnly))
            return {ExitStatus::Failed, inLanguage(kUnreadable, request.language, {listingFile, file.errorString()})};
        *reply = replyFromFile(withLineEnds(file.readAll()));
        return {};
    }
    ConnectionRequest simulated = request;
    if (!simulated.isSimulated())
        simulated.simulated = familyName(request.family);
    const simulator::ParsedOptions parsed = simulatorOptions(simulated);
    if (!parsed.error.isEmpty())
        return {ExitStatus::Failed, parsed.error};
    *reply = replyFromSimulator(parsed.options);
    return {};
}

} // namespace

DryRun dryRun(const ConnectionRequest &request, const QString &listingFile, const SwitchAction &action)
{
    DryRun result;
    ListingConsole::Reply reply;
    result.outcome = makeReply(request, listingFile, &reply);
    if (result.outcome.status != ExitStatus::Done)
        return result;
    const QString name =
        listingFile.isEmpty() ? QStringLiteral("sim:") + familyName(request.family) : QString(listingFile);
    const auto isAsked = std::make_shared<std::atomic<bool>>(true);
    const RegisteredConsole console(name, replyWhile(isAsked, reply));
    ConnectionRequest here = request;
    here.port = console.name();
    here.simulated.clear();
    here.isQuiet = true;
    SwitchSession session(here);
    result.outcome = session.connectDevice();
    if (result.outcome.status != ExitStatus::Done)
        return result;
    *isAsked = false;
    session.viewModel().setCommandObserver([&result](const QString &label, const QByteArray &bytes) {
        result.blocks.push_back({label, bytes});
    });
    result.outcome = session.run(action);
    session.viewModel().setCommandObserver({});
    return result;
}
