#include "Platform/DispatchQueue.h"

#include "Platform/MainThread.h"
#include "Platform/Reactor.h"
#include "Platform/WorkerThread.h"

#include <QCoreApplication>
#include <QEvent>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <system_error>

using std::chrono::steady_clock;

struct DispatchQueue::State {
    explicit State(std::string name) : label(std::move(name)) {}
    virtual ~State() = default;

    virtual void async(Work work) = 0;
    virtual void sync(const Work &work) = 0;
    virtual void dispatch(Work work) = 0;
    virtual bool isCurrent() const = 0;
    /// Borrows the queue if it is idle, until leave() with the same frame.
    virtual bool enter(Frame &frame) = 0;
    virtual void leave(const Frame &frame) = 0;

    const std::string label;
};

// ---- The pool -----------------------------------------------------------------------------------------------

/// The threads that run strands: none until work needs one, and never more than MaxThreads. It is never
/// destroyed, because its threads may still run work while the process ends.
class DispatchQueue::Pool
{
public:
    static constexpr int MaxThreads = 2;

    static Pool &shared()
    {
        static Pool *const pool = new Pool;
        return *pool;
    }

    void post(std::shared_ptr<Strand> strand)
    {
        const std::lock_guard lock(m_mutex);
        m_ready.push_back(std::move(strand));
        if (m_idleThreads < static_cast<int>(m_ready.size()) && m_threads < MaxThreads)
            addThread();
        m_wake.notify_one();
    }

private:
    void addThread()
    {
        try {
            startWorkerThread("corvane-pool", [this] { run(); });
            ++m_threads;
        } catch (const std::system_error &) {
            // The strand stays in the list: a thread that is there, or the next post, takes it.
        }
    }

    void run();

    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::shared_ptr<Strand>> m_ready;
    int m_threads = 0;
    int m_idleThreads = 0;
};

// ---- Strands ------------------------------------------------------------------------------------------------

class DispatchQueue::Strand : public State, public std::enable_shared_from_this<Strand>
{
public:
    Strand(std::string name, Pace pace) : State(std::move(name)), m_pace(pace) {}

    void async(Work work) override
    {
        std::unique_lock lock(m_mutex);
        m_waiting.push_back(std::move(work));
        if (m_phase == Phase::Idle)
            handToPool();
    }

    void dispatch(Work work) override
    {
        std::unique_lock lock(m_mutex);
        m_waiting.push_back(std::move(work));
        if (m_phase != Phase::Idle)
            return;
        m_phase = Phase::Running;
        runNext(lock);
        giveBack(lock);
    }

    bool enter(Frame &frame) override
    {
        const std::lock_guard lock(m_mutex);
        if (m_phase != Phase::Idle)
            return false;
        m_phase = Phase::Running;
        frame = {this, t_innermost};
        t_innermost = &frame;
        return true;
    }

    void leave(const Frame &frame) override
    {
        t_innermost = frame.outer;
        std::unique_lock lock(m_mutex);
        giveBack(lock);
    }

    void sync(const Work &work) override
    {
        if (isCurrent()) {
            work();
            return;
        }
        std::unique_lock lock(m_mutex);
        if (m_phase != Phase::Idle) {
            waitFor(work, lock);
            return;
        }
        m_phase = Phase::Running;
        lock.unlock();
        run(work);
        lock.lock();
        giveBack(lock);
    }

    /// A pool thread's turn. Does nothing when somebody who waited in sync() has taken the turn already.
    void runSlice()
    {
        std::unique_lock lock(m_mutex);
        if (m_phase != Phase::Scheduled)
            return;
        m_phase = Phase::Running;
        for (int i = 0; i < MaxPiecesPerSlice && !m_waiting.empty(); ++i)
            runNext(lock);
        release();
    }

    bool isCurrent() const override
    {
        for (const Frame *frame = t_innermost; frame; frame = frame->outer) {
            if (frame->queue == this)
                return true;
        }
        return false;
    }

private:
    enum class Phase { Idle, Scheduled, Running };
    static constexpr int MaxPiecesPerSlice = 64; // then the other strands get their turn

