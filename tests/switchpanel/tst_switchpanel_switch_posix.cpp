// query, apply, save, clear, export and import: what they print, and what has become of the switch.
#include "programrun.h"

#include <simulator/simulatedswitch.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

#include <functional>

using namespace simulator;

namespace {

SimulatorOptions optionsFor(const QString &arguments)
{
    const ParsedOptions parsed =
        parseSimulatorOptions(QStringList{"--hurry", "100"} + arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    if (!parsed.error.isEmpty())
        qFatal("%s", qPrintable(parsed.error));
    return parsed.options;
}

//! A switch on a serial line, and what a user does with it.
class Site
{
public:
    explicit Site(const QString &arguments)
        : _isHua3(arguments.contains(QStringLiteral("hua3")))
        , _switch(optionsFor(arguments))
        , _path(_switch.start())
    {
        QFile file(_folder.filePath(QStringLiteral("password")));
        if (!file.open(QIODevice::WriteOnly) || file.write("Admin@123\n") < 0 || _path.isEmpty())
            qFatal("no simulated switch");
    }

    ProgramRun run(const QStringList &arguments) const
    {
        return runSwitchpanel(arguments
                              + QStringList{"--port", _path, "--user", "admin", "--password-file",
                                            _folder.filePath("password"), "--family", _isHua3 ? "hua3" : "huawei",
                                            "--quiet"});
    }
    RunningSwitch &device() { return _switch.device(); }
    SwitchConfiguration running() const { return _switch.device().state().running; }
    const PortConfiguration port(std::size_t number) const { return running().ports.at(number - 1); }
    bool isPortOpen() const { return _switch.isPortOpen(); }
    QString file(const QString &name) const { return _folder.filePath(name); }
    QString write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(this->file(name));
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? file.fileName() : QString();
    }
    QByteArray read(const QString &name) const
    {
        QFile file(this->file(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    const QTemporaryDir _folder;
    const bool _isHua3;
    SimulatedSwitch _switch;
    const QString _path;
};

using Check = std::function<bool(const Site &)>;

constexpr std::size_t kTenGigabit = 25; // the first 10-gigabit port of all models here

Fault fault(FaultKind kind, const QByteArray &command, const QByteArray &text = {})
{
    Fault fault;
    fault.kind = kind;
    fault.command = command;
    fault.text = text;
    return fault;
}

} // namespace

Q_DECLARE_METATYPE(Check)

class TestSwitch : public QObject
{
    Q_OBJECT

private slots:
    void apply_changesTheSwitch_data();
    void apply_changesTheSwitch();
    void apply_sendsWhatTheDryRunShows_data();
    void apply_sendsWhatTheDryRunShows();
    void apply_refusedCommand_isTold_data();
    void apply_refusedCommand_isTold();
    void query_printsTheAnswer_data();
    void query_printsTheAnswer();
    void query_asJson_isValid();
    void query_unknown_isWrongUsage();
    void save_savesTheConfiguration_data();
    void save_savesTheConfiguration();
    void clear_asksFirst();
    void clear_restartsTheSwitch_data();
    void clear_restartsTheSwitch();
    void export_isTheConsolesOutput_data();
    void export_isTheConsolesOutput();
    void export_toStandardOutput();
    void export_toAnUnwritablePlace_isToldBeforeTheSwitchIsAsked();
    void export_cut_leavesTheOldFile();
    void cleanExport_isReplayedByImport_data();
    void cleanExport_isReplayedByImport();
    void cleanExport_ofAFile();
    void cleanExport_wrongUsage_isTold_data();
    void cleanExport_wrongUsage_isTold();
    void import_ofAnExport_doesNoHarm();
    void import_ofNothing_isTold_data();
    void import_ofNothing_isTold();
    void everyCommand_leavesTheSwitchUsable();
};

void TestSwitch::apply_changesTheSwitch_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<Check>("check");

    struct Family
    {
        const char *options;
        QString down;
        QString up;
    };
    const Family families[] = {{"--family huawei --poe", "g0/0/", "xg0/0/"},
                               {"--family huawei-sub --poe", "GE0/0/", "10GE0/0/"},
                               {"--family hua3 --poe", "g1/0/", "t1/0/"}};
    for (const Family &family : families) {
        const auto row = [&family](const char *name, const QStringList &settings, const Check &check) {
            QTest::addRow("%s, %s", family.options, name) << QString(family.options) << settings << check;
        };
        const bool isHua3 = family.down == QLatin1String("g1/0/");
        row("VLAN", {"--vlan", "10", "--ports", "1-8"}, [](const Site &site) {
            return site.port(1).vlan == 10 && site.port(8).vlan == 10 && site.port(9).vlan == 1;
        });
        row("VLAN, trunk uplinks", {"--vlan", "10", "--uplinks", isHua3 ? "25-26" : "1-2", "--trunk"},
            [](const Site &site) {
                return site.port(kTenGigabit).linkType == LinkType::Trunk
                       && site.port(kTenGigabit).allowedVlans.test(10)
                       && site.port(kTenGigabit + 1).allowedVlans.test(10)
                       && !site.port(kTenGigabit + 2).allowedVlans.test(10);
            });
        row("multicast", {"--multicast", "on"}, [](const Site &site) {
            const SwitchConfiguration running = site.running();
            return running.snooping && running.vlans.count(1) > 0 && running.vlans.at(1).snooping;
        });
        row("multicast and querier", {"--multicast", "on", "--querier", "on"}, [](const Site &site) {
            const SwitchConfiguration running = site.running();
            return running.snooping && running.vlans.count(1) > 0 && running.vlans.at(1).querier;
        });
        row("group", {"--group", "1", "--group-ports", "5-6"}, [](const Site &site) {
            return site.running().trunkMembers(1) == std::vector<std::size_t>{4, 5};
        });
        row("mirroring", {"--mirror", "on", "--from", family.down + "2", "--to", family.down + "10"},
            [](const Site &site) {
                const SwitchConfiguration running = site.running();
                return site.port(2).mirrors.count(1) == 1 && running.mirrorGroups.count(1) == 1
                       && running.mirrorGroups.at(1).monitor == std::size_t(9);
            });
        row("negotiation", {"--autoneg", "off", "--autoneg-port", family.down + "5"},
            [isHua3](const Site &site) { return isHua3 ? !site.port(5).speed.isEmpty() : !site.port(5).negotiation; });
        row("PoE of a port", {"--poe", "off", "--poe-port", family.down + "3"},
            [](const Site &site) { return site.port(2).poe && !site.port(3).poe && site.port(4).poe; });
        row("PoE of a range", {"--poe", "off", "--poe-port", "all", "--poe-ports", "3-4"},
            [](const Site &site) { return site.port(2).poe && !site.port(3).poe && !site.port(4).poe; });
        row("ports off", {"--shutdown-ports", family.down + "7," + family.up + (isHua3 ? "25" : "1")},
            [](const Site &site) { return site.port(7).shutdown && site.port(kTenGigabit).shutdown; });
    }
}

void TestSwitch::apply_changesTheSwitch()
{
    QFETCH(QString, options);
    QFETCH(QStringList, settings);
    QFETCH(Check, check);
    Site site(options);
    QVERIFY(!check(site));
    const ProgramRun run = site.run(QStringList("apply") + settings);
    QVERIFY2(run.exitStatus == 0, qPrintable(run.errors));
    QCOMPARE(run.errors, QString());
    QVERIFY2(check(site), site.device().configurationText().constData());
}

void TestSwitch::apply_sendsWhatTheDryRunShows_data()
{
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("prefix");
    QTest::newRow("huawei") << "huawei"
                            << "g0/0/";
    QTest::newRow("sub-model") << "huawei-sub"
                               << "GE0/0/";
    QTest::newRow("hua3") << "hua3"
                          << "g1/0/";
}

void TestSwitch::apply_sendsWhatTheDryRunShows()
{
    QFETCH(QString, family);
    QFETCH(QString, prefix);
    const QStringList words{"apply",     "--vlan",  "10", "--ports",       "1-4",  "--multicast",
                            "on",        "--group", "1",  "--group-ports", "9-10", "--shutdown-ports",
                            prefix + "7"};
    const ProgramRun dry = runSwitchpanel(words + QStringList{"--dry-run", "--json", "--port", "sim:" + family});
    QCOMPARE(dry.exitStatus, 0);
    QByteArrayList shown;
    for (const auto &block : QJsonDocument::fromJson(dry.output.toUtf8()).array()) {
        for (const QString &line : block.toObject()["bytes"].toString().split("\r\n")) {
            if (!line.trimmed().isEmpty() && line != QLatin1String("space"))
                shown.append(line.toUtf8());
        }
    }
    QVERIFY(shown.size() > 20);

    Site site("--family " + family);
    QCOMPARE(site.run(words).exitStatus, 0);
    const QByteArrayList commands = site.device().commands();
    QCOMPARE(commands.mid(commands.size() - shown.size()), shown);
}

void TestSwitch::apply_refusedCommand_isTold_data()
{
    QTest::addColumn<QString>("family");
    QTest::newRow("huawei") << "huawei";
    QTest::newRow("sub-model") << "huawei-sub";
    QTest::newRow("hua3") << "hua3";
}

void TestSwitch::apply_refusedCommand_isTold()
{
    QFETCH(QString, family);
    Site site("--family " + family);
    site.device().addFault(fault(FaultKind::Refuse, "vlan 10"));
    const ProgramRun run = site.run({"apply", "--vlan", "10", "--ports", "1-8"});
    QCOMPARE(run.exitStatus, 1);
    QVERIFY2(run.errors.contains(QStringLiteral("vlan 10")), qPrintable(run.errors));
    QVERIFY(run.errors.endsWith(QStringLiteral("switchpanel: the switch did not take everything, see above\n")));
    QCOMPARE(site.run({"connect"}).exitStatus, 0); // and it is at the user view
}

void TestSwitch::query_printsTheAnswer_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QString>("answer");

    const QString huawei = QStringLiteral("--ip-conflicts 2");
    const QString hua3 = QStringLiteral("--family hua3 --ip-conflicts 2");
    QTest::newRow("vlan") << huawei << "vlan"
                          << "The total number of VLANs is : 1";
    QTest::newRow("ports") << huawei << "ports"
                           << "  Down ports  24, range (1-24): g0/0/1-g0/0/24";
    QTest::newRow("speed") << huawei << "speed"
                           << "0/0/1   GE(C)     Absent  Auto 1000   Full   Disable Up    -";
    QTest::newRow("optics") << huawei << "optics"
                            << "Connector Type                 :LC";
    QTest::newRow("ip-conflict") << huawei << "ip-conflict"
                                 << "IP address                 : 10.20.0.2";
    QTest::newRow("vlan, sub-model") << "--family huawei-sub"
                                     << "vlan"
                                     << "The total number of VLANs is : 1";
    QTest::newRow("ports, sub-model") << "--family huawei-sub"
                                      << "ports"
                                      << "  Down ports  24, range (1-24): GE0/0/1-GE0/0/24";
    QTest::newRow("vlan, hua3") << hua3 << "vlan"
                                << "Total VLANs: 1";
    QTest::newRow("ports, hua3") << hua3 << "ports"
                                 << "  Up ports    4, range (25-28): t1/0/25-t1/0/28";
}

void TestSwitch::query_printsTheAnswer()
{
    QFETCH(QString, options);
    QFETCH(QString, kind);
    QFETCH(QString, answer);
    Site site(options);
    const ProgramRun run = site.run({"query", kind});
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitStatus, 0);
    QVERIFY2(run.printed(answer.trimmed()), qPrintable(run.output));
    QVERIFY2(!run.output.contains(QStringLiteral("[Info]")), qPrintable(run.output));
}

