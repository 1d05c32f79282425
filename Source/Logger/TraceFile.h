#pragma once

#include <QString>

/// Writing the trace files. Every failure is silent: a trace that cannot be written is dropped, and tracing
/// never stops or blocks the program. Only regular files are written to.
namespace TraceFile
{
/// A trace file above this many bytes is emptied, with no older copy kept.
inline constexpr qint64 LargestBytes = 512'000;

/// Appends `text` as UTF-8, in one piece where the disk takes it. A file that does not exist is made, with its
/// folder. True when the file is now above LargestBytes.
bool write(const QString &path, const QString &text);

/// Replaces a file above LargestBytes by an empty one, whole or not at all.
void clearLogs(const QString &path);

/// As write() and clearLogs() in turn, without looking at the file twice.
void append(const QString &path, const QString &text);
} // namespace TraceFile
