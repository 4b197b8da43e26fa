#include "commandexpansion.h"
#include "descriptionreader.h"
#include "usermessage.h"

#include <QtCore/QFile>
#include <QtCore/QMap>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <algorithm>
#include <memory>

using namespace ovra::bll;

namespace {

const QString kHuawei = QStringLiteral("Huawei.xml");
const QString kSub = QStringLiteral("Huawei_sub.xml");
const QString kHua3 = QStringLiteral("Hua3.xml");
const QStringList kFiles{kHuawei, kSub, kHua3};

QString pathOf(const QString &name)
{
    return QStringLiteral(DEVICES_FOLDER "/") + name;
}

QByteArray contentOf(const QString &name)
{
    QFile file(pathOf(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::shared_ptr<const DeviceDescription> shipped(const QString &name)
{
    const ReadDescription read = readDescription(pathOf(name));
    if (!read.description)
        qWarning("%s", qPrintable(read.error));
    return read.description;
}

void addFiles()
{
    QTest::addColumn<QString>("file");
    for (const QString &file : kFiles)
        QTest::newRow(qPrintable(file)) << file;
}

// How xmllint ends with a file: 0 is valid. The schema tool is Debian's libxml2-utils.
int validate(const QString &path)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(XMLLINT),
                  {QStringLiteral("--noout"), QStringLiteral("--nonet"), QStringLiteral("--schema"),
                   pathOf(QStringLiteral("device-description.xsd")), path});
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return -1;
    if (process.exitCode() != 0)
        qDebug().noquote() << process.readAll();
    return process.exitCode();
}

int validateContent(const QByteArray &content)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("description.xml")));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return -1;
    file.close();
    return validate(file.fileName());
}

// xmllint's "the document does not conform" and "the document is not XML".
const QList<int> kInvalid{1, 3, 4};

// The refusal in the language of the sources; empty without one.
QString sentence(const Expansion &expansion)
{
    if (!expansion.refusal)
        return {};
    return filledIn(expansion.refusal->text, QStringList(expansion.refusal->label) + expansion.refusal->values);
}

} // namespace

class TestDeviceDescriptions : public QObject
{
    Q_OBJECT

private slots:
    void shipped_file_isValid_data() { addFiles(); }
    void shipped_file_isValid();
    void shipped_file_isRead_data() { addFiles(); }
    void shipped_file_isRead();
    void shipped_rules_leaveTheExportAlone_data() { addFiles(); }
    void shipped_rules_leaveTheExportAlone();
    void shipped_joiner_isUsedByTheFamiliesThatHaveOne();
    void read_fault_isNamed_data();
    void read_fault_isNamed();
    void read_unusualFile_isRefused();
    void read_deepNesting_isRefused();
    void read_longList_isCapped();
    void read_newModel_needsNoCode();
    void splitPort_text_data();
    void splitPort_text();
    void expand_unsetValue_isNamed_data();
    void expand_unsetValue_isNamed();
    void answerTo_question_data();
    void answerTo_question();
    void silenceLimit_command_data();
    void silenceLimit_command();
    void restart_command_data();
    void restart_command();
    void refusalIn_reply_data();
    void refusalIn_reply();
    void session_texts_fitRecordedLines_data();
    void session_texts_fitRecordedLines();
    void rule_reply_data();
    void rule_reply();
    void rule_loginDialogue_data();
    void rule_loginDialogue();
    void rules_hugeReply_takeLinearTime();
};

void TestDeviceDescriptions::shipped_file_isValid()
{
    QFETCH(QString, file);
    QCOMPARE(validate(pathOf(file)), 0);
}

void TestDeviceDescriptions::shipped_file_isRead()
{
    QFETCH(QString, file);
    const ReadDescription read = readDescription(pathOf(file));
    QCOMPARE(read.error, QString());
    QVERIFY(read.description);
    QCOMPARE(read.description->path, pathOf(file));
    QCOMPARE(read.description->blocks.size(), std::size_t(28));
    const SessionFacts &facts = read.description->session;
    QCOMPARE(facts.prompts.size(), std::size_t(2));
    QVERIFY(facts.prompts[0].isUserView && facts.prompts[0].begin == "<" && facts.prompts[0].end == ">");
    QVERIFY(!facts.prompts[1].isUserView && facts.prompts[1].begin == "[" && facts.prompts[1].marks == "~*");
    QCOMPARE(facts.pagerTexts, QByteArrayList({"---- More ----"}));
    QCOMPARE(facts.pagerErasures.size(), std::size_t(3));
    QCOMPARE(facts.restarts, QByteArrayList({"reboot"}));
    QVERIFY(!facts.userNamePrompts.isEmpty() && facts.passwordPrompts.last() == "Password:");
    QVERIFY(!facts.errorTexts.isEmpty() && !facts.failureTexts.isEmpty() && !facts.interruptTexts.isEmpty());
    QCOMPARE(facts.pressEnterTexts, QByteArrayList({"Press ENTER"}));
}

// The commands as a person reads them in the file, without the help of our reader.
void TestDeviceDescriptions::shipped_rules_leaveTheExportAlone()
{
    QFETCH(QString, file);
    const auto description = shipped(file);
    QVERIFY(description);
    const QStringList list =
        expand(description->blocks.at(QStringLiteral("getExportCommands")), *description, DeviceValues()).commands;
    QCOMPARE(list.size(), 4);
    const QByteArray reply = "Login: <C4> GE0/0/1.20 40GE0/0/1 PortName number of vlans Aggregation Interface:\r\n"
                             "40GE0/0/1 x\r\nGE0/0/1.20 x\r\nM-GE0/0/0\r\nusername:\r\n"
                             "Authentication fail\r\nmore\r\n<NAME>";
    for (const QString &command : list)
        QCOMPARE(applyReplyRules(description->replyRules, command.toUtf8(), reply).reply, reply);
    for (const ReplyRule &rule : description->replyRules)
        QVERIFY2(!list.contains(QString::fromUtf8(rule.command)), rule.command.constData());
}

void TestDeviceDescriptions::shipped_joiner_isUsedByTheFamiliesThatHaveOne()
{
    QVERIFY(contentOf(kHuawei).contains("{snooping-joiner}"));
    QVERIFY(contentOf(kSub).contains("{snooping-joiner}"));
    QVERIFY(!contentOf(kHua3).contains("snooping-joiner"));
}

