#pragma once

#include <QDateTime>

#include <chrono>
#include <functional>
#include <map>
#include <memory>

/// Now and timers, given to whoever needs them, so that a test can move the time by hand. Main thread only.
class Clock
{
public:
    using Duration = std::chrono::milliseconds;
    enum class Repeat { Once, Forever };

    /// A running timer; ends it when destroyed. A fired single-shot timer may be kept or dropped.
    class Timer
    {
    public:
        virtual ~Timer() = default;
    };

    virtual ~Clock() = default;

    /// The wall clock, local time.
    [[nodiscard]] virtual QDateTime now() const = 0;

    /// Calls `fire` after `interval`, once or every `interval`, for as long as the returned timer lives.
    [[nodiscard]] virtual std::unique_ptr<Timer> start(Duration interval, Repeat repeat,
                                                       std::function<void()> fire) = 0;
};

/// The clock of the running program: QTimer underneath.
class SystemClock : public Clock
{
public:
    [[nodiscard]] QDateTime now() const override;
    [[nodiscard]] std::unique_ptr<Timer> start(Duration interval, Repeat repeat,
                                               std::function<void()> fire) override;
};

/// A clock that stands still until it is told to move; timers fire inside advance(), in the order of their
/// times.
class ManualClock : public Clock
{
public:
    explicit ManualClock(QDateTime start);
    ~ManualClock() override;

    [[nodiscard]] QDateTime now() const override;
    [[nodiscard]] std::unique_ptr<Timer> start(Duration interval, Repeat repeat,
                                               std::function<void()> fire) override;

    /// Moves the time on, firing each timer that becomes due at its own moment.
    void advance(Duration by);
    /// Timers that still run.
    [[nodiscard]] int runningTimers() const;

private:
    struct Entry;
    class Handle;
    struct Book;
    std::shared_ptr<Book> m_book;
};
