#pragma once

#include "Classes/ACTIVITY_LOGS/LogNode.h"

#include <QDateTime>
#include <QLocale>

#include <array>
#include <functional>

/// The orders of the list. Each sort is stable and reads each text once; records that are null stand last.
namespace LogSorting
{
/// What the list is sorted by; the names of its columns.
enum class Key { Operation, DateTime, Duration, Status, Files };

struct SortDescriptor {
    Key key = Key::DateTime;
    bool isAscending = true;
};
/// What a click on each column's header sorts by at first, in the order of the columns.
[[nodiscard]] std::array<SortDescriptor, 5> sortTableColumns();

/// Texts as the list shows them, and how their language orders words.
struct Words {
    std::function<QString(const QString &optype)> operation;
    std::function<QString(const QString &status)> status;
    QLocale locale;
};

/// Lines for the interface trace: of each record without a date, and of each null, at most MostTraced a sort.
using Trace = std::function<void(const QString &line)>;
inline constexpr int MostTraced = 100;
/// No text of a record takes more of such a line.
inline constexpr qsizetype LongestTracedText = 200;

/// By date. "In Progress" stands on top in both directions. Records without a date stand last in both, newest
/// day file first and as they stood in it. A text that tells no date counts as `now`.
void sortRecords(LogNodes &records, bool newestFirst, const QDateTime &now, const Trace &trace = {});

/// By a column: dates as above; durations and files by the value of their digits; operations and statuses as
/// their shown texts stand in a list of words. Texts that compare the same keep their order.
void sortLogsArray(LogNodes &records, SortDescriptor descriptor, const Words &words, const QDateTime &now,
                   const Trace &trace = {});

/// A text that orders as `text` does when its runs of digits are compared by value: "9" before "10", "007" the
/// same as "7".
[[nodiscard]] QString numericKey(QStringView text);
} // namespace LogSorting
