// Exports: the whole analysis as JSON, the findings as a text table.
#include "packetanalysisviewmodel.h"
#include "packetanalysisviewmodel_p.h"

#include <QtCore/QDateTime>
#include <QtCore/QDebug>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSaveFile>
#include <QtCore/QTextStream>

namespace {

/*!
    A file to export to. A regular file is replaced only once its new content is complete, so that a full disk never
   leaves half a document in the place of a whole one; anything else (a pipe, a device) is written as it stands.
*/
class ExportFile
{
public:
    explicit ExportFile(const QString &path)
        : _hasName(!path.isEmpty())
        , _isPlain(QFileInfo(path).exists() && !QFileInfo(path).isFile())
        , _plain(path)
        , _saved(path)
    {
        _saved.setDirectWriteFallback(true); // a writable file in a folder that is not
    }

    bool open(QIODevice::OpenMode mode)
    {
        return _hasName && device().open(mode | QIODevice::WriteOnly | QIODevice::Truncate);
    }

    //! Writes the content and closes. What goes wrong from here on is only logged: the panel learns of a failed open
    //! alone.
    void write(const QByteArray &content)
    {
        // A full disk shows in the count first: the device takes a part and reports no error.
        bool isWhole = device().write(content) == content.size() && device().flush();
        const QString reason = device().errorString();
        if (!_isPlain) {
            if (!isWhole)
                _saved.cancelWriting();
            isWhole = _saved.commit();
        }
        if (!isWhole)
            qWarning() << "Export not written:" << device().fileName() << reason;
    }

private:
    QFileDevice &device()
    {
        if (_isPlain)
            return _plain;
        return _saved;
    }

    bool _hasName; // an empty name would open as a file that is never written
    bool _isPlain;
    QFile _plain;
    QSaveFile _saved;
};

QString tableField(const QVariantMap &packet, const QString &key)
{
    QString text = packet.value(key).toString();
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    text.replace(QLatin1Char(','), QChar(0xff0c)); // full-width comma: fields never need quotes
    return text;
}

QByteArray table(const QVariantList &packets)
{
    const QStringList columns{QStringLiteral("timestamp"), QStringLiteral("messageType"), QStringLiteral("sourceIp"),
                              QStringLiteral("abnormalType")};
    QByteArray content;
    QTextStream stream(&content, QIODevice::WriteOnly);
    stream.setCodec("UTF-8");
    stream.setGenerateByteOrderMark(true);
    stream << columns.join(QLatin1Char(',')) << '\n';
    for (const QVariant &entry : packets) {
        const QVariantMap packet = entry.toMap();
        QStringList fields;
        for (const QString &column : columns)
            fields.append(tableField(packet, column));
        stream << fields.join(QLatin1Char(',')) << '\n';
    }
    stream.flush();
    return content;
}

QJsonArray toJsonArray(const QVariantList &results)
{
    QJsonArray array;
    for (const QVariant &record : results)
        array.append(QJsonObject::fromVariantMap(record.toMap()));
    return array;
}

} // namespace

void PacketAnalysisViewModel::exportResults(const QString &exportPath)
{
    if (_d->results.isEmpty()) {
        setLastError(QStringLiteral("No results to export"));
        return;
    }
    const QJsonObject document{{QStringLiteral("filePath"), _d->selectedFilePath},
                               {QStringLiteral("exportTime"), QDateTime::currentDateTime().toString(Qt::ISODate)},
                               {QStringLiteral("statistics"), QJsonObject::fromVariantMap(_d->statistics)},
                               {QStringLiteral("results"), toJsonArray(_d->results)}};
    ExportFile file(exportPath);
    if (!file.open(QIODevice::NotOpen)) {
        setLastError(QStringLiteral("Failed to export results to: ") + exportPath);
        return;
    }
    file.write(QJsonDocument(document).toJson(QJsonDocument::Indented));
}

void PacketAnalysisViewModel::exportAbnormalPackets(const QString &exportPath)
{
    const QVariantList packets = abnormalPackets();
    if (packets.isEmpty()) {
        setLastError(QStringLiteral("无异常数据包可导出"));
        return;
    }
    ExportFile file(exportPath);
    if (!file.open(QIODevice::Text)) {
        setLastError(QStringLiteral("导出失败: ") + exportPath);
        return;
    }
    file.write(table(packets));
}
