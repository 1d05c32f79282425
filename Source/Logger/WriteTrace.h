#pragma once

#include "Platform/FileResult.h"

#include <QByteArray>
#include <QString>

#include <deque>
#include <functional>
#include <mutex>

/// Writes to files, whose failures go to the monitor's trace, once for each file and reason until that file is
/// written again. Safe from any thread.

/// AtomicFile::write(). False when it failed, which is traced by then. An empty path is an account whose name
/// forms none: nothing is written and nothing traced.
bool writeOrTrace(const QString &path, const QByteArray &bytes);
/// AtomicFile::writeText(), likewise.
bool writeTextOrTrace(const QString &path, const QString &text);
/// AtomicFile::remove(), likewise; false also where there was no such file, which is no failure.
bool removeOrTrace(const QString &path);
/// For a change to `path` that was made otherwise: whether it was done, and a trace where it was not.
bool traceFailure(const QString &path, const FileResult &result);

/// What has been told of failed writes, so that a file that is tried again and again tells it once.
class WriteFailures
{
public:
    /// Tells one line; false when it could not be told now, and shall be tried again.
    using Tell = std::function<bool(const QString &line)>;

    /// The oldest give way: who writes to thousands of places that fail must not fill the memory.
    static constexpr std::size_t MostKept = 64;

    explicit WriteFailures(Tell tell) : m_tell(std::move(tell)) {}

    void failed(const QString &path, const QString &reason);
    /// The file was written: its next failure is news. A line that could not be told is tried once more.
    void succeeded(const QString &path);

private:
    struct Failure {
        QString path;
        QString reason;
        bool isTold = false; ///< a full disk often takes no trace line either
    };

    void tellTheRest();

    Tell m_tell;
    std::mutex m_lock;
    std::deque<Failure> m_failures; ///< oldest first
};
