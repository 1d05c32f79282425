#pragma once

#include <QtGlobal>

#include <functional>

/// True on the thread that runs the event loop of the application: the one that the process began with.
[[nodiscard]] bool isMainThread();

/// Runs `work` on the main thread: at once when the caller is there, otherwise queued behind what waits.
/// The one place where other threads come home; the work is dropped when the application has ended.
void onMainThread(std::function<void()> work);

/// Runs `work` on the main thread and returns when it has ended; false when it was dropped, because the
/// application has ended. Work that is queued before there is an application waits for it.
bool onMainThreadAndWait(const std::function<void()> &work);

/// A number that changes with each turn of the main event loop, and with each slice of queued work within one.
/// Who has looked at a file need not look again while it stands. Main thread only.
[[nodiscard]] quint64 mainThreadTurn();

/// Told by the main queue when a slice of its work begins.
void noteMainThreadTurn();
