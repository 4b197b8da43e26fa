#include "interfacenamingprofile.h"
#include "linepattern.h"

#include <QtCore/QRegExp>
#include <QtTest/QtTest>

#include <regex>

using Naming = InterfaceNamingProfile;
using reply::LinePattern;

Q_DECLARE_METATYPE(QString InterfaceNamingProfile::*)
Q_DECLARE_METATYPE(LinePattern::Dialect)

class TestInterfaceNamingProfile : public QObject
{
    Q_OBJECT

private slots:
    void profile_holdsTheDocumentedTexts_data();
    void profile_holdsTheDocumentedTexts();
    void profile_consistsOfTwentyFields();
    void take_hua3_leavesTheSeparator();
    void take_otherProfiles_replaceEverything();
    void pattern_compilesInItsEngineAndInOurs_data();
    void pattern_compilesInItsEngineAndInOurs();
};

void TestInterfaceNamingProfile::profile_holdsTheDocumentedTexts_data()
{
    QTest::addColumn<QString Naming::*>("field");
    QTest::addColumn<QString>("huawei");
    QTest::addColumn<QString>("hua3");
    QTest::addColumn<QString>("subModel");
    const auto row = [](const char *tag, QString Naming::*field, const char *huawei, const char *hua3,
                        const char *sub) {
        QTest::newRow(tag) << field << QString::fromLatin1(huawei) << QString::fromLatin1(hua3)
                           << QString::fromLatin1(sub);
    };
    row("downPortPrefix", &Naming::downPortPrefix, "g", "g", "GE");
    row("upPortPrefix", &Naming::upPortPrefix, "xg", "t", "10GE");
    row("upPort40Prefix", &Naming::upPort40Prefix, "40g", "40g", "40GE");
    row("linkDownPortPrefix", &Naming::linkDownPortPrefix, "g", "GigabitEthernet", "GE");
    row("linkUpPortPrefix", &Naming::linkUpPortPrefix, "xg", "Ten-GigabitEthernet", "10GE");
    row("linkUpPort40Prefix", &Naming::linkUpPort40Prefix, "40g", "40-GigabitEthernet", "40GE");
    row("portSeparator", &Naming::portSeparator, "-", nullptr, " ");
    row("multiPortName", &Naming::multiPortName, "GigabitEthernet", "GE", "MultiGE");
    row("tenGigExcludeKeyword", &Naming::tenGigExcludeKeyword, "XGigabitEthernet", "XGE", "10GE");
    row("configInterfaceKeyword", &Naming::configInterfaceKeyword, "interface GigabitEthernet", "interface GE",
        "interface MultiGE");
    row("mirrorPortKeyword", &Naming::mirrorPortKeyword, "GigabitEthernet", "GigabitEthernet", "MultiGE");
    row("interfaceCommandPrefix", &Naming::interfaceCommandPrefix, "interface GigabitEthernet", "interface GE",
        "interface MultiGE");
    row("mirrorPortName", &Naming::mirrorPortName, "GigabitEthernet", "GE", "MultiGE");
    row("observePortKeyword", &Naming::observePortKeyword, "Observe-port", "Observe-port", "Observe-port");
    row("inboundKeyword", &Naming::inboundKeyword, "Inbound", "Inbound", "Inbound");
    row("downPortPattern", &Naming::downPortPattern, "GigabitEthernet(\\d+/\\d+/\\d+)", "GE(\\d+/\\d+/\\d+)",
        "GE(\\d+/\\d+/\\d+)");
    row("upPortPattern", &Naming::upPortPattern, "XGigabitEthernet(\\d+/\\d+/\\d+)", "XGE(\\d+/\\d+/\\d+)",
        "10GE(\\d+/\\d+/\\d+)");
    row("observePortPattern", &Naming::observePortPattern,
        "Observe-port\\s+(\\d+)\\s*:\\s*GigabitEthernet\\d+/\\d+/(\\d+)",
        "Observe-port\\s+(\\d+)\\s*:\\s*GigabitEthernet\\d+/\\d+/(\\d+)",
        "Observe-port\\s+(\\d+)\\s*:\\s*MultiGE\\d+/\\d+/(\\d+)");
    row("inboundPortPattern", &Naming::inboundPortPattern, "\\s*\\d+\\s+GigabitEthernet\\d+/\\d+/(\\d+)\\s+Inbound",
        "\\s*\\d+\\s+GigabitEthernet\\d+/\\d+/(\\d+)\\s+Inbound", "\\s*\\d+\\s+MultiGE\\d+/\\d+/(\\d+)\\s+Inbound");
    row("autoNegInterfacePattern", &Naming::autoNegInterfacePattern, "GigabitEthernet0/0/(\\d+)", "GE0/0/(\\d+)",
        "MultiGE/0/(\\d+)");
}

