#include "Companions/BackupDaemon/FrameCodec.h"

#include <cstring>

namespace
{
constexpr qsizetype HeaderBytes = 8;
}

QByteArray frameHeader(quint64 size)
{
    QByteArray header(HeaderBytes, Qt::Uninitialized);
    std::memcpy(header.data(), &size, sizeof size);
    return header;
}

QByteArray framed(const QByteArray &payload)
{
    return frameHeader(static_cast<quint64>(payload.size())) + payload;
}

bool FrameReader::feed(const QByteArray &bytes)
{
    m_pending.append(bytes);
    return announced().value_or(0) <= MaxPayloadBytes;
}

std::optional<QByteArray> FrameReader::takePayload()
{
    const auto size = announced();
    if (!size || *size > MaxPayloadBytes || m_pending.size() - HeaderBytes < static_cast<qsizetype>(*size))
        return std::nullopt;
    const QByteArray payload = m_pending.mid(HeaderBytes, static_cast<qsizetype>(*size));
    m_pending.remove(0, HeaderBytes + payload.size());
    return payload;
}

std::optional<quint64> FrameReader::announced() const
{
    if (m_pending.size() < HeaderBytes)
        return std::nullopt;
    quint64 size = 0;
    std::memcpy(&size, m_pending.constData(), sizeof size);
    return size;
}
