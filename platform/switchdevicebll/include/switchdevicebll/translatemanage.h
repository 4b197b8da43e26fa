#pragma once

#include <switchdevicebll/switchdevicebll_export.h>

#include <lxtranslate/translator.h>

#include <QtCore/QString>

#include <mutex>

namespace OVRA {
namespace BLL {

/// The language of the interface: "zh_CN" or "en".
///
/// It is kept in `switchdevicepanel.ini` beside the application, key `code` of the section `[language]`. The file is
/// created by the first change; without it, or with anything else in it, the system's language decides (any Chinese, or
/// none stated: "zh_CN", otherwise "en"). All functions may be called from any thread.
class SWITCHDEVICEBLL_EXPORT TranslateManage final
{
public:
    /// The one manager of the process, created on the first call and never deleted.
    static TranslateManage *getInstance();

    /// The translator that all view models share, with the configured language loaded. Never null, the same object for
    /// ever, owned by the manager.
    lumen::trans::Translator *getTranslator();

    /// The same translator in whatever language it is set to, which a program may have switched for itself.
    const lumen::trans::Translator *currentTranslator() const { return &_translator; }

    /// The code of the configured language: read from the file at every call, unless setLanguage() could not write it.
    static QString getLanguageTypeFromConfig();

    /// Changes the language of this process and, through the settings file, of the next one. SwitchDevice announces it
    /// with signal_languageChange() from the calling thread, and every view model follows. Where the file cannot be
    /// written, the change lasts as long as the process, and a warning says so. False for any other code, which changes
    /// nothing.
    bool setLanguage(const QString &code);

private:
    TranslateManage() = default;

    QString configuredLanguage() const;

    lumen::trans::Translator _translator;
    mutable std::mutex _lock; // guards _unsaved
    QString _unsaved;         // the language in force whose file could not be written, otherwise empty
};

} // namespace BLL
} // namespace OVRA
