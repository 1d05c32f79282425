#include "Utility/Language/ActivityLogOperations.h"

namespace ActivityLogOperations
{
const LocalizedText onlineBackup{QT_TRANSLATE_NOOP("Localizable", "Online backup")};
const LocalizedText onlineRestore{QT_TRANSLATE_NOOP("Localizable", "Online restore")};
const LocalizedText search{QT_TRANSLATE_NOOP("Localizable", "Search")};
const LocalizedText onlineDelete{QT_TRANSLATE_NOOP("Localizable", "Online delete")};
const LocalizedText renaming{QT_TRANSLATE_NOOP("Localizable", "Rename")};
const LocalizedText continuousDataProtection{QT_TRANSLATE_NOOP("Localizable", "Continuous data protection")};
const LocalizedText archiveCleanup{QT_TRANSLATE_NOOP("Localizable", "Archive cleanup")};
const LocalizedText putback{QT_TRANSLATE_NOOP("Localizable", "Putback")};
const LocalizedText synchronization{QT_TRANSLATE_NOOP("Localizable", "Sync")};
const LocalizedText localBackup{QT_TRANSLATE_NOOP("Localizable", "Local backup")};
const LocalizedText localRestore{QT_TRANSLATE_NOOP("Localizable", "Local restore")};
const LocalizedText localDelete{QT_TRANSLATE_NOOP("Localizable", "Local delete")};
const LocalizedText expressBackup{QT_TRANSLATE_NOOP("Localizable", "Express backup")};
const LocalizedText expressRestore{QT_TRANSLATE_NOOP("Localizable", "Express restore")};
const LocalizedText expressDelete{QT_TRANSLATE_NOOP("Localizable", "Express delete")};
const LocalizedText networkAndExternalDriveBackup{
    QT_TRANSLATE_NOOP("Localizable", "Network and external drive backup")};
} // namespace ActivityLogOperations
