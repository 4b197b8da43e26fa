#include "progressdisplay.h"

#include "console.h"
#include "texttable.h"

#include <utility>

namespace {

constexpr qint64 kRedrawMsecs = 100;
constexpr qint64 kPlainLineMsecs = 1'000;

constexpr Text kProgress{"%1: %2 packets read, %3 packets/s", "%1：已读取 %2 个数据包，%3 包/秒"};

} // namespace

ProgressDisplay::ProgressDisplay(QString name, Language language, bool isShown)
    : _name(std::move(name))
    , _language(language)
    , _isShown(isShown)
    , _isTerminal(console::hasEscapes(console::Stream::Error))
{
    _sinceStart.start();
    _sinceLine.start();
}

ProgressDisplay::~ProgressDisplay()
{
    finish();
}

QString ProgressDisplay::text() const
{
    return progressText(_name, _packets, _sinceStart.elapsed(), _language);
}

void ProgressDisplay::drawLine(const QString &text)
{
    // The last column stays free: some terminals wrap as soon as it is written.
    const QString line = elided(text, console::columns(console::Stream::Error) - 1);
    console::write(console::Stream::Error, QLatin1Char('\r') + line + QLatin1String("\x1b[K"));
}

void ProgressDisplay::update(int packets)
{
    _packets = packets;
    if (!_isShown)
        return;
    if (_isTerminal) {
        if (_isDrawn && _sinceLine.elapsed() < kRedrawMsecs)
            return;
        drawLine(text());
        _isDrawn = true;
    } else {
        if (_sinceLine.elapsed() < kPlainLineMsecs)
            return;
        console::write(console::Stream::Error, text() + QLatin1Char('\n'));
    }
    _sinceLine.start();
}

void ProgressDisplay::finish()
{
    if (!std::exchange(_isShown, false) || _packets == 0)
        return;
    if (_isTerminal)
        drawLine(text());
    else
        console::write(console::Stream::Error, text());
    console::write(console::Stream::Error, QStringLiteral("\n"));
}

QString progressText(const QString &name, int packets, qint64 elapsedMsecs, Language language)
{
    const qint64 rate = elapsedMsecs > 0 ? qint64{packets} * 1'000 / elapsedMsecs : packets;
    return inLanguage(kProgress, language, {printable(name), QString::number(packets), QString::number(rate)});
}
