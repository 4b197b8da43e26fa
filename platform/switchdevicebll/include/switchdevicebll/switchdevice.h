#pragma once

#include <switchdevicebll/switchdevicebll_export.h>

#include <QtCore/QObject>
#include <QtCore/QString>

class ApplicationThread;
class ConsoleportComm;

namespace ovra {
namespace bll {

/// The one console session of the process: it owns the link to the switch and is where the language of the interface is
/// announced.
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
    /// ConsoleportComm::startComThread() must have been called.
    bool connectToSerial(const QString &port, int baudRate, int parity, int stopBits, int flowControl);

    /// Closes the port and gives up an opening in progress. Returns at once, also without a connection.
    void disConnectSerial();

    /// The link itself. Never null, the same object for ever.
    ConsoleportComm *getCommPtr() const;

signals:
    /// A view model has come up in the language with this code ("zh_CN", "en"). For whoever wants to follow it.
    void signal_loadLanguage(QString type);

    /// The language has changed to this code. TranslateManage::setLanguage() emits it; view models follow it.
    void signal_languageChange(QString type);

private:
    SwitchDevice();

    ConsoleportComm *const _comm;
    ApplicationThread *const _sessionThread;
};

} // namespace bll
} // namespace ovra
