// The installed tree: complete, relocatable, and usable by a program that was not built with it.
#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QProcessEnvironment>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace {

const QString kModule = QStringLiteral("qml/" SWITCHPANEL_MODULE_PATH);

struct Output
{
    int exitCode = -1;
    QStringList lines;
    QString errors;
};

Output runProgram(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    const bool isOver = process.waitForFinished(60'000);
    Output output;
    output.exitCode = isOver && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    output.lines = QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    output.errors = process.errorString() + QLatin1Char('\n') + QString::fromUtf8(process.readAllStandardError());
    return output;
}

//! Without the variables that would lead a program to libraries and modules elsewhere.
QProcessEnvironment plainEnvironment()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name :
         {"LD_LIBRARY_PATH", "DYLD_LIBRARY_PATH", "QML2_IMPORT_PATH", "QML_IMPORT_PATH", "QT_PLUGIN_PATH"})
        environment.remove(QLatin1String(name));
    return environment;
}

QString valueOf(const QStringList &lines, const QString &key)
{
    for (const QString &line : lines) {
        if (line.startsWith(key + QLatin1Char('=')))
            return line.mid(key.size() + 1);
    }
    return QString();
}

QStringList filesBelow(const QString &folder)
{
    QStringList files;
    QDirIterator iterator(folder, QDir::Files, QDirIterator::Subdirectories);
    while (iterator.hasNext())
        files.append(QDir(folder).relativeFilePath(iterator.next()));
    files.sort();
    return files;
}

} // namespace

class TestInstallation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void moduleFolder_isComplete();
    void share_liesBesideBin();
    void foreignHost_importsTheModule_data();
    void foreignHost_importsTheModule();
    void libraries_areThoseOfTheInstallation();

private:
    QString path(const QString &inside) const { return _prefix + QLatin1Char('/') + inside; }
    Output runForeignHost(const QString &locale) const;

    QTemporaryDir _scratch;
    QString _prefix;
    QString _host;
};

void TestInstallation::initTestCase()
{
    QVERIFY(_scratch.isValid());
    const QString installed = _scratch.filePath(QStringLiteral("installed"));
    const Output output =
        runProgram(QStringLiteral(SWITCHPANEL_CMAKE),
                   {QStringLiteral("--install"), QStringLiteral(SWITCHPANEL_BUILD_DIR), QStringLiteral("--config"),
                    QStringLiteral(SWITCHPANEL_CONFIG), QStringLiteral("--prefix"), installed},
                   QProcessEnvironment::systemEnvironment());
    QVERIFY2(output.exitCode == 0, qUtf8Printable(output.errors));

    // Relocatable: used from another place than it was installed to, one with a blank and Chinese in its name.
    _prefix = _scratch.filePath(QStringLiteral("面板 1"));
    QVERIFY(QDir().rename(installed, _prefix));
    QVERIFY(QDir().mkpath(path(QStringLiteral("bin"))));
    const QFileInfo host(QStringLiteral(SWITCHPANEL_FOREIGNHOST));
    _host = path(QStringLiteral("bin/") + host.fileName());
    QVERIFY(QFile::copy(host.filePath(), _host));
}

Output TestInstallation::runForeignHost(const QString &locale) const
{
    QProcessEnvironment environment = plainEnvironment();
    for (const char *name : {"LANG", "LC_ALL", "LANGUAGE"})
        environment.insert(QLatin1String(name), locale);
    return runProgram(_host, {}, environment);
}

void TestInstallation::moduleFolder_isComplete()
{
    QStringList expected{QStringLiteral("plugins.qmltypes"), QStringLiteral("qmldir"),
                         QStringLiteral(SWITCHPANEL_PLUGIN_NAME)};
    expected.sort();
    QCOMPARE(filesBelow(path(kModule)), expected);
}

void TestInstallation::share_liesBesideBin()
{
    for (const char *folder : {"share/devices", "share/translations", "share/switchconfig"})
        QVERIFY2(QDir(path(QLatin1String(folder))).exists(), folder);
    QVERIFY(QFile::exists(path(QStringLiteral("share/translations/switchdevice_en.qm"))));
}

void TestInstallation::foreignHost_importsTheModule_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("text");
    QTest::newRow("Chinese") << QStringLiteral("zh_CN.UTF-8") << QStringLiteral("已断开连接");
    QTest::newRow("English, from the catalogue") << QStringLiteral("en_US.UTF-8") << QStringLiteral("Disconnected");
}

void TestInstallation::foreignHost_importsTheModule()
{
    QFETCH(const QString, locale);
    QFETCH(const QString, text);
    const Output output = runForeignHost(locale);
    QVERIFY2(output.exitCode == 0, qUtf8Printable(output.lines.join(QLatin1Char('\n')) + output.errors));
    QCOMPARE(valueOf(output.lines, QStringLiteral("text")), text);
    QCOMPARE(valueOf(output.lines, QStringLiteral("status")), QStringLiteral("no anylse"));
    for (const char *folder : {"devices", "translations", "switchconfig"})
        QCOMPARE(valueOf(output.lines, QLatin1String(folder)), QStringLiteral("present"));
}

void TestInstallation::libraries_areThoseOfTheInstallation()
{
    const QString prefix = QFileInfo(_prefix).canonicalFilePath();
    const QString build = QFileInfo(QStringLiteral(SWITCHPANEL_BUILD_DIR)).canonicalFilePath() + QLatin1Char('/');
    QStringList own;
    const QStringList lines = runForeignHost(QStringLiteral("zh_CN.UTF-8")).lines;
    for (const QString &line : lines.filter(QStringLiteral("library="))) {
        const QString library = line.section(QLatin1Char('='), 1);
        QVERIFY2(!library.startsWith(build), qUtf8Printable(library));
        if (library.startsWith(prefix))
            own.append(QFileInfo(library).fileName().section(QLatin1Char('.'), 0, 0));
    }
    if (lines.filter(QStringLiteral("library=")).isEmpty()) {
        QTest::qSkip("This system does not tell which libraries a process has loaded", __FILE__, __LINE__);
        return;
    }
    for (const char *library : {"libbasecomm", "libconsoleportcomm", "liblxtranslate", "libptpv2parser",
                                "libswitchdevicebll", "libzrextensionsystem"})
        QVERIFY2(own.contains(QLatin1String(library)), library);
}

QTEST_GUILESS_MAIN(TestInstallation)
#include "tst_installation.moc"
