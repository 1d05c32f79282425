#pragma once

#include <QString>
#include <QVariantMap>

#include <functional>
#include <memory>

/// Named notifications within the process. A post calls every observer of that name before it returns, in the
/// order of their registration, on the posting thread. Registering and posting may happen on any thread.
class NotificationCenter
{
public:
    using Handler = std::function<void(const QVariantMap &userInfo)>;

    /// Ends the observation when the last copy goes.
    using Observation = std::shared_ptr<const void>;

    NotificationCenter();
    ~NotificationCenter();

    /// The centre of the process.
    static NotificationCenter &local();

    [[nodiscard]] Observation observe(const QString &name, Handler handler);
    void post(const QString &name, const QVariantMap &userInfo = {}) const;

private:
    struct Book;
    std::shared_ptr<Book> m_book;
};
