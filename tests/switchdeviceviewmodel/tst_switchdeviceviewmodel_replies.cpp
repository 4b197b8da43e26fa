// What replies of the switch change, section by section, through the view model. Over the recording platform.
#include "consolescene.h"

#include <QtCore/QThread>
#include <QtTest/QtTest>

#include <ctime>
#include <functional>
#include <thread>
#include <vector>

using Family = ConsoleScene::Family;
using VM = SwitchDeviceViewModel;

namespace {

const QString kWaiting = QStringLiteral("isWaitingResponseChanged()");
const QByteArray kNextPage = "    \r\n";
const QString kNoConflict = QStringLiteral("\u200BNo IP conflict");

RecordingPlatform &platform()
{
    return RecordingPlatform::instance();
}

QStringList texts(std::initializer_list<const char *> lines)
{
    QStringList list;
    for (const char *line : lines)
        list.append(QString::fromUtf8(line));
    return list;
}

//! One reply and everything that it brings about at once. In the expected texts, {…} is translated. Prompts stand
//! without their ">", which would be a login.
struct Row
{
    const char *name = nullptr;
    const char *label = nullptr; //!< of the query that is answered; null: an answer to "enter"
    QByteArray reply;
    QStringList info;
    QString result;    //!< what the console batch shows
    QStringList shown; //!< signals, without isWaitingResponseChanged
    bool endsWaiting = true;
    QList<QByteArray> chained; //!< sent behind the reply
    QStringList warnings;
    QStringList debug; //!< log lines for developers
    std::function<void(VM &)> prepare;
};

Row row(const char *name, const char *label, const QByteArray &reply)
{
    Row row;
    row.name = name;
    row.label = label;
    row.reply = reply;
    return row;
}

//! "{…}" translated.
QString resolved(const ConsoleScene &scene, QString text)
{
    static const QRegularExpression source(QStringLiteral("\\{([^}]*)\\}"));
    for (auto match = source.match(text); match.hasMatch(); match = source.match(text))
        text.replace(match.capturedStart(), match.capturedLength(), scene.tr(match.captured(1).toUtf8().constData()));
    return text;
}

QStringList resolved(const ConsoleScene &scene, const QStringList &list)
{
    QStringList all;
    for (const QString &text : list)
        all.append(resolved(scene, text));
    return all;
}

const QByteArray kTransceivers = "GigabitEthernet0/0/23 transceiver information:\r\n"
                                 "  Transceiver Type   :1000_BASE_SX_SFP\r\n"
                                 "  Vendor Name        :ACME\r\n"
                                 "Info: Port GigabitEthernet0/0/24, transceiver is absent.\r\n"
                                 "XGigabitEthernet0/0/1 transceiver information:\r\n"
                                 "  Connector Type     :LC\r\n"
                                 "  Wavelength(nm)     :850\r\n";

QVector<Row> huaweiRows()
{
    QVector<Row> rows;
    const auto add = [&rows](const Row &added) -> Row & {
        rows.append(added);
        return rows.last();
    };
    // 2. Multicast forwarding table
    {
        Row &added = add(row("multicast table", "组播转发表", "VLAN ID  Forwarding Mode\r\n\r\n10  IP \r\n"));
        added.result = QStringLiteral("VLAN ID  Forwarding Mode\n\n10  IP \n");
        added.chained = {kNextPage};
    }
    {
        Row &added = add(row("multicast table, off", "组播转发表",
                             "Info: Please enable IGMP snooping in the global view first.\r\n"));
        added.info = texts({"{未开启全局组播}"});
        added.chained = {kNextPage};
    }
    {
        // The last listing of a reply without configuration is also the one of section 14.
        Row &added = add(
            row("multicast table, nothing configured", "组播转发表", "There is no igmp-snooping configuration\r\n"));
        added.info = texts({"{没有组播配置}", "{没有组播配置}"});
        added.chained = {kNextPage};
    }
    {
        Row &added = add(
            row("multicast table, both reasons", "组播转发表",
                "There is no igmp-snooping configuration\r\nPlease enable IGMP snooping in the global view first\r\n"));
        added.info = texts({"{未开启全局组播}", "{未开启全局组播}"});
        added.chained = {kNextPage};
    }
    add(row("multicast table of another query", "vlan", "Please enable IGMP snooping in the global view first\r\n"))
        .endsWaiting = false;
    // 4. IP conflicts
    {
        Row &added = add(row("IP conflicts", "IP冲突", "Conflict type\r\n10.0.0.1 Local\r\n"));
        added.result = QStringLiteral("Conflict type\n10.0.0.1 Local\n");
    }
    add(row("no IP conflicts", "IP冲突", "No record\r\n")).info = QStringList{kNoConflict};
    add(row("IP conflicts of another query", "vlan", "Conflict type\r\n")).endsWaiting = false;
    // 5. Optical ports
    {
        Row &added = add(row("optical ports", nullptr,
                             "Board Type   : S5720 : x\r\nOptic Speed\r\nPort Optic MDI Speed\r\n\r\n 0/0/1 GE(C) Up "
                             "\r\n0/0/2 GE(F)\r\n  ---- More ----\x1b[16D   \x1b[16D"
                             "0/0/3 GE(C)\r\n ---- More ----\r\n<Switch\r\n0/0/4 GE(C)\r\n"));
        added.info = texts({"Board Type   : S5720 : x", "0/0/1 GE(C) Up", "0/0/2 GE(F)"});
        added.result = QStringLiteral("0/0/3 GE(C)");
        added.shown = texts({"boardTypeChanged()"});
    }
    add(row("optical ports, no table", nullptr, "Optic Speed\r\n0/0/1 GE(C)\r\n"));
    add(row("optical ports, board type without a value", nullptr, "Optic Speed\r\nBoard Type :  \r\nBoard Type\r\n"))
        .info = texts({"Board Type :", "Board Type"});
    // 6. VLAN count
    add(row("VLANs", "vlan", "The total number of VLANs is : 2\r\n\r\n 1  common\r\n")).info =
        texts({"The total number of VLANs is : 2", "", " 1  common", ""});
    // 7. Port mirroring
    {
        Row &added = add(
            row("mirroring", nullptr,
                "display port-mirroring\r\n  Observe-port 2 : GigabitEthernet0/0/10\r\n  1    GigabitEthernet0/0/2     "
                " Inbound    Observe-port 1\r\n  2    GigabitEthernet0/0/3      Outbound   Observe-port 1\r\n"));
        added.debug = texts({"镜像id：2，源端口号2，目的端口号10"});
    }
    add(row("mirroring, none", nullptr, "display port-mirroring\r\n"));
    add(row("mirroring, a source without destination", nullptr,
            "display port-mirroring\r\n  1    GigabitEthernet0/0/2      Inbound    Observe-port 1\r\n"));
    // 8. Current configuration and auto-negotiation
    const QByteArray configuration =
        "display current-configuration\r\ninterface GigabitEthernet0/0/1\r\n undo negotiation auto\r\n#\r\ninterface "
        "GigabitEthernet0/0/2\r\n#\r\n undo negotiation auto\r\n";
    const auto negotiation = [&](const char *name, const char *port, bool logMore, const char *result) {
        Row &added = add(row(name, nullptr, configuration));
        added.prepare = [port, logMore](VM &viewModel) {
            viewModel.setAutoNegPort(QString::fromUtf8(port));
            viewModel.setLogMore(logMore);
        };
        if (logMore) // the lines of the reply themselves come first
            added.result = QString::fromUtf8(configuration)
                               .remove(configuration.size() - 2, 2)
                               .replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        if (qstrlen(result) > 0)
            added.result += QLatin1Char('\n') + QString::fromUtf8(result);
    };
    negotiation("negotiation off", "g0/0/1", true, "{端口}1{自协商状态:}{未开启}");
    negotiation("negotiation on", "g0/0/2", true, "{端口}2{自协商状态:}{已开启}");
    negotiation("negotiation of a port that is not listed", "g0/0/3", true, "");
    negotiation("negotiation of no port", "", true, "");
    negotiation("negotiation of another spelling", "GE0/0/1", true, "");
    negotiation("negotiation, not shown without logMore", "g0/0/1", false, "");
    // 9. PoE
    {
        Row &added = add(row("PoE", nullptr,
                             "display poe power\r\nnot yet\r\n Interface Class \r\n\r\n GE1/0/1  4\r\n ---- More "
                             "----\x1b[16D GE1/0/2  3\r\n ---- More ----\r\n<Switch\r\n GE1/0/3\r\n"));
        added.result = QStringLiteral("Interface Class\nGE1/0/1  4\nGE1/0/2  3\n<Switch");
    }
    add(row("PoE, unknown", nullptr,
            "display poe power\r\n ^\r\nError: Unrecognized command found at '?' position.\r\n Interface\r\n"))
        .info = texts({"not support poe"});
    // 10. Transceivers
    {
        Row &added = add(row("transceivers", "光模块", kTransceivers));
        added.shown = texts({"logMessage(GigabitEthernet0/0/24{未检测到光模块})",
                             "logMessage(GigabitEthernet0/0/23{光模块信息:}Transceiver Type   :1000_BASE_SX_SFP\n)"});
        added.result =
            QStringLiteral("XGigabitEthernet0/0/1{光模块信息:}Connector Type     :LC\nWavelength(nm)     :850\n");
    }
    {
        Row &added =
            add(row("transceiver absent", "光模块", "Info: Port GigabitEthernet0/0/3, transceiver is absent.\r\n"));
        added.shown = texts({"logMessage(GigabitEthernet0/0/3{未检测到光模块})"});
    }
    // 11. Interface view
    {
        Row &added = add(row("interface view", nullptr,
                             "display this\r\nbefore\r\n#\r\ninterface GigabitEthernet0/0/1\r\n\r\n port link-type "
                             "access \r\n return here\r\n#\r\nbehind\r\n"));
        added.info = texts({"There is no igmp - snooping configuration", "There is no igmp - snooping configuration",
                            "There is no igmp - snooping configuration", "There is no igmp - snooping configuration",
                            "interface GigabitEthernet0/0/1", "port link-type access"});
    }
    add(row("interface view, empty", nullptr, "display this\r\n#\r\n#\r\n"));
    // 14. IGMP configuration
    {
        Row &added =
            add(row("snooping configuration", nullptr, "igmp-snooping configuration of VLAN 10\r\n enable\r\n"));
        added.info = texts({"igmp-snooping configuration of VLAN 10", " enable", ""});
        added.endsWaiting = false;
    }
    add(row("snooping configuration, echo", nullptr, "dis igmp-snooping configuration\r\n enable\r\n")).endsWaiting =
        false;
    // 15. Command error
    {
        Row &added = add(
            row("refused command", "vlan", "        ^\r\nError: Wrong parameter: command found at '^' position.\r\n"));
        added.warnings = texts({"{vlan}{执行失败}"});
        added.endsWaiting = false;
    }
    // 16. Restart
    {
        Row &added = add(row("restart", nullptr, "Info: system will reboot\r\n"));
        added.shown = texts({"showToast({配置正在清除 ，请5分钟后重新连接}, 1)"});
        added.endsWaiting = false;
    }
    // Nothing at all
    add(row("nothing known", "vlan", "nothing known\r\n")).endsWaiting = false;
    add(row("line ends alone", "vlan", "\r\n\r\n")).endsWaiting = false;
    add(row("not UTF-8", nullptr, "\xff\xfe number of VLANs \xc3\r\n")).info =
        QStringList{QStringLiteral("\uFFFD\uFFFD number of VLANs \uFFFD"), QString()};
    add(row("behind a NUL", nullptr, QByteArray("\0number of VLANs", 16))).info =
        QStringList{QString(QChar(0)) + QStringLiteral("number of VLANs")};
    return rows;
}

QVector<Row> hua3Rows()
{
    QVector<Row> rows;
    const auto add = [&rows](const Row &added) -> Row & {
        rows.append(added);
        return rows.last();
    };
    const auto silent = [&add](const char *name, const char *label, const QByteArray &reply) {
        add(row(name, label, reply)).endsWaiting = false;
    };
    const auto logMore = [](VM &viewModel) { viewModel.setLogMore(true); };
    // 1. Multicast forwarding table: its lines, and no page is turned
    {
        Row &added = add(row("multicast table", "组播转发表", "Total 1 entries\r\n\r\n(0.0.0.0, 224.1.1.1)"));
        added.info = texts({"Total 1 entries", "", "(0.0.0.0, 224.1.1.1)"});
        added.endsWaiting = false;
    }
    // 2. IP conflicts
    {
        Row &added = add(row("IP conflicts", "IP冲突", "IP address\r\n10.0.0.1"));
        added.info = texts({"IP address", "10.0.0.1"});
        added.endsWaiting = false;
    }
    {
        Row &added = add(row("no IP conflicts", "IP冲突", "Conflict type"));
        added.info = QStringList{kNoConflict};
        added.endsWaiting = false;
    }
    // 4. VLANs
    add(row("VLANs", nullptr, "Total VLANs: 2\r\nThe VLANs include:\r\n1(default), 10\r\nother\r\n")).info =
        texts({"Total VLANs: 2", "The VLANs include:", "1(default), 10"});
    add(row("VLANs, heading last", nullptr, "Total VLANs: 2\r\nThe VLANs include:")).info =
        texts({"Total VLANs: 2", "The VLANs include:"});
    // 5. Snooping
    {
        Row &added = add(row("snooping", nullptr, "IGMP snooping is on\r\nother\r\n IGMP snooping global\r\n"));
        added.info = texts({"IGMP snooping is on", " IGMP snooping global"});
        added.endsWaiting = false;
    }
    // 6. Querier
    add(row("querier", nullptr, " Querier: on\r\nother\r\nQuerier-election: off\r\n")).info =
        texts({" Querier: on", "Querier-election: off"});
    // 7. Link aggregation
    const QByteArray aggregation = "Priority Flag\r\nAggregate Interface: BAGG3\r\n Port Status Priority Index "
                                   "Oper-Key Flag\r\n GE1/0/1 S\r\n<Switch\r\nbehind\r\n";
    add(row("link aggregation, not shown without logMore", nullptr, aggregation));
    {
        Row &added = add(row("link aggregation", nullptr, aggregation));
        added.prepare = logMore;
        added.info = texts({"Port Status Priority Index Oper-Key Flag", "GE1/0/1 S", "<Switch"});
        added.result = QStringLiteral("Priority Flag\nAggregate Interface: BAGG3\n Port Status Priority Index Oper-Key "
                                      "Flag\n GE1/0/1 S\n<Switch\nbehind");
    }
    // 8. Mirroring groups
    add(row("mirroring groups", nullptr,
            "Mirroring group 1:\r\n    Type: Local\r\n    Status: Active\r\n    Other: x\r\n    Mirroring port:\r\n    "
            "    GigabitEthernet1/0/2  Both\r\n<Switch\r\n Type: x\r\n"))
        .info =
        texts({"{镜像端口配置信息:}", "Type: Local\nStatus: Active\nMirroring port:\nGigabitEthernet1/0/2  Both\n"});
    add(row("mirroring groups, none", nullptr, "Mirroring group 1\r\n"));
    // 9. PoE interfaces
    const QByteArray poe =
        " Interface PoE Priority\r\n GE1/0/1 on\r\n ---- More ----\x1b[16D GE1/0/2 on\r\n<Switch\r\nbehind\r\n";
    add(row("PoE interfaces, cut lines alone without logMore", nullptr, poe)).info = texts({"GE1/0/2 on"});
    {
        Row &added = add(row("PoE interfaces", nullptr, poe));
        added.prepare = logMore;
        added.info = texts({"Interface PoE Priority", "GE1/0/1 on", "GE1/0/2 on", "<Switch"});
        added.result =
            QString::fromUtf8(poe).remove(poe.size() - 2, 2).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    }
    // 10. PoE usage
    add(row("PoE usage", nullptr,
            " Interface Link InUsage\r\n GE1/0/1 up\r\n ---- More ----\x1b[16D GE1/0/2 up\r\n<Switch\r\nbehind\r\n"))
        .info = texts({"Interface Link InUsage", "GE1/0/1 up", "GE1/0/2 up", "<Switch"});
    // 11. Forwarding table
    {
        Row &added =
            add(row("forwarding table", nullptr,
                    "display multicast forwarding-table\r\nTotal 0\r\nmulticast forwarding-table\r\nother\r\n"));
        added.info = texts({"Total 0"});
        added.endsWaiting = false;
    }
    silent("forwarding table, last line", nullptr, "multicast forwarding-table");
    // 12. Optical ports
    {
        Row &added =
            add(row("optical ports", nullptr, "Board Type : S5560\r\nPort Optic Speed\r\n0/0/1 GE(C)\r\n<Switch\r\n"));
        added.info = texts({"Board Type : S5560", "0/0/1 GE(C)"});
        added.shown = texts({"boardTypeChanged()"});
    }
    silent("optical ports without the word Port", nullptr, "Board Type : S5560\r\nOptic Speed\r\n");
    // 13. Port mirroring
    const QByteArray mirroring = "display port-mirroring\r\n  Observe-port 2 : GigabitEthernet1/0/10\r\n  1    "
                                 "GigabitEthernet1/0/2      Inbound    Observe-port 1\r\n";
    add(row("mirroring, not shown without logMore", nullptr, mirroring));
    {
        Row &added = add(row("mirroring", nullptr, mirroring));
        added.prepare = logMore;
        added.info = texts({"{镜像id:} 2 {源端口号:} 2 {目的端口号:} 10"});
        added.result = QString::fromUtf8(mirroring)
                           .remove(mirroring.size() - 2, 2)
                           .replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    }
    // 16. Transceivers
    {
        Row &added = add(row("transceivers", "光模块",
                             "GE1/0/23 transceiver information:\r\n Transceiver Type :a\r\nXGE1/0/25 transceiver "
                             "information:\r\n Connector Type :b\r\n"));
        added.shown = texts({"logMessage(GE1/0/23{光模块信息:}Transceiver Type :a\n)"});
        added.result = QStringLiteral("XGE1/0/25{光模块信息:}Connector Type :b\n");
        added.endsWaiting = false;
    }
    silent("transceiver absent", "光模块", "GE1/0/3 transceiver is absent.\r\n");
    // 17. Restart, never translated
    {
        Row &added = add(row("restart", nullptr, "system will reboot\r\n"));
        added.shown = texts({"showToast(配置正在清除 ，请5分钟后重新连接, 1)"});
        added.endsWaiting = false;
    }
    // What only the Huawei family knows
    silent("interface view", nullptr, "display this\r\n#\r\nx\r\n#\r\n");
    silent("snooping configuration", nullptr, "igmp-snooping configuration\r\n");
    silent("refused command", nullptr, "command found at '^' position\r\n");
    silent("current configuration", nullptr, "display current-configuration\r\n");
    silent("VLAN count", nullptr, "number of VLANs\r\n");
    silent("PoE power", nullptr, "display poe power\r\n");
    silent("nothing known", "vlan", "nothing known\r\n");
    return rows;
}

const QVector<Row> &rowsOf(Family family)
{
    static const QVector<Row> huawei = huaweiRows();
    static const QVector<Row> hua3 = hua3Rows();
    return family == Family::Hua3 ? hua3 : huawei;
}

struct LoginRow
{
    const char *name;
    QByteArray reply;
    QStringList huawei; // signals
    QStringList hua3;
};

QVector<LoginRow> loginRows()
{
    const QStringList user = texts({"currentconnectTypeChanged(0)", "parseStateChanged(0)"});
    const QStringList password = texts({"currentconnectTypeChanged(0)", "parseStateChanged(1)"});
    const QStringList confirm = texts({"parseStateChanged(2)"});
    const QStringList success = texts({"logMessage({登录成功..})", "showToast({已连console端口:}COM3, 1)",
                                       "isWaitingResponseChanged()", "parseStateChanged(3)"});
    const QStringList failed = texts({"isWaitingResponseChanged()", "showToast({已断开连接}, 0)",
                                      "showToast({登录失败,检查用户名或者密码后重新连接}, 0)", "parseStateChanged(4)"});
    const QStringList note = texts({"logMessage({登录失败})"});
    return {
        {"Username:", "\r\nUsername:", user, user},
        {"Login", "Login:", {}, user},
        {"login", "login:", {}, {}},
        {"Password:", "Password:", password, password},
        {"user name and password", "Username:\r\nPassword:", user, user},
        {"Login and password", "Login authentication\r\nPassword:", password, user},
        {"Enter password:", "Enter password:", confirm, confirm},
        {"confirm password:", "Please confirm password:", confirm, confirm},
        {"Password: before confirmation", "Enter password:\r\nPassword:", password, password},
        {"user view", "<Switch>", success, success},
        {"system view", "[Switch]", success, success},
        {"the bracket alone", "]", success, success},
        {"prompt before a failure", "Authentication fail\r\nauthentication failed\r\n<Switch>", success, success},
        {"Authentication fail", "Authentication fail", failed, {}},
        {"authentication failed", "authentication failed", {}, failed},
        {"Invalid password", "Invalid password", failed, failed},
        {"The password is invalid", "The password is invalid", failed, {}},
        {"Failed to login", "Failed to login", note, note},
        {"failure before the note", "Invalid password\r\nFailed to login", failed, failed},
    };
}

} // namespace

