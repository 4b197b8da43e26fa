#include "replydescription.h"

#include <QtTest/QtTest>

using reply::LoginPrompt;
using reply::ReplyText;

Q_DECLARE_METATYPE(LoginPrompt)

namespace {

using Section = reply::Effects (*)(const ReplyText &);

QStringList read(Section section, const QByteArray &bytes)
{
    const ReplyText text(bytes);
    return describe(section(text));
}

Question hua3Question()
{
    Question question;
    question.naming = hua3Naming();
    return question;
}

void addReplyRow(const char *tag, const QByteArray &bytes, const QStringList &expected)
{
    QTest::newRow(tag) << bytes << expected;
}

void addReplyColumns()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("expected");
}

QStringList infos(const QStringList &texts)
{
    QStringList lines;
    for (const QString &text : texts)
        lines.append(QStringLiteral("info ") + text);
    return lines;
}

QStringList details(const QStringList &texts)
{
    QStringList lines;
    for (const QString &text : texts)
        lines.append(QStringLiteral("info detailed ") + text);
    return lines;
}

const QString kEnded = QStringLiteral("waiting ended");
const QString kCleared = QStringLiteral("optical ports cleared");

} // namespace

class TestHua3ReplyParser : public QObject
{
    Q_OBJECT

private slots:
    void multicastTable_everyLineWhateverItSays_data();
    void multicastTable_everyLineWhateverItSays();
    void ipConflicts_fromTwoLinesOn_data();
    void ipConflicts_fromTwoLinesOn();
    void portStatus_promptIsLoggedAndEndsTheTable_data();
    void portStatus_promptIsLoggedAndEndsTheTable();
    void vlanSummary_headingWithTheLineBelow_data();
    void vlanSummary_headingWithTheLineBelow();
    void snooping_headingsOnly_data();
    void snooping_headingsOnly();
    void querier_linesThenTheEndOfWaiting_data();
    void querier_linesThenTheEndOfWaiting();
    void linkAggregation_promptIsLoggedAndEndsTheTable_data();
    void linkAggregation_promptIsLoggedAndEndsTheTable();
    void mirroringGroups_promptIsReadAndEndsTheGroup_data();
    void mirroringGroups_promptIsReadAndEndsTheGroup();
    void mirroringGroups_headingText();
    void poeInterfaces_promptIsLoggedAndEndsTheTable_data();
    void poeInterfaces_promptIsLoggedAndEndsTheTable();
    void poeUsage_everyLineWithoutLogMore_data();
    void poeUsage_everyLineWithoutLogMore();
    void forwardingTable_lineBelowTheFirst_data();
    void forwardingTable_lineBelowTheFirst();
    void opticalPorts_alsoNamingPorts_data();
    void opticalPorts_alsoNamingPorts();
    void portMirroring_data();
    void portMirroring();
    void loginPrompt_data();
    void loginPrompt();
    void ports_data();
    void ports();
    void ports_announceNoHeader();
    void ports_ofAnAggregationSwitch_standBelow();
    void transceivers_data();
    void transceivers();
    void rebootNotice_data();
    void rebootNotice();
    void otherFamilysSections_doNotExist_data();
    void otherFamilysSections_doNotExist();
    void oneReply_satisfiesSeveralSections();
    void emptyReply_satisfiesNothing();
    void bytesThatAreNotUtf8_areReadAsReplacements();
};

void TestHua3ReplyParser::multicastTable_everyLineWhateverItSays_data()
{
    addReplyColumns();
    addReplyRow("a table", "Total 1 entries\r\n(0.0.0.0, 239.1.1.1)\r\n", {QStringLiteral("1 info every line")});
    addReplyRow("off for the whole switch", "Please enable IGMP snooping in the global view first.",
                {QStringLiteral("1 info every line"),
                 QStringLiteral("5 info Please enable IGMP snooping in the global view first.")});
    addReplyRow("empty", "", {QStringLiteral("1 info every line")});
}

void TestHua3ReplyParser::multicastTable_everyLineWhateverItSays()
{
    QFETCH(QByteArray, bytes);
    Question question = hua3Question();
    question.label = QStringLiteral("组播转发表");
    QTEST(describeHua3Reply(bytes, question), "expected");
    question.label = QStringLiteral("other");
    QVERIFY(!describeHua3Reply(bytes, question).contains(QStringLiteral("1 info every line")));
}

void TestHua3ReplyParser::ipConflicts_fromTwoLinesOn_data()
{
    addReplyColumns();
    const QStringList none{QStringLiteral("2 info ") + QChar(0x200B) + QStringLiteral("No IP conflict")};
    const QStringList every{QStringLiteral("2 info every line")};
    addReplyRow("empty", "", none);
    addReplyRow("one line", "<Switch>", none);
    addReplyRow("one line that names a conflict", "Conflict type : Local", none);
    addReplyRow("a bare LF ends no line", "a\nb", none);
    addReplyRow("two lines", "10.0.0.1 00e0-fc00-0001\r\n<Switch>", every);
    addReplyRow("an empty second line", "display arp ip-conflict\r\n", every);
}