    /// The strands whose work this thread is inside of, innermost first.
    static thread_local const Frame *t_innermost;

    void run(const Work &work) const noexcept
    {
        const Frame frame{this, t_innermost};
        t_innermost = &frame;
        work();
        t_innermost = frame.outer;
    }

    void runNext(std::unique_lock<std::mutex> &lock)
    {
        Work work = std::move(m_waiting.front());
        m_waiting.pop_front();
        lock.unlock();
        run(work);
        work = nullptr;
        lock.lock();
    }

    /// Queues `work` and returns when it has run. When the pool has not come yet the waiting thread does the
    /// pool's work, so that pool threads which wait for each other's strands cannot block for ever.
    void waitFor(const Work &work, std::unique_lock<std::mutex> &lock)
    {
        bool done = false;
        m_waiting.emplace_back([this, &work, &done] {
            work();
            const std::lock_guard guard(m_mutex);
            done = true;
            m_changed.notify_all();
        });
        while (!done) {
            if (m_phase == Phase::Running) {
                m_changed.wait(lock);
                continue;
            }
            m_phase = Phase::Running;
            while (!done)
                runNext(lock);
            giveBack(lock);
        }
    }

    void giveBack(std::unique_lock<std::mutex> &lock)
    {
        if (m_pace == Pace::Short) {
            for (int i = 0; i < MaxPiecesPerSlice && !m_waiting.empty(); ++i)
                runNext(lock);
        }
        release();
    }

    void release()
    {
        if (m_waiting.empty())
            m_phase = Phase::Idle;
        else
            handToPool();
        m_changed.notify_all();
    }

    void handToPool()
    {
        m_phase = Phase::Scheduled;
        Pool::shared().post(shared_from_this());
    }

    const Pace m_pace;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Work> m_waiting; // empty while Idle
    Phase m_phase = Phase::Idle;
};

thread_local const DispatchQueue::Frame *DispatchQueue::Strand::t_innermost = nullptr;

void DispatchQueue::Pool::run()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        ++m_idleThreads;
        m_wake.wait(lock, [this] { return !m_ready.empty(); });
        --m_idleThreads;
        auto strand = std::move(m_ready.front());
        m_ready.pop_front();
        lock.unlock();
        strand->runSlice();
        strand.reset();
        lock.lock();
    }
}

// ---- The main thread ----------------------------------------------------------------------------------------

class DispatchQueue::MainLoop : public State
{
public:
    MainLoop() : State("main") {}

    static const std::shared_ptr<MainLoop> &shared()
    {
        // Runs its argument at once when the application is there already.
        [[maybe_unused]] static const bool tiedToApplication =
            (qAddPreRoutine([] { instance()->begin(); }), true);
        return instance();
    }

    void async(Work work) override
    {
        const std::lock_guard lock(m_mutex);
        if (m_ended)
            return;
        m_waiting.push_back(std::move(work));
        wake();
    }

    void sync(const Work &work) override
    {
        if (isMainThread()) {
            work();
            return;
        }
        std::mutex mutex;
        std::condition_variable ended;
        bool done = false;
        // Told by the end of the closure's life, so that work dropped by an ending application releases us too.
        auto atEnd = std::shared_ptr<void>(nullptr, [&](void *) {
            const std::lock_guard lock(mutex);
            done = true;
            ended.notify_one();
        });
        async([&work, atEnd = std::move(atEnd)] { work(); });
        std::unique_lock lock(mutex);
        ended.wait(lock, [&] { return done; });
    }

    void dispatch(Work work) override { async(std::move(work)); } // that it is not idle is known by now

    bool isCurrent() const override { return isMainThread(); }

    bool enter(Frame &) override
    {
        if (!isMainThread())
            return false;
        const std::lock_guard lock(m_mutex);
        if (m_depth > 0 || !m_waiting.empty())
            return false;
        ++m_depth;
        return true;
    }

