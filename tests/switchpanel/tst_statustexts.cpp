#include <statustexts.h>

#include <QtTest/QtTest>

class TestStatusTexts : public QObject
{
    Q_OBJECT

private slots:
    void analysisText_inBothLanguages_data();
    void analysisText_inBothLanguages();
    void statusKinds_data();
    void statusKinds();
};

void TestStatusTexts::analysisText_inBothLanguages_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("chinese");

    const auto status = [](const char *text, const char *english) {
        QTest::newRow(english) << QString::fromUtf8(text) << QString::fromUtf8(english) << QString::fromUtf8(text);
    };
    // What the analysis says in Chinese is never changed for a Chinese reader.
    status("正常", "normal");
    status("异常", "abnormal");
    status("基本正常", "mostly normal");
    status("未知", "unknown");
    status("无Announce消息", "no Announce messages");
    status("无Sync消息", "no Sync messages");
    status("无Follow_up消息", "no Follow_Up messages");
    status("无Delay_Req消息", "no Delay_Req messages");
    status("无消息", "no messages");
    status("数据不足", "not enough data");
    status("异常 (3/120)", "abnormal (3/120)");
    status("异常 (12/24 Sync消息)", "abnormal (12/24 Sync windows)");
    status("异常 (匹配率: 80.0%, 匹配: 8/10, 超时: 1, 无回复: 1)",
           "abnormal (match rate: 80.0%, matched: 8/10, late: 1, unanswered: 1)");
    status("正常 (匹配率: 100.0%, 匹配: 2093/2093)", "normal (match rate: 100.0%, matched: 2093/2093)");
    status("时间间隔异常", "interval out of tolerance");
    status("从节点未回复", "slave did not reply");
    status("Delay_Resp超时", "late Delay_Resp");
    status("主节点未回复", "master did not reply");
    status("未知从节点12", "unknown slave 12");
    status("文件不存在：/tmp/a.pcap", "File does not exist: /tmp/a.pcap");
    status("文件大小超过1GB限制，请选择小于1GB的文件导入。", "The file is larger than 1 GiB; choose a smaller one.");
    status("无异常数据包可导出", "No abnormal packets to export");
    status("导出失败: /full/out.csv", "Failed to export the findings to: /full/out.csv");

    const auto error = [](const char *text, const char *chinese) {
        QTest::newRow(text) << QString::fromUtf8(text) << QString::fromUtf8(text) << QString::fromUtf8(chinese);
    };
    error("No file selected", "未选择文件");
    error("File does not exist: a.pcap", "文件不存在：a.pcap");
    error("Failed to open pcap file: /tmp/抓包 %1.pcap", "无法打开抓包文件：/tmp/抓包 %1.pcap");
    error("Analysis error: std::bad_alloc", "分析出错：std::bad_alloc");
    error("No results to export", "无分析结果可导出");
    error("Failed to export results to: out.json", "分析结果导出失败：out.json");

    QTest::newRow("a check that was not made") << "no anylse"
                                               << "not checked"
                                               << "未检查";
    QTest::newRow("an address") << "192.168.100.5"
                                << "192.168.100.5"
                                << "192.168.100.5";
    QTest::newRow("nothing") << ""
                             << ""
                             << "";
    QTest::newRow("a known text inside another") << "x正常"
                                                 << "x正常"
                                                 << "x正常";
    QTest::newRow("a line break in a path") << "Failed to open pcap file: a\nb"
                                            << "Failed to open pcap file: a\nb"
                                            << "无法打开抓包文件：a\nb";
}

void TestStatusTexts::analysisText_inBothLanguages()
{
    QFETCH(QString, text);
    QTEST(analysisText(text, Language::English), "english");
    QTEST(analysisText(text, Language::Chinese), "chinese");
}

void TestStatusTexts::statusKinds_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<bool>("isNormal");
    QTest::addColumn<bool>("isAbnormal");

    QTest::newRow("normal") << "正常" << true << false;
    QTest::newRow("normal, with figures") << "正常 (匹配率: 99.8%, 匹配: 486/487)" << true << false;
    QTest::newRow("abnormal") << "异常 (3/12)" << false << true;
    QTest::newRow("not enough data") << "数据不足" << false << false;
    QTest::newRow("no messages") << "无Sync消息" << false << false;
}

void TestStatusTexts::statusKinds()
{
    QFETCH(QString, status);
    QTEST(isNormalStatus(status), "isNormal");
    QTEST(isAbnormalStatus(status), "isAbnormal");
}

QTEST_APPLESS_MAIN(TestStatusTexts)

#include "tst_statustexts.moc"