void TestDeviceDescriptions::read_fault_isNamed_data()
{
    QTest::addColumn<QByteArray>("from"); // in Huawei.xml
    QTest::addColumn<QByteArray>("to");
    QTest::addColumn<QByteArray>("where"); // the line of its first occurrence is the one that the error names
    QTest::addColumn<QString>("reason");
    QTest::addColumn<bool>("schemaKnows");
    const auto add = [](const char *tag, const char *from, const char *to, const char *where, const char *reason,
                        bool schemaKnows = true) {
        QTest::newRow(tag) << QByteArray(from) << QByteArray(to) << QByteArray(where) << QString::fromUtf8(reason)
                           << schemaKnows;
    };
    add("not well formed", "</limits>", "</limit>", "</limit>\n", "tag mismatch");
    add("doctype", "<device-description ", "<!DOCTYPE x [<!ENTITY a 'b'>]>\n<device-description ", "]>",
        "a document type declaration is not allowed", false);
    add("other document", "<device-description format", "<description format", "<description",
        "this is not a device description");
    add("name space", "<device-description", "<x:device-description xmlns:x='y'", "<x:", "this is not");
    add("other format", "format=\"1\"", "format=\"2\"", "format=\"2\"", "\"format\" is not a number from 1 to 1");
    add("attribute missing", "format=\"1\" ", "", "name=\"Huawei switch\"",
        "<device-description> lacks the attribute \"format\"");
    add("attribute unknown", "format=\"1\"", "format=\"1\" colour=\"red\"", "colour",
        "<device-description> has no attribute \"colour\"");
    add("attribute empty", "name=\"Huawei switch\"", "name=\"\"", "name=\"\"", "\"name\" is empty or longer");
    add("control character", "name=\"Huawei switch\"", "name=\"a&#10;b\"", "a&#10;b",
        "\"name\" holds a control character", false);
    add("slot", "format=\"1\"", "format=\"1\" slot=\"256\"", "256", "\"slot\" is not a number from 0 to 255");
    add("joiner", "snooping-joiner=\"-\"", "snooping-joiner=\";\"", ";\"", "neither a hyphen nor a blank");
    add("element unknown", "<limits>", "<limits><colour/>", "<colour/>", "<colour> does not belong into <limits>");
    add("text between elements", "<limits>", "<limits>text", "<limit value",
        "<limits> holds a text"); // up to the next tag
    add("section missing", R"(<limits>
    <limit value="link" min="0" max="1023"/>
    <limit value="mirror" min="1" max="64"/>
    <limit value="port" min="1" max="999"/>
  </limits>)",
        "", "<session>", "<limits> is missing in <device-description>");
    add("section twice", "<limits>", "<limits/><limits>", "<limits/>", "<limits> stands twice in <device-description>");
    add("last section missing", "<commands>", "</device-description><!-- ", "</device-description>",
        "<commands> is missing");
    add("separator", "separator=\" \"", "separator=\"; \"", "; ", "neither empty nor a blank");
    add("default interface", "default=\"GigabitEthernet\"", "default=\"GE\"", "</interfaces>",
        "the default interface \"GE\"");
    add("interface type", "name=\"40GE\"", "name=\"40GE;\"", "40GE;", "\"40GE;\" is not an interface type");
    add("alias", "aliases=\"40g\"", "aliases=\"40\"", "aliases=\"40\"", "\"40\" is not an interface type", false);
    add("alias twice", "aliases=\"40g\"", "aliases=\"XG\"", "aliases=\"XG\"", "\"XG\" stands for two interface types",
        false);
    add("limit of nothing", "value=\"mirror\"", "value=\"colour\"", "colour", "there is no number \"colour\"");
    add("limit twice", "value=\"mirror\"", "value=\"link\"", "value=\"link\" min=\"1\"", "\"link\" has two limits");
    add("limit too high", "max=\"64\"", "max=\"65536\"", "65536", "\"max\" is not a number from 1 to 65535");
    add("limit upside down", "min=\"1\" max=\"64\"", "min=\"9\" max=\"8\"", "max=\"8\"",
        "\"max\" is not a number from 9", false);
    add("limit above the law", "<limits>", "<limits><limit value=\"vlan\" min=\"1\" max=\"4095\"/>", "4095",
        "from 1 to 4094", false);
    add("limit without number", "max=\"64\"", "max=\"x\"", "max=\"x\"", "\"max\" is not a number");
    add("prompt view", "view=\"user\"", "view=\"other\"", "view=\"other\"",
        "\"view\" is neither user nor configuration");
    add("no prompt",
        "<prompt view=\"user\" begin=\"&lt;\" end=\"&gt;\"/>\n      <prompt view=\"configuration\" begin=\"[\" "
        "end=\"]\" marks=\"~*\"/>",
        "", "</prompts>", "<prompt> is missing", false);
    add("erasure", "by=\"backspace\"", "by=\"magic\"", "magic", "\"magic\" erases no pager text");
    add("pager text", "---- More ----", "", "text=\"\"", "\"text\" is empty");
    add("question about nothing", "<question text=\"Change now?\" answer=\"N\"/>", "<question answer=\"N\"/>",
        "<question answer", "a question names its text or its command", false);
    add("answer with a line end", "text=\"Change now?\" answer=\"N\"", "text=\"Change now?\" answer=\"N&#13;\"",
        "N&#13;", "\"answer\" holds a control character", false);
    add("answer missing", "text=\"Change now?\" answer=\"N\"", "text=\"Change now?\"", "Change now?",
        "lacks the attribute \"answer\"");
    add("time-out", "seconds=\"120\"", "seconds=\"601\"", "601", "\"seconds\" is not a number from 1 to 600");
    add("restart of nothing", "<restart command=\"reboot\"/>", "<restart command=\" \"/>", "command=\" \"",
        "\"command\" names no command", false);
    add("rule unknown", "<drop line=\"GE#/#/#.\"/>", "<erase line=\"x\"/>", "<erase",
        "<erase> does not belong into <reply>");
    add("rule of nothing", "<drop line=\"GE#/#/#.\"/>", "<drop line=\"\"/>", "line=\"\"", "\"line\" is empty");
    add("rule's place", "at=\"line-start\"", "at=\"line-end\"", "line-end", "\"at\" is not line-start");
    add("rule names no command", "to=\"display vlan\"", "to=\" \"", "to=\" \"", "\"to\" names no command", false);
    add("rule for the export", "to=\"display vlan\"", "to=\"display current-configuration\"", "</device-description>",
        "a reply rule names \"display current-configuration\" of the export list", false);
    add("rule for the export, shorter", "to=\"display vlan\"", "to=\"display\"", "</device-description>",
        "a reply rule names \"display current-configuration\" of the export list", false);
    add("rule for the paging", "to=\"display vlan\"", "to=\"screen-length 0\"", "</device-description>",
        "a reply rule names \"screen-length 0 temporary\" of the export list", false);
    add("getter unknown", "getter=\"getSaveCommands\"", "getter=\"getSave\"", "\"getSave\"",
        "there is no command list \"getSave\"");
    add("getter twice", "getter=\"getExportCommands\"", "getter=\"getSaveCommands\"",
        "getter=\"getSaveCommands\">\n      <line>screen", "\"getSaveCommands\" stands here twice");
    add("getter missing", "<block getter=\"getSaveCommands\">\n      <line>save</line>\n    </block>", "",
        "</device-description>", "the command list \"getSaveCommands\" is missing");
    add("line empty", "<line>save</line>", "<line></line>", "<line></line>", "a line is empty or has blanks around it");
    add("line with blanks around", "<line>save</line>", "<line>save </line>", "<line>save ", "blanks around it");
    add("line with a line end", "<line>save</line>", "<line>save&#13;&#10;reboot</line>", "save&#13;",
        "a line holds a control character");
    add("line is the page key", "<line>save</line>", "<line>space</line>", "<line>space", "the page key's name", false);
    add("line with the page key", "<line>save</line>", "<line>dir | include space</line>", "include space",
        "the page key's name", false);
    add("element in a line", "<line>save</line>", "<line><page-key/></line>", "<line><page-key/></line>",
        "character data");
    add("placeholder unknown", "vlan {vlan}", "vlan {vlam}", "{vlam}", "there is no placeholder {vlam} here", false);
    add("placeholder empty", "vlan {vlan}", "vlan {}", "vlan {}", "there is no placeholder {} here", false);
    add("placeholder open", "vlan {vlan}", "vlan {vlan", "vlan {vlan<", "a brace too many", false);
    add("placeholder closed twice", "vlan {vlan}", "vlan {vlan}}", "{vlan}}", "a brace too many", false);
    add("placeholder is a word", "vlan {vlan}", "vlan {port-type}", "{port-type}",
        "there is no placeholder {port-type} here", false);
    add("placeholder is a range", "vlan {vlan}", "vlan {down-ports}", "{down-ports}",
        "there is no placeholder {down-ports} here", false);
    add("placeholder's part unknown", "{down-ports.first} to", "{down-ports.middle} to", "middle",
        "{down-ports.middle}", false);
    add("placeholder has no parts", "vlan {vlan}", "vlan {vlan.first}", "{vlan.first}", "{vlan.first}", false);
    add("fallback is no number", "{vlan:1}", "{vlan:x}", "{vlan:x}", "there is no placeholder {vlan:x} here", false);
    add("fallback out of bounds", "{vlan:1}", "{vlan:4095}", "{vlan:4095}", "no placeholder {vlan:4095} here", false);
    add("fallback of a port", "{vlan:1}", "{poe-port:1}", "{poe-port:1}", "no placeholder {poe-port:1} here", false);
    add("expected refusal of nothing", "<expected command=\"undo port default vlan\"/>", "<expected command=\" \"/>",
        "<expected command=\" \"", "\"command\" names no command", false);
    add("port outside a repetition", "vlan {vlan}", "vlan {port}", "vlan {port}", "there is no placeholder {port} here",
        false);
    add("joiner without a default", " snooping-joiner=\"-\"", "", "{snooping-joiner}",
        "no placeholder {snooping-joiner} here", false);
    add("choice by a number", "<choose value=\"mirror-status\">", "<choose value=\"vlan\">", "<choose value=\"vlan\">",
        "nothing can be chosen by \"vlan\"");
    add("choice never true", "<when is=\"aggregation\">", "<when is=\"agregation\">", "agregation",
        "\"switch-type\" is never \"agregation\"", false);
    add("choice of no port", "<when is=\"all\">", "<when is=\"g\">", "<when is=\"g\">", "\"poe-port\" is never \"g\"",
        false);
    add("choice twice", "<when is=\"aggregation\">", "<when is=\"access\"/><when is=\"aggregation\">",
        "<when is=\"access\"/>\n          </choose>", "\"access\" stands here twice", false);
    add("otherwise twice", "<otherwise>", "<otherwise/><otherwise>", "<otherwise/>", "<otherwise> stands here twice",
        false);
    add("repetition over nothing", "<repeat over=\"ports\">", "<repeat over=\"vlan\">", "over=\"vlan\"",
        "nothing can be repeated over \"vlan\"");
    add("list where there is none", "<line>save</line>", "<repeat over=\"ports\"/>", "<repeat over=\"ports\"/>",
        "over \"ports\" here", false);
    add("repetition in a repetition", "<repeat over=\"ports\">",
        "<repeat over=\"down-ports\"><repeat over=\"down-ports\"/></repeat><repeat over=\"ports\">",
        "<repeat over=\"down-ports\"/>", "a repetition stands within a repetition", false);
    add("export by choice", "<line>display current-configuration</line>", "<choose value=\"port-type\"/>",
        "</device-description>", "the export list holds more than plain lines", false);
}

