#pragma once

#include "blockitems.h"
#include "consolescreen.h"
#include "devicedescription.h"
#include "exchange.h"
#include "lineending.h"
#include "loglines.h"
#include "sessionaction.h"

#include <QtCore/QByteArray>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace ovra {
namespace bll {

/// The dialogue with a switch on a console line as a pure machine: blocks of commands, bytes from the switch and the
/// time go in; bytes for the switch, replies and log texts come out. No thread, no clock, no port of its own.
///
///              submit()                             ┌──────── next line ────────┐
///     ┌──────┐ ───────▶ ┌───────────┐  at a prompt  ▼    prompt                 │
///     │ Idle │          │ Preparing │ ────────▶ ┌───────────┐ ──────────────────┘
///     │      │          └───────────┘           │ Answering │ ◀─┐ question, pager: answered
///     └──────┘ ◀────────── login prompt, ────── └───────────┘ ──┘
///        ▲                 time-out, port lost        │
///        └──────────────── Deliver (one reply) ◀──────┘ nothing left to type
///
/// Preparing types nothing of the block: it leaves a pager, wakes an idle console, looks for the first prompt, or waits
/// for a switch that boots. Beside this the session knows whether it is logged in: a login prompt or an idle banner
/// takes that away, the first prompt of the user view gives it back.
///
/// Never true: two blocks under way; a block with no reply, or with two; a line typed while the one before is not
/// answered; text typed into a question or a pager that is not its answer; an empty reply for two blocks in a row.
///
/// Times that are passed in never decrease.
class ConsoleSession
{
public:
    using Time = Exchange::Time;
    using DescriptionSource = std::function<std::shared_ptr<const DeviceDescription>()>;

    /// `source` is asked when a block starts, and may answer with null.
    explicit ConsoleSession(DescriptionSource source);

    /// A port has been opened: nothing is known about what is at its other end.
    void connected();
    /// The port has gone. Every block is answered.
    SessionActions connectionLost();
    /// The port was closed on purpose. No block is answered.
    void disconnected();

    SessionActions submit(const QByteArray &block, Time now);
    SessionActions receive(const QByteArray &bytes, Time now);
    /// To be called when dueAt() has come. Earlier calls do nothing.
    SessionActions advance(Time now);
    /// When the session has something to do unless bytes arrive before.
    std::optional<Time> dueAt() const;

    bool isLoggedIn() const { return _isLoggedIn; }
    /// Of the switch, as its prompt says; empty while it is not known.
    QByteArray name() const { return _name; }

private:
    using Milliseconds = std::chrono::milliseconds;
    enum class State { Idle, Preparing, Answering };

    struct Block
    {
        std::deque<BlockItem> items; // not typed yet
        QByteArray reply;            // of the lines that are done
        bool isSingleLine = false;
        bool isRefused = false; // one of its lines
        bool isStuck = false;   // in a view that the switch has refused to leave
        int nudges = 0;         // what the session has typed by itself before the first prompt
        int returns = 0;        // views left before the first prompt
        qint64 received = 0;
        Time begun;
    };

    enum class Notice { None, PressEnter, Interrupt };

    // consolesession.cpp: blocks and bytes
    void startWaiting();
    void begin(const QByteArray &block);
    void start();
    void startAtPager();
    void startBeforeLogin();
    void takeByte(char byte);
    void lineCompleted();
    int standingIn(const QByteArray &line) const;
    Notice noticeIn(const QByteArray &line) const;
    void takeUnsolicited(const QByteArray &bytes);
    SessionActions takeActions();

    // consolesession_timing.cpp: when a line is complete, and what happens when it never is
    void judgeLine();
    bool isAnswered(LineEnding::Kind kind) const;
    std::optional<Time> reactionAt() const;
    Milliseconds quietTime() const;
    bool isPerhapsStray() const;
    std::optional<Time> nudgeAt() const;
    std::optional<Time> restartsAt() const;
    void nudge();
    Time expiresAt() const;
    void expire();

    // consolesession_answers.cpp: what the unterminated line asks for, and what is typed
    void reactToLine();
    void atNotice(Notice notice);
    void atPrompt(const LineEnding &ending);
    void atQuestion();
    void answer(const QByteArray &answer);
    void atPager();
    void turnPage();
    void atLoginPrompt();
    void atFailure();
    void loseLogin();
    void nextItem(bool isAtPrompt);
    bool isUseless(const BlockItem &item, bool isAtPrompt);
    void type(const BlockItem &item);
    void typeOwn(const QByteArray &line, const QByteArray &end);
    void beginExchange(const QByteArray &line);
    void send(const QByteArray &bytes);
    void expectAnswer();

    // consolesession_replies.cpp: what becomes of what the switch has written
    void closeSegment();
    void closeRestart();
    QByteArray commandReply(const QByteArray &text);
    QByteArray loginReply(const QByteArray &text);
    void closeAndFinish();
    void finish();
    void finishRestart();
    void finishBroken();
    void finishFlooded();
    void finishUnanswered();
    void deliver(const QByteArray &reply);
    QString shownLine() const;
    void debug(const QString &text);
    void warn(const QString &text, const QStringList &values = {});

    static constexpr int kLargestReply = 16 * 1024 * 1024;
    // What looks like a prompt also stands inside listings, which go on sooner than this.
    static constexpr Milliseconds kLongQuiet{300};
    static constexpr int kMostNudges = 10; // a line that cannot be brought to a prompt

    const SessionFacts &facts() const { return _description->session; }

    const DescriptionSource _source;
    std::shared_ptr<const DeviceDescription> _description; // of the block under way or, without one, of the last
    ConsoleScreen _screen;
    SessionActions _actions; // of the call under way
    Time _now;

    QByteArray _name;
    std::optional<Time> _restartedAt; // the switch boots
    bool _isOpen = false;
    bool _isLoggedIn = false;
    bool _isFlooded = false;       // the rest of a reply that was too long may still be coming
    bool _wasEmpty = false;        // the last reply was
    bool _isEnterOpen = false;     // the session's own Enter may still be answered
    bool _isCredentialDue = false; // the last reply has ended at a login prompt, or there was none yet
    bool _isToldClosed = false;    // a block has been answered without a port

    State _state = State::Idle;
    std::deque<QByteArray> _waiting;
    Block _block;
    Exchange _exchange;

    // The line as it stands
    bool _isJudged = false;  // _ending is that of the present line
    bool _endsInLog = false; // the line that was completed last is a log line
    LogLineFinder _logLines;
    int _reopened = 0; // length of the login prompt that stands there again, since a log line behind it was taken away
    Notice _notice = Notice::None; // of the last line that says something
    bool _isBehindAnswer = false;  // it was judged without what stood before the last answer
    LineEnding _ending;            // of the unterminated line, while the session is busy
    Time _lastByte;
    Time _lastActivity; // a byte received, a line typed, a key pressed
    Time _lastNews;     // the same, but of what is received only lines that are no log lines
};

} // namespace bll
} // namespace ovra
