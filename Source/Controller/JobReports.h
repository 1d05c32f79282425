#pragma once

#include "Classes/Progress/CVScheduleProgressWindowController.h"
#include "Messaging/DaemonMessage.h"
#include "Source/Controller/ScheduledJobs.h"

#include <QDeadlineTimer>
#include <QVariantList>

class Account;
class Launcher;
class MenuKeeper;
class StatusBoard;

/// A job's reports on their way to tool tip, menu and progress window, and what the user has done to the job.
/// Main thread only.
class JobReports
{
public:
    /// Who knows what the window asks for.
    struct Others {
        const Account &account;
        ScheduledJobs &jobs;
        StatusBoard &board;
        MenuKeeper &menu;
        Launcher &launcher;
    };

    JobReports(CVScheduleProgressWindowController &window, const Others &others);

    /// True when the report ends an interactive operation.
    [[nodiscard]] bool didReceiveIPCMessageOperationForProgress(const DaemonMessage &report);
    /// A report of the form that older daemons send.
    void didReceiveOlderProgress(const QVariantList &array);
    /// Finds in each pass what no report has told.
    void lookForUnheardChanges();

    /// @name What the daemon and the user ask for
    /// @{
    void pause();
    void resume();
    void pauseBtnSubMenuActn(); ///< does what the menu's item says
    void stopBtnSubMenuActn();
    void updateBandwidth(); ///< the main application has changed it
    /// Shows the progress of each running job: a scheduled one in the window here, any other in the main
    /// application. A job that has not reported yet is shown when it does, if it does so soon.
    void showProgressBtnClicked();
    /// Shows the window of the scheduled job, in the same way.
    void showSchedulerProgress();
    /// @}

private:
    void didReceiveOperationProgress(const DaemonMessage &report,
                                     std::optional<ProgressRules::ProgressType> type);
    void showWindowOfJob();
    void showWindowIfWanted();
    [[nodiscard]] CVScheduleProgressViewController &view() { return m_window.viewController(); }

    CVScheduleProgressWindowController &m_window;
    Others m_others;
    QDeadlineTimer m_windowWanted; ///< by somebody who asked before the job's first report
};
