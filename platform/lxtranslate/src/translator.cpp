#include <lxtranslate/translator.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QTranslator>

#include <algorithm>

namespace lumen {
namespace trans {

// What one language consists of. Immutable once it is published, so that lookups need no lock.
struct Translator::Catalogue
{
    QString code;
    QByteArray bytes; // the compiled catalogue: the translator below reads it in place
    QTranslator messages;
};

namespace {

const QString kSourceLanguage = QStringLiteral("zh_CN");
constexpr int kLongestCode = 32;

// The code becomes part of a file name; nothing but the letters of a language code may get there.
bool isLanguageCode(const QString &code)
{
    const auto allowed = [](QChar c) {
        return (c >= QLatin1Char('a') && c <= QLatin1Char('z')) || (c >= QLatin1Char('A') && c <= QLatin1Char('Z'))
               || (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('_');
    };
    return !code.isEmpty() && code.size() <= kLongestCode && std::all_of(code.cbegin(), code.cend(), allowed);
}

QString cataloguePath(const QString &code)
{
    return QStringLiteral("%1/../share/translations/switchdevice_%2.qm")
        .arg(QCoreApplication::applicationDirPath(), code);
}

// Read into memory instead of being mapped: replacing the file while the program runs must not pull the texts away, and
// QTranslator's own search for a file would settle for a related language without saying so.
QByteArray readCatalogue(const QString &code)
{
    if (QCoreApplication::instance() == nullptr) // without one there is no application folder to start from
        return {};
    QFile file(cataloguePath(code));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

Translator::Translator()
{
    auto source = std::make_shared<Catalogue>();
    source->code = kSourceLanguage;
    _catalogue = std::move(source);
}

Translator::~Translator() = default;

bool Translator::switchLanguage(const QString &code)
{
    if (code == language())
        return true;

    auto next = std::make_shared<Catalogue>();
    next->code = kSourceLanguage;
    bool found = code == kSourceLanguage;
    if (!found && isLanguageCode(code)) {
        next->bytes = readCatalogue(code);
        found = next->messages.load(reinterpret_cast<const uchar *>(next->bytes.constData()), next->bytes.size())
                && !next->messages.isEmpty();
        if (found)
            next->code = code;
    }
    if (!found)
        qWarning().noquote() << "no usable catalogue for language" << code.left(kLongestCode)
                             << "- the texts stay Chinese";

    const std::lock_guard<std::mutex> guard(_lock);
    _catalogue = std::move(next);
    return found;
}

QString Translator::language() const
{
    return current()->code;
}

QString Translator::find(const QString &context, const QString &disambiguation, const QString &text) const
{
    // Catalogues are searched with C strings: behind a NUL the text would be cut off and taken for another one.
    if (text.contains(QChar(u'\0')))
        return {};
    return current()->messages.translate(context.toUtf8().constData(), text.toUtf8().constData(),
                                         disambiguation.toUtf8().constData());
}

std::shared_ptr<const Translator::Catalogue> Translator::current() const
{
    const std::lock_guard<std::mutex> guard(_lock);
    return _catalogue;
}

QString translate(const Translator *translator, const QString &context, const QString &disambiguation,
                  const QString &text)
{
    if (translator == nullptr || text.isEmpty())
        return text;
    const QString translation = translator->find(context, disambiguation, text);
    return translation.isEmpty() ? text : translation;
}

} // namespace trans
} // namespace lumen
