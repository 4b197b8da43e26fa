// Large captures for the benchmarks, the same bytes every time.
#pragma once

#include <QtCore/QString>

#include <cstdint>

enum class Traffic {
    PtpOnly,      // a healthy site: Announce, Sync, Follow_Up, nine slaves with requests and responses
    VideoWithPtp, // 5 % of the packets are such PTP messages, the others video-like UDP and some TCP
    HostileTail   // stores full of requests and responses with one sequence id, and 70 000 findings
};

/// Writes a capture of about the given size (HostileTail has a size of its own) and returns the number of packets; 0
/// when the file cannot be written.
std::int64_t generateCapture(const QString &path, Traffic traffic, std::int64_t bytes);
