#pragma once

#include "Platform/Clock.h"
#include "Platform/SessionBus/DistributedNotificationCenter.h"
#include "Source/Controller/DesktopActions.h"
#include "Utility/LaunchRules.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

/// The main application, the login item, and what a start finds in the product's folder for it. Main thread
/// only.
class Launcher
{
public:
    Launcher(const DesktopActions &desktop, Clock &clock, DistributedNotificationCenter &notifications);

    /// @name Main application
    /// @{
    void launchApplication(); ///< starts it, or brings it to the front
    void launchCorvane();     ///< hands over to the helper that starts the main application after an update
    /// Opens the main application and asks it for a view: "ViewScheduleJobs", "Settings" or "ActivityLogs".
    void initiateLaunchCorvaneApp(const QString &redirectionType);
    [[nodiscard]] static bool mainApplicationRuns();
    /// @}

    /// What a file left by the main application or the installer has the monitor open; it is removed. None
    /// without one.
    [[nodiscard]] static std::optional<LaunchRules::Redirection> redirectLaunch();
    /// Makes the login item follow that user's settings.
    static void manageLaunchOnStartup(const std::optional<QString> &user);
    static void removeUpdateDMGFolder();

    /// @name Words at the status item
    /// @{
    void showPopOverMessage(const QString &content);
    /// The help after an installation, once; it waits for a panel that takes the item.
    void showTrayHelp();
    void panelDidAppear();       ///< the status item has got its panel
    void announceSilentUpdate(); ///< that one has just ended
    /// @}

private:
    void timerFired();
    void after(Clock::Duration time, std::function<void()> work);

    const DesktopActions &m_desktop;
    Clock &m_clock;
    DistributedNotificationCenter &m_notifications;
    QString launchRedirectionType; ///< the view that the main application is to be asked for
    bool m_helpAwaitsPanel = false;
    std::unique_ptr<Clock::Timer> m_viewTimer;
    std::vector<std::unique_ptr<Clock::Timer>> m_delayed;
};
