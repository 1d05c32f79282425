#include "Utility/Language/SchedulerProgressVC.h"

namespace SchedulerProgressVC
{
const LocalizedText prorgessTitile{QT_TRANSLATE_NOOP("Localizable", "Scheduled Backup is in progress")};
const LocalizedText pausedTitle{QT_TRANSLATE_NOOP("Localizable", "Scheduled Backup is Paused...")};
const LocalizedText prepFilelist{QT_TRANSLATE_NOOP("Localizable", "Preparing file list...")};
const LocalizedText retrying{QT_TRANSLATE_NOOP("Localizable", "Retrying...")};
const LocalizedText calculating{QT_TRANSLATE_NOOP("Localizable", "Calculating...")};
const LocalizedText elapsedTime{QT_TRANSLATE_NOOP("Localizable", "Elapsed Time:")};
const LocalizedText estimatedTime{QT_TRANSLATE_NOOP("Localizable", "Estimated Time:")};
const LocalizedText pendingFiles{QT_TRANSLATE_NOOP("Localizable", "Pending Files:")};
const LocalizedText completedFiles{QT_TRANSLATE_NOOP("Localizable", "Completed Files:")};
const LocalizedText stop{QT_TRANSLATE_NOOP("Localizable", "Stop")};
const LocalizedText pauseBtn{QT_TRANSLATE_NOOP("Localizable", " Pause")};
const LocalizedText resumeBtn{QT_TRANSLATE_NOOP("Localizable", " Resume")};
const LocalizedText bandwidthLabel{QT_TRANSLATE_NOOP("Localizable", "Bandwidth usage:")};
const LocalizedText resumeTooltip{QT_TRANSLATE_NOOP("Localizable", "Resume backup operation")};
const LocalizedText pauseTooltip{QT_TRANSLATE_NOOP("Localizable", "Pause backup operation")};
const LocalizedText bandwidthHelpTooltip{
    QT_TRANSLATE_NOOP("Localizable", "Regulates the amount of bandwidth usage during backup operation.")};
const LocalizedText autoPauseTooltip{QT_TRANSLATE_NOOP(
    "Localizable", "You have selected Auto-Pause. This means backups may be very slow during user activity.")};

const LocalizedText backingUpVerb{QT_TRANSLATE_NOOP("Localizable", "Backing up")};
const LocalizedText restoringVerb{QT_TRANSLATE_NOOP("Localizable", "Restoring")};

const LocalizedText stopSchedulerAlert{
    QT_TRANSLATE_NOOP("Localizable", "Are you sure you wish to stop the scheduled job operation? ")};
const LocalizedText yesButton{QT_TRANSLATE_NOOP("Localizable", "Yes")};
const LocalizedText noButton{QT_TRANSLATE_NOOP("Localizable", "No")};
} // namespace SchedulerProgressVC
