#include "capturefile.h"

#include <windows.h>

namespace pcpp {

namespace {

bool isRegularFile(const std::string &path)
{
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)))
        return false;
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    const bool onDisk = GetFileType(file) == FILE_TYPE_DISK;
    CloseHandle(file);
    return onDisk;
}

} // namespace

OpenCapture openCaptureFile(const std::string &path)
{
    OpenCapture capture;
    if (!isRegularFile(path))
        return capture;
    // To libpcap a lone "-" is the standard input. The stream is left to libpcap here: its C library need not be ours.
    const std::string name = path == "-" ? ".\\-" : path;
    char reason[PCAP_ERRBUF_SIZE] = {};
    capture.handle.reset(pcap_open_offline_with_tstamp_precision(name.c_str(), PCAP_TSTAMP_PRECISION_NANO, reason));
    return capture;
}

} // namespace pcpp
