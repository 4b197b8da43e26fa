#pragma once

#include <simulator/memoryterminal.h>

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>
#include <QtCore/QStringList>

#include <chrono>
#include <stdexcept>

/// Somebody at a terminal who types whole lines.
class ConsoleUser
{
public:
    explicit ConsoleUser(const simulator::SimulatorOptions &options)
        : _terminal(options)
    {
        _terminal.settle();
    }

    /// Logged in at the user view, paging off.
    static simulator::SimulatorOptions atWork(simulator::Family family = simulator::Family::Huawei)
    {
        simulator::SimulatorOptions options;
        options.family = family;
        options.start = simulator::Start::UserView;
        options.paging = simulator::Paging::Off;
        options.logs = false;
        return options;
    }

    /// Types a line; what comes then, the echo included.
    QByteArray enter(const QByteArray &line) { return _terminal.exchange(line + "\r\n", kQuiet); }
    /// The same without the echoed line and without the prompt behind it.
    QByteArray answer(const QByteArray &line)
    {
        const QByteArray all = enter(line);
        const int begin = all.indexOf('\n') + 1;
        return all.mid(begin, all.lastIndexOf('\n') + 1 - begin);
    }
    QByteArrayList answerLines(const QByteArray &line)
    {
        QByteArray text = answer(line);
        if (text.endsWith("\r\n"))
            text.chop(2);
        return text.split('\n');
    }
    /// Types lines one by one; the answer to the last one.
    QByteArray work(const QByteArrayList &lines)
    {
        QByteArray last;
        for (const QByteArray &line : lines)
            last = answer(line);
        return last;
    }
    QByteArray keys(const QByteArray &bytes) { return _terminal.exchange(bytes, kQuiet); }

    const simulator::SwitchConfiguration &running() const { return _terminal.console().state().running; }
    const simulator::SwitchState &state() const { return _terminal.console().state(); }
    simulator::MemoryTerminal &terminal() { return _terminal; }
    simulator::SwitchConsole &console() { return _terminal.console(); }

private:
    static constexpr std::chrono::seconds kQuiet{2};
    simulator::MemoryTerminal _terminal;
};

/// Options from the text syntax.
inline simulator::SimulatorOptions withArguments(const QString &arguments,
                                                 const simulator::SimulatorOptions &defaults = ConsoleUser::atWork())
{
    const auto parsed =
        simulator::parseSimulatorOptions(arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts), defaults);
    if (!parsed.error.isEmpty())
        throw std::invalid_argument(parsed.error.toStdString());
    return parsed.options;
}
