#pragma once

#include "Classes/ACTIVITY_LOGS/LogNode.h"

#include <QByteArray>
#include <QString>

#include <stop_token>
#include <vector>

/// One pass over the bytes of a day file. Reading and editing share it, so that what a list shows and what an
/// edit takes away are always the same records.
namespace DayFileScan
{
/// A record, and where its element lies.
struct Record {
    LogNodePtr node; ///< `logfile` as the file has it
    qsizetype begin = 0;
    qsizetype end = 0; ///< behind its last byte
    /// It lies right below the root, and its first `status` says that its job runs.
    bool isInProgress = false;
};

struct Outcome {
    bool isWhole = false;
    QString reason; ///< why it is not, for a trace; empty after a stop
    /// All of them, doubles too, in the order in which they end; none where it is not whole.
    std::vector<Record> records;
    bool holdsAnything = false; ///< elements within the root, or text outside of records
};

[[nodiscard]] Outcome run(QByteArrayView bytes, const QString &dayKey, const std::stop_token &stop = {});

/// The bytes without those of `records`, which stand in the order of run(). The line feed behind each goes with
/// it; every other byte stays.
[[nodiscard]] QByteArray without(const std::vector<Record> &records, QByteArrayView bytes);

/// The status of a record whose job runs.
inline constexpr char InProgress[] = "In Progress";
} // namespace DayFileScan
