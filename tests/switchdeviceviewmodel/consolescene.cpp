#include "consolescene.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QLoggingCategory>
#include <QtCore/QMutexLocker>
#include <QtCore/QRegularExpression>
#include <QtCore/QTimer>
#include <QtTest/QTest>

namespace {

using Family = ConsoleScene::Family;

const char *levelName(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "debug";
    case QtInfoMsg:
        return "info";
    case QtWarningMsg:
        return "warning";
    case QtCriticalMsg:
        return "critical";
    case QtFatalMsg:
        break;
    }
    return "fatal";
}

bool isLoggerLine(const QString &line)
{
    static const QRegularExpression stamp(QStringLiteral(R"(\A\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\] )"));
    return stamp.match(line).hasMatch();
}

QByteArray ports(const char *name, int slot, int first, int count)
{
    QByteArray lines;
    for (int port = first; port < first + count; ++port)
        lines += QByteArray(name) + QByteArray::number(slot) + "/0/" + QByteArray::number(port)
                 + "  up    up  0%  0%  0  0\r\n";
    return lines;
}

QByteArray header(Family family)
{
    return family == Family::Hua3 ? "Interface  Link Speed  Duplex Type PVID Description\r\n"
                                  : "Interface  PHY   Protocol InUti OutUti inErrors outErrors\r\n";
}

const char *gigabitName(Family family)
{
    return family == Family::Huawei ? "GigabitEthernet" : "GE";
}

const char *tenGigabitName(Family family)
{
    return family == Family::Huawei ? "XGigabitEthernet" : family == Family::Hua3 ? "XGE" : "10GE";
}

} // namespace

MessageLog *MessageLog::s_log = nullptr;

MessageLog::MessageLog()
    : _previous(qInstallMessageHandler(&MessageLog::handle))
{
    s_log = this;
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=true"));
}

MessageLog::~MessageLog()
{
    qInstallMessageHandler(_previous);
    s_log = nullptr;
}

void MessageLog::handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const QMutexLocker locker(&s_log->_lock);
    s_log->_messages.append({type, QString::fromUtf8(context.file), text});
    if (type != QtDebugMsg && type != QtInfoMsg)
        s_log->_warnings.append(text);
}

QStringList MessageLog::lines() const
{
    const QMutexLocker locker(&_lock);
    QStringList lines;
    for (const Message &message : _messages) {
        if (message.file.contains(QLatin1String("switchdeviceviewmodel"))
            && !message.file.contains(QLatin1String("tst_")))
            lines.append(QLatin1String(levelName(message.type)) + QLatin1Char(' ') + message.text);
    }
    return lines;
}

QStringList MessageLog::lines(const QString &level) const
{
    QStringList found;
    const QString begin = level + QLatin1Char(' ');
    for (const QString &line : lines()) {
        if (line.startsWith(begin))
            found.append(line.mid(begin.size()));
    }
    return found;
}

QStringList MessageLog::takeWarnings()
{
    const QMutexLocker locker(&_lock);
    return std::exchange(_warnings, QStringList());
}

void MessageLog::clear()
{
    const QMutexLocker locker(&_lock);
    _messages.clear();
}

ConsoleScene::ConsoleScene(Family family, const QString &language)
{
    RecordingPlatform &platform = RecordingPlatform::instance();
    platform.reset();
    platform.setLanguage(language);
    _viewModel = std::make_unique<SwitchDeviceViewModel>();
    _recorder = std::make_unique<SignalRecorder>(_viewModel.get());
    if (family != Family::None)
        _viewModel->setCurlogoChanged(tr(family == Family::Hua3 ? "华三" : "华为"));
    if (family == Family::HuaweiSubModel) {
        answer(listing(family));
        _viewModel->disconnectDevice(); // so that the completion of that reply completes nothing of the test's own
    }
    clear();
}

ConsoleScene::~ConsoleScene() = default;

void ConsoleScene::logIn()
{
    _viewModel->slot_handleParseState(SwitchDeviceViewModel::InputMore);
    answer("<Switch>");
    // The reply completes the first block, and the listing behind the login is sent.
    if (!QTest::qWaitFor([this] { return sent().size() >= 2; }))
        qFatal("no login");
    complete();
    clear();
}

