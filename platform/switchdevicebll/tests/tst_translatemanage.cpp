#include <switchdevicebll/translatemanage.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

namespace {

const QString kSettings = QStringLiteral("/bin/switchdevicepanel.ini");
const QByteArray kChinese = QByteArrayLiteral("已断开连接");
const QByteArray kEnglish = QByteArrayLiteral("Disconnected");

using Environment = QMap<QString, QString>;

} // namespace

Q_DECLARE_METATYPE(Environment)

/// Each test has an installation of its own: bin/ with the probe, share/translations with the catalogue.
class TestTranslateManage : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void getInstance_isAlwaysTheSame();
    void default_followsTheSystem_data();
    void default_followsTheSystem();
    void file_decides_data();
    void file_decides();
    void reading_createsNoFile();
    void setLanguage_isKeptForTheNextRun();
    void setLanguage_changesTheSharedTranslatorAndAnnouncesIt();
    void setLanguage_unknownCode_changesNothing_data();
    void setLanguage_unknownCode_changesNothing();
    void setLanguage_folderNotWritable_holdsForThisRun();
    void withoutApplication_followsTheSystem();

private:
    QList<QByteArray> probe(const QStringList &commands, const Environment &environment = {});
    bool putSettings(const QByteArray &content) const;
    QByteArray settings() const;

    std::unique_ptr<QTemporaryDir> _installation;
    QByteArray _errors; // what the last probe wrote to its standard error
};

void TestTranslateManage::init()
{
    _installation = std::make_unique<QTemporaryDir>();
    QVERIFY(_installation->isValid());
    const QDir root(_installation->path());
    QVERIFY(root.mkpath(QStringLiteral("bin")));
    QVERIFY(root.mkpath(QStringLiteral("share/translations")));
    const QFileInfo original(QStringLiteral(LANGUAGEPROBE));
    QVERIFY(QFile::copy(original.filePath(), root.filePath(QStringLiteral("bin/languageprobe"))));
    const QString catalogue = QStringLiteral("share/translations/switchdevice_en.qm");
    QVERIFY(QFile::copy(original.path() + QStringLiteral("/../") + catalogue, root.filePath(catalogue)));
    _errors.clear();
}

void TestTranslateManage::cleanup()
{
    _installation.reset();
}

QList<QByteArray> TestTranslateManage::probe(const QStringList &commands, const Environment &environment)
{
    QProcess process;
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"LANG", "LANGUAGE", "LC_ALL", "LC_MESSAGES", "LC_NUMERIC", "LC_CTYPE"})
        variables.remove(QString::fromLatin1(name));
    for (auto it = environment.cbegin(); it != environment.cend(); ++it)
        variables.insert(it.key(), it.value());
    process.setProcessEnvironment(variables);
    process.start(_installation->filePath(QStringLiteral("bin/languageprobe")), commands);
    const bool ended = process.waitForFinished(30000) && process.exitStatus() == QProcess::NormalExit;
    _errors = process.readAllStandardError();
    if (!ended || process.exitCode() != 0)
        return {"the probe failed: " + process.errorString().toUtf8() + _errors};
    QList<QByteArray> lines = process.readAllStandardOutput().split('\n');
    lines.removeLast();
    return lines;
}

