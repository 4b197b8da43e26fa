#include "logoutput.h"

#include "console.h"

#include <QtCore/QLoggingCategory>
#include <QtCore/QString>

#include <atomic>

namespace {

std::atomic<int> warnings{0};

void writeMessage(QtMsgType type, const QMessageLogContext & /*context*/, const QString &message)
{
    const bool isWarning = type != QtDebugMsg && type != QtInfoMsg;
    console::write(console::Stream::Error, QStringLiteral("switchpanel: ") + message + QLatin1Char('\n'));
    if (isWarning)
        ++warnings;
}

} // namespace

LogOutput::LogOutput(bool isVerbose)
{
    QLoggingCategory::setFilterRules(isVerbose ? QStringLiteral("default.debug=true")
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
