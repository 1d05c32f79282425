#include "Source/Controller/MenuRules.h"

#include "Classes/Schedules/ScheduleStatusRules.h"
#include "Extensions/TextFormat.h"
#include "Utility/Language/CVAppLocalization.h"

using namespace Qt::StringLiterals;

namespace MenuRules
{
namespace Texts = MonitorControllerVC;

namespace
{
constexpr qsizetype LongestStatusLine = 35; // UTF-16 units

void setText(MenuState &menu, MenuItem item, const LocalizedText &title)
{
    menu[item].title = title.text();
}

void setText(MenuState &menu, MenuItem item, const LocalizedText &title, const LocalizedText &toolTip)
{
    menu[item].title = title.text();
    menu[item].toolTip = toolTip.text();
}

void setWebAccess(MenuState &menu, const QString &appFullName)
{
    menu[MenuItem::WebAccess].title = formatted(Texts::accessCorvaneWeb, {appFullName});
    menu[MenuItem::WebAccess].toolTip = Texts::accessCorvaneWebTooltip.text();
}

void setJobSwitch(MenuState &menu, const ScheduleMenu &jobs)
{
    setText(menu, MenuItem::SwitchJobs,
            jobs.offersEnable ? Texts::enableScheudleJobs : Texts::disableScheduleJobs);
    setText(menu, MenuItem::ManageJobs, Texts::manageScheduledJobs);
    menu[MenuItem::ManageJobs].enabled = jobs.manageEnabled;
}

void disableWithoutUser(MenuState &menu)
{
    menu[MenuItem::Scheduler].enabled = false;
    menu[MenuItem::RemoteManagement].enabled = false;
}

void setRemoteManagement(MenuState &menu, const RemoteManagement &remote)
{
    menu[MenuItem::RemoteManagement].enabled = remote.hasUser;
}

void setSignedIn(MenuState &menu, const MenuInputs &in)
{
    if (!in.recordPresent)
        return disableWithoutUser(menu);
    setRemoteManagement(menu, in.remote);
    menu[MenuItem::Scheduler].enabled = true;
}

void enableProgress(MenuState &menu, bool enabled)
{
    menu[MenuItem::ShowProgress].enabled = enabled;
    menu[MenuItem::ProgressCompanion].enabled = enabled;
}

void setProgress(MenuState &menu, const MenuInputs &in)
{
    // The main application shows the progress itself while it runs, but not to somebody who is signed out.
    enableProgress(menu, in.operationRuns && (!in.mainApplicationRuns || !in.recordPresent));
}

/// The companion says how the backup stands, also while there is nothing to open.
void setBackupLine(MenuState &menu, const MenuInputs &in)
{
    const bool saysNothing = in.backupLine.isEmpty() || in.backupLine == in.appFullName;
    menu[MenuItem::ProgressCompanion].hidden = saysNothing;
    if (!saysNothing)
        menu[MenuItem::ProgressCompanion].title = in.backupLine;
}

/// What opens a window is of no use while that window is seen.
void setCompanionOfWindow(MenuState &menu, const MenuInputs &in)
{
    if (menu[MenuItem::ShowProgress].enabled == true && in.scheduleBackupRunning && !in.mainApplicationRuns)
        menu[MenuItem::ProgressCompanion].enabled = !in.progressWindowVisible;
}

void setSyncStatusLine(MenuItemChange &item, const std::optional<QString> &statusLine)
{
    const QString line = statusLine.value_or(QString()).section(u'\n', 0, 0);
    item.hidden = line.isEmpty() || line == Texts::allFilesUpToDateTooltip || line == Texts::pausedTooltip;
    if (!*item.hidden)
        item.title = line.size() > LongestStatusLine ? line.left(LongestStatusLine) + u"..."_s : line;
}

void setPauseItem(MenuState &menu, const MenuInputs &in)
{
    if (in.runningJobPaused) {
        setText(menu, MenuItem::PauseJob, Texts::resumeScheduleJob, Texts::backupPausedTooltip);
    } else {
        setText(menu, MenuItem::PauseJob, Texts::pauseScheduleJob);
        menu[MenuItem::PauseJob].toolTip = in.appFullName;
    }
}

QString webAccessTitle(const RemoteManagement &remote)
{
    const bool switchedOff = remote.word == u"0"_s || (remote.hasUser && remote.mobileOnly);
    return switchedOff ? Texts::enableWebAccess : Texts::disableWebAccess;
}
} // namespace

void setJobSwitch(MenuState &menu, const std::optional<QString> &switchText)
{
    if (const auto jobs = scheduleMenu(switchText))
        setJobSwitch(menu, *jobs);
}

JobSwitchClick jobSwitchClick(const QString &title)
{
    if (title == Texts::disableScheduleJobs)
        return {scheduleSwitchContent(ScheduleSwitch::Disabled), Texts::enableScheudleJobs};
    return {scheduleSwitchContent(ScheduleSwitch::Enabled), Texts::disableScheduleJobs};
}

void setJobItems(MenuState &menu, RunningJob job)
{
    setText(menu, MenuItem::StopJob, Texts::stopScheduledJob);
    menu[MenuItem::PauseJob].enabled = job == RunningJob::Backup;
    menu[MenuItem::StopJob].enabled = job != RunningJob::None;
    menu[MenuItem::SwitchJobs].enabled = job == RunningJob::None;
}

void setEngineItems(MenuState &menu, bool engineUser)
{
    menu[MenuItem::RemoteManagement].hidden = !engineUser;
    if (engineUser)
        menu[MenuItem::Separator6].hidden = false;
}

void setMenuItems(MenuState &menu, bool thinClient, bool followsPolling)
{
    menu[MenuItem::RemoteManagement].hidden = thinClient || !followsPolling;
}

void setProtectionTick(MenuState &menu, const std::optional<QString> &protectionWord)
{
    menu[MenuItem::Protection].ticked = protectionWord == u"1"_s;
}

MenuState protectionAfterSettings(bool listPresent, const std::optional<QString> &protectionWord)
{
    MenuState menu;
    if (listPresent)
        setProtectionTick(menu, protectionWord);
    return menu;
}

void setProtection(MenuState &menu, const MenuInputs &in)
{
    MenuItemChange &item = menu[MenuItem::Protection];
    item = {};
    item.present = in.engineUser && !in.thinClient;
    if (!*item.present)
        return;
    item.title = Texts::cdp.text();
    item.enabled = in.recordPresent;
    item.hidden = false;
    setProtectionTick(menu, in.protectionWord);
}

std::optional<bool> setAccountItems(MenuState &menu, const std::optional<QString> &accountType,
                                    bool partnerPlan)
{
    const bool isSubAccount = accountType == u"true"_s;
    const bool maySeeUpgrade = !isSubAccount && !partnerPlan;
    menu[MenuItem::Upgrade].hidden = !maySeeUpgrade;
    menu[MenuItem::UpgradeSeparator].hidden = !maySeeUpgrade;
    return !isSubAccount && partnerPlan ? std::nullopt : std::optional(isSubAccount);
}

void setCloudDriveItems(MenuState &menu, const CloudDrive &drive, bool thinClient)
{
    const bool shown = drive.enabled && !thinClient;
    menu[MenuItem::CloudDrive].hidden = !shown;
    menu[MenuItem::CloudDriveSeparator].hidden = !shown;
    if (!shown)
        return;
    if (drive.paused) {
        if (*drive.paused)
            setText(menu, MenuItem::PauseSync, Texts::resumeSync, Texts::syncfilesLinkedTooltip);
        else
            setText(menu, MenuItem::PauseSync, Texts::pauseSync, Texts::haltOperationsTooltip);
    }
    setSyncStatusLine(menu[MenuItem::SyncStatus], drive.statusLine);
}

MenuState titles(const QString &appFullName, const std::optional<QString> &switchText)
{
    MenuState menu;
    setText(menu, MenuItem::Start, Texts::startApplication);
    setWebAccess(menu, appFullName);
    setText(menu, MenuItem::Scheduler, Texts::schedulerMenu);
    setText(menu, MenuItem::Upgrade, Texts::upgradeStorage, Texts::upgradeBTnTooltip);
    setText(menu, MenuItem::ShowProgress, Texts::showProgress);
    setText(menu, MenuItem::Proxy, Texts::proxySettings);
    setText(menu, MenuItem::Settings, Texts::settings);
    setText(menu, MenuItem::Logs, Texts::viewlogs);
    setText(menu, MenuItem::Status, Texts::status);
    setText(menu, MenuItem::ErrorReport, Texts::SER);
    setText(menu, MenuItem::Help, Texts::onlinehelp);
    setText(menu, MenuItem::RemoteManagement, Texts::disableWebAccess, Texts::disableWebAccessTooltip);
    setText(menu, MenuItem::Protection, Texts::cdp);
    setText(menu, MenuItem::Update, Texts::checkForUpdate, Texts::updateCorvaneTooltip);
    setText(menu, MenuItem::Quit, Texts::quitMonitor);
    setText(menu, MenuItem::PauseJob, Texts::pauseScheduleJob);
    setText(menu, MenuItem::StopJob, Texts::stopScheduledJob);
    setText(menu, MenuItem::CloudDrive, Texts::cloudDrive);
    setText(menu, MenuItem::CloudDriveFolder, Texts::myCloudDriveMenu, Texts::cloudDriveMenuItemTooltip);
    setText(menu, MenuItem::PauseSync, Texts::pauseSync, Texts::haltOperationsTooltip);
    setText(menu, MenuItem::RecentlyModified, Texts::recentlyModifiedMenu, Texts::recentModifyTooltip);
    setText(menu, MenuItem::SyncStatus, Texts::syncStatus);

    const bool disabled = switchText && switchText->contains(u'0');
    setJobSwitch(menu, ScheduleMenu{.offersEnable = disabled, .manageEnabled = !disabled});
    return menu;
}

MenuState needsUpdate(const QString &appFullName, const std::optional<QString> &switchText)
{
    MenuState menu;
    if (!switchText)
        return menu;
    setJobSwitch(menu, switchText);
    setWebAccess(menu, appFullName);
    return menu;
}

MenuRefresh atStart(const MenuInputs &in)
{
    MenuRefresh out;
    MenuState &menu = out.items;
    menu[MenuItem::Spare].hidden = true;
    setJobItems(menu, in.runningJob);

    menu[MenuItem::Separator1].hidden = true;
    menu[MenuItem::UserLine].hidden = true;
    enableProgress(menu, false);
    if (in.dedup == u"off"_s) {
        setText(menu, MenuItem::RemoteManagement, Texts::disableWebAccess);
    } else {
        menu[MenuItem::Separator6].hidden = true;
        menu[MenuItem::RemoteManagement].hidden = true;
    }

    if (!in.recordPresent)
        disableWithoutUser(menu);
    out.isSubAccount = setAccountItems(menu, in.accountType, in.partnerPlan);
    setRemoteManagement(menu, in.remote);
    setProtection(menu, in);
    setText(menu, MenuItem::StopJob, Texts::stopScheduledJob);
    if (scheduleSwitch(in.switchText) == ScheduleSwitch::Disabled)
        setText(menu, MenuItem::SwitchJobs, Texts::enableScheudleJobs);
    setPauseItem(menu, in);
    setBackupLine(menu, in);
    menu[MenuItem::RecentlyModified].hidden = true; // until the list of the sync daemon fills it
    setCloudDriveItems(menu, in.cloudDrive, in.thinClient);
    return out;
}

MenuRefresh atOpening(const MenuInputs &in)
{
    MenuRefresh out;
    MenuState &menu = out.items;
    setCloudDriveItems(menu, in.cloudDrive, in.thinClient);
    setSignedIn(menu, in);
    setProgress(menu, in);
    setBackupLine(menu, in);
    menu[MenuItem::Spare].hidden = true;
    out.isSubAccount = setAccountItems(menu, in.accountType, in.partnerPlan);
    setEngineItems(menu, in.engineUser);
    setMenuItems(menu, in.thinClient, in.followsPolling);
    setProtection(menu, in);
    setCompanionOfWindow(menu, in);
    setJobItems(menu, in.runningJob);
    setPauseItem(menu, in);
    menu[MenuItem::RemoteManagement].title = webAccessTitle(in.remote);
    return out;
}

MenuRefresh atSignIn(const MenuInputs &in)
{
    MenuRefresh out;
    MenuState &menu = out.items;
    setSignedIn(menu, in);
    menu[MenuItem::RemoteManagement].title = webAccessTitle(in.remote);
    setProgress(menu, in);
    out.closesProgressWindow = menu[MenuItem::ShowProgress].enabled == false;
    setBackupLine(menu, in);
    setCloudDriveItems(menu, in.cloudDrive, in.thinClient);
    menu[MenuItem::Spare].hidden = true;
    out.isSubAccount = setAccountItems(menu, in.accountType, in.partnerPlan);
    setEngineItems(menu, in.engineUser);
    setProtection(menu, in);
    return out;
}
} // namespace MenuRules
