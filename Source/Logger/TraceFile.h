#pragma once

#include <QString>

#include <mutex>
#include <optional>

#include <sys/stat.h>

/// Writing a trace file. Every failure is silent: a trace that cannot be written is dropped, and tracing never
/// stops or blocks the program. Only regular files are written to, and only by an absolute path: a key that the
/// path table lacks is no file. What is made here only its user can read. Safe from any thread.
class TraceFile
{
public:
    /// A trace file above this many bytes is emptied, with no older copy kept.
    static constexpr qint64 LargestBytes = 512'000;

    TraceFile() = default;
    ~TraceFile() { close(); }
    TraceFile(const TraceFile &) = delete;
    TraceFile &operator=(const TraceFile &) = delete;

    /// Appends `text` as UTF-8, in one piece where the disk takes it, and empties a file that is above
    /// LargestBytes then, the new text with it. A file that does not exist is made, with its folder. False when
    /// it was not written; otherwise the text is in the file at `path` by then, whoever has removed, renamed or
    /// replaced that file since the last call.
    [[nodiscard]] bool append(const QString &path, const QString &text);

    /// Replaces a file above LargestBytes by an empty one. Where the disk has no room for that it is emptied in
    /// place: it is old traces that fill it.
    static void clearLogs(const QString &path);

private:
    [[nodiscard]] std::optional<qint64> openedSize(const QString &path);
    void close();

    std::mutex m_lock;
    int m_descriptor = -1; ///< kept from line to line: most come to the file of the line before
    struct statx m_opened {
    };
};
