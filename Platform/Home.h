#pragma once

#include <QString>

#include <optional>

/// The home directory: $HOME, or the passwd entry of the real user id when that is unset or empty.
[[nodiscard]] QString homeDirectory();

/// The home directory of a local login name; $HOME for the user of this process, empty for an unknown name.
[[nodiscard]] QString homeDirectoryForUser(const QString &loginName);

/// The login name of the user of this process: passwd name of the real user id. Who sits at the console is, in
/// a user's session, the user that the session belongs to. Empty when the id has no passwd entry.
[[nodiscard]] std::optional<QString> consoleUser();

/// Replaces a leading "~" or "~/" by the home directory; any other text comes back as it is.
[[nodiscard]] QString expandingTilde(const QString &path);

/// A path with its tilde expanded, and doubled slashes, "." and ".." taken out of its text. Links are not
/// followed.
[[nodiscard]] QString standardizedPath(const QString &path);
