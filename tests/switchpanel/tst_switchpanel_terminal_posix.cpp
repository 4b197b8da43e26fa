// The program on a terminal: progress, colours, Ctrl-C.
#include "programrun.h"
#include "terminalrun_posix.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace {

const QString kHealthy = samplePath(QStringLiteral("healthy.pcap"));

//! `pressKeys`, if any, is called once with the first output.
TerminalRun runOnTerminal(const QStringList &arguments, const QStringList &environment = {}, ushort columns = 80,
                          const std::function<void(const Terminal &)> &pressKeys = {})
{
    const Terminal terminal(columns);
    TerminalProcess process(terminal, arguments, environment);
    return finish(terminal, process, pressKeys ? QList<Reaction>{{"", pressKeys}} : QList<Reaction>{});
}

} // namespace

class TestTerminal : public QObject
{
    Q_OBJECT

private slots:
    void progress_isOneLineDrawnAgain();
    void progress_fitsANarrowTerminal();
    void colours_areUsed_data();
    void colours_areUsed();
    void dumbTerminal_getsNoEscapes();
    void ctrlC_reportsWhatWasRead();

private:
    // The healthy sample and behind it millions of records of no octets, which take no room on the disk but time to
    // read.
    QString longCapture(const QTemporaryDir &folder) const;
};

QString TestTerminal::longCapture(const QTemporaryDir &folder) const
{
    constexpr qint64 kSize = 1'073'741'824; // 67 million records of 16 octets
    const QString path = folder.filePath("long.pcap");
    if (!QFile::copy(kHealthy, path))
        return {};
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    return QFile::resize(path, kSize) ? path : QString();
}

void TestTerminal::progress_isOneLineDrawnAgain()
{
    const TerminalRun run = runOnTerminal({"analyze", "--quiet", kHealthy});
    QCOMPARE(run.exitStatus, 0);
    QVERIFY(!run.output.contains("packets read")); // quiet

    const TerminalRun shown = runOnTerminal({"analyze", kHealthy}, {}, 200);
    QCOMPARE(shown.exitStatus, 0);
    const QByteArray progress = shown.output.left(shown.output.indexOf('\n'));
    const QByteArray line = kHealthy.toUtf8() + ": 4400 packets read, ";
    QVERIFY2(progress.startsWith("\r" + kHealthy.toUtf8() + ": 1000 packets read, "), progress.constData());
    QVERIFY2(progress.contains("\r" + line), progress.constData());
    QVERIFY(progress.endsWith("packets/s\x1b[K"));
    QVERIFY(!shown.output.contains('%') || shown.output.indexOf('%') > shown.output.indexOf("Capture: "));
}

void TestTerminal::progress_fitsANarrowTerminal()
{
    constexpr ushort kColumns = 30;
    const TerminalRun run = runOnTerminal({"analyze", kHealthy}, {}, kColumns);
    const QByteArray progress = run.output.left(run.output.indexOf('\n'));
    QVERIFY(progress.contains("packets/s"));
    const QList<QByteArray> lines = progress.split('\r').mid(1);
    QVERIFY(!lines.isEmpty());
    for (QByteArray line : lines)
        QCOMPARE(line.replace("\x1b[K", "").size(), kColumns - 1);
}

void TestTerminal::colours_areUsed_data()
{
    QTest::addColumn<QStringList>("environment");
    QTest::addColumn<bool>("areUsed");

    QTest::newRow("by default") << QStringList{} << true;
    QTest::newRow("NO_COLOR") << QStringList{"NO_COLOR=1"} << false;
    QTest::newRow("NO_COLOR, empty") << QStringList{"NO_COLOR="} << true;
    QTest::newRow("dumb terminal") << QStringList{"TERM=dumb"} << false;
}

void TestTerminal::colours_areUsed()
{
    QFETCH(QStringList, environment);
    const TerminalRun run = runOnTerminal({"analyze", kHealthy}, environment);
    QCOMPARE(run.exitStatus, 0);
    QVERIFY(run.output.contains("Sync interval"));
    QTEST(run.output.contains("\x1b[32mnormal\x1b[0m"), "areUsed");
    QTEST(run.output.contains("\x1b["
                              "1m"),
          "areUsed");
}

void TestTerminal::dumbTerminal_getsNoEscapes()
{
    const TerminalRun run = runOnTerminal({"analyze", kHealthy}, {"TERM=dumb"});
    QVERIFY(run.output.contains(": 4400 packets read, "));
    QVERIFY(!run.output.contains('\x1b'));
    QVERIFY(!run.output.contains('\r'));
}

void TestTerminal::ctrlC_reportsWhatWasRead()
{
    const QTemporaryDir folder;
    const QString capture = longCapture(folder);
    QVERIFY(!capture.isEmpty());
    const QString document = folder.filePath("out");
    QVERIFY(QDir().mkdir(document));
    const TerminalRun run = runOnTerminal({"analyze", "--json", document, capture, kHealthy}, {}, 200,
                                          [](const Terminal &terminal) { terminal.press('\x03'); });
    QCOMPARE(run.exitStatus, 130);

    const QRegularExpression stopped("Stopped by Ctrl-C: the report covers the (\\d+) packets read until then\\.");
    const QRegularExpressionMatch match = stopped.match(QString::fromUtf8(run.output));
    QVERIFY2(match.hasMatch(), run.output.constData());
    // The first progress, and with it Ctrl-C, comes after 1000 packets; the whole file has 67 million.
    const int packets = match.captured(1).toInt();
    QVERIFY2(packets >= 1'000 && packets < 60'000'000, qPrintable(match.captured(1)));
    QVERIFY(run.output.contains("Master clock     192.168.100.100"));

    QVERIFY(!run.output.contains("Capture: " + kHealthy.toUtf8())); // the next file is left out
    QVERIFY(run.output.contains("long.pcap.json is not written: the analysis was stopped"));
    QVERIFY(QDir(document).isEmpty());
    QVERIFY(run.output.contains("stopped"));
}

QTEST_GUILESS_MAIN(TestTerminal)

#include "tst_switchpanel_terminal_posix.moc"