void TestDeviceDescriptions::read_fault_isNamed()
{
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    QFETCH(QByteArray, where);
    QFETCH(QString, reason);
    QFETCH(bool, schemaKnows);
    QByteArray content = contentOf(kHuawei);
    const int at = content.indexOf(from);
    QVERIFY(at >= 0);
    content.replace(at, from.size(), to);
    const int faultAt = content.indexOf(where);
    QVERIFY(faultAt >= 0);
    const int line = content.left(faultAt).count('\n') + 1;

    const ReadDescription read = parseDescription(content, QStringLiteral("folder/test.xml"));
    QVERIFY(!read.description);
    const QString start = QStringLiteral("folder/test.xml:%1: ").arg(line);
    QVERIFY2(read.error.startsWith(start), qPrintable(start + QStringLiteral(" <> ") + read.error));
    QVERIFY2(read.error.contains(reason), qPrintable(read.error));
    if (schemaKnows)
        QVERIFY(kInvalid.contains(validateContent(content)));
}

void TestDeviceDescriptions::read_unusualFile_isRefused()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("large.xml")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QByteArray content = contentOf(kHuawei);
    content += QByteArray(1048576 - content.size(), '\n');
    file.write(content);
    file.flush();
    QCOMPARE(readDescription(file.fileName()).error, QString());
    file.write("\n");
    file.close();
    QVERIFY(readDescription(file.fileName())
                .error.endsWith(QStringLiteral("large.xml:0: the file is larger than 1048576 bytes")));

    QVERIFY(readDescription(folder.path()).error.endsWith(QStringLiteral(":0: this is not a file")));
    QVERIFY(readDescription(folder.filePath(QStringLiteral("none")))
                .error.endsWith(QStringLiteral(":0: there is no such file")));
    QCOMPARE(readDescription(QString()).error, QStringLiteral("no device description is named"));
}

void TestDeviceDescriptions::read_deepNesting_isRefused()
{
    const auto nested = [](int depth) {
        const QByteArray open = "<choose value=\"poe-status\"><otherwise>";
        const QByteArray close = "</otherwise></choose>";
        return contentOf(kHuawei).replace("<line>save</line>", open.repeated(depth) + close.repeated(depth));
    };
    QVERIFY(parseDescription(nested(8), QString()).description);
    QVERIFY(parseDescription(nested(9), QString()).error.contains(QStringLiteral("the nesting is deeper than 8")));
    QVERIFY(!parseDescription(nested(10000), QString()).description);

    const QByteArray longest = "<line>" + QByteArray(255, 'x') + "</line>";
    QVERIFY(parseDescription(contentOf(kHuawei).replace("<line>save</line>", longest), QString()).description);
    const QByteArray tooLong = "<line>" + QByteArray(256, 'x') + "</line>";
    QVERIFY(parseDescription(contentOf(kHuawei).replace("<line>save</line>", tooLong), QString())
                .error.contains(QStringLiteral("a line is longer than 255 characters")));
}

