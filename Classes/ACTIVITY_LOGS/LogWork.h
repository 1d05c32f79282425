#pragma once

#include <QtGlobal>

#include <chrono>
#include <functional>
#include <memory>
#include <stop_token>

/// A piece of work on the log folders that the end of the program shall not cut in two: while one lives, the
/// application waits a moment before it goes. Any thread.
class LogWork
{
public:
    /// Well within the patience of the end.
    static constexpr std::chrono::milliseconds MostWait{1000};

    /// `dayFiles` are still to be changed; those that are left at the end are traced.
    explicit LogWork(qsizetype dayFiles = 0);
    ~LogWork();
    LogWork(const LogWork &) = delete;
    LogWork &operator=(const LogWork &) = delete;

    /// One of the day files has been dealt with.
    void dayFileDone();

    /// Asked to stop once the application ends, and never before.
    [[nodiscard]] static std::stop_token endOfProgram();

private:
    qsizetype m_dayFiles;
};

/// Runs what may take minutes, one after the other, on a thread that is there while there is work: the pool
/// that reads the lists stays free.
class LogWorker
{
public:
    /// The name of the thread, 15 characters at most, which outlives it.
    explicit LogWorker(const char *name);

    /// Queues `work` behind what waits. It must not throw. Where the system refuses a thread the pool runs it.
    void async(std::function<void()> work) const;

private:
    struct State;
    std::shared_ptr<State> m_state;
};
