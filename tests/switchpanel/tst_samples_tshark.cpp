// Every record of every sample against tshark's reading of the same packet.
#include <packetanalysisviewmodel.h>

#include <QtCore/QDateTime>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

namespace {

constexpr int kLimitMsecs = 60'000;

// tshark's columns, by the names that the checks below use.
const QStringList kFields{
    "frame.time_epoch",
    "ip.src",
    "ptp.v2.messagetype",
    "ptp.v2.sequenceid",
    "ptp.v2.domainnumber",
    "ptp.v2.clockidentity",
    "ptp.v2.sourceportid",
    "ptp.v2.messagelength",
    "ptp.v2.correction.ns",
    "ptp.v2.correction.subns",
    "ptp.v2.sdr.origintimestamp.seconds",
    "ptp.v2.sdr.origintimestamp.nanoseconds",
    "ptp.v2.fu.preciseorigintimestamp.seconds",
    "ptp.v2.fu.preciseorigintimestamp.nanoseconds",
    "ptp.v2.dr.receivetimestamp.seconds",
    "ptp.v2.dr.receivetimestamp.nanoseconds",
    "ptp.v2.dr.requestingsourceportidentity",
    "ptp.v2.dr.requestingsourceportid",
    "ptp.v2.an.origintimestamp.seconds",
    "ptp.v2.an.origintimestamp.nanoseconds",
    "ptp.v2.an.origincurrentutcoffset",
    "ptp.v2.an.priority1",
    "ptp.v2.an.grandmasterclockclass",
    "ptp.v2.an.grandmasterclockaccuracy",
    "ptp.v2.an.grandmasterclockvariance",
    "ptp.v2.an.priority2",
    "ptp.v2.an.grandmasterclockidentity",
    "ptp.v2.an.localstepsremoved",
    "ptp.v2.timesource",
};

//! One packet as tshark reads it, turned into the record that the view model should show.
class TsharkPacket
{
public:
    explicit TsharkPacket(const QString &line)
        : _values(line.split('\t'))
    {}

    QVariantMap record() const;

private:
    QString text(const char *field) const { return _values.value(kFields.indexOf(QLatin1String(field))); }
    // Decimal, or hexadecimal with 0x; empty for a field that the packet does not have.
    qulonglong number(const char *field) const { return text(field).toULongLong(nullptr, 0); }
    QString decimal(const char *field) const
    {
        const QString value = text(field);
        return value.startsWith('-') ? value : QString::number(number(field));
    }
    QString time() const;
    QString correction() const;
    QString clock(const char *field) const;
    QString port(const char *clockField, const char *portField) const
    {
        return clock(clockField) + '-' + decimal(portField);
    }
    QString timestamp(const char *prefix) const;
    QString clockQuality() const;

