#include "consolesession.h"

#include "text.h"

#include <utility>

namespace simulator {

namespace {

constexpr Duration kAutomaticConfigurationPeriod = std::chrono::seconds(5);
constexpr int kShortestPassword = 8;
constexpr int kLongestPassword = 16;

bool isAcceptable(const QByteArray &password)
{
    return password.size() >= kShortestPassword && password.size() <= kLongestPassword;
}

} // namespace

void ConsoleSession::idle()
{
    _events.clear();
    _waiting = _loggedIn = false;
    _idleAt.reset();
    _lineHandler = nullptr;
    _pager.press(Pager::Key::Stop);
    _view = {};
    _twoStage = _uncommitted = false;
    _paging = _monitor = _redraw = true;
    _screenWidth = 80;
    _mode = Mode::Idle;
    print(_dialect.session.idle);
}

void ConsoleSession::automaticConfiguration()
{
    _mode = Mode::AutomaticConfiguration;
    print(_dialect.session.automaticConfiguration);
    _events.add(_now + kAutomaticConfigurationPeriod, [this] {
        if (_mode == Mode::AutomaticConfiguration)
            automaticConfiguration();
    });
}

void ConsoleSession::beginLogin()
{
    if (_firstLogin)
        return chooseFirstPassword();
    switch (_options.login) {
    case LoginKind::None:
        return welcome();
    case LoginKind::Password:
        print(_dialect.session.loginHeader);
        return askPassword({});
    case LoginKind::User:
        print(_dialect.session.loginHeader);
        return askUser();
    }
}

void ConsoleSession::askUser()
{
    const SessionTexts &texts = _dialect.session;
    askLine(_options.loginInLowerCase ? texts.userPromptLower : texts.userPrompt, LineKind::Plain,
            [this](const QByteArray &user) {
                if (user.trimmed().isEmpty())
                    askUser();
                else
                    askPassword(user.trimmed());
            });
}

void ConsoleSession::askPassword(const QByteArray &user)
{
    askLine(_dialect.session.passwordPrompt, LineKind::Hidden,
            [this, user](const QByteArray &password) { checkPassword(user, password); });
}

void ConsoleSession::checkPassword(const QByteArray &user, const QByteArray &password)
{
    const bool rightUser = _options.login == LoginKind::Password || user == _options.user;
    if (!rightUser || password != _password)
        return wrongCredentials();
    _failures = 0;
    askAboutPassword();
}

// The failure and the next prompt leave in one burst.
void ConsoleSession::wrongCredentials()
{
    print(_dialect.session.failures.at(static_cast<std::size_t>(_options.failureText)));
    if (++_failures >= _options.failuresBeforeLock)
        return lock();
    print(kLineEnd);
    if (_options.login == LoginKind::User)
        askUser();
    else
        askPassword({});
}

void ConsoleSession::lock()
{
    _failures = 0;
    print(_dialect.session.locked);
    if (_options.afterLock == AfterLock::Idle)
        return idle();
    _mode = Mode::Deaf;
    _events.add(_now + hurried(_options.lockTime), [this] { idle(); });
}

void ConsoleSession::chooseFirstPassword()
{
    const SessionTexts &texts = _dialect.session;
    print(texts.firstLogin);
    askLine(texts.firstPassword, LineKind::Hidden, [this](const QByteArray &first) {
        if (!isAcceptable(first)) {
            print(_dialect.session.passwordTooShort);
            return chooseFirstPassword();
        }
        askLine(_dialect.session.firstConfirm, LineKind::Hidden, [this, first](const QByteArray &second) {
            if (first != second) {
                print(_dialect.session.passwordsDiffer);
                return chooseFirstPassword();
            }
            _password = first;
            _firstLogin = false;
            askAboutConfiguration();
        });
    });
}

// Releases without a question go straight to the new password.
void ConsoleSession::askAboutPassword()
{
    if (!_initialPassword)
        return askAboutConfiguration();
    const QByteArray &text = _dialect.session.initialPassword;
    if (!text.contains("[Y/N]")) {
        print(text);
        return changePassword([this] { askAboutConfiguration(); });
    }
    askYesNo(text, [this](bool yes) {
        if (yes)
            changePassword([this] { askAboutConfiguration(); });
        else
            askAboutConfiguration();
    });
}

void ConsoleSession::changePassword(std::function<void()> then)
{
    const auto askNew = [this, then = std::move(then)](const QByteArray &old) {
        if (!_dialect.session.oldPassword.isEmpty() && old != _password) {
            print(_dialect.session.passwordsDiffer);
            return changePassword(then);
        }
        askLine(_dialect.session.newPassword, LineKind::Hidden, [this, then](const QByteArray &first) {
            askLine(_dialect.session.confirmPassword, LineKind::Hidden, [this, then, first](const QByteArray &second) {
                if (first != second || !isAcceptable(first)) {
                    print(first != second ? _dialect.session.passwordsDiffer : _dialect.session.passwordTooShort);
                    return changePassword(then);
                }
                _password = first;
                _initialPassword = false;
                print(_dialect.session.passwordChanged);
                then();
            });
        });
    };
    if (_dialect.session.oldPassword.isEmpty())
        askNew({});
    else
        askLine(_dialect.session.oldPassword, LineKind::Hidden, askNew);
}

void ConsoleSession::askAboutConfiguration()
{
    if (_options.insecureConfigurationQuestion)
        askYesNo(_dialect.session.insecureConfiguration, [this](bool) { welcome(); });
    else
        welcome();
}

void ConsoleSession::welcome()
{
    const QString time = clock().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
    print(fill(_dialect.session.welcome, {{"time", time.toLatin1()}, {"name", _state.running.name}}));
    _loggedIn = true;
    _mode = Mode::Busy;
    if (!_dialect.log.events.at(static_cast<std::size_t>(LogKind::LoggedIn)).isEmpty())
        printLine(logLine(LogKind::LoggedIn, {}));
}

} // namespace simulator
