#include "Utility/Language/ActivityLogsVC.h"

namespace ActivityLogsVC
{
const LocalizedText activityLogsHeading{QT_TRANSLATE_NOOP("Localizable", "Activity logs")};
const LocalizedText viewLogsFromLabel{QT_TRANSLATE_NOOP("Localizable", "View logs from")};
const LocalizedText pastWeek{QT_TRANSLATE_NOOP("Localizable", "Past week")};
const LocalizedText pastTwoWeeks{QT_TRANSLATE_NOOP("Localizable", "Past 2 weeks")};
const LocalizedText pastMonth{QT_TRANSLATE_NOOP("Localizable", "Past month")};
const LocalizedText beginningOfTime{QT_TRANSLATE_NOOP("Localizable", "Beginning of time")};
const LocalizedText archivedLogs{QT_TRANSLATE_NOOP("Localizable", "Archived logs")};

const LocalizedText operationColumn{QT_TRANSLATE_NOOP("Localizable", "Operation")};
const LocalizedText dateTimeColumn{QT_TRANSLATE_NOOP("Localizable", "Date and time")};
const LocalizedText durationColumn{QT_TRANSLATE_NOOP("Localizable", "Duration")};
const LocalizedText statusColumn{QT_TRANSLATE_NOOP("Localizable", "Status")};
const LocalizedText filesColumn{QT_TRANSLATE_NOOP("Localizable", "Files")};
const LocalizedText deleteLog{QT_TRANSLATE_NOOP("Localizable", "Delete Log")};
const LocalizedText noItemsFound{QT_TRANSLATE_NOOP("Localizable", "No items found")};
const LocalizedText readingLogs{QT_TRANSLATE_NOOP("Localizable", "Reading the logs...")};

const LocalizedText refreshbtnTooltip{QT_TRANSLATE_NOOP("Localizable", "Refresh")};
const LocalizedText onlineHelp{QT_TRANSLATE_NOOP("Localizable", "Online help")};
const LocalizedText deleteSelectedMenu{QT_TRANSLATE_NOOP("Localizable", "Delete selected item(s)")};
const LocalizedText deleteAllMenu{QT_TRANSLATE_NOOP("Localizable", "Delete all items")};
const LocalizedText archiveCleanupMenu{QT_TRANSLATE_NOOP("Localizable", "Archive")};

const LocalizedText deleteAllItems{QT_TRANSLATE_NOOP("Localizable", "Would you like to delete all item(s)?")};
const LocalizedText deleteRow{QT_TRANSLATE_NOOP("Localizable", "Would you like to delete selected item?")};
const LocalizedText deleteSeletedItems{
    QT_TRANSLATE_NOOP("Localizable", "Would you like to delete selected item(s)?")};

const LocalizedText lookIn{QT_TRANSLATE_NOOP("Localizable", "Look in:")};
const LocalizedText folderName{QT_TRANSLATE_NOOP("Localizable", "Folder:")};
const LocalizedText fileType{QT_TRANSLATE_NOOP("Localizable", "Kind:")};
const LocalizedText cancel{QT_TRANSLATE_NOOP("Localizable", "Cancel")};

const LocalizedText success{QT_TRANSLATE_NOOP("Localizable", "Success")};
const LocalizedText failure{QT_TRANSLATE_NOOP("Localizable", "Failure")};
const LocalizedText inProgress{QT_TRANSLATE_NOOP("Localizable", "In Progress")};
const LocalizedText cancelled{QT_TRANSLATE_NOOP("Localizable", "Cancelled")};
} // namespace ActivityLogsVC
