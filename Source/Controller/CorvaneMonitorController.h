#pragma once

#include "Classes/AlertPanel/AlertRole.h"
#include "Classes/Progress/CVScheduleProgressWindowController.h"
#include "Classes/Progress/ProgressRole.h"
#include "Classes/Schedules/CorvaneSchedulerController.h"
#include "Classes/Schedules/ScheduleStatusRules.h"
#include "Messaging/DaemonChannel.h"
#include "Messaging/MessageSendingModule.h"
#include "Messaging/MessageTypes.h"
#include "Platform/Clock.h"
#include "Platform/Desktop/MenuIconAnimation.h"
#include "Platform/Desktop/StatusItem.h"
#include "Platform/NotificationCenter.h"
#include "Platform/SessionBus/DistributedNotificationCenter.h"
#include "Platform/StampedFile.h"
#include "Source/Controller/DesktopActions.h"
#include "Source/Controller/MenuRules.h"
#include "Source/Controller/ReportRules.h"
#include "Source/Controller/StatusMenu.h"
#include "Source/Controller/StatusRules.h"
#include "Utility/LaunchRules.h"
#include "Utility/UserRecords.h"

#include <QString>
#include <QVariantMap>

#include <array>
#include <memory>
#include <optional>
#include <vector>

/// The central object of the monitor: it lives as long as the process, knows everybody, and is known to the
/// others only by the roles that it plays for them. All of it runs on the main thread; where a method may be
/// called from elsewhere its comment says so.
///
/// Contents: Lifecycle (+Lifecycle.cpp), Launch (+Launch.cpp), User (+User.cpp), Menu (+Menu.cpp),
/// Notifications (+Notifications.cpp), Channel (+Channel.cpp), Dispatch (+Dispatch.cpp), Sync (+Sync.cpp),
/// Progress (+Progress.cpp), Schedules (+Schedules.cpp), Status (+Status.cpp), Quota (+Quota.cpp), and what no
/// part carries out yet (+Later.cpp)
class CorvaneMonitorController : public DaemonChannelOwner,
                                 public SchedulerRole,
                                 public ProgressRole,
                                 public AlertRole
{
public:
    /// What the controller is given: all outlive it.
    struct Surroundings {
        StatusItem &statusItem;
        Clock &clock;
        DistributedNotificationCenter &notifications;
        DesktopActions desktop = {};
    };

    /// Which way a message came.
    enum class Origin { BackupDaemon, SyncDaemon };

    explicit CorvaneMonitorController(Surroundings surroundings);
    ~CorvaneMonitorController() override;
    CorvaneMonitorController(const CorvaneMonitorController &) = delete;

    /// @name Lifecycle, in CorvaneMonitorController+Lifecycle.cpp
    /// @{
    /// The start of the program, in its fixed order: language, cached paths, user, status item, first tool tip,
    /// and last the connection, so that a message finds everything in place.
    void awakeFromNib();
    /// @}

    /// @name Launch, in CorvaneMonitorController+Launch.cpp
    /// @{
    /// Makes the login item follow the user's settings.
    void manageLaunchOnStartup();
    void removeUpdateDMGFolder();
    /// Opens what a file left by the main application or the installer names.
    void redirectLaunch();
    void openPreferences(const QString &object);
    void resetMonitorUI(); ///< the user has signed out
    void showTrayHelp();
    void showPopOverMessage(const QString &content);
    void launchApplication();
    void launchCorvane(); ///< hands over to the helper that starts the main application after an update
    /// Shows a message window with one text; the application comes to the front.
    void displayWindowWithAlertMsg(const QString &text);
    [[nodiscard]] bool hasOpenAlertWindow() const { return isAlertWindowOpen; }
    /// Opens the main application and asks it for a view: "ViewScheduleJobs", "Settings" or "ActivityLogs".
    void initiateLaunchCorvaneApp(const QString &redirectionType);
    void timerFired();
    /// Stores the language of the notification and starts the program anew, in any case.
    void loclaizationSetup(const QVariantMap &userInfo);
    void quitApplication();
    /// @}

    /// @name Menu, in CorvaneMonitorController+Menu.cpp
    /// @{
    [[nodiscard]] StatusMenu &menu() { return m_menu; }
    void localizationSetUp();
    void menuWillOpen();
    /// Brings the whole menu in line with the files.
    void refreshMenu();
    /// Has the menu brought in line in a moment: a panel sizes it by what stood in it before an opening.
    void refreshMenuSoon();
    void enablePreferences(); ///< a user has signed in to the main application
    void reloadPreferences();
    void reloadPreferencesFromApp();
    void enableDisableManageSubMenus(MenuRules::RunningJob job);
    void disableScheduleSubMenu(); ///< a click on the switch for all jobs
    void onlinehelp();
    /// @}

    /// @name Notifications, in CorvaneMonitorController+Notifications.cpp
    /// @{
    void receivedIPCMessageFailedFromSDToM(const QVariantMap &userInfo);
    void enableDisbleSync(const QVariantMap &userInfo);
    void recalQuotaForSync();
    /// @}

    /// @name User, in CorvaneMonitorController+User.cpp
    /// @{
    [[nodiscard]] QString userNameOfDetails() const; ///< `Username` of mUserDetails, empty without one
    [[nodiscard]] QString signedInUser() const; ///< `Username` of the record as it is now, empty without one
    void getPlan(const QString &user);          ///< sets the three account kind flags from the user's files
    void getPlanForUser();                      ///< the same for the signed-in user
    /// A text that the deployment supplies, such as a host.
    [[nodiscard]] static std::optional<QString> deploymentValue(const QString &key);
    /// @}

    /// @name Channel to the backup daemon, in CorvaneMonitorController+Channel.cpp
    /// @{
    void connectToDemon();
    /// Sends one message; it waits for the connection where there is none yet, and is dropped if it is no JSON.
    void sendData(const QVariantMap &message, qint64 tag) override;
    /// Sends a pause, resume or stop of the scheduled job; `details` is what the message's data starts from.
    void sendDataToDaemonForCoreOperation(const std::optional<QVariantMap> &details,
                                          ECoreOperationActionType action) override;
    /// @}

    /// @name Dispatch, in CorvaneMonitorController+Dispatch.cpp
    /// @{
    /// Takes a message of either daemon: type or text first, what came with it behind. From any thread.
    void didReceiveIPCMessage(const QVariantList &message, Origin origin);
    /// The display text of a message id; ids that the table doesn't know come back as they are. From any
    /// thread.
    [[nodiscard]] QString getMessageForID(const QString &message) const;
    /// @}

    /// @name Sync, in CorvaneMonitorController+Sync.cpp
    /// @{
    void enableCorvaneSync(); ///< listens to the sync daemon from now on
    /// @}

    /// @name Progress, in CorvaneMonitorController+Progress.cpp
    /// @{
    void didReceiveIPCMessageOperationForProgress(const DaemonMessage &report);
    /// Shows the progress of each running job: a scheduled one in the window here, any other in the main
    /// application.
    void showProgressBtnClicked();
    /// Shows the window of the scheduled job, if one runs.
    void showSchedulerProgress();
    void pauseBtnSubMenuActn(); ///< does what the menu's item says
    void stopBtnSubMenuActn();
    /// @}

    /// @name Schedules, in CorvaneMonitorController+Schedules.cpp
    /// @{
    void updateSchedulerStatus();
    void checkAndDisplayScheduleToolTip();
    [[nodiscard]] bool isScheduledBackupPaused() const; ///< the pause marker of the running job's account
    [[nodiscard]] bool isBackupJobPaused() const;       ///< the throttle of the signed-in account is held at -1
    [[nodiscard]] bool isBackupInProgress(); ///< the status list names the signed-in or a job's account
    [[nodiscard]] bool checkforAnyScheduledJob(const QString &user);
    /// @}

    /// @name Status, in CorvaneMonitorController+Status.cpp
    /// @{
    /// Asks for an icon; what is shown is worked out anew from files and fields. From any thread.
    void setStatusMenuIconForState(MenuIcons state);
    /// Takes a backup line, a sync line, or both, and shows the merged tool tip. From any thread.
    void setStatusMenuToolTip(const std::optional<QString> &message, const std::optional<QString> &syncMessage);
    [[nodiscard]] bool applicationIsOnTheDarkSide() const; ///< the panel is dark
    [[nodiscard]] bool windowsAreOnTheDarkSide() const;    ///< the desktop's windows are
    /// Shows the image of now in the form for the panel's new appearance, and windows in their new colours.
    void darkModeChanged();
    /// Shows windows in their new colours.
    void windowLookChanged();
    void moveStartedToolTipMessage();
    void moveCompletedToolTipMessage();
    [[nodiscard]] QString applicationNameWithVersion() const;
    /// @}

    /// @name Quota, in CorvaneMonitorController+Quota.cpp
    /// @{
    /// The pass that brings icon and tool tip in line with the files, every 10 seconds.
    void checkForTotalQuota();
    /// @}

    // DaemonChannelOwner
    void channelDidConnect() override;
    [[nodiscard]] QVariantMap pingDetails() override;
    void channelDidDisconnect() override;
    void didReceiveProgress(const DaemonMessage &message) override;
    void didReceiveMessage(const QVariantList &arguments) override;
    void didRefusePayload(const QString &reason) override;

    // SchedulerRole, and the first two of ProgressRole
    [[nodiscard]] std::optional<QString> lastLoggedInUser() const override;
    [[nodiscard]] std::optional<QString> consoleUser() const override;
    [[nodiscard]] bool isTQL() const override;
    [[nodiscard]] std::optional<QString> schedulerSettingsFile() const override;
    [[nodiscard]] QDateTime now() const override;

    // AlertRole
    void alertWindowDidClose() override;

    // ProgressRole
    void showScheduledJobPaused() override;
    void showScheduledJobResumed() override;
    void scheduledJobHasEnded() override;
    void evaluateStatusIcon() override;
    [[nodiscard]] CorvaneSchedulerController &scheduler() override { return schedulerController; }
    [[nodiscard]] bool isMonitorLaunched() const override { return monitorLaunched; }
    void setMonitorLaunched(bool launched) override { monitorLaunched = launched; }

private:
    // Lifecycle
    [[nodiscard]] bool confirm(const QString &question) const; ///< asks the user, yes or no, and waits
    void cachePaths();
    void takeKeyChainState();
    void takeUserRecord();
    void findRunningJob();
    void showFirstToolTip();
    void startUpdates();
    void startDelayedWork();
    void registerObservers();

    // Launch
    [[nodiscard]] QString rootFile(const QString &name) const; ///< a file in the product's folder
    void follow(LaunchRules::Redirection redirection);
    void announceSilentUpdate();
    [[nodiscard]] bool mainApplicationRuns() const;

    // User
    [[nodiscard]] static std::optional<QString>
    linkedAccount(); ///< the account last linked to the console user

    // Menu
    [[nodiscard]] MenuRules::RunningJob runningJob();
    [[nodiscard]] MenuRules::MenuInputs gatherMenuInputs();
    [[nodiscard]] MenuRules::CloudDrive cloudDriveForMenu(const QString &user) const;
    void carryOut(const MenuRules::MenuRefresh &refresh);
    [[nodiscard]] MenuRules::MenuInputs bringMenuInLine();
    void takeMenuFacts(const MenuRules::MenuInputs &in);
    void didClick(MenuAction action);

    // Channel
    [[nodiscard]] std::optional<qint64> daemonPort();
    [[nodiscard]] static std::shared_ptr<const qint64> decodePortFile(const QString &path);

    // Dispatch
    struct IpcMessage {
        const QVariantList &array;
        const QString &text; ///< of its id
        QVariant second;     ///< its number as text, or its data
        Origin origin;

        [[nodiscard]] bool hasData() const { return second.typeId() == QMetaType::QVariantMap; }
        [[nodiscard]] QVariantMap data() const { return second.toMap(); }
    };
    struct DispatchRow {
        int number;
        void (CorvaneMonitorController::*action)(const IpcMessage &message);
    };
    static const std::array<DispatchRow, 29> DispatchRows;
    void dispatch(const QVariantList &array, Origin origin);
    void actOnId(const QString &id, const QVariantList &array);
    [[nodiscard]] static QString describe(const QVariantList &array);
    void didReceiveResetProfileUser(const IpcMessage &message);
    void didReceiveInProgressLog(const IpcMessage &message);
    void didReceivePermission(const IpcMessage &message);
    void didReceiveResumeState(const IpcMessage &message);
    void didReceivePauseState(const IpcMessage &message);
    void didReceiveShellCommand(const IpcMessage &message);
    void didReceiveToolTip(const IpcMessage &message);
    void didReceiveDesktopNotification(const IpcMessage &message);
    void didReceiveRemoteManage(const IpcMessage &message);
    void didReceiveMachineDeleted(const IpcMessage &message);
    void didReceiveLoginItemChange(const IpcMessage &message);
    void didReceiveFullDiskAccess(const IpcMessage &message);
    void didReceiveAutoUpdate(const IpcMessage &message);
    void didReceivePushNote(const IpcMessage &message);

    // Sync
    class PortEar;
    void makePortEar();
    void dropPortEar();
    void sendToSyncDaemon(const QString &text, SyncMessage::Number number);
    void didReceiveReinitializationDone(const IpcMessage &message);
    void didReceiveQuotaRecalculated(const IpcMessage &message);
    void didReceiveSyncQuotaExceeded(const IpcMessage &message);
    void didReceiveSyncQuotaFull(const IpcMessage &message);
    void didReceiveUnlinked(const IpcMessage &message);
    void didReceiveSyncLine(const IpcMessage &message);
    void didReceiveFolderDeleted(const IpcMessage &message);
    void didReceiveSelectiveSyncModified(const IpcMessage &message);
    void didReceiveSelectiveSyncView(const IpcMessage &message);
    void didReceiveEcho(const IpcMessage &message);
    void didReceiveFolderPathMayChange(const IpcMessage &message);
    void didReceivePasswordChanged(const IpcMessage &message);
    void didReceivePauseStateChanged(const IpcMessage &message);
    void didReceivePauseOrResumeSync(const IpcMessage &message);

    // What no part carries out yet
    static void later(const char *operation);
    void showErrorReport();
    void openProxySettings();
    void viewSessionLog();
    void performAutoUpdateWithoutDateCheck();
    void disableSync();
    void unlinkSync();
    void syncPasswordChanged();
    void pauseResumeSync();

    // Progress
    struct JobFacts {         ///< what the files say of the running job
        quint64 turn = 0;     ///< of the event loop, in which they were looked up
        quint64 recentIn = 0; ///< the last turn in which they were still recent
        QDateTime seen;
        MenuRules::RunningJob job = MenuRules::RunningJob::None;
        bool paused = false;
        bool menuFollows = false; ///< its items were brought in line
    };
    [[nodiscard]] bool isRecent(const QDateTime &time) const;
    /// What they say now, or said a moment ago where a report of this type asks.
    [[nodiscard]] JobFacts &jobFacts(std::optional<ProgressRules::ProgressType> type);
    [[nodiscard]] bool isReportOfRunningJob(const QString &userName);
    void didReceiveInteractiveOperationProgress(std::optional<ProgressRules::ProgressType> type);
    void didReceiveOperationProgress(const DaemonMessage &report,
                                     std::optional<ProgressRules::ProgressType> type);
    void didReceiveOlderProgress(const QVariantList &array);
    /// The view controller, with its way back to here.
    CVScheduleProgressViewController &progressView();
    void showReportTip(ReportRules::Tip tip);

    // Schedules
    [[nodiscard]] std::optional<QString> textOf(const BackupTip &tip) const;
    [[nodiscard]] ScheduleSwitch switchFile() const;

    // Status
    void setStatusMenuIconForStateThreadCheck(MenuIcons state);
    void setMenuToolTip(const std::optional<QString> &message, const std::optional<QString> &syncMessage);
    void handleSyncMessage(const std::optional<QString> &syncMessage);
    [[nodiscard]] std::optional<QString> constructTooltipMessage(const std::optional<QString> &syncMessage);
    [[nodiscard]] QString handleNormalTooltipCase(const QString &syncTip);
    [[nodiscard]] QString handleSchedulerStatusCase(const QString &syncTip);
    void setButtonToolTip(const std::optional<QString> &text);
    void evaluateNormalIcon();
    void evaluateUpgradeIcon();
    void evaluateSyncActivity();
    [[nodiscard]] bool evaluateQuotaWarning();
    void stopSyncAnimation();
    [[nodiscard]] bool syncAnimationRuns() const;
    void show(StatusRules::Picture picture);
    void showImageOfKey(QLatin1String key);
    [[nodiscard]] bool panelIsLight() const { return !isDarkModeEnabled; }
    [[nodiscard]] bool syncStateEntry() const;

    // Quota
    void blinkStatusImageOnQuotaExceed();
    void evaluateAtLimit(const QString &username);
    void evaluateWithinLimit(const QString &username);

    StatusItem &qnStatusItem;
    Clock &m_clock;
    DistributedNotificationCenter &m_notifications;
    DesktopActions m_desktop;
    StatusMenu m_menu;
    std::unique_ptr<Clock::Timer> m_menuTimer;     ///< runs while a refresh is due
    std::unique_ptr<Clock::Timer> m_questionTimer; ///< runs between a click and the question that follows it

    // Lifecycle
    QString appFullName;
    QString cancelledAccountInfoPath;
    QString schedulerStatusInfoPath;
    QString loggedSyncDetailsUserPath;
    bool userNotLoggedIn = false;
    bool monitorLaunched = false; ///< no report has been shown yet
    std::unique_ptr<Clock::Timer> m_quotaTimer;
    std::unique_ptr<Clock::Timer> m_updateTimer;
    std::unique_ptr<Clock::Timer> m_notificationTimer;
    std::vector<std::unique_ptr<Clock::Timer>> m_delayed; ///< single calls of a start, and of its end
    std::vector<DistributedNotificationCenter::Observation> m_observations;
    std::vector<NotificationCenter::Observation> m_localObservations;

    // Launch
    QString launchRedirectionType; ///< the view that the main application is to be asked for
    std::unique_ptr<Clock::Timer> m_viewTimer;
    bool isupdaterunning = false;
    bool startAutoUpdateFromDaemon = false;
    bool isAlertWindowOpen = false;

    // User
    std::optional<QString>
        m_lastLoggedInUser; ///< last name read from the record, else the account linked before
    std::optional<QString> mPreviouslyLoggedInUser; ///< the account the menu was last built for
    std::optional<QString> loggedInProfile;
    QVariantMap mUserDetails;
    QVariantMap dataDict;
    QVariantMap profileUser;
    bool isSubAccount = false;
    bool isfreshAccount = false;
    bool mIsPersonalUser = false;
    bool mIsBusinessUser = false;
    bool mIsUnlimitedUser = false;

    // Channel
    std::unique_ptr<DaemonChannel> mTCPWithDaemon;
    FileMemo<qint64> m_portFile{decodePortFile};

    // Dispatch and sync
    std::shared_ptr<PortEar> m_portEar;
    std::unique_ptr<MessageSendingModule> mIPCWithSyncDaemon;
    QVariantMap dictFordesktopNotif;
    QString mSessionLogScheduledBackup;
    bool shouldNotShowDesktopNotif = false;
    bool shouldDisplayDesktopNotification = true;

    // Progress
    CVScheduleProgressWindowController m_progressWindow;
    std::optional<JobFacts> m_jobFacts;
    /// What a report last had the tool tip say; empty as soon as anything else sets the tool tip.
    std::optional<ReportRules::Tip> m_reportTip;

    // Schedules
    CorvaneSchedulerController schedulerController;
    std::optional<CorvaneScheduleItem> currentScheduledItemForJob;

    // Status
    std::optional<QString> corvaneDaemonTooltip;
    std::optional<QString> syncDaemonTooltip;
    std::optional<QString> syncDaemonPreviousToolTip;
    std::optional<bool> mIsSyncEnabled;
    bool isMenuIconForSyncAnimating = false;
    bool syncIsStopped = false;
    bool isSyncQuotaFull = false;
    bool isSyncQuotaExceeded = false;
    bool shouldPromptExceededWarning = false;
    bool isMovingFolderLocation = false;
    bool isDarkModeEnabled = false;
    std::optional<MenuIconAnimation> syncMenuAnimator;
    std::optional<MenuIconAnimation> syncBWMenuAnimator;

    // Quota
    bool isMonitorClickedAfterQuotaExceed = false;
    std::unique_ptr<Clock::Timer> blinkingTimer;
};