void TestDeviceDescriptions::read_longList_isCapped()
{
    const QByteArray repeated = QByteArray("<line>x {port}</line>").repeated(11);
    const QByteArray block = "<repeat over=\"down-ports\">" + repeated + "</repeat>";
    const auto description =
        parseDescription(contentOf(kHuawei).replace("<line>save</line>", block), QString()).description;
    QVERIFY(description);
    DeviceValues values;
    values.downType = QStringLiteral("g");
    const CommandList &save = description->blocks.at(QStringLiteral("getSaveCommands"));
    values.downPorts = PortRange{1, 909};
    QCOMPARE(expand(save, *description, values).commands.size(), 9999);
    values.downPorts = PortRange{1, 910};
    const Expansion expansion = expand(save, *description, values);
    QCOMPARE(expansion.commands, QStringList());
    QCOMPARE(sentence(expansion), QStringLiteral("命令超过 10000 条"));
}

// Another spelling, another slot, another command, a choice by nothing but data.
void TestDeviceDescriptions::read_newModel_needsNoCode()
{
    QByteArray content = contentOf(kHuawei);
    content.replace("separator=\" \" subslot=\"0\"", "separator=\"\" subslot=\"2\"");
    content.replace("format=\"1\"", "format=\"1\" slot=\"7\"");
    content.replace("<interface name=\"GigabitEthernet\" aliases=\"g ge\"/>",
                    "<interface name=\"GigabitEthernet\"/><interface name=\"Ether\" aliases=\"g\"/>");
    content.replace("<line>save</line>", R"(
      <repeat over="poe-ports"><line>port {port} group {link}</line></repeat>
      <choose value="poe-port">
        <when is=""><line>none</line></when>
        <when is="all"><line>all</line></when>
        <when is="Ether"><line>ether {poe-port}</line></when>
        <otherwise><line>other {poe-port}</line></otherwise>
      </choose>
      <line>{poe-ports.first-number} {poe-ports.last-number} {slot}</line>)");
    const ReadDescription read = parseDescription(content, QString());
    QCOMPARE(read.error, QString());
    const CommandList &save = read.description->blocks.at(QStringLiteral("getSaveCommands"));
    DeviceValues values;
    values.link = 3;
    values.poeType = QStringLiteral("G");
    values.poePorts = PortRange{8, 9};
    const auto lines = [&](const char *port) {
        values.poePort = QString::fromLatin1(port);
        return expand(save, *read.description, values).commands.join(QLatin1Char('|'));
    };
    const QString start = QStringLiteral("port Ether7/2/8 group 3|port Ether7/2/9 group 3|");
    const QString end = QStringLiteral("|7/2/8 7/2/9 7");
    QCOMPARE(lines(""), start + QStringLiteral("none") + end);
    QCOMPARE(lines("all"), start + QStringLiteral("all") + end);
    QCOMPARE(lines("g1/0/4"), start + QStringLiteral("ether Ether1/0/4") + end);
    QCOMPARE(lines("xg1/0/4"), start + QStringLiteral("other XGigabitEthernet1/0/4") + end);
    QCOMPARE(lines("12"), start + QStringLiteral("other GigabitEthernet7/2/12") + end);
}

void TestDeviceDescriptions::splitPort_text_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("parts"); // type|number, or empty
    const auto add = [](const char *text, const char *parts) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(parts);
    };
    add("g0/0/1", "g|0/0/1");
    add("GigabitEthernet 0/0/24", "GigabitEthernet|0/0/24");
    add("Ten-GigabitEthernet1/0/25", "Ten-GigabitEthernet|1/0/25");
    add("10GE0/0/1", "10GE|0/0/1");
    add("40-GigabitEthernet 1/0/49", "40-GigabitEthernet|1/0/49");
    add("5", "|5");
    add("999", "|999");
    add("", "");
    add("1000", "");
    add("-5", "");
    add("0/0/1", "");
    add("100/0/0/1", "");
    add("g0/0/1\n", "");
    add("5\n", "");
    add("g\n0/0/1", "");
    add("g\t0/0/1", "");
    add("g0/0/", "");
    add("g0//1", "");
    add("g0/0/0001", "");
    add("g-0/0/1", "");
    add("g_x0/0/1", "");
    add("gi 0/0/1 0/0/2", "");
    add("\xC3\xBCg0/0/1", "");
    add("aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa0/0/1",
        "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa|0/0/1");
    add("aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa0/0/1", ""); // 65 characters
}

void TestDeviceDescriptions::splitPort_text()
{
    QFETCH(QString, text);
    QFETCH(QString, parts);
    const std::optional<PortText> port = splitPort(text);
    QCOMPARE(port ? port->type + QLatin1Char('|') + port->number : QString(), parts);
}

void TestDeviceDescriptions::expand_unsetValue_isNamed_data()
{
    QTest::addColumn<QString>("getter");
    QTest::addColumn<QString>("refusal"); // with nothing set; empty: the list needs no value
    const auto add = [](const char *getter, const char *refusal) {
        QTest::newRow(getter) << QString::fromLatin1(getter) << QString::fromUtf8(refusal);
    };
    add("getDownVlanCommands", "未设置VLAN号");
    add("getUpGVlanCommands", "未设置VLAN号");
    add("getVlanQueryCommands", "");
    add("getMulticastCommands", "组播状态 \"\" 不在 enable, disable 之中");
    add("getMulticastQueryCommands", "未设置VLAN号");
    add("getQuerierCommands", "未设置VLAN号");
    add("getQuerierQueryCommands", "未设置VLAN号");
    add("getLinkDownCommands", "未设置链路聚合组");
    add("getLinkGigabitSingleCommands", "未设置链路聚合组");
    add("getLinkUpCommands", "未设置链路聚合组");
    add("getLink10GSingleCommands", "未设置链路聚合组");
    add("getLinkAggregationQueryCommands", "未设置链路聚合组");
    add("getMirrorCommands", "镜像状态 \"\" 不在 enable, disable 之中");
    add("getMirrorPortQueryCommands", "");
    add("getAutoNegCommands", "未设置自协商端口");
    add("getAutoNegotiationQueryCommands", "未设置自协商端口");
    add("getPOECommands", "未设置PoE端口");
    add("getPOEQueryCommands", "");
    add("getInterfaceCommandsForPorts", "端口列表为空");
    add("getVlanStatusCommands", "");
    add("getPortStatusCommands", "");
    add("getInterfaceSpeedCommands", "");
    add("getTransceiverCommands", "");
    add("getIpConflictCommands", "");
    add("getMulticastForwardingTableCommands", "");
    add("getSaveCommands", "");
    add("getClearLinkAggregationCommands", "");
    add("getExportCommands", "");
}

