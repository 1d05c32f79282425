#pragma once

#include <algorithm>
#include <array>
#include <string_view>

/// The operations that the start, the menu, messages, timers and passes ask for and that no part of the program
/// carries out yet: one line each. A call of later() that names none of them doesn't compile, and
/// `Tools/checks/seams` finds a line that nobody asks for. The header goes when the last line does.
namespace Later
{
/// What asking for one leaves behind.
enum class Trace {
    Line,  ///< a line in the monitor's trace
    Silent ///< nothing: every start or every pass asks, and nobody could do otherwise
};

struct Seam {
    std::string_view operation;
    std::string_view askedBy;
    Trace trace = Trace::Line;
};

inline constexpr std::array Seams{
    // clang-format off
    // Windows
    Seam{"showErrorReport", "menu, announcement, launch file"},
    Seam{"openProxySettings", "menu, announcement, launch file"},
    Seam{"closeProxySettingsWindowNotificationReceived", "announcement"},
    Seam{"statusBtnClicked", "menu"},
    Seam{"displayDesktopNotfn", "message ShowDesktopNotification"},
    Seam{"refreshDesktopNotification", "each line of the sync daemon", Trace::Silent},
    Seam{"closeDesktopNotification", "a sign-in of another account", Trace::Silent},
    Seam{"closeFullDiskAccessWindow", "announcement"},
    Seam{"presentFullDiskAccessWindow", "a link in a log"},
    Seam{"checkDaemonFullDiskAccess", "message FDAMessage"},
    Seam{"showShutdownPopup", "message Shutdown"},
    // Notes and watches
    Seam{"checkForBackupFailedDays", "15 seconds after the start"},
    Seam{"displayScheduleDetails", "each pass", Trace::Silent},
    Seam{"notificationMessageDisplay", "30 seconds after the start, and daily"},
    Seam{"showDesktopPushNotification", "push note of the sync daemon"},
    Seam{"triggerCutOffBackup", "each pass", Trace::Silent},
    // Sync
    Seam{"disableSync", "announcement, sign-in, messages"},
    Seam{"unlinkSync", "message of the sync daemon"},
    Seam{"enableUnlinkStatusAndPostNotification", "message T1019"},
    Seam{"syncPasswordChanged", "messages"},
    Seam{"pauseResumeSync", "menu, message of the sync daemon"},
    Seam{"updatePauseResumeSyncMenu", "messages of the sync daemon"},
    Seam{"updateSyncMenu", "each opening of the menu", Trace::Silent},
    Seam{"openCloudDriveFolder", "menu"},
    Seam{"selectiveSyncPlistModified", "announcement"},
    // Protection and remote management
    Seam{"cdpBtnClicked", "menu"},
    Seam{"displayHandleofCDP", "the start, and a change of appearance", Trace::Silent},
    Seam{"disableWebAccessBtnClicked", "menu"},
    Seam{"setWebManagementState", "the start, each pass and opening of the menu", Trace::Silent},
    Seam{"checkWebmanagementState", "the start, and each pass", Trace::Silent},
    Seam{"webManagementQuit", "each pass", Trace::Silent},
    Seam{"writeWebManagementState", "remote management"},
    Seam{"remoteAccessInstall", "a second after the start"},
    Seam{"AccessFilesFromWeb", "menu"},
    Seam{"upgradeStorageforAcc", "menu"},
    // Update
    Seam{"performAutoUpdateWithoutDateCheck", "marker at the start, message AutoUpdate"},
    Seam{"automaticUpdate", "the start, and daily"},
    Seam{"checkForLatestUpdate", "menu"},
    Seam{"checkforupdatewithscript", "remote management, and its flag file"},
    Seam{"showUpdateInProgress", "remote management"},
    // Identity
    Seam{"takeProfileUser", "message ResetProfileUser", Trace::Silent},
    Seam{"saveClientIdentity", "the start", Trace::Silent},
    Seam{"setKeyChainUnlockEnabled", "the start, where the key chain is unlocked", Trace::Silent},
    // clang-format on
};

/// One of them, by its name.
class Operation
{
public:
    consteval Operation(const char *name) : m_seam(found(name)) {}

    [[nodiscard]] const Seam &seam() const { return *m_seam; }

private:
    static consteval const Seam *found(std::string_view name)
    {
        const auto seam = std::ranges::find(Seams, name, &Seam::operation);
        if (seam == Seams.end())
            throw "an operation needs a line above"; // not at run time: this is where the compiler stops
        return &*seam;
    }

    const Seam *m_seam;
};
} // namespace Later

/// Asks for an operation that nothing carries out yet: a line in the trace, unless everybody asks all the time.
void later(Later::Operation operation);
