#pragma once

#include "Platform/MainThread.h"
#include "Tests/WaitUntil.h"

#include <QVariantList>

#include <mutex>
#include <vector>

/// The arrays that have come, on whatever thread.
class Inbox
{
public:
    void add(const QVariantList &array)
    {
        const std::lock_guard lock(m_mutex);
        m_onMainThread = isMainThread();
        m_arrays.push_back(array);
    }
    [[nodiscard]] std::vector<QVariantList> arrays() const
    {
        const std::lock_guard lock(m_mutex);
        return m_arrays;
    }
    /// Waits for the array that comes at `place`, and gives it.
    [[nodiscard]] QVariantList at(std::size_t place) const
    {
        return waitUntil([&] { return arrays().size() > place; })
                   ? arrays()[place]
                   : QVariantList{QStringLiteral("nothing came")};
    }
    [[nodiscard]] bool wasOnMainThread() const
    {
        const std::lock_guard lock(m_mutex);
        return m_onMainThread;
    }

private:
    mutable std::mutex m_mutex;
    std::vector<QVariantList> m_arrays;
    bool m_onMainThread = true; // of the last
};