void TestHua3ReplyParser::ipConflicts_fromTwoLinesOn()
{
    QFETCH(QByteArray, bytes);
    Question question = hua3Question();
    question.label = QStringLiteral("IP冲突");
    QTEST(describeHua3Reply(bytes, question), "expected");
    question.label.clear();
    QCOMPARE(describeHua3Reply(bytes, question), QStringList());
}

void TestHua3ReplyParser::portStatus_promptIsLoggedAndEndsTheTable_data()
{
    addReplyColumns();
    const QByteArray header = "Interface Link Speed Duplex Type PVID Description\r\n";
    const QString shown = QStringLiteral("Interface Link Speed Duplex Type PVID Description");
    addReplyRow("no Interface", "Link Speed Duplex Type PVID Description\r\nGE1/0/1\r\n", {});
    addReplyRow("no Link", "Interface Speed Duplex Type PVID Description\r\nGE1/0/1\r\n", {});
    addReplyRow("no Speed", "Interface Link Duplex Type PVID Description\r\nGE1/0/1\r\n", {});
    addReplyRow("words on three lines: no table", "Interface\r\nLink\r\nSpeed\r\nGE1/0/1\r\n", {kEnded});
    addReplyRow("header without Interface", "Interface\r\nLink Speed Duplex Type Description\r\nGE1/0/1\r\n", {kEnded});
    addReplyRow("header without Link", "Link\r\nInterface Speed Duplex Type Description\r\nGE1/0/1\r\n", {kEnded});
    addReplyRow("header without Duplex", "Interface Link Speed Type Description\r\nGE1/0/1\r\n", {kEnded});
    addReplyRow("header without Type", "Interface Link Speed Duplex Description\r\nGE1/0/1\r\n", {kEnded});
    addReplyRow("Description nowhere", "Interface Link Speed Duplex Type\r\nGE1/0/1\r\n", {kEnded});
    addReplyRow("Speed and Description on other lines",
                "Speed: (a)\r\nInterface Link Duplex Type\r\nGE1/0/1 Description\r\n",
                infos({QStringLiteral("Interface Link Duplex Type"), QStringLiteral("GE1/0/1 Description")}) << kEnded);
    addReplyRow("lines before the table are dropped", "<Switch>dis\r\nGE1/0/1\r\n" + header + "GE1/0/2\r\n",
                infos({shown, QStringLiteral("GE1/0/2")}) << kEnded);
    addReplyRow("trimmed, empty ones left out", "  " + header + "\r\n   \r\n  GE1/0/1 UP  \r\n",
                infos({shown, QStringLiteral("GE1/0/1 UP")}) << kEnded);
    addReplyRow("up to the prompt and with it", header + "GE1/0/1\r\n  <Switch> \r\nGE1/0/2\r\n",
                infos({shown, QStringLiteral("GE1/0/1"), QStringLiteral("<Switch>")}) << kEnded);
    addReplyRow("system view is no end", header + "[Switch]\r\nGE1/0/2\r\n",
                infos({shown, QStringLiteral("[Switch]"), QStringLiteral("GE1/0/2")}) << kEnded);
    addReplyRow("a second table", header + "<Switch>\r\nx\r\n" + header + "GE1/0/2\r\n",
                infos({shown, QStringLiteral("<Switch>"), shown, QStringLiteral("GE1/0/2")}) << kEnded);
    addReplyRow("a header within the table is shown once", header + "GE1/0/1\r\n" + header,
                infos({shown, QStringLiteral("GE1/0/1"), shown}) << kEnded);
    addReplyRow("a header that begins like a prompt", "<S> " + header + "GE1/0/1\r\n",
                infos({QStringLiteral("<S> ") + shown, QStringLiteral("GE1/0/1")}) << kEnded);
    addReplyRow("page marker before a port",
                header + "  ---- More ----\x1b[16D                \x1b[16DGE1/0/5 UP\r\nGE1/0/6\r\n",
                infos({shown, QStringLiteral("GE1/0/5 UP"), QStringLiteral("GE1/0/6")}) << kEnded);
    addReplyRow("page marker before a 10-gigabit port: the name loses its first letter",
                header + "---- More ---- XGE1/0/25 UP\r\n", infos({shown, QStringLiteral("GE1/0/25 UP")}) << kEnded);
    addReplyRow("page marker: up to the next name", header + "---- More ---- GE1/0/5 to GE1/0/6\r\n",
                infos({shown, QStringLiteral("GE1/0/5 to ")}) << kEnded);
    addReplyRow("page marker: nothing behind the name", header + "---- More ---- GE1/\r\n",
                infos({shown, QStringLiteral("GE1/")}) << kEnded);
    addReplyRow("page marker before another slot", header + "---- More ---- GE2/0/5\r\n", infos({shown}) << kEnded);
    addReplyRow("page marker before the prompt", header + "---- More ---- <Switch>\r\nGE1/0/5\r\n",
                infos({shown, QStringLiteral("GE1/0/5")}) << kEnded);
    addReplyRow("page marker behind a prompt ends the table", header + "<S> ---- More ---- GE1/0/5\r\nGE1/0/6\r\n",
                infos({shown, QStringLiteral("GE1/0/5")}) << kEnded);
    addReplyRow("page marker in front of the header", "---- More ---- " + header,
                infos({QStringLiteral("---- More ---- ") + shown}) << kEnded);
    addReplyRow("page marker before the table", "---- More ---- GE1/0/1\r\n" + header, infos({shown}) << kEnded);
}

