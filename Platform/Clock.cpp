#include "Platform/Clock.h"

#include <QTimer>

#include <algorithm>
#include <vector>

namespace
{
class QtTimer : public Clock::Timer
{
public:
    QtTimer(Clock::Duration interval, Clock::Repeat repeat, std::function<void()> fire)
    {
        // Only short timers need exactness; the long ones may share a wake-up with others.
        m_timer.setTimerType(interval < std::chrono::seconds(1) ? Qt::PreciseTimer : Qt::CoarseTimer);
        m_timer.setSingleShot(repeat == Clock::Repeat::Once);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [fire = std::move(fire)] {
            const auto running = fire; // the timer, and this closure with it, may be dropped by its own call
            running();
        });
        m_timer.start(interval);
    }

private:
    QTimer m_timer;
};
} // namespace

QDateTime SystemClock::now() const
{
    return QDateTime::currentDateTime();
}

std::unique_ptr<Clock::Timer> SystemClock::start(Duration interval, Repeat repeat, std::function<void()> fire)
{
    return std::make_unique<QtTimer>(interval, repeat, std::move(fire));
}

struct ManualClock::Entry {
    qint64 due = 0;
    qint64 order = 0; // of two timers due at one moment the older one fires first
    Duration interval{};
    Repeat repeat = Repeat::Once;
    std::function<void()> fire;
};

struct ManualClock::Book {
    QDateTime epoch;
    qint64 elapsed = 0;
    qint64 nextId = 0;
    std::map<qint64, Entry> entries;
};

class ManualClock::Handle : public Clock::Timer
{
public:
    Handle(std::weak_ptr<Book> book, qint64 id) : m_book(std::move(book)), m_id(id) {}
    ~Handle() override
    {
        if (const auto book = m_book.lock())
            book->entries.erase(m_id);
    }

private:
    std::weak_ptr<Book> m_book;
    qint64 m_id;
};

ManualClock::ManualClock(QDateTime start) : m_book(std::make_shared<Book>())
{
    m_book->epoch = std::move(start);
}

ManualClock::~ManualClock() = default;

QDateTime ManualClock::now() const
{
    return m_book->epoch.addMSecs(m_book->elapsed);
}

std::unique_ptr<Clock::Timer> ManualClock::start(Duration interval, Repeat repeat, std::function<void()> fire)
{
    const qint64 id = m_book->nextId++;
    m_book->entries.emplace(id,
                            Entry{m_book->elapsed + interval.count(), id, interval, repeat, std::move(fire)});
    return std::make_unique<Handle>(m_book, id);
}

void ManualClock::advance(Duration by)
{
    const auto book = m_book;
    const qint64 target = book->elapsed + by.count();
    const auto sooner = [](const auto &a, const auto &b) {
        return std::pair(a.second.due, a.second.order) < std::pair(b.second.due, b.second.order);
    };
    for (;;) {
        const auto next = std::min_element(book->entries.begin(), book->entries.end(), sooner);
        if (next == book->entries.end() || next->second.due > target)
            break;
        book->elapsed = next->second.due;
        const auto fire = next->second.fire;
        if (next->second.repeat == Repeat::Forever)
            next->second.due += next->second.interval.count();
        else
            book->entries.erase(next);
        fire();
    }
    book->elapsed = target;
}

int ManualClock::runningTimers() const
{
    return static_cast<int>(m_book->entries.size());
}
