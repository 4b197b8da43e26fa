#include <configurationcleaner.h>

#include <simulator/memoryterminal.h>

#include <QtTest/QtTest>

using namespace simulator;

namespace {

SimulatorOptions optionsFor(const QString &arguments)
{
    SimulatorOptions defaults;
    defaults.login = LoginKind::None;
    defaults.start = Start::UserView;
    const ParsedOptions parsed = parseSimulatorOptions(arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts), defaults);
    if (!parsed.error.isEmpty())
        qFatal("%s", qPrintable(parsed.error));
    return parsed.options;
}

//! A person at a console who pages through whatever is listed.
class Person
{
public:
    explicit Person(const QString &arguments)
        : _terminal(optionsFor(arguments))
    {
        _terminal.settle();
    }

    QByteArray enter(const QByteArray &line)
    {
        QByteArray shown = _terminal.exchange(line + '\r');
        for (int page = 0; page < kMostPages && shown.endsWith("---- More ----"); ++page)
            shown += _terminal.exchange(" ");
        return shown;
    }
    void work(const QByteArrayList &lines)
    {
        for (const QByteArray &line : lines)
            enter(line);
    }
    QByteArray configuration() { return _terminal.console().configurationText(); }
    const QByteArrayList &commands() { return _terminal.console().commands(); }
    void strike(const Fault &fault) { _terminal.console().addFault(fault); }

private:
    static constexpr int kMostPages = 1'000;

    MemoryTerminal _terminal;
};

QByteArrayList settingsOf(const QString &arguments)
{
    if (arguments.contains(QStringLiteral("hua3")))
        return {"system-view",
                "igmp-snooping",
                "vlan 10",
                "name cameras",
                "igmp-snooping enable",
                "quit",
                "interface GigabitEthernet1/0/1",
                "port access vlan 10",
                "description <C4> # 1",
                "quit",
                "interface GigabitEthernet1/0/3",
                "shutdown",
                "interface Bridge-Aggregation 1",
                "link-aggregation mode dynamic",
                "interface GigabitEthernet1/0/5",
                "port link-aggregation group 1",
                "mirroring-group 1 local",
                "mirroring-group 1 mirroring-port GigabitEthernet 1/0/7 inbound",
                "mirroring-group 1 monitor-port GigabitEthernet 1/0/9",
                "return"};
    if (arguments.contains(QStringLiteral("huawei-sub")))
        return {"system-view",
                "igmp snooping enable",
                "vlan 10",
                "igmp snooping enable",
                "interface GE0/0/1",
                "port default vlan 10",
                "description <C4> # 1",
                "interface GE0/0/3",
                "shutdown",
                "undo negotiation auto",
                "return"};
    return {"system-view",
            "igmp-snooping enable",
            "vlan 10",
            "name cameras",
            "igmp-snooping enable",
            "interface GigabitEthernet0/0/1",
            "port link-type access",
            "port default vlan 10",
            "description <C4> # 1",
            "interface GigabitEthernet0/0/3",
            "shutdown",
            "undo negotiation auto",
            "interface Eth-Trunk 1",
            "mode lacp",
            "trunkport GigabitEthernet 0/0/5 to 0/0/6",
            "observe-port 1 interface GigabitEthernet 0/0/10",
            "interface GigabitEthernet0/0/7",
            "port-mirroring to observe-port 1 inbound",
            "return"};
}

QByteArray clean(const QByteArray &output)
{
    return cleanedConfiguration(output).commands;
}

} // namespace

class TestConfigurationCleaner : public QObject
{
    Q_OBJECT

private slots:
    void console_isReplayed_data();
    void console_isReplayed();
    void refusedHeader_doesNotHitTheViewBeforeIt();
    void noise_isLeftOut_data();
    void noise_isLeftOut();
    void wrappedLogLine_isLeftOutWhole_data();
    void wrappedLogLine_isLeftOutWhole();
    void cutListing_isNotComplete_data();
    void cutListing_isNotComplete();
    void bytes_stayAsTheyAre();
    void lastWholeListing_counts();
    void cleaned_staysAsItIs();
    void hostileOutput_endsSoon_data();
    void hostileOutput_endsSoon();
};