void TestHua3ReplyParser::portStatus_promptIsLoggedAndEndsTheTable()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readHua3PortStatus, bytes), "expected");
}

void TestHua3ReplyParser::vlanSummary_headingWithTheLineBelow_data()
{
    addReplyColumns();
    addReplyRow("no count", " The VLANs include:\r\n 1(default)\r\n", {});
    addReplyRow("count only", "display vlan\r\n Total VLANs: 1\r\nx\r\n",
                infos({QStringLiteral(" Total VLANs: 1")}) << kEnded);
    addReplyRow("count and ids", " Total VLANs: 3\r\n The VLANs include:\r\n 1(default), 20, 30\r\n<Switch>",
                infos({QStringLiteral(" Total VLANs: 3"), QStringLiteral(" The VLANs include:"),
                       QStringLiteral(" 1(default), 20, 30")})
                    << kEnded);
    addReplyRow("ids before the count", "The VLANs include:\r\n1\r\nTotal VLANs: 1",
                infos({QStringLiteral("The VLANs include:"), QStringLiteral("1"), QStringLiteral("Total VLANs: 1")})
                    << kEnded);
    addReplyRow("an empty line below counts", "Total VLANs: 1\r\nThe VLANs include:\r\n\r\n1\r\n",
                infos({QStringLiteral("Total VLANs: 1"), QStringLiteral("The VLANs include:"), QString()}) << kEnded);
    addReplyRow("nothing below", "Total VLANs: 1\r\nThe VLANs include:",
                infos({QStringLiteral("Total VLANs: 1"), QStringLiteral("The VLANs include:")}) << kEnded);
    addReplyRow("both on one line", "Total VLANs: 1. The VLANs include:\r\n1\r\n",
                infos({QStringLiteral("Total VLANs: 1. The VLANs include:"), QStringLiteral("1")}) << kEnded);
    addReplyRow("lower case", "total vlans: 1\r\n", {});
    addReplyRow("older release", " Total 2 VLAN exist(s).\r\n The following VLANs exist:\r\n 1, 2\r\n", {});
}

void TestHua3ReplyParser::vlanSummary_headingWithTheLineBelow()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readHua3VlanSummary, bytes), "expected");
}

void TestHua3ReplyParser::snooping_headingsOnly_data()
{
    addReplyColumns();
    addReplyRow(
        "global", "IGMP snooping information: Global\r\n IGMP snooping: Enabled\r\n Drop-unknown: Disabled\r\n",
        infos({QStringLiteral("IGMP snooping information: Global"), QStringLiteral(" IGMP snooping: Enabled")}));
    addReplyRow("capital S", "IGMP Snooping: Enabled\r\n", {});
    addReplyRow("the command", "display igmp-snooping\r\n", {});
}

void TestHua3ReplyParser::snooping_headingsOnly()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readHua3Snooping, bytes), "expected");
}

void TestHua3ReplyParser::querier_linesThenTheEndOfWaiting_data()
{
    addReplyColumns();
    addReplyRow("enabled", " IGMP snooping: Enabled\r\n Querier: Enabled (IP: 0.0.0.0)\r\n Query-interval: 125s\r\n",
                infos({QStringLiteral(" Querier: Enabled (IP: 0.0.0.0)")}) << kEnded);
    addReplyRow("two VLANs", "Querier: Enabled\r\n\r\nQuerier: Disabled\r\n",
                infos({QStringLiteral("Querier: Enabled"), QStringLiteral("Querier: Disabled")}) << kEnded);
    addReplyRow("lower case", "igmp-snooping querier\r\n", {});
}

void TestHua3ReplyParser::querier_linesThenTheEndOfWaiting()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readHua3Querier, bytes), "expected");
}

void TestHua3ReplyParser::linkAggregation_promptIsLoggedAndEndsTheTable_data()
{
    addReplyColumns();
    const QByteArray group = "Aggregate Interface: Bridge-Aggregation1\r\n";
    const QByteArray header = "  Port  Status  Priority Index Oper-Key  Flag\r\n";
    const QString shown = QStringLiteral("Port  Status  Priority Index Oper-Key  Flag");
    addReplyRow("no group", header + "GE1/0/1 S\r\n", {});
    addReplyRow("no header", group + "GE1/0/1 S\r\n", {kEnded});
    addReplyRow("members", group + "Local:\r\n" + header + "\r\n  GE1/0/1(R) S 32768 1 1 {ACDEF}\r\n",
                details({shown, QStringLiteral("GE1/0/1(R) S 32768 1 1 {ACDEF}")}) << kEnded);
    addReplyRow("up to the prompt and with it", group + header + "GE1/0/1\r\n <Switch>\r\nGE1/0/2\r\n",
                details({shown, QStringLiteral("GE1/0/1"), QStringLiteral("<Switch>")}) << kEnded);
    addReplyRow("a second header", group + header + "<Switch>\r\nx\r\n" + header,
                details({shown, QStringLiteral("<Switch>"), shown}) << kEnded);
    addReplyRow("no Priority in the reply", group + "Port Status Index Oper-Key Flag\r\nGE1/0/1\r\n", {kEnded});
    addReplyRow("no Flag in the reply", group + "Port Status Priority Index Oper-Key\r\nGE1/0/1\r\n", {kEnded});
    addReplyRow("Priority and Flag on other lines",
                group + "Flags: A\r\nPort Status Index Oper-Key\r\nGE1/0/1 Priority\r\n",
                details({QStringLiteral("Port Status Index Oper-Key"), QStringLiteral("GE1/0/1 Priority")}) << kEnded);
    addReplyRow("no Port in the header", group + "Status Priority Index Oper-Key Flag\r\nGE1/0/1\r\n", {kEnded});
    addReplyRow("no Status in the header", group + "Port Priority Index Oper-Key Flag\r\nGE1/0/1\r\n", {kEnded});
    addReplyRow("no Index: a group without LACP", group + "Port Status Priority Oper-Key Flag\r\nGE1/0/1\r\n",
                {kEnded});
    addReplyRow("no Oper-Key in the header", group + "Port Status Priority Index Flag\r\nGE1/0/1\r\n", {kEnded});
    addReplyRow("a page marker is shown", group + header + "  ---- More ---- GE1/0/1\r\n",
                details({shown, QStringLiteral("---- More ---- GE1/0/1")}) << kEnded);
}

