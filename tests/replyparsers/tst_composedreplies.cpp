// Whole replies as a switch writes them, from data/; and recorded ones, when SWITCHPANEL_TRANSCRIPTS names their
// folder.
#include "replydescription.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtTest/QtTest>

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(path));
    return file.readAll();
}

const InterfaceNamingProfile &namingCalled(const QString &name)
{
    if (name == QLatin1String("huawei"))
        return huaweiNaming();
    if (name == QLatin1String("huawei-sub"))
        return huaweiSubModelNaming();
    if (name == QLatin1String("hua3"))
        return hua3Naming();
    qFatal("no naming %s", qPrintable(name));
}

Question questionIn(const QJsonObject &object)
{
    Question question;
    question.naming = namingCalled(object.value(QLatin1String("naming")).toString(QStringLiteral("huawei")));
    question.label = object.value(QLatin1String("label")).toString();
    question.askedPort = object.value(QLatin1String("askedPort")).toString();
    question.isLoggedIn = object.value(QLatin1String("isLoggedIn")).toBool(true);
    question.isAggregationSwitch = object.value(QLatin1String("isAggregationSwitch")).toBool();
    return question;
}

QStringList expectedIn(const QJsonObject &object)
{
    QStringList lines;
    for (const QJsonValue line : object.value(QLatin1String("expected")).toArray())
        lines.append(line.toString());
    return lines;
}

//! The first difference, for a message; empty when there is none.
QString difference(const QStringList &actual, const QStringList &expected)
{
    for (int i = 0; i < qMax(actual.size(), expected.size()); ++i) {
        if (actual.value(i) != expected.value(i)) {
            return QStringLiteral("line %1\n   actual: %2\n expected: %3")
                .arg(i + 1)
                .arg(actual.value(i), expected.value(i));
        }
    }
    return {};
}

//! What stands in the JSON file beside the reply \a path.
QJsonObject readingBeside(const QString &path)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(contents(path.chopped(4) + QStringLiteral(".json")), &error);
    if (error.error != QJsonParseError::NoError)
        qFatal("%s: %s", qPrintable(path), qPrintable(error.errorString()));
    return document.object();
}

} // namespace

class TestComposedReplies : public QObject
{
    Q_OBJECT

private slots:
    void reply_isReadAsExpected_data();
    void reply_isReadAsExpected();
};

void TestComposedReplies::reply_isReadAsExpected_data()
{
    QTest::addColumn<QString>("path");
    const QDir folder(QStringLiteral(SWITCHPANEL_REPLY_FOLDER));
    const QStringList names = folder.entryList({QStringLiteral("*.raw")}, QDir::Files, QDir::Name);
    QVERIFY(!names.isEmpty());
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << folder.filePath(name);
}

void TestComposedReplies::reply_isReadAsExpected()
{
    QFETCH(QString, path);
    const QJsonObject reading = readingBeside(path);
    const bool isHua3 = reading.value(QLatin1String("naming")) == QLatin1String("hua3");
    const Question question = questionIn(reading);
    const QStringList actual =
        isHua3 ? describeHua3Reply(contents(path), question) : describeReply(contents(path), question);
    const QStringList expected = expectedIn(reading);
    if (actual != expected)
        QFAIL(qPrintable(difference(actual, expected)));
}

//! Replies of real switches, kept outside this repository.
class TestRecordedReplies : public QObject
{
    Q_OBJECT

public:
    explicit TestRecordedReplies(const QString &folder)
        : _folder(folder)
    {}

private slots:
    void inventory_data();
    void inventory();
    void otherReply_data();
    void otherReply();
    void dialogue_data();
    void dialogue();

private:
    //! A recorded reply has LF line ends and neither echo nor prompt: both put back.
    QByteArray replyTo(const QByteArray &command, const QString &name) const;

    const QDir _folder;
};

QByteArray TestRecordedReplies::replyTo(const QByteArray &command, const QString &name) const
{
    QByteArray text = contents(_folder.filePath(name));
    text.replace("\n", "\r\n");
    return command + "\r\n" + text + "\r\n<Switch>";
}

