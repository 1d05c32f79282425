#pragma once

#include "Classes/Progress/ProgressRules.h"

#include <QString>
#include <QVariantMap>

#include <optional>

/// The rules for a job's progress reports: plain values in, an answer out.
namespace ReportRules
{
using ProgressRules::ProgressType;

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

/// Where the running jobs are shown.
struct ProgressToShow {
    bool inWindow = false;          ///< a scheduled job runs
    bool inMainApplication = false; ///< another job of the signed-in account runs
    friend bool operator==(const ProgressToShow &, const ProgressToShow &) = default;
};
/// `currentJobs` is the list of running jobs: an array of jobs for each account.
[[nodiscard]] ProgressToShow progressToShow(const QVariantMap &currentJobs, const QString &signedInUser);
} // namespace ReportRules
