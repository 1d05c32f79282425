#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <stop_token>

/// Records of jobs that were running when their daemon went away.
namespace InProgressLogs
{
/// Takes each record whose first status is "In Progress" out of the day files of a folder; all users' records.
/// A file that was changed after `lostAt` (since 1970, as fileClockNow() tells) belongs to a daemon that is
/// back, and is left. So is one that isn't well-formed, and what is no regular file. A file without such a
/// record is only read. One that is written can then be written by everybody, as the daemons may run as another
/// user; it keeps its root, also with no record left.
///
/// Returns the `logfile` of each record that went, as the file had it; empty ones left out. From any thread;
/// between two files it ends when `stop` is asked for.
[[nodiscard]] QStringList removeInProgressLogsFromXML(const QString &folder, std::chrono::nanoseconds lostAt,
                                                      const std::stop_token &stop = {});
} // namespace InProgressLogs