    QStringList _values;
};

QString TsharkPacket::time() const
{
    // Seconds with nine digits behind the point; the analysis keeps milliseconds.
    const QString seconds = text("frame.time_epoch").section('.', 0, 0);
    const QString milliseconds = text("frame.time_epoch").section('.', 1).left(3);
    return QDateTime::fromSecsSinceEpoch(seconds.toLongLong()).toString("yyyy-MM-dd hh:mm:ss.") + milliseconds;
}

QString TsharkPacket::correction() const
{
    // IEEE 1588-2008 13.3.2.7: nanoseconds times 2^16, of which tshark shows whole nanoseconds and the fraction.
    const auto fraction = static_cast<qulonglong>(qRound64(text("ptp.v2.correction.subns").toDouble() * 65'536));
    return QString::number((number("ptp.v2.correction.ns") << 16) | fraction);
}

QString TsharkPacket::clock(const char *field) const
{
    const QString digits = text(field).mid(2).rightJustified(16, '0'); // without 0x
    QStringList octets;
    for (int i = 0; i < digits.size(); i += 2)
        octets.append(digits.mid(i, 2));
    return octets.join(':');
}

QString TsharkPacket::timestamp(const char *prefix) const
{
    const QByteArray name(prefix);
    return decimal(name + ".seconds") + '.' + decimal(name + ".nanoseconds").rightJustified(9, '0');
}

QString TsharkPacket::clockQuality() const
{
    return QString::number(number("ptp.v2.an.grandmasterclockclass") << 24
                           | number("ptp.v2.an.grandmasterclockaccuracy") << 16
                           | number("ptp.v2.an.grandmasterclockvariance"));
}

QVariantMap TsharkPacket::record() const
{
    static const QMap<qulonglong, QString> kTypes{
        {0x0, "SYNC"}, {0x1, "DELAY_REQ"}, {0x8, "FOLLOW_UP"}, {0x9, "DELAY_RESP"}, {0xb, "ANNOUNCE"}};
    const QString type = kTypes.value(number("ptp.v2.messagetype"));
    QVariantMap record{{"timestamp", time()},
                       {"sourceIp", text("ip.src")},
                       {"messageType", type},
                       {"sequenceId", decimal("ptp.v2.sequenceid")},
                       {"domainNumber", decimal("ptp.v2.domainnumber")},
                       {"sourcePortId", port("ptp.v2.clockidentity", "ptp.v2.sourceportid")},
                       {"messageLength", decimal("ptp.v2.messagelength")},
                       {"correctionField", correction()}};
    if (type == "SYNC" || type == "DELAY_REQ")
        record.insert("originTimestamp", timestamp("ptp.v2.sdr.origintimestamp"));
    if (type == "FOLLOW_UP")
        record.insert("preciseOriginTimestamp", timestamp("ptp.v2.fu.preciseorigintimestamp"));
    if (type == "DELAY_RESP") {
        record.insert("receiveTimestamp", timestamp("ptp.v2.dr.receivetimestamp"));
        record.insert("requestingPortIdentity",
                      port("ptp.v2.dr.requestingsourceportidentity", "ptp.v2.dr.requestingsourceportid"));
    }
    if (type == "ANNOUNCE") {
        record.insert("originTimestamp", timestamp("ptp.v2.an.origintimestamp"));
        record.insert("currentUtcOffset", decimal("ptp.v2.an.origincurrentutcoffset"));
        record.insert("grandmasterPriority1", decimal("ptp.v2.an.priority1"));
        record.insert("grandmasterClockQuality", clockQuality());
        record.insert("grandmasterPriority2", decimal("ptp.v2.an.priority2"));
        record.insert("grandmasterIdentity", clock("ptp.v2.an.grandmasterclockidentity"));
        record.insert("stepsRemoved", decimal("ptp.v2.an.localstepsremoved"));
        record.insert("timeSource", decimal("ptp.v2.timesource"));
    }
    return record;
}

QString described(const QVariantMap &record)
{
    QStringList fields;
    for (auto field = record.cbegin(); field != record.cend(); ++field)
        fields.append(field.key() + '=' + field.value().toString());
    return fields.join(' ');
}

} // namespace

class TestSamplesTshark : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void records_equalTsharksReading_data();
    void records_equalTsharksReading();

private:
    QStringList tsharkLines(const QString &path) const;

    QTemporaryDir _settings; // a tester's own Wireshark preferences must not matter
};

void TestSamplesTshark::initTestCase()
{
    QVERIFY2(QFile::exists(QStringLiteral(TSHARK_PROGRAM)), "tshark is not installed");
    QVERIFY(_settings.isValid());
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
}

QStringList TestSamplesTshark::tsharkLines(const QString &path) const
{
    QStringList arguments{"-n", "-r", path, "-Y", "ptp", "-T", "fields"};
    for (const QString &field : kFields)
        arguments += {"-e", field};
    QProcess tshark;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("WIRESHARK_CONFIG_DIR", _settings.path());
    tshark.setProcessEnvironment(environment);
    tshark.start(QStringLiteral(TSHARK_PROGRAM), arguments, QIODevice::ReadOnly);
    if (!tshark.waitForFinished(kLimitMsecs) || tshark.exitCode() != 0)
        return {};
    return QString::fromLatin1(tshark.readAllStandardOutput()).remove('\r').split('\n', Qt::SkipEmptyParts);
}

void TestSamplesTshark::records_equalTsharksReading_data()
{
    QTest::addColumn<QString>("path");
    const QDir samples(QStringLiteral(SWITCHPANEL_SAMPLES));
    const QFileInfoList files = samples.entryInfoList({"*.pcap", "*.pcapng"}, QDir::Files, QDir::Name);
    QVERIFY(!files.isEmpty());
    for (const QFileInfo &file : files)
        QTest::newRow(qPrintable(file.fileName())) << file.filePath();
}

void TestSamplesTshark::records_equalTsharksReading()
{
    QFETCH(QString, path);
    PacketAnalysisViewModel viewModel;
    viewModel.setSelectedFilePath(path);
    QSignalSpy finished(&viewModel, &PacketAnalysisViewModel::analysisFinished);
    viewModel.startAnalysis();
    QVERIFY(finished.wait(kLimitMsecs));
    const QVariantList records = viewModel.analysisResults();

    const QStringList lines = tsharkLines(path);
    QVERIFY(!lines.isEmpty());
    QCOMPARE(records.size(), lines.size());
    for (int i = 0; i < lines.size(); ++i) {
        const QVariantMap expected = TsharkPacket(lines[i]).record();
        QVERIFY(!expected.value("messageType").toString().isEmpty());
        if (records[i].toMap() != expected)
            QCOMPARE(described(records[i].toMap()), described(expected));
    }
}

QTEST_GUILESS_MAIN(TestSamplesTshark)

#include "tst_samples_tshark.moc"