void TestInterfaceNamingProfile::profile_holdsTheDocumentedTexts()
{
    QFETCH(QString Naming::*, field);
    QTEST(huaweiNaming().*field, "huawei");
    QTEST(hua3Naming().*field, "hua3");
    QTEST(huaweiSubModelNaming().*field, "subModel");
}

void TestInterfaceNamingProfile::profile_consistsOfTwentyFields()
{
    QCOMPARE(sizeof(Naming), 20 * sizeof(QString)); // a new field needs a row above
}

void TestInterfaceNamingProfile::take_hua3_leavesTheSeparator()
{
    for (const Naming &before : {huaweiNaming(), huaweiSubModelNaming()}) {
        Naming naming = before;
        naming.take(hua3Naming());
        QCOMPARE(naming.portSeparator, before.portSeparator);
        QCOMPARE(naming.upPortPrefix, QStringLiteral("t"));
    }
}

void TestInterfaceNamingProfile::take_otherProfiles_replaceEverything()
{
    Naming naming = huaweiNaming();
    naming.take(huaweiSubModelNaming());
    QCOMPARE(naming.portSeparator, QStringLiteral(" "));
    QCOMPARE(naming.autoNegInterfacePattern, huaweiSubModelNaming().autoNegInterfacePattern);
    naming.take(huaweiNaming());
    QCOMPARE(naming.portSeparator, QStringLiteral("-"));
    QCOMPARE(naming.downPortPrefix, QStringLiteral("g"));
}

void TestInterfaceNamingProfile::pattern_compilesInItsEngineAndInOurs_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<LinePattern::Dialect>("dialect");
    const auto rows = [](const char *name, const Naming &naming) {
        const auto row = [name](const char *field, const QString &pattern, LinePattern::Dialect dialect) {
            QTest::addRow("%s %s", name, field) << pattern << dialect;
        };
        row("down port", naming.downPortPattern, LinePattern::Dialect::EcmaScript);
        row("up port", naming.upPortPattern, LinePattern::Dialect::EcmaScript);
        row("down port of a module", naming.downPortPattern, LinePattern::Dialect::QtRegExp);
        row("up port of a module", naming.upPortPattern, LinePattern::Dialect::QtRegExp);
        row("observe port", naming.observePortPattern, LinePattern::Dialect::QtRegExp);
        row("inbound port", naming.inboundPortPattern, LinePattern::Dialect::QtRegExp);
        row("negotiating port", naming.autoNegInterfacePattern, LinePattern::Dialect::QtRegExp);
    };
    rows("huawei", huaweiNaming());
    rows("hua3", hua3Naming());
    rows("sub-model", huaweiSubModelNaming());
}

void TestInterfaceNamingProfile::pattern_compilesInItsEngineAndInOurs()
{
    QFETCH(QString, pattern);
    QFETCH(LinePattern::Dialect, dialect);
    QVERIFY(LinePattern(pattern, dialect).isValid());
    if (dialect == LinePattern::Dialect::QtRegExp) {
        QVERIFY(QRegExp(pattern).isValid());
        return;
    }
    const std::regex regex(pattern.toStdString()); // throws when broken
    QCOMPARE(regex.mark_count(), 1U);
}

QTEST_APPLESS_MAIN(TestInterfaceNamingProfile)
#include "tst_interfacenamingprofile.moc"
