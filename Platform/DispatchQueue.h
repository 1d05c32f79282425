#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>

/// A serial queue: its work runs one piece at a time, in the order of the calls. Named queues are strands over
/// one small shared pool, so a queue costs no thread; main() is the event loop of the application.
///
/// A queue is a cheap handle: copies mean the same queue. All calls may come from any thread. Work must not
/// throw.
class DispatchQueue
{
public:
    using Work = std::function<void()>;

    /// How long the work of a queue may take. Who borrows a queue of short work also runs, in the same call,
    /// what others queued meanwhile; with work of any length that is left to the pool.
    enum class Pace { Any, Short };

    /// A new serial queue over the shared pool; `label` is for traces and debuggers.
    explicit DispatchQueue(std::string label, Pace pace = Pace::Any);

    /// The queue of the main thread. Work queued here runs in slices of a few milliseconds, so that a burst of
    /// it never holds the event loop. Work queued before the application exists waits for it; work that is left
    /// when the application ends is dropped.
    static DispatchQueue main();

    /// Queues `work` behind what waits and returns at once; it never runs inside the call.
    void async(Work work) const;

    /// Runs `work` on this queue's turn and returns when it has ended. When the caller is already on this queue
    /// it runs at once. The queue is borrowed by the calling thread where it is idle, so no thread is woken for
    /// it.
    void sync(const Work &work) const;

    /// As async(), but runs at once, on the calling thread, when the queue is idle. The order of calls holds.
    template<class Callable>
    void dispatch(Callable &&work) const
    {
        if (const Turn turn(*this); turn.isOurs())
            work();
        else
            dispatchWork(Work(std::forward<Callable>(work)));
    }

    /// As async(), after `delay`. Not cancellable: give the work a token to look at.
    void after(std::chrono::nanoseconds delay, Work work) const;

    /// True while the calling thread runs work of this queue; for main(), on the main thread.
    [[nodiscard]] bool isCurrent() const;

    [[nodiscard]] const std::string &label() const;
    friend bool operator==(const DispatchQueue &a, const DispatchQueue &b) { return a.m_state == b.m_state; }

private:
    struct State;
    class Strand;
    class Pool;
    class MainLoop;

    /// A queue whose work the thread is inside of, and the one around it.
    struct Frame {
        const State *queue = nullptr;
        const Frame *outer = nullptr;
    };
    /// Borrows an idle queue for as long as it lives: a call that can run at once then needs no closure.
    class Turn
    {
    public:
        explicit Turn(const DispatchQueue &queue);
        ~Turn();
        Turn(const Turn &) = delete;
        Turn &operator=(const Turn &) = delete;
        [[nodiscard]] bool isOurs() const { return m_ours; }

    private:
        const std::shared_ptr<State> m_state; // the work may drop the last handle of the queue
        Frame m_frame;
        const bool m_ours;
    };

    explicit DispatchQueue(std::shared_ptr<State> state);
    void dispatchWork(Work work) const;
    std::shared_ptr<State> m_state;
};
