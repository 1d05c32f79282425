#include "Source/Controller/MenuKeeper.h"

#include "Platform/Home.h"
#include "Platform/KeptFiles.h"
#include "Platform/PropertyList.h"
#include "Source/Controller/Account.h"
#include "Source/Controller/DesktopNotes.h"
#include "Source/Controller/Launcher.h"
#include "Source/Controller/ScheduledJobs.h"
#include "Source/Controller/StatusBoard.h"
#include "Utility/CVSingletonForBackup.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Paths/ApplicationFilePath.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

using namespace MonitorControllerVC;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr int ProtectionFile = 26;

std::optional<QString> protectionWordFor(const QString &user, bool *listPresent = nullptr)
{
    const QString path = accountPath(ApplicationFilePath(ProtectionFile).path().value_or(QString()), {user});
    const auto list = KeptFiles::dictionary(path);
    if (listPresent)
        *listPresent = list.has_value();
    return list ? PropertyList::textValue(*list, u"Enabled"_s) : std::nullopt;
}

/// Whether the account's web management polls: only a login list that names a channel of its own says
/// otherwise.
bool shouldFollowPollingFlow(const QString &user)
{
    const auto details = KeptFiles::dictionary(pathValue("LoginDetailsFilePath"_L1, {user}));
    const auto channel =
        details ? PropertyList::textValue(*details, u"remote_manage_websock_server"_s) : std::nullopt;
    return channel != u"yes"_s;
}

QVariantMap sharedList(const QString &path)
{
    return KeptFiles::dictionary(path, Limits::SharedListBytes).value_or(QVariantMap());
}
} // namespace

MenuKeeper::MenuKeeper(Clock &clock, ProgressWindow window, Account &account, ScheduledJobs &jobs,
                       const StatusBoard &board, DesktopNotes &notes, std::function<void(MenuAction)> clicked)
    : m_clock(clock), m_window(std::move(window)), m_account(account), m_jobs(jobs), m_board(board),
      m_notes(notes), m_menu(std::move(clicked))
{
}

void MenuKeeper::localizationSetUp()
{
    m_menu.apply(MenuRules::titles(pathValue("ApplicationFullName"_L1), m_jobs.switchText()));
}

void MenuKeeper::showStart()
{
    carryOut(MenuRules::atStart(gatherMenuInputs()));
    if (QAction *remote = m_menu.itemWithTitle(remoteManageTitle))
        remote->setEnabled(true);
}

void MenuKeeper::menuWillOpen()
{
    takeMenuFacts(bringMenuInLine());
}

void MenuKeeper::refreshMenuSoon()
{
    if (!m_refreshTimer)
        m_refreshTimer = m_clock.start(300ms, Clock::Repeat::Once, [this] { refreshMenu(); });
}

void MenuKeeper::refreshMenu()
{
    std::ignore = bringMenuInLine();
}

MenuRules::MenuInputs MenuKeeper::bringMenuInLine()
{
    m_refreshTimer.reset();
    m_account.lookForSignIn();
    m_account.readDetails();
    MenuRules::MenuInputs in = gatherMenuInputs();
    m_menu.apply(MenuRules::needsUpdate(in.appFullName, in.switchText));
    carryOut(MenuRules::atOpening(in));
    return in;
}

void MenuKeeper::enablePreferences()
{
    const MenuRules::MenuInputs in = gatherMenuInputs();
    takeMenuFacts(in);
    carryOut(MenuRules::atSignIn(in));
}

