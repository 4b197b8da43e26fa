#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

/// The switch's end of a pseudo terminal, raw in both directions.
class PseudoTerminal
{
public:
    PseudoTerminal();
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal &) = delete;
    PseudoTerminal &operator=(const PseudoTerminal &) = delete;

    bool isValid() const;
    /// The path to open as a port.
    QString path() const;
    bool send(const QByteArray &bytes);
    /// What has arrived by now, or within 10 s when at least `atLeast` bytes are expected.
    QByteArray take(int atLeast);
    /// Pulls the cable.
    void close();

private:
    int _master = -1;
    QString _path;
};
