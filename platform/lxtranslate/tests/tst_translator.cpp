#include <lxtranslate/translator.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

#include <atomic>
#include <thread>
#include <vector>

using lumen::trans::translate;
using lumen::trans::Translator;

namespace {

const QString kContext = QStringLiteral("SwitchDevice");
const QString kText = QStringLiteral("已断开连接");
const QString kEnglish = QStringLiteral("Disconnected");

QString catalogueFolder()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/../share/translations");
}

// A file in the catalogue folder that goes away with the test.
class ScratchCatalogue
{
public:
    ScratchCatalogue(const QString &code, const QByteArray &content)
        : _file(catalogueFolder() + QStringLiteral("/switchdevice_%1.qm").arg(code))
    {
        _valid = _file.open(QIODevice::WriteOnly) && _file.write(content) == content.size();
        _file.close();
    }
    ~ScratchCatalogue() { _file.remove(); }
    ScratchCatalogue(const ScratchCatalogue &) = delete;
    ScratchCatalogue &operator=(const ScratchCatalogue &) = delete;
    bool isValid() const { return _valid; }

private:
    QFile _file;
    bool _valid = false;
};

QByteArray englishCatalogue()
{
    QFile file(catalogueFolder() + QStringLiteral("/switchdevice_en.qm"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestTranslator : public QObject
{
    Q_OBJECT

private slots:
    void translate_withoutTranslator_isTheText();
    void translate_freshTranslator_isTheText();
    void translate_english();
    void translate_nothingToTranslate_isTheText_data();
    void translate_nothingToTranslate_isTheText();
    void switchLanguage_backToChinese_isTheText();
    void switchLanguage_sameAgain_keepsTheCatalogue();
    void switchLanguage_unknownCode_isTheText_data();
    void switchLanguage_unknownCode_isTheText();
    void switchLanguage_damagedCatalogue_isTheText_data();
    void switchLanguage_damagedCatalogue_isTheText();
    void switchLanguage_whileOthersTranslate_givesOneOfTheTwo();
};

void TestTranslator::translate_withoutTranslator_isTheText()
{
    QCOMPARE(translate(nullptr, kContext, QString(), kText), kText);
    QCOMPARE(translate(nullptr, kContext, QString(), QString()), QString());
}

void TestTranslator::translate_freshTranslator_isTheText()
{
    const Translator translator;
    QCOMPARE(translator.language(), QStringLiteral("zh_CN"));
    QCOMPARE(translate(&translator, kContext, QString(), kText), kText);
}

void TestTranslator::translate_english()
{
    Translator translator;
    QVERIFY(translator.switchLanguage(QStringLiteral("en")));
    QCOMPARE(translator.language(), QStringLiteral("en"));
    QCOMPARE(translate(&translator, kContext, QString(), kText), kEnglish);
    // A disambiguation that no entry has falls back to the entry without one.
    QCOMPARE(translate(&translator, kContext, QStringLiteral("toast"), kText), kEnglish);
}

void TestTranslator::translate_nothingToTranslate_isTheText_data()
{
    QTest::addColumn<QString>("context");
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << kContext << QString();
    QTest::newRow("unknown text") << kContext << QStringLiteral("没有这一条");
    QTest::newRow("other context") << QStringLiteral("Other") << kText;
    QTest::newRow("empty context") << QString() << kText;
    QTest::newRow("blank behind") << kContext << kText + QLatin1Char(' ');
    QTest::newRow("cut by a NUL") << kContext << kText + QChar(u'\0') + QStringLiteral("x");
    QTest::newRow("half a surrogate pair") << kContext << QString(QChar(0xd83d));
    QTest::newRow("long") << kContext << QString(1000000, u'连');
}

void TestTranslator::translate_nothingToTranslate_isTheText()
{
    QFETCH(QString, context);
    QFETCH(QString, text);
    Translator translator;
    QVERIFY(translator.switchLanguage(QStringLiteral("en")));
    QCOMPARE(translate(&translator, context, QString(), text), text);
}

void TestTranslator::switchLanguage_backToChinese_isTheText()
{
    Translator translator;
    QVERIFY(translator.switchLanguage(QStringLiteral("en")));
    QVERIFY(translator.switchLanguage(QStringLiteral("zh_CN")));
    QCOMPARE(translator.language(), QStringLiteral("zh_CN"));
    QCOMPARE(translate(&translator, kContext, QString(), kText), kText);
}

void TestTranslator::switchLanguage_sameAgain_keepsTheCatalogue()
{
    Translator translator;
    {
        const ScratchCatalogue catalogue(QStringLiteral("once"), englishCatalogue());
        QVERIFY(catalogue.isValid());
        QVERIFY(translator.switchLanguage(QStringLiteral("once")));
    }
    // The file is gone, the texts are not.
    QCOMPARE(translate(&translator, kContext, QString(), kText), kEnglish);
    QVERIFY(translator.switchLanguage(QStringLiteral("once")));
    QCOMPARE(translate(&translator, kContext, QString(), kText), kEnglish);
}

void TestTranslator::switchLanguage_unknownCode_isTheText_data()
{
    QTest::addColumn<QString>("code");
    QTest::newRow("empty") << QString();
    QTest::newRow("no catalogue") << QStringLiteral("fr");
    QTest::newRow("regional form of one that exists") << QStringLiteral("en_GB");
    QTest::newRow("other case of the source language") << QStringLiteral("zh_cn");
    QTest::newRow("way out of the folder") << QStringLiteral("x/../switchdevice_en");
    QTest::newRow("NUL") << QStringLiteral("en") + QChar(u'\0');
    QTest::newRow("blank") << QStringLiteral(" en");
    QTest::newRow("long") << QString(100000, u'e');
    QTest::newRow("Chinese") << QStringLiteral("中文");
}

void TestTranslator::switchLanguage_unknownCode_isTheText()
{
    QFETCH(QString, code);
    Translator translator;
    QVERIFY(translator.switchLanguage(QStringLiteral("en")));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^no usable catalogue for language")));
    QVERIFY(!translator.switchLanguage(code));
    QCOMPARE(translator.language(), QStringLiteral("zh_CN"));
    QCOMPARE(translate(&translator, kContext, QString(), kText), kText);
}

void TestTranslator::switchLanguage_damagedCatalogue_isTheText_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("not a catalogue");
    QTest::newRow("zeros") << QByteArray(4096, '\0');
    QTest::newRow("signature only") << englishCatalogue().left(16);
    QTest::newRow("half") << englishCatalogue().left(englishCatalogue().size() / 2);
}

void TestTranslator::switchLanguage_damagedCatalogue_isTheText()
{
    QFETCH(QByteArray, content);
    const ScratchCatalogue catalogue(QStringLiteral("damaged"), content);
    QVERIFY(catalogue.isValid());
    Translator translator;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^no usable catalogue for language damaged")));
    QVERIFY(!translator.switchLanguage(QStringLiteral("damaged")));
    QCOMPARE(translate(&translator, kContext, QString(), kText), kText);
}

void TestTranslator::switchLanguage_whileOthersTranslate_givesOneOfTheTwo()
{
    Translator translator;
    std::atomic<bool> stop{false};
    std::atomic<int> lookups{0};
    std::atomic<int> wrong{0};
    std::vector<std::thread> readers;
    readers.reserve(3);
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&] {
            while (!stop) {
                const QString text = translate(&translator, kContext, QString(), kText);
                wrong += text == kText || text == kEnglish ? 0 : 1;
                ++lookups;
            }
        });
    }
    for (int i = 0; i < 200 || lookups < 1000; ++i)
        translator.switchLanguage(i % 2 == 0 ? QStringLiteral("en") : QStringLiteral("zh_CN"));
    stop = true;
    for (std::thread &reader : readers)
        reader.join();
    QCOMPARE(wrong.load(), 0);
}

QTEST_GUILESS_MAIN(TestTranslator)
#include "tst_translator.moc"
