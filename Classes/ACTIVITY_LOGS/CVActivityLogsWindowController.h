#pragma once

#include "Classes/ACTIVITY_LOGS/CVActivityLogsViewController.h"
#include "Classes/ACTIVITY_LOGS/LogWindowSettings.h"

#include <functional>
#include <memory>

/// The window of the activity logs, made when it is first shown. It stands where and as it stood the last time.
/// Main thread only.
class CVActivityLogsWindowController
{
public:
    struct Surroundings {
        CVActivityLogsViewController::Surroundings view;
        std::function<bool()> isDark; ///< how the desktop's windows look
    };
    explicit CVActivityLogsWindowController(Surroundings surroundings);
    ~CVActivityLogsWindowController();

    [[nodiscard]] CVActivityLogsViewController &viewController() { return m_viewController; }

    /// Shows the window, in front of all others and with the keyboard; brings it up where it is shown already.
    void showWindow();
    [[nodiscard]] bool isWindowVisible() const;
    void close();
    /// Takes the desktop's colours anew.
    void refreshColours();

private:
    void makeWindow();
    void keepSettingsSoon();
    void keepSettings();

    Clock &m_clock;
    UserDefaults &m_defaults;
    std::function<bool()> m_isDark;
    CVActivityLogsViewController m_viewController;
    std::unique_ptr<ActivityLogsView> m_window;
    std::unique_ptr<Clock::Timer> m_settingsTimer; ///< runs while the user moves and resizes
};
