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

void addReplyRow(const char *tag, const QByteArray &bytes, const QStringList &expected)
{
    QTest::newRow(tag) << bytes << expected;
}

void addReplyColumns()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("expected");
}

const char kNotEnabled[] = "Error: Please enable IGMP snooping in the global view first.\r\n<Switch>";
const char kNotConfigured[] = "Info: There is no igmp-snooping configuration.\r\n<Switch>";
const QString kEnded = QStringLiteral("waiting ended");
const QString kMore = QStringLiteral("more pages");
const QString kCleared = QStringLiteral("optical ports cleared");

} // namespace

class TestHuaweiReplyParser : public QObject
{
    Q_OBJECT

private slots:
    void multicastTable_data();
    void multicastTable();
    void morePages_data();
    void morePages();
    void morePages_sendsFourBlanksAndALineEnd();
    void ipConflicts_data();
    void ipConflicts();
    void opticalPorts_data();
    void opticalPorts();
    void vlanListing_data();
    void vlanListing();
    void portMirroring_data();
    void portMirroring();
    void autoNegotiation_data();
    void autoNegotiation();
    void poePower_data();
    void poePower();
    void interfaceView_data();
    void interfaceView();
    void loginPrompt_data();
    void loginPrompt();
    void igmpConfiguration_data();
    void igmpConfiguration();
    void notices_data();
    void notices();
    void oneReply_satisfiesSeveralSections();
    void subModel_foundInTheListing_countsForTheLaterSections();
    void emptyReply_satisfiesNothing();
};

void TestHuaweiReplyParser::multicastTable_data()
{
    addReplyColumns();
    addReplyRow("off for the whole switch", kNotEnabled,
                {QStringLiteral("info translated 未开启全局组播"), kMore, kEnded});
    addReplyRow("nothing configured", kNotConfigured, {QStringLiteral("info translated 没有组播配置"), kMore, kEnded});
    addReplyRow("both texts: off", QByteArray(kNotConfigured) + kNotEnabled,
                {QStringLiteral("info translated 未开启全局组播"), kMore, kEnded});
    addReplyRow("a table", "VLAN ID : 20\r\n", {QStringLiteral("result every line"), kMore, kEnded});
    addReplyRow("empty", "", {QStringLiteral("result every line"), kMore, kEnded});
}

void TestHuaweiReplyParser::multicastTable()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readMulticastTable, bytes), "expected");
}

void TestHuaweiReplyParser::morePages_data()
{
    addReplyColumns();
    addReplyRow("next page", "  ---- More ----", {QStringLiteral("result every line"), kMore, kEnded});
    addReplyRow("empty", "", {QStringLiteral("result every line"), kMore, kEnded});
    addReplyRow("the prompt is back", "239.1.1.1\r\n<Switch>", {});
    addReplyRow("system view is no end", "[Switch]", {QStringLiteral("result every line"), kMore, kEnded});
}

void TestHuaweiReplyParser::morePages()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readMorePages, bytes), "expected");
}

void TestHuaweiReplyParser::morePages_sendsFourBlanksAndALineEnd()
{
    QCOMPARE(QByteArray(reply::kMorePagesBytes), QByteArray("\x20\x20\x20\x20\x0d\x0a"));
    QCOMPARE(reply::kMorePagesLabel.toString(), QStringLiteral("more igmp"));
}

void TestHuaweiReplyParser::ipConflicts_data()
{
    addReplyColumns();
    addReplyRow("a record", "Conflict type       : Local\r\n", {QStringLiteral("result every line"), kEnded});
    addReplyRow("none", "<Switch>",
                {QStringLiteral("info ") + QChar(0x200B) + QStringLiteral("No IP conflict"), kEnded});
    addReplyRow("lower case is none", "conflict type",
                {QStringLiteral("info ") + QChar(0x200B) + QStringLiteral("No IP conflict"), kEnded});
}

void TestHuaweiReplyParser::ipConflicts()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readIpConflicts, bytes), "expected");
}