class TestSwitchDeviceViewModelReplies : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void currentConfiguration_isAnnouncedOncePerProcess();
    void reply_hasTheseEffects_data();
    void reply_hasTheseEffects();
    void reply_completesWhateverItSays_data();
    void reply_completesWhateverItSays();
    void login_hasTheseEffects_data();
    void login_hasTheseEffects();
    void login_prompt_afterTheLogin_saysNothing_data();
    void login_prompt_afterTheLogin_saysNothing();
    void multicastPages_areTurnedUntilThePrompt();
    void multicastPages_ofHua3_areNotTurned();
    void sections_ofOneReply_takeEffectInTheirOrder_data();
    void sections_ofOneReply_takeEffectInTheirOrder();
    void optical_boardType_isAnnouncedWhenItDiffers();
    void replies_waitForTheirParse_inTheirOrder();
    void twoViewModels_readTheirOwnReplies();
    void label_isTheOneThatWasAnswered();

    // Hostile or large replies
    void garbage_of1MiB_changesNothing_data();
    void garbage_of1MiB_changesNothing();
    void manyLines_allReachThePanel();
    void logLines_10000FromOtherThreads_allArrive();

private:
    std::unique_ptr<MessageLog> _log;
    QList<QStringList> _announcements; // signals of the first listings of a configuration in this process
};

