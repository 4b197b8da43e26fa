// --dry-run: what would be sent, byte for byte, in sending order.
#include "programrun.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace {

struct Block
{
    QString label;
    QString bytes;
};

QVector<Block> blocksIn(const ProgramRun &run)
{
    QVector<Block> blocks;
    for (const auto &value : QJsonDocument::fromJson(run.output.toUtf8()).array())
        blocks.append({value.toObject()["label"].toString(), value.toObject()["bytes"].toString()});
    return blocks;
}

QStringList labelsOf(const QVector<Block> &blocks)
{
    QStringList labels;
    for (const Block &block : blocks)
        labels.append(block.label);
    return labels;
}

QStringList bytesOf(const QVector<Block> &blocks)
{
    QStringList bytes;
    for (const Block &block : blocks)
        bytes.append(block.bytes);
    return bytes;
}

const QStringList kAllFeatures{"--vlan",     "10",     "--ports",          "1-4",    "--multicast",   "on",
                               "--querier",  "on",     "--group",          "1",      "--group-ports", "9-10",
                               "--mirror",   "on",     "--from",           "g0/0/2", "--to",          "g0/0/12",
                               "--autoneg",  "off",    "--autoneg-port",   "g0/0/5", "--poe",         "off",
                               "--poe-port", "g0/0/3", "--shutdown-ports", "g0/0/7"};

} // namespace

class TestDryRun : public QObject
{
    Q_OBJECT

private slots:
    void text_showsEveryLine();
    void json_isExact_data();
    void json_isExact();
    void features_leaveInTheQueuesOrder_data();
    void features_leaveInTheQueuesOrder();
    void listing_givesTheInventory_data();
    void listing_givesTheInventory();
    void listing_withPortKinds_lowersTheRange();
    void listing_missing_isTold();
    void listing_withoutPorts_isTold();
    void port_isNotOpened();
    void export_leavesTheFileAlone_data();
    void export_leavesTheFileAlone();
    void refusedValue_isToldAndNothingSent_data();
    void refusedValue_isToldAndNothingSent();
    void wrongUsage_isTold_data();
    void wrongUsage_isTold();

private:
    QString write(const QByteArray &bytes) const;

    QTemporaryDir _folder;
};

QString TestDryRun::write(const QByteArray &bytes) const
{
    QFile file(_folder.filePath(QStringLiteral("file")));
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? file.fileName() : QString();
}

void TestDryRun::text_showsEveryLine()
{
    const ProgramRun run = runSwitchpanel({"apply", "--dry-run", "--autoneg", "off", "--autoneg-port", "g0/0/5"});
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitStatus, 0);
    const QStringList lines{
        "1. Auto-negotiation (172 bytes)",
        "   system-view\\r\\n",
        "   interface GigabitEthernet 0/0/5\\r\\n",
        "   undo negotiation auto\\r\\n",
        "   return\\r\\n",
        "   screen-length 0 temporary\\r\\n",
        "   display current-configuration interface GigabitEthernet 0/0/5\\r\\n",
        "   space", // the key that turns the pages has no line end
        // The panel answers its first listing of a configuration with blanks, for switches that page.
        "2. --more-- (6 bytes)",
        "       \\r\\n",
        "",
    };
    QCOMPARE(run.outputLines(), lines);
}