void TestHua3ReplyParser::linkAggregation_promptIsLoggedAndEndsTheTable()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readHua3LinkAggregation, bytes), "expected");
}

void TestHua3ReplyParser::mirroringGroups_promptIsReadAndEndsTheGroup_data()
{
    addReplyColumns();
    const auto groups = [](const char *text) {
        return QStringList{QStringLiteral("8 groups ") + QLatin1String(text), QStringLiteral("8 waiting ended")};
    };
    const QStringList none{QStringLiteral("8 waiting ended")};
    addReplyRow("no group", "Type: Local\r\n", {});
    addReplyRow("a group",
                "Mirroring group 1:\r\n    Type: Local\r\n    Status: Active\r\n    Mirroring port:\r\n"
                "        GigabitEthernet1/0/2  Inbound\r\n    Monitor port: GigabitEthernet1/0/10\r\n<Switch>",
                groups("Type: Local|Status: Active|Mirroring port:|GigabitEthernet1/0/2  Inbound|"
                       "Monitor port: GigabitEthernet1/0/10|"));
    addReplyRow("two groups", "Mirroring group 1:\r\nType: Local\r\nMirroring group 2:\r\nType: Remote\r\n",
                groups("Type: Local|Type: Remote|"));
    addReplyRow("10-gigabit ports have a gigabit port's name", "Mirroring group 1:\r\nTen-GigabitEthernet1/0/25\r\n",
                groups("Ten-GigabitEthernet1/0/25|"));
    addReplyRow("other lines are dropped", "Mirroring group 1:\r\nMonitor port: Not configured\r\n", none);
    addReplyRow("a heading without a colon opens none", "Mirroring group 1\r\nType: Local\r\n", none);
    addReplyRow("the heading itself is not shown", "Mirroring group 1: Type: Local\r\nStatus: Active\r\n",
                groups("Status: Active|"));
    addReplyRow("lines before the group are dropped", "Type: Local\r\nMirroring group 1:\r\n", none);
    addReplyRow("the prompt ends the group", "Mirroring group 1:\r\nType: Local\r\n <Switch>\r\nStatus: Active\r\n",
                groups("Type: Local|"));
    addReplyRow("a prompt with a detail is read", "Mirroring group 1:\r\n<S>Type: Local\r\nStatus: Active\r\n",
                groups("<S>Type: Local|"));
    addReplyRow("a group behind a prompt", "Mirroring group 1:\r\n<S>\r\nMirroring group 2:\r\nStatus: Active\r\n",
                groups("Status: Active|"));
    addReplyRow("words without their colon", "Mirroring group 1:\r\nType Local\r\nStatus Active\r\nMirroring port\r\n",
                none);
}

void TestHua3ReplyParser::mirroringGroups_promptIsReadAndEndsTheGroup()
{
    QFETCH(QByteArray, bytes);
    QTEST(describeHua3Reply(bytes, hua3Question()), "expected");
}

void TestHua3ReplyParser::mirroringGroups_headingText()
{
    QCOMPARE(reply::kMirroringGroupHeading.toString(), QStringLiteral("镜像端口配置信息:"));
}

void TestHua3ReplyParser::poeInterfaces_promptIsLoggedAndEndsTheTable_data()
{
    addReplyColumns();
    const QByteArray header = " Interface  PoE  Priority CurPower\r\n";
    const QString shown = QStringLiteral("Interface  PoE  Priority CurPower");
    addReplyRow("no Interface", "PoE Priority\r\nGE1/0/1\r\n", {});
    addReplyRow("no PoE", "Interface Priority\r\nGE1/0/1\r\n", {});
    addReplyRow("no Priority", "Interface PoE\r\nGE1/0/1\r\n", {});
    addReplyRow("words on three lines", "PoE\r\nPriority\r\nInterface\r\nGE1/0/1\r\n",
                details({QStringLiteral("Interface"), QStringLiteral("GE1/0/1")}) << kEnded);
    addReplyRow("lines before the table are dropped", "GE1/0/1\r\n" + header, details({shown}) << kEnded);
    addReplyRow("up to the prompt and with it", header + "\r\n GE1/0/1 Enabled \r\n <Switch>\r\nGE1/0/2\r\n",
                details({shown, QStringLiteral("GE1/0/1 Enabled"), QStringLiteral("<Switch>")}) << kEnded);
    addReplyRow("behind a page marker always", header + "GE1/0/1\r\n  ---- More ----\x1b[42D   \x1b[42DGE1/0/2\r\n",
                details({shown, QStringLiteral("GE1/0/1")}) << QStringLiteral("info GE1/0/2") << kEnded);
    addReplyRow("page marker before another slot", header + "---- More ---- GE2/0/1\r\n", details({shown}) << kEnded);
    addReplyRow("page marker before the table", "---- More ---- GE1/0/1\r\n" + header, details({shown}) << kEnded);
}