void TestDeviceDescriptions::expand_unsetValue_isNamed()
{
    QFETCH(QString, getter);
    QFETCH(QString, refusal);
    const auto description = shipped(kHuawei);
    const Expansion expansion = expand(description->blocks.at(getter), *description, DeviceValues());
    QCOMPARE(sentence(expansion), refusal);
    QCOMPARE(expansion.commands.isEmpty(), !refusal.isEmpty());
}

void TestDeviceDescriptions::answerTo_question_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("asked");
    QTest::addColumn<QByteArray>("answer"); // "?": none is known
    const auto add = [](const char *tag, const QStringList &files, const char *line, const char *asked,
                        const char *answer) {
        for (const QString &file : files)
            QTest::addRow("%s, %s", qPrintable(file), tag)
                << file << QByteArray(line) << QByteArray(asked) << QByteArray(answer);
    };
    const QStringList huawei{kHuawei, kSub};
    const QStringList hua3{kHua3};
    add("initial password", kFiles, "",
        "\r\nWarning: The initial password poses security risks.\r\nThe password needs to be changed. Change now? "
        "[Y/N]:",
        "N");
    add("something else at login", kFiles, "", "Overwrite the system software? [Y/N]:", "?");
    add("save", huawei, "save",
        "The current configuration will be written to flash:/vrpcfg.zip.\r\nAre you sure to continue?[Y/N]", "Y");
    add("save, other wording", huawei, "save",
        "Warning: The current configuration will be written to the device. Continue? [Y/N]:", "Y");
    add("risks in the configuration", kFiles, "",
        "Warning: There are security risks in the configuration\r\n file. Continue? [Y/N]:", "N");
    add("save, risks in the configuration", kFiles, "save",
        "Warning: There are security risks in the configuration file. Continue? [Y/N]:", "Y");
    add("save asks for a name", huawei, "save",
        "Enter a name (to leave the existing name unchanged,\r\n press the enter key):", "");
    add("save to a file", huawei, "save a.cfg", "flash:/a.cfg exists, overwrite?[Y/N]", "Y");
    add("save", hua3, "save", "The current configuration will be written to the device. Are you sure? [Y/N]:", "Y");
    add("save, file name", hua3, "save",
        "Please input the file name(*.cfg)[flash:/startup.cfg]\r\n(To leave the existing filename unchanged, press the "
        "enter key):",
        "");
    add("save, overwrite", hua3, "save", "flash:/startup.cfg exists, overwrite? [Y/N]:", "Y");
    add("clear", kFiles, "reset saved-configuration",
        "The configuration will be erased to reconfigure. Continue? [Y/N]:", "Y");
    add("reboot would save", huawei, "reboot",
        "Info: The system is now comparing the configuration, please wait.\r\n"
        "Warning: All the configuration will be saved to the configuration file for the next "
        "startup:flash:/vrpcfg.zip, Continue?[Y/N]:",
        "N");
    add("reboot would save, other wording", huawei, "reboot",
        "The current configuration is modified. save the configuration\r\n for the next startup? [Y/N]:", "N");
    add("reboot", huawei, "reboot",
        "Info: If want to reboot with saving diagnostic information, input 'N' and then execute\r\n"
        "'reboot save diagnostic-information'.\r\nSystem will reboot! Continue?[Y/N]:",
        "Y");
    add("reboot, other wording", huawei, "reboot", "This command will reboot the device. Continue? [Y/N]:", "Y");
    add("reboot, wrapped", huawei, "reboot fast", "System will\r\n reboot! Continue ? [y/n]:", "Y");
    add("reboot would save", hua3, "reboot",
        "Start to check configuration with next startup configuration file, please wait.........DONE!\r\n"
        "Current configuration may be lost after the reboot, save current configuration? [Y/N]:",
        "N");
    add("reboot", hua3, "reboot", "This command will reboot the device. Continue? [Y/N]:", "Y");
    add("uncommitted", {kSub}, "return",
        "Warning: Uncommitted configurations found. Are you sure to commit them before exiting? "
        "[Y(yes)/N(no)/C(cancel)]:",
        "Y");
    add("uncommitted", {kHuawei, kHua3}, "return",
        "Warning: Uncommitted configurations found. Are you sure to commit them before exiting? "
        "[Y(yes)/N(no)/C(cancel)]:",
        "?");
    add("delete a file", kFiles, "delete flash:/a", "Delete flash:/a? [Y/N]:", "?");
    add("factory reset, deletes files", kFiles, "reset factory-configuration",
        "This will delete all files. Continue? [Y/N]:", "?");
    add("not the command", kFiles, "saveall", "Continue? [Y/N]:", "?");
}

void TestDeviceDescriptions::answerTo_question()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, asked);
    QFETCH(QByteArray, answer);
    const auto description = shipped(file);
    QCOMPARE(answerTo(description->session, line, asked).value_or("?"), answer);
    const auto isEnding = [&asked](const QByteArray &ending) { return asked.endsWith(ending); };
    const QByteArrayList &endings = description->session.questionEndings;
    if (answer != "?") // what is answered is recognised as a question
        QVERIFY(std::any_of(endings.begin(), endings.end(), isEnding));
}

void TestDeviceDescriptions::silenceLimit_command_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<int>("seconds");
    QTest::newRow("usual") << QByteArray("display vlan") << 10;
    QTest::newRow("empty") << QByteArray() << 10;
    QTest::newRow("slow") << QByteArray("save") << 120;
    QTest::newRow("slow, with words behind it") << QByteArray("save force") << 120;
    QTest::newRow("slow, blanks around") << QByteArray("  reset   saved-configuration ") << 60;
    QTest::newRow("another word") << QByteArray("saved") << 10;
    QTest::newRow("its first word only") << QByteArray("reset") << 10;
    QTest::newRow("a word further on") << QByteArray("undo save") << 10;
}

void TestDeviceDescriptions::silenceLimit_command()
{
    QFETCH(QByteArray, line);
    QFETCH(int, seconds);
    for (const QString &file : kFiles)
        QCOMPARE(silenceLimit(shipped(file)->session, line), std::chrono::seconds(seconds));
}

void TestDeviceDescriptions::restart_command_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<bool>("restarts");
    QTest::newRow("reboot") << QByteArray("reboot") << true;
    QTest::newRow("reboot with words") << QByteArray("reboot fast") << true;
    QTest::newRow("another word") << QByteArray("reboot-info") << false;
    QTest::newRow("listing") << QByteArray("display reboot") << false;
    QTest::newRow("save") << QByteArray("save") << false;
    QTest::newRow("empty") << QByteArray() << false;
}

void TestDeviceDescriptions::restart_command()
{
    QFETCH(QByteArray, line);
    QFETCH(bool, restarts);
    for (const QString &file : kFiles)
        QCOMPARE(isRestart(shipped(file)->session, line), restarts);
}

