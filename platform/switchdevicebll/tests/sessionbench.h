#pragma once

#include "consolesession.h"
#include "descriptionreader.h"

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>
#include <QtCore/QStringList>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace ovra {
namespace bll {

/// A description as it is shipped.
inline std::shared_ptr<const DeviceDescription> shippedDescription(const QString &name)
{
    static std::map<QString, std::shared_ptr<const DeviceDescription>> known;
    auto &description = known[name];
    if (!description) {
        const ReadDescription read = readDescription(QStringLiteral(DEVICES_FOLDER "/") + name);
        if (!read.description)
            qFatal("%s", qPrintable(read.error));
        description = read.description;
    }
    return description;
}

/// A console session with a clock of its own, and what it wants done.
class SessionBench
{
public:
    using Milliseconds = std::chrono::milliseconds;

    explicit SessionBench(std::shared_ptr<const DeviceDescription> inForce = nullptr)
        : description(std::move(inForce))
        , session([this] { return this->description; })
    {
        session.connected();
    }
    SessionBench(const SessionBench &) = delete;
    SessionBench &operator=(const SessionBench &) = delete;

    /// Logged in on the switch NAME, its name known, at the user view.
    void logIn(const QByteArray &name = "NAME")
    {
        submit("\r\n");
        feed("\r\n<" + name + ">");
        pass(Milliseconds(400));
        forget();
    }

    void submit(const QByteArray &block) { keep(session.submit(block, now)); }
    void feed(const QByteArray &bytes) { keep(session.receive(bytes, now)); }
    void loseConnection() { keep(session.connectionLost()); }

    /// Lets time pass, and the session do what falls due meanwhile.
    void pass(Milliseconds time)
    {
        const ConsoleSession::Time end = now + time;
        int steps = 0;
        for (auto due = session.dueAt(); due && *due <= end; due = session.dueAt()) {
            now = std::max(now, *due);
            keep(session.advance(now));
            if (++steps > kMostSteps)
                qFatal("the session never comes to rest");
        }
        now = end;
    }
    /// The same, but only until the session sends something or delivers a reply. False when it does neither.
    bool passUntilAction(Milliseconds limit)
    {
        const ConsoleSession::Time end = now + limit;
        const auto before = std::make_pair(sent.size(), replies.size());
        while (before == std::make_pair(sent.size(), replies.size())) {
            const auto due = session.dueAt();
            if (!due || *due > end)
                return false;
            now = std::max(now, *due);
            keep(session.advance(now));
        }
        return true;
    }

    QByteArray takeSent() { return std::exchange(sent, {}); }
    void forget()
    {
        sent.clear();
        replies.clear();
        warnings.clear();
        debugs.clear();
    }

    std::shared_ptr<const DeviceDescription> description;
    ConsoleSession session;
    ConsoleSession::Time now{std::chrono::hours(1)};
    QByteArray sent;
    QByteArrayList replies;
    QStringList warnings;
    QStringList debugs;

    /// Called for what is to be sent, instead of collecting it.
    std::function<void(const QByteArray &)> sender;

private:
    static constexpr int kMostSteps = 100000;

    void keep(const SessionActions &actions)
    {
        for (const SessionAction &action : actions) {
            switch (action.kind) {
            case SessionAction::Kind::Send:
                sent += action.bytes;
                if (sender)
                    sender(action.bytes);
                break;
            case SessionAction::Kind::Deliver:
                replies << action.bytes;
                break;
            case SessionAction::Kind::Debug:
                debugs << action.text;
                break;
            case SessionAction::Kind::Warning:
                warnings << action.text + QLatin1Char('|') + action.values.join(QLatin1Char('|'));
                break;
            }
        }
    }
};

} // namespace bll
} // namespace ovra
