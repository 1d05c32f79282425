#include "Source/Controller/MenuRules.h"
#include "Source/Controller/StatusMenu.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <gtest/gtest.h>

#include <functional>

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
        QString text = action->isSeparator() ? QStringLiteral("---") : action->text();
        if (action->isCheckable())
            text.prepend(action->isChecked() ? QStringLiteral("[x] ") : QStringLiteral("[ ] "));
        if (!action->isSeparator() && !action->isEnabled())
            text += QStringLiteral(" (off)");
        lines += indent + text + u'\n';
        if (action->menu() && action->isEnabled())
            lines += seen(*action->menu(), indent + QStringLiteral("    "));
    }
    return lines;
}

MenuInputs signedIn()
{
    MenuInputs in;
    in.appFullName = QStringLiteral("Corvane");
    in.recordPresent = true;
    in.dedup = QStringLiteral("on");
    in.accountType = QStringLiteral("false");
    in.remote = {.hasUser = true, .mobileOnly = false, .word = QStringLiteral("1")};
    in.switchText = QStringLiteral("1");
    in.backupLine = QStringLiteral("No jobs today");
    return in;
}

void signOut(MenuInputs &in)
{
    in = {};
    in.appFullName = QStringLiteral("Corvane");
    in.backupLine = in.appFullName;
}

void runJob(MenuInputs &in, RunningJob job)
{
    in.runningJob = job;
    in.operationRuns = true;
    in.scheduleBackupRunning = true;
    in.backupLine = QStringLiteral("Job runs");
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

const QString idleState = QStringLiteral("Status\n"
                                         "Show progress (off)\n"
                                         "No jobs today (off)\n"
                                         "---\n");
const QString runningState = QStringLiteral("Status\n"
                                            "Show progress\n"
                                            "Job runs\n"
                                            "---\n");
const QString idleJobs = QStringLiteral("Scheduler\n"
                                        "    Manage all scheduled jobs\n"
                                        "    ---\n"
                                        "    Pause the scheduled job (off)\n"
                                        "    Stop the scheduled job (off)\n"
                                        "    ---\n"
                                        "    Disable all scheduled jobs\n"
                                        "View logs\n");
const QString remoteAndEnd = QStringLiteral("Disable Web Access\n"
                                            "---\n");
const QString accessItems = QStringLiteral("Start application\n"
                                           "Access Corvane web\n");
const QString upgradeItems = QStringLiteral("Upgrade storage\n"
                                            "---\n");
const QString settingsToQuit = QStringLiteral("Settings\n"
                                              "Proxy settings\n"
                                              "---\n"
                                              "Check for latest version\n"
                                              "Send error report\n"
                                              "Online help\n"
                                              "---\n"
                                              "Quit application monitor\n");
const QString account = accessItems + upgradeItems + settingsToQuit;
} // namespace