void TestDryRun::json_isExact_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("bytes");

    QTest::newRow("save") << QStringList{"save"} << "Save configuration"
                          << "save\r\n";
    QTest::newRow("save, in Chinese") << QStringList{"save", "--lang", "zh"} << QStringLiteral("保存配置")
                                      << "save\r\n";
    QTest::newRow("save, hua3") << QStringList{"save", "--family", "hua3"} << "Save configuration"
                                << "save force\r\n";
    QTest::newRow("clear") << QStringList{"clear"} << "Clear configuration"
                           << "reset saved-configuration\r\nreboot\r\n";
    QTest::newRow("query") << QStringList{"query", "vlan"} << "vlan"
                           << "screen-length 0 temporary\r\ndisplay vlan\r\nspace";
    QTest::newRow("query of a VLAN") << QStringList{"query", "multicast", "--multicast-vlan", "20"} << "Multicast"
                                     << "screen-length 0 temporary\r\ndisplay igmp-snooping configuration\r\ndisplay "
                                        "igmp-snooping vlan 20\r\nspace";
    QTest::newRow("import") << QStringList{"import"} << "Configuration from file"
                            << "system-view\r\nvlan 7\r\nreturn\r\n";
    QTest::newRow("apply") << QStringList{"apply", "--shutdown-ports", "g0/0/7,g0/0/9"} << "Interface settings"
                           << "system-view\r\ninterface GigabitEthernet 0/0/7\r\nshutdown\r\ninterface "
                              "GigabitEthernet 0/0/9\r\nshutdown\r\nreturn\r\n";
    QTest::newRow("apply to the sub-model")
        << QStringList{"apply", "--enable-ports", "GE0/0/7", "--port", "sim:huawei-sub"} << "Interface settings"
        << "system-view\r\ninterface GE 0/0/7\r\nundo shutdown\r\nreturn\r\n";
}

void TestDryRun::json_isExact()
{
    QFETCH(QStringList, arguments);
    if (arguments.first() == QLatin1String("import"))
        arguments.append(write("\xEF\xBB\xBF\r\n  system-view\r\n\n\tvlan 7 \nreturn"));
    const ProgramRun run = runSwitchpanel(arguments + QStringList{"--dry-run", "--json"});
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitStatus, 0);
    const QVector<Block> blocks = blocksIn(run);
    QCOMPARE(blocks.size(), 1);
    QTEST(blocks.first().label, "label");
    QTEST(blocks.first().bytes, "bytes");
}

void TestDryRun::features_leaveInTheQueuesOrder_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QStringList>("labels");

    // The first one finds the queue empty and leaves at once; the others wait for it and leave in the order of labels.
    QTest::newRow("English") << "en" << QStringList{"VLAN assignment", "Auto-negotiation",   "--more--",
                                                    "IGMP querier",    "Interface settings", "Link aggregation",
                                                    "Multicast",       "PoE settings",       "Port mirroring"};
    QTest::newRow("Chinese") << "zh"
                             << QStringList{QStringLiteral("VLAN划分"),
                                            QStringLiteral("POE设置"),
                                            QStringLiteral("接口设置"),
                                            QStringLiteral("查询器"),
                                            QStringLiteral("组播"),
                                            QStringLiteral("自协商开关"),
                                            "--more--",
                                            QStringLiteral("链路聚合"),
                                            QStringLiteral("镜像端口配置")};
}

void TestDryRun::features_leaveInTheQueuesOrder()
{
    QFETCH(QString, language);
    const ProgramRun run =
        runSwitchpanel(QStringList("apply") + kAllFeatures + QStringList{"--dry-run", "--json", "--lang", language});
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitStatus, 0);
    QTEST(labelsOf(blocksIn(run)), "labels");
}

void TestDryRun::listing_givesTheInventory_data()
{
    QTest::addColumn<QByteArray>("listing");
    QTest::addColumn<QString>("family");
    QTest::addColumn<QString>("ports");

    const QByteArray head(
        "PHY: Physical\nInterface                   PHY   Protocol InUti OutUti   inErrors  outErrors\n");
    QTest::newRow("huawei") << head
                                   + "GigabitEthernet0/0/1        up    up          0%     0%          0          0\n"
                                     "GigabitEthernet0/0/2        down  down        0%     0%          0          0\n"
                                     "XGigabitEthernet0/0/1       up    up          0%     0%          0          0\n"
                            << "huawei"
                            << "GigabitEthernet 0/0/1 to GigabitEthernet 0/0/2";
    QTest::newRow("another slot, CR LF, with echo and prompt")
        << "<A>display interface brief\r\n" + QByteArray(head).replace("\n", "\r\n")
               + "GigabitEthernet3/0/1 up up\r\nGigabitEthernet3/0/2 up up\r\nXGigabitEthernet3/0/1 up up\r\n<A>"
        << "huawei"
        << "GigabitEthernet 3/0/1 to GigabitEthernet 3/0/2";
    QTest::newRow("sub-model") << head + "GE0/0/1 up up\nGE0/0/2 up up\n10GE0/0/1 up up\n"
                               << "huawei"
                               << "GE 0/0/1 to GE 0/0/2";
    QTest::newRow("hua3") << QByteArray("Brief information on interfaces in bridge mode:\n"
                                        "Interface            Link Speed   Duplex Type PVID Description\n"
                                        "GE1/0/1              UP   1G(a)   F(a)   A    1\n"
                                        "GE1/0/2              DOWN auto    A      A    1\n"
                                        "XGE1/0/25            DOWN auto    A      A    1\n")
                          << "hua3"
                          << "GigabitEthernet 1/0/1 to GigabitEthernet 1/0/2";
}

