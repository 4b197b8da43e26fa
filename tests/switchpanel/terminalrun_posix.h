#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QProcess>
#include <QtCore/QStringList>

#include <functional>

/// A pseudo terminal: what a program writes to its far end is read from here, keys pressed here reach the program.
class Terminal
{
public:
    /// How the far end is set before the program finds it. `Lines` is what a shell leaves: lines, echo, Ctrl-C.
    enum class Mode { Raw, Lines };

    explicit Terminal(ushort columns, Mode mode = Mode::Raw);
    ~Terminal();
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    int farEnd() const { return _farEnd; }
    bool isEchoing() const;

    void press(char key) const;
    void type(const QByteArray &keys) const;

    /// What has been written since the last call, waiting a moment for more.
    QByteArray read() const;

private:
    int _end;
    int _farEnd;
};

/// Runs the program with the terminal as its output, error output and controlling terminal, and where wanted as its
/// input.
class TerminalProcess : public QProcess
{
    Q_OBJECT

public:
    enum class Input { None, Terminal };

    TerminalProcess(const Terminal &terminal, const QStringList &arguments, const QStringList &environment = {},
                    Input input = Input::None);

    bool isRunning() { return state() != NotRunning && !waitForFinished(0); }

protected:
    void setupChildProcess() override;

private:
    const Terminal &_terminal;
    const Input _input;
};

struct TerminalRun
{
    int exitStatus = -1; ///< -1: it crashed or did not end in time
    QByteArray output;
};

/// Something that a person does at the terminal, once a text has come (an empty one: the first output).
struct Reaction
{
    QByteArray text;
    std::function<void(const Terminal &)> act;
};

/// Lets the process run to its end; the reactions take place one after the other.
TerminalRun finish(const Terminal &terminal, TerminalProcess &process, QList<Reaction> reactions);