void TestRecordedReplies::inventory_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("slot");
    QTest::addColumn<bool>("isSubModel");
    QTest::addColumn<int>("downPorts");
    QTest::addColumn<QString>("downRange");
    QTest::addColumn<int>("upPorts");
    QTest::addColumn<QString>("upRange");
    const auto row = [](const char *name, int slot, bool isSubModel, int downPorts, const char *downRange, int upPorts,
                        const char *upRange) {
        QTest::newRow(name) << QString::fromLatin1(name) << slot << isSubModel << downPorts
                            << QString::fromLatin1(downRange) << upPorts << QString::fromLatin1(upRange);
    };
    row("huawei_24ge_4xge.txt", 0, false, 24, "down range 1-24", 4, "up range 1-4");
    row("sub_ge24_10ge4.txt", 0, true, 24, "down range 1-24", 4, "up range 1-4");
    row("sub_10ge_only_40ge.txt", 0, true, 24, "down range 1-24", 0, "up range 1-6");
    row("interface_brief_router.txt", 0, false, 6, "down range 0-5", 0, "up range not found");
    row("interface_brief_trunks_10g.txt", 8, false, 11, "down range 0-23", 0, "up range not found");
    row("interface_description.txt", 0, true, 28, "down range 1-28", 0, "up range not found");
}

void TestRecordedReplies::inventory()
{
    QFETCH(QString, name);
    const reply::ReplyText text(replyTo("display interface brief", name));
    const auto inventory = readHuaweiPorts(text, huaweiNaming(), false);
    QVERIFY(inventory);
    const QStringList description = describe(*inventory);
    QTEST(inventory->slot, "slot");
    QTEST(inventory->isSubModel, "isSubModel");
    QTEST(inventory->downPorts.size(), "downPorts");
    QTEST(inventory->upPorts.size(), "upPorts");
    QTEST(description.at(description.size() - 2), "downRange");
    QTEST(description.last(), "upRange");
}

void TestRecordedReplies::otherReply_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("VLANs") << QStringLiteral("vlan_1.txt") << QByteArray("display vlan")
                           << QStringList{QStringLiteral("6 info every line"), QStringLiteral("6 waiting ended")};
    // The count is in lower case here: what such releases need is a rule of the device description.
    QTest::newRow("VLANs of an access point")
        << QStringLiteral("vlan_ap.txt") << QByteArray("display vlan") << QStringList();
    QTest::newRow("group") << QStringLiteral("eth_trunk_1.txt") << QByteArray("display eth-trunk 1") << QStringList();
    QTest::newRow("version") << QStringLiteral("version_3.txt") << QByteArray("display version") << QStringList();
}

void TestRecordedReplies::otherReply()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, command);
    QTEST(describeReply(replyTo(command, name), Question()), "expected");
}

void TestRecordedReplies::dialogue_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *name, const QStringList &expected) {
        QTest::newRow(name) << QStringLiteral("dialog_%1.raw.txt").arg(QLatin1String(name)) << expected;
    };
    row("console_test_login_and_password_from_the_first_try", {QStringLiteral("12 user name")});
    row("console_test_login_and_password_retry", {QStringLiteral("12 user name")});
    row("console_test_password_from_the_first_try", {QStringLiteral("12 password")});
    row("mock_test_display_pager", {QStringLiteral("12 ready")});
    row("mock_test_invalid_display_version", {QStringLiteral("12 ready"), QStringLiteral("15 command error")});
    row("mock_test_no_permissions", {QStringLiteral("12 ready")});
}

void TestRecordedReplies::dialogue()
{
    QFETCH(QString, name);
    Question question;
    question.isLoggedIn = false;
    QTEST(describeReply(contents(_folder.filePath(name)), question), "expected");
}

int main(int argc, char **argv)
{
    TestComposedReplies composed;
    int failures = QTest::qExec(&composed, argc, argv);
    const QString folder = qEnvironmentVariable("SWITCHPANEL_TRANSCRIPTS");
    if (!folder.isEmpty()) {
        TestRecordedReplies recorded(folder);
        failures += QTest::qExec(&recorded, argc, argv);
    }
    return failures;
}

#include "tst_composedreplies.moc"
