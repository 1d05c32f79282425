#pragma once

#include "Classes/Schedules/ScheduleArchive.h"

#include <QDateTime>

#include <optional>
#include <vector>

// Questions to the schedule records, without a file or a clock. Items that are returned point into the records.

/// Whose jobs are asked for. An absent name matches records without one.
struct ScheduleOwner {
    std::optional<QString> consoleUser; ///< login name
    std::optional<QString> account;     ///< backup account
};

/// False when an entry is no item. Most questions then go unanswered, as if there were no file.
[[nodiscard]] bool holdsItemsOnly(const ScheduleRecords &records);

/// The dated job of `owner` that comes next, counted in whole minutes: a job whose time has passed comes before
/// all others, and of jobs in the same minute the first of the file is taken, one to be started at once
/// included. Null when there is no dated job, or an entry is no item.
[[nodiscard]] const CorvaneScheduleItem *nextScheduledItem(const ScheduleRecords &records, const QDateTime &now,
                                                           const ScheduleOwner &owner);

/// The first job to be started at once, of whatever user; null when there is none, or an entry is no item.
[[nodiscard]] const CorvaneScheduleItem *immediateScheduledItem(const ScheduleRecords &records);

/// The first job that is running; null when there is none.
[[nodiscard]] const CorvaneScheduleItem *runningScheduledItem(const ScheduleRecords &records);

/// The account that a job runs for; empty when the record does not tell. An engine account stands in the
/// owner's text before ": ", any other in a field of its own.
[[nodiscard]] QString scheduleAccount(const CorvaneScheduleItem &item, bool isTQL);

/// The items whose `username`, "<account>: <login name>", is `user`.
[[nodiscard]] std::vector<CorvaneScheduleItem> schedulesOfUser(const ScheduleRecords &records,
                                                               const QString &user);

/// Whether `owner` has a scheduled online backup. An entry that is no item ends the search.
[[nodiscard]] bool hasOnlineBackup(const ScheduleRecords &records, const ScheduleOwner &owner);
