#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVariantMap>

#include <optional>
#include <vector>

/// One scheduled job by its coding keys ("corvaneUserName", "scheduleTime", "status", ...). Values are QString,
/// QDateTime, qlonglong, bool and QVariantList; a key that is missing is one that is not set.
using ScheduleRecord = QVariantMap;

/// Values of "status".
enum class JobStatus { YetToStart = 0, InProgress = 1, Cancelled = 2, Completed = 3 };

/// Values of "frequency".
enum class Frequency { Once = 0, Hourly = 1, Daily = 2, Weekly = 3, Monthly = 4, Weekdays = 5, None = 6 };

/// What a scheduled job does, by its `scheduleType` and `backupType`.
enum class JobKind { OnlineBackup, LocalBackup, Restore };
[[nodiscard]] JobKind kindOf(const ScheduleRecord &record);

/// The records as a keyed archive in its binary property-list form, under the top-level key "Schedules": the
/// file that every program of the product reads. Dates are written to the millisecond.
[[nodiscard]] QByteArray archiveSchedules(const std::vector<ScheduleRecord> &records);

/// The records of such an archive in their order. Empty when the bytes are no keyed archive with an array under
/// "Schedules"; an entry of it that is no schedule record is left out.
[[nodiscard]] std::optional<std::vector<ScheduleRecord>> unarchiveSchedules(const QByteArray &bytes);

/// The records in a file; none when there is no readable archive.
[[nodiscard]] std::vector<ScheduleRecord> readSchedules(const QString &path);

/// Replaces the archive as a whole. False when it cannot be written; the old file then stands.
bool writeSchedules(const QString &path, const std::vector<ScheduleRecord> &records);

/// The first moment of the series `last`, `last` + one period, ... that is later than `now`; `last` itself for
/// a job that does not repeat.
[[nodiscard]] QDateTime nextOccurrence(const QDateTime &last, Frequency frequency, const QDateTime &now);
