#pragma once

#include "Utility/Language/CVAppLocalization.h"

/// The sentences of the window of the activity logs.
namespace ActivityLogsVC
{
extern const LocalizedText activityLogsHeading; ///< the window's title
extern const LocalizedText viewLogsFromLabel;
extern const LocalizedText pastWeek;
extern const LocalizedText pastTwoWeeks;
extern const LocalizedText pastMonth;
extern const LocalizedText beginningOfTime;
extern const LocalizedText archivedLogs; ///< the period's entry for the logs of older versions

extern const LocalizedText operationColumn;
extern const LocalizedText dateTimeColumn;
extern const LocalizedText durationColumn;
extern const LocalizedText statusColumn;
extern const LocalizedText filesColumn;
extern const LocalizedText deleteLog; ///< the button of a row
extern const LocalizedText noItemsFound;
extern const LocalizedText readingLogs; ///< while the list isn't there yet

extern const LocalizedText refreshbtnTooltip;
extern const LocalizedText onlineHelp;
extern const LocalizedText deleteSelectedMenu;
extern const LocalizedText deleteAllMenu;
extern const LocalizedText archiveCleanupMenu;

extern const LocalizedText deleteAllItems;
extern const LocalizedText deleteRow;
extern const LocalizedText deleteSeletedItems;

/// Of the window in which a folder is chosen.
extern const LocalizedText lookIn;
extern const LocalizedText folderName;
extern const LocalizedText fileType;
extern const LocalizedText cancel;

/// The words for how a job ended. A record names one by its English text, which is looked up as it comes.
extern const LocalizedText success;
extern const LocalizedText failure;
extern const LocalizedText inProgress;
extern const LocalizedText cancelled;
} // namespace ActivityLogsVC
