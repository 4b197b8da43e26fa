// What the plugin library shows to the dynamic linker.
#include <QtCore/QProcess>
#include <QtTest/QtTest>

class TestPluginExports : public QObject
{
    Q_OBJECT

private slots:
    void library_exportsTheTwoEntryPointsOnly();
};

void TestPluginExports::library_exportsTheTwoEntryPointsOnly()
{
    QProcess nm;
    nm.start(QStringLiteral(SWITCHPANEL_NM), {QStringLiteral("--dynamic"), QStringLiteral("--defined-only"),
                                              QStringLiteral("--format=posix"), QStringLiteral(SWITCHPANEL_PLUGIN)});
    QVERIFY(nm.waitForFinished(60'000));
    QCOMPARE(nm.exitCode(), 0);
    QStringList symbols;
    const QStringList lines =
        QString::fromLatin1(nm.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : lines)
        symbols.append(line.section(QLatin1Char(' '), 0, 0));
    symbols.sort();
    QCOMPARE(symbols, (QStringList{QStringLiteral("qt_plugin_instance"), QStringLiteral("qt_plugin_query_metadata")}));
}

QTEST_GUILESS_MAIN(TestPluginExports)
#include "tst_plugin_exports_linux.moc"