void TestHuaweiReplyParser::opticalPorts_data()
{
    addReplyColumns();
    const QByteArray header = "Port  Optic MDI Speed\r\n";
    addReplyRow("no Speed", "Port Optic\r\n0/0/1 GE(C)\r\n", {});
    addReplyRow("no Optic", "Port Speed\r\n0/0/1 GE(C)\r\n", {});
    addReplyRow("words on two lines: no table", "Optic\r\nSpeed\r\n0/0/1 GE(C)\r\n", {kCleared, kEnded});
    addReplyRow("copper and fibre", header + "  0/0/1 GE(C) Absent\r\n\r\n  0/0/2 GE(F) Absent\r\n",
                {kCleared, QStringLiteral("info 0/0/1 GE(C) Absent"), QStringLiteral("optical port 0/0/1 GE(C) Absent"),
                 QStringLiteral("info 0/0/2 GE(F) Absent"), kEnded});
    addReplyRow("the prompt ends the scan", header + "0/0/1 GE(C)\r\n <Switch>\r\nBoard Type : S1\r\n0/0/2 GE(C)\r\n",
                {kCleared, QStringLiteral("info 0/0/1 GE(C)"), QStringLiteral("optical port 0/0/1 GE(C)"), kEnded});
    addReplyRow("a prompt before the table does not", "<Switch>dis\r\n" + header + "0/0/1\r\n",
                {kCleared, QStringLiteral("info 0/0/1"), kEnded});
    addReplyRow("lines before the table are dropped", "0/0/1 GE(C)\r\n" + header, {kCleared, kEnded});
    addReplyRow("a second header is not shown", header + "0/0/1\r\n" + header + "0/0/2\r\n",
                {kCleared, QStringLiteral("info 0/0/1"), QStringLiteral("info 0/0/2"), kEnded});
    addReplyRow("board type", " Board Type        : S5720-28X \r\n" + header,
                {kCleared, QStringLiteral("info Board Type        : S5720-28X"), QStringLiteral("board type S5720-28X"),
                 kEnded});
    addReplyRow("board type: second part only", "Board Type : S1 : x\r\n" + header,
                {kCleared, QStringLiteral("info Board Type : S1 : x"), QStringLiteral("board type S1"), kEnded});
    addReplyRow("board type without a colon", "Board Type S1\r\n" + header,
                {kCleared, QStringLiteral("info Board Type S1"), kEnded});
    addReplyRow("board type without a text", "Board Type :\r\nBoard Type : : x\r\n" + header,
                {kCleared, QStringLiteral("info Board Type :"), QStringLiteral("info Board Type : : x"), kEnded});
    addReplyRow("board type within the table", header + "0/0/1\r\nBoard Type : S1\r\n0/0/2\r\n",
                {kCleared, QStringLiteral("info 0/0/1"), QStringLiteral("info Board Type : S1"),
                 QStringLiteral("board type S1"), QStringLiteral("info 0/0/2"), kEnded});
    addReplyRow(
        "page marker before a copper port", header + "  ---- More ----\x1b[16D    \x1b[16D0/0/3 GE(C) Down\r\n",
        {kCleared, QStringLiteral("result 0/0/3 GE(C) Down"), QStringLiteral("optical port 0/0/3 GE(C) Down"), kEnded});
    addReplyRow("page marker before a fibre port", header + "---- More ---- 0/0/3 GE(F)\r\n",
                {kCleared, QStringLiteral("result 0/0/3 GE(F)"), kEnded});
    addReplyRow("page marker: up to the next name", header + "---- More ---- 0/0/3 a 0/0/4 GE(C)\r\n",
                {kCleared, QStringLiteral("result 0/0/3 a "), kEnded});
    addReplyRow("page marker: names in a row", header + "---- More ---- 0/0/0/0/4 GE(C)\r\n",
                {kCleared, QStringLiteral("result 0/0/"), kEnded});
    addReplyRow("page marker without a name", header + "---- More ---- 1/0/3 GE(C)\r\n", {kCleared, kEnded});
}

