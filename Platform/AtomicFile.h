#pragma once

#include "Platform/FileResult.h"
#include "Platform/Limits.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

#include <sys/types.h>

/// Whole files, in and out. Writing is whole or not at all: a temporary file in the same folder, all bytes, a
/// flush to the disk, a rename, a flush of the folder. Only absolute paths are written.
namespace AtomicFile
{
struct Options {
    mode_t newFileMode = 0600; ///< of a file that was not there; one that was keeps its own
    /// Asked when all is ready but the rename; false leaves the old file, and the result is ESTALE.
    std::function<bool()> mayReplace;
};

/// Replaces the file at `path`; folders that it needs are made with mode 0700. After a failure what was there
/// before stands untouched, save where only the last flush of the folder failed: then the new file stands, and
/// may be gone after a loss of power. A symbolic link stays, its target is replaced; mode and, where the system
/// lets us, owner stay. A process that is killed meanwhile leaves at most `.<name>.corvane-new-<digits>`
/// behind, which the next write of that file removes.
FileResult write(const QString &path, const QByteArray &bytes, const Options &options = {});

/// The bytes of a regular file; none when it cannot be read or holds more than `limit` bytes.
[[nodiscard]] std::optional<QByteArray> read(const QString &path, qint64 limit);

/// As write(), in UTF-8 without a byte order mark.
FileResult writeText(const QString &path, const QString &text);

/// The whole content of a UTF-8 file, nothing trimmed; none when it cannot be read, is too long or is no UTF-8.
[[nodiscard]] std::optional<QString> readText(const QString &path, qint64 limit = Limits::TextFileBytes);

/// Removes a file or a link; ENOENT where there is none.
FileResult remove(const QString &path);

/// Makes a folder, mode 0700, with those above it that are missing. A folder that stands is no failure.
FileResult makeFolders(const QString &path);

/// All bytes into an open file: short and interrupted writes go on. 0, or the error number.
[[nodiscard]] int writeAll(int descriptor, const QByteArray &bytes);
} // namespace AtomicFile
