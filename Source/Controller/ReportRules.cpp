#include "Source/Controller/ReportRules.h"

#include "Platform/PropertyList.h"

using namespace Qt::StringLiterals;

namespace ReportRules
{
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
    // What the window makes of these is told once, by what it asks of the status item.
    if (type == ProgressType::Paused || type == ProgressType::Resumed || type == ProgressType::Complete)
        return Tip::Keep;
    if (type == ProgressType::Started || (jobInProgress && !jobPaused))
        return Tip::ScheduledProgress;
    return jobPaused ? Tip::ScheduledPaused : Tip::Keep;
}

ProgressToShow progressToShow(const QVariantMap &currentJobs, const QString &signedInUser)
{
    ProgressToShow shown;
    for (auto account = currentJobs.cbegin(); account != currentJobs.cend(); ++account) {
        for (const QVariant &job : account->toList()) {
            if (PropertyList::intValue(job.toMap(), u"operationStartType"_s) == 1)
                shown.inWindow = true;
            else if (account.key() == signedInUser)
                shown.inMainApplication = true;
        }
    }
    return shown;
}
} // namespace ReportRules