void TestHuaweiReplyParser::opticalPorts()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readOpticalPorts, bytes), "expected");
}

void TestHuaweiReplyParser::vlanListing_data()
{
    addReplyColumns();
    addReplyRow("count", "The total number of VLANs is : 2\r\n", {QStringLiteral("info every line"), kEnded});
    addReplyRow("lower-case count", "The total number of vlans is : 2\r\n", {});
}

void TestHuaweiReplyParser::vlanListing()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readVlanListing, bytes), "expected");
}

void TestHuaweiReplyParser::portMirroring_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("expected");
    const QByteArray echo = "<Switch>display port-mirroring\r\n";
    const QByteArray destination = "  Observe-port 1 : GigabitEthernet0/0/10\r\n";
    addReplyRow("another command", destination + "  1  GigabitEthernet0/0/2  Inbound\r\n", {});
    addReplyRow("nothing mirrored", echo, {QStringLiteral("7 waiting ended")});
    addReplyRow("one port", echo + destination + "  1  GigabitEthernet0/0/2  Inbound\r\n",
                {QStringLiteral("7 mirroring 1: 2 to 10"), QStringLiteral("7 waiting ended")});
    addReplyRow("a row that names its destination",
                echo + destination + "  1  GigabitEthernet0/0/2  Inbound  Observe-port 1\r\n",
                {QStringLiteral("7 mirroring 1: 2 to 10"), QStringLiteral("7 waiting ended")});
    addReplyRow("two ports",
                echo + destination + " 1 GigabitEthernet0/0/2 Inbound\r\n 2 GigabitEthernet0/0/13 Inbound\r\n",
                {QStringLiteral("7 mirroring 1: 2 to 10"), QStringLiteral("7 mirroring 1: 13 to 10"),
                 QStringLiteral("7 waiting ended")});
    addReplyRow("a later destination replaces the first",
                echo + destination + "Observe-port  2:GigabitEthernet0/0/11\r\n 1 GigabitEthernet0/0/2 Inbound\r\n",
                {QStringLiteral("7 mirroring 2: 2 to 11"), QStringLiteral("7 waiting ended")});
    addReplyRow("source before the destination", echo + " 1 GigabitEthernet0/0/2 Inbound\r\n" + destination,
                {QStringLiteral("7 waiting ended")});
    addReplyRow("outbound", echo + destination + " 1 GigabitEthernet0/0/2 Outbound\r\n",
                {QStringLiteral("7 waiting ended")});
    addReplyRow("a row without its number keeps no source of the row before",
                echo + destination + " 1 GigabitEthernet0/0/2 Inbound\r\n GigabitEthernet0/0/3 Inbound\r\n",
                {QStringLiteral("7 mirroring 1: 2 to 10"), QStringLiteral("7 waiting ended")});
    addReplyRow("destination of another name",
                echo + "Observe-port 1 : XGE0/0/10\r\n 1 GigabitEthernet0/0/2 Inbound\r\n",
                {QStringLiteral("7 waiting ended")});
    addReplyRow("numbers beyond 31 bits",
                echo + "Observe-port 99999999999 : GigabitEthernet0/0/10\r\n 1 GigabitEthernet0/0/2 Inbound\r\n",
                {QStringLiteral("7 mirroring 0: 2 to 10"), QStringLiteral("7 waiting ended")});
    addReplyRow("overlong rows",
                echo + destination + QByteArray(" 1 GigabitEthernet0/0/2 Inbound").leftJustified(1025, ' ') + "\r\n",
                {QStringLiteral("7 waiting ended")});
}

void TestHuaweiReplyParser::portMirroring()
{
    QFETCH(QByteArray, bytes);
    QTEST(describeReply(bytes, Question()), "expected");
}

