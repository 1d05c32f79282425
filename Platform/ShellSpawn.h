#pragma once

#include <QString>

#include <sys/types.h>

/// A shell that runs on its own.
namespace ShellSpawn
{
struct Outcome {
    pid_t pid = 0; ///< to be reaped by the caller when it ends; 0 on failure
    int error = 0; ///< an errno
};

/// Starts `/bin/sh -c text` with the environment and the umask that this process was given, its standard
/// streams on /dev/null, in a session of its own, with no signal blocked or ignored. `third` becomes its
/// descriptor 3 where it is one; it gets no other. It lives on when this process ends. A text with a null
/// character, which would be cut there, is refused with EINVAL.
[[nodiscard]] Outcome start(const QString &text, int third = -1);
} // namespace ShellSpawn
