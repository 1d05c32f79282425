#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

/// Turns the main event loop until `condition` holds; false when it does not within a generous deadline.
template<class Condition>
[[nodiscard]] bool waitUntil(Condition condition)
{
    constexpr qint64 DeadlineMs = 20000;
    QElapsedTimer elapsed;
    elapsed.start();
    QTimer wakeUp; // conditions may change without an event
    wakeUp.start(1);
    while (!condition()) {
        if (elapsed.hasExpired(DeadlineMs))
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}
