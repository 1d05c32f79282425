#pragma once

#include "Platform/Clock.h"
#include "Source/Controller/MenuRules.h"
#include "Source/Controller/StatusMenu.h"

#include <functional>
#include <memory>
#include <optional>

class Account;
class DesktopNotes;
class ScheduledJobs;
class StatusBoard;

/// The menu in line with the files. What an item says is decided by MenuRules; here the inputs are gathered,
/// each file read once in a pass, and the answers carried out. The passes: at the start, at a sign-in, before
/// each opening, with the 10-second pass, and soon after a change. Main thread only.
class MenuKeeper
{
public:
    /// The window of the scheduled job.
    struct ProgressWindow {
        std::function<bool()> isVisible;
        std::function<void()> close;
    };

    MenuKeeper(Clock &clock, ProgressWindow window, Account &account, ScheduledJobs &jobs,
               const StatusBoard &board, DesktopNotes &notes, std::function<void(MenuAction)> clicked);

    [[nodiscard]] StatusMenu &menu() { return m_menu; }

    void localizationSetUp(); ///< all titles
    void showStart();         ///< the items as a start finds them
    /// What the user sees now: the refresh of an opening.
    void menuWillOpen();
    /// Brings the whole menu in line with the files.
    void refreshMenu();
    /// Has the menu brought in line in a moment: a panel sizes it by what stood in it before an opening.
    void refreshMenuSoon();
    /// The refresh after a sign-in.
    void enablePreferences();
    /// The main application has changed settings.
    void reloadPreferencesFromApp();

    void enableDisableManageSubMenus(MenuRules::RunningJob job);
    void disableScheduleSubMenu(); ///< a click on the switch for all jobs
    void offerPause();             ///< of the scheduled job, not its resumption
    void offerResume();
    [[nodiscard]] bool offersPause() const;
    /// Has `question` asked when the click has been dealt with: a panel waits until then.
    void askAfterClick(std::function<void()> question);

private:
    [[nodiscard]] MenuRules::MenuInputs gatherMenuInputs();
    [[nodiscard]] MenuRules::CloudDrive cloudDriveForMenu(const QString &user) const;
    void carryOut(const MenuRules::MenuRefresh &refresh);
    [[nodiscard]] MenuRules::MenuInputs bringMenuInLine();
    void takeMenuFacts(const MenuRules::MenuInputs &in);

    Clock &m_clock;
    ProgressWindow m_window;
    Account &m_account;
    ScheduledJobs &m_jobs;
    const StatusBoard &m_board;
    DesktopNotes &m_notes;
    StatusMenu m_menu;
    std::unique_ptr<Clock::Timer> m_refreshTimer;  ///< runs while a refresh is due
    std::unique_ptr<Clock::Timer> m_questionTimer; ///< runs between a click and the question that follows it
};
