#pragma once

#include "Platform/Clock.h"

#include <QString>

#include <deque>
#include <functional>
#include <memory>
#include <vector>

/// Shell commands that are run on behalf of others, one at a time, in the order in which they came. Each runs
/// on its own, as ShellSpawn tells, and outlives this object and the process; what waits by then is lost.
///
/// Most commands open a window, and some of those stay until the user closes it. So one that runs for longer
/// than Limits::CommandPatience holds up the next no more; it goes on beside it. Main thread only.
class CommandQueue
{
public:
    /// `lost` is called when one that was to wait can't be started when its turn comes.
    explicit CommandQueue(
        Clock &clock, std::function<void()> lost = [] {});
    ~CommandQueue();
    CommandQueue(const CommandQueue &) = delete;
    CommandQueue &operator=(const CommandQueue &) = delete;

    /// Runs the command, at once or when its turn comes. False when it is refused: too many wait or run already
    /// (Limits), or the system can't start it.
    [[nodiscard]] bool run(const QString &command);

private:
    class Running;

    [[nodiscard]] bool start(const QString &command);
    void goOn();
    void dropEnded();

    Clock &m_clock;
    std::function<void()> m_lost;
    std::deque<QString> m_waiting;
    std::vector<std::unique_ptr<Running>> m_running;
    std::unique_ptr<Clock::Timer> m_patience; ///< runs while the youngest one may hold up the next
};