// The first configuration listing of a process is announced: here, so that no other test depends on the order in which
// the tests run.
void TestSwitchDeviceViewModelReplies::initTestCase()
{
    const MessageLog log;
    ConsoleScene hua3(Family::Hua3);
    hua3.answer("display current-configuration");
    _announcements.append(hua3.signalTexts());
    for (int i = 0; i < 2; ++i) {
        ConsoleScene scene;
        for (int j = 0; j < 2; ++j) {
            scene.clear();
            scene.answer("display current-configuration");
            _announcements.append(scene.signalTexts());
        }
    }
}

void TestSwitchDeviceViewModelReplies::init()
{
    _log = std::make_unique<MessageLog>();
}

void TestSwitchDeviceViewModelReplies::cleanup()
{
    const QStringList warnings = _log->takeWarnings();
    _log.reset();
    QCOMPARE(warnings, QStringList());
}

void TestSwitchDeviceViewModelReplies::currentConfiguration_isAnnouncedOncePerProcess()
{
    // Not by Hua3; then by the first listing of a Huawei switch, and by no later one of any view model.
    const QStringList announced{kWaiting, QStringLiteral("parseStateChanged(7)")};
    const QStringList waitingEnded{kWaiting};
    QCOMPARE(_announcements, (QList<QStringList>{{}, announced, waitingEnded, {}, {}}));
}

