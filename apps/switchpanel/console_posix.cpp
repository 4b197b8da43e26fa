#include "console.h"

#include <QtCore/QTextCodec>

#include <cstdio>

#include <langinfo.h>
#include <sys/ioctl.h>
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

} // namespace console
