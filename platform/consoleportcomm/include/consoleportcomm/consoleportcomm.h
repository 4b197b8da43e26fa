#pragma once

#include <basecomm/basecomm.h>
#include <consoleportcomm/consoleportcomm_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVariantList>

#include <functional>
#include <memory>

class QIODevice;

namespace lumen {
namespace trans {
class Translator;
}
} // namespace lumen

/// A serial console port.
///
/// All ports are served by one port thread, which runs between the first startComThread() and the last stopComThread();
/// the port object itself is touched by no other thread. Every function here may be called from any thread, several at
/// a time, and returns within the limit that it states, also while the port is being closed or has just vanished.
class CONSOLEPORTCOMM_EXPORT ConsoleportComm : public BaseComm
{
    Q_OBJECT

public:
    /// Makes the device behind a port that the host has registered. Called on the port thread, for each opening; null
    /// when there is none. The device is opened for reading and writing there, and deleted after use. It reports what
    /// arrives with readyRead(), what has left with bytesWritten(), and its end with readChannelFinished().
    using DeviceFactory = std::function<std::unique_ptr<QIODevice>()>;

    explicit ConsoleportComm(QObject *parent = nullptr);
    ~ConsoleportComm() override;

    /// Starts the port thread if it does not run, and counts the caller in. The thread needs a QCoreApplication: it
    /// starts with it and ends with it, whatever the count.
    static void startComThread();

    /// Counts a caller out. The last one closes every port on the port thread and waits for the thread's end. Without a
    /// startComThread() before it nothing happens.
    static void stopComThread();

    /// The names of the ports (QString) in the system's order, then the registered ones in the order of registration.
    static QVariantList getCOMList();

    /// Adds a port with a name of the host's choice to the list. False for an empty name and for one already
    /// registered. A registered port hides one of the system with the same name.
    static bool registerPort(const QString &name, DeviceFactory factory);

    /// Takes a registered port off the list. A connection through it lasts.
    static void unregisterPort(const QString &name);

    /// The translator for errorInfo() and the log texts; it must live for ever. Null, as at first, leaves them in
    /// Chinese.
    static void setTranslator(const lumen::trans::Translator *translator);

    /// Opens a port of the list, or any path that the system can open as a terminal, pseudo terminals included, with 8
    /// data bits, no parity, 1 stop bit, no flow control: the last three arguments are 0 for exactly that, and nothing
    /// else is supported. The port that was open before is closed. Takes 5 s at most; false with an errorInfo(), also
    /// when close() came in between.
    bool open(const QString &port, int baudRate, int parity = 0, int stopBits = 0, int flowControl = 0);

    /// Closes the port and revokes an opening in progress. Returns at once: getIsConnected() is false from now on, the
    /// port itself is released by the port thread, before it looks at anything that is asked of it later.
    void close();

    bool getIsConnected() const override;

    /// The last failure as a sentence that names the port, in the language of the translator. Empty after a success.
    QString errorInfo() const;

    /// Sends the bytes past the console session. True once the system has taken all of them, false with an errorInfo()
    /// when that takes longer than their own time on the line and 2 s. Forgets what timedRead() would have returned.
    virtual bool rawWrite(const QByteArray &bytes);

    /// What has arrived since the last rawWrite() or since the port was opened, the last 64 KiB of it. When nothing
    /// has, waits up to `timeoutMs` milliseconds for the first bytes. Takes nothing away, neither from the console
    /// session nor from another timedRead(). Empty after the time, and at once on a closed port.
    virtual QByteArray timedRead(int timeoutMs);

signals:
    /// What arrives, as it arrives. Emitted on the port thread.
    void bytesReceived(const QByteArray &bytes);

    /// The port has gone by itself (cable pulled, device reset); it is closed, and errorInfo() says why. Emitted on the
    /// port thread.
    void portLost();

private:
    struct Private;
    const std::unique_ptr<Private> _d;
};