void TestDryRun::listing_givesTheInventory()
{
    QFETCH(QByteArray, listing);
    QFETCH(QString, family);
    QFETCH(QString, ports);
    const ProgramRun run = runSwitchpanel({"apply", "--vlan", "10", "--ports", "1-2", "--dry-run", "--listing",
                                           write(listing), "--family", family, "--json"});
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitStatus, 0);
    const QVector<Block> blocks = blocksIn(run);
    QCOMPARE(blocks.size(), 1);
    QVERIFY2(blocks.first().bytes.contains(ports), qPrintable(blocks.first().bytes));
}

// Two copper ports: settings for copper ports end there.
void TestDryRun::listing_withPortKinds_lowersTheRange()
{
    const QByteArray listing("Interface PHY Protocol\nGigabitEthernet0/0/1 up up\nGigabitEthernet0/0/4 up up\n"
                             "Board Type : S1\nPort   Port      Optic   MDI  Speed\nType Status\n"
                             "0/0/1   GE(C)     Absent  Auto 1000\n0/0/2   GE(C)     Absent  Auto 1000\n"
                             "0/0/3   GE(F)     Absent  -    1000\n0/0/4   GE(F)     Absent  -    1000\n");
    const ProgramRun run =
        runSwitchpanel({"apply", "--vlan", "10", "--ports", "1-4", "--dry-run", "--listing", write(listing), "--json"});
    QCOMPARE(run.exitStatus, 0);
    QVERIFY2(blocksIn(run).first().bytes.contains(QStringLiteral("0/0/1 to GigabitEthernet 0/0/2\r\n")),
             qPrintable(run.output));
    QCOMPARE(run.errors, QStringLiteral("switchpanel: --ports ends at port 2, the last copper port of the switch\n"));
}

void TestDryRun::listing_missing_isTold()
{
    const QString path = _folder.filePath("nobody");
    const ProgramRun run = runSwitchpanel({"save", "--dry-run", "--listing", path});
    QCOMPARE(run.exitStatus, 2);
    QCOMPARE(run.output, QString());
    QVERIFY2(run.errors.startsWith(QStringLiteral("switchpanel: the port listing '%1' cannot be read: ").arg(path)),
             qPrintable(run.errors));
}

void TestDryRun::listing_withoutPorts_isTold()
{
    const ProgramRun run = runSwitchpanel({"save", "--dry-run", "--listing", write("Dear diary\n")});
    QCOMPARE(run.exitStatus, 2);
    QCOMPARE(run.output, QString());
    QVERIFY2(run.errors.contains(QStringLiteral("the port listing is not that of a huawei switch")),
             qPrintable(run.errors));
}

void TestDryRun::port_isNotOpened()
{
    const ProgramRun run = runSwitchpanel({"save", "--dry-run", "--json", "--port", "/nowhere/tty"});
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitStatus, 0);
    QCOMPARE(labelsOf(blocksIn(run)), QStringList("Save configuration"));
}

void TestDryRun::export_leavesTheFileAlone_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QStringList>("labels");
    QTest::addColumn<QStringList>("blocks");

    QTest::newRow("Huawei") << QStringList{} << QStringList{"Export configuration0", "Export configuration1"}
                            << QStringList{"screen-length 0 temporary\r\nspace",
                                           "display current-configuration\r\nspace"};
    QTest::newRow("as commands") << QStringList{"--clean"}
                                 << QStringList{"Export configuration0", "Export configuration1"}
                                 << QStringList{"screen-length 0 temporary\r\nspace",
                                                "display current-configuration\r\nspace"};
    QTest::newRow("Hua3") << QStringList{"--family", "hua3"}
                          << QStringList{"Export configuration0", "Export configuration1"}
                          << QStringList{"screen-length disable\r\nspace", "display current-configuration\r\nspace"};
    QTest::newRow("Chinese") << QStringList{"--lang", "zh"}
                             << QStringList{QStringLiteral("导出配置0"), QStringLiteral("导出配置1")}
                             << QStringList{"screen-length 0 temporary\r\nspace",
                                            "display current-configuration\r\nspace"};
}