void TestSwitchDeviceViewModelReplies::reply_hasTheseEffects_data()
{
    QTest::addColumn<bool>("isHua3");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("language");
    for (const bool isHua3 : {false, true}) {
        const QVector<Row> &rows = rowsOf(isHua3 ? Family::Hua3 : Family::Huawei);
        for (int i = 0; i < rows.size(); ++i) {
            for (const char *language : {"zh_CN", "en"}) {
                const QString tag = QStringLiteral("%1: %2, %3")
                                        .arg(isHua3 ? QStringLiteral("Hua3") : QStringLiteral("Huawei"),
                                             QLatin1String(rows[i].name), QLatin1String(language));
                QTest::newRow(qPrintable(tag)) << isHua3 << i << QString::fromLatin1(language);
            }
        }
    }
}

void TestSwitchDeviceViewModelReplies::reply_hasTheseEffects()
{
    QFETCH(const bool, isHua3);
    QFETCH(const int, index);
    QFETCH(const QString, language);
    const Family family = isHua3 ? Family::Hua3 : Family::Huawei;
    const Row &row = rowsOf(family)[index];
    ConsoleScene scene(family, language);
    if (row.prepare)
        row.prepare(scene.viewModel());
    if (row.label)
        scene->queryDeviceStatus(scene.tr(row.label));
    else
        scene->slot_handleParseState(VM::InputMore);
    QCOMPARE(scene.sent().size(), 1);
    scene.clear();
    _log->clear();

    scene.answer(row.reply);
    QCOMPARE(_log->lines(QStringLiteral("info")), resolved(scene, row.info));
    QCOMPARE(_log->lines(QStringLiteral("warning")), resolved(scene, row.warnings));
    QCOMPARE(_log->lines(QStringLiteral("debug")), row.debug);
    QStringList emitted = scene.signalTexts();
    QCOMPARE(emitted.removeAll(kWaiting), row.endsWaiting ? 1 : 0);
    QCOMPARE(emitted, resolved(scene, row.shown));
    QCOMPARE(scene->isWaitingResponse(), !row.endsWaiting);
    QCOMPARE(scene.sent(), QList<QByteArray>());
    _log->takeWarnings();

    // The result lines make one message; the same text went to the panel line by line where it was an info.
    scene.recorder().clear();
    scene.flushConsoleLines();
    QCOMPARE(scene.announcedLines(), row.result.isEmpty() ? QStringList() : QStringList{resolved(scene, row.result)});
    scene.complete();
    QCOMPARE(scene.sent(), row.chained);
}