void TestDeviceDescriptions::refusalIn_reply_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<bool>("isConfiguring");
    QTest::addColumn<QByteArray>("refusal"); // empty: none
    const auto add = [](const QString &file, const char *line, const char *reply, const char *refusal,
                        bool isConfiguring = true) {
        QTest::addRow("%s %s %s", qPrintable(file), line, QByteArray(reply).simplified().constData())
            << file << QByteArray(line) << QByteArray(reply) << isConfiguring << QByteArray(refusal);
    };
    add(kHuawei, "dos ver", "  ^\r\nError: Unrecognized command found at '^' position.\r\n<NAME>",
        "Error: Unrecognized command found at '^' position.");
    add(kHuawei, "x", "\r\nError[1]: Unrecognized command found.\r\n<NAME>", "Error[1]: Unrecognized command found.");
    add(kHuawei, "x", "  Error:Too many parameters found at '^' position.",
        "Error:Too many parameters found at '^' position.");
    add(kHuawei, "x", "Info: done.\r\n description Error: none\r\n<NAME>", "");
    add(kHuawei, "x", "", "");
    add(kHuawei, "x", "Err", "");
    add(kHuawei, "undo port default vlan", "Error: The link type of the interface is not access.\r\n[NAME]", "");
    add(kHuawei, "undo port trunk allow-pass vlan 2 to 4094", "Error: Not a trunk.\r\n[NAME]", "");
    add(kSub, "undo port default vlan", "Error: The link type of the interface is not access.\r\n[NAME]", "");
    add(kSub, "undo port trunk allow-pass vlan 2 to 4094", "Error: Not a trunk.\r\n[NAME]", "");
    add(kSub, "x", "Error: Wrong parameter found.\r\n[NAME]", "Error: Wrong parameter found.");
    add(kSub, "x", "Error[2]: Wrong parameter found.\r\n[NAME]", "Error[2]: Wrong parameter found.");
    add(kHuawei, "port default vlan 20", "Error: Not an access port.\r\n[NAME]", "Error: Not an access port.");
    add(kHua3, "x", "  ^\r\n % Unrecognized command found at '^' position.\r\n<NAME>",
        "% Unrecognized command found at '^' position.");
    add(kHua3, "x", " Permission denied.\r\n<NAME>", "Permission denied.", false);
    add(kHua3, "port access vlan 7", "\r\n The VLAN does not exist.\r\n[NAME-GigabitEthernet1/0/1]",
        "The VLAN does not exist.");
    add(kHua3, "x", " The VLAN does not exist.\r\n<NAME>", "", false); // of the user view
    add(kHua3, "x", "The VLAN does not exist.\r\n[NAME]", "");
    add(kHua3, "x", "  The VLAN does not exist.\r\n[NAME]", "");
    add(kHua3, "x", " #\r\n [NAME]\r\n \r\n 1 port\r\n ", "");
    add(kHua3, "vlan 2 to 30", " Please wait... Done.\r\n[NAME]", "");
    add(kHua3, "shutdown",
        "#Nov 20 10:11:12:345 2026 NAME IFNET/4/INTERFACE UPDOWN:\r\n Trap 1.3.6.1.6.3.1.1.5.3<linkDown>: down\r\n"
        " ifAdminStatus is 2\r\n[NAME]",
        "");
    add(kHua3, "shutdown",
        "%Nov 20 10:11:12:345 2026 NAME IFNET/3/PHY_UPDOWN: Physical state on the\r\n interface changed to down.\r\n"
        "[NAME]",
        "");
    add(kHua3, "port access vlan 7", "%Nov 20 10:11:12:345 2026 NAME IFNET/3/X: y\r\n\r\n The VLAN does not exist.\r\n",
        "The VLAN does not exist.");
    add(kHua3, "x", " This operation may drop the link. Continue? [Y/N]:N\r\n[NAME]", "");
    add(kHua3, "display vlan 7", " VLAN ID: 7\r\n The VLAN does not exist.\r\n[NAME]", "");
    add(kHuawei, "x", " The VLAN does not exist.\r\n[NAME]", "");
    add(kHua3, "x", "%Nov 20 10:11:12:345 2026 NAME IFNET/3/PHY_UPDOWN: up.\r\n100% of it\r\n<NAME>", "");
}

void TestDeviceDescriptions::refusalIn_reply()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, reply);
    QFETCH(bool, isConfiguring);
    QFETCH(QByteArray, refusal);
    QCOMPARE(refusalIn(shipped(file)->session, line, reply, isConfiguring).value_or(QByteArray()), refusal);
}

void TestDeviceDescriptions::session_texts_fitRecordedLines_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QByteArray>("line");
    const auto add = [](const QString &file, const char *kind, const char *line) {
        QTest::addRow("%s %s %s", qPrintable(file), kind, line)
            << file << QString::fromLatin1(kind) << QByteArray(line);
    };
    for (const QString &file : {kHuawei, kSub}) {
        add(file, "failure", "Authentication fail");
        add(file, "failure", "Error: Username or password error.");
        add(file, "failure", "Error: The password is invalid.");
        add(file, "failure", "Invalid password");
    }
    add(kHua3, "failure", "AAA authentication failed.");
    add(kHua3, "failure", "% Authentication failed.");
    add(kHua3, "failure", "Authentication fail");
    add(kHua3, "failure", "Login failed!");
    add(kHua3, "failure", "Login incorrect");
    add(kHua3, "failure", "Invalid password");
    add(kHuawei, "press-enter", "Please Press ENTER.");
    add(kHua3, "press-enter", "Press ENTER to get started.");
    add(kHua3, "interrupt", "Automatic configuration is running, press CTRL_C or CTRL_D to break.");
}

void TestDeviceDescriptions::session_texts_fitRecordedLines()
{
    QFETCH(QString, file);
    QFETCH(QString, kind);
    QFETCH(QByteArray, line);
    const SessionFacts facts = shipped(file)->session;
    const QMap<QString, QByteArrayList> lists{{QStringLiteral("failure"), facts.failureTexts},
                                              {QStringLiteral("press-enter"), facts.pressEnterTexts},
                                              {QStringLiteral("interrupt"), facts.interruptTexts}};
    const QByteArrayList list = lists.value(kind);
    QVERIFY(std::any_of(list.begin(), list.end(), [&line](const QByteArray &text) { return line.contains(text); }));
}