    void leave(const Frame &) override { --m_depth; }

private:
    /// Half of a frame at 60 Hz: what comes in a burst leaves the other half to input and painting.
    static constexpr auto MaxSlice = std::chrono::milliseconds(8);

    class Receiver : public QObject
    {
    public:
        explicit Receiver(MainLoop &loop) : m_loop(loop) {}
        void customEvent(QEvent *) override { m_loop.runSlice(); }

    private:
        MainLoop &m_loop;
    };

    static const std::shared_ptr<MainLoop> &instance()
    {
        // Never destroyed: other threads may still come home while the process ends.
        static const auto *const loop = new std::shared_ptr<MainLoop>(std::make_shared<MainLoop>());
        return *loop;
    }

    void begin()
    {
        qAddPostRoutine([] { instance()->end(); });
        const std::lock_guard lock(m_mutex);
        m_receiver = std::make_unique<Receiver>(*this);
        m_receiver->moveToThread(QCoreApplication::instance()->thread());
        m_ended = false;
        m_posted = false;
        if (!m_waiting.empty())
            wake();
    }

    void end()
    {
        std::deque<Work> dropped;
        std::unique_ptr<Receiver> receiver;
        const std::lock_guard lock(m_mutex);
        m_ended = true;
        dropped.swap(m_waiting);
        receiver.swap(m_receiver);
    }

    void wake()
    {
        if (m_posted || !m_receiver)
            return;
        m_posted = true;
        QCoreApplication::postEvent(m_receiver.get(), new QEvent(QEvent::User));
    }

    void run(const Work &work) noexcept
    {
        ++m_depth;
        work();
        --m_depth;
    }

    void runSlice()
    {
        noteMainThreadTurn();
        const auto deadline = steady_clock::now() + MaxSlice;
        std::unique_lock lock(m_mutex);
        m_posted = false;
        // Posted ahead of the work, not after it: work that opens a modal dialog runs an event loop of its own,
        // and what waits behind it must still get its turn there.
        if (m_waiting.size() > 1)
            wake();
        while (!m_waiting.empty()) {
            Work work = std::move(m_waiting.front());
            m_waiting.pop_front();
            lock.unlock();
            run(work);
            work = nullptr;
            const bool over = steady_clock::now() >= deadline;
            lock.lock();
            if (over)
                break;
        }
        if (!m_waiting.empty())
            wake();
    }

    std::mutex m_mutex;
    std::deque<Work> m_waiting;
    std::unique_ptr<Receiver> m_receiver;
    bool m_posted = false;
    bool m_ended = false;
    int m_depth = 0; // main thread only
};

// ---- The handle ---------------------------------------------------------------------------------------------

DispatchQueue::DispatchQueue(std::string label, Pace pace)
    : m_state(std::make_shared<Strand>(std::move(label), pace))
{
}

DispatchQueue::DispatchQueue(std::shared_ptr<State> state) : m_state(std::move(state))
{
}

DispatchQueue DispatchQueue::main()
{
    return DispatchQueue(MainLoop::shared());
}

// Each call keeps the state alive by itself: the work may drop the last handle, the caller's own included.

void DispatchQueue::async(Work work) const
{
    const auto state = m_state;
    state->async(std::move(work));
}

void DispatchQueue::sync(const Work &work) const
{
    const auto state = m_state;
    state->sync(work);
}

void DispatchQueue::dispatchWork(Work work) const
{
    const auto state = m_state;
    state->dispatch(std::move(work));
}

DispatchQueue::Turn::Turn(const DispatchQueue &queue) : m_state(queue.m_state), m_ours(m_state->enter(m_frame))
{
}

DispatchQueue::Turn::~Turn()
{
    if (m_ours)
        m_state->leave(m_frame);
}

void DispatchQueue::after(std::chrono::nanoseconds delay, Work work) const
{
    Reactor::shared().callAfter(
        delay, [state = m_state, work = std::move(work)]() mutable { state->async(std::move(work)); });
}

bool DispatchQueue::isCurrent() const
{
    return m_state->isCurrent();
}

const std::string &DispatchQueue::label() const
{
    return m_state->label;
}