void TestSwitch::query_asJson_isValid()
{
    Site site({});
    const ProgramRun run = site.run({"query", "vlan", "--json"});
    QCOMPARE(run.exitStatus, 0);
    const QJsonObject answer = QJsonDocument::fromJson(run.output.toUtf8()).object();
    QCOMPARE(answer["kind"].toString(), QStringLiteral("vlan"));
    QVERIFY(answer["lines"].toArray().contains(QStringLiteral("The total number of VLANs is : 1")));
    const ProgramRun ports = site.run({"query", "ports", "--json"});
    QCOMPARE(QJsonDocument::fromJson(ports.output.toUtf8()).object()["profile"].toString(), QStringLiteral("huawei"));
}

void TestSwitch::query_unknown_isWrongUsage()
{
    const ProgramRun run = runSwitchpanel({"query", "weather", "--port", "sim:huawei"});
    QCOMPARE(run.exitStatus, 2);
    QCOMPARE(run.errors.section('\n', 0, 0),
             QStringLiteral("switchpanel: there is no query 'weather': vlan, multicast, ports, speed, optics, "
                            "ip-conflict, forwarding"));
    QCOMPARE(runSwitchpanel({"query", "--port", "sim:huawei"}).exitStatus, 2);
    QCOMPARE(runSwitchpanel({"query", "vlan", "ports", "--port", "sim:huawei"}).exitStatus, 2);
}

