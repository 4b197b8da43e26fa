#include "switchsession.h"

#include "console.h"
#include "loglines.h"
#include "logoutput.h"
#include "userio.h"

#include <consoleportcomm/consoleportcomm.h>
#include <switchdevicebll/switchdevice.h>

#include <QtCore/QTimer>

#include <array>

namespace {

constexpr std::chrono::milliseconds kPoll{10};
// Lines of replies reach the log in batches, every 100 ms.
constexpr std::chrono::milliseconds kLogDelay{250};

// Texts of the view model, in its own source language.
constexpr const char *kOpenFailed = "串口打开失败";
constexpr const char *kLoginFailed = "登录失败,检查用户名或者密码后重新连接";
constexpr const char *kDisconnected = "已断开连接";
constexpr std::array<const char *, 2> kAskedForHere{"请先设置用户名", "请先设置密码"};
constexpr std::array<const char *, 3> kQueueNotes{"执行中...", "执行结束", "执行失败，请重试..."};

constexpr Text kAskUserName{"User name: ", "用户名："};
constexpr Text kAskPassword{"Password: ", "密码："};
constexpr Text kNoUserName{"the switch asks for a user name: --user is missing", "交换机要求用户名：缺少 --user"};
constexpr Text kNoPassword{"the switch asks for a password: name a --password-file, or type it at a terminal",
                           "交换机要求密码：请用 --password-file 指定，或在终端中输入"};
constexpr Text kNoSimulated{"the simulated switch cannot be started: %1", "无法启动模拟交换机：%1"};
constexpr Text kTimeOut{"%1: not done within %2 s", "%1：%2秒内未完成"};
constexpr Text kSilence{
    "%1: nothing comes at %2 baud (is the switch on, the cable in its console port, the speed right?)",
    "%1：波特率%2下没有收到任何数据（请检查交换机电源、console线和波特率）"};
constexpr Text kNoLogin{"%1: no login at %2 baud, see above", "%1：波特率%2下未能登录，见上文"};
constexpr Text kNoPrompt{"%1: what comes at %2 baud is neither a login nor a prompt",
                         "%1：波特率%2下收到的数据既不是登录提示也不是命令提示符"};
constexpr Text kNoInventory{"%1: the port listing is not that of a %2 switch; is --family right?",
                            "%1：端口列表不符合%2交换机的格式，请检查 --family"};
constexpr Text kRefused{"the switch did not take everything, see above", "交换机未接受全部命令，见上文"};

} // namespace

SwitchSession::SwitchSession(const ConnectionRequest &request)
    : _request(request)
    , _viewModel(std::make_unique<SwitchDeviceViewModel>())
{
    const bool isChinese = _request.language == Language::Chinese;
    _viewModel->slot_languageChange(isChinese ? QStringLiteral("zh_CN") : QStringLiteral("en"));
    // The label counts in the language that is in force when it is written.
    _viewModel->setCurlogoChanged(translated(_request.family == SwitchFamily::Huawei ? "华为" : "华三"));
    listen();
}

SwitchSession::~SwitchSession()
{
    disconnect(_viewModel.get(), nullptr, this, nullptr);
    _viewModel->disconnectDevice();
    _viewModel.reset();
}

void SwitchSession::listen()
{
    using ViewModel = SwitchDeviceViewModel;
    connect(&_interrupts, &InterruptWatch::interrupted, this, [this] { fail(ExitStatus::Interrupted, {}); });
    connect(_viewModel.get(), &ViewModel::showToast, this, &SwitchSession::onToast);
    connect(_viewModel.get(), &ViewModel::parseStateChanged, this, &SwitchSession::onParseState);
    connect(_viewModel.get(), &ViewModel::logMessage, this, &SwitchSession::onLogMessage);
    connect(_viewModel.get(), &ViewModel::upComRangeChanged, this, [this] { _hasInventory = true; });
    connect(_viewModel.get(), &ViewModel::isWaitingResponseChanged, this,
            [this] { _hasBegun = _hasBegun || _viewModel->isWaitingResponse(); });

    ConsoleportComm *const comm = ovra::bll::SwitchDevice::getInstance()->getCommPtr();
    connect(comm, &ConsoleportComm::portLost, this, [this, comm] { failAtPort(comm->errorInfo()); });
    connect(
        comm, &ConsoleportComm::bytesReceived, this, [this] { _hasHeard = true; }, Qt::DirectConnection);
}

