#pragma once

#include "Classes/AlertPanel/AlertRole.h"
#include "Classes/Progress/CVScheduleProgressWindowController.h"
#include "Classes/Progress/ProgressRole.h"
#include "Platform/Clock.h"
#include "Platform/NotificationCenter.h"
#include "Platform/SessionBus/DistributedNotificationCenter.h"
#include "Source/Controller/Account.h"
#include "Source/Controller/DaemonLine.h"
#include "Source/Controller/DesktopActions.h"
#include "Source/Controller/DesktopNotes.h"
#include "Source/Controller/IpcMessage.h"
#include "Source/Controller/JobReports.h"
#include "Source/Controller/Launcher.h"
#include "Source/Controller/LogViewer.h"
#include "Source/Controller/MenuKeeper.h"
#include "Source/Controller/QuotaWatch.h"
#include "Source/Controller/ScheduledJobs.h"
#include "Source/Controller/StatusBoard.h"
#include "Source/Controller/SyncControl.h"
#include "Source/Controller/Updater.h"

#include <array>
#include <memory>
#include <optional>
#include <vector>

/// The central object of the monitor: it lives as long as the process, conducts the concerns that it is made
/// of, and is known to windows and channels only by the roles that it plays for them. A concern knows those
/// above it in the list of fields, and none below; what concerns several is here: the start, the announcements,
/// the dispatch of messages, the clicks. All of it runs on the main thread; where a method may be called from
/// elsewhere its comment says so.
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
        PeerOwners peers = {};
    };
    using Origin = IpcMessage::Origin;

    explicit CorvaneMonitorController(Surroundings surroundings);
    CorvaneMonitorController(const CorvaneMonitorController &) = delete;

    /// The start of the program, in its fixed order: language, user, menu, status item, first tool tip, and
    /// last the connection, so that a message finds everything in place.
    void awakeFromNib();

    [[nodiscard]] StatusMenu &menu() { return m_menu.menu(); }
    [[nodiscard]] StatusBoard &board() { return m_board; }
    [[nodiscard]] SyncControl &sync() { return m_sync; }
    [[nodiscard]] JobReports &jobReports() { return m_reports; }
    [[nodiscard]] Launcher &launcher() { return m_launcher; }
    [[nodiscard]] LogViewer &logs() { return m_logs; }

    /// @name Announcements, in CorvaneMonitorController+Notifications.cpp
    /// @{
    void enablePreferences();        ///< a user has signed in to the main application
    void resetMonitorUI();           ///< the user has signed out
    void reloadPreferencesFromApp(); ///< the main application has changed settings
    void manageLaunchOnStartup();    ///< makes the login item follow the user's settings
    void openPreferences(const QString &object);
    void receivedIPCMessageFailedFromSDToM(const QVariantMap &userInfo);
    /// Stores the language of the notification and starts the program anew, whatever it names.
    void loclaizationSetup(const QVariantMap &userInfo);
    /// A second start, or another program, has brought this one to the front.
    void applicationWasActivated();
    /// @}

    /// The pass that brings icon, tool tip and menu in line with the files, every 10 seconds and when much may
    /// have changed.
    void checkForTotalQuota();

    /// @name The desktop
    /// @{
    void menuWillOpen();
    void statusBarDidMove();                               ///< another panel has taken the status item
    void panelDidAppear() { m_launcher.panelDidAppear(); } ///< the status item has got its panel
    [[nodiscard]] bool applicationIsOnTheDarkSide() const; ///< the panel is dark
    [[nodiscard]] bool windowsAreOnTheDarkSide() const;    ///< the desktop's windows are
    void darkModeChanged();                                ///< of panel or windows
    void windowLookChanged();                              ///< of windows alone
    /// Shows a message window with one text; the application comes to the front.
    void displayWindowWithAlertMsg(const QString &text);
    [[nodiscard]] bool hasOpenAlertWindow() const { return isAlertWindowOpen; }
    void disableScheduleSubMenu(); ///< a click on the switch for all jobs
    void onlinehelp();
    void quitApplication();
    /// A text that the deployment supplies, such as a host.
    [[nodiscard]] static std::optional<QString> deploymentValue(const QString &key);
    /// @}

    /// @name Messages, in CorvaneMonitorController+Dispatch.cpp
    /// @{
    /// Takes a message of either daemon: type or text first, what came with it behind. From any thread.
    void didReceiveIPCMessage(const QVariantList &message, Origin origin);
    /// The display text of a message id; ids that the table doesn't know come back as they are. From any
    /// thread.
    [[nodiscard]] QString getMessageForID(const QString &message) const;
    /// @}

    // DaemonChannelOwner
    void channelDidConnect() override;
    [[nodiscard]] QVariantMap pingDetails() override;
    void channelDidDisconnect() override;
    void didReceiveProgress(const DaemonMessage &report) override;
    void didReceiveMessage(const QVariantList &message) override;
    void didRefusePayload(const QString &reason) override { m_daemon.refusedPayload(reason); }

    // SchedulerRole, and the first two of ProgressRole
    [[nodiscard]] std::optional<QString> lastLoggedInUser() const override;
    [[nodiscard]] std::optional<QString> consoleUser() const override;
    [[nodiscard]] bool isTQL() const override { return Account::isTQL(); }
    [[nodiscard]] std::optional<QString> schedulerSettingsFile() const override;
    [[nodiscard]] QDateTime now() const override { return m_clock.now(); }

    // AlertRole
    void alertWindowDidClose() override { isAlertWindowOpen = false; }

    // ProgressRole
    void sendData(const QVariantMap &message, qint64 tag) override;
    void sendDataToDaemonForCoreOperation(const std::optional<QVariantMap> &details,
                                          ECoreOperationActionType action) override;
    void showScheduledJobPaused() override;
    void showScheduledJobResumed() override;
    void scheduledJobHasEnded() override;
    [[nodiscard]] bool isScheduledBackupPaused() const override { return m_jobs.isScheduledBackupPaused(); }
    [[nodiscard]] CorvaneSchedulerController &scheduler() override { return m_jobs.scheduler(); }
    [[nodiscard]] bool isMonitorLaunched() const override { return monitorLaunched; }
    void setMonitorLaunched(bool launched) override { monitorLaunched = launched; }

