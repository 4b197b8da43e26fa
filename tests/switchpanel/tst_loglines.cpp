#include <loglines.h>

#include <QtTest/QtTest>

class TestLogLines : public QObject
{
    Q_OBJECT

private slots:
    void line_isSplit_data();
    void line_isSplit();
};

void TestLogLines::line_isSplit_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("level");
    QTest::addColumn<QString>("text");

    const QString stamp = QStringLiteral("[2026-11-20 10:11:12.345] ");
    QTest::newRow("info") << stamp + "[Info] The total number of VLANs is : 1"
                          << "Info"
                          << "The total number of VLANs is : 1";
    QTest::newRow("warning") << stamp + "[Warning] refused"
                             << "Warning"
                             << "refused";
    QTest::newRow("nothing behind") << stamp + "[Info] "
                                    << "Info"
                                    << "";
    QTest::newRow("no stamp") << "GE0/0/1 optical module:"
                              << ""
                              << "GE0/0/1 optical module:";
    QTest::newRow("the switch's own brackets") << "[V200R009C00SPC500]"
                                               << ""
                                               << "[V200R009C00SPC500]";
    QTest::newRow("another level") << stamp + "[Debug] x"
                                   << "" << stamp + "[Debug] x";
    QTest::newRow("stamp inside") << ' ' + stamp + "[Info] x"
                                  << "" << ' ' + stamp + "[Info] x";
}

void TestLogLines::line_isSplit()
{
    QFETCH(QString, line);
    const LogLine parts = splitLogLine(line);
    QTEST(parts.level, "level");
    QTEST(parts.text, "text");
}

QTEST_APPLESS_MAIN(TestLogLines)

#include "tst_loglines.moc"
