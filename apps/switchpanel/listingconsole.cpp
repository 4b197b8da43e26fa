#include "listingconsole.h"

#include <algorithm>
#include <utility>

namespace {

constexpr const char *kPrompt = "<switch>";

} // namespace

ListingConsole::ListingConsole(Reply reply)
    : _reply(std::move(reply))
{}

void ListingConsole::enter()
{
    const QByteArray command = _line.trimmed();
    _outgoing += _line + "\r\n";
    if (!command.isEmpty())
        _outgoing += _reply(command);
    _outgoing += kPrompt;
    _line.clear();
}

qint64 ListingConsole::readData(char *data, qint64 maxSize)
{
    const int size = static_cast<int>(std::min<qint64>(maxSize, _outgoing.size()));
    std::copy_n(_outgoing.constData(), size, data);
    _outgoing.remove(0, size);
    return size;
}

qint64 ListingConsole::writeData(const char *data, qint64 size)
{
    for (qint64 i = 0; i < size; ++i) {
        if (data[i] == '\r')
            enter();
        else if (data[i] >= ' ')
            _line += data[i];
    }
    const auto announce = [this, size] {
        emit bytesWritten(size);
        if (!_outgoing.isEmpty())
            emit readyRead();
    };
    QMetaObject::invokeMethod(this, announce, Qt::QueuedConnection);
    return size;
}
