#pragma once

#include <QtCore/QString>

namespace lumen {
namespace trans {
class Translator;
}
} // namespace lumen

/// What went wrong with which port.
struct PortError
{
    enum class Kind {
        None,
        NoPortChosen,
        BadBaudRate,
        UnsupportedSettings,
        ThreadNotRunning,
        NoSuchPort,
        NoPermission,
        Busy,
        NotATerminal,
        OpenTimedOut,
        OpenRevoked,
        OpenFailed,
        NotOpen,
        WriteTimedOut,
        WriteFailed,
        Vanished,
    };

    Kind kind = Kind::None;
    QString port;
    QString detail; // the system's own words, or the number that was refused

    /// A sentence for the user; empty for Kind::None.
    QString text() const;
};

/// The translator of all texts of this library, null for none. Any thread.
void setPortTextTranslator(const lumen::trans::Translator *translator);

/// The translation of one of the library's own (Chinese) texts.
QString portText(const QString &source);
