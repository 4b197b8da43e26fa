#include <findinggroups.h>

#include <QtTest/QtTest>

namespace {

QVariantMap finding(const char *abnormalType, const char *messageType, const char *source, const char *timestamp)
{
    return {{QStringLiteral("abnormalType"), QString::fromUtf8(abnormalType)},
            {QStringLiteral("messageType"), QString::fromUtf8(messageType)},
            {QStringLiteral("sourceIp"), QString::fromUtf8(source)},
            {QStringLiteral("sequenceId"), QStringLiteral("1")},
            {QStringLiteral("timestamp"), QString::fromUtf8(timestamp)}};
}

QStringList described(const QVariantList &findings)
{
    QStringList lines;
    for (const FindingGroup &group : groupFindings(findings)) {
        lines.append(QStringList{group.abnormalType, group.messageType, group.source, QString::number(group.count),
                                 group.first, group.last}
                         .join(QLatin1Char('|')));
    }
    return lines;
}

} // namespace

class TestFindingGroups : public QObject
{
    Q_OBJECT

private slots:
    void groupFindings_nothing();
    void groupFindings_countsAndSpans();
    void groupFindings_rangeOfTwoTimes();
    void groupFindings_orderOfKindsAndAddresses();
    void inAddressOrder_isNumerical();
};

void TestFindingGroups::groupFindings_nothing()
{
    QVERIFY(groupFindings({}).empty());
}

void TestFindingGroups::groupFindings_countsAndSpans()
{
    // Not in order of time, as nothing promises.
    const QVariantList findings{finding("从节点未回复", "DELAY_REQ", "10.0.0.5", "2026-11-20 15:34:27.000"),
                                finding("从节点未回复", "DELAY_REQ", "10.0.0.5", "2026-11-20 15:34:26.000"),
                                finding("从节点未回复", "DELAY_REQ", "10.0.0.5", "2026-11-20 15:34:29.000"),
                                finding("从节点未回复", "DELAY_REQ", "10.0.0.6", "2026-11-20 15:34:28.000")};
    const QStringList expected{
        QStringLiteral("从节点未回复|DELAY_REQ|10.0.0.5|3|2026-11-20 15:34:26.000|2026-11-20 15:34:29.000"),
        QStringLiteral("从节点未回复|DELAY_REQ|10.0.0.6|1|2026-11-20 15:34:28.000|2026-11-20 15:34:28.000")};
    QCOMPARE(described(findings), expected);
}

void TestFindingGroups::groupFindings_rangeOfTwoTimes()
{
    const QVariantList findings{
        finding("时间间隔异常", "Sync", "10.0.0.1", "2026-11-20 15:34:20.000 ~ 2026-11-20 15:34:30.000"),
        finding("时间间隔异常", "Sync", "10.0.0.1", "2026-11-20 15:34:05.000 ~ 2026-11-20 15:34:07.500")};
    const QStringList expected{
        QStringLiteral("时间间隔异常|Sync|10.0.0.1|2|2026-11-20 15:34:05.000|2026-11-20 15:34:30.000")};
    QCOMPARE(described(findings), expected);
}

void TestFindingGroups::groupFindings_orderOfKindsAndAddresses()
{
    const char *time = "2026-11-20 15:34:20.000";
    const QVariantList findings{
        finding("another", "SYNC", "10.0.0.1", time),
        finding("主节点未回复", "DELAY_RESP", "10.0.0.1", time),
        finding("Delay_Resp超时", "DELAY_RESP", "10.0.0.1", time),
        finding("从节点未回复", "DELAY_REQ", "10.0.0.10", time),
        finding("从节点未回复", "DELAY_REQ", "10.0.0.9", time),
        finding("从节点未回复", "DELAY_REQ", "未知从节点10", time),
        finding("从节点未回复", "DELAY_REQ", "未知从节点9", time),
        finding("时间间隔异常", "Sync", "10.0.0.100", time),
        finding("时间间隔异常", "Announce", "10.0.0.100", time),
    };
    QStringList kinds;
    for (const FindingGroup &group : groupFindings(findings))
        kinds.append(group.abnormalType + QLatin1Char('|') + group.messageType + QLatin1Char('|') + group.source);
    const QStringList expected{
        QStringLiteral("时间间隔异常|Announce|10.0.0.100"),
        QStringLiteral("时间间隔异常|Sync|10.0.0.100"),
        QStringLiteral("从节点未回复|DELAY_REQ|10.0.0.9"),
        QStringLiteral("从节点未回复|DELAY_REQ|10.0.0.10"),
        QStringLiteral("从节点未回复|DELAY_REQ|未知从节点9"),
        QStringLiteral("从节点未回复|DELAY_REQ|未知从节点10"),
        QStringLiteral("Delay_Resp超时|DELAY_RESP|10.0.0.1"),
        QStringLiteral("主节点未回复|DELAY_RESP|10.0.0.1"),
        QStringLiteral("another|SYNC|10.0.0.1"),
    };
    QCOMPARE(kinds, expected);
}

void TestFindingGroups::inAddressOrder_isNumerical()
{
    const QStringList mixed{QStringLiteral("192.168.100.100"), QStringLiteral("192.168.100.9"), QString(),
                            QStringLiteral("10.0.0.200"), QStringLiteral("192.168.100.10")};
    const QStringList expected{QString(), QStringLiteral("10.0.0.200"), QStringLiteral("192.168.100.9"),
                               QStringLiteral("192.168.100.10"), QStringLiteral("192.168.100.100")};
    QCOMPARE(inAddressOrder(mixed), expected);
}

QTEST_APPLESS_MAIN(TestFindingGroups)

#include "tst_findinggroups.moc"
