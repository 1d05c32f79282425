#pragma once

#include "Classes/ACTIVITY_LOGS/LogNode.h"

#include <QByteArrayView>
#include <QString>

#include <functional>
#include <stop_token>

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
using Take = std::function<void(Record record)>;

struct Outcome {
    bool isWhole = false;       ///< else what was taken until then counts for nothing
    QString reason;             ///< why it is not, for a trace; empty after a stop
    bool holdsAnything = false; ///< elements within the root, or text outside of records
};

/// Calls `take` with each record, doubles too, in the order in which they end.
[[nodiscard]] Outcome run(QByteArrayView bytes, const QString &dayKey, const std::stop_token &stop,
                          const Take &take);

/// The status of a record whose job runs.
inline constexpr char InProgress[] = "In Progress";
} // namespace DayFileScan
