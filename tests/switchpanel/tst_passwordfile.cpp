#include <passwordfile.h>

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

class TestPasswordFile : public QObject
{
    Q_OBJECT

private slots:
    void firstLine_isThePassword_data();
    void firstLine_isThePassword();
    void badFile_isRefused_data();
    void badFile_isRefused();
    void missingFile_isRefusedWithItsName();
    void folder_isRefused();

private:
    QString write(const QByteArray &bytes) const;

    QTemporaryDir _folder;
};

QString TestPasswordFile::write(const QByteArray &bytes) const
{
    QFile file(_folder.filePath(QStringLiteral("password")));
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? file.fileName() : QString();
}

void TestPasswordFile::firstLine_isThePassword_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("password");

    QTest::newRow("no line end") << QByteArray("Admin@123") << "Admin@123";
    QTest::newRow("LF") << QByteArray("Admin@123\n") << "Admin@123";
    QTest::newRow("CR LF") << QByteArray("Admin@123\r\n") << "Admin@123";
    QTest::newRow("further lines") << QByteArray("Admin@123\nsecond\n") << "Admin@123";
    QTest::newRow("blanks count") << QByteArray(" a b \n") << " a b ";
    QTest::newRow("byte-order mark") << QByteArray("\xEF\xBB\xBF"
                                                   "Admin@123\r\n")
                                     << "Admin@123";
    QTest::newRow("beyond ASCII") << QStringLiteral("密码\n").toUtf8() << QStringLiteral("密码");
    QTest::newRow("as long as can be") << QByteArray(1'023, 'x') + '\n' << QString(1'023, 'x');
}

void TestPasswordFile::firstLine_isThePassword()
{
    QFETCH(QByteArray, bytes);
    const PasswordFile file = readPasswordFile(write(bytes), Language::English);
    QCOMPARE(file.error, QString());
    QTEST(file.password, "password");
}

void TestPasswordFile::badFile_isRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("reason");

    QTest::newRow("empty") << QByteArray() << "is empty";
    QTest::newRow("empty first line") << QByteArray("\nAdmin@123\n") << "is empty";
    QTest::newRow("CR LF only") << QByteArray("\r\n") << "is empty";
    QTest::newRow("byte-order mark only") << QByteArray("\xEF\xBB\xBF\n") << "is empty";
    QTest::newRow("not UTF-8") << QByteArray("\xC3\x28\n") << "is not UTF-8 text";
    QTest::newRow("cut UTF-8") << QByteArray("a\xE5\xAF\n") << "is not UTF-8 text";
    QTest::newRow("line feed of an old Mac") << QByteArray("a\rb\n") << "is not UTF-8 text";
    QTest::newRow("escape") << QByteArray("a\x1b[D\n") << "is not UTF-8 text";
    QTest::newRow("NUL") << QByteArray("a\0b\n", 4) << "is not UTF-8 text";
    QTest::newRow("too long") << QByteArray(1'024, 'x') << "is too long for a password";
}

void TestPasswordFile::badFile_isRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, reason);
    const QString path = write(bytes);
    const PasswordFile file = readPasswordFile(path, Language::English);
    QCOMPARE(file.error, QStringLiteral("the first line of the password file '%1' %2").arg(path, reason));
    QCOMPARE(file.password, QString());
}

void TestPasswordFile::missingFile_isRefusedWithItsName()
{
    const QString path = _folder.filePath(QStringLiteral("nobody"));
    const PasswordFile file = readPasswordFile(path, Language::English);
    QVERIFY2(file.error.startsWith(QStringLiteral("the password file '%1' cannot be read: ").arg(path)),
             qPrintable(file.error));
    QVERIFY(readPasswordFile(path, Language::Chinese).error.startsWith(QStringLiteral("无法读取密码文件")));
}

void TestPasswordFile::folder_isRefused()
{
    const PasswordFile file = readPasswordFile(_folder.path(), Language::English);
    QVERIFY2(file.error.contains(QStringLiteral("cannot be read")), qPrintable(file.error));
}

QTEST_APPLESS_MAIN(TestPasswordFile)

#include "tst_passwordfile.moc"
