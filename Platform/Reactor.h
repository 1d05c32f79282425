#pragma once

#include <QFlags>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

/// The one thread that waits: for descriptors to become ready and for moments to come, on behalf of everything
/// that does not live on the main thread. It starts at first use and lives as long as the process.
///
/// Its callbacks run on that thread and must be short; hand longer work to a DispatchQueue. All calls may come
/// from any thread.
class Reactor
{
public:
    enum Event : unsigned {
        Readable = 1, ///< bytes can be read
        Writable = 2, ///< bytes can be written, or a connect has ended
        HungUp = 4,   ///< the peer has closed its side; implied by Readable, and may be waited for alone
        Failed = 8,   ///< the descriptor is in error; always reported
    };
    Q_DECLARE_FLAGS(Events, Event)

    class Watch;
    class Timer;

    static Reactor &shared();

    /// Watches `fd`, which stays the caller's and must outlive the watch. Nothing is reported before arm().
    [[nodiscard]] std::unique_ptr<Watch> watch(int fd, std::function<void(Events)> ready);

    /// Calls `fire` once after `delay`, unless the timer is destroyed before.
    [[nodiscard]] std::unique_ptr<Timer> startTimer(std::chrono::nanoseconds delay, std::function<void()> fire);

    /// Calls `fire` once after `delay`, whatever happens.
    void callAfter(std::chrono::nanoseconds delay, std::function<void()> fire);

private:
    using TimePoint = std::chrono::steady_clock::time_point;
    using TimerKey = std::pair<TimePoint, quint64>;
    using Ready = std::shared_ptr<const std::function<void(Events)>>;

    Reactor();
    TimerKey addTimer(std::chrono::nanoseconds delay, std::function<void()> fire);
    void run();
    void fireDueTimers();
    int millisecondsToNextTimer();
    void report(quint64 id, unsigned systemEvents);
    void wake() const;

    int m_epoll = -1;
    int m_wakeUp = -1;
    std::mutex m_mutex;
    std::map<quint64, Ready> m_watches;
    std::map<TimerKey, std::function<void()>> m_timers;
    quint64 m_lastId = 0;
    TimePoint m_wakesAt = TimePoint::min(); // when the thread looks at its timers by itself
};
Q_DECLARE_OPERATORS_FOR_FLAGS(Reactor::Events)

/// A watched descriptor. Destroying it ends the watch; a callback that has begun by then still runs to its end.
class Reactor::Watch
{
public:
    ~Watch();
    Watch(const Watch &) = delete;
    Watch &operator=(const Watch &) = delete;

    /// Asks for one report of any of `events`, in place of what was asked for before. It comes at once when the
    /// descriptor is ready already, so nothing is missed between a refused read and this call. False when the
    /// system refuses (errno tells why).
    [[nodiscard]] bool arm(Events events);

private:
    friend class Reactor;
    Watch(Reactor &reactor, int fd, quint64 id) : m_reactor(reactor), m_fd(fd), m_id(id) {}

    Reactor &m_reactor;
    const int m_fd;
    const quint64 m_id;
    bool m_registered = false;
};

/// A running timer. Destroying it ends it; a callback that has begun by then still runs to its end.
class Reactor::Timer
{
public:
    ~Timer();
    Timer(const Timer &) = delete;
    Timer &operator=(const Timer &) = delete;

private:
    friend class Reactor;
    Timer(Reactor &reactor, TimerKey key) : m_reactor(reactor), m_key(key) {}

    Reactor &m_reactor;
    const TimerKey m_key;
};
