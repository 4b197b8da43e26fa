#pragma once

#include "sessionbench.h"

#include <simulator/memoryterminal.h>

#include <algorithm>

namespace ovra {
namespace bll {

/// A console session at a simulated switch, both on one clock that runs as fast as the computer does.
class SwitchBench
{
public:
    explicit SwitchBench(const simulator::SimulatorOptions &options, const QString &file = {})
        : bench(file.isEmpty() ? nullptr : shippedDescription(file))
        , terminal(options)
    {
        bench.sender = [this](const QByteArray &bytes) { terminal.type(bytes); };
        run(std::chrono::milliseconds(1)); // what the switch has written before the port was opened
        bench.session.connected();
        bench.forget();
    }

    /// The reply to a block; "no reply" after an hour without.
    QByteArray replyTo(const QByteArray &block)
    {
        const int before = bench.replies.size();
        bench.submit(block);
        const auto end = bench.now + std::chrono::hours(2);
        while (bench.replies.size() == before && bench.now < end)
            step(end);
        return bench.replies.size() == before + 1 ? bench.replies.last() : QByteArrayLiteral("no reply");
    }

    /// User name and password, as asked for. The last reply.
    QByteArray logIn(const QByteArray &user = "admin", const QByteArray &password = "Admin@123")
    {
        QByteArray reply = replyTo("\r\n");
        for (int i = 0; i < 4; ++i) {
            if (reply.endsWith("Username:") || reply.endsWith("Login: "))
                reply = replyTo(user + "\r\n");
            else if (reply.endsWith("Password:") || reply.endsWith("password:") || reply.endsWith("Password: "))
                reply = replyTo(password + "\r\n");
        }
        return reply;
    }

    void run(std::chrono::milliseconds time)
    {
        const auto end = bench.now + time;
        while (bench.now < end)
            step(end);
    }

    SessionBench bench;
    simulator::MemoryTerminal terminal;

private:
    // To the next moment at which anything happens on either side.
    void step(ConsoleSession::Time end)
    {
        ConsoleSession::Time next = end;
        if (const auto due = bench.session.dueAt())
            next = std::min(next, *due);
        if (const auto due = terminal.console().nextDue())
            next = std::min<ConsoleSession::Time>(next, bench.now + (*due - terminal.now()));
        next = std::max(next, bench.now);
        terminal.advance(std::chrono::duration_cast<simulator::Duration>(next - bench.now));
        bench.now = next;
        const QByteArrayList pieces = terminal.pieces();
        for (const QByteArray &piece : pieces)
            bench.feed(piece);
        if (pieces.isEmpty())
            bench.pass(std::chrono::milliseconds(0));
    }
};

} // namespace bll
} // namespace ovra