void TestDeviceDescriptions::rule_reply_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QByteArray>("expected");
    const auto add = [](const char *tag, const QStringList &files, const char *line, const char *reply,
                        const char *expected) {
        for (const QString &file : files)
            QTest::addRow("%s, %s", qPrintable(file), tag)
                << file << QByteArray(line) << QByteArray(reply) << QByteArray(expected);
    };
    const auto keep = [&add](const char *tag, const QStringList &files, const char *line, const char *reply) {
        add(tag, files, line, reply, reply);
    };
    const QStringList huawei{kHuawei, kSub};
    const QStringList hua3{kHua3};
    const char *brief = "display interface brief";

    add("sub-interfaces", {kHuawei}, brief,
        "Interface PHY\r\nGigabitEthernet0/0/1 up\r\nGigabitEthernet0/0/1.20 up\r\n  GigabitEthernet0/0/2 up\r\n  "
        "XGigabitEthernet0/0/3.4094 up\r\nEth-Trunk4.10 up\r\n<NAME>",
        "Interface PHY\r\nGigabitEthernet0/0/1 up\r\n  GigabitEthernet0/0/2 up\r\nEth-Trunk4.10 up\r\n<NAME>");
    add("sub-interfaces, short names", huawei, brief,
        "GE0/0/1 up\r\nGE0/0/1.20 up\r\nMultiGE0/0/2.1 up\r\n25GE0/0/1.1 up\r\n<NAME>", "GE0/0/1 up\r\n<NAME>");
    keep("no sub-interfaces", {kHuawei}, brief,
         "Interface PHY\r\nGigabitEthernet15/1/0(10G) up\r\nGigabitEthernet0/0/1 up "
         "0.01%\r\nVlanif1.5\r\nGigabitEthernet0/0/ up\r\n<GigabitEthernet0/0/1.20>");
    add("sub-interfaces of faster ports", huawei, brief,
        "10GE0/0/1.1 up\r\n25GE0/0/1.1 up\r\n40GE0/0/1.1 up\r\n100GE0/0/1.1 up\r\nGE0/0/1 up\r\n<NAME>",
        "GE0/0/1 up\r\n<NAME>");
    add("25-gigabit ports first", {kHuawei}, brief, "25GE0/0/1 up\r\nGigabitEthernet0/0/1 up\r\n<NAME>",
        "GigabitEthernet0/0/1 up\r\n25GE0/0/1 up\r\n<NAME>");
    add("faster ports first", {kHuawei}, brief,
        "Interface PHY\r\n40GE0/0/1 up\r\n 40GE0/0/2 down\r\n10GE0/0/1 up\r\n100GE0/0/1 up\r\nGigabitEthernet0/0/1 "
        "up\r\nXGigabitEthernet0/0/1 up\r\n<NAME>",
        "Interface PHY\r\nGigabitEthernet0/0/1 up\r\nXGigabitEthernet0/0/1 up\r\n10GE0/0/1 up\r\n40GE0/0/1 up\r\n "
        "40GE0/0/2 down\r\n100GE0/0/1 up\r\n<NAME>");
    keep("faster ports last", {kHuawei}, brief,
         "GigabitEthernet0/0/1 up\r\nXGigabitEthernet0/0/1 up\r\n40GE0/0/1 up\r\n<40GE0/0/1>");
    keep("faster ports first, short names", {kSub}, brief, "10GE0/0/1 up\r\nGE0/0/1 up\r\n40GE0/0/1 up\r\n<NAME>");
    keep("another listing", {kHuawei}, "display interface", "40GE0/0/1 up\r\nGigabitEthernet0/0/1.20 up\r\n<NAME>");
    keep("a listing whose name goes on", {kHuawei}, "display interface briefly",
         "40GE0/0/1 up\r\nGigabitEthernet0/0/1.20 up\r\n<NAME>");
    add("VLAN count", huawei, "display vlan", "The total number of vlans is : 2\r\n<NAME>",
        "The total number of VLANs is : 2\r\n<NAME>");
    keep("VLAN count, as expected", huawei, "display vlan", "The total number of VLANs is : 2\r\n1 vlans\r\n<NAME>");
    add("PoE header", huawei, "display poe power", "PortName  Class\r\nGE0/0/1  0\r\n<NAME>",
        "Interface  Class\r\nGE0/0/1  0\r\n<NAME>");
    keep("PoE, word elsewhere", huawei, "display poe power", "Interface Class\r\nx PortName\r\n<NAME>");
    add("snooping, short names", {kSub}, "display igmp snooping configuration",
        "IGMP Snooping Configuration for VLAN 20\r\n igmp snooping enable\r\n[NAME]",
        "igmp-snooping configuration for VLAN 20\r\n igmp snooping enable\r\n[NAME]");
    add("snooping, other capitals", {kSub}, "display igmp snooping configuration",
        "IGMP snooping configuration of VLAN 20\r\n<NAME>", "igmp-snooping configuration of VLAN 20\r\n<NAME>");
    add("no snooping, short names", {kSub}, "display igmp snooping configuration",
        "Info: There is no igmp snooping configuration.\r\n<NAME>",
        "Info: There is no igmp-snooping configuration.\r\n<NAME>");
    add("snooping off, short names", {kSub}, "display igmp snooping configuration",
        "Error: Please enable IGMP snooping in the global view first.\r\n<NAME>",
        "Error: Please enable IGMP snooping in the global view first (igmp-snooping configuration).\r\n<NAME>");
    keep("snooping", {kHuawei}, "display igmp-snooping configuration",
         "IGMP Snooping Configuration for VLAN 20\r\n<NAME>");

    add("management ports", hua3, brief, "Interface Link\r\nM-GE0/0/0 UP\r\nMGE0/0/0 UP\r\nGE1/0/1 UP\r\n<NAME>",
        "Interface Link\r\nGE1/0/1 UP\r\n<NAME>");
    add("faster ports", hua3, brief, "GE1/0/1 UP\r\n FGE1/0/49 DOWN\r\nHGE1/0/50 DOWN\r\nWGE1/0/51 UP\r\n<NAME>",
        "GE1/0/1 UP\r\n 40GE1/0/49 DOWN\r\n100GE1/0/50 DOWN\r\n25GE1/0/51 UP\r\n<NAME>");
    add("sub-interfaces", hua3, brief, "GE1/0/1 UP\r\nGE1/0/1.20 UP\r\nXGE1/0/25.1 UP\r\nFGE1/0/49.1 UP\r\n<NAME>",
        "GE1/0/1 UP\r\n<NAME>");
    keep("nothing to correct", hua3, brief,
         "Interface Link Speed\r\nGE1/0/1 UP 1G(a) a M-GE0/0/0 FGE\r\nXGE1/0/25 UP\r\nBAGG1 UP\r\n<FGE>");
    add("sub-interfaces of faster ports", hua3, brief, "WGE1/0/49.1 UP\r\nHGE1/0/50.1 UP\r\nGE1/0/1 UP\r\n<NAME>",
        "GE1/0/1 UP\r\n<NAME>");
    add("transceivers of faster ports", hua3, "display transceiver interface",
        "Twenty-FiveGigE1/0/49 transceiver information:\r\nHundredGigE1/0/50 transceiver information:\r\n<NAME>",
        "WGE1/0/49 transceiver information:\r\nHGE1/0/50 transceiver information:\r\n<NAME>");
    add("transceivers", hua3, "display transceiver interface",
        "GigabitEthernet1/0/24 transceiver information:\r\n  Transceiver Type : 1\r\nTen-GigabitEthernet1/0/25 "
        "transceiver information:\r\nError: The transceiver is absent.\r\nFortyGigE1/0/49 transceiver "
        "information:\r\n<NAME>",
        "GE1/0/24 transceiver information:\r\n  Transceiver Type : 1\r\nXGE1/0/25 transceiver is absent, no "
        "transceiver information.\r\nFGE1/0/49 transceiver information:\r\n<NAME>");
    keep("transceivers, short names", hua3, "display transceiver interface",
         "GE1/0/24 transceiver information:\r\n  Transceiver Type : 1\r\n<NAME>");
    add("groups", hua3, "display link-aggregation verbose", "Aggregation Interface: Bridge-Aggregation1\r\n<NAME>",
        "Aggregate Interface: Bridge-Aggregation1\r\n<NAME>");
    keep("groups, as expected", hua3, "display link-aggregation verbose",
         "Aggregate Interface: Bridge-Aggregation1\r\nAggregation Mode: Dynamic\r\n<NAME>");
    add("VLAN count", hua3, "display vlan",
        " Total 3 VLAN exist(s).\r\n The following VLANs exist:\r\n 1(default), 20\r\n<NAME>",
        " Total 3 VLAN exist(s). (Total VLANs)\r\n The VLANs include:\r\n 1(default), 20\r\n<NAME>");
    keep("VLAN count, as expected", hua3, "display vlan",
         " Total VLANs: 3\r\n The VLANs include:\r\n 1(default), 20\r\n<NAME>");
    keep("long names elsewhere", hua3, "display mirroring-group all",
         "GigabitEthernet1/0/2 inbound\r\nlogin:\r\n<NAME>");
}

