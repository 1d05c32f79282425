#pragma once

#include "Utility/Language/CVAppLocalization.h"

/// What kinds of jobs are called in the activity logs.
namespace ActivityLogOperations
{
extern const LocalizedText onlineBackup;
extern const LocalizedText onlineRestore;
extern const LocalizedText search;
extern const LocalizedText onlineDelete;
extern const LocalizedText renaming;
extern const LocalizedText continuousDataProtection;
extern const LocalizedText archiveCleanup;
extern const LocalizedText putback;
extern const LocalizedText synchronization;
extern const LocalizedText localBackup;
extern const LocalizedText localRestore;
extern const LocalizedText localDelete;
extern const LocalizedText expressBackup;
extern const LocalizedText expressRestore;
extern const LocalizedText expressDelete;
extern const LocalizedText networkAndExternalDriveBackup;
} // namespace ActivityLogOperations
