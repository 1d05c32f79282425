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

const LocalizedText monitorTooltipStart{QT_TRANSLATE_NOOP(
    "Localizable", "%@ keeps watch here. Click the icon to see your backups and to change your settings.")};
const LocalizedText runsButDoesNotAnswer{
    QT_TRANSLATE_NOOP("Localizable", "%@ is already running, but it does not answer.")};
const LocalizedText isUpToDate{QT_TRANSLATE_NOOP("Localizable", " is up-to-date")};

const LocalizedText startApplication{QT_TRANSLATE_NOOP("Localizable", "Start application")};
const LocalizedText accessCorvaneWeb{QT_TRANSLATE_NOOP("Localizable", "Access %@ web")};
const LocalizedText accessCorvaneWebTooltip{
    QT_TRANSLATE_NOOP("Localizable", "Access, Restore, Share files / folders, etc via Web")};
const LocalizedText schedulerMenu{QT_TRANSLATE_NOOP("Localizable", "Scheduler")};
const LocalizedText upgradeStorage{QT_TRANSLATE_NOOP("Localizable", "Upgrade storage")};
const LocalizedText upgradeBTnTooltip{QT_TRANSLATE_NOOP("Localizable", "Upgrade to a higher storage plan")};
const LocalizedText showProgress{QT_TRANSLATE_NOOP("Localizable", "Show progress")};
const LocalizedText proxySettings{QT_TRANSLATE_NOOP("Localizable", "Proxy settings")};
const LocalizedText settings{QT_TRANSLATE_NOOP("Localizable", "Settings")};
const LocalizedText viewlogs{QT_TRANSLATE_NOOP("Localizable", "View logs")};
const LocalizedText status{QT_TRANSLATE_NOOP("Localizable", "Status")};
const LocalizedText SER{QT_TRANSLATE_NOOP("Localizable", "Send error report")};
const LocalizedText onlinehelp{QT_TRANSLATE_NOOP("Localizable", "Online help")};
const LocalizedText disableWebAccess{QT_TRANSLATE_NOOP("Localizable", "Disable Web Access")};
const LocalizedText enableWebAccess{QT_TRANSLATE_NOOP("Localizable", "Enable Web Access")};
const LocalizedText disableWebAccessTooltip{
    QT_TRANSLATE_NOOP("Localizable", "Manage backup set, Schedule backup etc via Web")};
const LocalizedText remoteManageTitle{QT_TRANSLATE_NOOP("Localizable", "Remote Manage")};
const LocalizedText cdp{QT_TRANSLATE_NOOP("Localizable", "Continuous Data Protection")};
const LocalizedText checkForUpdate{QT_TRANSLATE_NOOP("Localizable", "Check for latest version")};
const LocalizedText updateCorvaneTooltip{
    QT_TRANSLATE_NOOP("Localizable", "Update to latest version of application")};
const LocalizedText quitMonitor{QT_TRANSLATE_NOOP("Localizable", "Quit application monitor")};

const LocalizedText manageScheduledJobs{QT_TRANSLATE_NOOP("Localizable", "Manage all scheduled jobs")};
const LocalizedText pauseScheduleJob{QT_TRANSLATE_NOOP("Localizable", "Pause the scheduled job")};
const LocalizedText resumeScheduleJob{QT_TRANSLATE_NOOP("Localizable", "Resume the scheduled job")};
const LocalizedText stopScheduledJob{QT_TRANSLATE_NOOP("Localizable", "Stop the scheduled job")};
const LocalizedText disableScheduleJobs{QT_TRANSLATE_NOOP("Localizable", "Disable all scheduled jobs")};
const LocalizedText enableScheudleJobs{QT_TRANSLATE_NOOP("Localizable", "Enable all scheduled jobs")};

const LocalizedText cloudDrive{QT_TRANSLATE_NOOP("Localizable", "Cloud Drive")};
const LocalizedText myCloudDriveMenu{QT_TRANSLATE_NOOP("Localizable", "My Cloud Drive folder")};
const LocalizedText cloudDriveMenuItemTooltip{QT_TRANSLATE_NOOP("Localizable", "View your Cloud Drive folder")};
const LocalizedText pauseSync{QT_TRANSLATE_NOOP("Localizable", "Pause")};
const LocalizedText resumeSync{QT_TRANSLATE_NOOP("Localizable", "Resume")};
const LocalizedText haltOperationsTooltip{QT_TRANSLATE_NOOP("Localizable", "Halt the Sync operations")};
const LocalizedText syncfilesLinkedTooltip{QT_TRANSLATE_NOOP("Localizable", "Sync files with linked devices")};
const LocalizedText recentlyModifiedMenu{QT_TRANSLATE_NOOP("Localizable", "Recently modified items")};
const LocalizedText recentModifyTooltip{
    QT_TRANSLATE_NOOP("Localizable", "View files that have been recently modified")};
const LocalizedText syncStatus{QT_TRANSLATE_NOOP("Localizable", "Sync Status")};
} // namespace MonitorControllerVC
