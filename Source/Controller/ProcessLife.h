#pragma once

#include "Platform/SingleInstance.h"

#include <optional>

/// How the process yields to another one, starts anew and ends: what main() needs beside the controller.
namespace ProcessLife
{
/// Has the event loop end with status 0 when the process is told to go, also a loop that begins later.
void quitWhenTold();

/// The one monitor of this user and home. A second one asks the first to come forward, until `deadline`; where
/// it gets no answer it says so to the user. Gives the status with which this process is to end, none where it
/// is the first.
[[nodiscard]] std::optional<int> yieldToFirst(SingleInstance &place, const QString &identifier,
                                              std::chrono::steady_clock::time_point deadline);

/// Has the program start once this process has ended; the system's text of the error on failure.
[[nodiscard]] std::optional<QString> relaunch();

/// Ends this process in favour of a new one; goes on where there can't be one. It waits until the user has
/// nothing of ours before him: no window, no menu, no question. `reason` is for the trace and stays valid.
void startAnew(const char *reason);
} // namespace ProcessLife