void TestHua3ReplyParser::poeInterfaces_promptIsLoggedAndEndsTheTable()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readHua3PoeInterfaces, bytes), "expected");
}

void TestHua3ReplyParser::poeUsage_everyLineWithoutLogMore_data()
{
    addReplyColumns();
    const QByteArray header = "Interface            Link Protocol InUsage\r\n";
    const QString shown = QStringLiteral("Interface            Link Protocol InUsage");
    addReplyRow("no Interface", "Link InUsage\r\nGE1/0/1\r\n", {});
    addReplyRow("no Link", "Interface InUsage\r\nGE1/0/1\r\n", {});
    addReplyRow("no InUsage", "Interface Link\r\nGE1/0/1\r\n", {});
    addReplyRow("a legend before the header", "Link: ADM - administratively down\r\n" + header + "GE1/0/1 UP\r\n",
                infos({shown, QStringLiteral("GE1/0/1 UP")}) << kEnded);
    addReplyRow("up to the prompt and with it", header + "GE1/0/1\r\n<Switch>\r\nGE1/0/2\r\n",
                infos({shown, QStringLiteral("GE1/0/1"), QStringLiteral("<Switch>")}) << kEnded);
    addReplyRow("page marker", header + "  ---- More ----\x1b[16D   \x1b[16DGE1/0/2 UP\r\n",
                infos({shown, QStringLiteral("GE1/0/2 UP")}) << kEnded);
}

void TestHua3ReplyParser::poeUsage_everyLineWithoutLogMore()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readHua3PoeUsage, bytes), "expected");
}

void TestHua3ReplyParser::forwardingTable_lineBelowTheFirst_data()
{
    addReplyColumns();
    addReplyRow("another reply", "multicast routing-table\r\nTotal 0 entries\r\n", {});
    addReplyRow("below the echo", "<S>display multicast forwarding-table\r\nTotal 1 entries\r\n00001. (0.0.0.0)\r\n",
                infos({QStringLiteral("Total 1 entries")}));
    addReplyRow("the first of two", "multicast forwarding-table\r\n a\r\nmulticast forwarding-table\r\nb\r\n",
                infos({QStringLiteral(" a")}));
    addReplyRow("an empty line below", "multicast forwarding-table\r\n\r\na\r\n", infos({QString()}));
    addReplyRow("an empty line at the end", "multicast forwarding-table\r\n", infos({QString()}));
    addReplyRow("the last line of the reply", "a\r\nmulticast forwarding-table", {});
    addReplyRow("the only line of the reply", "multicast forwarding-table", {});
}

void TestHua3ReplyParser::forwardingTable_lineBelowTheFirst()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readHua3ForwardingTable, bytes), "expected");
}

void TestHua3ReplyParser::opticalPorts_alsoNamingPorts_data()
{
    addReplyColumns();
    const QByteArray header = "Port Optic Speed\r\n";
    addReplyRow("no Port", "Optic Speed\r\n0/0/1 GE(C)\r\n", {});
    addReplyRow("no Optic", "Port Speed\r\n0/0/1 GE(C)\r\n", {});
    addReplyRow("no Speed", "Port Optic\r\n0/0/1 GE(C)\r\n", {});
    addReplyRow("board type, copper and fibre",
                "Board Type : S5560X\r\n" + header + "0/0/1 GE(C)\r\n0/0/2 GE(F)\r\n<Switch>\r\n0/0/3 GE(C)\r\n",
                {kCleared, QStringLiteral("info Board Type : S5560X"), QStringLiteral("board type S5560X"),
                 QStringLiteral("info 0/0/1 GE(C)"), QStringLiteral("optical port 0/0/1 GE(C)"),
                 QStringLiteral("info 0/0/2 GE(F)"), kEnded});
    addReplyRow("page marker", header + "---- More ---- 1/0/0/3 GE(C)\r\n---- More ---- 1/0/5 GE(C)\r\n",
                {kCleared, QStringLiteral("result 0/0/3 GE(C)"), QStringLiteral("optical port 0/0/3 GE(C)"), kEnded});
    addReplyRow("words on three lines: no table", "Port\r\nOptic\r\nSpeed\r\n0/0/1 GE(C)\r\n", {kCleared, kEnded});
}

void TestHua3ReplyParser::opticalPorts_alsoNamingPorts()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readHua3OpticalPorts, bytes), "expected");
}