void TestSwitch::save_savesTheConfiguration_data()
{
    apply_refusedCommand_isTold_data();
}

void TestSwitch::save_savesTheConfiguration()
{
    QFETCH(QString, family);
    Site site("--family " + family);
    const QString port = family == QLatin1String("hua3")         ? "g1/0/7"
                         : family == QLatin1String("huawei-sub") ? "GE0/0/7"
                                                                 : "g0/0/7";
    QCOMPARE(site.run({"apply", "--shutdown-ports", port}).exitStatus, 0);
    const auto isSaved = [&site] {
        const auto saved = site.device().state().saved;
        return saved && saved->ports.at(6).shutdown;
    };
    QVERIFY(!isSaved());
    const ProgramRun run = site.run({"save"});
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitStatus, 0);
    QVERIFY(isSaved());
}

void TestSwitch::clear_asksFirst()
{
    Site site({});
    const ProgramRun run = site.run({"clear"});
    QCOMPARE(run.exitStatus, 2);
    QCOMPARE(run.errors, QStringLiteral("switchpanel: clear asks before it erases anything: --yes, or a terminal to "
                                        "answer at\n"));
    QCOMPARE(site.device().commands(), QByteArrayList());
}

void TestSwitch::clear_restartsTheSwitch_data()
{
    apply_refusedCommand_isTold_data();
}

