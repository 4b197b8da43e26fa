// Ctrl-C as a signal of the event loop.
#pragma once

#include <QtCore/QObject>

#include <memory>

/*!
    While it lives, the first Ctrl-C becomes interrupted() on its thread instead of ending the program; the second one
   ends the program as ever. A program that was started with Ctrl-C ignored (in a script's background) goes on ignoring
   it. One object at a time.
*/
class InterruptWatch : public QObject
{
    Q_OBJECT

public:
    explicit InterruptWatch(QObject *parent = nullptr);
    ~InterruptWatch() override;

signals:
    void interrupted();

private:
    struct Private;
    std::unique_ptr<Private> _d;
};
