#include "logoutput.h"

#include "console.h"

#include <QtCore/QLoggingCategory>
#include <QtCore/QString>

#include <atomic>

namespace {

std::atomic<int> warnings{0};
std::atomic<bool> isInfoShown{true};

void writeMessage(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    const bool isWarning = type != QtDebugMsg && type != QtInfoMsg;
    if (type != QtInfoMsg || isInfoShown)
        console::write(console::Stream::Error, QStringLiteral("switchpanel: ") + message + QLatin1Char('\n'));
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

int LogOutput::warningCount()
{
    return warnings;
}
