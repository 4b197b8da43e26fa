// How the program explains itself and refuses command lines.
#include "programrun.h"

#include <QtTest/QtTest>

class TestUsage : public QObject
{
    Q_OBJECT

private slots:
    void help_listsTheCommands_data();
    void help_listsTheCommands();
    void analyzeHelp_explainsOptionsAndStatuses_data();
    void analyzeHelp_explainsOptionsAndStatuses();
    void version_isPrinted();
    void wrongUsage_isToldOnStandardError_data();
    void wrongUsage_isToldOnStandardError();
};

void TestUsage::help_listsTheCommands_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("usage");
    QTest::addColumn<QString>("command");

    const QString english = QStringLiteral("usage: switchpanel COMMAND [ARGUMENTS]");
    const QString englishCommand = QStringLiteral("analyze       judge the PTP traffic in captures");
    QTest::newRow("long") << QStringList{"--help"} << english << englishCommand;
    QTest::newRow("short") << QStringList{"-h"} << english << englishCommand;
    QTest::newRow("Chinese") << QStringList{"--lang", "zh", "--help"} << "用法：switchpanel 命令 [参数]"
                             << "analyze       分析抓包文件中的PTP报文";
}

void TestUsage::help_listsTheCommands()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, usage);
    QFETCH(QString, command);
    const ProgramRun run = runSwitchpanel(arguments);
    QCOMPARE(run.exitStatus, 0);
    QCOMPARE(run.errors, QString());
    QVERIFY(run.printed(usage));
    QVERIFY(run.printed(command));
}

void TestUsage::analyzeHelp_explainsOptionsAndStatuses_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("statuses");

    const QString english =
        QStringLiteral("exit status: 0 healthy, 1 abnormal, 2 could not analyse, 130 stopped by Ctrl-C;");
    const QString chinese = QStringLiteral("退出状态：0 正常，1 异常，2 未能分析，130 被 Ctrl-C 中止；");
    QTest::newRow("English") << QStringList{"analyze", "--help"} << english;
    QTest::newRow("Chinese") << QStringList{"analyze", "--lang=zh", "--help"} << chinese;
    QTest::newRow("language before the command") << QStringList{"--lang", "zh", "analyze", "-h"} << chinese;
    QTest::newRow("among other arguments") << QStringList{"analyze", "a.pcap", "--quiet", "--help"} << english;
}

void TestUsage::analyzeHelp_explainsOptionsAndStatuses()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, statuses);
    const ProgramRun run = runSwitchpanel(arguments);
    QCOMPARE(run.exitStatus, 0);
    QCOMPARE(run.errors, QString());
    QVERIFY(run.printed(statuses));
    for (const char *option :
         {"--decoders N", "--interval S", "--json OUT", "--csv OUT", "--quiet", "--lang zh|en", "--verbose"})
        QVERIFY2(run.output.contains(QStringLiteral("\n  ") + QLatin1String(option) + QLatin1String("  ")), option);
}

void TestUsage::version_isPrinted()
{
    const ProgramRun run = runSwitchpanel({"--version"});
    QCOMPARE(run.exitStatus, 0);
    QVERIFY(QRegularExpression(QStringLiteral("^switchpanel \\d+\\.\\d+\\.\\d+\n$")).match(run.output).hasMatch());
    QCOMPARE(run.errors, QString());
}

void TestUsage::wrongUsage_isToldOnStandardError_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("reason");

    const QString sample = samplePath(QStringLiteral("healthy.pcap"));
    QTest::newRow("no command") << QStringList{} << "no command given";
    QTest::newRow("unknown command") << QStringList{"analyse", sample} << "unknown command: analyse";
    QTest::newRow("unknown option of the program") << QStringList{"--fast"} << "unknown option: --fast";
    QTest::newRow("unknown language of the program")
        << QStringList{"--lang", "de", "--help"} << "--lang takes zh or en, not 'de'";
    QTest::newRow("no file") << QStringList{"analyze"} << "analyze needs a capture file";
    QTest::newRow("unknown option") << QStringList{"analyze", "--fast", sample} << "unknown option: --fast";
    QTest::newRow("missing value") << QStringList{"analyze", sample, "--json"} << "--json needs a value: OUT";
    QTest::newRow("decoders, a word") << QStringList{"analyze", "--decoders", "ten", sample}
                                      << "--decoders takes a whole number, not 'ten'";
    QTest::newRow("decoders, a fraction")
        << QStringList{"analyze", "--decoders", "9.5", sample} << "--decoders takes a whole number, not '9.5'";
    QTest::newRow("decoders, too large") << QStringList{"analyze", "--decoders", "2147483648", sample}
                                         << "--decoders takes a whole number, not '2147483648'";
    QTest::newRow("decoders, nothing") << QStringList{"analyze", "--decoders=", sample}
                                       << "--decoders takes a whole number, not ''";
    QTest::newRow("interval, a word") << QStringList{"analyze", "--interval", "1s", sample}
                                      << "--interval takes a number of seconds, not '1s'";
    QTest::newRow("interval, infinite") << QStringList{"analyze", "--interval", "inf", sample}
                                        << "--interval takes a number of seconds, not 'inf'";
    QTest::newRow("interval, not a number")
        << QStringList{"analyze", "--interval", "nan", sample} << "--interval takes a number of seconds, not 'nan'";
    QTest::newRow("language") << QStringList{"analyze", "--lang", "de", sample} << "--lang takes zh or en, not 'de'";
    QTest::newRow("Chinese") << QStringList{"analyze", "--lang", "zh", "--fast"} << "未知选项：--fast";
    QTest::newRow("export over the capture") << QStringList{"analyze", "--csv", sample, sample}
                                             << QStringLiteral("--csv would overwrite the capture '%1'").arg(sample);
}

void TestUsage::wrongUsage_isToldOnStandardError()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    const ProgramRun run = runSwitchpanel(arguments);
    QCOMPARE(run.exitStatus, 2);
    QCOMPARE(run.output, QString());
    QCOMPARE(run.errors.section(QLatin1Char('\n'), 0, 0), QStringLiteral("switchpanel: ") + reason);
    QVERIFY(run.errors.contains(QStringLiteral("--help'")));
}

QTEST_APPLESS_MAIN(TestUsage)

#include "tst_switchpanel_usage.moc"
