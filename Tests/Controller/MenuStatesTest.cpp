#include "Source/Controller/MenuRules.h"
#include "Source/Controller/StatusMenu.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <functional>

using namespace Qt::StringLiterals;
using MenuRules::MenuInputs;
using MenuRules::RunningJob;

namespace
{
/// The menu as it is seen, an item a line: "(off)" is greyed out, "[x] " and "[ ] " stand before what can be
/// ticked, what a submenu holds is indented.
QString seen(const QMenu &menu, const QString &indent = {})
{
    QString lines;
    for (const QAction *action : menu.actions()) {
        if (!action->isVisible())
            continue;
        QString text = action->isSeparator() ? u"---"_s : action->text();
        if (action->isCheckable())
            text.prepend(action->isChecked() ? u"[x] "_s : u"[ ] "_s);
        if (!action->isSeparator() && !action->isEnabled())
            text += u" (off)"_s;
        lines += indent + text + u'\n';
        if (action->menu() && action->isEnabled())
            lines += seen(*action->menu(), indent + u"    "_s);
    }
    return lines;
}

MenuInputs signedIn()
{
    MenuInputs in;
    in.appFullName = u"Corvane"_s;
    in.recordPresent = true;
    in.dedup = u"on"_s;
    in.accountType = u"false"_s;
    in.remote = {.hasUser = true, .mobileOnly = false, .word = u"1"_s};
    in.switchText = u"1"_s;
    in.backupLine = u"No jobs today"_s;
    return in;
}

void signOut(MenuInputs &in)
{
    in = {};
    in.appFullName = u"Corvane"_s;
    in.backupLine = in.appFullName;
}

void runJob(MenuInputs &in, RunningJob job)
{
    in.runningJob = job;
    in.operationRuns = true;
    in.scheduleBackupRunning = true;
    in.backupLine = u"Job runs"_s;
}

QString opened(const MenuInputs &in)
{
    StatusMenu menu([](MenuAction) {});
    menu.apply(MenuRules::titles(in.appFullName, in.switchText));
    menu.apply(MenuRules::atStart(in).items);
    menu.apply(MenuRules::needsUpdate(in.appFullName, in.switchText));
    menu.apply(MenuRules::atOpening(in).items);
    return seen(menu.menu());
}

const QString idleState = u"Status\nShow progress (off)\nNo jobs today (off)\n---\n"_s;
const QString runningState = u"Status\nShow progress\nJob runs\n---\n"_s;
const QString idleJobs =
    u"Scheduler\n    Manage all scheduled jobs\n    ---\n    Pause the scheduled job (off)\n"
    u"    Stop the scheduled job (off)\n    ---\n    Disable all scheduled jobs\nView logs\n"_s;
const QString remoteAndEnd = u"Disable Web Access\n---\n"_s;
const QString accessItems = u"Start application\nAccess Corvane web\n"_s;
const QString upgradeItems = u"Upgrade storage\n---\n"_s;
const QString settingsToQuit =
    u"Settings\nProxy settings\n---\nCheck for latest version\nSend error report\nOnline help\n"
    u"---\nQuit application monitor\n"_s;
const QString account = accessItems + upgradeItems + settingsToQuit;
} // namespace

