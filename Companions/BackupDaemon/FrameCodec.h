#pragma once

#include <QByteArray>

#include <optional>

/// The frame that daemon and clients exchange: an unsigned 64-bit count in the byte order of the host, then
/// that many bytes of payload.
[[nodiscard]] QByteArray framed(const QByteArray &payload);

/// A header that announces `size` bytes of payload, whatever follows it.
[[nodiscard]] QByteArray frameHeader(quint64 size);

/// Cuts a stream of bytes into payloads.
class FrameReader
{
public:
    static constexpr quint64 MaxPayloadBytes = 16 * 1024 * 1024;

    /// Takes the next bytes of the stream. False when a header announces more than MaxPayloadBytes: the peer
    /// cannot be followed any further.
    [[nodiscard]] bool feed(const QByteArray &bytes);

    /// The next whole payload; empty when none is complete.
    [[nodiscard]] std::optional<QByteArray> takePayload();

private:
    [[nodiscard]] std::optional<quint64> announced() const;

    QByteArray m_pending;
};
