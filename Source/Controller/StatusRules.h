#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

/// The state that the status icon is asked to show.
enum class MenuIcons { normal = 0, none = 1, paused = 2, upgrade = 3, syncActive = 4, syncStopped = 5 };

/// The rules behind icon and tool tip: plain values in, an answer out. Nothing here reads a file or a clock.
namespace StatusRules
{
/// Which picture the status item is to show.
enum class Picture {
    Keep, ///< leave what is there
    App,
    Pause,
    Upgrade,
};

/// A text that is "1"/"0" or a boolean, as the programs that write these lists differ; none for anything else.
[[nodiscard]] std::optional<bool> flagValue(const QVariant &value);

// --- Quota ---------------------------------------------------------------------------------------------------

/// A stored figure in mebibytes: coded text, or a number as it stands. What doesn't parse counts as 0.
[[nodiscard]] double quotaFigure(const QVariant &stored);
/// Whether the free space, rounded to whole bytes, is 10 or less; not where a figure is missing.
[[nodiscard]] bool isQuotaAtLimit(const QVariantMap &quotaDetails);
/// Whether an account at its limit is told to upgrade: only the owner of an account of the product's own plans
/// is.
[[nodiscard]] bool mayPromptUpgrade(bool atLimit, bool planNeverWarns,
                                    const std::optional<QString> &accountType, bool isPartner);

// --- Sync lines ----------------------------------------------------------------------------------------------

/// A sync status line after which nothing is going on, so that the icon doesn't move.
[[nodiscard]] bool isRestingSyncLine(const QString &line);
/// The sync status line behind the text of a message, as it is compared, kept, stored and shown: without the
/// line feed that ends the text of an id, and in the language of the program where the daemon sent plain
/// English.
[[nodiscard]] QString syncLine(QString text);

/// What a sync status line does to the lines that are kept.
struct SyncLines {
    std::optional<QString> current;
    std::optional<QString> previous; ///< to return to after a pause
    friend bool operator==(const SyncLines &, const SyncLines &) = default;
};
struct SyncLineInputs {
    std::optional<QString> message; ///< the line that came, none for an update of the backup side alone
    std::optional<bool> paused;     ///< `Pause` of the sync list, none when the file or the key is missing
    std::optional<bool> reinitialising;
    SyncLines lines;
};
struct SyncLineOutcome {
    SyncLines lines;
    bool storeMessage = false; ///< write the line for the other programs
    bool evaluateIcon = false; ///< ask for the state syncActive
    friend bool operator==(const SyncLineOutcome &, const SyncLineOutcome &) = default;
};
[[nodiscard]] SyncLineOutcome takeSyncLine(const SyncLineInputs &in);

// --- Icon ----------------------------------------------------------------------------------------------------

struct NormalIconInputs {
    std::optional<QString> syncLine;
    bool hasAnimators = false;
    bool syncEnabled = false;
    bool syncAnimationRuns = false;
    bool jobPaused = false; ///< a scheduled job runs, and is paused
};
struct NormalIcon {
    Picture picture = Picture::Keep;
    bool showPausedTip = false;
    bool stopAnimation = false;
    bool clearAnimatingFlag = false;
    friend bool operator==(const NormalIcon &, const NormalIcon &) = default;
};
/// State `normal`. Highest first: a running sync animation, a paused schedule, the normal icon.
[[nodiscard]] NormalIcon normalIcon(const NormalIconInputs &in);

/// What state `syncActive` asks for.
enum class SyncActivity {
    Nothing,
    Settle,  ///< note that sync stands still, and evaluate as normal
    Animate, ///< start the animation of this appearance
};
[[nodiscard]] SyncActivity syncActivity(const std::optional<QString> &syncLine, bool syncEnabled,
                                        bool animatingFlag);

// --- Tool tip ------------------------------------------------------------------------------------------------

struct ToolTipInputs {
    std::optional<QString> backupTip;
    std::optional<QString> syncMessage; ///< the line given with this update
    std::optional<QString> syncTip;     ///< the line that is kept
    bool syncEnabled = false;
    bool movingFolder = false;
    bool quotaFull = false;
    QString appFullName;
};
enum class ToolTipKind {
    None,            ///< only the product's name
    BackupTip,       ///< the backup line alone
    SyncMessage,     ///< the given sync line alone
    QuotaFull,       ///< both lines and the call to upgrade
    SchedulerStatus, ///< both lines, the backup line worked out from the schedule first
    Both,            ///< both lines, or the cancelled account
};
[[nodiscard]] ToolTipKind toolTipKind(const ToolTipInputs &in);

[[nodiscard]] QString bothLines(const std::optional<QString> &backupTip, const QString &syncTip);
[[nodiscard]] QString quotaFullLines(const std::optional<QString> &backupTip, const QString &syncTip,
                                     const QString &appFullName);
/// "All files are up to date" reads "All files are synced" in the visible tip.
[[nodiscard]] QString withSyncedWording(QString text);
/// The item's whole tool tip: name and version, and `text` below where it says more than the name.
[[nodiscard]] QString buttonToolTip(const QString &appFullName, const std::optional<QString> &shortVersion,
                                    const std::optional<QString> &text);
} // namespace StatusRules
