// The checked-in description of the module's types: an interface change must show in it.
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtTest/QtTest>

namespace {

//! The description without the comment that says how and from where it was made, and without empty lines.
QStringList descriptionLines(const QByteArray &text)
{
    QStringList lines;
    for (const QString &line : QString::fromUtf8(text).split(QLatin1Char('\n'))) {
        const QString content = line.trimmed();
        if (!content.isEmpty() && !content.startsWith(QLatin1String("//")))
            lines.append(content);
    }
    return lines;
}

} // namespace

class TestQmlTypes : public QObject
{
    Q_OBJECT

private slots:
    void checkedInDescription_isThatOfThePlugin();
};

void TestQmlTypes::checkedInDescription_isThatOfThePlugin()
{
    QProcess dump;
    // Creating a view model would start its threads.
    dump.start(QStringLiteral(SWITCHPANEL_QMLPLUGINDUMP),
               {QStringLiteral("-noinstantiate"), QStringLiteral("-nonrelocatable"),
                QStringLiteral("OVRAQuick.SwitchDevicePanel.ViewModel"), QStringLiteral("1.0"),
                QStringLiteral(SWITCHPANEL_QML_DIR)});
    QVERIFY2(dump.waitForFinished(60'000), qUtf8Printable(dump.errorString()));
    QVERIFY2(dump.exitCode() == 0, dump.readAllStandardError().constData());
    QFile checkedIn(QStringLiteral(SWITCHPANEL_QMLTYPES));
    QVERIFY(checkedIn.open(QIODevice::ReadOnly));
    const QStringList now = descriptionLines(dump.readAllStandardOutput());
    QVERIFY(now.contains(QStringLiteral("name: \"SwitchDeviceViewModel\"")));
    QVERIFY(now.contains(QStringLiteral("name: \"PacketAnalysisViewModel\"")));
    QCOMPARE(descriptionLines(checkedIn.readAll()), now);
}

QTEST_GUILESS_MAIN(TestQmlTypes)
#include "tst_qmltypes.moc"
