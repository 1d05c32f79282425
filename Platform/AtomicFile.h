#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// Whole files, in and out. Writing is whole or not at all: a temporary file in the same folder, a flush, a
/// rename.
namespace AtomicFile
{
inline constexpr qint64 MaxTextBytes = 4 * 1024 * 1024;

/// Replaces the file at `path`. False when that cannot be done (folder missing, not writable, disk full); what
/// was there before is then untouched and nothing else is left behind. A symbolic link stays, its target is
/// replaced.
[[nodiscard]] bool write(const QString &path, const QByteArray &bytes);

/// The bytes of a regular file; none when it cannot be read or holds more than `limit` bytes.
[[nodiscard]] std::optional<QByteArray> read(const QString &path, qint64 limit);

/// As write(), in UTF-8 without a byte order mark.
[[nodiscard]] bool writeText(const QString &path, const QString &text);

/// The whole content of a UTF-8 file, nothing trimmed; none when it cannot be read, is too long or is no UTF-8.
[[nodiscard]] std::optional<QString> readText(const QString &path, qint64 limit = MaxTextBytes);
} // namespace AtomicFile