void SwitchSession::fail(ExitStatus status, const QString &reason)
{
    if (_hasEnded)
        return;
    _hasEnded = true;
    _end = {status, reason};
}

// The serial port warns of what happens to it; once is enough.
void SwitchSession::failAtPort(const QString &reason)
{
    fail(ExitStatus::Failed, LogOutput::warningCount() == _warnings ? reason : QString());
}

void SwitchSession::onToast(const QString &text)
{
    if (text.startsWith(translated(kOpenFailed)))
        return failAtPort(text);
    bool isSaidElsewhere = text.isEmpty() || text == translated(kLoginFailed) || text == translated(kDisconnected);
    for (const char *known : kAskedForHere)
        isSaidElsewhere = isSaidElsewhere || text == translated(known);
    if (!isSaidElsewhere && !_request.isQuiet)
        printError(text);
}

void SwitchSession::onParseState(SwitchDeviceViewModel::ParseState state)
{
    // The detailed log has every line that is sent, the answers to these prompts too.
    const bool isAsked = state == SwitchDeviceViewModel::NeedUsername || state == SwitchDeviceViewModel::NeedPassword
                         || state == SwitchDeviceViewModel::NeedConfirmPassword;
    if (isAsked)
        _viewModel->setLogMore(false);
    switch (state) {
    case SwitchDeviceViewModel::NeedUsername:
        _missing = _viewModel->userText().isEmpty() ? Missing::UserName : Missing::Nothing;
        break;
    case SwitchDeviceViewModel::NeedPassword:
        _missing = _viewModel->passwordText().isEmpty() ? Missing::Password : Missing::Nothing;
        break;
    case SwitchDeviceViewModel::LoginSuccess:
        _isLoggedIn = true;
        _viewModel->setLogMore(_request.isLogShown && _request.isVerbose);
        break;
    case SwitchDeviceViewModel::LoginFailed:
        fail(ExitStatus::Refused, _request.portText() + QStringLiteral(": ") + translated(kLoginFailed));
        break;
    case SwitchDeviceViewModel::NeedConfirmPassword:
    case SwitchDeviceViewModel::InputMore:
    case SwitchDeviceViewModel::ConnectSuccess:
    case SwitchDeviceViewModel::CurrentConfiguration:
    case SwitchDeviceViewModel::ParseSuccess:
    case SwitchDeviceViewModel::ConfigInfo:
    case SwitchDeviceViewModel::Unknown:
        break;
    }
}

void SwitchSession::onLogMessage(const QString &message)
{
    for (const QString &line : message.split(QLatin1Char('\n')))
        takeLogLine(line);
}

void SwitchSession::takeLogLine(const QString &line)
{
    const LogLine parts = splitLogLine(line);
    // Warnings and worse are on standard error already.
    const bool isToldElsewhere = !parts.level.isEmpty() && parts.level != QLatin1String("Info");
    if (isToldElsewhere)
        return;
    if (_request.isLogShown)
        console::write(console::Stream::Error, printable(LogOutput::withoutSecrets(line)) + QLatin1Char('\n'));
    for (const char *note : kQueueNotes) {
        if (parts.text.endsWith(translated(note)))
            return;
    }
    _results.append(parts.text);
}

QString SwitchSession::openSimulated()
{
    const simulator::ParsedOptions parsed = simulatorOptions(_request);
    if (!parsed.error.isEmpty()) {
        fail(ExitStatus::Failed, parsed.error);
        return {};
    }
    _simulated = std::make_unique<SimulatedLine>(parsed.options);
    QString name = _simulated->start(_request.portText());
    if (name.isEmpty())
        fail(ExitStatus::Failed, say(kNoSimulated, {_simulated->errorString()}));
    if (!_request.userName)
        _viewModel->setUserText(QString::fromUtf8(parsed.options.user));
    if (!_request.password)
        setPassword(QString::fromUtf8(parsed.options.password));
    return name;
}

void SwitchSession::setPassword(const QString &password)
{
    LogOutput::hide(password); // debug messages have every line that is sent
    _viewModel->setPasswordText(password);
}

void SwitchSession::setUp(const QString &portName)
{
    if (_request.userName)
        _viewModel->setUserText(*_request.userName);
    if (_request.password)
        setPassword(*_request.password);
    _viewModel->setBaudRate(_request.baudRate);
    _viewModel->setCurrentCom(portName);
}

