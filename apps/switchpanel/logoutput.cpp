#include "logoutput.h"

#include "console.h"

#include <QtCore/QDebug>
#include <QtCore/QLoggingCategory>
#include <QtCore/QStringList>

#include <atomic>
#include <mutex>

namespace {

std::atomic<int> warnings{0};
std::atomic<bool> isInfoShown{true};

std::mutex secretsLock; // guards secrets
QStringList secrets;

// As debug messages write bytes.
QString quoted(const QString &text)
{
    QString written;
    QDebug(&written).nospace() << text.toUtf8();
    return written.mid(1, written.size() - 2);
}

void writeMessage(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    const bool isWarning = type != QtDebugMsg && type != QtInfoMsg;
    if (type != QtInfoMsg || isInfoShown)
        console::write(console::Stream::Error,
                       QStringLiteral("switchpanel: ") + LogOutput::withoutSecrets(message) + QLatin1Char('\n'));
    if (isWarning)
        ++warnings;
}

} // namespace

LogOutput::LogOutput(LogLevel level)
{
    isInfoShown = level != LogLevel::Warning;
    QLoggingCategory::setFilterRules(level == LogLevel::Debug ? QStringLiteral("default.debug=true")
                                                              : QStringLiteral("*.debug=false"));
    qInstallMessageHandler(writeMessage);
}

LogOutput::~LogOutput()
{
    qInstallMessageHandler(nullptr);
}

void LogOutput::hide(const QString &secret)
{
    const std::lock_guard<std::mutex> guard(secretsLock);
    if (!secret.isEmpty())
        secrets << secret << quoted(secret);
}

QString LogOutput::withoutSecrets(QString text)
{
    const std::lock_guard<std::mutex> guard(secretsLock);
    for (const QString &secret : qAsConst(secrets))
        text.replace(secret, QStringLiteral("****"));
    return text;
}

int LogOutput::warningCount()
{
    return warnings;
}
