#pragma once

#include <QString>

/// What this process creates only its user can read, whatever the session's mask says. Programs that it starts
/// are not its files: they begin with the session's mask.
namespace Umask
{
/// Sets the mask 077 for this process. Called before the first thread starts and the first file is made.
void keepPrivate();

/// What a shell that was started has to run first for the same, as "umask 0022; "; empty before keepPrivate().
[[nodiscard]] QString shellPrefix();
} // namespace Umask
