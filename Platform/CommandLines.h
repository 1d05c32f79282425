#pragma once

#include <QString>
#include <QStringList>

/// The command lines of all processes of this user, their words joined with blanks, as a process list shows
/// them. A process that has none (it ends just now) is left out.
[[nodiscard]] QStringList runningCommandLines();

/// How often `path` stands in those lines that match `pattern`, a basic regular expression as of POSIX: what a
/// process list gives that is filtered with grep and searched. 0 for a pattern that is none, and for no path.
[[nodiscard]] int occurrencesInLines(const QStringList &lines, const QString &pattern, const QString &path);
