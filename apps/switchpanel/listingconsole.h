// A switch's console that only shows: for seeing what would be sent.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>

#include <functional>

/*!
    A port inside the program with a console at its other end that is logged in, answers each command line with the text
   that `reply` has for it, and does nothing else. Lives on the thread that opens it, which needs an event loop.
*/
class ListingConsole final : public QIODevice
{
    Q_OBJECT

public:
    //! The switch's answer to a command, with CR LF line ends; empty where it says nothing.
    using Reply = std::function<QByteArray(const QByteArray &command)>;

    explicit ListingConsole(Reply reply);

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return _outgoing.size() + QIODevice::bytesAvailable(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 size) override;

private:
    void enter();

    const Reply _reply;
    QByteArray _line;
    QByteArray _outgoing;
};
