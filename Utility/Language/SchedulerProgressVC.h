#pragma once

#include "Utility/Language/CVAppLocalization.h"

/// The sentences of the window that shows a scheduled job.
namespace SchedulerProgressVC
{
extern const LocalizedText prorgessTitile;
extern const LocalizedText pausedTitle;
extern const LocalizedText prepFilelist;
extern const LocalizedText retrying;
extern const LocalizedText calculating;
extern const LocalizedText elapsedTime;
extern const LocalizedText estimatedTime;
extern const LocalizedText pendingFiles;
extern const LocalizedText completedFiles;
extern const LocalizedText stop;
extern const LocalizedText pauseBtn;  ///< begins with a blank, beside the button's image
extern const LocalizedText resumeBtn; ///< as pauseBtn
extern const LocalizedText bandwidthLabel;
extern const LocalizedText resumeTooltip;
extern const LocalizedText pauseTooltip;
extern const LocalizedText bandwidthHelpTooltip;
extern const LocalizedText autoPauseTooltip;

/// Verbs of the file line. A report names one by its English text, which is looked up as it comes.
extern const LocalizedText backingUpVerb;
extern const LocalizedText restoringVerb;

extern const LocalizedText stopSchedulerAlert;
extern const LocalizedText yesButton;
extern const LocalizedText noButton;
} // namespace SchedulerProgressVC