void TestSwitchDeviceViewModelReplies::reply_completesWhateverItSays_data()
{
    QTest::addColumn<bool>("isHua3");
    QTest::newRow("Huawei") << false;
    QTest::newRow("Hua3") << true;
}

void TestSwitchDeviceViewModelReplies::reply_completesWhateverItSays()
{
    QFETCH(const bool, isHua3);
    const Family family = isHua3 ? Family::Hua3 : Family::Huawei;
    // All at once: each takes its 200 ms.
    std::vector<std::unique_ptr<ConsoleScene>> scenes;
    for (const Row &row : rowsOf(family)) {
        scenes.push_back(std::make_unique<ConsoleScene>(family));
        scenes.back()->viewModel().slot_handleParseState(VM::InputMore);
        scenes.back()->viewModel().slot_handleParseState(VM::ConfigInfo); // waits
        scenes.back()->clear();
        scenes.back()->answer(row.reply);
    }
    const int answered = int(rowsOf(family).size());
    QTRY_COMPARE(_log->lines(QStringLiteral("info")).count(QStringLiteral("enter执行结束")), answered);
    _log->takeWarnings();
}

void TestSwitchDeviceViewModelReplies::login_hasTheseEffects_data()
{
    QTest::addColumn<bool>("isHua3");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QStringList>("expected");
    for (const LoginRow &row : loginRows()) {
        for (const char *language : {"zh_CN", "en"}) {
            const QString tag = QLatin1String(row.name) + QStringLiteral(", ") + QLatin1String(language);
            QTest::newRow(qPrintable(QStringLiteral("Huawei: ") + tag))
                << false << QString::fromLatin1(language) << row.reply << row.huawei;
            QTest::newRow(qPrintable(QStringLiteral("Hua3: ") + tag))
                << true << QString::fromLatin1(language) << row.reply << row.hua3;
        }
    }
}