void TestHuaweiReplyParser::autoNegotiation_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("askedPort");
    QTest::addColumn<QStringList>("expected");
    const QByteArray echo = "<Switch>display current-configuration\r\n";
    const QByteArray one = "interface GigabitEthernet0/0/1\r\n";
    const QByteArray two = "interface GigabitEthernet0/0/2\r\n";
    const QByteArray off = " undo negotiation auto\r\n";
    const QByteArray mark = "#\r\n";
    const QStringList unknown{QStringLiteral("8 waiting ended"), QStringLiteral("13 current configuration")};
    const auto state = [](const char *text) {
        return QStringList{QStringLiteral("8 port ") + QLatin1String(text), QStringLiteral("8 waiting ended"),
                           QStringLiteral("13 current configuration")};
    };
    const auto row = [](const char *tag, const QByteArray &bytes, const char *port, const QStringList &expected) {
        QTest::newRow(tag) << bytes << QString::fromLatin1(port) << expected;
    };
    row("another command", mark + one + off + mark, "g0/0/1", {});
    row("off", echo + mark + one + off + mark + two + mark, "g0/0/1", state("1 negotiates: no"));
    row("on", echo + mark + one + off + mark + two + mark, "g0/0/2", state("2 negotiates: yes"));
    row("a 10-gigabit text names the gigabit port in it", echo + one + off, "xg0/0/1", state("1 negotiates: no"));
    row("port without a section", echo + one + off, "g0/0/3", unknown);
    row("no section at all", echo, "g0/0/1", unknown);
    row("no port asked for", echo + one, "", unknown);
    row("a port of another slot asked for", echo + one, "g1/0/1", unknown);
    row("numbers are compared as texts", echo + one, "g0/0/01", unknown);
    row("off behind the section's end", echo + one + mark + off, "g0/0/1", state("1 negotiates: yes"));
    row("a marked line is no end", echo + one + "# x\r\n" + off, "g0/0/1", state("1 negotiates: no"));
    row("an indented mark is an end", echo + one + "  # \r\n" + off, "g0/0/1", state("1 negotiates: yes"));
    row("a section listed twice counts as it stands last", echo + one + off + one, "g0/0/1",
        state("1 negotiates: yes"));
    row("blanks around a heading do not make another section",
        echo + one + "  interface GigabitEthernet0/0/1  \r\n" + off, "g0/0/1", state("1 negotiates: no"));
    row("the heading that sorts first decides",
        echo + "interface GigabitEthernet0/0/1.20\r\n" + off + mark + one + mark, "g0/0/1", state("1 negotiates: yes"));
    row("and keeps deciding", echo + one + mark + "interface GigabitEthernet0/0/1.20\r\n" + off, "g0/0/1",
        state("1 negotiates: yes"));
    row("heading and off on one line", echo + "interface GigabitEthernet0/0/1 undo negotiation auto\r\n", "g0/0/1",
        state("1 negotiates: no"));
    row("10-gigabit sections do not count", echo + "interface XGigabitEthernet0/0/1\r\n" + off, "g0/0/1", unknown);
    row("overlong heading", echo + QByteArray("interface GigabitEthernet0/0/1").leftJustified(1025, ' ') + "\r\n",
        "g0/0/1", unknown);
    row("port number beyond any int", echo + "interface GigabitEthernet0/0/99999999999\r\n" + off, "g0/0/99999999999",
        state("99999999999 negotiates: no"));
}

void TestHuaweiReplyParser::autoNegotiation()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, askedPort);
    Question question;
    question.askedPort = askedPort;
    QTEST(describeReply(bytes, question), "expected");
}