Outcome SwitchSession::connectDevice()
{
    _elapsed.start();
    _warnings = LogOutput::warningCount();
    const QString portName = _request.isSimulated() ? openSimulated() : _request.port;
    if (_hasEnded)
        return _end;
    setUp(portName);
    _viewModel->disconnectDevice();
    _viewModel->deviceCommunicate();
    const Outcome outcome = wait();
    return outcome.status == ExitStatus::Done ? inventoryOutcome() : outcome;
}

Outcome SwitchSession::run(const SwitchAction &action)
{
    _results.clear();
    _warnings = LogOutput::warningCount();
    const QString error = action(*_viewModel);
    if (!error.isEmpty())
        return {ExitStatus::Failed, error};
    Outcome outcome = wait();
    if (outcome.status != ExitStatus::Done)
        return outcome;
    settleLog();
    return LogOutput::warningCount() == _warnings ? outcome : Outcome{ExitStatus::Refused, say(kRefused)};
}

// Until there is something to report. Later calls report the same end again.
Outcome SwitchSession::wait()
{
    QTimer poll;
    connect(&poll, &QTimer::timeout, this, &SwitchSession::check);
    poll.start(kPoll);
    _loop.exec();
    return _end;
}

void SwitchSession::check()
{
    if (!_hasEnded && _missing != Missing::Nothing)
        askForCredential();
    if (!_hasEnded && _elapsed.elapsed() - _askingMsecs > std::chrono::milliseconds(_request.timeout).count())
        fail(ExitStatus::Failed, say(kTimeOut, {_request.portText(), QString::number(_request.timeout.count())}));
    if (_hasEnded || (_hasBegun && _viewModel->isQueueIdle()))
        _loop.quit();
}

// The view model looks every second whether it has been given what it lacks.
void SwitchSession::askForCredential()
{
    const bool isUserName = _missing == Missing::UserName;
    _missing = Missing::Nothing;
    QElapsedTimer timer;
    timer.start();
    const console::Answer answer = isUserName ? console::ask(say(kAskUserName), console::Echo::On)
                                              : console::ask(say(kAskPassword), console::Echo::Off);
    _askingMsecs += timer.elapsed();
    if (answer.kind == console::Answer::Kind::Interrupted)
        return fail(ExitStatus::Interrupted, {});
    if (answer.text.isEmpty())
        return fail(ExitStatus::Failed, say(isUserName ? kNoUserName : kNoPassword));
    if (isUserName)
        _viewModel->setUserText(answer.text);
    else
        setPassword(answer.text);
    _hasBegun = false; // the queue rests until the answer is on its way
}

void SwitchSession::settleLog()
{
    QTimer::singleShot(kLogDelay, &_loop, &QEventLoop::quit);
    _loop.exec();
}

Outcome SwitchSession::inventoryOutcome() const
{
    if (_hasInventory)
        return {};
    if (_isLoggedIn)
        return {ExitStatus::Failed, say(kNoInventory, {_request.portText(), familyName(_request.family)})};
    return {ExitStatus::Failed, silenceReason()};
}

QString SwitchSession::silenceReason() const
{
    const QStringList where{_request.portText(), QString::number(_request.baudRate)};
    if (_hasHeard && LogOutput::warningCount() > _warnings)
        return say(kNoLogin, where);
    return say(_hasHeard ? kNoPrompt : kSilence, where);
}

Inventory SwitchSession::inventory()
{
    const auto names = [](const QVariantList &ports) {
        QStringList texts;
        for (const QVariant &port : ports)
            texts.append(port.toString());
        return texts;
    };
    Inventory inventory;
    inventory.port = _request.portText();
    inventory.family = familyName(_request.family);
    inventory.boardType = _viewModel->boardType();
    inventory.isAggregationSwitch = _viewModel->isAggregationSwitch() == 1;
    inventory.down = {names(_viewModel->gInterface()), _viewModel->downInterfaceMin(), _viewModel->downInterfaceMax(),
                      _viewModel->downComNum(), _viewModel->downComRange()};
    inventory.up = {names(_viewModel->xgInterface()), _viewModel->upInterfaceMin(), _viewModel->upInterfaceMax(),
                    _viewModel->upComNum(), _viewModel->upComRange()};
    return inventory;
}
