#pragma once

#include <chrono>

/// The end of the process: it can be asked for from the first moment on, and is never late. Process wide.
namespace Ending
{
/// How long the orderly end may take; then the process is ended where it stands, with status 0.
constexpr std::chrono::seconds Patience{2};

/// Takes SIGTERM, SIGINT and SIGHUP as the wish that the process goes. To be called before anything that could
/// wait, and before the first thread starts.
void listen();

/// Tells the process to go: descriptor() becomes readable, and the patience begins. Every later call changes
/// nothing. Any thread.
void begin();

/// True once the process has been told to go. Whoever closes something then must not wait for an answer.
[[nodiscard]] bool hasBegun();

/// Readable for good once the process has been told to go; -1 before listen().
[[nodiscard]] int descriptor();
} // namespace Ending