QString ConsoleScene::tr(const char *text) const
{
    return _viewModel->lxTr(QString::fromUtf8(text));
}

void ConsoleScene::answer(const QByteArray &bytes)
{
    QMetaObject::invokeMethod(_viewModel.get(), "onDataReceived", Q_ARG(QByteArray, bytes));
    processEvents();
}

void ConsoleScene::ask(const QString &label)
{
    if (label == tr("接口解析"))
        _viewModel->slot_handleParseState(SwitchDeviceViewModel::LoginSuccess);
    else
        _viewModel->queryDeviceStatus(label);
    clear();
}

QStringList ConsoleScene::signalTexts() const
{
    QStringList texts;
    const QStringList all = _recorder->texts();
    const QVector<SignalRecorder::Emission> emissions = _recorder->emissions(); // as many, or more by now
    for (int i = 0; i < all.size(); ++i) {
        const SignalRecorder::Emission &emission = emissions.at(i);
        const QVariant argument = emission.arguments.value(0);
        // Enumerators have no text of their own.
        if (emission.name == QLatin1String("parseStateChanged"))
            texts.append(
                QStringLiteral("parseStateChanged(%1)").arg(argument.value<SwitchDeviceViewModel::ParseState>()));
        else if (emission.name == QLatin1String("currentconnectTypeChanged"))
            texts.append(QStringLiteral("currentconnectTypeChanged(%1)")
                             .arg(argument.value<SwitchDeviceViewModel::ConnectType>()));
        else if (emission.name != QLatin1String("logMessage") || !isLoggerLine(argument.toString()))
            texts.append(all.at(i));
    }
    return texts;
}

QStringList ConsoleScene::signalTextsWithoutLog() const
{
    QStringList texts;
    for (const QString &text : signalTexts()) {
        if (!text.startsWith(QLatin1String("logMessage(")))
            texts.append(text);
    }
    return texts;
}

QStringList ConsoleScene::panelLines() const
{
    QStringList lines;
    for (const SignalRecorder::Emission &emission : _recorder->emissions()) {
        const QString line = emission.arguments.value(0).toString();
        if (emission.name == QLatin1String("logMessage") && isLoggerLine(line))
            lines.append(line.mid(line.indexOf(QLatin1String("] ")) + 2));
    }
    return lines;
}

QStringList ConsoleScene::announcedLines() const
{
    QStringList lines;
    for (const SignalRecorder::Emission &emission : _recorder->emissions()) {
        const QString line = emission.arguments.value(0).toString();
        if (emission.name == QLatin1String("logMessage") && !isLoggerLine(line))
            lines.append(line);
    }
    return lines;
}

void ConsoleScene::clear()
{
    processEvents();
    _recorder->clear();
    RecordingPlatform::instance().clearCalls();
}

void ConsoleScene::flushConsoleLines()
{
    constexpr int kBatchIntervalMs = 100;
    const auto timers = _viewModel->findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    for (QTimer *timer : timers) {
        if (timer->interval() == kBatchIntervalMs)
            QMetaObject::invokeMethod(timer, "timeout", Qt::DirectConnection);
    }
}

void ConsoleScene::processEvents()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

QByteArray ConsoleScene::listing(Family family, int downPorts, int upPorts)
{
    const bool isHua3 = family == Family::Hua3;
    const int slot = isHua3 ? 1 : 0;
    return header(family) + ports(gigabitName(family), slot, 1, downPorts)
           + ports(tenGigabitName(family), slot, isHua3 ? downPorts + 1 : 1, upPorts);
}

QByteArray ConsoleScene::aggregationListing(Family family, int downPorts, int upPorts)
{
    return header(family) + ports(tenGigabitName(family), family == Family::Hua3 ? 1 : 0, 1, downPorts)
           + ports("40GE", family == Family::Hua3 ? 1 : 0, 1, upPorts);
}

QByteArray ConsoleScene::slotListing(int copperPorts)
{
    QByteArray listing = "Board Type        : S5720-28X\r\n"
                         "Port   Optic  MDI   Speed\r\n";
    for (int port = 1; port <= copperPorts; ++port)
        listing += "0/0/" + QByteArray::number(port) + "    GE(C)  Absent   Auto 1000\r\n";
    return listing;
}
