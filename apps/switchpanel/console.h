// Standard output and standard error as a place for people: text in any language, terminals told from files.
#pragma once

#include <QtCore/QString>

namespace console {

enum class Stream { Output, Error };

/*!
    To be called once, when the application object exists. Where the locale names no character set beyond ASCII,
   arguments, file names and output are UTF-8; on Windows the console is made to understand escape sequences.
*/
void prepare();

bool isTerminal(Stream stream);

//! Whether the stream is a terminal that understands escape sequences.
bool hasEscapes(Stream stream);

//! Columns of the terminal; 80 where it does not say.
int columns(Stream stream);

//! Writes at once, in the locale's character set (Windows: Unicode on a console, UTF-8 elsewhere). False when it
//! cannot.
bool write(Stream stream, const QString &text);

//! Whether somebody can be asked something: standard input is a terminal.
bool hasKeyboard();

enum class Echo { On, Off };

//! What somebody typed, or why nobody did.
struct Answer
{
    enum class Kind { Line, Ended, Interrupted };

    Kind kind = Kind::Ended; //!< Ended: the end of the input, or there is no terminal
    QString text;
};

//! Asks on standard error and waits for a line from the terminal of standard input. Ctrl-C ends the waiting instead of
//! the program. The terminal is as before afterwards, also when a signal ends the program meanwhile.
Answer ask(const QString &question, Echo echo);

} // namespace console
