#pragma once

#include <memory>
#include <string>

#include <pcap/pcap.h>

namespace pcpp {

/// An open capture with the buffer that its file is read through. The handle closes before the buffer is freed.
struct OpenCapture
{
    struct Close
    {
        void operator()(pcap_t *capture) const { pcap_close(capture); }
    };

    std::unique_ptr<char[]> ioBuffer;
    std::unique_ptr<pcap_t, Close> handle; // empty: not opened
};

/// Opens a regular file as a capture with nanosecond times. What is not a regular file is refused without opening it: a
/// pipe would wait for its writer, and some devices act on being opened. The path's bytes are handed to the system as
/// they are.
OpenCapture openCaptureFile(const std::string &path);

} // namespace pcpp