void TestHuaweiReplyParser::poePower_data()
{
    addReplyColumns();
    const QByteArray echo = "display poe power\r\n";
    addReplyRow("another command", "Interface Class\r\nGE0/0/1 0\r\n", {});
    addReplyRow("unknown to the model", echo + "Error: Unrecognized command found at '^' position.\r\nInterface\r\n",
                {QStringLiteral("info not support poe"), kEnded});
    addReplyRow("no table", echo + "PortName Class\r\nGE0/0/1 0\r\n", {kEnded});
    addReplyRow("table up to the prompt", echo + " Interface Class\r\n\r\n GE0/0/1 0 \r\n <Switch>\r\nGE0/0/2\r\n",
                {QStringLiteral("result Interface Class"), QStringLiteral("result GE0/0/1 0"),
                 QStringLiteral("result <Switch>"), kEnded});
    addReplyRow("a second table", echo + "Interface a\r\n<Switch>\r\nx\r\nInterface b\r\ny\r\n",
                {QStringLiteral("result Interface a"), QStringLiteral("result <Switch>"),
                 QStringLiteral("result Interface b"), QStringLiteral("result y"), kEnded});
    addReplyRow("page marker", echo + "Interface\r\n  ---- More ----\x1b[16D  \x1b[16DGE1/0/2 0 GE1/0/3\r\nGE1/0/4\r\n",
                {QStringLiteral("result Interface"), QStringLiteral("result GE1/0/2 0 "),
                 QStringLiteral("result GE1/0/4"), kEnded});
    addReplyRow("page marker before another slot", echo + "Interface\r\n  ---- More ---- GE0/0/2 0\r\nGE0/0/3\r\n",
                {QStringLiteral("result Interface"), QStringLiteral("result GE0/0/3"), kEnded});
    addReplyRow("page marker behind a prompt", echo + "Interface\r\n<S> ---- More ---- GE1/0/2\r\nGE1/0/3\r\n",
                {QStringLiteral("result Interface"), QStringLiteral("result GE1/0/2"), kEnded});
}

void TestHuaweiReplyParser::poePower()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readPoePower, bytes), "expected");
}

void TestHuaweiReplyParser::interfaceView_data()
{
    addReplyColumns();
    const QByteArray echo = "[Switch-GigabitEthernet0/0/1]display this\r\n";
    const QString none = QStringLiteral("info There is no igmp - snooping configuration");
    addReplyRow("another command", "#\r\ninterface\r\n#\r\n", {});
    addReplyRow("one section", echo + "#\r\ninterface GigabitEthernet0/0/1\r\n port default vlan 20\r\n#\r\nreturn\r\n",
                {none, none, QStringLiteral("info interface GigabitEthernet0/0/1"),
                 QStringLiteral("info port default vlan 20"), kEnded});
    addReplyRow("nothing between the marks", echo + "#\r\n#\r\nreturn\r\n", {kEnded});
    addReplyRow("no mark", echo + "x\r\n", {kEnded});
    addReplyRow("one mark: to the end, without return", echo + "#\r\nvlan 20\r\nreturn\r\n\r\n[Switch]",
                {none, none, none, none, QStringLiteral("info vlan 20"), QStringLiteral("info [Switch]"), kEnded});
    addReplyRow("a mark within a line counts", echo + "a # b\r\nvlan 20\r\nc#\r\nvlan 30\r\n",
                {none, QStringLiteral("info vlan 20"), kEnded});
    addReplyRow("a line of blanks is not empty", echo + "#\r\n  \r\n#\r\n", {none, QStringLiteral("info "), kEnded});
}

void TestHuaweiReplyParser::interfaceView()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readInterfaceView, bytes), "expected");
}

