#include <featureoptions.h>

#include <QtTest/QtTest>

namespace {

FeatureRequest take(const QStringList &words)
{
    const Arguments arguments = parseArguments(words, featureOptions(), Language::English);
    if (arguments.error.isEmpty())
        return takeFeatures(arguments, Language::English);
    FeatureRequest refused;
    refused.error = arguments.error;
    return refused;
}

bool isRange(const std::optional<NumberRange> &range, int first, int last)
{
    return range && range->first == first && range->last == last;
}

} // namespace

class TestFeatureOptions : public QObject
{
    Q_OBJECT

private slots:
    void vlan_isTaken();
    void vlan_asTrunk_ofOnePort();
    void snooping_isTaken();
    void group_isTaken();
    void mirror_isTaken();
    void negotiationAndPoe_areTaken();
    void ports_areTaken();
    void allTogether_areEightFeatures();
    void badOption_isRefused_data();
    void badOption_isRefused();
};

void TestFeatureOptions::vlan_isTaken()
{
    const FeatureRequest request = take({"--vlan", "10", "--ports", "1-8", "--uplinks", "1-4", "--access"});
    QCOMPARE(request.error, QString());
    QVERIFY(request.vlan);
    QCOMPARE(request.vlan->id, 10);
    QVERIFY(!request.vlan->isTrunk);
    QVERIFY(isRange(request.vlan->ports, 1, 8));
    QVERIFY(isRange(request.vlan->uplinks, 1, 4));
    QVERIFY(!request.multicast && !request.querier && !request.group && !request.mirror && !request.negotiation
            && !request.poe && !request.ports);
}

void TestFeatureOptions::vlan_asTrunk_ofOnePort()
{
    const FeatureRequest request = take({"--vlan=10", "--uplinks=3", "--trunk"});
    QCOMPARE(request.error, QString());
    QVERIFY(request.vlan->isTrunk);
    QVERIFY(!request.vlan->ports);
    QVERIFY(isRange(request.vlan->uplinks, 3, 3));
}

void TestFeatureOptions::snooping_isTaken()
{
    const FeatureRequest request = take({"--multicast", "on", "--multicast-vlan", "20", "--querier", "off"});
    QCOMPARE(request.error, QString());
    QVERIFY(request.multicast->isOn);
    QCOMPARE(*request.multicast->vlan, 20);
    QVERIFY(!request.querier->isOn);
    QVERIFY(!request.querier->vlan);
}

void TestFeatureOptions::group_isTaken()
{
    const FeatureRequest request = take({"--group", "2", "--group-ports", "5-6"});
    QCOMPARE(request.error, QString());
    QCOMPARE(request.group->id, 2);
    QVERIFY(request.group->isTrunk);
    QVERIFY(isRange(request.group->ports, 5, 6));
    QVERIFY(!request.group->uplinks);
    QVERIFY(!take({"--group", "2", "--group-uplinks", "1-2", "--group-access"}).group->isTrunk);
}

void TestFeatureOptions::mirror_isTaken()
{
    const FeatureRequest request = take({"--mirror", "on", "--from", "g0/0/2", "--to", "g0/0/10", "--mirror-id", "3"});
    QCOMPARE(request.error, QString());
    QVERIFY(request.mirror->isOn);
    QCOMPARE(request.mirror->id, 3);
    QCOMPARE(request.mirror->from, QStringLiteral("g0/0/2"));
    QCOMPARE(request.mirror->to, QStringLiteral("g0/0/10"));
}

void TestFeatureOptions::negotiationAndPoe_areTaken()
{
    const FeatureRequest request = take(
        {"--autoneg", "off", "--autoneg-port", "g0/0/5", "--poe", "on", "--poe-port", "all", "--poe-ports", "1-8"});
    QCOMPARE(request.error, QString());
    QVERIFY(!request.negotiation->isOn);
    QCOMPARE(request.negotiation->port, QStringLiteral("g0/0/5"));
    QVERIFY(request.poe->isOn);
    QCOMPARE(request.poe->port, QStringLiteral("all"));
    QVERIFY(isRange(request.poe->ports, 1, 8));
}