void TestConfigurationCleaner::console_isReplayed_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("manner");

    for (const char *family : {"huawei", "huawei-sub", "hua3"}) {
        for (const char *manner :
             {"", "--paging forced", "--paging forced --erase 42", "--paging forced --screen-lines 3", "--crcrlf",
              "--no-redraw --prompt-prefix (M)", "--prompt-nul --prompt-bell", "--descriptions gbk",
              "--lines 200 --paging forced", "--no-version-line"})
            QTest::addRow("%s %s", family, manner) << QString(family) << QString(manner);
    }
}

void TestConfigurationCleaner::console_isReplayed()
{
    QFETCH(QString, family);
    QFETCH(QString, manner);
    const QString arguments = QStringLiteral("--family %1 %2").arg(family, manner);
    Person configured(arguments);
    configured.work(settingsOf(arguments));
    const QByteArray listing = configured.configuration();
    QVERIFY(listing.count('\n') > 60);

    Fault logs;
    logs.kind = FaultKind::Logs;
    logs.command = "display current";
    logs.after = 700;
    logs.amount = 3;
    configured.strike(logs);
    const QByteArray output =
        configured.enter("screen-length 0 temporary") + configured.enter("display current-configuration");
    const CleanedConfiguration cleaned = cleanedConfiguration(output);
    QVERIFY2(cleaned.isComplete, output.constData());
    QVERIFY(cleaned.commands.startsWith("system-view\n"));
    QVERIFY(cleaned.commands.endsWith("\nreturn\n"));

    Person fresh(
        QStringLiteral("--no-logs ")
        + arguments.section(QStringLiteral(" --descriptions"), 0, 0).section(QStringLiteral(" --lines"), 0, 0));
    if (!manner.contains(QStringLiteral("descriptions")) && !manner.contains(QStringLiteral("lines"))) {
        QVERIFY(fresh.configuration() != listing);
    }
    QByteArray said;
    for (const QByteArray &line : cleaned.commands.split('\n')) {
        if (!line.isEmpty())
            said += fresh.enter(line.trimmed());
    }
    QVERIFY2(!said.contains("position."), said.constData());
    QCOMPARE(fresh.configuration(), listing);
}

void TestConfigurationCleaner::refusedHeader_doesNotHitTheViewBeforeIt()
{
    const QByteArray commands = clean("#\ninterface GigabitEthernet0/0/2\n#\n"
                                      "interface GigabitEthernet0/0/99\n shutdown\n#\nreturn\n");
    Person smaller(QStringLiteral("--no-logs"));
    const QByteArray before = smaller.configuration();
    for (const QByteArray &line : commands.split('\n')) {
        if (!line.isEmpty())
            smaller.enter(line);
    }
    QCOMPARE(smaller.configuration(), before);
    QVERIFY(smaller.enter("").endsWith("<HUAWEI>"));
}

