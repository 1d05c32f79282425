#pragma once

#include "Classes/Schedules/CorvaneScheduleItem.h"

#include <optional>
#include <vector>

/// The entries of the schedule archive, in its order. An entry that is no schedule item keeps its place, empty.
using ScheduleRecords = std::vector<std::optional<CorvaneScheduleItem>>;

/// The array under `key` in the keyed archive at `path`. None when the file cannot be read, is no keyed
/// archive, or has no array there; an array of more than Limits::ArchiveRecords entries counts as none too.
[[nodiscard]] std::optional<ScheduleRecords> contentsOfArchivedFile(const std::optional<QString> &path,
                                                                    QLatin1StringView key);

/// As contentsOfArchivedFile(), from the bytes of the file.
[[nodiscard]] std::optional<ScheduleRecords> scheduleRecordsIn(const QByteArray &bytes, QLatin1StringView key);