void TestSwitch::clear_restartsTheSwitch()
{
    QFETCH(QString, family);
    Site site("--family " + family);
    QCOMPARE(site.device().state().starts, 1);
    const ProgramRun run = site.run({"clear", "--yes"});
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitStatus, 0);
    QTRY_COMPARE_WITH_TIMEOUT(site.device().state().starts, 2, 10'000);
    QVERIFY(!site.device().state().saved);
}

void TestSwitch::export_isTheConsolesOutput_data()
{
    QTest::addColumn<QString>("options");
    for (const char *family : {"huawei", "huawei-sub", "hua3"}) {
        for (const char *manner : {"", "--paging forced --lines 500", "--chunks 7"})
            QTest::addRow("%s %s", family, manner) << QStringLiteral("--family %1 %2").arg(family, manner);
    }
}

void TestSwitch::export_isTheConsolesOutput()
{
    QFETCH(QString, options);
    Site site(options);
    const ProgramRun run = site.run({"export", site.file("out")});
    QVERIFY2(run.exitStatus == 0, qPrintable(run.errors));
    const QByteArray listing = site.device().configurationText();
    const QByteArray exported = site.read("out");
    QVERIFY(listing.size() > 1'000);
    QVERIFY2(exported.contains("display current-configuration\r\n" + listing), exported.constData());
}

void TestSwitch::export_toStandardOutput()
{
    Site site({});
    const ProgramRun run = site.run({"export", "--clean", "-"});
    QCOMPARE(run.exitStatus, 0);
    QVERIFY(run.output.startsWith(QStringLiteral("system-view\nsysname HUAWEI\n")));
    QVERIFY(run.output.endsWith(QStringLiteral("\nreturn\n")));
}

void TestSwitch::export_toAnUnwritablePlace_isToldBeforeTheSwitchIsAsked()
{
    Site site({});
    for (const QString &place : {QStringLiteral("/nowhere/out"), site.file(QString())}) {
        const ProgramRun run = site.run({"export", place});
        QCOMPARE(run.exitStatus, 2);
        QVERIFY2(run.errors.startsWith(QStringLiteral("switchpanel: '%1' cannot be written: ").arg(place)),
                 qPrintable(run.errors));
    }
    QCOMPARE(site.device().received(), QByteArray());
}

void TestSwitch::export_cut_leavesTheOldFile()
{
    Site site({});
    const QString path = site.write("out", "last week's");
    Fault cut = fault(FaultKind::Cut, "display current-configuration");
    cut.after = 900;
    site.device().addFault(cut);
    const ProgramRun run = site.run({"export", path});
    QCOMPARE(run.exitStatus, 2);
    QVERIFY2(run.errors.contains(QStringLiteral("is gone, check the cable")), qPrintable(run.errors));
    QCOMPARE(site.read("out"), QByteArray("last week's"));
}

void TestSwitch::cleanExport_isReplayedByImport_data()
{
    apply_refusedCommand_isTold_data();
}

void TestSwitch::cleanExport_isReplayedByImport()
{
    QFETCH(QString, family);
    Site old("--family " + family);
    const QString prefix = family == QLatin1String("hua3")         ? "g1/0/"
                           : family == QLatin1String("huawei-sub") ? "GE0/0/"
                                                                   : "g0/0/";
    const ProgramRun applied = old.run({"apply", "--vlan", "10", "--ports", "1-4", "--multicast", "on", "--group", "1",
                                        "--group-ports", "9-10", "--shutdown-ports", prefix + "7"});
    QVERIFY2(applied.exitStatus == 0, qPrintable(applied.errors));
    QCOMPARE(old.run({"export", "--clean", old.file("clean")}).exitStatus, 0);
    QVERIFY(old.read("clean").startsWith("system-view\n"));

    Site fresh("--family " + family);
    QVERIFY(fresh.device().configurationText() != old.device().configurationText());
    const ProgramRun run = fresh.run({"import", old.file("clean")});
    QVERIFY2(run.exitStatus == 0, qPrintable(run.errors));
    QCOMPARE(fresh.device().configurationText(), old.device().configurationText());
}

void TestSwitch::cleanExport_ofAFile()
{
    Site site("--paging forced");
    QCOMPARE(site.run({"export", site.file("raw")}).exitStatus, 0);
    QCOMPARE(site.run({"export", "--clean", site.file("clean")}).exitStatus, 0);
    const ProgramRun run = runSwitchpanel({"clean-export", site.file("raw"), site.file("cleaned")});
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitStatus, 0);
    QVERIFY(!site.read("clean").isEmpty());
    QCOMPARE(site.read("cleaned"), site.read("clean"));
    QVERIFY(site.read("raw") != site.read("clean"));
}

