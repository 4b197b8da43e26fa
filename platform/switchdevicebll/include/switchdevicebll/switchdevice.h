#pragma once

#include <switchdevicebll/switchdevicebll_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QString>

class ConsoleportComm;

namespace ovra {
namespace bll {

/// The one console session of the process: it owns the link to the switch, and is where the language of the interface
/// is announced.
///
/// A caller hands over a block of lines and gets exactly one signal_dataReceived() with everything that the switch
/// wrote in reply, however the bytes arrived. Blocks are answered in the order in which they were handed over, whoever
/// did it. Prompts, questions, pagers, and the wording of a kind of switch come from the device description that
/// SwitchDeviceConfig has in force when a block starts.
///
/// Created on the first getInstance() and never deleted. It lives on a thread of its own, which runs while a
/// QCoreApplication exists: jobs posted to the object run there. The functions may be called from any thread.
class SWITCHDEVICEBLL_EXPORT SwitchDevice final : public QObject
{
    Q_OBJECT

public:
    static SwitchDevice *getInstance();

    /// Opens the port and closes the one that was open before. 8 data bits, no parity, 1 stop bit, no flow control:
    /// `parity`, `stopBits` and `flowControl` are 0 for exactly that, and nothing else is supported. Waits 5 s at most.
    /// False with the reason in getCommPtr()->errorInfo().
    ///
    /// Begins a new session, which knows neither the switch's name nor whether anybody is logged in. Blocks of the
    /// session before are answered as if the port had gone.
    ///
    /// ConsoleportComm::startComThread() must have been called.
    bool connectToSerial(const QString &port, int baudRate, int parity, int stopBits, int flowControl);

    /// Closes the port and gives up an opening in progress. Blocks that are not answered yet never will be. Returns at
    /// once, also without a connection.
    void disConnectSerial();

    /// Hands over a block: lines ended by CR LF, which are typed one at a time, each when the switch has answered the
    /// one before. The word "space", with or without CR LF behind it, is the key that turns the pager's pages: it pages
    /// through the whole listing of the line before it. Four blanks and CR LF turn pages too, but by the caller: the
    /// reply ends at the next pager. A line "Y", "N" or an empty one answers the question that it meets.
    ///
    /// Returns at once; the reply comes with signal_dataReceived().
    void sendControlCmd(const QByteArray &bytes);

    /// The link itself. Never null, the same object for ever. Its rawWrite() goes past the session.
    ConsoleportComm *getCommPtr() const;

signals:
    /// The whole reply to one block: echoes, prompts and CR LF as received, without the pages' ends. Emitted on the
    /// session's thread.
    ///
    /// Empty when the switch did not answer or the port is closed, but never for two blocks in a row: CR LF then. A
    /// reply that breaks off is delivered as far as it came. Both are told in a warning.
    void signal_dataReceived(QByteArray data);

    /// A view model has come up in the language with this code ("zh_CN", "en"). For whoever wants to follow it.
    void signal_loadLanguage(QString type);

    /// The language has changed to this code. TranslateManage::setLanguage() emits it; view models follow it.
    void signal_languageChange(QString type);

private:
    struct Private;

    SwitchDevice();

    Private *const _d;
};

} // namespace bll
} // namespace ovra
