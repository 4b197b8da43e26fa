#pragma once

#include <lxtranslate/lxtranslate_export.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <memory>
#include <mutex>

class QTranslator;

namespace lumen {
namespace trans {

/// One compiled message catalogue at a time, looked up by context and source text.
///
/// The texts in the sources are Chinese, so "zh_CN" needs no catalogue. Any other language is read from
/// `<application folder>/../share/translations/switchdevice_<code>.qm`. The catalogue is not installed into the
/// application: a host's own translations and ours never answer for one another.
///
/// Every function may be called from any thread; a lookup that runs while the language changes sees the old catalogue
/// or the new one, never a mixture.
class LXTRANSLATE_EXPORT Translator
{
public:
    Translator();
    ~Translator();
    Translator(const Translator &) = delete;
    Translator &operator=(const Translator &) = delete;

    /// Makes the language with this code ("zh_CN", "en") the current one. False when the code is malformed or has no
    /// readable catalogue; the source texts are shown then, rather than those of the language before. The current
    /// language again costs nothing, unless its catalogue was missing.
    bool switchLanguage(const QString &code);

    /// The code last given to switchLanguage() with success, "zh_CN" before and after a failure.
    QString language() const;

    /// The translation of `text` in `context`, or a null string where the catalogue has none. `disambiguation` tells
    /// equal texts of one context apart and is normally empty.
    QString find(const QString &context, const QString &disambiguation, const QString &text) const;

private:
    struct Catalogue;
    std::shared_ptr<const Catalogue> current() const;

    mutable std::mutex _lock; // guards _catalogue
    std::shared_ptr<const Catalogue> _catalogue;
};

/// The translation of `text`, or `text` itself without a translator or without a translation.
LXTRANSLATE_EXPORT QString translate(const Translator *translator, const QString &context,
                                     const QString &disambiguation, const QString &text);

} // namespace trans
} // namespace lumen
