#pragma once

#include <QEventLoop>

#include <functional>

/// A loop inside the event loop, in which the program goes on living while one window waits for its answer. One
/// session runs at a time in the whole program: the next one aborts it. Main thread only.
///
/// An aborted session's run() comes back to its caller after the run() of the one that took its place, since
/// that one stands on top of it. So that sessions which keep taking each other's place, with nobody there to
/// answer, cannot use up the stack, no more than MaxDepth stand on each other.
class ModalSession
{
public:
    static constexpr int MaxDepth = 64;

    /// Takes the place of the session that runs. `aborted` is called when the next one takes this one's.
    explicit ModalSession(std::function<void()> aborted);
    ~ModalSession();
    ModalSession(const ModalSession &) = delete;

    /// Tells whether one more session may stand on those there are.
    [[nodiscard]] static bool isPossible();

    /// Returns after stop(), after an abort, and when the application ends its event loop.
    void run();
    void stop();

private:
    static ModalSession *s_running;
    static int s_depth;

    std::function<void()> m_aborted;
    QEventLoop m_loop;
    bool m_stopped = false;
};