void TestDeviceDescriptions::rule_reply()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, line);
    QFETCH(QByteArray, reply);
    QFETCH(QByteArray, expected);
    const auto description = shipped(file);
    const RuledReply ruled = applyReplyRules(description->replyRules, line, reply);
    QCOMPARE(ruled.reply, expected);
    QCOMPARE(ruled.fired.isEmpty(), reply == expected);
}

void TestDeviceDescriptions::rule_loginDialogue_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QByteArray>("expected");
    const auto add = [](const char *tag, const QStringList &files, const char *reply, const char *expected) {
        for (const QString &file : files)
            QTest::addRow("%s, %s", qPrintable(file), tag) << file << QByteArray(reply) << QByteArray(expected);
    };
    const QStringList huawei{kHuawei, kSub};
    const QStringList hua3{kHua3};
    add("prompt", huawei, "\r\nLogin authentication\r\n\r\nUsername:", "\r\nLogin authentication\r\n\r\nUsername:");
    add("heading", hua3, "\r\nLogin authentication\r\n\r\nPassword:", "\r\n\r\nPassword:");
    add("heading, user name", hua3, "\r\nLogin authentication\r\n\r\nUsername:", "\r\n\r\nUsername:");
    add("heading within a line", hua3, "\r\nNo Login authentication\r\n", "\r\nNo Login authentication\r\n");
    add("lower case", kFiles, "\r\nusername:", "\r\nUsername:");
    add("lower-case password", kFiles, "admin\r\npassword: ", "admin\r\nPassword: ");
    add("login", hua3, "\r\nlogin: ", "\r\nLogin: ");
    add("login", huawei, "\r\nlogin: ", "\r\nUsername: ");
    add("Login", huawei, "\r\nLogin: ", "\r\nUsername: ");
    add("login within a line", kFiles, "Last successful login: yesterday\r\n<NAME>",
        "Last successful login: yesterday\r\n<NAME>");
    add("failure and prompt in one burst", huawei,
        "\r\nAuthentication fail\r\n\r\nUsername:", "\r\nAuthentication fail\r\n");
    add("failure, other wording", huawei, "\r\nError: Username or password error.\r\n\r\nUsername:",
        "\r\nError: Authentication fail (wrong user name or password).\r\n");
    add("password only", huawei,
        "\r\nError: The password is invalid.\r\n\r\nPassword:", "\r\nError: The password is invalid.\r\n");
    add("failure", hua3, "\r\n% Authentication failed.\r\n\r\nlogin: ", "\r\n% authentication failed.\r\n");
    add("failure, older wording", hua3, "\r\nAuthentication fail\r\n\r\nUsername:", "\r\nauthentication failed\r\n");
    add("failure names the login", hua3, "\r\nLogin failed!\r\n\r\nlogin: ", "\r\nauthentication failed!\r\n");
    add("failure, as expected", hua3,
        "\r\nAAA authentication failed\r\nUsername:", "\r\nAAA authentication failed\r\n");
    add("login incorrect", hua3, "\r\nLogin incorrect\r\nlogin: ", "\r\nauthentication failed\r\n");
    add("invalid password", kFiles, "\r\nInvalid password\r\n\r\nPassword:", "\r\nInvalid password\r\n");
    add("failure, line not complete", huawei, "\r\nAuthentication fail", "\r\nAuthentication fail");
    add("success", huawei, "\r\nInfo: The max number of VTY users is 8.\r\n<NAME>",
        "\r\nInfo: The max number of VTY users is 8.\r\n<NAME>");
}

void TestDeviceDescriptions::rule_loginDialogue()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, reply);
    QFETCH(QByteArray, expected);
    const auto description = shipped(file);
    const RuledReply ruled = applyLoginRules(description->replyRules, reply);
    QCOMPARE(ruled.reply, expected);
    QCOMPARE(ruled.fired.isEmpty(), reply == expected);
    // A block's reply is not a login dialogue.
    QCOMPARE(applyReplyRules(description->replyRules, "display clock", reply).reply, reply);
}

// 1 MiB of the dearest lines. A quadratic rule would run into the time limit.
void TestDeviceDescriptions::rules_hugeReply_takeLinearTime()
{
    const QByteArrayList units{"GigabitEthernet0/0/1.20\r\n",
                               "40GE1/0/1\r\n",
                               QByteArray(4096, '1') + "\r\n",
                               "FGE1/0/1\r\n",
                               "Ten-GigabitEthernet",
                               "GigabitEthernet1/0/1 transceiver information:\r\n",
                               QByteArray(64, ' ')};
    const QByteArrayList lines{"display interface brief", "display transceiver interface"};
    for (const QString &file : kFiles) {
        const auto description = shipped(file);
        for (const QByteArray &unit : units) {
            const QByteArray reply = unit.repeated(1048576 / unit.size()) + "<NAME>";
            for (const QByteArray &line : lines)
                QVERIFY(applyReplyRules(description->replyRules, line, reply).reply.endsWith("<NAME>"));
        }
    }
}

QTEST_GUILESS_MAIN(TestDeviceDescriptions)
#include "tst_devicedescriptions.moc"