void TestHua3ReplyParser::portMirroring_data()
{
    addReplyColumns();
    const QByteArray echo = "<Switch>display port-mirroring\r\n";
    const QByteArray destination = "  Observe-port 1 : GigabitEthernet1/0/10\r\n";
    const QString ended = QStringLiteral("13 waiting ended");
    addReplyRow("another command", destination + " 1 GigabitEthernet1/0/2 Inbound\r\n", {});
    addReplyRow("nothing mirrored", echo, {ended});
    addReplyRow("two ports",
                echo + destination + " 1 GigabitEthernet1/0/2 Inbound\r\n 2 GigabitEthernet1/0/3 Inbound\r\n",
                {QStringLiteral("13 mirroring 1: 2 to 10"), QStringLiteral("13 mirroring 1: 3 to 10"), ended});
    addReplyRow("source before the destination", echo + " 1 GigabitEthernet1/0/2 Inbound\r\n" + destination, {ended});
    addReplyRow("short names", echo + "Observe-port 1 : GE1/0/10\r\n 1 GE1/0/2 Inbound\r\n", {ended});
}

void TestHua3ReplyParser::portMirroring()
{
    QFETCH(QByteArray, bytes);
    QTEST(describeHua3Reply(bytes, hua3Question()), "expected");
}

void TestHua3ReplyParser::loginPrompt_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isLoggedIn");
    QTest::addColumn<LoginPrompt>("expected");
    const auto row = [](const char *tag, const QByteArray &bytes, bool isLoggedIn, LoginPrompt expected) {
        QTest::newRow(tag) << bytes << isLoggedIn << expected;
    };
    row("user name", "\r\nUsername:", false, LoginPrompt::Username);
    row("login", "\r\nLogin: ", false, LoginPrompt::Username);
    row("Login anywhere", "Login authentication", false, LoginPrompt::Username);
    row("login when logged in", "Login", true, LoginPrompt::Username);
    row("login before password", "Password:\r\n\r\nLogin:", false, LoginPrompt::Username);
    row("login before a prompt", "Login\r\n<Switch>", false, LoginPrompt::Username);
    row("login in lower case", "login:", false, LoginPrompt::None);
    row("login in capitals", "SHELL_LOGIN", false, LoginPrompt::None);
    row("password", "Password:", false, LoginPrompt::Password);
    row("password before failure", "authentication failed\r\nPassword:", false, LoginPrompt::Password);
    row("enter password", "Enter password:", false, LoginPrompt::ConfirmPassword);
    row("confirm password", "Please confirm password:", false, LoginPrompt::ConfirmPassword);
    row("confirm password before a prompt", "confirm password:\r\n<Switch>", false, LoginPrompt::ConfirmPassword);
    row("user view", "<Switch>", false, LoginPrompt::Ready);
    row("system view", "[Switch]", false, LoginPrompt::Ready);
    row("opening bracket only", "<Switch [Switch", false, LoginPrompt::None);
    row("user view when logged in", "<Switch>", true, LoginPrompt::None);
    row("system view when logged in", "[Switch]", true, LoginPrompt::None);
    row("prompt before failure", "authentication failed\r\n<Switch>", false, LoginPrompt::Ready);
    row("failure behind a prompt when logged in", "authentication failed\r\n<Switch>", true, LoginPrompt::Refused);
    row("authentication failed", "AAA authentication failed", false, LoginPrompt::Refused);
    row("with a capital", "Authentication failed", false, LoginPrompt::None);
    row("other family's failure", "Authentication fail", false, LoginPrompt::None);
    row("invalid password", "Invalid password", false, LoginPrompt::Refused);
    row("the password is invalid", "Error: The password is invalid.", false, LoginPrompt::None);
    row("failed to login", "Failed to login", false, LoginPrompt::Failed);
    row("refused before failed", "Failed to login: Invalid password", false, LoginPrompt::Refused);
    row("nothing", "Press ENTER to get started.", false, LoginPrompt::None);
}

void TestHua3ReplyParser::loginPrompt()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isLoggedIn);
    const ReplyText text(bytes);
    QTEST(readHua3LoginPrompt(text, isLoggedIn), "expected");
}

