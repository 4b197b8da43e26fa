// The program's log: Qt's messages on standard error, in the program's own form.
#pragma once

#include <QtCore/QString>

//! The least important messages that are shown.
enum class LogLevel { Warning, Info, Debug };

/*!
    While it lives, the libraries' messages of the level and above appear on standard error as "switchpanel: text";
   debug messages only when asked for, by `level` or by QT_LOGGING_RULES, which has the last word. Switched-off debug
   messages cost nothing. One object at a time, on the main thread; messages may come from any thread.
*/
class LogOutput
{
public:
    explicit LogOutput(LogLevel level);
    ~LogOutput();
    LogOutput(const LogOutput &) = delete;
    LogOutput &operator=(const LogOutput &) = delete;

    //! From now on the text is shown as "****", also where a message quotes it as bytes. Empty texts hide nothing.
    static void hide(const QString &secret);

    //! The text with everything that is hidden shown so.
    static QString withoutSecrets(QString text);

    //! Warnings and worse so far.
    static int warningCount();
};
