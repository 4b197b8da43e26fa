#include <switchdevicebll/translatemanage.h>

#include "languagesettings.h"

#include <switchdevicebll/switchdevice.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QDir>
#include <QtCore/QLocale>

namespace OVRA {
namespace BLL {

namespace {

bool isSupported(const QString &code)
{
    return code == QLatin1String("zh_CN") || code == QLatin1String("en");
}

// The locale "C" states no language, and a list of preferred ones does not count beside it (as with gettext). Qt takes
// "C.UTF-8" for a language with an unknown name.
bool statesLanguage()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    for (const char *variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const QByteArray value = qgetenv(variable);
        if (!value.isEmpty())
            return value != "C" && !value.startsWith("C.") && value != "POSIX";
    }
    return false;
#else
    return true;
#endif
}

QString systemLanguage()
{
    const QString preferred = statesLanguage() ? QLocale::system().uiLanguages().value(0) : QString();
    const bool chinese = preferred.isEmpty() || QLocale(preferred).language() == QLocale::Chinese;
    return chinese ? QStringLiteral("zh_CN") : QStringLiteral("en");
}

QString settingsPath()
{
    return QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("switchdevicepanel.ini"));
}

} // namespace

TranslateManage *TranslateManage::getInstance()
{
    static TranslateManage *const manager = new TranslateManage;
    return manager;
}

lumen::trans::Translator *TranslateManage::getTranslator()
{
    _translator.switchLanguage(configuredLanguage());
    return &_translator;
}

QString TranslateManage::getLanguageTypeFromConfig()
{
    return getInstance()->configuredLanguage();
}

bool TranslateManage::setLanguage(const QString &code)
{
    if (!isSupported(code)) {
        qWarning().noquote() << "there is no language" << code.left(40) << "to change to";
        return false;
    }
    QString error;
    const bool saved = languagesettings::write(settingsPath(), code, &error);
    if (!saved)
        qWarning().noquote() << "the language is changed for this run only:" << error;
    {
        const std::lock_guard<std::mutex> guard(_lock);
        _unsaved = saved ? QString() : code;
    }
    _translator.switchLanguage(code);
    emit ovra::bll::SwitchDevice::getInstance()->signal_languageChange(code);
    return true;
}

QString TranslateManage::configuredLanguage() const
{
    {
        const std::lock_guard<std::mutex> guard(_lock);
        if (!_unsaved.isEmpty())
            return _unsaved;
    }
    if (QCoreApplication::instance() == nullptr) // no application, no folder beside which a file could lie
        return systemLanguage();
    const QString stored = languagesettings::read(settingsPath());
    return isSupported(stored) ? stored : systemLanguage();
}

} // namespace BLL
} // namespace OVRA
