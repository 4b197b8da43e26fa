#include "pager.h"

#include "text.h"

namespace simulator {

Pager::Pager(int rows, int eraseColumns)
    : _rows(rows)
    , _eraseColumns(eraseColumns)
{}

QByteArray Pager::marker()
{
    return QByteArrayLiteral("  ---- More ----");
}

QByteArray Pager::eraseMarker() const
{
    const QByteArray back = "\x1b[" + number(_eraseColumns) + 'D';
    return back + QByteArray(_eraseColumns, ' ') + back;
}

QByteArray Pager::begin(const QByteArray &listing)
{
    _listing = listing;
    _position = 0;
    return show(_rows);
}

// Rows are counted by line ends: a line that wraps at the terminal's edge is one, as switches count.
QByteArray Pager::show(int lines)
{
    int end = _rows > 0 ? _position : _listing.size();
    for (int line = 0; line < lines && end < _listing.size(); ++line) {
        const int lineEnd = _listing.indexOf('\n', end);
        end = lineEnd < 0 ? _listing.size() : lineEnd + 1;
    }
    QByteArray part = _listing.mid(_position, end - _position);
    _position = end;
    if (isWaiting())
        return part + marker();
    _listing.clear();
    _position = 0;
    return part;
}

QByteArray Pager::press(Key key)
{
    if (!isWaiting())
        return {};
    if (key == Key::Stop) {
        _listing.clear();
        _position = 0;
        return eraseMarker();
    }
    return eraseMarker() + show(key == Key::NextScreen ? _rows : 1);
}

} // namespace simulator
