// Does what its arguments say, one after the other, and prints a line for each. Run from a folder of its own and under
// another locale than the test beside it.
//
//     configured      the configured language
//     text            the translation of one text by the shared translator
//     set=CODE        changes the language; prints whether it was taken, and what was announced
//     noapplication   (first) does the rest without an application

#include <lxtranslate/translator.h>
#include <switchdevicebll/switchdevice.h>
#include <switchdevicebll/translatemanage.h>

#include <QtCore/QCoreApplication>

#include <cstdio>
#include <memory>

using OVRA::BLL::TranslateManage;

namespace {

void print(const QString &line)
{
    std::printf("%s\n", line.toUtf8().constData());
}

void changeTo(const QString &code)
{
    QStringList announced;
    QObject context;
    QObject::connect(ovra::bll::SwitchDevice::getInstance(), &ovra::bll::SwitchDevice::signal_languageChange, &context,
                     [&announced](const QString &type) { announced << type; });
    const bool taken = TranslateManage::getInstance()->setLanguage(code);
    print(QStringLiteral("%1 %2").arg(taken ? QStringLiteral("taken") : QStringLiteral("refused"),
                                      announced.join(QLatin1Char(','))));
}

void run(const QString &command)
{
    if (command == QLatin1String("configured"))
        print(TranslateManage::getLanguageTypeFromConfig());
    else if (command == QLatin1String("text"))
        print(lumen::trans::translate(TranslateManage::getInstance()->getTranslator(), QStringLiteral("SwitchDevice"),
                                      QString(), QStringLiteral("已断开连接")));
    else if (command.startsWith(QLatin1String("set=")))
        changeTo(command.mid(4));
}

} // namespace

int main(int argc, char **argv)
{
    QStringList commands;
    for (int i = 1; i < argc; ++i)
        commands << QString::fromLocal8Bit(argv[i]);
    std::unique_ptr<QCoreApplication> application;
    if (commands.value(0) != QLatin1String("noapplication"))
        application = std::make_unique<QCoreApplication>(argc, argv);
    for (const QString &command : qAsConst(commands))
        run(command);
    return 0;
}
