#pragma once

#include "Source/Controller/MenuItems.h"

#include <QString>

#include <optional>

/// The rules of the status menu: plain values in, changes of items out. Nothing here reads a file or touches an
/// action.
namespace MenuRules
{
/// What the scheduled job is that runs now.
enum class RunningJob {
    None,   ///< no scheduled backup is in progress
    Backup, ///< a backup: can be paused and stopped
    Other,  ///< a restore, or one that no record names: can only be stopped
};

/// What remote management says of the signed-in account.
struct RemoteManagement {
    bool hasUser = false;    ///< the record names an account
    bool mobileOnly = false; ///< a plan that may not use it from a computer
    QString word;            ///< the account's stored wish; "0" for off, anything else, also none, for on
};

/// What Cloud Drive is doing.
struct CloudDrive {
    bool enabled = false;
    std::optional<bool> paused;        ///< `Pause` of the sync list; none when the list has no word
    std::optional<QString> statusLine; ///< the sync line of the tool tip
};

struct MenuInputs {
    QString appFullName;
    bool recordPresent = false;         ///< the file of the last sign-in exists
    std::optional<QString> dedup;       ///< its `dedup`
    std::optional<QString> accountType; ///< the whole text of the account-type file
    bool partnerPlan = false;
    bool engineUser = false;
    bool thinClient = false;
    bool followsPolling = true; ///< the account's web management polls, and has no channel of its own
    RemoteManagement remote;
    std::optional<QString> protectionWord; ///< `Enabled` of the continuous protection list
    std::optional<QString> switchText;     ///< the scheduler status text; none when it cannot be read
    RunningJob runningJob = RunningJob::None;
    bool runningJobPaused = false;
    bool operationRuns = false; ///< any operation, for the account of the record
    bool mainApplicationRuns = false;
    bool scheduleBackupRunning = false; ///< the progress view's own flag
    bool progressWindowVisible = false;
    QString backupLine; ///< the backup line of the tool tip, empty for none
    CloudDrive cloudDrive;
};

/// A pass over the whole menu.
struct MenuRefresh {
    MenuState items;
    std::optional<bool> isSubAccount; ///< none: stays as it is
    bool closesProgressWindow = false;

    friend bool operator==(const MenuRefresh &, const MenuRefresh &) = default;
};

// --- Passes --------------------------------------------------------------------------------------------------

/// All titles and tool tips, as a start sets them. The switch is found by a "0" anywhere in its text.
[[nodiscard]] MenuState titles(const QString &appFullName, const std::optional<QString> &switchText);
/// The items at a start, after titles().
[[nodiscard]] MenuRefresh atStart(const MenuInputs &in);
/// What is asked before the menu opens: the switch, by its exact text, and web access. Nothing where the text
/// cannot be read.
[[nodiscard]] MenuState needsUpdate(const QString &appFullName, const std::optional<QString> &switchText);
/// The refresh at each opening, after needsUpdate().
[[nodiscard]] MenuRefresh atOpening(const MenuInputs &in);
/// The refresh when a user has signed in to the main application.
[[nodiscard]] MenuRefresh atSignIn(const MenuInputs &in);

// --- Single rules --------------------------------------------------------------------------------------------

/// What can be done to the running job, and to all jobs while none runs.
void setJobItems(MenuState &menu, RunningJob job);
/// The items of an account on the storage engine.
void setEngineItems(MenuState &menu, bool engineUser);
/// Hides remote management on a thin client, and where the account does not poll.
void setMenuItems(MenuState &menu, bool thinClient, bool followsPolling);
/// The protection item stands exactly for an engine account that is no thin client, whoever was signed in
/// before.
void setProtection(MenuState &menu, const MenuInputs &in);
/// The tick of continuous protection; only "1" is on.
void setProtectionTick(MenuState &menu, const std::optional<QString> &protectionWord);
/// The same after changed settings: a list that is missing leaves the tick.
[[nodiscard]] MenuState protectionAfterSettings(bool listPresent, const std::optional<QString> &protectionWord);
/// Hides or shows the upgrade by the kind of the account. The answer is whether it is a sub-account, none where
/// that is not told.
std::optional<bool> setAccountItems(MenuState &menu, const std::optional<QString> &accountType,
                                    bool partnerPlan);
/// The Cloud Drive submenu and its status line.
void setCloudDriveItems(MenuState &menu, const CloudDrive &drive, bool thinClient);

/// The switch for all jobs by its file; nothing when it cannot be read.
void setJobSwitch(MenuState &menu, const std::optional<QString> &switchText);
/// A click on that switch, by the title that it shows: the text for the file, and the title that comes next.
struct JobSwitchClick {
    QString word; ///< "0" or "1"
    QString nextTitle;
};
[[nodiscard]] JobSwitchClick jobSwitchClick(const QString &title);
} // namespace MenuRules
