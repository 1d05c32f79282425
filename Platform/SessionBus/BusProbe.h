#pragma once

#include <QString>

#include <chrono>
#include <functional>
#include <memory>

/// Whether a session bus answers, found out without the D-Bus library: that one would wait for a bus that
/// hangs, and with it every thread that asks it anything.
namespace BusProbe
{
enum class Answer {
    Answers, ///< or is reached by a road that can't be tried from here
    Missing, ///< nobody takes the connection
    Silent,  ///< somebody does, and nothing comes back
};

/// How long an answer is waited for at the start, and before each later attempt to connect.
constexpr std::chrono::milliseconds StartLimit{1500};
constexpr std::chrono::milliseconds RetryLimit{1000};

/// Connects to the bus at `address` (a list as libraries take it), greets it and says good-bye. Blocks for
/// `limit` at most.
[[nodiscard]] Answer ask(const QString &address, std::chrono::milliseconds limit);

/// Asks the session bus from another thread and gives its answer when get() is called, which waits for what is
/// left of the limit. Missing where no address is known.
class Question
{
public:
    explicit Question(std::chrono::milliseconds limit);
    [[nodiscard]] Answer get();

private:
    struct State;
    std::shared_ptr<State> m_state;
    std::chrono::steady_clock::time_point m_deadline;
};

/// Asks the session bus from another thread; `told` is called there, once. False when the system refuses a
/// thread.
[[nodiscard]] bool askElsewhere(std::chrono::milliseconds limit, std::function<void(Answer)> told);

/// Waits for the answer of the start, and withholds the bus from this process where it is silent.
void settle(Question &question);
} // namespace BusProbe
