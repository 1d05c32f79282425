#pragma once

#include "Platform/Clock.h"
#include "Platform/Desktop/MenuIconAnimation.h"
#include "Platform/Desktop/StatusItem.h"
#include "Source/Controller/ReportRules.h"
#include "Source/Controller/StatusRules.h"

#include <QString>
#include <QVariantMap>

#include <functional>
#include <optional>

class Account;
class ScheduledJobs;

/// Icon and tool tip, which nobody else writes. Two sources feed them: the backup side (a job, the schedule,
/// the quota) and the sync side (the sync daemon's status line). Nothing of the answer is stored; each call
/// derives it anew from files and fields, by the rules in StatusRules. Three things must hold: a sync line is
/// taken before the text is put together, the line is kept before the icon is asked for, and the icon never
/// waits for the text.
class StatusBoard
{
public:
    struct Surroundings {
        StatusItem &item;
        Clock &clock;
        std::function<bool()> isPanelDark;
        /// A line of the menu that says the same as the tool tip has changed, and more with it.
        std::function<void()> lineChanged;
    };

    StatusBoard(Surroundings surroundings, const Account &account, ScheduledJobs &jobs);
    StatusBoard(const StatusBoard &) = delete;

    /// @name Start
    /// @{
    void showItem();      ///< shows the status item, with an image and a tool tip
    void makeAnimators(); ///< from now on a sync line that works moves the icon
    /// @}

    /// @name Icon
    /// @{
    /// Asks for an icon; what is shown is worked out anew from files and fields. From any thread.
    void setStatusMenuIconForState(MenuIcons state);
    /// The same for `normal`, by one who sets the tool tip right after.
    void putNormalIconRight() { evaluateNormalIcon(PausedTip::LeaveToCaller); }
    /// Whether the user is to be warned of a full account.
    [[nodiscard]] bool evaluateQuotaWarning() const;
    /// Shows the image of now in the form for the panel's appearance.
    void darkModeChanged();
    /// @}

    /// @name Tool tip
    /// @{
    /// Takes a backup line, a sync line, or both, and shows the merged tool tip. From any thread.
    void setStatusMenuToolTip(const std::optional<QString> &message, const std::optional<QString> &syncMessage);
    /// The tool tip for what is planned or runs.
    void checkAndDisplayScheduleToolTip();
    /// The tool tip after a report, which holds until anything else sets the tool tip.
    void showReportTip(ReportRules::Tip tip);
    [[nodiscard]] const std::optional<QString> &backupLine() const { return corvaneDaemonTooltip; }
    void dropBackupLine(); ///< there is nothing to tell of backups any more
    /// @}

    /// @name Jobs and accounts
    /// @{
    void paused();  ///< the scheduled job
    void resumed(); ///< the scheduled job, or it is over
    /// Forgets the account, and its sync.
    void signedOut();
    /// Icon and tool tip while nobody is signed in: a job that runs belongs to an account of its own.
    void showRunningJobOnly();
    /// @}

    /// @name Sync
    /// @{
    [[nodiscard]] bool isSyncEnabled() const { return mIsSyncEnabled; }
    void setSyncEnabled(bool enabled) { mIsSyncEnabled = enabled; }
    [[nodiscard]] const std::optional<QString> &syncLine() const { return syncDaemonTooltip; }
    [[nodiscard]] bool syncRests() const; ///< it is off, or its line is one that stands
    /// Whether the last line that came while sync was on was one that stands.
    [[nodiscard]] bool hasSyncStopped() const { return syncIsStopped; }
    struct SyncLine {
        bool isPaused = false;        ///< the account's sync is paused, whatever the line says
        std::optional<QString> shown; ///< none while sync is off
    };
    /// Takes a line as the daemon sends it.
    SyncLine takeSyncLine(const QString &text);
    /// Has no line from before, after a sign-in.
    void forgetSyncLines();
    /// Takes the state that the account's list tells after a sign-in.
    void takeStoredSyncState(bool isPaused);
    void setSyncQuotaFull(bool isFull);
    void moveStartedToolTipMessage();
    void moveCompletedToolTipMessage();
    /// @}

private:
    /// Whether a paused job takes the tool tip too, or the caller sets one right after.
    enum class PausedTip { Show, LeaveToCaller };

    void setStatusMenuIconForStateThreadCheck(MenuIcons state);
    void evaluateNormalIcon(PausedTip pausedTip);
    void evaluateSyncActivity();
    void stopSyncAnimation();
    [[nodiscard]] bool syncAnimationRuns() const;
    void show(StatusRules::Picture picture);
    void showImageOfKey(QLatin1StringView key);
    [[nodiscard]] bool panelIsLight() const { return !isDarkModeEnabled; }

    [[nodiscard]] QVariantMap loggedSyncDetails() const;
    void setMenuToolTip(const std::optional<QString> &message, const std::optional<QString> &syncMessage);
    void showMergedToolTip(const std::optional<QString> &syncMessage);
    void handleSyncMessage(const std::optional<QString> &syncMessage, const QVariantMap &list);
    [[nodiscard]] std::optional<QString> constructTooltipMessage(const std::optional<QString> &syncMessage);
    [[nodiscard]] QString handleNormalTooltipCase(const QString &syncTip) const;
    [[nodiscard]] QString handleSchedulerStatusCase(const QString &syncTip);
    void setButtonToolTip(const std::optional<QString> &text);

    StatusItem &qnStatusItem;
    Clock &m_clock;
    std::function<bool()> m_isPanelDark;
    std::function<void()> m_lineChanged;
    const Account &m_account;
    ScheduledJobs &m_jobs;

    std::optional<QString> corvaneDaemonTooltip;
    std::optional<QString> syncDaemonTooltip;
    std::optional<QString> syncDaemonPreviousToolTip;
    /// What a report last had the tool tip say; empty as soon as anything else sets the tool tip.
    std::optional<ReportRules::Tip> m_reportTip;
    bool mIsSyncEnabled = false;
    bool isMenuIconForSyncAnimating = false;
    bool syncIsStopped = false;
    bool isSyncQuotaFull = false;
    bool isMovingFolderLocation = false;
    bool isDarkModeEnabled = false;
    std::optional<MenuIconAnimation> syncMenuAnimator;
    std::optional<MenuIconAnimation> syncBWMenuAnimator;
};