void TestDryRun::export_leavesTheFileAlone()
{
    QFETCH(QStringList, options);
    const QString path = write("what an earlier export wrote\n");
    const ProgramRun run = runSwitchpanel(QStringList{"export", path, "--dry-run", "--json"} + options);
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitStatus, 0);
    const QVector<Block> blocks = blocksIn(run);
    QTEST(labelsOf(blocks), "labels");
    QTEST(bytesOf(blocks), "blocks");
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("what an earlier export wrote\n"));
}

void TestDryRun::refusedValue_isToldAndNothingSent_data()
{
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<int>("exitStatus");
    QTest::addColumn<QString>("reason");

    QTest::newRow("VLAN 4094") << QStringList{"--vlan", "4094", "--ports", "1"} << 2
                               << "switchpanel: --vlan 4094 is not taken\n";
    QTest::newRow("VLAN 0") << QStringList{"--multicast", "on", "--multicast-vlan", "0"} << 2
                            << "switchpanel: --multicast-vlan 0 is not taken\n";
    QTest::newRow("VLAN -1") << QStringList{"--querier", "on", "--querier-vlan", "-1"} << 2
                             << "switchpanel: --querier-vlan -1 is not taken\n";
    QTest::newRow("uplinks that are not there")
        << QStringList{"--vlan", "10", "--uplinks", "7-9"} << 2 << "switchpanel: --uplinks 9 is not taken\n";
    QTest::newRow("uplinks of a group that are not there") << QStringList{"--group", "1", "--group-uplinks", "3-6"} << 2
                                                           << "switchpanel: --group-uplinks 6 is not taken\n";
    // Told by the device description; what the panel never sends is not sent here either.
    QTest::newRow("port 0") << QStringList{"--autoneg", "off", "--autoneg-port", "g0/0/0"} << 1
                            << "switchpanel: the switch did not take everything, see above\n";
    QTest::newRow("slot 256") << QStringList{"--autoneg", "off", "--autoneg-port", "g256/0/1"} << 1
                              << "switchpanel: the switch did not take everything, see above\n";
    QTest::newRow("a command in a port's place") << QStringList{"--shutdown-ports", "g0/0/1\r\nreboot"} << 1
                                                 << "switchpanel: the switch did not take everything, see above\n";
    QTest::newRow("no port") << QStringList{"--shutdown-ports", "everything"} << 1
                             << "switchpanel: the switch did not take everything, see above\n";
}

void TestDryRun::refusedValue_isToldAndNothingSent()
{
    QFETCH(QStringList, settings);
    QFETCH(QString, reason);
    const ProgramRun run = runSwitchpanel(QStringList("apply") + settings + QStringList{"--dry-run", "--json"});
    QTEST(run.exitStatus, "exitStatus");
    QVERIFY2(run.errors.endsWith(reason), qPrintable(run.errors));
    QCOMPARE(blocksIn(run).size(), 0);
}

void TestDryRun::wrongUsage_isTold_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("reason");

    QTest::newRow("listing without dry run")
        << QStringList{"save", "--port", "COM3", "--listing", "x"} << "--listing goes with --dry-run";
    QTest::newRow("nothing to apply") << QStringList{"apply", "--dry-run"}
                                      << "nothing to apply: name at least one setting";
}

void TestDryRun::wrongUsage_isTold()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    const ProgramRun run = runSwitchpanel(arguments);
    QCOMPARE(run.exitStatus, 2);
    QCOMPARE(run.errors.section(QLatin1Char('\n'), 0, 0), "switchpanel: " + reason);
}

QTEST_GUILESS_MAIN(TestDryRun)

#include "tst_switchpanel_dryrun.moc"
