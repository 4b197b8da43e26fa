#include "terminalrun_posix.h"

#include "programrun.h"

#include <QtCore/QElapsedTimer>

#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace {

constexpr int kLimitMsecs = 60'000;
constexpr int kPollMsecs = 20;
constexpr int kChunk = 4'096;

} // namespace

Terminal::Terminal(ushort columns, Mode mode)
    : _end(::posix_openpt(O_RDWR | O_NOCTTY))
{
    if (_end < 0 || ::grantpt(_end) != 0 || ::unlockpt(_end) != 0)
        qFatal("no pseudo terminal");
    _farEnd = ::open(::ptsname(_end), O_RDWR | O_NOCTTY);
    if (mode == Mode::Raw) {
        termios settings{};
        ::tcgetattr(_farEnd, &settings);
        ::cfmakeraw(&settings);   // no echo, no line ends changed
        settings.c_lflag |= ISIG; // but Ctrl-C is a signal
        ::tcsetattr(_farEnd, TCSANOW, &settings);
    }
    winsize size{};
    size.ws_col = columns;
    size.ws_row = 25;
    ::ioctl(_farEnd, TIOCSWINSZ, &size);
    ::fcntl(_end, F_SETFL, O_NONBLOCK);
}

Terminal::~Terminal()
{
    ::close(_farEnd);
    ::close(_end);
}

bool Terminal::isEchoing() const
{
    termios settings{};
    return ::tcgetattr(_farEnd, &settings) == 0 && (settings.c_lflag & ECHO) != 0;
}

void Terminal::press(char key) const
{
    type(QByteArray(1, key));
}

void Terminal::type(const QByteArray &keys) const
{
    if (::write(_end, keys.constData(), static_cast<std::size_t>(keys.size())) != keys.size())
        qFatal("the terminal takes no keys");
}

QByteArray Terminal::read() const
{
    pollfd poll{_end, POLLIN, 0};
    ::poll(&poll, 1, kPollMsecs);
    QByteArray bytes(kChunk, '\0');
    const ssize_t count = ::read(_end, bytes.data(), static_cast<std::size_t>(bytes.size()));
    bytes.truncate(count > 0 ? static_cast<int>(count) : 0);
    return bytes;
}

TerminalProcess::TerminalProcess(const Terminal &terminal, const QStringList &arguments, const QStringList &environment,
                                 Input input)
    : _terminal(terminal)
    , _input(input)
{
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.remove("NO_COLOR");
    variables.remove("QT_LOGGING_RULES");
    variables.insert("TERM", "xterm");
    for (const QString &entry : environment)
        variables.insert(entry.section('=', 0, 0), entry.section('=', 1));
    setProcessEnvironment(variables);
    start(switchpanelProgram(), arguments, QIODevice::ReadOnly);
}

void TerminalProcess::setupChildProcess()
{
    ::setsid();
    ::ioctl(_terminal.farEnd(), TIOCSCTTY, 0);
    if (_input == Input::Terminal)
        ::dup2(_terminal.farEnd(), STDIN_FILENO);
    ::dup2(_terminal.farEnd(), STDOUT_FILENO);
    ::dup2(_terminal.farEnd(), STDERR_FILENO);
    // A test runner in the background of a script ignores Ctrl-C, and its children would inherit that.
    ::signal(SIGINT, SIG_DFL);
}

TerminalRun finish(const Terminal &terminal, TerminalProcess &process, QList<Reaction> reactions)
{
    if (!process.waitForStarted(kLimitMsecs))
        return {};
    TerminalRun run;
    QElapsedTimer timer;
    timer.start();
    int seen = 0;
    while (process.isRunning() && timer.elapsed() < kLimitMsecs) {
        run.output += terminal.read();
        const bool isWaiting = !reactions.isEmpty() && !run.output.isEmpty();
        const int found = isWaiting ? run.output.indexOf(reactions.first().text, seen) : -1;
        if (found < 0)
            continue;
        const Reaction reaction = reactions.takeFirst();
        seen = found + reaction.text.size();
        reaction.act(terminal);
    }
    for (QByteArray rest = terminal.read(); !rest.isEmpty(); rest = terminal.read())
        run.output += rest;
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished(kLimitMsecs);
    } else if (process.exitStatus() == QProcess::NormalExit) {
        run.exitStatus = process.exitCode();
    }
    return run;
}
