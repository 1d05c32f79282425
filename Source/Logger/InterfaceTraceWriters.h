#pragma once

#include "Platform/DispatchQueue.h"
#include "Source/Logger/TraceFile.h"

#include <QString>

/// What the two writers of AppInterfaceTraceFilePath share: a serial queue and the lines not yet written. They
/// don't know of each other; each opens the file for itself.
class InterfaceTraceBuffer
{
public:
    /// This many characters go to the file even when nobody asks for a flush.
    static constexpr qsizetype LargestBuffer = 51'200;
    static constexpr qsizetype MostKept = 2 * LargestBuffer; ///< of what can't be written

    explicit InterfaceTraceBuffer(std::string queueLabel) : m_queue(std::move(queueLabel)) {}

protected:
    /// Runs `work` on the writer's queue; the caller waits until it has ended.
    void onQueue(const DispatchQueue::Work &work) const { m_queue.sync(work); }
    void append(const QString &line) { m_messages += line; }
    /// Writes the buffer when it is full or when asked to.
    void writeOut(bool flush);

private:
    DispatchQueue m_queue;
    QString m_messages;
    TraceFile m_file;
};

/// Sorting of logs, command runs, daemon sends, full disk access, credentials.
class CVTraceFileLogger : private InterfaceTraceBuffer
{
public:
    static CVTraceFileLogger &shared();

    /// Adds one line; returns when it is on disk (with `flush`). An empty message does nothing at all.
    void logAppInterfaceTrace(const QString &message, bool flush);

private:
    CVTraceFileLogger();
};

/// Network answers, start-up, full disk access, shutdown.
class QNBackupProgressLogger : private InterfaceTraceBuffer
{
public:
    static QNBackupProgressLogger &progressLogger();

    /// Adds one line; returns when it is on disk (with `flush`). An empty message writes what is buffered and
    /// holds the file to its limit.
    void logAppInterfaceTrace(const QString &message, bool flush);

private:
    QNBackupProgressLogger();
};
