#pragma once

#include <simulator/instant.h>

#include <QtCore/QByteArray>
#include <QtCore/QByteArrayList>

#include <optional>
#include <random>
#include <vector>

namespace simulator {

/// The sending direction of the line: bytes wait here until they have left at the line's speed, cut into the pieces in
/// which a reader sees them, with the faults that a line has.
///
/// Faults are set in bytes from now: what is already waiting still comes before them.
class SerialLine
{
public:
    SerialLine(int bytesPerSecond, int largestChunk, Duration chunkGap, quint32 seed);

    void append(const QByteArray &bytes, Instant now);
    /// Puts whole lines behind the next line end that has not left yet. False, and nothing happens, if there is none.
    bool interject(const QByteArray &lines);
    QByteArrayList take(Instant now);
    std::optional<Instant> nextDue() const;
    bool hasBacklog() const { return _offset < _backlog.size(); }

    void cutAfter(qint64 bytes);
    /// Time 0: until wake().
    void hangAfter(qint64 bytes, Duration time);
    void insertAfter(qint64 bytes, const QByteArray &inserted, bool atLineEnd);
    void dropAfter(qint64 bytes);
    void padAfter(qint64 bytes, int nuls);
    /// Ends dropping and padding.
    void endReply();

    bool isCut() const { return _cut; }
    bool isHung(Instant now) const;
    void plugIn();
    /// Faults that have not struck yet do not.
    void clearFaults();
    void wake();
    /// Forgets what has not left yet.
    void discardBacklog();

    quint32 random(quint32 below);
    QByteArray garbage(int size);

private:
    enum class Effect { Cut, Hang, Insert, InsertAtLineEnd, Drop, Pad };
    struct Defect
    {
        qint64 position; // in bytes appended since the beginning
        Effect effect;
        QByteArray inserted;
        Duration time{0};
        int nuls = 0;
    };

    void arm(Defect defect);
    QByteArray damaged(QByteArray bytes, Instant now);
    bool strike(const Defect &defect, QByteArray *out, QByteArray *rest, Instant now);
    void choosePiece();
    QByteArray takePiece();

    const int _bytesPerSecond;
    const int _largestChunk;
    const Duration _chunkGap;
    std::mt19937 _random;

    QByteArray _backlog;
    int _offset = 0;   // of what has not left yet
    Instant _start{0}; // when the backlog began to leave
    qint64 _sentSinceStart = 0;
    int _piece = 0; // size of the next one
    Instant _lastPiece{0};

    qint64 _appended = 0;
    std::vector<Defect> _defects; // by position
    bool _dropping = false;
    int _padding = 0;
    bool _cutting = false; // nothing is appended any more; cut once the backlog has left
    bool _cut = false;
    std::optional<Instant> _hungUntil;
};

} // namespace simulator
