#include "Platform/CommandQueue.h"

#include "Platform/Limits.h"
#include "Platform/ShellSpawn.h"

#include <QSocketNotifier>

#include <cerrno>

#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

/// A command that has been started and not reaped.
class CommandQueue::Running
{
public:
    Running(pid_t pid, std::function<void()> ended)
        : m_pid(pid), m_fd(static_cast<int>(::syscall(SYS_pidfd_open, pid, 0)))
    {
        // Without a descriptor its end is noticed when the next command comes.
        if (m_fd < 0)
            return;
        m_end = std::make_unique<QSocketNotifier>(m_fd, QSocketNotifier::Read);
        QObject::connect(m_end.get(), &QSocketNotifier::activated, m_end.get(), std::move(ended));
    }
    ~Running()
    {
        if (m_end) {
            m_end->setEnabled(false);
            m_end.release()->deleteLater(); // it may be the one that is calling
        }
        if (m_fd >= 0)
            ::close(m_fd);
    }
    Running(const Running &) = delete;

    /// Reaps it if it has ended; true then.
    [[nodiscard]] bool hasEnded() const
    {
        const pid_t reaped = ::waitpid(m_pid, nullptr, WNOHANG);
        return reaped == m_pid || (reaped < 0 && errno == ECHILD);
    }

private:
    const pid_t m_pid;
    const int m_fd;
    std::unique_ptr<QSocketNotifier> m_end;
};

CommandQueue::CommandQueue(Clock &clock, std::function<void()> lost) : m_clock(clock), m_lost(std::move(lost))
{
}

CommandQueue::~CommandQueue() = default;

bool CommandQueue::run(const QString &command)
{
    dropEnded();
    goOn();
    if (!m_patience && m_waiting.empty())
        return start(command);
    if (m_waiting.size() >= Limits::WaitingCommands)
        return false;
    m_waiting.push_back(command);
    return true;
}

bool CommandQueue::start(const QString &command)
{
    if (m_running.size() >= Limits::RunningCommands)
        return false;
    const auto shell = ShellSpawn::start(command);
    if (shell.pid == 0)
        return false;
    m_running.push_back(std::make_unique<Running>(shell.pid, [this] {
        dropEnded();
        goOn();
    }));
    m_patience = m_clock.start(Limits::CommandPatience, Clock::Repeat::Once, [this] {
        m_patience.reset();
        goOn();
    });
    return true;
}

void CommandQueue::dropEnded()
{
    const bool youngestHasEnded = !m_running.empty() && m_running.back()->hasEnded();
    if (youngestHasEnded) {
        m_running.pop_back();
        m_patience.reset();
    }
    std::erase_if(m_running, [](const auto &running) { return running->hasEnded(); });
}

void CommandQueue::goOn()
{
    while (!m_patience && !m_waiting.empty() && m_running.size() < Limits::RunningCommands) {
        const QString next = std::move(m_waiting.front());
        m_waiting.pop_front();
        if (!start(next))
            m_lost();
    }
}
