#pragma once

#include <functional>

/// Starts a detached thread named `name` (15 characters at most) that takes no signals, so that those of the
/// process always reach the main thread. Throws std::system_error when the system refuses a thread.
void startWorkerThread(const char *name, std::function<void()> body);