void TestConfigurationCleaner::noise_isLeftOut_data()
{
    QTest::addColumn<QByteArray>("output");

    const QByteArray plain("#\r\nsysname A\r\n#\r\ninterface X1\r\n shutdown\r\n#\r\nreturn\r\n");
    const QByteArray echo("display current-configuration\r\n");
    QTest::newRow("nothing but the listing") << plain;
    QTest::newRow("echo and prompt") << "<A>" + echo + plain + "<A>";
    QTest::newRow("echo without its prompt") << echo + plain + "<A>";
    QTest::newRow("abbreviated command") << "<A>dis cu\r\n" + plain + "<A>";
    QTest::newRow("from the system view") << "[~A]display current-configuration\r\n" + plain + "[~A]";
    QTest::newRow("what came before") << "Info: The configuration takes effect.\r\n<A>" + echo + plain;
    QTest::newRow("what came behind") << "<A>" + echo + plain + "<A>display clock\r\n2026-11-20\r\n#\r\nreturn\r\n<A>";
    QTest::newRow("LF only") << QByteArray(plain).replace("\r", "");
    QTest::newRow("CR CR LF") << QByteArray(plain).replace("\r\n", "\r\r\n");
    QTest::newRow("NULs") << QByteArray(plain).replace("\r\n", QByteArray("\0\r\n\0", 4));
    QTest::newRow("version in brackets") << "<A>" + echo + "[V200R009C00SPC500]\r\n" + plain;
    QTest::newRow("version and date as comments")
        << "<A>" + echo + "!Software Version V200R009C00SPC500\r\n!Last configuration\r\n" + plain;
    QTest::newRow("version of the other family")
        << QByteArray(plain).replace("#\r\nsysname", "#\r\n version 7.1.070, Release 6318P01\r\n#\r\nsysname");
    const QByteArray marker("  ---- More ----");
    const QByteArray blanks(42, ' ');
    QTest::newRow("pager, erased by cursor movement")
        << QByteArray(plain).replace(" shutdown", marker + "\x1b[16D" + blanks.left(16) + "\x1b[16D shutdown");
    QTest::newRow("pager, erased by 42") << QByteArray(plain).replace(" shutdown", marker + "\x1b[42D" + blanks
                                                                                       + "\x1b[42D shutdown");
    QTest::newRow("pager, erased by carriage return")
        << QByteArray(plain).replace(" shutdown", marker + '\r' + blanks.left(16) + "\r shutdown");
    QTest::newRow("pager, erased by backspaces") << QByteArray(plain).replace(
        " shutdown", marker + QByteArray(16, '\b') + blanks.left(16) + QByteArray(16, '\b') + " shutdown");
    QTest::newRow("pager, erased to the end of the line")
        << QByteArray(plain).replace(" shutdown", marker + "\r\x1b[K shutdown");
    QTest::newRow("pager in front of a separator")
        << QByteArray(plain).replace("#\r\nreturn", marker + "\x1b[16D" + blanks.left(16) + "\x1b[16D#\r\nreturn");
    QTest::newRow("log line of one family")
        << QByteArray(plain).replace(" shutdown", "%Nov 20 10:11:12:345 2026 A IFNET/3/PHY_UPDOWN: up.\r\n shutdown");
    QTest::newRow("log line of the other") << QByteArray(plain).replace(
        " shutdown", "Nov  2 2026 10:11:12+00:00 A %%01CFM/4/SAVE_FILE(l)[3]:saved.\r\n shutdown");
    QTest::newRow("blank lines") << QByteArray(plain).replace("#", "\r\n#");
}

void TestConfigurationCleaner::noise_isLeftOut()
{
    QFETCH(QByteArray, output);
    const CleanedConfiguration cleaned = cleanedConfiguration(output);
    QCOMPARE(cleaned.commands,
             QByteArray("system-view\nsysname A\nreturn\nsystem-view\ninterface X1\n shutdown\nreturn\n"));
    QVERIFY(cleaned.isComplete);
}

void TestConfigurationCleaner::wrappedLogLine_isLeftOutWhole_data()
{
    QTest::addColumn<int>("length");
    for (const int length : {79, 80, 81, 120, 159, 161, 200, 300})
        QTest::addRow("%d characters", length) << length;
}

void TestConfigurationCleaner::wrappedLogLine_isLeftOutWhole()
{
    QFETCH(int, length);
    constexpr int kColumns = 80;
    QByteArray log("Nov 20 2026 10:11:12+00:00 A %%01IFPDT/4/IF_STATE(l)[3]:");
    while (log.size() < length)
        log += "word ";
    log.truncate(length);
    // A switch breaks the line only where more of it is to come.
    QByteArray wrapped;
    for (int at = 0; at < log.size(); at += kColumns)
        wrapped += log.mid(at, kColumns) + "\r\n";
    const QByteArray cleaned =
        clean("#\r\n" + wrapped + (length == kColumns ? "last word.\r\n" : "") + "sysname A\r\n#\r\nreturn\r\n");
    QCOMPARE(cleaned, QByteArray("system-view\nsysname A\nreturn\n"));
}

