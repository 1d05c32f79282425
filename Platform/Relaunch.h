#pragma once

#include <QString>

#include <optional>

/// Starting the program anew while it ends.
namespace Relaunch
{
/// The shell text that lets this process end and then becomes the program at `executable`.
[[nodiscard]] QString command(const QString &executable);

/// Starts `/bin/sh -c text` with the present environment and its standard streams on /dev/null, and doesn't
/// wait for it. None when it runs, else the system's text of the error.
[[nodiscard]] std::optional<QString> spawnShell(const QString &text);
} // namespace Relaunch