void TestSwitch::cleanExport_wrongUsage_isTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("reason");

    QTest::newRow("no files") << QStringList{} << "clean-export needs two files: IN and OUT";
    QTest::newRow("one file") << QStringList{"a"} << "clean-export needs two files: IN and OUT";
    QTest::newRow("three files") << QStringList{"a", "b", "c"} << "clean-export does not know what to do with 'c'";
    QTest::newRow("in Chinese") << QStringList{"a", "--lang", "zh"}
                                << QStringLiteral("clean-export 需要两个文件：IN 和 OUT");
    QTest::newRow("not a configuration")
        << QStringList{samplePath("healthy.pcap"), "-"}
        << QStringLiteral("'%1' holds no whole configuration listing (the last line, return, is missing)")
               .arg(samplePath("healthy.pcap"));
}

void TestSwitch::cleanExport_wrongUsage_isTold()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    const ProgramRun run = runSwitchpanel(QStringList("clean-export") + arguments);
    QCOMPARE(run.exitStatus, 2);
    QCOMPARE(run.errors.section('\n', 0, 0), "switchpanel: " + reason);
    QCOMPARE(run.output, QString());
}

void TestSwitch::import_ofAnExport_doesNoHarm()
{
    Site site("--descriptions ascii");
    QCOMPARE(site.run({"export", site.file("raw")}).exitStatus, 0);
    const QByteArray before = site.device().configurationText();
    const ProgramRun run = site.run({"import", site.file("raw")});
    QVERIFY2(run.exitStatus == 0 || run.exitStatus == 1, qPrintable(run.errors));
    QCOMPARE(site.device().configurationText(), before);
    QCOMPARE(site.device().state().starts, 1);
    QCOMPARE(site.run({"connect"}).exitStatus, 0);
}