/// Takes the user from the record as the pass has read it.
MenuRules::MenuInputs MenuKeeper::gatherMenuInputs()
{
    const QString user = m_account.userNameOfDetails();
    const QVariantMap &details = m_account.details();
    const QString plan = PropertyList::textValue(details, u"Plan"_s).value_or(QString());
    const QVariantMap webManagement = sharedList(pathValue("WebmanagementFilePath"_L1, {}));

    MenuRules::MenuInputs in;
    in.appFullName = pathValue("ApplicationFullName"_L1);
    in.recordPresent = m_account.recordCounts();
    in.dedup = PropertyList::textValue(details, u"dedup"_s);
    in.accountType = UserRecords::accountType(user);
    in.partnerPlan = plan == u"partner";
    in.engineUser = !user.isEmpty() && UserRecords::isTQLUser(user);
    in.thinClient = QNUtility::isThinClient();
    in.followsPolling = shouldFollowPollingFlow(user);
    in.remote = {.hasUser = !user.isEmpty(),
                 .mobileOnly = PropertyList::textValue(details, u"AccountPlanType"_s) == u"MobileOnly"_s,
                 .word = PropertyList::textValue(webManagement, user).value_or(QString())};
    in.protectionWord = protectionWordFor(user.isEmpty() ? m_account.shownUser() : user);
    in.switchText = m_jobs.switchText();
    in.runningJob = m_jobs.runningJob();
    in.runningJobPaused = m_jobs.isRunningJobPaused();
    // A scheduled job belongs to its own account, and can be shown and paused also while nobody is signed in.
    in.operationRuns = user.isEmpty() ? in.runningJob != MenuRules::RunningJob::None
                                      : UserRecords::isAnyOperationRunning(user);
    in.mainApplicationRuns = Launcher::mainApplicationRuns();
    in.scheduleBackupRunning = CVSingletonForBackup::shared().scheduleBackupRunning;
    in.progressWindowVisible = m_window.isVisible();
    in.backupLine = m_board.backupLine().value_or(QString());
    in.cloudDrive = cloudDriveForMenu(user);
    return in;
}

MenuRules::CloudDrive MenuKeeper::cloudDriveForMenu(const QString &user) const
{
    const QVariantMap list = sharedList(accountPath(pathValue("LoggedSyncDetailsUserPath"_L1), {user}));
    return {.enabled = !user.isEmpty() && m_board.isSyncEnabled(),
            .paused = StatusRules::flagValue(list.value(u"Pause"_s)),
            .statusLine = m_board.syncLine()};
}

void MenuKeeper::carryOut(const MenuRules::MenuRefresh &refresh)
{
    m_menu.apply(refresh.items);
    if (refresh.closesProgressWindow)
        m_window.close();
}

/// What an opening or a sign-in leaves behind for others; no other pass over the menu does.
void MenuKeeper::takeMenuFacts(const MenuRules::MenuInputs &in)
{
    const QString user = m_account.userNameOfDetails();
    m_account.setShownUser(in.recordPresent && !user.isEmpty() ? std::optional(user) : std::nullopt);
    m_account.takeAccountType();
    if (in.recordPresent)
        m_notes.forgetSessionLog();
    m_notes.takeSettings(user);
}

void MenuKeeper::reloadPreferencesFromApp()
{
    bool listPresent = false;
    const auto word = protectionWordFor(m_account.shownUser(), &listPresent);
    m_menu.apply(MenuRules::protectionAfterSettings(listPresent, word));
    refreshMenuSoon();
}

void MenuKeeper::enableDisableManageSubMenus(MenuRules::RunningJob job)
{
    MenuState items;
    MenuRules::setJobItems(items, job);
    m_menu.apply(items);
}

void MenuKeeper::disableScheduleSubMenu()
{
    const MenuRules::JobSwitchClick click = MenuRules::jobSwitchClick(m_menu.title(MenuItem::SwitchJobs));
    m_menu.apply(MenuItem::SwitchJobs, {.title = click.nextTitle});
    m_jobs.setSwitch(click.word);
    MenuState items;
    MenuRules::setJobSwitch(items, m_jobs.switchText());
    m_menu.apply(items);
}

void MenuKeeper::offerPause()
{
    m_menu.apply(MenuItem::PauseJob, {.title = pauseScheduleJob.text()});
}

void MenuKeeper::offerResume()
{
    m_menu.apply(MenuItem::PauseJob, {.title = resumeScheduleJob.text()});
}

bool MenuKeeper::offersPause() const
{
    return m_menu.title(MenuItem::PauseJob) == pauseScheduleJob;
}

void MenuKeeper::askAfterClick(std::function<void()> question)
{
    m_questionTimer = m_clock.start(0ms, Clock::Repeat::Once, std::move(question));
}
