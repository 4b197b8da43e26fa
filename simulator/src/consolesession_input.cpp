#include "consolesession.h"

#include "text.h"

#include <utility>

namespace simulator {

namespace {

constexpr std::size_t kTypeAhead = 1 << 16;
constexpr char kInterrupt = '\x03';
constexpr char kEndOfText = '\x04';

QByteArrayList filtered(const QByteArrayList &lines, const LineFilter &filter)
{
    QByteArrayList result;
    for (const QByteArray &line : lines) {
        const bool found = line.contains(filter.text);
        const bool begun = filter.kind == LineFilter::Kind::Begin && (found || !result.isEmpty());
        if (begun || (filter.kind == LineFilter::Kind::Include && found)
            || (filter.kind == LineFilter::Kind::Exclude && !found))
            result << line;
    }
    return result;
}

} // namespace

bool ConsoleSession::takesKeys() const
{
    return _mode != Mode::Busy && _mode != Mode::Deaf;
}

void ConsoleSession::receive(const QByteArray &bytes, Instant now)
{
    advance(now);
    if (_line.isHung(_now) || _mode == Mode::Deaf)
        return;
    for (const char byte : bytes) {
        if (_typed.size() < kTypeAhead)
            _typed.push_back(byte);
    }
    feed();
}

void ConsoleSession::feed()
{
    while (!_typed.empty() && takesKeys()) {
        const char byte = _typed.front();
        _typed.pop_front();
        const bool isSecondHalf = byte == '\n' && _lastWasReturn;
        _lastWasReturn = byte == '\r';
        if (byte != '\0' && !isSecondHalf)
            feedByte(byte);
        _idleAt = _now + hurried(_options.idleTimeout);
    }
    if (_mode == Mode::Deaf)
        _typed.clear();
    if (_mode == Mode::Idle || _mode == Mode::Deaf || _mode == Mode::AutomaticConfiguration)
        _idleAt.reset();
}

void ConsoleSession::feedByte(char byte)
{
    switch (_mode) {
    case Mode::Idle:
        if (byte == '\r' || byte == '\n') {
            _mode = Mode::Busy;
            beginLogin();
            settle();
        }
        return;
    case Mode::AutomaticConfiguration:
        if (byte == kInterrupt || byte == kEndOfText)
            idle();
        return;
    case Mode::Pager:
        return feedPager(byte);
    case Mode::Line:
        return feedLine(byte);
    case Mode::Busy:
    case Mode::Deaf:
        return;
    }
}

void ConsoleSession::feedPager(char byte)
{
    const bool isNamed = byte == ' ' || byte == '\r' || byte == '\n' || byte == kInterrupt;
    if (!isNamed && _options.pagerKeys == PagerKeys::IgnoreOthers)
        return;
    if (byte == ' ')
        print(_pager.press(Pager::Key::NextScreen));
    else if (byte == '\r' || byte == '\n')
        print(_pager.press(Pager::Key::NextLine));
    else
        print(_pager.press(Pager::Key::Stop));
    if (_pager.isWaiting())
        return;
    _mode = Mode::Busy;
    settle();
}

void ConsoleSession::feedLine(char byte)
{
    const LineEditor::Result result = _editor.feed(byte);
    const bool ends = result.event == LineEditor::Event::Enter && _options.carriageReturnTwice;
    print(ends ? QByteArrayLiteral("\r\r\n") : result.echo);
    switch (result.event) {
    case LineEditor::Event::None:
        return;
    case LineEditor::Event::Enter:
        return lineEntered(_editor.text());
    case LineEditor::Event::Interrupt:
        return interrupted();
    case LineEditor::Event::UserView:
        if (_lineKind == LineKind::Command) {
            print(kLineEnd);
            lineEntered("return");
        }
        return;
    case LineEditor::Event::Complete:
        return complete();
    case LineEditor::Event::Help:
        return help();
    }
}

void ConsoleSession::lineEntered(const QByteArray &text)
{
    _mode = Mode::Busy;
    const auto handler = std::exchange(_lineHandler, nullptr);
    _interruptAnswer.reset();
    if (handler)
        handler(QByteArray(text));
    else
        commandEntered(QByteArray(text));
    settle();
}

void ConsoleSession::interrupted()
{
    if (_lineKind == LineKind::Command) {
        print("^C\r\n");
        _mode = Mode::Busy;
        settle();
    } else if (_interruptAnswer) {
        print(kLineEnd);
        lineEntered(QByteArray(*_interruptAnswer));
    }
}

// When a command has come to its end, the prompt follows.
void ConsoleSession::settle()
{
    if (_mode == Mode::Busy && !_waiting && _loggedIn)
        showPrompt();
}

// --- what commands ask for

void ConsoleSession::askLine(const QByteArray &prompt, LineKind kind, std::function<void(const QByteArray &)> answered)
{
    print(prompt);
    _mode = Mode::Line;
    _lineKind = kind;
    _lineHandler = std::move(answered);
    _editor.begin(kind, 0, 0);
}

void ConsoleSession::askYesNo(const QByteArray &question, std::function<void(bool)> answered)
{
    QByteArray shown = question;
    const int end = question.lastIndexOf("[Y/N]");
    if (end >= 0 && !_options.questionEnd.isEmpty())
        shown = question.left(end) + _options.questionEnd;
    const bool emptyIsNo = shown.contains("[n]");
    askLine(shown, LineKind::Plain, [this, answered = std::move(answered), emptyIsNo](const QByteArray &line) {
        const QByteArray answer = line.trimmed().toLower();
        if (answer == "y" || answer == "yes")
            answered(true);
        else if (answer == "n" || answer == "no" || (answer.isEmpty() && emptyIsNo))
            answered(false);
        else
            askYesNo(_dialect.session.neitherYesNorNo, answered);
    });
    _interruptAnswer = QByteArrayLiteral("N");
}

void ConsoleSession::show(const QByteArrayList &lines)
{
    const QByteArray text = joinLines(_filter ? filtered(lines, *_filter) : lines);
    _filter.reset();
    if (!_paging || _options.paging == Paging::Off)
        return print(text);
    print(_pager.begin(text));
    if (_pager.isWaiting())
        _mode = Mode::Pager;
}

} // namespace simulator
