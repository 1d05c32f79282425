#pragma once

#include <QByteArray>

#include <chrono>

/// Seconds as a caller gives them; a negative number means no time-out.
using SocketSeconds = std::chrono::duration<double>;

/// One queued read and the bytes that it has so far. Three kinds: of an exact length (`readLength`), up to a
/// terminator (`term`), or of whatever comes first (neither).
struct GCDAsyncReadPacket {
    /// Room kept behind the bytes of every buffer, so that a parser which reads in wide steps needs no copy.
    static constexpr qsizetype TailRoom = 64;
    /// What an exact read allots at once. Beyond it the buffer doubles as bytes arrive, so that a length that a
    /// peer only claims takes no memory.
    static constexpr qsizetype FirstAllotment = 64 * 1024;

    QByteArray buffer;
    qsizetype bytesDone = 0;
    qsizetype maxLength = 0; ///< 0 for no limit
    SocketSeconds timeout{-1};
    qsizetype readLength = 0;
    QByteArray term;
    qint64 tag = 0;

    /// How many of `available` bytes belong to this packet: never a byte past the length, the terminator or
    /// `maxLength`. `complete` becomes true when the packet has all it wants with them.
    [[nodiscard]] qsizetype usableBytes(QByteArrayView available, bool *complete) const;

    /// Copies bytes behind those that are there.
    void append(QByteArrayView bytes);
    /// Makes room for up to `count` more bytes and says where they go; `room` is how many of them fit now.
    [[nodiscard]] char *space(qsizetype count, qsizetype *room);
    /// True when `maxLength` is reached.
    [[nodiscard]] bool isMaxedOut() const { return maxLength > 0 && bytesDone >= maxLength; }
    /// Hands the bytes over, TailRoom bytes of capacity behind them.
    [[nodiscard]] QByteArray take();

private:
    void reserve(qsizetype total);
};

/// One queued write and how much of it the system has taken.
struct GCDAsyncWritePacket {
    QByteArray buffer;
    qsizetype bytesDone = 0;
    qint64 tag = 0;
    SocketSeconds timeout{-1};
};
