#include "console.h"

#include <QtCore/QTextCodec>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>

#include <langinfo.h>
#include <sys/ioctl.h>
#include <sys/select.h>
#include <termios.h>
#include <unistd.h>

namespace {

constexpr int kUsualColumns = 80;

std::FILE *fileOf(console::Stream stream)
{
    return stream == console::Stream::Output ? stdout : stderr;
}

int descriptorOf(console::Stream stream)
{
    return stream == console::Stream::Output ? STDOUT_FILENO : STDERR_FILENO;
}

// The signals that would end the program and leave the terminal without echo.
constexpr std::array<int, 4> kEndings{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

// Written by the signal handler, which may run on any thread and call next to nothing: the signal's number goes into a
// pipe that the waiting thread watches.
volatile std::sig_atomic_t endingPipe = -1;

void onEnding(int number)
{
    const int savedError = errno;
    const char byte = static_cast<char>(number);
    // A full pipe already says what this byte would say.
    [[maybe_unused]] const ssize_t written = ::write(endingPipe, &byte, 1);
    errno = savedError;
}

//! While it lives, the endings wait in a pipe.
class CaughtEndings
{
public:
    CaughtEndings()
    {
        if (::pipe(_pipe.data()) != 0)
            return;
        endingPipe = _pipe[1];
        for (std::size_t i = 0; i < kEndings.size(); ++i)
            catchSignal(i);
    }
    ~CaughtEndings()
    {
        if (_pipe[0] < 0)
            return;
        for (std::size_t i = 0; i < kEndings.size(); ++i)
            ::sigaction(kEndings[i], &_previous[i], nullptr);
        endingPipe = -1;
        for (const int end : _pipe)
            ::close(end);
    }
    CaughtEndings(const CaughtEndings &) = delete;
    CaughtEndings &operator=(const CaughtEndings &) = delete;

    //! Waits for input. The signal that came first, or 0.
    int waitForInput() const
    {
        for (;;) {
            // A terminal is select()'s: poll() does not know terminals everywhere.
            fd_set input;
            FD_ZERO(&input);
            FD_SET(STDIN_FILENO, &input);
            if (_pipe[0] >= 0)
                FD_SET(_pipe[0], &input);
            const int ready = ::select(std::max(STDIN_FILENO, _pipe[0]) + 1, &input, nullptr, nullptr, nullptr);
            if (ready < 0 && errno == EINTR)
                continue;
            char number = 0;
            if (ready > 0 && _pipe[0] >= 0 && FD_ISSET(_pipe[0], &input) && ::read(_pipe[0], &number, 1) == 1)
                return number;
            return 0;
        }
    }

private:
    // A program that was started with a signal ignored goes on ignoring it.
    void catchSignal(std::size_t i)
    {
        struct sigaction action = {};
        action.sa_handler = onEnding;
        action.sa_flags = SA_RESTART;
        sigemptyset(&action.sa_mask);
        ::sigaction(kEndings[i], nullptr, &_previous[i]);
        if (_previous[i].sa_handler != SIG_IGN)
            ::sigaction(kEndings[i], &action, nullptr);
    }

    std::array<int, 2> _pipe{-1, -1}; // read end, write end
    std::array<struct sigaction, kEndings.size()> _previous{};
};

//! While it lives, the terminal shows what is typed, or does not.
class TerminalEcho
{
public:
    explicit TerminalEcho(console::Echo echo)
    {
        _isChanged = echo == console::Echo::Off && ::tcgetattr(STDIN_FILENO, &_previous) == 0;
        if (!_isChanged)
            return;
        termios silent = _previous;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        silent.c_lflag |= ECHONL; // the line that follows starts on a line of its own
        ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &silent);
    }
    ~TerminalEcho()
    {
        if (_isChanged)
            ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &_previous);
    }
    TerminalEcho(const TerminalEcho &) = delete;
    TerminalEcho &operator=(const TerminalEcho &) = delete;

private:
    termios _previous{};
    bool _isChanged = false;
};

// Up to the line end, or to the end of the input. `ending` becomes the signal that ended the waiting.
console::Answer readAnswer(const CaughtEndings &endings, int *ending)
{
    QByteArray line;
    for (;;) {
        *ending = endings.waitForInput();
        if (*ending != 0)
            return {console::Answer::Kind::Interrupted, {}};
        char byte = 0;
        const ssize_t count = ::read(STDIN_FILENO, &byte, 1);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0 && line.isEmpty())
            return {};
        if (count <= 0 || byte == '\n')
            return {console::Answer::Kind::Line, QString::fromLocal8Bit(line)};
        line += byte;
    }
}

} // namespace

namespace console {

void prepare()
{
    const QByteArray characterSet(nl_langinfo(CODESET));
    // The C locale, or one that is not installed: today's systems name their files in UTF-8 all the same.
    if (characterSet == "ANSI_X3.4-1968" || characterSet == "US-ASCII" || characterSet == "646")
        QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
}

bool isTerminal(Stream stream)
{
    return isatty(descriptorOf(stream)) != 0;
}

bool hasEscapes(Stream stream)
{
    return isTerminal(stream) && qgetenv("TERM") != "dumb";
}

int columns(Stream stream)
{
    winsize size{};
    if (ioctl(descriptorOf(stream), TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return kUsualColumns;
    return size.ws_col;
}

bool write(Stream stream, const QString &text)
{
    const QByteArray bytes = text.toLocal8Bit();
    std::FILE *file = fileOf(stream);
    const auto size = static_cast<std::size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, file) == size && std::fflush(file) == 0;
}

bool hasKeyboard()
{
    return isatty(STDIN_FILENO) != 0;
}

Answer ask(const QString &question, Echo echo)
{
    if (!hasKeyboard())
        return {};
    Answer answer;
    int ending = 0;
    {
        const CaughtEndings endings;
        const TerminalEcho terminal(echo);
        write(Stream::Error, question);
        answer = readAnswer(endings, &ending);
    }
    if (ending != 0)
        write(Stream::Error, QStringLiteral("\n"));
    if (ending != 0 && ending != SIGINT)
        ::raise(ending); // now that the terminal is as before
    return answer;
}

} // namespace console