TEST(MenuStates, AreSeenAsTheUserSeesThem)
{
    const TemporaryHome home;
    const QString rest = remoteAndEnd + account;
    const QString restoreJobs =
        u"Scheduler\n    Manage all scheduled jobs\n    ---\n    Pause the scheduled job (off)\n"
        u"    Stop the scheduled job\n    ---\n    Disable all scheduled jobs (off)\nView logs\n"_s;
    const QString backupJobs =
        QString(restoreJobs).replace(u"Pause the scheduled job (off)"_s, u"Pause the scheduled job"_s);
    const std::tuple<const char *, std::function<void(MenuInputs &)>, QString> rows[] = {
        {"signed in", [](MenuInputs &) {}, idleState + idleJobs + rest},
        {"signed out", signOut,
         u"Status\nShow progress (off)\n---\nScheduler (off)\nView logs\nDisable Web Access (off)\n"
         u"[ ] Continuous Data Protection (off)\n---\n"_s +
             account},
        {"record that names nobody", [](MenuInputs &in) { in.remote = {}; },
         idleState + idleJobs + u"Disable Web Access (off)\n---\n"_s + account},
        {"thin client", [](MenuInputs &in) { in.thinClient = true; },
         idleState + idleJobs + u"---\n"_s + account},
        {"thin client with the engine", [](MenuInputs &in) { in.thinClient = in.engineUser = true; },
         idleState + idleJobs + u"---\n"_s + account},
        {"backup running", [](MenuInputs &in) { runJob(in, RunningJob::Backup); },
         runningState + backupJobs + rest},
        {"paused backup",
         [](MenuInputs &in) {
             runJob(in, RunningJob::Backup);
             in.switchText = u"2"_s;
         },
         runningState + QString(backupJobs).replace(u"Pause the"_s, u"Resume the"_s) + rest},
        {"restore running", [](MenuInputs &in) { runJob(in, RunningJob::Other); },
         runningState + restoreJobs + rest},
        {"jobs disabled", [](MenuInputs &in) { in.switchText = u"0"_s; },
         idleState +
             u"Scheduler\n    Manage all scheduled jobs (off)\n    ---\n    Pause the scheduled job (off)\n"
             u"    Stop the scheduled job (off)\n    ---\n    Enable all scheduled jobs\nView logs\n"_s +
             rest},
        {"engine user",
         [](MenuInputs &in) {
             in.engineUser = true;
             in.protectionWord = u"1"_s;
         },
         idleState + idleJobs + u"---\nDisable Web Access\n[x] Continuous Data Protection\n---\n"_s + account},
        {"engine user with a channel of its own",
         [](MenuInputs &in) {
             in.engineUser = true;
             in.followsPolling = false;
         },
         idleState + idleJobs + u"---\n[ ] Continuous Data Protection\n---\n"_s + account},
        {"account without deduplication", [](MenuInputs &in) { in.dedup = u"off"_s; },
         idleState + idleJobs + u"---\nDisable Web Access\n[ ] Continuous Data Protection (off)\n---\n"_s +
             account},
        {"Cloud Drive",
         [](MenuInputs &in) {
             in.cloudDrive = {.enabled = true, .paused = true, .statusLine = u"Uploading\nof 3"_s};
         },
         idleState + idleJobs + remoteAndEnd +
             u"Cloud Drive\n    Uploading (off)\n    ---\n    My Cloud Drive folder\n    Resume\n---\n"_s +
             account},
    };
    for (const auto &[name, change, wanted] : rows) {
        SCOPED_TRACE(name);
        MenuInputs in = signedIn();
        change(in);
        EXPECT_EQ(opened(in), wanted);
    }
}

TEST(MenuStates, FollowTheFilesFromOneOpeningToTheNext)
{
    const TemporaryHome home;
    StatusMenu menu([](MenuAction) {});
    MenuInputs in = signedIn();
    menu.apply(MenuRules::titles(in.appFullName, in.switchText));
    menu.apply(MenuRules::atStart(in).items);
    const auto open = [&menu](const MenuInputs &now) {
        menu.apply(MenuRules::needsUpdate(now.appFullName, now.switchText));
        menu.apply(MenuRules::atOpening(now).items);
        return seen(menu.menu());
    };
    const QString atRest = open(in);

    MenuInputs busy = in;
    runJob(busy, RunningJob::Backup);
    busy.engineUser = true;
    busy.accountType = u"true"_s;
    busy.cloudDrive.enabled = true;
    const QString whileBusy = open(busy);
    EXPECT_TRUE(whileBusy.startsWith(runningState));
    EXPECT_TRUE(whileBusy.contains(u"[ ] Continuous Data Protection\n---\nCloud Drive\n"_s));
    EXPECT_FALSE(whileBusy.contains(u"Upgrade"_s));

    signOut(in);
    EXPECT_TRUE(open(in).contains(u"Scheduler (off)\n"_s));

    // What a visit of an engine account uncovers stays: nothing but a start hides its separator again.
    EXPECT_EQ(open(signedIn()), QString(atRest).replace(u"View logs\n"_s, u"View logs\n---\n"_s));
}
