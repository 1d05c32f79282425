#pragma once

#include <QDBusMessage>
#include <QDBusPendingCall>

#include <mutex>

class QEventLoop;

/// A wait for answers from the bus that another thread can end, so that nobody who wants to go has to sit out
/// the limit of a call to a peer that hangs. Not for the main thread: it waits in an event loop of its own.
class CallWait
{
public:
    /// Returns the answer, or an error when cancel() was called before or comes meanwhile. One thread at a
    /// time.
    [[nodiscard]] QDBusMessage waitFor(const QDBusPendingCall &call);

    /// Ends the wait that is going on, and every later one at its start. Any thread.
    void cancel();

private:
    std::mutex m_mutex;
    bool m_cancelled = false;
    QEventLoop *m_waiting = nullptr;
};
