#include "languagesettings.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

class TestLanguageSettings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void read_value_data();
    void read_value();
    void read_notAFile_isEmpty_data();
    void read_notAFile_isEmpty();
    void write_newFile();
    void write_keepsEverythingElse_data();
    void write_keepsEverythingElse();
    void write_notWritable_saysWhy_data();
    void write_notWritable_saysWhy();

private:
    QString path() const { return _folder->filePath(QStringLiteral("settings.ini")); }
    bool put(const QByteArray &content) const
    {
        QFile file(path());
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }
    QByteArray content() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<QTemporaryDir> _folder;
};

void TestLanguageSettings::init()
{
    _folder = std::make_unique<QTemporaryDir>();
    QVERIFY(_folder->isValid());
}

void TestLanguageSettings::read_value_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("value");
    QTest::newRow("plain") << QByteArray("[language]\ncode=en\n") << QStringLiteral("en");
    QTest::newRow("CR LF, no end of line") << QByteArray("[language]\r\ncode=en") << QStringLiteral("en");
    QTest::newRow("blanks and quotes") << QByteArray(" [Language] \n code = \"en\" \n") << QStringLiteral("en");
    QTest::newRow("other sections") << QByteArray("code=a\n[x]\ncode=b\n[language]\nother=c\ncode=en\n[y]\ncode=d\n")
                                    << QStringLiteral("en");
    QTest::newRow("twice") << QByteArray("[language]\ncode=zh_CN\ncode=en\n") << QStringLiteral("en");
    QTest::newRow("empty value") << QByteArray("[language]\ncode=\n") << QString();
    QTest::newRow("no key") << QByteArray("[language]\ncode\ncodec=en\n") << QString();
    QTest::newRow("empty file") << QByteArray() << QString();
    QTest::newRow("no section") << QByteArray("code=en\n") << QString();
    QTest::newRow("serialised object") << QByteArray("[language]\ncode=@Variant(\\0\\0\\0\\t\\x7f\\xff\\xff\\xff)\n")
                                       << QStringLiteral("@Variant(\\0\\0\\0\\t\\x7f\\xff\\xff\\xff)");
    QTest::newRow("binary") << QByteArray("\xff\xfe\0\0[language]\0code=en", 23) << QString();
    QTest::newRow("64 KiB") << QByteArray("[language]\ncode=en\n").leftJustified(65536, ';') << QStringLiteral("en");
    QTest::newRow("one byte more") << QByteArray("[language]\ncode=en\n").leftJustified(65537, ';') << QString();
}

void TestLanguageSettings::read_value()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, value);
    QVERIFY(put(content));
    QCOMPARE(languagesettings::read(path()), value);
}

void TestLanguageSettings::read_notAFile_isEmpty_data()
{
    QTest::addColumn<QString>("where");
    QTest::newRow("missing") << path();
    QTest::newRow("folder") << QDir::tempPath();
    QTest::newRow("below a file") << QStringLiteral("%1/settings.ini").arg(QCoreApplication::applicationFilePath());
#ifdef Q_OS_UNIX
    QTest::newRow("endless device") << QStringLiteral("/dev/zero");
#endif
}

void TestLanguageSettings::read_notAFile_isEmpty()
{
    QFETCH(QString, where);
    QCOMPARE(languagesettings::read(where), QString());
}

void TestLanguageSettings::write_newFile()
{
    QString error;
    QVERIFY(languagesettings::write(path(), QStringLiteral("en"), &error));
    QCOMPARE(content(), QByteArray("[language]\ncode=en\n"));
    QVERIFY(languagesettings::write(path(), QStringLiteral("zh_CN"), &error));
    QCOMPARE(content(), QByteArray("[language]\ncode=zh_CN\n"));
    QCOMPARE(error, QString());
    QCOMPARE(QDir(_folder->path()).entryList(QDir::Files), QStringList(QStringLiteral("settings.ini")));
}

void TestLanguageSettings::write_keepsEverythingElse_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("key replaced") << QByteArray(
        "; ours\n[window]\nx=1\n[language]\nfont=宋体\ncode=zh_CN\n[z]\ncode=1\n")
                                  << QByteArray("; ours\n[window]\nx=1\n[language]\nfont=宋体\ncode=en\n[z]\ncode=1\n");
    QTest::newRow("section without key") << QByteArray("[language]\nfont=x\n[z]\n")
                                         << QByteArray("[language]\ncode=en\nfont=x\n[z]\n");
    QTest::newRow("no section") << QByteArray("[window]\nx=1") << QByteArray("[window]\nx=1\n[language]\ncode=en\n");
    QTest::newRow("empty") << QByteArray() << QByteArray("[language]\ncode=en\n");
}

void TestLanguageSettings::write_keepsEverythingElse()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    QVERIFY(put(before));
    QString error;
    QVERIFY(languagesettings::write(path(), QStringLiteral("en"), &error));
    QCOMPARE(content(), after);
}

void TestLanguageSettings::write_notWritable_saysWhy_data()
{
    QTest::addColumn<QString>("where");
    QTest::newRow("no folder") << QStringLiteral("/no/such/folder/settings.ini");
    QTest::newRow("folder in its place") << QDir::tempPath();
    QTest::newRow("below a file") << QStringLiteral("%1/settings.ini").arg(QCoreApplication::applicationFilePath());
}

void TestLanguageSettings::write_notWritable_saysWhy()
{
    QFETCH(QString, where);
    QString error;
    QVERIFY(!languagesettings::write(where, QStringLiteral("en"), &error));
    QVERIFY2(error.startsWith(where), qPrintable(error));
}

QTEST_GUILESS_MAIN(TestLanguageSettings)
#include "tst_languagesettings.moc"
