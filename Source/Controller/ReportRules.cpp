#include "Source/Controller/ReportRules.h"

namespace ReportRules
{
std::optional<ProgressType> progressType(std::optional<qint64> number)
{
    if (!number || *number < 0 || *number > static_cast<qint64>(ProgressType::Complete))
        return std::nullopt;
    return static_cast<ProgressType>(*number);
}

Route route(const std::optional<QString> &userName, std::optional<qint64> operationStartType)
{
    if (!userName)
        return Route::Drop;
    return operationStartType == 0 ? Route::Interactive : Route::Scheduled;
}

Tip interactiveTip(std::optional<ProgressType> type)
{
    if (type == ProgressType::Started || type == ProgressType::Resumed)
        return Tip::InteractiveProgress;
    return type == ProgressType::Paused ? Tip::InteractivePaused : Tip::Keep;
}

Tip scheduledTip(std::optional<ProgressType> type, bool jobInProgress, bool jobPaused)
{
    if (type == ProgressType::Started || (jobInProgress && !jobPaused))
        return Tip::ScheduledProgress;
    return jobPaused ? Tip::ScheduledPaused : Tip::Keep;
}
} // namespace ReportRules
