#pragma once

#include <QString>
#include <QVariant>

#include <optional>

/// Numbers of the messages that the daemons send.
namespace MessageTypes
{
enum Number : int {
    OpenDesktopNotification = 0,
    ShowDesktopNotification = 1,
    SetToolTip = 2,
    PingMessage = 3,
    ScheduledBackupStatus = 4,
    OpenWindowforUpgrade = 5,
    OpenWindowToViewFile = 6,
    SetPauseState = 7,
    SetResumeState = 8,
    SetPermisson = 9,
    InProgressLog = 10,
    ResetProfileUser = 16,
    RemoteManage = 19,
    logoutOnMachineDelete = 45,
    UpdateLoginItem = 46,
    FDAMessage = 48,
    AutoUpdate = 49,
};

/// The number of a message that is known by its name; none for a name without one.
[[nodiscard]] std::optional<int> messageEnum(const QString &name);

/// The number of a message from its second value. A text is the number in decimal digits, 0 when it is
/// something else; a message that carries a dictionary, an array or the empty text is known by its `name`, 0
/// when that has no number.
[[nodiscard]] int numberOf(const QVariant &second, const QString &name);
} // namespace MessageTypes

/// Numbers of the messages between the sync daemon and the monitor.
namespace SyncMessage
{
enum Number : int {
    StatusLine = 500,
    PushNote = 501,
    Pause = 502,             ///< to the daemon
    PauseStateChanged = 503, ///< from it; to it: resume
    QuotaExceeded = 504,
    QuotaFull = 505,
    Disable = 506, ///< to the daemon
    Unlinked = 507,
    QuotaRecalculated = 508, ///< from it; to it: recalculate
    PasswordChanged = 509,
    Connected = 510, ///< to the daemon
    FolderPathMayChange = 511,
    FolderDeleted = 512,
    SelectiveSyncModified = 513,
    SelectiveSyncView = 514,
    Echo = 515, ///< both ways
    ReinitializationDone = 516,
    Reinitialize = 517, ///< to the daemon
    PauseOrResume = 5000,
    Language = 5001, ///< to the daemon
};
} // namespace SyncMessage