void TestHua3ReplyParser::ports_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isInventory");
    QTest::addColumn<QString>("down");
    QTest::addColumn<QString>("up");
    QTest::addColumn<QString>("downRange");
    QTest::addColumn<QString>("upRange");
    QTest::addColumn<bool>("hasNoGigabitPort");
    const auto row = [](const char *tag, const QByteArray &bytes, const char *down, const char *up,
                        const char *downRange, const char *upRange, bool hasNoGigabitPort = false) {
        QTest::newRow(tag) << bytes << true << QString::fromLatin1(down) << QString::fromLatin1(up)
                           << QString::fromLatin1(downRange) << QString::fromLatin1(upRange) << hasNoGigabitPort;
    };
    const auto none = [](const char *tag, const QByteArray &bytes) {
        QTest::newRow(tag) << bytes << false << QString() << QString() << QString() << QString() << false;
    };
    const QByteArray header = "Interface Link Speed\r\n";
    none("no Interface", "Link Speed\r\nGE1/0/1\r\n");
    none("no Link", "Interface Speed\r\nGE1/0/1\r\n");
    none("no Speed", "Interface Link\r\nGE1/0/1\r\n");
    none("the other family's header", "Interface PHY Protocol\r\nGE1/0/1\r\n");
    row("words on three lines", "Speed\r\nLink\r\nGE1/0/7\r\nInterface\r\n", "g1/0/7", "", "7-7", "not found");
    row("gigabit and 10-gigabit", header + "GE1/0/1 UP\r\nGE1/0/24 DOWN\r\nXGE1/0/25 UP\r\nXGE1/0/28 UP\r\n",
        "g1/0/1 g1/0/24", "t1/0/25 t1/0/28", "1-24", "25-28");
    row("gigabit lines that also hold XG", header + "GE1/0/1 XG\r\nGE1/0/2 to XGE1/0/25\r\n", "t1/0/25", "", "25-25",
        "not found", true);
    row("XG in another meaning", header + "GE1/0/1 \"to XG-17\"\r\nGE1/0/2\r\n", "g1/0/2", "", "2-2", "not found");
    row("lower-case xg excludes nothing", header + "GE1/0/1 xg\r\n", "g1/0/1", "", "1-1", "not found");
    row("no gigabit port: 40-gigabit numbers are the up range",
        header + "XGE1/0/1\r\nXGE1/0/24\r\n40GE1/0/25\r\n40GE1/0/26\r\n", "t1/0/1 t1/0/24", "", "1-24", "25-26", true);
    row("a faster port's name is no gigabit port", header + "40GE1/0/25\r\n25GE1/0/26\r\n100GE1/0/27\r\n", "", "",
        "not found", "25-25", true);
    row("no port at all", header, "", "", "not found", "not found", true);
    row("the prompt ends nothing", header + "<Switch>\r\nGE1/0/3\r\n", "g1/0/3", "", "3-3", "not found");
    row("behind a page marker", header + "  ---- More ----\x1b[16D \x1b[16DGE1/0/9 UP\r\n", "g1/0/9", "", "9-9",
        "not found");
    row("number beyond 31 bits", header + "GE1/0/99999999999\r\n", "g1/0/99999999999", "", "not found", "not found");
    row("management port", header + "M-GE0/0/0 UP\r\nGE1/0/1\r\n", "g0/0/0 g1/0/1", "", "0-1", "not found");
}

void TestHua3ReplyParser::ports()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isInventory);
    const ReplyText text(bytes);
    const auto inventory = readHua3Ports(text, hua3Naming(), false);
    QCOMPARE(inventory.has_value(), isInventory);
    if (!inventory)
        return;
    QTEST(inventory->downPorts.join(QLatin1Char(' ')), "down");
    QTEST(inventory->upPorts.join(QLatin1Char(' ')), "up");
    QTEST(inventory->hasNoGigabitPort, "hasNoGigabitPort");
    const QStringList description = describe(*inventory);
    QFETCH(QString, downRange);
    QFETCH(QString, upRange);
    QCOMPARE(description.at(description.size() - 2), QStringLiteral("down range ") + downRange);
    QCOMPARE(description.last(), QStringLiteral("up range ") + upRange);
    QCOMPARE(inventory->slot, 0);
    QVERIFY(!inventory->isSubModel);
}

void TestHua3ReplyParser::ports_announceNoHeader()
{
    const ReplyText text("Interface PHY Link Speed\r\nInterface PHY GE1/0/1\r\nGE1/0/2\r\n");
    const auto inventory = readHua3Ports(text, hua3Naming(), false);
    QVERIFY(inventory);
    QCOMPARE(inventory->headerCount, 0);
    QCOMPARE(inventory->downPorts, QStringList{QStringLiteral("g1/0/2")}); // a header line is never searched
}

void TestHua3ReplyParser::ports_ofAnAggregationSwitch_standBelow()
{
    const ReplyText text("Interface Link Speed\r\nGE1/0/1\r\nXGE1/0/25\r\n");
    const auto inventory = readHua3Ports(text, hua3Naming(), true);
    QVERIFY(inventory);
    QVERIFY(!inventory->hasNoGigabitPort);
    QCOMPARE(inventory->downPorts, (QStringList{QStringLiteral("g1/0/1"), QStringLiteral("t1/0/25")}));
    QVERIFY(inventory->upPorts.isEmpty());
    QCOMPARE(inventory->down.maximum, 25);
    QVERIFY(!inventory->up.isFound());
}

void TestHua3ReplyParser::transceivers_data()
{
    addReplyColumns();
    addReplyRow("absent alone", "GE1/0/25 transceiver is absent.\r\n", {});
    addReplyRow("two ports",
                "GE1/0/24 transceiver information:\r\n  Transceiver Type : 1000_BASE_SX\r\n  Vendor Name : x\r\n"
                "XGE1/0/25 transceiver information:\r\n  Wavelength(nm) : 850\r\n",
                {QStringLiteral("16 log block GE1/0/24:Transceiver Type : 1000_BASE_SX|"),
                 QStringLiteral("16 result block XGE1/0/25:Wavelength(nm) : 850|")});
    addReplyRow("absent beside a listing", "GE1/0/24 transceiver information:\r\nGE1/0/25 transceiver is absent.\r\n",
                {QStringLiteral("16 log absent GE1/0/25:")});
    addReplyRow("long names are not known", "GigabitEthernet1/0/24 transceiver information:\r\nWavelength : 850\r\n",
                {});
}

