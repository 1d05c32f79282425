#include "Classes/ACTIVITY_LOGS/LogPeriods.h"

#include "Utility/Language/ActivityLogsVC.h"

using namespace Qt::StringLiterals;

std::span<const LogPeriods::Period> LogPeriods::all()
{
    static const Period periods[] = {
        {Week, "ShowLastWeekLogs"_L1, ActivityLogsVC::pastWeek},
        {TwoWeeks, "ShowLastTwoWeeksLogs"_L1, ActivityLogsVC::pastTwoWeeks},
        {Month, "ShowLastOneMonthLogs"_L1, ActivityLogsVC::pastMonth},
        {Beginning, "ShowLogsFromTheBeginning"_L1, ActivityLogsVC::beginningOfTime},
    };
    return periods;
}

std::optional<QDate> LogPeriods::firstDay(int tag, QDate today)
{
    switch (tag) {
    case Week:
        return today.addDays(-7);
    case TwoWeeks:
        return today.addDays(-14);
    case Month:
        return today.addMonths(-1);
    default:
        return std::nullopt;
    }
}
