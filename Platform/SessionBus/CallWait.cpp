#include "Platform/SessionBus/CallWait.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QEventLoop>

QDBusMessage CallWait::waitFor(const QDBusPendingCall &call)
{
    QEventLoop loop;
    QDBusPendingCallWatcher watcher(call);
    QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &loop, &QEventLoop::quit);
    {
        const std::lock_guard lock(m_mutex);
        if (m_cancelled)
            return QDBusMessage::createError(QDBusError::NoReply, QString());
        m_waiting = &loop;
    }
    loop.exec();
    const std::lock_guard lock(m_mutex);
    m_waiting = nullptr;
    return watcher.isFinished() ? watcher.reply() : QDBusMessage::createError(QDBusError::NoReply, QString());
}

void CallWait::cancel()
{
    const std::lock_guard lock(m_mutex);
    m_cancelled = true;
    // Queued, because a loop that has not begun to run would forget a direct quit().
    if (m_waiting)
        QMetaObject::invokeMethod(m_waiting, &QEventLoop::quit, Qt::QueuedConnection);
}