void TestHua3ReplyParser::transceivers()
{
    QFETCH(QByteArray, bytes);
    QTEST(describeHua3Reply(bytes, hua3Question()), "expected");
}

void TestHua3ReplyParser::rebootNotice_data()
{
    addReplyColumns();
    addReplyRow("question", "This command will reboot the device. Continue? [Y/N]:", {QStringLiteral("17 reboot")});
    addReplyRow("with a capital", "Reboot", {});
}

void TestHua3ReplyParser::rebootNotice()
{
    QFETCH(QByteArray, bytes);
    Question question = hua3Question();
    question.isLoggedIn = true;
    QTEST(describeHua3Reply(bytes, question), "expected");
}

void TestHua3ReplyParser::otherFamilysSections_doNotExist_data()
{
    addReplyColumns();
    addReplyRow("current configuration", "display current-configuration\r\n#\r\ninterface GE0/0/1\r\n", {});
    addReplyRow("interface view", "display this\r\n#\r\nvlan 20\r\n#\r\n", {});
    addReplyRow("IGMP configuration", "igmp-snooping configuration\r\nThere is no igmp-snooping configuration\r\n", {});
    addReplyRow("command error", " % Unrecognized command found at '^' position.\r\n", {});
    addReplyRow("VLAN count", "The total number of VLANs is : 2\r\n", {});
    addReplyRow("PoE power", "display poe power\r\nInterface Class\r\nGE1/0/1\r\n", {});
}

void TestHua3ReplyParser::otherFamilysSections_doNotExist()
{
    QFETCH(QByteArray, bytes);
    Question question = hua3Question();
    question.label = QStringLiteral("more igmp");
    question.askedPort = QStringLiteral("g0/0/1");
    QTEST(describeHua3Reply(bytes, question), "expected");
}

void TestHua3ReplyParser::oneReply_satisfiesSeveralSections()
{
    Question question = hua3Question();
    question.label = QStringLiteral("IP冲突");
    question.isLoggedIn = false;
    const QByteArray bytes = "Aggregate Interface Link Speed Duplex Type Description PoE InUsage\r\n"
                             "Port Status Priority Index Oper-Key Flag Optic Querier\r\n"
                             "Mirroring group 1: IGMP snooping\r\n"
                             "Total VLANs: GigabitEthernet1/0/1\r\n"
                             "display port-mirroring multicast forwarding-table\r\n"
                             "GE1/0/1 transceiver information:, reboot\r\n"
                             "[Switch]";
    const QStringList lines{
        QStringLiteral("Aggregate Interface Link Speed Duplex Type Description PoE InUsage"),
        QStringLiteral("Port Status Priority Index Oper-Key Flag Optic Querier"),
        QStringLiteral("Mirroring group 1: IGMP snooping"),
        QStringLiteral("Total VLANs: GigabitEthernet1/0/1"),
        QStringLiteral("display port-mirroring multicast forwarding-table"),
        QStringLiteral("GE1/0/1 transceiver information:, reboot"),
        QStringLiteral("[Switch]"),
    };
    QStringList expected{QStringLiteral("2 info every line")};
    const auto add = [&](int section, const QStringList &descriptions) {
        for (const QString &description : descriptions)
            expected.append(QStringLiteral("%1 %2").arg(section).arg(description));
    };
    add(3, infos(lines) << kEnded);
    add(4, infos({lines.at(3)}) << kEnded);
    add(5, infos({lines.at(2)}));
    add(6, infos({lines.at(1)}) << kEnded);
    add(7, details(lines.mid(1)) << kEnded);
    add(8, {QStringLiteral("groups Total VLANs: GigabitEthernet1/0/1|"), kEnded});
    add(9, details(lines) << kEnded);
    add(10, infos(lines) << kEnded);
    add(11, infos({lines.at(5)}));
    add(12, QStringList{kCleared} + infos(lines.mid(2)) << kEnded);
    add(13, {kEnded});
    add(14, {QStringLiteral("ready")});
    add(15, {QStringLiteral("slot 0"), QStringLiteral("headers 0"), QStringLiteral("down ports: g1/0/1"),
             QStringLiteral("up ports: "), QStringLiteral("down range 1-1"), QStringLiteral("up range not found")});
    add(16, {});
    add(17, {QStringLiteral("reboot")});
    QCOMPARE(describeHua3Reply(bytes, question), expected);
}

void TestHua3ReplyParser::emptyReply_satisfiesNothing()
{
    QCOMPARE(describeHua3Reply(QByteArray(), hua3Question()), QStringList());
    QCOMPARE(describeHua3Reply("\r\n\r\n", hua3Question()), QStringList());
}

void TestHua3ReplyParser::bytesThatAreNotUtf8_areReadAsReplacements()
{
    const QByteArray bytes = "Interface Link Speed Duplex Type Description\r\nGE1/0/1 UP \xb6\xcb\xff\r\n<Switch>";
    const QString row = QStringLiteral("3 info GE1/0/1 UP ") + QString(3, QChar(0xFFFD));
    const QStringList actual = describeHua3Reply(bytes, hua3Question());
    QVERIFY(actual.contains(row));
    QVERIFY(actual.contains(QStringLiteral("15 down ports: g1/0/1")));
}

QTEST_APPLESS_MAIN(TestHua3ReplyParser)
#include "tst_hua3replyparser.moc"
