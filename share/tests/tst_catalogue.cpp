#include <lxtranslate/translator.h>

#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QMap>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryFile>
#include <QtCore/QXmlStreamReader>
#include <QtTest/QTest>

using lumen::trans::translate;
using lumen::trans::Translator;

namespace {

const QString kSwitchDevice = QStringLiteral("SwitchDevice");
const QString kConsolePort = QStringLiteral("ConsolePort");

// A text of a source file, with the place where it stands.
struct Found
{
    QString text;
    QString place;
};

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QStringList sourceFiles(const QString &folder)
{
    QStringList files;
    QDirIterator it(QStringLiteral(SOURCE_FOLDER "/") + folder, {QStringLiteral("*.cpp"), QStringLiteral("*.h")},
                    QDir::Files);
    while (it.hasNext())
        files << it.next();
    files.sort();
    return files;
}

// Comments are blanked, so that a quoted word in one is not taken for a text of the program. Literals are skipped as
// literals: "//" inside of one begins no comment.
QString withoutComments(QString source)
{
    static const QRegularExpression token(
        QString::fromLatin1(R"re("(?:[^"\\\n]|\\.)*"|'(?:[^'\\\n]|\\.)*'|//[^\n]*|/\*.*?\*/)re"),
        QRegularExpression::DotMatchesEverythingOption);
    for (auto it = token.globalMatch(source); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        if (match.captured().startsWith(QLatin1Char('/')))
            source.replace(match.capturedStart(), match.capturedLength(), QString(match.capturedLength(), u' '));
    }
    return source;
}

// The value of adjacent string literals, as far as our texts use escapes.
QString valueOf(const QString &literals)
{
    static const QRegularExpression literal(QString::fromLatin1(R"re("((?:[^"\\]|\\.)*)")re"));
    QString value;
    for (auto it = literal.globalMatch(literals); it.hasNext();)
        value += it.next().captured(1);
    return value.replace(QLatin1String("\\n"), QLatin1String("\n")).replace(QLatin1String("\\\""), QLatin1String("\""));
}

QList<Found> findAll(const QString &path, const QRegularExpression &pattern)
{
    QList<Found> found;
    const QString source = withoutComments(contentOf(path));
    for (auto it = pattern.globalMatch(source); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const int line = source.leftRef(match.capturedStart()).count(QLatin1Char('\n')) + 1;
        found.append({valueOf(match.captured(1)), QStringLiteral("%1:%2").arg(path).arg(line)});
    }
    return found;
}

// What is handed to lxTr() as a literal, in whatever wrapping.
QList<Found> translatedTexts(const QString &path)
{
    static const QRegularExpression call(QString::fromLatin1(
        R"re(\blxTr\s*\(\s*(?:[A-Za-z0-9_:]+\s*[({]\s*)*(?:u8?|L)?("(?:[^"\\\n]|\\.)*"(?:\s*"(?:[^"\\\n]|\\.)*")*))re"));
    return findAll(path, call);
}

// Every literal with Chinese in it, wherever it stands: texts also reach the translation through tables.
QList<Found> chineseTexts(const QString &path)
{
    static const QRegularExpression literal(
        QString::fromLatin1(R"re(((?:"(?:[^"\\\n]|\\.)*"\s*)*"(?:[^"\\\n]|\\.)*"))re"));
    static const QRegularExpression chinese(QStringLiteral("\\p{Han}"));
    QList<Found> found;
    const QList<Found> literals = findAll(path, literal);
    for (const Found &one : literals) {
        if (one.text.contains(chinese))
            found << one;
    }
    return found;
}

// Whether all Chinese in the source belongs to the switch panel. That of the capture analysis does not: its verdicts
// are values of its interface, the same in every language.
bool isSwitchSide(const QString &path)
{
    static const QRegularExpression names(QStringLiteral("switch|reply|transceiver|naming|label"));
    return QFileInfo(path).fileName().contains(names) || contentOf(path).contains(QLatin1String("lxTr"));
}

QMap<QString, QMap<QString, QString>> readCatalogue(QStringList *unfinished)
{
    QMap<QString, QMap<QString, QString>> contexts;
    QFile file(QStringLiteral(CATALOGUE_FOLDER "/switchdevice_en.ts"));
    if (!file.open(QIODevice::ReadOnly))
        return contexts;
    QXmlStreamReader xml(&file);
    QString context;
    QString source;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name"))
            context = xml.readElementText();
        else if (xml.name() == QLatin1String("source"))
            source = xml.readElementText();
        else if (xml.name() == QLatin1String("translation")) {
            if (xml.attributes().hasAttribute(QStringLiteral("type")))
                *unfinished << source;
            contexts[context].insert(source, xml.readElementText());
        }
    }
    return xml.hasError() ? QMap<QString, QMap<QString, QString>>() : contexts;
}

// The labels of the command queue: two equal ones would replace each other's commands.
QStringList translatedLabels()
{
    return {QStringLiteral("VLAN划分"),     QStringLiteral("组播"),         QStringLiteral("查询器"),
            QStringLiteral("链路聚合"),     QStringLiteral("镜像端口配置"), QStringLiteral("自协商开关"),
            QStringLiteral("POE设置"),      QStringLiteral("接口设置"),     QStringLiteral("保存配置"),
            QStringLiteral("清空配置"),     QStringLiteral("导出配置"),     QStringLiteral("文件配置"),
            QStringLiteral("接口解析"),     QStringLiteral("光电端口解析"), QStringLiteral("vlan"),
            QStringLiteral("端口状态监测"), QStringLiteral("接口速率"),     QStringLiteral("光模块"),
            QStringLiteral("IP冲突"),       QStringLiteral("组播转发表"),   QStringLiteral("用户名")};
}

QStringList fixedLabels()
{
    return {QStringLiteral("connect_cmd"), QStringLiteral("login_cmd"), QStringLiteral("password_cmd"),
            QStringLiteral("enter"),       QStringLiteral("--more--"),  QStringLiteral("--cinfig yes--"),
            QStringLiteral("more igmp")};
}

QStringList otherTexts()
{
    return {QStringLiteral("华为"),
            QStringLiteral("华三"),
            QStringLiteral("导出配置1"),
            QStringLiteral("接口设置命令:"),
            QStringLiteral("串口打开失败"),
            QStringLiteral("已断开连接"),
            QStringLiteral("用户名登录中"),
            QStringLiteral("密码登录中"),
            QStringLiteral("已连console端口:"),
            QStringLiteral("登录失败,检查用户名或者密码后重新连接"),
            QStringLiteral("请先设置用户名"),
            QStringLiteral("请先设置密码"),
            QStringLiteral("回读中..."),
            QStringLiteral("回读失败"),
            QStringLiteral("登录成功.."),
            QStringLiteral("登录失败"),
            QStringLiteral("执行中..."),
            QStringLiteral("执行结束"),
            QStringLiteral("执行失败"),
            QStringLiteral("执行失败，请重试..."),
            QStringLiteral("端口状态信息:"),
            QStringLiteral("未开启全局组播"),
            QStringLiteral("没有组播配置"),
            QStringLiteral("端口"),
            QStringLiteral("自协商状态:"),
            QStringLiteral("已开启"),
            QStringLiteral("未开启"),
            QStringLiteral("镜像端口配置信息:"),
            QStringLiteral("镜像id:"),
            QStringLiteral("源端口号:"),
            QStringLiteral("目的端口号:"),
            QStringLiteral("镜像id：%1，源端口号%2，目的端口号%3"),
            QStringLiteral("配置正在清除 ，请5分钟后重新连接"),
            QStringLiteral("光模块信息:"),
            QStringLiteral("未检测到光模块")};
}

} // namespace

class TestCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void english_everyEntry_isFinished();
    void english_knownText_isTranslated_data();
    void english_knownText_isTranslated();
    void english_everyTextOfTheSources_isTranslated_data();
    void english_everyTextOfTheSources_isTranslated();
    void english_entry_keepsPlaceholdersAndPunctuation();
    void labels_areDistinct();
    void labels_onlyTheExportsContainTheExportLabel();
    void labels_numberedExport_isTheLabelAndItsNumber();
    void families_areDistinct();
    void scan_findsTextsInEveryWrapping();

private:
    QString english(const QString &text) const { return translate(&_english, kSwitchDevice, QString(), text); }
    void checkTranslated(const QString &context, const QString &text) const;

    Translator _english;
    QMap<QString, QMap<QString, QString>> _catalogue;
    QStringList _unfinished;
};

void TestCatalogue::initTestCase()
{
    QVERIFY(_english.switchLanguage(QStringLiteral("en")));
    _catalogue = readCatalogue(&_unfinished);
    QCOMPARE(_catalogue.keys(), QStringList({kConsolePort, kSwitchDevice}));
}

void TestCatalogue::english_everyEntry_isFinished()
{
    QCOMPARE(_unfinished, QStringList());
}

void TestCatalogue::checkTranslated(const QString &context, const QString &text) const
{
    const QString compiled = _english.find(context, QString(), text);
    QVERIFY2(!compiled.isEmpty(), qPrintable(text));
    QCOMPARE(compiled, _catalogue.value(context).value(text)); // the compiled catalogue is the current one, blanks kept
    QVERIFY2(!compiled.contains(QRegularExpression(QStringLiteral("[\\p{Han}\\x{3000}-\\x{303F}\\x{FF00}-\\x{FFEF}]"))),
             qPrintable(compiled));
}

void TestCatalogue::english_knownText_isTranslated_data()
{
    QTest::addColumn<QString>("text");
    const QStringList texts = translatedLabels() + otherTexts();
    for (const QString &text : texts)
        QTest::newRow(qPrintable(text)) << text;
}

void TestCatalogue::english_knownText_isTranslated()
{
    QFETCH(QString, text);
    checkTranslated(kSwitchDevice, text);
}

void TestCatalogue::english_everyTextOfTheSources_isTranslated_data()
{
    QTest::addColumn<QString>("context");
    QTest::addColumn<QString>("text");
    const auto add = [](const QString &context, const QList<Found> &texts) {
        for (const Found &one : texts)
            QTest::newRow(qPrintable(one.place)) << context << one.text;
    };

    int viewModelTexts = 0;
    const QStringList viewModel = sourceFiles(QStringLiteral("SwitchDevicePanel/ViewModel"));
    for (const QString &path : viewModel) {
        QList<Found> texts = translatedTexts(path);
        if (isSwitchSide(path))
            texts += chineseTexts(path);
        viewModelTexts += texts.size();
        add(kSwitchDevice, texts);
    }
    QVERIFY2(viewModel.isEmpty() || viewModelTexts > 0, "the view model's sources are there, but no text was found");

    QList<Found> portTexts;
    const QStringList port = sourceFiles(QStringLiteral("platform/consoleportcomm/src"));
    for (const QString &path : port)
        portTexts += chineseTexts(path);
    QVERIFY(!portTexts.isEmpty());
    add(kConsolePort, portTexts);

    QList<Found> sessionTexts;
    const QStringList session = sourceFiles(QStringLiteral("platform/switchdevicebll/src"));
    for (const QString &path : session)
        sessionTexts += chineseTexts(path);
    QVERIFY(!sessionTexts.isEmpty());
    add(kSwitchDevice, sessionTexts);
}

void TestCatalogue::english_everyTextOfTheSources_isTranslated()
{
    QFETCH(QString, context);
    QFETCH(QString, text);
    checkTranslated(context, text);
}

void TestCatalogue::english_entry_keepsPlaceholdersAndPunctuation()
{
    static const QRegularExpression placeholder(QStringLiteral("%\\d"));
    const auto placeholders = [](const QString &text) {
        QStringList all;
        for (auto it = placeholder.globalMatch(text); it.hasNext();)
            all << it.next().captured();
        all.sort();
        return all;
    };
    const QStringList endings{QStringLiteral(":"), QStringLiteral("..."), QStringLiteral("..")};
    for (const auto &context : qAsConst(_catalogue)) {
        for (auto it = context.cbegin(); it != context.cend(); ++it) {
            QVERIFY2(placeholders(it.key()) == placeholders(it.value()), qPrintable(it.key()));
            for (const QString &ending : endings) {
                if (it.key().trimmed().endsWith(ending))
                    QVERIFY2(it.value().trimmed().endsWith(ending), qPrintable(it.key()));
            }
        }
    }
}

void TestCatalogue::labels_areDistinct()
{
    QStringList labels = fixedLabels();
    const QStringList translated = translatedLabels();
    for (const QString &label : translated) {
        const QString text = english(label);
        QVERIFY2(!labels.contains(text), qPrintable(label + QLatin1String(" is ") + text));
        labels << text;
    }
}

void TestCatalogue::labels_onlyTheExportsContainTheExportLabel()
{
    const QString exportLabel = english(QStringLiteral("导出配置"));
    const QStringList labels = translatedLabels() + fixedLabels();
    for (const QString &label : labels) {
        const bool isExport = label == QStringLiteral("导出配置");
        QVERIFY2(english(label).contains(exportLabel) == isExport, qPrintable(label));
    }
}

// The queue builds the label from the text and a number, and looks for the end of the export under the whole text.
void TestCatalogue::labels_numberedExport_isTheLabelAndItsNumber()
{
    QCOMPARE(english(QStringLiteral("导出配置1")), english(QStringLiteral("导出配置")) + QLatin1Char('1'));
}

void TestCatalogue::families_areDistinct()
{
    QCOMPARE(english(QStringLiteral("华为")), QStringLiteral("Huawei"));
    QCOMPARE(english(QStringLiteral("华三")), QStringLiteral("Hua3"));
}

void TestCatalogue::scan_findsTextsInEveryWrapping()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(R"src(
        // lxTr("注释") "注释"
        a = lxTr("vlan"); /* "块注释" */
        b = lxTr(QStringLiteral("甲" "乙"));
        c = lxTr( QString::fromUtf8( "http://丙" ) );
        static const Row rows[] = {{"丁", 1}, {"ascii", 2}};
    )src");
    file.close();
    const auto texts = [](const QList<Found> &found) {
        QStringList list;
        for (const Found &one : found)
            list << one.text;
        return list;
    };
    QCOMPARE(texts(translatedTexts(file.fileName())),
             QStringList({QStringLiteral("vlan"), QStringLiteral("甲乙"), QStringLiteral("http://丙")}));
    QCOMPARE(texts(chineseTexts(file.fileName())),
             QStringList({QStringLiteral("甲乙"), QStringLiteral("http://丙"), QStringLiteral("丁")}));
}

QTEST_GUILESS_MAIN(TestCatalogue)
#include "tst_catalogue.moc"
