#pragma once

#include <QString>

#include <array>
#include <cstddef>
#include <optional>

/// The items of the status menu that are known by name, separators among them.
enum class MenuItem {
    UserLine,
    Separator1, ///< below the user line
    Status,
    ShowProgress,
    ProgressCompanion, ///< the line of the backup's state under ShowProgress
    Scheduler,
    ManageJobs,
    PauseJob,
    StopJob,
    SwitchJobs,
    Logs,
    Separator6, ///< above the two features of engine accounts
    RemoteManagement,
    Protection,
    CloudDrive,
    CloudDriveSeparator, ///< goes with CloudDrive
    CloudDriveFolder,
    PauseSync,
    RecentlyModified,
    SyncStatus,
    Start,
    WebAccess,
    Upgrade,
    UpgradeSeparator, ///< goes with Upgrade
    Spare,            ///< a separator in reserve
    Settings,
    Proxy,
    Update,
    ErrorReport,
    Help,
    Quit,
};
inline constexpr std::size_t MenuItemCount = static_cast<std::size_t>(MenuItem::Quit) + 1;

/// What the user asks for by clicking an item.
enum class MenuAction {
    ShowStatus,
    ShowProgress,
    ManageJobs,
    PauseOrResumeJob,
    StopJob,
    SwitchJobs,
    ViewLogs,
    SwitchRemoteManagement,
    SwitchProtection,
    OpenCloudDriveFolder,
    PauseOrResumeSync,
    StartApplication,
    AccessWeb,
    UpgradeStorage,
    OpenSettings,
    OpenProxySettings,
    CheckForUpdate,
    ReportError,
    OpenHelp,
    Quit,
};

/// What becomes of one item; a field without a value leaves that side of the item as it is.
struct MenuItemChange {
    std::optional<bool> present; ///< false: the item is taken out, and has no effect until it is put back
    std::optional<QString> title;
    std::optional<QString> toolTip;
    std::optional<bool> enabled;
    std::optional<bool> hidden;
    std::optional<bool> ticked;

    friend bool operator==(const MenuItemChange &, const MenuItemChange &) = default;
};

/// What becomes of the menu. Rules write into it one after the other, so that a later one overrules an earlier
/// one.
class MenuState
{
public:
    [[nodiscard]] MenuItemChange &operator[](MenuItem item) { return m_items[static_cast<std::size_t>(item)]; }
    [[nodiscard]] const MenuItemChange &operator[](MenuItem item) const
    {
        return m_items[static_cast<std::size_t>(item)];
    }

    friend bool operator==(const MenuState &, const MenuState &) = default;

private:
    std::array<MenuItemChange, MenuItemCount> m_items;
};
