#include <texttable.h>

#include <QtTest/QtTest>

class TestTextTable : public QObject
{
    Q_OBJECT

private slots:
    void displayWidth_countsTerminalCells_data();
    void displayWidth_countsTerminalCells();
    void elided_fitsTheWidth_data();
    void elided_fitsTheWidth();
    void printable_replacesControlCharacters();
    void lines_alignChineseAndLatinColumns();
    void lines_coloursDoNotWidenColumns();
    void lines_shortRowsAndEmptyCellsEndWithoutBlanks();
    void painter_withoutColours_leavesTextAlone();
};

void TestTextTable::displayWidth_countsTerminalCells_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");

    QTest::newRow("nothing") << "" << 0;
    QTest::newRow("Latin") << "Sync" << 4;
    QTest::newRow("Chinese") << "正常" << 4;
    QTest::newRow("mixed") << "Delay匹配" << 9;
    QTest::newRow("full-width punctuation") << "文件：" << 6;
    QTest::newRow("combining accent") << QString::fromUtf8("e\u0301") << 1;
    QTest::newRow("beyond the basic plane") << QString::fromUtf8("\U00020000\U0001F600") << 4;
    QTest::newRow("Hangul") << "한국" << 4;
    QTest::newRow("Cyrillic") << "да" << 2;
}

void TestTextTable::displayWidth_countsTerminalCells()
{
    QFETCH(QString, text);
    QTEST(displayWidth(text), "width");
}

void TestTextTable::elided_fitsTheWidth_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("cut");

    QTest::newRow("fits") << "capture.pcap" << 12 << "capture.pcap";
    QTest::newRow("middle") << "capture.pcap" << 9 << "cap...cap";
    QTest::newRow("wide characters are not halved") << "抓包文件抓包文件" << 10 << "抓...文件";
    QTest::newRow("room for little more than the dots") << "capture.pcap" << 4 << "...p";
    QTest::newRow("no room for dots") << "capture.pcap" << 2 << "ca";
    QTest::newRow("no room") << "capture.pcap" << 0 << "";
    QTest::newRow("less than none") << "capture.pcap" << -1 << "";
}

void TestTextTable::elided_fitsTheWidth()
{
    QFETCH(QString, text);
    QFETCH(int, width);
    QTEST(elided(text, width), "cut");
}

void TestTextTable::printable_replacesControlCharacters()
{
    QCOMPARE(printable(QStringLiteral("a\x1b[31m\n\tb\x7f抓")), QStringLiteral("a?[31m??b?抓"));
}

void TestTextTable::lines_alignChineseAndLatinColumns()
{
    TextTable table(2);
    table.alignRight(1);
    table.addRow({{QStringLiteral("从节点回复")}, {QStringLiteral("数量")}, {QStringLiteral("x")}});
    table.addRow({{QStringLiteral("Sync")}, {QStringLiteral("7")}, {QStringLiteral("y")}});
    table.addRow({{QStringLiteral("Delay匹配")}, {QStringLiteral("12345")}, {QStringLiteral("z")}});
    const QStringList expected{QStringLiteral("  从节点回复   数量  x"), //
                               QStringLiteral("  Sync            7  y"), //
                               QStringLiteral("  Delay匹配   12345  z")};
    QCOMPARE(table.lines(Painter(false)), expected);
}

void TestTextTable::lines_coloursDoNotWidenColumns()
{
    TextTable table(0);
    table.addRow({{QStringLiteral("ab"), Style::Bad}, {QStringLiteral("c")}});
    table.addRow({{QStringLiteral("abcd")}, {QStringLiteral("d"), Style::Good}});
    const QStringList expected{QStringLiteral("\x1b[31mab\x1b[0m    c"), QStringLiteral("abcd  \x1b[32md\x1b[0m")};
    QCOMPARE(table.lines(Painter(true)), expected);
}

void TestTextTable::lines_shortRowsAndEmptyCellsEndWithoutBlanks()
{
    TextTable table(1);
    table.alignRight(1);
    table.addRow({{QStringLiteral("first")}, {QStringLiteral("10")}, {QStringLiteral("last")}});
    table.addRow({{QStringLiteral("second")}});
    table.addRow({{QStringLiteral("third")}, {QString()}, {QString()}});
    table.addRow({{QString()}, {QStringLiteral("5")}, {QString()}});
    const QStringList expected{QStringLiteral(" first   10  last"), QStringLiteral(" second"), QStringLiteral(" third"),
                               QStringLiteral("          5")};
    QCOMPARE(table.lines(Painter(false)), expected);
}

void TestTextTable::painter_withoutColours_leavesTextAlone()
{
    for (const Style style : {Style::Plain, Style::Heading, Style::Good, Style::Bad, Style::Doubtful, Style::Faint})
        QCOMPARE(Painter(false).painted(QStringLiteral("text"), style), QStringLiteral("text"));
    QCOMPARE(Painter(true).painted(QStringLiteral("text"), Style::Plain), QStringLiteral("text"));
    QCOMPARE(Painter(true).painted(QString(), Style::Bad), QString());
}

QTEST_APPLESS_MAIN(TestTextTable)

#include "tst_texttable.moc"
