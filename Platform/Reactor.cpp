#include "Platform/Reactor.h"

#include "Platform/WorkerThread.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>
#include <limits>

using std::chrono::steady_clock;

namespace
{
constexpr quint64 WakeUpId = 0;

unsigned systemEvents(Reactor::Events events)
{
    // One report per arm(): a descriptor that nobody reads costs no wake-ups, however much arrives on it.
    unsigned result = EPOLLONESHOT;
    if (events & Reactor::Readable)
        result |= EPOLLIN | EPOLLRDHUP;
    if (events & Reactor::Writable)
        result |= EPOLLOUT;
    if (events & Reactor::HungUp)
        result |= EPOLLRDHUP;
    return result;
}

Reactor::Events reportedEvents(unsigned system)
{
    Reactor::Events result;
    result.setFlag(Reactor::Readable, system & EPOLLIN);
    result.setFlag(Reactor::Writable, system & EPOLLOUT);
    result.setFlag(Reactor::HungUp, system & (EPOLLRDHUP | EPOLLHUP));
    result.setFlag(Reactor::Failed, system & EPOLLERR);
    return result;
}
} // namespace

Reactor &Reactor::shared()
{
    // Never destroyed: its thread waits until the process ends, and watches may be older than any static
    // object.
    static Reactor *const reactor = new Reactor;
    return *reactor;
}

Reactor::Reactor() : m_epoll(::epoll_create1(EPOLL_CLOEXEC)), m_wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.u64 = WakeUpId;
    if (::epoll_ctl(m_epoll, EPOLL_CTL_ADD, m_wakeUp, &event) != 0)
        qFatal("Cannot wait for descriptors: %s", std::strerror(errno));
    startWorkerThread("corvane-reactor", [this] { run(); });
}

std::unique_ptr<Reactor::Watch> Reactor::watch(int fd, std::function<void(Events)> ready)
{
    const std::lock_guard lock(m_mutex);
    const quint64 id = ++m_lastId;
    m_watches.emplace(id, std::make_shared<const std::function<void(Events)>>(std::move(ready)));
    return std::unique_ptr<Watch>(new Watch(*this, fd, id));
}

std::unique_ptr<Reactor::Timer> Reactor::startTimer(std::chrono::nanoseconds delay, std::function<void()> fire)
{
    return std::unique_ptr<Timer>(new Timer(*this, addTimer(delay, std::move(fire))));
}

void Reactor::callAfter(std::chrono::nanoseconds delay, std::function<void()> fire)
{
    addTimer(delay, std::move(fire));
}

Reactor::TimerKey Reactor::addTimer(std::chrono::nanoseconds delay, std::function<void()> fire)
{
    const auto now = steady_clock::now();
    const auto due = delay < TimePoint::max() - now ? now + delay : TimePoint::max();
    const std::lock_guard lock(m_mutex);
    const TimerKey key(due, ++m_lastId);
    m_timers.emplace(key, std::move(fire));
    if (due < m_wakesAt)
        wake();
    return key;
}

void Reactor::wake() const
{
    const quint64 one = 1;
    // Fails only when the counter is full, and then the thread is awake anyhow.
    [[maybe_unused]] const auto written = ::write(m_wakeUp, &one, sizeof one);
}

void Reactor::run()
{
    std::array<epoll_event, 32> events{};
    for (;;) {
        const int count =
            ::epoll_wait(m_epoll, events.data(), static_cast<int>(events.size()), millisecondsToNextTimer());
        for (int i = 0; i < count; ++i) {
            if (events[i].data.u64 != WakeUpId) {
                report(events[i].data.u64, events[i].events);
                continue;
            }
            quint64 counter = 0;
            [[maybe_unused]] const auto taken = ::read(m_wakeUp, &counter, sizeof counter);
        }
        fireDueTimers();
    }
}

int Reactor::millisecondsToNextTimer()
{
    const std::lock_guard lock(m_mutex);
    if (m_timers.empty()) {
        m_wakesAt = TimePoint::max();
        return -1;
    }
    m_wakesAt = m_timers.begin()->first.first;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(m_wakesAt - steady_clock::now()).count();
    return static_cast<int>(std::clamp<qint64>(left, 0, std::numeric_limits<int>::max()));
}

void Reactor::fireDueTimers()
{
    const auto now = steady_clock::now();
    std::unique_lock lock(m_mutex);
    while (!m_timers.empty() && m_timers.begin()->first.first <= now) {
        const auto fire = std::move(m_timers.begin()->second);
        m_timers.erase(m_timers.begin());
        lock.unlock();
        fire();
        lock.lock();
    }
}

void Reactor::report(quint64 id, unsigned events)
{
    Ready ready;
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_watches.find(id);
        if (found == m_watches.end())
            return; // ended while its event was on the way
        ready = found->second;
    }
    (*ready)(reportedEvents(events));
}

bool Reactor::Watch::arm(Events events)
{
    epoll_event event{};
    event.events = systemEvents(events);
    event.data.u64 = m_id;
    if (::epoll_ctl(m_reactor.m_epoll, m_registered ? EPOLL_CTL_MOD : EPOLL_CTL_ADD, m_fd, &event) != 0)
        return false;
    m_registered = true;
    return true;
}

Reactor::Watch::~Watch()
{
    if (m_registered)
        ::epoll_ctl(m_reactor.m_epoll, EPOLL_CTL_DEL, m_fd, nullptr);
    Ready ready; // freed after the lock: what the callback holds may end other watches
    const std::lock_guard lock(m_reactor.m_mutex);
    const auto found = m_reactor.m_watches.find(m_id);
    ready = std::move(found->second);
    m_reactor.m_watches.erase(found);
}

Reactor::Timer::~Timer()
{
    std::function<void()> fire; // freed after the lock, as above
    const std::lock_guard lock(m_reactor.m_mutex);
    const auto found = m_reactor.m_timers.find(m_key);
    if (found == m_reactor.m_timers.end())
        return;
    fire = std::move(found->second);
    m_reactor.m_timers.erase(found);
}
