#include "passwordfile.h"

#include <QtCore/QFile>
#include <QtCore/QTextCodec>

#include <algorithm>

namespace {

constexpr qint64 kLongestLine = 1'024; // far beyond what any switch takes

constexpr Text kUnreadable{"the password file '%1' cannot be read: %2", "无法读取密码文件“%1”：%2"};
constexpr Text kEmpty{"the first line of the password file '%1' is empty", "密码文件“%1”的第一行为空"};
constexpr Text kTooLong{"the first line of the password file '%1' is too long for a password",
                        "密码文件“%1”的第一行过长，不是密码"};
constexpr Text kNotText{"the first line of the password file '%1' is not UTF-8 text",
                        "密码文件“%1”的第一行不是UTF-8文本"};

PasswordFile refused(const Text &text, Language language, const QStringList &values)
{
    return {{}, inLanguage(text, language, values)};
}

bool hasControlCharacter(const QString &text)
{
    return std::any_of(text.cbegin(), text.cend(),
                       [](QChar character) { return character.category() == QChar::Other_Control; });
}

} // namespace

PasswordFile readPasswordFile(const QString &path, Language language)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return refused(kUnreadable, language, {path, file.errorString()});
    QByteArray line = file.readLine(kLongestLine + 1);
    if (line.isEmpty() && file.error() != QFileDevice::NoError)
        return refused(kUnreadable, language, {path, file.errorString()});
    if (line.size() == kLongestLine && !line.endsWith('\n'))
        return refused(kTooLong, language, {path});
    if (line.endsWith('\n'))
        line.chop(1);
    if (line.endsWith('\r'))
        line.chop(1);
    if (line.startsWith("\xEF\xBB\xBF"))
        line.remove(0, 3);
    if (line.isEmpty())
        return refused(kEmpty, language, {path});
    QTextCodec::ConverterState state;
    const QString password = QTextCodec::codecForName("UTF-8")->toUnicode(line.constData(), line.size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0 || hasControlCharacter(password))
        return refused(kNotText, language, {path});
    return {password, {}};
}