void TestFeatureOptions::ports_areTaken()
{
    const FeatureRequest off = take({"--shutdown-ports", "g0/0/3,xg0/0/1"});
    QCOMPARE(off.error, QString());
    QVERIFY(!off.ports->isOn);
    QCOMPARE(off.ports->ports, QStringList({"g0/0/3", "xg0/0/1"}));
    const FeatureRequest on = take({"--enable-ports", "g0/0/3"});
    QVERIFY(on.ports->isOn);
    QCOMPARE(on.ports->ports, QStringList("g0/0/3"));
}

void TestFeatureOptions::allTogether_areEightFeatures()
{
    const FeatureRequest request =
        take({"--vlan",     "10",      "--ports",        "1-8",   "--multicast",    "on",     "--querier", "on",
              "--group",    "1",       "--group-ports",  "9-10",  "--mirror",       "on",     "--from",    "g0/0/2",
              "--to",       "g0/0/12", "--autoneg",      "on",    "--autoneg-port", "g0/0/5", "--poe",     "on",
              "--poe-port", "g0/0/3",  "--enable-ports", "g0/0/7"});
    QCOMPARE(request.error, QString());
    QVERIFY(request.vlan && request.multicast && request.querier && request.group && request.mirror
            && request.negotiation && request.poe && request.ports);
}

void TestFeatureOptions::badOption_isRefused_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QString>("error");

    QTest::newRow("nothing") << QStringList{} << "nothing to apply: name at least one setting";
    QTest::newRow("a VLAN without ports") << QStringList{"--vlan", "10"} << "--vlan needs --ports or --uplinks";
    QTest::newRow("ports without a VLAN") << QStringList{"--ports", "1-8"} << "--ports goes with --vlan";
    QTest::newRow("a word for a VLAN") << QStringList{"--vlan", "ten", "--ports", "1"}
                                       << "--vlan takes a whole number, not 'ten'";
    for (const char *range : {"8-1", "0-3", "a-b", "1-", "-3", "1-2-3", "", "1,2"})
        QTest::newRow((QByteArray("range ") + range).constData())
            << QStringList{"--vlan", "10", "--ports", range}
            << QStringLiteral("--ports takes port numbers such as 5 or 1-8, not '%1'").arg(QLatin1String(range));
    QTest::newRow("access and trunk") << QStringList{"--vlan", "10", "--ports", "1", "--access", "--trunk"}
                                      << "--access and --trunk exclude each other";
    QTest::newRow("multicast") << QStringList{"--multicast", "yes"} << "--multicast takes on or off, not 'yes'";
    QTest::newRow("a VLAN without multicast")
        << QStringList{"--multicast-vlan", "3"} << "--multicast-vlan goes with --multicast";
    QTest::newRow("a group without ports")
        << QStringList{"--group", "1"} << "--group needs --group-ports or --group-uplinks";
    QTest::newRow("a mirror without a source")
        << QStringList{"--mirror", "on", "--to", "g0/0/1"} << "--mirror needs --from";
    QTest::newRow("a mirror without a target")
        << QStringList{"--mirror", "on", "--from", "g0/0/1"} << "--mirror needs --to";
    QTest::newRow("negotiation without a port") << QStringList{"--autoneg", "on"} << "--autoneg needs --autoneg-port";
    QTest::newRow("PoE without a port") << QStringList{"--poe", "on"} << "--poe needs --poe-port";
    QTest::newRow("on and off at once") << QStringList{"--enable-ports", "g0/0/1", "--shutdown-ports", "g0/0/2"}
                                        << "--enable-ports and --shutdown-ports exclude each other";
    QTest::newRow("a list with a hole") << QStringList{"--enable-ports", "g0/0/1,,g0/0/2"}
                                        << "--enable-ports takes port names separated by commas, such as "
                                           "g0/0/3,g0/0/5";
    QTest::newRow("an empty list") << QStringList{"--shutdown-ports", ""}
                                   << "--shutdown-ports takes port names separated by commas, such as g0/0/3,g0/0/5";
}

void TestFeatureOptions::badOption_isRefused()
{
    QFETCH(QStringList, words);
    QTEST(take(words).error, "error");
}

QTEST_APPLESS_MAIN(TestFeatureOptions)

#include "tst_featureoptions.moc"