void TestHuaweiReplyParser::loginPrompt_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isLoggedIn");
    QTest::addColumn<LoginPrompt>("expected");
    const auto row = [](const char *tag, const QByteArray &bytes, bool isLoggedIn, LoginPrompt expected) {
        QTest::newRow(tag) << bytes << isLoggedIn << expected;
    };
    row("user name", "\r\nUsername:", false, LoginPrompt::Username);
    row("user name before password", "Password:\r\n\r\nUsername:", false, LoginPrompt::Username);
    row("user name when logged in", "Username:", true, LoginPrompt::Username);
    row("user name in lower case", "username:", false, LoginPrompt::None);
    row("password", "Password:", false, LoginPrompt::Password);
    row("new password, as switches write it", "Enter Password:", false, LoginPrompt::Password);
    row("password before failure", "Authentication fail\r\nPassword:", false, LoginPrompt::Password);
    row("enter password", "Enter password:", false, LoginPrompt::ConfirmPassword);
    row("confirm password", "Please confirm password:", false, LoginPrompt::ConfirmPassword);
    row("confirm password before a prompt", "confirm password:\r\n<Switch>", false, LoginPrompt::ConfirmPassword);
    row("user view", "<Switch>", false, LoginPrompt::Ready);
    row("system view", "[Switch]", false, LoginPrompt::Ready);
    row("opening bracket only", "<Switch [Switch", false, LoginPrompt::None);
    row("user view when logged in", "<Switch>", true, LoginPrompt::None);
    row("system view when logged in", "[Switch]", true, LoginPrompt::None);
    row("prompt before failure", "Authentication fail\r\n<Switch>", false, LoginPrompt::Ready);
    row("failure behind a prompt when logged in", "Authentication fail\r\n<Switch>", true, LoginPrompt::Refused);
    row("authentication fail", QByteArray("Authentication fail\0\r\n", 22), false, LoginPrompt::Refused);
    row("invalid password", "Invalid password", false, LoginPrompt::Refused);
    row("the password is invalid", "Error: The password is invalid.", false, LoginPrompt::Refused);
    row("other family's failure", "AAA authentication failed", false, LoginPrompt::None);
    row("failed to login", "Failed to login", false, LoginPrompt::Failed);
    row("refused before failed", "Failed to login: Invalid password", false, LoginPrompt::Refused);
    row("nothing", "Please Press ENTER.", false, LoginPrompt::None);
}

void TestHuaweiReplyParser::loginPrompt()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isLoggedIn);
    const ReplyText text(bytes);
    QTEST(readLoginPrompt(text, isLoggedIn), "expected");
}

void TestHuaweiReplyParser::igmpConfiguration_data()
{
    addReplyColumns();
    const QByteArray echo = "<Switch>dis igmp-snooping configuration\r\n";
    addReplyRow("another reply", kNotEnabled, {});
    addReplyRow("off for the whole switch", echo + kNotEnabled, {QStringLiteral("info translated 未开启全局组播")});
    addReplyRow("nothing configured", kNotConfigured, {QStringLiteral("info translated 没有组播配置")});
    addReplyRow("nothing configured behind the echo", echo + kNotConfigured,
                {QStringLiteral("info translated 没有组播配置")});
    addReplyRow("a configuration behind the abbreviated echo is silent", echo + "IGMP Snooping Configuration\r\n", {});
    addReplyRow("a configuration", "display igmp-snooping configuration\r\nigmp-snooping enable\r\n",
                {QStringLiteral("info every line")});
}

void TestHuaweiReplyParser::igmpConfiguration()
{
    QFETCH(QByteArray, bytes);
    QTEST(read(reply::readIgmpConfiguration, bytes), "expected");
}

void TestHuaweiReplyParser::notices_data()
{
    addReplyColumns();
    addReplyRow("unknown command", "     ^\r\nError: Unrecognized command found at '^' position.\r\n",
                {QStringLiteral("15 command error")});
    addReplyRow("incomplete command", "Error[2]: Incomplete command found at '^' position.\r\n",
                {QStringLiteral("15 command error")});
    addReplyRow("too many parameters is none", "Error:Too many parameters found at '^' position.\r\n", {});
    addReplyRow("reboot", "System will reboot! Continue?[Y/N]:", {QStringLiteral("16 reboot")});
    addReplyRow("Reboot with a capital", "Reboot", {});
    addReplyRow("current configuration", "display current-configuration\r\n",
                {QStringLiteral("8 waiting ended"), QStringLiteral("13 current configuration")});
    addReplyRow("transceiver without a port", "Error: The transceiver is absent.\r\n", {});
}

void TestHuaweiReplyParser::notices()
{
    QFETCH(QByteArray, bytes);
    QTEST(describeReply(bytes, Question()), "expected");
}

