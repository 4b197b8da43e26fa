// The manual page and --help name the same options.
#include "programrun.h"

#include <QtCore/QSet>
#include <QtTest/QtTest>

namespace {

QSet<QString> optionsIn(const QString &text)
{
    QSet<QString> options;
    auto matches = QRegularExpression(QStringLiteral("--[a-z]+(-[a-z]+)*")).globalMatch(text);
    while (matches.hasNext())
        options.insert(matches.next().captured());
    return options;
}

QString manualPage()
{
    QFile file(QStringLiteral(MANUAL_PAGE));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// From ".SH title" to the next one.
QString sectionOf(const QString &page, const QString &title)
{
    const QString heading = QStringLiteral(".SH ") + title + QLatin1Char('\n');
    return page.section(heading, 1).section(QStringLiteral("\n.SH "), 0, 0);
}

} // namespace

class TestManualPage : public QObject
{
    Q_OBJECT

private slots:
    void options_areThoseOfTheHelp();
    void everyCommand_isDescribed();
    void exitStatuses_areThoseOfTheHelp();
    void version_isThatOfTheProgram();
};

void TestManualPage::options_areThoseOfTheHelp()
{
    QString help = runSwitchpanel({"--help"}).output;
    for (const char *command :
         {"analyze", "ports", "connect", "query", "apply", "save", "clear", "export", "import", "clean-export"})
        help += runSwitchpanel({command, "--help"}).output;
    // The simulated switch's own are left to its help.
    help += runSwitchpanel({"simulate", "--help"}).output.section("the switch (", 0, 0);
    const QString options = sectionOf(manualPage(), QStringLiteral("OPTIONS")).replace("\\-", "-");
    QVERIFY(optionsIn(help).contains("--decoders") && optionsIn(help).contains("--mirror-id"));
    QCOMPARE(optionsIn(options), optionsIn(help));
}

void TestManualPage::everyCommand_isDescribed()
{
    const QString description = sectionOf(manualPage(), QStringLiteral("DESCRIPTION")).replace("\\-", "-");
    const QString commands = runSwitchpanel({"--help"}).output.section("commands:\n", 1).section("\n\n", 0, 0);
    QVERIFY(commands.count('\n') >= 10);
    for (const QString &line : commands.split('\n')) {
        const QString command = line.trimmed().section(' ', 0, 0);
        QVERIFY2(description.contains(".SS " + command + '\n'), qPrintable(command));
    }
}

void TestManualPage::exitStatuses_areThoseOfTheHelp()
{
    const QString statuses = sectionOf(manualPage(), QStringLiteral("EXIT STATUS"));
    const QString help = runSwitchpanel({"analyze", "--help"}).output + runSwitchpanel({"connect", "--help"}).output;
    for (const char *status : {"0", "1", "2", "130"}) {
        QVERIFY2(statuses.contains(QStringLiteral(".TP\n.B %1\n").arg(status)), status);
        QVERIFY2(help.contains(QStringLiteral(" %1 ").arg(status)), status);
    }
}

void TestManualPage::version_isThatOfTheProgram()
{
    const QString version = runSwitchpanel({"--version"}).output.trimmed();
    QVERIFY(!version.isEmpty());
    QVERIFY(manualPage().section('\n', 0, 0).contains('"' + version + '"'));
}

QTEST_GUILESS_MAIN(TestManualPage)

#include "tst_manualpage.moc"
