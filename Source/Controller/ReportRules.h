#pragma once

#include <QString>

#include <optional>

/// The rules for a job's progress reports: plain values in, an answer out.
namespace ReportRules
{
/// What a report tells, by its `progressType`.
enum class ProgressType {
    Started = 0,
    Figures = 1,
    EnumerationComplete = 2,
    Retrying = 3,
    Paused = 4,
    Resumed = 5,
    Complete = 6
};

/// The type behind a report's number, none for a number without a meaning or no number.
[[nodiscard]] std::optional<ProgressType> progressType(std::optional<qint64> number);

enum class Route {
    Drop,
    Interactive, ///< started by the user in the main application
    Scheduled,   ///< goes to the scheduled job, when it is that job's account
};
/// Where a report goes by its start type; a report without an account goes nowhere.
[[nodiscard]] Route route(const std::optional<QString> &userName, std::optional<qint64> operationStartType);

/// The backup line of the tool tip after a report.
enum class Tip { Keep, InteractiveProgress, InteractivePaused, ScheduledProgress, ScheduledPaused };
[[nodiscard]] Tip interactiveTip(std::optional<ProgressType> type);
/// `jobInProgress` and `jobPaused` are what the schedule archive and the pause marker say now.
[[nodiscard]] Tip scheduledTip(std::optional<ProgressType> type, bool jobInProgress, bool jobPaused);
} // namespace ReportRules
