#include "largecaptures.h"

#include <QtCore/QFile>

namespace largecaptures {

namespace {

constexpr int kFileHeaderSize = 24; // of classic pcap
constexpr int kRepetitions = 700;

} // namespace

bool writeLong(const QString &path, int *packets)
{
    capturebuilder::SiteOptions options;
    options.seconds = 150; // about 3 000 packets
    const QVector<capturebuilder::CapturedPacket> site = capturebuilder::ptpSite(options);
    const QByteArray capture = capturebuilder::toPcap(site);
    const QByteArray records = capture.mid(kFileHeaderSize);
    *packets = site.size() * kRepetitions;

    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(capture.left(kFileHeaderSize)) != kFileHeaderSize)
        return false;
    for (int i = 0; i < kRepetitions; ++i) {
        if (file.write(records) != records.size())
            return false;
    }
    return file.flush();
}

bool writeSparse(const QString &path, const QByteArray &capture, qint64 size)
{
    return capturebuilder::writeFile(path, capture) && QFile::resize(path, size);
}

QByteArray overrunningRecordHeader()
{
    // Seconds and microseconds of the time stamp, captured length, original length.
    return QByteArray::fromHex("00f15365"
                               "00000000"
                               "ffffff7f"
                               "ffffff7f");
}

} // namespace largecaptures
