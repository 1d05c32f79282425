#pragma once

#include "Classes/ACTIVITY_LOGS/LogNode.h"
#include "Platform/AtomicFile.h"

#include <QString>

#include <functional>
#include <optional>

/// Changes to a day file that its daemon may write at the same time. From any thread.
namespace DayFileEdit
{
enum class Outcome {
    Untouched, ///< there is no such file, or it holds none of the records
    Rewritten,
    Removed, ///< nothing was left in it
    Failed,  ///< it stands as it was; traced by then
};

using Read = std::function<std::optional<QByteArray>(const QString &path, qint64 limit)>;

/// Takes records out of the file, all in one rewrite. They are told by `optype`, `datetime`, `uname` and
/// `logfile` and take the doubles of the same user with them. Every other byte stays: records of others,
/// records that came since, what nobody knows. Mode and owner stay too.
///
/// A file that isn't well-formed is left alone. One that changes meanwhile is read anew, a few times at most.
/// `read` is given so that a test can be such a change.
[[nodiscard]] Outcome removeRecords(const QString &path, const LogNodes &records,
                                    const Read &read = AtomicFile::read);

/// Whether removeRecords() could rewrite the file as it stands now, but for the room on the disk: it can be
/// read, is well-formed, and neither its mode nor that of its folder is against it. A refusal is traced. Also
/// true where there is no file, and so nothing to rewrite.
[[nodiscard]] bool canEdit(const QString &path);
} // namespace DayFileEdit
