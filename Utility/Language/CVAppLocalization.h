#pragma once

#include "Platform/StringTable.h"

#include <QString>

#include <mutex>

/// A sentence of the program in its language: made at first use and kept for the life of the process, so that a
/// text compared with a known sentence meets the same constant on both sides. Safe from any thread.
class LocalizedText
{
public:
    /// `sentence` is the English text, marked with QT_TRANSLATE_NOOP("Localizable", ...) so that it is found by
    /// the translator's tools. It must live as long as the process.
    explicit constexpr LocalizedText(const char *sentence) : m_sentence(sentence) {}
    LocalizedText(const LocalizedText &) = delete;

    [[nodiscard]] const QString &text() const;
    operator const QString &() const { return text(); }

private:
    const char *m_sentence;
    mutable std::once_flag m_once;
    mutable QString m_text;
};

inline bool operator==(const QString &a, const LocalizedText &b)
{
    return a == b.text();
}

/// The group object of all translated constants.
class CVAppLocalization
{
public:
    static CVAppLocalization &shared();

    /// Takes the persisted language as the current one and stores its row as the selected language.
    void loadlocalizedLanguage();
};

/// The sentences of the status item, its menu and its tool tip.
namespace MonitorControllerVC
{
extern const LocalizedText backupProgressTooltip;
extern const LocalizedText backupPausedTooltip;
extern const LocalizedText intBackupProgressTooltip;
extern const LocalizedText intBackupPausedTooltip;
extern const LocalizedText scheduleJobPausedTooltip;
extern const LocalizedText disableScheduledJobsTooltip;
extern const LocalizedText nextScheudletime; ///< one placeholder: the job's time
extern const LocalizedText quotaExceededTooltip;
extern const LocalizedText allFilesUpToDateTooltip;
extern const LocalizedText pausedTooltip;
extern const LocalizedText movingTooltip;
extern const LocalizedText processingTooltip;
extern const LocalizedText reInisitialingTooltip;
extern const LocalizedText syncAccCancelTooltip;
extern const LocalizedText noInternetTooltip;
extern const LocalizedText youHaveExceededTooltip;       ///< the beginning of a line
extern const LocalizedText youHaveExceededPrefixTooltip; ///< the beginning of a line
extern const LocalizedText NXTSCHEDULE_IMMEDIATE;
extern const LocalizedText NXTSCHEDULE_NOJOBS;

extern const LocalizedText backupAndSyncTooltip;      ///< two placeholders: backup line, sync line
extern const LocalizedText backupAndSyncQuotaTooltip; ///< three: backup line, sync line, product name
extern const LocalizedText accountCancelledTooltip;   ///< one: product name
extern const LocalizedText cloudDriveUpToDate;        ///< never shown as such, see cloudDriveSynced
extern const LocalizedText cloudDriveSynced;

extern const LocalizedText monitorTooltipStart;  ///< help after an installation; one placeholder: product name
extern const LocalizedText runsButDoesNotAnswer; ///< of a second start; one placeholder: product name
extern const LocalizedText isUpToDate;           ///< the end of a sentence that begins with the product name

extern const LocalizedText startApplication;
extern const LocalizedText accessCorvaneWeb; ///< one placeholder: product name
extern const LocalizedText accessCorvaneWebTooltip;
extern const LocalizedText schedulerMenu;
extern const LocalizedText upgradeStorage;
extern const LocalizedText upgradeBTnTooltip;
extern const LocalizedText showProgress;
extern const LocalizedText proxySettings;
extern const LocalizedText settings;
extern const LocalizedText viewlogs;
extern const LocalizedText status;
extern const LocalizedText SER;
extern const LocalizedText onlinehelp;
extern const LocalizedText disableWebAccess;
extern const LocalizedText enableWebAccess;
extern const LocalizedText disableWebAccessTooltip;
extern const LocalizedText remoteManageTitle;
extern const LocalizedText cdp;
extern const LocalizedText checkForUpdate;
extern const LocalizedText updateCorvaneTooltip;
extern const LocalizedText quitMonitor;

extern const LocalizedText manageScheduledJobs;
extern const LocalizedText pauseScheduleJob;
extern const LocalizedText resumeScheduleJob;
extern const LocalizedText stopScheduledJob;
extern const LocalizedText disableScheduleJobs;
extern const LocalizedText enableScheudleJobs;

extern const LocalizedText cloudDrive;
extern const LocalizedText myCloudDriveMenu;
extern const LocalizedText cloudDriveMenuItemTooltip;
extern const LocalizedText pauseSync;
extern const LocalizedText resumeSync;
extern const LocalizedText haltOperationsTooltip;
extern const LocalizedText syncfilesLinkedTooltip;
extern const LocalizedText recentlyModifiedMenu;
extern const LocalizedText recentModifyTooltip;
extern const LocalizedText syncStatus; ///< until there is a status to show
} // namespace MonitorControllerVC
