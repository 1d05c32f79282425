#pragma once

#include "Classes/Schedules/CorvaneSchedulerController.h"
#include "Classes/Schedules/ScheduleStatusRules.h"
#include "Messaging/DaemonChannel.h"
#include "Platform/Clock.h"
#include "Platform/Desktop/MenuIconAnimation.h"
#include "Platform/Desktop/StatusItem.h"
#include "Platform/StampedFile.h"
#include "Source/Controller/ReportRules.h"
#include "Source/Controller/StatusRules.h"
#include "Utility/UserRecords.h"

#include <QString>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <optional>

/// The central object of the monitor: it lives as long as the process, knows everybody, and is known to the
/// others only by the roles that it plays for them. All of it runs on the main thread; where a method may be
/// called from elsewhere its comment says so.
///
/// Contents: Lifecycle (+Lifecycle.cpp), User (+User.cpp), Channel (+Channel.cpp), Dispatch (+Dispatch.cpp),
/// Progress (+Progress.cpp), Schedules (+Schedules.cpp), Status (+Status.cpp), Quota (+Quota.cpp)
class CorvaneMonitorController : public DaemonChannelOwner, public SchedulerRole
{
public:
    /// What the controller is given: all outlive it.
    struct Surroundings {
        StatusItem &statusItem;
        Clock &clock;
        std::function<bool()> isDesktopDark; ///< asked where the user's settings have no word
    };

    explicit CorvaneMonitorController(Surroundings surroundings);
    ~CorvaneMonitorController() override;
    CorvaneMonitorController(const CorvaneMonitorController &) = delete;

    /// @name Lifecycle, in CorvaneMonitorController+Lifecycle.cpp
    /// @{
    /// The start of the program, in its fixed order: language, cached paths, user, status item, first tool tip,
    /// and last the connection, so that a message finds everything in place.
    void awakeFromNib();
    /// @}

    /// @name User, in CorvaneMonitorController+User.cpp
    /// @{
    [[nodiscard]] QString userNameOfDetails() const; ///< `Username` of mUserDetails, empty without one
    [[nodiscard]] QString signedInUser() const; ///< `Username` of the record as it is now, empty without one
    void getPlan(const QString &user);          ///< sets the three account kind flags from the user's files
    void getPlanForUser();                      ///< the same for the signed-in user
    /// @}

    /// @name Channel to the backup daemon, in CorvaneMonitorController+Channel.cpp
    /// @{
    void connectToDemon();
    /// Sends one message; it waits for the connection where there is none yet, and is dropped if it is no JSON.
    void sendData(const QVariantMap &message, qint64 tag);
    /// Sends a pause, resume or stop of the scheduled job; `details` is what the message's data starts from.
    void sendDataToDaemonForCoreOperation(const std::optional<QVariantMap> &details,
                                          ECoreOperationActionType action);
    /// @}

    /// @name Dispatch, in CorvaneMonitorController+Dispatch.cpp
    /// @{
    /// Takes a message of either daemon: type or text first, what came with it behind. From any thread.
    void didReceiveIPCMessage(const QVariantList &message);
    /// The display text of a message id; ids that the table doesn't know come back as they are. From any
    /// thread.
    [[nodiscard]] QString getMessageForID(const QString &message) const;
    /// @}

    /// @name Progress, in CorvaneMonitorController+Progress.cpp
    /// @{
    void didReceiveIPCMessageOperationForProgress(const DaemonMessage &report);
    /// The running job is paused, goes on, or has ended: icon, tool tip and switch file.
    void schedulePaused();
    void scheduleResumed();
    void scheduleEnded();
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
    [[nodiscard]] bool applicationIsOnTheDarkSide() const;
    /// Shows the image of now in the form for the panel's new appearance.
    void darkModeChanged();
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

    // SchedulerRole
    [[nodiscard]] std::optional<QString> lastLoggedInUser() const override;
    [[nodiscard]] std::optional<QString> consoleUser() const override;
    [[nodiscard]] bool isTQL() const override;
    [[nodiscard]] std::optional<QString> schedulerSettingsFile() const override;
    [[nodiscard]] QDateTime now() const override;

private:
    // Lifecycle
    void takeUserRecord();
    void showFirstToolTip();

    // Channel
    [[nodiscard]] std::optional<qint64> daemonPort();
    [[nodiscard]] static std::shared_ptr<const qint64> decodePortFile(const QString &path);

    // Dispatch
    void didReceiveToolTip(const QVariantMap &data);

    // Progress
    struct JobFacts { ///< what the files say of the running job, looked up once a turn of the event loop
        quint64 turn = 0;
        bool inProgress = false;
        bool paused = false;
    };
    [[nodiscard]] const JobFacts &jobFacts();
    [[nodiscard]] bool isReportOfRunningJob(const QString &userName);
    void didReceiveInteractiveOperationProgress(std::optional<ReportRules::ProgressType> type);
    void didReceiveOperationProgress(const DaemonMessage &report,
                                     std::optional<ReportRules::ProgressType> type);
    struct ReportTip {
        quint64 turn = 0;
        ReportRules::Tip tip = ReportRules::Tip::Keep;
        friend bool operator==(const ReportTip &, const ReportTip &) = default;
    };
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
    std::function<bool()> m_isDesktopDark;

    // Lifecycle
    QString appFullName;
    QString cancelledAccountInfoPath;
    QString schedulerStatusInfoPath;
    QString loggedSyncDetailsUserPath;
    bool userNotLoggedIn = false;
    std::unique_ptr<Clock::Timer> m_quotaTimer;

    // User
    std::optional<QString>
        m_lastLoggedInUser; ///< last name read from the record, else the account linked before
    std::optional<QString> loggedInProfile;
    QVariantMap mUserDetails;
    QVariantMap dataDict;
    bool isSubAccount = false;
    bool mIsPersonalUser = false;
    bool mIsBusinessUser = false;
    bool mIsUnlimitedUser = false;

    // Channel
    std::unique_ptr<DaemonChannel> mTCPWithDaemon;
    FileMemo<qint64> m_portFile{decodePortFile};

    // Progress
    std::optional<DaemonMessage> backUpProgressResponseDict; ///< the last whole report
    std::optional<JobFacts> m_jobFacts;
    /// What a report last had the tool tip say, and when; empty as soon as anything else sets the tool tip.
    std::optional<ReportTip> m_reportTip;

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
