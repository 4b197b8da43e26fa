#include "console.h"

#include <atomic>
#include <cstdio>

#include <windows.h>

namespace {

constexpr int kUsualColumns = 80;

HANDLE handleOf(console::Stream stream)
{
    return GetStdHandle(stream == console::Stream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

bool isConsole(HANDLE handle)
{
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0;
}

bool hasMode(HANDLE handle, DWORD flag)
{
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0 && (mode & flag) != 0;
}

HANDLE keyboard()
{
    return GetStdHandle(STD_INPUT_HANDLE);
}

// Set by Ctrl-C while a question waits; the console calls this on a thread of its own.
std::atomic<bool> isAskingInterrupted{false};

BOOL WINAPI onAskingEvent(DWORD event)
{
    if (event != CTRL_C_EVENT)
        return FALSE;
    isAskingInterrupted = true;
    return TRUE;
}

// Ctrl-C ends the reading with nothing read and ERROR_OPERATION_ABORTED, possibly before its handler has run.
console::Answer readAnswer()
{
    constexpr DWORD kLongestLine = 1'024;
    wchar_t line[kLongestLine];
    DWORD count = 0;
    SetLastError(ERROR_SUCCESS);
    const bool isRead = ReadConsoleW(keyboard(), line, kLongestLine, &count, nullptr) != 0;
    if (isAskingInterrupted || GetLastError() == ERROR_OPERATION_ABORTED)
        return {console::Answer::Kind::Interrupted, {}};
    if (!isRead || count == 0)
        return {};
    QString text = QString::fromWCharArray(line, static_cast<int>(count));
    while (text.endsWith(QLatin1Char('\n')) || text.endsWith(QLatin1Char('\r')))
        text.chop(1);
    return {console::Answer::Kind::Line, text};
}

bool writeConsole(HANDLE handle, const QString &text)
{
    constexpr int kChunk = 8'192; // consoles refuse large blocks
    for (int begin = 0; begin < text.size(); begin += kChunk) {
        const QString chunk = text.mid(begin, kChunk);
        DWORD written = 0;
        if (!WriteConsoleW(handle, chunk.utf16(), static_cast<DWORD>(chunk.size()), &written, nullptr))
            return false;
    }
    return true;
}

} // namespace

namespace console {

void prepare()
{
    for (const Stream stream : {Stream::Output, Stream::Error}) {
        const HANDLE handle = handleOf(stream);
        DWORD mode = 0;
        if (GetConsoleMode(handle, &mode))
            SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    }
}

bool isTerminal(Stream stream)
{
    return isConsole(handleOf(stream));
}

bool hasEscapes(Stream stream)
{
    return hasMode(handleOf(stream), ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

int columns(Stream stream)
{
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (!GetConsoleScreenBufferInfo(handleOf(stream), &info))
        return kUsualColumns;
    return info.srWindow.Right - info.srWindow.Left + 1;
}

bool write(Stream stream, const QString &text)
{
    const HANDLE handle = handleOf(stream);
    if (isConsole(handle))
        return writeConsole(handle, text);
    const QByteArray bytes = text.toUtf8();
    std::FILE *file = stream == Stream::Output ? stdout : stderr;
    const auto size = static_cast<std::size_t>(bytes.size());
    return std::fwrite(bytes.constData(), 1, size, file) == size && std::fflush(file) == 0;
}

bool hasKeyboard()
{
    return isConsole(keyboard());
}

Answer ask(const QString &question, Echo echo)
{
    if (!hasKeyboard())
        return {};
    DWORD previous = 0;
    GetConsoleMode(keyboard(), &previous);
    isAskingInterrupted = false;
    SetConsoleCtrlHandler(onAskingEvent, TRUE);
    constexpr DWORD kLines = ENABLE_LINE_INPUT | ENABLE_PROCESSED_INPUT;
    SetConsoleMode(keyboard(), echo == Echo::On ? kLines | ENABLE_ECHO_INPUT : kLines);
    write(Stream::Error, question);
    const Answer answer = readAnswer();
    SetConsoleMode(keyboard(), previous);
    SetConsoleCtrlHandler(onAskingEvent, FALSE);
    if (echo == Echo::Off || answer.kind == Answer::Kind::Interrupted)
        write(Stream::Error, QStringLiteral("\n"));
    return answer;
}

} // namespace console