void TestSwitchDeviceViewModelReplies::login_hasTheseEffects()
{
    QFETCH(const bool, isHua3);
    QFETCH(const QString, language);
    QFETCH(const QByteArray, reply);
    QFETCH(const QStringList, expected);
    ConsoleScene scene(isHua3 ? Family::Hua3 : Family::Huawei, language);
    scene->setCurrentCom(QStringLiteral("COM3"));
    scene.clear();
    scene.answer(reply);
    QCOMPARE(scene.signalTexts(), resolved(scene, expected));
}

void TestSwitchDeviceViewModelReplies::login_prompt_afterTheLogin_saysNothing_data()
{
    QTest::addColumn<bool>("isHua3");
    QTest::newRow("Huawei") << false;
    QTest::newRow("Hua3") << true;
}

void TestSwitchDeviceViewModelReplies::login_prompt_afterTheLogin_saysNothing()
{
    QFETCH(const bool, isHua3);
    ConsoleScene scene(isHua3 ? Family::Hua3 : Family::Huawei);
    scene.logIn();
    scene.answer("<Switch>");
    scene.answer("[Switch]");
    QCOMPARE(scene.signalTexts(), QStringList());
    scene.answer("<Switch>\r\nInvalid password"); // and hides nothing any more
    QVERIFY(scene.signalTexts().contains(QStringLiteral("parseStateChanged(4)")));
}

void TestSwitchDeviceViewModelReplies::multicastPages_areTurnedUntilThePrompt()
{
    ConsoleScene scene;
    scene.ask(scene.tr("组播转发表"));
    scene.answer("page 1");
    QTRY_COMPARE(scene.sent().size(), 1);
    scene.answer("page 2\r\n");
    QTRY_COMPARE(scene.sent().size(), 2);
    scene.answer("page 3\r\n<Switch");
    QTRY_VERIFY(!scene->isWaitingResponse());
    QCOMPARE(scene.sent(), (QList<QByteArray>{kNextPage, kNextPage}));
    QCOMPARE(_log->lines(QStringLiteral("info")).filter(QStringLiteral("more igmp执行中...")).size(), 2);
    scene.flushConsoleLines();
    QCOMPARE(scene.announcedLines().join(QLatin1Char('\n')), QStringLiteral("page 1\npage 2\n"));
}

void TestSwitchDeviceViewModelReplies::multicastPages_ofHua3_areNotTurned()
{
    ConsoleScene scene(Family::Hua3);
    scene.ask(scene.tr("组播转发表"));
    scene.answer("page 1");
    scene.complete();
    QCOMPARE(scene.sent(), QList<QByteArray>());
}