void TestSwitch::import_ofNothing_isTold_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");
    QTest::newRow("missing") << QByteArray() << "cannot be read: ";
    QTest::newRow("blank") << QByteArray(" \r\n\t\r\n") << "has no command in it";
}

void TestSwitch::import_ofNothing_isTold()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    Site site({});
    const QString path = bytes.isEmpty() ? site.file("nobody") : site.write("in", bytes);
    const ProgramRun run = site.run({"import", path});
    QCOMPARE(run.exitStatus, 2);
    QVERIFY2(run.errors.startsWith(QStringLiteral("switchpanel: '%1' %2").arg(path, reason)), qPrintable(run.errors));
    QCOMPARE(site.device().received(), QByteArray());
}

void TestSwitch::everyCommand_leavesTheSwitchUsable()
{
    Site site({});
    for (const QStringList &words : {QStringList{"connect"},
                                     {"query", "vlan"},
                                     {"apply", "--multicast", "on"},
                                     {"save"},
                                     {"export", site.file("out")},
                                     {"connect"}})
    {
        const ProgramRun run = site.run(words);
        QVERIFY2(run.exitStatus == 0, qPrintable(words.first() + ": " + run.errors));
        QTRY_VERIFY2(!site.isPortOpen(), qPrintable(words.first()));
    }
}

// The test functions of a share such as "0/3": every third one, beginning with the first. No share: all.
static QStringList functionsOfShare(const QMetaObject &test, const QString &share)
{
    const QStringList parts = share.split(QLatin1Char('/'));
    if (parts.size() != 2)
        return {};
    const QStringList fixtures{"initTestCase", "cleanupTestCase", "init", "cleanup"};
    QStringList functions;
    for (int i = test.methodOffset(); i < test.methodCount(); ++i) {
        const QString name = QString::fromLatin1(test.method(i).name());
        if (!name.endsWith(QLatin1String("_data")) && !fixtures.contains(name))
            functions << name;
    }
    QStringList mine;
    for (int i = parts[0].toInt(); i < functions.size(); i += parts[1].toInt())
        mine << functions[i];
    return mine;
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    TestSwitch test;
    const QStringList mine =
        functionsOfShare(TestSwitch::staticMetaObject, qEnvironmentVariable("SWITCHPANEL_TEST_SHARE"));
    return QTest::qExec(&test, application.arguments() + mine);
}

#include "tst_switchpanel_switch_posix.moc"