void TestConfigurationCleaner::cutListing_isNotComplete_data()
{
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QByteArray>("commands");

    QTest::newRow("nothing") << QByteArray() << QByteArray();
    QTest::newRow("something else") << QByteArray("Dear diary\r\nreturn\r\n") << QByteArray();
    QTest::newRow("cut") << QByteArray("#\r\nsysname A\r\n") << QByteArray("system-view\nsysname A\nreturn\n");
    QTest::newRow("cut in front of its last line")
        << QByteArray("#\r\nsysname A\r\n#\r\nretu")
        << QByteArray("system-view\nsysname A\nreturn\nsystem-view\nretu\nreturn\n");
    QTest::newRow("an indented return is none")
        << QByteArray("#\r\nacl 1\r\n return\r\n") << QByteArray("system-view\nacl 1\n return\nreturn\n");
}

void TestConfigurationCleaner::cutListing_isNotComplete()
{
    QFETCH(QByteArray, output);
    const CleanedConfiguration cleaned = cleanedConfiguration(output);
    QVERIFY(!cleaned.isComplete);
    QTEST(cleaned.commands, "commands");
}

void TestConfigurationCleaner::bytes_stayAsTheyAre()
{
    const QByteArray description("\xC3\xE8\xCF\xF1 ---- More ---- \xff\t<C4>");
    const QByteArray cleaned = clean("#\r\ninterface X1\r\n description " + description + "\r\n#\r\nreturn\r\n");
    QCOMPARE(cleaned, "system-view\ninterface X1\n description " + description + "\nreturn\n");
}

void TestConfigurationCleaner::lastWholeListing_counts()
{
    const QByteArray echo("<A>display current-configuration\r\n");
    const QByteArray first = echo + "#\r\nsysname A\r\n";
    const QByteArray second = echo + "#\r\nsysname B\r\n#\r\nreturn\r\n<A>";
    const CleanedConfiguration cleaned = cleanedConfiguration(first + second);
    QVERIFY(cleaned.isComplete);
    QCOMPARE(cleaned.commands, QByteArray("system-view\nsysname B\nreturn\n"));
}

void TestConfigurationCleaner::cleaned_staysAsItIs()
{
    Person person{QString()};
    const QByteArray once = clean(person.enter("display current-configuration"));
    QVERIFY(once.size() > 500);
    const CleanedConfiguration again = cleanedConfiguration(once);
    QCOMPARE(again.commands, once);
    QVERIFY(again.isComplete);
}

void TestConfigurationCleaner::hostileOutput_endsSoon_data()
{
    QTest::addColumn<QByteArray>("piece");

    QTest::newRow("one long line") << QByteArray("x");
    QTest::newRow("line feeds") << QByteArray("\n");
    QTest::newRow("escapes") << QByteArray("\x1b[");
    QTest::newRow("long numbers") << QByteArray("\x1b[9999999999");
    QTest::newRow("cursor to the right") << QByteArray("\x1b[999C");
    QTest::newRow("back and forth") << QByteArray("xy\x1b[1000D\x1b[1000C");
    QTest::newRow("markers") << QByteArray("  ---- More ----");
    QTest::newRow("separators") << QByteArray("#\n");
    QTest::newRow("echoes") << QByteArray("<A>display current-configuration\n");
    QTest::newRow("log lines") << QByteArray("Nov 20 2026 10:11:12 x\n");
    QTest::newRow("blanks") << QByteArray(" ");
    QTest::newRow("NULs") << QByteArray(1, '\0');
}

void TestConfigurationCleaner::hostileOutput_endsSoon()
{
    QFETCH(QByteArray, piece);
    constexpr int kSize = 1 << 20;
    constexpr int kMostMsecs = 5'000; // a quadratic way through takes minutes
    const QByteArray output = piece.repeated(kSize / piece.size());
    QElapsedTimer timer;
    timer.start();
    const CleanedConfiguration cleaned = cleanedConfiguration(output);
    QVERIFY2(timer.elapsed() < kMostMsecs, qPrintable(QString::number(timer.elapsed())));
    QVERIFY(!cleaned.isComplete);
}

QTEST_APPLESS_MAIN(TestConfigurationCleaner)

#include "tst_configurationcleaner.moc"