void TestSwitchDeviceViewModelReplies::sections_ofOneReply_takeEffectInTheirOrder_data()
{
    QTest::addColumn<bool>("isHua3");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QStringList>("logged");
    QTest::addColumn<QStringList>("shown");
    QTest::newRow("Huawei")
        << false
        << QByteArray("Password: reboot command found at '^' position\r\ndisplay this\r\n#\r\nigmp-snooping "
                      "configuration\r\n#\r\n"
                      "display poe power Unrecognized command found\r\nnumber of VLANs\r\nInterface PHY\r\n"
                      "GigabitEthernet0/0/24 transceiver is absent\r\nOptic Speed\r\nBoard Type: S\r\n")
        << (texts({"info "
                   "\u200BNo IP conflict",
                   "info Board Type: S"})
            + QStringList{QStringLiteral("*VLANs"), QStringLiteral("info not support poe"),
                          QStringLiteral("info There is no igmp - snooping configuration"),
                          QStringLiteral("info igmp-snooping configuration"), QStringLiteral("*IGMP"),
                          QStringLiteral("warning IP冲突执行失败")})
        << texts({"logMessage(端口状态信息:)", "downPortMaxChanged()", "downPortMinChanged()",
                  "linkDownPortMinChanged()", "linkDownPortMaxChanged()", "poeDownPortMinChanged()",
                  "comDownNumChanged(0)", "comUpNumChanged(0)", "downComRangeChanged((24-24))",
                  "upComRangeChanged((-1--1))", "isWaitingResponseChanged()", "boardTypeChanged()",
                  "logMessage(GigabitEthernet0/0/24未检测到光模块)", "currentconnectTypeChanged(0)",
                  "parseStateChanged(1)", "showToast(配置正在清除 ，请5分钟后重新连接, 1)"});
    QTest::newRow("Hua3")
        << true
        << QByteArray("reboot Password:\r\ntransceiver information Interface Link Speed Port Optic\r\nBoard Type: S\r\n"
                      "multicast forwarding-table\r\nMirroring group 1:\r\nType: a\r\nQuerier\r\nIGMP snooping\r\n"
                      "Total VLANs\r\nGE1/0/24 up\r\n")
        << QStringList{QStringLiteral("*IP"),
                       QStringLiteral("info Total VLANs"),
                       QStringLiteral("info IGMP snooping"),
                       QStringLiteral("info Querier"),
                       QStringLiteral("info 镜像端口配置信息:"),
                       QStringLiteral("info Type: a\n"),
                       QStringLiteral("info Mirroring group 1:"),
                       QStringLiteral("*Optic")}
        << texts({"isWaitingResponseChanged()", "boardTypeChanged()", "currentconnectTypeChanged(0)",
                  "parseStateChanged(1)", "downPortMaxChanged()", "downPortMinChanged()", "linkDownPortMinChanged()",
                  "linkDownPortMaxChanged()", "poeDownPortMinChanged()", "comDownNumChanged(0)", "comUpNumChanged(0)",
                  "downComRangeChanged((24-24))", "upComRangeChanged((-1--1))",
                  "showToast(配置正在清除 ，请5分钟后重新连接, 1)"});
}

void TestSwitchDeviceViewModelReplies::sections_ofOneReply_takeEffectInTheirOrder()
{
    QFETCH(const bool, isHua3);
    QFETCH(const QByteArray, reply);
    QFETCH(const QStringList, logged);
    QFETCH(const QStringList, shown);
    ConsoleScene scene(isHua3 ? Family::Hua3 : Family::Huawei);
    scene.ask(scene.tr("IP冲突"));
    _log->clear();
    scene.answer(reply);
    QCOMPARE(scene.signalTexts(), shown);
    // "*": a section that logs every line of the reply, or every line behind the header.
    QStringList lines;
    for (const QString &line : QString::fromUtf8(reply).split(QStringLiteral("\r\n")))
        lines.append(QStringLiteral("info ") + line);
    QStringList expected;
    for (const QString &line : logged) {
        if (line == QLatin1String("*Optic")) {
            // Behind the table's header: the board type by its own rule, everything else as it stands.
            for (const QString &behind : lines.mid(2)) {
                if (behind != QLatin1String("info "))
                    expected.append(behind);
            }
        } else if (line.startsWith(QLatin1Char('*'))) {
            expected += lines;
        } else {
            expected.append(line);
        }
    }
    QStringList actual = _log->lines();
    actual.erase(std::remove_if(actual.begin(), actual.end(),
                                [](const QString &line) { return line.startsWith(QLatin1String("debug")); }),
                 actual.end());
    QCOMPARE(actual, expected);
    _log->takeWarnings();
}

void TestSwitchDeviceViewModelReplies::optical_boardType_isAnnouncedWhenItDiffers()
{
    ConsoleScene scene;
    const auto announced = [&scene](const QByteArray &boards) {
        scene.clear();
        scene.answer("Optic Speed\r\n" + boards);
        return scene.countOf("boardTypeChanged");
    };
    QCOMPARE(announced("Board Type: A\r\n"), 1);
    QCOMPARE(announced("Board Type : A \r\n"), 0);
    QCOMPARE(announced("Board Type:\r\n"), 0);
    QCOMPARE(scene->boardType(), QStringLiteral("A"));
    QCOMPARE(announced("Board Type: B\r\nBoard Type: B\r\nBoard Type: C:D\r\n"), 2);
    QCOMPARE(scene->boardType(), QStringLiteral("C"));
}

void TestSwitchDeviceViewModelReplies::replies_waitForTheirParse_inTheirOrder()
{
    ConsoleScene scene;
    scene->slot_handleParseState(VM::InputMore);
    scene.clear();
    platform().feedHere("Optic Speed\r\nBoard Type: A\r\n");
    platform().feedHere("Optic Speed\r\nBoard Type: B\r\n");
    QCOMPARE(scene->boardType(), QString());
    scene.processEvents();
    QCOMPARE(scene.countOf("boardTypeChanged"), 2);
    QCOMPARE(scene->boardType(), QStringLiteral("B"));
}

