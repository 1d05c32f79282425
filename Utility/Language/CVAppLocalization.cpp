#include "Utility/Language/CVAppLocalization.h"

#include "Utility/Language/LanguageManager.h"

const QString &LocalizedText::text() const
{
    std::call_once(m_once, [this] { m_text = localized(QString::fromUtf8(m_sentence)); });
    return m_text;
}

CVAppLocalization &CVAppLocalization::shared()
{
    static CVAppLocalization localization;
    return localization;
}

void CVAppLocalization::loadlocalizedLanguage()
{
    LanguageManager &manager = LanguageManager::shared();
    manager.loadCurrentLanguage();
    const AppLanguage language =
        AppLanguage::byID(manager.currentLanguage()).value_or(AppLanguage::supported().front());
    AppLanguage::setSelected(language, manager.userDefaults());
}

namespace MonitorControllerVC
{
const LocalizedText backupProgressTooltip{QT_TRANSLATE_NOOP("Localizable", "Scheduled Backup is in progress.")};
const LocalizedText backupPausedTooltip{QT_TRANSLATE_NOOP("Localizable", "Scheduled backup is paused.")};
const LocalizedText intBackupProgressTooltip{
    QT_TRANSLATE_NOOP("Localizable", "Backup operation is in progress.")};
const LocalizedText intBackupPausedTooltip{QT_TRANSLATE_NOOP("Localizable", "Backup operation is paused.")};
const LocalizedText scheduleJobPausedTooltip{QT_TRANSLATE_NOOP("Localizable", "Your Scheduled job is paused.")};
const LocalizedText disableScheduledJobsTooltip{
    QT_TRANSLATE_NOOP("Localizable", "You have disabled all your scheduled job(s)")};
const LocalizedText nextScheudletime{
    QT_TRANSLATE_NOOP("Localizable", "Your next scheduled job will start on %@")};
const LocalizedText quotaExceededTooltip{
    QT_TRANSLATE_NOOP("Localizable", "Quota Exceeded - You have utilized the allocated storage space.")};
const LocalizedText allFilesUpToDateTooltip{QT_TRANSLATE_NOOP("Localizable", "All files are up to date")};
const LocalizedText pausedTooltip{QT_TRANSLATE_NOOP("Localizable", "Paused")};
const LocalizedText movingTooltip{QT_TRANSLATE_NOOP("Localizable", "Moving")};
const LocalizedText processingTooltip{QT_TRANSLATE_NOOP("Localizable", "Processing")};
const LocalizedText reInisitialingTooltip{QT_TRANSLATE_NOOP("Localizable", "Re-initializing")};
const LocalizedText syncAccCancelTooltip{QT_TRANSLATE_NOOP("Localizable", "The account has been cancelled")};
const LocalizedText noInternetTooltip{QT_TRANSLATE_NOOP("Localizable", "No network connectivity")};
const LocalizedText youHaveExceededTooltip{QT_TRANSLATE_NOOP("Localizable", "You have exceeded the allocated")};
const LocalizedText youHaveExceededPrefixTooltip{QT_TRANSLATE_NOOP("Localizable", "You have exceeded the")};
const LocalizedText NXTSCHEDULE_IMMEDIATE{
    QT_TRANSLATE_NOOP("Localizable", "Next scheduled backup will start immediately")};
const LocalizedText NXTSCHEDULE_NOJOBS{
    QT_TRANSLATE_NOOP("Localizable", "Your next scheduled event: You have no scheduled jobs.")};

const LocalizedText backupAndSyncTooltip{QT_TRANSLATE_NOOP("Localizable", "Backup: %@\nCloud Drive: %@")};
const LocalizedText backupAndSyncQuotaTooltip{QT_TRANSLATE_NOOP(
    "Localizable", "Backup: %@\nCloud Drive: %@\nYou have exceeded the allocated quota limit. For further "
                   "syncing you have to upgrade "
                   "your account. Click the 'Upgrade Storage' menu item to upgrade your %@ account")};
const LocalizedText accountCancelledTooltip{
    QT_TRANSLATE_NOOP("Localizable", "%@ \nYour account has been cancelled")};
const LocalizedText cloudDriveUpToDate{
    QT_TRANSLATE_NOOP("Localizable", "Cloud Drive: All files are up to date")};
const LocalizedText cloudDriveSynced{QT_TRANSLATE_NOOP("Localizable", "Cloud Drive: All files are synced")};
} // namespace MonitorControllerVC
