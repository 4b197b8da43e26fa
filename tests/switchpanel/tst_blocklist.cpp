#include <blocklist.h>

#include <QtCore/QJsonObject>
#include <QtTest/QtTest>

namespace {

const std::vector<CommandBlock> kBlocks{
    {QStringLiteral("VLAN assignment"), QByteArrayLiteral("system-view\r\nvlan 10\r\nreturn\r\n")},
    {QStringLiteral("PoE"), QByteArrayLiteral("display poe power\r\nspace")},
};

} // namespace

class TestBlockList : public QObject
{
    Q_OBJECT

private slots:
    void lines_showEveryByteOnce();
    void noBlocks_areNoLines();
    void bytes_areVisible_data();
    void bytes_areVisible();
    void json_isExact();
};

void TestBlockList::lines_showEveryByteOnce()
{
    const QStringList expected{
        "1. VLAN assignment (30 bytes)",
        "   system-view\\r\\n",
        "   vlan 10\\r\\n",
        "   return\\r\\n",
        "2. PoE (24 bytes)",
        "   display poe power\\r\\n",
        "   space",
    };
    QCOMPARE(blockLines(kBlocks, Language::English), expected);
    QCOMPARE(blockLines(kBlocks, Language::Chinese).first(), QStringLiteral("1. VLAN assignment（30字节）"));
}

void TestBlockList::noBlocks_areNoLines()
{
    QCOMPARE(blockLines({}, Language::English), QStringList());
}

void TestBlockList::bytes_areVisible_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");

    QTest::newRow("line end") << QByteArray("a\r\n") << "a\\r\\n";
    QTest::newRow("backslash") << QByteArray("a\\r") << "a\\\\r";
    QTest::newRow("control characters") << QByteArray("\x1b[D\x7f\x01") << "\\x1b[D\\x7f\\x01";
    QTest::newRow("beyond ASCII") << QStringLiteral("描述").toUtf8() << QStringLiteral("描述");
    QTest::newRow("blanks") << QByteArray("    \r\n") << "    \\r\\n";
}

void TestBlockList::bytes_areVisible()
{
    QFETCH(QByteArray, bytes);
    QTEST(visibleBytes(bytes), "text");
}

void TestBlockList::json_isExact()
{
    const QJsonArray array = blocksJson(kBlocks);
    QCOMPARE(array.size(), 2);
    for (int i = 0; i < array.size(); ++i) {
        const CommandBlock &block = kBlocks[static_cast<std::size_t>(i)];
        QCOMPARE(array[i].toObject()["label"].toString(), block.label);
        QCOMPARE(array[i].toObject()["bytes"].toString().toUtf8(), block.bytes);
    }
}

QTEST_APPLESS_MAIN(TestBlockList)

#include "tst_blocklist.moc"