TEST(MenuStates, AreSeenAsTheUserSeesThem)
{
    const TemporaryHome home;
    const QString rest = remoteAndEnd + account;
    const QString restoreJobs = QStringLiteral("Scheduler\n"
                                               "    Manage all scheduled jobs\n"
                                               "    ---\n"
                                               "    Pause the scheduled job (off)\n"
                                               "    Stop the scheduled job\n"
                                               "    ---\n"
                                               "    Disable all scheduled jobs (off)\n"
                                               "View logs\n");
    const QString backupJobs = QString(restoreJobs)
                                   .replace(QStringLiteral("Pause the scheduled job (off)"),
                                            QStringLiteral("Pause the scheduled job"));
    const struct {
        const char *name;
        std::function<void(MenuInputs &)> change;
        QString wanted;
    } rows[] = {
        {"signed in", [](MenuInputs &) {}, idleState + idleJobs + rest},
        {"signed out", signOut,
         QStringLiteral("Status\n"
                        "Show progress (off)\n"
                        "---\n"
                        "Scheduler (off)\n"
                        "View logs\n"
                        "Disable Web Access (off)\n"
                        "[ ] Continuous Data Protection (off)\n"
                        "---\n") +
             account},
        {"record that names nobody", [](MenuInputs &in) { in.remote = {}; },
         idleState + idleJobs + QStringLiteral("Disable Web Access (off)\n---\n") + account},
        {"sub-account", [](MenuInputs &in) { in.accountType = QStringLiteral("true"); },
         idleState + idleJobs + remoteAndEnd + accessItems + settingsToQuit},
        {"partner", [](MenuInputs &in) { in.partnerPlan = true; },
         idleState + idleJobs + remoteAndEnd + accessItems + settingsToQuit},
        {"thin client", [](MenuInputs &in) { in.thinClient = true; },
         idleState + idleJobs + QStringLiteral("---\n") + account},
        {"thin client with the engine", [](MenuInputs &in) { in.thinClient = in.engineUser = true; },
         idleState + idleJobs + QStringLiteral("---\n") + account},
        {"backup running", [](MenuInputs &in) { runJob(in, RunningJob::Backup); },
         runningState + backupJobs + rest},
        {"backup running in a window that is seen",
         [](MenuInputs &in) {
             runJob(in, RunningJob::Backup);
             in.progressWindowVisible = true;
         },
         QStringLiteral("Status\nShow progress\nJob runs (off)\n---\n") + backupJobs + rest},
        {"backup running beside the main application",
         [](MenuInputs &in) {
             runJob(in, RunningJob::Backup);
             in.mainApplicationRuns = true;
         },
         QStringLiteral("Status\nShow progress (off)\nJob runs (off)\n---\n") + backupJobs + rest},
        {"paused backup",
         [](MenuInputs &in) {
             runJob(in, RunningJob::Backup);
             in.switchText = QStringLiteral("2");
         },
         runningState + QString(backupJobs).replace(QStringLiteral("Pause the"), QStringLiteral("Resume the")) +
             rest},
        {"restore running", [](MenuInputs &in) { runJob(in, RunningJob::Other); },
         runningState + restoreJobs + rest},
        {"jobs disabled", [](MenuInputs &in) { in.switchText = QStringLiteral("0"); },
         idleState +
             QStringLiteral("Scheduler\n"
                            "    Manage all scheduled jobs (off)\n"
                            "    ---\n"
                            "    Pause the scheduled job (off)\n"
                            "    Stop the scheduled job (off)\n"
                            "    ---\n"
                            "    Enable all scheduled jobs\n"
                            "View logs\n") +
             rest},
        {"engine user",
         [](MenuInputs &in) {
             in.engineUser = true;
             in.protectionWord = QStringLiteral("1");
         },
         idleState + idleJobs +
             QStringLiteral("---\nDisable Web Access\n[x] Continuous Data Protection\n---\n") + account},
        {"engine user with a channel of its own",
         [](MenuInputs &in) {
             in.engineUser = true;
             in.followsPolling = false;
         },
         idleState + idleJobs + QStringLiteral("---\n[ ] Continuous Data Protection\n---\n") + account},
        {"account without deduplication", [](MenuInputs &in) { in.dedup = QStringLiteral("off"); },
         idleState + idleJobs +
             QStringLiteral("---\nDisable Web Access\n[ ] Continuous Data Protection (off)\n---\n") + account},
        {"web access off", [](MenuInputs &in) { in.remote.word = QStringLiteral("0"); },
         idleState + idleJobs + QStringLiteral("Enable Web Access\n---\n") + account},
        {"Cloud Drive",
         [](MenuInputs &in) {
             in.cloudDrive = {.enabled = true, .paused = true, .statusLine = QStringLiteral("Uploading\nof 3")};
         },
         idleState + idleJobs + remoteAndEnd +
             QStringLiteral("Cloud Drive\n"
                            "    Uploading (off)\n"
                            "    ---\n"
                            "    My Cloud Drive folder\n"
                            "    Resume\n"
                            "---\n") +
             account},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        MenuInputs in = signedIn();
        row.change(in);
        EXPECT_EQ(opened(in), row.wanted);
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
    busy.accountType = QStringLiteral("true");
    busy.cloudDrive.enabled = true;
    const QString whileBusy = open(busy);
    EXPECT_TRUE(whileBusy.startsWith(runningState));
    EXPECT_TRUE(whileBusy.contains(QStringLiteral("[ ] Continuous Data Protection\n---\nCloud Drive\n")));
    EXPECT_FALSE(whileBusy.contains(QStringLiteral("Upgrade")));

    signOut(in);
    EXPECT_TRUE(open(in).contains(QStringLiteral("Scheduler (off)\n")));

    // What a visit of an engine account uncovers stays: nothing but a start hides its separator again.
    EXPECT_EQ(open(signedIn()),
              QString(atRest).replace(QStringLiteral("View logs\n"), QStringLiteral("View logs\n---\n")));
}
