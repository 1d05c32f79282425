#pragma once

#include "Classes/Progress/CVScheduleProgressViewController.h"

#include <functional>
#include <memory>

/// The window of the progress view. It is made when it is first shown; until then the view controller keeps the
/// state of the job by itself. Main thread only.
class CVScheduleProgressWindowController
{
public:
    struct Surroundings {
        CVScheduleProgressViewController::Surroundings view;
        std::function<bool()> isDark; ///< how the desktop's windows look
    };
    explicit CVScheduleProgressWindowController(Surroundings surroundings);
    ~CVScheduleProgressWindowController();

    [[nodiscard]] CVScheduleProgressViewController &viewController() { return m_viewController; }

    /// Shows the window, in front of all others and with the keyboard; brings it up where it is shown already.
    void showWindow();
    [[nodiscard]] bool isWindowVisible() const;
    void close();
    /// Takes the desktop's colours anew.
    void refreshColours();

private:
    void makeWindow();

    Clock &m_clock;
    std::function<bool()> m_isDark;
    CVScheduleProgressViewController m_viewController;
    std::unique_ptr<ScheduleProgressView> m_window;
};