void TestSwitchDeviceViewModelReplies::twoViewModels_readTheirOwnReplies()
{
    ConsoleScene first;
    SwitchDeviceViewModel second;
    second.setCurlogoChanged(QStringLiteral("华三"));
    const SignalRecorder recorder(&second);
    first->slot_handleParseState(VM::InputMore);
    platform().feedHere("Optic Speed\r\nBoard Type: A\r\n");
    first.complete(); // it no longer listens; its reply is still to be read
    second.slot_handleParseState(VM::InputMore);
    platform().feedHere("Port Optic Speed\r\nBoard Type: B\r\n");
    first.processEvents();
    QCOMPARE(first->boardType(), QStringLiteral("A"));
    QCOMPARE(second.boardType(), QStringLiteral("B"));
    QCOMPARE(recorder.count(QStringLiteral("boardTypeChanged")), 1);
}

void TestSwitchDeviceViewModelReplies::label_isTheOneThatWasAnswered()
{
    // The first section queues another block; later sections still know whose answer they read.
    ConsoleScene scene;
    scene.ask(scene.tr("接口解析"));
    _log->clear();
    scene.answer("Interface PHY\r\nGigabitEthernet0/0/1\r\ncommand found at '^' position\r\n");
    QCOMPARE(_log->takeWarnings(), QStringList{QStringLiteral("接口解析执行失败")});
}

void TestSwitchDeviceViewModelReplies::garbage_of1MiB_changesNothing_data()
{
    QTest::addColumn<bool>("isHua3");
    QTest::addColumn<QByteArray>("pattern");
    const QVector<QPair<const char *, QByteArray>> patterns{
        {"zeros", QByteArray(1, '\0')},
        {"not UTF-8", "\xff\xfe\xc3"},
        {"line ends", "\r\n"},
        {"carriage returns", "\r"},
        {"digits", "1234567890"},
        {"blanks", " "},
        {"almost ports", "GigabitEthernet0/0/ "},
        {"almost keywords", "InterfacInterfacPHPH"},
        {"long lines", QByteArray(5000, 'x') + "\r\n"},
    };
    for (const bool isHua3 : {false, true}) {
        for (const auto &pattern : patterns)
            QTest::newRow(qPrintable(QLatin1String(isHua3 ? "Hua3: " : "Huawei: ") + QLatin1String(pattern.first)))
                << isHua3 << pattern.second;
    }
}

void TestSwitchDeviceViewModelReplies::garbage_of1MiB_changesNothing()
{
    QFETCH(const bool, isHua3);
    QFETCH(const QByteArray, pattern);
    constexpr int kSize = 1024 * 1024;
    ConsoleScene scene(isHua3 ? Family::Hua3 : Family::Huawei);
    scene->slot_handleParseState(VM::InputMore);
    scene.clear();
    const std::clock_t begin = std::clock(); // of this process, whatever else runs on this machine
    scene.answer(pattern.repeated(kSize / pattern.size()));
    const double seconds = double(std::clock() - begin) / CLOCKS_PER_SEC;
#ifdef SWITCHPANEL_SANITIZED
    const double limit = 5; // instrumented code is no measure of speed
#else
    const double limit = 0.5;
#endif
    QVERIFY2(seconds < limit, qPrintable(QString::number(seconds)));
    QCOMPARE(scene.signalTexts(), QStringList());
    QCOMPARE(scene.calls(), QStringList());
    // The session goes on.
    scene.complete();
    scene->slot_handleParseState(VM::InputMore);
    scene.answer("Optic Speed\r\nBoard Type: A\r\nPort Optic\r\n");
    QCOMPARE(scene->boardType(), QStringLiteral("A"));
}

void TestSwitchDeviceViewModelReplies::manyLines_allReachThePanel()
{
    constexpr int kLines = 10'000;
    ConsoleScene scene;
    QByteArray reply = "number of VLANs";
    QStringList expected{QStringLiteral("[Info] number of VLANs")};
    for (int line = 1; line < kLines; ++line) {
        reply += "\r\n" + QByteArray::number(line);
        expected.append(QStringLiteral("[Info] %1").arg(line));
    }
    scene.answer(reply);
    scene.processEvents();
    QCOMPARE(scene.panelLines().size(), kLines);
    QVERIFY(scene.panelLines() == expected);
}

void TestSwitchDeviceViewModelReplies::logLines_10000FromOtherThreads_allArrive()
{
    constexpr int kThreads = 4;
    constexpr int kLines = 2500;
    ConsoleScene scene;
    int foreign = 0;
    const QObject watch;
    connect(
        &scene.viewModel(), &VM::logMessage, &watch,
        [&foreign] { foreign += QThread::currentThread() == QCoreApplication::instance()->thread() ? 0 : 1; },
        Qt::DirectConnection);
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([i] {
            for (int line = 0; line < kLines; ++line)
                QMessageLogger("consoleportcomm/port.cpp", 1, "void Port::read()", "default").info("%d %d", i, line);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
    scene.processEvents();
    QCOMPARE(foreign, 0);
    const QStringList lines = scene.panelLines();
    QCOMPARE(lines.size(), kThreads * kLines);
    for (int i = 0; i < kThreads; ++i) {
        const QStringList ofThread = lines.filter(QStringLiteral("[Info] %1 ").arg(i));
        QCOMPARE(ofThread.size(), kLines);
        for (int line = 0; line < kLines; ++line)
            QCOMPARE(ofThread.at(line), QStringLiteral("[Info] %1 %2").arg(i).arg(line));
    }
}

QTEST_GUILESS_MAIN(TestSwitchDeviceViewModelReplies)
#include "tst_switchdeviceviewmodel_replies.moc"