void TestHuaweiReplyParser::oneReply_satisfiesSeveralSections()
{
    Question question;
    question.label = QStringLiteral("IP冲突");
    question.askedPort = QStringLiteral("g0/0/1");
    question.isLoggedIn = false;
    const QByteArray bytes = "Interface PHY Optic Port Speed\r\n"
                             "GigabitEthernet0/0/1 number of VLANs\r\n"
                             "display port-mirroring display current-configuration display poe power display this\r\n"
                             "GigabitEthernet0/0/1 transceiver information:\r\n"
                             "Wavelength : 850\r\n"
                             "interface GigabitEthernet0/0/1\r\n"
                             "#\r\n"
                             "igmp-snooping configuration\r\n"
                             "Unrecognized command found at '^' position, reboot\r\n"
                             "[Switch]";
    const QStringList expected{
        QStringLiteral("1 slot 0"),
        QStringLiteral("1 headers 1"),
        QStringLiteral("1 down ports: g0/0/1 g0/0/1 g0/0/1"),
        QStringLiteral("1 up ports: "),
        QStringLiteral("1 down range 1-1"),
        QStringLiteral("1 up range not found"),
        QStringLiteral("4 info ") + QChar(0x200B) + QStringLiteral("No IP conflict"),
        QStringLiteral("4 waiting ended"),
        QStringLiteral("5 optical ports cleared"),
        QStringLiteral("5 info GigabitEthernet0/0/1 number of VLANs"),
        QStringLiteral("5 info display port-mirroring display current-configuration display poe power display this"),
        QStringLiteral("5 info GigabitEthernet0/0/1 transceiver information:"),
        QStringLiteral("5 info Wavelength : 850"),
        QStringLiteral("5 info interface GigabitEthernet0/0/1"),
        QStringLiteral("5 info #"),
        QStringLiteral("5 info igmp-snooping configuration"),
        QStringLiteral("5 info Unrecognized command found at '^' position, reboot"),
        QStringLiteral("5 info [Switch]"),
        QStringLiteral("5 waiting ended"),
        QStringLiteral("6 info every line"),
        QStringLiteral("6 waiting ended"),
        QStringLiteral("7 waiting ended"),
        QStringLiteral("8 port 1 negotiates: yes"),
        QStringLiteral("8 waiting ended"),
        QStringLiteral("9 info not support poe"),
        QStringLiteral("9 waiting ended"),
        QStringLiteral("10 result block GigabitEthernet0/0/1:Wavelength : 850|"),
        QStringLiteral("11 info There is no igmp - snooping configuration"),
        QStringLiteral("11 info There is no igmp - snooping configuration"),
        QStringLiteral("11 info There is no igmp - snooping configuration"),
        QStringLiteral("11 info igmp-snooping configuration"),
        QStringLiteral("11 info Unrecognized command found at '^' position, reboot"),
        QStringLiteral("11 info [Switch]"),
        QStringLiteral("11 waiting ended"),
        QStringLiteral("12 ready"),
        QStringLiteral("13 current configuration"),
        QStringLiteral("14 info every line"),
        QStringLiteral("15 command error"),
        QStringLiteral("16 reboot"),
    };
    QCOMPARE(describeReply(bytes, question), expected);
}

void TestHuaweiReplyParser::subModel_foundInTheListing_countsForTheLaterSections()
{
    const QByteArray bytes = "Interface PHY\r\nGE0/0/1 up\r\ndisplay port-mirroring\r\n"
                             "Observe-port 1 : MultiGE0/0/10\r\n 1 MultiGE0/0/2 Inbound\r\n";
    QVERIFY(describeReply(bytes, Question()).contains(QStringLiteral("7 mirroring 1: 2 to 10")));
}

void TestHuaweiReplyParser::emptyReply_satisfiesNothing()
{
    QCOMPARE(describeReply(QByteArray(), Question()), QStringList());
    QCOMPARE(describeReply("\r\n\r\n", Question()), QStringList());
}

QTEST_APPLESS_MAIN(TestHuaweiReplyParser)
#include "tst_huaweireplyparser.moc"
