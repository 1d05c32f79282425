#include "Platform/NotificationCenter.h"

#include <mutex>
#include <vector>

struct NotificationCenter::Book {
    struct Entry {
        QString name;
        std::weak_ptr<const Handler> handler; // alive as long as the observation
    };
    std::mutex lock;
    std::vector<Entry> entries;
};

NotificationCenter::NotificationCenter() : m_book(std::make_shared<Book>())
{
}

NotificationCenter::~NotificationCenter() = default;

NotificationCenter &NotificationCenter::local()
{
    static auto &centre = *new NotificationCenter;
    return centre;
}

NotificationCenter::Observation NotificationCenter::observe(const QString &name, Handler handler)
{
    const auto kept = std::make_shared<const Handler>(std::move(handler));
    const std::lock_guard guard(m_book->lock);
    std::erase_if(m_book->entries, [](const Book::Entry &entry) { return entry.handler.expired(); });
    m_book->entries.push_back({name, kept});
    return kept;
}

void NotificationCenter::post(const QString &name, const QVariantMap &userInfo) const
{
    std::vector<std::shared_ptr<const Handler>> handlers;
    {
        const std::lock_guard guard(m_book->lock);
        for (const Book::Entry &entry : m_book->entries) {
            if (auto handler = entry.name == name ? entry.handler.lock() : nullptr)
                handlers.push_back(std::move(handler));
        }
    }
    for (const auto &handler : handlers)
        (*handler)(userInfo); // without the lock: a handler may observe, post or end an observation
}
