#include "PcapFileDevice.h"

#include "capturefile.h"

#include <utility>

namespace pcpp {

struct PcapFileReaderDevice::Capture
{
    OpenCapture file;
};

PcapFileReaderDevice::PcapFileReaderDevice(const std::string &fileName)
    : _fileName(fileName)
{}

PcapFileReaderDevice::~PcapFileReaderDevice() = default;

bool PcapFileReaderDevice::open()
{
    if (_capture)
        return true;
    // The C library would open the part before the NUL, which is another file.
    if (_fileName.find('\0') != std::string::npos)
        return false;
    auto capture = std::make_unique<Capture>();
    capture->file = openCaptureFile(_fileName);
    if (!capture->file.handle)
        return false;
    _linkType = static_cast<LinkLayerType>(pcap_datalink(capture->file.handle.get()));
    _capture = std::move(capture);
    return true;
}

bool PcapFileReaderDevice::isOpened() const
{
    return _capture != nullptr;
}

bool PcapFileReaderDevice::getNextPacket(RawPacket &rawPacket)
{
    if (!_capture)
        return false;
    pcap_pkthdr *header = nullptr;
    const u_char *data = nullptr;
    if (pcap_next_ex(_capture->file.handle.get(), &header, &data) != 1)
        return false;

    timespec time = {};
    time.tv_sec = header->ts.tv_sec;
    time.tv_nsec = header->ts.tv_usec; // nanoseconds, as asked for at opening
    rawPacket.borrow(data, static_cast<int>(header->caplen), static_cast<int>(header->len), time, _linkType);
    return true;
}

void PcapFileReaderDevice::close()
{
    _capture.reset();
}

} // namespace pcpp