private:
    // Start
    void takeKeyChainState();
    void showFirstToolTip();
    void startDelayedWork();
    void registerObservers();
    void followRecord();
    void follow(LaunchRules::Redirection redirection);
    void restart(); ///< once the language is written

    void pingAgain();

    // Clicks
    void didClick(MenuAction action);
    void showErrorReport();
    void openProxySettings();

    // Dispatch
    struct DispatchRow {
        int number;
        void (*act)(CorvaneMonitorController &self, const IpcMessage &message);
    };
    template<auto Owner, auto Operation>
    static void to(CorvaneMonitorController &self, const IpcMessage &message);
    template<auto Operation>
    static void own(CorvaneMonitorController &self, const IpcMessage &message);
    static const std::array<DispatchRow, 29> DispatchRows;
    void dispatch(const QVariantList &array, Origin origin);
    void actOnId(const QString &id, const QVariantList &array);
    void didReceiveResetProfileUser(const IpcMessage &message);
    void didReceiveInProgressLog(const IpcMessage &message);
    void didReceivePermission(const IpcMessage &message);
    void didReceiveResumeState(const IpcMessage &message);
    void didReceivePauseState(const IpcMessage &message);
    void didReceiveShellCommand(const IpcMessage &message);
    void didReceiveToolTip(const IpcMessage &message);
    void didReceiveRemoteManage(const IpcMessage &message);
    void didReceiveLoginItemChange(const IpcMessage &message);
    void didReceiveFullDiskAccess(const IpcMessage &message);
    void didReceiveAutoUpdate(const IpcMessage &message);
    void didReceivePushNote(const IpcMessage &message);

    Clock &m_clock;
    DistributedNotificationCenter &m_notifications;
    DesktopActions m_desktop;
    bool monitorLaunched = false; ///< no report has been shown yet
    bool isAlertWindowOpen = false;

    // The concerns, each beside those that it knows
    CVScheduleProgressWindowController m_progressWindow;
    Launcher m_launcher;
    Updater m_updater;
    Account m_account;
    ScheduledJobs m_jobs;
    StatusBoard m_board;
    DesktopNotes m_notes;
    MenuKeeper m_menu;
    JobReports m_reports;
    LogViewer m_logs;
    SyncControl m_sync;
    QuotaWatch m_quota;
    DaemonLine m_daemon;

    std::unique_ptr<Clock::Timer> m_quotaTimer;
    std::unique_ptr<Clock::Timer> m_passSoon; ///< runs after a job's end
    std::unique_ptr<Clock::Timer> m_notificationTimer;
    std::vector<std::unique_ptr<Clock::Timer>> m_delayed; ///< single calls of a start
    std::unique_ptr<Clock::Timer> m_restart;              ///< once it runs this process ends
    std::vector<DistributedNotificationCenter::Observation> m_observations;
    std::vector<NotificationCenter::Observation> m_localObservations;
};
