#pragma once

#include <QString>

#include <optional>

/// Starting the program anew while it ends.
namespace Relaunch
{
/// The shell text for spawnShell() that waits for this process to end, a second at least, and then becomes the
/// program at `executable`.
[[nodiscard]] QString command(const QString &executable);

/// Starts `/bin/sh -c text` as ShellSpawn does, and leaves it to itself. Its descriptor 3 has nothing to read
/// and comes to its end with this process. None when it runs, else the system's text of the error.
[[nodiscard]] std::optional<QString> spawnShell(const QString &text);
} // namespace Relaunch
