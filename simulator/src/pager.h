#pragma once

#include <QtCore/QByteArray>

namespace simulator {

/// Shows a listing in screens.
class Pager
{
public:
    enum class Key { NextScreen, NextLine, Stop };

    /// Rows 0: no paging.
    Pager(int rows, int eraseColumns);

    /// Begins a listing of whole lines; the answer is its first part.
    QByteArray begin(const QByteArray &listing);
    /// Goes on. Empty when there is nothing to page.
    QByteArray press(Key key);
    /// Whether the marker is shown and a key is awaited.
    bool isWaiting() const { return _position < _listing.size(); }
    /// The marker, for a terminal that has lost sight of it.
    static QByteArray marker();

private:
    QByteArray show(int lines);
    QByteArray eraseMarker() const;

    const int _rows;
    const int _eraseColumns;
    QByteArray _listing;
    int _position = 0;
};

} // namespace simulator
