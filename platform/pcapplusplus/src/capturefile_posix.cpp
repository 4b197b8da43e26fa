#include "capturefile.h"

#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __GLIBC__
#include <stdio_ext.h>
#endif

namespace pcpp {

namespace {

// Larger than the C library's own: a capture is read from end to end in small pieces.
constexpr size_t kIoBufferSize = size_t{256} * 1024;

bool isRegularFile(const struct stat &status)
{
    return S_ISREG(status.st_mode);
}

/// A descriptor of the file, or -1. Checked before opening, so that nothing else is opened at all, and after it, since
/// the name may have come to mean another file in between.
int openRegularFile(const char *path)
{
    struct stat status = {};
    if (stat(path, &status) != 0 || !isRegularFile(status))
        return -1;
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return -1;
    if (fstat(descriptor, &status) == 0 && isRegularFile(status))
        return descriptor;
    close(descriptor);
    return -1;
}

} // namespace

OpenCapture openCaptureFile(const std::string &path)
{
    OpenCapture capture;
    const int descriptor = openRegularFile(path.c_str());
    if (descriptor < 0)
        return capture;
    FILE *file = fdopen(descriptor, "rb");
    if (!file) {
        close(descriptor);
        return capture;
    }
    capture.ioBuffer = std::make_unique<char[]>(kIoBufferSize);
    setvbuf(file, capture.ioBuffer.get(), _IOFBF, kIoBufferSize);
#ifdef __GLIBC__
    // libpcap reads every record with two calls, each of which would take the stream's lock; no other thread has the
    // stream.
    __fsetlocking(file, FSETLOCKING_BYCALLER);
#endif

    char reason[PCAP_ERRBUF_SIZE] = {};
    capture.handle.reset(pcap_fopen_offline_with_tstamp_precision(file, PCAP_TSTAMP_PRECISION_NANO, reason));
    if (!capture.handle)
        fclose(file);
    return capture;
}

} // namespace pcpp