bool TestTranslateManage::putSettings(const QByteArray &content) const
{
    QFile file(_installation->path() + kSettings);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray TestTranslateManage::settings() const
{
    QFile file(_installation->path() + kSettings);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestTranslateManage::getInstance_isAlwaysTheSame()
{
    using OVRA::BLL::TranslateManage;
    QVERIFY(TranslateManage::getInstance() != nullptr);
    QCOMPARE(TranslateManage::getInstance(), TranslateManage::getInstance());
    QVERIFY(TranslateManage::getInstance()->getTranslator() != nullptr);
    QCOMPARE(TranslateManage::getInstance()->getTranslator(), TranslateManage::getInstance()->getTranslator());
}

void TestTranslateManage::default_followsTheSystem_data()
{
    QTest::addColumn<Environment>("environment");
    QTest::addColumn<QByteArray>("code");
    const QString all = QStringLiteral("LC_ALL");
    const QString lang = QStringLiteral("LANG");
    const QString messages = QStringLiteral("LC_MESSAGES");
    const QString language = QStringLiteral("LANGUAGE");
    const auto row = [](const char *tag, const Environment &environment, const char *code) {
        QTest::newRow(tag) << environment << QByteArray(code);
    };
    row("nothing stated", {}, "zh_CN");
    row("C", {{all, QStringLiteral("C")}}, "zh_CN");
    row("POSIX", {{lang, QStringLiteral("POSIX")}}, "zh_CN");
    row("C in UTF-8", {{all, QStringLiteral("C.UTF-8")}}, "zh_CN");
    row("C with a list of languages", {{all, QStringLiteral("C.UTF-8")}, {language, QStringLiteral("en_US:en")}},
        "zh_CN");
    row("China", {{lang, QStringLiteral("zh_CN.UTF-8")}}, "zh_CN");
    row("China, GBK", {{all, QStringLiteral("zh_CN.GBK")}}, "zh_CN");
    row("Taiwan", {{lang, QStringLiteral("zh_TW.UTF-8")}}, "zh_CN");
    row("Singapore", {{lang, QStringLiteral("zh_SG")}}, "zh_CN");
    row("United States", {{lang, QStringLiteral("en_US.UTF-8")}}, "en");
    row("France", {{lang, QStringLiteral("fr_FR.UTF-8")}}, "en");
    row("Germany, overriding", {{all, QStringLiteral("de_DE.UTF-8")}, {lang, QStringLiteral("zh_CN.UTF-8")}}, "en");
    row("messages in Chinese", {{lang, QStringLiteral("en_US.UTF-8")}, {messages, QStringLiteral("zh_CN.UTF-8")}},
        "zh_CN");
    row("English, but C numbers",
        {{lang, QStringLiteral("en_US.UTF-8")}, {QStringLiteral("LC_NUMERIC"), QStringLiteral("C")}}, "en");
    row("Chinese preferred", {{lang, QStringLiteral("en_US.UTF-8")}, {language, QStringLiteral("zh_CN:en")}}, "zh_CN");
    row("English preferred", {{lang, QStringLiteral("zh_CN.UTF-8")}, {language, QStringLiteral("en:zh_CN")}}, "en");
}

void TestTranslateManage::default_followsTheSystem()
{
    QFETCH(Environment, environment);
    QFETCH(QByteArray, code);
    QCOMPARE(probe({QStringLiteral("configured"), QStringLiteral("text")}, environment),
             QList<QByteArray>({code, code == "en" ? kEnglish : kChinese}));
    QCOMPARE(_errors, QByteArray());
}

void TestTranslateManage::file_decides_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("code");
    QTest::newRow("English") << QByteArray("[language]\ncode=en\n") << QByteArray("en");
    QTest::newRow("Chinese") << QByteArray("[language]\ncode=zh_CN\n") << QByteArray("zh_CN");
    // From here on the file says nothing usable, and the system (Chinese here) decides.
    QTest::newRow("other language") << QByteArray("[language]\ncode=fr\n") << QByteArray("zh_CN");
    QTest::newRow("other case") << QByteArray("[language]\ncode=EN\n") << QByteArray("zh_CN");
    QTest::newRow("way out") << QByteArray("[language]\ncode=../../en\n") << QByteArray("zh_CN");
    QTest::newRow("long") << QByteArray("[language]\ncode=") + QByteArray(60000, 'e') << QByteArray("zh_CN");
    QTest::newRow("zeros") << QByteArray(1000, '\0') << QByteArray("zh_CN");
    QTest::newRow("empty") << QByteArray() << QByteArray("zh_CN");
}

void TestTranslateManage::file_decides()
{
    QFETCH(QByteArray, content);
    QFETCH(QByteArray, code);
    QVERIFY(putSettings(content));
    QCOMPARE(probe({QStringLiteral("configured"), QStringLiteral("text")},
                   {{QStringLiteral("LANG"), QStringLiteral("zh_CN.UTF-8")}}),
             QList<QByteArray>({code, code == "en" ? kEnglish : kChinese}));
    QCOMPARE(_errors, QByteArray());
}

void TestTranslateManage::reading_createsNoFile()
{
    probe({QStringLiteral("configured"), QStringLiteral("text")});
    QVERIFY(!QFile::exists(_installation->path() + kSettings));
}

void TestTranslateManage::setLanguage_isKeptForTheNextRun()
{
    const Environment chinese{{QStringLiteral("LANG"), QStringLiteral("zh_CN.UTF-8")}};
    probe({QStringLiteral("set=en")}, chinese);
    QCOMPARE(settings(), QByteArray("[language]\ncode=en\n"));
    QCOMPARE(probe({QStringLiteral("configured"), QStringLiteral("text")}, chinese),
             QList<QByteArray>({"en", kEnglish}));
}

void TestTranslateManage::setLanguage_changesTheSharedTranslatorAndAnnouncesIt()
{
    const QList<QByteArray> lines =
        probe({QStringLiteral("text"), QStringLiteral("set=en"), QStringLiteral("text"), QStringLiteral("configured"),
               QStringLiteral("set=zh_CN"), QStringLiteral("text"), QStringLiteral("configured")});
    QCOMPARE(lines, QList<QByteArray>({kChinese, "taken en", kEnglish, "en", "taken zh_CN", kChinese, "zh_CN"}));
    QCOMPARE(_errors, QByteArray());
}

void TestTranslateManage::setLanguage_unknownCode_changesNothing_data()
{
    QTest::addColumn<QString>("code");
    QTest::newRow("other language") << QStringLiteral("fr");
    QTest::newRow("empty") << QString();
    QTest::newRow("two lines") << QStringLiteral("en\n[x]");
}

void TestTranslateManage::setLanguage_unknownCode_changesNothing()
{
    QFETCH(QString, code);
    QCOMPARE(probe({QStringLiteral("set=") + code, QStringLiteral("text")}), QList<QByteArray>({"refused ", kChinese}));
    QVERIFY2(_errors.startsWith("there is no language"), _errors.constData());
    QVERIFY(!QFile::exists(_installation->path() + kSettings));
}

void TestTranslateManage::setLanguage_folderNotWritable_holdsForThisRun()
{
    // A folder in the file's place stops also those who may write everywhere.
    QVERIFY(QDir().mkpath(_installation->path() + kSettings));
    QCOMPARE(probe({QStringLiteral("set=en"), QStringLiteral("text"), QStringLiteral("configured"),
                    QStringLiteral("set=zh_CN"), QStringLiteral("configured")}),
             QList<QByteArray>({"taken en", kEnglish, "en", "taken zh_CN", "zh_CN"}));
    QVERIFY2(_errors.startsWith("the language is changed for this run only: "), _errors.constData());
    QCOMPARE(probe({QStringLiteral("configured")}), QList<QByteArray>({"zh_CN"}));
}

void TestTranslateManage::withoutApplication_followsTheSystem()
{
    QVERIFY(putSettings("[language]\ncode=zh_CN\n"));
    QCOMPARE(probe({QStringLiteral("noapplication"), QStringLiteral("configured")},
                   {{QStringLiteral("LANG"), QStringLiteral("en_US.UTF-8")}}),
             QList<QByteArray>({"en"}));
    QCOMPARE(_errors, QByteArray());
}

QTEST_GUILESS_MAIN(TestTranslateManage)
#include "tst_translatemanage.moc"
