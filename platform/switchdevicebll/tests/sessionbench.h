#pragma once

#include "consolesession.h"
#include "descriptionreader.h"

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>
#include <QtCore/QList>
#include <QtCore/QRandomGenerator>
#include <QtCore/QStringList>

#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <utility>

namespace ovra {
namespace bll {

/// A description as it is shipped.
inline std::shared_ptr<const DeviceDescription> shippedDescription(const QString &name)
{
    const ReadDescription read = readDescription(QStringLiteral(DEVICES_FOLDER "/") + name);
    if (!read.description)
        qFatal("%s", qPrintable(read.error));
    return read.description;
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

/// What the session types, and what the switch writes then.
struct Turn
{
    QByteArray typed;
    QByteArray written;
};
using Dialogue = QList<Turn>;

/// How a dialogue's bytes arrive: the lengths of the pieces, one after the other, over all turns. What is left comes in
/// one piece.
struct Pieces
{
    QList<int> lengths;
    std::chrono::milliseconds gap{0};
};

/// Plays the switch's part. The transcript tells what was typed when, and what came of it.
class DialoguePlayer
{
public:
    DialoguePlayer(SessionBench &bench, Pieces pieces)
        : _bench(bench)
        , _pieces(std::move(pieces))
    {}

    /// The replies, one for each block; the last text says where the session left the script, if it did.
    QByteArrayList play(const QByteArrayList &blocks, const Dialogue &dialogue)
    {
        for (const QByteArray &block : blocks)
            _bench.submit(block);
        for (const Turn &turn : dialogue) {
            while (_bench.sent.isEmpty() && _bench.passUntilAction(std::chrono::minutes(2)))
                ;
            const QByteArray typed = _bench.takeSent();
            if (typed != turn.typed)
                return _bench.replies << "expected to be typed: " + turn.typed + " but was: " + typed;
            write(turn.written);
        }
        _bench.pass(std::chrono::minutes(2));
        if (!_bench.sent.isEmpty())
            return _bench.replies << "typed at the end: " + _bench.sent;
        return _bench.replies;
    }

private:
    void write(QByteArray bytes)
    {
        while (!_pieces.lengths.isEmpty() && _pieces.lengths.first() < bytes.size()) {
            const int length = _pieces.lengths.takeFirst();
            _bench.feed(bytes.left(length));
            bytes.remove(0, length);
            _bench.pass(_pieces.gap);
        }
        if (!_pieces.lengths.isEmpty())
            _pieces.lengths.first() -= bytes.size();
        if (!bytes.isEmpty())
            _bench.feed(bytes);
    }

    SessionBench &_bench;
    Pieces _pieces;
};

/// Pieces of 1 to `largest` bytes, the same ones for the same seed.
inline Pieces randomPieces(quint32 seed, int bytes, int largest)
{
    QRandomGenerator random(seed);
    Pieces pieces;
    pieces.gap = std::chrono::milliseconds(random.bounded(20));
    for (int left = bytes; left > 0;) {
        pieces.lengths << random.bounded(1, largest + 1);
        left -= pieces.lengths.last();
    }
    return pieces;
}

inline int bytesOf(const Dialogue &dialogue)
{
    int bytes = 0;
    for (const Turn &turn : dialogue)
        bytes += turn.written.size();
    return bytes;
}

} // namespace bll
} // namespace ovra
