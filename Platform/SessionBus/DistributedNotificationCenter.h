#pragma once

#include "Platform/SessionBus/BusLink.h"

#include <QVariantMap>

#include <functional>
#include <memory>

/// Named notifications between the programs of the product: signals on the session bus that each of them may
/// post and hear, this one's own included. Without a bus, posts go nowhere and observers stay deaf; when one
/// comes, or comes back, they hear again.
class DistributedNotificationCenter
{
public:
    /// Called on the main thread. `object` is empty where none was given. `userInfo` holds QString, bool, int,
    /// QStringList and QVariantMap of these; what a poster put there of other types is left out.
    using Handler = std::function<void(const QString &object, const QVariantMap &userInfo)>;

    /// Ends the observation when the last copy goes.
    using Observation = std::shared_ptr<const void>;

    /// Made on the main thread, and destroyed there.
    explicit DistributedNotificationCenter(std::chrono::milliseconds retryPace = BusLink::RetryPace);
    ~DistributedNotificationCenter();
    DistributedNotificationCenter(const DistributedNotificationCenter &) = delete;
    DistributedNotificationCenter &operator=(const DistributedNotificationCenter &) = delete;

    /// Main thread only. The observers of one name are called in the order of their registration.
    [[nodiscard]] Observation observe(const QString &name, Handler handler);

    /// Sends the notification at once and waits, for a quarter of a second at most, until the bus has it, so
    /// that a process may end right after. Values of other types than a handler gets are left out. Any thread.
    void post(const QString &name, const QString &object = {}, const QVariantMap &userInfo = {}) const;

    /// `returned` is called on the main thread when a bus is there that was not: one that was lost, or one that
    /// was missing from the start.
    void setBusReturned(std::function<void()> returned) { m_returned = std::move(returned); }

    /// True while there is a bus to post to. Any thread.
    [[nodiscard]] bool isConnected() const;

    /// The link to the bus, for others in this process; it goes with the centre. Main thread only.
    [[nodiscard]] BusLink &bus() { return m_link; }

private:
    class Book;
    BusLink m_link;
    std::shared_ptr<Book> m_book;
    std::function<void()> m_returned;
};
